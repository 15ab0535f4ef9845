#include <uaclientsdk/connection/sessionactivator.h>

#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/activatorturn.h>
#include <uaclientsdk/connection/createsessioncheck.h>
#include <uaclientsdk/connection/cryptoprovider.h>
#include <uaclientsdk/connection/endpointselector.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/connection/sessionsignature.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace UaClientSdk {

namespace {

constexpr double minimumSessionTimeout = 30000.0;
constexpr OpcUa_Int64 halfAnHour = 18'000'000'000; // in units of 100 ns

// What a server says of a user whom it does not want, as against one whom it cannot take just now.
bool isRefusal(const UaStatus& status)
{
    constexpr std::array<OpcUa_StatusCode, 4> refusals = {
        OpcUa_BadUserAccessDenied, OpcUa_BadIdentityTokenInvalid, OpcUa_BadIdentityTokenRejected,
        OpcUa_BadUserSignatureInvalid};
    return std::find(refusals.begin(), refusals.end(), status.statusCode()) != refusals.end();
}

// What servers answer who do not know themselves by a URL.
bool isUrlRefused(const UaStatus& status)
{
    constexpr std::array<OpcUa_StatusCode, 5> refusals = {
        OpcUa_BadTcpEndpointUrlInvalid, OpcUa_BadServerUriInvalid, OpcUa_BadServerNameMissing,
        OpcUa_BadInvalidArgument, OpcUa_BadNotFound};
    return std::find(refusals.begin(), refusals.end(), status.statusCode()) != refusals.end();
}

ServiceSettings withTimeout(OpcUa_UInt32 milliseconds)
{
    ServiceSettings settings;
    settings.callTimeout = milliseconds;
    return settings;
}

} // namespace

// ---- CreateSession

UaStatus SessionActivator::createSession()
{
    TraceScope trace("UaSessionPrivate", "createSession");
    const ActivatorTurn turn(m_context);
    return trace.ending(sendCreateSession());
}

UaStatus SessionActivator::sendCreateSession()
{
    OwningRequest<Services::CreateSession> request;
    OwningResponse<Services::CreateSession> response;
    UaStatus result(OpcUa_CryptoProvider_GenerateNonce(minimumNonceLength, &request->ClientNonce));
    if (result.isBad())
        return result;
    const ServiceSettings settings = fillCreateSession(*request);
    const auto call = [&] {
        ServiceSettings once = settings;
        return callThroughGate<Services::CreateSession>(m_context, {CallKind::Identity}, once, *request,
                                                        *response);
    };
    result = call();
    if (isUrlRefused(result) && nameDialledUrl(*request)) {
        response.reset();
        result = call();
    }
    if (result.isBad()) {
        m_context.reportConnectError(UaClient::CreateSession, result, false);
        return result;
    }
    return acceptCreateSession(*response, UaByteString(request->ClientNonce));
}

ServiceSettings SessionActivator::fillCreateSession(OpcUa_CreateSessionRequest& request)
{
    OpcUa_ProxyStubConfiguration limits{};
    OpcUa_ProxyStub_GetConfiguration(&limits);
    SessionLock lock(m_context.mutex);
    const SessionConnectInfo& info = m_context.connectInfo;
    m_context.authenticationToken = UaNodeId();
    // a text that there is no memory for stays null, which the server tells us
    static_cast<void>(info.applicationUri.copyTo(&request.ClientDescription.ApplicationUri));
    static_cast<void>(info.productUri.copyTo(&request.ClientDescription.ProductUri));
    static_cast<void>(info.localeId.copyTo(&request.ClientDescription.ApplicationName.Locale));
    static_cast<void>(info.applicationName.copyTo(&request.ClientDescription.ApplicationName.Text));
    request.ClientDescription.ApplicationType = static_cast<OpcUa_ApplicationType>(info.applicationType);
    static_cast<void>(info.serverUri.copyTo(&request.ServerUri));
    const bool isMain = m_context.currentEndpointUrl == m_context.url;
    const UaString& named =
        info.endpointUrl.isEmpty() || !isMain ? m_context.currentEndpointUrl : info.endpointUrl;
    static_cast<void>(named.copyTo(&request.EndpointUrl));
    static_cast<void>(info.sessionName.copyTo(&request.SessionName));
    static_cast<void>(m_context.securityInfo.clientCertificate.copyTo(&request.ClientCertificate));
    request.RequestedSessionTimeout = std::max(info.sessionTimeout, minimumSessionTimeout);
    request.MaxResponseMessageSize = limits.MaxMessageSize;
    return withTimeout(info.connectTimeout);
}

