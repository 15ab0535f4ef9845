#include <app/mainwindow/qlumupdatecheck.h>
#include <app/settings/qlumsettingsmodel.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/stubapplication.h>

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QSettings>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {
class Reply : public QNetworkReply
{
public:
    Reply(const QByteArray& body, NetworkError error, QObject* parent) : QNetworkReply(parent), m_body(body)
    {
        setOpenMode(QIODevice::ReadOnly);
        if (error != NoError)
            setError(error, QStringLiteral("no route"));
        QTimer::singleShot(0, this, &QNetworkReply::finished);
    }
    void abort() override {}
    qint64 bytesAvailable() const override { return m_body.size() + QNetworkReply::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 maximum) override
    {
        const qint64 size = std::min<qint64>(maximum, m_body.size());
        std::memcpy(data, m_body.constData(), static_cast<std::size_t>(size));
        m_body.remove(0, static_cast<int>(size));
        return size;
    }

private:
    QByteArray m_body;
};

// Answers every request with the same body.
class Network : public QNetworkAccessManager
{
public:
    QByteArray body;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QList<QUrl> requests;

protected:
    QNetworkReply* createRequest(Operation, const QNetworkRequest& request, QIODevice*) override
    {
        requests.append(request.url());
        return new Reply(body, error, this);
    }
};

class UpdateCheck : public ::testing::Test
{
protected:
    UpdateCheck() { QSettings().clear(); }

    // What the user saw after one check.
    QStringList check(const QByteArray& body, bool automatic = false)
    {
        network.body = body;
        const DialogDriver driver;
        QSignalSpy finished(&network, &QNetworkAccessManager::finished);
        automatic ? updates.checkAutomatically() : updates.checkNow();
        EXPECT_TRUE(finished.wait(5000));
        return driver.seen();
    }
    static QString lastUpdate()
    {
        return QSettings().value(QStringLiteral("AutomaticUpdate/LastUpdate")).toString();
    }

    StubApplication application;
    QlumSettingsModel settings;
    Network network;
    QWidget window;
    QlumUpdateCheck updates{&settings, &network, &window};
};

const QStringList upToDate{
    QStringLiteral("Already up to date: The newest version of Tavelin is already installed.")};
} // namespace

TEST_F(UpdateCheck, VersionsAreComparedAsNumbers)
{
    EXPECT_EQ(check("V=1.4.2\nURL=https://x.example/a\n"), upToDate);
    EXPECT_EQ(check("V=1.3.99\r\nURL=https://x.example/a\r\n"), upToDate);
    EXPECT_TRUE(network.requests.first().path().endsWith(QStringLiteral("/tavelin-linux32-latest.txt")));
    EXPECT_FALSE(lastUpdate().isEmpty());
    for (const char* newer : {"1.4.10", "1.10.0", "2.0.0"}) {
        EXPECT_EQ(
            check(QByteArray("# head\nV=") + newer + "\nURL=https://x.example/a\n"),
            QStringList{
                QStringLiteral("Update available: An update of Tavelin is available: Tavelin V%1\nClick OK "
                               "to download it now.")
                    .arg(QLatin1String(newer))});
    }
}

TEST_F(UpdateCheck, BadAnswersAreLoggedAndLeaveNoDate)
{
    check("<html>V=9.9.9 URL=https://x.example</html>");
    check("V=1.5\nURL=https://x.example/a\n");
    check("V=1.5.0\n");
    network.error = QNetworkReply::HostNotFoundError;
    check("V=9.9.9\nURL=https://x.example/a\n");
    EXPECT_EQ(application.texts().mid(0, 3),
              (QStringList{"Could not retreive version or URL from server response",
                           "Could not retreive version or URL from server response",
                           "Could not retreive version or URL from server response"}));
    EXPECT_EQ(application.texts().last(),
              QStringLiteral("Error retrieving current version information: no route"));
    EXPECT_EQ(application.entries().last().source, QStringLiteral("Automatic Update"));
    EXPECT_TRUE(lastUpdate().isEmpty());
}

TEST_F(UpdateCheck, AutomaticCheckIsSilentAndKeepsItsInterval)
{
    const auto setLast = [](const QDateTime& when) {
        QSettings().setValue(QStringLiteral("AutomaticUpdate/LastUpdate"), when.toString(Qt::ISODate));
    };
    const QDateTime now = QDateTime::currentDateTime();
    EXPECT_FALSE(updates.isDue()); // never asked
    settings.setValue(QStringLiteral("AutomaticUpdate.CheckForUpdates"), true);
    settings.setValue(QStringLiteral("AutomaticUpdate.UpdateInterval"), 3);
    EXPECT_TRUE(updates.isDue());
    setLast(now.addDays(-2));
    EXPECT_FALSE(updates.isDue());
    setLast(now.addDays(1));
    EXPECT_TRUE(updates.isDue());
    setLast(now.addDays(-3).addSecs(-1));
    EXPECT_TRUE(updates.isDue());
    EXPECT_TRUE(check("V=1.0.0\nURL=https://x.example/a\n", true).isEmpty());
    EXPECT_EQ(application.texts().last(),
              QStringLiteral("The newest version of Tavelin is already installed"));
    EXPECT_FALSE(updates.isDue());
}
