// Subscriptions when the link breaks, and the services about their monitored items.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasubscription.h>

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <string>
#include <vector>

namespace {

using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;
using UaClientSdk::UaSubscription;

TEST_F(SubscriptionReconnect, MissedNotificationsComeFirstThenLiveOnes)
{
    create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    data(1, 1, {{7, 1}});
    ASSERT_TRUE(events.waitFor({"11 data 7=1"}));
    answerRepublish([](OpcUa_UInt32 id, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        if (id == 2)
            return OpcUa_BadSubscriptionIdInvalid;
        if (number > 3)
            return OpcUa_BadMessageNotAvailable;
        fillData(message, number, {{7, static_cast<OpcUa_Int32>(number)}});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    breakLink();
    const int before = publishCalls();
    mendLink();
    data(1, 4, {{7, 4}});
    EXPECT_TRUE(events.waitFor(
        {"11 data 7=1", "11 data 7=2", "11 data 7=3", "22 status BadSubscriptionIdInvalid", "11 data 7=4"}));
    EXPECT_TRUE(waitForPublishCalls(before + 2)); // one subscription is left
    keepAlive(1, 5);
    keepAlive(1, 5);
    ASSERT_TRUE(events.waitForCount(7));
    EXPECT_THAT(acknowledged(), testing::IsSupersetOf({"1:2", "1:3", "1:4"}));
}

TEST_F(SubscriptionReconnect, ServerThatRepublishesForEverIsBelievedForAThousand)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        fillData(message, number, {});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    breakLink();
    const int before = publishCalls();
    mendLink();
    ASSERT_TRUE(waitForPublishCalls(before + 1)); // live notifications only when it is over
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), 1000);
    data(1, 1005, {});
    ASSERT_TRUE(events.waitForCount(1002));
    EXPECT_EQ(events.heard()[1000], "11 missing 1000-1005"); // what could not be had
    breakLink();
    const int then = publishCalls();
    mendLink();
    ASSERT_TRUE(waitForPublishCalls(then + 1));
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), 2000) << "each time anew";
}

TEST_F(SubscriptionReconnect, RepublishedNotificationOfAnotherNumberIsNotTaken)
{
    const RecordedTrace trace;
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        fillData(message, number + 5, {});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    breakLink();
    mendLink();
    data(1, 1, {});
    EXPECT_TRUE(events.waitFor({"11 data"}));
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), 1);
    EXPECT_TRUE(trace.holds("doRepublishAfterReconnect - Notification returned unexpected"));
}

TEST_F(SubscriptionReconnect, LinkThatBreaksWhileRepublishingStartsAgain)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    std::promise<void> asked;
    std::promise<void> go;
    std::atomic<int> calls{0};
    std::atomic<int> published{0};
    answerRepublish([&](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        if (calls++ == 0) {
            asked.set_value();
            go.get_future().wait();
            return static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed);
        }
        if (calls == 2) {
            EXPECT_TRUE(passTurns());
            EXPECT_EQ(publishCalls(), published) << "the old link's end lets nothing live in before this";
        }
        if (number > 1)
            return static_cast<OpcUa_StatusCode>(OpcUa_BadMessageNotAvailable);
        fillData(message, number, {{7, 1}});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    breakLink();
    mendLink();
    asked.get_future().wait();
    breakLink();
    published = publishCalls();
    mendLink();
    go.set_value();
    data(1, 2, {{7, 2}});
    EXPECT_TRUE(events.waitFor({"11 data 7=1", "11 data 7=2"}));
}

TEST_F(SubscriptionReconnect, NewSessionDropsThemAndSaysSoOnce)
{
    UaSubscription* old = create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    data(1, 1, {});
    ASSERT_TRUE(events.waitFor({"11 data"}));
    breakLink();
    const int before = publishCalls();
    mendLink(true);
    EXPECT_TRUE(events.waitFor(
        {"11 data", "11 status BadSubscriptionIdInvalid", "22 status BadSubscriptionIdInvalid"}));
    EXPECT_FALSE(old->isValid());
    EXPECT_EQ(publishCalls(), before);
    ServiceSettings settings;
    UaUInt32Array ids(1u);
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    EXPECT_EQ(old->deleteMonitoredItems(settings, ids, results, diagnostics).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadSubscriptionIdInvalid));
    nextId = 1; // a server that has started again counts from the beginning
    create(33);
    data(1, 1, {{1, 1}});
    EXPECT_TRUE(events.waitForCount(4));
    EXPECT_EQ(events.heard().back(), "33 data 1=1");
    EXPECT_TRUE(remove(old).isGood());
    EXPECT_EQ(stack.calls(OpcUa_DeleteSubscriptionsRequest_EncodeableType), 0);
    breakLink();
    mendLink(true);
    EXPECT_TRUE(events.waitForCount(5));
    EXPECT_EQ(events.heard().back(), "33 status BadSubscriptionIdInvalid");
}

