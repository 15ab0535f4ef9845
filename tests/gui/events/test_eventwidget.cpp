// The event view: what the user does with alarms, what conditions ask of him, what a project keeps.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumconditiondialog.h>
#include <plugins/events/qlumeventplugin.h>
#include <plugins/events/qlumeventwhere.h>
#include <plugins/events/qlumeventwidget.h>
#include <plugins/events/qlummonitoreditemmodel.h>
#include <tests/gui/events/eventtest.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QDateTime>
#include <QDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {

// Remembers what was called of its conditions.
class ConditionServer : public TableServices
{
public:
    UaStatus call(Settings& settings, const UaClientSdk::CallIn& in, UaClientSdk::CallOut& out) override
    {
        note(settings, in.objectId, in.methodId, in.inputArguments);
        out.callResult = UaStatus(result);
        return UaStatus();
    }
    UaStatus callList(Settings& settings, const UaCallMethodRequests& requests,
                      UaCallMethodResults& results) override
    {
        note(settings, UaNodeId(), UaNodeId(requests.length()), {});
        results = UaCallMethodResults(requests.length());
        for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
            note(settings, UaNodeId(requests[i].ObjectId), UaNodeId(requests[i].MethodId),
                 UaVariantArray(requests[i].NoOfInputArguments, requests[i].InputArguments));
            results[i].StatusCode = i == 0 ? OpcUa_Good : OpcUa_BadEventIdUnknown;
        }
        return UaStatus();
    }
    // Page by page; the continuation point is the number of events that were read.
    UaStatus historyReadEvent(Settings& settings, const UaClientSdk::HistoryReadEventContext& context,
                              const UaHistoryReadValueIds& nodes,
                              UaClientSdk::HistoryReadEventResults& results) override
    {
        if (atHistory)
            atHistory();
        UaClientSdk::HistoryReadEventContext whole = context;
        whole.numValuesPerNode = 0;
        whole.continuationPoint = UaByteString();
        const UaStatus status = TableServices::historyReadEvent(settings, whole, nodes, results);
        openPoints -= context.continuationPoint.isEmpty() ? 0 : 1;
        if (status.isBad() || results[0].status.isBad() || context.releaseContinuationPoints)
            return status;
        const OpcUa_UInt32 first = static_cast<OpcUa_UInt32>(context.continuationPoint.length());
        UaHistoryEventFieldLists page;
        const UaHistoryEventFieldLists& all = results[0].events;
        for (OpcUa_UInt32 i = first; i < all.length() && page.length() < context.numValuesPerNode; ++i)
            EXPECT_TRUE(page.append(all[i]));
        if (const OpcUa_UInt32 next = first + page.length(); next < all.length()) {
            results[0].continuationPoint = UaByteString(UaByteArray(next));
            ++openPoints;
        }
        results[0].events = std::move(page);
        return status;
    }
    std::atomic<int> openPoints{0};
    std::function<void()> atHistory; // on the thread of the call
    QStringList called()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_called, {});
    }
    std::atomic<OpcUa_StatusCode> result{OpcUa_Good};

private:
    void note(const Settings& settings, const UaNodeId& object, const UaNodeId& method,
              const UaVariantArray& arguments)
    {
        QStringList texts{toQString(object.toXmlString()), toQString(method.toXmlString())};
        for (const OpcUa_Variant& argument : arguments)
            texts.append(toQString(UaVariant(argument).toString()));
        if (arguments.length() == 2)
            texts.append(toQString(UaVariant(arguments[1]).toLocalizedText().locale()));
        texts.append(QString::number(settings.callTimeout));
        const std::lock_guard lock(m_mutex);
        m_called.append(texts.join(' '));
    }

    std::mutex m_mutex;
    QStringList m_called;
};

