#include <plugins/performance/qlumsessionrun.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uasession.h>

#include <QDateTime>
#include <QString>
#include <QTimer>

#include <utility>

namespace {
using Microseconds = std::chrono::duration<double, std::micro>;
}

QlumSessionRun::QlumSessionRun(QlumMeasurementRun run, std::shared_ptr<QlumSampleLog> samples, Done done,
                               QObject* parent)
    : QObject(parent), m_run(std::move(run)), m_samples(std::move(samples)), m_done(std::move(done))
{
}

void QlumSessionRun::start()
{
    m_run.begun = QDateTime::currentDateTime();
    m_loadBefore = qlumCpuTimes();
    m_begin = Clock::now();
    open();
}

bool QlumSessionRun::isOver() const
{
    const QlumMeasurementPlan& plan = m_run.plan;
    return m_isCancelled || m_broken.isBad() || (plan.calls > 0 && m_samples->size() >= plan.calls) ||
           (plan.seconds > 0 && Clock::now() - m_begin >= std::chrono::seconds(plan.seconds));
}

void QlumSessionRun::open()
{
    QlumToolServices* tools = QlumToolServices::instance();
    m_opening = Clock::now();
    const auto done = [this](std::shared_ptr<UaClientSdk::UaSession> session, const UaStatus& status) {
        take(std::move(session), status);
    };
    if (!tools || !tools->sideSession(m_run.plan.serverId, {}, nullptr, this, done)) {
        m_broken = UaStatus(OpcUa_BadNotSupported);
        end();
    }
}

void QlumSessionRun::take(std::shared_ptr<UaClientSdk::UaSession> session, const UaStatus& status)
{
    if (!session) {
        // one that cannot be opened will not be a moment later: the user would be asked again and again
        m_broken = status;
        return closed(status, Clock::now() - m_opening);
    }
    m_pool.add({tr("Closing a session"), m_run.plan.serverId},
               [this, session = std::move(session), opening = m_opening](QlumJob& job) mutable {
                   UaClientSdk::ServiceSettings settings = job.serviceSettings();
                   const UaStatus closing = session->disconnect(settings, true);
                   const Clock::duration duration = Clock::now() - opening;
                   session.reset();
                   job.post([this, closing, duration] { closed(closing, duration); });
               });
}

void QlumSessionRun::closed(const UaStatus& status, Clock::duration duration)
{
    QlumCallSample sample;
    sample.begun = static_cast<quint32>(Microseconds(m_opening - m_begin).count() / 10);
    sample.duration = static_cast<float>(Microseconds(duration).count());
    sample.status = status.code();
    m_samples->append(sample);
    if (isOver())
        return end();
    QTimer::singleShot(static_cast<int>(m_run.plan.pause), this, [this] { isOver() ? end() : open(); });
}

void QlumSessionRun::end()
{
    QlumRunTotals totals;
    totals.seconds = std::chrono::duration<double>(Clock::now() - m_begin).count();
    m_run.figures = qlumFiguresOf(m_samples->from(0), totals);
    m_run.figures.totals.values = m_run.figures.calls - m_run.figures.failed();
    m_run.samples = m_samples;
    m_run.remarks.append(
        tr("Each is opened as the server of the project would be: endpoints looked up, channel "
           "opened, certificate checked, session created and activated, then closed."));
    if (const QString remark = qlumLoadRemark(m_loadBefore, qlumCpuTimes()); !remark.isEmpty())
        m_run.remarks.append(remark);
    if (m_broken.isBad()) {
        m_run.end = QlumRunEnd::Broken;
        m_run.remarks.append(tr("The run broke off: %1.").arg(qlumResultInWords(m_broken)));
    } else if (m_isCancelled) {
        m_run.end = QlumRunEnd::Cancelled;
        m_run.remarks.append(tr("Cancelled. What was measured before counts."));
    }
    if (const Done done = std::exchange(m_done, nullptr))
        done(m_run);
}
