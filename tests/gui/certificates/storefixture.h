// A store below a HOME of its own, certificates to put into it, and a clock that is set.
#pragma once
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumclock.h>
#include <certificates/qlumowncertificate.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/modeltext.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

class StoreTest : public ::testing::Test
{
public:
    static const UaPkiRsaKeyPair& key()
    {
        static const UaPkiRsaKeyPair pair(2048);
        return pair;
    }

    static QlumOwnCertificate values(const QString& name = QStringLiteral("Test"))
    {
        QlumOwnCertificate wanted = QlumOwnCertificate::initial(name, QStringLiteral("Korvanda"));
        wanted.subject.country = "NL";
        wanted.keyBits = 1024; // quick to make
        return wanted;
    }

    /// With the shared key; the dates are seconds since 1970.
    static UaPkiCertificate certificate(const QString& name, qint64 from, qint64 to)
    {
        const QlumOwnCertificate wanted = values(name);
        static const UaPkiCertificate authority(wanted.info, wanted.subject, key(), true);
        const UaPkiCSR request = UaPkiCertificate::createCSR(wanted.info, wanted.subject, key());
        return UaPkiCertificate::fromCSR(request, authority, key().privateKey(), UaDateTime::fromTime_t(from),
                                         UaDateTime::fromTime_t(to));
    }
    static UaPkiCertificate certificate(const QString& name)
    {
        const QlumOwnCertificate wanted = values(name);
        return UaPkiCertificate(wanted.info, wanted.subject, key());
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    static void write(const QString& path, const QByteArray& content)
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path;
        ASSERT_EQ(file.write(content), content.size());
    }
    static UaString uaPath(const QString& path) { return UaString(path.toUtf8().constData()); }

    /// What the openssl program says about a file of ours.
    static QString openssl(const QStringList& arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("openssl"), arguments);
        return process.waitForFinished(20000) ? QString::fromUtf8(process.readAll()) : process.errorString();
    }

protected:
    void SetUp() override
    {
        m_oldHome = qgetenv("HOME");
        qputenv("HOME", home.path().toLocal8Bit());
        for (const QString& folder : QlumCertificateStore::folders())
            ASSERT_TRUE(QDir().mkpath(folder));
    }
    void TearDown() override
    {
        QlumClock::setSource(nullptr);
        QlumCertificates::cleanup();
        qputenv("HOME", m_oldHome);
    }

    static void setDaysLeft(const UaPkiCertificate& certificate, int days)
    {
        s_now = QDateTime::fromMSecsSinceEpoch(certificate.validTo().toMSecsSinceEpoch()).addDays(-days);
        QlumClock::setSource([] { return s_now; });
    }

    QTemporaryDir home;

private:
    static inline QDateTime s_now;
    QByteArray m_oldHome;
};

/// No file grows beyond so many bytes while it lives: a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit limit = m_old;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_old{};
    void (*m_handler)(int);
};
