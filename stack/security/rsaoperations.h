// What the policies do with RSA keys: messages longer than a key go block by block.
#pragma once

#include <stack/security/handles.h>
#include <stack/security/policyprofile.h>

#include <optional>

namespace opcua {

/// Bytes of one block on the wire and before encryption.
[[nodiscard]] size_t cipherBlockSize(EVP_PKEY* key);
/// 0 when the key is too short for the padding.
[[nodiscard]] size_t plainBlockSize(EVP_PKEY* key, RsaEncryption encryption);

/// Every block but the last is full. Nothing when the cryptography fails.
[[nodiscard]] std::optional<Bytes> rsaEncrypt(EVP_PKEY* key, RsaEncryption encryption, ByteView plain);
/// Takes blocks of any fill. Nothing when one does not decrypt, or the size is not a number of blocks.
[[nodiscard]] std::optional<Bytes> rsaDecrypt(EVP_PKEY* key, RsaEncryption encryption, ByteView cipher);
/// Decrypts full blocks in place; out gets as many bytes as full blocks hold. A block that does not decrypt
/// makes the answer false, but not the work less.
[[nodiscard]] bool rsaDecryptFullBlocks(EVP_PKEY* key, RsaEncryption encryption, ByteView cipher, Bytes& out);

[[nodiscard]] std::optional<Bytes> rsaSign(EVP_PKEY* key, RsaSignature algorithm, ByteView data);
[[nodiscard]] bool rsaVerify(EVP_PKEY* key, RsaSignature algorithm, ByteView data, ByteView signature);

} // namespace opcua
