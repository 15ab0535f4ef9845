// What a session's thread is woken for.
#pragma once

#include <uaclientsdk/connection/sessionmutex.h>

#include <chrono>
#include <condition_variable>

namespace UaClientSdk {

/// Guarded by the session's mutex. One thread waits; wishes that come while it does not are kept.
class ThreadSignal
{
public:
    struct Wishes
    {
        bool look = false;    ///< something has changed
        bool check = false;   ///< of the server's state, at once
        bool attempt = false; ///< to reconnect, at once
    };

    void raiseLocked(SessionLock& lock) { raiseLocked(lock, {true, false, false}); }
    void raiseLocked(SessionLock& lock, const Wishes& wishes)
    {
        lock.mutex()->assertLocked();
        m_wishes.look = true;
        m_wishes.check = m_wishes.check || wishes.check;
        m_wishes.attempt = m_wishes.attempt || wishes.attempt;
        m_raised.notify_all();
    }

    /// Until something is wished, ended says so or the time is over; hands the wishes out.
    template <typename Ended>
    [[nodiscard]] Wishes waitLocked(SessionLock& lock, std::chrono::milliseconds limit, const Ended& ended)
    {
        m_raised.wait_for(lock, limit, [&] { return m_wishes.look || ended(); });
        const Wishes taken = m_wishes;
        m_wishes = Wishes();
        return taken;
    }

private:
    Wishes m_wishes;
    std::condition_variable_any m_raised;
};

} // namespace UaClientSdk
