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
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumhistoryvalues.h>
#include <plugins/history/qlumtrendnodes.h>
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

UaHistoryReadValueIds idsOf(const QlumHistoryPlan& plan, const UaClientSdk::HistoryReadDataResults* points)
{
    UaHistoryReadValueIds ids(static_cast<OpcUa_UInt32>(plan.targets.size()));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i)
        if (OpcUa_IsBad(plan.targets[i].nodeId.copyTo(&ids[i].NodeId)) ||
            (points != nullptr &&
             OpcUa_IsBad((*points)[i].continuationPoint.copyTo(&ids[i].ContinuationPoint))))
            return {};
    return ids;
}

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

// On a job's thread.
UaDateTime QlumTrendReading::earliest(QlumJob& job, const QlumHistoryPlan& plan) const
{
    const QlumLog log(qlumHistoryLogSource(), plan.serverId);
    const std::shared_ptr<QlumSessionServices> session = m_services(plan.serverId);
    if (!session)
        return {};
    UaClientSdk::HistoryReadRawModifiedContext context;
    context.startTime = plan.start;
    context.endTime = plan.end;
    context.numValuesPerNode = plan.valuesPerNode;
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    UaClientSdk::HistoryReadDataResults results;
    const UaStatus status = session->historyReadRawModified(settings, context, idsOf(plan, nullptr), results);
    if (status.isBad()) {
        log.error(tr("historyReadRawModified failed with error '%1' (%2)")
                      .arg(qlumStatusText(status.statusCode()),
                           QStringLiteral("0x%1").arg(status.statusCode(), 8, 16, QLatin1Char('0'))));
        return {};
    }
    UaDateTime found;
    bool hasPoints = false;
    for (std::size_t i = 0; i < results.size(); ++i) {
        const UaClientSdk::HistoryReadDataResult& result = results[i];
        hasPoints = hasPoints || !result.continuationPoint.isEmpty();
        if (result.status.isBad()) {
            log.error(tr("HistoryReadDataResults[%1] has bad status %2")
                          .arg(i)
                          .arg(qlumStatusText(result.status.statusCode())));
        } else if (result.values.isEmpty()) {
            log.info(tr("HistoryReadDataResults[%1] contains no values").arg(i));
        } else {
            const UaDateTime time(result.values[0].SourceTimestamp);
            log.info(tr("SourceTimestamp: %1").arg(toQString(time.toString())));
            if (!time.isNull() && (found.isNull() || time < found))
                found = time;
        }
    }
    if (hasPoints && !job.isCancelled()) {
        UaClientSdk::HistoryReadDataResults none;
        context.releaseContinuationPoints = true;
        static_cast<void>(session->historyReadRawModified(settings, context, idsOf(plan, &results), none));
    }
    return found;
}

void QlumTrendReading::findStartTime(std::vector<QlumHistoryPlan> plans)
{
    if (!m_searches.empty())
        return; // one is under way, and will find the same
    m_found = UaDateTime();
    if (plans.empty())
        emit startTimeRead(m_found);
    for (const QlumHistoryPlan& plan : plans) {
        const auto work = [this, plan](QlumJob& job) {
            const UaDateTime time = earliest(job, plan);
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
