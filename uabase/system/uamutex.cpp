#include <uabase/system/uamutex.h>

#include <cstdio>
#include <cstdlib>

void UaMutex::lock()
{
    if (isLockedByCurrentThread()) {
        std::fputs("UaMutex: locked twice by one thread\n", stderr);
        std::abort();
    }
    m_mutex.lock();
    m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
}

bool UaMutex::tryLock()
{
    if (isLockedByCurrentThread() || !m_mutex.try_lock())
        return false;
    m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    return true;
}

void UaMutex::unlock()
{
    m_owner.store(std::thread::id(), std::memory_order_relaxed);
    m_mutex.unlock();
}

bool UaMutex::isLockedByCurrentThread() const
{
    // only the owner can store its own id, so a stale value of another thread never compares equal
    return m_owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

UaMutexLocker::UaMutexLocker(UaMutex& mutex) : UaMutexLocker(&mutex) {}

UaMutexLocker::UaMutexLocker(UaMutex* mutex) : m_mutex(mutex)
{
    lock();
}

UaMutexLocker::~UaMutexLocker()
{
    unlock();
}

void UaMutexLocker::lock()
{
    if (m_mutex != nullptr && !m_locked) {
        m_mutex->lock();
        m_locked = true;
    }
}

void UaMutexLocker::unlock()
{
    if (m_locked) {
        m_locked = false;
        m_mutex->unlock();
    }
}
