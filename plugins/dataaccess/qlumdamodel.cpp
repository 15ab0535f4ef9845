// The rows of a data access view, and what comes for them.
#include <plugins/dataaccess/qlumdamodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdaverdict.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <watching/qlumdadescriber.h>

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

QlumDaModel::QlumDaModel(QlumApplicationInterface& application, QObject* parent, Clock clock)
    : QlumTableModel({tr("#"),           tr("Server"),         tr("Node Id"),          tr("Display Name"),
                      tr("Browse Path"), tr("Value"),          tr("New Value"),        tr("Data Type"),
                      tr("Unit"),        tr("Source Time"),    tr("Server Time"),      tr("Received"),
                      tr("Status"),      tr("Complete?"),      tr("Changes"),          tr("Minimum"),
                      tr("Maximum"),     tr("Sampling Asked"), tr("Sampling Revised"), tr("Queue"),
                      tr("Age")},
                     parent),
      m_application(application), m_clock(clock ? std::move(clock) : [] { return UaDateTime::now().value(); })
{
    const auto forget = [this] { m_isSummaryOld = true; };
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(this, change, this, forget);
    connect(this, &QAbstractItemModel::modelReset, this, forget);
    connect(this, &QAbstractItemModel::dataChanged, this, forget);
}

// ---- rows

std::vector<quint32> QlumDaModel::add(std::vector<QlumDataItem> items)
{
    std::vector<quint32> keys;
    keys.reserve(items.size());
    for (QlumDataItem& item : items) {
        item.key = ++m_lastKey;
        item.namespaceUri = shared(item.namespaceUri);
        item.unit = shared(item.unit);
        item.dataTypeName = shared(item.dataTypeName);
        keys.push_back(item.key);
    }
    insert(rowCount(), std::move(items));
    return keys;
}

std::vector<quint32> QlumDaModel::resolve(std::vector<QlumDataItem> items)
{
    std::vector<quint32> resolved;
    int first = rowCount(), last = -1;
    for (QlumDataItem& item : items) {
        const int place = rowOf(item.key);
        if (place < 0 || rowAt(place).state != QlumDataState::Unresolved)
            continue; // the user was faster
        first = std::min(first, place);
        last = std::max(last, place);
        QlumDataItem& row = quietRow(place);
        row.problem = std::move(item.problem);
        if (item.state == QlumDataState::Unresolved)
            continue;
        row.state = item.state;
        row.nodeId = std::move(item.nodeId);
        row.namespaceUri = shared(item.namespaceUri);
        row.displayName = std::move(item.displayName);
        resolved.push_back(row.key);
    }
    if (last >= 0)
        emit dataChanged(index(first, 0), index(last, ColumnCount - 1));
    return resolved;
}

void QlumDaModel::removeKeys(const std::vector<quint32>& keys)
{
    std::vector<int> gone;
    for (const quint32 key : keys)
        if (const int row = rowOf(key); row >= 0)
            gone.push_back(row);
    std::sort(gone.begin(), gone.end());
    gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
    if (gone.size() == static_cast<std::size_t>(rowCount()) && !gone.empty()) {
        reset();
        return;
    }
    for (std::size_t end = gone.size(); end > 0;) { // each run at once, from behind
        std::size_t begin = end - 1;
        while (begin > 0 && gone[begin - 1] == gone[begin] - 1)
            --begin;
        remove(gone[begin], static_cast<int>(end - begin));
        end = begin;
    }
}

void QlumDaModel::moveKeys(const std::vector<quint32>& keys, int places)
{
    std::vector<int> moved;
    for (const quint32 key : keys)
        if (const int row = rowOf(key); row >= 0)
            moved.push_back(row);
    std::sort(moved.begin(), moved.end());
    const bool isUp = places < 0;
    if (!isUp)
        std::reverse(moved.begin(), moved.end());
    int taken = isUp ? 0 : rowCount() - 1; // the place that the next one may have at most
    for (const int row : moved) {
        const int wanted = isUp ? std::max(taken, row + places) : std::min(taken, row + places);
        move(row, 1, isUp ? wanted : wanted + 1);
        taken = isUp ? wanted + 1 : wanted - 1;
    }
    tellColumnChanged(Number);
}

