// Servers that take little at once: what the session asks them about it, what it then sends, and what it does
// when they take less than they say.
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/completionrecorder.h>
#include <tests/unit/sdk/servicehandlers.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/operationlimits.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using UaClientSdk::OperationLimits;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;

constexpr OpcUa_UInt32 readLimit = OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRead;
constexpr OpcUa_UInt32 writeLimit = OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerWrite;
constexpr OpcUa_StatusCode tooMany = OpcUa_BadTooManyOperations;

const std::vector<OpcUa_StatusCode> tooLarge = {OpcUa_BadTooManyOperations, OpcUa_BadRequestTooLarge,
                                                OpcUa_BadResponseTooLarge, OpcUa_BadEncodingLimitsExceeded};

class OperationLimitsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        stack.reset();
        readHandler = stack.handler(OpcUa_ReadRequest_EncodeableType);
        stack.on(OpcUa_WriteRequest_EncodeableType, RESULTS_FOR(Write, NodesToWrite));
    }

    UaStatus connect()
    {
        return session.connect(UaString("opc.tcp://localhost:4840"), info, UaClientSdk::SessionSecurityInfo(),
                               &callback);
    }
    UaStatus disconnect() { return session.disconnect(ServiceSettings(), true); }
    void passWatchdogTime() { stack.ticks += session.watchdogTime() + 1; }

    void tell(OpcUa_UInt32 node, OpcUa_UInt32 value) { stack.setVariable(node, UaVariant(value)); }
    // The server takes no more than that many at once.
    void takeReads(OpcUa_Int32 maximum, OpcUa_StatusCode refusal = tooMany)
    {
        take(OpcUa_ReadRequest_EncodeableType, &OpcUa_ReadRequest::NoOfNodesToRead, readHandler, maximum,
             refusal);
    }
    void takeWrites(OpcUa_Int32 maximum, OpcUa_StatusCode refusal = tooMany)
    {
        take(OpcUa_WriteRequest_EncodeableType, &OpcUa_WriteRequest::NoOfNodesToWrite,
             RESULTS_FOR(Write, NodesToWrite), maximum, refusal);
    }
    template <typename Request>
    void take(const OpcUa_EncodeableType& type, OpcUa_Int32 Request::*count, const FakeStack::Handler& answer,
              OpcUa_Int32 maximum, OpcUa_StatusCode refusal)
    {
        stack.on(
            type,
            [this, count, answer, maximum, refusal](const void* request, void* response) {
                const OpcUa_Int32 items = static_cast<const Request*>(request)->*count;
                if (items > maximum) {
                    refused.push_back(items);
                    return refusal;
                }
                sent.push_back(items);
                return answer(request, response);
            });
    }

    // The numbers that so many nodes read as; empty when the read failed.
    std::vector<OpcUa_Int32> read(OpcUa_UInt32 count)
    {
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        status = session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, numberedNodes(count), values,
                              diagnostics);
        std::vector<OpcUa_Int32> numbers;
        for (const OpcUa_DataValue& value : values)
            numbers.push_back(value.Value.Value.Int32);
        return numbers;
    }
    static std::vector<OpcUa_Int32> numbersOf(OpcUa_Int32 count)
    {
        std::vector<OpcUa_Int32> numbers;
        for (OpcUa_Int32 i = 0; i < count; ++i)
            numbers.push_back(100000 + i);
        return numbers;
    }
    Completion completionOf(const UaStatus& begun)
    {
        EXPECT_TRUE(begun.isGood());
        EXPECT_TRUE(callback.waitForCompletions(++completions));
        return callback.completions().back();
    }
    UaStatus beginRead(OpcUa_UInt32 count)
    {
        return session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, numberedNodes(count), 1);
    }
    void forgetBlocks()
    {
        sent.clear();
        refused.clear();
    }

    FakeStack& stack = FakeStack::instance();
    FakeStack::Handler readHandler; // of a server that takes any number
    BlockSizes sent;                // blocks that the server took
    BlockSizes refused;             // and those that it did not
    ServiceSettings settings;
    UaStatus status;
    std::size_t completions = 0;
    UaClientSdk::SessionConnectInfo info;
    CompletionRecorder callback;
    UaClientSdk::UaSession session;
};

