// What an event costs from the socket to the lists of the view, what a refresh of many conditions costs, and
// what it costs when all of them are let go: CPU time of this process, the server being another one with
// canned answers. The yardstick is a plain model of as many rows and columns in a plain view.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <bench/budgets.h>
#include <bench/responder.h>
#include <bench/subscriptionserver.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumbrowsepath.h>
#include <plugins/events/qlumeventmodel.h>
#include <plugins/events/qlumeventplugin.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/support/nodetable.h>
#include <tests/support/stubapplication.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractTableModel>
#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTreeView>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

constexpr OpcUa_UInt32 eventsOfMessage = 100;
constexpr auto messageInterval = std::chrono::milliseconds(100); // so a thousand events a second
const int messages = operations(50);
const OpcUa_UInt32 conditions = static_cast<OpcUa_UInt32>(operations(10'000));
constexpr OpcUa_UInt32 noisyConditions = 100; // of which the events are
constexpr int fieldsOfEvent = 20;
constexpr int maximumLog = 1000;
constexpr int width = 1200;
constexpr int height = 700;
constexpr qint64 limit = 60'000; // ms

// 60 us, 50 ms and 2 s where the plain model took 33 us a row, 4.5 ms a turn and 0.34 s for all conditions
constexpr double maximumEvent = 1.8;
constexpr double maximumTurn = 11.0;
constexpr double maximumRefresh = 5.9;
// of a condition that is let go, 60 us like any other event, where a row that comes in one plain view and one
// that goes in another took 70
constexpr double maximumRemoval = 0.86;

[[noreturn]] void give(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

void require(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status))
        give("no memory");
}

// ---- the server, in its own process

// One subscription with one item. Its first refresh begins the events, its second sends all conditions, its
// third lets all of them go.
class EventServer final : public SubscriptionServer
{
public:
    explicit EventServer(NodeTable& table)
        : SubscriptionServer(table, static_cast<double>(messageInterval.count()))
    {
    }

private:
    void create(const OpcUa_CreateMonitoredItemsRequest& asked,
                UaMonitoredItemCreateResults& results) override
    {
        m_item = asked.ItemsToCreate[0].RequestedParameters.ClientHandle;
        results[0].MonitoredItemId = 1;
        results[0].RevisedQueueSize = 10'000;
    }

    void called() override
    {
        if (++m_refreshes == 2)
            m_refreshed = 0;
        else if (m_refreshes == 3)
            m_removed = 0;
    }

    bool notify(OpcUa_ExtensionObject& notification) override
    {
        const bool refreshes = m_refreshed && *m_refreshed <= conditions;
        const bool removes = m_removed && *m_removed < conditions;
        if (!refreshes && !removes)
            std::this_thread::sleep_for(messageInterval);
        const bool isEvent = m_refreshes == 1 && m_sent < messages;
        if (!refreshes && !removes && !isEvent)
            return false;
        UaEventFieldLists events = refreshes ? refreshed() : removes ? removed() : happened();
        auto* list = static_cast<OpcUa_EventNotificationList*>(
            OpcUa_EncodeableObject_Create(&OpcUa_EventNotificationList_EncodeableType));
        events.detach(&list->NoOfEvents, &list->Events);
        OpcUa_ExtensionObject_AttachEncodeable(&notification, &OpcUa_EventNotificationList_EncodeableType,
                                               list);
        return true;
    }

    UaEventFieldLists happened()
    {
        ++m_sent;
        UaEventFieldLists events(eventsOfMessage);
        for (OpcUa_EventFieldList& event : events)
            fill(event, UaNodeId(OpcUaId_AlarmConditionType), m_event % noisyConditions);
        return events;
    }

    UaEventFieldLists refreshed()
    {
        const OpcUa_UInt32 first = *m_refreshed;
        const bool isBegin = first == 0, isEnd = first >= conditions;
        const OpcUa_UInt32 count =
            isEnd ? 1 : std::min(eventsOfMessage, conditions - first) + (isBegin ? 1 : 0);
        UaEventFieldLists events(count);
        OpcUa_UInt32 i = 0;
        if (isBegin)
            fill(events[i++], UaNodeId(OpcUaId_RefreshStartEventType), std::nullopt);
        if (isEnd)
            fill(events[i++], UaNodeId(OpcUaId_RefreshEndEventType), std::nullopt);
        for (; i < count; ++i)
            fill(events[i], UaNodeId(OpcUaId_AlarmConditionType), (*m_refreshed)++);
        if (isEnd)
            m_refreshed = conditions + 1;
        return events;
    }

    // The one that was shown last goes first, as a server may do.
    UaEventFieldLists removed()
    {
        UaEventFieldLists events(std::min(eventsOfMessage, conditions - *m_removed));
        for (OpcUa_EventFieldList& event : events)
            fill(event, UaNodeId(OpcUaId_AlarmConditionType), conditions - 1 - (*m_removed)++, false);
        return events;
    }

    void fill(OpcUa_EventFieldList& event, const UaNodeId& type, std::optional<OpcUa_UInt32> condition,
              bool isRetained = true)
    {
        ++m_event;
        event.ClientHandle = m_item;
        UaVariantArray fields(static_cast<OpcUa_UInt32>(fieldsOfEvent));
        const auto* number = reinterpret_cast<const OpcUa_Byte*>(&m_event);
        const UaDateTime now = UaDateTime::now();
        const UaLocalizedText text("en", ("Level of tank " + std::to_string(m_event) + " is high").c_str());
        const UaVariant values[] = {UaVariant(UaByteString(static_cast<OpcUa_Int32>(sizeof m_event), number)),
                                    UaVariant(type),
                                    UaVariant(UaNodeId("Tank", 2)),
                                    UaVariant(UaString("Tank")),
                                    UaVariant(now),
                                    UaVariant(now),
                                    UaVariant(),
                                    UaVariant(text),
                                    UaVariant(static_cast<OpcUa_UInt16>(1 + m_event % 1000)),
                                    condition ? UaVariant(UaNodeId(*condition + 1, 2)) : UaVariant(),
                                    UaVariant(UaString("Level")),
                                    UaVariant(UaNodeId()),
                                    UaVariant(isRetained),
                                    UaVariant(m_event % 2 == 0),
                                    UaVariant(false),
                                    UaVariant(UaLocalizedText("en", "Active")),
                                    UaVariant(true),
                                    UaVariant(UaLocalizedText("en", "High")),
                                    UaVariant(false),
                                    UaVariant(text)};
        static_assert(std::size(values) == fieldsOfEvent);
        for (OpcUa_UInt32 i = 0; i < fields.length(); ++i)
            require(values[i].copyTo(&fields[i]));
        fields.detach(&event.NoOfEventFields, &event.EventFields);
    }

    OpcUa_UInt32 m_item = 0;
    int m_refreshes = 0;
    int m_sent = 0;
    std::optional<OpcUa_UInt32> m_refreshed; // conditions that the refresh under way has sent
    std::optional<OpcUa_UInt32> m_removed;   // conditions that have been let go
    OpcUa_UInt32 m_event = 0;
};

// ---- the window

double threadCpu()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

// The longest turn of the event loop, which is what input would have to wait for; us of CPU.
double runUntil(const std::function<bool()>& isDone)
{
    QElapsedTimer clock;
    clock.start();
    double longest = 0;
    while (!isDone()) {
        if (clock.elapsed() > limit)
            give("it does not come");
        const double begun = threadCpu();
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, threadCpu() - begun);
    }
    return longest;
}

