#include <plugins/performance/qlummeasurer.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlumcallstages.h>
#include <plugins/performance/qlummachineload.h>
#include <plugins/performance/qlumprobe.h>

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace {
using Microseconds = std::chrono::duration<double, std::micro>;
using BegunUnits = std::chrono::duration<quint32, std::ratio<1, 100000>>;

// After which no further call would be worth anything.
bool endsRun(const UaStatus& status)
{
    switch (status.code()) {
    case OpcUa_BadConnectionClosed:
    case OpcUa_BadServerNotConnected:
    case OpcUa_BadNotConnected:
    case OpcUa_BadSecureChannelClosed:
    case OpcUa_BadSessionIdInvalid:
    case OpcUa_BadSessionClosed:
    case OpcUa_BadServiceUnsupported:
    case OpcUa_BadUserAccessDenied:
    case OpcUa_BadSubscriptionIdInvalid:
        return true;
    default:
        return false;
    }
}

bool isTooMuch(const UaStatus& status)
{
    return status.code() == OpcUa_BadTooManyOperations || status.code() == OpcUa_BadRequestTooLarge ||
           status.code() == OpcUa_BadResponseTooLarge;
}
} // namespace

QlumMeasurer::QlumMeasurer(QlumMeasurementRun run, std::shared_ptr<QlumSessionServices> services,
                           std::shared_ptr<QlumSampleLog> samples, Now now)
    : m_run(std::move(run)), m_services(std::move(services)), m_samples(std::move(samples)),
      m_now(std::move(now))
{
    m_run.plan.nodesPerCall = std::max(1u, m_run.plan.nodesPerCall);
    m_run.plan.outstanding = std::max(1u, m_run.plan.outstanding);
    if (m_run.plan.calls == 0 && m_run.plan.seconds == 0)
        m_run.plan.calls = 1;
}

QlumMeasurer::~QlumMeasurer() = default;

void QlumMeasurer::cancel()
{
    const std::lock_guard lock(m_mutex);
    m_isCancelled = true;
    m_ends = true;
    m_ended.notify_all();
}

void QlumMeasurer::breakOff(const UaStatus& status)
{
    const std::lock_guard lock(m_mutex);
    if (m_broken.isGood())
        m_broken = status;
    m_ends = true;
    m_ended.notify_all();
}

QlumSessionServices::Settings QlumMeasurer::settings(const std::shared_ptr<QlumCallStages>& stages) const
{
    QlumSessionServices::Settings settings;
    settings.callTimeout = m_run.plan.timeout;
    settings.purpose = toUaString(tr("Measuring: %1").arg(qlumMeasuredName(m_run.plan.kind)));
    settings.observer = stages;
    return settings;
}

QlumMeasurementRun QlumMeasurer::run()
{
    m_run.begun = QDateTime::currentDateTime();
    const auto loadBefore = qlumCpuTimes();
    m_begin = m_now();
    if (!m_ends && fitSize()) {
        Start start(static_cast<std::ptrdiff_t>(m_run.plan.outstanding), Begin{this});
        std::vector<std::jthread> lanes;
        for (quint32 lane = 1; lane < m_run.plan.outstanding; ++lane)
            lanes.emplace_back([this, &start] { runLane(start); });
        runLane(start);
    }
    m_run.figures.totals.seconds = std::chrono::duration<double>(m_now() - m_begin).count();
    if (const QString remark = qlumLoadRemark(loadBefore, qlumCpuTimes()); !remark.isEmpty())
        m_run.remarks.append(remark);
    conclude();
    return std::move(m_run);
}

// Calls of the size that is asked for, which the server may refuse, or the session divide.
bool QlumMeasurer::fitSize()
{
    const quint32 wanted = m_run.plan.nodesPerCall;
    for (;; m_run.plan.nodesPerCall = std::max(1u, m_run.plan.nodesPerCall / 2)) {
        const auto stages = std::make_shared<QlumCallStages>();
        QlumSessionServices::Settings call = settings(stages);
        const std::unique_ptr<QlumProbe> probe = qlumMakeProbe(m_run.plan, *m_services);
        if (!probe) {
            breakOff(UaStatus(OpcUa_BadNotSupported));
            return false;
        }
        UaStatus status = probe->prepare(call);
        static_cast<void>(stages->take());
        if (!status.isBad())
            status = probe->call(call);
        const QlumCallStages::Sums sums = stages->take();
        static_cast<void>(probe->settle(call));
        probe->finish(call);
        const quint32 services = m_run.plan.kind == QlumMeasuredKind::MonitoredItems ? 2 : 1;
        if ((isTooMuch(status) || sums.wasTooMuch || sums.services > services) && m_run.plan.nodesPerCall > 1)
            continue;
        if (endsRun(status)) {
            breakOff(status);
            return false;
        }
        if (m_run.plan.nodesPerCall < wanted)
            m_run.remarks.append(tr("The server does not take %1 nodes in a call: %2 were sent.")
                                     .arg(wanted)
                                     .arg(m_run.plan.nodesPerCall));
        return true;
    }
}

