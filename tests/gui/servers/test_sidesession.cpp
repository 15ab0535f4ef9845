// Sessions beside those of the project, and servers that tools connect anew.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtoolservices.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumsideconnect.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/connectanswers.h>
#include <tests/support/fakestack.h>
#include <tests/support/modeltext.h>
#include <tests/support/securedserver.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/useridentitytoken.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QVector>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
using UaClientSdk::UaSession;

class SideSession : public ServerNode
{
protected:
    SideSession()
    {
        qlumTakeServers(
            services, &owner,
            [this](unsigned int id) { return node && node->serverId() == id ? node.get() : nullptr; },
            [this] { return std::make_unique<ConnectAnswers>(script); });
        make();
    }
    ~SideSession() override { node.reset(); } // it may still call the server
    static QlumIdentity joe()
    {
        return std::make_shared<UaClientSdk::UaUserNameIdentityToken>(UaString("joe"), UaString("secret"));
    }
    void open(const QlumSideEndpoint& endpoint = {}, const QlumIdentity& identity = nullptr)
    {
        told.clear();
        ASSERT_TRUE(services.sideSession(
            node->serverId(), endpoint, identity, &owner,
            [this](std::shared_ptr<UaSession> opened, const UaStatus& status) {
                EXPECT_EQ(opened != nullptr, status.isGood());
                session = std::move(opened);
                told.append(status.isGood() ? "Good" : qlumStatusText(status.statusCode()));
            }));
    }
    bool isTold()
    {
        return QTest::qWaitFor([this] { return !told.isEmpty(); });
    }

    SecuredServer server{FakeStack::instance(), OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None};
    QObject owner;
    QlumToolServices services;
    std::shared_ptr<UaSession> session;
    QStringList told;
};

TEST_F(SideSession, LivesBesideThatOfTheProjectAsLongAsItIsHeld)
{
    ASSERT_TRUE(node->connectServer());
    open();
    ASSERT_TRUE(isTold());
    EXPECT_EQ(told, QStringList{"Good"});
    ASSERT_TRUE(session);
    EXPECT_NE(session.get(), node->session());
    EXPECT_TRUE(session->isConnected());
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CloseSessionRequest_EncodeableType), 0);
    session.reset();
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
    EXPECT_TRUE(node->session()->isConnected());
    EXPECT_EQ(told.size(), 1);
}

TEST_F(SideSession, AsksAsAConnectDoesAndKeepsTheProjectsUser)
{
    server.tokens = {{OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_None}};
    script.credentials = QlumCredentials{"jane", "other"};
    open({}, joe());
    ASSERT_TRUE(isTold());
    EXPECT_EQ(asked(), QStringList{"clear password"}) << "which the tool cannot have agreed to";
    EXPECT_EQ(told, QStringList{"Good"}) << log().join('\n');
    EXPECT_EQ(server.logins, std::vector<std::string>{"user jane other in clear"});
    EXPECT_EQ(node->discoverySetting(), setting);

    script.credentials.reset();
    open({}, joe());
    ASSERT_TRUE(isTold());
    EXPECT_EQ(told, QStringList{"BadRequestCancelledByClient"});
}

TEST_F(SideSession, FailuresAreToldWithTheirReason)
{
    FakeStack::instance().failNext(OpcUa_GetEndpointsRequest_EncodeableType, {OpcUa_BadTimeout});
    open();
    ASSERT_TRUE(isTold());
    EXPECT_EQ(told, QStringList{"BadTimeout"});
    FakeStack::instance().failNext(OpcUa_CreateSessionRequest_EncodeableType, {OpcUa_BadTooManySessions});
    open();
    ASSERT_TRUE(isTold());
    EXPECT_EQ(told, QStringList{"BadTooManySessions"});
    open({{}, OpcUa_MessageSecurityMode_Sign, {}});
    ASSERT_TRUE(isTold());
    EXPECT_EQ(told, QStringList{"BadSecurityModeRejected"});
    QString unknown;
    EXPECT_TRUE(services.sideSession(node->serverId() + 1, {}, nullptr, &owner,
                                     [&](const std::shared_ptr<UaSession>&, const UaStatus& status) {
                                         unknown = qlumStatusText(status.statusCode());
                                     }));
    EXPECT_EQ(unknown, "BadServerIndexInvalid");
}