// Answers that have come, but wait behind a callback while the link changes.
class SubscriptionLateAnswers : public SubscriptionReconnect
{
protected:
    void SetUp() override
    {
        SubscriptionReconnect::SetUp();
        create(11);
        ASSERT_TRUE(waitForPublishCalls(2));
        events.during = [this](const std::string& text) {
            if (text == "11 data 7=1") {
                m_entered.set_value();
                m_leave.get_future().wait();
            }
        };
        data(1, 1, {{7, 1}});
        m_entered.get_future().wait();
    }
    void answerLate(const Answer& how)
    {
        std::promise<void> came;
        answer([&](OpcUa_PublishResponse& response) {
            const OpcUa_StatusCode status = how(response);
            came.set_value();
            return status;
        });
        came.get_future().wait();
    }
    void leaveCallback() { m_leave.set_value(); }

private:
    std::promise<void> m_entered;
    std::promise<void> m_leave;
};

TEST_F(SubscriptionLateAnswers, OfTheOldSessionAreNotGivenToTheNewOnesSubscriptionOfThatNumber)
{
    const int before = publishCalls();
    answerLate([](OpcUa_PublishResponse& response) {
        response.SubscriptionId = 1;
        fillData(response.NotificationMessage, 2, {{7, 2}});
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    breakLink();
    mendLink(true);
    nextId = 1;
    create(33);
    ASSERT_TRUE(waitForPublishCalls(before + 2));
    leaveCallback();
    ASSERT_TRUE(events.waitForLine("11 status BadSubscriptionIdInvalid"));
    ASSERT_TRUE(passTurns());
    EXPECT_EQ(publishCalls(), before + 2) << "they are no answers to the new requests";
    data(1, 1, {{7, 3}});
    keepAlive(1, 2);
    keepAlive(1, 2);
    EXPECT_TRUE(events.waitFor(
        {"11 data 7=1", "11 status BadSubscriptionIdInvalid", "33 data 7=3", "33 alive", "33 alive"}));
    EXPECT_THAT(acknowledged(), testing::ElementsAre("1:1")) << "what the new session has got";
}

TEST_F(SubscriptionLateAnswers, ThatFailedWithTheOldLinkDoNotSlowDownTheNewOne)
{
    const int before = publishCalls();
    answerLate([](OpcUa_PublishResponse&) { return OpcUa_BadCommunicationError; });
    breakLink();
    mendLink();
    leaveCallback();
    EXPECT_TRUE(waitForPublishCalls(before + 2));
}

TEST_F(SubscriptionReconnect, RequestThatTheStackDoesNotTakeIsALostLink)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    data(1, 1, {});
    ASSERT_TRUE(waitForPublishCalls(3));
    stack.refuseNextBegin(OpcUa_PublishRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    keepAlive(1, 2);
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    EXPECT_EQ(session.serverState(), OpcUa_ServerState_Unknown);
    mendLink();
    keepAlive(1, 2);
    EXPECT_TRUE(events.waitFor({"11 data", "11 alive", "11 alive"}));
}

// ---- monitored items

class MonitoredItems : public SubscriptionTest
{
protected:
    void SetUp() override
    {
        info.maxOperationsPerServiceCall = 10;
        SubscriptionTest::SetUp();
        stack.on(OpcUa_CreateMonitoredItemsRequest_EncodeableType, [](const void* request, void* response) {
            const auto& asked = *static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request);
            auto& answer = *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
            UaMonitoredItemCreateResults made(static_cast<OpcUa_UInt32>(asked.NoOfItemsToCreate));
            for (OpcUa_UInt32 i = 0; i < made.length(); ++i)
                made[i].MonitoredItemId =
                    asked.SubscriptionId * 1000 + asked.ItemsToCreate[i].RequestedParameters.ClientHandle;
            made.detach(&answer.NoOfResults, &answer.Results);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        subscription = create(11);
        ASSERT_TRUE(subscription);
    }

    static UaMonitoredItemCreateRequests requests(OpcUa_UInt32 count)
    {
        UaMonitoredItemCreateRequests items(count);
        for (OpcUa_UInt32 i = 0; i < count; ++i)
            items[i].RequestedParameters.ClientHandle = i;
        return items;
    }
    UaStatus begin(OpcUa_UInt32 count, OpcUa_UInt32 transaction)
    {
        return subscription->beginCreateMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                       requests(count), transaction);
    }

    UaSubscription* subscription = nullptr;
    ServiceSettings settings;
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnostics;
};

TEST_F(MonitoredItems, LongRequestsGoInBlocksInBothForms)
{
    ASSERT_TRUE(subscription
                    ->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, requests(25), results,
                                           diagnostics)
                    .isGood());
    ASSERT_EQ(results.length(), 25u);
    for (OpcUa_UInt32 i = 0; i < 25; ++i)
        EXPECT_EQ(results[i].MonitoredItemId, 1000 + i);
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 3);
    ASSERT_TRUE(begin(12, 5).isGood());
    EXPECT_TRUE(
        events.waitFor({"5 created Good 1000 1001 1002 1003 1004 1005 1006 1007 1008 1009 1010 1011"}));
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 5);
}

