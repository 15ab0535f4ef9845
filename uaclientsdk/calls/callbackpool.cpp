#include <uaclientsdk/calls/callbackpool.h>

#include <uabase/system/uatrace.h>

#include <algorithm>
#include <cassert>
#include <condition_variable>
#include <deque>
#include <exception>
#include <list>
#include <mutex>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace UaClientSdk {

namespace {

thread_local const void* t_session = nullptr;

// The jobs of one session.
struct Lane
{
    const void* session;
    std::deque<std::unique_ptr<CallbackJob>> jobs;
    unsigned int running = 0;

    [[nodiscard]] bool isReady() const { return !jobs.empty() && running < CallbackPool::threadsOfASession; }
};

void executeGuarded(CallbackJob& job)
{
    try {
        job.execute();
    } catch (const std::exception& error) {
        UaTrace::tError("Error: SessionCallback - a callback threw '%s'", error.what());
    } catch (...) {
        UaTrace::tError("Error: SessionCallback - a callback threw");
    }
}

} // namespace

// Lanes move between two lists, which takes no memory: a worker cannot fail half-way.
class CallbackPoolPrivate
{
public:
    bool add(std::unique_ptr<CallbackJob>&& job, const void* session);
    void end();

private:
    using Lanes = std::list<Lane>;
    using Lock = std::unique_lock<std::mutex>;

    void assertHeld([[maybe_unused]] const Lock& lock) const
    {
        assert(lock.owns_lock() && lock.mutex() == &m_mutex);
    }
    Lanes::iterator laneLocked(const Lock& lock, const void* session);
    void makeReadyLocked(const Lock& lock, Lanes::iterator lane);
    void wakeWorkerLocked(const Lock& lock);
    void work();
    void runOneLocked(Lock& lock);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Lanes m_ready;   // have jobs and threads left to run them; the first is served first
    Lanes m_resting; // all others that have jobs waiting or running
    std::vector<std::thread> m_threads;
    std::size_t m_idle = 0;
    bool m_ending = false;
};

CallbackPoolPrivate::Lanes::iterator CallbackPoolPrivate::laneLocked(const Lock& lock, const void* session)
{
    assertHeld(lock);
    const auto ofSession = [session](const Lane& lane) { return lane.session == session; };
    auto found = std::find_if(m_ready.begin(), m_ready.end(), ofSession);
    if (found == m_ready.end())
        found = std::find_if(m_resting.begin(), m_resting.end(), ofSession);
    return found != m_resting.end() ? found : m_resting.insert(m_resting.end(), Lane{session, {}, 0});
}

void CallbackPoolPrivate::makeReadyLocked(const Lock& lock, Lanes::iterator lane)
{
    assertHeld(lock);
    m_ready.splice(m_ready.end(), m_resting, lane);
    wakeWorkerLocked(lock);
}

void CallbackPoolPrivate::wakeWorkerLocked(const Lock& lock)
{
    assertHeld(lock);
    if (m_ending || m_idle >= m_ready.size() || m_threads.size() >= CallbackPool::maxThreads) {
        m_changed.notify_one();
        return;
    }
    try {
        m_threads.emplace_back([this] { work(); });
    } catch (const std::exception&) {
        m_changed.notify_one(); // those that run will come to it
    }
}

bool CallbackPoolPrivate::add(std::unique_ptr<CallbackJob>&& job, const void* session)
{
    const Lock lock(m_mutex);
    if (m_ending)
        return false;
    const auto lane = laneLocked(lock, session);
    const bool wasReady = lane->isReady();
    lane->jobs.push_back(nullptr);
    if (!wasReady && lane->isReady())
        makeReadyLocked(lock, lane);
    if (m_threads.empty()) {
        m_ready.erase(lane); // without threads nothing else can wait here
        return false;
    }
    lane->jobs.back() = std::move(job);
    return true;
}

void CallbackPoolPrivate::runOneLocked(Lock& lock)
{
    assertHeld(lock);
    const auto lane = m_ready.begin();
    std::unique_ptr<CallbackJob> job = std::move(lane->jobs.front());
    lane->jobs.pop_front();
    ++lane->running;
    m_resting.splice(m_resting.end(), m_ready, lane);
    if (lane->isReady())
        makeReadyLocked(lock, lane); // behind the other sessions
    t_session = lane->session;
    lock.unlock();
    executeGuarded(*job);
    job.reset();
    lock.lock();
    t_session = nullptr;
    const bool wasReady = lane->isReady();
    --lane->running;
    if (lane->jobs.empty()) {
        if (lane->running == 0)
            m_resting.erase(lane);
    } else if (!wasReady) {
        makeReadyLocked(lock, lane);
    }
}

void CallbackPoolPrivate::work()
{
    Lock lock(m_mutex);
    for (;;) {
        ++m_idle;
        m_changed.wait(lock, [this] { return m_ending || !m_ready.empty(); });
        --m_idle;
        if (m_ready.empty())
            return;
        runOneLocked(lock);
    }
}

void CallbackPoolPrivate::end()
{
    std::vector<std::thread> threads;
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        threads.swap(m_threads);
    }
    m_changed.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

std::shared_ptr<CallbackPool> CallbackPool::instance()
{
    static std::mutex mutex;
    static std::weak_ptr<CallbackPool> current;
    const std::lock_guard lock(mutex);
    std::shared_ptr<CallbackPool> pool = current.lock();
    if (!pool) {
        pool = std::make_shared<CallbackPool>();
        current = pool;
    }
    return pool;
}

CallbackPool::CallbackPool() : d(std::make_unique<CallbackPoolPrivate>()) {}

CallbackPool::~CallbackPool()
{
    d->end();
}

bool CallbackPool::add(std::unique_ptr<CallbackJob>&& job, const void* session)
{
    try {
        return d->add(std::move(job), session);
    } catch (const std::bad_alloc&) {
        UaTrace::tError("Error: SessionCallback - no memory to queue a callback");
        return false;
    }
}

bool CallbackPool::runsJobOf(const void* session)
{
    return session != nullptr && t_session == session;
}

} // namespace UaClientSdk
