#include <uaclientsdk/sessionactivator.h>

#include <algorithm>
#include <array>
#include <cmath>

#include <sys/random.h>

#include <opcua/opcua_clientapi.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uatrace.h>
#include <uaclientsdk/endpointselector.h>
#include <uaclientsdk/stackcall.h>

namespace UaClientSdk {

namespace {

constexpr OpcUa_Int32 nonceLength = 32;
constexpr double minimumSessionTimeout = 30000.0;
constexpr OpcUa_Int64 halfAnHour = 18'000'000'000; // in units of 100 ns

bool fillWithRandomBytes(std::array<OpcUa_Byte, nonceLength>& bytes)
{
    return getrandom(bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
}

} // namespace

UaStatus SessionActivator::createSession()
{
    UaTrace::tInOut("--> UaSessionPrivate::createSession");
    Encodeable<OpcUa_CreateSessionRequest> request(OpcUa_CreateSessionRequest_EncodeableType);
    Encodeable<OpcUa_CreateSessionResponse> response(OpcUa_CreateSessionResponse_EncodeableType);
    std::array<OpcUa_Byte, nonceLength> nonce{};
    if (!fillWithRandomBytes(nonce)) {
        return UaStatus(OpcUa_BadInternalError);
    }
    OpcUa_ByteString_Assign(&request->ClientNonce, nonce.data(), nonceLength);
    {
        SessionLock lock(m_context.mutex);
        const SessionConnectInfo& info = m_context.connectInfo;
        m_context.authenticationToken = UaNodeId();
        ServiceSettings settings;
        settings.callTimeout = info.connectTimeout;
        m_context.fillRequestHeaderLocked(settings, request->RequestHeader);
        info.applicationUri.copyTo(&request->ClientDescription.ApplicationUri);
        info.productUri.copyTo(&request->ClientDescription.ProductUri);
        info.localeId.copyTo(&request->ClientDescription.ApplicationName.Locale);
        info.applicationName.copyTo(&request->ClientDescription.ApplicationName.Text);
        request->ClientDescription.ApplicationType = static_cast<OpcUa_ApplicationType>(info.applicationType);
        info.serverUri.copyTo(&request->ServerUri);
        m_context.currentEndpointUrl.copyTo(&request->EndpointUrl);
        info.sessionName.copyTo(&request->SessionName);
        m_context.securityInfo.clientCertificate.copyTo(&request->ClientCertificate);
        request->RequestedSessionTimeout = std::max(info.sessionTimeout, minimumSessionTimeout);
        OpcUa_ProxyStubConfiguration limits{};
        OpcUa_ProxyStub_GetConfiguration(&limits);
        request->MaxResponseMessageSize = limits.MaxMessageSize;
    }
    UaStatus result(
        callStack("CreateSession", OpcUa_ClientApi_CreateSession, m_context.channel, *request, *response));
    if (result.isGood()) {
        result = acceptCreateSessionResponse(*response);
    } else {
        m_context.reportConnectError(UaClient::CreateSession, result, false);
    }
    UaTrace::tInOut("<-- UaSessionPrivate::createSession [ret=0x%lx]",
                    static_cast<unsigned long>(result.statusCode()));
    return result;
}

UaStatus SessionActivator::acceptCreateSessionResponse(OpcUa_CreateSessionResponse& response)
{
    bool secured = false;
    {
        SessionLock lock(m_context.mutex);
        secured = m_context.securityInfo.isSecured();
        m_context.sessionId = UaNodeId(response.SessionId);
        m_context.authenticationToken = UaNodeId(response.AuthenticationToken);
        m_context.serverNonce = UaByteString(response.ServerNonce);
        m_context.serverCertificate = UaByteString(response.ServerCertificate);
        m_context.endpoints.attachFrom(&response.NoOfServerEndpoints, &response.ServerEndpoints);
        m_context.sessionCreated = true;
        // a timeout that is no number would stop every timer that derives from it
        m_context.revisedSessionTimeout = std::isfinite(response.RevisedSessionTimeout)
                                              ? std::max(response.RevisedSessionTimeout, 0.0)
                                              : 0.0;
        m_context.setWatchdogTimeLocked(m_context.connectInfo.watchdogTime);
    }
    warnAboutServerTime(response.ResponseHeader.Timestamp);
    return secured ? checkServerNonce(response.ServerNonce) : UaStatus();
}

UaStatus SessionActivator::checkServerNonce(const OpcUa_ByteString& nonce)
{
    if (nonce.Length >= nonceLength) {
        return UaStatus();
    }
    const UaStatus error(OpcUa_BadNonceInvalid);
    if (m_context.reportConnectError(UaClient::CreateSession, error, true)) {
        UaTrace::tWarning("Server nonce minimum length underrun error overridden by application");
        return UaStatus();
    }
    UaTrace::tError("Nonce returned by server is too short (len=%i)", nonce.Length);
    return error;
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

UaStatus SessionActivator::activateSession()
{
    UaTrace::tInOut("--> UaSessionPrivate::activateSession");
    Encodeable<OpcUa_ActivateSessionRequest> request(OpcUa_ActivateSessionRequest_EncodeableType);
    Encodeable<OpcUa_ActivateSessionResponse> response(OpcUa_ActivateSessionResponse_EncodeableType);
    UaStatus result;
    {
        SessionLock lock(m_context.mutex);
        ServiceSettings settings;
        settings.callTimeout = m_context.connectInfo.connectTimeout;
        m_context.fillRequestHeaderLocked(settings, request->RequestHeader);
        m_context.localeIds.copyTo(&request->NoOfLocaleIds, &request->LocaleIds);
        result = fillUserIdentityLocked(*request);
    }
    if (result.isGood()) {
        result = UaStatus(callStack("ActivateSession", OpcUa_ClientApi_ActivateSession, m_context.channel,
                                    *request, *response));
    }
    if (result.isGood()) {
        result = acceptNewNonce(response->ServerNonce);
    }
    if (result.isGood()) {
        SessionLock lock(m_context.mutex);
        m_context.activatedOnce = true;
    } else {
        m_context.reportConnectError(UaClient::ActivateSession, result, false);
    }
    UaTrace::tInOut("<-- UaSessionPrivate::activateSession [ret=0x%lx]",
                    static_cast<unsigned long>(result.statusCode()));
    return result;
}

UaStatus SessionActivator::fillUserIdentityLocked(OpcUa_ActivateSessionRequest& request) const
{
    m_context.mutex.assertLocked();
    const SessionSecurityInfo& security = m_context.securityInfo;
    const OpcUa_EndpointDescription* endpoint =
        selectEndpoint(m_context.endpoints, m_context.currentEndpointUrl, security.securityPolicyUri,
                       security.messageSecurityMode);
    if (!endpoint) {
        UaTrace::tError(
            "Error: UaSessionPrivate::activateSession - no endpoint matching the session security settings");
        return UaStatus(OpcUa_BadSecurityModeRejected);
    }
    UaTrace::tInfo("UaSessionPrivate::activateSession - using endpoint %s",
                   UaString(endpoint->EndpointUrl).toUtf8());
    const OpcUa_UserTokenType type = security.userIdentityToken()->tokenType();
    if (type != OpcUa_UserTokenType_Anonymous) {
        UaTrace::tError("Error: UaSessionPrivate::activateSession - only anonymous users can log in over an "
                        "unsecured channel");
        return UaStatus(OpcUa_BadIdentityTokenRejected);
    }
    const OpcUa_UserTokenPolicy* policy = selectUserTokenPolicy(*endpoint, type);
    if (!policy) {
        UaTrace::tError(
            "Error: UaSessionPrivate::activateSession - can't find AnonymousIdentityToken in endpoint "
            "description");
        return UaStatus(OpcUa_BadIdentityTokenRejected);
    }
    auto* token = static_cast<OpcUa_AnonymousIdentityToken*>(
        OpcUa_EncodeableObject_Create(&OpcUa_AnonymousIdentityToken_EncodeableType));
    if (!token) {
        return UaStatus(OpcUa_BadOutOfMemory);
    }
    OpcUa_String_Copy(&policy->PolicyId, &token->PolicyId);
    OpcUa_ExtensionObject_AttachEncodeable(&request.UserIdentityToken,
                                           &OpcUa_AnonymousIdentityToken_EncodeableType, token);
    return UaStatus();
}

UaStatus SessionActivator::acceptNewNonce(const OpcUa_ByteString& nonce)
{
    const UaByteString fresh(nonce);
    bool secured = false;
    bool repeated = false;
    {
        SessionLock lock(m_context.mutex);
        secured = m_context.securityInfo.isSecured();
        repeated = fresh == m_context.serverNonce;
        m_context.serverNonce = fresh;
    }
    if (!secured) {
        return UaStatus(); // nothing is signed or encrypted with it
    }
    if (nonce.Length < nonceLength) {
        UaTrace::tError("Nonce returned by server is too short (len=%i), closing session", nonce.Length);
    } else if (repeated) {
        UaTrace::tError("Server returned the same nonce as last time, closing session");
    } else {
        return UaStatus();
    }
    return UaStatus(OpcUa_BadNonceInvalid);
}

UaStatus SessionActivator::closeSession(const ServiceSettings& settings, bool deleteSubscriptions)
{
    Encodeable<OpcUa_CloseSessionRequest> request(OpcUa_CloseSessionRequest_EncodeableType);
    Encodeable<OpcUa_CloseSessionResponse> response(OpcUa_CloseSessionResponse_EncodeableType);
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.sessionCreated) {
            return UaStatus();
        }
        m_context.sessionCreated = false;
        m_context.activatedOnce = false;
        m_context.fillRequestHeaderLocked(settings, request->RequestHeader);
    }
    request->DeleteSubscriptions = deleteSubscriptions ? OpcUa_True : OpcUa_False;
    return UaStatus(
        callStack("CloseSession", OpcUa_ClientApi_CloseSession, m_context.channel, *request, *response));
}

} // namespace UaClientSdk
