#include <uabase/uapkicpp/uapkipublickey.h>

#include <uabase/uapkicpp/uapki_p.h>

UaPkiPublicKey UaPkiPublicKey::fromDER(const UaByteArray& bytes)
{
    UaPkiPublicKey key;
    if (EVP_PKEY* decoded =
            UaPki::decode<EVP_PKEY>(bytes.span(), &d2i_PUBKEY, &i2d_PUBKEY, &EVP_PKEY_free, key))
        UaPkiAccess::set(key, decoded);
    return key;
}

UaByteArray UaPkiPublicKey::toDER() const
{
    return UaPki::encode<EVP_PKEY>(UaPkiAccess::get(*this), &i2d_PUBKEY, *this);
}
