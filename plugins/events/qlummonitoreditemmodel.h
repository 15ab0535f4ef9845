#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/events/qlumbrowsepath.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventpools.h>
#include <plugins/events/qlumeventsubscription.h>
#include <plugins/events/qlumeventwhere.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaeventfilter.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasubscriptioncallback.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QModelIndex>
#include <QObject>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <QVector>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// A notifier whose events a view receives.
struct QlumEventNodeMonitored
{
    /// How far it has come.
    enum State {
        Waiting, ///< for a connection, or for the answer of the server
        Watched,
        Refused ///< with stateText
    };

    unsigned int serverId = qlumNoServer;
    UaNodeId nodeId;
    QString name;
    QlumSelectClauses selectClauses;
    std::vector<UaNodeId> eventTypes; ///< those at which fields are ticked
    QlumEventConditions where;        ///< what is to be left out; empty for nothing
    bool isFilteredHere = false;      ///< by this program, since the server refuses to
    quint32 key = 0;                  ///< unique in the view, never used again
    OpcUa_UInt32 clientHandle = 0;    ///< of its item; 0 while it has none, and another with each filter
    State state = Waiting;
    OpcUa_StatusCode status = 0; ///< why it is refused
    bool isChanged = false;      ///< the item has another filter than this
    bool hasItem = false;        ///< with this filter or a former one
};

/// What a server says of the filter of a notifier.
struct QlumFilterAnswer
{
    quint32 key = 0; ///< of the notifier
    OpcUa_StatusCode status = OpcUa_Good;
    UaExtensionObject result; ///< of the filter, as the server sent it
};

/// The notifiers of a view with one subscription on each of their servers, and all that comes of it. Calls
/// are made by jobs; what the session calls is gathered on its threads and handed out on the GUI thread, to
/// which everything else belongs.
class QlumMonitoredItemModel : public QlumTableModel<QlumEventNodeMonitored>,
                               public UaClientSdk::UaSubscriptionCallback
{
    Q_OBJECT
public:
    enum Column { Name, Server, NodeId, StateText, ColumnCount };
    /// A notifier that is to be added.
    struct Wish
    {
        UaNodeId nodeId;
        QString name; ///< empty: it is read
    };
    using NodeState = QlumEventNodeMonitored::State;

    /// The pools are those of the plugin, which outlive the view.
    QlumMonitoredItemModel(QlumApplicationInterface& application, std::shared_ptr<QlumEventPools> pools,
                           QlumSessionServicesProvider services, QObject* parent = nullptr);
    ~QlumMonitoredItemModel() override;

    // ---- notifiers

    /// Those that are there already are left out.
    void addNodes(unsigned int serverId, const std::vector<Wish>& wishes);
    /// Removes rows, in any order, and deletes their items.
    void removeNodes(QVector<int> rows);
    /// Null for a key that is none.
    [[nodiscard]] const QlumEventNodeMonitored* node(quint32 key) const;
    [[nodiscard]] int rowOf(quint32 key) const;
    /// The servers that have notifiers here.
    [[nodiscard]] QSet<unsigned int> servers() const;
    /// Other fields for a notifier; sent by applyChanges().
    void setSelectClauses(quint32 key, const QlumSelectClauses& clauses,
                          const std::vector<UaNodeId>& eventTypes);
    /// Other conditions; sent by applyChanges(), unless this program is to look at them.
    void setWhere(quint32 key, const QlumEventConditions& where, bool isFilteredHere);
    /// Tells of a server whether an event type is another one or below it.
    using Derives = std::function<bool(unsigned int serverId, const UaNodeId& type, const UaNodeId& base)>;
    void setDerives(const Derives& derives) { m_derives = derives; }
    /// Sends the filters that have changed to the servers, and tries again what was refused or cancelled.
    void applyChanges();
    /// Whether there is any of that.
    [[nodiscard]] bool hasChanges() const;
    /// What a notifier's item selects.
    [[nodiscard]] UaEventFilter getEventFilter(const QlumEventNodeMonitored& node) const;
    /// The fields that the list of alarms needs and no notifier of a server has.
    [[nodiscard]] QStringList missingFields() const;

    // ---- what is asked of servers

    /// Has the server send its conditions again, in the background.
    void callRefresh(unsigned int serverId);
    /// Reads what the servers keep of that time; told by historyEvents() and historyEnded().
    void readEventHistory(const QDateTime& start, const QDateTime& end);
    void stopHistory();
    /// Runs on the thread of the server's jobs; for the calls of the view. Nothing of it arrives after the
    /// model has gone.
    void call(unsigned int serverId, const QString& text,
              const std::function<std::function<void()>(QlumSessionServices* services)>& work);

    // ---- servers

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaces);
    void sessionRemoved(unsigned int serverId);
    /// Whether calls can reach it.
    [[nodiscard]] bool isUp(unsigned int serverId) const;

    // ---- project

    void save(QSettings& settings) const;
    void load(QSettings& settings, const QMap<int, int>& serverIdMap);

    // ---- UaSubscriptionCallback, on threads of the sessions; handles are ids of servers

    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void notificationsMissing(OpcUa_UInt32 clientSubscriptionHandle, OpcUa_UInt32 previousSequenceNumber,
                              OpcUa_UInt32 newSequenceNumber) override;
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications&, UaDiagnosticInfos&) override {}
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

