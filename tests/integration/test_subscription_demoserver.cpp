// Subscriptions against a server that is not ours.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/owndemoserver.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uadatachangefilter.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaeventfilter.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace {

using namespace UaClientSdk;

constexpr auto limit = std::chrono::seconds(20);

class StatusCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus status) override
    {
        std::lock_guard lock(m_mutex);
        m_statuses.push_back(status);
        m_changed.notify_all();
    }

    // Looks only at what came after the last one that was waited for.
    [[nodiscard]] bool waitFor(UaClient::ServerStatus wanted)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(60), [&] {
            const auto found = std::find(m_statuses.begin(), m_statuses.end(), wanted);
            if (found == m_statuses.end())
                return false;
            m_statuses.erase(m_statuses.begin(), found + 1);
            return true;
        });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<UaClient::ServerStatus> m_statuses;
};

// Keeps what comes, by client handle.
class Inbox : public UaSubscriptionCallback
{
public:
    void subscriptionStatusChanged(OpcUa_UInt32, const UaStatus& status) override
    {
        change([&] { statuses.push_back(status.statusCode()); });
    }
    void keepAlive(OpcUa_UInt32) override
    {
        change([&] { ++keepAlives; });
    }
    void notificationsMissing(OpcUa_UInt32, OpcUa_UInt32, OpcUa_UInt32) override
    {
        change([&] { ++gaps; });
    }
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications, UaDiagnosticInfos&) override
    {
        change([&] {
            for (const OpcUa_MonitoredItemNotification& item : notifications)
                values[item.ClientHandle].push_back(UaVariant(item.Value.Value).toDouble());
        });
    }
    void newEvents(OpcUa_UInt32, UaEventFieldLists& lists) override
    {
        change([&] { EXPECT_TRUE(events.appendMoved(std::move(lists))); });
    }
    void createMonitoredItemsComplete(OpcUa_UInt32 transactionId, const UaStatus& status,
                                      const UaMonitoredItemCreateResults& results,
                                      const UaDiagnosticInfos&) override
    {
        change([&] { completed[transactionId] = status.isGood() ? results.length() : 0; });
    }

    template <typename Condition>
    [[nodiscard]] bool waitUntil(const Condition& condition)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, condition);
    }

    std::map<OpcUa_UInt32, std::vector<double>> values;
    UaEventFieldLists events;
    std::vector<OpcUa_StatusCode> statuses;
    std::map<OpcUa_UInt32, OpcUa_UInt32> completed;
    int keepAlives = 0;
    int gaps = 0;

private:
    template <typename Change>
    void change(const Change& what)
    {
        std::lock_guard lock(m_mutex);
        what();
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
};

