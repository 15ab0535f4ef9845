#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/servers/servernodefixture.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {
using monitoring::ItemState;

class MonitoredServerNode : public ServerNode
{
protected:
    MonitoredServerNode()
    {
        application.settings["General.AutomaticReconnect"] = true;
        auto& stack = FakeStack::instance();
        stack.setNamespaces({"http://opcfoundation.org/UA/", "urn:plc", "urn:a", "urn:b"});
        stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [](const void*, void* response) {
            static std::atomic<OpcUa_UInt32> last{0};
            auto* answer = static_cast<OpcUa_CreateSubscriptionResponse*>(response);
            answer->SubscriptionId = ++last;
            answer->RevisedPublishingInterval = 1000;
            answer->RevisedLifetimeCount = 1200;
            answer->RevisedMaxKeepAliveCount = 10;
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        stack.on(
            OpcUa_CreateMonitoredItemsRequest_EncodeableType, [this](const void* request, void* response) {
                const auto* asked = static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request);
                if (hangs)
                    return FakeStack::instance().hang();
                UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(asked->NoOfItemsToCreate));
                const std::lock_guard lock(m_mutex);
                for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
                    results[i].StatusCode = refusal;
                    results[i].MonitoredItemId = i + 1;
                    const UaNodeId id(asked->ItemsToCreate[i].ItemToMonitor.NodeId);
                    m_created.push_back(id.toString().toStdString());
                }
                auto* answer = static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
                results.detach(&answer->NoOfResults, &answer->Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
    }
    ~MonitoredServerNode() override { node.reset(); } // the script is gone afterwards

    void makeMonitored()
    {
        make();
        server = qlumApplicationMonitoring()(node->serverId());
        ASSERT_NE(server, nullptr);
    }
    monitoring::ItemId watch(OpcUa_UInt32 number, OpcUa_UInt16 nameSpace)
    {
        monitoring::ItemWish wish;
        wish.nodeId = UaNodeId(number, nameSpace);
        wish.key = number;
        return server->add(sink, {}, {&wish, 1}).front();
    }
    ItemState stateOf(monitoring::ItemId id) const { return server->info(id)->now.state; }
    bool waitForState(monitoring::ItemId id, ItemState state) const
    {
        return QTest::qWaitFor([&] { return stateOf(id) == state; });
    }
    // Since the last call, sorted.
    std::vector<std::string> created()
    {
        const std::lock_guard lock(m_mutex);
        std::sort(m_created.begin(), m_created.end());
        return std::exchange(m_created, {});
    }

    std::atomic<bool> hangs{false};
    std::atomic<OpcUa_StatusCode> refusal{OpcUa_Good};
    std::shared_ptr<monitoring::LatestSink> sink =
        std::make_shared<monitoring::LatestSink>(monitoring::Sink::Ready());
    std::shared_ptr<monitoring::MonitoredServer> server;

private:
    std::mutex m_mutex;
    std::vector<std::string> m_created;
};
using Nodes = std::vector<std::string>;

TEST_F(MonitoredServerNode, NamespacesMoveForWhatIsWatchedWhenTheyMoveForTheTools)
{
    makeMonitored();
    node->setNamespaceTable({"http://opcfoundation.org/UA/", "urn:plc", "urn:b", "urn:a", "urn:gone"});
    const auto stored = watch(1, 2);
    const auto gone = watch(2, 4);
    monitoring::ItemId added = 0;
    QObject::connect(node.get(), &QlumServerNode::serverNodeChanged, node.get(),
                     [&](QlumProjectNode*, QWidget*, QlumConnectionStatus status) {
                         if (status == QlumConnectionStatus::Connected)
                             added = watch(3, 2); // the tool knows the new indexes by now
                     });
    ASSERT_TRUE(node->connectServer()) << log().join('\n');
    ASSERT_TRUE(waitForState(stored, ItemState::Watched));
    ASSERT_TRUE(waitForState(added, ItemState::Watched));
    EXPECT_EQ(created(), (Nodes{"ns=2;i=3", "ns=3;i=1"}));
    EXPECT_EQ(stateOf(gone), ItemState::Refused);
    EXPECT_EQ(server->info(gone)->now.status, OpcUa_BadNodeIdUnknown);
}

TEST_F(MonitoredServerNode, ItemsAreCreatedAgainInASessionThatReplacesALostOne)
{
    makeMonitored();
    ASSERT_TRUE(node->connectServer());
    const auto id = watch(1, 2);
    ASSERT_TRUE(waitForState(id, ItemState::Watched));
    FakeStack::instance().failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    FakeStack::instance().setNamespaces({"http://opcfoundation.org/UA/", "urn:plc", "urn:b", "urn:a"});
    FakeStack::instance().loseLink();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return node->connectionStatus() == QlumConnectionStatus::ConnectionError; }));
    node->startConnect(); // at once: the clock of the session stands still
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return server->info(id)->wish.nodeId == UaNodeId(1, 3) && stateOf(id) == ItemState::Watched;
    })) << log().join('\n');
    const Nodes all = created();
    EXPECT_EQ(std::count(all.begin(), all.end(), "ns=3;i=1"), 1);
}

TEST_F(MonitoredServerNode, WhatOneUserIsRefusedIsTriedAgainForAnother)
{
    makeMonitored();
    ASSERT_TRUE(node->connectServer());
    refusal = OpcUa_BadUserAccessDenied;
    const auto id = watch(1, 2);
    ASSERT_TRUE(waitForState(id, ItemState::Refused));
    EXPECT_EQ(server->info(id)->now.status, OpcUa_BadUserAccessDenied);
    refusal = OpcUa_Good;
    changeUser();
    EXPECT_TRUE(waitForState(id, ItemState::Watched)) << log().join('\n');
}

TEST_F(MonitoredServerNode, ADisconnectDuringACallLeavesItemsForTheNextConnect)
{
    makeMonitored();
    ASSERT_TRUE(node->connectServer());
    hangs = true;
    const auto id = watch(1, 2);
    ASSERT_TRUE(FakeStack::instance().waitForHang());
    QElapsedTimer clock;
    clock.start();
    node->disconnectServer();
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_EQ(stateOf(id), ItemState::Waiting);
    hangs = false;
    ASSERT_TRUE(node->connectServer());
    EXPECT_TRUE(waitForState(id, ItemState::Watched));
    EXPECT_EQ(created(), (Nodes{"ns=2;i=1"}));
}

TEST_F(MonitoredServerNode, ARemovedServerEndsItsItemsForToolsThatStillHoldThem)
{
    makeMonitored();
    ASSERT_TRUE(node->connectServer());
    const auto watched = watch(1, 2);
    ASSERT_TRUE(waitForState(watched, ItemState::Watched));
    hangs = true;
    watch(2, 2);
    ASSERT_TRUE(FakeStack::instance().waitForHang());
    const unsigned int serverId = node->serverId();
    node.reset();
    EXPECT_EQ(qlumApplicationMonitoring()(serverId), nullptr);
    watch(3, 2);
    std::vector<OpcUa_UInt64> ended;
    for (const monitoring::ItemChange& change : sink->take().changes)
        if (change.state == ItemState::Ended && change.status == OpcUa_BadServerNotConnected)
            ended.push_back(change.key);
    std::sort(ended.begin(), ended.end());
    EXPECT_EQ(ended, (std::vector<OpcUa_UInt64>{1, 2, 3}));
    server->remove({&watched, 1});
    EXPECT_FALSE(server->info(watched));
}
} // namespace
