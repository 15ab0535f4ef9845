#include <certificates/qlumcertificatestoreconfiguration.h>

#include <certificates/qlumcertificatestore.h>

#include <QDir>

QlumCertificateStoreConfiguration QlumCertificateStoreConfiguration::ofApplication()
{
    const auto folder = [](const QString& path) { return QDir::toNativeSeparators(path + QLatin1Char('/')); };
    QlumCertificateStoreConfiguration store;
    store.trustedCertificates = folder(QlumCertificateStore::trustedCertificates());
    store.trustedRevocationLists = folder(QlumCertificateStore::trustedRevocationLists());
    store.issuerCertificates = folder(QlumCertificateStore::issuerCertificates());
    store.issuerRevocationLists = folder(QlumCertificateStore::issuerRevocationLists());
    store.tlsIssuerCertificates = folder(QlumCertificateStore::tlsIssuerCertificates());
    store.tlsIssuerRevocationLists = folder(QlumCertificateStore::tlsIssuerRevocationLists());
    store.rejected = folder(QlumCertificateStore::rejected());
    store.ownCertificateFile = QDir::toNativeSeparators(QlumCertificateStore::ownCertificateFile());
    store.ownPrivateKeyFile = QDir::toNativeSeparators(QlumCertificateStore::ownPrivateKeyFile());
    return store;
}
