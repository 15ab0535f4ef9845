#include <uabase/system/uamutex.h>
#include <uabase/system/uarefcounter.h>
#include <uabase/system/uathread.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <semaphore>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr unsigned int soon = 10000; // ms; far beyond what anything here takes

class Worker : public UaThread
{
public:
    ~Worker() override
    {
        go.release();
        wait();
    }
    std::counting_semaphore<> go{0};
    std::atomic<int> rounds{0};
    std::atomic<bool> waitedForItself{true};

protected:
    void run() override
    {
        waitedForItself = wait(0);
        go.acquire();
        ++rounds;
    }
};

} // namespace

TEST(UaThread, RunsEndsAndStartsAgain)
{
    Worker worker;
    EXPECT_FALSE(worker.isRunning());
    EXPECT_TRUE(worker.wait(0)) << "never started";
    ASSERT_TRUE(worker.start());
    EXPECT_FALSE(worker.start()) << "runs already";
    EXPECT_TRUE(worker.isRunning());
    EXPECT_FALSE(worker.isCurrentThread());
    EXPECT_FALSE(worker.wait(1)) << "nobody let it go";
    worker.go.release();
    EXPECT_TRUE(worker.wait(soon));
    EXPECT_FALSE(worker.isRunning());
    EXPECT_FALSE(worker.waitedForItself);
    ASSERT_TRUE(worker.start());
    worker.go.release();
    EXPECT_TRUE(worker.wait());
    EXPECT_EQ(worker.rounds, 2);
}

TEST(UaThreadDeathTest, ALivingThreadMayNotBeDestroyed)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            static std::promise<void> started;
            class Endless : public UaThread
            {
                void run() override
                {
                    started.set_value();
                    std::this_thread::sleep_for(std::chrono::hours(1));
                }
            } thread;
            if (thread.start())
                started.get_future().wait();
        },
        "UaThread: destroyed while it runs");
}

TEST(UaMutex, KnowsItsOwnerAndRefusesToHang)
{
    UaMutex mutex;
    UaMutexLocker locker(mutex);
    EXPECT_TRUE(mutex.isLockedByCurrentThread());
    EXPECT_FALSE(mutex.tryLock());
    EXPECT_FALSE(std::async(
                     std::launch::async, [&mutex] { return mutex.tryLock(); })
                     .get());
    EXPECT_FALSE(std::async(std::launch::async, [&mutex] { return mutex.isLockedByCurrentThread(); }).get());
    locker.unlock();
    EXPECT_FALSE(mutex.isLockedByCurrentThread());
    {
        UaMutexLocker inner(&mutex);
    }
    locker.lock();
    EXPECT_DEATH(mutex.lock(), "UaMutex: locked twice by one thread");
}

TEST(UaMutex, GuardsFromOtherThreads)
{
    UaMutex mutex;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5000; ++round) {
                const UaMutexLocker locker(mutex);
                ++counter;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 20000);
}

TEST(UaRefCounter, TheLastReferenceDeletes)
{
    struct Shared : UaRefCounter
    {
        explicit Shared(bool& gone) : m_gone(gone) {}
        ~Shared() override { m_gone = true; }
        bool& m_gone;
    };
    bool gone = false;
    {
        auto first = UaRefPtr<Shared>::adopt(std::make_unique<Shared>(gone).release());
        auto second = first;
        const auto third = UaRefPtr<Shared>::share(first.get());
        const auto moved = std::move(second);
        EXPECT_FALSE(second);
        EXPECT_EQ(first->referenceCount(), 3);
        first = UaRefPtr<Shared>();
        EXPECT_EQ(third->referenceCount(), 2);
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
}
