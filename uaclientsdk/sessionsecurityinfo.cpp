#include <uaclientsdk/sessionsecurityinfo.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>

namespace UaClientSdk {

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

UaStatus SessionSecurityInfo::splitCertificateChain(const UaByteString& chain,
                                                    UaByteStringArray& certificates)
{
    certificates.clear();
    const UaPkiCertificateCollection parts = UaPkiCertificateCollection::fromDERChain(chain);
    if (parts.hasErrors() || parts.size() == 0) {
        return UaStatus(OpcUa_BadDecodingError);
    }
    for (int i = 0; i < parts.size(); ++i) {
        if (!certificates.append(*parts[i].toByteStringDER().get())) {
            return UaStatus(OpcUa_BadOutOfMemory);
        }
    }
    return UaStatus();
}

} // namespace UaClientSdk
