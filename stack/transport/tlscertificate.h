// Judges the certificate of a TLS server.
#pragma once

#include <stack/security/certificatecheck.h>

#include <string>
#include <vector>

namespace opcua {

/// As checkCertificate, with what is different for TLS: the certificate must be made for host (a name or an
/// address, as in the URL), a trusted certificate ends the chain wherever it stands in it, and revocation
/// counts where there is a list. A key below 112 bits of security is found as
/// BadCertificatePolicyCheckFailed.
[[nodiscard]] std::vector<CertificateFinding> checkTlsCertificate(ByteView chain, const std::string& host,
                                                                  const PkiFolders& folders);

} // namespace opcua
