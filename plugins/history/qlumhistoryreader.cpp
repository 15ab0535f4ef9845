#include <plugins/history/qlumhistoryreader.h>

#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumhistoryplan.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

using UaClientSdk::HistoryReadDataResult;
using UaClientSdk::HistoryReadDataResults;

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumHistoryReader)
};
} // namespace

QlumHistoryReader::QlumHistoryReader(QlumSessionServices& services, const QlumHistoryPlan& plan, Hooks hooks)
    : m_services(services), m_plan(plan), m_hooks(std::move(hooks)),
      m_log(qlumHistoryLogSource(), plan.serverId), m_portions(plan.targets.size())
{
    for (const QlumHistoryTarget& target : plan.targets) {
        m_outcomes.push_back({target.key, {}, 0, {}, 0, false});
        m_toSkip.push_back(target.resumeSkip);
    }
}

QString qlumHistoryLogSource()
{
    return QCoreApplication::translate("QlumHistoryReader", "History Plugin");
}

QString QlumHistoryReader::serviceName() const
{
    return m_plan.kind == QlumHistoryPlan::Processed ? QStringLiteral("HistoryReadProcessed")
                                                     : QStringLiteral("HistoryReadRawModified");
}

// ---- calls

UaHistoryReadValueIds QlumHistoryReader::idsOf(const std::vector<Open>& nodes) const
{
    UaHistoryReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
        const Open& open = nodes[i];
        if (OpcUa_IsBad(m_plan.targets[open.target].nodeId.copyTo(&ids[i].NodeId)) ||
            OpcUa_IsBad(open.point.copyTo(&ids[i].ContinuationPoint)))
            return {};
    }
    return ids;
}

UaNodeIdArray QlumHistoryReader::aggregatesOf(const std::vector<Open>& nodes) const
{
    UaNodeIdArray aggregates(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < aggregates.length(); ++i)
        if (OpcUa_IsBad(m_plan.targets[nodes[i].target].aggregate.copyTo(&aggregates[i])))
            return {};
    return aggregates;
}

UaStatus QlumHistoryReader::call(const std::vector<Open>& nodes, bool release,
                                 HistoryReadDataResults& results)
{
    UaClientSdk::ServiceSettings settings = m_hooks.settings();
    const UaHistoryReadValueIds ids = idsOf(nodes);
    if (ids.length() != nodes.size())
        return UaStatus(OpcUa_BadOutOfMemory);
    if (m_plan.kind == QlumHistoryPlan::Processed) {
        UaClientSdk::HistoryReadProcessedContext context;
        context.releaseContinuationPoints = release;
        context.startTime = m_plan.start;
        context.endTime = m_plan.end;
        context.processingInterval = m_plan.interval;
        context.aggregateTypes = aggregatesOf(nodes);
        context.aggregateConfiguration = m_plan.aggregateConfiguration;
        return m_services.historyReadProcessed(settings, context, ids, results);
    }
    UaClientSdk::HistoryReadRawModifiedContext context;
    context.releaseContinuationPoints = release;
    context.startTime = m_plan.start;
    context.endTime = m_plan.end;
    context.numValuesPerNode = m_plan.valuesPerNode;
    context.returnBounds = m_plan.returnBounds;
    context.isReadModified = m_plan.readModified;
    return m_services.historyReadRawModified(settings, context, ids, results);
}

std::vector<QlumHistoryOutcome> QlumHistoryReader::read()
{
    while (!m_hooks.isCancelled()) {
        std::vector<Open> nodes;
        for (const std::size_t target : m_portions.next())
            nodes.push_back({target, {}});
        if (nodes.empty() || !begin(nodes))
            break;
    }
    for (const std::size_t target : m_portions.waiting())
        if (m_outcomes[target].status.isBad())
            tellFault(target);
    return m_outcomes;
}

// False: the service failed, and would fail again.
bool QlumHistoryReader::begin(const std::vector<Open>& nodes)
{
    HistoryReadDataResults results;
    const UaStatus status = call(nodes, false, results);
    if (status.isBad()) {
        m_log.writeStatus(QlumLogLevel::Error,
                          Text::tr("%1 has bad status %2").arg(serviceName(), QStringLiteral("%1")),
                          status.statusCode());
        tellWhyRefused();
        for (const Open& node : nodes)
            m_outcomes[node.target].status = status;
        return false;
    }
    m_log.info(Text::tr("%1 succeeded").arg(serviceName()));
    continueReading(takeResults(nodes, results));
    return true;
}