class EventView : public testing::Test
{
protected:
    EventView()
    {
        application.settings["General.CallTimeout"] = 7000u;
        application.settings["General.LocaleId"] = "de";
        plugin.init(&application);
        view.reset(qobject_cast<QlumEventWidget*>(plugin.createDocument("Event View")));
    }
    ~EventView() override
    {
        view.reset();
        plugin.shutdown();
    }
    void select(int row) { view->alarmView()->setCurrentIndex(view->alarmView()->model()->index(row, 0)); }
    static DialogDriver::Answer comment(const QString& text)
    {
        return [text](QDialog& dialog) {
            if (auto* const input = qobject_cast<QInputDialog*>(&dialog)) {
                input->setTextValue(text);
                input->accept();
            } else {
                dialog.reject();
            }
        };
    }
    bool waitForSaid(const QString& text)
    {
        return QTest::qWaitFor([&] { return application.said().contains(text); });
    }

    EventApplication application;
    std::shared_ptr<ConditionServer> server = std::make_shared<ConditionServer>();
    QlumEventPlugin plugin{[this](unsigned int id) { return id <= 2 ? server : nullptr; }};
    std::unique_ptr<QlumEventWidget> view;
};

TEST_F(EventView, CallsTheMethodOfTheSelectedConditionWithACommentAndSaysWhatFailed)
{
    view->sltNewEvents({makeAlarm(1), makeAlarm(2, {{"ConditionId", UaVariant(UaNodeId(2, 2))}})});
    select(1);
    {
        DialogDriver driver(comment("seen"));
        view->sltAcknowledge();
        QStringList called;
        ASSERT_TRUE(QTest::qWaitFor([&] { return !(called += server->called()).isEmpty(); }));
        EXPECT_EQ(called.join('|'), "ns=2;i=2 i=9111 0x6576656e74 seen de 7000");
        EXPECT_EQ(driver.seen(), QStringList{"Comment Acknowledgement"});
    }
    server->result = OpcUa_BadEventIdUnknown;
    {
        QStringList prompts;
        DialogDriver driver([&prompts](QDialog& dialog) {
            if (auto* const input = qobject_cast<QInputDialog*>(&dialog))
                prompts.append(input->labelText());
            comment("x")(dialog);
        });
        int seen = 0;
        for (const auto slot : {&QlumEventWidget::sltAcknowledge, &QlumEventWidget::sltConfirm,
                                &QlumEventWidget::sltAddComment}) {
            (view.get()->*slot)();
            ASSERT_TRUE(QTest::qWaitFor([&] { return driver.seen().size() == seen + 2; }));
            seen += 2;
        }
        EXPECT_EQ(driver.seen().join('|'),
                  "Comment Acknowledgement|Call Acknowledge Failed: The call of the acknowledge method "
                  "returned BadEventIdUnknown|"
                  "Comment Confirming|Call Confirm Failed: The call of the confirm method returned "
                  "BadEventIdUnknown|Add Comment|Call AddComment Failed: The call of the AddComment method "
                  "returned BadEventIdUnknown");
        prompts.removeDuplicates();
        EXPECT_EQ(prompts.join('|'), "Please enter a comment|Please enter the comment");
    }
    server->called();
    {
        DialogDriver driver; // gives up
        view->sltAcknowledge();
    }
    EXPECT_EQ(view->alarms()->rowCount(), 2); // whatever a call comes to
    {
        DialogDriver driver([this](QDialog& dialog) { // its server goes while the user writes
            plugin.sessionRemoved(1);
            dialog.accept();
        });
        view->sltAcknowledge();
        EXPECT_EQ(view->alarms()->rowCount(), 0);
    }
}