// A server behind a gateway may know itself by the name that it was dialled by only. It is not asked by the
// other one again.
bool SessionActivator::nameDialledUrl(OpcUa_CreateSessionRequest& request)
{
    SessionLock lock(m_context.mutex);
    if (UaString(request.EndpointUrl) == m_context.currentEndpointUrl)
        return false;
    m_context.connectInfo.endpointUrl = UaString();
    OpcUa_String_Clear(&request.EndpointUrl);
    return OpcUa_IsGood(m_context.currentEndpointUrl.copyTo(&request.EndpointUrl));
}

UaStatus SessionActivator::acceptCreateSession(OpcUa_CreateSessionResponse& response,
                                               const UaByteString& clientNonce)
{
    SessionSecurityInfo security;
    UaString url;
    {
        SessionLock lock(m_context.mutex);
        security = m_context.securityInfo;
        url = m_context.currentEndpointUrl;
        m_context.sessionId = UaNodeId(response.SessionId);
        m_context.authenticationToken = UaNodeId(response.AuthenticationToken);
        m_context.connection.setServerSession(ConnectionState::ServerSession::Created);
        // a timeout that is no number would stop every timer that derives from it
        m_context.revisedSessionTimeout = std::isfinite(response.RevisedSessionTimeout)
                                              ? std::max(response.RevisedSessionTimeout, 0.0)
                                              : 0.0;
        m_context.setWatchdogTimeLocked(m_context.connectInfo.watchdogTime);
    }
    warnAboutServerTime(response.ResponseHeader.Timestamp);
    CreateSessionCheck check(security, url, clientNonce,
                             [this](const OverridableError& error, const UaByteString& certificate) {
                                 return m_context.errorOverrides.overridden(m_context, error, certificate);
                             });
    const UaStatus status = check.run(response);
    if (status.isGood()) {
        SessionLock lock(m_context.mutex);
        m_context.serverNonce = UaByteString(response.ServerNonce);
        m_context.serverCertificate = check.serverCertificate();
        m_context.endpoints.attachFrom(&response.NoOfServerEndpoints, &response.ServerEndpoints);
        return status;
    }
    if (!check.wasAsked())
        m_context.reportConnectError(UaClient::CreateSession, status, false);
    // who cannot prove to be the server must not make it forget what may be another client's
    closeRefused(!check.signatureFailed());
    return status;
}

void SessionActivator::warnAboutServerTime(OpcUa_DateTime serverTime) const
{
    const OpcUa_DateTime now = OpcUa_DateTime_UtcNow();
    // compared as distances, since the server's number may be anything
    const bool ahead = serverTime > now && serverTime - now > halfAnHour;
    const bool behind = serverTime < now && (serverTime < 0 || now - serverTime > halfAnHour);
    if (ahead || behind) {
        UaTrace::tWarning("Warning: Server time (%s) is more than 30 Minutes distinct from local system time",
                          UaDateTime(serverTime).toString().toUtf8());
    }
}

// ---- ActivateSession

UaStatus SessionActivator::activateSession()
{
    TraceScope trace("UaSessionPrivate", "activateSession");
    const ActivatorTurn turn(m_context);
    m_asked = false;
    Identity identity;
    ServiceSettings settings;
    {
        SessionLock lock(m_context.mutex);
        identity = m_context.securityInfo.userIdentityToken();
        settings = withTimeout(m_context.connectInfo.connectTimeout);
    }
    const UaStatus result = activate(settings, *identity);
    if (result.isBad() && !m_asked)
        m_context.reportConnectError(UaClient::ActivateSession, result, false);
    return trace.ending(result);
}

