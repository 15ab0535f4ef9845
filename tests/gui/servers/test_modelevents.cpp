// The subscription by which a server node hears of changes of the address space.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <servers/qlummodelevents.h>
#include <tests/gui/servers/servernodefixture.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {
class ModelEvents : public ServerNode
{
protected:
    using Changes = std::vector<std::pair<OpcUa_UInt32, OpcUa_Byte>>; // node, verbs

    ModelEvents()
    {
        application.settings["General.SubscribeForModelChangeEvents"] = true;
        application.settings["General.AutomaticReconnect"] = true;
        application.settings["General.WatchdogTime"] = 600000u;
        FakeStack& stack = FakeStack::instance();
        stack.on(
            OpcUa_CreateSubscriptionRequest_EncodeableType,
            [this](const void* request, void* response) {
                const auto& asked = *static_cast<const OpcUa_CreateSubscriptionRequest*>(request);
                auto& answer = *static_cast<OpcUa_CreateSubscriptionResponse*>(response);
                const std::lock_guard lock(m_mutex);
                m_wanted = {asked.RequestedLifetimeCount, asked.RequestedMaxKeepAliveCount,
                            asked.MaxNotificationsPerPublish};
                answer.SubscriptionId = ++m_subscription;
                answer.RevisedPublishingInterval = asked.RequestedPublishingInterval;
                answer.RevisedLifetimeCount = asked.RequestedLifetimeCount;
                answer.RevisedMaxKeepAliveCount = asked.RequestedMaxKeepAliveCount;
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        stack.on(OpcUa_CreateMonitoredItemsRequest_EncodeableType,
                 [this](const void* request, void* response) {
                     return createItem(*static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request),
                                       *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response));
                 });
        stack.on(
            OpcUa_DeleteSubscriptionsRequest_EncodeableType,
            [](const void*, void* response) {
                auto& answer = *static_cast<OpcUa_DeleteSubscriptionsResponse*>(response);
                UaStatusCodeArray(1u).detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        stack.on(OpcUa_PublishRequest_EncodeableType, [this](const void*, void* response) {
            return publish(*static_cast<OpcUa_PublishResponse*>(response));
        });
        stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
    }
    ~ModelEvents() override { node.reset(); } // the script is gone afterwards

    void connectNode()
    {
        make();
        QObject::connect(node.get(), &QlumServerNode::serverModelChanged, node.get(),
                         [this](unsigned int id, const UaNodeId& changed, OpcUa_Byte verbs) {
                             EXPECT_EQ(id, node->serverId());
                             heard.emplace_back(changed.identifierNumeric(), verbs);
                         });
        ASSERT_TRUE(node->connectServer()) << log().join('\n');
    }
    // An event with these changes.
    void tell(const Changes& changes)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_changes = changes;
        }
        const int before = m_published;
        FakeStack::instance().releaseAnswers(OpcUa_PublishRequest_EncodeableType, 1);
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_published > before; }));
    }
    // The subscription has ended on the server.
    void endSubscription()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        FakeStack::instance().releaseAnswers(OpcUa_PublishRequest_EncodeableType, 1);
    }
    QStringList told() const
    {
        QStringList lines;
        for (const StubApplication::Entry& entry : application.entries())
            if (entry.source == "AddressSpaceModel")
                lines.append(QString::number(entry.level) + " " + entry.text);
        return lines;
    }
    bool waitForRegistrations(int count)
    {
        return QTest::qWaitFor(
            [&] { return told().filter("30 Registered for ModelChangeEvents").size() == count; });
    }
    bool waitForHeard(std::size_t count)
    {
        return QTest::qWaitFor([&] { return heard.size() >= count; });
    }

    std::vector<OpcUa_UInt32> wanted()
    {
        const std::lock_guard lock(m_mutex);
        return m_wanted;
    }
    std::string item()
    {
        const std::lock_guard lock(m_mutex);
        return m_item;
    }
    std::atomic<OpcUa_StatusCode> refusal{OpcUa_Good};
    Changes heard;

