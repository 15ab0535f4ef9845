// What events cost from the session's callback to the rows of an event view, what a refresh of many
// conditions costs, and in how many calls a field tree is read; each against a bare loop that does the least
// of the same.
#include <app/api/qlumtext.h>
#include <bench/budgets.h>
#include <opcua/opcua_attributes.h>
#include <plugins/events/qlumeventplugin.h>
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlumeventwidget.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractTableModel>
#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QModelIndex>
#include <QString>
#include <QTreeView>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr int fieldsOfAnEvent = 20;
constexpr int eventsOfAMessage = 100;
const int eventsOfARound = operations(10000);
const int conditions = operations(10000);
const int rounds = repetitions(5);
// of the bare loops, which took 6.0 us an event and 11 ms for all conditions where the limits are 60 us and 2
// s
constexpr double eventLimit = 10.0;
constexpr double refreshLimit = 180.0;
constexpr double longestTurn = 50.0; // ms until input has its turn
constexpr OpcUa_UInt32 moreTypes = 500;

const char* const names[fieldsOfAnEvent] = {"EventId",
                                            "EventType",
                                            "SourceNode",
                                            "SourceName",
                                            "Time",
                                            "ReceiveTime",
                                            "LocalTime",
                                            "Message",
                                            "Severity",
                                            "",
                                            "ConditionName",
                                            "BranchId",
                                            "Retain",
                                            "AckedState/Id",
                                            "ConfirmedState/Id",
                                            "ActiveState",
                                            "ActiveState/Id",
                                            "ActiveState/EffectiveDisplayName",
                                            "Prompt",
                                            "DefaultResponse"};

QlumSelectClauses clauses()
{
    QlumSelectClauses list;
    for (const char* const name : names)
        list.push_back(
            {UaNodeId(2041),
             BrowsePathList::fromString(*name ? QLatin1String(name) + QLatin1Char('/') : QString()), false});
    return list;
}

void put(UaVariantArray& fields, OpcUa_UInt32 index, const UaVariant& value)
{
    if (OpcUa_IsBad(value.copyTo(&fields[index])))
        std::abort();
}

// Conditions 1 to count; 0: an event without.
UaEventFieldLists makeEvents(OpcUa_UInt32 count, OpcUa_UInt32 firstCondition, OpcUa_UInt32 type = 2915)
{
    UaEventFieldLists list(count);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        const std::string text = "Temperature of boiler " + std::to_string(i) + " is too high";
        UaVariantArray fields(static_cast<OpcUa_UInt32>(fieldsOfAnEvent));
        const std::string id = "event number " + std::to_string(i);
        put(fields, 0,
            UaVariant(UaByteString(static_cast<OpcUa_Int32>(id.size()),
                                   reinterpret_cast<const OpcUa_Byte*>(id.data()))));
        put(fields, 1, UaVariant(UaNodeId(type)));
        put(fields, 2, UaVariant(UaNodeId(i, 2)));
        put(fields, 3, UaVariant(UaString("Boiler")));
        put(fields, 4, UaVariant(UaDateTime::now()));
        put(fields, 5, UaVariant(UaDateTime::now()));
        put(fields, 7, UaVariant(UaLocalizedText(UaString("en"), UaString(text.c_str()))));
        put(fields, 8, UaVariant(OpcUa_UInt16(i % 1000)));
        if (firstCondition != 0) {
            put(fields, 9, UaVariant(UaNodeId(firstCondition + i, 2)));
            put(fields, 10, UaVariant(UaString("High")));
            for (const OpcUa_UInt32 flag : {12u, 13u, 14u, 16u})
                put(fields, flag, UaVariant(flag == 12 || flag == 16));
        }
        list[i].ClientHandle = 1;
        fields.detach(&list[i].NoOfEventFields, &list[i].EventFields);
    }
    return list;
}

// The least that shows events: rows of texts in a plain model of Qt.
class BareModel : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex&) const override { return static_cast<int>(m_rows.size()); }
    int columnCount(const QModelIndex&) const override { return 6; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(m_rows[static_cast<std::size_t>(index.row())]
                                                        [static_cast<std::size_t>(index.column())])
                                       : QVariant();
    }
    void take(const UaEventFieldLists& events)
    {
        const int first = static_cast<int>(m_rows.size());
        beginInsertRows({}, first, first + static_cast<int>(events.length()) - 1);
        for (const OpcUa_EventFieldList& event : events) {
            std::array<QString, 6> row;
            int column = 0;
            for (const int field : {1, 7, 3, 4, 8, 2})
                row[static_cast<std::size_t>(column++)] =
                    toQString(UaVariant(event.EventFields[field]).toString());
            m_rows.push_back(std::move(row));
        }
        endInsertRows();
    }

private:
    std::deque<std::array<QString, 6>> m_rows;
};

double bareLoop(const UaEventFieldLists& message, int messages)
{
    BareModel model;
    const double before = processCpu();
    for (int i = 0; i < messages; ++i)
        model.take(UaEventFieldLists(message));
    return processCpu() - before;
}

