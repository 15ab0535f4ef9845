#include <plugins/performance/qlumnotificationrun.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlummachineload.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
constexpr int clockReads = 15;
constexpr double publishingInterval = 100; // ms

double microseconds(OpcUa_DateTime time)
{
    return static_cast<double>(time) / 10; // of 100 ns
}
} // namespace

std::optional<QlumClockDifference> qlumClockDifference(const std::vector<QlumRoundTrip>& roundTrips)
{
    const auto shortest = std::min_element(roundTrips.begin(), roundTrips.end(),
                                           [](const QlumRoundTrip& one, const QlumRoundTrip& other) {
                                               return one.ended - one.begun < other.ended - other.begun;
                                           });
    if (shortest == roundTrips.end())
        return std::nullopt;
    const double half = (shortest->ended - shortest->begun) / 2;
    return QlumClockDifference{shortest->answered - shortest->begun - half, half};
}

QlumNotificationRun::QlumNotificationRun(QlumMeasurementRun run,
                                         std::shared_ptr<QlumSessionServices> services,
                                         std::shared_ptr<QlumSampleLog> samples)
    : m_run(std::move(run)), m_services(std::move(services)), m_samples(std::move(samples))
{
}

QlumNotificationRun::~QlumNotificationRun() = default;

void QlumNotificationRun::cancel()
{
    const std::lock_guard lock(m_mutex);
    m_isCancelled = true;
    m_ended.notify_all();
}

QlumSessionServices::Settings QlumNotificationRun::settings() const
{
    QlumSessionServices::Settings settings;
    settings.callTimeout = m_run.plan.timeout;
    settings.purpose = toUaString(tr("Measuring: %1").arg(qlumMeasuredName(m_run.plan.kind)));
    return settings;
}

void QlumNotificationRun::readClocks()
{
    UaReadValueIds nodes(1);
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    static_cast<void>(UaNodeId(OpcUaId_Server_ServerStatus_CurrentTime).copyTo(&nodes[0].NodeId));
    std::vector<QlumRoundTrip> roundTrips;
    for (int read = 0; read < clockReads; ++read) {
        QlumSessionServices::Settings call = settings();
        UaDataValues values;
        QlumRoundTrip trip;
        trip.begun = microseconds(UaDateTime::now());
        const UaStatus status = m_services->read(call, 0, OpcUa_TimestampsToReturn_Server, nodes, values);
        trip.ended = microseconds(UaDateTime::now());
        trip.answered = microseconds(call.responseTime);
        if (!status.isBad() && !call.responseTime.isNull())
            roundTrips.push_back(trip);
    }
    const auto difference = qlumClockDifference(roundTrips);
    if (!difference) {
        m_run.remarks.append(tr("The difference between the clocks is not known: it is part of the delays."));
        return;
    }
    m_difference = *difference;
    const QString text = difference->ahead < 0
                             ? tr("The server's clock is %1 ms behind, give or take %2 ms; the "
                                  "delays take that into account.")
                             : tr("The server's clock is %1 ms ahead, give or take %2 ms; the "
                                  "delays take that into account.");
    m_run.remarks.append(text.arg(QLocale().toString(std::abs(difference->ahead) / 1000, 'f', 3),
                                  QLocale().toString(difference->doubtful / 1000, 'f', 3)));
}

UaStatus QlumNotificationRun::watch()
{
    const std::shared_ptr<UaClientSdk::UaSession> session = m_services->session();
    if (!session)
        return UaStatus(OpcUa_BadNotSupported);
    QlumSessionServices::Settings call = settings();
    UaClientSdk::SubscriptionSettings wanted;
    wanted.publishingInterval = publishingInterval;
    UaClientSdk::UaSubscription* subscription = nullptr;
    UaStatus status = session->createSubscription(call, this, 0, wanted, true, &subscription);
    if (status.isBad())
        return status;
    UaMonitoredItemCreateRequests requests(static_cast<OpcUa_UInt32>(m_run.plan.nodes.size()));
    for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
        OpcUa_MonitoredItemCreateRequest& request = requests[i];
        static_cast<void>(m_run.plan.nodes[i].nodeId.copyTo(&request.ItemToMonitor.NodeId));
        request.ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
        request.RequestedParameters.ClientHandle = i;
        request.RequestedParameters.SamplingInterval = publishingInterval;
        request.RequestedParameters.QueueSize = 10;
        request.RequestedParameters.DiscardOldest = OpcUa_True;
    }
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnostics;
    status = subscription->createMonitoredItems(call, OpcUa_TimestampsToReturn_Both, requests, results,
                                                diagnostics);
    int refused = 0;
    for (const OpcUa_MonitoredItemCreateResult& result : results)
        if (OpcUa_IsBad(result.StatusCode))
            ++refused;
    if (refused > 0)
        m_run.remarks.append(tr("The server does not watch %n of the nodes.", nullptr, refused));
    const bool isNoneWatched = static_cast<OpcUa_UInt32>(refused) == requests.length();
    if (!status.isBad() && isNoneWatched && refused > 0)
        status = UaStatus(results[0].StatusCode);
    if (!status.isBad())
        wait();
    QlumSessionServices::Settings last = settings();
    static_cast<void>(session->deleteSubscription(last, &subscription));
    return status;
}

