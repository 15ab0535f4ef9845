#include <plugins/history/qlumtrendreading.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumaggregates.h>
#include <plugins/history/qlumhistorycsv.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryportions.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumhistoryvalues.h>
#include <plugins/history/qlumtrendnodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>

#include <QFileInfo>
#include <QMap>
#include <QObject>
#include <QString>

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int sideBySide = 8; // servers that are read at a time

// Looks for the earliest value of the nodes of one server, each of which is asked for one value.
class FirstValueSearch
{
public:
    FirstValueSearch(QlumSessionServices& session, QlumJob& job, const QlumHistoryPlan& plan)
        : m_session(session), m_job(job), m_plan(plan), m_log(qlumHistoryLogSource(), plan.serverId)
    {
        m_context.startTime = plan.start;
        m_context.endTime = plan.end;
        m_context.numValuesPerNode = plan.valuesPerNode;
    }

    [[nodiscard]] UaDateTime search()
    {
        QlumHistoryPortions portions(m_plan.targets.size());
        while (!m_job.isCancelled()) {
            const std::vector<std::size_t>& nodes = portions.next();
            if (nodes.empty() || !ask(nodes, portions))
                break;
        }
        return m_found;
    }

private:
    using Points = std::vector<std::pair<std::size_t, UaByteString>>;

    [[nodiscard]] UaStatus call(const Points& nodes, UaClientSdk::HistoryReadDataResults& results)
    {
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaHistoryReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size()));
        for (OpcUa_UInt32 i = 0; i < ids.length(); ++i)
            if (OpcUa_IsBad(m_plan.targets[nodes[i].first].nodeId.copyTo(&ids[i].NodeId)) ||
                OpcUa_IsBad(nodes[i].second.copyTo(&ids[i].ContinuationPoint)))
                return UaStatus(OpcUa_BadOutOfMemory);
        return m_session.historyReadRawModified(settings, m_context, ids, results);
    }

    [[nodiscard]] bool ask(const std::vector<std::size_t>& nodes, QlumHistoryPortions& portions)
    {
        Points asked, open;
        for (const std::size_t node : nodes)
            asked.emplace_back(node, UaByteString());
        UaClientSdk::HistoryReadDataResults results;
        const UaStatus status = call(asked, results);
        if (status.isBad()) {
            m_log.error(QlumTrendReading::tr("historyReadRawModified failed with error '%1' (%2)")
                            .arg(qlumStatusText(status.statusCode()),
                                 QStringLiteral("0x%1").arg(status.statusCode(), 8, 16, QLatin1Char('0'))));
            return false;
        }
        for (std::size_t i = 0; i < asked.size() && i < results.size(); ++i) {
            if (results[i].status.statusCode() == OpcUa_BadNoContinuationPoints && asked.size() > 1)
                portions.refuse(asked[i].first);
            else
                take(asked[i].first, results[i]);
            if (!results[i].continuationPoint.isEmpty())
                open.emplace_back(asked[i].first, results[i].continuationPoint);
        }
        giveBack(open);
        return true;
    }

    void take(std::size_t node, const UaClientSdk::HistoryReadDataResult& result)
    {
        if (result.status.isBad()) {
            m_log.error(QlumTrendReading::tr("HistoryReadDataResults[%1] has bad status %2")
                            .arg(node)
                            .arg(qlumStatusText(result.status.statusCode())));
        } else if (result.values.isEmpty()) {
            m_log.info(QlumTrendReading::tr("HistoryReadDataResults[%1] contains no values").arg(node));
        } else {
            const UaDateTime time(result.values[0].SourceTimestamp);
            m_log.info(QlumTrendReading::tr("SourceTimestamp: %1").arg(toQString(time.toString())));
            if (!time.isNull() && (m_found.isNull() || time < m_found))
                m_found = time;
        }
    }

    // One value of each is all that is wanted.
    void giveBack(const Points& open)
    {
        if (open.empty() || m_job.isCancelled())
            return;
        UaClientSdk::HistoryReadDataResults none;
        m_context.releaseContinuationPoints = true;
        static_cast<void>(call(open, none));
        m_context.releaseContinuationPoints = false;
    }

    QlumSessionServices& m_session;
    QlumJob& m_job;
    const QlumHistoryPlan& m_plan;
    const QlumLog m_log;
    UaClientSdk::HistoryReadRawModifiedContext m_context;
    UaDateTime m_found;
};

} // namespace

