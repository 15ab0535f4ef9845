// What a server is asked for when tools watch something, and what tools get to know of it.
#include <opcua/opcua_identifiers.h>
#include <tests/unit/monitoring/monitoringtest.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using monitoring::ItemChange;
using monitoring::ItemId;
using monitoring::ItemSettings;
using monitoring::ItemState;
using monitoring::MonitoredServer;
using monitoring::SubscriptionWish;
using testing::ElementsAre;
using testing::IsEmpty;
using Ids = std::vector<ItemId>;

ItemSettings sampled(double interval, OpcUa_UInt32 queueSize = 1)
{
    ItemSettings settings;
    settings.samplingInterval = interval;
    settings.queueSize = queueSize;
    return settings;
}

ItemSettings published(double interval, OpcUa_Byte priority = 0)
{
    ItemSettings settings;
    settings.subscription.publishingInterval = interval;
    settings.subscription.priority = priority;
    return settings;
}

TEST_F(MonitoringTest, CreatesInPortionsThatTheServerTakesOnAThreadOfItsOwn)
{
    ASSERT_TRUE(disconnect().isGood());
    server->statusChanged(UaClientSdk::UaClient::Disconnected);
    stack.setVariable(OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
                      UaVariant(OpcUa_UInt32(2)));
    ASSERT_TRUE(connect().isGood());
    const Ids ids = add({1, 2, 3, 4, 5});
    EXPECT_EQ(server->info(ids[0])->now.state, ItemState::Waiting);
    server->statusChanged(UaClientSdk::UaClient::Connected);
    ASSERT_TRUE(waitForWatched(ids));
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1 ns=2;i=2", "create 1: ns=2;i=3 ns=2;i=4",
                                     "create 1: ns=2;i=5"));
    EXPECT_NE(creator, std::this_thread::get_id());
}

TEST_F(MonitoringTest, TellsRequestedAndRevisedSettings)
{
    const Ids ids = add({1}, sampled(250, 7));
    ASSERT_TRUE(waitForWatched(ids));
    const auto known = server->info(ids[0]);
    EXPECT_EQ(known->requested.samplingInterval, 250);
    EXPECT_EQ(known->now.revisedSamplingInterval, 500);
    const std::vector<ItemChange> changes = sink->take().changes;
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].key, 1u);
    EXPECT_EQ(changes[0].state, ItemState::Watched);
    EXPECT_EQ(changes[0].revisedSamplingInterval, 500);
    EXPECT_EQ(changes[0].revisedQueueSize, 7u);
}

TEST_F(MonitoringTest, ChangesItemsInPlace)
{
    const Ids ids = add({1, 2}, sampled(100));
    ASSERT_TRUE(waitForWatched(ids));
    ItemSettings settings = sampled(300);
    settings.mode = OpcUa_MonitoringMode_Sampling;
    server->modify(Ids{ids[1]}, settings);
    ASSERT_TRUE(waitForAsked({"create 1: ns=2;i=1 ns=2;i=2", "modify: 2=300", "mode 1: 2"}));
    EXPECT_TRUE(waitUntil([&] { return server->info(ids[1])->now.revisedSamplingInterval == 600; }));
    EXPECT_EQ(server->info(ids[0])->now.revisedSamplingInterval, 200);
}

TEST_F(MonitoringTest, AChangeThatIsRefusedIsToldAndTheItemGoesOn)
{
    const Ids ids = add({1}, sampled(100));
    ASSERT_TRUE(waitForWatched(ids));
    static_cast<void>(sink->take());
    modifyResult = OpcUa_BadMonitoredItemFilterUnsupported;
    server->modify(ids, sampled(300));
    std::vector<ItemChange> changes;
    ASSERT_TRUE(waitUntil([&] {
        if (changes.empty())
            changes = sink->take().changes;
        return changes.size() == 1;
    }));
    EXPECT_EQ(changes[0].state, ItemState::Watched);
    EXPECT_EQ(changes[0].status, OpcUa_BadMonitoredItemFilterUnsupported);
    EXPECT_EQ(changes[0].revisedSamplingInterval, 200);
}

TEST_F(MonitoringTest, ItemsOfEqualWishesShareASubscriptionAndMoveToAnother)
{
    const Ids slow = add({1}, published(1000));
    const Ids fast = add({2}, published(100));
    const Ids urgent = add({3}, published(100, 5));
    const Ids more = add({4}, published(100));
    ASSERT_TRUE(waitForWatched({slow[0], fast[0], urgent[0], more[0]}));
    EXPECT_EQ(server->subscriptions().size(), 3u);
    EXPECT_EQ(stack.calls(OpcUa_CreateSubscriptionRequest_EncodeableType), 3);
    server->modify(fast, published(1000));
    ASSERT_TRUE(waitUntil([&] { return server->subscriptions()[0].items == 2; }));
    ASSERT_TRUE(waitForWatched(fast));
    server->remove(urgent);
    EXPECT_TRUE(waitUntil([&] { return deleted().size() == 1; })); // nobody needs it any more
    EXPECT_EQ(server->subscriptions().size(), 2u);
}

