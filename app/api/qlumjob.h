#pragma once
#include <atomic>

/// A piece of work for a QlumJobPool. run() is on a pool thread, touches no widget and hands results over by
/// queued signals. A long job asks isCancelled() between its steps.
class QlumJob
{
public:
    QlumJob() = default;
    virtual ~QlumJob() = default;
    QlumJob(const QlumJob&) = delete;
    QlumJob& operator=(const QlumJob&) = delete;

    /// Does the work.
    virtual void run() = 0;

    /// Asks the job to end early. Any thread.
    void cancel() noexcept { m_cancelled.store(true); }
    /// Whether the job was asked to end. Any thread.
    [[nodiscard]] bool isCancelled() const noexcept { return m_cancelled.load(); }

private:
    std::atomic<bool> m_cancelled{false};
};
