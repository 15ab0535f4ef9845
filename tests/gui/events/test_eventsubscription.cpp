// The subscription of an event view above a scripted server: what is asked, logged, lost and found again.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumrunningwork.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventpools.h>
#include <plugins/events/qlumeventsubscription.h>
#include <plugins/events/qlumeventwhere.h>
#include <plugins/events/qlummonitoreditemmodel.h>
#include <tests/gui/events/eventtest.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>

#include <QAbstractItemModelTester>
#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <vector>

namespace {
using Numbers = std::vector<OpcUa_UInt32>;

class EventSubscription : public SubscriptionReconnect
{
protected:
    void SetUp() override
    {
        application.settings["EventsPlugin.QueueSize"] = 50u;
        SubscriptionReconnect::SetUp();
        stack.on(
            OpcUa_CreateMonitoredItemsRequest_EncodeableType,
            [this](const void* request, void* response) {
                return createItems(*static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request),
                                   *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response));
            });
        stack.on(OpcUa_ModifyMonitoredItemsRequest_EncodeableType, [](const void* request, void* response) {
            return modifyItems(*static_cast<const OpcUa_ModifyMonitoredItemsRequest*>(request),
                               *static_cast<OpcUa_ModifyMonitoredItemsResponse*>(response));
        });
        stack.on(
            OpcUa_CallRequest_EncodeableType,
            [this](const void* request, void* response) {
                const auto& asked = *static_cast<const OpcUa_CallRequest*>(request);
                auto& answer = *static_cast<OpcUa_CallResponse*>(response);
                EXPECT_EQ(UaNodeId(asked.MethodsToCall[0].ObjectId), UaNodeId(2782));
                EXPECT_EQ(UaNodeId(asked.MethodsToCall[0].MethodId), UaNodeId(3875));
                EXPECT_EQ(UaVariant(asked.MethodsToCall[0].InputArguments[0]).toUInt32(), nextId - 1);
                UaCallMethodResults results(1u);
                results[0].StatusCode = refreshResult;
                results.detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        QObject::connect(&model, &QlumMonitoredItemModel::eventsReceived, [this](const QlumEvents& list) {
            for (const QlumEvent& event : list)
                messages.append(event.text(QlumField::Message));
        });
        tell(QlumConnectionStatus::Connected);
    }
    void TearDown() override
    {
        model.sessionRemoved(1);
        SubscriptionReconnect::TearDown();
        pools->endServer(1);
    }
    void tell(QlumConnectionStatus status, const NamespaceMap& namespaces = {})
    {
        model.sessionStatusChanged(1, status, namespaces);
    }
    void add(const std::vector<UaNodeId>& nodes)
    {
        std::vector<QlumMonitoredItemModel::Wish> wishes;
        for (const UaNodeId& node : nodes)
            wishes.push_back({node, QStringLiteral("Line")});
        const int refreshes = this->refreshes();
        model.addNodes(1, wishes);
        ASSERT_TRUE(waitForRefreshes(refreshes + 1));
    }
    int refreshes() const { return stack.calls(OpcUa_CallRequest_EncodeableType); }
    bool waitForRefreshes(int count)
    {
        const QString text = QStringLiteral("Call ConditionRefresh returned");
        return QTest::qWaitFor([&] { return application.said(text).size() >= count; });
    }
    // A message with an event of the item for each text; of RefreshRequired where a type is given.
    static void fill(OpcUa_EventNotificationList& list, OpcUa_UInt32 handle, const QStringList& texts,
                     const UaNodeId& type = UaNodeId(2041))
    {
        // the text is the severity as well, where it is a number
        UaEventFieldLists events(static_cast<OpcUa_UInt32>(texts.size()));
        for (OpcUa_UInt32 i = 0; i < events.length(); ++i) {
            const QByteArray text = texts.at(static_cast<int>(i)).toUtf8();
            UaVariantArray fields(9u); // what the server knows of the standard's fields
            EXPECT_TRUE(OpcUa_IsGood(bytesVariant(text.constData()).copyTo(&fields[0])));
            EXPECT_TRUE(OpcUa_IsGood(UaVariant(type).copyTo(&fields[1])));
            EXPECT_TRUE(OpcUa_IsGood(textVariant(text.constData()).copyTo(&fields[7])));
            EXPECT_TRUE(OpcUa_IsGood(UaVariant(OpcUa_UInt16(text.toUShort())).copyTo(&fields[8])));
            events[i].ClientHandle = handle;
            fields.detach(&events[i].NoOfEventFields, &events[i].EventFields);
        }
        events.detach(&list.NoOfEvents, &list.Events);
    }
    void send(OpcUa_UInt32 number, OpcUa_UInt32 handle, const QStringList& texts,
              const UaNodeId& type = UaNodeId(2041))
    {
        notify<OpcUa_EventNotificationList>(
            nextId - 1, number, OpcUa_EventNotificationList_EncodeableType,
            [=](OpcUa_EventNotificationList& list) { fill(list, handle, texts, type); });
    }
    bool waitForMessages(const QString& wanted)
    {
        return QTest::qWaitFor([&] { return messages.join(' ') == wanted; }) ||
               (ADD_FAILURE() << messages.join(' ').toStdString(), false);
    }

    EventApplication application;
    std::shared_ptr<QlumEventPools> pools = std::make_shared<QlumEventPools>();
    std::shared_ptr<QlumSessionServices> services = qlumServicesOf(std::shared_ptr<UaClientSdk::UaSession>(
        &session, [](UaClientSdk::UaSession*) {}));
    QlumMonitoredItemModel model{application, pools, [this](unsigned int) { return services; }};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    std::atomic<OpcUa_StatusCode> refreshResult{OpcUa_Good};
    std::atomic<OpcUa_StatusCode> itemResult{OpcUa_Good};
    std::atomic<OpcUa_UInt32> lastItem{100};
    QStringList messages;
    UaNodeId deletedNode; // set while there is no connection

private:
    OpcUa_StatusCode createItems(const OpcUa_CreateMonitoredItemsRequest& asked,
                                 OpcUa_CreateMonitoredItemsResponse& answer)
    {
        UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(asked.NoOfItemsToCreate));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            EXPECT_EQ(asked.ItemsToCreate[i].ItemToMonitor.AttributeId, 12u);
            results[i].StatusCode = itemResult;
            if (!deletedNode.isNull() && deletedNode == UaNodeId(asked.ItemsToCreate[i].ItemToMonitor.NodeId))
                results[i].StatusCode = OpcUa_BadNodeIdUnknown;
            results[i].MonitoredItemId = ++lastItem;
            results[i].RevisedQueueSize = asked.ItemsToCreate[i].RequestedParameters.QueueSize;
            const UaStatusCodeArray codes(2u);
            OpcUa_EventFilterResult filter{};
            UaStatusCodeArray(codes).detach(&filter.NoOfSelectClauseResults, &filter.SelectClauseResults);
            filter.SelectClauseResults[1] = OpcUa_BadNodeIdUnknown;
            UaExtensionObject object;
            EXPECT_TRUE(OpcUa_IsGood(object.setDecoded(OpcUa_EventFilterResult_EncodeableType, &filter)));
            EXPECT_TRUE(OpcUa_IsGood(object.detach(&results[i].FilterResult)));
            UaStatusCodeArray().attach(filter.NoOfSelectClauseResults, filter.SelectClauseResults);
        }
        results.detach(&answer.NoOfResults, &answer.Results);
        return OpcUa_Good;
    }
    static OpcUa_StatusCode modifyItems(const OpcUa_ModifyMonitoredItemsRequest& asked,
                                        OpcUa_ModifyMonitoredItemsResponse& answer)
    {
        UaMonitoredItemModifyResults(static_cast<OpcUa_UInt32>(asked.NoOfItemsToModify))
            .detach(&answer.NoOfResults, &answer.Results);
        return OpcUa_Good;
    }
};

