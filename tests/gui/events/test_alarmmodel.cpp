// Which conditions are listed, whatever servers send in whatever order.
#include <plugins/events/qlumalarmmodel.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventmodel.h>
#include <plugins/events/qlumeventtable.h>
#include <plugins/events/qlumeventtypes.h>
#include <tests/gui/events/eventtest.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {
class Alarms : public testing::Test
{
protected:
    // Condition names with branch and marks, in the order of rows.
    std::string list() const
    {
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            const QlumEvent& event = model.rowAt(row);
            QString text = model.index(row, QlumAlarmModel::ConditionName).data().toString();
            if (!event.branchId().isNull())
                text += "/" + toQString(event.branchId().identifierText());
            rows.append(text + (event.isStale ? "?" : ""));
        }
        return rows.join(' ').toStdString();
    }
    void send(const QlumEvents& events) { model.sltNewEvents(events); }

    EventApplication application;
    QlumAlarmModel model{application};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(Alarms, HaveOneRowForEachBranchAndAreUpdatedInPlace)
{
    const EventValues branch{{"BranchId", UaVariant(UaNodeId(9, 2))}};
    send({makeAlarm(1), makeAlarm(2), makeAlarm(1, branch), makeAlarm(1, {}, 2)});
    EXPECT_EQ(list(), "1 2 1/9 1");
    send({makeAlarm(2, {{"AckedState/Id", UaVariant(true)}}), makeAlarm(1), makeAlarm(1)}); // told twice
    EXPECT_EQ(list(), "1 2 1/9 1");
    EXPECT_EQ(model.index(1, QlumAlarmModel::AcknowledgedState).data(), "True");
    send({makeAlarm(1, {{"Retain", UaVariant(false)}})}); // a null branch is no other one
    EXPECT_EQ(list(), "2 1/9 1");
    EXPECT_EQ(model.projectServerId(2), 2u);
    EXPECT_EQ(model.conditionNodeId(0), UaNodeId(2, 2));
    // comes and goes within one batch, and comes again
    send({makeAlarm(7), makeAlarm(7, {{"Retain", UaVariant(false)}}), makeAlarm(8), makeAlarm(7)});
    EXPECT_EQ(list(), "2 1/9 1 8 7");
}

TEST_F(Alarms, KeepWhatDoesNotSayThatItMayGo)
{
    const UaVariant null;
    send({makeAlarm(1, {{"Retain", null}}), makeAlarm(2, {{"Retain", UaVariant(UaString("no"))}}),
          makeAlarm(3, {{"ConditionId", null}}), makeAlarm(4, {{"ConditionId", UaVariant(UaString("x"))}}),
          makeAlarm(5, {{"EventId", null}, {"Severity", UaVariant(OpcUa_UInt16(65535))}}), makeSimple(2041)});
    EXPECT_EQ(list(), "1 2 5");
    EXPECT_TRUE(model.eventId(2).isNull());
    EXPECT_EQ(model.index(2, QlumAlarmModel::Severity).data().toInt(), 65535);
}

TEST_F(Alarms, OfARefreshReplaceWhatWasThere)
{
    send({makeAlarm(1), makeAlarm(2), makeAlarm(3, {}, 2)});
    send({makeSimple(refreshStart)});
    EXPECT_EQ(list(), "1? 2? 3");
    send({makeAlarm(2), makeAlarm(4)});
    EXPECT_EQ(list(), "1? 2 3 4");
    send({makeSimple(refreshStart)}); // again, before the first has ended
    EXPECT_EQ(list(), "1? 2? 3 4?");
    send({makeAlarm(2), makeSimple(refreshEnd)});
    EXPECT_EQ(list(), "2 3");
    send({makeSimple(refreshStart), makeSimple(refreshEnd)}); // delivers nothing
    EXPECT_EQ(list(), "3");
    send({makeSimple(refreshStart, 2)}); // never ends: what was there stays, marked
    EXPECT_EQ(list(), "3?");
    send({makeSimple(refreshStart, 2), makeAlarm(3, {}, 2), makeSimple(refreshEnd, 2)});
    EXPECT_EQ(list(), "3");
}

