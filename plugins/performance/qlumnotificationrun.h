// A run that watches values and takes the time until they are here.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumsamplelog.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <QCoreApplication>
#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// By how much the server's clock is ahead of ours, from the round trip that leaves the least room for doubt.
struct QlumClockDifference
{
    double ahead = 0;    ///< us; below 0: behind
    double doubtful = 0; ///< us to either side: half of that round trip
};

/// Of calls that began and ended at these times of our clock, with the time that the server gave to the
/// answer between; all in us. None for no calls.
struct QlumRoundTrip
{
    double begun = 0;
    double answered = 0; ///< by the server's clock
    double ended = 0;
};
[[nodiscard]] std::optional<QlumClockDifference>
qlumClockDifference(const std::vector<QlumRoundTrip>& roundTrips);

/// One run of the delay of notifications: a sample's duration is the delay since the server's time stamp, its
/// own part that since the source's, both by the server's clock set right. Delays may be negative. Its
/// subscription is its own, not one of the monitoring's: that shares it with others and hands values over at
/// its own pace, which would be measured along.
class QlumNotificationRun : private UaClientSdk::UaSubscriptionCallback
{
    Q_DECLARE_TR_FUNCTIONS(QlumNotificationRun)
public:
    /// The services must be those of a session, else there is nothing to watch.
    QlumNotificationRun(QlumMeasurementRun run, std::shared_ptr<QlumSessionServices> services,
                        std::shared_ptr<QlumSampleLog> samples);
    ~QlumNotificationRun() override;
    QlumNotificationRun(const QlumNotificationRun&) = delete;
    QlumNotificationRun& operator=(const QlumNotificationRun&) = delete;

    /// Blocks until as many came as the plan wants, its time is over or it is cancelled.
    [[nodiscard]] QlumMeasurementRun run();
    /// Any thread.
    void cancel();

private:
    using Clock = std::chrono::steady_clock;

    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                    UaDiagnosticInfos& diagnosticInfos) override;
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

    [[nodiscard]] QlumSessionServices::Settings settings() const;
    void readClocks();
    [[nodiscard]] UaStatus watch();
    void wait();
    void conclude(const UaStatus& status);

    QlumMeasurementRun m_run;
    const std::shared_ptr<QlumSessionServices> m_services;
    const std::shared_ptr<QlumSampleLog> m_samples;
    QlumClockDifference m_difference; ///< set before values come
    Clock::time_point m_begin;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_ended;
    std::vector<bool> m_hasBegun; ///< by item: its first value is as old as it likes
    quint64 m_without = 0;        ///< values without a time stamp of the server
    bool m_isCancelled = false;
    UaStatus m_broken;
};
