#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/datalogger/qlumloggeritem.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <span>
#include <vector>

class QDragEnterEvent;
class QDropEvent;
class QLineEdit;
class QTableView;
class QlumLoggerModel;
class QlumLoggerPanel;
class QlumLoggerSession;
class QlumTableFilter;
class QlumVariableIntake;
class QlumViewHeading;
class QlumViewState;

/// The document that records values in files.
class QlumLoggerView : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// Its commands.
    enum Command {
        StartStop,
        Setup,
        AddNote,
        OpenRecording,
        ShowRecording,
        StartItems,
        StopItems,
        ItemSettings,
        ViewSettings,
        AskAgain,
        Remove
    };

    /// The application must outlive the view.
    QlumLoggerView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                   QlumMonitoringProvider monitoring, QWidget* parent = nullptr);
    ~QlumLoggerView() override;

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Nodes that the user drops or another view sends.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// What the application tells its plugins.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// The same.
    void sessionRemoved(unsigned int serverId);

    void setSetup(const QlumLoggerSetup& setup);                               ///< for the next start
    [[nodiscard]] const QlumLoggerSetup& setup() const { return m_setup; }     ///< of the next start
    [[nodiscard]] QlumLoggerSession* session() const { return m_session; }     ///< who records
    [[nodiscard]] QlumLoggerModel* model() const { return m_model; }           ///< the items
    [[nodiscard]] QAction* command(Command id) const { return m_actions[id]; } ///< one of the commands

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] QlumVariableIntake* makeIntake();
    void makeTable();
    void makeActions();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] std::vector<quint32> selectedKeys() const;
    void addVariables(unsigned int serverId, const QlumToolNodes& nodes);
    void addItems(std::vector<QlumLoggerItem> items);
    /// True when it is asked; recording begins then, if it runs.
    [[nodiscard]] bool describe(unsigned int serverId, const std::vector<quint32>& keys);
    [[nodiscard]] bool isConnected(unsigned int serverId) const;
    void placeNamespaces(unsigned int serverId);
    void tellServers();
    void showCommands();
    void showEachSecond();
    void startOrStop();
    void askSetup();
    void askNote();
    void askRecording();
    void openRecording(const QString& path);
    void askSettings(const std::vector<quint32>& keys);
    void switchItems(const std::vector<quint32>& keys, bool isOn);
    void removeItems(const std::vector<quint32>& keys);
    void storeItems(QSettings& settings) const;
    [[nodiscard]] std::vector<QlumLoggerItem> restoredItems(QSettings& settings,
                                                            const QMap<int, int>& serverIdMap) const;
    void markModified();

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    QlumViewState* m_state;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumLoggerModel* m_model;
    QlumTableFilter* m_filter;
    QlumLoggerSession* m_session;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QlumVariableIntake* m_intake;
    QlumLoggerPanel* m_panel;
    QTableView* m_table = nullptr;
    QlumActionTable m_actions;
    QlumLoggerSetup m_setup;
    QMap<unsigned int, QlumConnectionStatus> m_status;
    QTimer m_second;
    bool m_isLoading = false;
    bool m_hadTrouble = false;
};
