// Asks the server of a session what it takes at once.
#pragma once

#include <uabase/values/uastatus.h>
#include <uaclientsdk/connection/sessioncontext.h>

#include <optional>

namespace UaClientSdk {

class UaSession;

/// Used by one thread at a time: that of a connect, later that of the session.
class OperationLimitsReader
{
public:
    /// Both are borrowed.
    OperationLimitsReader(UaSession& session, SessionContext& context)
        : m_session(session), m_context(context)
    {
    }

    /// Once for each session of the server, as soon as services may be called: an answer is not asked for
    /// again. A server that tells nothing sets no limits, and neither does one that cannot be asked.
    void update();

private:
    [[nodiscard]] UaStatus read(const ConnectionEpoch& epoch);
    /// False when the session was replaced meanwhile.
    [[nodiscard]] bool take(const ConnectionEpoch& epoch, const OperationLimits& limits);

    UaSession& m_session;
    SessionContext& m_context;
    std::optional<OpcUa_UInt32> m_begun; ///< the session whose server is not asked for the first time
    std::optional<OpcUa_UInt32> m_known; ///< the session whose server has answered
};

} // namespace UaClientSdk
