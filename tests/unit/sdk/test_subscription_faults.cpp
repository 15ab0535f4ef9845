// What servers, links and applications do to subscriptions that nobody has planned.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <gmock/gmock.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaSubscription;

// ---- subscriptions that nobody wants

TEST_F(SubscriptionTest, DeletionThatFailedIsMadeUpForOnce)
{
    const RecordedTrace trace;
    UaSubscription* subscription = create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    stack.failNext(OpcUa_DeleteSubscriptionsRequest_EncodeableType, {OpcUa_BadTimeout, OpcUa_BadTimeout});
    EXPECT_EQ(remove(subscription).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));
    data(1, 1, {}); // here it is again, and once more the server is not reached
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 2));
    for (OpcUa_UInt32 number = 2; deleted().empty() && number < 1000; ++number) {
        data(1, number, {});
        ASSERT_TRUE(waitForPublishCalls(static_cast<int>(number) + 2));
    }
    const long lines = trace.count("Server sent invalid SubscriptionId 1");
    for (OpcUa_UInt32 number = 1000; number < 1010; ++number)
        data(1, number, {});
    keepAlive(2, 1);
    keepAlive(2, 1);
    ASSERT_TRUE(events.waitFor({"22 alive", "22 alive"}));
    EXPECT_THAT(deleted(), ElementsAre(1));
    EXPECT_EQ(trace.count("Server sent invalid SubscriptionId 1"), lines) << "said often enough";
}

TEST_F(SubscriptionTest, CreationWhoseAnswerWasLostLeavesNothing)
{
    const RecordedTrace trace;
    create(11);
    stack.failNext(OpcUa_CreateSubscriptionRequest_EncodeableType, {OpcUa_BadTimeout});
    ServiceSettings settings;
    UaSubscription* subscription = nullptr;
    EXPECT_TRUE(session
                    .createSubscription(settings, &events, 22, UaClientSdk::SubscriptionSettings(), true,
                                        &subscription)
                    .isBad());
    for (int i = 0; i < 5; ++i)
        keepAlive(50, 1);
    data(1, 1, {});
    ASSERT_TRUE(events.waitFor({"11 data"}));
    ASSERT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 1));
    EXPECT_EQ(trace.count("Server sent invalid SubscriptionId 50"), 1);
    nextId = 50; // the server is free to use the number again
    create(55);
    keepAlive(50, 1);
    EXPECT_TRUE(events.waitFor({"11 data", "55 alive"}));
    EXPECT_THAT(deleted(), ElementsAre(50));
}

TEST_F(SubscriptionTest, ManyThatNobodyWantsAreAllDeleted)
{
    create(11);
    std::vector<OpcUa_UInt32> ids;
    for (OpcUa_UInt32 id = 100; id < 110; ++id) {
        ids.push_back(id);
        keepAlive(id, 1);
        ASSERT_TRUE(
            stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, static_cast<int>(ids.size())))
            << id;
    }
    EXPECT_TRUE(waitUntil([&] { return deleted() == ids; }));
}

TEST_F(SubscriptionTest, OneThatIsBeingMadeIsNotTakenForUnwantedHoweverLongThatTakes)
{
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    const auto make = stack.handler(OpcUa_CreateSubscriptionRequest_EncodeableType);
    stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [&](const void* request, void* response) {
        keepAlive(2, 1);
        EXPECT_TRUE(waitForPublishCalls(3)) << "in the end the answer is passed over";
        return make(request, response);
    });
    create(22);
    keepAlive(2, 1);
    EXPECT_TRUE(events.waitFor({"22 alive"}));
    EXPECT_EQ(stack.calls(OpcUa_DeleteSubscriptionsRequest_EncodeableType), 0);
}

TEST_F(SubscriptionTest, NumberThatTheServerUsesAgainEndsTheOneThatHadIt)
{
    UaSubscription* const old = create(11);
    nextId = 1;
    UaSubscription* const fresh = create(22);
    EXPECT_TRUE(events.waitFor({"11 status BadSubscriptionIdInvalid"}));
    EXPECT_FALSE(old->isValid());
    EXPECT_TRUE(fresh->isValid());
    data(1, 1, {});
    EXPECT_TRUE(events.waitFor({"11 status BadSubscriptionIdInvalid", "22 data"}));
}

TEST_F(SubscriptionTest, NothingIsAcknowledgedForOneThatIsDeleted)
{
    UaSubscription* deleted = create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    events.during = [&](const std::string& text) {
        if (text == "11 data")
            EXPECT_TRUE(remove(deleted).isGood());
    };
    data(1, 1, {});
    for (OpcUa_UInt32 number = 1; number <= 4; ++number)
        data(2, number, {});
    ASSERT_TRUE(events.waitForCount(5));
    keepAlive(2, 5);
    keepAlive(2, 5);
    ASSERT_TRUE(events.waitForCount(7));
    EXPECT_THAT(acknowledged(), testing::Not(testing::Contains("1:1")));
    EXPECT_THAT(acknowledged(), testing::Contains("2:1"));
}

// ---- a link that fails

TEST_F(SubscriptionReconnect, WhatANewSessionLeavesBehindIsDeletedWhateverTheOldOneDeleted)
{
    create(11);
    UaSubscription* deleted = create(22);
    ASSERT_TRUE(remove(deleted).isGood());
    breakLink();
    mendLink(true);
    nextId = 1;
    create(33);
    keepAlive(2, 1);
    EXPECT_TRUE(stack.waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 2));
}

