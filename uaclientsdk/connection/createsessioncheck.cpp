#include <uaclientsdk/connection/createsessioncheck.h>

#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/cryptoprovider.h>
#include <uaclientsdk/connection/endpointcomparison.h>
#include <uaclientsdk/connection/endpointselector.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/connection/hostnames.h>
#include <uaclientsdk/connection/sessionsignature.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <string>

namespace UaClientSdk {

namespace {

EndpointSpan endpointsOf(const OpcUa_CreateSessionResponse& response)
{
    return {response.ServerEndpoints, static_cast<std::size_t>(std::max(response.NoOfServerEndpoints, 0))};
}

} // namespace

UaStatus CreateSessionCheck::run(const OpcUa_CreateSessionResponse& response)
{
    UaStatus status;
    if (m_security.isSecured()) {
        status = checkCertificate(UaByteString(response.ServerCertificate));
        if (status.isGood())
            status = checkHostName();
        if (status.isGood())
            status = checkSignature(response);
        if (status.isGood())
            status = checkNonce(response.ServerNonce);
    } else if (!m_security.serverCertificate.isEmpty()) {
        m_certificate = m_security.serverCertificate; // the one that the user has seen
    } else if (response.ServerCertificate.Length > 0) {
        status = splitCertificate(UaByteString(response.ServerCertificate));
    }
    if (status.isGood())
        status = checkEndpoints(response);
    return status.isGood() ? compareWithDiscovery(response) : status;
}

UaStatus CreateSessionCheck::ask(const OverridableError& error)
{
    if (m_question(error, m_certificate))
        return UaStatus();
    m_asked = true;
    return UaStatus(error.status, UaString(error.text));
}

UaStatus CreateSessionCheck::askAbout(OpcUa_StatusCode status, const char* text)
{
    return ask(OverridableError(UaClient::CreateSession, status, text));
}

UaStatus CreateSessionCheck::splitCertificate(const UaByteString& chain)
{
    UaByteStringArray certificates;
    const UaStatus status = SessionSecurityInfo::splitCertificateChain(chain, certificates);
    if (status.isBad()) {
        UaTrace::tError("Split server certificate chain failed with error '%s'", status.toString().toUtf8());
        return status;
    }
    m_certificate = UaByteString(certificates[0]);
    return status;
}

UaStatus CreateSessionCheck::checkCertificate(const UaByteString& chain)
{
    const UaByteString& channels = m_security.serverCertificate;
    if (chain.isEmpty()) {
        m_certificate = channels;
        return askAbout(OpcUa_BadCertificateInvalid, "The server certificate is empty");
    }
    if (const UaStatus status = splitCertificate(chain); status.isBad())
        return status;
    OpcUa_UInt32 bits = 0;
    if (OpcUa_IsBad(OpcUa_CryptoProvider_GetPublicKeyLength(m_certificate.get(), &bits)) || bits == 0) {
        UaTrace::tError("The server certificate public key is empty");
        return UaStatus(OpcUa_BadCertificateInvalid);
    }
    if (channels.isEmpty() || channels == m_certificate)
        return UaStatus();
    return askAbout(OpcUa_BadCertificateUseNotAllowed,
                    "Certificate returned by server is different than the one used to create the secure "
                    "channel");
}

UaStatus CreateSessionCheck::checkHostName()
{
    const EndpointUrl url = parseEndpointUrl(m_url.view());
    if (namesHost(UaPkiCertificate::fromDER(m_certificate).info(), url.host))
        return UaStatus();
    return askAbout(OpcUa_BadCertificateHostNameInvalid,
                    "Host name in server certificate does not match hostname the client connected to");
}

UaStatus CreateSessionCheck::checkSignature(const OpcUa_CreateSessionResponse& response)
{
    const CryptoProvider provider(m_security.securityPolicyUri);
    UaStatus status = provider.status();
    if (status.isGood()) {
        status = checkServerSignature(provider, m_certificate, m_security.clientCertificate, m_clientNonce,
                                      response.ServerSignature);
    }
    m_signatureFailed = status.isBad();
    return status;
}

UaStatus CreateSessionCheck::checkNonce(const OpcUa_ByteString& nonce)
{
    if (nonce.Length >= minimumNonceLength)
        return UaStatus();
    OverridableError error(UaClient::CreateSession, OpcUa_BadNonceInvalid,
                           "Nonce returned by server is too short (len=" + std::to_string(nonce.Length) +
                               ")");
    error.overriddenText = "Server nonce minimum length underrun error overridden by application";
    return ask(error);
}

// A server whose answers differ is not the one that was chosen, or somebody on the way has changed them.
UaStatus CreateSessionCheck::checkEndpoints(const OpcUa_CreateSessionResponse& response)
{
    const OpcUa_EndpointDescription* endpoint = selectEndpoint(
        endpointsOf(response), m_url, m_security.securityPolicyUri, m_security.messageSecurityMode);
    if (!endpoint) {
        return askAbout(OpcUa_BadSecurityModeRejected,
                        "The server's endpoints do not contain the security settings of the session");
    }
    UaByteStringArray certificates;
    const UaByteString offered(endpoint->ServerCertificate);
    if (!m_security.isSecured() || offered.isEmpty())
        return UaStatus(); // a server need not repeat its certificate here
    if (SessionSecurityInfo::splitCertificateChain(offered, certificates).isGood() &&
        UaByteString(certificates[0]) == m_certificate)
        return UaStatus();
    return askAbout(OpcUa_BadSecurityChecksFailed,
                    "The server's endpoints hold another certificate than the one used to create the secure "
                    "channel");
}

// Nobody protects what discovery returns, so it may have been thinned out on the way.
UaStatus CreateSessionCheck::compareWithDiscovery(const OpcUa_CreateSessionResponse& response)
{
    if (!m_security.discoveredEndpoints || m_security.discoveredEndpoints->isEmpty())
        return UaStatus();
    const ChosenSecurity chosen{m_url, m_security.securityPolicyUri, m_security.messageSecurityMode};
    switch (compareEndpoints(m_security.discoveredEndpoints->span(), endpointsOf(response), chosen)) {
    case EndpointDifference::None:
        break;
    case EndpointDifference::Harmless:
        UaTrace::tWarning("Warning: The server's endpoints are others than those that discovery returned");
        break;
    case EndpointDifference::Concealed:
        return askAbout(OpcUa_BadSecurityChecksFailed,
                        "The server's endpoints offer better security than those that discovery returned");
    }
    return UaStatus();
}

} // namespace UaClientSdk
