// One of the two lists of SetTriggering, which may have to be sent in pieces.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>

#include <algorithm>
#include <span>

namespace UaClientSdk {

/// Borrows the links and what the answers are collected in, which it clears.
class TriggeringLinks
{
public:
    TriggeringLinks(const UaUInt32Array& links, UaStatusCodeArray& results,
                    UaDiagnosticInfos& diagnosticInfos);

    [[nodiscard]] std::span<const OpcUa_UInt32> next(OpcUa_UInt32 limit) const
    {
        return m_links.subspan(m_done, std::min<std::size_t>(limit, m_links.size() - m_done));
    }
    [[nodiscard]] bool isDone() const { return m_done == m_links.size(); }
    /// Takes the answers to so many links out of a response. False when there are more or less of them, or
    /// without memory.
    [[nodiscard]] bool take(std::size_t count, OpcUa_Int32* resultCount, OpcUa_StatusCode** results,
                            OpcUa_Int32* diagnosticCount, OpcUa_DiagnosticInfo** diagnostics);
    void clear();

private:
    const std::span<const OpcUa_UInt32> m_links;
    UaStatusCodeArray& m_results;
    UaDiagnosticInfos& m_diagnosticInfos;
    std::size_t m_done = 0;
};

} // namespace UaClientSdk
