// The history services: details in the requests, continuation points, and answers taken apart.
#include <tests/unit/sdk/servicehandlers.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>

#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace {

using namespace UaClientSdk;

template <typename Body>
const Body* bodyOf(const OpcUa_ExtensionObject& object, const OpcUa_EncodeableType& type)
{
    EXPECT_EQ(object.TypeId.NodeId.Identifier.Numeric, type.BinaryEncodingTypeId);
    const bool decoded = object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                         object.Body.EncodeableObject.Type == &type;
    EXPECT_TRUE(decoded) << type.TypeName;
    return decoded ? static_cast<const Body*>(object.Body.EncodeableObject.Object) : nullptr;
}

template <typename Body>
Body* makeBody(OpcUa_ExtensionObject& object, const OpcUa_EncodeableType& type)
{
    void* body = OpcUa_EncodeableObject_Create(&type);
    OpcUa_ExtensionObject_AttachEncodeable(&object, &type, body);
    return static_cast<Body*>(body);
}

class HistoryTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        info.maxOperationsPerServiceCall = 2;
        ASSERT_TRUE(connect().isGood());
    }

    // fill(result, place in its block) for each node.
    void answer(std::function<void(const OpcUa_HistoryReadRequest&)> look,
                std::function<void(OpcUa_HistoryReadResult&, OpcUa_UInt32)> fill)
    {
        stack.on(OpcUa_HistoryReadRequest_EncodeableType,
                 typed<OpcUa_HistoryReadRequest, OpcUa_HistoryReadResponse>([=](const auto& in, auto& out) {
                     look(in);
                     UaHistoryReadResults answers(static_cast<OpcUa_UInt32>(in.NoOfNodesToRead));
                     for (OpcUa_UInt32 i = 0; i < answers.length(); ++i)
                         fill(answers[i], i);
                     answers.detach(&out.NoOfResults, &out.Results);
                 }));
    }

    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    HistoryReadDataResults results;
};

TEST_F(HistoryTest, RawReadCarriesItsDetailsAndPoint)
{
    answer(
        [](const OpcUa_HistoryReadRequest& in) {
            const auto* details = bodyOf<OpcUa_ReadRawModifiedDetails>(
                in.HistoryReadDetails, OpcUa_ReadRawModifiedDetails_EncodeableType);
            ASSERT_TRUE(details);
            EXPECT_EQ(details->StartTime, 1000);
            EXPECT_EQ(details->EndTime, 2000);
            EXPECT_EQ(details->NumValuesPerNode, 10u);
            EXPECT_TRUE(details->ReturnBounds);
            EXPECT_EQ(in.TimestampsToReturn, OpcUa_TimestampsToReturn_Source);
            EXPECT_EQ(UaByteString(in.NodesToRead[0].ContinuationPoint).view(), "more");
        },
        [](OpcUa_HistoryReadResult& result, OpcUa_UInt32) {
            auto* data = makeBody<OpcUa_HistoryData>(result.HistoryData, OpcUa_HistoryData_EncodeableType);
            UaDataValues(3u).detach(&data->NoOfDataValues, &data->DataValues);
            OpcUa_ByteString_Assign(&result.ContinuationPoint, "next", 4);
        });
    HistoryReadRawModifiedContext context;
    context.startTime = UaDateTime(1000);
    context.endTime = UaDateTime(2000);
    context.numValuesPerNode = 10;
    context.returnBounds = true;
    context.timestampsToReturn = OpcUa_TimestampsToReturn_Source;
    context.continuationPoint = UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>("more"), 4));
    ASSERT_TRUE(
        session.historyReadRawModified(settings, context, UaHistoryReadValueIds(1u), results, diagnostics)
            .isGood());
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].values.length(), 3u);
    EXPECT_EQ(results[0].continuationPoint.view(), "next");
}

