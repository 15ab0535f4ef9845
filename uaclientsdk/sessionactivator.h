// Creates, activates and closes the session on an open channel.
#pragma once

#include <uabase/uastatus.h>
#include <uaclientsdk/sessioncontext.h>

namespace UaClientSdk {

// Blocks; one thread at a time.
class SessionActivator
{
public:
    explicit SessionActivator(SessionContext& context) : m_context(context) {}

    // CreateSession, OPC 10000-4, 5.6.2, with the checks of its answer.
    UaStatus createSession();
    // ActivateSession, OPC 10000-4, 5.6.3, on a new or an existing session.
    UaStatus activateSession();
    UaStatus closeSession(const ServiceSettings& settings, bool deleteSubscriptions);

private:
    UaStatus acceptCreateSessionResponse(OpcUa_CreateSessionResponse& response);
    UaStatus checkServerNonce(const OpcUa_ByteString& nonce);
    UaStatus acceptNewNonce(const OpcUa_ByteString& nonce);
    UaStatus fillUserIdentityLocked(OpcUa_ActivateSessionRequest& request) const;
    void warnAboutServerTime(OpcUa_DateTime serverTime) const;

    SessionContext& m_context;
};

} // namespace UaClientSdk
