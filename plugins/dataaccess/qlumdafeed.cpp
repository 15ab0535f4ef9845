#include <plugins/dataaccess/qlumdafeed.h>

#include <app/api/qlumtext.h>
#include <monitoring/allsink.h>
#include <monitoring/monitoredserver.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdawatch.h>

#include <QAbstractItemModel>
#include <QMetaObject>

#include <algorithm>
#include <span>
#include <utility>

namespace {

bool isFedByReads(const QlumDataItem& item, const QlumDataSettings& settings)
{
    return settings.readInterval > 0 || item.state == QlumDataState::Read;
}

// A row whose namespace nobody knows yet has to wait: its node id would mean another node.
bool hasNode(const QlumDataItem& item)
{
    return !item.nodeId.isNull() && item.state != QlumDataState::NamespaceGone &&
           item.state != QlumDataState::NoServer && item.state != QlumDataState::Unresolved;
}

} // namespace

QlumDaFeed::QlumDaFeed(QlumDaModel& model, QlumMonitoringProvider monitoring, quint32 leastQueue,
                       QObject* parent)
    : QObject(parent), m_model(model), m_monitoring(std::move(monitoring)), m_leastQueue(leastQueue),
      m_sink(std::make_shared<monitoring::AllSink>([this] { // on another thread, once until the next take()
          QMetaObject::invokeMethod(
              this, [this] { take(); }, Qt::QueuedConnection);
      }))
{
    connect(&model, &QlumDaModel::valuesTaken, this, &QlumDaFeed::takeRead);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &QlumDaFeed::dropMissing);
    connect(&model, &QAbstractItemModel::modelReset, this, &QlumDaFeed::dropMissing);
}

QlumDaFeed::~QlumDaFeed()
{
    m_sink->close();
    for (auto& [key, fed] : m_fed)
        unwatch(fed);
}

std::vector<quint32> QlumDaFeed::keys() const
{
    std::vector<quint32> result;
    for (const auto& [key, fed] : m_fed)
        result.push_back(key);
    return result;
}

void QlumDaFeed::add(const std::vector<quint32>& keys)
{
    std::vector<quint32> added, read;
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr || !m_fed.try_emplace(key).second)
            continue;
        added.push_back(key);
        if (isFedByReads(*item, m_model.settingsOf(*item)) && item->received != 0)
            read.push_back(key); // an item of its own begins with the present value
    }
    refresh(added);
    for (const quint32 key : read)
        m_fed[key].changes = ~quint64(0); // other than any count
    takeRead(read);
}

void QlumDaFeed::remove(const std::vector<quint32>& keys)
{
    for (const quint32 key : keys)
        if (const auto found = m_fed.find(key); found != m_fed.end()) {
            unwatch(found->second);
            m_reads -= found->second.isRead ? 1 : 0;
            m_fed.erase(found);
        }
}

void QlumDaFeed::refresh(const std::vector<quint32>& keys)
{
    std::vector<quint32> begun;
    for (const quint32 key : keys) {
        const auto found = m_fed.find(key);
        const QlumDataItem* item = found == m_fed.end() ? nullptr : m_model.find(key);
        if (item == nullptr)
            continue;
        Fed& fed = found->second;
        const QlumDataSettings& settings = m_model.settingsOf(*item);
        const bool isRead = isFedByReads(*item, settings);
        if (isRead && !fed.isRead)
            fed.changes = item->changes;
        m_reads += isRead ? 1 : 0;
        m_reads -= std::exchange(fed.isRead, isRead) ? 1 : 0;
        if (isRead || !hasNode(*item) || fed.indexRange != item->indexRange)
            unwatch(fed);
        fed.indexRange = item->indexRange;
        const bool isOther = settings != std::exchange(fed.settings, settings);
        if (!isRead && hasNode(*item) && fed.item == 0)
            begun.push_back(key);
        else if (isOther && fed.item != 0)
            fed.server->modify(std::span(&fed.item, 1), settingsFor(settings));
    }
    watch(begun);
}

monitoring::ItemSettings QlumDaFeed::settingsFor(const QlumDataSettings& settings) const
{
    monitoring::ItemSettings wanted = qlumMonitoringSettings(settings);
    wanted.queueSize = std::max(wanted.queueSize, m_leastQueue);
    return wanted;
}

// Rows of one server with the same settings go together.
void QlumDaFeed::watch(const std::vector<quint32>& keys)
{
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<monitoring::ItemWish>> groups;
    for (const quint32 key : keys) {
        const QlumDataItem& item = *m_model.find(key);
        monitoring::ItemWish& wish = groups[{item.serverId, &m_model.settingsOf(item)}].emplace_back();
        wish.nodeId = item.nodeId;
        wish.attributeId = item.attributeId;
        wish.indexRange = toUaString(item.indexRange);
        wish.key = key;
    }
    for (const auto& [group, wishes] : groups) {
        const auto server = m_monitoring ? m_monitoring(group.first) : nullptr;
        if (!server)
            continue;
        const std::vector<monitoring::ItemId> ids = server->add(m_sink, settingsFor(*group.second), wishes);
        for (std::size_t i = 0; i < wishes.size() && i < ids.size(); ++i) {
            Fed& fed = m_fed[static_cast<quint32>(wishes[i].key)];
            fed.server = server;
            fed.item = ids[i];
        }
    }
}

void QlumDaFeed::unwatch(Fed& fed)
{
    if (fed.server && fed.item != 0)
        fed.server->remove(std::span(&fed.item, 1));
    fed.item = 0;
    fed.server.reset();
}

// ---- what comes

void QlumDaFeed::take()
{
    monitoring::AllSink::Batch batch = m_sink->take();
    const OpcUa_DateTime now = m_model.now();
    std::vector<Value> values;
    values.reserve(batch.values.size());
    for (monitoring::AllSink::Value& one : batch.values)
        if (const auto key = static_cast<quint32>(one.key); m_fed.contains(key))
            values.push_back({key, std::move(one.value), now});
    if (batch.overflowed > 0)
        emit lost(batch.overflowed);
    if (!values.empty())
        emit came(values);
}

void QlumDaFeed::takeRead(const std::vector<quint32>& keys)
{
    if (m_reads == 0)
        return; // as a rule, and there may be many keys
    std::vector<Value> values;
    for (const quint32 key : keys) {
        const auto found = m_fed.find(key);
        const QlumDataItem* item = found == m_fed.end() ? nullptr : m_model.find(key);
        if (item == nullptr || !found->second.isRead ||
            item->changes == std::exchange(found->second.changes, item->changes))
            continue;
        values.push_back({key, item->value, item->received});
    }
    if (!values.empty())
        emit came(values);
}

void QlumDaFeed::dropMissing()
{
    std::vector<quint32> gone;
    for (const auto& [key, fed] : m_fed)
        if (m_model.find(key) == nullptr)
            gone.push_back(key);
    if (gone.empty())
        return;
    remove(gone);
    emit ended(gone);
}
