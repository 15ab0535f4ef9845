// Runs one channel's callbacks in order on a thread of their own, so that a slow one holds up nobody else.
#pragma once

#include <stack/transport/checkedmutex.h>

#include <functional>
#include <thread>
#include <utility>
#include <vector>

namespace opcua {

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
    /// Any thread.
    void post(Job job);
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

    const Job m_afterJobs;
    CheckedMutex m_mutex;
    CheckedCondition m_changed;
    std::vector<Job> m_jobs;
    bool m_waiting = false;
    bool m_running = false;
    bool m_draining = false;
    bool m_retiring = false;
    std::thread m_thread;
};

} // namespace opcua