TEST_F(EventSubscription, IsAskedForAndLoggedAsTheSettingsWant)
{
    add({UaNodeId(2253)});
    QStringList said = application.said();
    said.erase(std::remove_if(said.begin(), said.end(),
                              [](const QString& line) {
                                  return line.startsWith("        ") || line.startsWith("    SelectClause [");
                              }),
               said.end());
    EXPECT_EQ(said.join('\n').toStdString(),
              "Creating new subscription: ClientHandle=1, PublishingEnable=true, LifeTimeCount=2400, "
              "MaxKeepAliveCount=10, Priority=0, PublishingInterval=500\n"
              "CreateSubscription succeeded.\n"
              "Revised values: LifeTimeCount=2400, MaxKeepAliveCount=10, Priority=0, PublishingInterval=500, "
              "SubscriptionId=1\n"
              "Item 1: QueueSize=50, SamplingInterval=500\n"
              "SelectClause:\n"
              "CreateMonitoredItems succeeded\n"
              "Item 1 succeeded: RevisedQueueSize=50, RevisedSamplingInterval=0 [ret = Good]\n"
              "SelectClauseResult:\n"
              "WhereClauseResult:\n"
              "Calling ConditionRefresh to get current conditions\n"
              "Call ConditionRefresh returned Good for ServerId 1.");
    EXPECT_TRUE(application.said().contains("    SelectClause [1]: BadNodeIdUnknown"));
    itemResult = OpcUa_BadAttributeIdInvalid;
    add({UaNodeId(85)});
    EXPECT_TRUE(application.said().contains("Item 2 failed [ret = BadAttributeIdInvalid]"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return model.rowAt(0).state == QlumEventNodeMonitored::Watched; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return model.rowAt(1).state == QlumEventNodeMonitored::Refused; }));
    itemResult = OpcUa_Good;
    model.setSelectClauses(model.rowAt(0).key,
                           {{UaNodeId(2041), BrowsePathList::fromString("Message/"), false}}, {});
    model.applyChanges();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return application.said("ModifyMonitoredItems succeeded.").size() == 1; }));
    EXPECT_EQ(stack.calls(OpcUa_CreateSubscriptionRequest_EncodeableType), 1);
}

