// The groups of services beside read and browse: what they send, how they split and what they hand over.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/servicehandlers.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <vector>

namespace {

using UaClientSdk::CallIn;
using UaClientSdk::CallOut;
using UaClientSdk::QueryContext;
using UaClientSdk::QueryFindings;
using UaClientSdk::ServiceSettings;

class ServiceGroupTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        info.maxOperationsPerServiceCall = 2;
    }

    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    UaStatusCodeArray codes;
    BlockSizes blocks;
};

TEST_F(ServiceGroupTest, NodeManagementIsSplitAndCounted)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_AddNodesRequest_EncodeableType, RESULTS_FOR(AddNodes, NodesToAdd, 0, &blocks));
    stack.on(OpcUa_AddReferencesRequest_EncodeableType,
             RESULTS_FOR(AddReferences, ReferencesToAdd, 0, &blocks));
    stack.on(OpcUa_DeleteNodesRequest_EncodeableType, RESULTS_FOR(DeleteNodes, NodesToDelete, 0, &blocks));
    stack.on(OpcUa_DeleteReferencesRequest_EncodeableType,
             RESULTS_FOR(DeleteReferences, ReferencesToDelete, 0, &blocks));
    UaAddNodesResults added;
    EXPECT_TRUE(session.addNodes(settings, UaAddNodesItems(3u), added, diagnostics).isGood());
    EXPECT_EQ(added.length(), 3u);
    EXPECT_TRUE(session.addReferences(settings, UaAddReferencesItems(3u), codes, diagnostics).isGood());
    EXPECT_EQ(codes.length(), 3u);
    EXPECT_TRUE(session.deleteNodes(settings, UaDeleteNodesItems(3u), codes, diagnostics).isGood());
    EXPECT_TRUE(session.deleteReferences(settings, UaDeleteReferencesItems(3u), codes, diagnostics).isGood());
    EXPECT_EQ(blocks, (BlockSizes{2, 1, 2, 1, 2, 1, 2, 1}));

    stack.on(OpcUa_DeleteNodesRequest_EncodeableType, RESULTS_FOR(DeleteNodes, NodesToDelete, -1));
    EXPECT_EQ(session.deleteNodes(settings, UaDeleteNodesItems(2u), codes, diagnostics).statusCode(),
              0x80460000u);
    // what the first block did is told although the second one failed
    stack.on(OpcUa_DeleteNodesRequest_EncodeableType, RESULTS_FOR(DeleteNodes, NodesToDelete));
    stack.failNext(OpcUa_DeleteNodesRequest_EncodeableType, {OpcUa_Good, OpcUa_BadTimeout});
    EXPECT_EQ(session.deleteNodes(settings, UaDeleteNodesItems(6u), codes, diagnostics).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));
    EXPECT_EQ(codes.length(), 2u);
}

TEST_F(ServiceGroupTest, RegisteredNodesComeInOrder)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_RegisterNodesRequest_EncodeableType,
             typed<OpcUa_RegisterNodesRequest, OpcUa_RegisterNodesResponse>([&](const auto& in, auto& out) {
                 blocks.push_back(in.NoOfNodesToRegister);
                 UaNodeIdArray nodes(in.NoOfNodesToRegister, in.NodesToRegister);
                 for (OpcUa_NodeId& node : nodes)
                     node.Identifier.Numeric += 1000;
                 nodes.detach(&out.NoOfRegisteredNodeIds, &out.RegisteredNodeIds);
             }));
    std::vector<OpcUa_UInt32> unregistered;
    stack.on(OpcUa_UnregisterNodesRequest_EncodeableType,
             typed<OpcUa_UnregisterNodesRequest, OpcUa_UnregisterNodesResponse>([&](const auto& in, auto&) {
                 for (OpcUa_Int32 i = 0; i < in.NoOfNodesToUnregister; ++i)
                     unregistered.push_back(in.NodesToUnregister[i].Identifier.Numeric);
             }));
    UaNodeIdArray nodes(5u);
    for (OpcUa_UInt32 i = 0; i < 5; ++i)
        nodes[i].Identifier.Numeric = i;
    UaNodeIdArray registered;
    ASSERT_TRUE(session.registerNodes(settings, nodes, registered).isGood());
    EXPECT_EQ(blocks, (BlockSizes{2, 2, 1}));
    ASSERT_EQ(registered.length(), 5u);
    ASSERT_TRUE(session.unregisterNodes(settings, registered).isGood());
    EXPECT_EQ(unregistered, (std::vector<OpcUa_UInt32>{1000, 1001, 1002, 1003, 1004}));
    EXPECT_EQ(session.unregisterNodes(settings, UaNodeIdArray()).statusCode(), 0x800F0000u);
}

