#pragma once
#include <app/api/qlummonitoring.h>
#include <monitoring/watch.h>
#include <uabase/values/uadatavalue.h>

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace monitoring {
class LatestSink;
class MonitoredServer;
} // namespace monitoring

/// Has some nodes of one server watched, and hands the newest value of each over. GUI thread.
class QlumDeviceWatch : public QObject
{
    Q_OBJECT
public:
    /// Gets a value by the key of its wish; a bad one for what the server refuses.
    using Came = std::function<void(quint64 key, const UaDataValue& value)>;

    QlumDeviceWatch(QlumMonitoringProvider monitoring, Came came, QObject* parent);
    ~QlumDeviceWatch() override;

    /// In place of those before.
    void begin(unsigned int serverId, const std::vector<monitoring::ItemWish>& wishes, double interval);
    void end();
    [[nodiscard]] bool isOn() const { return m_sink != nullptr; }

private:
    void take();

    const QlumMonitoringProvider m_monitoring;
    const Came m_came;
    std::shared_ptr<monitoring::MonitoredServer> m_server;
    std::shared_ptr<monitoring::LatestSink> m_sink;
    std::vector<monitoring::ItemId> m_items;
};