private:
    OpcUa_StatusCode createItem(const OpcUa_CreateMonitoredItemsRequest& asked,
                                OpcUa_CreateMonitoredItemsResponse& answer)
    {
        const OpcUa_MonitoredItemCreateRequest& request = asked.ItemsToCreate[0];
        const UaExtensionObject parameters(request.RequestedParameters.Filter);
        const auto* filter =
            static_cast<const OpcUa_EventFilter*>(parameters.decoded(OpcUa_EventFilter_EncodeableType));
        EXPECT_NE(filter, nullptr);
        EXPECT_EQ(request.ItemToMonitor.AttributeId, OpcUa_Attributes_EventNotifier);
        EXPECT_EQ(request.RequestedParameters.SamplingInterval, 0.0);
        EXPECT_EQ(UaNodeId(filter->SelectClauses[0].TypeDefinitionId), UaNodeId(2041));
        EXPECT_EQ(UaString(filter->SelectClauses[0].BrowsePath[0].Name), UaString("Changes"));
        EXPECT_EQ(filter->WhereClause.Elements[0].FilterOperator, OpcUa_FilterOperator_OfType);
        UaMonitoredItemCreateResults results(1);
        results[0].MonitoredItemId = 7;
        results[0].StatusCode = refusal;
        results.detach(&answer.NoOfResults, &answer.Results);
        const std::lock_guard lock(m_mutex);
        m_item = UaNodeId(request.ItemToMonitor.NodeId).toString().toStdString();
        return OpcUa_Good;
    }
    OpcUa_StatusCode publish(OpcUa_PublishResponse& answer)
    {
        const std::lock_guard lock(m_mutex);
        answer.SubscriptionId = m_subscription;
        answer.NotificationMessage.SequenceNumber = ++m_number;
        UaExtensionObjectArray list(1u);
        if (std::exchange(m_isEnding, false)) {
            m_number = 0;
            auto* change = static_cast<OpcUa_StatusChangeNotification*>(
                attach(list[0], OpcUa_StatusChangeNotification_EncodeableType));
            change->Status = OpcUa_BadTimeout;
        } else {
            fillEvents(*static_cast<OpcUa_EventNotificationList*>(
                attach(list[0], OpcUa_EventNotificationList_EncodeableType)));
        }
        OpcUa_NotificationMessage& message = answer.NotificationMessage;
        list.detach(&message.NoOfNotificationData, &message.NotificationData);
        ++m_published;
        return OpcUa_Good;
    }
    static void* attach(OpcUa_ExtensionObject& to, const OpcUa_EncodeableType& type)
    {
        void* object = OpcUa_EncodeableObject_Create(&type);
        OpcUa_ExtensionObject_AttachEncodeable(&to, &type, object);
        return object;
    }
    void fillEvents(OpcUa_EventNotificationList& list) const
    {
        UaExtensionObjectArray changes(static_cast<OpcUa_UInt32>(m_changes.size()));
        for (OpcUa_UInt32 i = 0; i < changes.length(); ++i) {
            auto* change = static_cast<OpcUa_ModelChangeStructureDataType*>(
                attach(changes[i], OpcUa_ModelChangeStructureDataType_EncodeableType));
            change->Affected.Identifier.Numeric = m_changes[i].first;
            change->Verb = m_changes[i].second;
        }
        UaVariant field;
        field.setExtensionObjectArray(changes);
        UaVariantArray fields(1u);
        EXPECT_TRUE(OpcUa_IsGood(field.copyTo(&fields[0])));
        UaEventFieldLists events(1u);
        events[0].ClientHandle = 1;
        fields.detach(&events[0].NoOfEventFields, &events[0].EventFields);
        events.detach(&list.NoOfEvents, &list.Events);
    }

    std::mutex m_mutex;
    std::vector<OpcUa_UInt32> m_wanted;
    std::string m_item;
    Changes m_changes;
    OpcUa_UInt32 m_subscription = 0;
    OpcUa_UInt32 m_number = 0;
    bool m_isEnding = false;
    std::atomic<int> m_published{0};
};

