#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumstorefiles.h>
#include <certificates/qlumthumbprint.h>
#include <tests/gui/certificates/storefixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>

#include <sys/stat.h>
#include <unistd.h>

namespace {
class StoreFiles : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        store = QlumCertificateStoreConfiguration::ofApplication();
    }
    static QStringList names(const QString& folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden);
    }

    QlumCertificateStoreConfiguration store;
};

TEST_F(StoreFiles, StrangeThingsInAFolderAreSkipped)
{
    const QString& folder = store.trustedCertificates;
    const UaPkiCertificate one = certificate(QStringLiteral("one"));
    ASSERT_TRUE(one.toDERFile(uaPath(folder + QStringLiteral("one.DER"))));
    ASSERT_TRUE(one.toPEMFile(uaPath(folder + QStringLiteral("pem.crt"))));
    ASSERT_TRUE(one.toDERFile(uaPath(folder + QStringLiteral("1a2b3c4d.0"))));
    ASSERT_TRUE(one.toDERFile(uaPath(folder + QStringLiteral("plain"))));
    write(folder + QStringLiteral("garbage.cer"), QByteArray(1000, '\x30'));
    write(folder + QStringLiteral("long.der"),
          one.toDER().isEmpty() ? QByteArray() : QByteArray(1024 * 1024 + 1, 'x'));
    ASSERT_EQ(::mkfifo((folder + QStringLiteral("pipe.der")).toLocal8Bit().constData(), 0600), 0);
    ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("folder.der")));
    ASSERT_EQ(::symlink("loop.der", (folder + QStringLiteral("loop.der")).toLocal8Bit().constData()), 0);
    ASSERT_EQ(::symlink("/dev/zero", (folder + QStringLiteral("zero.der")).toLocal8Bit().constData()), 0);
    using Kind = QlumStoreFiles::Kind;
    EXPECT_EQ(QlumStoreFiles::names(folder, Kind::Certificates).join(QLatin1Char(' ')),
              QStringLiteral("garbage.cer long.der one.DER pem.crt"));
    EXPECT_TRUE(
        QlumStoreFiles::names(folder, Kind::HashedCertificates).contains(QStringLiteral("1a2b3c4d.0")));
    EXPECT_FALSE(QlumStoreFiles::names(folder, Kind::HashedCertificates).contains(QStringLiteral("plain")));
    for (const char* name : {"one.DER", "pem.crt"})
        EXPECT_EQ(QlumStoreFiles::loadCertificate(folder + QLatin1String(name)), one);
    for (const char* name :
         {"garbage.cer", "long.der", "pipe.der", "folder.der", "loop.der", "zero.der", "none.der"})
        EXPECT_TRUE(QlumStoreFiles::loadCertificate(folder + QLatin1String(name)).isNull()) << name;
    EXPECT_EQ(QlumStoreFiles::names(home.filePath(QStringLiteral("nowhere")), Kind::Certificates),
              QStringList());
}

TEST_F(StoreFiles, MovingReplacesNothing)
{
    const auto name = QStringLiteral("a.der");
    write(store.rejected + name, "one");
    write(store.trustedCertificates + name, "two");
    EXPECT_FALSE(QlumStoreFiles::move(name, store.rejected, store.trustedCertificates));
    EXPECT_EQ(read(store.trustedCertificates + name), "two");
    EXPECT_EQ(read(store.rejected + name), "one");
    write(store.trustedCertificates + name, "one");
    EXPECT_TRUE(QlumStoreFiles::move(name, store.rejected, store.trustedCertificates)) << "the same is there";
    EXPECT_EQ(names(store.rejected), QStringList());
    EXPECT_TRUE(QlumStoreFiles::move(name, store.trustedCertificates, store.rejected));
    EXPECT_EQ(read(store.rejected + name), "one");
    EXPECT_EQ(names(store.trustedCertificates), QStringList());
    {
        const FullDisk full(1);
        EXPECT_FALSE(QlumStoreFiles::move(name, store.rejected, store.trustedCertificates));
    }
    EXPECT_EQ(read(store.rejected + name), "one");
    EXPECT_EQ(names(store.trustedCertificates), QStringList());
    EXPECT_FALSE(QlumStoreFiles::move(QStringLiteral("gone.der"), store.rejected, store.trustedCertificates));
}

TEST_F(StoreFiles, AddedFilesAreNamedAfterWhatTheyHold)
{
    using Added = QlumStoreFiles::Added;
    using Store = QlumStoreFiles::Store;
    const UaPkiCertificate one = certificate(QStringLiteral("../../evil"));
    const QString file = home.filePath(QStringLiteral("some file.pem"));
    ASSERT_TRUE(one.toPEMFile(uaPath(file)));
    EXPECT_EQ(QlumStoreFiles::add(file, Store::Trusted, store), Added::Yes);
    EXPECT_EQ(QlumStoreFiles::add(file, Store::Trusted, store), Added::AlreadyThere);
    EXPECT_EQ(names(store.trustedCertificates), QStringList(qlumThumbprint(one) + QStringLiteral(".der")));

    EXPECT_EQ(QlumStoreFiles::add(file, Store::TlsIssuers, store), Added::Yes);
    EXPECT_EQ(QlumStoreFiles::add(file, Store::TlsIssuers, store), Added::AlreadyThere);
    const UaPkiCertificate sameName = certificate(QStringLiteral("../../evil"), 1700000000, 1800000000);
    ASSERT_TRUE(sameName.toDERFile(uaPath(file)));
    EXPECT_EQ(QlumStoreFiles::add(file, Store::TlsIssuers, store), Added::Yes);
    const QString hash =
        openssl({"x509", "-inform", "DER", "-in", file, "-noout", "-subject_hash"}).trimmed();
    EXPECT_EQ(names(store.tlsIssuerCertificates),
              (QStringList{hash + QStringLiteral(".0"), hash + QStringLiteral(".1")}));
    for (const QString& name : names(store.tlsIssuerCertificates))
        EXPECT_TRUE(read(store.tlsIssuerCertificates + name).startsWith("-----BEGIN CERTIFICATE"))
            << "the only form in which TLS finds it";

    UaPkiRevocationList list(3600, one.subject(), 1);
    ASSERT_TRUE(list.sign(key().privateKey()));
    ASSERT_TRUE(list.toPEMFile(uaPath(file)));
    EXPECT_EQ(QlumStoreFiles::add(file, Store::Issuers, store), Added::Yes);
    ASSERT_EQ(names(store.issuerRevocationLists).size(), 1);
    EXPECT_EQ(UaPkiRevocationList::fromFile(
                  uaPath(store.issuerRevocationLists + names(store.issuerRevocationLists).first()))
                  .crlNumber(),
              1);
    write(file, "neither");
    EXPECT_EQ(QlumStoreFiles::add(file, Store::Trusted, store), Added::NotReadable);
    EXPECT_EQ(QlumStoreFiles::add(home.path(), Store::Trusted, store), Added::NotReadable);
}
} // namespace
