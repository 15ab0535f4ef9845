#pragma once
#include <app/api/qlumjob.h>

#include <memory>

class QlumJobPoolPrivate;

/// Threads of one view on which its jobs run in the order in which they were added. Destruction cancels what
/// is left and joins. Used on the GUI thread.
class QlumJobPool
{
public:
    /// With so many threads, at least one.
    explicit QlumJobPool(int threads = 1);
    ~QlumJobPool();
    QlumJobPool(const QlumJobPool&) = delete;
    QlumJobPool& operator=(const QlumJobPool&) = delete;

    /// Takes the job; it is deleted on a pool thread after run(), or here when it never ran.
    void addJob(std::unique_ptr<QlumJob> job);
    /// Drops the jobs that have not begun and tells the running ones to end.
    void cancelAll();
    /// True when no job is left; false after so many milliseconds (-1: no limit).
    bool waitForDone(int milliseconds = -1);
    /// Jobs waiting or running.
    [[nodiscard]] int pending() const;

private:
    std::unique_ptr<QlumJobPoolPrivate> d;
};
