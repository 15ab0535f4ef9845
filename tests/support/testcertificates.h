// Certificates, keys and revocation lists for tests, made when they are needed.
#pragma once

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace testcertificates {

using Der = std::vector<unsigned char>;

/// Making a long key takes a second or so: one for each name and length serves the whole program.
inline EVP_PKEY* key(int bits, const std::string& name = "own")
{
    static std::map<std::pair<int, std::string>, std::shared_ptr<EVP_PKEY>> keys;
    auto& entry = keys[{bits, name}];
    if (!entry)
        entry.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", static_cast<size_t>(bits)), EVP_PKEY_free);
    return entry.get();
}

template <typename Object, typename Encode>
Der encoded(const Object* object, Encode encode)
{
    Der der(static_cast<size_t>(encode(object, nullptr)));
    unsigned char* at = der.data();
    encode(object, &at);
    return der;
}

inline Der privateDer(EVP_PKEY* pair)
{
    return encoded(pair, i2d_PrivateKey);
}

struct Recipe
{
    std::string name = "Test";
    EVP_PKEY* pair = nullptr;
    std::string issuer; ///< empty: signed by itself
    EVP_PKEY* issuerPair = nullptr;
    bool authority = false;
    const char* usage = "critical,digitalSignature,nonRepudiation,keyEncipherment,dataEncipherment";
    long from = -3600; ///< seconds from now
    long to = 86400;
    const EVP_MD* digest = EVP_sha256();
    long serial = 1;
    std::map<std::string, std::string> subject; ///< further parts of the name: "O", "OU" ...
    /// Instead of the usual ones; the configuration text of each, by its number.
    std::optional<std::vector<std::pair<int, std::string>>> extensions;
    const char* names = "URI:urn:localhost:test,DNS:localhost"; ///< subject alternative names
};

inline void setName(X509_NAME* name, const std::string& text)
{
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(text.c_str()), -1, -1, 0);
}

inline void addExtension(X509* certificate, int nid, const char* value)
{
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, nid, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

inline std::vector<std::pair<int, std::string>> usualExtensions(const Recipe& recipe)
{
    return {
        {NID_basic_constraints, recipe.authority ? "critical,CA:TRUE" : "critical,CA:FALSE"},
        {NID_key_usage, recipe.authority ? "critical,digitalSignature,keyCertSign,cRLSign" : recipe.usage},
        {NID_ext_key_usage, "serverAuth,clientAuth"},
        {NID_subject_alt_name, recipe.names}};
}

inline Der make(const Recipe& recipe)
{
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), recipe.serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), recipe.from);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), recipe.to);
    X509_set_pubkey(certificate.get(), recipe.pair);
    setName(X509_get_subject_name(certificate.get()), recipe.name);
    for (const auto& [field, text] : recipe.subject)
        X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), field.c_str(), MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(text.c_str()), -1, -1, 0);
    if (recipe.issuer.empty())
        X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    else
        setName(X509_get_issuer_name(certificate.get()), recipe.issuer);
    for (const auto& [nid, value] : recipe.extensions.value_or(usualExtensions(recipe)))
        addExtension(certificate.get(), nid, value.c_str());
    X509_sign(certificate.get(), recipe.issuerPair != nullptr ? recipe.issuerPair : recipe.pair,
              recipe.digest);
    return encoded(certificate.get(), i2d_X509);
}

/// A list of the serial numbers that issuer has revoked.
inline Der makeRevocationList(const std::string& issuer, EVP_PKEY* issuerPair,
                              const std::vector<long>& serials, long to = 86400)
{
    const std::unique_ptr<X509_CRL, decltype(&X509_CRL_free)> list(X509_CRL_new(), X509_CRL_free);
    const std::unique_ptr<X509_NAME, decltype(&X509_NAME_free)> name(X509_NAME_new(), X509_NAME_free);
    const std::unique_ptr<ASN1_TIME, decltype(&ASN1_TIME_free)> time(X509_gmtime_adj(nullptr, -7200),
                                                                     ASN1_TIME_free);
    X509_CRL_set_version(list.get(), X509_CRL_VERSION_2);
    setName(name.get(), issuer);
    X509_CRL_set_issuer_name(list.get(), name.get());
    X509_CRL_set1_lastUpdate(list.get(), time.get());
    for (const long serial : serials) {
        X509_REVOKED* const revoked = X509_REVOKED_new();
        const std::unique_ptr<ASN1_INTEGER, decltype(&ASN1_INTEGER_free)> number(ASN1_INTEGER_new(),
                                                                                 ASN1_INTEGER_free);
        ASN1_INTEGER_set(number.get(), serial);
        X509_REVOKED_set_serialNumber(revoked, number.get());
        X509_REVOKED_set_revocationDate(revoked, time.get());
        X509_CRL_add0_revoked(list.get(), revoked);
    }
    const std::unique_ptr<ASN1_TIME, decltype(&ASN1_TIME_free)> next(X509_gmtime_adj(nullptr, to),
                                                                     ASN1_TIME_free);
    X509_CRL_set1_nextUpdate(list.get(), next.get());
    X509_CRL_sign(list.get(), issuerPair, EVP_sha256());
    return encoded(list.get(), i2d_X509_CRL);
}

/// As a file of PEM: one block of that kind.
inline std::string pem(const std::string& kind, const Der& der)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
    PEM_write_bio(memory.get(), kind.c_str(), "", der.data(), static_cast<long>(der.size()));
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<size_t>(size)};
}

/// The name of a certificate in a hashed directory, as the first of its subject.
inline std::string hashedName(const Der& der)
{
    const unsigned char* at = der.data();
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(
        d2i_X509(nullptr, &at, static_cast<long>(der.size())), X509_free);
    char name[16];
    std::snprintf(name, sizeof name, "%08lx.0", X509_subject_name_hash(certificate.get()));
    return name;
}

} // namespace testcertificates
