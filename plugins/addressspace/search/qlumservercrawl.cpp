#include <plugins/addressspace/search/qlumservercrawl.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>

#include <utility>

namespace {
constexpr int crawlThreads = 3; // crawls that were given up may still wait for the server
} // namespace

QlumServerCrawl::QlumServerCrawl(unsigned int serverId, QlumSessionServicesProvider services, QObject* parent)
    : QObject(parent), m_serverId(serverId), m_services(std::move(services)), m_pool(crawlThreads)
{
}

QlumServerCrawl::~QlumServerCrawl() = default;

void QlumServerCrawl::start(const UaNodeId& root, const QString& name, OpcUa_UInt32 nodeClass)
{
    forget();
    m_index = std::make_shared<QlumNodeIndex>(root, name, nodeClass);
    m_control = std::make_shared<QlumCrawlControl>();
    const auto function = [this, index = m_index, control = m_control, services = m_services,
                           serverId = m_serverId](QlumJob& job) {
        job.whenCancelled([control] { control->stop(); });
        const std::shared_ptr<QlumSessionServices> session = services(serverId);
        if (!session)
            return;
        QlumCrawl(job, *session, *index, *control, [this, &job](const QlumCrawlState& state) {
            job.post([this, state] { take(state); });
        }).run();
    };
    const QString text = tr("Finding the nodes below %1").arg(qlumCutText(qlumSingleLine(name), 60));
    m_ticket = m_pool.add({text, m_serverId}, function, [this](QlumWorkEnd end) {
        finish(end == QlumWorkEnd::Done ? m_state.phase : QlumCrawlState::Ended);
    });
    emit progressed();
}

void QlumServerCrawl::take(const QlumCrawlState& state)
{
    m_state = state;
    emit progressed();
}

void QlumServerCrawl::finish(QlumCrawlState::Phase phase)
{
    m_ticket = 0;
    m_control.reset();
    m_state.phase = phase == QlumCrawlState::Done ? QlumCrawlState::Done : QlumCrawlState::Ended;
    // one that a limit has ended would not get further another time
    m_isWhole = m_state.phase == QlumCrawlState::Done || !m_state.remark.isEmpty();
    if (m_isWhole)
        m_finishedAt = QDateTime::currentDateTime();
    const QlumLog log(tr("Find Node"), m_serverId);
    log.info(tr("%1 nodes were found by %2 calls.").arg(m_state.nodes).arg(m_state.calls));
    for (const QString& refusal : std::as_const(m_state.refusals))
        log.write(QlumLogLevel::Warning, tr("What is below a node is not known: %1").arg(refusal));
    emit ended();
}

void QlumServerCrawl::setPaused(bool paused)
{
    if (m_control)
        m_control->setPaused(paused);
}

void QlumServerCrawl::cancel()
{
    if (m_ticket == 0)
        return;
    m_pool.giveUp(m_ticket);
    finish(QlumCrawlState::Ended);
}

void QlumServerCrawl::forget()
{
    m_pool.cancelAll();
    m_ticket = 0;
    m_control.reset();
    m_index.reset();
    m_state = {};
    m_finishedAt = {};
    m_isOutdated = false;
    m_isWhole = false;
}

QlumNodeIndex::Number QlumServerCrawl::answers(const UaNodeId& root) const
{
    if (!m_index || !(m_isWhole || isRunning()))
        return QlumNodeIndex::none;
    const QlumNodeIndex::Number number = m_index->find(root);
    // while it grows nobody knows what belongs to a branch
    return number == 0 || m_isWhole ? number : QlumNodeIndex::none;
}
