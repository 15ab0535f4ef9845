// What ActivateSession says about the user.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/useridentitytoken.h>

#include <utility>

namespace UaClientSdk {

class CryptoProvider;

/// What a user's secrets are protected with.
struct IdentityProtection
{
    UaString channelPolicyUri;
    bool channelEncrypts = false;      ///< nobody on the way can read what the session sends
    bool plainPasswordAllowed = false; ///< somebody has agreed to a password that can be read on the way
    bool certificateJudged = false;    ///< somebody has accepted serverCertificate as this server's
    UaByteString serverCertificate;    ///< one, DER; empty when the server has none
    UaByteString serverNonce;
};

/// Fills the user's part of an initialised request. Secrets that it puts there in clear are the caller's to
/// overwrite (wipeIdentity).
class IdentityTokenBuilder
{
public:
    explicit IdentityTokenBuilder(IdentityProtection protection) : m_protection(std::move(protection)) {}

    /// BadIdentityTokenRejected when the endpoint takes no such user or asks for a policy that is not offered
    /// here; BadSecurityModeInsufficient when the password could be read on the way, or by whom nobody has
    /// judged, and nobody has agreed; BadCertificateUntrusted when a user would sign for a server that nobody
    /// has judged; BadNonceInvalid when the server's nonce is too short to protect a secret; or why
    /// encrypting or signing failed.
    [[nodiscard]] UaStatus build(const UaUserIdentityToken& identity,
                                 const OpcUa_EndpointDescription& endpoint,
                                 OpcUa_ActivateSessionRequest& request) const;
    /// Whether the request proves or hides something with the server's nonce.
    [[nodiscard]] static bool usesNonce(const OpcUa_ActivateSessionRequest& request);
    /// Overwrites a password that lies in clear in a request.
    static void wipeIdentity(OpcUa_ActivateSessionRequest& request);

private:
    [[nodiscard]] UaStatus addAnonymous(const OpcUa_UserTokenPolicy& policy,
                                        OpcUa_ActivateSessionRequest& request) const;
    [[nodiscard]] UaStatus addUserName(const UaUserNameIdentityToken& identity,
                                       const OpcUa_UserTokenPolicy& policy,
                                       OpcUa_ActivateSessionRequest& request) const;
    [[nodiscard]] UaStatus addCertificate(const UaCertificateIdentityToken& identity,
                                          const OpcUa_UserTokenPolicy& policy,
                                          OpcUa_ActivateSessionRequest& request) const;
    [[nodiscard]] UaStatus protectPassword(const CryptoProvider& provider, const SecretBytes& password,
                                           OpcUa_UserNameIdentityToken& token) const;
    [[nodiscard]] bool mayLeaveUnprotected() const;
    [[nodiscard]] UaString policyUriOf(const OpcUa_UserTokenPolicy& policy) const;
    [[nodiscard]] UaStatus checkNonce() const;

    IdentityProtection m_protection;
};

} // namespace UaClientSdk
