// What the security policies are made of, OPC 10000-7, 6.6.
#pragma once

#include <stack/core/protocol.h>

#include <string_view>

namespace opcua {

enum class Digest { Sha1, Sha256 };
enum class RsaSignature { Pkcs1Sha1, Pkcs1Sha256, PssSha256 };
enum class RsaEncryption { Pkcs1, OaepSha1, OaepSha256 };

struct PolicyProfile
{
    const char* uri;
    const char* signatureUri;  ///< of the asymmetric signature
    const char* encryptionUri; ///< of the asymmetric encryption
    RsaSignature signature;
    RsaEncryption encryption;
    Digest digest;              ///< of message signatures and of key derivation
    size_t signingKeyLength;    ///< bytes, of message signatures
    size_t encryptingKeyLength; ///< bytes, AES in CBC mode
    size_t nonceLength;         ///< bytes, exactly
    int minKeyBits;             ///< RSA
    int maxKeyBits;
    bool weakCertificatesDenied; ///< signed with SHA-1
};

/// Null for a policy that is not offered, and for None.
[[nodiscard]] const PolicyProfile* findPolicyProfile(std::string_view uri);

[[nodiscard]] constexpr size_t digestLength(Digest digest)
{
    return digest == Digest::Sha1 ? 20 : 32;
}

} // namespace opcua