TEST_F(ServiceGroupTest, DiagnosticInfosOfBlocksAreMerged)
{
    ASSERT_TRUE(connect().isGood());
    int block = 0;
    stack.on(OpcUa_WriteRequest_EncodeableType,
             typed<OpcUa_WriteRequest, OpcUa_WriteResponse>([&](const auto& in, auto& out) {
                 UaStatusCodeArray(static_cast<OpcUa_UInt32>(in.NoOfNodesToWrite))
                     .detach(&out.NoOfResults, &out.Results);
                 if (++block == 2) { // the others come without
                     UaDiagnosticInfoArray infos(2u);
                     infos[1].SymbolicId = 0;
                     infos.detach(&out.NoOfDiagnosticInfos, &out.DiagnosticInfos);
                     UaStringArray table(1u);
                     EXPECT_TRUE(OpcUa_IsGood(UaString("cause").copyTo(&table[0])));
                     table.detach(&out.ResponseHeader.NoOfStringTable, &out.ResponseHeader.StringTable);
                 }
             }));
    ASSERT_TRUE(session.write(settings, UaWriteValues(5u), codes, diagnostics).isGood());
    ASSERT_EQ(diagnostics.length(), 5u);
    EXPECT_EQ(diagnostics.symbolicId(3).toStdString(), "cause");
    EXPECT_TRUE(diagnostics.symbolicId(1).isNull());
}

TEST_F(ServiceGroupTest, CallHandsArgumentsOverBothWays)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_CallRequest_EncodeableType,
             typed<OpcUa_CallRequest, OpcUa_CallResponse>([](const auto& in, auto& out) {
                 const OpcUa_CallMethodRequest& request = in.MethodsToCall[0];
                 UaCallMethodResults results(static_cast<OpcUa_UInt32>(in.NoOfMethodsToCall));
                 OpcUa_CallMethodResult& result = results[0];
                 result.StatusCode =
                     request.ObjectId.Identifier.Numeric == 1 ? OpcUa_Good : OpcUa_BadInvalidArgument;
                 UaStatusCodeArray(2u).detach(&result.NoOfInputArgumentResults, &result.InputArgumentResults);
                 result.InputArgumentResults[1] = OpcUa_BadOutOfRange;
                 UaVariantArray(request.NoOfInputArguments, request.InputArguments)
                     .detach(&result.NoOfOutputArguments, &result.OutputArguments);
                 results.detach(&out.NoOfResults, &out.Results);
             }));
    CallIn callIn;
    callIn.objectId = UaNodeId(1);
    callIn.methodId = UaNodeId(2);
    EXPECT_TRUE(callIn.inputArguments.create(2));
    EXPECT_TRUE(OpcUa_IsGood(UaVariant(OpcUa_Int32(42)).copyTo(&callIn.inputArguments[1])));
    CallOut callOut;
    ASSERT_TRUE(session.call(settings, callIn, callOut).isGood());
    EXPECT_TRUE(callOut.callResult.isGood());
    ASSERT_EQ(callOut.outputArguments.length(), 2u);
    EXPECT_EQ(callOut.outputArguments[1].Value.Int32, 42);
    callIn.objectId = UaNodeId(9);
    ASSERT_TRUE(session.call(settings, callIn, callOut).isGood()); // the service was, the method was not
    EXPECT_EQ(callOut.callResult.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidArgument));
    EXPECT_EQ(callOut.inputArgumentResults[1], static_cast<OpcUa_StatusCode>(OpcUa_BadOutOfRange));

    stack.on(OpcUa_CallRequest_EncodeableType, RESULTS_FOR(Call, MethodsToCall, 0, &blocks));
    UaCallMethodResults results;
    EXPECT_TRUE(session.callList(settings, UaCallMethodRequests(3u), results, diagnostics).isGood());
    EXPECT_EQ(blocks, (BlockSizes{2, 1}));
    ASSERT_TRUE(disconnect().isGood());
    EXPECT_EQ(session.call(settings, callIn, callOut).statusCode(), 0x80AE0000u);
    EXPECT_EQ(callOut.outputArguments.length(), 0u); // nothing of the call before
}