TEST_F(Alarms, OfTwoNotifiersSurviveEachOthersRefresh)
{
    const auto of = [](OpcUa_UInt32 condition, quint32 notifier) {
        return makeAlarm(condition, {}, 1, notifier);
    };
    // one after the other
    const QlumEvents refresh{makeSimple(refreshStart, 1, 1), of(1, 1), makeSimple(refreshEnd, 1, 1),
                             makeSimple(refreshStart, 1, 2), of(2, 2), makeSimple(refreshEnd, 1, 2)};
    send(refresh);
    EXPECT_EQ(list(), "1 2");
    send(refresh);
    EXPECT_EQ(list(), "1 2");
    // interleaved, and the first condition is gone
    send({makeSimple(refreshStart, 1, 1), makeSimple(refreshStart, 1, 2), of(2, 2),
          makeSimple(refreshEnd, 1, 1), makeSimple(refreshEnd, 1, 2)});
    EXPECT_EQ(list(), "2");
    // a third one that is refreshed through the first
    send({of(3, 3), makeSimple(refreshStart, 1, 1)});
    EXPECT_EQ(list(), "2 3?");
    send({makeSimple(refreshEnd, 1, 1)});
    EXPECT_EQ(list(), "2");
    send({of(5, 1), of(5, 2)});
    model.sltRemoveItem(2);
    EXPECT_EQ(list(), "5"); // the other notifier still reports it
}

TEST_F(Alarms, ThatAreNotRetainedAreShownWhenTheUserWantsThem)
{
    send({makeAlarm(1), makeAlarm(2)});
    send({makeAlarm(1, {{"Retain", UaVariant(false)}})});
    EXPECT_EQ(list(), "2");
    model.sltShowRetainIfFalse(true);
    EXPECT_EQ(list(), "2 1");
    send({makeAlarm(2, {{"Retain", UaVariant(false)}})});
    EXPECT_EQ(list(), "2 1");
    model.sltShowRetainIfFalse(false);
    EXPECT_EQ(list(), "");
    model.sltShowRetainIfFalse(true);
    model.sessionRemoved(1);
    EXPECT_EQ(list(), "");
}

TEST_F(Alarms, AFloodOfThoseThatEndLeavesTheOthersInTheirPlaces)
{
    constexpr OpcUa_UInt32 count = 700;
    const EventValues over{{"Retain", UaVariant(false)}};
    QlumEvents all, ends;
    QStringList left;
    for (OpcUa_UInt32 i = 1; i <= count; ++i) {
        all.push_back(makeAlarm(i));
        if (i % 7 == 0)
            left.append(QString::number(i));
        else
            ends.push_back(makeAlarm(i, over));
    }
    send(all);
    // one flaps within the batch, and is there at its end; another is gone at its end
    ends.push_back(makeAlarm(3));
    ends.push_back(makeAlarm(14, over));
    ends.push_back(makeAlarm(14));
    ends.push_back(makeAlarm(14, over));
    left.removeAll("14");
    left.append("3"); // as one that is new
    send(ends);
    EXPECT_EQ(list(), left.join(' ').toStdString());
    send({makeAlarm(7, {{"AckedState/Id", UaVariant(true)}}), makeAlarm(693, over)}); // found where they are
    left.removeAll("693");
    EXPECT_EQ(list(), left.join(' ').toStdString());
    EXPECT_EQ(model.index(0, QlumAlarmModel::AcknowledgedState).data(), "True");
}

TEST_F(Alarms, ThatAreNotRetainedAreHiddenAgainHoweverManyThereWere)
{
    constexpr OpcUa_UInt32 count = 10050; // more than are kept for those who ask later
    QlumEvents ends;
    for (OpcUa_UInt32 i = 1; i <= count; ++i)
        ends.push_back(makeAlarm(i, {{"Retain", UaVariant(false)}}));
    ends.push_back(makeAlarm(count + 1));
    model.sltShowRetainIfFalse(true);
    send(ends);
    EXPECT_EQ(model.rowCount(), static_cast<int>(count) + 1);
    model.sltShowRetainIfFalse(false);
    EXPECT_EQ(list(), std::to_string(count + 1));
}

