#include <stack/security/privatekey.h>

#include <openssl/err.h>

#include <array>
#include <map>
#include <memory>
#include <mutex>

namespace opcua {

namespace {

constexpr size_t maxKeySize = 64 * 1024;
constexpr size_t maximumKeys = 4; // the own key, and a user's or two

using Sha256Value = std::array<OpcUa_Byte, 32>;

struct KeyCache
{
    std::mutex mutex;
    std::map<Sha256Value, PrivateKeyPointer> entries;
};

KeyCache& keyCache()
{
    static KeyCache instance;
    return instance;
}

} // namespace

PrivateKeyPointer PrivateKey::parse(ByteView der)
{
    if (der.empty() || der.size() > maxKeySize)
        return nullptr;
    const unsigned char* at = der.data();
    KeyHandle key(d2i_AutoPrivateKey(nullptr, &at, static_cast<long>(der.size())));
    ERR_clear_error();
    if (!key || EVP_PKEY_is_a(key.get(), "RSA") != 1)
        return nullptr;
    return std::shared_ptr<const PrivateKey>(new PrivateKey(std::move(key)));
}

bool PrivateKey::belongsTo(const Certificate& certificate) const
{
    const bool same =
        certificate.publicKey() != nullptr && EVP_PKEY_eq(m_key.get(), certificate.publicKey()) == 1;
    ERR_clear_error();
    return same;
}

PrivateKeyPointer cachedPrivateKey(ByteView der)
{
    Sha256Value digest{};
    if (der.size() > maxKeySize || EVP_Digest(der.data(), der.size(), digest.data(), nullptr,
                                              digestAlgorithm(Digest::Sha256), nullptr) != 1)
        return nullptr;
    {
        const std::lock_guard lock(keyCache().mutex);
        if (const auto found = keyCache().entries.find(digest); found != keyCache().entries.end())
            return found->second;
    }
    auto key = PrivateKey::parse(der);
    if (!key)
        return nullptr;
    const std::lock_guard lock(keyCache().mutex);
    if (keyCache().entries.size() >= maximumKeys)
        keyCache().entries.clear();
    return keyCache().entries.insert_or_assign(digest, std::move(key)).first->second;
}

void clearPrivateKeyCache()
{
    const std::lock_guard lock(keyCache().mutex);
    keyCache().entries.clear();
}

} // namespace opcua
