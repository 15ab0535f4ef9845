#include <plugins/events/qlummonitoreditemmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/namespaces.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlumnodenames.h>
#include <uabase/values/uaqualifiedname.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QStringList>

#include <algorithm>
#include <utility>

namespace {
const QLatin1String nodesKey("MonitoredNodes");
const QLatin1String serverKey("ServerId");
const QLatin1String nameKey("Name");
const QLatin1String nodeKey("NodeId");
const QLatin1String clausesKey("SelectClause");
const QLatin1String typesKey("EventTypes");
const QLatin1String whereKey("WhereClause");
const QLatin1String filteredKey("FilteredHere");
constexpr int maximumStoredNodes = 10000; // of a file that somebody has changed

bool remapPath(BrowsePathList& path, const monitoring::NamespaceMap& map)
{
    bool isThere = true;
    for (UaQualifiedName& name : path.names()) {
        OpcUa_UInt16 index = name.namespaceIndex();
        isThere = monitoring::remapIndex(index, map) && isThere;
        name.setNamespaceIndex(index);
    }
    return isThere;
}
} // namespace

QlumMonitoredItemModel::QlumMonitoredItemModel(QlumApplicationInterface& application,
                                               std::shared_ptr<QlumEventPools> pools,
                                               QlumSessionServicesProvider services, QObject* parent)
    : QlumTableModel({tr("Name"), tr("Server"), tr("NodeId"), tr("State")}, parent),
      m_application(application), m_pools(std::move(pools)), m_services(std::move(services))
{
    m_drainTimer.setSingleShot(true);
    m_drainTimer.setInterval(0);
    connect(&m_drainTimer, &QTimer::timeout, this, &QlumMonitoredItemModel::sltDrain);
}

// What is at the servers is deleted by jobs, so that nobody waits for a server that does not answer.
QlumMonitoredItemModel::~QlumMonitoredItemModel()
{
    m_alive.reset();
    for (auto& [serverId, server] : m_servers)
        if (server.subscription) {
            server.subscription->detach();
            m_pools->of(serverId).add({QString(), serverId},
                                      [kept = std::move(server.subscription)](QlumJob&) { kept->close(); });
        }
}

void QlumMonitoredItemModel::runLater(unsigned int serverId, const QString& text,
                                      std::function<void(QlumJob&)> work,
                                      std::function<void(QlumWorkEnd)> ended)
{
    m_pools->of(serverId).add({text, serverId}, std::move(work), std::move(ended));
}

void QlumMonitoredItemModel::call(
    unsigned int serverId, const QString& text,
    const std::function<std::function<void()>(QlumSessionServices* services)>& work)
{
    const std::weak_ptr<int> alive = m_alive;
    runLater(serverId, text, [=, provider = m_services](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> services = provider(serverId);
        const std::function<void()> then = work(services.get());
        job.post([alive, then] {
            if (then && !alive.expired())
                then();
        });
    });
}

// ---- notifiers

QVariant QlumMonitoredItemModel::cell(const QlumEventNodeMonitored& node, int column, int role) const
{
    const bool isOffline = !isUp(node.serverId);
    if (column == StateText && (role == Qt::DecorationRole || role == Qt::ForegroundRole)) {
        if (node.state == NodeState::Refused)
            return qlumStatusCell(QlumStatusLevel::Bad, role);
        return qlumStatusCell(isOffline || node.state == NodeState::Waiting ? QlumStatusLevel::Inactive
                                                                            : QlumStatusLevel::Good,
                              role);
    }
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(cell(node, column, Qt::DisplayRole).toString());
    if (role != Qt::DisplayRole)
        return {};
    switch (column) {
    case Name:
        return node.name.isEmpty() ? toQString(node.nodeId.toXmlString()) : node.name;
    case Server:
        return m_application.serverName(node.serverId);
    case NodeId:
        return toQString(node.nodeId.toXmlString());
    default:
        break;
    }
    if (isOffline)
        return tr("Waiting for the connection");
    if (node.state == NodeState::Refused && node.status == OpcUa_BadRequestCancelledByClient)
        return tr("Cancelled; \"Apply\" asks the server again");
    if (node.state == NodeState::Refused)
        return tr("Refused: %1").arg(qlumStatusWords(qlumStatusText(node.status)));
    if (node.state == NodeState::Waiting)
        return tr("Waiting for the server");
    if (OpcUa_IsBad(node.status))
        return tr("Watched as before; the change was refused: %1")
            .arg(qlumStatusWords(qlumStatusText(node.status)));
    return node.isChanged ? tr("Watched, changes not applied yet") : tr("Watched");
}

