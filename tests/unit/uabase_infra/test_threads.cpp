#include <uabase/system/uamutex.h>
#include <uabase/system/uarefcounter.h>
#include <uabase/system/uasemaphore.h>
#include <uabase/system/uathread.h>
#include <uabase/system/uathreadpool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <set>
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
        go.post();
        wait();
    }
    UaSemaphore go{0, 100};
    std::atomic<int> rounds{0};
    std::atomic<bool> waitedForItself{true};

protected:
    void run() override
    {
        waitedForItself = wait(0);
        go.wait();
        ++rounds;
    }
};

class Job : public UaThreadPoolJob
{
public:
    explicit Job(std::function<void()> work, std::shared_ptr<int> alive = nullptr)
        : m_work(std::move(work)), m_alive(std::move(alive))
    {
    }
    void execute() override { m_work(); }

private:
    std::function<void()> m_work;
    std::shared_ptr<int> m_alive;
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
    worker.go.post();
    EXPECT_TRUE(worker.wait(soon));
    EXPECT_FALSE(worker.isRunning());
    EXPECT_FALSE(worker.waitedForItself);
    ASSERT_TRUE(worker.start());
    worker.go.post();
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
                    UaThread::msleep(3600000);
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

TEST(UaSemaphore, CountsPermitsUpToItsMaximum)
{
    UaSemaphore semaphore(1, 2);
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.timedWait(1));
    EXPECT_FALSE(semaphore.post(3));
    EXPECT_TRUE(semaphore.post(2));
    EXPECT_FALSE(semaphore.post());
    EXPECT_TRUE(semaphore.timedWait(0));
    semaphore.wait();
    std::future<bool> waiting = std::async(std::launch::async, [&] { return semaphore.timedWait(soon); });
    semaphore.post();
    EXPECT_TRUE(waiting.get());
}

TEST(UaThreadPool, ExecutesEveryJobOnItsThreads)
{
    UaThreadPool pool(3);
    ASSERT_EQ(pool.threadCount(), 3u);
    std::mutex mutex;
    std::set<std::thread::id> ids;
    UaSemaphore together(0, 3);
    UaSemaphore arrived(0, 3);
    for (int i = 0; i < 3; ++i) {
        // three jobs that wait for each other need three threads
        EXPECT_TRUE(pool.addJob(std::make_unique<Job>([&] {
            arrived.post();
            together.wait();
            const std::lock_guard lock(mutex);
            ids.insert(std::this_thread::get_id());
        })));
    }
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(arrived.timedWait(soon));
    EXPECT_FALSE(pool.waitIdle(1));
    together.post(3);
    EXPECT_TRUE(pool.waitIdle(soon));
    EXPECT_EQ(ids.size(), 3u);
    EXPECT_FALSE(pool.addJob(nullptr));
}

TEST(UaThreadPool, OneThreadKeepsTheOrderAndJobsMayAddJobs)
{
    std::vector<int> order;
    {
        UaThreadPool pool(1);
        pool.addJob(std::make_unique<Job>([&] {
            order.push_back(1);
            pool.addJob(std::make_unique<Job>([&] { order.push_back(3); }));
        }));
        pool.addJob(std::make_unique<Job>([&] { order.push_back(2); }));
        EXPECT_TRUE(pool.waitIdle(soon));
        for (int i = 4; i < 50; ++i)
            pool.addJob(std::make_unique<Job>([&order, i] { order.push_back(i); }));
    } // ends with every job done
    ASSERT_EQ(order.size(), 49u);
    EXPECT_TRUE(std::is_sorted(order.begin() + 3, order.end()));
    EXPECT_TRUE(std::set<int>(order.begin(), order.begin() + 3) == std::set<int>({1, 2, 3}));
}

TEST(UaThreadPool, DiscardedJobsAreDeletedUnexecuted)
{
    UaThreadPool pool(1);
    UaSemaphore started(0, 1);
    UaSemaphore release(0, 1);
    std::atomic<int> executed{0};
    const auto alive = std::make_shared<int>();
    pool.addJob(std::make_unique<Job>(
        [&] {
            started.post();
            release.wait();
            ++executed;
        },
        alive));
    started.wait();
    for (int i = 0; i < 5; ++i)
        pool.addJob(std::make_unique<Job>([&] { ++executed; }, alive));
    EXPECT_EQ(pool.pendingJobs(), 5u);
    std::thread releasing([&] {
        while (pool.pendingJobs() != 0)
            std::this_thread::yield();
        release.post();
    });
    pool.shutdown(UaThreadPool::Pending::Discard);
    releasing.join();
    EXPECT_EQ(executed, 1);
    EXPECT_FALSE(pool.addJob(std::make_unique<Job>([&] { ++executed; }, alive)));
    EXPECT_EQ(alive.use_count(), 1);
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
