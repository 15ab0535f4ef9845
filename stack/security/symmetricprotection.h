// Chunks under the keys of a security token, OPC 10000-6, 6.7.2 and 6.7.6.
#pragma once

#include <stack/core/securitypolicy.h>
#include <stack/security/handles.h>
#include <stack/security/keyderivation.h>

#include <memory>
#include <optional>

namespace opcua {

enum class Direction { Outgoing, Incoming };

/// One direction. Cipher and MAC are set up once and started again for each chunk, for setting them up takes
/// longer than a small message.
class SymmetricProtection final : public ChunkProtection
{
public:
    /// Null when the cryptography fails.
    [[nodiscard]] static std::unique_ptr<ChunkProtection>
    make(const PolicyProfile& profile, DirectionKeys keys, bool encrypts, Direction direction);

    size_t plainCapacity(size_t room) const override;
    size_t sealedSize(size_t plain) const override;
    bool seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin) override;
    std::optional<size_t> unseal(MutableByteView chunk, size_t sequenceBegin) override;

private:
    SymmetricProtection(const PolicyProfile& profile, DirectionKeys keys, bool encrypts);
    [[nodiscard]] bool prepare(const PolicyProfile& profile, Direction direction);
    [[nodiscard]] bool sign(ByteView bytes, OpcUa_Byte* signature);
    [[nodiscard]] bool crypt(MutableByteView bytes);

    const size_t m_signatureLength;
    const bool m_encrypts;
    DirectionKeys m_keys; ///< the first vector is needed for each chunk; the rest is wiped once in use
    CipherContext m_cipher;
    MacContext m_mac;
};

} // namespace opcua