void QlumMeasurer::runLane(Start& start)
{
    const auto stages = std::make_shared<QlumCallStages>();
    QlumSessionServices::Settings call = settings(stages);
    std::unique_ptr<QlumProbe> probe;
    try {
        probe = qlumMakeProbe(m_run.plan, *m_services);
        warmUp(*probe, call);
    } catch (const std::exception&) {
        breakOff(UaStatus(OpcUa_BadOutOfMemory));
    }
    start.arrive_and_wait(); // whatever has happened: others wait
    if (!probe)
        return;
    static_cast<void>(stages->take());
    try {
        while (!m_ends && takeTurn()) {
            measure(*probe, call, *stages);
            if (m_run.plan.pause > 0)
                rest();
        }
        probe->finish(call);
    } catch (const std::exception&) {
        breakOff(UaStatus(OpcUa_BadOutOfMemory));
    }
}

void QlumMeasurer::warmUp(QlumProbe& probe, QlumSessionServices::Settings& settings)
{
    const UaStatus prepared = probe.prepare(settings);
    if (prepared.isBad())
        return breakOff(prepared);
    for (quint32 warm = 0; warm < m_run.plan.warmUp && !m_ends; ++warm) {
        const UaStatus answer = probe.call(settings);
        static_cast<void>(probe.settle(settings));
        if (endsRun(answer))
            breakOff(answer);
    }
}

bool QlumMeasurer::takeTurn()
{
    if (m_run.plan.seconds > 0 && m_now() - m_begin >= std::chrono::seconds(m_run.plan.seconds))
        return false;
    return m_run.plan.calls == 0 || m_turns.fetch_add(1) < m_run.plan.calls;
}

void QlumMeasurer::measure(QlumProbe& probe, QlumSessionServices::Settings& settings, QlumCallStages& stages)
{
    const Clock::time_point begin = m_now();
    const UaStatus status = probe.call(settings);
    const Clock::time_point end = m_now();
    const QlumCallStages::Sums sums = stages.take();

    QlumCallSample sample;
    sample.begun = std::chrono::duration_cast<BegunUnits>(begin - m_begin).count();
    const double duration = Microseconds(end - begin).count();
    sample.duration = static_cast<float>(duration);
    sample.own = static_cast<float>(std::max(0.0, duration - sums.elsewhere));
    sample.status = status.code();
    m_samples->append(sample);
    if (sums.bytesOut > 0)
        m_hasStages = true;
    m_bytesOut += sums.bytesOut;
    m_bytesIn += sums.bytesIn;
    const quint32 bad = probe.settle(settings);
    static_cast<void>(stages.take()); // what was left behind is not part of the next call
    if (status.isBad()) {
        if (endsRun(status))
            breakOff(status);
        return;
    }
    m_values += probe.size();
    m_badValues += bad;
}

void QlumMeasurer::rest()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait_for(lock, std::chrono::milliseconds(m_run.plan.pause), [this] { return m_ends.load(); });
}

void QlumMeasurer::conclude()
{
    QlumRunTotals totals = m_run.figures.totals;
    totals.values = m_values;
    totals.badValues = m_badValues;
    totals.bytesOut = m_bytesOut;
    totals.bytesIn = m_bytesIn;
    totals.hasStages = m_hasStages;
    m_run.figures = qlumFiguresOf(m_samples->from(0), totals);
    m_run.samples = m_samples;
    constexpr double fewSteps = 50;
    if (const double step = qlumClockResolution();
        m_run.figures.duration && m_run.figures.duration->median < step * fewSteps)
        m_run.remarks.append(
            tr("The clock of this machine goes in steps of %1 us: that shows in the figures.")
                .arg(QLocale().toString(step, 'f', 3)));
    if (totals.badValues > 0)
        m_run.remarks.append(tr("%n value(s) came with a bad status.", nullptr,
                                static_cast<int>(std::min<quint64>(totals.badValues, 1'000'000'000))));
    if (m_samples->lost() > 0)
        m_run.remarks.append(tr("There was no memory for all samples."));
    const std::lock_guard lock(m_mutex);
    if (m_broken.isBad()) {
        m_run.end = QlumRunEnd::Broken;
        m_run.remarks.append(m_samples->size() > 0
                                 ? tr("The run broke off: %1. What was measured before counts.")
                                       .arg(qlumResultInWords(m_broken))
                                 : tr("Nothing was measured: %1.").arg(qlumResultInWords(m_broken)));
    } else if (m_isCancelled) {
        m_run.end = QlumRunEnd::Cancelled;
        m_run.remarks.append(tr("Cancelled. What was measured before counts."));
    }
}
