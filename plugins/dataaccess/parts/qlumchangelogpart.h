#pragma once
#include <monitoring/watch.h>
#include <plugins/dataaccess/parts/qlumchangelogmodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uadatavalue.h>

#include <QMap>

#include <map>
#include <memory>
#include <span>
#include <vector>

class QLabel;
class QSettings;
class QWidget;
namespace monitoring {
class AllSink;
class MonitoredServer;
} // namespace monitoring

/// Records every change of chosen rows, by items of its own, so that none is merged into a newer one.
class QlumChangeLogPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its page and its commands to the host, which outlives it.
    explicit QlumChangeLogPart(QlumDaHost& host);
    ~QlumChangeLogPart() override;

    /// Begins to record these rows.
    void start(const std::vector<quint32>& keys);
    /// Ends it; what was recorded stays.
    void stop(const std::vector<quint32>& keys);
    [[nodiscard]] QlumChangeLogModel& model() { return *m_model; }

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;
    void valuesChanged(std::span<const quint32> keys) override;
    void serverRemoved(unsigned int serverId) override;

private:
    struct Logged
    {
        unsigned int serverId = qlumNoServer;
        monitoring::ItemId watched = 0; ///< 0: it is read, and comes by the view
        std::shared_ptr<const QlumLoggedItem> item;
        quint64 changes = 0; ///< of a read one, when it was last looked at
    };

    [[nodiscard]] QWidget* makePage();
    void makeCommands();
    [[nodiscard]] std::shared_ptr<monitoring::MonitoredServer> serverOf(unsigned int serverId) const;
    void watch(const std::vector<quint32>& keys);
    void take();
    void add(Logged& logged, const QlumDataItem* row, const UaDataValue& value, OpcUa_DateTime received);
    void describe(Logged& logged, const QlumDataItem& row) const;
    void dropMissing();
    void refresh();

    QlumDaHost& m_host;
    QlumChangeLogModel* m_model; ///< the page's
    QWidget* m_page = nullptr;   ///< the view's
    QLabel* m_summary = nullptr;
    std::shared_ptr<monitoring::AllSink> m_sink;
    std::map<quint32, Logged> m_logged;
};
