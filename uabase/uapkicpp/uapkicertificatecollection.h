#pragma once

#include <opcua/opcua_crypto.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <vector>

/// Certificates in order.
class UaPkiCertificateCollection : public UaPkiErrors
{
public:
    static constexpr std::size_t maximumChain = OPCUA_MAXIMUM_CERTIFICATE_CHAIN;

    /// The certificates that lie one behind the other in a block, the way servers send a chain. Ends at the
    /// first that does not decode or is one too many: those before it are in the result, which has an error
    /// then.
    [[nodiscard]] static UaPkiCertificateCollection fromDERChain(const UaByteString& bytes);

    /// Those of a file in DER or PEM form, as the check of a server's certificate reads the files of a store:
    /// all of the file, or none when anything in it is damaged or left over. It has an error when there is
    /// none, and for each that does not decode, which is left out. Regular files of up to 1 MB only.
    [[nodiscard]] static UaPkiCertificateCollection fromFile(const UaString& path);

    /// False, and not added, for a null certificate.
    [[nodiscard]] bool addCertificate(const UaPkiCertificate& certificate);
    [[nodiscard]] int size() const { return static_cast<int>(m_certificates.size()); }
    /// index must be below size().
    const UaPkiCertificate& operator[](int index) const;
    /// A null certificate for an index out of the bounds.
    [[nodiscard]] UaPkiCertificate certificate(int index) const;

private:
    std::vector<UaPkiCertificate> m_certificates;
};
