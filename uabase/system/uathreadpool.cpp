#include <uabase/system/uathreadpool.h>

#include <uabase/system/uathread.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

class UaThreadPoolPrivate
{
public:
    // Executes jobs until the pool stops and none is left; runs on the pool's threads.
    void work();

    mutable std::mutex mutex;
    std::condition_variable added;
    std::condition_variable idle;
    std::deque<std::unique_ptr<UaThreadPoolJob>> jobs;
    std::vector<std::unique_ptr<UaThread>> threads;
    unsigned int running = 0;
    bool stopping = false;
};

namespace {

class PoolThread : public UaThread
{
public:
    explicit PoolThread(UaThreadPoolPrivate& pool) : m_pool(pool) {}
    ~PoolThread() override { wait(); }

protected:
    void run() override { m_pool.work(); }

private:
    UaThreadPoolPrivate& m_pool;
};

} // namespace

void UaThreadPoolPrivate::work()
{
    std::unique_lock lock(mutex);
    for (;;) {
        added.wait(lock, [this] { return stopping || !jobs.empty(); });
        if (jobs.empty())
            return;
        std::unique_ptr<UaThreadPoolJob> job = std::move(jobs.front());
        jobs.pop_front();
        ++running;
        lock.unlock();
        job->execute();
        job.reset(); // a job's destructor may call out as well
        lock.lock();
        --running;
        if (running == 0 && jobs.empty())
            idle.notify_all();
    }
}

UaThreadPool::UaThreadPool(unsigned int threads) : d(std::make_unique<UaThreadPoolPrivate>())
{
    const unsigned int wanted = std::max(threads, 1u);
    for (unsigned int i = 0; i < wanted; ++i) {
        auto thread = std::make_unique<PoolThread>(*d);
        if (!thread->start())
            break; // fewer threads are slower, not wrong
        d->threads.push_back(std::move(thread));
    }
}

UaThreadPool::~UaThreadPool()
{
    shutdown(Pending::Execute);
}

bool UaThreadPool::addJob(std::unique_ptr<UaThreadPoolJob> job)
{
    if (job == nullptr)
        return false;
    const std::lock_guard lock(d->mutex);
    if (d->stopping || d->threads.empty())
        return false;
    d->jobs.push_back(std::move(job));
    d->added.notify_one();
    return true;
}

bool UaThreadPool::waitIdle(unsigned int milliseconds)
{
    std::unique_lock lock(d->mutex);
    return d->idle.wait_for(lock, std::chrono::milliseconds(milliseconds),
                            [this] { return d->running == 0 && d->jobs.empty(); });
}

void UaThreadPool::shutdown(Pending pending)
{
    std::deque<std::unique_ptr<UaThreadPoolJob>> discarded; // deleted without the lock
    std::vector<std::unique_ptr<UaThread>> threads;
    {
        const std::lock_guard lock(d->mutex);
        d->stopping = true;
        if (pending == Pending::Discard)
            discarded.swap(d->jobs);
        threads.swap(d->threads);
        d->added.notify_all();
    }
    threads.clear(); // joins
}

unsigned int UaThreadPool::threadCount() const
{
    const std::lock_guard lock(d->mutex);
    return static_cast<unsigned int>(d->threads.size());
}

unsigned int UaThreadPool::pendingJobs() const
{
    const std::lock_guard lock(d->mutex);
    return static_cast<unsigned int>(d->jobs.size());
}
