#include <app/api/qlumconnectionstatus.h>
#include <servers/qlumdiscoverysetting.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/modeltext.h>
#include <uaclientsdk/uaclient.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QLineEdit>
#include <QList>
#include <QMessageBox>
#include <QString>
#include <QStringList>

#include <thread>

namespace {
using UaClientSdk::UaClient;

TEST_F(ServerNode, ConnectsAnonymouslyAndDisconnects)
{
    make();
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
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
}

TEST_F(ServerNode, UnsupportedPolicyAsksWhetherToTry)
{
    offer({{"opc.tcp://plc:4840", "urn:other-policy"}});
    make();
    {
        DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
        EXPECT_FALSE(node->connectServer());
        ASSERT_EQ(driver.seen().size(), 1);
        EXPECT_TRUE(
            driver.seen().first().startsWith("Unsupported Security Policy: The connection cannot be"));
    }
    EXPECT_EQ(states, (QList<int>{1, 0}));
    EXPECT_TRUE(log().last().startsWith("100 The server does not support the configured security policy"));
    DialogDriver driver(DialogDriver::press(QMessageBox::Ignore));
    EXPECT_TRUE(node->connectServer());
}

TEST_F(ServerNode, AnotherPathIsUsedAfterAWarning)
{
    offer({{"opc.tcp://plc:4840/a", qlumPolicyNone()}, {"opc.tcp://plc:4840/b", qlumPolicyNone()}});
    setting.endpoint.url = "opc.tcp://plc:4840/c";
    make();
    DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
    EXPECT_TRUE(node->connectServer());
    ASSERT_EQ(driver.seen().size(), 1);
    EXPECT_TRUE(driver.seen().first().startsWith("URL not found: There was no exact match"));
    EXPECT_EQ(log().filter("10 Endpoint:").size(), 2);
}

TEST_F(ServerNode, PasswordIsAskedForAndKeptOnlyWhenWanted)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    make();
    {
        DialogDriver cancels;
        EXPECT_FALSE(node->connectServer());
        EXPECT_EQ(cancels.seen(), QStringList{"Plc"});
    }
    EXPECT_EQ(log().last(), "30 Aborting connection attempt");
    EXPECT_EQ(states, (QList<int>{1, 0}));
    DialogDriver enters([](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("userName")->setText("jane");
        dialog.findChild<QLineEdit*>("password")->setText("secret");
        dialog.accept();
    });
    static_cast<void>(node->connectServer());
    EXPECT_EQ(node->discoverySetting().userName, "jane");
    EXPECT_TRUE(node->discoverySetting().password.isEmpty());
    for (const QString& line : application.texts())
        EXPECT_FALSE(line.contains("secret")) << line;
}

TEST_F(ServerNode, ChangingTheUserAsksEvenWhenAPasswordIsStored)
{
    make();
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    setting.storePassword = true;
    setting.password = "secret";
    node->setDiscoverySetting(setting);
    {
        DialogDriver cancels;
        node->changeUser();
        EXPECT_EQ(cancels.seen(), QStringList{"Plc"});
    }
    EXPECT_TRUE(log().contains("30 ChangeUser with UserTokenType: UserName"));
    EXPECT_EQ(log().last(), "30 Aborting changing user of current session");
    setting.userTokenType = QlumDiscoverySetting::Anonymous;
    node->setDiscoverySetting(setting);
    node->changeUser();
    EXPECT_EQ(log().last(), "30 ChangeUser succeeded.");
    FakeStack::instance().failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadUserAccessDenied});
    node->changeUser();
    EXPECT_EQ(log().last(), "100 ChangeUser failed with error 'BadUserAccessDenied'");
}

TEST_F(ServerNode, MissingUserCertificateEndsTheConnect)
{
    setting.userTokenType = QlumDiscoverySetting::Certificate;
    setting.certificateFile = "/nowhere.der";
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(log().last(), "30 Could not load certificate for X509 user token from file '/nowhere.der'");
    EXPECT_EQ(states, (QList<int>{1, 0}));
}

TEST_F(ServerNode, ErrorsOfAReconnectOpenNoBox)
{
    make();
    bool answer = true;
    std::thread([&] {
        answer = node->connectError(node->serverId(), UaClient::ActivateSession,
                                    OpcUa_BadIdentityTokenRejected, true);
    }).join();
    EXPECT_FALSE(answer);
    EXPECT_EQ(log().last(), "100 Error 'BadIdentityTokenRejected' was returned during ActivateSession");
    DialogDriver driver(DialogDriver::press(QMessageBox::Ignore));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    EXPECT_TRUE(node->connectError(node->serverId(), UaClient::CreateSession,
                                   OpcUa_BadCertificateHostNameInvalid, true));
    QApplication::restoreOverrideCursor();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ServerNode, MayBeRemovedWhileItsBoxIsOpen)
{
    offer({{"opc.tcp://plc:4840/other", qlumPolicyNone()}});
    make();
    DialogDriver driver([this](QDialog& dialog) {
        node.reset();
        dialog.accept();
    });
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(node, nullptr);
}
} // namespace
