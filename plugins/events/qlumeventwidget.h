#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/events/qlumalarmmodel.h>
#include <plugins/events/qlumconditioncalls.h>
#include <plugins/events/qlumconditiondialog.h>
#include <plugins/events/qlumdetailsmodel.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventfiltermodel.h>
#include <plugins/events/qlumeventmodel.h>
#include <plugins/events/qlumeventpools.h>
#include <plugins/events/qlumeventtypemodel.h>
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlummonitoreditemmodel.h>
#include <plugins/events/qlumwherepage.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlumviewstate.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

class QAction;
class QDateTimeEdit;
class QLabel;
class QPoint;
class QTabWidget;
class QToolBar;
class QTreeView;
class QlumMessageBar;

/// A document that receives events and alarms of notifiers of one or more servers.
class QlumEventWidget : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// The types are those of the plugin, which outlive the view as the application does.
    QlumEventWidget(QlumApplicationInterface& application, QlumEventTypes& types,
                    std::shared_ptr<QlumEventPools> pools, QlumSessionServicesProvider services,
                    QWidget* parent = nullptr);
    ~QlumEventWidget() override;

    /// Receives the events of these, too.
    void addNotifiers(std::span<const QlumToolNode> nodes);
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaces);
    void sessionRemoved(unsigned int serverId);

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    // ---- for tests, and whoever looks at what the view has
    [[nodiscard]] QlumMonitoredItemModel* items() const { return m_items; }
    [[nodiscard]] QlumEventModel* log() const { return m_log; }
    [[nodiscard]] QlumEventModel* history() const { return m_history; }
    [[nodiscard]] QlumAlarmModel* alarms() const { return m_alarms; }
    [[nodiscard]] QlumEventTypeModel* fields() const { return m_fields; }
    [[nodiscard]] QTreeView* alarmView() const { return m_alarmView; }
    [[nodiscard]] QList<QlumConditionDialog*> openDialogs() const;

public slots:
    /// Of the selected alarm, with a comment that is asked for.
    void sltAcknowledge();
    void sltConfirm();
    void sltAddComment();
    /// Of all alarms that are not, with one comment for all.
    void sltAcknowledgeAll();
    void sltConfirmAll();
    void sltNewEvents(const QlumEvents& events);
    void sltDialogFinished();

private slots:
    void sltApply();
    void sltReadTypes();
    void sltRemoveItems();
    void sltRefresh();
    void sltReadHistory();
    void sltNodeSelected();
    void sltTypesChanged(unsigned int serverId);
    void sltTypesFailed(unsigned int serverId, const QString& why);
    void sltFieldsEdited();
    void sltWhereEdited(const QlumEventConditions& conditions);
    void sltFilterAnswered(const QlumFilterAnswer& answer);
    void sltShowCounts();
    void sltPause(bool isPaused);
    void sltChooseColumns();
    void sltEventSelected();
    void sltTimedShelve();
    void sltShelveOnce();
    void sltUnshelve();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static constexpr int maximumHistory = 100000; ///< rows
    /// One of the three methods of a condition that take a comment.
    struct Method
    {
        OpcUa_UInt32 id;
        QString prompt;
        QString title;
        QString failure; ///< with %1 for the status
        QString failureTitle;
        QString purpose;
    };
    /// What one method is called for.
    struct Target
    {
        unsigned int serverId = qlumNoServer;
        UaNodeId conditionId;
        UaByteString eventId;
    };
    /// A condition that asks, and has no window yet.
    struct Question
    {
        unsigned int serverId = qlumNoServer;
        UaNodeId conditionId;
        QlumEvent event;
    };
    using ConditionKey = std::pair<unsigned int, UaNodeId>;

    void createActions();
    void createModels();
    QWidget* makeConfiguration();
    QWidget* makeTabs();
    QWidget* makeLogPage();
    QWidget* makeAlarmPage();
    QWidget* makeHistoryPage();
    QTreeView* makeTable(const char* name, const QString& title, QlumEventFilterModel* filter,
                         const QString& emptyText);
    void addFilterFields(QToolBar* bar, QlumEventFilterModel* filter);
    void notifiersAdded();
    void filterHere(unsigned int key);
    void followAlarm();
    void refreshAnswered(unsigned int serverId, const UaStatus& status);
    void updateActions();
    void updateOffline();
    void updateMissing();

    [[nodiscard]] static Method methodOf(OpcUa_UInt32 id);
    [[nodiscard]] int currentAlarm() const;
    void callCondition(const Method& method);
    void callAll(const Method& method, QlumField state, const QString& nothing, const QString& name);
    void changeCondition(OpcUa_UInt32 method, const QString& purpose);
    void shelve(const Target& target, QlumShelving how, double milliseconds);
    void quietCall(const Target& target, const QString& purpose,
                   const std::function<UaStatus(QlumSessionServices*)>& work);
    void callFailed(const Method& method, const UaStatus& status);
    [[nodiscard]] std::vector<unsigned int> selectedKeys() const;

    void takeDialogs(const QlumEvents& events);
    void askNext();
    void closeDialog(const ConditionKey& key);
    void showDetails(const QlumEvent* event);

    QlumApplicationInterface& m_application;
    QlumEventTypes& m_types;
    const QlumSessionServicesProvider m_services;
    QlumViewState m_state;
    QlumActionTable m_actions;
    QlumMonitoredItemModel* m_items;
    QlumEventModel* m_log;
    QlumEventModel* m_history;
    QlumAlarmModel* m_alarms;
    QlumDetailsModel* m_details;
    QlumEventTypeModel* m_fields;
    QlumEventFilterModel* m_logFilter;
    QlumEventFilterModel* m_historyFilter;
    QlumEventFilterModel* m_alarmFilter;
    QlumMessageBar* m_messages;
    QTimer m_countTimer;
    QTimer m_soundTimer;
    QTreeView* m_itemView = nullptr;
    QTreeView* m_fieldView = nullptr;
    QTreeView* m_logView = nullptr;
    QTreeView* m_historyView = nullptr;
    QTreeView* m_alarmView = nullptr;
    QTreeView* m_detailsView = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumWherePage* m_where = nullptr;
    QLabel* m_fieldState = nullptr;
    QLabel* m_offline = nullptr;
    QLabel* m_gapNote = nullptr;
    QLabel* m_missing = nullptr;
    QLabel* m_waiting = nullptr;
    QStringList m_historyFaults; ///< of the last time that it was read
    QDateTimeEdit* m_start = nullptr;
    QDateTimeEdit* m_end = nullptr;
    unsigned int m_shownServer = qlumNoServer; ///< whose field tree is shown
    std::map<ConditionKey, QPointer<QlumConditionDialog>> m_dialogs;
    std::deque<Question> m_questions;
    std::map<unsigned int, UaStatus> m_refreshFaults; ///< of servers that did not refresh
    UaByteString m_shownEvent;                        ///< of the alarm whose details are shown
    int m_detailsRequest = 0;                         ///< counts what showDetails() was asked for
    bool m_isLengthTold = false;                      ///< that there is more history than rows
};
