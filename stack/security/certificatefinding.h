// What a check of a certificate finds wrong.
#pragma once

#include <stack/core/protocol.h>

#include <vector>

namespace opcua {

struct CertificateFinding
{
    OpcUa_StatusCode status = 0;
    int depth = 0;         ///< 0 the peer's certificate, 1 its issuer ...
    int providerError = 0; ///< the crypto library's number; 0 for what only this system asks for
    Bytes certificate;     ///< DER, of that depth
};

/// The status for the crypto library's error on a certificate of that depth.
[[nodiscard]] OpcUa_StatusCode statusOfProviderError(int error, int depth);

/// Whether an application may go on in spite of it: never when the certificate is not what it pretends to be.
[[nodiscard]] bool mayBeOverridden(OpcUa_StatusCode status);

/// In the order in which they decide, OPC 10000-4, 6.1.3: structure, chain, signature, policy, trust, time,
/// usage, revocation. Each once, also where several of a certificate have one status.
void putInOrder(std::vector<CertificateFinding>& findings);

} // namespace opcua