TEST(EventSubscriptionSettings, FollowTheIntervalAndTheTimeouts)
{
    EventApplication application;
    const auto counts = [&](double interval, double session, OpcUa_UInt32 publish) {
        application.settings["EventsPlugin.PublishingInterval"] = interval;
        application.settings["General.SessionTimeout"] = session;
        application.settings["General.PublishTimeout"] = publish;
        const UaClientSdk::SubscriptionSettings settings = qlumEventSubscriptionSettings();
        return QStringLiteral("%1/%2").arg(settings.lifetimeCount).arg(settings.maxKeepAliveCount);
    };
    EXPECT_EQ(counts(0, 1200000, 60000), "1200/5");
    EXPECT_EQ(counts(1000, 2000, 600), "3/1");
    EXPECT_EQ(counts(300, 1200000, 60000), "4000/16");
    EXPECT_EQ(counts(1e-9, 1e12, 60000), "4294967295/4294967295");
}

TEST_F(EventSubscription, RefreshesOnceForEachEventThatRequiresIt)
{
    add({UaNodeId(2253), UaNodeId(85)});
    refreshResult = OpcUa_BadRefreshInProgress;
    send(1, 1, {"a", "b", "c", "d", "e"}, UaNodeId(2789));
    send(2, 2, {"a"}, UaNodeId(2789)); // by the other notifier
    ASSERT_TRUE(waitForRefreshes(6));
    EXPECT_EQ(refreshes(), 6);
    EXPECT_EQ(application.said("Received RefreshRequiredEvent, calling ConditionRefresh").size(), 5);
    for (const StubApplication::Entry& entry : application.entries())
        EXPECT_LT(entry.level, QlumLogLevel::Error)
            << entry.text.toStdString(); // one in progress is no fault
    EXPECT_TRUE(services->isConnected());
    model.callRefresh(7);
    EXPECT_EQ(application.said("No sub").join('|'),
              "No subscription exists for server 7, skip calling refresh.");
}

