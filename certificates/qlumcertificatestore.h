// Where the certificate store keeps what.
#pragma once
#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// Folders of the store below the user's configuration folder, without a slash at the end.
class QlumCertificateStore
{
    Q_DECLARE_TR_FUNCTIONS(QlumCertificateStore)
public:
    QlumCertificateStore() = delete;

    [[nodiscard]] static QString ownCertificates();
    [[nodiscard]] static QString ownPrivateKeys();
    [[nodiscard]] static QString trustedRevocationLists();
    [[nodiscard]] static QString trustedCertificates();
    [[nodiscard]] static QString issuerRevocationLists();
    [[nodiscard]] static QString issuerCertificates();
    [[nodiscard]] static QString tlsIssuerRevocationLists();
    [[nodiscard]] static QString tlsIssuerCertificates();
    [[nodiscard]] static QString rejected();
    [[nodiscard]] static QString trace();

    [[nodiscard]] static QString ownCertificateFile();
    [[nodiscard]] static QString ownPrivateKeyFile();

    /// All folders in the order in which they are made.
    [[nodiscard]] static QStringList folders();
};
