// Where a certificate store keeps what, as the certificate manager and the trust decisions are told.
#pragma once
#include <QString>

/// Paths in native separators; folders end with a separator. Empty folders stand for a store that is not
/// there (only the store of the TLS issuers may be missing).
struct QlumCertificateStoreConfiguration
{
    QString trustedCertificates;
    QString trustedRevocationLists;
    QString issuerCertificates;
    QString issuerRevocationLists;
    QString tlsIssuerCertificates;
    QString tlsIssuerRevocationLists;
    QString rejected;
    QString ownCertificateFile;
    QString ownPrivateKeyFile;

    [[nodiscard]] bool hasTlsIssuers() const
    {
        return !tlsIssuerCertificates.isEmpty() && !tlsIssuerRevocationLists.isEmpty();
    }

    /// The application's own store, below the user's configuration folder.
    [[nodiscard]] static QlumCertificateStoreConfiguration ofApplication();
};
