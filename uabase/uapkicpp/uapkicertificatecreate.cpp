// Making and signing certificates; declared in uapkicertificate.h.
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiextensions_p.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uadatetime.h>

#include <openssl/rand.h>

#include <ctime>

namespace {

using UaPki::CertificatePointer;
using UaPki::Role;

constexpr long version3 = 2; // the field counts from 0

// What a certificate is made from. issuer is null when only its name is known.
struct Recipe
{
    const UaPkiCertificateInfo& info;
    const X509_NAME* subject;
    EVP_PKEY* publicKey;
    const X509_NAME* issuerName;
    X509* issuer;
    EVP_PKEY* issuerKey;
    Role role;
    UaPkiCertificate::SignatureAlgorithm algorithm;
};

// The dates of a record that was read from another certificate do not count for a new one.
UaPkiCertificateInfo withoutDates(UaPkiCertificateInfo info)
{
    info.validFrom = info.validTo = UaDateTime();
    return info;
}

bool setBasics(X509* certificate, const Recipe& recipe)
{
    const std::time_t now = std::time(nullptr);
    const OpcUa_Int64 serial = recipe.info.serialNumber != 0 ? recipe.info.serialNumber : now;
    const auto time = [&](ASN1_TIME* target, const UaDateTime& given, OpcUa_Int64 seconds) {
        return given.isNull() ? UaPki::setTime(target, now, seconds)
                              : ASN1_TIME_set(target, given.toTime_t()) != nullptr;
    };
    return X509_set_version(certificate, version3) == 1 &&
           ASN1_INTEGER_set_int64(X509_get_serialNumber(certificate), serial) == 1 &&
           X509_set_subject_name(certificate, recipe.subject) == 1 &&
           X509_set_issuer_name(certificate, recipe.issuerName) == 1 &&
           time(X509_getm_notBefore(certificate), recipe.info.validFrom, 0) &&
           time(X509_getm_notAfter(certificate), recipe.info.validTo, recipe.info.validTime) &&
           X509_set_pubkey(certificate, recipe.publicKey) == 1;
}

// What was computed from the half-made object is dropped by decoding it afresh.
X509* finished(const X509* certificate)
{
    unsigned char* bytes = nullptr;
    const int length = i2d_X509(certificate, &bytes);
    if (length < 0)
        return nullptr;
    const unsigned char* position = bytes;
    X509* fresh = d2i_X509(nullptr, &position, length);
    OPENSSL_free(bytes);
    return fresh;
}

X509* sign(X509* certificate, EVP_PKEY* key, UaPkiCertificate::SignatureAlgorithm algorithm,
           const UaPkiErrors& errors)
{
    ERR_clear_error();
    X509* signedOne =
        X509_sign(certificate, key, UaPki::digestOf(algorithm)) > 0 ? finished(certificate) : nullptr;
    if (signedOne == nullptr)
        errors.addOpenSSLError("The certificate could not be signed");
    return signedOne;
}

X509* create(const Recipe& recipe, const UaPkiErrors& errors)
{
    ERR_clear_error();
    const CertificatePointer certificate(X509_new());
    if (certificate == nullptr || !setBasics(certificate.get(), recipe)) {
        errors.addOpenSSLError("The certificate's names, times or key are not allowed");
        return nullptr;
    }
    X509* issuer = recipe.role == Role::IssuedApplication ? recipe.issuer : certificate.get();
    if (!UaPki::addExtensions(certificate.get(), recipe.role, issuer, recipe.issuerKey, errors))
        return nullptr;
    const bool isAuthority = recipe.role == Role::Authority || recipe.role == Role::IssuingAuthority;
    if (!isAuthority && !UaPki::addAlternativeNames(certificate.get(), recipe.info, errors))
        return nullptr;
    return sign(certificate.get(), recipe.issuerKey, recipe.algorithm, errors);
}

bool isUsableIssuer(const UaPkiCertificate& issuer, const UaPkiPrivateKey& key, const UaPkiErrors& errors)
{
    if (!UaPkiRsaKeyPair::checkKeyPair(issuer.publicKey(), key)) {
        errors.addError("The private key does not belong to the issuer's certificate");
        return false;
    }
    return true;
}

OpcUa_Int64 randomSerialNumber()
{
    OpcUa_Int64 number = 0;
    do {
        if (RAND_bytes(reinterpret_cast<unsigned char*>(&number), sizeof(number)) != 1)
            return 0;
        number &= INT64_MAX;
    } while (number == 0);
    return number;
}

} // namespace

