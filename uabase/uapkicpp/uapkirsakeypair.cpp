#include <uabase/uapkicpp/uapkirsakeypair.h>

#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastring.h>

#include <openssl/pkcs12.h>
#include <openssl/rsa.h>

#include <string>
#include <vector>

namespace {

constexpr int keyDerivationRounds = 100000; // slows down those who guess passwords

// PKCS#8, because the key derivation of the older form of protection can be guessed at too fast.
bool writeProtected(BIO* memory, EVP_PKEY* key, const UaString& password)
{
    const UaPki::Pointer<PKCS8_PRIV_KEY_INFO, &PKCS8_PRIV_KEY_INFO_free> plain(EVP_PKEY2PKCS8(key));
    UaPki::Pointer<X509_ALGOR, &X509_ALGOR_free> method(
        PKCS5_pbe2_set_iv(EVP_aes_256_cbc(), keyDerivationRounds, nullptr, 0, nullptr, NID_hmacWithSHA256));
    if (plain == nullptr || method == nullptr)
        return false;
    const UaPki::Pointer<X509_SIG, &X509_SIG_free> sealed(
        PKCS8_set0_pbe(password.toUtf8(), static_cast<int>(password.size()), plain.get(), method.get()));
    if (sealed == nullptr)
        return false;
    (void)method.release(); // belongs to the sealed key now
    return PEM_write_bio_PKCS8(memory, sealed.get()) == 1;
}

bool writePlain(BIO* memory, EVP_PKEY* key)
{
    return PEM_write_bio_PrivateKey_traditional(memory, key, nullptr, nullptr, 0, nullptr, nullptr) == 1;
}

// Called by the crypto library between the steps of its search for primes; 0 ends the search.
int goOn(EVP_PKEY_CTX* context)
{
    const auto& isCancelled = *static_cast<const std::function<bool()>*>(EVP_PKEY_CTX_get_app_data(context));
    return isCancelled() ? 0 : 1;
}

// A private key's copy that leaves nothing in memory.
struct Wiped
{
    ~Wiped() { OPENSSL_cleanse(bytes.rawData(), bytes.size()); }
    UaByteArray& bytes;
};

} // namespace

UaPkiRsaKeyPair::UaPkiRsaKeyPair(int bits) : UaPkiRsaKeyPair(bits, [] { return false; }) {}

UaPkiRsaKeyPair::UaPkiRsaKeyPair(int bits, const std::function<bool()>& isCancelled)
{
    if (bits < minimumBits || bits > maximumBits) {
        addError("Keys of " + std::to_string(bits) + " bits are not supported");
        return;
    }
    ERR_clear_error();
    // the library's public exponent is 65537
    const UaPki::Pointer<EVP_PKEY_CTX, &EVP_PKEY_CTX_free> context(
        EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY* generated = nullptr;
    if (context != nullptr && EVP_PKEY_keygen_init(context.get()) == 1 &&
        EVP_PKEY_CTX_set_rsa_keygen_bits(context.get(), bits) == 1) {
        EVP_PKEY_CTX_set_app_data(context.get(), const_cast<std::function<bool()>*>(&isCancelled));
        EVP_PKEY_CTX_set_cb(context.get(), &goOn);
        EVP_PKEY_generate(context.get(), &generated);
    }
    if (generated == nullptr) {
        addOpenSSLError("No key could be generated");
        return;
    }
    UaPkiAccess::set(*this, generated);
}

UaPkiRsaKeyPair UaPkiRsaKeyPair::fromPEM(const UaByteArray& bytes, const UaString& password,
                                         UaPkiPasswordCallback callback, void* userData)
{
    UaPkiRsaKeyPair pair;
    const UaPkiPrivateKey key = UaPkiPrivateKey::fromPEM(bytes, password, callback, userData);
    pair.addErrors(key.getErrors());
    if (key.keyType() == RSA)
        UaPkiAccess::share(pair, key);
    else if (!key.isNull())
        pair.addError("The key is not an RSA key");
    return pair;
}

UaPkiRsaKeyPair UaPkiRsaKeyPair::fromPEMFile(const UaString& path, const UaString& password,
                                             UaPkiPasswordCallback callback, void* userData)
{
    UaPkiRsaKeyPair pair;
    std::vector<unsigned char> content;
    if (!UaPki::readFile(path, content, pair))
        return pair;
    UaByteArray bytes(static_cast<OpcUa_Int32>(content.size()), content.data());
    OPENSSL_cleanse(content.data(), content.size());
    const Wiped wiped{bytes};
    return fromPEM(bytes, password, callback, userData);
}

UaByteArray UaPkiRsaKeyPair::toPEM(const UaString& password) const
{
    if (isNull()) {
        addError("There is no key to write");
        return UaByteArray();
    }
    if (password.size() > PEM_BUFSIZE) {
        addError("The password is too long");
        return UaByteArray();
    }
    ERR_clear_error();
    const UaPki::BioPointer memory = UaPki::newMemory();
    const bool written =
        memory != nullptr && (password.isEmpty() ? writePlain(memory.get(), m_key.get())
                                                 : writeProtected(memory.get(), m_key.get(), password));
    if (!written) {
        addOpenSSLError("The key cannot be written");
        return UaByteArray();
    }
    return UaPki::contentOf(memory.get());
}

UaByteArray UaPkiRsaKeyPair::toPFX(const UaPkiCertificate& certificate, const UaString& password) const
{
    if (isNull() || certificate.isNull()) {
        addError("There is no key to write, or no certificate of it");
        return UaByteArray();
    }
    ERR_clear_error();
    const char* const secret = password.isEmpty() ? "" : password.toUtf8();
    const UaPki::Pointer<PKCS12, &PKCS12_free> container(
        PKCS12_create(secret, nullptr, m_key.get(), UaPkiAccess::get(certificate), nullptr, 0, 0, 0, 0, 0));
    if (container == nullptr) {
        addOpenSSLError("The key cannot be written");
        return UaByteArray();
    }
    return UaPki::encode<PKCS12>(container.get(), &i2d_PKCS12, *this);
}

bool UaPkiRsaKeyPair::toPEMFile(const UaString& path, const UaString& password) const
{
    UaByteArray bytes = toPEM(password);
    const Wiped wiped{bytes};
    return UaPki::writeFile(path, bytes, 0600, *this);
}

UaByteArray UaPkiRsaKeyPair::toDER() const
{
    return UaPki::encode<EVP_PKEY>(m_key.get(), &i2d_PrivateKey, *this);
}

UaPkiPublicKey UaPkiRsaKeyPair::publicKey() const
{
    return privateKey().publicKey();
}

UaPkiPrivateKey UaPkiRsaKeyPair::privateKey() const
{
    UaPkiPrivateKey key;
    UaPkiAccess::share(key, *this);
    return key;
}

bool UaPkiRsaKeyPair::isMissingParameters() const
{
    return isNull() || EVP_PKEY_missing_parameters(m_key.get()) != 0;
}

bool UaPkiRsaKeyPair::checkKeyPair(const UaPkiPublicKey& publicKey, const UaPkiPrivateKey& privateKey)
{
    if (publicKey.isNull() || privateKey.isNull())
        return false;
    const bool equal = EVP_PKEY_eq(UaPkiAccess::get(publicKey), UaPkiAccess::get(privateKey)) == 1;
    ERR_clear_error();
    return equal;
}