TEST_F(SideSession, IsToldOnceWhenItsServerIsRemoved)
{
    script.isSilent = true;
    setting.userTokenType = QlumDiscoverySetting::UserName;
    for (const bool hangs : {false, true}) {
        if (hangs) {
            setting.userTokenType = QlumDiscoverySetting::Anonymous;
            FakeStack::instance().on(OpcUa_CreateSessionRequest_EncodeableType,
                                     [](const void*, void*) { return FakeStack::instance().hang(); });
        }
        make();
        open();
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return hangs ? FakeStack::instance().calls(OpcUa_CreateSessionRequest_EncodeableType) > 0
                         : !script.asked.isEmpty();
        }));
        node.reset();
        EXPECT_EQ(told, QStringList{"BadRequestCancelledByClient"});
        EXPECT_EQ(script.withdrawn, QStringList{"clear password"});
    }
}

TEST_F(SideSession, AToolConnectsTheServerAnewAsAnotherUser)
{
    ASSERT_TRUE(node->connectServer());
    server.tokens = {{OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_None}};
    script.credentials = QlumCredentials{"joe", "secret"};
    states.clear();
    ASSERT_TRUE(services.reconnectWith(node->serverId(), OpcUa_MessageSecurityMode_Invalid, joe()));
    EXPECT_FALSE(services.reconnectWith(node->serverId(), OpcUa_MessageSecurityMode_Invalid, joe()))
        << "it is busy";
    ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_EQ(states, (QList<int>{0, 1, 2})) << log().join('\n');
    EXPECT_EQ(server.logins.back(), "user joe secret in clear");
    EXPECT_EQ(node->discoverySetting(), setting) << "the project's user is who he was";

    ASSERT_TRUE(services.reconnectWith(node->serverId(), OpcUa_MessageSecurityMode_Sign, nullptr));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_EQ(log().last(), "100 The server does not support the security mode 'Sign'.");
    EXPECT_FALSE(services.reconnectWith(node->serverId() + 1, OpcUa_MessageSecurityMode_Sign, nullptr));
}

TEST_F(SideSession, AnotherModeTakesTheBestPolicyForIt)
{
    QlumEndpoint weak = setting.endpoint;
    weak.securityMode = OpcUa_MessageSecurityMode_Sign;
    weak.securityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
    weak.securityLevel = 10;
    QlumEndpoint strong = weak;
    strong.securityPolicyUri = OpcUa_SecurityPolicy_Aes256Sha256RsaPss;
    strong.securityLevel = 20;
    QlumEndpoint encrypted = strong;
    encrypted.securityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
    encrypted.securityLevel = 30;
    const QVector<QlumEndpoint> offered{setting.endpoint, weak, strong, encrypted};
    QlumEndpoint wanted = setting.endpoint;
    qlumSetSecurity(wanted, OpcUa_MessageSecurityMode_Sign, {});
    EXPECT_EQ(wanted.securityPolicyUri, QString());
    EXPECT_EQ(qlumBestPolicy(offered, wanted.url, wanted.securityMode), strong.securityPolicyUri);
    EXPECT_EQ(qlumBestPolicy(offered, "https://plc", wanted.securityMode), QString());
    qlumSetSecurity(weak, OpcUa_MessageSecurityMode_SignAndEncrypt, {});
    EXPECT_EQ(weak.securityPolicyUri, OpcUa_SecurityPolicy_Basic256Sha256) << "it goes with that mode, too";
    qlumSetSecurity(weak, OpcUa_MessageSecurityMode_None, {});
    EXPECT_EQ(weak.securityPolicyUri, qlumPolicyNone());
}
} // namespace