void QlumMonitoredItemModel::addNodes(unsigned int serverId, const std::vector<Wish>& wishes)
{
    std::deque<QlumEventNodeMonitored> added;
    for (const Wish& wish : wishes) {
        const auto isSame = [&](const QlumEventNodeMonitored& one) {
            return one.serverId == serverId && one.nodeId == wish.nodeId;
        };
        if (wish.nodeId.isNull() || std::any_of(rows().begin(), rows().end(), isSame) ||
            std::any_of(added.begin(), added.end(), isSame))
            continue;
        QlumEventNodeMonitored& node = added.emplace_back();
        node.serverId = serverId;
        node.nodeId = wish.nodeId;
        node.name = qlumSingleLine(wish.name);
        node.selectClauses = qlumStandardClauses();
        for (const QlumSelectClause& clause : node.selectClauses)
            if (std::find(node.eventTypes.begin(), node.eventTypes.end(), clause.eventType) ==
                node.eventTypes.end())
                node.eventTypes.push_back(clause.eventType);
        node.key = ++m_lastKey;
    }
    if (added.empty())
        return;
    append(std::move(added));
    emit fieldsChanged();
    createMonitoredItems(serverId, false);
}

void QlumMonitoredItemModel::removeNodes(QVector<int> rows)
{
    std::sort(rows.begin(), rows.end(), std::greater<>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::map<unsigned int, std::vector<OpcUa_UInt32>> handles;
    std::vector<quint32> keys;
    for (const int row : rows) {
        if (row < 0 || row >= rowCount())
            continue;
        const QlumEventNodeMonitored& node = rowAt(row);
        keys.push_back(node.key);
        const std::vector<OpcUa_UInt32> former = handlesOf(node.key);
        handles[node.serverId].insert(handles[node.serverId].end(), former.begin(), former.end());
        remove(row, 1);
    }
    for (auto item = m_items.begin(); item != m_items.end();)
        item = std::find(keys.begin(), keys.end(), item->key) != keys.end() ? m_items.erase(item) : ++item;
    for (const auto& [serverId, gone] : handles)
        if (const auto subscription = server(serverId).subscription)
            runLater(serverId, tr("Removing event notifiers"),
                     [subscription, gone = gone](QlumJob&) { subscription->removeItems(gone); });
    for (const quint32 key : keys)
        emit nodeRemoved(key);
    emit fieldsChanged();
}

int QlumMonitoredItemModel::rowOf(quint32 key) const
{
    for (int row = 0; row < rowCount(); ++row)
        if (rowAt(row).key == key)
            return row;
    return -1;
}

const QlumEventNodeMonitored* QlumMonitoredItemModel::node(quint32 key) const
{
    const int row = rowOf(key);
    return row >= 0 ? &rowAt(row) : nullptr;
}

QSet<unsigned int> QlumMonitoredItemModel::servers() const
{
    QSet<unsigned int> ids;
    for (const QlumEventNodeMonitored& node : rows())
        ids.insert(node.serverId);
    return ids;
}

void QlumMonitoredItemModel::setSelectClauses(quint32 key, const QlumSelectClauses& clauses,
                                              const std::vector<UaNodeId>& eventTypes)
{
    const int row = rowOf(key);
    if (row < 0 || rowAt(row).selectClauses == clauses)
        return;
    change(row, [&](QlumEventNodeMonitored& node) {
        node.selectClauses = clauses;
        node.eventTypes = eventTypes;
        node.isChanged = true;
    });
}

void QlumMonitoredItemModel::setWhere(quint32 key, const QlumEventConditions& where, bool isFilteredHere)
{
    const int row = rowOf(key);
    if (row < 0 || (rowAt(row).where == where && rowAt(row).isFilteredHere == isFilteredHere))
        return;
    change(row, [&](QlumEventNodeMonitored& node) {
        node.where = where;
        node.isFilteredHere = isFilteredHere;
        node.isChanged = true;
    });
}

bool QlumMonitoredItemModel::hasChanges() const
{
    return std::any_of(
        rows().begin(), rows().end(),
        [](const QlumEventNodeMonitored& node) {
            return node.isChanged || node.state == NodeState::Refused;
        });
}

QStringList QlumMonitoredItemModel::missingFields() const
{
    QStringList missing;
    for (const QString& name : qlumNeededFields())
        for (const QlumEventNodeMonitored& node : rows())
            if (!missing.contains(name) &&
                std::none_of(node.selectClauses.begin(), node.selectClauses.end(),
                             [&](const auto& clause) { return clause.path.fieldName() == name; }))
                missing.append(name);
    return missing;
}

// ---- project

void QlumMonitoredItemModel::save(QSettings& settings) const
{
    settings.beginWriteArray(nodesKey, rowCount());
    for (int row = 0; row < rowCount(); ++row) {
        const QlumEventNodeMonitored& node = rowAt(row);
        QStringList clauses;
        for (const QlumSelectClause& clause : node.selectClauses)
            clauses.append(qlumStoredClause(clause));
        QStringList types;
        for (const UaNodeId& type : node.eventTypes)
            types.append(toQString(type.toXmlString()));
        settings.setArrayIndex(row);
        settings.setValue(serverKey, node.serverId);
        settings.setValue(nameKey, node.name);
        settings.setValue(nodeKey, toQString(node.nodeId.toXmlString()));
        settings.setValue(clausesKey, clauses);
        settings.setValue(typesKey, types);
        if (!node.where.empty()) {
            settings.setValue(whereKey, qlumStoredConditions(node.where));
            settings.setValue(filteredKey, node.isFilteredHere);
        }
    }
    settings.endArray();
}

void QlumMonitoredItemModel::load(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    std::deque<QlumEventNodeMonitored> loaded;
    const int count = std::min(settings.beginReadArray(nodesKey), maximumStoredNodes);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const auto id = serverIdMap.constFind(settings.value(serverKey, -1).toInt());
        QlumEventNodeMonitored node;
        node.nodeId = UaNodeId::fromString(settings.value(nodeKey).toString().toStdString());
        if (id == serverIdMap.constEnd() || node.nodeId.isNull())
            continue; // of a server that is not in the project any more
        node.serverId = static_cast<unsigned int>(id.value());
        node.name = qlumSingleLine(settings.value(nameKey).toString());
        if (!settings.contains(clausesKey)) // written by hand
            node.selectClauses = qlumStandardClauses();
        for (const QString& line : settings.value(clausesKey).toStringList())
            if (QlumSelectClause clause; qlumReadClause(line, clause))
                node.selectClauses.push_back(clause);
        for (const QString& text : settings.value(typesKey).toStringList())
            if (const UaNodeId type = UaNodeId::fromString(text.toStdString()); !type.isNull())
                node.eventTypes.push_back(type);
        node.where = qlumReadConditions(settings.value(whereKey).toStringList());
        node.isFilteredHere = settings.value(filteredKey, false).toBool();
        node.key = ++m_lastKey;
        loaded.push_back(std::move(node));
    }
    settings.endArray();
    append(std::move(loaded));
    emit fieldsChanged();
    for (const unsigned int id : servers())
        createMonitoredItems(id, false);
}

