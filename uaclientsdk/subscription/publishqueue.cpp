#include <uaclientsdk/subscription/publishqueue.h>

#include <uabase/system/uatrace.h>
#include <uaclientsdk/connection/sessioncontext.h>

#include <exception>
#include <utility>

namespace UaClientSdk {

class PublishQueue::Drain : public CallbackJob
{
public:
    explicit Drain(PublishQueue& queue) : m_queue(queue) {}
    void execute() override { m_queue.drain(); }

private:
    PublishQueue& m_queue;
};

void PublishQueue::add(std::unique_ptr<CallbackJob> job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
        if (m_draining)
            return;
        m_draining = true;
    }
    m_context.runOnPool(std::make_unique<Drain>(*this));
}

void PublishQueue::drain()
{
    std::unique_lock lock(m_mutex);
    while (!m_jobs.empty()) {
        std::unique_ptr<CallbackJob> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        executeGuarded(*job);
        job.reset();
        lock.lock();
    }
    m_draining = false;
    m_idle.notify_all(); // under the lock: the one who waits may destroy us with it
}

void PublishQueue::executeGuarded(CallbackJob& job)
{
    try {
        job.execute();
    } catch (const std::exception& error) {
        UaTrace::tError("Error: SubscriptionCallback - a callback threw '%s'", error.what());
    } catch (...) {
        UaTrace::tError("Error: SubscriptionCallback - a callback threw");
    }
}

void PublishQueue::waitIdle(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_idle.wait_for(lock, limit, [this] { return !m_draining && m_jobs.empty(); });
}

void PublishQueue::waitIdle()
{
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return !m_draining && m_jobs.empty(); });
}

} // namespace UaClientSdk
