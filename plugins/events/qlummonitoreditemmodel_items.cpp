// What stands at the servers for the notifiers: filters, items, and what becomes of them.
#include <plugins/events/qlummonitoreditemmodel.h>

#include <app/api/qlumjob.h>
#include <opcua/opcua_attributes.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlumnodenames.h>

#include <algorithm>
#include <atomic>
#include <utility>

UaEventFilter QlumMonitoredItemModel::getEventFilter(const QlumEventNodeMonitored& node) const
{
    UaEventFilter filter;
    qlumSelectFields(filter, node.selectClauses);
    if (!node.isFilteredHere)
        filter.where() = qlumWhereClause(node.where);
    return filter;
}

UaMonitoredItemCreateRequests
QlumMonitoredItemModel::createMonitoredItemsRequest(QlumEventNodeMonitored& node)
{
    node.clientHandle = ++m_lastHandle;
    node.isChanged = false;
    m_items.insert(node.clientHandle, {node.key, QlumFieldNames::of(node.selectClauses)});
    UaMonitoredItemCreateRequests requests(1u);
    OpcUa_MonitoredItemCreateRequest& request = requests[0];
    static_cast<void>(node.nodeId.copyTo(&request.ItemToMonitor.NodeId)); // else null, which is refused
    request.ItemToMonitor.AttributeId = OpcUa_Attributes_EventNotifier;
    request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
    request.RequestedParameters.ClientHandle = node.clientHandle;
    request.RequestedParameters.SamplingInterval = QlumEventSettings::samplingInterval.value();
    request.RequestedParameters.QueueSize = QlumEventSettings::queueSize.value();
    request.RequestedParameters.DiscardOldest =
        QlumEventSettings::discardOldest.value() ? OpcUa_True : OpcUa_False;
    static_cast<void>(getEventFilter(node).copyTo(&request.RequestedParameters.Filter));
    return requests;
}

// All that it went by in this view, in their order. What was given up is not among them.
std::vector<OpcUa_UInt32> QlumMonitoredItemModel::handlesOf(quint32 key) const
{
    std::vector<OpcUa_UInt32> handles;
    for (auto item = m_items.cbegin(); item != m_items.cend(); ++item)
        if (item->key == key)
            handles.push_back(item.key());
    std::sort(handles.begin(), handles.end());
    return handles;
}

QlumItemChanges QlumMonitoredItemModel::takeChanges(unsigned int serverId, const Wanted& isWanted)
{
    QlumItemChanges changes;
    for (int row = 0; row < rowCount(); ++row)
        if (rowAt(row).serverId == serverId && isWanted(rowAt(row)))
            change(row, [&](QlumEventNodeMonitored& node) {
                QlumItemChange& one = changes.emplace_back();
                one.formerHandles = handlesOf(node.key);
                one.request = createMonitoredItemsRequest(node);
                node.state = NodeState::Waiting;
            });
    return changes;
}

// The user may cancel the work, before its turn as well as in the midst of it: no notifier is lost by that.
void QlumMonitoredItemModel::sendItems(unsigned int serverId, const QString& text,
                                       const QlumItemChanges& changes,
                                       const std::function<void(QlumJob&)>& work)
{
    std::vector<OpcUa_UInt32> handles;
    for (const QlumItemChange& one : changes)
        handles.push_back(one.request[0].RequestedParameters.ClientHandle);
    const auto isSent = std::make_shared<std::atomic<bool>>(false);
    const std::weak_ptr<int> alive = m_alive;
    runLater(
        serverId, text,
        [work, isSent](QlumJob& job) {
            *isSent = true;
            work(job);
        },
        [this, alive, handles, isSent](QlumWorkEnd end) {
            if (end != QlumWorkEnd::Done && !alive.expired())
                giveItemsUp(handles, *isSent,
                            end == QlumWorkEnd::Cancelled ? OpcUa_BadRequestCancelledByClient
                                                          : OpcUa_BadUnexpectedError);
        });
}