// A method with input arguments only; the node of the property answers with what a test wants.
class MethodArgumentTest : public ServiceGroupTest
{
protected:
    void SetUp() override
    {
        ServiceGroupTest::SetUp();
        stack.on(
            OpcUa_TranslateBrowsePathsToNodeIdsRequest_EncodeableType,
            typed<OpcUa_TranslateBrowsePathsToNodeIdsRequest, OpcUa_TranslateBrowsePathsToNodeIdsResponse>(
                [this](const auto& in, auto& out) { translate(in, out); }));
        ASSERT_TRUE(connect().isGood());
        stack.on(OpcUa_ReadRequest_EncodeableType,
                 typed<OpcUa_ReadRequest, OpcUa_ReadResponse>([this](const auto& in, auto& out) {
                     EXPECT_EQ(in.NoOfNodesToRead, 1);
                     EXPECT_EQ(in.NodesToRead[0].NodeId.Identifier.Numeric, 500u);
                     UaDataValues results(1u);
                     results[0].StatusCode = valueStatus;
                     EXPECT_TRUE(OpcUa_IsGood(value.copyTo(&results[0].Value)));
                     results.detach(&out.NoOfResults, &out.Results);
                 }));
    }

    void translate(const OpcUa_TranslateBrowsePathsToNodeIdsRequest& in,
                   OpcUa_TranslateBrowsePathsToNodeIdsResponse& out) const
    {
        UaBrowsePathResults results(static_cast<OpcUa_UInt32>(in.NoOfBrowsePaths));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_RelativePathElement& element = in.BrowsePaths[i].RelativePath.Elements[0];
            EXPECT_EQ(element.ReferenceTypeId.Identifier.Numeric, 46u);
            if (UaString(element.TargetName.Name).view() == "OutputArguments") {
                results[i].StatusCode = OpcUa_BadNoMatch;
                continue;
            }
            results[i].StatusCode = pathStatus;
            UaBrowsePathTargets targets(1u);
            targets[0].TargetId.NodeId.Identifier.Numeric = 500;
            targets[0].RemainingPathIndex = remainingPath;
            targets.detach(&results[i].NoOfTargets, &results[i].Targets);
        }
        results.detach(&out.NoOfResults, &out.Results);
    }

    void offerArguments(OpcUa_UInt32 count)
    {
        UaExtensionObjectArray objects(count);
        for (OpcUa_UInt32 i = 0; i < count; ++i) {
            auto* argument =
                static_cast<OpcUa_Argument*>(OpcUa_EncodeableObject_Create(&OpcUa_Argument_EncodeableType));
            argument->ValueRank = static_cast<OpcUa_Int32>(i);
            OpcUa_ExtensionObject_AttachEncodeable(&objects[i], &OpcUa_Argument_EncodeableType, argument);
        }
        value.setExtensionObjectArray(objects);
    }

    OpcUa_StatusCode get()
    {
        return session.getMethodArguments(settings, UaNodeId(7), inputs, outputs).statusCode();
    }

    OpcUa_StatusCode pathStatus = OpcUa_Good;
    OpcUa_UInt32 remainingPath = 0xFFFFFFFFu;
    OpcUa_StatusCode valueStatus = OpcUa_Good;
    UaVariant value;
    UaArguments inputs;
    UaArguments outputs;
};

TEST_F(MethodArgumentTest, AreThoseOfItsProperties)
{
    offerArguments(2);
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    ASSERT_EQ(inputs.length(), 2u);
    EXPECT_EQ(inputs[1].ValueRank, 1);
    EXPECT_TRUE(outputs.isEmpty());
    value = UaVariant(); // a property without a value
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    EXPECT_TRUE(inputs.isEmpty());
    pathStatus = OpcUa_BadNoMatch; // a method without arguments
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    remainingPath = 0; // the rest of the path is on another server
    pathStatus = OpcUa_Good;
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    EXPECT_TRUE(inputs.isEmpty());
}

