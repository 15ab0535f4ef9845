#include <uabase/system/uasemaphore.h>

#include <algorithm>
#include <chrono>

UaSemaphore::UaSemaphore(unsigned int initial, unsigned int maximum)
    : m_permits(std::min(initial, maximum)), m_maximum(maximum)
{
}

void UaSemaphore::wait()
{
    std::unique_lock lock(m_mutex);
    m_given.wait(lock, [this] { return m_permits > 0; });
    --m_permits;
}

bool UaSemaphore::timedWait(unsigned int milliseconds)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    std::unique_lock lock(m_mutex);
    if (!m_given.wait_until(lock, deadline, [this] { return m_permits > 0; }))
        return false;
    --m_permits;
    return true;
}

bool UaSemaphore::tryWait()
{
    const std::lock_guard lock(m_mutex);
    if (m_permits == 0)
        return false;
    --m_permits;
    return true;
}

bool UaSemaphore::post(unsigned int count)
{
    const std::lock_guard lock(m_mutex);
    if (count > m_maximum - m_permits)
        return false;
    m_permits += count;
    // under the lock: the waiter may destroy the semaphore as soon as it has its permit
    m_given.notify_all();
    return true;
}