TEST_F(EventView, ShelvesByTheMethodOfTheConditionOrElseOfItsType)
{
    server->table.object(UaNodeId(1, 2), "Alarm");
    server->table.object(UaNodeId(50), "ShelvingState", UaNodeId(1, 2));
    server->table.method(UaNodeId(51), "OneShotShelve", UaNodeId(50), {});
    view->sltNewEvents({makeAlarm(1), makeAlarm(2)});
    const auto press = [this](const char* name) {
        view->findChild<QAction*>(QLatin1String(name))->trigger();
        QStringList called;
        EXPECT_TRUE(QTest::qWaitFor([&] { return !(called += server->called()).isEmpty(); }));
        return called.join('|');
    };
    select(0);
    EXPECT_EQ(press("shelveOnce"), "i=50 i=51 7000");
    select(1); // a condition that is nowhere to be found
    EXPECT_EQ(press("unshelve"), "ns=2;i=2 i=2947 7000");
    EXPECT_EQ(press("disableCondition"), "ns=2;i=2 i=9028 7000");
    EXPECT_EQ(press("suppressAlarm"), "ns=2;i=2 i=16403 7000");
    DialogDriver driver([](QDialog& dialog) {
        qobject_cast<QInputDialog*>(&dialog)->setDoubleValue(1.5);
        dialog.accept();
    });
    EXPECT_EQ(press("timedShelve"), "ns=2;i=2 i=2949 90000 7000");
}

TEST_F(EventView, AcknowledgesAllInOneCallForEachServer)
{
    const EventValues acked{{"AckedState/Id", UaVariant(true)}};
    view->sltNewEvents({makeAlarm(1, acked)});
    {
        DialogDriver driver;
        view->sltAcknowledgeAll();
        view->sltConfirmAll();
        EXPECT_EQ(driver.seen().join('|'),
                  "Event Plugin: Nothing to acknowledge|Event Plugin: Nothing to confirm");
    }
    EXPECT_EQ(server->called(), QStringList());
    view->sltNewEvents({makeAlarm(2), makeAlarm(3)});
    {
        DialogDriver driver(comment("all"));
        view->sltAcknowledgeAll();
    }
    ASSERT_TRUE(waitForSaid("Call Acknowledge returned Good"));
    EXPECT_EQ(server->called().join('|'), "i=0 i=2 7000|ns=2;i=2 i=9111 0x6576656e74 all de 7000|"
                                          "ns=2;i=3 i=9111 0x6576656e74 all de 7000");
    EXPECT_EQ(application.said("Call Acknowledge on").join('|'),
              "Call Acknowledge on Condition 'ns=2;i=2' returned Good|"
              "Call Acknowledge on Condition 'ns=2;i=3' returned BadEventIdUnknown");
    view->sltNewEvents({makeAlarm(2, {{"ConfirmedState/Id", UaVariant(false)}})});
    DialogDriver driver(comment("all"));
    view->sltConfirmAll();
    ASSERT_TRUE(waitForSaid("Call Confirm returned Good"));
    EXPECT_EQ(application.said("Call Confirm on").join('|'),
              "Call Confirm on Condition 'ns=2;i=2' returned Good");
}

TEST_F(EventView, AsksOnceForEachConditionAndNotForAllAtATime)
{
    const auto asking = [](OpcUa_UInt32 condition, bool isActive) {
        UaArray<OpcUa_LocalizedText> options(2u);
        EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText(UaString("en"), UaString("Yes & go")).copyTo(&options[0])));
        EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText(UaString("en"), UaString("No")).copyTo(&options[1])));
        UaVariant set;
        EXPECT_TRUE(OpcUa_IsGood(set.setArray(OpcUaType_LocalizedText, 2, options.rawData())));
        return makeAlarm(condition, {{"DialogState/Id", UaVariant(isActive)},
                                     {"Prompt", textVariant("<b>Go on?</b>")},
                                     {"ResponseOptionSet", set},
                                     {"DefaultResponse", UaVariant(OpcUa_Int32(1))}});
    };
    QlumEvents events;
    for (OpcUa_UInt32 condition = 1; condition <= 100; ++condition)
        for (int twice = 0; twice < 2; ++twice)
            events.push_back(asking(condition, true));
    view->sltNewEvents(events);
    ASSERT_EQ(view->openDialogs().size(), 5);
    QPointer<QlumConditionDialog> first = view->openDialogs().first();
    EXPECT_EQ(first->windowTitle(), "Condition Dialog - Plc1 - 1");
    EXPECT_EQ(first->response(), 1);
    server->result = OpcUa_BadDialogResponseInvalid;
    first->sltRespond();
    ASSERT_TRUE(waitForSaid("Call failed with error BadDialogResponseInvalid"));
    server->result = OpcUa_Good;
    first->setDefaultResponse(0);
    first->sltRespond();
    ASSERT_TRUE(QTest::qWaitFor([&] { return first.isNull(); }));
    EXPECT_TRUE(application.said().contains("Calling 'Respond' with response #0 (Yes & go)"));
    EXPECT_EQ(server->called().join('|'), "ns=2;i=1 i=9069 1 7000|ns=2;i=1 i=9069 0 7000");
    EXPECT_EQ(view->openDialogs().size(), 5); // the next one has come up
    view->sltNewEvents({asking(2, false)});   // somebody else has answered
    EXPECT_EQ(view->openDialogs().size(), 5);
    for (const QlumConditionDialog* dialog : view->openDialogs())
        EXPECT_NE(dialog->windowTitle(), "Condition Dialog - Plc1 - 2");
    plugin.sessionRemoved(1);
    EXPECT_EQ(view->openDialogs().size(), 0);
    application.settings["EventsPlugin.ShowDialogConditions"] = false;
    view->sltNewEvents({asking(200, true)});
    EXPECT_EQ(view->openDialogs().size(), 0);
}

