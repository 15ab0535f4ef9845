#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

/// A thread as a base class: derive, implement run(), call start().
///
/// The derived class ends its run() and calls wait() in its own destructor: when the base destructor runs,
/// the members that run() uses are gone already. The base destructor joins, and ends the program with a
/// message when run() had not returned by then.
class UaThread
{
public:
    static constexpr unsigned int waitForever = 0xFFFFFFFFu;

    UaThread() = default;
    virtual ~UaThread();
    UaThread(const UaThread&) = delete;
    UaThread& operator=(const UaThread&) = delete;

    /// False when it runs already or the system has no thread to give. A thread that ended can start again.
    [[nodiscard]] bool start();
    /// True when run() has returned, or was never started; false when the time ran out or a thread waits for
    /// itself. The thread is joined when it returns true.
    bool wait(unsigned int milliseconds = waitForever);
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] bool isCurrentThread() const;

protected:
    /// The thread's work. Nothing may be thrown out of it.
    virtual void run() = 0;

private:
    void enter();

    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    std::thread m_thread;
    std::thread::id m_id;
    bool m_running = false;
};
