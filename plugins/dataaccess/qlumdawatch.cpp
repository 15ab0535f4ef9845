#include <plugins/dataaccess/qlumdawatch.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t portion = 5000; // rows that are asked for before the event loop runs again
constexpr double ticksInMillisecond = 1e4;
constexpr int leastReadInterval = 50;
constexpr std::size_t ahead = 6; // values that come after one and are fetched for

} // namespace

QlumDaWatch::QlumDaWatch(QlumDaModel& model, QlumMonitoringProvider monitoring,
                         QlumSessionServicesProvider services, QlumJobPool& pool, QObject* parent)
    : QObject(parent), m_model(model), m_monitoring(std::move(monitoring)), m_services(std::move(services)),
      m_pool(pool), m_sink(std::make_shared<monitoring::LatestSink>([this] {
          QMetaObject::invokeMethod(this, &QlumDaWatch::take, Qt::QueuedConnection);
      }))
{
    m_portions.setInterval(0);
    m_portions.setSingleShot(true);
    connect(&m_portions, &QTimer::timeout, this, &QlumDaWatch::beginPortion);
    connect(&m_reads, &QTimer::timeout, this, &QlumDaWatch::readNow);
}

QlumDaWatch::~QlumDaWatch()
{
    m_sink->close();
    std::vector<quint32> keys;
    for (const QlumDataItem& item : m_model.rows())
        keys.push_back(item.key);
    unwatch(keys);
}

QlumDaWatch::Server QlumDaWatch::server(unsigned int serverId) const
{
    return m_monitoring ? m_monitoring(serverId) : nullptr;
}

// ---- beginning and ending

void QlumDaWatch::watch(const std::vector<quint32>& keys)
{
    m_waiting.insert(m_waiting.end(), keys.begin(), keys.end());
    if (pending() > 0)
        m_portions.start();
}

void QlumDaWatch::beginPortion()
{
    const std::size_t count = std::min(portion, pending());
    const auto first = m_waiting.begin() + static_cast<std::ptrdiff_t>(m_begun);
    begin({first, first + static_cast<std::ptrdiff_t>(count)});
    m_begun += count;
    emit progressed(static_cast<int>(m_begun), static_cast<int>(m_waiting.size()));
    if (pending() > 0) {
        m_portions.start();
        return;
    }
    m_waiting.clear();
    m_begun = 0;
}

// Rows of one server with the same settings go together.
void QlumDaWatch::begin(const std::vector<quint32>& keys)
{
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<monitoring::ItemWish>> groups;
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr || item->watched != 0 || item->nodeId.isNull() ||
            item->state == QlumDataState::NamespaceGone || item->state == QlumDataState::NoServer)
            continue;
        const QlumDataSettings& settings = m_model.settingsOf(*item);
        if (settings.readInterval > 0) {
            m_read.emplace(key, 0);
            m_model.setState(key, QlumDataState::Read);
            continue;
        }
        monitoring::ItemWish wish;
        wish.nodeId = item->nodeId;
        wish.attributeId = item->attributeId;
        wish.indexRange = toUaString(item->indexRange);
        wish.key = key;
        groups[{item->serverId, &settings}].push_back(std::move(wish));
    }
    for (const auto& [group, wishes] : groups) {
        const Server watching = server(group.first);
        if (!watching)
            continue;
        const std::vector<monitoring::ItemId> ids =
            watching->add(m_sink, qlumMonitoringSettings(*group.second), wishes);
        for (std::size_t i = 0; i < ids.size(); ++i)
            m_model.setWatched(static_cast<quint32>(wishes[i].key), ids[i]);
    }
    showReads();
}

void QlumDaWatch::unwatch(const std::vector<quint32>& keys)
{
    std::map<unsigned int, std::vector<monitoring::ItemId>> items;
    for (const quint32 key : keys) {
        m_read.erase(key);
        const QlumDataItem* item = m_model.find(key);
        if (item != nullptr && item->state == QlumDataState::Read)
            m_model.setState(key, QlumDataState::Waiting);
        if (item == nullptr || item->watched == 0)
            continue;
        items[item->serverId].push_back(item->watched);
        m_model.setWatched(key, 0);
    }
    for (const auto& [serverId, ids] : items)
        if (const Server watching = server(serverId))
            watching->remove(ids);
    showReads();
}

void QlumDaWatch::apply(const std::vector<quint32>& keys)
{
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<monitoring::ItemId>> groups;
    std::vector<quint32> others; // that begin or end to be read, or have no item yet
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr)
            continue;
        const QlumDataSettings& settings = m_model.settingsOf(*item);
        if (settings.readInterval > 0 || item->watched == 0)
            others.push_back(key);
        else
            groups[{item->serverId, &settings}].push_back(item->watched);
    }
    for (const auto& [group, ids] : groups)
        if (const Server watching = server(group.first))
            watching->modify(ids, qlumMonitoringSettings(*group.second));
    unwatch(others);
    watch(others);
}

void QlumDaWatch::retry(const std::vector<quint32>& keys)
{
    std::map<unsigned int, std::vector<monitoring::ItemId>> items;
    for (const quint32 key : keys)
        if (const QlumDataItem* item = m_model.find(key); item != nullptr && item->watched != 0)
            items[item->serverId].push_back(item->watched);
    for (const auto& [serverId, ids] : items)
        if (const Server watching = server(serverId))
            watching->retry(ids);
}