class PlainModel : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex& = {}) const override { return static_cast<int>(m_rows.size()); }
    int columnCount(const QModelIndex& = {}) const override { return QlumEventModel::ColumnCount; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole
                   ? QVariant(m_rows[static_cast<std::size_t>(index.row())].at(index.column()))
                   : QVariant();
    }
    void append(int count)
    {
        if (const int surplus = rowCount() + count - maximumLog; surplus > 0 && m_isBounded) {
            beginRemoveRows({}, 0, surplus - 1);
            m_rows.erase(m_rows.begin(), m_rows.begin() + surplus);
            endRemoveRows();
        }
        beginInsertRows({}, rowCount(), rowCount() + count - 1);
        for (int i = 0; i < count; ++i) {
            const QString number = QString::number(++m_last);
            m_rows.push_back({QStringLiteral("AlarmConditionType"),
                              QStringLiteral("Level of tank ") + number + QStringLiteral(" is high"),
                              QStringLiteral("Tank"), QStringLiteral("2026-11-22 12:00:00.000"), number,
                              QStringLiteral("Plc/Server")});
        }
        endInsertRows();
    }
    void removeLast(int count)
    {
        beginRemoveRows({}, rowCount() - count, rowCount() - 1);
        m_rows.erase(m_rows.end() - count, m_rows.end());
        endRemoveRows();
    }
    void clear(bool isBounded)
    {
        beginResetModel();
        m_rows.clear();
        endResetModel();
        m_isBounded = isBounded;
    }

private:
    std::deque<QStringList> m_rows;
    int m_last = 0;
    bool m_isBounded = true;
};

struct Figures
{
    double event = 0;   // us
    double turn = 0;    // us
    double refresh = 0; // us
    double removal = 0; // us for a condition
};

// As many rows in as many portions, each painted.
Figures measureBare()
{
    PlainModel model;
    QTreeView view;
    view.setRootIsDecorated(false);
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(width, height);
    view.show();
    Figures figures;
    const auto add = [&](int count) {
        const double begun = threadCpu();
        model.append(count);
        view.scrollToBottom();
        QCoreApplication::processEvents();
        figures.turn = std::max(figures.turn, threadCpu() - begun);
    };
    constexpr int portion = eventsOfMessage;
    add(portion); // the first one makes fonts and styles
    figures.turn = 0;
    double begun = processCpu();
    for (int i = 0; i < messages; ++i)
        add(portion);
    figures.event = (processCpu() - begun) / messages / portion;
    const double turn = figures.turn;
    model.clear(false);
    begun = processCpu();
    for (OpcUa_UInt32 sent = 0; sent < conditions; sent += eventsOfMessage)
        add(portion);
    figures.refresh = processCpu() - begun;
    PlainModel log; // an event that lets a condition go is logged, too
    view.setModel(&log);
    QTreeView alarms;
    alarms.setUniformRowHeights(true);
    alarms.setModel(&model);
    alarms.resize(width, height);
    alarms.show();
    QCoreApplication::processEvents();
    begun = processCpu();
    for (OpcUa_UInt32 sent = 0; sent < conditions; sent += eventsOfMessage) {
        log.append(portion);
        view.scrollToBottom();
        model.removeLast(portion);
        QCoreApplication::processEvents();
    }
    figures.removal = (processCpu() - begun) / conditions;
    figures.turn = turn;
    return figures;
}

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

