#pragma once

#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <memory>

struct X509_crl_st;

/// The list of certificates that an issuer has revoked (CRL), or none. Copies share it until one of them
/// changes.
class UaPkiRevocationList : public UaPkiErrors
{
public:
    UaPkiRevocationList() = default;
    /// An empty list from now for validTime seconds; to be filled and then signed.
    UaPkiRevocationList(OpcUa_Int64 validTime, const UaPkiIdentity& issuer, OpcUa_Int64 crlNumber);

    /// PEM or DER, at most 1 MB, regular files only.
    [[nodiscard]] static UaPkiRevocationList fromFile(const UaString& path);
    /// Bytes that follow the list are refused.
    [[nodiscard]] static UaPkiRevocationList fromDER(const UaByteArray& bytes);
    [[nodiscard]] UaByteArray toDER() const;
    [[nodiscard]] bool toDERFile(const UaString& path) const;
    [[nodiscard]] bool toPEMFile(const UaString& path) const;

    [[nodiscard]] bool addRevoked(const UaPkiCertificate& certificate, const UaDateTime& time);
    /// SHA-256; also sets the key identifier.
    [[nodiscard]] bool sign(const UaPkiPrivateKey& privateKey);
    /// Whether the holder of this key signed it.
    [[nodiscard]] bool verify(const UaPkiPrivateKey& privateKey) const;
    [[nodiscard]] bool verify(const UaPkiPublicKey& publicKey) const;

    [[nodiscard]] bool isNull() const { return m_list == nullptr; }
    /// -1 when it has none, or one above 63 bits.
    [[nodiscard]] OpcUa_Int64 crlNumber() const;
    [[nodiscard]] UaDateTime validFrom() const;
    /// Null when the list names no time.
    [[nodiscard]] UaDateTime nextUpdate() const;
    /// Now lies between them; a list without a next update is never valid.
    [[nodiscard]] bool isValid() const;
    [[nodiscard]] UaPkiIdentity issuer() const;
    [[nodiscard]] int revokedCount() const;
    /// Whether the list names the certificate; its issuer must be that of the list.
    [[nodiscard]] bool isRevoked(const UaPkiCertificate& certificate) const;

private:
    friend struct UaPkiAccess;
    [[nodiscard]] bool makeUnique();

    std::shared_ptr<X509_crl_st> m_list;
};
