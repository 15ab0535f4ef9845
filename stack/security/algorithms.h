// Algorithms of the crypto library, looked up once: a look-up takes locks and outweighs a small message.
#pragma once

#include <stack/security/handles.h>
#include <stack/security/policyprofile.h>

#include <array>
#include <optional>

namespace opcua {

using Sha1Value = std::array<OpcUa_Byte, 20>;

/// Null when the library does not offer it. Valid as long as the process.
[[nodiscard]] const EVP_MD* digestAlgorithm(Digest digest);
[[nodiscard]] const EVP_CIPHER* aesCbc(size_t keyLength);
[[nodiscard]] EVP_MAC* hmacAlgorithm();
[[nodiscard]] const char* digestName(Digest digest);

[[nodiscard]] std::optional<Sha1Value> sha1(ByteView bytes);
/// From the generator for values that others see.
[[nodiscard]] bool fillRandom(MutableByteView bytes);

} // namespace opcua