X509* UaPki::makeIssuingAuthority(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                  EVP_PKEY* key, const UaPkiErrors& errors)
{
    const NamePointer name = toName(subject, errors);
    if (name == nullptr)
        return nullptr;
    UaPkiCertificateInfo fromNow = withoutDates(info);
    fromNow.serialNumber = randomSerialNumber();
    return create({fromNow, name.get(), key, name.get(), nullptr, key, Role::IssuingAuthority,
                   UaPkiCertificate::Sha256},
                  errors);
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiRsaKeyPair& keyPair, bool isCA, SignatureAlgorithm algorithm)
{
    const UaPki::NamePointer name = UaPki::toName(subject, *this);
    if (keyPair.isNull()) {
        addError("There is no key pair for the certificate");
    } else if (name != nullptr) {
        EVP_PKEY* key = UaPkiAccess::get(keyPair);
        const Role role = isCA ? Role::Authority : Role::SelfSignedApplication;
        const UaPkiCertificateInfo fromNow = withoutDates(info);
        UaPkiAccess::set(
            *this, create({fromNow, name.get(), key, name.get(), nullptr, key, role, algorithm}, *this));
    }
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiPublicKey& publicKey, const UaPkiCertificate& issuer,
                                   const UaPkiPrivateKey& issuerKey, SignatureAlgorithm algorithm)
{
    const UaPki::NamePointer name = UaPki::toName(subject, *this);
    if (publicKey.isNull()) {
        addError("There is no public key for the certificate");
    } else if (name != nullptr && isUsableIssuer(issuer, issuerKey, *this)) {
        X509* authority = UaPkiAccess::get(issuer);
        const UaPkiCertificateInfo fromNow = withoutDates(info);
        UaPkiAccess::set(
            *this, create({fromNow, name.get(), UaPkiAccess::get(publicKey), X509_get_subject_name(authority),
                           authority, UaPkiAccess::get(issuerKey), Role::IssuedApplication, algorithm},
                          *this));
    }
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiPublicKey& publicKey, const UaPkiIdentity& issuer,
                                   const UaPkiPrivateKey& issuerKey, SignatureAlgorithm algorithm)
{
    const UaPki::NamePointer name = UaPki::toName(subject, *this);
    const UaPki::NamePointer issuerName = UaPki::toName(issuer, *this);
    if (publicKey.isNull() || issuerKey.isNull()) {
        addError("There is no key for the certificate");
    } else if (name != nullptr && issuerName != nullptr) {
        const UaPkiCertificateInfo fromNow = withoutDates(info);
        UaPkiAccess::set(*this,
                         create({fromNow, name.get(), UaPkiAccess::get(publicKey), issuerName.get(), nullptr,
                                 UaPkiAccess::get(issuerKey), Role::IssuedApplication, algorithm},
                                *this));
    }
}

UaPkiCertificate UaPkiCertificate::fromCSR(const UaPkiCSR& csr, const UaPkiCertificate& issuer,
                                           const UaPkiPrivateKey& issuerKey, const UaDateTime& validFrom,
                                           const UaDateTime& validTo, SignatureAlgorithm algorithm)
{
    UaPkiCertificate certificate;
    if (!csr.verifySignature()) {
        certificate.addError("The request is not signed by its own key");
        return certificate;
    }
    if (!isUsableIssuer(issuer, issuerKey, certificate))
        return certificate;
    UaPkiCertificateInfo info = csr.info();
    info.serialNumber = randomSerialNumber();
    info.validFrom = validFrom;
    info.validTo = validTo;
    X509_REQ* request = UaPkiAccess::get(csr);
    X509* authority = UaPkiAccess::get(issuer);
    UaPkiAccess::set(certificate,
                     create({info, X509_REQ_get_subject_name(request), X509_REQ_get0_pubkey(request),
                             X509_get_subject_name(authority), authority, UaPkiAccess::get(issuerKey),
                             Role::IssuedApplication, algorithm},
                            certificate));
    return certificate;
}

bool UaPkiCertificate::sign(const UaPkiCertificate& issuer, const UaPkiPrivateKey& issuerKey,
                            SignatureAlgorithm algorithm)
{
    if (isNull()) {
        addError("There is no certificate to sign");
        return false;
    }
    if (!isUsableIssuer(issuer, issuerKey, *this))
        return false;
    ERR_clear_error();
    X509* authority = UaPkiAccess::get(issuer);
    const CertificatePointer copy(X509_dup(m_certificate.get()));
    if (copy == nullptr || X509_set_issuer_name(copy.get(), X509_get_subject_name(authority)) != 1) {
        addOpenSSLError("The issuer could not be set");
        return false;
    }
    const int place = X509_get_ext_by_NID(copy.get(), NID_authority_key_identifier, -1);
    if (place >= 0)
        UaPki::ExtensionPointer(X509_delete_ext(copy.get(), place));
    const UaPki::ExtensionPointer identifier =
        UaPki::authorityKeyIdentifier(copy.get(), authority, UaPkiAccess::get(issuerKey));
    if (identifier == nullptr || X509_add_ext(copy.get(), identifier.get(), place) != 1) {
        addOpenSSLError("The issuer's key identifier could not be set");
        return false;
    }
    X509* signedOne = ::sign(copy.get(), UaPkiAccess::get(issuerKey), algorithm, *this);
    if (signedOne == nullptr)
        return false;
    UaPkiAccess::set(*this, signedOne);
    return true;
}
