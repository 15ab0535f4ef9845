// The folders of a certificate store, as a channel's check reads them.
#pragma once

#include <stack/security/certificate.h>
#include <stack/security/certificatefile.h>

#include <string>
#include <vector>

namespace opcua {

/// Empty names stand for folders that are not there.
struct PkiFolders
{
    std::string trustedCertificates;
    std::string trustedRevocationLists;
    std::string issuerCertificates;
    std::string issuerRevocationLists;
    CertificateNaming naming = CertificateNaming::Endings;
};

/// One certificate as its file holds it. It is not decoded before somebody needs it: there may be thousands.
struct StoredCertificate
{
    Bytes der;
    unsigned long subjectHash = 0;
};

struct PkiContents
{
    std::vector<StoredCertificate> trusted;
    std::vector<StoredCertificate> issuers;
    std::vector<CrlHandle> revocationLists; ///< of both kinds of issuers
};

/// Takes regular files of up to 1 MB only and never waits for one. Certificates are what certificatefile.h
/// says, revocation lists files of any name in DER or PEM; what does not decode is passed over.
[[nodiscard]] PkiContents readPkiFolders(const PkiFolders& folders);

} // namespace opcua