void QlumHistoryReader::continueReading(std::vector<Open> open)
{
    for (int calls = 0; !open.empty(); ++calls) {
        if (m_hooks.isCancelled())
            return release(open);
        if (calls >= m_plan.maximumNextCalls) {
            m_log.write(
                QlumLogLevel::Warning,
                Text::tr("Server returned more ContinuationPoints than accepted by setting "
                         "'HistoryPlugin.MaxHistoryNextCalls'. Releasing current ContinuationPoints."));
            return release(open);
        }
        HistoryReadDataResults results;
        const UaStatus status = call(open, false, results);
        if (status.isBad()) {
            m_log.writeStatus(QlumLogLevel::Error,
                              Text::tr("%1 has bad status %2").arg(serviceName(), QStringLiteral("%1")),
                              status.statusCode());
            for (const Open& one : open) {
                m_outcomes[one.target].status = status;
                m_outcomes[one.target].hasMore = true;
                tellCount(one.target);
            }
            return;
        }
        open = takeResults(open, results);
    }
}

void QlumHistoryReader::release(const std::vector<Open>& open)
{
    HistoryReadDataResults results;
    static_cast<void>(call(open, true, results)); // a server that fails to forget them does so by itself
    for (const Open& one : open) {
        m_outcomes[one.target].hasMore = true;
        tellCount(one.target);
    }
}

// ---- answers

std::vector<QlumHistoryReader::Open> QlumHistoryReader::takeResults(const std::vector<Open>& asked,
                                                                    HistoryReadDataResults& results)
{
    std::vector<Open> open, full;
    for (std::size_t i = 0; i < asked.size() && i < results.size(); ++i) {
        const std::size_t target = asked[i].target;
        HistoryReadDataResult& result = results[i];
        m_outcomes[target].status = result.status;
        if (result.status.isBad())
            takeFault(asked[i], result.status);
        const bool takesMore = result.status.isBad() || takeValues(target, result);
        if (result.continuationPoint.isEmpty())
            tellCount(target);
        else
            (takesMore ? open : full).push_back({target, result.continuationPoint});
    }
    if (!full.empty())
        release(full);
    return open;
}

void QlumHistoryReader::takeFault(const Open& asked, const UaStatus& status)
{
    if (status.statusCode() == OpcUa_BadNoContinuationPoints && asked.point.isEmpty())
        return m_portions.refuse(asked.target); // there will be points when others have been read
    QlumHistoryOutcome& outcome = m_outcomes[asked.target];
    tellFault(asked.target);
    outcome.hasMore = outcome.count > 0; // the rest of it cannot be had this way
    if (outcome.count == 0)
        tellWhyRefused();
}

// Values of the time at which the read goes on came with the read before.
OpcUa_UInt32 QlumHistoryReader::skipped(std::size_t target, const HistoryReadDataResult& result)
{
    const QlumHistoryTarget& asked = m_plan.targets[target];
    OpcUa_UInt32 first = 0;
    while (m_toSkip[target] > 0 && first < result.values.length() &&
           result.values[first].SourceTimestamp == asked.resumeAt.value()) {
        ++first;
        --m_toSkip[target];
    }
    if (first < result.values.length())
        m_toSkip[target] = 0;
    return first;
}

bool QlumHistoryReader::takeValues(std::size_t target, const HistoryReadDataResult& result)
{
    QlumHistoryOutcome& outcome = m_outcomes[target];
    const OpcUa_UInt32 first = skipped(target, result), end = result.values.length();
    if (first < end) {
        const UaDateTime last(result.values[end - 1].SourceTimestamp);
        OpcUa_UInt32 same = end;
        while (same > first && result.values[same - 1].SourceTimestamp == last.value())
            --same;
        const quint64 before = same == first && last == outcome.last ? outcome.atLast : 0;
        const quint64 resumed = same == first && last == m_plan.targets[target].resumeAt && outcome.count == 0
                                    ? m_plan.targets[target].resumeSkip
                                    : 0;
        outcome.atLast = before + resumed + (end - same);
        outcome.last = last;
    }
    outcome.count += end - first;
    const bool takesMore = m_hooks.take(target, result, first);
    return takesMore && (m_plan.maximumValues == 0 || outcome.count < m_plan.maximumValues);
}

// The standard has no bounds of modified values.
void QlumHistoryReader::tellWhyRefused() const
{
    if (m_plan.readModified && m_plan.returnBounds)
        m_log.write(
            QlumLogLevel::Warning,
            Text::tr("Modified values have no bounds, and servers refuse to be asked for both. Switch off "
                     "one of the settings 'HistoryPlugin.ReadModified' and 'HistoryPlugin.ReturnBounds'."));
}

void QlumHistoryReader::tellFault(std::size_t target) const
{
    m_log.error(Text::tr("HistoryReadDataResults[%1] has bad status %2")
                    .arg(target)
                    .arg(qlumStatusText(m_outcomes[target].status.statusCode())));
}

void QlumHistoryReader::tellCount(std::size_t target) const
{
    const QlumHistoryOutcome& outcome = m_outcomes[target];
    const QString node = toQString(m_plan.targets[target].nodeId.toXmlString());
    if (outcome.count > 0)
        m_log.info(Text::tr("HistoryReadDataResults of node '%1' contains %2 values")
                       .arg(node, QString::number(outcome.count)));
    else if (!outcome.status.isBad())
        m_log.info(Text::tr("No history values received for node '%1'").arg(node));
}
