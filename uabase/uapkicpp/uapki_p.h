// The crypto library behind the certificate classes.
#pragma once

#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <cstring>
#include <ctime>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Reaches the objects inside the public classes.
struct UaPkiAccess
{
    static EVP_PKEY* get(const UaPkiKey& key) { return key.m_key.get(); }
    static X509* get(const UaPkiCertificate& certificate) { return certificate.m_certificate.get(); }
    static X509_REQ* get(const UaPkiCSR& request) { return request.m_request.get(); }
    static X509_CRL* get(const UaPkiRevocationList& list) { return list.m_list.get(); }

    /// Take ownership.
    static void set(UaPkiKey& key, EVP_PKEY* object) { key.m_key = {object, &EVP_PKEY_free}; }
    static void set(UaPkiCertificate& certificate, X509* object)
    {
        certificate.m_certificate = {object, &X509_free};
    }
    static void set(UaPkiCSR& request, X509_REQ* object) { request.m_request = {object, &X509_REQ_free}; }
    static void set(UaPkiRevocationList& list, X509_CRL* object) { list.m_list = {object, &X509_CRL_free}; }
    /// Shares the key.
    static void share(UaPkiKey& target, const UaPkiKey& source) { target.m_key = source.m_key; }
};

namespace UaPki {

template <auto Function>
struct Free
{
    template <typename T>
    void operator()(T* object) const
    {
        Function(object);
    }
};
template <typename T, auto Function>
using Pointer = std::unique_ptr<T, Free<Function>>;

using BioPointer = Pointer<BIO, &BIO_free_all>;
using KeyPointer = Pointer<EVP_PKEY, &EVP_PKEY_free>;
using CertificatePointer = Pointer<X509, &X509_free>;
using RequestPointer = Pointer<X509_REQ, &X509_REQ_free>;
using ListPointer = Pointer<X509_CRL, &X509_CRL_free>;
using NamePointer = Pointer<X509_NAME, &X509_NAME_free>;
using IntegerPointer = Pointer<ASN1_INTEGER, &ASN1_INTEGER_free>;
using TimePointer = Pointer<ASN1_TIME, &ASN1_TIME_free>;

using Bytes = std::span<const unsigned char>;

// ---- DER and PEM

/// Whether the bytes are one sequence and no more, as certificates, requests, lists and keys are, within the
/// size limit; says in errors what is wrong.
[[nodiscard]] bool isOneElement(Bytes bytes, const UaPkiErrors& errors);

/// An object that lies alone in the bytes. What does not come out the same when it is encoded again is
/// refused, because thumbprints and comparisons would not be those of the bytes.
template <typename T>
[[nodiscard]] T* decode(Bytes bytes, T* (*decoder)(T**, const unsigned char**, long),
                        int (*encoder)(const T*, unsigned char**), void (*release)(T*),
                        const UaPkiErrors& errors)
{
    if (!isOneElement(bytes, errors))
        return nullptr;
    ERR_clear_error();
    const unsigned char* position = bytes.data();
    T* object = decoder(nullptr, &position, static_cast<long>(bytes.size()));
    if (object == nullptr) {
        errors.addOpenSSLError("The data cannot be decoded");
        return nullptr;
    }
    unsigned char* again = nullptr;
    const int length = encoder(object, &again);
    const bool same = length >= 0 && static_cast<std::size_t>(length) == bytes.size() &&
                      std::memcmp(again, bytes.data(), bytes.size()) == 0;
    OPENSSL_free(again);
    if (!same) {
        release(object);
        errors.addError("The data is not encoded as the rules for DER demand");
        return nullptr;
    }
    return object;
}

/// Empty when the object is null or cannot be encoded.
template <typename T>
[[nodiscard]] UaByteArray encode(const T* object, int (*encoder)(const T*, unsigned char**),
                                 const UaPkiErrors& errors)
{
    if (object == nullptr) {
        errors.addError("There is nothing to encode");
        return UaByteArray();
    }
    ERR_clear_error();
    unsigned char* bytes = nullptr;
    const int length = encoder(object, &bytes);
    if (length < 0) {
        errors.addOpenSSLError("The object cannot be encoded");
        return UaByteArray();
    }
    UaByteArray result(length, bytes);
    OPENSSL_clear_free(bytes, static_cast<std::size_t>(length));
    return result;
}

/// Memory that is wiped when it goes.
[[nodiscard]] BioPointer newMemory();
[[nodiscard]] BioPointer readMemory(Bytes bytes);
[[nodiscard]] UaByteArray contentOf(BIO* memory);
/// Password callback for data that has no business being protected.
int noPassword(char* buffer, int size, int writing, void* userData);

/// A whole file within the size limit.
[[nodiscard]] bool readFile(const UaString& path, std::vector<unsigned char>& bytes,
                            const UaPkiErrors& errors);
[[nodiscard]] bool writeFile(const UaString& path, const UaByteArray& bytes, unsigned int mode,
                             const UaPkiErrors& errors);

/// The certificates of a file as the stack takes them, each as DER, not decoded; empty when the file does not
/// count as one of certificates.
[[nodiscard]] std::vector<UaByteString> certificatesOfFile(Bytes content);

/// The first object of its kind in PEM form, which the caller owns; null when there is none.
template <typename T>
[[nodiscard]] T* readPem(Bytes bytes, T* (*reader)(BIO*, T**, pem_password_cb*, void*))
{
    ERR_clear_error();
    const BioPointer memory = readMemory(bytes);
    return memory == nullptr ? nullptr : reader(memory.get(), nullptr, &noPassword, nullptr);
}

/// Writes the object to a file that all may read; failure says what cannot be encoded.
template <typename T>
[[nodiscard]] bool writePemFile(const UaString& path, const T* object, int (*writer)(BIO*, const T*),
                                std::string_view failure, const UaPkiErrors& errors)
{
    ERR_clear_error();
    const BioPointer memory = newMemory();
    if (object == nullptr || memory == nullptr || writer(memory.get(), object) != 1) {
        errors.addOpenSSLError(failure);
        return false;
    }
    return writeFile(path, contentOf(memory.get()), 0644, errors);
}

// ---- values

[[nodiscard]] const EVP_MD* digestOf(UaPkiCertificate::SignatureAlgorithm algorithm);
/// The null date when the time is not one.
[[nodiscard]] UaDateTime dateTimeOf(const ASN1_TIME* time);
/// Whether now lies between them; never when one is null.
[[nodiscard]] bool isNowWithin(const UaDateTime& from, const UaDateTime& to);
/// Now plus some seconds; false when that is no date.
[[nodiscard]] bool setTime(ASN1_TIME* time, std::time_t now, OpcUa_Int64 seconds);
/// As it is to be shown: control characters written out.
[[nodiscard]] UaString shown(std::string_view text);
[[nodiscard]] std::string_view viewOf(const ASN1_STRING* text);
/// SHA-1 of the key's bits, the usual key identifier; empty on a failure.
[[nodiscard]] UaByteArray keyIdentifier(EVP_PKEY* key);

// ---- names

[[nodiscard]] NamePointer toName(const UaPkiIdentity& identity, const UaPkiErrors& errors);
[[nodiscard]] UaPkiIdentity fromName(const X509_NAME* name);

/// A certificate that signs itself and may sign those of applications, but none of further authorities. Its
/// serial number is random. The caller owns it; null on a failure.
[[nodiscard]] X509* makeIssuingAuthority(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                         EVP_PKEY* key, const UaPkiErrors& errors);

} // namespace UaPki
