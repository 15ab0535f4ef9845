// A mutex that knows its owner wherever asserts are on.
#pragma once

#include <atomic>
#include <cassert>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace opcua {

#ifdef NDEBUG

using CheckedMutex = std::mutex;
using CheckedCondition = std::condition_variable;

#else

/// Meets BasicLockable. A function that needs the mutex ends in Locked and calls assertLocked first.
class CheckedMutex
{
public:
    void lock()
    {
        m_mutex.lock();
        m_owner = std::this_thread::get_id();
    }
    void unlock()
    {
        m_owner = std::thread::id();
        m_mutex.unlock();
    }
    [[nodiscard]] bool isOwnedByCaller() const { return m_owner == std::this_thread::get_id(); }

private:
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner;
};

using CheckedCondition = std::condition_variable_any;

#endif

/// That the calling thread holds the mutex; costs nothing in a release build.
inline void assertLocked([[maybe_unused]] const CheckedMutex& mutex)
{
#ifndef NDEBUG
    assert(mutex.isOwnedByCaller());
#endif
}

} // namespace opcua