TEST_F(MonitoredItems, BadAnswersCompleteWithTheirStatusAndNothingElse)
{
    EXPECT_EQ(begin(0, 1).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadNothingToDo));
    stack.refuseNextBegin(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadResourceUnavailable});
    EXPECT_EQ(begin(1, 2).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadResourceUnavailable));
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_Good, OpcUa_BadTimeout});
    ASSERT_TRUE(begin(12, 3).isGood()); // the second block fails; the items of the first are there
    const std::string kept = "3 created BadTimeout 1000 1001 1002 1003 1004 1005 1006 1007 1008 1009";
    ASSERT_TRUE(events.waitFor({kept}));
    stack.on(OpcUa_CreateMonitoredItemsRequest_EncodeableType, [](const void*, void* response) {
        auto& answer = *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
        UaMonitoredItemCreateResults(3u).detach(&answer.NoOfResults, &answer.Results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(begin(2, 4).isGood());
    EXPECT_TRUE(events.waitFor({kept, "4 created " + UaStatus(0x80460000u).toString().toStdString()}));
    EXPECT_EQ(
        subscription
            ->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, requests(4), results, diagnostics)
            .statusCode(),
        0x80460000u);
    EXPECT_TRUE(results.isEmpty());
}

TEST_F(MonitoredItems, NeitherDeletionNorDisconnectOvertakesACompletion)
{
    stack.holdAnswers(OpcUa_CreateMonitoredItemsRequest_EncodeableType, true);
    ASSERT_TRUE(begin(1, 1).isGood());
    auto deleting = std::async(std::launch::async, [&] {
        const bool good = remove(subscription).isGood();
        return good && events.heard() == std::vector<std::string>{"1 created Good 1000"};
    });
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 1));
    EXPECT_TRUE(events.heard().empty());
    stack.releaseAnswers(OpcUa_CreateMonitoredItemsRequest_EncodeableType, 1);
    EXPECT_TRUE(deleting.get());

    subscription = create(22);
    ASSERT_TRUE(begin(1, 2).isGood());
    std::atomic<bool> over{false};
    events.during = [&](const std::string&) { EXPECT_FALSE(over); };
    stack.releaseAnswers(OpcUa_CreateMonitoredItemsRequest_EncodeableType, 1);
    EXPECT_TRUE(disconnect().isGood());
    over = true; // whatever came has come before
    EXPECT_EQ(begin(1, 3).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadSubscriptionIdInvalid));
}

TEST_F(MonitoredItems, TriggeringChecksBothListsOfResults)
{
    stack.on(OpcUa_SetTriggeringRequest_EncodeableType, [](const void* request, void* response) {
        const auto& asked = *static_cast<const OpcUa_SetTriggeringRequest*>(request);
        auto& answer = *static_cast<OpcUa_SetTriggeringResponse*>(response);
        EXPECT_EQ(asked.SubscriptionId, 1u);
        UaStatusCodeArray(static_cast<OpcUa_UInt32>(asked.NoOfLinksToAdd))
            .detach(&answer.NoOfAddResults, &answer.AddResults);
        if (asked.TriggeringItemId == 1)
            UaStatusCodeArray(static_cast<OpcUa_UInt32>(asked.NoOfLinksToRemove))
                .detach(&answer.NoOfRemoveResults, &answer.RemoveResults);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    UaUInt32Array add(2u);
    UaUInt32Array removed(1u);
    UaStatusCodeArray addResults;
    UaStatusCodeArray removeResults;
    UaDiagnosticInfos others;
    const auto trigger = [&](OpcUa_UInt32 item, const UaUInt32Array& first, const UaUInt32Array& second) {
        return subscription
            ->setTriggering(settings, item, first, second, addResults, diagnostics, removeResults, others)
            .statusCode();
    };
    EXPECT_EQ(trigger(1, add, removed), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    EXPECT_EQ(addResults.length(), 2u);
    EXPECT_EQ(removeResults.length(), 1u);
    EXPECT_EQ(trigger(2, add, removed), 0x80460000u); // one list is missing
    EXPECT_TRUE(addResults.isEmpty());
    EXPECT_EQ(trigger(1, UaUInt32Array(), UaUInt32Array()),
              static_cast<OpcUa_StatusCode>(OpcUa_BadNothingToDo));
}

} // namespace
