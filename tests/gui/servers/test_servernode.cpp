#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <servers/qlumdiscoverysetting.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

#include <QCoreApplication>
#include <QList>
#include <QMessageLogContext>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <functional>
#include <initializer_list>
#include <string_view>
#include <thread>

namespace {
using UaClientSdk::UaClient;

QStringList g_debugTexts;

void takeDebug(QtMsgType, const QMessageLogContext&, const QString& text)
{
    g_debugTexts.append(text);
}

TEST_F(ServerNode, ConnectsAnonymouslyAndDisconnects)
{
    make();
    g_debugTexts.clear();
    const QtMessageHandler before = qInstallMessageHandler(takeDebug);
    const bool isConnected = node->connectServer();
    qInstallMessageHandler(before);
    ASSERT_TRUE(isConnected) << log().join('\n');
    EXPECT_EQ(states, (QList<int>{1, 2}));
    EXPECT_EQ(log().join('\n'),
              "10 Endpoint: 'opc.tcp://plc:4840'\n"
              "10 Security policy: 'http://opcfoundation.org/UA/SecurityPolicy#None'\n"
              "10 ApplicationUri: 'urn:plc'\n"
              "30 Used UserTokenType: Anonymous\n"
              "50 The server returned no certificate, all certificate checks will be skipped.\n"
              "50 Connection status of server 'Plc' changed to 'Connected'.\n"
              "30 Namespace table changed, mapping old to new namespace indices\n"
              "30 Successfully connected UA server.\n"
              "30 Revised values: SessionTimeout=1200000, SecureChannelLifetime=3600000");
    EXPECT_TRUE(
        g_debugTexts.contains("Try connect using SecurityPolicy "
                              "'http://opcfoundation.org/UA/SecurityPolicy#None', MessageSecurityMode "
                              "'None'"));
    EXPECT_EQ(node->namespaceTable(), (QStringList{"http://opcfoundation.org/UA/", "urn:server"}));
    EXPECT_FALSE(node->connectServer()) << "it is connected";
    node->disconnectServer();
    EXPECT_EQ(states.last(), 0);
    EXPECT_TRUE(log().contains("30 Disconnect succeeded."));
}

TEST_F(ServerNode, StoredNamespacesAreMappedAndUnchangedOnesAreSilent)
{
    make();
    node->setNamespaceTable({"http://opcfoundation.org/UA/", "urn:gone", "urn:server"});
    ASSERT_TRUE(node->connectServer());
    EXPECT_EQ(lastMap, (NamespaceMap{{0, 0}, {2, 1}}));
    node->disconnectServer();
    const int told = log().filter("Namespace table changed").size();
    ASSERT_TRUE(node->connectServer());
    EXPECT_TRUE(lastMap.isEmpty());
    EXPECT_EQ(log().filter("Namespace table changed").size(), told);
}

TEST_F(ServerNode, UnreachableServerAndRefusedSession)
{
    make();
    FakeStack::instance().setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(states, (QList<int>{1, 0}));
    EXPECT_EQ(log().last(), "100 Could not connect to server: BadConnectionRejected");
    FakeStack::instance().setConnectResult(OpcUa_Good);
    FakeStack::instance().failNext(OpcUa_CreateSessionRequest_EncodeableType, {OpcUa_BadTooManySessions});
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);
    EXPECT_EQ(states.last(), 3);
    EXPECT_TRUE(log().last().startsWith("100 Connecting failed with error '")) << log().last();
    ASSERT_TRUE(node->connectServer());
    FakeStack::instance().failNext(OpcUa_CloseSessionRequest_EncodeableType, {OpcUa_BadTimeout});
    node->disconnectServer();
    EXPECT_EQ(log().last(), "100 Disconnecting failed with error 'BadTimeout'");
}

TEST_F(ServerNode, UnsupportedPolicyAsksWhetherToTry)
{
    offer({{"opc.tcp://plc:4840", "urn:other-policy"}});
    setting.endpoint.serverCertificate = "what the project file has stored";
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"unsupported policy"});
    EXPECT_EQ(states, (QList<int>{1, 0}));
    EXPECT_TRUE(log().last().startsWith("100 The server does not support the configured security policy"));
    script.isUnsupportedPolicyIgnored = true;
    EXPECT_TRUE(node->connectServer());
    EXPECT_FALSE(log().filter("The server returned no certificate").isEmpty())
        << "a stored one is not taken for the server's";
}