TEST_F(EventSubscription, TellsTheViewWhyTheServerRefusesToRefresh)
{
    std::vector<OpcUa_StatusCode> answers;
    QObject::connect(
        &model, &QlumMonitoredItemModel::refreshAnswered,
        [&answers](unsigned int, const UaStatus& status) { answers.push_back(status.statusCode()); });
    add({UaNodeId(2253)});
    refreshResult = OpcUa_BadUserAccessDenied;
    model.callRefresh(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers.size() == 2; }));
    EXPECT_EQ(answers, (std::vector<OpcUa_StatusCode>{OpcUa_Good, OpcUa_BadUserAccessDenied}));
    EXPECT_TRUE(
        application.said().contains("Call ConditionRefresh returned BadUserAccessDenied for ServerId 1."));
    refreshResult = OpcUa_BadRefreshInProgress; // that one tells it
    model.callRefresh(1);
    ASSERT_TRUE(waitForRefreshes(3));
    EXPECT_TRUE(QTest::qWaitFor([this] { return pools->of(1).pending() == 0; }));
    EXPECT_EQ(answers.size(), 2u);
}

TEST_F(EventSubscription, FetchesWhatIsMissingBeforeAnythingNewerIsShown)
{
    add({UaNodeId(2253)});
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        if (number > 4)
            return OpcUa_BadMessageNotAvailable;
        fill(
            *attach<OpcUa_EventNotificationList>(message, number, OpcUa_EventNotificationList_EncodeableType),
            1, {QString::number(number)});
        return OpcUa_Good;
    });
    send(1, 1, {"1"});
    ASSERT_TRUE(waitForMessages("1"));
    send(4, 1, {"4", "4b"});
    ASSERT_TRUE(waitForMessages("1 2 3 4 4b"));
    send(7, 1, {"7"});
    ASSERT_TRUE(waitForMessages("1 2 3 4 4b 7"));
    EXPECT_EQ(
        application.said("Call").filter("Republish").join('|'),
        "Calling Republish with sequence number 2|Calling Republish with sequence number 3|"
        "Calling Republish with sequence number 5|Call Republish failed (ret = BadMessageNotAvailable)");
    send(8, 99, {"of nobody"});
    send(9, 1, {"9"});
    ASSERT_TRUE(waitForMessages("1 2 3 4 4b 7 9"));
}

TEST_F(EventSubscription, FetchesTheNewestThousandOfALargeGap)
{
    add({UaNodeId(2253)});
    answerRepublish([](OpcUa_UInt32, OpcUa_UInt32 number, OpcUa_NotificationMessage& message) {
        fill(
            *attach<OpcUa_EventNotificationList>(message, number, OpcUa_EventNotificationList_EncodeableType),
            1, {QString::number(number)});
        return OpcUa_Good;
    });
    send(1, 1, {"1"});
    ASSERT_TRUE(waitForMessages("1"));
    send(5000, 1, {"5000"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.contains("5000"); }, 60'000));
    EXPECT_EQ(messages.size(), 1002);
    EXPECT_EQ(messages.mid(0, 2).join(' '), "1 4000");
    EXPECT_EQ(messages.mid(1000).join(' '), "4999 5000");
}

TEST_F(EventSubscription, LooksAtConditionsItselfWhereTheServerRefusesTo)
{
    add({UaNodeId(2253)});
    QlumEventCondition severe;
    severe.value = UaVariant(OpcUa_UInt16{500});
    model.setWhere(model.rowAt(0).key, {severe}, true);
    model.applyChanges();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return application.said("ModifyMonitoredItems succeeded.").size() == 1; }));
    EXPECT_TRUE(model.getEventFilter(model.rowAt(0)).where().isEmpty());
    send(1, model.rowAt(0).clientHandle, {"499", "500", "900", "7"});
    EXPECT_TRUE(waitForMessages("500 900"));
}

