// Open chunks: signed with the sender's key, encrypted for the receiver, OPC 10000-6, 6.7.2.
#pragma once

#include <stack/core/securitypolicy.h>
#include <stack/security/certificate.h>
#include <stack/security/policyprofile.h>
#include <stack/security/privatekey.h>

#include <optional>
#include <utility>

namespace opcua {

/// One object serves both directions: out it signs with the own key and encrypts with the peer's, in the
/// other way round.
class AsymmetricProtection final : public ChunkProtection
{
public:
    /// Both keys lie within the profile's limits.
    AsymmetricProtection(const PolicyProfile& profile, PrivateKeyPointer own, CertificatePointer peer)
        : m_profile(profile), m_own(std::move(own)), m_peer(std::move(peer))
    {
    }

    size_t plainCapacity(size_t room) const override;
    size_t sealedSize(size_t plain) const override;
    bool seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin) override;
    std::optional<size_t> unseal(MutableByteView chunk, size_t sequenceBegin) override;

private:
    /// Padding length, padding, signature behind plain bytes.
    [[nodiscard]] size_t blockCount(size_t plain) const;
    [[nodiscard]] size_t signatureSize() const;

    const PolicyProfile& m_profile;
    PrivateKeyPointer m_own;
    CertificatePointer m_peer;
};

} // namespace opcua
