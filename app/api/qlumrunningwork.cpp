#include <app/api/qlumrunningwork.h>

#include <app/api/qlumguithread.h>
#include <app/api/qlumjob.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {
qint64 steadyMilliseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}
} // namespace

QlumRunningWork::QlumRunningWork(Clock clock) : m_clock(std::move(clock)) {}

QlumRunningWork::~QlumRunningWork() = default;

QlumRunningWork& QlumRunningWork::instance()
{
    static QlumRunningWork all(steadyMilliseconds);
    return all;
}

void QlumRunningWork::insert(std::shared_ptr<QlumJobProgress> progress)
{
    qlumAssertGuiThread();
    const bool wasIdle = isIdle();
    m_known.push_back({std::move(progress), m_clock(), std::nullopt, 0});
    if (wasIdle)
        emit begun();
}

bool QlumRunningWork::isIdle()
{
    forgetEnded();
    return m_known.empty();
}

void QlumRunningWork::forgetEnded()
{
    std::erase_if(
        m_known, [](const Known& known) { return known.progress->ended.load(); });
}

// Counts from the first progress that was seen: what comes before it is preparation, and a queue.
std::optional<qint64> QlumRunningWork::timeLeft(Known& known, qint64 now)
{
    const qint64 done = known.progress->done;
    const qint64 total = known.progress->total;
    if (!known.measuredAt) {
        if (done > 0) {
            known.measuredAt = now;
            known.measuredDone = done;
        }
        return std::nullopt;
    }
    const qint64 gone = done - known.measuredDone;
    if (gone <= 0 || done > total)
        return std::nullopt;
    const double perUnit = static_cast<double>(now - *known.measuredAt) / static_cast<double>(gone);
    return static_cast<qint64>(perUnit * static_cast<double>(total - done));
}

QList<QlumRunningWorkRow> QlumRunningWork::rows()
{
    qlumAssertGuiThread();
    forgetEnded();
    const qint64 now = m_clock();
    QList<QlumRunningWorkRow> rows;
    for (Known& known : m_known) {
        const std::optional<qint64> left = timeLeft(known, now);
        const QlumJobProgress& progress = *known.progress;
        if (now - known.since >= shownAfter)
            rows.append({progress.number, progress.text(), progress.serverId, progress.done, progress.total,
                         left, !progress.begun, progress.cancelled});
    }
    return rows;
}

void QlumRunningWork::cancel(quint64 number)
{
    for (const Known& known : m_known)
        if (known.progress->number == number)
            known.progress->cancel();
}

void QlumRunningWork::cancelServer(unsigned int serverId)
{
    for (const Known& known : m_known)
        if (known.progress->serverId == serverId)
            known.progress->cancel();
}