TEST_F(EventView, CountsAlarmsAndFollowsTheOneThatIsSelected)
{
    const auto alarm = [](OpcUa_UInt32 id, OpcUa_UInt16 severity, const char* message, const char* event) {
        return makeAlarm(id, {{"Severity", UaVariant(severity)},
                              {"ActiveState/Id", UaVariant(id != 3)},
                              {"Message", textVariant(message)},
                              {"EventId", bytesVariant(event)}});
    };
    auto* tabs = view->findChild<QTabWidget*>("eventTabs");
    view->sltNewEvents({alarm(1, 900, "hot", "a"), alarm(2, 400, "warm", "b"), alarm(3, 1, "cold", "c")});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return tabs->tabText(1) == "Alarms (1 high, 1 medium, 1 low; 2 active, 3 open)";
    })) << tabs->tabText(1).toStdString();
    tabs->setCurrentIndex(1);
    select(1);
    const auto details = [&] { return modelText(*view->findChild<QTreeView*>("eventDetails")->model()); };
    EXPECT_NE(details().find("warm"), std::string::npos);
    view->sltNewEvents({alarm(2, 800, "hotter", "d")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return details().find("hotter") != std::string::npos; }));
}

TEST_F(EventView, SaysWhatAServerRefusesAndGoesOnWithoutIt)
{
    view->addNotifiers(std::vector<QlumToolNode>{{1, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"}});
    plugin.sessionStatusChanged(1, QlumConnectionStatus::Connected, {});
    auto* note = view->findChild<QLabel*>("offlineServers");
    emit view->items()->refreshAnswered(1, UaStatus(OpcUa_BadInternalError));
    EXPECT_TRUE(note->text().startsWith("Plc1 does not refresh its conditions ("))
        << note->text().toStdString();
    emit view->items()->refreshAnswered(1, UaStatus(OpcUa_Good));
    EXPECT_EQ(note->text(), "");

    const quint32 key = view->items()->rowAt(0).key;
    QlumEventCondition severe;
    severe.value = UaVariant(OpcUa_UInt16{500});
    view->items()->setWhere(key, {severe}, false);
    auto* monitored = view->findChild<QTreeView*>("monitoredItems");
    monitored->selectionModel()->clear(); // the page shows the conditions of what gets selected
    monitored->setCurrentIndex(view->items()->index(0, 0));
    emit view->items()->filterAnswered({key, OpcUa_Good, {}}); // and no more than that
    EXPECT_EQ(modelText(*view->findChild<QTreeView*>("whereConditions")->model()),
              " | Severity >= 500 | accepted\n");
    emit view->items()->filterAnswered({key, OpcUa_BadMonitoredItemFilterUnsupported, {}});
    auto* bar = view->findChild<QlumMessageBar*>();
    ASSERT_FALSE(bar->isHidden());
    bar->findChild<QPushButton*>()->click();
    EXPECT_TRUE(view->items()->rowAt(0).isFilteredHere);
    EXPECT_TRUE(view->items()->getEventFilter(view->items()->rowAt(0)).where().isEmpty());
    EXPECT_FALSE(view->findChild<QLabel*>("whereNote")->isHidden());
}

TEST_F(EventView, KeepsItsNotifiersInAProjectAndFollowsTheNamespaces)
{
    view->addNotifiers(
        std::vector<QlumToolNode>{{1, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"},
                                  {1, UaNodeId(UaString("Line, 1"), 3), OpcUa_NodeClass_Object, {}, "Line"},
                                  {1, UaNodeId(5, 4), OpcUa_NodeClass_Object, {}, "Gone"},
                                  {1, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"}});
    QlumSelectClauses clauses = qlumStandardClauses();
    clauses.push_back({UaNodeId(1000, 3), BrowsePathList::fromString("3:Batch/"), false});
    clauses.push_back({UaNodeId(1000, 4), BrowsePathList::fromString("4:Lost/"), false});
    QlumMonitoredItemModel& items = *view->items();
    ASSERT_EQ(items.rowCount(), 3);
    items.setSelectClauses(items.rowAt(1).key, clauses, {UaNodeId(1000, 3)});
    EXPECT_TRUE(items.missingFields().isEmpty());
    const TemporaryFolder folder;
    QSettings file(QString::fromStdString(folder.path()) + "/p.uap", QSettings::IniFormat);
    view->saveSettings(file);

    std::unique_ptr<QlumEventWidget> other(
        qobject_cast<QlumEventWidget*>(plugin.createDocument("Event View")));
    other->loadSettings(file, {{1, 2}});
    ASSERT_EQ(other->items()->rowCount(), 3);
    EXPECT_EQ(other->items()->rowAt(1).selectClauses, clauses);
    EXPECT_EQ(other->items()->rowAt(1).eventTypes, (std::vector<UaNodeId>{UaNodeId(1000, 3)}));
    plugin.sessionStatusChanged(2, QlumConnectionStatus::Connected, {{0, 0}, {1, 1}, {3, 7}});
    ASSERT_EQ(other->items()->rowCount(), 2);
    EXPECT_EQ(other->items()->rowAt(1).nodeId, UaNodeId(UaString("Line, 1"), 7));
    EXPECT_EQ(other->items()->rowAt(1).selectClauses.back().path.toString(), "7:Batch/");
    EXPECT_EQ(application.said("Can't").join('|'),
              "Can't find namespace of node ns=4;i=5 in changed namespace "
              "table, removing it from view");
    EXPECT_EQ(view->items()->rowCount(), 3); // of another server
    other->loadSettings(file, {});           // no such server any more
    EXPECT_EQ(other->items()->rowCount(), 2);
}

TEST_F(EventView, EveryHistoryThatWasNotReadIsTold)
{
    emit view->items()->historyFailed("The history of Line could not be read.", "The connection was closed.");
    const auto* bar = view->findChild<QlumMessageBar*>();
    EXPECT_EQ(bar->findChild<QLabel*>("what")->text(), "The history of Line could not be read.");
    emit view->items()->historyFailed("The history of Tank could not be read.", "It is not supported.");
    const QString why = bar->findChild<QLabel*>("why")->text();
    EXPECT_TRUE(why.contains("Line") && why.contains("closed") && why.contains("Tank")) << why.toStdString();
    ASSERT_TRUE(QMetaObject::invokeMethod(view.get(), "sltReadHistory")); // from the beginning
    emit view->items()->historyFailed("The history of Tank could not be read.", "It is not supported.");
    EXPECT_EQ(bar->findChild<QLabel*>("why")->text(), "It is not supported.");
}

TEST_F(EventView, TheLogSaysOfWhichServerItHasNothing)
{
    view->addNotifiers(std::vector<QlumToolNode>{{1, UaNodeId(2253), OpcUa_NodeClass_Object, {}, "Server"}});
    plugin.sessionStatusChanged(1, QlumConnectionStatus::Connected, {});
    const auto* note = view->findChild<QLabel*>("missedEvents");
    EXPECT_TRUE(note->isHidden());
    plugin.sessionStatusChanged(1, QlumConnectionStatus::ConnectionError, {});
    EXPECT_FALSE(note->isHidden());
    EXPECT_TRUE(note->text().contains("Plc1")) << note->text().toStdString();
    plugin.sessionStatusChanged(1, QlumConnectionStatus::Connected, {});
    EXPECT_TRUE(note->isHidden());
}

TEST_F(EventView, AHistoryThatTakesItsTimeHoldsNothingElseUp)
{
    std::promise<void> begun, answer;
    server->atHistory = [&] {
        begun.set_value();
        answer.get_future().wait();
    };
    const UaNodeId notifier(5, 2);
    server->table.object(notifier, "Line");
    view->addNotifiers(std::vector<QlumToolNode>{{1, notifier, OpcUa_NodeClass_Object, {}, "Line"}});
    bool isRead = false, isAcknowledged = false;
    QObject::connect(view->items(), &QlumMonitoredItemModel::historyEnded, [&] { isRead = true; });
    view->items()->readEventHistory(QDateTime::currentDateTime().addSecs(-60), QDateTime::currentDateTime());
    begun.get_future().wait();
    view->items()->call(
        1, "Acknowledging",
        [&](QlumSessionServices*) -> std::function<void()> { return [&] { isAcknowledged = true; }; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAcknowledged; }));
    EXPECT_FALSE(isRead);
    answer.set_value();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isRead; }));
}

TEST_F(EventView, ReadsWhatTheServerHasKeptPageByPage)
{
    application.settings["EventsPlugin.History.NumValuesPerNode"] = 2;
    const UaNodeId notifier(5, 2);
    server->table.object(notifier, "Line");
    const UaDateTime now = UaDateTime::now();
    for (int i = 0; i < 5; ++i) {
        UaDateTime time = now;
        time.addSecs(-60 + i);
        server->table.event(notifier, time,
                            {{"Message", textVariant(std::to_string(i).c_str())}, {"Time", UaVariant(time)}});
    }
    view->addNotifiers(std::vector<QlumToolNode>{{1, notifier, OpcUa_NodeClass_Object, {}, "Line"}});
    const auto read = [&] {
        bool isOver = false;
        const auto connection =
            QObject::connect(view->items(), &QlumMonitoredItemModel::historyEnded, [&] { isOver = true; });
        view->items()->readEventHistory(QDateTime::currentDateTime().addSecs(-3600),
                                        QDateTime::currentDateTime().addSecs(60));
        const bool isDone = QTest::qWaitFor([&] { return isOver; });
        QObject::disconnect(connection);
        return isDone;
    };
    ASSERT_TRUE(read());
    EXPECT_EQ(view->history()->count(), 5);
    EXPECT_EQ(application.said("HistoryReadEvent").join('|'),
              "HistoryReadEvent on node ns=2;i=5 returned 5 events [Good]");
    application.settings["EventsPlugin.History.MaxReadNextCalls"] = 1;
    QStringList cuts;
    QObject::connect(view->items(), &QlumMonitoredItemModel::historyCut,
                     [&cuts](const QString& what) { cuts.append(what); });
    ASSERT_TRUE(read());
    EXPECT_EQ(server->openPoints, 0);
    EXPECT_EQ(cuts, QStringList("Only the first 4 events of ns=2;i=5 on Plc1 were read; there are more."));
    server->table.fail(NodeTable::HistoryRead, notifier, OpcUa_BadHistoryOperationUnsupported);
    ASSERT_TRUE(read());
    EXPECT_EQ(application.said("HistoryReadEvent").last(),
              "HistoryReadEvent on node ns=2;i=5 returned error [BadHistoryOperationUnsupported]");
}
} // namespace
