// The threads that run the completions of asynchronous service calls.
#pragma once

#include <memory>

namespace UaClientSdk {

/// One completion. A subclass owns all that its execute needs.
class CallbackJob
{
public:
    virtual ~CallbackJob() = default;
    /// Runs once, on a thread of the pool. What is thrown out of it ends as an error in the trace.
    virtual void execute() = 0;
};

class CallbackPoolPrivate;

/// One for the process, shared by all sessions; its threads start with the jobs that need them.
///
/// A callback belongs to an application and may block for as long as a user looks at a prompt. Were the
/// threads anybody's, one such session could take them all. So each session has a share of its own: at most
/// threadsOfASession jobs of one session run at a time, further ones of it wait while those of others
/// overtake them, and there are enough threads for many sessions that block at once. Two would be enough for
/// a completion that waits for another one of its session; four leave room for the notifications beside them.
class CallbackPool
{
public:
    static constexpr unsigned int threadsOfASession = 4;
    static constexpr unsigned int maxThreads = 64; ///< sixteen sessions that block wholly

    /// The pool of the process; made when nobody has it, ended when the last one lets go of it.
    static std::shared_ptr<CallbackPool> instance();

    CallbackPool();
    ~CallbackPool(); ///< executes what still waits and joins; never on a thread of the pool
    CallbackPool(const CallbackPool&) = delete;
    CallbackPool& operator=(const CallbackPool&) = delete;

    /// Jobs of one session start in the order in which they were added. session is only compared, never used.
    /// False, and the job left to the caller, without memory or when the system gives no first thread. Any
    /// thread.
    [[nodiscard]] bool add(std::unique_ptr<CallbackJob>&& job, const void* session);
    /// Whether the calling thread runs a job of the session just now.
    [[nodiscard]] static bool runsJobOf(const void* session);

private:
    std::unique_ptr<CallbackPoolPrivate> d;
};

} // namespace UaClientSdk
