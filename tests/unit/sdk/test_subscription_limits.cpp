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

TEST_F(SubscriptionTest, TriggeringKeepsTheLimitOfTheServerAndTheOrderOfItsResults)
{
    ASSERT_TRUE(disconnect().isGood());
    stack.setVariable(OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
                      UaVariant(OpcUa_UInt32(4)));
    BlockSizes blocks;
    // takes three at once only, and answers each link with its own number
    stack.on(OpcUa_SetTriggeringRequest_EncodeableType, [&blocks](const void* request, void* response) {
        const auto& asked = *static_cast<const OpcUa_SetTriggeringRequest*>(request);
        auto& answer = *static_cast<OpcUa_SetTriggeringResponse*>(response);
        blocks.push_back(asked.NoOfLinksToAdd + asked.NoOfLinksToRemove);
        if (blocks.back() > 3)
            return static_cast<OpcUa_StatusCode>(OpcUa_BadTooManyOperations);
        UaStatusCodeArray added(static_cast<OpcUa_UInt32>(asked.NoOfLinksToAdd));
        for (OpcUa_UInt32 i = 0; i < added.length(); ++i)
            added[i] = asked.LinksToAdd[i];
        UaStatusCodeArray removed(static_cast<OpcUa_UInt32>(asked.NoOfLinksToRemove));
        for (OpcUa_UInt32 i = 0; i < removed.length(); ++i)
            removed[i] = asked.LinksToRemove[i];
        added.detach(&answer.NoOfAddResults, &answer.AddResults);
        removed.detach(&answer.NoOfRemoveResults, &answer.RemoveResults);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(connect().isGood());
    UaClientSdk::UaSubscription* const subscription = create(1);
    ASSERT_NE(subscription, nullptr);
    UaUInt32Array add(4u);
    UaUInt32Array remove(3u);
    for (OpcUa_UInt32 i = 0; i < 4; ++i)
        add[i] = 10 + i;
    for (OpcUa_UInt32 i = 0; i < 3; ++i)
        remove[i] = 20 + i;
    UaClientSdk::ServiceSettings settings;
    UaStatusCodeArray added;
    UaStatusCodeArray removed;
    UaDiagnosticInfos first;
    UaDiagnosticInfos second;
    EXPECT_TRUE(
        subscription->setTriggering(settings, 1, add, remove, added, first, removed, second).isGood());
    EXPECT_EQ(blocks, (BlockSizes{4, 2, 2, 2, 1}));
    ASSERT_EQ(added.length(), 4u);
    ASSERT_EQ(removed.length(), 3u);
    EXPECT_EQ(added[3], 13u);
    EXPECT_EQ(removed[2], 22u);
}

} // namespace