TEST_F(ServerNode, AnotherPathIsUsedAfterAWarning)
{
    offer({{"opc.tcp://plc:4840/a", qlumPolicyNone()}, {"opc.tcp://plc:4840/b", qlumPolicyNone()}});
    setting.endpoint.url = "opc.tcp://plc:4840/c";
    make();
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"first certificate"});
    EXPECT_EQ(log().filter("10 Endpoint:").size(), 2);
}

TEST_F(ServerNode, PasswordIsAskedForAndKeptOnlyWhenWanted)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"clear password"});
    EXPECT_EQ(script.serverName, "Plc");
    EXPECT_EQ(log().last(), "30 Aborting connection attempt");
    EXPECT_EQ(states, (QList<int>{1, 0}));
    script.credentials = QlumCredentials{"jane", "secret"};
    static_cast<void>(node->connectServer());
    EXPECT_EQ(node->discoverySetting().userName, "jane");
    EXPECT_TRUE(log().contains("30 Used UserTokenType: UserName"));
    EXPECT_TRUE(node->discoverySetting().password.isEmpty());
    for (const QString& line : application.texts())
        EXPECT_FALSE(line.contains("secret")) << line;
}

TEST_F(ServerNode, FailureOfACommandedConnectWasInTheLogAlone)
{
    make();
    FakeStack::instance().setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList()) << "nobody has commanded it";
    const auto finish = [this] { ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); })); };
    QString failed;
    script.beforeAnswer = [&] {
        failed = node->toolTip();
        FakeStack::instance().setConnectResult(OpcUa_Good);
    };
    script.isTriedAgain = true;
    ASSERT_TRUE(node->startConnectByUser());
    finish();
    EXPECT_EQ(asked(), QStringList{"failure"});
    EXPECT_EQ(script.serverName, "Plc");
    EXPECT_TRUE(script.failure.reason.contains("BadConnectionRejected")) << script.failure.reason;
    EXPECT_FALSE(script.failure.advice.isEmpty());
    EXPECT_TRUE(failed.endsWith(script.failure.reason)) << "the tree says so: " << failed;
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return node->connectionStatus() == QlumConnectionStatus::Connected;
    })) << "tried again";
    finish();
    node->disconnectServer();

    script.isSilent = true; // the box is still there when a tool connects the server
    FakeStack::instance().failNext(OpcUa_CreateSessionRequest_EncodeableType, {OpcUa_BadTooManySessions});
    ASSERT_TRUE(node->startConnectByUser());
    finish();
    EXPECT_EQ(script.asked.last(), "failure");
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(script.withdrawn.last(), "failure");
    node->disconnectServer();

    offer({{"opc.tcp://plc:4840", "urn:other-policy"}});
    script.isSilent = false;
    asked();
    ASSERT_TRUE(node->startConnectByUser());
    finish();
    EXPECT_EQ(asked(), QStringList{"unsupported policy"}) << "who ends it himself knows";
}

TEST_F(ServerNode, NewNameIsToldWhetherFromPropertiesOrTheTree)
{
    make();
    int told = 0;
    QObject::connect(node.get(), &QlumServerNode::nameChanged, node.get(), [&told] { ++told; });
    setting.displayName = "Kiln";
    node->setDiscoverySetting(setting);
    EXPECT_EQ(node->displayName(), "Kiln");
    EXPECT_EQ(told, 1);
    node->setDiscoverySetting(setting);
    EXPECT_EQ(told, 1) << "any other change of Properties";
    EXPECT_TRUE(node->setData(QStringLiteral(" Mill "), Qt::EditRole));
    EXPECT_EQ(told, 2);
    EXPECT_EQ(node->discoverySetting().displayName, "Mill");
}

