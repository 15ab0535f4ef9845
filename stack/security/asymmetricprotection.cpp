#include <stack/security/asymmetricprotection.h>

#include <stack/core/secret.h>
#include <stack/security/padding.h>
#include <stack/security/rsaoperations.h>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace opcua {

size_t AsymmetricProtection::signatureSize() const
{
    return cipherBlockSize(m_own->key());
}

size_t AsymmetricProtection::blockCount(size_t plain) const
{
    const size_t room = plainBlockSize(m_peer->publicKey(), m_profile.encryption);
    const size_t fields = paddingFields(cipherBlockSize(m_peer->publicKey()));
    return (plain + fields + signatureSize() + room - 1) / room;
}

size_t AsymmetricProtection::plainCapacity(size_t room) const
{
    EVP_PKEY* const key = m_peer->publicKey();
    const size_t inside = room / cipherBlockSize(key) * plainBlockSize(key, m_profile.encryption);
    const size_t overhead = paddingFields(cipherBlockSize(key)) + signatureSize();
    return inside > overhead ? inside - overhead : 0;
}

size_t AsymmetricProtection::sealedSize(size_t plain) const
{
    return blockCount(plain) * cipherBlockSize(m_peer->publicKey());
}

bool AsymmetricProtection::seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin)
{
    EVP_PKEY* const key = m_peer->publicKey();
    const size_t plain = out.size() - sequenceBegin;
    const size_t fields = paddingFields(cipherBlockSize(key));
    const size_t inside = blockCount(plain) * plainBlockSize(key, m_profile.encryption);
    appendPadding(out, inside - plain - fields - signatureSize(), fields);
    const auto signature = rsaSign(m_own->key(), m_profile.signature, ByteView(out).subspan(chunkBegin));
    if (!signature)
        return false;
    out.insert(out.end(), signature->begin(), signature->end());
    const MutableByteView clear = MutableByteView(out).subspan(sequenceBegin);
    auto cipher = rsaEncrypt(key, m_profile.encryption, clear);
    if (!cipher)
        return false;
    // it is longer than what it covers, so that no nonce stays behind in the clear
    std::copy_n(cipher->begin(), clear.size(), clear.begin());
    out.insert(out.end(), cipher->begin() + static_cast<std::ptrdiff_t>(clear.size()), cipher->end());
    return true;
}

std::optional<size_t> AsymmetricProtection::unseal(MutableByteView chunk, size_t sequenceBegin)
{
    EVP_PKEY* const key = m_own->key();
    const size_t signatureLength = cipherBlockSize(m_peer->publicKey());
    Bytes clear;
    clear.reserve(chunk.size());
    clear.assign(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(sequenceBegin));
    const bool decrypted =
        rsaDecryptFullBlocks(key, m_profile.encryption, chunk.subspan(sequenceBegin), clear);
    std::optional<size_t> end;
    if (clear.size() >= sequenceBegin + signatureLength) {
        const size_t signedLength = clear.size() - signatureLength;
        const ByteView view(clear);
        const bool verified = rsaVerify(m_peer->publicKey(), m_profile.signature, view.first(signedLength),
                                        view.subspan(signedLength));
        // the longest padding leaves room for one byte in a block
        const auto padding =
            findPadding(view.first(signedLength).subspan(sequenceBegin), paddingFields(cipherBlockSize(key)),
                        plainBlockSize(key, m_profile.encryption));
        if ((static_cast<unsigned>(decrypted) & static_cast<unsigned>(verified) &
             static_cast<unsigned>(padding.has_value())) != 0) {
            end = sequenceBegin + *padding;
            std::copy_n(clear.begin(), *end, chunk.begin());
        }
    }
    wipe(clear);
    return end;
}

} // namespace opcua