class SubscriptionDemoServer : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        const std::string url = demoserver::endpointUrl();
        ASSERT_FALSE(url.empty()) << "the demo server has not been started";
        connect(session, url);
    }

    void TearDown() override
    {
        if (session.isConnected())
            EXPECT_TRUE(session.disconnect(settings, true).isGood());
    }

    void connect(UaSession& which, const std::string& url)
    {
        SessionConnectInfo info;
        info.maxOperationsPerServiceCall = 1000;
        info.watchdogTime = 1000;
        info.watchdogTimeout = 1000;
        const UaStatus status = which.connect(UaString(url.c_str()), info, SessionSecurityInfo(), &callback);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    }

    UaSubscription* create(double interval = 50, OpcUa_UInt32 keepAliveCount = 5)
    {
        SubscriptionSettings wanted;
        wanted.publishingInterval = interval;
        wanted.maxKeepAliveCount = keepAliveCount;
        UaSubscription* subscription = nullptr;
        const UaStatus status = session.createSubscription(settings, &inbox, 1, wanted, true, &subscription);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        return subscription;
    }

    static UaMonitoredItemCreateRequests request(const UaNodeId& node, OpcUa_UInt32 clientHandle,
                                                 OpcUa_MonitoringMode mode = OpcUa_MonitoringMode_Reporting)
    {
        UaMonitoredItemCreateRequests requests(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&requests[0].ItemToMonitor.NodeId)));
        requests[0].ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        requests[0].MonitoringMode = mode;
        requests[0].RequestedParameters.ClientHandle = clientHandle;
        requests[0].RequestedParameters.SamplingInterval = 50;
        requests[0].RequestedParameters.QueueSize = 10;
        return requests;
    }

    OpcUa_UInt32 monitor(UaSubscription& subscription, const UaMonitoredItemCreateRequests& requests)
    {
        UaMonitoredItemCreateResults results;
        UaDiagnosticInfos diagnostics;
        const UaStatus status = subscription.createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                                  requests, results, diagnostics);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        EXPECT_TRUE(results.length() == 1 && OpcUa_IsGood(results[0].StatusCode));
        return results.isEmpty() ? 0 : results[0].MonitoredItemId;
    }

    void write(const UaNodeId& node, double number)
    {
        UaWriteValues nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        nodes[0].Value.Value.Datatype = OpcUaType_Double;
        nodes[0].Value.Value.Value.Double = number;
        UaStatusCodeArray results;
        UaDiagnosticInfos diagnostics;
        ASSERT_TRUE(session.write(settings, nodes, results, diagnostics).isGood());
        ASSERT_TRUE(OpcUa_IsGood(results[0]));
    }

    StatusCallback callback;
    Inbox inbox;
    UaSession session;
    ServiceSettings settings;
    const UaNodeId writable{UaString("Scalar.Double"), 2};
};

TEST_F(SubscriptionDemoServer, ChangesBeyondTheDeadbandAreReported)
{
    write(writable, 100);
    UaSubscription* subscription = create();
    ASSERT_TRUE(subscription);
    EXPECT_GT(subscription->publishingInterval(), 0);
    auto withDeadband = request(writable, 7);
    const UaDataChangeFilter filter(OpcUa_DataChangeTrigger_StatusValue, OpcUa_DeadbandType_Absolute, 5.0);
    ASSERT_TRUE(OpcUa_IsGood(filter.copyTo(&withDeadband[0].RequestedParameters.Filter)));
    monitor(*subscription, withDeadband);
    monitor(*subscription, request(writable, 8));
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[7].size() == 1 && inbox.values[8].size() == 1; }));
    for (const double value : {102.0, 110.0, 111.0}) {
        const std::size_t before = inbox.values[8].size();
        write(writable, value);
        ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[8].size() > before; })) << value;
    }
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[7].size() == 2; }));
    EXPECT_EQ(inbox.values[7], (std::vector<double>{100, 110}));
    EXPECT_EQ(inbox.values[8], (std::vector<double>{100, 102, 110, 111}));
    EXPECT_TRUE(session.deleteSubscription(settings, &subscription).isGood());
}

TEST_F(SubscriptionDemoServer, EventsComeWithTheFieldsThatWereSelectedAndPassTheCondition)
{
    UaSubscription* subscription = create();
    ASSERT_TRUE(subscription);
    auto requests = request(UaNodeId(UaString("Plant"), 2), 3);
    requests[0].ItemToMonitor.AttributeId = OpcUa_Attributes_EventNotifier;
    UaEventFilter filter;
    filter.select("SourceName");
    filter.select("Severity");
    filter.where().add(
        OpcUa_FilterOperator_GreaterThanOrEqual,
        {UaFilterOperand::attribute(UaNodeId(OpcUaId_BaseEventType),
                                    {UaQualifiedName(UaString("Severity"), 0)}, OpcUa_Attributes_Value),
         UaFilterOperand::literal(UaVariant(OpcUa_UInt16(1)))});
    ASSERT_TRUE(OpcUa_IsGood(filter.copyTo(&requests[0].RequestedParameters.Filter)));
    monitor(*subscription, requests);
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.events.length() >= 2; }));
    EXPECT_EQ(inbox.events[0].ClientHandle, 3u);
    ASSERT_EQ(inbox.events[0].NoOfEventFields, 2);
    EXPECT_EQ(inbox.events[0].EventFields[0].Datatype, OpcUaType_String);
    EXPECT_EQ(inbox.events[0].EventFields[1].Datatype, OpcUaType_UInt16);
    EXPECT_EQ(inbox.gaps, 0);
}

