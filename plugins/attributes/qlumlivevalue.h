#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlummonitoring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace monitoring {
class LatestSink;
}

/// Watches the Value of one node at a time. GUI thread.
class QlumLiveValue : public QObject
{
    Q_OBJECT
public:
    /// Watches nothing.
    explicit QlumLiveValue(QlumMonitoringProvider servers = qlumApplicationMonitoring(),
                           QObject* parent = nullptr);
    ~QlumLiveValue() override;

    /// From now on this node and no other; the one that it is already goes on.
    void watch(unsigned int serverId, const UaNodeId& nodeId);
    /// Nothing arrives after that.
    void stop();

signals:
    /// The node has this Value now.
    void arrived(const UaDataValue& value);
    /// The server does not watch it, for that reason in words.
    void refused(const QString& why);

private:
    void take();

    const QlumMonitoringProvider m_servers;
    std::shared_ptr<monitoring::LatestSink> m_sink; ///< null while nothing is watched
    std::vector<unsigned int> m_items;
    unsigned int m_serverId = qlumNoServer;
    UaNodeId m_nodeId;
};
