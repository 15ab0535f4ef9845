#include <stack/security/keyderivation.h>

#include <stack/security/algorithms.h>

#include <openssl/core_names.h>

#include <array>
#include <cstring>
#include <string_view>

namespace opcua {

namespace {

constexpr size_t aesBlock = 16;
constexpr size_t maxDigest = 32;

// One HMAC, keyed once.
class Hmac
{
public:
    Hmac(Digest digest, ByteView key) : m_context(EVP_MAC_CTX_new(hmacAlgorithm()))
    {
        std::string_view name = digestName(digest);
        std::array<char, 8> text{};
        name.copy(text.data(), name.size());
        const std::array parameters = {
            OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, text.data(), 0),
            OSSL_PARAM_construct_end()};
        m_good = m_context && EVP_MAC_init(m_context.get(), key.data(), key.size(), parameters.data()) == 1;
    }

    // of both parts together
    bool compute(ByteView first, ByteView second, OpcUa_Byte* out)
    {
        size_t written = 0;
        m_good = m_good && EVP_MAC_init(m_context.get(), nullptr, 0, nullptr) == 1 &&
                 EVP_MAC_update(m_context.get(), first.data(), first.size()) == 1 &&
                 EVP_MAC_update(m_context.get(), second.data(), second.size()) == 1 &&
                 EVP_MAC_final(m_context.get(), out, &written, maxDigest) == 1;
        return m_good;
    }

private:
    MacContext m_context;
    bool m_good = false;
};

Secret part(const Secret& from, size_t& at, size_t size)
{
    Secret taken(size);
    std::memcpy(taken.data(), from.view().data() + at, size);
    at += size;
    return taken;
}

} // namespace

std::optional<Secret> pseudoRandomBytes(Digest digest, ByteView secret, ByteView seed, size_t length)
{
    const size_t block = digestLength(digest);
    Hmac hmac(digest, secret);
    Secret chain(maxDigest);
    Secret output((length + block - 1) / block * block + maxDigest);
    const ByteView current = chain.view().first(block);
    ByteView last = seed;
    for (size_t at = 0; at < length; at += block) {
        if (!hmac.compute(last, {}, chain.data()) || !hmac.compute(current, seed, output.data() + at))
            return std::nullopt;
        last = current;
    }
    output.truncate(length);
    return output;
}

std::optional<DirectionKeys> deriveDirectionKeys(const PolicyProfile& profile, ByteView secret, ByteView seed)
{
    const size_t length = profile.signingKeyLength + profile.encryptingKeyLength + aesBlock;
    const auto bytes = pseudoRandomBytes(profile.digest, secret, seed, length);
    if (!bytes)
        return std::nullopt;
    size_t at = 0;
    DirectionKeys keys;
    keys.signing = part(*bytes, at, profile.signingKeyLength);
    keys.encrypting = part(*bytes, at, profile.encryptingKeyLength);
    keys.initializationVector = part(*bytes, at, aesBlock);
    return keys;
}

} // namespace opcua