void QlumDaModel::indexRows() const
{
    m_rowOf.assign(m_lastKey + 1u, -1);
    m_indexed = 0;
    for (const QlumDataItem& item : rows())
        m_rowOf[item.key] = m_indexed++;
}

// The index is made anew when it is seen to be old: views ask while rows come and go, too.
int QlumDaModel::rowOf(quint32 key) const
{
    const auto isOld = [this, key] {
        const int row = key < m_rowOf.size() ? m_rowOf[key] : -1;
        return m_indexed != rowCount() || key >= m_rowOf.size() || (row >= 0 && rowAt(row).key != key);
    };
    if (key == 0 || key > m_lastKey)
        return -1;
    if (isOld())
        indexRows();
    return m_rowOf[key];
}

const QlumDataItem* QlumDaModel::find(quint32 key) const
{
    const int row = rowOf(key);
    return row < 0 ? nullptr : &rowAt(row);
}

QString QlumDaModel::shared(const QString& text)
{
    return text.isEmpty() ? QString() : *m_texts.insert(text);
}

void QlumDaModel::describe(const std::unordered_map<quint32, const QlumDaDescription*>& byKey)
{
    changeRows([&](QlumDataItem& item) {
        const auto found = byKey.find(item.key);
        if (found == byKey.end())
            return false;
        const QlumDaDescription& said = *found->second;
        if (!said.displayName.isEmpty())
            item.displayName = said.displayName;
        item.browsePath = said.browsePath;
        item.dataType = said.dataType;
        item.dataTypeName = shared(said.dataTypeName);
        item.unit = shared(said.unit);
        item.isWritable = said.isWritable;
        return true;
    });
}

// The index that a namespace has now is where its URI stands in the server's table.
std::vector<quint32> QlumDaModel::placeNamespaces(unsigned int serverId)
{
    const QStringList table = m_application.namespaceTable(serverId);
    std::vector<quint32> changed;
    if (table.isEmpty())
        return changed;
    changeRows([&](QlumDataItem& item) {
        if (item.serverId != serverId || item.nodeId.isNull())
            return false;
        const OpcUa_UInt16 before = item.nodeId.namespaceIndex();
        if (item.namespaceUri.isEmpty() && item.state != QlumDataState::NamespaceGone) {
            if (before < table.size())
                item.namespaceUri = shared(table.at(before));
            return false;
        }
        const int place = table.indexOf(item.namespaceUri);
        const bool wasGone = item.state == QlumDataState::NamespaceGone;
        if (place < 0 ? wasGone : !wasGone && place == before)
            return false;
        if (place >= 0)
            item.nodeId.setNamespaceIndex(static_cast<OpcUa_UInt16>(place));
        item.state = place < 0 ? QlumDataState::NamespaceGone : wasGone ? QlumDataState::Waiting : item.state;
        changed.push_back(item.key);
        return true;
    });
    return changed;
}

// ---- settings and servers

void QlumDaModel::setViewSettings(const QlumDataSettings& settings)
{
    m_viewSettings = std::make_shared<QlumDataSettings>(settings);
    tellColumnChanged(SamplingAsked);
}

void QlumDaModel::setStatus(unsigned int serverId, QlumConnectionStatus status)
{
    QlumDaServer& server = m_servers[serverId];
    if (status == QlumConnectionStatus::NewSessionCreated) { // Connected follows, or has come
        server.recovery = QlumDaServer::Recovery::Renewed;
        server.recovered = m_clock();
        status = QlumConnectionStatus::Connected;
    } else if (status == QlumConnectionStatus::Connected &&
               server.status == QlumConnectionStatus::ConnectionError) {
        server.recovery = QlumDaServer::Recovery::Resumed;
        server.recovered = m_clock();
    }
    if (server.status != status || server.since == 0)
        server.since = m_clock();
    server.status = status;
    tellColumnChanged(Status);
    tellValues();
}

