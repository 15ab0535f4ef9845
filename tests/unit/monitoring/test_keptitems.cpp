// A tool with a subscription of its own, whose items come back in a new session.
#include <monitoring/keptitems.h>
#include <opcua/opcua_attributes.h>
#include <tests/unit/monitoring/monitoringtest.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasubscription.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using monitoring::KeptItems;
using testing::ElementsAre;

class KeptItemsTest : public MonitoringTest
{
protected:
    static UaMonitoredItemCreateRequests request(OpcUa_UInt32 handle, OpcUa_UInt16 namespaceIndex = 2)
    {
        UaMonitoredItemCreateRequests one(1u);
        one[0].ItemToMonitor.NodeId.NamespaceIndex = namespaceIndex;
        one[0].ItemToMonitor.NodeId.Identifier.Numeric = handle;
        one[0].ItemToMonitor.AttributeId = OpcUa_Attributes_EventNotifier;
        one[0].RequestedParameters.ClientHandle = handle;
        return one;
    }
    UaStatus createAll(UaClientSdk::UaSubscription* subscription)
    {
        return kept.create(*subscription, settings, OpcUa_TimestampsToReturn_Both);
    }

    KeptItems kept;
    UaClientSdk::ServiceSettings settings;
};

TEST_F(KeptItemsTest, ComeBackInANewSessionUnderTheirNewNames)
{
    UaClientSdk::UaSubscription* subscription = create(1);
    refuse("ns=2;i=2", OpcUa_BadNodeIdUnknown);
    for (const OpcUa_UInt32 handle : {1u, 2u})
        kept.add(request(handle)[0]);
    kept.add(request(3, 5)[0]);
    ASSERT_TRUE(createAll(subscription).isGood());
    EXPECT_EQ(kept.monitoredItemId(1), 1u);
    EXPECT_EQ(kept.result(2), nullptr);
    ASSERT_EQ(kept.refused().size(), 1u);
    EXPECT_EQ(kept.refused()[0].status, OpcUa_BadNodeIdUnknown);
    ASSERT_TRUE(createAll(subscription).isGood()); // nothing is asked for twice
    accept("ns=2;i=2");
    kept.retryRefused();
    ASSERT_TRUE(createAll(subscription).isGood());

    interrupt();
    replace();
    ASSERT_TRUE(remove(subscription).isGood());
    subscription = create(1);
    kept.subscriptionReplaced();
    kept.remap({{0, 0}, {2, 7}});
    ASSERT_TRUE(createAll(subscription).isGood());
    EXPECT_THAT(asked(), ElementsAre("create 1: ns=2;i=1 ns=2;i=2 ns=5;i=3", "create 1: ns=2;i=2",
                                     "create 2: ns=7;i=1 ns=7;i=2"));
    ASSERT_EQ(kept.refused().size(), 1u); // of a namespace that is gone
    EXPECT_EQ(kept.refused()[0].clientHandle, 3u);
    const OpcUa_UInt32 id = kept.monitoredItemId(1);
    ASSERT_TRUE(kept.remove(subscription, settings, {1, 3}).isGood());
    EXPECT_EQ(asked().back(), "delete: " + std::to_string(id));
}

