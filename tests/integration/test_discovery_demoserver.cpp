// Discovery servers of another make: what they tell of networks and in directories, by the whole way.
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumdiscoverylookup.h>
#include <servers/qlumdiscoverymodel.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uadiscovery.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QModelIndex>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaDiscovery;

constexpr int toldServers = 10000;
constexpr int oddServers = 5;

// Both servers of demoserver/discovery.mjs, started once for all tests.
class Discovery : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        folder = std::make_unique<TemporaryFolder>();
        process = std::make_unique<QProcess>();
        const QString info = QString::fromStdString(folder->file("info.json"));
        process->setStandardErrorFile(QProcess::nullDevice());
        process->start("node",
                       {TAVELIN_DEMOSERVER "/discovery.mjs", "--servers", QString::number(toldServers),
                        "--info", info, "--pki", QString::fromStdString(folder->file("pki"))});
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(info); }, 60000)) << "they do not start";
        QFile file(info);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        urls = QJsonDocument::fromJson(file.readAll()).object();
    }
    static void TearDownTestSuite()
    {
        process->kill();
        process->waitForFinished(5000);
        process.reset();
        UaPlatformLayer::cleanup();
        folder.reset();
    }
    static QString url(const char* name) { return urls.value(QLatin1String(name)).toString(); }
    static UaString uaUrl(const char* name) { return UaString(url(name).toUtf8().constData()); }

    QlumDiscoveryAnswer ask(QlumDiscoveryQuestion question, const char* name)
    {
        QlumDiscoveryLookup lookup;
        QlumDiscoveryAnswer told;
        bool isAnswered = false;
        QObject::connect(&lookup, &QlumDiscoveryLookup::answered, &lookup,
                         [&](quint64, const QlumDiscoveryAnswer& answer) {
                             told = answer;
                             isAnswered = true;
                         });
        lookup.ask(question, url(name));
        EXPECT_TRUE(QTest::qWaitFor([&] { return isAnswered; }, 30000));
        return told;
    }

    static inline std::unique_ptr<TemporaryFolder> folder;
    static inline std::unique_ptr<QProcess> process;
    static inline QJsonObject urls;
    StubApplication application;
};

TEST_F(Discovery, NetworkIsToldInPortionsByTheRecordsNumbers)
{
    UaDiscovery discovery;
    ServiceSettings settings;
    UaDateTime reset;
    UaServerOnNetworks servers;
    const UaClientSdk::ClientSecurityInfo none;
    const UaString at = uaUrl("discoveryUrl");
    ASSERT_TRUE(discovery.findServersOnNetwork(settings, at, none, 0, 3, reset, servers).isGood());
    ASSERT_EQ(servers.length(), 3u);
    EXPECT_EQ(UaString(servers[0].ServerName).toStdString(), "<b>Markup</b> & <img src=x>");
    EXPECT_FALSE(reset.isNull());
    ASSERT_TRUE(
        discovery.findServersOnNetwork(settings, at, none, servers[2].RecordId, 3, reset, servers).isGood());
    ASSERT_EQ(servers.length(), 3u);
    EXPECT_EQ(servers[0].RecordId, 4u);
    EXPECT_EQ(UaString(servers[2].ServerName).toStdString(), "Server 1");
    ASSERT_TRUE(discovery.findServersOnNetwork(settings, at, none, 0, 0, reset, servers).isGood());
    EXPECT_EQ(servers.length(), toldServers + oddServers);
    UaStringArray historians(1u);
    ASSERT_TRUE(OpcUa_IsGood(UaString("HD").copyTo(&historians[0])));
    ASSERT_TRUE(
        discovery.findServersOnNetwork(settings, at, none, 0, 0, historians, reset, servers).isGood());
    EXPECT_EQ(servers.length(), 0u);
}

TEST_F(Discovery, DirectoryIsAskedByItsMethodWithAFilter)
{
    UaDiscovery discovery;
    ServiceSettings settings;
    UaDateTime reset;
    UaServerOnNetworks servers;
    const UaString at = uaUrl("directoryUrl");
    ASSERT_TRUE(discovery.queryDirectory(settings, at, 5, 2, reset, servers).isGood());
    ASSERT_EQ(servers.length(), 2u);
    EXPECT_EQ(servers[0].RecordId, 6u);
    EXPECT_EQ(UaString(servers[0].DiscoveryUrl).toStdString(), "opc.tcp://10.255.0.1:1025");
    EXPECT_EQ(servers[0].NoOfServerCapabilities, 2);
    EXPECT_EQ(reset.toString().toStdString().substr(0, 10), "2024-05-06");
    const UaStatus status = discovery.queryDirectory(settings, at, UaClientSdk::SessionConnectInfo(),
                                                     UaClientSdk::SessionSecurityInfo(), 0, 0, "Server 4711",
                                                     UaString(), UaString(), UaStringArray(), reset, servers);
    ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    ASSERT_EQ(servers.length(), 1u);
    EXPECT_EQ(servers[0].RecordId, 4711u + oddServers);
}

TEST_F(Discovery, TreeTakesAFewOfTenThousandFromEachOfThem)
{
    const QlumDiscoveryAnswer servers = ask(QlumDiscoveryQuestion::Servers, "discoveryUrl");
    EXPECT_EQ(servers.status, OpcUa_Good);
    EXPECT_EQ(servers.told, 1 + toldServers + oddServers) << "itself, and those that it knows";
    EXPECT_EQ(servers.servers.size(), QlumDiscoveryLimits::servers);
    for (const QlumDiscoveryAnswer& answer : {ask(QlumDiscoveryQuestion::Network, "discoveryUrl"),
                                              ask(QlumDiscoveryQuestion::Directory, "directoryUrl")}) {
        EXPECT_EQ(answer.told, QlumDiscoveryLimits::servers + 1) << "more are not asked for";
        ASSERT_EQ(answer.servers.size(), QlumDiscoveryLimits::servers);
        EXPECT_LE(answer.servers.at(1).name.size(), QlumDiscoveryLimits::nameLength);
        EXPECT_EQ(answer.servers.at(oddServers).url, "opc.tcp://10.255.0.1:1025");
    }
}

TEST_F(Discovery, ServersThatAreNoDiscoveryServersSaySo)
{
    EXPECT_EQ(ask(QlumDiscoveryQuestion::Network, "directoryUrl").status, OpcUa_BadServiceUnsupported);
    EXPECT_TRUE(OpcUa_IsBad(ask(QlumDiscoveryQuestion::Directory, "discoveryUrl").status));
    EXPECT_EQ(ask(QlumDiscoveryQuestion::Servers, "directoryUrl").told, 1) << "itself";
}
} // namespace
