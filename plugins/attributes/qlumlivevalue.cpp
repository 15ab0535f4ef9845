#include <plugins/attributes/qlumlivevalue.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <uabase/values/uastatus.h>

#include <QMetaObject>

#include <span>
#include <utility>

namespace {
constexpr double publishingInterval = 500; // ms; nobody reads faster
}

QlumLiveValue::QlumLiveValue(QlumMonitoringProvider servers, QObject* parent)
    : QObject(parent), m_servers(std::move(servers))
{
}

QlumLiveValue::~QlumLiveValue()
{
    stop();
}

void QlumLiveValue::watch(unsigned int serverId, const UaNodeId& nodeId)
{
    if (m_sink && serverId == m_serverId && nodeId == m_nodeId)
        return;
    stop();
    const auto server = m_servers(serverId);
    if (!server || nodeId.isNull())
        return;
    m_serverId = serverId;
    m_nodeId = nodeId;
    m_sink = std::make_shared<monitoring::LatestSink>(
        [this] { QMetaObject::invokeMethod(this, &QlumLiveValue::take, Qt::QueuedConnection); });
    monitoring::ItemSettings settings;
    settings.subscription.publishingInterval = publishingInterval;
    monitoring::ItemWish wish;
    wish.nodeId = nodeId;
    m_items = server->add(m_sink, settings, std::span(&wish, 1));
}

void QlumLiveValue::stop()
{
    if (!m_sink)
        return;
    m_sink->close();
    if (const auto server = m_servers(m_serverId))
        server->remove(m_items);
    m_sink.reset();
    m_items.clear();
    m_serverId = qlumNoServer;
    m_nodeId = UaNodeId();
}

void QlumLiveValue::take()
{
    if (!m_sink)
        return;
    const auto batch = m_sink->take();
    for (const monitoring::ItemChange& change : batch.changes)
        if (change.state == monitoring::ItemState::Refused)
            emit refused(qlumResultInWords(UaStatus(change.status.code())));
    UaDataValue newest;
    bool isThere = false;
    for (const auto& value : batch.values) {
        newest = value.value;
        isThere = true;
    }
    if (isThere)
        emit arrived(newest);
}