TEST_F(Alarms, OfAServerThatIsAwaySayThatTheyAreOld)
{
    send({makeAlarm(1), makeAlarm(2, {}, 2)});
    model.setOffline(1, QDateTime::currentDateTime());
    const auto note = [this](int row) {
        return model.index(row, QlumAlarmModel::Message).data(Qt::AccessibleDescriptionRole).toString();
    };
    EXPECT_EQ(note(0), "no connection");
    EXPECT_EQ(note(1), "");
    EXPECT_EQ(model.rowCount(), 2);
    model.setOffline(1, QDateTime());
    EXPECT_EQ(note(0), "not refreshed") << "the server may refuse to tell what has become of it";
    send({makeAlarm(1)});
    EXPECT_EQ(note(0), "");
}

TEST_F(Alarms, ShowWhatTheServerSaysAsPlainText)
{
    EventValues values{{"Message", textVariant("<b>hot</b>\nand more")},
                       {"SourceName", UaVariant(UaString("Boiler"))},
                       {"ActiveState", textVariant("Active")},
                       {"ConfirmedState/Id", UaVariant(true)}};
    send({makeAlarm(1, values)});
    values["ActiveState/EffectiveDisplayName"] = textVariant("High | Shelved");
    values["Message"] = UaVariant(UaString(std::string(1 << 20, 'x').c_str())); // wrong type, and a megabyte
    values["Time"] = UaVariant(OpcUa_Int32(5));
    send({makeAlarm(2, values)});
    EXPECT_EQ(modelText(model).substr(0, 61),
              "1 | <b>hot</b> and more | Boiler | 500 | Plc1/Boiler | Active");
    EXPECT_EQ(model.index(1, QlumAlarmModel::Active).data(), "High | Shelved");
    EXPECT_LT(model.index(1, QlumAlarmModel::Message).data().toString().size(), 300);
    EXPECT_EQ(model.index(1, QlumAlarmModel::Time).data(), "");
    EXPECT_EQ(model.index(0, QlumAlarmModel::ConfirmedState).data(), "True");
    QStringList titles;
    for (int column = 0; column < model.columnCount(); ++column)
        titles.append(model.headerData(column, Qt::Horizontal).toString());
    EXPECT_EQ(titles.join('|'), "ConditionName|Message|SourceName|Time|Severity|Server/Object|Active|"
                                "Acknowledged State|Confirmed State");
    model.setExtraFields({"BranchId", "Message"});
    EXPECT_EQ(model.headerData(QlumAlarmModel::ColumnCount, Qt::Horizontal), "BranchId");
    EXPECT_EQ(model.index(0, QlumAlarmModel::ColumnCount + 1).data(), "<b>hot</b> and more");
}

// The first and the last that there are stand for none.
TEST_F(Alarms, TellTimesOfEveryYearApartAsTheLogDoes)
{
    application.settings["EventsPlugin.ShowDateWithTimestamps"] = true;
    QlumEventTypes types([](unsigned int) { return nullptr; });
    QlumEventModel log(application, types);
    QlumEvents events;
    const std::vector<UaDateTime> times{UaDateTime(), UaDateTime(std::numeric_limits<OpcUa_Int64>::max()),
                                        UaDateTime::fromString("1601-01-02T12:00:00Z"),
                                        UaDateTime::fromString("2026-01-02T12:00:00Z"),
                                        UaDateTime::fromString("9999-12-30T12:00:00Z")};
    for (const UaDateTime& time : times)
        events.push_back(makeAlarm(static_cast<OpcUa_UInt32>(events.size()), {{"Time", UaVariant(time)}}));
    log.sltNewEvents(events);
    log.setPaused(false); // at once
    send(events);
    const std::pair<const QAbstractItemModel*, int> columns[] = {{&model, QlumAlarmModel::Time},
                                                                 {&log, QlumEventModel::Time}};
    for (const auto& [shown, column] : columns) {
        const auto cell = [&, shown = shown, column = column](int row, int role) {
            return shown->index(row, column).data(role);
        };
        ASSERT_EQ(shown->rowCount(), 5);
        for (const int none : {0, 1}) {
            EXPECT_EQ(cell(none, Qt::DisplayRole).toString(), "");
            EXPECT_EQ(cell(none, Qt::ToolTipRole).toString(), "");
        }
        EXPECT_TRUE(cell(2, Qt::ToolTipRole).toString().contains("1601-01-02"))
            << cell(2, Qt::ToolTipRole).toString().toStdString();
        EXPECT_TRUE(cell(4, Qt::ToolTipRole).toString().contains("9999-12-30"));
        EXPECT_TRUE(cell(4, Qt::DisplayRole).toString().contains("9999"));
        for (const int row : {2, 3})
            EXPECT_LT(cell(row, QlumEventTable::sortRole).toDateTime(),
                      cell(row + 1, QlumEventTable::sortRole).toDateTime());
    }
}

