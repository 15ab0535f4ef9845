#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlumhistorycsv.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrendnodes.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QSettings>
#include <QSplitter>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <initializer_list>
#include <map>
#include <memory>
#include <span>
#include <vector>

class QCheckBox;
class QComboBox;
class QDragEnterEvent;
class QDropEvent;
class QLabel;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QTabWidget;
class QTableView;
class QlumCurveValuesModel;
class QlumMessageBar;
class QlumModifiedModel;
class QlumNonNumericModel;
class QlumPlot;
class QlumPlotCurve;
class QlumPlotPicker;
class QlumTableFilter;
class QlumTrendExtras;
class QlumTrendItemModel;
class QlumTrendLive;
class QlumTrendPanel;
class QlumTrendReading;
class QlumViewHeading;
class QlumViewState;

/// Shows the history of variables over time: numbers as curves, all else in tables.
class QlumTrendViewDocument : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// All must outlive the document.
    QlumTrendViewDocument(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                          QlumMonitoringProvider monitoring = {}, QWidget* parent = nullptr);
    ~QlumTrendViewDocument() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Nodes that another view sends; those that have no history are left out, and the log says so.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// Shows what another tool has recorded as curves in the same plot.
    void showSamples(std::span<const QlumToolCurve> curves);
    /// Reads the time range of the panel into a file, however much it is.
    void saveRange(const QString& fileName);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status, const NamespaceMap& map);
    /// The same: nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    [[nodiscard]] QlumTrendItemModel* model() const { return m_model; } ///< the variables
    [[nodiscard]] QlumPlot* plot() const { return m_plot; }             ///< with their curves
    [[nodiscard]] QlumTrendPanel* panel() const { return m_panel; }     ///< what the user asks for
    /// Of an item; null when there is none.
    [[nodiscard]] QlumPlotCurve* curve(int key) const;
    /// Of the aggregates that were read of an item; null when there is none.
    [[nodiscard]] QlumPlotCurve* processedCurve(int key) const;
    /// Values as they were before somebody changed them, of all items.
    [[nodiscard]] QlumModifiedModel* modifiedValues() const { return m_modified; }
    /// Values of an item that no curve can show; null when there is no such item.
    [[nodiscard]] QlumNonNumericModel* texts(int key) const;
    /// Cyclic updates that were due while the one before was still being read.
    [[nodiscard]] int skippedUpdates() const { return m_skipped; }
    [[nodiscard]] bool isRunning() const { return m_cyclicTimer.isActive(); } ///< cyclic updates

public slots:
    /// Reads the histories of all items between two times anew; the second may be the earlier one. A cyclic
    /// update is skipped while one is being read.
    void sltUpdateTrendData(bool cyclic, const QDateTime& start, const QDateTime& end);
    /// Looks for the earliest value of all items, and makes its time the start.
    void sltReadStartTime();
    /// Begins cyclic updates, or ends them.
    void sltStartStop();
    /// One of the cyclic updates, up to now.
    void sltCyclicUpdate();
    /// Ends what is being read; what has come stays.
    void sltCancel();
    /// Goes on with what settings, a server or the user have ended early.
    void sltReadOn();
    /// Shows the time range that was read, with all its values.
    void sltResetView();

protected:
    /// Nodes are welcome everywhere.
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// The same.
    void dropEvent(QDropEvent* event) override;