QlumDaServer QlumDaModel::server(unsigned int serverId) const
{
    const auto found = m_servers.find(serverId);
    return found == m_servers.end() ? QlumDaServer() : found->second;
}

void QlumDaModel::summariseRows() const
{
    m_summary = {};
    m_ages.clear();
    std::set<unsigned int> ids;
    unsigned int latest = qlumNoServer; // neighbours are of one server as a rule
    for (const QlumDataItem& item : rows()) {
        if (item.serverId != latest && item.serverId != qlumNoServer)
            ids.insert(item.serverId);
        latest = item.serverId;
        m_summary.waiting += item.state == QlumDataState::Waiting ? 1 : 0;
        if (item.received != 0)
            m_ages.renew(0, item.received);
    }
    m_summary.servers.assign(ids.begin(), ids.end());
    m_isSummaryOld = false;
}

QlumDaModel::Summary QlumDaModel::summary() const
{
    if (m_isSummaryOld)
        summariseRows();
    Summary summary = m_summary;
    summary.oldest = m_ages.oldest();
    return summary;
}

// ---- values

OpcUa_DateTime QlumDaModel::delay(const QlumDataItem& item) const
{
    const auto least = m_leastDelays.find(item.serverId);
    const OpcUa_DateTime sent = item.value.serverTimestamp().value();
    return item.isFirst || least == m_leastDelays.end() || sent == 0 ? 0
                                                                     : item.received - sent - least->second;
}

void QlumDaModel::takeValue(quint32 key, UaDataValue& value, quint32 merged, OpcUa_DateTime received)
{
    const int row = rowOf(key);
    if (row < 0)
        return;
    QlumDataItem& item = quietRow(row);
    item.value = std::move(value);
    m_ages.renew(item.received, received);
    item.received = received;
    item.isFirst = std::exchange(item.awaitsFirst, false) && merged == 0;
    if (const OpcUa_DateTime sent = item.value.serverTimestamp().value(); sent != 0) {
        const auto [least, isNew] = m_leastDelays.try_emplace(item.serverId, received - sent);
        least->second = std::min(least->second, received - sent);
    }
    item.changes += 1u + merged;
    const bool isWhole = item.fieldPath.isEmpty() && item.indexRange.isEmpty();
    const std::optional<double> number = qlumDaNumber(isWhole ? item.value.value() : shownValue(item));
    if (number && std::isfinite(*number) && item.value.statusCode().isNotBad()) {
        item.minimum = item.minimum <= *number ? item.minimum : *number; // also for none yet
        item.maximum = item.maximum >= *number ? item.maximum : *number;
    }
    m_taken.push_back(key);
}

void QlumDaModel::takeChange(quint32 key, const monitoring::ItemChange& change)
{
    const int row = rowOf(key);
    if (row < 0)
        return;
    QlumDataItem& item = quietRow(row);
    switch (change.state) {
    case monitoring::ItemState::Watched:
        item.awaitsFirst = item.awaitsFirst || item.state != QlumDataState::Watched;
        item.state = QlumDataState::Watched;
        item.revisedSampling = change.revisedSamplingInterval;
        item.revisedQueue = change.revisedQueueSize;
        break;
    case monitoring::ItemState::Refused:
        item.state = QlumDataState::Refused;
        break;
    case monitoring::ItemState::Ended:
        item.state = QlumDataState::NoServer;
        break;
    case monitoring::ItemState::Waiting:
        item.state = QlumDataState::Waiting;
        break;
    }
    item.reason = change.status;
    m_isSummaryOld = true;
    m_taken.push_back(key);
}