TEST_F(OperationLimitsTest, SmallServersAreNeverAskedForMoreThanTheyTake)
{
    for (const OpcUa_UInt32 most : {10u, 5u, 3u, 1u}) {
        const auto largest = static_cast<OpcUa_Int32>(most);
        tell(readLimit, most);
        tell(writeLimit, 7);
        takeReads(largest);
        forgetBlocks();
        ASSERT_TRUE(connect().isGood());
        EXPECT_EQ(session.operationLimits().maxNodesPerRead, most);
        EXPECT_EQ(session.operationLimits().maxNodesPerWrite, 7u) << "read in pieces";
        EXPECT_EQ(read(50), numbersOf(50)) << most;
        const Completion completion = completionOf(beginRead(50));
        EXPECT_EQ(completion, (Completion{"read", 1, OpcUa_Good, 50}));
        EXPECT_EQ(completion.lastValue, 100049);
        EXPECT_TRUE(refused.empty()) << most;
        EXPECT_EQ(*std::max_element(sent.begin(), sent.end()), largest) << "as few calls as can be";
        ASSERT_TRUE(disconnect().isGood());
    }
}

TEST_F(OperationLimitsTest, TheApplicationsOwnMaximumStaysWhenItIsSmaller)
{
    tell(readLimit, 10);
    info.maxOperationsPerServiceCall = 4;
    ASSERT_TRUE(connect().isGood());
    takeReads(4);
    read(10);
    EXPECT_EQ(sent, (BlockSizes{4, 4, 2}));
    session.setMaxOperationsPerServiceCall(0);
    takeReads(10);
    forgetBlocks();
    read(25);
    EXPECT_EQ(sent, (BlockSizes{10, 10, 5}));
}

TEST_F(OperationLimitsTest, AServerThatTellsNothingCostsTwoReads)
{
    const RecordedTrace trace(UaTrace::Warning);
    takeReads(1000);
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(sent, (BlockSizes{1, 1, 14})) << "the namespaces, and the limits";
    EXPECT_EQ(session.operationLimits(), OperationLimits());
    EXPECT_FALSE(trace.holds("limits of the server"));
    forgetBlocks();
    EXPECT_EQ(read(1000), numbersOf(1000));
    EXPECT_EQ(sent, BlockSizes{1000});
}

TEST_F(OperationLimitsTest, OddValuesAreNoLimits)
{
    UaVariant array;
    array.setUInt32Array(UaUInt32Array(3u));
    UaVariant emptyArray;
    emptyArray.setUInt32Array(UaUInt32Array());
    const std::vector<UaVariant> odd = {UaVariant(OpcUa_UInt32(0)),
                                        UaVariant(OpcUa_Int32(2)),
                                        UaVariant(OpcUa_Int32(-1)),
                                        UaVariant(std::numeric_limits<double>::quiet_NaN()),
                                        UaVariant(2.0),
                                        UaVariant("2"),
                                        UaVariant(OpcUa_UInt64(1) << 40),
                                        UaVariant(true),
                                        array,
                                        emptyArray};
    for (std::size_t i = 0; i < odd.size(); ++i) {
        stack.setVariable(readLimit, odd[i]);
        ASSERT_TRUE(connect().isGood());
        EXPECT_EQ(session.operationLimits(), OperationLimits()) << i;
        forgetBlocks();
        takeReads(1000);
        EXPECT_EQ(read(20).size(), 20u);
        EXPECT_EQ(sent, BlockSizes{20}) << i;
        ASSERT_TRUE(disconnect().isGood());
    }
    tell(readLimit, std::numeric_limits<OpcUa_UInt32>::max());
    stack.setVariable(writeLimit, UaVariant(OpcUa_UInt16(9)));
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(session.operationLimits().maxNodesPerRead, std::numeric_limits<OpcUa_UInt32>::max());
    EXPECT_EQ(session.operationLimits().maxNodesPerWrite, 9u);
    EXPECT_EQ(read(20), numbersOf(20));
}

