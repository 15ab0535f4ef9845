// How a session is secured and who its user is.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/certificatevalidationcallback.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/useridentitytoken.h>

#include <memory>

namespace UaClientSdk {

class SessionSecurityInfo : public ClientSecurityInfo
{
public:
    SessionSecurityInfo();

    UaString securityPolicyUri; ///< starts as the policy None
    OpcUa_MessageSecurityMode messageSecurityMode = OpcUa_MessageSecurityMode_None;
    /// DER, may hold a whole chain. The caller has judged it, or lets connect do so; passwords are encrypted
    /// and users sign for this one only. Empty: nobody knows who the server is.
    UaByteString serverCertificate;
    /// Only of secured sessions; without security a certificate that is still to be verified counts as none.
    bool verifyServerCertificateOnConnect = false;
    /// What discovery returned when these settings were chosen from it: a server whose endpoints turn out to
    /// be better ends the connect with BadSecurityChecksFailed, unless the application overrides it. Null:
    /// nobody asked, nothing is compared. Shared, for it may be long.
    std::shared_ptr<const UaEndpointDescriptions> discoveredEndpoints;
    /// The user knows that the password can be read on its way, or by whoever answers in the server's place,
    /// and has agreed; otherwise the session asks (connectError with BadSecurityModeInsufficient) before it
    /// sends one so.
    bool plainPasswordAccepted = false;
    /// The user has agreed to the policy Basic128Rsa15 for this server; otherwise the connect is refused with
    /// BadSecurityPolicyRejected.
    bool basic128Rsa15Accepted = false;

    /// A session is secured exactly when its policy is not None.
    [[nodiscard]] bool isSecured() const;

    void setAnonymousUserIdentity();
    void setUserPasswordUserIdentity(const UaString& user, const UaString& password);
    void setCertificateUserIdentity(const UaByteString& certificate, const UaByteString& privateKey);
    /// The same without a copy of the secret that nobody overwrites.
    void setUserPasswordUserIdentity(const UaString& user, const SecretBytes& password);
    void setCertificateUserIdentity(const UaByteString& certificate, const SecretBytes& privateKey);
    void setUserIdentity(std::shared_ptr<const UaUserIdentityToken> identity); ///< null: anonymous
    /// Never null; shared because copies of the record must not multiply secrets.
    [[nodiscard]] std::shared_ptr<const UaUserIdentityToken> userIdentityToken() const
    {
        return m_userIdentity;
    }

    /// Cuts a chain of DER certificates into its parts, the leaf first. BadDecodingError when one of them is
    /// none, bytes are left over or there are more than ten.
    [[nodiscard]] static UaStatus splitCertificateChain(const UaByteString& chain,
                                                        UaByteStringArray& certificates);

    /// Judges serverCertificate by the folders of pki() and what the policy asks of keys and digests; every
    /// finding is told to callback (which may be null), in the order in which they decide. Good, or the
    /// status of the first finding that stands: time and unknown revocation do not when the callback goes on.
    /// Reads the folders each time and may take a while.
    [[nodiscard]] UaStatus verifyServerCertificate(CertificateValidationCallback* callback);
    /// The same for serverCertificate as that of a TLS server at the URL, by the folders of httpsPki(): every
    /// finding is told, none is overridden.
    [[nodiscard]] UaStatus verifyTlsCertificate(const UaString& url, CertificateValidationCallback* callback);
    /// Whether a finding says nothing against the certificate itself, so that a callback may override it.
    [[nodiscard]] static bool mayBeOverridden(const UaStatusCode& finding);
    /// Whether serverCertificate names the host of the URL. A secured session whose server's certificate does
    /// not asks its application (connectError with BadCertificateHostNameInvalid).
    [[nodiscard]] bool namesHostOf(const UaString& url) const;
    /// What the finding is that verificationError is told with context.
    static void getCurrentErrorInformationOpenSSL(void* context, UaStatusCode& status, int& openSslError,
                                                  UaString& errorText);

private:
    std::shared_ptr<const UaUserIdentityToken> m_userIdentity;
};

} // namespace UaClientSdk
