// X.509 certificates, OPC 10000-6, 6.2.
#pragma once

#include <opcua/opcua_crypto.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <memory>
#include <vector>

struct x509_st;

/// A certificate, or none (null). Copies share it; a shared certificate never changes.
class UaPkiCertificate : public UaPkiErrors
{
public:
    enum SignatureAlgorithm { UnknownSignatureAlgorithm = -1, Sha1 = 0, Sha256 = 1, Sha384 = 2, Sha512 = 3 };
    /// By the crypto library's number; any other of its numbers may be cast to it.
    enum Extension : int {
        NetscapeComment = 78,
        SubjectKeyIdentifier = 82,
        KeyUsage = 83,
        SubjectAltName = 85,
        BasicConstraints = 87,
        AuthorityKeyIdentifier = 90,
        CRLDistributionPoints = 103,
        ExtendedKeyUsage = 126
    };
    /// Certificates and files of certificates above this are refused.
    static constexpr std::size_t maximumBytes = OPCUA_MAXIMUM_CERTIFICATE_LENGTH;

    UaPkiCertificate() = default;
    /// Signed with its own key: an application's certificate, or that of a certificate authority.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiRsaKeyPair& keyPair, bool isCA = false,
                     SignatureAlgorithm algorithm = Sha256);
    /// An application's certificate that an authority signs. Null when key and certificate of the issuer do
    /// not belong together.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiPublicKey& publicKey, const UaPkiCertificate& issuer,
                     const UaPkiPrivateKey& issuerKey, SignatureAlgorithm algorithm = Sha256);
    /// The same when only the issuer's name is at hand.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiPublicKey& publicKey, const UaPkiIdentity& issuer,
                     const UaPkiPrivateKey& issuerKey, SignatureAlgorithm algorithm = Sha256);

    /// Exactly one certificate: bytes that follow it are refused.
    [[nodiscard]] static UaPkiCertificate fromDER(const UaByteString& bytes);
    [[nodiscard]] static UaPkiCertificate fromDER(const UaByteArray& bytes);
    /// Regular files only, read without blocking.
    [[nodiscard]] static UaPkiCertificate fromDERFile(const UaString& path);
    [[nodiscard]] static UaPkiCertificate fromPEMFile(const UaString& path);
    [[nodiscard]] UaByteArray toDER() const;
    [[nodiscard]] UaByteString toByteStringDER() const;
    /// Replaces the file in one step.
    [[nodiscard]] bool toDERFile(const UaString& path) const;
    [[nodiscard]] bool toPEMFile(const UaString& path) const;

    /// A request for a certificate like one that would be made from the same values.
    [[nodiscard]] static UaPkiCSR createCSR(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                            const UaPkiRsaKeyPair& keyPair,
                                            SignatureAlgorithm algorithm = Sha256);
    /// A request to renew this certificate: its subject and alternative names; the key must be its own.
    [[nodiscard]] UaPkiCSR createCSR(const UaPkiPrivateKey& privateKey,
                                     SignatureAlgorithm algorithm = Sha256) const;
    /// Issues what the request asks for: name, key and alternative names. What else it may ask for (to become
    /// an authority, say) is not granted. The serial number is random. Null when the request is not signed by
    /// its key.
    [[nodiscard]] static UaPkiCertificate fromCSR(const UaPkiCSR& csr, const UaPkiCertificate& issuer,
                                                  const UaPkiPrivateKey& issuerKey,
                                                  const UaDateTime& validFrom, const UaDateTime& validTo,
                                                  SignatureAlgorithm algorithm = Sha256);
    /// Signs again, with the issuer's name and key identifier. Copies made before keep the old signature.
    /// False, and unchanged, on a failure.
    [[nodiscard]] bool sign(const UaPkiCertificate& issuer, const UaPkiPrivateKey& issuerKey,
                            SignatureAlgorithm algorithm = Sha256);

    [[nodiscard]] bool isNull() const { return m_certificate == nullptr; }
    [[nodiscard]] UaPkiCertificateInfo info() const;
    [[nodiscard]] UaPkiIdentity subject() const;
    [[nodiscard]] UaPkiIdentity issuer() const;
    [[nodiscard]] UaString commonName() const;
    /// Upper-case hexadecimal, colons between bytes.
    [[nodiscard]] UaString serialNumber() const;
    [[nodiscard]] UaDateTime validFrom() const;
    [[nodiscard]] UaDateTime validTo() const;
    /// Now is within the validity period; nothing else is looked at.
    [[nodiscard]] bool isValid() const;
    /// Issuer and subject are equal and its own key verifies the signature.
    [[nodiscard]] bool isSelfSigned() const;
    /// Whether the issuer's name, key identifier and usage fit; the signature is not looked at.
    [[nodiscard]] bool isIssuedBy(const UaPkiCertificate& issuer) const;
    [[nodiscard]] bool isCA() const;
    [[nodiscard]] bool verifySignature(const UaPkiPublicKey& publicKey) const;
    /// By the digest.
    [[nodiscard]] SignatureAlgorithm signatureAlgorithm() const;
    /// The algorithm by its long name, "sha256WithRSAEncryption"; by the crypto library's number.
    [[nodiscard]] UaString signatureTypeString() const;
    [[nodiscard]] int signatureTypeNID() const;
    [[nodiscard]] bool hasExtension(Extension extension) const;
    /// As text; null when absent. Key identifiers are upper-case hexadecimal pairs with colons.
    [[nodiscard]] UaString extensionValue(Extension extension) const;
    /// Of all extensions, in the certificate's order.
    [[nodiscard]] std::vector<Extension> extensions() const;
    [[nodiscard]] OpcUa_UInt32 subjectNameHash() const;
    /// SHA-1 of the DER form.
    [[nodiscard]] UaByteString thumbPrint() const;
    [[nodiscard]] UaPkiPublicKey publicKey() const;

    /// By content; two null certificates are equal.
    friend bool operator==(const UaPkiCertificate& left, const UaPkiCertificate& right);

private:
    friend struct UaPkiAccess;
    std::shared_ptr<x509_st> m_certificate;
};
