#pragma once
#include <app/api/qlummonitoring.h>
#include <monitoring/watch.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <vector>

namespace monitoring {
class AllSink;
class MonitoredServer;
} // namespace monitoring

/// Watches variables, so that their curves go on after what was read of their histories. GUI thread.
class QlumTrendLive : public QObject
{
    Q_OBJECT
public:
    /// The provider must outlive this.
    explicit QlumTrendLive(QlumMonitoringProvider monitoring, QObject* parent = nullptr);
    ~QlumTrendLive() override;

    /// Begins to watch a variable; one that is watched already stays so.
    void watch(int key, unsigned int serverId, const UaNodeId& nodeId);
    /// Ends that.
    void unwatch(int key);

signals:
    /// Numbers that came, oldest first.
    void samplesCame(int key, const std::vector<QlumSample>& samples);
    /// The server does not report the variable, for that reason.
    void refused(int key, const QString& why);

private:
    struct Watched
    {
        std::shared_ptr<monitoring::MonitoredServer> server;
        monitoring::ItemId item;
    };

    void take();

    const QlumMonitoringProvider m_monitoring;
    std::shared_ptr<monitoring::AllSink> m_sink;
    std::map<int, Watched> m_watched;
};
