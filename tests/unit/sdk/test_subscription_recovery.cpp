// What was on its way when the link broke: fetched, or told to be missing, before anything live.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/notificationmessage.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasubscription.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;
using UaClientSdk::UaSubscription;

using Numbers = std::vector<OpcUa_UInt32>;

class SubscriptionRecovery : public SubscriptionReconnect
{
protected:
    // The server has these messages, with values equal to their numbers, and no others.
    void keepAtServer(const std::set<OpcUa_UInt32>& kept)
    {
        answerRepublish([this, kept](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
            {
                std::lock_guard lock(m_mutex);
                m_asked.push_back(number);
            }
            if (!kept.contains(number))
                return static_cast<OpcUa_StatusCode>(OpcUa_BadMessageNotAvailable);
            fillData(message, number, {{7, static_cast<OpcUa_Int32>(number)}});
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
    }
    // The numbers that the server was asked for.
    Numbers asked()
    {
        std::lock_guard lock(m_mutex);
        return m_asked;
    }
    // A subscription whose last message had that number.
    UaSubscription* createAt(OpcUa_UInt32 number)
    {
        UaSubscription* const subscription = create(11);
        EXPECT_TRUE(waitForPublishCalls(2));
        data(subscription->subscriptionId(), number, {});
        EXPECT_TRUE(events.waitFor({"11 data"}));
        return subscription;
    }
    // The link breaks and comes back, and what can be fetched without an answer to Publish is there.
    void resume()
    {
        breakLink();
        const int before = publishCalls();
        mendLink();
        ASSERT_TRUE(waitForPublishCalls(before + 1));
    }

private:
    std::mutex m_mutex;
    Numbers m_asked;
};

TEST_F(SubscriptionRecovery, GoesOnBehindAMissingNumberWithThoseThatTheServerHas)
{
    createAt(10);
    keepAtServer({12, 13, 15});
    resume();
    data(1, 17, {}, {15, 13, 12, 14, 13, 9, 17}); // it has lost 14 in the meantime
    data(1, 18, {});
    ASSERT_TRUE(
        events.waitFor({"11 data", "11 missing 10-12", "11 data 7=12", "11 data 7=13", "11 missing 13-15",
                        "11 data 7=15", "11 missing 15-17", "11 data", "11 data"}));
    EXPECT_THAT(asked(), ElementsAre(11, 12, 13, 14, 15));
    keepAlive(1, 19);
    keepAlive(1, 19);
    ASSERT_TRUE(events.waitForCount(11));
    EXPECT_THAT(acknowledged(), IsSupersetOf({"1:12", "1:13", "1:15", "1:17"}));
}

TEST_F(SubscriptionRecovery, KeepAliveTellsWhatIsMissingWithoutAnyValue)
{
    createAt(10);
    keepAtServer({12});
    resume();
    keepAlive(1, 14);
    keepAlive(1, 14);
    data(1, 14, {});
    EXPECT_TRUE(events.waitFor({"11 data", "11 missing 10-12", "11 data 7=12", "11 missing 12-14", "11 alive",
                                "11 alive", "11 data"}));
    EXPECT_THAT(asked(), ElementsAre(11, 12, 13)); // without a list, as few as there can be
}

TEST_F(SubscriptionRecovery, ServerWithoutAListIsNotAskedForEver)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    keepAtServer({});
    resume();
    keepAlive(1, 5001); // the first message of all is missing too
    EXPECT_TRUE(events.waitFor({"11 missing 0-5001", "11 alive"}));
    EXPECT_THAT(asked(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
}

TEST_F(SubscriptionRecovery, NumbersGoOnWithOneAfterTheLargest)
{
    createAt(4294967293u);
    keepAtServer({4294967295u, 2});
    resume();
    data(1, 3, {}, {1, 2, 3, 4294967295u});
    EXPECT_TRUE(events.waitFor({"11 data", "11 missing 4294967293-4294967295", "11 data 7=-1",
                                "11 missing 4294967295-2", "11 data 7=2", "11 data"}));
    EXPECT_THAT(asked(), ElementsAre(4294967294u, 4294967295u, 1, 2));
}

TEST_F(SubscriptionRecovery, NumberThatCannotBeTheNextShowsNoGap)
{
    createAt(10);
    keepAtServer({12});
    resume();
    keepAlive(1, 10, {12}); // wrong, but the list is clear
    keepAlive(1, 13);
    EXPECT_TRUE(events.waitFor({"11 data", "11 missing 10-12", "11 data 7=12", "11 alive", "11 alive"}));
    resume();
    data(1, 3, {}); // it counts anew
    EXPECT_TRUE(events.waitFor({"11 data", "11 missing 10-12", "11 data 7=12", "11 alive", "11 alive",
                                "11 missing 12-3", "11 data"}));
}

TEST_F(SubscriptionRecovery, SubscriptionOfAnotherSessionHasMissedNothingThatIsKnown)
{
    stack.on(OpcUa_TransferSubscriptionsRequest_EncodeableType, [](const void*, void* response) {
        auto& answer = *static_cast<OpcUa_TransferSubscriptionsResponse*>(response);
        UaTransferResults(1u).detach(&answer.NoOfResults, &answer.Results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ServiceSettings settings;
    UaUInt32Array available;
    UaSubscription* subscription = nullptr;
    ASSERT_TRUE(session
                    .transferSubscription(settings, &events, 33, 9, UaClientSdk::SubscriptionSettings(), true,
                                          false, available, &subscription)
                    .isGood());
    ASSERT_TRUE(waitForPublishCalls(2));
    keepAtServer({});
    resume();
    keepAlive(9, 500);
    data(9, 500, {});
    EXPECT_TRUE(events.waitFor({"33 alive", "33 data"}));
    EXPECT_THAT(asked(), ElementsAre(1));
}

TEST_F(SubscriptionRecovery, LinkThatBreaksBeforeTheGapIsClosedLosesNothing)
{
    createAt(10);
    keepAtServer({12, 13});
    resume();
    const int calls = stack.calls(OpcUa_RepublishRequest_EncodeableType);
    stack.failNext(OpcUa_RepublishRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    data(1, 13, {}, {12, 13}); // not told, for what comes before it could not be fetched
    ASSERT_TRUE(stack.waitForCalls(OpcUa_RepublishRequest_EncodeableType, calls + 1));
    resume();
    data(1, 14, {{7, 14}}, {12, 13, 14});
    EXPECT_TRUE(
        events.waitFor({"11 data", "11 missing 10-12", "11 data 7=12", "11 data 7=13", "11 data 7=14"}));
}

TEST_F(SubscriptionRecovery, LinkThatHoldsButNeverFetchesAnythingDoesNotKeepLiveOnesAway)
{
    createAt(10);
    keepAtServer({});
    resume();
    stack.failNext(OpcUa_RepublishRequest_EncodeableType, Numbers(20, OpcUa_BadTimeout));
    for (OpcUa_UInt32 number = 13; number <= 17; ++number)
        data(1, number, {{7, static_cast<OpcUa_Int32>(number)}}, {11, 12, number});
    EXPECT_TRUE(events.waitFor({"11 data", "11 missing 10-16", "11 data 7=16", "11 data 7=17"}));
}

TEST_F(SubscriptionRecovery, SubscriptionThatTheServerHasLostMeanwhileEndsWithoutMore)
{
    createAt(10);
    resume();
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32, OpcUa_NotificationMessage&) {
        return OpcUa_BadSubscriptionIdInvalid;
    });
    data(1, 13, {}, {12, 13});
    create(22);
    keepAlive(2, 1);
    EXPECT_TRUE(events.waitFor({"11 data", "11 status BadSubscriptionIdInvalid", "22 alive"}));
    EXPECT_THAT(deleted(), ElementsAre());
}

TEST_F(SubscriptionRecovery, NothingIsAskedForBeforeTheSessionIsActiveAgain)
{
    const RecordedTrace trace;
    create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    std::promise<void> told;
    std::promise<void> leave;
    events.during = [&](const std::string& text) {
        if (text != "11 status BadSubscriptionIdInvalid")
            return;
        told.set_value();
        leave.get_future().wait();
    };
    answerRepublish([](OpcUa_UInt32 id, OpcUa_UInt32, OpcUa_NotificationMessage&) {
        return static_cast<OpcUa_StatusCode>(id == 1 ? OpcUa_BadSubscriptionIdInvalid
                                                     : OpcUa_BadMessageNotAvailable);
    });
    fail(OpcUa_BadNoSubscription); // both are looked for; the callback about the first holds up the second
    told.get_future().wait();
    breakLink();
    std::promise<void> activating;
    std::promise<void> activate;
    stack.on(OpcUa_ActivateSessionRequest_EncodeableType, [&](const void*, void*) {
        activating.set_value();
        activate.get_future().wait();
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    passWatchdogTime();
    activating.get_future().wait();
    leave.set_value();
    EXPECT_TRUE(trace.waitFor("<-- UaSessionPrivate::doSubscriptionStatusCheck"));
    const std::vector<std::string> journal = stack.journal();
    activate.set_value();
    const auto connected = std::find(journal.rbegin(), journal.rend(), "Connect").base();
    EXPECT_THAT(std::vector<std::string>(connected, journal.end()), ElementsAre("ActivateSessionRequest"));
    EXPECT_TRUE(stack.waitForCalls(OpcUa_RepublishRequest_EncodeableType, 2)); // of the second, by now
}

TEST_F(SubscriptionRecovery, ApplicationMayFetchAMessageItself)
{
    createAt(10);
    answerRepublish([](OpcUa_UInt32 id, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        if (id != 1)
            return static_cast<OpcUa_StatusCode>(OpcUa_BadSubscriptionIdInvalid);
        if (number != 8)
            return static_cast<OpcUa_StatusCode>(OpcUa_BadMessageNotAvailable);
        fillData(message, number, {{7, 8}});
        message.PublishTime = 1234;
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ServiceSettings settings;
    UaClientSdk::NotificationMessage message;
    ASSERT_TRUE(session.republish(settings, 1, 8, message).isGood());
    EXPECT_EQ(message.sequenceNumber, 8u);
    EXPECT_EQ(message.publishTime.value(), 1234);
    ASSERT_EQ(message.notificationData.length(), 1u);
    EXPECT_EQ(message.notificationData[0].Body.EncodeableObject.Type,
              &OpcUa_DataChangeNotification_EncodeableType);
    EXPECT_EQ(session.republish(settings, 1, 9, message).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadMessageNotAvailable));
    EXPECT_EQ(message.sequenceNumber, 0u);
    EXPECT_TRUE(message.notificationData.isEmpty());
    EXPECT_EQ(session.republish(settings, 2, 8, message).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadSubscriptionIdInvalid));
    data(1, 11, {}); // the session goes on where it was
    EXPECT_TRUE(events.waitFor({"11 data", "11 data"}));
    const int calls = stack.calls(OpcUa_RepublishRequest_EncodeableType);
    breakLink();
    EXPECT_EQ(session.republish(settings, 1, 8, message).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
    EXPECT_EQ(stack.calls(OpcUa_RepublishRequest_EncodeableType), calls);
}

} // namespace