TEST_F(ModelEvents, ChangesOfTheServerReachedNobodyAlthoughTheyWereWanted)
{
    connectNode();
    ASSERT_TRUE(waitForRegistrations(1)) << told().join('\n');
    EXPECT_EQ(wanted(), (std::vector<OpcUa_UInt32>{1200, 5, 0}));
    EXPECT_EQ(item(), "i=2253");
    tell({{85, 4}, {86, 1}, {85, 16}});
    ASSERT_TRUE(waitForHeard(2));
    EXPECT_EQ(heard, (Changes{{85, 20}, {86, 1}})) << "merged by node";

    QElapsedTimer clock;
    clock.start();
    heard.clear();
    OpcUa_Byte verbs = 0;
    for (int i = 0; i < 8; ++i)
        tell({{85, static_cast<OpcUa_Byte>(1 << i)}});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        verbs = 0;
        for (const auto& change : heard)
            verbs |= change.second;
        return verbs == 255;
    }));
    const auto pauses = static_cast<std::size_t>(clock.elapsed() / QlumModelEvents::pause);
    EXPECT_LE(heard.size(), pauses + 1) << "a tree reads a node anew only once in a while";
}

TEST_F(ModelEvents, SubscriptionIsMadeAgainWhenTheServerHasItNoMore)
{
    connectNode();
    ASSERT_TRUE(waitForRegistrations(1)) << told().join('\n');
    endSubscription();
    ASSERT_TRUE(waitForRegistrations(2)) << told().join('\n');
    FakeStack::instance().failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    FakeStack::instance().loseLink();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return node->connectionStatus() == QlumConnectionStatus::ConnectionError; }));
    node->startConnect(); // at once: the clock of the session stands still
    ASSERT_TRUE(waitForRegistrations(3)) << told().join('\n');
    node->disconnectServer();
    ASSERT_TRUE(node->connectServer());
    ASSERT_TRUE(waitForRegistrations(4)) << told().join('\n');
    EXPECT_EQ(told().size(), 4) << told().join('\n');
}

TEST_F(ModelEvents, SettingIsFollowedWhileConnected)
{
    application.settings["General.SubscribeForModelChangeEvents"] = false;
    connectNode();
    application.settings["General.SubscribeForModelChangeEvents"] = true;
    node->applySettings();
    ASSERT_TRUE(waitForRegistrations(1)) << told().join('\n');
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CreateSubscriptionRequest_EncodeableType), 1);
    application.settings["General.SubscribeForModelChangeEvents"] = false;
    node->applySettings();
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return told().last() == "30 Unregister for ModelChangeEvents returned Good";
    })) << told().join('\n');
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_DeleteSubscriptionsRequest_EncodeableType), 1);
}

TEST_F(ModelEvents, RefusedItemLeavesNoSubscriptionBehind)
{
    refusal = OpcUa_BadMonitoredItemFilterUnsupported;
    connectNode();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !told().isEmpty(); }));
    EXPECT_EQ(told(), QStringList{"100 Register for ModelChangeEvents failed: createMonitoredItems returned "
                                  "BadMonitoredItemFilterUnsupported for item 0"});
    EXPECT_TRUE(FakeStack::instance().waitForCalls(OpcUa_DeleteSubscriptionsRequest_EncodeableType, 1));
    node->disconnectServer();
    FakeStack::instance().failNext(OpcUa_CreateSubscriptionRequest_EncodeableType,
                                   {OpcUa_BadTooManySubscriptions});
    ASSERT_TRUE(node->connectServer());
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return told().last() == "100 Register for ModelChangeEvents failed: createSubscription returned "
                                "BadTooManySubscriptions";
    })) << told().join('\n');
    node->disconnectServer();
    FakeStack::instance().failNext(OpcUa_DeleteSubscriptionsRequest_EncodeableType,
                                   {OpcUa_BadUserAccessDenied});
    ASSERT_TRUE(node->connectServer());
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return told().last() == "100 Register for ModelChangeEvents failed: deleteSubscription returned "
                                "BadUserAccessDenied";
    })) << told().join('\n');
}
} // namespace
