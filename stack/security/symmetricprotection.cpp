#include <stack/security/symmetricprotection.h>

#include <stack/security/algorithms.h>
#include <stack/security/padding.h>

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/err.h>

#include <array>
#include <climits>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace opcua {

namespace {

constexpr size_t blockSize = 16;
constexpr size_t maxPaddingByte = 255; // what one byte can say; others pad with more than one block
constexpr size_t maxSignature = 32;

} // namespace

SymmetricProtection::SymmetricProtection(const PolicyProfile& profile, DirectionKeys keys, bool encrypts)
    : m_signatureLength(digestLength(profile.digest)), m_encrypts(encrypts), m_keys(std::move(keys)),
      m_cipher(encrypts ? EVP_CIPHER_CTX_new() : nullptr), m_mac(EVP_MAC_CTX_new(hmacAlgorithm()))
{
}

std::unique_ptr<ChunkProtection> SymmetricProtection::make(const PolicyProfile& profile, DirectionKeys keys,
                                                           bool encrypts, Direction direction)
{
    std::unique_ptr<SymmetricProtection> made(new SymmetricProtection(profile, std::move(keys), encrypts));
    if (!made->prepare(profile, direction)) {
        ERR_clear_error();
        return nullptr;
    }
    return made;
}

bool SymmetricProtection::prepare(const PolicyProfile& profile, Direction direction)
{
    std::array<char, 8> digest{};
    std::string_view(digestName(profile.digest)).copy(digest.data(), digest.size() - 1);
    const std::array parameters = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), 0),
                                   OSSL_PARAM_construct_end()};
    if (!m_mac ||
        EVP_MAC_init(m_mac.get(), m_keys.signing.data(), m_keys.signing.size(), parameters.data()) != 1)
        return false;
    const int encrypting = direction == Direction::Outgoing ? 1 : 0;
    if (m_encrypts &&
        (!m_cipher ||
         EVP_CipherInit_ex2(m_cipher.get(), aesCbc(profile.encryptingKeyLength), m_keys.encrypting.data(),
                            m_keys.initializationVector.data(), encrypting, nullptr) != 1 ||
         EVP_CIPHER_CTX_set_padding(m_cipher.get(), 0) != 1))
        return false;
    m_keys.signing = Secret();
    m_keys.encrypting = Secret();
    return true;
}

bool SymmetricProtection::sign(ByteView bytes, OpcUa_Byte* signature)
{
    size_t written = 0;
    return EVP_MAC_init(m_mac.get(), nullptr, 0, nullptr) == 1 &&
           EVP_MAC_update(m_mac.get(), bytes.data(), bytes.size()) == 1 &&
           EVP_MAC_final(m_mac.get(), signature, &written, maxSignature) == 1 && written == m_signatureLength;
}

// Every chunk begins with the token's own vector.
bool SymmetricProtection::crypt(MutableByteView bytes)
{
    int written = 0;
    return bytes.size() <= INT_MAX &&
           EVP_CipherInit_ex2(m_cipher.get(), nullptr, nullptr, m_keys.initializationVector.data(), -1,
                              nullptr) == 1 &&
           EVP_CipherUpdate(m_cipher.get(), bytes.data(), &written, bytes.data(),
                            static_cast<int>(bytes.size())) == 1 &&
           static_cast<size_t>(written) == bytes.size();
}

size_t SymmetricProtection::plainCapacity(size_t room) const
{
    const size_t overhead = m_signatureLength + (m_encrypts ? 1 : 0);
    if (m_encrypts)
        room = room / blockSize * blockSize;
    return room > overhead ? room - overhead : 0;
}

size_t SymmetricProtection::sealedSize(size_t plain) const
{
    if (!m_encrypts)
        return plain + m_signatureLength;
    return (plain + 1 + m_signatureLength + blockSize - 1) / blockSize * blockSize;
}

bool SymmetricProtection::seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin)
{
    if (m_encrypts) {
        const size_t plain = out.size() - sequenceBegin;
        appendPadding(out, sealedSize(plain) - plain - 1 - m_signatureLength, 1);
    }
    const size_t signedLength = out.size() - chunkBegin;
    out.resize(out.size() + m_signatureLength);
    std::array<OpcUa_Byte, maxSignature> signature{};
    if (!sign(ByteView(out).subspan(chunkBegin, signedLength), signature.data()))
        return false;
    std::memcpy(out.data() + chunkBegin + signedLength, signature.data(), m_signatureLength);
    return !m_encrypts || crypt(MutableByteView(out).subspan(sequenceBegin));
}

// Signature and padding are both looked at, whichever is wrong.
std::optional<size_t> SymmetricProtection::unseal(MutableByteView chunk, size_t sequenceBegin)
{
    const MutableByteView sealed = chunk.subspan(sequenceBegin);
    if (sealed.size() < m_signatureLength + (m_encrypts ? 1 : 0) ||
        (m_encrypts && (sealed.size() % blockSize != 0 || !crypt(sealed))))
        return std::nullopt;
    const size_t signedLength = chunk.size() - m_signatureLength;
    std::array<OpcUa_Byte, maxSignature> expected{};
    const bool computed = sign(chunk.first(signedLength), expected.data());
    const bool same =
        CRYPTO_memcmp(expected.data(), chunk.data() + signedLength, m_signatureLength) == 0 && computed;
    if (!m_encrypts)
        return same ? std::optional(signedLength) : std::nullopt;
    const auto padding =
        findPadding(chunk.subspan(sequenceBegin, signedLength - sequenceBegin), 1, maxPaddingByte);
    if ((static_cast<unsigned>(same) & static_cast<unsigned>(padding.has_value())) == 0)
        return std::nullopt;
    return sequenceBegin + *padding;
}

} // namespace opcua