TEST_F(KeptItemsTest, GoByTheHandleOfTheirLatestRequest)
{
    UaClientSdk::UaSubscription* subscription = create(1);
    kept.add(request(1)[0]);
    ASSERT_TRUE(createAll(subscription).isGood());
    const OpcUa_UInt32 id = kept.monitoredItemId(1);
    const auto change = [](OpcUa_UInt32 from, OpcUa_UInt32 to) {
        KeptItems::Change one{from, request(1)};
        one.request[0].RequestedParameters.ClientHandle = to;
        one.request[0].RequestedParameters.SamplingInterval = 7;
        return one;
    };
    std::vector<OpcUa_StatusCode> statuses;
    ASSERT_TRUE(kept.modify(*subscription, settings, OpcUa_TimestampsToReturn_Both, {change(1, 5)}, statuses)
                    .isGood());
    EXPECT_EQ(kept.monitoredItemId(5), id);
    EXPECT_EQ(kept.monitoredItemId(1), 0u);
    stack.failNext(OpcUa_ModifyMonitoredItemsRequest_EncodeableType, {OpcUa_BadTooManyOperations});
    EXPECT_TRUE(kept.modify(*subscription, settings, OpcUa_TimestampsToReturn_Both, {change(5, 6)}, statuses)
                    .isBad());
    EXPECT_THAT(statuses, ElementsAre(OpcUa_BadTooManyOperations));
    EXPECT_EQ(kept.monitoredItemId(5), id); // as before
    ASSERT_TRUE(kept.modify(*subscription, settings, OpcUa_TimestampsToReturn_Both, {change(8, 9)}, statuses)
                    .isGood());
    ASSERT_TRUE(createAll(subscription).isGood()); // what was not there is created
    EXPECT_NE(kept.monitoredItemId(9), 0u);
}

TEST_F(KeptItemsTest, ACallWithoutAnAnswerAsksForAnotherSubscription)
{
    UaClientSdk::UaSubscription* subscription = create(1);
    kept.add(request(1)[0]);
    stack.failNext(OpcUa_CreateMonitoredItemsRequest_EncodeableType, {OpcUa_BadTimeout});
    EXPECT_EQ(createAll(subscription), OpcUa_BadTimeout);
    EXPECT_TRUE(kept.mustReplace());
    kept.subscriptionReplaced();
    EXPECT_FALSE(kept.mustReplace());
    EXPECT_TRUE(createAll(subscription).isGood());
    EXPECT_NE(kept.monitoredItemId(1), 0u);
}

TEST(Namespaces, OfAnEventFilterAreFollowedIntoItsClauses)
{
    auto* const filter =
        static_cast<OpcUa_EventFilter*>(OpcUa_EncodeableObject_Create(&OpcUa_EventFilter_EncodeableType));
    UaSimpleAttributeOperands selected(1u);
    selected[0].TypeDefinitionId.NamespaceIndex = 2;
    UaQualifiedNameArray path(2u);
    path[1].NamespaceIndex = 3;
    path.detach(&selected[0].NoOfBrowsePath, &selected[0].BrowsePath);
    selected.detach(&filter->NoOfSelectClauses, &filter->SelectClauses);
    UaExtensionObjectArray operands(1u);
    auto* const literal = static_cast<OpcUa_LiteralOperand*>(
        OpcUa_EncodeableObject_Create(&OpcUa_LiteralOperand_EncodeableType));
    ASSERT_TRUE(OpcUa_IsGood(UaVariant(UaNodeId(8, 2)).copyTo(&literal->Value)));
    OpcUa_ExtensionObject_AttachEncodeable(&operands[0], &OpcUa_LiteralOperand_EncodeableType, literal);
    UaContentFilterElements elements(1u);
    operands.detach(&elements[0].NoOfFilterOperands, &elements[0].FilterOperands);
    elements.detach(&filter->WhereClause.NoOfElements, &filter->WhereClause.Elements);
    UaMonitoredItemCreateRequests requests(1u);
    OpcUa_ExtensionObject_AttachEncodeable(&requests[0].RequestedParameters.Filter,
                                           &OpcUa_EventFilter_EncodeableType, filter);

    EXPECT_TRUE(monitoring::remapRequest(requests[0], {{2, 4}, {3, 6}}));
    EXPECT_EQ(filter->SelectClauses[0].TypeDefinitionId.NamespaceIndex, 4);
    EXPECT_EQ(filter->SelectClauses[0].BrowsePath[0].NamespaceIndex, 0);
    EXPECT_EQ(filter->SelectClauses[0].BrowsePath[1].NamespaceIndex, 6);
    EXPECT_EQ(UaVariant(literal->Value).toNodeId(), UaNodeId(8, 4));
    EXPECT_FALSE(monitoring::remapRequest(requests[0], {{4, 4}})); // 6 is gone
}

} // namespace
