// Asking for certificates: UaPkiCertificate::createCSR.
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkiextensions_p.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>

namespace {

UaPkiCSR makeRequest(const UaPkiCertificateInfo& info, const X509_NAME* subject, EVP_PKEY* key,
                     UaPkiCertificate::SignatureAlgorithm algorithm)
{
    UaPkiCSR result;
    ERR_clear_error();
    UaPki::RequestPointer request(X509_REQ_new());
    if (request == nullptr || X509_REQ_set_version(request.get(), 0) != 1 ||
        X509_REQ_set_subject_name(request.get(), subject) != 1 ||
        X509_REQ_set_pubkey(request.get(), key) != 1) {
        result.addOpenSSLError("The request could not be created");
        return result;
    }
    if (!UaPki::addExtensions(request.get(), info, result))
        return result;
    if (X509_REQ_sign(request.get(), key, UaPki::digestOf(algorithm)) <= 0) {
        result.addOpenSSLError("The request could not be signed");
        return result;
    }
    UaPkiAccess::set(result, request.release());
    return result;
}

} // namespace

UaPkiCSR UaPkiCertificate::createCSR(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                     const UaPkiRsaKeyPair& keyPair, SignatureAlgorithm algorithm)
{
    UaPkiCSR failed;
    const UaPki::NamePointer name = UaPki::toName(subject, failed);
    if (name == nullptr)
        return failed;
    if (keyPair.isNull()) {
        failed.addError("There is no key pair for the request");
        return failed;
    }
    return makeRequest(info, name.get(), UaPkiAccess::get(keyPair), algorithm);
}

UaPkiCSR UaPkiCertificate::createCSR(const UaPkiPrivateKey& privateKey, SignatureAlgorithm algorithm) const
{
    if (!UaPkiRsaKeyPair::checkKeyPair(publicKey(), privateKey)) {
        UaPkiCSR failed;
        failed.addError("The private key does not belong to the certificate");
        return failed;
    }
    return makeRequest(info(), X509_get_subject_name(m_certificate.get()), UaPkiAccess::get(privateKey),
                       algorithm);
}
