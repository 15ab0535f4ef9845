// Keys of a security token out of the two nonces, OPC 10000-6, 6.7.5.
#pragma once

#include <stack/core/secret.h>
#include <stack/security/policyprofile.h>

#include <optional>

namespace opcua {

/// P_SHA1 or P_SHA256 of RFC 5246, 5, as long as length. Nothing when the cryptography fails.
[[nodiscard]] std::optional<Secret> pseudoRandomBytes(Digest digest, ByteView secret, ByteView seed,
                                                      size_t length);

/// Keys of one direction.
struct DirectionKeys
{
    Secret signing;
    Secret encrypting;
    Secret initializationVector;
};

/// Keys of the side whose own nonce is the seed; the other side's is the secret.
[[nodiscard]] std::optional<DirectionKeys> deriveDirectionKeys(const PolicyProfile& profile, ByteView secret,
                                                               ByteView seed);

} // namespace opcua
