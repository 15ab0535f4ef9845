// Owners of the crypto library's objects.
#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>

namespace opcua {

template <auto Free>
struct Freer
{
    template <typename T>
    void operator()(T* object) const
    {
        Free(object);
    }
};

using KeyHandle = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, Freer<EVP_PKEY_CTX_free>>;
using DigestContext = std::unique_ptr<EVP_MD_CTX, Freer<EVP_MD_CTX_free>>;
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, Freer<EVP_CIPHER_CTX_free>>;
using MacContext = std::unique_ptr<EVP_MAC_CTX, Freer<EVP_MAC_CTX_free>>;
using X509Handle = std::unique_ptr<X509, Freer<X509_free>>;
using CrlHandle = std::unique_ptr<X509_CRL, Freer<X509_CRL_free>>;

} // namespace opcua
