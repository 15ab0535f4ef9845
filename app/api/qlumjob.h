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

    virtual void run() = 0;

    void cancel() noexcept { m_cancelled.store(true); }
    [[nodiscard]] bool isCancelled() const noexcept { return m_cancelled.load(); }

private:
    std::atomic<bool> m_cancelled{false};
};