// ---- the log

class EventLog : public testing::Test
{
protected:
    EventLog() { application.settings["EventsPlugin.MaxEventLogEntries"] = 3; }

    EventApplication application;
    QlumEventTypes types{[](unsigned int) { return nullptr; }};
};

TEST_F(EventLog, CountsEverythingAndKeepsTheNewest)
{
    QlumEventModel model(application, types);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto event = [](const char* message) { return makeEvent({{"Message", textVariant(message)}}); };
    model.sltNewEvents({event("1"), event("2")});
    model.setPaused(true);
    const std::string before = modelText(model);
    model.sltNewEvents({event("3"), event("4")});
    EXPECT_EQ(modelText(model), before);
    EXPECT_EQ(model.waitingCount(), 2);
    EXPECT_EQ(model.count(), 4);
    EXPECT_EQ(model.surplusCount(), 0);
    model.setPaused(false);
    EXPECT_EQ(modelText(model), " | 2 | Plc1/Boiler\n | 3 | Plc1/Boiler\n | 4 | Plc1/Boiler\n");
    model.setExtraFields({"Severity", "EventId"});
    model.sltNewEvents({makeAlarm(1), makeSimple(3035)});
    model.setPaused(false); // whatever waits is shown
    EXPECT_EQ(modelText(model), " | 4 | Plc1/Boiler\n"
                                "i=2915 | 500 | Plc1/Boiler | 500 | 0x6576656e74\n"
                                "EventQueueOverflowEventType: events were lost | Plc1/Boiler\n");
    model.setPaused(true);
    model.sltNewEvents({event("5"), event("6"), event("7"), event("8"), event("9")});
    EXPECT_EQ(model.waitingCount(), 5);
    EXPECT_EQ(model.surplusCount(), 2) << "the log has three rows";
    model.setPaused(false);
    EXPECT_EQ(model.waitingCount() + model.surplusCount(), 0);
    EXPECT_EQ(model.count(), 11);
}

TEST_F(EventLog, MarksWhatARefreshHasSentAgain)
{
    application.settings["EventsPlugin.MaxEventLogEntries"] = 10;
    QlumEventModel model(application, types);
    const auto alarm = [](const char* id, unsigned int serverId = 1, quint32 notifier = 1) {
        return makeAlarm(1, {{"EventId", bytesVariant(id)}}, serverId, notifier);
    };
    model.sltNewEvents({alarm("a"), makeSimple(refreshStart), alarm("b"), alarm("c", 2, 3),
                        makeSimple(refreshEnd), alarm("d"), alarm("a"), alarm("a", 1, 2)});
    model.sltNewEvents({makeSimple(refreshStart)}); // the connection is lost before its end
    model.giveUpRefresh(1);
    model.sltNewEvents({alarm("e")});
    model.setPaused(false);
    QStringList marked;
    for (int row = 0; row < model.rowCount(); ++row)
        marked.append(model.index(row, 0).data(QlumEventModel::refreshedRole).toBool() ? "yes" : "no");
    EXPECT_EQ(marked.join(' '), "no no yes no no no yes no no no");
}
} // namespace
