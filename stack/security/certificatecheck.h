// Judges a peer's certificate by the folders of a certificate store.
#pragma once

#include <stack/security/certificatefinding.h>
#include <stack/security/pkifolders.h>
#include <stack/security/policyprofile.h>

#include <functional>
#include <vector>

namespace opcua {

/// Everything that is wrong, in the order in which it decides; empty when the certificate is good. A chain is
/// the peer's certificate in DER and any issuers behind it. It is trusted when one of its certificates lies
/// in the folder of trusted ones. profile may be null: then keys and digests are not judged.
[[nodiscard]] std::vector<CertificateFinding> checkCertificate(ByteView chain, const PkiFolders& folders,
                                                               const PolicyProfile* profile);

/// Asked for each finding in turn: Good goes on, anything else ends with the finding's status.
using FindingJudge = std::function<OpcUa_StatusCode(const CertificateFinding&)>;

/// Good, or the status of the first finding that is not overridden. An empty judge overrides none.
[[nodiscard]] OpcUa_StatusCode judgeCertificate(const std::vector<CertificateFinding>& findings,
                                                const FindingJudge& judge);

} // namespace opcua
