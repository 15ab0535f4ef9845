// A clock that a test turns. Those who wait for a time of it wait for the test.
#pragma once
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

/// Any thread. Milliseconds.
class TestClock
{
public:
    [[nodiscard]] std::int64_t now() const
    {
        const std::lock_guard lock(m_mutex);
        return m_now;
    }
    /// From now on waiting takes until somebody advances the clock; before, waiting itself turns it.
    void hold()
    {
        const std::lock_guard lock(m_mutex);
        m_held = true;
    }
    void advance(std::int64_t milliseconds)
    {
        const std::lock_guard lock(m_mutex);
        m_now += milliseconds;
        m_changed.notify_all();
    }
    /// All who wait give up, and so do those who come.
    void interrupt()
    {
        const std::lock_guard lock(m_mutex);
        m_interrupted = true;
        m_changed.notify_all();
    }
    /// Those who wait look whether they are stopped.
    void wake()
    {
        const std::lock_guard lock(m_mutex);
        m_changed.notify_all();
    }
    /// False when it was interrupted or stopped. The flag may be set by any thread, which wakes then.
    bool wait(std::int64_t milliseconds, const std::atomic<bool>* stopped = nullptr)
    {
        std::unique_lock lock(m_mutex);
        const std::int64_t until = m_now + milliseconds;
        if (!m_held && !m_interrupted)
            m_now = until;
        const auto isStopped = [&] { return m_interrupted || (stopped && *stopped); };
        ++m_waiting;
        m_changed.wait(lock, [&] { return isStopped() || m_now >= until; });
        --m_waiting;
        return !isStopped();
    }
    /// How many wait at the moment.
    [[nodiscard]] int waiting() const
    {
        const std::lock_guard lock(m_mutex);
        return m_waiting;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::int64_t m_now = 0;
    int m_waiting = 0;
    bool m_held = false;
    bool m_interrupted = false;
};
