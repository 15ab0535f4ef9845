#pragma once
#include <app/api/qlummonitoring.h>
#include <monitoring/watch.h>
#include <opcua/opcua_types.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uadatavalue.h>

#include <QObject>
#include <QString>

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

class QlumDaModel;
namespace monitoring {
class AllSink;
class MonitoredServer;
} // namespace monitoring

/// Every value of chosen rows, by items of its own, so that none is merged into a newer one; of rows that are
/// read instead of being watched, what the view has read. GUI thread.
class QlumDaFeed : public QObject
{
    Q_OBJECT
public:
    /// One value of one row, the whole of its node.
    struct Value
    {
        quint32 key = 0;             ///< of the row
        UaDataValue value;           ///< as it was sent
        OpcUa_DateTime received = 0; ///< by this computer
    };

    /// The model must outlive this. Servers are asked to keep so many values of a row at least.
    QlumDaFeed(QlumDaModel& model, QlumMonitoringProvider monitoring, quint32 leastQueue,
               QObject* parent = nullptr);
    ~QlumDaFeed() override;

    /// Begins with these, with the value that they have now.
    void add(const std::vector<quint32>& keys);
    /// Ends it.
    void remove(const std::vector<quint32>& keys);
    /// These may be watched in another way now: settings, index range, or a namespace that is known at last.
    void refresh(const std::vector<quint32>& keys);
    /// Whether it gives the values of the row.
    [[nodiscard]] bool contains(quint32 key) const { return m_fed.contains(key); }
    /// All of those.
    [[nodiscard]] std::vector<quint32> keys() const;
    /// How many.
    [[nodiscard]] std::size_t size() const { return m_fed.size(); }

signals:
    /// In the order in which they came, many at a time.
    void came(const std::vector<QlumDaFeed::Value>& values);
    /// So many came too fast to be kept.
    void lost(quint64 count);
    /// Their rows have gone.
    void ended(const std::vector<quint32>& keys);

private:
    struct Fed
    {
        std::shared_ptr<monitoring::MonitoredServer> server;
        monitoring::ItemId item = 0; ///< 0: it is read, or has to wait
        QString indexRange;
        QlumDataSettings settings;
        bool isRead = false;
        quint64 changes = 0; ///< of a read one, when it was last looked at
    };

    void watch(const std::vector<quint32>& keys);
    static void unwatch(Fed& fed);
    [[nodiscard]] monitoring::ItemSettings settingsFor(const QlumDataSettings& settings) const;
    void take();
    void takeRead(const std::vector<quint32>& keys);
    void dropMissing();

    QlumDaModel& m_model;
    const QlumMonitoringProvider m_monitoring;
    const quint32 m_leastQueue;
    std::shared_ptr<monitoring::AllSink> m_sink;
    std::map<quint32, Fed> m_fed;
    std::size_t m_reads = 0; ///< of those, the ones that are read
};
