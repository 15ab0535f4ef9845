#pragma once

#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <memory>

struct X509_req_st;

/// A request for a certificate (PKCS#10), or none. Made by UaPkiCertificate::createCSR.
class UaPkiCSR : public UaPkiErrors
{
public:
    UaPkiCSR() = default;

    [[nodiscard]] static UaPkiCSR fromDER(const UaByteArray& bytes);
    /// DER or PEM, at most 1 MB.
    [[nodiscard]] static UaPkiCSR fromFile(const UaString& path);
    [[nodiscard]] UaByteArray toDER() const;
    [[nodiscard]] bool toDERFile(const UaString& path) const;
    [[nodiscard]] bool toPEMFile(const UaString& path) const;

    [[nodiscard]] bool isNull() const { return m_request == nullptr; }
    [[nodiscard]] UaPkiIdentity subject() const;
    /// The alternative names that are asked for; no times, no serial number.
    [[nodiscard]] UaPkiCertificateInfo info() const;
    [[nodiscard]] UaPkiPublicKey publicKey() const;
    /// Whether who asks holds the private key.
    [[nodiscard]] bool verifySignature() const;

private:
    friend struct UaPkiAccess;
    std::shared_ptr<X509_req_st> m_request;
};