// ---- what comes

void QlumDaWatch::take()
{
    monitoring::LatestSink::Batch batch = m_sink->take();
    takeChanges(batch.changes);
    const OpcUa_DateTime now = m_model.now();
    for (std::size_t i = 0; i < batch.values.size(); ++i) {
        if (i + ahead < batch.values.size())
            m_model.expectValue(static_cast<quint32>(batch.values[i + ahead].key));
        monitoring::LatestSink::Value& one = batch.values[i];
        m_model.takeValue(static_cast<quint32>(one.key), one.value, one.merged, now);
        m_traffic.values += 1u + one.merged;
        m_traffic.merged += one.merged;
    }
    ++m_traffic.handOvers;
    m_model.tellValues();
}

void QlumDaWatch::takeChanges(const std::vector<monitoring::ItemChange>& changes)
{
    std::map<std::pair<unsigned int, bool>, std::pair<int, UaStatusCode>> refusals; // of items or changes
    for (const monitoring::ItemChange& change : changes) {
        const auto key = static_cast<quint32>(change.key);
        m_model.takeChange(key, change);
        const QlumDataItem* item = m_model.find(key);
        const bool isItem = change.state == monitoring::ItemState::Refused;
        if (item == nullptr || (!isItem && !change.status.isBad()))
            continue;
        auto& [count, why] = refusals[{item->serverId, isItem}];
        ++count;
        why = change.status;
    }
    for (const auto& [which, refusal] : refusals) {
        const auto& [serverId, isItem] = which;
        if (isItem)
            emit refused(serverId, refusal.first, refusal.second);
        else
            emit changeRefused(serverId, refusal.first, refusal.second);
    }
}

QlumDaWatch::Traffic QlumDaWatch::takeTraffic()
{
    return std::exchange(m_traffic, {});
}

std::optional<monitoring::ItemInfo> QlumDaWatch::info(const QlumDataItem& item) const
{
    const Server watching = item.watched == 0 ? nullptr : server(item.serverId);
    return watching ? watching->info(item.watched) : std::nullopt;
}

std::vector<monitoring::SubscriptionInfo> QlumDaWatch::subscriptions(unsigned int serverId) const
{
    const Server watching = server(serverId);
    return watching ? watching->subscriptions() : std::vector<monitoring::SubscriptionInfo>();
}

std::optional<monitoring::SubscriptionInfo> QlumDaWatch::subscription(const QlumDataItem& item) const
{
    const monitoring::SubscriptionWish wish = qlumMonitoringSettings(m_model.settingsOf(item)).subscription;
    for (const monitoring::SubscriptionInfo& one : subscriptions(item.serverId))
        if (one.requested == wish)
            return one;
    return std::nullopt;
}

// ---- rows that are read

// One timer for all, as fast as the fastest of them.
void QlumDaWatch::showReads()
{
    double fastest = 0;
    for (const auto& [key, when] : m_read)
        if (const QlumDataItem* item = m_model.find(key)) {
            const double interval = m_model.settingsOf(*item).readInterval;
            fastest = fastest > 0 ? std::min(fastest, interval) : interval;
        }
    if (fastest <= 0)
        m_reads.stop();
    else if (const int wanted = std::max(leastReadInterval, static_cast<int>(fastest));
             !m_reads.isActive() || m_reads.interval() != wanted)
        m_reads.start(wanted);
}

void QlumDaWatch::readNow()
{
    const OpcUa_DateTime now = UaDateTime::now().value();
    std::map<unsigned int, std::vector<quint32>> due;
    for (auto& [key, when] : m_read) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr || m_isReading[item->serverId])
            continue;
        const double passed = static_cast<double>(now - when) / ticksInMillisecond;
        if (passed < m_model.settingsOf(*item).readInterval - leastReadInterval)
            continue;
        when = now;
        due[item->serverId].push_back(key);
    }
    for (const auto& [serverId, keys] : due)
        readServer(serverId, keys);
}

void QlumDaWatch::readServer(unsigned int serverId, const std::vector<quint32>& keys)
{
    const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
    if (!services || !services->isConnected())
        return;
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(keys.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        const QlumDataItem& item = *m_model.find(keys[i]);
        nodes[i].AttributeId = item.attributeId;
        static_cast<void>(item.nodeId.copyTo(&nodes[i].NodeId)); // else null, which the server refuses
        static_cast<void>(toUaString(item.indexRange).copyTo(&nodes[i].IndexRange));
    }
    m_isReading[serverId] = true;
    const auto work = [this, services, nodes = std::move(nodes), keys](QlumJob& job) {
        UaClientSdk::ServiceSettings settings = job.serviceSettings();
        UaDataValues values;
        const UaStatus status = services->read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values);
        job.post([this, keys, status, values = std::move(values)]() mutable {
            for (OpcUa_UInt32 i = 0; i < keys.size(); ++i) {
                UaDataValue value(UaVariant(), UaStatusCode(status.statusCode()));
                if (status.isNotBad() && i < values.length())
                    value.attach(&values[i]);
                m_model.takeValue(keys[i], value, 0, m_model.now());
            }
            m_traffic.values += keys.size();
            m_model.tellValues();
        });
    };
    m_pool.add({QString(), serverId}, work, [this, serverId](QlumWorkEnd) { m_isReading[serverId] = false; });
}
