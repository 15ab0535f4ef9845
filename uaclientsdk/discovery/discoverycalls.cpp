#include <uaclientsdk/discovery/discoverycalls.h>

#include <chrono>
#include <utility>

namespace UaClientSdk {

DiscoveryCalls::Scope::Scope(DiscoveryCalls& calls, std::function<void()> end)
    : m_calls(calls), m_end(std::move(end))
{
    const std::lock_guard lock(calls.m_mutex);
    m_mayBegin = !calls.m_isCancelled;
    if (m_mayBegin)
        calls.m_running.push_back(this);
}

DiscoveryCalls::Scope::~Scope()
{
    std::unique_lock lock(m_calls.m_mutex);
    std::erase(m_calls.m_running, this);
    m_calls.m_changed.notify_all();
    m_calls.m_changed.wait(lock, [this] { return m_calls.m_ending == 0; });
}

// An end may come before there is something to end, so there may have to be another.
void DiscoveryCalls::cancel()
{
    constexpr std::chrono::milliseconds untilNext(10);
    std::unique_lock lock(m_mutex);
    m_isCancelled = true;
    while (!m_running.empty()) {
        const std::vector<const Scope*> running = m_running; // they wait for us
        ++m_ending;
        lock.unlock();
        for (const Scope* scope : running)
            scope->m_end();
        lock.lock();
        --m_ending;
        m_changed.notify_all();
        m_changed.wait_for(lock, untilNext, [this] { return m_running.empty(); });
    }
}

bool DiscoveryCalls::isCancelled() const
{
    const std::lock_guard lock(m_mutex);
    return m_isCancelled;
}

void DiscoveryCalls::setObservers(std::function<std::shared_ptr<ServiceObserver>()> make)
{
    const std::lock_guard lock(m_mutex);
    m_makeObserver = std::move(make);
}

std::shared_ptr<ServiceObserver> DiscoveryCalls::observer() const
{
    std::unique_lock lock(m_mutex);
    const auto make = m_makeObserver;
    lock.unlock();
    return make ? make() : nullptr;
}

} // namespace UaClientSdk
