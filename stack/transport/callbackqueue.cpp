#include "callbackqueue.h"

#include <opcua/opcua_channel.h>

#include <exception>

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
    if (m_running)
        return;
    if (m_thread.joinable())
        m_thread.join(); // it has left its loop already
    m_thread = std::thread([this] { run(); });
    m_running = true;
}

void CallbackQueue::post(Job job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
        startLocked();
    }
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

void CallbackQueue::run()
{
    t_queue = this;
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_draining || !m_jobs.empty(); });
        if (m_jobs.empty())
            break;
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        runGuarded(job);
        job = nullptr; // what it holds goes now, not with the next job
        lock.lock();
    }
    m_running = false;
    m_changed.notify_all();
}

} // namespace opcua
