// The seam between a secure channel and the cryptography of its security policy.
#pragma once

#include <opcua/opcua_types.h>
#include <stack/core/secret.h>
#include <stack/core/sequencenumber.h>

#include <memory>
#include <optional>
#include <string_view>

namespace opcua {

/// Protects the chunks of one direction with one set of keys. What is protected runs from the sequence header
/// on.
class ChunkProtection
{
public:
    virtual ~ChunkProtection() = default;

    /// Bytes (sequence header and body) that fit into room bytes once padding and signature are counted.
    [[nodiscard]] virtual size_t plainCapacity(size_t room) const = 0;
    /// What plain bytes come to on the wire.
    [[nodiscard]] virtual size_t sealedSize(size_t plain) const = 0;
    /// out holds, from chunkBegin on, headers with the final size and from sequenceBegin on the plain bytes;
    /// appends padding and signature and encrypts in place. False when the cryptography fails.
    [[nodiscard]] virtual bool seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin) = 0;
    /// Decrypts in place and verifies. Answers where the body ends, at or behind sequenceBegin; nothing when
    /// anything is wrong, with no difference between the causes in result or time.
    [[nodiscard]] virtual std::optional<size_t> unseal(MutableByteView chunk, size_t sequenceBegin) = 0;
};

/// The readable part of an Open chunk, OPC 10000-6, 6.7.2.3.
struct AsymmetricHeader
{
    std::string_view policyUri;
    ByteView senderCertificate;
    ByteView receiverThumbprint;
};

/// Keys of a token as somebody needs them who reads a recorded conversation.
struct TokenKeys
{
    struct Direction
    {
        Secret encrypting;
        Secret initializationVector;
        size_t signatureLength = 0;
    };
    Direction own;
    Direction peer;
};

/// One channel's view of its security policy: it knows the certificates and keys of both sides.
class SecurityPolicy
{
public:
    struct TokenProtection
    {
        std::unique_ptr<ChunkProtection> outgoing;
        std::unique_ptr<ChunkProtection> incoming;
    };

    virtual ~SecurityPolicy() = default;

    [[nodiscard]] virtual std::string_view uri() const = 0;
    [[nodiscard]] virtual SequenceRule sequenceRule() const = 0;
    /// What own Open chunks carry.
    [[nodiscard]] virtual AsymmetricHeader ownHeader() const = 0;
    /// Whether a peer's Open chunk names this policy, the certificate that was judged, and our thumbprint.
    [[nodiscard]] virtual bool acceptsHeader(const AsymmetricHeader& header) const = 0;
    [[nodiscard]] virtual ChunkProtection& outgoingOpen() = 0;
    [[nodiscard]] virtual ChunkProtection& incomingOpen() = 0;

    /// A fresh nonce of the policy's length; nothing when the random source fails.
    [[nodiscard]] virtual std::optional<Bytes> makeNonce() = 0;
    /// Length and freshness of the peer's nonce.
    [[nodiscard]] virtual bool acceptsNonce(ByteView nonce) = 0;
    /// Keys of a token; both members null when the cryptography fails.
    [[nodiscard]] virtual TokenProtection deriveKeys(ByteView ownNonce, ByteView peerNonce) = 0;
    /// The same keys once more, to be recorded; nothing when the policy has none.
    [[nodiscard]] virtual std::optional<TokenKeys> keysForRecord(ByteView ownNonce, ByteView peerNonce)
    {
        static_cast<void>(ownNonce);
        static_cast<void>(peerNonce);
        return std::nullopt;
    }
};

/// Policy None, mode None: chunks travel as they are.
[[nodiscard]] std::unique_ptr<SecurityPolicy> makeSecurityPolicyNone();

} // namespace opcua
