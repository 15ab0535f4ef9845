// Who logs in at a server, and what is remembered of that.
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/securedserver.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/uaclient.h>

#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <initializer_list>
#include <thread>

namespace {
using UaClientSdk::UaClient;

class ServerNodeUsers : public ServerNode
{
protected:
    ServerNodeUsers()
    {
        server.tokens = {{OpcUa_UserTokenType_Anonymous, nullptr}, {OpcUa_UserTokenType_UserName, nullptr}};
        offerOne(setting.endpoint);
    }
    ~ServerNodeUsers() override { node.reset(); }

    SecuredServer server{FakeStack::instance(), OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None};
};

TEST_F(ServerNodeUsers, ChangeOfTheUserAskedNothingOfAnAnonymousSession)
{
    make();
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
    changeUser();
    EXPECT_EQ(asked(), QStringList{"user"});
    EXPECT_EQ(log().last(), "30 Aborting changing user of current session");
    script.user = QlumUserChoice{QlumDiscoverySetting::UserName, "operator", "secret", "", ""};
    changeUser();
    EXPECT_EQ(script.danger, QlumPasswordDanger::Anyone);
    EXPECT_TRUE(log().contains("30 ChangeUser with UserTokenType: UserName"));
    EXPECT_EQ(log().last(), "30 ChangeUser succeeded.");
    EXPECT_EQ(node->discoverySetting(), setting) << "another user of this session only";
    asked();

    script.user->tokenType = QlumDiscoverySetting::Anonymous;
    script.isTriedAgain = true;
    server.activateResult = OpcUa_BadUserAccessDenied;
    QObject::connect(&node->connectFlow(), &QlumConnectFlow::finished, node.get(),
                     [this] { server.activateResult = OpcUa_Good; }); // the next time
    changeUser();
    EXPECT_TRUE(log().contains("100 ChangeUser failed with error 'BadUserAccessDenied'"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return log().last() == "30 ChangeUser succeeded."; }));
    EXPECT_EQ(asked(), (QStringList{"user", "user refused", "user"}));
    EXPECT_TRUE(script.failure.reason.contains("BadUserAccessDenied")) << script.failure.reason;
    EXPECT_TRUE(log().contains("30 ChangeUser with UserTokenType: Anonymous"));

    const QTemporaryDir folder;
    QFile file(folder.filePath("user.der"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const UaByteString& der = server.certificate;
    file.write(reinterpret_cast<const char*>(der.data()), der.length());
    file.close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    script.user = QlumUserChoice{QlumDiscoverySetting::Certificate, "", "", file.fileName(), "/nowhere.pem"};
    changeUser();
    EXPECT_TRUE(log().contains("30 ChangeUser with UserTokenType: Certificate"));
    EXPECT_EQ(log().last(), "30 Could not load private key for X509 user token from file '/nowhere.pem'");
    EXPECT_EQ(states, (QList<int>{1, 2})) << "the connection is what it was";
}

TEST_F(ServerNodeUsers, PasswordOfAUserChangeWasKeptAlthoughItWasRefused)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    setting.storePassword = true;
    make();
    script.credentials = QlumCredentials{"joe", "good"};
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(node->discoverySetting().password, "good");
    script.user = QlumUserChoice{QlumDiscoverySetting::UserName, "jane", "typo", "", ""};
    server.activateResult = OpcUa_BadIdentityTokenRejected;
    changeUser();
    EXPECT_EQ(script.proposal.userName, "joe");
    EXPECT_EQ(node->discoverySetting().userName, "joe");
    EXPECT_EQ(node->discoverySetting().password, "good");
    server.activateResult = OpcUa_Good;
    changeUser();
    EXPECT_EQ(node->discoverySetting().userName, "jane");
    EXPECT_EQ(node->discoverySetting().password, "typo");
}

TEST_F(ServerNodeUsers, RefusedPasswordWasUsedAgainWithoutAQuestion)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    setting.storePassword = true;
    make();
    script.credentials = QlumCredentials{"joe", "typo"};
    server.activateResult = OpcUa_BadUserAccessDenied;
    EXPECT_FALSE(node->connectServer());
    server.activateResult = OpcUa_Good;
    EXPECT_TRUE(node->discoverySetting().password.isEmpty());
    EXPECT_EQ(asked(), QStringList{"clear password"});
    script.credentials->password = "good";
    ASSERT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"clear password"});
    node->disconnectServer();
    ASSERT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList()) << "one that was taken is remembered";

    changeUser(); // it is over and done with when the session is lost
    asked();
    std::thread([&] { // the server has another one when the session comes back
        static_cast<void>(node->connectError(node->serverId(), UaClient::ActivateSession,
                                             OpcUa_BadUserAccessDenied, false));
    })
        .join();
    QCoreApplication::processEvents();
    EXPECT_TRUE(node->discoverySetting().password.isEmpty());
    EXPECT_EQ(asked(), QStringList{"failure"});
}

TEST_F(ServerNodeUsers, PasswordAndItsConsentWentWithTheNodeToAnotherServer)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    setting.storePassword = true;
    make();
    script.credentials = QlumCredentials{"joe", "secret"};
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(script.hosts, QStringList{"plc"});
    node->disconnectServer();
    asked();
    QlumDiscoverySetting other = node->discoverySetting();
    other.displayName = "Another name";
    node->setDiscoverySetting(other);
    ASSERT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList()) << "it is the same server";
    node->disconnectServer();
    other.endpoint.url = "opc.tcp://elsewhere:4840";
    offerOne(other.endpoint);
    node->setDiscoverySetting(other);
    EXPECT_TRUE(node->discoverySetting().password.isEmpty());
    other.password = "given anew"; // but not for the clear
    node->setDiscoverySetting(other);
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"clear password"});
    EXPECT_EQ(script.hosts, QStringList{"elsewhere"});
    for (auto change : std::initializer_list<std::function<void(QlumDiscoverySetting&)>>{
             [](auto& to) { to.userName = "jane"; },
             [](auto& to) { to.endpoint.securityPolicyUri = "urn:other"; },
             [](auto& to) { to.endpoint.securityMode = 2; }}) {
        QlumDiscoverySetting before = setting;
        before.password = "secret";
        QlumDiscoverySetting after = before;
        change(after);
        after.forgetWhatBelongsTo(before);
        EXPECT_TRUE(after.password.isEmpty());
    }
}
} // namespace
