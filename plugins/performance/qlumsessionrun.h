// A run that opens sessions and closes them.
#pragma once
#include <app/api/qlumjobpool.h>
#include <plugins/performance/qlummachineload.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumsamplelog.h>
#include <uabase/values/uastatus.h>

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace UaClientSdk {
class UaSession;
}

/// Opens one session after another beside that of the project, as its server would be connected, and closes
/// each. A sample is both together: everything from the look-up of the endpoint to the closed channel. GUI
/// thread; the user may be asked about trust and password.
class QlumSessionRun : public QObject
{
    Q_OBJECT
public:
    /// Hears the result once.
    using Done = std::function<void(const QlumMeasurementRun& run)>;

    /// Of a plan for sessions.
    QlumSessionRun(QlumMeasurementRun run, std::shared_ptr<QlumSampleLog> samples, Done done,
                   QObject* parent);

    /// Begins.
    void start();
    /// Ends it after the session that is being opened.
    void cancel() { m_isCancelled = true; }

private:
    using Clock = std::chrono::steady_clock;

    void open();
    void take(std::shared_ptr<UaClientSdk::UaSession> session, const UaStatus& status);
    void closed(const UaStatus& status, Clock::duration duration);
    void end();
    [[nodiscard]] bool isOver() const;

    QlumMeasurementRun m_run;
    const std::shared_ptr<QlumSampleLog> m_samples;
    Done m_done;
    Clock::time_point m_begin;
    std::optional<QlumCpuTimes> m_loadBefore;
    Clock::time_point m_opening;
    bool m_isCancelled = false;
    UaStatus m_broken;
    QlumJobPool m_pool; ///< last: its work ends first
};