TEST_F(OperationLimitsTest, LimitsThatCannotBeReadDoNotEndTheConnect)
{
    const RecordedTrace trace(UaTrace::Warning);
    tell(readLimit, 2);
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_Good, OpcUa_BadTimeout});
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(trace.count("reading the limits of the server failed"), 1);
    EXPECT_EQ(session.operationLimits(), OperationLimits());
    EXPECT_EQ(read(5), numbersOf(5));
    // they are asked for again with the next link
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(3));
    EXPECT_EQ(session.operationLimits().maxNodesPerRead, 2u);
}

TEST_F(OperationLimitsTest, WhatIsLearntBelongsToOneSessionOfTheServer)
{
    tell(readLimit, 40);
    ASSERT_TRUE(connect().isGood());
    takeReads(6);
    EXPECT_EQ(read(20), numbersOf(20));
    EXPECT_FALSE(refused.empty());
    const int before = stack.calls(OpcUa_ReadRequest_EncodeableType);
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    tell(readLimit, 12);
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(3));
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType) - before, 2)
        << "the check that failed and the namespaces: it is the same session";
    EXPECT_EQ(session.operationLimits().maxNodesPerRead, 40u);
    forgetBlocks();
    EXPECT_EQ(read(20), numbersOf(20));
    EXPECT_TRUE(refused.empty()) << "and its server is the same";

    // the time of an attempt counts from its end, after it was told
    const int enough = stack.tickReads + 3;
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (stack.tickReads < enough && std::chrono::steady_clock::now() < patience)
        std::this_thread::yield();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(4));
    takeReads(1000);
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForCount(6));
    EXPECT_EQ(session.operationLimits().maxNodesPerRead, 12u);
    forgetBlocks();
    EXPECT_EQ(read(20), numbersOf(20));
    EXPECT_EQ(sent, (BlockSizes{12, 8}));
}

TEST_F(OperationLimitsTest, AServerThatTakesLessThanItTellsIsOnlyOnceAskedForMore)
{
    tell(readLimit, 40);
    for (const OpcUa_StatusCode refusal : tooLarge) {
        for (const bool asynchronous : {false, true}) {
            stack.on(OpcUa_ReadRequest_EncodeableType, readHandler);
            ASSERT_TRUE(connect().isGood());
            takeReads(3, refusal);
            forgetBlocks();
            const auto readFifty = [&] {
                if (!asynchronous)
                    return read(50) == numbersOf(50);
                const Completion completion = completionOf(beginRead(50));
                return completion.status == OpcUa_Good && completion.results == 50 &&
                       completion.lastValue == 100049;
            };
            EXPECT_TRUE(readFifty()) << refusal << asynchronous;
            EXPECT_EQ(refused, (BlockSizes{40, 20, 10, 5})) << refusal << asynchronous;
            forgetBlocks();
            EXPECT_TRUE(readFifty()) << refusal << asynchronous;
            EXPECT_TRUE(refused.empty()) << refusal << asynchronous;
            EXPECT_EQ(sent, BlockSizes(25, 2)) << "as it was halved";
            ASSERT_TRUE(disconnect().isGood());
        }
    }
}

TEST_F(OperationLimitsTest, ASingleItemThatIsTooMuchEndsTheCallWithItsStatus)
{
    ASSERT_TRUE(connect().isGood());
    for (const OpcUa_StatusCode refusal : tooLarge) {
        takeReads(0, refusal);
        forgetBlocks();
        EXPECT_TRUE(read(5).empty());
        EXPECT_EQ(status.statusCode(), refusal);
        EXPECT_EQ(completionOf(beginRead(1)), (Completion{"read", 1, refusal, 0}));
        EXPECT_EQ(refused, (BlockSizes{5, 2, 1, 1}));
    }
    takeReads(5);
    forgetBlocks();
    EXPECT_EQ(read(5), numbersOf(5));
    EXPECT_EQ(sent, BlockSizes{5}) << "a server that takes nothing has shown no size";
}