TEST_F(SubscriptionDemoServer, SilenceIsFilledWithKeepAlivesUntilPublishingIsStopped)
{
    UaSubscription* subscription = create(50, 1);
    ASSERT_TRUE(subscription);
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.keepAlives >= 3; }));
    SubscriptionSettings slower;
    slower.publishingInterval = 100;
    slower.maxKeepAliveCount = 2;
    EXPECT_TRUE(session.modifySubscription(settings, subscription, slower).isGood());
    EXPECT_EQ(subscription->maxKeepAliveCount(), 2u);
    monitor(*subscription, request(UaNodeId(UaString("Fast.000"), 2), 1));
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[1].size() >= 3; }));
    EXPECT_TRUE(subscription->setPublishingMode(settings, false).isGood());
    EXPECT_FALSE(subscription->publishingEnabled());
    const int before = inbox.keepAlives;
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.keepAlives >= before + 2; }));
    EXPECT_EQ(inbox.gaps, 0);
}

TEST_F(SubscriptionDemoServer, SampledItemIsReportedWithItsTrigger)
{
    write(writable, 1);
    UaSubscription* subscription = create();
    ASSERT_TRUE(subscription);
    const OpcUa_UInt32 trigger = monitor(*subscription, request(writable, 1));
    const OpcUa_UInt32 sampled =
        monitor(*subscription, request(UaNodeId(UaString("Fast.001"), 2), 2, OpcUa_MonitoringMode_Sampling));
    UaStatusCodeArray added;
    UaStatusCodeArray removed;
    UaDiagnosticInfos addDiagnostics;
    UaDiagnosticInfos removeDiagnostics;
    const UaUInt32Array links(1, &sampled);
    const UaStatus status = subscription->setTriggering(settings, trigger, links, UaUInt32Array(), added,
                                                        addDiagnostics, removed, removeDiagnostics);
    ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    ASSERT_EQ(added.length(), 1u);
    EXPECT_TRUE(OpcUa_IsGood(added[0]));
    ASSERT_TRUE(inbox.waitUntil([&] { return !inbox.values[1].empty(); }));
    write(writable, 2);
    EXPECT_TRUE(inbox.waitUntil([&] { return !inbox.values[2].empty(); }));
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    EXPECT_TRUE(
        subscription->setMonitoringMode(settings, OpcUa_MonitoringMode_Reporting, links, results, diagnostics)
            .isGood());
    const std::size_t before = inbox.values[2].size();
    EXPECT_TRUE(inbox.waitUntil([&] { return inbox.values[2].size() > before + 2; })); // by itself now
    EXPECT_TRUE(subscription->deleteMonitoredItems(settings, links, results, diagnostics).isGood());
    ASSERT_EQ(results.length(), 1u);
    EXPECT_TRUE(OpcUa_IsGood(results[0]));
}

TEST_F(SubscriptionDemoServer, ThousandsOfItemsAreCreatedInBlocksWithoutWaiting)
{
    UaSubscription* subscription = create(100);
    ASSERT_TRUE(subscription);
    constexpr OpcUa_UInt32 count = 2500;
    UaMonitoredItemCreateRequests requests(count);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(100000 + i, 4).copyTo(&requests[i].ItemToMonitor.NodeId)));
        requests[i].ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        requests[i].MonitoringMode = OpcUa_MonitoringMode_Reporting;
        requests[i].RequestedParameters.ClientHandle = i;
        requests[i].RequestedParameters.SamplingInterval = 1000;
        requests[i].RequestedParameters.QueueSize = 1;
    }
    ASSERT_TRUE(subscription->beginCreateMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, requests, 77)
                    .isGood());
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.completed.contains(77); }));
    EXPECT_EQ(inbox.completed[77], count);
    EXPECT_TRUE(inbox.waitUntil([&] { return inbox.values.size() == count; }));
    EXPECT_EQ(inbox.gaps, 0);
}

