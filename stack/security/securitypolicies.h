// The way into the security policies.
#pragma once

#include <stack/core/securitypolicy.h>

#include <memory>
#include <string_view>

namespace opcua {

/// Certificates in DER, own key in DER (PKCS#8 or PKCS#1). A certificate may bring its chain along, the
/// peer's own certificate being the first. Copied where they are kept.
struct SecurityMaterial
{
    ByteView ownCertificate;
    ByteView ownPrivateKey;
    ByteView peerCertificate; ///< the only one that the channel will accept
};

/// The policy of that URI. On Good policy is set; BadSecurityPolicyRejected when the policy is not offered
/// here, BadSecurityModeRejected when it does not go with the mode, BadCertificateInvalid when a certificate
/// does not decode, BadNoValidCertificates when the key does not or is another certificate's,
/// BadCertificatePolicyCheckFailed when a key is not RSA or its length not what the policy asks for.
[[nodiscard]] OpcUa_StatusCode makeSecurityPolicy(std::string_view uri, OpcUa_MessageSecurityMode mode,
                                                  const SecurityMaterial& material,
                                                  std::unique_ptr<SecurityPolicy>& policy);

/// Forgets the certificates and keys of channels that are gone.
void clearCredentialCaches();

} // namespace opcua