void QlumNotificationRun::wait()
{
    std::unique_lock lock(m_mutex);
    const auto isOver = [this] {
        return m_isCancelled || m_broken.isBad() ||
               (m_run.plan.calls > 0 && m_samples->size() >= m_run.plan.calls);
    };
    if (m_run.plan.seconds > 0)
        m_ended.wait_for(lock, std::chrono::seconds(m_run.plan.seconds), isOver);
    else
        m_ended.wait(lock, isOver);
}

QlumMeasurementRun QlumNotificationRun::run()
{
    m_run.begun = QDateTime::currentDateTime();
    const auto loadBefore = qlumCpuTimes();
    m_hasBegun.assign(m_run.plan.nodes.size(), false);
    readClocks();
    m_begin = Clock::now();
    const UaStatus status = watch();
    QlumRunTotals totals;
    totals.seconds = std::chrono::duration<double>(Clock::now() - m_begin).count();
    totals.values = m_samples->size();
    totals.hasStages = true; // the delay since the source's time
    m_run.figures = qlumFiguresOf(m_samples->from(0), totals);
    m_run.samples = m_samples;
    if (const QString remark = qlumLoadRemark(loadBefore, qlumCpuTimes()); !remark.isEmpty())
        m_run.remarks.append(remark);
    conclude(status);
    return std::move(m_run);
}

void QlumNotificationRun::conclude(const UaStatus& status)
{
    const std::lock_guard lock(m_mutex);
    const UaStatus worst = status.isBad() ? status : m_broken;
    if (m_without > 0)
        m_run.remarks.append(tr("%n value(s) had no time stamp of the server and are left out.", nullptr,
                                static_cast<int>(std::min<quint64>(m_without, 1'000'000'000))));
    if (worst.isBad()) {
        m_run.end = QlumRunEnd::Broken;
        m_run.remarks.append(tr("The run broke off: %1.").arg(qlumResultInWords(worst)));
    } else if (m_isCancelled) {
        m_run.end = QlumRunEnd::Cancelled;
        m_run.remarks.append(tr("Cancelled. What was measured before counts."));
    }
}

// ---- on threads of the session

void QlumNotificationRun::subscriptionStatusChanged(OpcUa_UInt32, const UaStatus& status)
{
    const std::lock_guard lock(m_mutex);
    m_broken = status.isBad() ? status : UaStatus(OpcUa_BadSubscriptionIdInvalid);
    m_ended.notify_all();
}

void QlumNotificationRun::dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications,
                                     UaDiagnosticInfos&)
{
    const double arrival = microseconds(UaDateTime::now()) + m_difference.ahead; // by the server's clock
    const std::lock_guard lock(m_mutex);
    for (const OpcUa_MonitoredItemNotification& item : notifications) {
        if (item.ClientHandle >= m_hasBegun.size())
            continue;
        if (!m_hasBegun[item.ClientHandle]) {
            m_hasBegun[item.ClientHandle] = true;
            continue;
        }
        if (item.Value.ServerTimestamp == 0) {
            ++m_without;
            continue;
        }
        QlumCallSample sample;
        sample.begun = static_cast<quint32>(
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - m_begin).count() / 10);
        sample.duration = static_cast<float>(arrival - microseconds(item.Value.ServerTimestamp));
        sample.own = item.Value.SourceTimestamp == 0
                         ? std::numeric_limits<float>::quiet_NaN()
                         : static_cast<float>(arrival - microseconds(item.Value.SourceTimestamp));
        m_samples->append(sample);
    }
    m_ended.notify_all();
}

void QlumNotificationRun::newEvents(OpcUa_UInt32, UaEventFieldLists&) {}