UaStatus SessionActivator::changeUser(ServiceSettings& settings, Identity identity)
{
    if (ActivatorTurn::isMine(m_context))
        return UaStatus(OpcUa_BadInvalidState);
    const ActivatorTurn turn(m_context);
    {
        SessionLock lock(m_context.mutex);
        ConnectionState& connection = m_context.connection;
        if (!connection.isRequested() ||
            (!connection.isServing() && !m_context.connectInfo.automaticReconnect))
            return UaStatus(OpcUa_BadConnectionClosed); // also when nobody will log in any more
        if (!connection.isServing()) {
            m_context.securityInfo.setUserIdentity(std::move(identity));
            connection.apply(ConnectionState::Event::UserChanged);
            m_context.sessionThread.raiseLocked(lock);
            return UaStatus(OpcUa_GoodCompletesAsynchronously);
        }
    }
    const UaStatus result = activate(settings, *identity);
    if (result.isGood()) {
        SessionLock lock(m_context.mutex);
        m_context.securityInfo.setUserIdentity(std::move(identity));
    }
    return result;
}

UaStatus SessionActivator::activate(ServiceSettings& settings, const UaUserIdentityToken& identity)
{
    OwningRequest<Services::ActivateSession> request;
    OwningResponse<Services::ActivateSession> response;
    {
        SessionLock lock(m_context.mutex);
        // without memory the server chooses the language
        static_cast<void>(m_context.localeIds.copyTo(&request->NoOfLocaleIds, &request->LocaleIds));
    }
    UaStatus result = fillActivateSession(identity, *request);
    if (result.isBad()) {
        IdentityTokenBuilder::wipeIdentity(*request);
        return result;
    }
    result = callThroughGate<Services::ActivateSession>(m_context, {CallKind::Identity}, settings, *request,
                                                        *response);
    IdentityTokenBuilder::wipeIdentity(*request);
    if (result.isBad())
        return result;
    result = acceptNewNonce(response->ServerNonce, IdentityTokenBuilder::usesNonce(*request));
    if (result.isBad()) {
        closeRefused(true);
        return result;
    }
    SessionLock lock(m_context.mutex);
    m_context.connection.setServerSession(ConnectionState::ServerSession::Activated);
    return result;
}

UaStatus SessionActivator::fillActivateSession(const UaUserIdentityToken& identity,
                                               OpcUa_ActivateSessionRequest& request)
{
    UaEndpointDescriptions endpoints;
    SessionSecurityInfo security;
    UaString url;
    {
        SessionLock lock(m_context.mutex);
        endpoints = m_context.endpoints;
        security = m_context.securityInfo;
        url = m_context.currentEndpointUrl;
    }
    const OpcUa_EndpointDescription* endpoint =
        selectEndpoint(endpoints.span(), url, security.securityPolicyUri, security.messageSecurityMode);
    if (!endpoint)
        endpoint = selectEndpointOfAnySecurity(endpoints.span(), url); // the application has overridden that
    if (!endpoint) {
        UaTrace::tError(
            "Error: UaSessionPrivate::activateSession - no endpoint matching the session security settings");
        return UaStatus(OpcUa_BadSecurityModeRejected);
    }
    UaTrace::tInfo("UaSessionPrivate::activateSession - using endpoint %s",
                   UaString(endpoint->EndpointUrl).toUtf8());
    const UaStatus status = addIdentity(identity, *endpoint, request);
    return status.isGood() && security.isSecured() ? signRequest(request) : status;
}

UaStatus SessionActivator::addIdentity(const UaUserIdentityToken& identity,
                                       const OpcUa_EndpointDescription& endpoint,
                                       OpcUa_ActivateSessionRequest& request)
{
    IdentityProtection wanted = protection();
    const UaStatus status = IdentityTokenBuilder(wanted).build(identity, endpoint, request);
    if (!(status == OpcUa_BadSecurityModeInsufficient))
        return status;
    const OverridableError error(UaClient::ActivateSession, status.statusCode(),
                                 status.diagnosticText().toStdString());
    m_asked = !m_context.errorOverrides.overridden(m_context, error, wanted.serverCertificate);
    if (m_asked)
        return status;
    wanted.plainPasswordAllowed = true;
    OpcUa_ExtensionObject_Clear(&request.UserIdentityToken);
    return IdentityTokenBuilder(wanted).build(identity, endpoint, request);
}

