#include <stack/security/algorithms.h>

#include <openssl/rand.h>

#include <climits>
#include <memory>

namespace opcua {

namespace {

using DigestHandle = std::unique_ptr<EVP_MD, Freer<EVP_MD_free>>;
using CipherHandle = std::unique_ptr<EVP_CIPHER, Freer<EVP_CIPHER_free>>;
using MacHandle = std::unique_ptr<EVP_MAC, Freer<EVP_MAC_free>>;

struct Algorithms
{
    DigestHandle sha1{EVP_MD_fetch(nullptr, "SHA1", nullptr)};
    DigestHandle sha256{EVP_MD_fetch(nullptr, "SHA256", nullptr)};
    CipherHandle aes128{EVP_CIPHER_fetch(nullptr, "AES-128-CBC", nullptr)};
    CipherHandle aes256{EVP_CIPHER_fetch(nullptr, "AES-256-CBC", nullptr)};
    MacHandle hmac{EVP_MAC_fetch(nullptr, "HMAC", nullptr)};
};

const Algorithms& algorithms()
{
    static const Algorithms all;
    return all;
}

} // namespace

const EVP_MD* digestAlgorithm(Digest digest)
{
    return digest == Digest::Sha1 ? algorithms().sha1.get() : algorithms().sha256.get();
}

const EVP_CIPHER* aesCbc(size_t keyLength)
{
    return keyLength == 16 ? algorithms().aes128.get() : algorithms().aes256.get();
}

EVP_MAC* hmacAlgorithm()
{
    return algorithms().hmac.get();
}

const char* digestName(Digest digest)
{
    return digest == Digest::Sha1 ? "SHA1" : "SHA256";
}

std::optional<Sha1Value> sha1(ByteView bytes)
{
    Sha1Value value{};
    if (EVP_Digest(bytes.data(), bytes.size(), value.data(), nullptr, digestAlgorithm(Digest::Sha1),
                   nullptr) != 1)
        return std::nullopt;
    return value;
}

bool fillRandom(MutableByteView bytes)
{
    return bytes.size() <= INT_MAX && RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1;
}

} // namespace opcua