TEST_F(HistoryTest, AnswersAreTakenNodeByNode)
{
    session.setMaxOperationsPerServiceCall(100);
    answer([](const OpcUa_HistoryReadRequest&) {},
           [](OpcUa_HistoryReadResult& result, OpcUa_UInt32 node) {
               if (node == 0) {
                   result.StatusCode = OpcUa_GoodNoData; // and no body
               } else if (node == 1) {
                   result.StatusCode = OpcUa_BadNodeIdUnknown;
               } else if (node == 2) {
                   makeBody<OpcUa_HistoryEvent>(result.HistoryData, OpcUa_HistoryEvent_EncodeableType);
               } else {
                   auto* data = makeBody<OpcUa_HistoryModifiedData>(result.HistoryData,
                                                                    OpcUa_HistoryModifiedData_EncodeableType);
                   UaDataValues(2u).detach(&data->NoOfDataValues, &data->DataValues);
                   UaModificationInfos(node == 3 ? 2u : 1u)
                       .detach(&data->NoOfModificationInfos, &data->ModificationInfos);
               }
           });
    HistoryReadRawModifiedContext context;
    context.isReadModified = true;
    ASSERT_TRUE(
        session.historyReadRawModified(settings, context, UaHistoryReadValueIds(5u), results, diagnostics)
            .isGood());
    ASSERT_EQ(results.size(), 5u);
    EXPECT_EQ(results[0].status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_GoodNoData));
    EXPECT_EQ(results[1].status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadNodeIdUnknown));
    EXPECT_EQ(results[2].status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTypeMismatch));
    EXPECT_EQ(results[3].values.length(), 2u);
    EXPECT_EQ(results[3].modificationInfos.length(), 2u);
    EXPECT_EQ(results[4].status.statusCode(), 0x80460000u); // whose info would be whose?
    EXPECT_TRUE(results[4].values.isEmpty());
}

TEST_F(HistoryTest, AggregatesGoWithTheirNodesWhenSplit)
{
    std::vector<std::pair<OpcUa_UInt32, OpcUa_UInt32>> asked;
    answer(
        [&](const OpcUa_HistoryReadRequest& in) {
            const auto* details = bodyOf<OpcUa_ReadProcessedDetails>(
                in.HistoryReadDetails, OpcUa_ReadProcessedDetails_EncodeableType);
            ASSERT_TRUE(details);
            EXPECT_EQ(details->ProcessingInterval, 500.0);
            ASSERT_EQ(details->NoOfAggregateType, in.NoOfNodesToRead);
            for (OpcUa_Int32 i = 0; i < in.NoOfNodesToRead; ++i)
                asked.emplace_back(in.NodesToRead[i].NodeId.Identifier.Numeric,
                                   details->AggregateType[i].Identifier.Numeric);
        },
        [](OpcUa_HistoryReadResult&, OpcUa_UInt32) {});
    HistoryReadProcessedContext context;
    context.processingInterval = 500.0;
    UaHistoryReadValueIds nodes(5u);
    EXPECT_TRUE(context.aggregateTypes.create(5));
    std::vector<std::pair<OpcUa_UInt32, OpcUa_UInt32>> wanted;
    for (OpcUa_UInt32 i = 0; i < 5; ++i) {
        nodes[i].NodeId.Identifier.Numeric = 10 + i;
        context.aggregateTypes[i].Identifier.Numeric = 20 + i;
        wanted.emplace_back(10 + i, 20 + i);
    }
    ASSERT_TRUE(session.historyReadProcessed(settings, context, nodes, results, diagnostics).isGood());
    EXPECT_EQ(asked, wanted);
    EXPECT_EQ(results.size(), 5u);
    EXPECT_TRUE(context.aggregateTypes.resize(4));
    EXPECT_EQ(session.historyReadProcessed(settings, context, nodes, results, diagnostics).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadAggregateListMismatch));
    EXPECT_TRUE(results.empty());
}

