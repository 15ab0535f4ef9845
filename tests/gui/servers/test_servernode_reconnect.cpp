#include <app/api/qlumconnectionstatus.h>
#include <servers/qlumnetworkwatch.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/networkmessages.h>

#include <QList>
#include <QString>
#include <QTest>

namespace {
const QString hurried = QStringLiteral("30 Reconnecting to server 'Plc' now");

class LostServerNode : public ServerNode
{
protected:
    LostServerNode()
    {
        // the clock of the session stands still: nothing but a wish makes it try again
        application.settings["General.WatchdogTime"] = 600000u;
        application.settings["General.AutomaticReconnect"] = true;
    }
    void connectAndLose()
    {
        make();
        ASSERT_TRUE(node->connectServer()) << log().join('\n');
        FakeStack::instance().setConnectResult(OpcUa_BadConnectionRejected);
        FakeStack::instance().loseLink();
        ASSERT_TRUE(waitFor(QlumConnectionStatus::ConnectionError));
        connects = FakeStack::instance().connects();
    }
    bool waitFor(QlumConnectionStatus status)
    {
        return QTest::qWaitFor([&] { return node->connectionStatus() == status; });
    }
    bool waitForAttempts(int count)
    {
        return QTest::qWaitFor([&] { return FakeStack::instance().connects() == connects + count; });
    }

    int connects = 0; //< until the link was lost
};

TEST_F(LostServerNode, ConnectMakesTheNextAttemptAtOnce)
{
    connectAndLose();
    EXPECT_FALSE(node->connectServer());
    EXPECT_TRUE(waitForAttempts(1));
    EXPECT_EQ(log().count(hurried), 1);
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectionError);
    FakeStack::instance().setConnectResult(OpcUa_Good);
    EXPECT_FALSE(node->connectServer());
    EXPECT_TRUE(waitFor(QlumConnectionStatus::Connected));
    EXPECT_EQ(states, (QList<int>{1, 2, 4, 2})) << "the session is the one it was";
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CreateSessionRequest_EncodeableType), 1);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(log().count(hurried), 2) << "nothing is to be hurried any more";
}

TEST_F(LostServerNode, AChangeOfTheNetworkMakesTheNextAttemptAtOnce)
{
    connectAndLose();
    FakeStack::instance().setConnectResult(OpcUa_Good);
    const auto changed = networkmessages::addressMessage(RTM_NEWADDR);
    QlumNetworkWatch::shared()->takeMessages(changed);
    EXPECT_TRUE(waitFor(QlumConnectionStatus::Connected));
    EXPECT_EQ(log().count(hurried), 1);
    emit QlumNetworkWatch::shared()->networkChanged();
    EXPECT_EQ(log().count(hurried), 1) << "it is connected";
}

TEST_F(LostServerNode, ASessionThatIsNotToReconnectGivesWayToANewOne)
{
    application.settings["General.AutomaticReconnect"] = false;
    connectAndLose();
    emit QlumNetworkWatch::shared()->networkChanged();
    FakeStack::instance().setConnectResult(OpcUa_Good);
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(states, (QList<int>{1, 2, 4, 0, 1, 2}));
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CreateSessionRequest_EncodeableType), 2);
    EXPECT_FALSE(log().contains(hurried));
}
} // namespace