void QlumMonitoredItemModel::giveItemsUp(const std::vector<OpcUa_UInt32>& handles, bool wereSent,
                                         OpcUa_StatusCode why)
{
    for (const OpcUa_UInt32 handle : handles) {
        const auto found = std::find_if(rows().begin(), rows().end(),
                                        [handle](const auto& node) { return node.clientHandle == handle; });
        if (!wereSent)
            m_items.remove(handle); // what was changed since goes on from the one before
        if (found == rows().end() || found->state != NodeState::Waiting)
            continue;
        change(static_cast<int>(found - rows().begin()), [&](QlumEventNodeMonitored& node) {
            if (!wereSent)
                node.clientHandle = node.hasItem ? handlesOf(node.key).back() : 0;
            node.isChanged = true;
            node.state = node.hasItem && !wereSent ? NodeState::Watched : NodeState::Refused;
            node.status = node.state == NodeState::Refused ? why : OpcUa_StatusCode(OpcUa_Good);
        });
    }
    emit fieldsChanged();
}

void QlumMonitoredItemModel::applyChanges()
{
    for (const unsigned int serverId : servers()) {
        const auto subscription = server(serverId).subscription;
        if (!subscription)
            continue; // the items that will be made have the new filters anyway
        const bool isReachable = isUp(serverId);
        const QlumItemChanges changes = takeChanges(serverId, [isReachable](const auto& node) {
            return node.clientHandle == 0 ? isReachable : node.isChanged || node.state == NodeState::Refused;
        });
        if (changes.empty())
            continue;
        const std::weak_ptr<int> alive = m_alive;
        const auto work = [this, alive, serverId, subscription, changes,
                           provider = m_services](QlumJob& job) {
            const bool isNew = !subscription->isOpen() && subscription->open(provider(serverId));
            const QlumItemOutcomes outcomes = subscription->apply(changes);
            job.post([this, alive, outcomes] {
                if (!alive.expired())
                    takeOutcomes(outcomes);
            });
            if (isNew)
                tellRefresh(job, serverId, subscription->refresh());
        };
        sendItems(serverId, tr("Changing the fields of events"), changes, work);
    }
    emit fieldsChanged();
}

void QlumMonitoredItemModel::takeOutcomes(const QlumItemOutcomes& outcomes)
{
    for (const QlumItemOutcome& outcome : outcomes) {
        const auto found = std::find_if(rows().begin(), rows().end(), [&](const auto& node) {
            return node.clientHandle == outcome.clientHandle;
        });
        if (found == rows().end())
            continue; // removed, or changed again
        const quint32 key = found->key;
        change(static_cast<int>(found - rows().begin()), [&](QlumEventNodeMonitored& node) {
            node.state =
                OpcUa_IsBad(outcome.status) && !outcome.isKept ? NodeState::Refused : NodeState::Watched;
            node.status = outcome.status;
            node.hasItem = node.state == NodeState::Watched;
        });
        emit filterAnswered({key, outcome.status, outcome.filterResult});
    }
}

// ---- of a server

void QlumMonitoredItemModel::createSubscription(unsigned int serverId)
{
    ServerState& state = server(serverId);
    if (!state.subscription)
        state.subscription = std::make_shared<QlumEventSubscription>(serverId, *this);
}

// Everything that is to be at the server and is not: after a drop, a reconnect, a new session.
void QlumMonitoredItemModel::createMonitoredItems(unsigned int serverId, bool isReconnected)
{
    if (!isUp(serverId) || !servers().contains(serverId))
        return;
    createSubscription(serverId);
    std::vector<std::pair<quint32, UaNodeId>> nameless;
    for (const QlumEventNodeMonitored& node : rows())
        if (node.serverId == serverId && node.name.isEmpty())
            nameless.emplace_back(node.key, node.nodeId);
    const QlumItemChanges changes =
        takeChanges(serverId, [](const auto& node) { return node.clientHandle == 0; });
    const std::weak_ptr<int> alive = m_alive;
    const QlumLog log(tr("Event Plugin"), serverId);
    const auto work = [=, this, subscription = server(serverId).subscription,
                       provider = m_services](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> services = provider(serverId);
        const bool isRestored = isReconnected && subscription->isValid();
        const bool isOpen = subscription->open(services);
        const QlumItemOutcomes outcomes = subscription->apply(changes);
        const auto names = qlumReadNames(services.get(), nameless);
        job.post([this, alive, outcomes, names] {
            if (alive.expired())
                return;
            takeOutcomes(outcomes);
            takeNames(names);
        });
        if (!isOpen)
            return;
        log.info(isRestored ? tr("Session could be restored, calling ConditionRefresh")
                            : tr("Calling ConditionRefresh to get current conditions"));
        tellRefresh(job, serverId, subscription->refresh());
    };
    sendItems(serverId, tr("Subscribing to events"), changes, work);
}
