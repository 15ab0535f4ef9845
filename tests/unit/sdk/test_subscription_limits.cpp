// Monitored items of a server that takes few of them at once.
#include <opcua/opcua_identifiers.h>
#include <tests/unit/sdk/servicehandlers.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasubscription.h>

#include <utility>

namespace {

TEST_F(SubscriptionTest, ItemServicesKeepTheLimitOfTheServer)
{
    ASSERT_TRUE(disconnect().isGood());
    stack.setVariable(OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
                      UaVariant(OpcUa_UInt32(4)));
    BlockSizes blocks;
    stack.on(OpcUa_CreateMonitoredItemsRequest_EncodeableType,
             RESULTS_FOR(CreateMonitoredItems, ItemsToCreate, 0, &blocks));
    stack.on(OpcUa_ModifyMonitoredItemsRequest_EncodeableType,
             RESULTS_FOR(ModifyMonitoredItems, ItemsToModify, 0, &blocks));
    stack.on(OpcUa_SetMonitoringModeRequest_EncodeableType,
             RESULTS_FOR(SetMonitoringMode, MonitoredItemIds, 0, &blocks));
    stack.on(OpcUa_DeleteMonitoredItemsRequest_EncodeableType,
             RESULTS_FOR(DeleteMonitoredItems, MonitoredItemIds, 0, &blocks));
    ASSERT_TRUE(connect().isGood());
    UaClientSdk::UaSubscription* const subscription = create(1);
    ASSERT_NE(subscription, nullptr);
    UaClientSdk::ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    UaMonitoredItemCreateResults created;
    UaMonitoredItemModifyResults modified;
    UaStatusCodeArray codes;
    const BlockSizes pieces{4, 4, 2};
    EXPECT_TRUE(subscription
                    ->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                           UaMonitoredItemCreateRequests(10u), created, diagnostics)
                    .isGood());
    EXPECT_EQ(created.length(), 10u);
    EXPECT_EQ(std::exchange(blocks, {}), pieces);
    EXPECT_TRUE(subscription
                    ->modifyMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                           UaMonitoredItemModifyRequests(10u), modified, diagnostics)
                    .isGood());
    EXPECT_EQ(std::exchange(blocks, {}), pieces);
    EXPECT_TRUE(subscription
                    ->setMonitoringMode(settings, OpcUa_MonitoringMode_Sampling, UaUInt32Array(10u), codes,
                                        diagnostics)
                    .isGood());
    EXPECT_EQ(std::exchange(blocks, {}), pieces);
    EXPECT_TRUE(
        subscription->deleteMonitoredItems(settings, UaUInt32Array(10u), codes, diagnostics).isGood());
    EXPECT_EQ(std::exchange(blocks, {}), pieces);
    ASSERT_TRUE(subscription
                    ->beginCreateMonitoredItems(settings, OpcUa_TimestampsToReturn_Both,
                                                UaMonitoredItemCreateRequests(10u), 7)
                    .isGood());
    EXPECT_TRUE(events.waitForLine("7 created Good 0 0 0 0 0 0 0 0 0 0"));
    EXPECT_EQ(std::exchange(blocks, {}), pieces);
}

} // namespace
