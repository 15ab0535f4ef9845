// Whether a browse that a server answers in pages still gets anywhere, and what becomes of one that ends
// early.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>

#include <cstddef>
#include <vector>

namespace UaClientSdk {

/// Looks at the pages of one node. A server may answer with empty pages while it searches, and may use one
/// continuation point for all pages (OPC 10000-4, 7.9), but not for ever: the browse is stuck after 20 empty
/// pages in a row, or when a continuation point comes for the third time with nothing but empty pages since
/// the first.
class BrowseProgress
{
public:
    /// A page, and the continuation point that came with it.
    void take(std::size_t references, const UaByteString& continuationPoint);
    [[nodiscard]] bool isStuck() const { return m_isStuck; }

private:
    int m_emptyPages = 0; // in a row
    std::vector<std::size_t>
        m_points; // hashes, of the last page with references and the empty ones behind it
    bool m_isStuck = false;
};

/// Whether a server still keeps a continuation point after a call with it that ended so. It does not when it
/// does not know the point, or when the link or the session is gone.
[[nodiscard]] bool keepsContinuationPoint(const UaStatus& status);

/// For the call that releases continuation points: nobody waits long for it, as its only use is to let the
/// server forget sooner what it forgets with the session.
[[nodiscard]] ServiceSettings settingsOfRelease(const ServiceSettings& settings);

} // namespace UaClientSdk
