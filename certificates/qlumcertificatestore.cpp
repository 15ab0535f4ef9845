#include <certificates/qlumcertificatestore.h>

#include <app/api/qlumtext.h>
#include <uabase/system/uadir.h>

namespace {
QString below(const QString& relative)
{
    return toQString(UaDir::applicationDataPath()) + QLatin1Char('/') + relative;
}
} // namespace

QString QlumCertificateStore::ownCertificates()
{
    return below(tr("korvanda/tavelin/PKI/own/certs"));
}

QString QlumCertificateStore::ownPrivateKeys()
{
    return below(tr("korvanda/tavelin/PKI/own/private"));
}

QString QlumCertificateStore::trustedRevocationLists()
{
    return below(tr("korvanda/tavelin/PKI/trusted/crl"));
}

QString QlumCertificateStore::trustedCertificates()
{
    return below(tr("korvanda/tavelin/PKI/trusted/certs"));
}

QString QlumCertificateStore::issuerRevocationLists()
{
    return below(tr("korvanda/tavelin/PKI/issuers/crl"));
}

QString QlumCertificateStore::issuerCertificates()
{
    return below(tr("korvanda/tavelin/PKI/issuers/certs"));
}

QString QlumCertificateStore::tlsIssuerRevocationLists()
{
    return below(tr("korvanda/tavelin/PKI/tls_issuers/crl"));
}

QString QlumCertificateStore::tlsIssuerCertificates()
{
    return below(tr("korvanda/tavelin/PKI/tls_issuers/certs"));
}

QString QlumCertificateStore::rejected()
{
    return below(tr("korvanda/tavelin/PKI/rejected"));
}

QString QlumCertificateStore::trace()
{
    return below(tr("korvanda/tavelin/trace"));
}

QString QlumCertificateStore::ownCertificateFile()
{
    return ownCertificates() + QStringLiteral("/tavelin.der");
}

QString QlumCertificateStore::ownPrivateKeyFile()
{
    return ownPrivateKeys() + QStringLiteral("/tavelin_key.pem");
}

QStringList QlumCertificateStore::folders()
{
    return {ownCertificates(),
            ownPrivateKeys(),
            trustedRevocationLists(),
            trustedCertificates(),
            issuerRevocationLists(),
            issuerCertificates(),
            tlsIssuerRevocationLists(),
            tlsIssuerCertificates(),
            rejected(),
            trace()};
}
