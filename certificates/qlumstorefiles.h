// The files of a certificate store: finding, reading, moving and adding them.
#pragma once
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>

#include <QString>
#include <QStringList>

class UaPkiRevocationList;

/// Folders of others may hold anything: only regular files of at most 1 MB are read, never a pipe or a
/// device.
class QlumStoreFiles
{
public:
    enum class Kind { Certificates, HashedCertificates, RevocationLists };
    enum class Store { Trusted, Issuers, TlsIssuers };
    enum class Added { Yes, AlreadyThere, NotReadable, NotWritten };

    QlumStoreFiles() = delete;

    /// Names that belong to a store of that kind, sorted. Those of certificates are the ones that count when
    /// a server's certificate is checked.
    [[nodiscard]] static QStringList names(const QString& folder, Kind kind);
    /// DER, and failing that PEM; null when it is neither.
    [[nodiscard]] static UaPkiCertificate loadCertificate(const QString& path);

    /// All of a file that count when a server's certificate is checked; none when the file is unreadable.
    [[nodiscard]] static UaPkiCertificateCollection loadCertificates(const QString& path);

    /// Moves a certificate to another folder of the store under the same name. Another certificate of that
    /// name there is not replaced. False when it failed; then everything is as it was.
    [[nodiscard]] static bool move(const QString& name, const QString& from, const QString& to);

    /// Puts the certificates of a file or its revocation list into the store, each under a name made of its
    /// digest, or for TLS issuers of its subject's hash.
    [[nodiscard]] static Added add(const QString& path, Store store,
                                   const QlumCertificateStoreConfiguration& folders);
    /// Puts a revocation list into a folder.
    [[nodiscard]] static Added addList(const UaPkiRevocationList& list, const QString& folder);
};