TEST_F(OperationLimitsTest, WhatTheStackItselfFindsTooLargeIsHalvedToo)
{
    ASSERT_TRUE(connect().isGood());
    takeReads(1000);
    stack.refuseNextBegin(OpcUa_ReadRequest_EncodeableType,
                          {OpcUa_BadRequestTooLarge, OpcUa_Good, OpcUa_BadEncodingLimitsExceeded});
    EXPECT_EQ(completionOf(beginRead(20)), (Completion{"read", 1, OpcUa_Good, 20}));
    EXPECT_EQ(sent, (BlockSizes{10, 5, 5}));
    stack.refuseNextBegin(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadRequestTooLarge});
    EXPECT_EQ(beginRead(1).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadRequestTooLarge));
}

TEST_F(OperationLimitsTest, WhatMayHaveBeenDoneIsNotDoneAgain)
{
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    tell(writeLimit, 8);
    for (const OpcUa_StatusCode refusal : tooLarge) {
        const bool nothingDone = refusal == tooMany || refusal == OpcUa_BadRequestTooLarge;
        ASSERT_TRUE(connect().isGood());
        takeWrites(8);
        stack.failNext(OpcUa_WriteRequest_EncodeableType, {OpcUa_Good, refusal});
        forgetBlocks();
        status = session.write(settings, UaWriteValues(20u), results, diagnostics);
        EXPECT_EQ(status.statusCode(), nothingDone ? OpcUa_Good : refusal);
        EXPECT_EQ(results.length(), nothingDone ? 20u : 8u);
        EXPECT_EQ(sent, nothingDone ? (BlockSizes{8, 4, 4, 4}) : BlockSizes{8}) << refusal;
        stack.failNext(OpcUa_WriteRequest_EncodeableType, {OpcUa_Good, refusal});
        EXPECT_EQ(completionOf(session.beginWrite(settings, UaWriteValues(20u), 2)),
                  (Completion{"write", 2, status.statusCode(), results.length()}));
        ASSERT_TRUE(disconnect().isGood());
    }
}

TEST_F(OperationLimitsTest, SizeThatAnAnswerToTheOldSessionShowsIsNotTheNewOnes)
{
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    ASSERT_TRUE(connect().isGood());
    const auto answer = RESULTS_FOR(Write, NodesToWrite);
    stack.on(OpcUa_WriteRequest_EncodeableType, [&](const void* request, void* response) {
        stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
        stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
        passWatchdogTime();
        EXPECT_TRUE(callback.waitForCount(2));
        passWatchdogTime();
        EXPECT_TRUE(callback.waitForCount(4));
        takeWrites(1000);
        return answer(request, response);
    });
    stack.failNext(OpcUa_WriteRequest_EncodeableType, {tooMany}); // and then the half, in time
    status = session.write(settings, UaWriteValues(20u), results, diagnostics);
    EXPECT_EQ(status.statusCode(), OpcUa_StatusCode{OpcUa_BadConnectionClosed});
    EXPECT_EQ(results.length(), 10u) << "what was written before";
    forgetBlocks();
    EXPECT_TRUE(session.write(settings, UaWriteValues(20u), results, diagnostics).isGood());
    EXPECT_EQ(sent, BlockSizes{20});
}

// ---- each service and its own limit

struct BoundService
{
    const char* name;
    std::set<OpcUa_UInt32> limits; // the nodes that tell them
    std::function<UaStatus()> call;
};

