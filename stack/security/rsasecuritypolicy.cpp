#include <stack/security/rsasecuritypolicy.h>

#include <stack/security/symmetricprotection.h>

#include <algorithm>
#include <optional>
#include <ranges>
#include <utility>

namespace opcua {

RsaSecurityPolicy::RsaSecurityPolicy(const PolicyProfile& profile, bool encrypts, ByteView ownChain,
                                     CertificatePointer own, PrivateKeyPointer ownKey,
                                     CertificatePointer peer)
    : m_profile(profile), m_encrypts(encrypts), m_ownChain(ownChain.begin(), ownChain.end()),
      m_own(std::move(own)), m_peer(peer), m_open(profile, std::move(ownKey), std::move(peer))
{
}

AsymmetricHeader RsaSecurityPolicy::ownHeader() const
{
    return {m_profile.uri, m_ownChain, m_peer->thumbprint()};
}

// Only the certificate that was judged: another one of the same name or key is another one.
bool RsaSecurityPolicy::acceptsHeader(const AsymmetricHeader& header) const
{
    const auto sender = firstOfChain(header.senderCertificate);
    return header.policyUri == m_profile.uri && sender && std::ranges::equal(*sender, m_peer->der()) &&
           std::ranges::equal(header.receiverThumbprint, m_own->thumbprint());
}

std::optional<Bytes> RsaSecurityPolicy::makeNonce()
{
    Bytes nonce(m_profile.nonceLength);
    if (!fillRandom(nonce))
        return std::nullopt;
    return nonce;
}

bool RsaSecurityPolicy::acceptsNonce(ByteView nonce)
{
    const auto digest = sha1(nonce);
    if (nonce.size() != m_profile.nonceLength || !digest || digest == m_lastPeerNonce)
        return false;
    m_lastPeerNonce = digest;
    return true;
}

SecurityPolicy::TokenProtection RsaSecurityPolicy::deriveKeys(ByteView ownNonce, ByteView peerNonce)
{
    auto outgoing = deriveDirectionKeys(m_profile, peerNonce, ownNonce);
    auto incoming = deriveDirectionKeys(m_profile, ownNonce, peerNonce);
    if (!outgoing || !incoming)
        return {};
    return {SymmetricProtection::make(m_profile, std::move(*outgoing), m_encrypts, Direction::Outgoing),
            SymmetricProtection::make(m_profile, std::move(*incoming), m_encrypts, Direction::Incoming)};
}

std::optional<TokenKeys> RsaSecurityPolicy::keysForRecord(ByteView ownNonce, ByteView peerNonce)
{
    auto outgoing = deriveDirectionKeys(m_profile, peerNonce, ownNonce);
    auto incoming = deriveDirectionKeys(m_profile, ownNonce, peerNonce);
    if (!outgoing || !incoming)
        return std::nullopt;
    const size_t signatureLength = digestLength(m_profile.digest);
    return TokenKeys{
        {std::move(outgoing->encrypting), std::move(outgoing->initializationVector), signatureLength},
        {std::move(incoming->encrypting), std::move(incoming->initializationVector), signatureLength}};
}

} // namespace opcua
