// Events that servers have kept.
#include <plugins/events/qlummonitoreditemmodel.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/values/uadatetime.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>

#include <QLocale>

#include <algorithm>
#include <utility>

// A read of history that may still be under way.
struct QlumMonitoredItemModel::HistoryRun
{
    std::vector<std::pair<unsigned int, QlumJobPool::Ticket>> tickets;
    int open = 0; // notifiers that are not read to the end
};

namespace {
// What is read of one notifier, and what its events are made of.
struct HistoryQuestion
{
    unsigned int serverId = qlumNoServer;
    UaNodeId nodeId;
    quint32 key = 0;
    QString name;
    UaEventFilter filter;
    std::shared_ptr<const QlumFieldNames> names;
    UaDateTime start;
    UaDateTime end;
};

QlumEvents eventsOf(const HistoryQuestion& question, UaHistoryEventFieldLists& lists)
{
    QlumEvents events;
    for (OpcUa_HistoryEventFieldList& list : lists) {
        QlumEvent& event = events.emplace_back();
        event.serverId = question.serverId;
        event.monitoredNode = question.key;
        event.notifier = question.name;
        event.fields = QlumEventFields(question.names, list.EventFields, list.NoOfEventFields);
    }
    return events;
}

UaClientSdk::HistoryReadEventContext contextOf(const HistoryQuestion& question)
{
    UaClientSdk::HistoryReadEventContext context;
    context.startTime = question.start;
    context.endTime = question.end;
    context.numValuesPerNode =
        static_cast<OpcUa_UInt32>(std::max(0, QlumEventSettings::historyValues.value()));
    context.selectClauses = question.filter.selectClauses();
    context.whereClause = question.filter.where().elements();
    return context;
}

UaHistoryReadValueIds nodeOf(const HistoryQuestion& question)
{
    UaHistoryReadValueIds nodes(1u);
    static_cast<void>(question.nodeId.copyTo(&nodes[0].NodeId)); // else null, which is refused
    return nodes;
}

// What came of a question.
struct HistoryOutcome
{
    qint64 count = 0;   // of events
    bool isCut = false; // by the settings
};

// Reads the notifier page by page; the status is that of the last page.
UaStatus readPages(const HistoryQuestion& question, QlumSessionServices& services, QlumJob& job,
                   const std::function<void(QlumEvents)>& take, HistoryOutcome& outcome)
{
    UaClientSdk::HistoryReadEventContext context = contextOf(question);
    const int limit = QlumEventSettings::historyNextCalls.value();
    for (int calls = 0;; ++calls) {
        const bool isOver = calls > 0 && (job.isCancelled() || calls > limit);
        context.releaseContinuationPoints = isOver;
        outcome.isCut = isOver && !job.isCancelled();
        UaClientSdk::ServiceSettings settings = job.serviceSettings();
        UaClientSdk::HistoryReadEventResults results;
        UaStatus status = services.historyReadEvent(settings, context, nodeOf(question), results);
        if (isOver || status.isBad() || results.empty())
            return isOver ? UaStatus() : status.isBad() ? status : UaStatus(OpcUa_BadUnexpectedError);
        UaClientSdk::HistoryReadEventResult& result = results.front();
        if (result.status.isBad())
            return result.status;
        outcome.count += result.events.length();
        take(eventsOf(question, result.events));
        if (result.continuationPoint.isEmpty())
            return result.status;
        context.continuationPoint = result.continuationPoint;
    }
}
} // namespace

void QlumMonitoredItemModel::stopHistory()
{
    if (const std::shared_ptr<HistoryRun> run = std::exchange(m_history, nullptr))
        for (const auto& [serverId, ticket] : run->tickets)
            m_pools->ofHistory(serverId).giveUp(ticket);
}

void QlumMonitoredItemModel::readEventHistory(const QDateTime& start, const QDateTime& end)
{
    stopHistory();
    const auto run = std::make_shared<HistoryRun>();
    m_history = run;
    run->open = rowCount();
    const std::weak_ptr<int> alive = m_alive;
    for (const QlumEventNodeMonitored& node : rows()) {
        const HistoryQuestion question{node.serverId,
                                       node.nodeId,
                                       node.key,
                                       node.name,
                                       getEventFilter(node),
                                       QlumFieldNames::of(node.selectClauses),
                                       UaDateTime(qlumUaDateTime(start)),
                                       UaDateTime(qlumUaDateTime(end))};
        const QString nodeText = toQString(node.nodeId.toFullString());
        const QString serverName = m_application.serverName(node.serverId);
        const auto take = [this, alive](QlumJob& job, QlumEvents events) {
            job.post([this, alive, events = std::move(events)] {
                if (!alive.expired() && !events.empty())
                    emit historyEvents(events);
            });
        };
        const auto read = [=, this, provider = m_services](QlumJob& job) {
            const QlumLog log(tr("Event Plugin"), question.serverId);
            const std::shared_ptr<QlumSessionServices> services = provider(question.serverId);
            HistoryOutcome outcome;
            const UaStatus status =
                services ? readPages(
                               question, *services, job,
                               [&](QlumEvents events) { take(job, std::move(events)); }, outcome)
                         : UaStatus(OpcUa_BadServerNotConnected);
            const QString result = qlumResultText(status);
            if (!status.isBad()) {
                log.info(tr("HistoryReadEvent on node %1 returned %2 events [%3]")
                             .arg(nodeText)
                             .arg(outcome.count)
                             .arg(result));
                const QString cut = tr("Only the first %1 events of %2 on %3 were read; there are more.")
                                        .arg(QLocale().toString(outcome.count), nodeText, serverName);
                if (outcome.isCut)
                    job.post([this, alive, cut] {
                        if (!alive.expired())
                            emit historyCut(cut);
                    });
                return;
            }
            log.error(tr("HistoryReadEvent on node %1 returned error [%2]").arg(nodeText, result));
            job.post([this, alive, nodeText, serverName, result] {
                if (!alive.expired())
                    emit historyFailed(
                        tr("The history of %1 on %2 could not be read.").arg(nodeText, serverName),
                        qlumStatusWords(result));
            });
        };
        const auto ended = [this, alive, run](QlumWorkEnd) {
            if (--run->open == 0 && !alive.expired() && m_history == run) {
                m_history.reset();
                emit historyEnded();
            }
        };
        run->tickets.emplace_back(
            node.serverId,
            m_pools->ofHistory(node.serverId).add({tr("Reading event history"), node.serverId}, read, ended));
    }
    if (rowCount() == 0)
        emit historyEnded();
}
