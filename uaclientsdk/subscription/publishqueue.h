// Keeps the notifications of one session in order on a pool of many threads.
#pragma once

#include <uaclientsdk/calls/callbackpool.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

namespace UaClientSdk {

struct SessionContext;

/// Runs jobs one after the other, in the order in which they were added, on the shared pool. What a job
/// throws ends in the trace and does not stop those behind it. Any thread.
class PublishQueue
{
public:
    explicit PublishQueue(const SessionContext& context) : m_context(context) {}
    ~PublishQueue() { waitIdle(); }
    PublishQueue(const PublishQueue&) = delete;
    PublishQueue& operator=(const PublishQueue&) = delete;

    void add(std::unique_ptr<CallbackJob> job);
    /// Blocks until no job waits or runs, or the time is over. Not from a job.
    void waitIdle(std::chrono::milliseconds limit);
    void waitIdle(); ///< without a limit

private:
    class Drain;

    void drain();
    static void executeGuarded(CallbackJob& job);

    const SessionContext& m_context;
    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::deque<std::unique_ptr<CallbackJob>> m_jobs;
    bool m_draining = false; ///< a thread of the pool has them, or will
};

} // namespace UaClientSdk