TEST_F(ServerNode, MissingUserCertificateEndsTheConnect)
{
    setting.userTokenType = QlumDiscoverySetting::Certificate;
    setting.certificateFile = "/nowhere.der";
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(log().last(), "30 Could not load certificate for X509 user token from file '/nowhere.der'");
    EXPECT_TRUE(log().contains("30 Used UserTokenType: Certificate"));
    EXPECT_EQ(states, (QList<int>{1, 0}));
}

TEST_F(ServerNode, ErrorsOfAReconnectAskNothing)
{
    make();
    script.isErrorIgnored = true;
    bool answer = true;
    std::thread([&] {
        answer =
            node->connectError(node->serverId(), UaClient::CreateSession, OpcUa_BadTooManySessions, true);
    }).join();
    EXPECT_FALSE(answer);
    EXPECT_EQ(log().last(), "100 Error 'BadTooManySessions' was returned during CreateSession");
    QCoreApplication::processEvents();
    EXPECT_EQ(asked(), QStringList());
}

TEST_F(ServerNode, MayBeRemovedWhileItAsks)
{
    offer({{"opc.tcp://plc:4840/other", qlumPolicyNone()}});
    make();
    script.isSilent = true;
    script.beforeAnswer = [this] { QTimer::singleShot(0, &application.window, [this] { node.reset(); }); };
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(node, nullptr);
    EXPECT_EQ(script.withdrawn, QStringList{"first certificate"});
}
TEST_F(ServerNode, HostThatCannotBeFoundIsAskedAboutUntilItIsIgnored)
{
    application.settings["General.ConnectTimeout"] = 300u; // a look-up may take longer than anybody waits
    offer({{"opc.tcp://plc.invalid:4840", qlumPolicyNone()}});
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"dialled host"});
    EXPECT_EQ(script.hosts, (QStringList{"plc.invalid", "plc"}));
    EXPECT_EQ(log().last(), "30 Aborting connection attempt");
    EXPECT_EQ(node->discoverySetting(), setting);
    script.isDialledHostKept = true;
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), QStringList{"dialled host"});
    setting.ignoredHost = "plc.invalid";
    setting.dialledHost = "plc:4840";
    EXPECT_EQ(node->discoverySetting(), setting) << "nothing else, least of all where to connect to";
    EXPECT_TRUE(node->toolTip().contains("Dialled at plc:4840. The server names the host 'plc.invalid'"));
    node->disconnectServer();
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList()) << "it is known now";
    node->disconnectServer();
    application.settings["General.ConnectTimeout"] = 5000u;
    offer({{"opc.tcp://127.0.0.1:4840", qlumPolicyNone()}});
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList()) << "another one that is found is nobody's business";
    node->disconnectServer();
    offer({{"opc.tcp://plc:4840", qlumPolicyNone()}});
    EXPECT_TRUE(node->connectServer());
    EXPECT_TRUE(node->discoverySetting().dialledHost.isEmpty()) << "the server has come to name it";
}

TEST_F(ServerNode, SessionIsAskedForByTheNameOfTheServerAndThenByTheDialledOne)
{
    QStringList told;
    const auto create = FakeStack::instance().handler(OpcUa_CreateSessionRequest_EncodeableType);
    FakeStack::instance().on(
        OpcUa_CreateSessionRequest_EncodeableType, [&told, create](const void* request, void* response) {
            const UaString url(static_cast<const OpcUa_CreateSessionRequest*>(request)->EndpointUrl);
            told.append(toQString(url));
            return url.view().find("127.0.0.1") != std::string_view::npos
                       ? static_cast<OpcUa_StatusCode>(OpcUa_BadTcpEndpointUrlInvalid)
                       : create(request, response);
        });
    offer({{"opc.tcp://127.0.0.1:4841/ua", qlumPolicyNone()}}); // behind a gateway
    make();
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(told, (QStringList{"opc.tcp://127.0.0.1:4841/ua", "opc.tcp://plc:4840"}));
    EXPECT_EQ(node->discoverySetting().dialledHost, "plc:4840");
    EXPECT_EQ(node->discoverySetting().endpoint.url, "opc.tcp://plc:4840") << "what is dialled stays";
    EXPECT_TRUE(log().filter("was returned during").isEmpty()) << log().join('\n');
}
} // namespace
