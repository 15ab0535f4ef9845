// Loads the data type definitions of a server beside everything else.
#pragma once

#include <uaclientsdk/connection/sessioncontext.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace UaClientSdk {

/// One thread at a time, which ends with its loads. A load is bound to the epoch that it was asked for in: it
/// ends early when the connection does. Any thread.
class DictionaryJob
{
public:
    /// load does the work and tells of its end; it blocks for service calls.
    DictionaryJob(const SessionContext& context, std::function<void()> load);
    ~DictionaryJob(); ///< waits
    DictionaryJob(const DictionaryJob&) = delete;
    DictionaryJob& operator=(const DictionaryJob&) = delete;

    /// For the present epoch, after the load that runs. Without a thread to be had, an error in the trace.
    void start();
    [[nodiscard]] bool isRunning() const;
    /// Waits for what runs or was asked for. True when nothing runs within the time.
    [[nodiscard]] bool waitFor(std::chrono::milliseconds limit) const;
    /// Forgets what was not begun yet. True when nothing runs within the time.
    [[nodiscard]] bool end(std::chrono::milliseconds limit);
    void wait(); ///< the same without a limit

private:
    void run();
    [[nodiscard]] std::optional<ConnectionEpoch> next();

    const SessionContext& m_context;
    const std::function<void()> m_load;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_ended;
    std::optional<ConnectionEpoch> m_wanted;
    bool m_running = false;
    std::thread m_thread;
};

} // namespace UaClientSdk
