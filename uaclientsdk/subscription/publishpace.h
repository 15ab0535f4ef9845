// Keeps a server that answers Publish requests with errors from being flooded.
#pragma once

#include <opcua/opcua_platform.h>

#include <utility>

namespace UaClientSdk {

/// Every refused request is sent again, and a server may refuse at once. For a second after each error at
/// most 20 requests go out in a tenth of a second. When the way to the server fails instead, each request may
/// cost it a handshake: the pause doubles from one such fault to the next. Times are ms of the system's tick
/// count. Not thread-safe.
class PublishPace
{
public:
    static constexpr OpcUa_UInt64 minimumLinkPause = 10;
    static constexpr OpcUa_UInt64 maximumLinkPause = 2560;

    /// An answer was an error; the next request waits for so long.
    void failed(OpcUa_UInt64 now, OpcUa_UInt64 pause);
    /// There was no answer. fault: what linkFaults was when the request was sent, for requests that were open
    /// together fail together. True when it is the second fault in a row.
    [[nodiscard]] bool linkFailed(OpcUa_UInt64 now, OpcUa_UInt32 fault);
    /// The server has answered, whatever it was.
    void answered()
    {
        if (std::exchange(m_linkPause, 0) > 0)
            m_pause = 0;
    }
    /// How often the way to the server has failed.
    [[nodiscard]] OpcUa_UInt32 linkFaults() const { return m_linkFaults; }
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
    OpcUa_UInt64 m_linkPause = 0; ///< 0: the last request was answered
    OpcUa_UInt32 m_linkFaults = 0;
    OpcUa_UInt64 m_windowBegin = 0;
    OpcUa_UInt32 m_sentInWindow = 0;
};

} // namespace UaClientSdk