class Bench
{
public:
    Bench()
    {
        m_plugin.init(&m_application);
        m_view.reset(qobject_cast<QlumEventWidget*>(m_plugin.createDocument("Event View")));
        m_view->resize(1200, 800);
        m_view->show();
        m_view->addNotifiers(
            std::vector<QlumToolNode>{{1, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"}});
        m_view->items()->setSelectClauses(m_view->items()->rowAt(0).key, clauses(), {});
        m_view->items()->applyChanges();
        m_handle = m_view->items()->rowAt(0).clientHandle;
        if (m_handle == 0)
            std::abort();
    }
    ~Bench()
    {
        m_view.reset();
        m_plugin.shutdown();
    }

    // us of CPU for an event; turn: the longest that the window was not asked, in ms
    double events(const UaEventFieldLists& message, double& turn)
    {
        const qint64 wanted = m_view->log()->count() + eventsOfARound;
        const double before = processCpu();
        for (int sent = 0; sent < eventsOfARound; sent += eventsOfAMessage)
            send(UaEventFieldLists(message));
        run([&] { return m_view->log()->count() >= wanted; }, turn);
        return (processCpu() - before) / eventsOfARound;
    }
    // us of CPU until all conditions are listed
    double refresh(const UaEventFieldLists& all)
    {
        double turn = 0;
        const double before = processCpu();
        send(makeEvents(1, 0, 2787));
        send(UaEventFieldLists(all));
        send(makeEvents(1, 0, 2788));
        const qint64 wanted = m_view->log()->count() + all.length() + 2;
        run([&] { return m_view->log()->count() >= wanted; }, turn);
        const double used = processCpu() - before;
        return m_view->alarms()->rowCount() == static_cast<int>(all.length()) ? used : 0;
    }

private:
    void send(UaEventFieldLists events)
    {
        for (OpcUa_EventFieldList& event : events)
            event.ClientHandle = m_handle;
        m_view->items()->newEvents(1, events);
    }
    template <typename Done>
    static void run(Done&& done, double& turn)
    {
        QElapsedTimer limit;
        limit.start();
        while (!done() && limit.elapsed() < 60000) {
            QElapsedTimer one;
            one.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            turn = std::max(turn, static_cast<double>(one.nsecsElapsed()) / 1e6);
        }
    }

    StubApplication m_application;
    std::shared_ptr<TableServices> m_server = std::make_shared<TableServices>();
    QlumEventPlugin m_plugin{[this](unsigned int) { return m_server; }};
    std::unique_ptr<QlumEventWidget> m_view;
    OpcUa_UInt32 m_handle = 0;
};

void measureTree()
{
    const auto server = std::make_shared<TableServices>();
    const auto type = [&](OpcUa_UInt32 id, OpcUa_UInt32 parent) {
        server->table.object(UaNodeId(id), "Type", UaNodeId());
        server->table.setAttribute(
            UaNodeId(id), OpcUa_Attributes_NodeClass,
            UaDataValue(UaVariant(static_cast<OpcUa_Int32>(OpcUa_NodeClass_ObjectType))));
        if (parent != 0)
            server->table.reference(UaNodeId(parent), UaNodeId(45), UaNodeId(id));
    };
    type(2041, 0);
    type(2782, 2041);
    type(2052, 2041);
    for (OpcUa_UInt32 i = 0; i < moreTypes; ++i)
        type(10000 + i, i < 10 ? 2041 : 10000 + i / 10);
    StubApplication application;
    QlumEventTypes types([&](unsigned int) { return server; });
    types.request(1);
    QElapsedTimer limit;
    limit.start();
    while (!types.tree(1) && limit.elapsed() < 30000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    printBudget("event_tree_calls_per_type", server->calls(NodeTable::Browse) / (moreTypes + 3.0), 0.1,
                types.tree(1) != nullptr);
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const UaEventFieldLists message = makeEvents(eventsOfAMessage, 0);
    const UaEventFieldLists all = makeEvents(static_cast<OpcUa_UInt32>(conditions), 1);
    std::vector<double> bare, events, bareAll, refreshes;
    double turn = 0;
    {
        Bench bench;
        for (int round = 0; round < rounds; ++round) {
            bare.push_back(bareLoop(message, eventsOfARound / eventsOfAMessage) / eventsOfARound);
            events.push_back(bench.events(message, turn));
        }
    }
    {
        Bench bench;
        for (int round = 0; round < rounds; ++round) {
            bareAll.push_back(bareLoop(all, 1));
            refreshes.push_back(bench.refresh(all));
        }
    }
    std::printf("an event of %d fields: bare %.2f us, view %.2f us; longest turn %.1f ms; refresh of %d "
                "conditions: bare %.1f ms, view %.1f ms\n",
                fieldsOfAnEvent, median(bare), median(events), turn, conditions, median(bareAll) / 1e3,
                median(refreshes) / 1e3);
    printRatio("events_view_to_plain_model", median(events), median(bare), eventLimit);
    printRatio("events_refresh_to_plain_model", median(refreshes), median(bareAll), refreshLimit);
    printBudget("events_longest_turn_ms", turn, longestTurn, turn > 0);
    measureTree();
    return 0;
}