TEST_F(MonitoringTest, AnEleventhSubscriptionIsRefusedUntilThereIsRoom)
{
    std::vector<Ids> ids;
    for (int i = 1; i <= 11; ++i)
        ids.push_back(add({static_cast<OpcUa_UInt32>(i)}, published(i * 100)));
    EXPECT_EQ(statusOf(ids[10][0]), "BadTooManySubscriptions");
    EXPECT_EQ(server->info(ids[10][0])->now.state, ItemState::Refused);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(waitForWatched(ids[static_cast<std::size_t>(i)]));
    server->remove(ids[3]);
    server->retry(ids[10]); // its subscription is going, and makes room already
    ASSERT_TRUE(waitForWatched(ids[10]));
    EXPECT_EQ(deleted().size(), 1u);
    EXPECT_EQ(server->subscriptions()[3].requested.publishingInterval, 1100);
}

TEST_F(MonitoringTest, CountsValuesOverflowsAndGapsOfEachItem)
{
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForWatched(ids));
    ASSERT_TRUE(waitForPublishCalls(2));
    EXPECT_TRUE(server->info(ids[0])->lastHeard.isNull());
    data(1, 1, {{ids[0], 10}, {ids[1], 20}});
    notify<OpcUa_DataChangeNotification>(
        1, 5, OpcUa_DataChangeNotification_EncodeableType, [&](OpcUa_DataChangeNotification& change) {
            UaMonitoredItemNotifications items(3u);
            items[0].ClientHandle = ids[0];
            items[0].Value.StatusCode = 0x480; // Good, of a value, with Overflow
            items[1].ClientHandle = ids[0];
            items[1].Value.StatusCode = 0x80; // the same bit without the type that gives it a meaning
            items[2].ClientHandle = 99;       // nobody's
            items.detach(&change.NoOfMonitoredItems, &change.MonitoredItems);
        });
    ASSERT_TRUE(waitForCount(ids[0], 3));
    const auto first = server->info(ids[0]);
    EXPECT_EQ(first->count, 3u);
    EXPECT_EQ(first->overflows, 1u);
    EXPECT_EQ(first->gaps, 3u);
    EXPECT_FALSE(first->lastHeard.isNull());
    EXPECT_EQ(server->info(ids[1])->count, 1u);
    const Ids later = add({3});
    ASSERT_TRUE(waitForWatched(later));
    EXPECT_EQ(server->info(later[0])->gaps, 0u); // it has missed nothing
}

TEST_F(MonitoringTest, NothingOfARemovedItemComesAnyMore)
{
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForWatched(ids));
    ASSERT_TRUE(waitForPublishCalls(2));
    data(1, 1, {{ids[0], 10}, {ids[1], 20}});
    ASSERT_TRUE(waitForCount(ids[1], 1));
    server->remove(Ids{ids[0]});
    EXPECT_FALSE(server->info(ids[0]));
    const auto batch = sink->take();
    ASSERT_EQ(batch.values.size(), 1u);
    EXPECT_EQ(batch.values[0].key, 2u);
    ASSERT_EQ(batch.changes.size(), 1u);
    EXPECT_EQ(batch.changes[0].key, 2u);
    // a late value does not reach the item that took the place
    const Ids next = add({3});
    ASSERT_TRUE(waitForWatched(next));
    data(1, 2, {{ids[0], 11}, {ids[1], 21}});
    ASSERT_TRUE(waitForCount(ids[1], 2));
    EXPECT_EQ(server->info(next[0])->count, 0u);
    EXPECT_TRUE(waitForAsked({"create 1: ns=2;i=1 ns=2;i=2", "delete: 1", "create 1: ns=2;i=3"}));
}

TEST_F(MonitoringTest, WhatIsRemovedOrChangedWhileItIsCreatedIsPutRightAfterwards)
{
    Ids ids;
    whenCreating = [&] {
        whenCreating = nullptr;
        server->remove(Ids{ids[0]});
        server->modify(Ids{ids[1]}, sampled(40));
    };
    server->statusChanged(UaClientSdk::UaClient::ConnectionWarningWatchdogTimeout);
    ids = add({1, 2}, sampled(10));
    server->statusChanged(UaClientSdk::UaClient::Connected);
    EXPECT_TRUE(waitForAsked({"create 1: ns=2;i=1 ns=2;i=2", "delete: 1", "modify: 2=40"}));
    EXPECT_FALSE(server->info(ids[0]));
    EXPECT_TRUE(waitUntil([&] { return server->info(ids[1])->now.revisedSamplingInterval == 80; }));
}

TEST_F(MonitoringTest, ItemsOfARemovedServerEndAndSoDoThoseThatComeTooLate)
{
    constexpr OpcUa_UInt32 count = 100;
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForWatched(ids));
    Ids late;
    std::thread tool([&] {
        for (OpcUa_UInt32 number = 3; number <= count; ++number)
            late.push_back(add({number}).front());
    });
    server->close();
    EXPECT_THAT(deleted(), ElementsAre(1u));
    tool.join();
    server->modify(late, {});
    server->retry(late);
    std::set<OpcUa_UInt64> ended;
    for (const ItemChange& change : sink->take().changes)
        if (change.state == ItemState::Ended && change.status == OpcUa_BadServerNotConnected)
            ended.insert(change.key);
    EXPECT_EQ(ended.size(), count);
    EXPECT_EQ(server->info(late.back())->now.state, ItemState::Ended);
    server->remove(late);
    EXPECT_FALSE(server->info(late.back()));
}

} // namespace