TEST_F(SubscriptionDemoServer, SubscriptionMovesToAnotherSession)
{
    UaSubscription* subscription = create(50, 2);
    ASSERT_TRUE(subscription);
    monitor(*subscription, request(UaNodeId(UaString("Fast.002"), 2), 5));
    ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[5].size() > 2; }));
    Inbox otherInbox;
    UaSession other;
    connect(other, demoserver::endpointUrl());
    UaUInt32Array available;
    UaSubscription* moved = nullptr;
    const UaStatus status =
        other.transferSubscription(settings, &otherInbox, 2, subscription->subscriptionId(),
                                   SubscriptionSettings(), true, true, available, &moved);
    ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    EXPECT_TRUE(otherInbox.waitUntil([&] { return otherInbox.values[5].size() > 2; }));
    EXPECT_TRUE(inbox.waitUntil([&] { return !inbox.statuses.empty(); })); // the old owner is told
    EXPECT_FALSE(subscription->isValid());
    EXPECT_TRUE(other.deleteSubscription(settings, &moved).isGood());
    EXPECT_TRUE(other.disconnect(settings, true).isGood());
}

// A server of its own, which may freeze and die.
class SubscriptionOwnServer : public SubscriptionDemoServer
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        connect(session, server.url());
        ASSERT_TRUE(callback.waitFor(UaClient::Connected));
        subscription = create();
        ASSERT_TRUE(subscription);
        monitor(*subscription, request(UaNodeId(UaString("Fast.003"), 2), 5));
        ASSERT_TRUE(inbox.waitUntil([&] { return inbox.values[5].size() > 3; }));
    }

    OwnDemoServer server;
    UaSubscription* subscription = nullptr;
};

TEST_F(SubscriptionOwnServer, SubscriptionGoesOnWhenTheServerWasFrozen)
{
    server.freeze();
    ASSERT_TRUE(callback.waitFor(UaClient::ConnectionErrorApiReconnect));
    server.thaw();
    ASSERT_TRUE(callback.waitFor(UaClient::Connected));
    std::size_t before = 0;
    ASSERT_TRUE(inbox.waitUntil([&] {
        before = inbox.values[5].size();
        return true;
    }));
    EXPECT_TRUE(inbox.waitUntil([&] { return inbox.values[5].size() > before + 5; }));
    EXPECT_TRUE(subscription->isValid());
    EXPECT_TRUE(inbox.statuses.empty());
    EXPECT_EQ(inbox.gaps, 0); // what was sent to the lost link has been asked for again
}

TEST_F(SubscriptionOwnServer, RestartedServerEndsItAndTakesANewOne)
{
    server.kill();
    ASSERT_TRUE(callback.waitFor(UaClient::ConnectionErrorApiReconnect));
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(callback.waitFor(UaClient::NewSessionCreated));
    ASSERT_TRUE(callback.waitFor(UaClient::Connected));
    ASSERT_TRUE(inbox.waitUntil([&] { return !inbox.statuses.empty(); }));
    EXPECT_EQ(inbox.statuses.front(), OpcUa_BadSubscriptionIdInvalid);
    EXPECT_FALSE(subscription->isValid());
    EXPECT_TRUE(session.deleteSubscription(settings, &subscription).isGood());
    subscription = create();
    ASSERT_TRUE(subscription);
    monitor(*subscription, request(UaNodeId(UaString("Fast.004"), 2), 6));
    EXPECT_TRUE(inbox.waitUntil([&] { return inbox.values[6].size() > 3; }));
    EXPECT_EQ(inbox.statuses.size(), 1u);
}

} // namespace
