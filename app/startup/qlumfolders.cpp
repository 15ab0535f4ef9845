#include <app/startup/qlumfolders.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <uabase/system/uadir.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumFolders)
};

void moveFiles(const QString& from, const QString& to)
{
    const QDir folder(from);
    const QStringList names = folder.entryList(QDir::Files, QDir::Unsorted);
    for (const QString& name : names)
        QFile::rename(folder.filePath(name), to + QLatin1Char('/') + name); // never over an existing file
}

// The whole store once lived below one folder "CA".
void migrate(const QString& base)
{
    const QString old = base + Text::tr("/korvanda/tavelin/PKI/CA");
    if (!QDir(old).exists())
        return;
    QFile::rename(old + QStringLiteral("/certs/tavelin.der"), QlumCertificateStore::ownCertificateFile());
    QFile::rename(old + QStringLiteral("/private/tavelin_key.pem"),
                  QlumCertificateStore::ownPrivateKeyFile());
    moveFiles(old + QStringLiteral("/certs/rejected"), QlumCertificateStore::rejected());
    moveFiles(old + QStringLiteral("/certs"), QlumCertificateStore::trustedCertificates());
    moveFiles(old + QStringLiteral("/crl"), QlumCertificateStore::trustedRevocationLists());
    const QDir pki(base + Text::tr("/korvanda/tavelin/PKI"));
    for (const char* folder : {"CA/certs/rejected", "CA/certs", "CA/crl", "CA/private", "CA"})
        pki.rmdir(QLatin1String(folder));
}
} // namespace

QString qlumRecoveryFolder()
{
    return toQString(UaDir::applicationDataPath()) + QStringLiteral("/korvanda/tavelin/recovery");
}

void prepareFolders()
{
    for (const QString& folder : QlumCertificateStore::folders())
        QDir().mkpath(folder);
    // the own key is nobody else's business
    QFile::setPermissions(QlumCertificateStore::ownPrivateKeys(),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    migrate(toQString(UaDir::applicationDataPath()));
}
