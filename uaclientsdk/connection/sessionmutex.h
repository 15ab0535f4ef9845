// The one mutex of a session, which knows its owner.
#pragma once

#include <atomic>
#include <cassert>
#include <mutex>
#include <thread>

namespace UaClientSdk {

/// Meets BasicLockable. A function that needs the mutex ends in Locked and calls assertLocked; a call into
/// the stack or a callback is preceded by assertUnlocked, so that a lock held across either shows in every
/// test.
class SessionMutex
{
public:
    void lock()
    {
        m_mutex.lock();
        m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }

    void unlock()
    {
        m_owner.store(std::thread::id(), std::memory_order_relaxed);
        m_mutex.unlock();
    }

    void assertLocked() const { assert(ownedByCaller()); }
    void assertUnlocked() const { assert(!ownedByCaller()); }

private:
    [[nodiscard]] bool ownedByCaller() const
    {
        return m_owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
    }

    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner;
};

using SessionLock = std::unique_lock<SessionMutex>;

} // namespace UaClientSdk
