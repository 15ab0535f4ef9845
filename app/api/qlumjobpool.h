#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <utility>

class QlumJobPoolPrivate;

/// What a piece of work is, for the user and for the server's end.
struct QlumWork
{
    QString text; ///< "Reading history"; without one it is not in the list of running work
    unsigned int serverId = qlumNoServer; ///< whose services it calls
};

/// How a piece of work has ended.
enum class QlumWorkEnd {
    Done,
    Cancelled, ///< by the user
    Failed     ///< by an exception, which is in the log
};

/// Threads of one view on which its jobs run in the order in which they were added. Destruction gives up what
/// is left and joins. Used on the thread on which it was made, the GUI thread as a rule.
class QlumJobPool
{
public:
    /// Number of a piece of work in its pool, never 0.
    using Ticket = quint64;
    /// The work itself; the job is its way to tell and to hand over.
    using Function = std::function<void(QlumJob& job)>;
    /// Hears how the work has ended.
    using Ended = std::function<void(QlumWorkEnd end)>;

    /// With so many threads, at least one.
    explicit QlumJobPool(int threads = 1);
    ~QlumJobPool();
    QlumJobPool(const QlumJobPool&) = delete;
    QlumJobPool& operator=(const QlumJobPool&) = delete;

    /// Runs the function on a pool thread; it hands its results over by QlumJob::post. Then ended is called,
    /// on the own thread and after all posts, unless the work was given up: neither comes after that.
    Ticket add(const QlumWork& work, Function function, Ended ended = nullptr);
    /// The same for a job, which is deleted on a pool thread after run(), or here when it never ran.
    Ticket add(const QlumWork& work, std::unique_ptr<QlumJob> job, Ended ended = nullptr);

    /// Gives one piece of work up: it is dropped or told to end, and nothing of it arrives any more.
    void giveUp(Ticket ticket);
    /// Gives up everything.
    void cancelAll();
    /// Gives up what calls the services of a server that goes away, and waits until none of it runs.
    void endServer(unsigned int serverId);
    /// True when no job is left; false after so many milliseconds (-1: no limit).
    bool waitForDone(int milliseconds = -1);
    /// Jobs waiting or running.
    [[nodiscard]] int pending() const;

private:
    std::unique_ptr<QlumJobPoolPrivate> d;
};
