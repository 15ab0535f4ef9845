#include <uabase/uapkicpp/uapkiprivatekey.h>

#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

// Where the password of a key comes from. Asks the user at most once, although the crypto library may try
// several forms of the key.
class PasswordSource
{
public:
    PasswordSource(const UaString& password, UaPkiPasswordCallback callback, void* userData)
        : m_callback(password.isEmpty() ? callback : nullptr), m_userData(userData)
    {
        if (!password.isEmpty() && password.size() <= m_password.size()) {
            std::memcpy(m_password.data(), password.toUtf8(), password.size());
            m_length = static_cast<int>(password.size());
        }
    }
    ~PasswordSource() { OPENSSL_cleanse(m_password.data(), m_password.size()); }
    PasswordSource(const PasswordSource&) = delete;
    PasswordSource& operator=(const PasswordSource&) = delete;

    static int provide(char* buffer, int size, int writing, void* source)
    {
        return static_cast<PasswordSource*>(source)->provide(buffer, size, writing);
    }

private:
    int provide(char* buffer, int size, int writing)
    {
        if (m_callback != nullptr) {
            const int capacity = static_cast<int>(m_password.size());
            m_length = m_callback(m_password.data(), std::min(capacity, size), writing, m_userData);
            m_callback = nullptr;
        }
        if (m_length <= 0 || m_length > size)
            return -1; // nobody knows one
        std::memcpy(buffer, m_password.data(), static_cast<std::size_t>(m_length));
        return m_length;
    }

    UaPkiPasswordCallback m_callback;
    void* m_userData;
    std::array<char, PEM_BUFSIZE> m_password{};
    int m_length = 0;
};

} // namespace

UaPkiPrivateKey UaPkiPrivateKey::fromPEM(const UaByteArray& bytes, const UaString& password,
                                         UaPkiPasswordCallback callback, void* userData)
{
    UaPkiPrivateKey key;
    if (bytes.size() > UaPkiCertificate::maximumBytes) {
        key.addError("The data is larger than 1 MB");
        return key;
    }
    ERR_clear_error();
    PasswordSource source(password, callback, userData);
    const UaPki::BioPointer memory = UaPki::readMemory(bytes.span());
    EVP_PKEY* read = memory != nullptr
                         ? PEM_read_bio_PrivateKey(memory.get(), nullptr, &PasswordSource::provide, &source)
                         : nullptr;
    if (read == nullptr) {
        key.addOpenSSLError("The private key cannot be read, or its password is wrong");
        return key;
    }
    ERR_clear_error();
    UaPkiAccess::set(key, read);
    return key;
}

UaPkiPrivateKey UaPkiPrivateKey::fromDER(const UaByteArray& bytes, KeyType keyType)
{
    UaPkiPrivateKey key;
    if (!UaPki::isOneElement(bytes.span(), key))
        return key;
    ERR_clear_error();
    const unsigned char* position = bytes.rawData();
    UaPki::KeyPointer read(d2i_AutoPrivateKey(nullptr, &position, static_cast<long>(bytes.size())));
    if (read == nullptr || EVP_PKEY_get_base_id(read.get()) != static_cast<int>(keyType)) {
        key.addOpenSSLError("The private key cannot be decoded, or it is of another kind");
        return key;
    }
    ERR_clear_error();
    UaPkiAccess::set(key, read.release());
    return key;
}

UaByteArray UaPkiPrivateKey::toDER() const
{
    return UaPki::encode<EVP_PKEY>(UaPkiAccess::get(*this), &i2d_PrivateKey, *this);
}

UaPkiPublicKey UaPkiPrivateKey::publicKey() const
{
    // through the encoding, so that the public object really holds no private part
    UaPkiPublicKey key;
    const UaByteArray bytes = UaPki::encode<EVP_PKEY>(UaPkiAccess::get(*this), &i2d_PUBKEY, key);
    return bytes.isEmpty() ? key : UaPkiPublicKey::fromDER(bytes);
}