class ServiceLimitTest : public OperationLimitsTest
{
protected:
    void SetUp() override
    {
        OperationLimitsTest::SetUp();
        on(OpcUa_WriteRequest_EncodeableType, RESULTS_FOR(Write, NodesToWrite, 0, &sent));
        on(OpcUa_CallRequest_EncodeableType, RESULTS_FOR(Call, MethodsToCall, 0, &sent));
        on(OpcUa_BrowseRequest_EncodeableType, RESULTS_FOR(Browse, NodesToBrowse, 0, &sent));
        on(OpcUa_BrowseNextRequest_EncodeableType, RESULTS_FOR(BrowseNext, ContinuationPoints, 0, &sent));
        on(OpcUa_TranslateBrowsePathsToNodeIdsRequest_EncodeableType,
           RESULTS_FOR(TranslateBrowsePathsToNodeIds, BrowsePaths, 0, &sent));
        on(OpcUa_AddNodesRequest_EncodeableType, RESULTS_FOR(AddNodes, NodesToAdd, 0, &sent));
        on(OpcUa_AddReferencesRequest_EncodeableType, RESULTS_FOR(AddReferences, ReferencesToAdd, 0, &sent));
        on(OpcUa_DeleteNodesRequest_EncodeableType, RESULTS_FOR(DeleteNodes, NodesToDelete, 0, &sent));
        on(OpcUa_DeleteReferencesRequest_EncodeableType,
           RESULTS_FOR(DeleteReferences, ReferencesToDelete, 0, &sent));
        on(OpcUa_HistoryReadRequest_EncodeableType, RESULTS_FOR(HistoryRead, NodesToRead, 0, &sent));
        on(OpcUa_HistoryUpdateRequest_EncodeableType,
           RESULTS_FOR(HistoryUpdate, HistoryUpdateDetails, 0, &sent));
        on(OpcUa_RegisterNodesRequest_EncodeableType,
           resultsFor(&OpcUa_RegisterNodesRequest::NoOfNodesToRegister,
                      &OpcUa_RegisterNodesRequest::NodesToRegister,
                      &OpcUa_RegisterNodesResponse::NoOfRegisteredNodeIds,
                      &OpcUa_RegisterNodesResponse::RegisteredNodeIds, 0, &sent));
        on(OpcUa_UnregisterNodesRequest_EncodeableType,
           typed<OpcUa_UnregisterNodesRequest, OpcUa_UnregisterNodesResponse>(
               [this](const auto& in, auto&) { sent.push_back(in.NoOfNodesToUnregister); }));
    }
    void on(const OpcUa_EncodeableType& type, const FakeStack::Handler& answer) { stack.on(type, answer); }

    // One service of ten items that has an array of results.
    template <typename Items, typename Results>
    std::function<UaStatus()> listed(UaStatus (UaClientSdk::UaSession::*service)(ServiceSettings&,
                                                                                 const Items&, Results&,
                                                                                 UaDiagnosticInfos&))
    {
        return [this, service] {
            Results results;
            UaDiagnosticInfos diagnostics;
            return (session.*service)(settings, Items(10u), results, diagnostics);
        };
    }
    template <typename Context, typename Results>
    std::function<UaStatus()>
    history(const Context& context,
            UaStatus (UaClientSdk::UaSession::*service)(ServiceSettings&, const Context&,
                                                        const UaHistoryReadValueIds&, Results&,
                                                        UaDiagnosticInfos&))
    {
        return [this, context, service] {
            Results results;
            UaDiagnosticInfos diagnostics;
            return (session.*service)(settings, context, UaHistoryReadValueIds(10u), results, diagnostics);
        };
    }
    std::function<UaStatus()> processedHistory()
    {
        UaClientSdk::HistoryReadProcessedContext context;
        EXPECT_TRUE(context.aggregateTypes.create(10));
        return history(context, &UaClientSdk::UaSession::historyReadProcessed);
    }
    std::vector<BoundService> services();
};

#define LIMIT_NODE(name) OpcUaId_Server_ServerCapabilities_##name