// ---- servers

bool QlumMonitoredItemModel::isUp(unsigned int serverId) const
{
    if (const auto found = m_servers.find(serverId); found != m_servers.end() && found->second.isTold)
        return found->second.status == QlumConnectionStatus::Connected;
    const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
    return services && services->isConnected();
}

QlumMonitoredItemModel::ServerState& QlumMonitoredItemModel::server(unsigned int serverId)
{
    return m_servers[serverId];
}

// The notifiers of a removed server are kept in no project.
void QlumMonitoredItemModel::sessionRemoved(unsigned int serverId)
{
    if (const auto found = m_servers.find(serverId); found != m_servers.end()) {
        if (found->second.subscription)
            found->second.subscription->detach();
        m_servers.erase(found);
    }
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_inbox, [serverId](const Portion& portion) { return portion.serverId == serverId; });
    }
    QVector<int> gone;
    for (int row = 0; row < rowCount(); ++row)
        if (rowAt(row).serverId == serverId)
            gone.append(row);
    removeNodes(gone);
    m_servers.erase(serverId);
}

// Ids and names of the old table would be other ones now.
void QlumMonitoredItemModel::follow(unsigned int serverId, const NamespaceMap& namespaces)
{
    if (namespaces.isEmpty())
        return;
    const monitoring::NamespaceMap map = namespaces.toStdMap();
    const QlumLog log(tr("Event Plugin"), serverId);
    QVector<int> gone;
    for (int row = 0; row < rowCount(); ++row) {
        if (rowAt(row).serverId != serverId)
            continue;
        UaNodeId nodeId = rowAt(row).nodeId;
        if (!monitoring::remapNodeId(nodeId, map)) {
            log.write(QlumLogLevel::Warning,
                      tr("Can't find namespace of node %1 in changed namespace table, removing it from view")
                          .arg(toQString(rowAt(row).nodeId.toFullString())));
            gone.append(row);
            continue;
        }
        change(row, [&](QlumEventNodeMonitored& node) {
            node.nodeId = nodeId;
            std::erase_if(node.selectClauses, [&](QlumSelectClause& clause) {
                const bool isType = monitoring::remapNodeId(clause.eventType, map);
                return !remapPath(clause.path, map) || !isType;
            });
            std::erase_if(node.eventTypes,
                          [&](UaNodeId& type) { return !monitoring::remapNodeId(type, map); });
            qlumRemap(node.where, map);
            node.clientHandle = 0;
            node.hasItem = false;
            node.state = NodeState::Waiting;
        });
    }
    removeNodes(gone);
    resetItems(serverId);
    emit fieldsChanged();
}