IdentityProtection SessionActivator::protection() const
{
    SessionLock lock(m_context.mutex);
    const SessionSecurityInfo& security = m_context.securityInfo;
    IdentityProtection result;
    result.channelPolicyUri = security.securityPolicyUri;
    result.channelEncrypts = security.messageSecurityMode == OpcUa_MessageSecurityMode_SignAndEncrypt ||
                             parseEndpointUrl(m_context.currentEndpointUrl.view()).scheme == "https";
    result.plainPasswordAllowed = security.plainPasswordAccepted;
    // the one that the channel was opened with, whatever the application overrides when CreateSession returns
    // another; without it nobody has judged the server's
    result.certificateJudged = !security.serverCertificate.isEmpty();
    result.serverCertificate =
        result.certificateJudged ? security.serverCertificate : m_context.serverCertificate;
    result.serverNonce = m_context.serverNonce;
    return result;
}

UaStatus SessionActivator::signRequest(OpcUa_ActivateSessionRequest& request)
{
    UaString policy;
    std::shared_ptr<const SecretBytes> key; // held while it is used
    UaByteString certificate;
    UaByteString nonce;
    {
        SessionLock lock(m_context.mutex);
        policy = m_context.securityInfo.securityPolicyUri;
        key = m_context.securityInfo.clientPrivateKey;
        certificate = m_context.serverCertificate;
        nonce = m_context.serverNonce;
    }
    const CryptoProvider provider(policy);
    return provider.status().isGood() ? signForServer(provider, SecretBytes::viewOf(key), certificate, nonce,
                                                      request.ClientSignature)
                                      : provider.status();
}

UaStatus SessionActivator::acceptNewNonce(const OpcUa_ByteString& nonce, bool matters)
{
    const UaByteString fresh(nonce);
    bool repeated = false;
    {
        SessionLock lock(m_context.mutex);
        matters = matters || m_context.securityInfo.isSecured();
        repeated = fresh == m_context.serverNonce;
        m_context.serverNonce = fresh;
    }
    if (!matters)
        return UaStatus(); // nothing is signed or encrypted with it
    if (nonce.Length < minimumNonceLength)
        UaTrace::tError("Nonce returned by server is too short (len=%i), closing session", nonce.Length);
    else if (repeated)
        UaTrace::tError("Server returned the same nonce as last time, closing session");
    else
        return UaStatus();
    return UaStatus(OpcUa_BadNonceInvalid);
}

// ---- CloseSession

void SessionActivator::closeRefused(bool deleteSubscriptions)
{
    OpcUa_UInt32 timeout = 0;
    {
        SessionLock lock(m_context.mutex);
        timeout = m_context.connectInfo.connectTimeout;
    }
    // nobody is left to tell
    static_cast<void>(closeSession(withTimeout(timeout), deleteSubscriptions));
}

UaStatus SessionActivator::closeSession(const ServiceSettings& settings, bool deleteSubscriptions)
{
    OwningRequest<Services::CloseSession> request;
    OwningResponse<Services::CloseSession> response;
    {
        SessionLock lock(m_context.mutex);
        ConnectionState& connection = m_context.connection;
        if (connection.serverSession() == ConnectionState::ServerSession::Unknown)
            return UaStatus();
        connection.setServerSession(ConnectionState::ServerSession::Unknown);
        if (connection.apply(ConnectionState::Event::SessionLost))
            m_context.sessionThread.raiseLocked(lock);
    }
    request->DeleteSubscriptions = deleteSubscriptions ? OpcUa_True : OpcUa_False;
    ServiceSettings own = settings;
    return callThroughGate<Services::CloseSession>(m_context, {CallKind::Close}, own, *request, *response);
}

bool SessionActivator::refusesUser(const UaStatus& activation) const
{
    SessionLock lock(m_context.mutex);
    return isRefusal(activation) &&
           m_context.securityInfo.userIdentityToken()->tokenType() != OpcUa_UserTokenType_Anonymous;
}

} // namespace UaClientSdk
