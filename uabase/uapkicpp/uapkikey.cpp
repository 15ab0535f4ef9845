#include <uabase/uapkicpp/uapkikey.h>

#include <uabase/uapkicpp/uapki_p.h>

static_assert(UaPkiKey::RSA == EVP_PKEY_RSA && UaPkiKey::DSA == EVP_PKEY_DSA && UaPkiKey::EC == EVP_PKEY_EC);

UaPkiKey::KeyType UaPkiKey::keyType() const
{
    switch (m_key != nullptr ? EVP_PKEY_get_base_id(m_key.get()) : EVP_PKEY_NONE) {
    case EVP_PKEY_RSA:
        return RSA;
    case EVP_PKEY_DSA:
        return DSA;
    case EVP_PKEY_EC:
        return EC;
    default:
        return UnknownKey;
    }
}

int UaPkiKey::keySize() const
{
    return m_key != nullptr ? EVP_PKEY_get_bits(m_key.get()) : 0;
}
