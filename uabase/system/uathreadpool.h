#pragma once

#include <memory>

class UaThreadPoolPrivate;

/// A piece of work for a pool.
class UaThreadPoolJob
{
public:
    virtual ~UaThreadPoolJob() = default;
    /// Runs once, on a pool thread; nothing may be thrown out of it. The pool deletes the job afterwards.
    virtual void execute() = 0;
};

/// A fixed number of threads that execute jobs in the order in which they were added.
class UaThreadPool
{
public:
    enum class Pending {
        Execute, ///< jobs that still wait are executed
        Discard  ///< jobs that still wait are deleted unexecuted; those that run are waited for
    };

    /// Starts the threads; at least one.
    explicit UaThreadPool(unsigned int threads);
    /// Shuts down with Pending::Execute. Never on a thread of the pool.
    ~UaThreadPool();
    UaThreadPool(const UaThreadPool&) = delete;
    UaThreadPool& operator=(const UaThreadPool&) = delete;

    /// Takes the job in any case. False, and the job deleted unexecuted, after shutdown or when no thread
    /// could be started. Any thread, those of the pool too.
    bool addJob(std::unique_ptr<UaThreadPoolJob> job);
    /// Blocks until no job waits or runs, or the time is over (false). Never on a thread of the pool.
    [[nodiscard]] bool waitIdle(unsigned int milliseconds);
    /// Refuses further jobs, ends and joins the threads. A second call does nothing.
    void shutdown(Pending pending = Pending::Execute);

    [[nodiscard]] unsigned int threadCount() const;
    /// Jobs that wait, without those that run.
    [[nodiscard]] unsigned int pendingJobs() const;

private:
    std::unique_ptr<UaThreadPoolPrivate> d;
};