TEST_F(HistoryTest, TimesAndEventFiltersReachTheServer)
{
    answer(
        [](const OpcUa_HistoryReadRequest& in) {
            const auto* details = bodyOf<OpcUa_ReadAtTimeDetails>(in.HistoryReadDetails,
                                                                  OpcUa_ReadAtTimeDetails_EncodeableType);
            ASSERT_TRUE(details);
            ASSERT_EQ(details->NoOfReqTimes, 3);
            EXPECT_EQ(details->ReqTimes[2], 30);
            EXPECT_TRUE(in.ReleaseContinuationPoints);
        },
        [](OpcUa_HistoryReadResult&, OpcUa_UInt32) {});
    HistoryReadAtTimeContext atTime;
    for (const OpcUa_DateTime time : {10, 20, 30})
        EXPECT_TRUE(atTime.requestedTimes.append(time));
    atTime.releaseContinuationPoints = true;
    EXPECT_TRUE(session.historyReadAtTime(settings, atTime, UaHistoryReadValueIds(1u), results, diagnostics)
                    .isGood());

    answer(
        [](const OpcUa_HistoryReadRequest& in) {
            const auto* details =
                bodyOf<OpcUa_ReadEventDetails>(in.HistoryReadDetails, OpcUa_ReadEventDetails_EncodeableType);
            ASSERT_TRUE(details);
            EXPECT_EQ(details->Filter.NoOfSelectClauses, 4);
            EXPECT_EQ(details->Filter.WhereClause.NoOfElements, 1);
        },
        [](OpcUa_HistoryReadResult& result, OpcUa_UInt32) {
            auto* events =
                makeBody<OpcUa_HistoryEvent>(result.HistoryData, OpcUa_HistoryEvent_EncodeableType);
            UaHistoryEventFieldLists(2u).detach(&events->NoOfEvents, &events->Events);
        });
    HistoryReadEventContext event;
    EXPECT_TRUE(event.selectClauses.create(4));
    EXPECT_TRUE(event.whereClause.create(1));
    HistoryReadEventResults events;
    ASSERT_TRUE(
        session.historyReadEvent(settings, event, UaHistoryReadValueIds(3u), events, diagnostics).isGood());
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[2].events.length(), 2u);
}

TEST_F(HistoryTest, UpdatesOfEachKindAreSplitAndNamed)
{
    std::vector<std::pair<OpcUa_UInt32, int>> sent; // encoding id of the details, their number
    stack.on(OpcUa_HistoryUpdateRequest_EncodeableType,
             typed<OpcUa_HistoryUpdateRequest, OpcUa_HistoryUpdateResponse>([&](const auto& in, auto& out) {
                 const OpcUa_ExtensionObject& details =
                     in.HistoryUpdateDetails[in.NoOfHistoryUpdateDetails - 1];
                 sent.emplace_back(details.TypeId.NodeId.Identifier.Numeric, in.NoOfHistoryUpdateDetails);
                 EXPECT_EQ(details.Body.EncodeableObject.Type->BinaryEncodingTypeId,
                           details.TypeId.NodeId.Identifier.Numeric);
                 UaHistoryUpdateResults(static_cast<OpcUa_UInt32>(in.NoOfHistoryUpdateDetails))
                     .detach(&out.NoOfResults, &out.Results);
             }));
    UaHistoryUpdateResults updated;
    EXPECT_TRUE(
        session.historyUpdateData(settings, UaUpdateDataDetailsArray(3u), updated, diagnostics).isGood());
    EXPECT_EQ(updated.length(), 3u);
    EXPECT_TRUE(
        session.historyUpdateEvents(settings, UaUpdateEventDetailsArray(1u), updated, diagnostics).isGood());
    EXPECT_TRUE(
        session.historyDeleteRawModified(settings, UaDeleteRawModifiedDetailsArray(1u), updated, diagnostics)
            .isGood());
    EXPECT_TRUE(
        session.historyDeleteAtTime(settings, UaDeleteAtTimeDetailsArray(1u), updated, diagnostics).isGood());
    EXPECT_TRUE(
        session.historyDeleteEvents(settings, UaDeleteEventDetailsArray(1u), updated, diagnostics).isGood());
    EXPECT_EQ(sent, (std::vector<std::pair<OpcUa_UInt32, int>>{
                        {682, 2}, {682, 1}, {685, 1}, {688, 1}, {691, 1}, {694, 1}}));
    EXPECT_EQ(
        session.historyUpdateData(settings, UaUpdateDataDetailsArray(), updated, diagnostics).statusCode(),
        0x800F0000u);
}

} // namespace
