// Publish requests, their answers and what the application hears of them.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;
using UaClientSdk::UaSubscription;

using Lines = std::vector<std::string>;

TEST_F(SubscriptionTest, KeepsAsManyRequestsOutstandingAsTheSetPointSays)
{
    const RecordedTrace trace;
    UaSubscription* first = create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    UaSubscription* second = create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    keepAlive(1, 1);
    keepAlive(2, 1);
    ASSERT_TRUE(waitForPublishCalls(5)); // each answer is replaced
    EXPECT_TRUE(events.waitFor({"11 alive", "22 alive"}));
    EXPECT_TRUE(trace.holds("calculateSetPointPublishCount subCount=2 publishSetPoint=3"));
    EXPECT_TRUE(remove(first).isGood());
    EXPECT_TRUE(remove(second).isGood());
    EXPECT_EQ(second, nullptr);
    EXPECT_TRUE(trace.holds("calculateSetPointPublishCount subCount=0 publishSetPoint=0"));
    EXPECT_EQ(publishCalls(), 5);
}

TEST_F(SubscriptionTest, NotificationsComeInOrderAndAreAcknowledgedOnce)
{
    create(11);
    for (OpcUa_UInt32 number = 1; number <= 6; ++number)
        data(1, number, {{7, static_cast<OpcUa_Int32>(number)}, {8, -1}});
    ASSERT_TRUE(events.waitFor({"11 data 7=1 8=-1", "11 data 7=2 8=-1", "11 data 7=3 8=-1",
                                "11 data 7=4 8=-1", "11 data 7=5 8=-1", "11 data 7=6 8=-1"}));
    ASSERT_TRUE(waitForPublishCalls(8));
    keepAlive(1, 7);
    keepAlive(1, 7);
    ASSERT_TRUE(events.waitForCount(8));
    EXPECT_THAT(acknowledged(), ElementsAre("1:1", "1:2", "1:3", "1:4", "1:5", "1:6"));
}

TEST_F(SubscriptionTest, GapsAreToldWithBothNumbersAndAWrapIsNone)
{
    const RecordedTrace trace;
    create(11);
    data(1, 4294967294u, {});
    data(1, 4294967295u, {});
    data(1, 1, {});
    data(1, 4, {}); // gap
    data(1, 4, {}); // again
    data(1, 3, {}); // backwards
    data(1, 0, {}); // no number at all
    ASSERT_TRUE(
        events.waitFor({"11 data", "11 data", "11 data", "11 missing 1-4", "11 data", "11 missing 4-4",
                        "11 data", "11 missing 4-3", "11 data", "11 missing 3-0", "11 data"}));
    EXPECT_EQ(trace.count("returned unexpected SequenceNumber"), 0);
    data(1, 20005, {}); // too far to be a gap; after 0 nothing is expected
    data(1, 4, {});
    ASSERT_TRUE(events.waitForCount(14));
    EXPECT_EQ(events.heard()[12], "11 missing 20005-4");
    EXPECT_TRUE(trace.holds("Warning: Notifications missing, lastSequenceNumber=1 newSequenceNumber=4"));
    EXPECT_TRUE(trace.holds("Notification returned unexpected SequenceNumber (expected=20006, received=4)"));
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), 0); // no storm of Republish
}

TEST_F(SubscriptionTest, KeepAlivesNameTheNextNumber)
{
    const RecordedTrace trace;
    create(11);
    keepAlive(1, 1);
    data(1, 1, {});
    keepAlive(1, 2);
    keepAlive(1, 10001); // the last that is not too far ahead
    ASSERT_TRUE(events.waitFor({"11 alive", "11 data", "11 alive", "11 alive"}));
    EXPECT_EQ(trace.count("KeepAlive returned unexpected"), 0);
    keepAlive(1, 1);
    keepAlive(1, 10002);
    keepAlive(1, 2, {1, 2});
    data(1, 2, {}); // keep-alives have not moved the number
    ASSERT_TRUE(events.waitFor(
        {"11 alive", "11 data", "11 alive", "11 alive", "11 alive", "11 alive", "11 alive", "11 data"}));
    EXPECT_TRUE(trace.holds("KeepAlive returned unexpected SequenceNumber (expected=2, received=1)"));
    EXPECT_TRUE(trace.holds("KeepAlive returned unexpected SequenceNumber (expected=2, received=10002)"));
    EXPECT_TRUE(trace.holds("KeepAlive SequenceNumber (2) is contained in AvailableSequenceNumbers"));
}

