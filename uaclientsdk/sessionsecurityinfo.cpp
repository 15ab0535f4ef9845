#include <uaclientsdk/sessionsecurityinfo.h>

#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/channelconnectinfo.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/connection/hostnames.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace UaClientSdk {

namespace {

struct Verification
{
    SessionSecurityInfo& security;
    CertificateValidationCallback* callback;
    bool ended = false; // by the callback
};

OpcUa_StatusCode tellFinding(const OpcUa_CertificateValidation* finding, void* context)
{
    auto& verification = *static_cast<Verification*>(context);
    if (!verification.callback || verification.ended)
        return finding->Status;
    OpcUa_CertificateValidation shown = *finding;
    const int answer = verification.callback->verificationError(
        &verification.security, &shown, UaByteString(finding->Certificate),
        static_cast<unsigned int>(finding->ProviderError), static_cast<unsigned int>(finding->Depth));
    verification.ended = answer != 1;
    const bool overridden = !verification.ended && SessionSecurityInfo::mayBeOverridden(finding->Status);
    return overridden ? static_cast<OpcUa_StatusCode>(OpcUa_Good) : finding->Status;
}

} // namespace

SessionSecurityInfo::SessionSecurityInfo()
    : securityPolicyUri(OpcUa_SecurityPolicy_None),
      m_userIdentity(std::make_shared<UaAnonymousIdentityToken>())
{
}

bool SessionSecurityInfo::isSecured() const
{
    return securityPolicyUri.view() != OpcUa_SecurityPolicy_None;
}

void SessionSecurityInfo::setAnonymousUserIdentity()
{
    m_userIdentity = std::make_shared<UaAnonymousIdentityToken>();
}

void SessionSecurityInfo::setUserPasswordUserIdentity(const UaString& user, const UaString& password)
{
    m_userIdentity = std::make_shared<UaUserNameIdentityToken>(user, password);
}

void SessionSecurityInfo::setCertificateUserIdentity(const UaByteString& certificate,
                                                     const UaByteString& privateKey)
{
    m_userIdentity = std::make_shared<UaCertificateIdentityToken>(certificate, privateKey);
}

void SessionSecurityInfo::setUserPasswordUserIdentity(const UaString& user, const SecretBytes& password)
{
    m_userIdentity = std::make_shared<UaUserNameIdentityToken>(user, password);
}

void SessionSecurityInfo::setCertificateUserIdentity(const UaByteString& certificate,
                                                     const SecretBytes& privateKey)
{
    m_userIdentity = std::make_shared<UaCertificateIdentityToken>(certificate, privateKey);
}

void SessionSecurityInfo::setUserIdentity(std::shared_ptr<const UaUserIdentityToken> identity)
{
    m_userIdentity = std::move(identity);
    if (!m_userIdentity)
        setAnonymousUserIdentity();
}

UaStatus SessionSecurityInfo::splitCertificateChain(const UaByteString& chain,
                                                    UaByteStringArray& certificates)
{
    certificates.clear();
    const UaPkiCertificateCollection parts = UaPkiCertificateCollection::fromDERChain(chain);
    if (parts.hasErrors() || parts.size() == 0)
        return UaStatus(OpcUa_BadDecodingError);
    for (int i = 0; i < parts.size(); ++i)
        if (!certificates.append(*parts[i].toByteStringDER().get()))
            return UaStatus(OpcUa_BadOutOfMemory);
    return UaStatus();
}

UaStatus SessionSecurityInfo::verifyServerCertificate(CertificateValidationCallback* callback)
{
    const OpcUa_PkiConfiguration configuration = pkiConfigurationOf(pki());
    Verification verification{*this, callback};
    return UaStatus(OpcUa_Certificate_Verify(serverCertificate.get(), &configuration,
                                             securityPolicyUri.toUtf8(), tellFinding, &verification));
}

UaStatus SessionSecurityInfo::verifyTlsCertificate(const UaString& url,
                                                   CertificateValidationCallback* callback)
{
    const OpcUa_PkiConfiguration configuration = pkiConfigurationOf(httpsPki());
    Verification verification{*this, callback};
    const auto tell = [](const OpcUa_CertificateValidation* finding, void* context) {
        static_cast<void>(tellFinding(finding, context));
        return finding->Status;
    };
    return UaStatus(OpcUa_Certificate_VerifyTls(serverCertificate.get(),
                                                parseEndpointUrl(url.view()).host.c_str(), &configuration,
                                                tell, &verification));
}

bool SessionSecurityInfo::mayBeOverridden(const UaStatusCode& finding)
{
    constexpr std::array<OpcUa_StatusCode, 4> overridable = {
        OpcUa_BadCertificateTimeInvalid, OpcUa_BadCertificateIssuerTimeInvalid,
        OpcUa_BadCertificateRevocationUnknown, OpcUa_BadCertificateIssuerRevocationUnknown};
    return std::find(overridable.begin(), overridable.end(), finding.code()) != overridable.end();
}

bool SessionSecurityInfo::namesHostOf(const UaString& url) const
{
    const std::string host = parseEndpointUrl(url.view()).host;
    const UaPkiCertificate own = UaPkiCertificateCollection::fromDERChain(serverCertificate).certificate(0);
    return !host.empty() && namesHost(own.info(), host);
}

void SessionSecurityInfo::getCurrentErrorInformationOpenSSL(void* context, UaStatusCode& status,
                                                            int& openSslError, UaString& errorText)
{
    const auto* const finding = static_cast<const OpcUa_CertificateValidation*>(context);
    status = finding ? finding->Status : static_cast<OpcUa_StatusCode>(OpcUa_Good);
    openSslError = finding ? finding->ProviderError : 0;
    if (openSslError != 0)
        errorText = UaPkiErrors::verificationErrorText(openSslError);
    else if (status == OpcUa_BadCertificateUseNotAllowed)
        errorText = "the certificate may not be used to sign or to talk to clients";
    else if (status == OpcUa_BadCertificatePolicyCheckFailed)
        errorText = "key or signature of the certificate is not what the security policy asks for";
    else
        errorText = status.isGood() ? UaString("") : UaString("the certificate cannot be decoded");
}

} // namespace UaClientSdk