std::vector<BoundService> ServiceLimitTest::services()
{
    using Session = UaClientSdk::UaSession;
    constexpr OpcUa_UInt32 browse = LIMIT_NODE(OperationLimits_MaxNodesPerBrowse);
    constexpr OpcUa_UInt32 browsePoints = LIMIT_NODE(MaxBrowseContinuationPoints);
    constexpr OpcUa_UInt32 registering = LIMIT_NODE(OperationLimits_MaxNodesPerRegisterNodes);
    constexpr OpcUa_UInt32 management = LIMIT_NODE(OperationLimits_MaxNodesPerNodeManagement);
    constexpr OpcUa_UInt32 readData = LIMIT_NODE(OperationLimits_MaxNodesPerHistoryReadData);
    constexpr OpcUa_UInt32 readEvents = LIMIT_NODE(OperationLimits_MaxNodesPerHistoryReadEvents);
    constexpr OpcUa_UInt32 historyPoints = LIMIT_NODE(MaxHistoryContinuationPoints);
    constexpr OpcUa_UInt32 updateData = LIMIT_NODE(OperationLimits_MaxNodesPerHistoryUpdateData);
    constexpr OpcUa_UInt32 updateEvents = LIMIT_NODE(OperationLimits_MaxNodesPerHistoryUpdateEvents);
    return {
        {"write", {writeLimit}, listed(&Session::write)},
        {"callList", {LIMIT_NODE(OperationLimits_MaxNodesPerMethodCall)}, listed(&Session::callList)},
        {"browseList",
         {browse, browsePoints},
         [this] {
             UaBrowseResults results;
             UaDiagnosticInfos diagnostics;
             return session.browseList(settings, UaNodeId(), 0, UaBrowseDescriptions(10u), results,
                                       diagnostics);
         }},
        {"browseListNext",
         {browse},
         [this] {
             UaBrowseResults results;
             UaDiagnosticInfos diagnostics;
             return session.browseListNext(settings, false, UaByteStringArray(10u), results, diagnostics);
         }},
        {"translateBrowsePathsToNodeIds",
         {LIMIT_NODE(OperationLimits_MaxNodesPerTranslateBrowsePathsToNodeIds)},
         listed(&Session::translateBrowsePathsToNodeIds)},
        {"registerNodes",
         {registering},
         [this] {
             UaNodeIdArray registered;
             return session.registerNodes(settings, UaNodeIdArray(10u), registered);
         }},
        {"unregisterNodes",
         {registering},
         [this] { return session.unregisterNodes(settings, UaNodeIdArray(10u)); }},
        {"addNodes", {management}, listed(&Session::addNodes)},
        {"addReferences", {management}, listed(&Session::addReferences)},
        {"deleteNodes", {management}, listed(&Session::deleteNodes)},
        {"deleteReferences", {management}, listed(&Session::deleteReferences)},
        {"historyReadRawModified",
         {readData, historyPoints},
         history(UaClientSdk::HistoryReadRawModifiedContext(), &Session::historyReadRawModified)},
        {"historyReadProcessed", {readData, historyPoints}, processedHistory()},
        {"historyReadAtTime",
         {readData, historyPoints},
         history(UaClientSdk::HistoryReadAtTimeContext(), &Session::historyReadAtTime)},
        {"historyReadEvent",
         {readEvents, historyPoints},
         history(UaClientSdk::HistoryReadEventContext(), &Session::historyReadEvent)},
        {"historyUpdateData", {updateData}, listed(&Session::historyUpdateData)},
        {"historyDeleteRawModified", {updateData}, listed(&Session::historyDeleteRawModified)},
        {"historyDeleteAtTime", {updateData}, listed(&Session::historyDeleteAtTime)},
        {"historyUpdateEvents", {updateEvents}, listed(&Session::historyUpdateEvents)},
        {"historyDeleteEvents", {updateEvents}, listed(&Session::historyDeleteEvents)},
    };
}

TEST_F(ServiceLimitTest, EachServiceKeepsItsOwnLimitsAndNoOther)
{
    const std::vector<BoundService> all = services();
    std::set<OpcUa_UInt32> told;
    for (const BoundService& service : all)
        told.insert(service.limits.begin(), service.limits.end());
    for (const OpcUa_UInt32 node : told) {
        tell(node, 4);
        ASSERT_TRUE(connect().isGood());
        for (const BoundService& service : all) {
            sent.clear();
            EXPECT_TRUE(service.call().isGood()) << service.name;
            EXPECT_EQ(sent, service.limits.contains(node) ? (BlockSizes{4, 4, 2}) : BlockSizes{10})
                << service.name << " with the limit " << node;
        }
        ASSERT_TRUE(disconnect().isGood());
        stack.setVariable(node, UaVariant());
    }
}

} // namespace
