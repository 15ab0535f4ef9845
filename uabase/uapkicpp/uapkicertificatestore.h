#pragma once

#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <set>
#include <unordered_map>

/// Certificates among which issuers are looked up.
class UaPkiCertificateStore
{
public:
    /// Null certificates are not added.
    void add(const UaPkiCertificate& certificate);
    /// Adds what the files of certificates in a folder hold, as the check of a server's certificate reads
    /// them, and returns the SHA-1 digests of the certificates. What is no regular file, larger than 1 MB or
    /// no certificate by its outline is passed over.
    std::set<UaByteString> addFolder(const UaString& folder);

    /// The certificate that has issued this one, by names, key identifiers and usage; the signature is not
    /// looked at. One that is valid now goes before one that is not. Null for a certificate that has issued
    /// itself and for one whose issuer is not here.
    [[nodiscard]] UaPkiCertificate issuerOf(const UaPkiCertificate& certificate) const;

private:
    /// By the hash of the subject. Kept as bytes: a folder may hold thousands, of which a few are issuers,
    /// and decoding is what takes long.
    std::unordered_multimap<unsigned long, UaByteString> m_bySubject;
};