TEST_F(EventSubscription, ANotifierThatIsDeletedIsRefusedInTheNextSessionAndOthersGoOn)
{
    add({UaNodeId(2253), UaNodeId(5)});
    tell(QlumConnectionStatus::ConnectionError);
    breakLink();
    deletedNode = UaNodeId(5);
    mendLink(true);
    tell(QlumConnectionStatus::NewSessionCreated);
    tell(QlumConnectionStatus::Connected);
    ASSERT_TRUE(waitForRefreshes(2));
    EXPECT_TRUE(QTest::qWaitFor([&] { return model.rowAt(1).state == QlumEventNodeMonitored::Refused; }));
    EXPECT_EQ(model.rowAt(1).status, OpcUa_BadNodeIdUnknown);
    EXPECT_EQ(model.rowAt(0).state, QlumEventNodeMonitored::Watched);
    send(1, model.rowAt(0).clientHandle, {"of the other"});
    EXPECT_TRUE(waitForMessages("of the other"));
}

TEST(EventGaps, AreFilledFromTheEndWhenTheyAreLarge)
{
    EventApplication application;
    const auto pools = std::make_shared<QlumEventPools>();
    QlumMonitoredItemModel model(application, pools, [](unsigned int) { return nullptr; });
    QStringList received;
    QObject::connect(&model, &QlumMonitoredItemModel::eventsReceived,
                     [&](const QlumEvents& events) { received.append(QString::number(events.size())); });
    model.notificationsMissing(1, 5, 5); // came twice
    model.notificationsMissing(1, 5, 2); // late
    model.notificationsMissing(1, 4294967295u, 1);
    model.notificationsMissing(1, 1, 4000000); // nobody to ask: what is behind it is not held up
    UaEventFieldLists list(3u);
    model.newEvents(1, list);
    QTest::qWait(0);
    EXPECT_TRUE(received.isEmpty()); // of no notifier
}

TEST_F(EventSubscription, OutlivesAnInterruptionAndIsMadeAgainInANewSession)
{
    add({UaNodeId(2253), UaNodeId(5, 2)});
    tell(QlumConnectionStatus::ConnectionError);
    breakLink();
    EXPECT_EQ(model.index(0, QlumMonitoredItemModel::StateText).data(), "Waiting for the connection");
    mendLink();
    tell(QlumConnectionStatus::Connected);
    ASSERT_TRUE(waitForRefreshes(2));
    EXPECT_EQ(application.said("Session could be restored, calling ConditionRefresh").size(), 1);
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 1);
    send(1, 2, {"kept"});
    ASSERT_TRUE(waitForMessages("kept"));

    tell(QlumConnectionStatus::ConnectionError);
    breakLink();
    mendLink(true);
    tell(QlumConnectionStatus::NewSessionCreated);
    tell(QlumConnectionStatus::Connected, {{0, 0}, {2, 3}});
    ASSERT_TRUE(waitForRefreshes(3));
    EXPECT_EQ(application.said("Calling ConditionRefresh to get current conditions").size(), 2);
    EXPECT_EQ(stack.calls(OpcUa_CreateSubscriptionRequest_EncodeableType), 2);
    EXPECT_EQ(model.rowAt(1).nodeId, UaNodeId(5, 3));
    send(1, model.rowAt(1).clientHandle, {"new"});
    ASSERT_TRUE(waitForMessages("kept new"));
}

TEST_F(EventSubscription, IsMadeAgainWhenTheServerEndsIt)
{
    add({UaNodeId(2253)});
    notify<OpcUa_StatusChangeNotification>(
        1, 1, OpcUa_StatusChangeNotification_EncodeableType,
        [](OpcUa_StatusChangeNotification& change) { change.Status = OpcUa_BadTimeout; });
    ASSERT_TRUE(waitForRefreshes(2));
    EXPECT_EQ(application.said("Status of").join('|'), "Status of subscription 1 changed to BadTimeout");
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 2);
}

TEST_F(EventSubscription, AChangeThatIsRefusedLeavesTheItemAsItWas)
{
    add({UaNodeId(2253)});
    const auto ask = [this](const char* field) {
        model.setSelectClauses(model.rowAt(0).key,
                               {{UaNodeId(2041), BrowsePathList::fromString(field), false}}, {});
        model.applyChanges();
    };
    stack.failNext(OpcUa_ModifyMonitoredItemsRequest_EncodeableType, {OpcUa_BadTooManyOperations});
    ask("Message/");
    ask("Severity/"); // before the answer
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return application.said("ModifyMonitoredItems succeeded.").size() == 1; }));
    EXPECT_EQ(application.said("ModifyMonitoredItems failed").join('|'),
              "ModifyMonitoredItems failed with error BadTooManyOperations.");
    EXPECT_TRUE(application.said().contains("Item 1 failed with error BadTooManyOperations."));
    EXPECT_EQ(stack.calls(OpcUa_ModifyMonitoredItemsRequest_EncodeableType), 2);
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 1); // no second item
    send(1, 1, {"still"});
    ASSERT_TRUE(waitForMessages("still"));
}