void QlumDaModel::setWatched(quint32 key, monitoring::ItemId item)
{
    const int row = rowOf(key);
    if (row < 0)
        return;
    QlumDataItem& changed = quietRow(row);
    changed.watched = item;
    m_isSummaryOld = true;
    if (item == 0 && (changed.state == QlumDataState::Watched || changed.state == QlumDataState::Refused ||
                      changed.state == QlumDataState::Read))
        changed.state = QlumDataState::Waiting;
}

void QlumDaModel::setState(quint32 key, QlumDataState state)
{
    if (const int row = rowOf(key); row >= 0) {
        quietRow(row).state = state;
        m_isSummaryOld = true;
        m_taken.push_back(key);
    }
}

void QlumDaModel::tellValues()
{
    const std::vector<quint32> taken = std::exchange(m_taken, {});
    m_taken.reserve(taken.size()); // as many come again
    emit valuesTaken(taken);
}

void QlumDaModel::resetCounts(const std::vector<quint32>& keys)
{
    const std::set<quint32> wanted(keys.begin(), keys.end());
    changeRows([&wanted](QlumDataItem& item) {
        if (!wanted.empty() && !wanted.contains(item.key))
            return false;
        item.changes = 0;
        item.minimum = item.maximum = std::numeric_limits<double>::quiet_NaN();
        return true;
    });
}

void QlumDaModel::setTypeContext(unsigned int serverId, const UaNodeId& dataType,
                                 std::shared_ptr<const QlumValueContext> context)
{
    m_types[{serverId, dataType}] = std::move(context);
    tellValues();
}

std::shared_ptr<const QlumValueContext> QlumDaModel::typeContext(const QlumDataItem& item) const
{
    const auto found = m_types.find({item.serverId, item.dataType});
    return found == m_types.end() ? nullptr : found->second;
}

UaVariant QlumDaModel::partOf(const QlumDataItem& item, const UaVariant& value) const
{
    if (item.fieldPath.isEmpty())
        return qlumElementOf(value, item.indexRange);
    const std::shared_ptr<const QlumValueContext> known = typeContext(item);
    QlumValueContext context = known ? *known : QlumValueContext();
    return qlumFieldOf(qlumElementOf(value, item.indexRange), item.fieldPath, context);
}

QString QlumDaModel::valueText(const QlumDataItem& item) const
{
    static const QlumValueContext nothing;
    if (item.received == 0)
        return {};
    const std::shared_ptr<const QlumValueContext> known = typeContext(item);
    if (item.fieldPath.isEmpty())
        return qlumCellText(shownValue(item), known ? *known : nothing);
    QlumValueContext context = known ? *known : nothing;
    const UaVariant part =
        qlumFieldOf(qlumElementOf(item.value.value(), item.indexRange), item.fieldPath, context);
    return part.isNull() ? tr("(no such field)") : qlumCellText(part, context);
}

void QlumDaModel::setWriteFault(quint32 key, const QString& why)
{
    if (why.isEmpty())
        m_writeFaults.remove(key);
    else
        m_writeFaults.insert(key, why);
    changeItem(key, [](QlumDataItem&) {});
}

void QlumDaModel::setNewValues(QlumDaPart* part)
{
    m_newValues = part;
    if (part != nullptr)
        connect(part, &QlumDaPart::newValuesChanged, this, [this](const std::vector<quint32>& keys) {
            int first = rowCount(), last = -1;
            for (const quint32 key : keys)
                if (const int row = rowOf(key); row >= 0) {
                    first = std::min(first, row);
                    last = std::max(last, row);
                }
            if (last >= 0)
                emit dataChanged(index(first, NewValue), index(last, NewValue));
        });
}

QlumDaVerdict QlumDaModel::verdict(const QlumDataItem& item) const
{
    return m_judge ? m_judge(item) : QlumDaVerdict();
}

std::optional<double> qlumDaNumber(const UaVariant& value)
{
    const OpcUa_BuiltInType type = value.type();
    if (!value.isScalar() || type < OpcUaType_Boolean || type > OpcUaType_Double)
        return std::nullopt;
    return type == OpcUaType_Double ? value.get()->Value.Double : value.toDouble();
}