// Items of ids that are others now; all are made anew.
void QlumMonitoredItemModel::resetItems(unsigned int serverId)
{
    const auto subscription = server(serverId).subscription;
    if (subscription)
        runLater(serverId, QString(), [subscription](QlumJob&) { subscription->close(); });
}

void QlumMonitoredItemModel::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                  const NamespaceMap& namespaces)
{
    ServerState& state = server(serverId);
    const bool wasUp = isUp(serverId);
    state.status = status;
    state.isTold = true;
    follow(serverId, namespaces);
    if (isUp(serverId) && (!wasUp || !namespaces.isEmpty() || !state.subscription)) {
        state.losses = 0;
        createMonitoredItems(serverId, true);
    }
    tellColumnChanged(StateText);
}

void QlumMonitoredItemModel::takeNames(const std::vector<std::pair<quint32, QString>>& names)
{
    for (const auto& [key, name] : names)
        if (const int row = rowOf(key); row >= 0 && rowAt(row).name.isEmpty())
            change(
                row, [&name = name](QlumEventNodeMonitored& node) { node.name = name; });
}

void QlumMonitoredItemModel::callRefresh(unsigned int serverId)
{
    const QlumLog log(tr("Event Plugin"), serverId);
    const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
    const auto subscription = server(serverId).subscription;
    if (!services || !services->isConnected())
        log.write(QlumLogLevel::Warning,
                  tr("No session exists for server %1, skip calling refresh.").arg(serverId));
    else if (!subscription || !subscription->isOpen())
        log.write(QlumLogLevel::Warning,
                  tr("No subscription exists for server %1, skip calling refresh.").arg(serverId));
    else
        runLater(serverId, tr("Refreshing conditions"), [this, serverId, subscription](QlumJob& job) {
            tellRefresh(job, serverId, subscription->refresh());
        });
}

// On a job's thread. One that is under way already tells the same.
void QlumMonitoredItemModel::tellRefresh(QlumJob& job, unsigned int serverId, const UaStatus& status)
{
    const std::weak_ptr<int> alive = m_alive;
    if (status.statusCode() != OpcUa_BadRefreshInProgress)
        job.post([this, alive, serverId, status] {
            if (!alive.expired())
                emit refreshAnswered(serverId, status);
        });
}
