#include <certificates/qlumstorefiles.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumthumbprint.h>
#include <certificates/qlumtlstrust.h>
#include <opcua/opcua_crypto.h>
#include <uabase/system/uadir.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>

#include <vector>

namespace {
using Bytes = std::vector<unsigned char>;

bool belongs(const UaString& name, QlumStoreFiles::Kind kind)
{
    const auto naming = kind == QlumStoreFiles::Kind::HashedCertificates ? OpcUa_CertificateNaming_Dotted
                                                                         : OpcUa_CertificateNaming_Endings;
    return OpcUa_CertificateFile_IsName(name.toUtf8(), naming) != OpcUa_False ||
           (kind == QlumStoreFiles::Kind::RevocationLists &&
            toQString(name).endsWith(QLatin1String(".crl"), Qt::CaseInsensitive));
}

bool read(const QString& path, Bytes& bytes)
{
    return !uaReadFile(toUaString(path), UaPkiCertificate::maximumBytes, bytes);
}

QString inFolder(const QString& folder, const QString& name)
{
    return QDir(folder).filePath(name);
}

QlumStoreFiles::Added write(const QString& path, const UaByteArray& der)
{
    if (UaDir::exists(toUaString(path)))
        return QlumStoreFiles::Added::AlreadyThere;
    return uaWriteFileAtomically(toUaString(path), der.span()) ? QlumStoreFiles::Added::NotWritten
                                                               : QlumStoreFiles::Added::Yes;
}

QlumStoreFiles::Added writeHashed(const QString& folder, const UaPkiCertificate& certificate)
{
    if (!qlumFindTlsCertificate(folder, certificate).isEmpty())
        return QlumStoreFiles::Added::AlreadyThere;
    return qlumStoreTlsCertificate(folder, certificate).isEmpty() ? QlumStoreFiles::Added::NotWritten
                                                                  : QlumStoreFiles::Added::Yes;
}

QlumStoreFiles::Added addCertificate(const UaPkiCertificate& certificate, QlumStoreFiles::Store store,
                                     const QlumCertificateStoreConfiguration& folders)
{
    if (store == QlumStoreFiles::Store::TlsIssuers)
        return writeHashed(folders.tlsIssuerCertificates, certificate);
    const QString& folder =
        store == QlumStoreFiles::Store::Trusted ? folders.trustedCertificates : folders.issuerCertificates;
    return write(inFolder(folder, qlumThumbprint(certificate) + QStringLiteral(".der")), certificate.toDER());
}

// The first that cannot be written ends it: the next attempt finds the others there.
QlumStoreFiles::Added addCertificates(const UaPkiCertificateCollection& certificates,
                                      QlumStoreFiles::Store store,
                                      const QlumCertificateStoreConfiguration& folders)
{
    auto result = QlumStoreFiles::Added::AlreadyThere;
    for (int i = 0; i < certificates.size(); ++i) {
        const auto added = addCertificate(certificates[i], store, folders);
        if (added == QlumStoreFiles::Added::NotWritten)
            return added;
        if (added == QlumStoreFiles::Added::Yes)
            result = added;
    }
    return result;
}

const QString& listFolder(QlumStoreFiles::Store store, const QlumCertificateStoreConfiguration& folders)
{
    return store == QlumStoreFiles::Store::Trusted   ? folders.trustedRevocationLists
           : store == QlumStoreFiles::Store::Issuers ? folders.issuerRevocationLists
                                                     : folders.tlsIssuerRevocationLists;
}
} // namespace

QStringList QlumStoreFiles::names(const QString& folder, Kind kind)
{
    QStringList result;
    for (const UaString& name : UaDir::fileNames(toUaString(folder), OPCUA_MAXIMUM_STORE_FILES))
        if (belongs(name, kind))
            result.append(toQString(name));
    return result;
}

UaPkiCertificate QlumStoreFiles::loadCertificate(const QString& path)
{
    UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(toUaString(path));
    if (certificate.isNull())
        certificate = UaPkiCertificate::fromPEMFile(toUaString(path));
    return certificate;
}

UaPkiCertificateCollection QlumStoreFiles::loadCertificates(const QString& path)
{
    return UaPkiCertificateCollection::fromFile(toUaString(path));
}

bool QlumStoreFiles::move(const QString& name, const QString& from, const QString& to)
{
    const UaString source = toUaString(inFolder(from, name));
    const UaString target = toUaString(inFolder(to, name));
    const bool wasThere = UaDir::exists(target);
    if (wasThere) {
        Bytes moved;
        Bytes present;
        if (!read(toQString(source), moved) || !read(toQString(target), present) || moved != present)
            return false;
    } else if (UaDir::copy(source, target)) {
        return false;
    }
    if (!UaDir::remove(source))
        return true;
    if (!wasThere)
        (void)UaDir::remove(target); // the copy alone would leave it both trusted and rejected
    return false;
}

QlumStoreFiles::Added QlumStoreFiles::add(const QString& path, Store store,
                                          const QlumCertificateStoreConfiguration& folders)
{
    if (const auto certificates = loadCertificates(path); certificates.size() > 0)
        return addCertificates(certificates, store, folders);
    if (const auto list = UaPkiRevocationList::fromFile(toUaString(path)); !list.isNull())
        return addList(list, listFolder(store, folders));
    return Added::NotReadable;
}

QlumStoreFiles::Added QlumStoreFiles::addList(const UaPkiRevocationList& list, const QString& folder)
{
    const UaByteArray der = list.toDER();
    const QByteArray bytes(reinterpret_cast<const char*>(der.rawData()), static_cast<int>(der.size()));
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    return write(inFolder(folder, QString::fromLatin1(digest) + QStringLiteral(".crl")), der);
}
