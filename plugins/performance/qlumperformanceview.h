// The document that measures how long services take.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumperformancework.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QHash>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

class QComboBox;
class QDragEnterEvent;
class QDropEvent;
class QLabel;
class QTabWidget;
class QTableView;
class QlumBarPlot;
class QlumRunComparisonModel;
class QlumMeasuredNodesModel;
class QlumMessageBar;
class QlumPerformancePanel;
class QlumPlot;
class QlumRunModel;
class QlumTableFilter;
class QlumViewHeading;
class QlumViewState;

/// What to measure on the left; on the right the figures of the run that is selected, below all runs.
class QlumPerformanceView : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// All must outlive the document.
    QlumPerformanceView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                        QWidget* parent = nullptr);
    ~QlumPerformanceView() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Nodes that another view sends.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const QMap<quint16, quint16>& map);
    /// The same: nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    [[nodiscard]] QlumPerformancePanel* panel() const { return m_panel; } ///< what is asked for
    [[nodiscard]] QlumRunModel* runs() const { return m_runs; }           ///< what came of it
    [[nodiscard]] QlumPerformanceWork* work() const { return m_work; }    ///< what measures

protected:
    /// Nodes are welcome everywhere.
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// The same.
    void dropEvent(QDropEvent* event) override;

private:
    /// What waits for the user's answer.
    struct Asked
    {
        QlumMeasurementRun run;
        std::vector<QlumMeasurementPlan> plans; ///< of the runs that it comes to
        std::function<void(const QlumMeasurementRun& run)> go;
    };

    [[nodiscard]] QWidget* makeResults();
    [[nodiscard]] QWidget* makeFigures();
    [[nodiscard]] QWidget* makeRuns();
    void connectParts();

    void takeNodes(const QlumToolNodes& nodes);

    // ---- measuring
    /// Measures, once the user has agreed.
    using Go = std::function<void(const QlumMeasurementRun& run)>;

    [[nodiscard]] QlumMeasurementRun newRun() const;
    void measure();
    void sweep(QlumSweepOver over);
    void confirm(const QlumMeasurementRun& run, const std::vector<QlumMeasurementPlan>& plans, const Go& go);
    void askForWrite(const QlumWriteCheck& check);
    void askForArguments(const QlumCallCheck& check);
    void askForCall(const QlumCallCheck& check);
    void tellNone(const QString& text, const QStringList& leftOut);
    void ask(const QString& title, const QString& text, const QStringList& details, const QString& button);
    void chooseEndpoints(const std::vector<QlumOfferedEndpoint>& endpoints, const QString& problem);
    void takeRun(const QlumMeasurementRun& run);
    void takeSweep(const std::vector<QlumSweepPoint>& points, QlumSweepOver over);
    void showProgress();

    // ---- project
    void saveRun(QSettings& settings, const QlumMeasurementRun& run) const;
    [[nodiscard]] static QlumMeasurementRun restoredRun(const QSettings& settings);

    // ---- showing
    [[nodiscard]] int currentRow() const;
    void showRun();
    void showSamples(const QlumMeasurementRun& run);
    void listRuns();
    void removeRuns();
    void showServers();
    void showHeading();
    void markModified();

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    QlumViewState* m_state;
    QlumPerformanceWork* m_work;
    QlumMeasuredNodesModel* m_nodes;
    QlumRunModel* m_runs;
    QlumRunComparisonModel* m_figures;
    QlumTableFilter* m_sortedRuns;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QlumPerformancePanel* m_panel;
    QTabWidget* m_tabs = nullptr;
    QComboBox* m_compareWith = nullptr;
    QLabel* m_remarks = nullptr;
    QlumBarPlot* m_histogram = nullptr;
    QlumPlot* m_course = nullptr;
    QlumBarPlot* m_sweepPlot = nullptr;
    QLabel* m_sweepText = nullptr;
    QTableView* m_runsView = nullptr;
    QHash<unsigned int, QlumConnectionStatus> m_status;
    QTimer m_progressTimer;
    QStringList m_leftOut; ///< endpoints that could not be measured
    Asked m_asked;
    std::map<std::pair<unsigned int, UaNodeId>, std::vector<UaVariant>> m_arguments; ///< given for a method
    bool m_isLoading = false;
};
