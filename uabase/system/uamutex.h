#pragma once

#include <atomic>
#include <mutex>
#include <thread>

/// Mutual exclusion between threads. Not recursive: locking it twice on one thread is a fault of the program,
/// which ends with a message instead of hanging.
class UaMutex
{
public:
    UaMutex() = default;
    UaMutex(const UaMutex&) = delete;
    UaMutex& operator=(const UaMutex&) = delete;

    void lock();
    [[nodiscard]] bool tryLock();
    void unlock();

    /// For assertions in functions that expect the mutex to be held, or not to be.
    [[nodiscard]] bool isLockedByCurrentThread() const;

private:
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner{};
};

/// Holds a mutex for a scope; may be released and taken again in between.
class UaMutexLocker
{
public:
    explicit UaMutexLocker(UaMutex& mutex);
    /// A null mutex is allowed and locks nothing.
    explicit UaMutexLocker(UaMutex* mutex);
    ~UaMutexLocker();
    UaMutexLocker(const UaMutexLocker&) = delete;
    UaMutexLocker& operator=(const UaMutexLocker&) = delete;

    /// Both do nothing when the state is already the wanted one.
    void lock();
    void unlock();

private:
    UaMutex* m_mutex;
    bool m_locked = false;
};
