// The machinery of asynchronous calls: the pool of callback threads and the count of transactions.
#include <opcua/opcua_statuscodes.h>
#include <tests/support/recordedtrace.h>
#include <uaclientsdk/calls/callbackpool.h>
#include <uaclientsdk/calls/transactioncounter.h>
#include <uaclientsdk/services/pendingcall.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using UaClientSdk::CallbackJob;
using UaClientSdk::CallbackPool;
using UaClientSdk::TransactionCounter;

constexpr auto limit = std::chrono::seconds(10);

class Job : public CallbackJob
{
public:
    explicit Job(std::function<void()> work) : m_work(std::move(work)) {}
    void execute() override { m_work(); }

private:
    std::function<void()> m_work;
};

bool add(CallbackPool& pool, const void* session, std::function<void()> work)
{
    return pool.add(std::make_unique<Job>(std::move(work)), session);
}

TEST(CallbackPool, SessionThatBlocksTakesItsShareOnly)
{
    std::latch released(1);
    std::counting_semaphore<> blocked(0);
    std::atomic<unsigned int> late{0};
    const int blocking = 0;
    const int other = 0;
    CallbackPool pool;
    for (unsigned int i = 0; i < 10 * CallbackPool::maxThreads; ++i) {
        ASSERT_TRUE(add(
            pool, &blocking,
            [&] {
                ++late;
                blocked.release();
                released.wait();
            }));
    }
    for (unsigned int i = 0; i < CallbackPool::threadsOfASession; ++i)
        ASSERT_TRUE(blocked.try_acquire_for(limit));
    std::promise<bool> ofOther;
    ASSERT_TRUE(add(pool, &other, [&] {
        ofOther.set_value(CallbackPool::runsJobOf(&other) && !CallbackPool::runsJobOf(&blocking));
    }));
    auto answer = ofOther.get_future();
    const bool overtook = answer.wait_for(limit) == std::future_status::ready;
    EXPECT_TRUE(overtook);
    EXPECT_EQ(late, CallbackPool::threadsOfASession);
    released.count_down();
    EXPECT_TRUE(overtook && answer.get());
    EXPECT_FALSE(CallbackPool::runsJobOf(&other));
}

TEST(CallbackPool, ExecutesEveryJobOfManySessions)
{
    constexpr int jobs = 2000;
    constexpr std::size_t sessions = 8;
    std::array<std::atomic<unsigned int>, sessions> running{};
    std::vector<std::atomic<int>> executed(sessions * jobs);
    {
        CallbackPool pool;
        std::vector<std::thread> producers;
        for (std::size_t s = 0; s < sessions; ++s) {
            producers.emplace_back([&, s] {
                for (std::size_t i = 0; i < jobs; ++i)
                    EXPECT_TRUE(add(
                        pool, &running[s],
                        [&, s, i] {
                            EXPECT_LE(++running[s], CallbackPool::threadsOfASession);
                            ++executed[s * jobs + i];
                            --running[s];
                        }));
            });
        }
        for (std::thread& producer : producers)
            producer.join();
    } // executes what waits
    EXPECT_TRUE(std::all_of(executed.begin(), executed.end(), [](const auto& times) { return times == 1; }));
}

TEST(CallbackPool, WhatAJobThrowsEndsInTheTrace)
{
    const RecordedTrace trace;
    std::atomic<bool> next{false};
    {
        CallbackPool pool;
        ASSERT_TRUE(add(
            pool, nullptr, [] { throw std::runtime_error("lost"); }));
        ASSERT_TRUE(add(pool, nullptr, [&] { next = true; }));
    }
    EXPECT_TRUE(trace.holds("a callback threw 'lost'"));
    EXPECT_TRUE(next);
}

TEST(CallbackPool, IsOneForAllWhoHoldIt)
{
    const auto first = CallbackPool::instance();
    EXPECT_EQ(first, CallbackPool::instance());
}

TEST(TransactionCounter, WaitsForTheLastTransaction)
{
    for (int round = 0; round < 200; ++round) {
        auto counter = std::make_unique<TransactionCounter>();
        counter->waitForTransactionCompletion(1); // none: at once
        counter->begin();
        counter->begin();
        std::atomic<int> ended{0};
        std::thread other([&] {
            ++ended;
            counter->end();
            ++ended;
            counter->end();
        });
        counter->waitForTransactionCompletion(1);
        EXPECT_EQ(ended, 2);
        counter.reset(); // at once: the other thread may still be on its way out of end
        other.join();
    }
}

TEST(PendingCall, AnswerWithoutARecordIsTracedAndFreed)
{
    const RecordedTrace trace;
    void* response = OpcUa_EncodeableObject_Create(&OpcUa_ReadResponse_EncodeableType);
    UaClientSdk::PendingCall::respond(nullptr, response, &OpcUa_ReadResponse_EncodeableType, nullptr,
                                      OpcUa_Good); // a leak shows in the sanitizer
    EXPECT_TRUE(trace.holds("Error: SessionCallback - Stack sent callback with status [status=0x0]"));
    UaClientSdk::PendingCall::respond(nullptr, nullptr, nullptr, nullptr, OpcUa_BadTimeout);
    EXPECT_TRUE(trace.holds("Error: SessionCallback - Stack sent callback with status [status=0x800a0000]"));
}

} // namespace