// Whoever cancels work that waits behind a slow call means the work, not the notifiers.
TEST_F(EventSubscription, WorkThatIsCancelledBeforeItsTurnLosesNoNotifier)
{
    const auto cancelBehindASlowCall = [this](const std::function<void()>& ask) {
        std::promise<void> answer;
        pools->of(1).add(
            {QString(), 1}, [&answer](QlumJob&) { answer.get_future().wait(); });
        ask();
        QlumRunningWork::instance().cancelServer(1);
        answer.set_value();
        EXPECT_TRUE(QTest::qWaitFor([this] { return pools->of(1).pending() == 0; }));
    };
    const auto state = [this](int row) {
        return model.index(row, QlumMonitoredItemModel::StateText).data().toString().toStdString();
    };
    const auto ask = [this](const char* field) {
        model.setSelectClauses(model.rowAt(0).key,
                               {{UaNodeId(2041), BrowsePathList::fromString(field), false}}, {});
        model.applyChanges();
    };
    cancelBehindASlowCall([this] { model.addNodes(1, {{UaNodeId(2253), "Server"}}); });
    ASSERT_TRUE(QTest::qWaitFor([&] { return state(0) == "Cancelled; \"Apply\" asks the server again"; }))
        << state(0);
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 0);
    EXPECT_TRUE(model.hasChanges());
    model.applyChanges();
    ASSERT_TRUE(QTest::qWaitFor([&] { return state(0) == "Watched"; })) << state(0);
    ASSERT_TRUE(waitForRefreshes(1)) << "of the subscription that was made only now";
    EXPECT_FALSE(model.hasChanges());
    // of two changes that wait, the one and then the other
    cancelBehindASlowCall([&] {
        ask("Message/");
        ask("Severity/");
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return state(0) == "Watched, changes not applied yet"; })) << state(0);
    EXPECT_EQ(stack.calls(OpcUa_ModifyMonitoredItemsRequest_EncodeableType), 0);
    send(1, model.rowAt(0).clientHandle, {"before"}); // as the item still is
    ASSERT_TRUE(waitForMessages("before"));
    model.applyChanges();
    ASSERT_TRUE(QTest::qWaitFor([&] { return state(0) == "Watched"; })) << state(0);
    EXPECT_EQ(stack.calls(OpcUa_ModifyMonitoredItemsRequest_EncodeableType), 1);
    EXPECT_EQ(stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType), 1) << "no second item";
    model.removeNodes({0});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !deleted().empty(); }));
}

TEST_F(EventSubscription, FailuresLeaveTheViewItsNotifiers)
{
    stack.failNext(OpcUa_CreateSubscriptionRequest_EncodeableType, {OpcUa_BadTooManySubscriptions});
    model.addNodes(1, {{UaNodeId(2253), "Server"}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return application.said("CreateSubscription failed").size() == 1; }));
    EXPECT_EQ(application.said("CreateSubscription failed").first(),
              "CreateSubscription failed with error BadTooManySubscriptions.");
    const auto state = [this] { return model.index(0, QlumMonitoredItemModel::StateText).data().toString(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().startsWith("Refused: "); }));
    EXPECT_EQ(state(), "Refused: the server has as many subscriptions as it can");
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadOutOfMemory});
    add({UaNodeId(85)});
    EXPECT_TRUE(application.said().contains("CreateMonitoredItems failed with error 'BadOutOfMemory'"));
    EXPECT_EQ(model.rowCount(), 2);
    model.removeNodes({0, 1});
    EXPECT_EQ(model.rowCount(), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !deleted().empty(); })); // nothing is left at the server
}
} // namespace