QlumTrendReading::QlumTrendReading(QlumSessionServicesProvider services, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_pool(sideBySide)
{
}

// ---- histories

void QlumTrendReading::read(const QlumHistoryPlan& plan)
{
    const quint64 number = ++m_lastNumber;
    const auto work = [this, plan](QlumJob& job) { carryOut(job, plan); };
    const auto done = [this, plan, number](QlumWorkEnd end) {
        if (end == QlumWorkEnd::Failed)
            emit planEnded(plan, {});
        ended(number);
    };
    m_reads.emplace(number,
                    Work{m_pool.add({tr("Reading history"), plan.serverId}, work, done), plan.serverId});
}

// On a job's thread.
void QlumTrendReading::carryOut(QlumJob& job, const QlumHistoryPlan& plan)
{
    const std::shared_ptr<QlumSessionServices> session = m_services(plan.serverId);
    std::vector<QlumHistoryOutcome> outcomes;
    if (session) {
        qint64 count = 0;
        const auto take = [&](std::size_t target, const UaClientSdk::HistoryReadDataResult& result,
                              OpcUa_UInt32 first) {
            QlumHistoryBatch batch = qlumHistoryBatch(result, first, session->dataTypeDictionary());
            batch.key = plan.targets[target].key;
            count += static_cast<qint64>(batch.count);
            job.setProgress(count, 0);
            if (batch.hasUnknown)
                QlumLog(qlumHistoryLogSource(), plan.serverId)
                    .error(tr("The type of the history values of node '%1' can not be displayed")
                               .arg(toQString(plan.targets[target].nodeId.toXmlString())));
            job.post([this, batch = std::move(batch)]() mutable { emit batchRead(batch); });
            return true;
        };
        QlumHistoryReader reader(
            *session, plan,
            {[&job] { return job.isCancelled(); }, [&job] { return job.serviceSettings(); }, take});
        outcomes = reader.read();
    }
    job.post([this, plan, outcomes = std::move(outcomes)] { emit planEnded(plan, outcomes); });
}

void QlumTrendReading::ended(quint64 number)
{
    if (m_reads.erase(number) > 0 && m_reads.empty())
        emit allEnded();
}

void QlumTrendReading::cancel()
{
    if (m_reads.empty())
        return;
    for (const auto& [number, work] : std::exchange(m_reads, {}))
        m_pool.giveUp(work.ticket);
    emit allEnded();
}

void QlumTrendReading::endServer(unsigned int serverId)
{
    m_pool.endServer(serverId);
    m_files.endServer(serverId);
    const auto isOfServer = [serverId](const auto& entry) { return entry.second.serverId == serverId; };
    if (std::erase_if(m_reads, isOfServer) > 0 && m_reads.empty())
        emit allEnded();
    if (std::erase_if(m_searches, isOfServer) > 0 && m_searches.empty())
        emit startTimeRead(m_found);
}

// ---- the first value

void QlumTrendReading::findStartTime(std::vector<QlumHistoryPlan> plans)
{
    if (!m_searches.empty())
        return; // one is under way, and will find the same
    m_found = UaDateTime();
    if (plans.empty())
        emit startTimeRead(m_found);
    for (const QlumHistoryPlan& plan : plans) {
        const auto work = [this, plan](QlumJob& job) {
            const std::shared_ptr<QlumSessionServices> session = m_services(plan.serverId);
            const UaDateTime time = session ? FirstValueSearch(*session, job, plan).search() : UaDateTime();
            job.post([this, time] {
                if (!time.isNull() && (m_found.isNull() || time < m_found))
                    m_found = time;
            });
        };
        const quint64 number = ++m_lastNumber;
        const auto done = [this, number](QlumWorkEnd) { searchEnded(number); };
        m_searches.emplace(
            number,
            Work{m_pool.add({tr("Looking for the first value"), plan.serverId}, work, done), plan.serverId});
    }
}

void QlumTrendReading::searchEnded(quint64 number)
{
    if (m_searches.erase(number) > 0 && m_searches.empty())
        emit startTimeRead(m_found);
}

// ---- nodes

void QlumTrendReading::readNodes(unsigned int serverId, const std::vector<UaNodeId>& ids, bool areNew)
{
    const auto work = [this, serverId, ids, areNew](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> session = m_services(serverId);
        if (!session)
            return;
        std::vector<QlumTrendNode> nodes = QlumTrendNodesReader(*session, job).read(ids);
        job.post(
            [this, serverId, areNew, nodes = std::move(nodes)] { emit nodesRead(serverId, nodes, areNew); });
    };
    m_pool.add({tr("Looking at %n node(s)", nullptr, static_cast<int>(ids.size())), serverId}, work);
}

void QlumTrendReading::readAggregates(unsigned int serverId)
{
    const auto work = [this, serverId](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> session = m_services(serverId);
        if (!session)
            return;
        job.post([this, aggregates = qlumReadAggregates(*session, job)] { emit aggregatesRead(aggregates); });
    };
    m_pool.add({tr("Reading the list of aggregates"), serverId}, work);
}

// ---- files

void QlumTrendReading::writeFile(std::vector<QlumHistoryPlan> plans, const QMap<int, QlumHistoryName>& names,
                                 const QString& fileName)
{
    const unsigned int serverId = plans.size() == 1 ? plans.front().serverId : qlumNoServer;
    const auto work = [this, plans = std::move(plans), names, fileName](QlumJob& job) {
        const QlumHistoryFile file = qlumWriteHistory(job, m_services, plans, names, fileName);
        if (!job.isCancelled())
            job.post([this, file, fileName] { emit fileWritten(file, fileName); });
    };
    m_files.add({tr("Writing history to %1").arg(QFileInfo(fileName).fileName()), serverId}, work);
}

void QlumTrendReading::cancelFiles()
{
    m_files.cancelAll();
}
