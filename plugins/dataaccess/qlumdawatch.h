#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <monitoring/watch.h>
#include <opcua/opcua_types.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uastatuscode.h>

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class QlumDaModel;
namespace monitoring {
class LatestSink;
class MonitoredServer;
} // namespace monitoring

/// Has the rows of a model watched by those who watch their servers, or reads them again and again where the
/// settings say so, and puts into the model what comes. GUI thread.
class QlumDaWatch : public QObject
{
    Q_OBJECT
public:
    /// All must outlive this; the pool runs the reads.
    QlumDaWatch(QlumDaModel& model, QlumMonitoringProvider monitoring, QlumSessionServicesProvider services,
                QlumJobPool& pool, QObject* parent = nullptr);
    ~QlumDaWatch() override;

    /// Begins with these, in portions between which the event loop runs. Rows without a node are passed over.
    void watch(const std::vector<quint32>& keys);
    /// Ends it, before rows go or change their node.
    void unwatch(const std::vector<quint32>& keys);
    /// The settings of these have changed.
    void apply(const std::vector<quint32>& keys);
    /// Asks the servers again for what they refused.
    void retry(const std::vector<quint32>& keys);
    /// Reads whatever is to be read now, for tests.
    void readNow();

    /// All that is known of the item of a row; nothing for a row without one.
    [[nodiscard]] std::optional<monitoring::ItemInfo> info(const QlumDataItem& item) const;
    /// Of the item; nothing while there is none.
    [[nodiscard]] std::optional<monitoring::SubscriptionInfo> subscription(const QlumDataItem& item) const;
    /// The subscriptions of a server that items need.
    [[nodiscard]] std::vector<monitoring::SubscriptionInfo> subscriptions(unsigned int serverId) const;
    /// Rows that still have to be asked for.
    [[nodiscard]] std::size_t pending() const { return m_waiting.size() - m_begun; }

    /// What has come since the last question.
    struct Traffic
    {
        quint64 values = 0;    ///< all that came
        quint64 merged = 0;    ///< of them, those that a newer one replaced before it was shown
        quint64 handOvers = 0; ///< portions in which they came
    };
    /// The same, from 0 again.
    [[nodiscard]] Traffic takeTraffic();

signals:
    /// So many rows of a server were refused, the last of them for that reason.
    void refused(unsigned int serverId, int count, UaStatusCode why);
    /// The server did not take other settings for so many rows, which go on with what they had.
    void changeRefused(unsigned int serverId, int count, UaStatusCode why);
    /// So many of the rows that were added are asked for.
    void progressed(int done, int total);

private:
    using Server = std::shared_ptr<monitoring::MonitoredServer>;

    [[nodiscard]] Server server(unsigned int serverId) const;
    void beginPortion();
    void begin(const std::vector<quint32>& keys);
    void take();
    void takeChanges(const std::vector<monitoring::ItemChange>& changes);
    void showReads();
    void readServer(unsigned int serverId, const std::vector<quint32>& keys);

    QlumDaModel& m_model;
    const QlumMonitoringProvider m_monitoring;
    const QlumSessionServicesProvider m_services;
    QlumJobPool& m_pool;
    std::shared_ptr<monitoring::LatestSink> m_sink;
    std::vector<quint32> m_waiting;
    std::size_t m_begun = 0; ///< of those
    QTimer m_portions;
    QTimer m_reads;
    std::map<quint32, OpcUa_DateTime> m_read; ///< rows that are read, and when they were
    std::map<unsigned int, bool> m_isReading;
    Traffic m_traffic;
};