private:
    /// What belongs to an item.
    struct Trend
    {
        QlumPlotCurve* curve = nullptr;
        std::shared_ptr<QlumNonNumericModel> texts;
        QlumTrendNode node; ///< what its server says of it
        quint64 count = 0;
        UaDateTime last;
        quint64 atLast = 0;
        bool hasMore = false;
        bool isReading = false;
        QlumPlotCurve* processed = nullptr;
        std::vector<QlumSample> waiting; ///< live ones, while the history is read
    };

    // ---- widgets and items
    static void makeCompact(QTableView* view, std::initializer_list<int> timeColumns);
    static void letBeSmall(QComboBox* names);
    [[nodiscard]] QSplitter* makeLeft();
    [[nodiscard]] QWidget* makeItems();
    [[nodiscard]] QWidget* makeHistoryData();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makeProgress();
    [[nodiscard]] QWidget* makeTexts();
    void makeItemActions();
    void connectParts();
    void addTrend(int key, const QlumTrendNode& node);
    void makeCurve(Trend& trend, const QlumTrendItem& item);
    void removeTrends(int first, int last);
    void removeSelected();
    void wantNodes(unsigned int serverId, const std::vector<UaNodeId>& ids);
    void describe(unsigned int serverId, const std::vector<QlumTrendNode>& nodes);
    [[nodiscard]] QlumToolNodes selectedNodes() const;
    void showSample(QlumPlotCurve* curve, quint64 index);
    void showTexts();

    // ---- reading
    [[nodiscard]] QlumHistoryPlan planFor(unsigned int serverId) const;
    [[nodiscard]] std::map<unsigned int, QlumHistoryPlan> plans();
    [[nodiscard]] bool isConnected(unsigned int serverId) const;
    void clearValues();
    void begin();
    void takeBatch(QlumHistoryBatch& batch);
    void planEnded(const QlumHistoryPlan& plan, const std::vector<QlumHistoryOutcome>& outcomes);
    void takeOutcome(const QlumHistoryOutcome& outcome);
    void allEnded();
    void tellRest();
    void takeStartTime(const UaDateTime& time);
    void setRunning(bool isRunning);
    void showProgress();
    void showState();
    void showStateSoon();

    // ---- besides raw curves
    [[nodiscard]] QWidget* makeNumericValues();
    [[nodiscard]] QWidget* makeModifiedValues();
    void connectExtras();
    void readExtras(const std::map<unsigned int, QlumHistoryPlan>& raw);
    [[nodiscard]] bool takeExtraBatch(QlumHistoryBatch& batch);
    void tellExtraFaults();
    void listCurves();
    void showValues();
    void setLive(bool isLive);
    void takeLive(int key, const std::vector<QlumSample>& samples);
    void appendLive(Trend& trend);
    void askForFile();
    void fileWritten(const QlumHistoryFile& file, const QString& fileName);
    void setWidth(int width);
    void toggleSteps();

    // ---- project
    void markModified();
    void restoreItems(QSettings& settings, const QMap<int, int>& serverIdMap);

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    QlumViewState* m_state;
    QlumTrendItemModel* m_model;
    QlumTrendReading* m_reading;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QlumTrendPanel* m_panel = nullptr;
    QTableView* m_items = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumPlot* m_plot = nullptr;
    QlumPlotPicker* m_picker = nullptr;
    QCheckBox* m_catch = nullptr;
    QWidget* m_progressLine = nullptr;
    QLabel* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QLabel* m_sample = nullptr;
    QWidget* m_textPane = nullptr;
    QComboBox* m_textItem = nullptr;
    QTableView* m_textView = nullptr;
    QlumNonNumericModel* m_noTexts = nullptr;
    QlumTableFilter* m_textFilter = nullptr;
    std::map<int, Trend> m_trends; ///< by the keys of items
    QHash<unsigned int, QlumConnectionStatus> m_status;
    QTimer m_cyclicTimer;
    QTimer m_progressTimer;
    QTimer m_stateTimer;
    QElapsedTimer m_elapsed;
    QDateTime m_rangeStart; ///< what was read last
    QDateTime m_rangeEnd;
    bool m_wasRead = false;
    bool m_isLoading = false;
    bool m_hasOwnView = false; ///< the user has chosen what to look at
    int m_skipped = 0;
    QlumTrendExtras* m_extras = nullptr;
    QlumTrendLive* m_live;
    QCheckBox* m_liveBox = nullptr;
    QlumModifiedModel* m_modified = nullptr;
    QlumCurveValuesModel* m_values = nullptr;
    QlumTableFilter* m_valueFilter = nullptr;
    QComboBox* m_valueCurve = nullptr;
    QLineEdit* m_valueText = nullptr;
    QTimer m_valueTimer;
    std::vector<QlumPlotCurve*> m_recorded; ///< that other tools have handed over
    QSet<unsigned int> m_aggregateServers;  ///< that were asked for theirs
    QStringList m_extraFaults;
};
