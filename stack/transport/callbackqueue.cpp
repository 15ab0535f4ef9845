#include <stack/transport/callbackqueue.h>

#include <opcua/opcua_channel.h>

#include <exception>
#include <mutex>
#include <utility>

namespace opcua {

namespace {

thread_local const CallbackQueue* t_queue = nullptr;

// Application code that throws must not take the stack down with it.
void runGuarded(const CallbackQueue::Job& job)
{
    try {
        job();
    } catch (const std::exception& error) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "A callback threw: %s", error.what());
    } catch (...) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "A callback threw");
    }
}

} // namespace

bool CallbackQueue::isOwnThread() const
{
    return t_queue == this;
}

bool CallbackQueue::onCallbackThread()
{
    return t_queue != nullptr;
}

void CallbackQueue::start()
{
    const std::lock_guard lock(m_mutex);
    startLocked();
}

void CallbackQueue::startLocked()
{
    assertLocked(m_mutex);
    m_retiring = false;
    if (m_running)
        return;
    if (m_thread.joinable())
        m_thread.join(); // it has left its loop already
    m_thread = std::thread([this] { run(); });
    m_running = true;
}

void CallbackQueue::post(Job job)
{
    bool waits = false;
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
        startLocked();
        waits = std::exchange(m_waiting, false);
    }
    if (waits)
        m_changed.notify_all();
}

void CallbackQueue::drain()
{
    std::unique_lock lock(m_mutex);
    m_draining = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return !m_running; });
    m_draining = false;
    if (m_thread.joinable())
        m_thread.join();
}

void CallbackQueue::retire()
{
    const std::lock_guard lock(m_mutex);
    m_retiring = true;
    m_changed.notify_all();
}

void CallbackQueue::run()
{
    t_queue = this;
    std::vector<Job> jobs;
    std::unique_lock lock(m_mutex);
    for (;;) {
        while (!m_draining && !m_retiring && m_jobs.empty()) {
            m_waiting = true;
            m_changed.wait(lock);
        }
        m_waiting = false;
        if (m_jobs.empty())
            break;
        // all at once, so that whoever posts does not meet this thread at every job
        jobs.swap(m_jobs);
        lock.unlock();
        for (Job& job : jobs) {
            runGuarded(job);
            job = nullptr; // what it holds goes now, not with the last of them
        }
        jobs.clear();
        if (m_afterJobs)
            runGuarded(m_afterJobs);
        lock.lock();
    }
    m_running = false;
    m_changed.notify_all();
}

} // namespace opcua
