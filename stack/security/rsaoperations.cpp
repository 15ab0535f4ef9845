#include <stack/security/rsaoperations.h>

#include <stack/core/secret.h>
#include <stack/security/algorithms.h>

#include <openssl/err.h>
#include <openssl/rsa.h>

#include <algorithm>

namespace opcua {

namespace {

size_t paddingOverhead(RsaEncryption encryption)
{
    switch (encryption) {
    case RsaEncryption::Pkcs1:
        return 11;
    case RsaEncryption::OaepSha1:
        return 2 * digestLength(Digest::Sha1) + 2;
    case RsaEncryption::OaepSha256:
        return 2 * digestLength(Digest::Sha256) + 2;
    }
    return 0;
}

bool setEncryptionPadding(EVP_PKEY_CTX* context, RsaEncryption encryption)
{
    if (encryption == RsaEncryption::Pkcs1)
        return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING) == 1;
    const EVP_MD* digest =
        digestAlgorithm(encryption == RsaEncryption::OaepSha1 ? Digest::Sha1 : Digest::Sha256);
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_OAEP_PADDING) == 1 &&
           EVP_PKEY_CTX_set_rsa_oaep_md(context, digest) == 1 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, digest) == 1;
}

using Prepare = int (*)(EVP_PKEY_CTX*);

KeyContext cipherContext(EVP_PKEY* key, RsaEncryption encryption, Prepare prepare)
{
    KeyContext context(EVP_PKEY_CTX_new_from_pkey(nullptr, key, nullptr));
    if (!context || prepare(context.get()) != 1 || !setEncryptionPadding(context.get(), encryption))
        return nullptr;
    return context;
}

bool setSignaturePadding(EVP_PKEY_CTX* context, RsaSignature algorithm)
{
    if (algorithm != RsaSignature::PssSha256)
        return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING) == 1;
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PSS_PADDING) == 1 &&
           EVP_PKEY_CTX_set_rsa_pss_saltlen(context, RSA_PSS_SALTLEN_DIGEST) == 1 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, digestAlgorithm(Digest::Sha256)) == 1;
}

const char* signatureDigest(RsaSignature algorithm)
{
    return digestName(algorithm == RsaSignature::Pkcs1Sha1 ? Digest::Sha1 : Digest::Sha256);
}

} // namespace

size_t cipherBlockSize(EVP_PKEY* key)
{
    return static_cast<size_t>(EVP_PKEY_get_size(key));
}

size_t plainBlockSize(EVP_PKEY* key, RsaEncryption encryption)
{
    const size_t block = cipherBlockSize(key);
    const size_t overhead = paddingOverhead(encryption);
    return block > overhead ? block - overhead : 0;
}

std::optional<Bytes> rsaEncrypt(EVP_PKEY* key, RsaEncryption encryption, ByteView plain)
{
    const KeyContext context = cipherContext(key, encryption, EVP_PKEY_encrypt_init);
    const size_t room = plainBlockSize(key, encryption);
    const size_t block = cipherBlockSize(key);
    if (!context || room == 0)
        return std::nullopt;
    Bytes cipher((plain.size() + room - 1) / room * block);
    for (size_t at = 0; !plain.empty(); at += block) {
        const ByteView part = plain.first(std::min(room, plain.size()));
        size_t written = block;
        if (EVP_PKEY_encrypt(context.get(), cipher.data() + at, &written, part.data(), part.size()) != 1 ||
            written != block) {
            ERR_clear_error();
            return std::nullopt;
        }
        plain = plain.subspan(part.size());
    }
    return cipher;
}

std::optional<Bytes> rsaDecrypt(EVP_PKEY* key, RsaEncryption encryption, ByteView cipher)
{
    const KeyContext context = cipherContext(key, encryption, EVP_PKEY_decrypt_init);
    const size_t block = cipherBlockSize(key);
    if (!context || block == 0 || cipher.size() % block != 0)
        return std::nullopt;
    Bytes plain(cipher.size());
    size_t used = 0;
    for (; !cipher.empty(); cipher = cipher.subspan(block)) {
        size_t written = block;
        if (EVP_PKEY_decrypt(context.get(), plain.data() + used, &written, cipher.data(), block) != 1) {
            ERR_clear_error();
            wipe(plain);
            return std::nullopt;
        }
        used += written;
    }
    plain.resize(used);
    return plain;
}

bool rsaDecryptFullBlocks(EVP_PKEY* key, RsaEncryption encryption, ByteView cipher, Bytes& out)
{
    const KeyContext context = cipherContext(key, encryption, EVP_PKEY_decrypt_init);
    const size_t block = cipherBlockSize(key);
    const size_t room = plainBlockSize(key, encryption);
    if (!context || room == 0 || cipher.size() % block != 0)
        return false;
    bool good = true;
    Secret plain(block);
    for (; !cipher.empty(); cipher = cipher.subspan(block)) {
        size_t written = block;
        good &= EVP_PKEY_decrypt(context.get(), plain.data(), &written, cipher.data(), block) == 1 &&
                written == room;
        out.insert(out.end(), plain.data(), plain.data() + room);
    }
    ERR_clear_error();
    return good;
}

std::optional<Bytes> rsaSign(EVP_PKEY* key, RsaSignature algorithm, ByteView data)
{
    const DigestContext context(EVP_MD_CTX_new());
    EVP_PKEY_CTX* parameters = nullptr; // owned by context
    Bytes signature(cipherBlockSize(key));
    size_t written = signature.size();
    if (!context ||
        EVP_DigestSignInit_ex(context.get(), &parameters, signatureDigest(algorithm), nullptr, nullptr, key,
                              nullptr) != 1 ||
        !setSignaturePadding(parameters, algorithm) ||
        EVP_DigestSign(context.get(), signature.data(), &written, data.data(), data.size()) != 1 ||
        written != signature.size()) {
        ERR_clear_error();
        return std::nullopt;
    }
    return signature;
}

bool rsaVerify(EVP_PKEY* key, RsaSignature algorithm, ByteView data, ByteView signature)
{
    const DigestContext context(EVP_MD_CTX_new());
    EVP_PKEY_CTX* parameters = nullptr;
    const bool good =
        context &&
        EVP_DigestVerifyInit_ex(context.get(), &parameters, signatureDigest(algorithm), nullptr, nullptr, key,
                                nullptr) == 1 &&
        setSignaturePadding(parameters, algorithm) &&
        EVP_DigestVerify(context.get(), signature.data(), signature.size(), data.data(), data.size()) == 1;
    ERR_clear_error();
    return good;
}

} // namespace opcua