TEST_F(SubscriptionTest, WhatCannotBeUnderstoodIsTracedAndAcknowledged)
{
    const RecordedTrace trace;
    create(11);
    data(99, 5, {{1, 1}});
    notify<OpcUa_LiteralOperand>(1, 1, OpcUa_LiteralOperand_EncodeableType, [](auto&) {});
    answer([](OpcUa_PublishResponse& response) { // three elements, of which the middle one does not decode
        fillData(response.NotificationMessage, 2, {{7, 70}});
        UaExtensionObjectArray list(2u);
        list[0].Encoding = OpcUa_ExtensionObjectEncoding_Binary;
        UaExtensionObjectArray all;
        all.attachFrom(&response.NotificationMessage.NoOfNotificationData,
                       &response.NotificationMessage.NotificationData);
        OpcUa_ExtensionObject_AttachEncodeable(
            &list[1], &OpcUa_EventNotificationList_EncodeableType,
            OpcUa_EncodeableObject_Create(&OpcUa_EventNotificationList_EncodeableType));
        EXPECT_TRUE(all.appendMoved(std::move(list)));
        all.detach(&response.NotificationMessage.NoOfNotificationData,
                   &response.NotificationMessage.NotificationData);
        response.SubscriptionId = 1;
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(events.waitFor({"11 data 7=70", "11 events 0"}));
    EXPECT_TRUE(trace.holds("Server sent invalid SubscriptionId 99"));
    EXPECT_TRUE(trace.holds("publishCallback - Server sent unknown extension object (ID=595) for"));
    EXPECT_TRUE(trace.holds("publishCallback - Server sent invalid extension object for notification"));
    EXPECT_TRUE(trace.holds("List of available sequence numbers is empty"));
    ASSERT_TRUE(waitForPublishCalls(5));
    keepAlive(1, 3);
    keepAlive(1, 3);
    ASSERT_TRUE(events.waitForCount(4));
    EXPECT_THAT(acknowledged(), ElementsAre("99:5", "1:1", "1:2"));
}

TEST_F(SubscriptionTest, RefusedRequestsLowerTheSetPointAndKeepTheirAcknowledgements)
{
    const RecordedTrace trace;
    create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    data(1, 1, {});
    ASSERT_TRUE(waitForPublishCalls(4)); // carries the acknowledgement of 1
    keepAlive(1, 2);
    keepAlive(2, 1);
    ASSERT_TRUE(events.waitForCount(3));
    ASSERT_TRUE(waitForPublishCalls(6));
    fail(OpcUa_BadTooManyPublishRequests); // answers that fourth request
    keepAlive(1, 2);
    ASSERT_TRUE(events.waitForCount(4));
    EXPECT_TRUE(trace.holds("calculateSetPointPublishCount(tooManyPublish) subCount=2 publishSetPoint=2"));
    EXPECT_TRUE(trace.holds("Error: Publish failed [status=0x80780000]"));
    ASSERT_TRUE(waitForPublishCalls(7));
    keepAlive(1, 2);
    keepAlive(1, 2);
    ASSERT_TRUE(events.waitForCount(6));
    EXPECT_THAT(acknowledged(), ElementsAre("1:1", "1:1")); // refused once, then taken
    create(33);
    EXPECT_TRUE(trace.holds("subCount=3 publishSetPoint=3")); // one more than the bound that was learned
}

TEST_F(SubscriptionTest, ServerThatAlwaysFailsIsNotFlooded)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    for (int i = 0; i < 2000; ++i)
        fail(OpcUa_BadInternalError);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (publishCalls() < 30 && std::chrono::steady_clock::now() < deadline) {
        const OpcUa_UInt64 passed = ++stack.ticks;
        EXPECT_LE(publishCalls(), 4 + static_cast<int>(passed * 3 / 10)) << "after " << passed << " ms";
        // other services are not held up
        UaReadValueIds nodes(1u);
        nodes[0].NodeId.Identifier.Numeric = 42;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        ServiceSettings settings;
        ASSERT_TRUE(
            session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics).isGood());
    }
    EXPECT_GE(publishCalls(), 30) << "it goes on all the same";
}

