#include <plugins/history/qlumtrendlive.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/allsink.h>
#include <monitoring/monitoredserver.h>
#include <monitoring/watch.h>
#include <plugins/history/qlumhistoryvalues.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <limits>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

QlumTrendLive::QlumTrendLive(QlumMonitoringProvider monitoring, QObject* parent)
    : QObject(parent), m_monitoring(std::move(monitoring)),
      m_sink(std::make_shared<monitoring::AllSink>(
          [this] { QMetaObject::invokeMethod(this, &QlumTrendLive::take, Qt::QueuedConnection); }))
{
}

QlumTrendLive::~QlumTrendLive()
{
    m_sink->close();
    for (const auto& [key, watched] : m_watched)
        watched.server->remove(std::span(&watched.item, 1));
}

void QlumTrendLive::watch(int key, unsigned int serverId, const UaNodeId& nodeId)
{
    const std::shared_ptr<monitoring::MonitoredServer> server =
        m_watched.contains(key) || !m_monitoring ? nullptr : m_monitoring(serverId);
    if (!server)
        return;
    constexpr OpcUa_UInt32 keptByServer = 100; // values that change faster than they are sent
    monitoring::ItemSettings settings;
    settings.queueSize = keptByServer;
    monitoring::ItemWish wish;
    wish.nodeId = nodeId;
    wish.key = static_cast<OpcUa_UInt64>(key);
    const std::vector<monitoring::ItemId> items = server->add(m_sink, settings, std::span(&wish, 1));
    if (!items.empty() && items.front() != 0)
        m_watched.emplace(key, Watched{server, items.front()});
}

void QlumTrendLive::unwatch(int key)
{
    const auto found = m_watched.find(key);
    if (found == m_watched.end())
        return;
    found->second.server->remove(std::span(&found->second.item, 1));
    m_watched.erase(found);
}

void QlumTrendLive::take()
{
    monitoring::AllSink::Batch batch = m_sink->take();
    std::map<int, std::vector<QlumSample>> samples;
    for (const monitoring::AllSink::Value& one : batch.values) {
        const UaDataValue& value = one.value;
        const UaDateTime time =
            value.sourceTimestamp().isNull() ? value.serverTimestamp() : value.sourceTimestamp();
        const double number =
            qlumHistoryNumber(*value.value().get()).value_or(std::numeric_limits<double>::quiet_NaN());
        samples[static_cast<int>(one.key)].push_back(
            {time.value(), number, value.statusCode().code(), value.serverTimestamp().value()});
    }
    for (const auto& [key, ofItem] : samples)
        if (m_watched.contains(key))
            emit samplesCame(key, ofItem);
    for (const monitoring::ItemChange& change : batch.changes)
        if (change.state == monitoring::ItemState::Refused &&
            m_watched.contains(static_cast<int>(change.key)))
            emit refused(static_cast<int>(change.key), qlumStatusWords(qlumStatusText(change.status.code())));
}
