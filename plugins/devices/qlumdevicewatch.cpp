#include <plugins/devices/qlumdevicewatch.h>

#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <uabase/values/uavariant.h>

#include <QMetaObject>

#include <utility>

QlumDeviceWatch::QlumDeviceWatch(QlumMonitoringProvider monitoring, Came came, QObject* parent)
    : QObject(parent), m_monitoring(std::move(monitoring)), m_came(std::move(came))
{
}

QlumDeviceWatch::~QlumDeviceWatch()
{
    end();
}

void QlumDeviceWatch::begin(unsigned int serverId, const std::vector<monitoring::ItemWish>& wishes,
                            double interval)
{
    end();
    m_server = m_monitoring ? m_monitoring(serverId) : nullptr;
    if (!m_server || wishes.empty())
        return;
    m_sink = std::make_shared<monitoring::LatestSink>([this] {
        QMetaObject::invokeMethod(
            this, [this] { take(); }, Qt::QueuedConnection);
    });
    monitoring::ItemSettings settings;
    settings.subscription.publishingInterval = interval;
    m_items = m_server->add(m_sink, settings, wishes);
}

void QlumDeviceWatch::end()
{
    if (m_sink)
        m_sink->close();
    if (m_server)
        m_server->remove(m_items);
    m_items.clear();
    m_sink.reset();
    m_server.reset();
}

void QlumDeviceWatch::take()
{
    if (!m_sink)
        return;
    const std::shared_ptr<monitoring::LatestSink> sink = m_sink; // what hears of a value may end it all
    const monitoring::LatestSink::Batch batch = sink->take();
    for (const monitoring::ItemChange& change : batch.changes)
        if (change.state == monitoring::ItemState::Refused)
            m_came(change.key, UaDataValue(UaVariant(), change.status));
    for (const monitoring::LatestSink::Value& value : batch.values)
        if (!value.isGone)
            m_came(value.key, value.value);
}
