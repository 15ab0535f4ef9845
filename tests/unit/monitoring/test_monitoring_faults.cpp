// Interruptions, new sessions, refusals, lost subscriptions: nothing twice, nothing forgotten.
#include <monitoring/allsink.h>
#include <tests/unit/monitoring/monitoringtest.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using monitoring::ItemId;
using monitoring::ItemSettings;
using monitoring::ItemState;
using testing::ElementsAre;
using UaClientSdk::UaClient;
using Ids = std::vector<ItemId>;

class MonitoringFaults : public MonitoringTest
{
protected:
    // The server says that the subscription is over.
    void endSubscription(OpcUa_UInt32 id, OpcUa_UInt32 number)
    {
        notify<OpcUa_StatusChangeNotification>(
            id, number, OpcUa_StatusChangeNotification_EncodeableType,
            [](OpcUa_StatusChangeNotification& change) { change.Status = OpcUa_BadTimeout; });
    }
    OpcUa_UInt32 subscriptionId()
    {
        const auto present = server->subscriptions();
        return present.empty() ? 0 : present[0].subscriptionId;
    }

    std::atomic<ItemId> republished{0};
};

TEST_F(MonitoringFaults, AnInterruptionCreatesNothingTwice)
{
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForWatched(ids));
    interrupt();
    const Ids later = add({3});
    EXPECT_EQ(server->info(later[0])->now.state, ItemState::Waiting);
    resume();
    ASSERT_TRUE(waitForWatched({ids[0], ids[1], later[0]}));
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1 ns=2;i=2", "create 1: ns=2;i=3"));
    EXPECT_EQ(stack.calls(OpcUa_CreateSubscriptionRequest_EncodeableType), 1);
    EXPECT_THAT(deleted(), ElementsAre());
}

TEST_F(MonitoringFaults, ANewSessionGetsEverythingWithItsNewNamespaces)
{
    refuse("ns=2;i=2", OpcUa_BadNodeIdUnknown);
    auto wishes = nodes({1, 2, 3});
    wishes[2].nodeId.setNamespaceIndex(4);
    const Ids ids = server->add(sink, ItemSettings(), wishes);
    ASSERT_TRUE(waitForWatched({ids[0], ids[2]}));
    EXPECT_EQ(statusOf(ids[1]), "BadNodeIdUnknown");
    interrupt();
    replace({{0, 0}, {2, 3}}); // namespace 4 is gone
    ASSERT_TRUE(waitForWatched({ids[0], ids[1]}));
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1 ns=2;i=2 ns=4;i=3", "create 2: ns=3;i=1 ns=3;i=2"));
    EXPECT_EQ(server->info(ids[0])->wish.nodeId, UaNodeId(1, 3));
    EXPECT_EQ(server->info(ids[2])->now.state, ItemState::Refused);
    server->retryRefused(); // its index would mean another namespace now
    EXPECT_EQ(server->info(ids[2])->now.state, ItemState::Refused);
    data(2, 1, {{ids[0], 5}});
    EXPECT_TRUE(waitForCount(ids[0], 1));
}

TEST_F(MonitoringFaults, RefusedItemsWaitUntilSomebodyAsks)
{
    refuse("ns=2;i=1", OpcUa_BadUserAccessDenied);
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForState({ids[0]}, ItemState::Refused));
    EXPECT_EQ(statusOf(ids[0]), "BadUserAccessDenied");
    interrupt();
    resume();
    const Ids later = add({3});
    ASSERT_TRUE(waitForWatched({ids[1], later[0]}));
    EXPECT_EQ(server->info(ids[0])->now.state, ItemState::Refused);
    accept("ns=2;i=1");
    server->retryRefused();
    ASSERT_TRUE(waitForWatched(ids));
    EXPECT_THAT(asked(),
                ElementsAre("create 1: ns=2;i=1 ns=2;i=2", "create 1: ns=2;i=3", "create 1: ns=2;i=1"));
}

