#pragma once
#include <plugins/dataaccess/parts/qlumchangelogmodel.h>
#include <plugins/dataaccess/qlumdafeed.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>

#include <QMap>

#include <map>
#include <memory>
#include <vector>

class QLabel;
class QSettings;
class QWidget;

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
    void watchChanged(const std::vector<quint32>& keys) override { m_feed.refresh(keys); }

private:
    using Item = std::shared_ptr<const QlumLoggedItem>;

    [[nodiscard]] QWidget* makePage();
    void makeCommands();
    void take(const std::vector<QlumDaFeed::Value>& values);
    void describe(Item& known, const QlumDataItem& row) const;
    void forget(const std::vector<quint32>& keys);
    void refresh();

    QlumDaHost& m_host;
    QlumChangeLogModel* m_model; ///< the page's
    QWidget* m_page = nullptr;   ///< the view's
    QLabel* m_summary = nullptr;
    QlumDaFeed m_feed;
    std::map<quint32, Item> m_logged; ///< what is known of the rows
};