TEST_F(SubscriptionTest, AcknowledgementsThatFailAreTracedAndNotRepeated)
{
    const RecordedTrace trace;
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    data(1, 1, {});
    ASSERT_TRUE(waitForPublishCalls(3));
    acknowledgeResult = OpcUa_BadSequenceNumberUnknown;
    keepAlive(1, 2);
    keepAlive(1, 2); // answers the request that acknowledges
    ASSERT_TRUE(events.waitForCount(3));
    EXPECT_TRUE(trace.holds("Error: Subscription acknowledgement (SubscriptionId=1,SequenceNumber=1) "
                            "returned status BadSequenceNumberUnknown"));
    acknowledgeTooFew = true;
    data(1, 2, {});
    ASSERT_TRUE(waitForPublishCalls(6));
    keepAlive(1, 3);
    keepAlive(1, 3);
    ASSERT_TRUE(events.waitForCount(6));
    EXPECT_TRUE(trace.holds("Error: Number of acknowledgement results (0) does not match number of "
                            "acknowledgements (1)"));
    keepAlive(1, 3);
    ASSERT_TRUE(events.waitForCount(7));
    EXPECT_THAT(acknowledged(), ElementsAre("1:1", "1:2"));
}

TEST_F(SubscriptionTest, DeniedSubscriptionsAreLookedFor)
{
    const RecordedTrace trace;
    UaSubscription* gone = create(11);
    UaSubscription* kept = create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    answerRepublish([](OpcUa_UInt32 id, OpcUa_UInt32, OpcUa_NotificationMessage&) {
        return static_cast<OpcUa_StatusCode>(id == 1 ? OpcUa_BadSubscriptionIdInvalid
                                                     : OpcUa_BadMessageNotAvailable);
    });
    fail(OpcUa_BadNoSubscription);
    ASSERT_TRUE(events.waitFor({"11 status BadSubscriptionIdInvalid"}));
    fail(OpcUa_BadNoSubscription); // no cause to ask again at once
    keepAlive(2, 1);
    ASSERT_TRUE(events.waitFor({"11 status BadSubscriptionIdInvalid", "22 alive"}));
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), 2);
    EXPECT_FALSE(gone->isValid());
    EXPECT_TRUE(kept->isValid());
    EXPECT_TRUE(remove(gone).isGood()); // nothing is left to ask the server for
    EXPECT_EQ(stack.calls(OpcUa_DeleteSubscriptionsRequest_EncodeableType), 0);

    stack.ticks += 2000;
    ASSERT_TRUE(waitForPublishCalls(4));
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32, OpcUa_NotificationMessage&) {
        return OpcUa_BadSubscriptionIdInvalid;
    });
    data(2, 1, {});
    acknowledgeResult = OpcUa_BadSubscriptionIdInvalid;
    keepAlive(2, 2);
    keepAlive(2, 2);
    EXPECT_TRUE(events.waitForLine("22 status BadSubscriptionIdInvalid"));
    EXPECT_FALSE(kept->isValid());
}

TEST_F(SubscriptionTest, StatusNotificationsThatEndASubscriptionAreTheLast)
{
    UaSubscription* subscription = create(11);
    const auto status = [this](OpcUa_UInt32 number, OpcUa_StatusCode code) {
        notify<OpcUa_StatusChangeNotification>(
            1, number, OpcUa_StatusChangeNotification_EncodeableType,
            [code](OpcUa_StatusChangeNotification& notification) { notification.Status = code; });
    };
    UaSubscription* transferred = create(33);
    notify<OpcUa_StatusChangeNotification>(2, 1, OpcUa_StatusChangeNotification_EncodeableType,
                                           [](OpcUa_StatusChangeNotification& notification) {
                                               notification.Status = OpcUa_GoodSubscriptionTransferred;
                                           });
    ASSERT_TRUE(events.waitFor({"33 status GoodSubscriptionTransferred"}));
    EXPECT_FALSE(transferred->isValid()) << "it is somebody else's now";
    status(1, OpcUa_GoodOverload);
    data(1, 2, {});
    status(3, OpcUa_BadTimeout);
    Lines told{"33 status GoodSubscriptionTransferred", "11 status GoodOverload", "11 data",
               "11 status BadTimeout"};
    ASSERT_TRUE(events.waitFor(told));
    data(1, 4, {}); // what was on its way is not told
    ServiceSettings settings;
    EXPECT_EQ(subscription->setPublishingMode(settings, false).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadSubscriptionIdInvalid));
    UaSubscription* next = create(22);
    ASSERT_TRUE(next);
    keepAlive(3, 1);
    told.emplace_back("22 alive");
    EXPECT_TRUE(events.waitFor(told));
}

