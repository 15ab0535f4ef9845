// Creates, activates and closes the session on an open channel.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/connection/identitytokenbuilder.h>
#include <uaclientsdk/connection/sessioncontext.h>

#include <memory>

namespace UaClientSdk {

/// Blocks. Any thread; what two threads ask for is done one after the other, since each activation answers
/// with the nonce for the next.
class SessionActivator
{
public:
    explicit SessionActivator(SessionContext& context) : m_context(context) {}

    /// CreateSession, OPC 10000-4, 5.6.2, with the checks of its answer.
    UaStatus createSession();
    /// ActivateSession, OPC 10000-4, 5.6.3, on a new or an existing session.
    UaStatus activateSession();
    /// Another user for the session, who is kept when the server takes him. Good; GoodCompletesAsynchronously
    /// without a session just now (the next reconnect logs him in); BadConnectionClosed when nothing is
    /// connected or nobody reconnects; BadInvalidState from within connectError; what the server answers.
    UaStatus changeUser(ServiceSettings& settings, std::shared_ptr<const UaUserIdentityToken> identity);
    UaStatus closeSession(const ServiceSettings& settings, bool deleteSubscriptions);
    /// Whether a bad activation is the server's word about the present user, who is not to be tried again.
    [[nodiscard]] bool refusesUser(const UaStatus& activation) const;

private:
    using Identity = std::shared_ptr<const UaUserIdentityToken>;

    UaStatus sendCreateSession();
    [[nodiscard]] ServiceSettings fillCreateSession(OpcUa_CreateSessionRequest& request);
    /// False when the request names the URL that is dialled already.
    [[nodiscard]] bool nameDialledUrl(OpcUa_CreateSessionRequest& request);
    UaStatus acceptCreateSession(OpcUa_CreateSessionResponse& response, const UaByteString& clientNonce);
    void warnAboutServerTime(OpcUa_DateTime serverTime) const;

    UaStatus activate(ServiceSettings& settings, const UaUserIdentityToken& identity);
    UaStatus fillActivateSession(const UaUserIdentityToken& identity, OpcUa_ActivateSessionRequest& request);
    UaStatus addIdentity(const UaUserIdentityToken& identity, const OpcUa_EndpointDescription& endpoint,
                         OpcUa_ActivateSessionRequest& request);
    UaStatus signRequest(OpcUa_ActivateSessionRequest& request);
    UaStatus acceptNewNonce(const OpcUa_ByteString& nonce, bool matters);
    [[nodiscard]] IdentityProtection protection() const;
    void closeRefused(bool deleteSubscriptions);

    SessionContext& m_context;
    bool m_asked = false; ///< the application knows of the error already; of who is the activator
};

} // namespace UaClientSdk