signals:
    /// In the order in which they came; never empty.
    void eventsReceived(const QlumEvents& events);
    /// A row has gone, with the key that it had.
    void nodeRemoved(quint32 key);
    /// What a server says of the filter of a notifier.
    void filterAnswered(const QlumFilterAnswer& answer);
    /// What a server says of being asked to refresh its conditions.
    void refreshAnswered(unsigned int serverId, const UaStatus& status);
    /// Some more of what readEventHistory() has found.
    void historyEvents(const QlumEvents& events);
    /// One node's history was read, or why not.
    void historyFailed(const QString& what, const QString& why);
    /// There is more than the settings let it read of one node.
    void historyCut(const QString& what);
    /// All of them.
    void historyEnded();
    /// Of one or all of the notifiers.
    void fieldsChanged();

protected:
    QVariant cell(const QlumEventNodeMonitored& node, int column, int role) const override;

private:
    /// What an item's events are made of.
    struct Item
    {
        quint32 key = 0;
        std::shared_ptr<const QlumFieldNames> names;
    };
    /// What waits to be handed out: messages, or a gap that is being filled.
    struct Portion
    {
        unsigned int serverId = 0;
        UaEventFieldLists events;
        quint64 gap = 0; ///< not 0: nothing behind it of that server goes out until it is filled
        bool isFilled = false;
        OpcUa_UInt32 position = 0; ///< events that went out
    };
    struct ServerState
    {
        std::shared_ptr<QlumEventSubscription> subscription;
        QlumConnectionStatus status = QlumConnectionStatus::Disconnected;
        bool isTold = false; ///< the status was told by the application
        int losses = 0;      ///< of subscriptions since the connection was made
    };
    struct HistoryRun;

    ServerState& server(unsigned int serverId);
    void createSubscription(unsigned int serverId);
    void createMonitoredItems(unsigned int serverId, bool isReconnected);
    void replaceSubscription(unsigned int serverId);
    [[nodiscard]] UaMonitoredItemCreateRequests createMonitoredItemsRequest(QlumEventNodeMonitored& node);
    using Wanted = std::function<bool(const QlumEventNodeMonitored& node)>;
    [[nodiscard]] QlumItemChanges takeChanges(unsigned int serverId, const Wanted& isWanted);
    [[nodiscard]] std::vector<OpcUa_UInt32> handlesOf(quint32 key) const;
    void sendItems(unsigned int serverId, const QString& text, const QlumItemChanges& changes,
                   const std::function<void(QlumJob&)>& work);
    void giveItemsUp(const std::vector<OpcUa_UInt32>& handles, bool wereSent, OpcUa_StatusCode why);
    void tellRefresh(QlumJob& job, unsigned int serverId, const UaStatus& status);
    void takeOutcomes(const QlumItemOutcomes& outcomes);
    void takeNames(const std::vector<std::pair<quint32, QString>>& names);
    void follow(unsigned int serverId, const NamespaceMap& namespaces);
    void resetItems(unsigned int serverId);
    void runLater(unsigned int serverId, const QString& text, std::function<void(QlumJob&)> work,
                  std::function<void(QlumWorkEnd)> ended = nullptr);

    void sltDrain();
    void wake();
    [[nodiscard]] bool takePortion(Portion& portion, OpcUa_UInt32 maximum);
    void makeEvents(Portion& portion, OpcUa_UInt32 count, QlumEvents& events);
    void republish(unsigned int serverId, quint64 gap, std::vector<OpcUa_UInt32> numbers);
    void fillGap(quint64 gap, std::vector<UaEventFieldLists> lists);
    void checkRefreshRequired(const QlumEvent& event);
    void subscriptionLost(unsigned int serverId);

    QlumApplicationInterface& m_application;
    const std::shared_ptr<QlumEventPools> m_pools;
    const QlumSessionServicesProvider m_services;
    std::map<unsigned int, ServerState> m_servers;
    QHash<OpcUa_UInt32, Item> m_items; ///< by client handle, those of former filters included
    quint32 m_lastKey = 0;
    OpcUa_UInt32 m_lastHandle = 0;
    Derives m_derives = [](unsigned int, const UaNodeId&, const UaNodeId&) { return false; };
    QSet<QByteArray> m_refreshIds; ///< of RefreshRequired events that were obeyed
    std::shared_ptr<HistoryRun> m_history;

    std::mutex m_mutex;
    std::deque<Portion> m_inbox; ///< guarded
    bool m_isWoken = false;      ///< guarded
    quint64 m_lastGap = 0;       ///< guarded
    QTimer m_drainTimer;
    std::shared_ptr<int> m_alive = std::make_shared<int>(0); ///< jobs ask whether the model is still there
};
