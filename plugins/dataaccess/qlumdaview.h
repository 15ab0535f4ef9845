#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_types.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaverdict.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/qlummessagebar.h>
#include <watching/qlumdadescriber.h>

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QMap>
#include <QModelIndex>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <map>
#include <memory>
#include <span>
#include <vector>

class QAction;
class QComboBox;
class QDragEnterEvent;
class QDropEvent;
class QHideEvent;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QPushButton;
class QShowEvent;
class QTabWidget;
class QTableView;
class QlumDaDelegate;
class QlumDaFilter;
class QlumDaPlot;
class QlumDaWatch;
class QlumElidedLabel;
class QlumVariableIntake;
class QlumViewHeading;
class QlumViewState;

/// The document that watches variables: a table of their values, with pages and commands of its parts.
class QlumDaView : public QWidget, public QlumDocumentWidgetInterface, public QlumDaHost
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// Its commands.
    enum Command {
        EditValue,
        OpenValue,
        AddParts,
        Plot,
        EndPlot,
        RowSettings,
        ViewSettings,
        AskAgain,
        ResetCounts,
        MoveUp,
        MoveDown,
        Remove
    };

    /// The application must outlive the view.
    QlumDaView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
               QlumMonitoringProvider monitoring, QWidget* parent = nullptr);
    ~QlumDaView() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Nodes that the user drops or another view sends: variables become rows, of all others the variables
    /// below are counted and the user is asked.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// The same: what was shown undecoded may be decoded now.
    void dataTypesLoaded(unsigned int serverId);
    /// The same: nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    /// What a double click does: shows a value that a document takes as one of its kind, else edits the cell.
    void openCell(const QModelIndex& index);
    /// Opens the editor of a cell when it is known what it has to know.
    void editCell(const QModelIndex& index);
    /// Writes a value to the node of a row; what comes of it is shown at the row.
    void write(quint32 key, const UaVariant& value);
    /// Changes the settings of these rows, or with none those of the view.
    void setSettings(const std::vector<quint32>& keys, const QlumDataSettings& settings);
    [[nodiscard]] QlumDaWatch* watch() const { return m_watch; }               ///< who has rows watched
    [[nodiscard]] QlumDaPlot* plot() const { return m_plot; }                  ///< the page with curves
    [[nodiscard]] QTableView* table() const { return m_table; }                ///< the rows on screen
    [[nodiscard]] QAction* command(Command id) const { return m_actions[id]; } ///< one of the commands

    // ---- for parts
    QlumApplicationInterface& application() const override { return m_application; }
    const QlumSessionServicesProvider& services() const override { return m_services; }
    const QlumMonitoringProvider& monitoring() const override { return m_monitoring; }
    QlumJobPool& pool() override { return *m_pool; }
    QlumDaModel& model() override { return *m_model; }
    QWidget* widget() override { return this; }
    std::vector<quint32> selectedKeys() const override;
    std::vector<quint32> shownKeys() const override;
    std::vector<quint32> addItems(std::vector<QlumDataItem> items) override;
    void resolveItems(std::vector<QlumDataItem> items) override;
    void addPage(QWidget* page, const QString& title) override;
    void showPage(QWidget* page) override;
    void addCommands(const QString& title, const QList<QAction*>& actions) override;
    void tell(const QlumMessage& message) override;
    void dismiss(const QString& topic) override;
    void markModified() override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    // ---- widgets
    [[nodiscard]] QlumVariableIntake* makeIntake();
    void makeTable();
    void showUsualColumns();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makeVerdictPage();
    [[nodiscard]] QWidget* makeStatusLine();
    void makeActions();
    void makeParts();
    void connectParts();
    void paintValues(const std::vector<quint32>& keys);
    void paintRows(int top, int bottom);
    void showEachSecond();
    void showTraffic();
    void showVerdict();
    void showHeading();
    void showGroups();
    void measureRoundTrip();
    [[nodiscard]] QlumDaVerdict judge(const QlumDataItem& item) const;
    [[nodiscard]] QlumDaVerdict judgedNow(const QlumDataItem& item) const;
    [[nodiscard]] quint32 currentKey() const;
    [[nodiscard]] QString serverName(unsigned int serverId) const;

    // ---- rows
    void addVariables(unsigned int serverId, const QlumToolNodes& nodes);
    void tellThere(const std::vector<QlumDataItem>& again);
    void describe(unsigned int serverId, const std::vector<quint32>& keys);
    void takeDescriptions(unsigned int serverId, const QlumDaDescriber::Portion& portion, int typesLoaded);
    void tellRefused(unsigned int serverId, int count, UaStatusCode why);
    void readRefused(unsigned int serverId);
    void tellWatchChanged(const std::vector<quint32>& keys);
    void tellServers();
    void nameNamespaces(std::vector<QlumDataItem>& items) const;
    void removeKeys(const std::vector<quint32>& keys);
    [[nodiscard]] std::vector<quint32> keysOf(unsigned int serverId, bool refusedOnly = false) const;
    [[nodiscard]] bool isConnected(unsigned int serverId) const;

    // ---- commands
    void openEditor(quint32 key, int column, const QlumValueContext& context);
    void openValueWindow(quint32 key, int column, const UaVariant& value, const QlumValueContext& context);
    void takeEntered(quint32 key, int column, const UaVariant& value);
    void askAgain(const std::vector<quint32>& keys);
    void openValues();
    void showValue(const QlumDataItem& item);
    void addParts();
    void askSettings(bool isOfView);
    void takeRemedy();

    // ---- project
    void storeRows(QSettings& settings) const;
    void restoreRows(QSettings& settings, const QMap<int, int>& serverIdMap);

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumViewState* m_state;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumDaModel* m_model;
    QlumDaFilter* m_filter;
    QlumDaWatch* m_watch;
    QlumDaDelegate* m_delegate;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QlumVariableIntake* m_intake;
    QTableView* m_table = nullptr;
    QTabWidget* m_pages = nullptr;
    QLineEdit* m_filterText = nullptr;
    QComboBox* m_show = nullptr;
    QComboBox* m_group = nullptr;
    QMenu* m_menu = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_verdictWord = nullptr;
    QLabel* m_verdictReason = nullptr;
    QPushButton* m_remedy = nullptr;
    QlumElidedLabel* m_traffic = nullptr;
    QlumDaPlot* m_plot = nullptr;
    QlumActionTable m_actions;
    QlumDaPart* m_newValues = nullptr;
    std::vector<std::unique_ptr<QlumDaPart>> m_parts;
    QTimer m_second;
    QTimer m_groups;  ///< rows are shown that were not before, or others are gone
    QTimer m_regroup; ///< rows have come, gone or got their paths
    int m_seconds = 0;
    QElapsedTimer m_sinceTraffic;             ///< nobody looks while the view is hidden
    quint64 m_notifications = 0;              ///< at the last look
    QHash<unsigned int, double> m_roundTrips; ///< ms
    QSet<unsigned int> m_measuring;
    mutable QHash<quint32, QlumDaVerdict> m_verdicts; ///< of rows that were looked at within the last second
    QHash<unsigned int, int> m_typesLoaded;           ///< how often, by server
    bool m_isLoading = false;
    bool m_hasGroups = false; ///< on screen
};
