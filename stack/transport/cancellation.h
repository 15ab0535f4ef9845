// Lets one thread end the waits of another: a flag, a condition and a descriptor that polls can watch.
#pragma once

#include <stack/core/protocol.h>
#include <stack/transport/uniquefd.h>

#include <condition_variable>
#include <mutex>

namespace opcua {

class Cancellation
{
public:
    Cancellation();

    /// Every wait ends, now and later. Any thread.
    void cancel();
    [[nodiscard]] bool cancelled() const;
    /// Readable once cancelled.
    [[nodiscard]] int descriptor() const { return m_event.get(); }

    /// Until condition holds, the deadline, or cancel; answers condition. It runs under this object's lock.
    template <typename Condition>
    bool wait(TimePoint deadline, Condition condition)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_until(lock, deadline, [&] { return m_cancelled || condition(); });
        return condition();
    }
    /// Changes what a condition looks at.
    template <typename Change>
    void change(Change change)
    {
        {
            const std::lock_guard lock(m_mutex);
            change();
        }
        m_changed.notify_all();
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_cancelled = false;
    UniqueFd m_event;
};

} // namespace opcua
