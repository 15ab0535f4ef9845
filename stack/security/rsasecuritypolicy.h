// One channel under a policy with RSA keys.
#pragma once

#include <stack/security/asymmetricprotection.h>

#include <optional>
#include <string_view>

namespace opcua {

class RsaSecurityPolicy final : public SecurityPolicy
{
public:
    RsaSecurityPolicy(const PolicyProfile& profile, bool encrypts, ByteView ownChain, CertificatePointer own,
                      PrivateKeyPointer ownKey, CertificatePointer peer);

    std::string_view uri() const override { return m_profile.uri; }
    SequenceRule sequenceRule() const override { return SequenceRule::Legacy; }
    AsymmetricHeader ownHeader() const override;
    bool acceptsHeader(const AsymmetricHeader& header) const override;
    ChunkProtection& outgoingOpen() override { return m_open; }
    ChunkProtection& incomingOpen() override { return m_open; }
    std::optional<Bytes> makeNonce() override;
    bool acceptsNonce(ByteView nonce) override;
    TokenProtection deriveKeys(ByteView ownNonce, ByteView peerNonce) override;
    std::optional<TokenKeys> keysForRecord(ByteView ownNonce, ByteView peerNonce) override;

private:
    const PolicyProfile& m_profile;
    const bool m_encrypts;
    const Bytes m_ownChain;
    const CertificatePointer m_own;
    const CertificatePointer m_peer;
    AsymmetricProtection m_open;
    std::optional<Sha1Value> m_lastPeerNonce; ///< its digest: the nonce itself is a secret
};

} // namespace opcua
