// A run that calls a service again and again.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumsamplelog.h>
#include <uabase/values/uastatus.h>

#include <QCoreApplication>
#include <QtGlobal>

#include <atomic>
#include <barrier>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

class QlumCallStages;
class QlumProbe;

/// Makes the calls of one run, on the thread that asks and, for calls that are outstanding at once, on others
/// of its own.
class QlumMeasurer
{
    Q_DECLARE_TR_FUNCTIONS(QlumMeasurer)
public:
    /// Tells what time it is.
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    /// Of a plan for calls, with at least one node. The samples are filled while it runs. The clock is for
    /// tests.
    QlumMeasurer(QlumMeasurementRun run, std::shared_ptr<QlumSessionServices> services,
                 std::shared_ptr<QlumSampleLog> samples, Now now = &std::chrono::steady_clock::now);
    ~QlumMeasurer();
    QlumMeasurer(const QlumMeasurer&) = delete;
    QlumMeasurer& operator=(const QlumMeasurer&) = delete;

    /// Blocks until the run has ended; never throws. With figures, and with a remark for whatever makes them
    /// less than they seem.
    [[nodiscard]] QlumMeasurementRun run();
    /// Ends the run after the calls that are under way. Any thread, also before run().
    void cancel();
    /// Calls that were measured so far. Any thread.
    [[nodiscard]] quint64 done() const { return m_samples->size(); }

private:
    using Clock = std::chrono::steady_clock;
    /// The last lane that is warm sets the clock of the run.
    struct Begin
    {
        QlumMeasurer* measurer;
        void operator()() noexcept { measurer->m_begin = measurer->m_now(); }
    };
    using Start = std::barrier<Begin>;

    bool fitSize();
    void runLane(Start& start);
    void warmUp(QlumProbe& probe, QlumSessionServices::Settings& settings);
    void measure(QlumProbe& probe, QlumSessionServices::Settings& settings, QlumCallStages& stages);
    [[nodiscard]] bool takeTurn();
    void rest();
    void breakOff(const UaStatus& status);
    [[nodiscard]] QlumSessionServices::Settings settings(const std::shared_ptr<QlumCallStages>& stages) const;
    void conclude();

    QlumMeasurementRun m_run;
    const std::shared_ptr<QlumSessionServices> m_services;
    const std::shared_ptr<QlumSampleLog> m_samples;
    const Now m_now;
    Clock::time_point m_begin;
    std::atomic<quint64> m_turns{0};
    std::atomic<quint64> m_values{0};
    std::atomic<quint64> m_badValues{0};
    std::atomic<quint64> m_bytesOut{0};
    std::atomic<quint64> m_bytesIn{0};
    std::atomic<bool> m_hasStages{false};
    std::atomic<bool> m_ends{false};
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_ended;
    bool m_isCancelled = false;
    UaStatus m_broken;
};