Figures measure(QlumEventWidget& view, QlumEventPlugin& plugin)
{
    plugin.sessionStatusChanged(1, QlumConnectionStatus::Connected, {});
    const qint64 events = static_cast<qint64>(messages) * eventsOfMessage;
    const qint64 warm = events / 10; // with the lists full and all widgets painted
    view.addNotifiers(std::vector<QlumToolNode>{
        {1, UaNodeId(OpcUaId_Server), OpcUa_NodeClass_Object, {}, QStringLiteral("Server")}});
    static_cast<void>(runUntil([&] { return view.log()->count() >= warm; }));
    Figures figures;
    const qint64 before = view.log()->count();
    double begun = processCpu();
    figures.turn = runUntil([&] { return view.log()->count() >= events; });
    figures.event = (processCpu() - begun) / static_cast<double>(events - before);
    if (view.log()->rowCount() > maximumLog)
        give("the log has more rows than its setting allows");
    begun = processCpu();
    view.findChild<QAction*>(QStringLiteral("conditionRefresh"))->trigger();
    static_cast<void>(runUntil([&] { // the end of the refresh takes away what was not sent again
        return view.log()->count() >= events + conditions + 2 &&
               view.alarms()->rowCount() == static_cast<int>(conditions);
    }));
    figures.refresh = processCpu() - begun;
    if (view.log()->count() != events + conditions + 2)
        give("events are missing from the count");
    begun = processCpu();
    view.findChild<QAction*>(QStringLiteral("conditionRefresh"))->trigger(); // the server's sign to begin
    static_cast<void>(runUntil([&] {
        return view.log()->count() >= events + 2 * conditions + 2 && view.alarms()->rowCount() == 0;
    }));
    figures.removal = (processCpu() - begun) / conditions;
    return figures;
}

void tell(const Figures& ours, const Figures& bare)
{
    std::printf(
        "an event takes %.1f us of the process, a bare row %.1f us; the longest turn %.1f ms, bare %.1f "
        "ms; %u conditions refreshed in %.0f ms, bare rows %.0f ms\n",
        ours.event, bare.event, ours.turn / 1e3, bare.turn / 1e3, conditions, ours.refresh / 1e3,
        bare.refresh / 1e3);
    printRatio("event_to_bare_row", ours.event, bare.event, maximumEvent);
    printRatio("event_longest_turn_to_bare", ours.turn, bare.turn, maximumTurn);
    std::printf("a condition that is let go takes %.1f us, a bare row that comes and one that goes %.1f us\n",
                ours.removal, bare.removal);
    printRatio("condition_removal_to_bare_rows", ours.removal, bare.removal, maximumRemoval);
    printRatio("condition_refresh_to_bare_rows", ours.refresh, bare.refresh, maximumRefresh);
}

void run(const Responder& responder)
{
    StubApplication application;
    application.settings["EventsPlugin.MaxEventLogEntries"] = maximumLog;
    application.settings["EventsPlugin.PublishingInterval"] = 100.0;
    QuietCallback callback;
    const auto session = std::make_shared<UaSession>();
    const UaStatus connected = session->connect(UaString(responder.url(false).c_str()), SessionConnectInfo(),
                                                SessionSecurityInfo(), &callback);
    if (connected.isBad())
        give("no connection");
    const std::shared_ptr<QlumSessionServices> services = qlumServicesOf(session);
    {
        QlumEventPlugin plugin([&](unsigned int) { return services; });
        plugin.init(&application);
        std::unique_ptr<QlumEventWidget> view(
            qobject_cast<QlumEventWidget*>(plugin.createDocument(QStringLiteral("Event View"))));
        view->resize(width, height);
        view->show();
        const Figures bare = measureBare();
        tell(measure(*view, plugin), bare);
        plugin.sessionRemoved(1);
        view.reset();
        plugin.shutdown();
    }
    static_cast<void>(session->disconnect(ServiceSettings(), true));
}

} // namespace

int main(int argc, char** argv)
{
    NodeTable table;
    table.object(UaNodeId(OpcUaId_Server), "Server", UaNodeId());
    EventServer server(table);
    const Responder responder(makeIdentity("server"), makeIdentity("client"), opcua::Bytes(32, 5),
                              [&server](const opcua::Bytes& body) { return server.answer(body); });
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qtApplication(argc, argv);
    if (UaPlatformLayer::init() != 0)
        return 1;
    run(responder);
    UaPlatformLayer::cleanup();
    return 0;
}