TEST_F(SubscriptionReconnect, SubscriptionOfASessionThatIsGoneIsNotHandedOut)
{
    const auto create = stack.handler(OpcUa_CreateSubscriptionRequest_EncodeableType);
    stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [&](const void* request, void* response) {
        breakLink();
        mendLink(true);
        return create(request, response);
    });
    ServiceSettings settings;
    UaSubscription* subscription = nullptr;
    const UaStatus status = session.createSubscription(
        settings, &events, 11, UaClientSdk::SubscriptionSettings(), true, &subscription);
    EXPECT_EQ(status.statusCode(), OpcUa_StatusCode{OpcUa_BadConnectionClosed});
    EXPECT_EQ(subscription, nullptr);
    EXPECT_EQ(publishCalls(), 0);
}

TEST_F(SubscriptionTest, LinkThatTakesRequestsInVainIsAskedLessOftenAndChecked)
{
    const RecordedTrace trace;
    create(11);
    ASSERT_TRUE(waitForPublishCalls(2));
    auto failBoth = [&, failures = 0L]() mutable { // requests that are open together are lost together
        fail(OpcUa_BadCommunicationError);
        fail(OpcUa_BadCommunicationError);
        return trace.waitFor("Error: Publish failed", failures += 2); // the first one has counted by then
    };
    const int checks = stack.calls(OpcUa_ReadRequest_EncodeableType);
    int sent = 2;
    for (const OpcUa_UInt64 pause : {10, 20, 40, 80}) {
        ASSERT_TRUE(failBoth());
        stack.ticks += pause - 1;
        ASSERT_TRUE(passTurns());
        EXPECT_EQ(publishCalls(), sent) << pause;
        ++stack.ticks;
        ASSERT_TRUE(waitForPublishCalls(sent += 2)) << pause;
    }
    EXPECT_TRUE(stack.waitForCalls(OpcUa_ReadRequest_EncodeableType, checks + 1));
    keepAlive(1, 1);
    ASSERT_TRUE(waitForPublishCalls(++sent));
    ASSERT_TRUE(failBoth());
    ASSERT_TRUE(passTurns());
    EXPECT_EQ(publishCalls(), sent);
    stack.ticks += 10; // as at first
    EXPECT_TRUE(waitForPublishCalls(sent + 2));
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType), checks + 1);
    EXPECT_TRUE(session.isConnected());
}

// ---- the trace

// Asks the session something for each line that it traces, as an application may that shows both.
class AskingHook : private UaTraceHook
{
public:
    explicit AskingHook(const UaClientSdk::UaSession& session)
        : m_thread([this, &session] {
              std::unique_lock lock(m_mutex);
              for (;;) {
                  m_changed.wait(lock, [this] { return m_ends || m_asked > m_answered; });
                  if (m_ends)
                      return;
                  const int answering = m_asked;
                  lock.unlock();
                  static_cast<void>(session.isConnected());
                  lock.lock();
                  m_answered = answering;
                  m_changed.notify_all();
              }
          })
    {
        UaTrace::setTraceLevel(UaTrace::Data);
        UaTrace::setTraceHook(this);
    }
    ~AskingHook() override
    {
        UaTrace::setTraceHook(nullptr);
        UaTrace::setTraceLevel(m_before);
        {
            std::lock_guard lock(m_mutex);
            m_ends = true;
            m_changed.notify_all();
        }
        m_thread.join();
    }

    std::vector<std::string> unanswered()
    {
        std::lock_guard lock(m_mutex);
        return m_unanswered;
    }

private:
    // on a thread of its own, so that a mutex that is held shows and does not hang
    void traceOutput(UaTrace::TraceLevel, const char* text, int) override
    {
        std::unique_lock lock(m_mutex);
        const int mine = ++m_asked;
        m_changed.notify_all();
        if (!m_changed.wait_for(lock, std::chrono::seconds(2), [&] { return m_answered >= mine; }))
            m_unanswered.emplace_back(text);
    }

    const UaTrace::TraceLevel m_before = UaTrace::traceLevel();
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_unanswered;
    int m_asked = 0;
    int m_answered = 0;
    bool m_ends = false;
    std::thread m_thread; // uses all of the above
};

TEST_F(SubscriptionReconnect, TraceHookMayAskTheSession)
{
    AskingHook hook(session);
    UaSubscription* subscription = create(11);
    create(22);
    ASSERT_TRUE(waitForPublishCalls(3));
    fail(OpcUa_BadTooManyPublishRequests);
    data(2, 1, {});
    EXPECT_TRUE(remove(subscription).isGood());
    breakLink();
    mendLink();
    data(2, 4, {});
    ASSERT_TRUE(events.waitFor({"22 data", "22 missing 1-4", "22 data"}));
    fail(OpcUa_BadNoSubscription);
    ASSERT_TRUE(stack.waitForCalls(OpcUa_RepublishRequest_EncodeableType, 2));
    breakLink();
    mendLink(true);
    ASSERT_TRUE(events.waitForCount(4));
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_THAT(hook.unanswered(), ElementsAre());
}

} // namespace
