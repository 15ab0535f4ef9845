#include <stack/transport/callbackqueue.h>

#include <opcua/opcua_channel.h>

#include <exception>
#include <mutex>
#include <utility>

namespace opcua {

namespace {

thread_local const CallbackQueue* t_queue = nullptr;

// Application code that throws must not take the stack down with it.
template <typename Action>
void runGuarded(Action& action)
{
    try {
        action();
    } catch (const std::exception& error) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "A callback threw: %s", error.what());
    } catch (...) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "A callback threw");
    }
}

class FunctionJob final : public CallbackJob
{
public:
    explicit FunctionJob(CallbackQueue::Job function) : m_function(std::move(function)) {}
    void run() override { m_function(); }

private:
    CallbackQueue::Job m_function;
};

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
    post(std::make_shared<FunctionJob>(std::move(job)));
}

void CallbackQueue::post(std::shared_ptr<CallbackJob> job) noexcept
{
    bool waits = false;
    bool started = true;
    {
        const std::lock_guard lock(m_mutex);
        CallbackJob* const last = job.get();
        (m_first ? m_last->m_next : m_first) = std::move(job);
        m_last = last;
        try {
            startLocked();
        } catch (const std::exception&) {
            started = false;
        }
        waits = std::exchange(m_waiting, false);
    }
    if (!started)
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "No thread for a callback");
    if (waits)
        m_changed.notify_all();
}

void CallbackQueue::drain()
{
    std::unique_lock lock(m_mutex);
    m_draining = true;
    m_changed.notify_all();
    for (;;) {
        m_changed.wait(lock, [this] { return !m_running; });
        if (!m_first)
            break;
        runAllLocked(lock); // there was no thread for them
    }
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
    std::unique_lock lock(m_mutex);
    for (;;) {
        while (!m_draining && !m_retiring && !m_first) {
            m_waiting = true;
            m_changed.wait(lock);
        }
        m_waiting = false;
        if (!m_first)
            break;
        runAllLocked(lock);
    }
    m_running = false;
    m_changed.notify_all();
}

// Takes them all at once, so that whoever posts does not meet this thread at every job.
void CallbackQueue::runAllLocked(std::unique_lock<CheckedMutex>& lock)
{
    assertLocked(m_mutex);
    std::shared_ptr<CallbackJob> job = std::move(m_first);
    lock.unlock();
    const CallbackQueue* const outer = std::exchange(t_queue, this);
    while (job) {
        const auto run = [&job] { job->run(); };
        runGuarded(run);
        job = std::move(job->m_next); // what it holds goes now, not with the last of them
    }
    if (m_afterJobs)
        runGuarded(m_afterJobs);
    t_queue = outer;
    lock.lock();
}

} // namespace opcua
