// A server that is not ours and takes three items in a call, which it enforces.
#include <opcua/opcua.h>
#include <tests/support/owndemoserver.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/operationlimits.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace UaClientSdk;

constexpr OpcUa_UInt32 firstOfMany = 100000;

class QuietSession : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

class QuietSubscription : public UaSubscriptionCallback
{
public:
    void subscriptionStatusChanged(OpcUa_UInt32, const UaStatus&) override {}
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications&, UaDiagnosticInfos&) override {}
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}
};

class SmallDemoServerTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        ASSERT_TRUE(server.start("pki", "--per-call 3"));
        const UaStatus status = session.connect(UaString(server.url().c_str()), SessionConnectInfo(),
                                                SessionSecurityInfo(), &callback);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    }
    void TearDown() override { EXPECT_TRUE(session.disconnect(settings, true).isGood()); }

    void readFifty()
    {
        UaReadValueIds nodes(50u);
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            EXPECT_TRUE(OpcUa_IsGood(UaNodeId(firstOfMany + i, 4).copyTo(&nodes[i].NodeId)));
            nodes[i].AttributeId = OpcUa_Attributes_NodeId;
        }
        UaDataValues values;
        const UaStatus status =
            session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
        for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
            ASSERT_EQ(UaVariant(values[i].Value).toString().toStdString(),
                      "ns=4;i=" + std::to_string(firstOfMany + i));
    }
    void browseFifty()
    {
        UaBrowseDescriptions nodes(50u);
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            EXPECT_TRUE(OpcUa_IsGood(UaNodeId(firstOfMany + i, 4).copyTo(&nodes[i].NodeId)));
            nodes[i].BrowseDirection = OpcUa_BrowseDirection_Inverse;
            nodes[i].ResultMask = OpcUa_BrowseResultMask_All;
        }
        UaBrowseResults results;
        const UaStatus status = session.browseList(settings, UaNodeId(), 0, nodes, results, diagnostics);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
        for (const OpcUa_BrowseResult& result : results)
            ASSERT_EQ(result.NoOfReferences, 1) << "the folder";
    }
    void monitorTen()
    {
        QuietSubscription events;
        UaSubscription* subscription = nullptr;
        ASSERT_TRUE(
            session.createSubscription(settings, &events, 1, SubscriptionSettings(), true, &subscription)
                .isGood());
        UaMonitoredItemCreateRequests requests(10u);
        for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
            EXPECT_TRUE(OpcUa_IsGood(UaNodeId(firstOfMany + i, 4).copyTo(&requests[i].ItemToMonitor.NodeId)));
            requests[i].ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
            requests[i].MonitoringMode = OpcUa_MonitoringMode_Reporting;
            requests[i].RequestedParameters.ClientHandle = i;
        }
        UaMonitoredItemCreateResults results;
        const UaStatus status = subscription->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                                   requests, results, diagnostics);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        for (const OpcUa_MonitoredItemCreateResult& result : results)
            EXPECT_TRUE(OpcUa_IsGood(result.StatusCode));
        EXPECT_TRUE(session.deleteSubscription(settings, &subscription).isGood());
    }

    OwnDemoServer server;
    QuietSession callback;
    UaSession session;
    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
};

TEST_F(SmallDemoServerTest, IsReadBrowsedAndMonitoredInPieces)
{
    const OperationLimits limits = session.operationLimits();
    EXPECT_EQ(limits.maxNodesPerRead, 3u);
    EXPECT_EQ(limits.maxNodesPerBrowse, 3u);
    EXPECT_EQ(limits.maxMonitoredItemsPerCall, 3u);
    EXPECT_EQ(limits.maxBrowseContinuationPoints, 3u);
    readFifty();
    browseFifty();
    monitorTen();
    EXPECT_TRUE(session.loadDataTypeDictionaries().isGood());
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3010, 3)).isNull()) << "its types are known";
}

} // namespace
