// Service calls: checks, splitting, merging.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <vector>

namespace {

using UaClientSdk::BrowseContext;
using UaClientSdk::ServiceSettings;

UaReadValueIds nodesOf(OpcUa_UInt32 count)
{
    UaReadValueIds nodes(count);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        nodes[i].NodeId.Identifier.Numeric = 100000 + i;
        nodes[i].AttributeId = OpcUa_Attributes_Value;
    }
    return nodes;
}

class ServiceTest : public SessionTest
{
protected:
    UaStatus read(const UaReadValueIds& nodes)
    {
        return session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics);
    }

    ServiceSettings settings;
    UaDataValues values;
    UaDiagnosticInfos diagnostics;
};

TEST_F(ServiceTest, LongReadIsSplitAndMergedInOrder)
{
    info.maxOperationsPerServiceCall = 1000;
    ASSERT_TRUE(connect().isGood());
    std::vector<int> blocks;
    stack.on(OpcUa_ReadRequest_EncodeableType, [&](const void* request, void* response) {
        const auto& in = *static_cast<const OpcUa_ReadRequest*>(request);
        auto& out = *static_cast<OpcUa_ReadResponse*>(response);
        blocks.push_back(in.NoOfNodesToRead);
        UaDataValues results(static_cast<OpcUa_UInt32>(in.NoOfNodesToRead));
        for (OpcUa_Int32 i = 0; i < in.NoOfNodesToRead; ++i) {
            results[static_cast<OpcUa_UInt32>(i)].Value.Datatype = OpcUaType_UInt32;
            results[static_cast<OpcUa_UInt32>(i)].Value.Value.UInt32 =
                in.NodesToRead[i].NodeId.Identifier.Numeric;
        }
        results.detach(&out.NoOfResults, &out.Results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(read(nodesOf(2500)).isGood());
    EXPECT_EQ(blocks, (std::vector<int>{1000, 1000, 500}));
    ASSERT_EQ(values.length(), 2500u);
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
        ASSERT_EQ(values[i].Value.Value.UInt32, 100000 + i);
}

TEST_F(ServiceTest, BadBlockEndsTheReadAndLeavesNothingHalfDone)
{
    info.maxOperationsPerServiceCall = 10;
    ASSERT_TRUE(connect().isGood());
    const int before = stack.calls(OpcUa_ReadRequest_EncodeableType);
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_Good, OpcUa_BadUserAccessDenied});
    EXPECT_EQ(read(nodesOf(50)).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    EXPECT_TRUE(values.isEmpty());
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType) - before, 2);
}

TEST_F(ServiceTest, WrongNumberOfResultsIsRefused)
{
    ASSERT_TRUE(connect().isGood());
    for (const OpcUa_Int32 count : {0, 1, 3}) {
        stack.on(OpcUa_ReadRequest_EncodeableType, [count](const void*, void* response) {
            auto& out = *static_cast<OpcUa_ReadResponse*>(response);
            UaDataValues results(static_cast<OpcUa_UInt32>(count));
            results.detach(&out.NoOfResults, &out.Results);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        EXPECT_EQ(read(nodesOf(2)).statusCode(), 0x80460000u) << count;
        EXPECT_TRUE(values.isEmpty());
    }
}

TEST_F(ServiceTest, ChecksComeBeforeTheStack)
{
    EXPECT_EQ(read(nodesOf(1)).statusCode(), 0x80AE0000u);
    UaByteString continuation;
    UaReferenceDescriptions references;
    EXPECT_EQ(session.browse(settings, UaNodeId(84), BrowseContext(), continuation, references).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError));
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(read(UaReadValueIds()).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadNothingToDo));
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({1, 3}));
    ASSERT_TRUE(disconnect().isBad() || !session.isConnected());
    const int calls = stack.calls(OpcUa_ReadRequest_EncodeableType);
    EXPECT_EQ(read(nodesOf(1)).statusCode(), 0x80AE0000u);
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType), calls);
}

TEST_F(ServiceTest, BrowseHandsOverReferencesAndContinuationPoint)
{
    ASSERT_TRUE(connect().isGood());
    const auto answer = [](OpcUa_Int32& noOfResults, OpcUa_BrowseResult*& results, bool more) {
        UaBrowseResults out(1u);
        UaReferenceDescriptions references(2u);
        references[1].NodeId.NodeId.Identifier.Numeric = more ? 1 : 2;
        references.detach(&out[0].NoOfReferences, &out[0].References);
        if (more)
            EXPECT_EQ(OpcUa_ByteString_Assign(&out[0].ContinuationPoint, "point", 5), OpcUa_Good);
        out.detach(&noOfResults, &results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    };
    stack.on(OpcUa_BrowseRequest_EncodeableType, [&](const void* request, void* response) {
        const auto& in = *static_cast<const OpcUa_BrowseRequest*>(request);
        EXPECT_EQ(in.NodesToBrowse[0].NodeId.Identifier.Numeric, 84u);
        EXPECT_EQ(in.RequestedMaxReferencesPerNode, 100u);
        auto& out = *static_cast<OpcUa_BrowseResponse*>(response);
        return answer(out.NoOfResults, out.Results, true);
    });
    stack.on(OpcUa_BrowseNextRequest_EncodeableType, [&](const void* request, void* response) {
        const auto& in = *static_cast<const OpcUa_BrowseNextRequest*>(request);
        EXPECT_EQ(UaByteString(in.ContinuationPoints[0]).view(), "point");
        auto& out = *static_cast<OpcUa_BrowseNextResponse*>(response);
        return answer(out.NoOfResults, out.Results, false);
    });
    BrowseContext context;
    context.maxReferencesToReturn = 100;
    UaByteString point;
    UaReferenceDescriptions references;
    ASSERT_TRUE(session.browse(settings, UaNodeId(84), context, point, references).isGood());
    EXPECT_EQ(references.length(), 2u);
    ASSERT_FALSE(point.isEmpty());
    ASSERT_TRUE(session.browseNext(settings, false, point, references).isGood());
    EXPECT_EQ(references[1].NodeId.NodeId.Identifier.Numeric, 2u);
    EXPECT_TRUE(point.isEmpty());
}

} // namespace