TEST_F(SubscriptionTest, PublishingModeChangesWhereTheServerSaysSo)
{
    UaSubscription* const refused = create(11);
    UaSubscription* const changed = create(22);
    OpcUa_StatusCode service = OpcUa_Good;
    stack.on(OpcUa_SetPublishingModeRequest_EncodeableType, [&](const void*, void* data) {
        auto& response = *static_cast<OpcUa_SetPublishingModeResponse*>(data);
        UaStatusCodeArray results(2u);
        results[0] = OpcUa_BadSubscriptionIdInvalid;
        results.detach(&response.NoOfResults, &response.Results);
        return service;
    });
    ServiceSettings settings;
    UaUInt32Array ids(2u);
    ids[0] = refused->subscriptionId();
    ids[1] = changed->subscriptionId();
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    ASSERT_TRUE(session.setPublishingMode(settings, false, ids, results, diagnostics).isGood());
    EXPECT_TRUE(refused->publishingEnabled());
    EXPECT_FALSE(changed->publishingEnabled());
    service = OpcUa_BadTimeout;
    EXPECT_TRUE(session.setPublishingMode(settings, true, ids, results, diagnostics).isBad());
    EXPECT_FALSE(changed->publishingEnabled());
}

// ---- callbacks that do things

TEST_F(SubscriptionTest, CallbackMayDeleteItsSubscription)
{
    UaSubscription* subscription = create(11);
    std::promise<OpcUa_StatusCode> deleted;
    events.during = [&](const std::string&) { deleted.set_value(remove(subscription).statusCode()); };
    data(1, 1, {{1, 1}});
    data(1, 2, {{1, 2}});
    auto result = deleted.get_future();
    ASSERT_EQ(result.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_TRUE(OpcUa_IsGood(result.get()));
    EXPECT_EQ(subscription, nullptr);
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(events.heard(), Lines{"11 data 1=1"});
}

TEST_F(SubscriptionTest, DeletingWaitsForACallbackThatRunsAndTheAnswerInFlightIsDropped)
{
    const RecordedTrace trace;
    UaSubscription* subscription = create(11);
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> left{false};
    events.during = [&](const std::string&) {
        entered.set_value();
        leave.get_future().wait();
        left = true;
    };
    data(1, 1, {});
    data(1, 2, {}); // waits behind the first
    entered.get_future().wait();
    auto deleting = std::async(std::launch::async, [&] {
        const UaStatus status = remove(subscription);
        EXPECT_TRUE(left);
        return status.isGood();
    });
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 1));
    leave.set_value();
    EXPECT_TRUE(deleting.get());
    EXPECT_TRUE(trace.waitFor("Server sent invalid SubscriptionId 1")); // a disconnect would drop the answer
    EXPECT_THAT(deleted(), ElementsAre(1)); // it is late, no sign of a subscription that was left
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(events.heard(), Lines{"11 data"});
}

TEST_F(SubscriptionTest, CallbackMayCallTheSession)
{
    create(11);
    UaSubscription* second = nullptr;
    events.during = [&](const std::string& text) {
        if (text == "11 data")
            second = create(22); // its first notification comes behind this callback
    };
    data(1, 1, {});
    data(2, 1, {{5, 5}});
    EXPECT_TRUE(events.waitFor({"11 data", "22 data 5=5"}));
    EXPECT_TRUE(second);
}

TEST_F(SubscriptionTest, ThrowingCallbackLosesNothingElse)
{
    const RecordedTrace trace;
    create(11);
    events.during = [](const std::string& text) {
        if (text == "11 data")
            throw std::runtime_error("application fault");
    };
    ASSERT_TRUE(waitForPublishCalls(2));
    data(1, 1, {});
    keepAlive(1, 2);
    EXPECT_TRUE(events.waitFor({"11 alive"}));
    EXPECT_TRUE(waitForPublishCalls(4)); // both requests are replaced
    EXPECT_TRUE(trace.holds("a callback threw 'application fault'"));
}

