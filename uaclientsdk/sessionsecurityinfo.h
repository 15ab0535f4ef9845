// How a session is secured and who its user is.
#pragma once

#include <memory>
#include <opcua/opcua_types.h>
#include <uabase/uaarrays.h>
#include <uabase/uabytestring.h>
#include <uabase/uastatus.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/useridentitytoken.h>

namespace UaClientSdk {

class SessionSecurityInfo : public ClientSecurityInfo
{
public:
    SessionSecurityInfo();

    UaString securityPolicyUri; // starts as the policy None
    OpcUa_MessageSecurityMode messageSecurityMode = OpcUa_MessageSecurityMode_None;
    UaByteString serverCertificate; // DER, may hold a whole chain
    bool verifyServerCertificateOnConnect = false;

    // A session is secured exactly when its policy is not None.
    [[nodiscard]] bool isSecured() const;

    void setAnonymousUserIdentity();
    void setUserPasswordUserIdentity(const UaString& user, const UaString& password);
    void setCertificateUserIdentity(const UaByteString& certificate, const UaByteString& privateKey);
    // Never null; shared because copies of the record must not multiply secrets.
    [[nodiscard]] std::shared_ptr<const UaUserIdentityToken> userIdentityToken() const
    {
        return m_userIdentity;
    }

    // Cuts a chain of DER certificates into its parts, the leaf first. BadDecodingError when one of them is
    // none, bytes are left over or there are more than ten.
    [[nodiscard]] static UaStatus splitCertificateChain(const UaByteString& chain,
                                                        UaByteStringArray& certificates);

private:
    std::shared_ptr<const UaUserIdentityToken> m_userIdentity;
};

} // namespace UaClientSdk