TEST_F(MonitoringFaults, ASubscriptionThatIsRefusedRefusesItsItems)
{
    stack.failNext(OpcUa_CreateSubscriptionRequest_EncodeableType, {OpcUa_BadTooManySubscriptions});
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForState(ids, ItemState::Refused));
    EXPECT_EQ(statusOf(ids[1]), "BadTooManySubscriptions");
    server->retry(ids);
    EXPECT_TRUE(waitForWatched(ids));
}

TEST_F(MonitoringFaults, ItemsOfACallWithoutAnAnswerAreNotInASubscriptionTwice)
{
    const Ids first = add({1});
    ASSERT_TRUE(waitForWatched(first));
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadTimeout});
    const Ids ids = add({2});
    ASSERT_TRUE(waitUntil([&] { return created() == 2; }));
    EXPECT_TRUE(waitUntil([&] {
        stack.ticks += 60'000; // the rest after a failure
        return deleted() == std::vector<OpcUa_UInt32>{1} &&
               server->info(ids[0])->now.state == ItemState::Watched;
    }));
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1", "create 2: ns=2;i=1 ns=2;i=2"));
}

TEST_F(MonitoringFaults, ItemsWhoseAnswerWasTooLargeComeInSmallerPortionsAndOnce)
{
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadResponseTooLarge});
    const Ids ids = add({1, 2, 3, 4, 5});
    ASSERT_TRUE(waitForWatched(ids));
    EXPECT_THAT(asked(), ElementsAre("create 2: ns=2;i=1 ns=2;i=2", "create 2: ns=2;i=3 ns=2;i=4",
                                     "create 2: ns=2;i=5"));
    EXPECT_THAT(deleted(), ElementsAre(1u));
}

TEST_F(MonitoringFaults, ItemsThatTheServerDoesNotDeleteGoWithTheirSubscription)
{
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForWatched(ids));
    stack.failNext(OpcUa_DeleteMonitoredItemsRequest_EncodeableType, {OpcUa_BadServiceUnsupported});
    server->remove(Ids{ids[0]});
    ASSERT_TRUE(waitUntil([&] { return subscriptionId() == 2; }));
    ASSERT_TRUE(waitForWatched({ids[1]}));
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1 ns=2;i=2", "create 2: ns=2;i=2"));
    EXPECT_THAT(deleted(), ElementsAre(1u));
}

TEST_F(MonitoringFaults, AServiceThatFailsForGoodRefusesItsItems)
{
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadServiceUnsupported});
    const Ids ids = add({1, 2});
    ASSERT_TRUE(waitForState(ids, ItemState::Refused));
    EXPECT_EQ(statusOf(ids[0]), "BadServiceUnsupported");
    EXPECT_EQ(created(), 1);
}

TEST_F(MonitoringFaults, ALostSubscriptionIsMadeAgainButNotForEver)
{
    const Ids ids = add({1});
    OpcUa_UInt32 last = 0;
    for (int turn = 0; turn < 4; ++turn) {
        ASSERT_TRUE(waitUntil([&] { return subscriptionId() > last; })) << turn;
        last = subscriptionId();
        ASSERT_TRUE(waitForWatched(ids)) << turn;
        endSubscription(last, 1);
    }
    ASSERT_TRUE(waitForState(ids, ItemState::Refused)); // the fourth time without a word in between
    EXPECT_EQ(statusOf(ids[0]), "BadTimeout");
    interrupt();
    replace();
    EXPECT_TRUE(waitForWatched(ids));
}

// One line for each value and each incident, in the order of a record.
std::vector<std::string> linesOf(const monitoring::AllSink::Batch& batch)
{
    using Kind = monitoring::Incident::Kind;
    std::vector<std::string> lines;
    auto incident = batch.incidents.begin();
    for (std::size_t place = 0; place <= batch.values.size(); ++place) {
        for (; incident != batch.incidents.end() && incident->place <= place; ++incident) {
            std::ostringstream line;
            if (incident->kind == Kind::Link)
                line << "link " << incident->link;
            else if (incident->kind == Kind::Item)
                line << "item " << incident->key << ' ' << static_cast<int>(incident->state);
            else
                line << (incident->kind == Kind::Missing       ? "missing "
                         : incident->kind == Kind::Republished ? "republished "
                                                               : "lost ")
                     << incident->first << '-' << incident->last;
            lines.push_back(line.str());
        }
        if (place < batch.values.size())
            lines.push_back(std::to_string(batch.values[place].sequenceNumber) + ": " +
                            batch.values[place].value.value().toString().toStdString());
    }
    return lines;
}

