// Runs one channel's callbacks in order on a thread of their own, so that a slow one holds up nobody else.
#pragma once

#include <stack/transport/checkedmutex.h>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace opcua {

/// A link of the chain of jobs that wait, so that it takes no memory to let it wait.
class CallbackJob
{
public:
    virtual ~CallbackJob() = default;
    CallbackJob() = default;
    CallbackJob(const CallbackJob&) = delete;
    CallbackJob& operator=(const CallbackJob&) = delete;
    virtual void run() = 0;

private:
    friend class CallbackQueue;
    std::shared_ptr<CallbackJob> m_next;
};

/// The thread starts with the first job and ends with drain or retire; a channel without callbacks never has
/// one.
class CallbackQueue
{
public:
    using Job = std::function<void()>;

    /// afterJobs, which may be empty, runs on the thread whenever it has run all jobs that were there, and
    /// like them.
    explicit CallbackQueue(Job afterJobs = {}) : m_afterJobs(std::move(afterJobs)) {}
    ~CallbackQueue() { drain(); }
    CallbackQueue(const CallbackQueue&) = delete;
    CallbackQueue& operator=(const CallbackQueue&) = delete;

    /// Starts the thread, unless it runs, so that a system without threads left is noticed here and not in
    /// post.
    void start();
    /// Any thread. The first needs memory; the second always succeeds, once for each object: when the thread
    /// cannot be started, the job waits for the next post or for drain.
    void post(Job job);
    void post(std::shared_ptr<CallbackJob> job) noexcept;
    /// Returns when every job posted so far has run and the thread is joined. Not from a job of this queue.
    void drain();
    /// Lets the thread end as soon as it has nothing to do, without waiting for that; start and post take it
    /// back.
    void retire();
    [[nodiscard]] bool isOwnThread() const;
    /// Whether the calling thread runs jobs of any queue.
    [[nodiscard]] static bool onCallbackThread();

private:
    void startLocked();
    void run();
    void runAllLocked(std::unique_lock<CheckedMutex>& lock);

    const Job m_afterJobs;
    CheckedMutex m_mutex;
    CheckedCondition m_changed;
    std::shared_ptr<CallbackJob> m_first;
    CallbackJob* m_last = nullptr; ///< of those behind m_first
    bool m_waiting = false;
    bool m_running = false;
    bool m_draining = false;
    bool m_retiring = false;
    std::thread m_thread;
};

} // namespace opcua