TEST_F(MethodArgumentTest, OfOddServersAreRefused)
{
    value = UaVariant(OpcUa_Int32(5));
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_BadTypeMismatch));
    UaExtensionObjectArray objects(1u); // neither type nor body
    value.setExtensionObjectArray(objects);
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_BadTypeMismatch));
    offerArguments(2);
    valueStatus = OpcUa_BadUserAccessDenied;
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    pathStatus = OpcUa_BadNodeIdUnknown;
    EXPECT_EQ(get(), static_cast<OpcUa_StatusCode>(OpcUa_BadNodeIdUnknown));
    EXPECT_TRUE(inputs.isEmpty());
}

TEST_F(ServiceGroupTest, QueryHandsOverDataFindingsAndContinuationPoint)
{
    ASSERT_TRUE(connect().isGood());
    OpcUa_UInt32 parsing = 3;
    stack.on(OpcUa_QueryFirstRequest_EncodeableType,
             typed<OpcUa_QueryFirstRequest, OpcUa_QueryFirstResponse>([&](const auto& in, auto& out) {
                 EXPECT_EQ(in.NoOfNodeTypes, 3); // not split
                 EXPECT_EQ(in.MaxDataSetsToReturn, 10u);
                 EXPECT_EQ(in.Filter.NoOfElements, 1);
                 UaQueryDataSets(2u).detach(&out.NoOfQueryDataSets, &out.QueryDataSets);
                 UaParsingResults(parsing).detach(&out.NoOfParsingResults, &out.ParsingResults);
                 OpcUa_ByteString_Assign(&out.ContinuationPoint, "more", 4);
             }));
    stack.on(OpcUa_QueryNextRequest_EncodeableType,
             typed<OpcUa_QueryNextRequest, OpcUa_QueryNextResponse>([&](const auto& in, auto& out) {
                 EXPECT_EQ(UaByteString(in.ContinuationPoint).view(), "more");
                 UaQueryDataSets(1u).detach(&out.NoOfQueryDataSets, &out.QueryDataSets);
             }));
    QueryContext context;
    context.maxDataSetsToReturn = 10;
    EXPECT_TRUE(context.filter.create(1));
    UaQueryDataSets dataSets;
    UaByteString point;
    QueryFindings findings;
    ASSERT_TRUE(session.queryFirst(settings, context, UaNodeTypeDescriptions(3u), dataSets, point, findings)
                    .isGood());
    EXPECT_EQ(dataSets.length(), 2u);
    EXPECT_EQ(findings.parsingResults.length(), 3u);
    ASSERT_TRUE(session.queryNext(settings, false, point, dataSets).isGood());
    EXPECT_EQ(dataSets.length(), 1u);
    EXPECT_TRUE(point.isEmpty());
    EXPECT_EQ(session.queryNext(settings, false, point, dataSets).statusCode(), 0x800F0000u);
    parsing = 2;
    EXPECT_EQ(session.queryFirst(settings, context, UaNodeTypeDescriptions(3u), dataSets, point, findings)
                  .statusCode(),
              0x80460000u);
    EXPECT_TRUE(dataSets.isEmpty());
    EXPECT_EQ(point.view(), "more"); // still to be released
}

TEST_F(ServiceGroupTest, CancelTellsHowManyWereGivenUp)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_CancelRequest_EncodeableType,
             typed<OpcUa_CancelRequest, OpcUa_CancelResponse>(
                 [](const auto& in, auto& out) { out.CancelCount = in.RequestHandle == 77 ? 4 : 0; }));
    OpcUa_UInt32 count = 0;
    ASSERT_TRUE(session.cancel(settings, 77, count).isGood());
    EXPECT_EQ(count, 4u);
    stack.failNext(OpcUa_CancelRequest_EncodeableType, {OpcUa_BadServiceUnsupported});
    EXPECT_TRUE(session.cancel(settings, 77, count).isBad());
    EXPECT_EQ(count, 0u);
}

} // namespace