TEST_F(MonitoringFaults, ARecordTellsInOrderWhatCameAndWhatDidNot)
{
    const auto record =
        std::make_shared<monitoring::AllSink>(monitoring::Sink::Ready(), monitoring::AllSink::Record());
    answerRepublish([this](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        if (number != 5)
            return static_cast<OpcUa_StatusCode>(OpcUa_BadMessageNotAvailable);
        fillData(message, 5, {{republished, 50}});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    refuse("ns=2;i=2", OpcUa_BadNodeIdUnknown);
    const Ids ids = server->add(record, ItemSettings(), nodes({1, 2}));
    ASSERT_TRUE(waitForWatched({ids[0]}));
    republished = ids[0];
    ASSERT_TRUE(waitForPublishCalls(2));
    data(1, 1, {{ids[0], 10}});
    data(1, 4, {{ids[0], 40}}); // 2 and 3 are gone
    ASSERT_TRUE(waitForCount(ids[0], 2));
    interrupt();
    resume();
    ASSERT_TRUE(waitForCount(ids[0], 3));
    EXPECT_THAT(linesOf(record->take()), ElementsAre("item 1 1", "item 2 2", "1: 10", "missing 2-3", "4: 40",
                                                     "link 3", testing::AnyOf("link 1", "republished 5-5"),
                                                     testing::AnyOf("link 1", "republished 5-5", "5: 50"),
                                                     testing::AnyOf("link 1", "5: 50")));
    interrupt();
    replace();
    ASSERT_TRUE(waitForWatched({ids[0]}));
    const std::vector<std::string> lines = linesOf(record->take());
    EXPECT_THAT(lines, testing::Contains("link 5"));
    EXPECT_THAT(lines, testing::Contains("item 1 0")); // it waits, and what changes meanwhile is not recorded
    record->close();
}

TEST_F(MonitoringFaults, ADisconnectLeavesItemsForTheNextSession)
{
    const Ids ids = add({1});
    ASSERT_TRUE(waitForWatched(ids));
    stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, false);
    ASSERT_TRUE(disconnect().isGood());
    server->statusChanged(UaClient::Disconnected);
    EXPECT_TRUE(waitForState(ids, ItemState::Waiting));
    stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
    ASSERT_TRUE(connect().isGood());
    server->statusChanged(UaClient::Connected);
    EXPECT_TRUE(waitForWatched(ids));
    EXPECT_EQ(created(), 2);
}

TEST_F(MonitoringFaults, ToolsAddTakeAndRemoveWhileValuesComeAndSessionsChange)
{
    const auto all = std::make_shared<monitoring::AllSink>(monitoring::Sink::Ready(), 50);
    const Ids steady = add({1});
    ASSERT_TRUE(waitForWatched(steady));
    std::atomic<bool> ends{false};
    OpcUa_UInt64 taken = 0;
    std::thread tool([&] {
        while (!ends) {
            const Ids ids = server->add(all, ItemSettings(), nodes({7, 8, 9}));
            server->modify(Ids{ids[0]}, ItemSettings());
            taken += sink->take().values.size();
            static_cast<void>(all->take());
            server->remove(ids);
        }
    });
    for (int turn = 0; turn < 3; ++turn) {
        const OpcUa_UInt64 before = server->info(steady[0])->count;
        const OpcUa_UInt32 id = subscriptionId();
        for (OpcUa_UInt32 number = 1; number <= 20; ++number)
            data(id, number, {{steady[0], 1}, {steady[0] + 1, 2}, {steady[0] + 2, 3}});
        EXPECT_TRUE(waitForCount(steady[0], before + 20));
        interrupt();
        replace();
        EXPECT_TRUE(waitForWatched(steady));
    }
    ends = true;
    tool.join();
    EXPECT_GT(taken, 0u);
    EXPECT_EQ(server->info(steady[0])->count, 60u);
}

} // namespace