TEST_F(SubscriptionTest, FirstNotificationMayOvertakeTheAnswerThatNamesTheSubscription)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [this](const void*, void* response) {
        static_cast<OpcUa_CreateSubscriptionResponse*>(response)->SubscriptionId = 50;
        data(50, 1, {{1, 1}});
        EXPECT_TRUE(waitForPublishCalls(2));
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    create(55);
    EXPECT_TRUE(events.waitFor({"55 data 1=1"}));
    EXPECT_THAT(deleted(), ElementsAre());
}

TEST_F(SubscriptionTest, CallbacksThatDeleteEachOthersSubscriptionBothEnd)
{
    UaSubscription* first = create(11);
    UaSubscription* second = create(22);
    std::promise<void> firstIn;
    std::promise<void> secondIn;
    std::promise<bool> firstOut;
    std::promise<bool> secondOut;
    events.during = [&](const std::string& text) {
        const bool isFirst = text == "11 data";
        (isFirst ? firstIn : secondIn).set_value();
        (isFirst ? secondIn : firstIn).get_future().wait();
        (isFirst ? firstOut : secondOut).set_value(remove(isFirst ? second : first).isGood());
    };
    ServiceSettings settings;
    ASSERT_TRUE(second
                    ->beginCreateMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                UaMonitoredItemCreateRequests(1u), 5)
                    .isGood());
    data(1, 1, {});
    for (std::promise<bool>* const out : {&firstOut, &secondOut}) {
        auto result = out->get_future();
        ASSERT_EQ(result.wait_for(std::chrono::seconds(10)), std::future_status::ready);
        EXPECT_TRUE(result.get());
    }
}

TEST_F(SubscriptionTest, WhoIsInNoCallbackWaitsForThoseThatDeleteToo)
{
    UaSubscription* first = create(11);
    UaSubscription* second = create(22);
    std::promise<void> secondIn;
    std::promise<void> leave;
    std::atomic<bool> firstLeft{false};
    auto entered = secondIn.get_future();
    events.during = [&](const std::string& text) {
        if (text != "11 data") {
            secondIn.set_value();
            leave.get_future().wait();
            return;
        }
        EXPECT_TRUE(remove(second).isGood()); // waits for the other callback
        firstLeft = true;
    };
    ServiceSettings settings;
    ASSERT_TRUE(second
                    ->beginCreateMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                UaMonitoredItemCreateRequests(1u), 5)
                    .isGood());
    entered.wait();
    data(1, 1, {});
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 1));
    auto deleting = std::async(std::launch::async, [&] {
        const bool isGood = remove(first).isGood();
        return isGood && firstLeft;
    });
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 2));
    EXPECT_TRUE(passTurns());
    EXPECT_EQ(deleting.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    leave.set_value();
    EXPECT_TRUE(deleting.get());
}

TEST_F(SubscriptionTest, DisconnectWhileACallbackBlocksReturnsInBoundedTime)
{
    UaSubscription* subscription = create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> left{false};
    events.during = [&](const std::string&) {
        entered.set_value();
        leave.get_future().wait();
        left = true;
    };
    data(1, 1, {});
    entered.get_future().wait();
    const auto started = std::chrono::steady_clock::now();
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
    leave.set_value();
    EXPECT_TRUE(remove(subscription).isGood()); // without a server, but not without waiting
    EXPECT_TRUE(left);
}

TEST_F(SubscriptionTest, NothingIsHeardAfterDisconnect)
{
    for (int round = 0; round < 20; ++round) {
        UaSubscription* subscription = create(11);
        const OpcUa_UInt32 id = subscription->subscriptionId();
        std::atomic<bool> over{false};
        events.during = [&](const std::string&) { EXPECT_FALSE(over); };
        for (OpcUa_UInt32 number = 1; number <= 20; ++number)
            data(id, number, {});
        EXPECT_TRUE(disconnect().isGood());
        over = true;
        EXPECT_FALSE(subscription->isValid());
        EXPECT_TRUE(remove(subscription).isGood());
        ASSERT_TRUE(connect().isGood());
        events.during = nullptr;
        // what this round has not used up
        stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
    }
}

} // namespace
