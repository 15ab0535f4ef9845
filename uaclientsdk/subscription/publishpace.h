// Keeps a server that answers Publish requests with errors from being flooded.
#pragma once

#include <opcua/opcua_platform.h>

namespace UaClientSdk {

/// Every refused request is sent again, and a server may refuse at once. For a second after each error at
/// most 20 requests go out in a tenth of a second. Times are ms of the system's tick count. Not thread-safe.
class PublishPace
{
public:
    /// An answer was an error; the next request waits for so long.
    void failed(OpcUa_UInt64 now, OpcUa_UInt64 pause);
    /// Whether a request may go now; the caller sends it when it may.
    [[nodiscard]] bool take(OpcUa_UInt64 now);
    void reset() { *this = PublishPace(); }

private:
    /// A clock that went backwards has left every period.
    [[nodiscard]] static bool within(OpcUa_UInt64 now, OpcUa_UInt64 begin, OpcUa_UInt64 period)
    {
        return now >= begin && now - begin < period;
    }

    bool m_failing = false;
    OpcUa_UInt64 m_lastError = 0;
    OpcUa_UInt64 m_pause = 0;
    OpcUa_UInt64 m_windowBegin = 0;
    OpcUa_UInt32 m_sentInWindow = 0;
};

} // namespace UaClientSdk
