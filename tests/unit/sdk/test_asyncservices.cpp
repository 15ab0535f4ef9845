// Asynchronous service calls: what is sent, what completes and when, and how they end with the session.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/completionrecorder.h>
#include <tests/unit/sdk/servicehandlers.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using UaClientSdk::CallIn;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaSession;

constexpr auto limit = std::chrono::seconds(10);
constexpr OpcUa_StatusCode good = OpcUa_Good;

class AsyncServiceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        stack.reset();
        stack.on(OpcUa_WriteRequest_EncodeableType, RESULTS_FOR(Write, NodesToWrite));
    }

    UaStatus connect()
    {
        return session->connect(UaString("opc.tcp://localhost:4840"), info,
                                UaClientSdk::SessionSecurityInfo(), &callback);
    }
    UaStatus disconnect() { return session->disconnect(ServiceSettings(), true); }
    UaStatus beginRead(OpcUa_UInt32 nodes, OpcUa_UInt32 transactionId)
    {
        ServiceSettings own; // calls come from several threads
        return session->beginRead(own, 0.0, OpcUa_TimestampsToReturn_Both, numberedNodes(nodes),
                                  transactionId);
    }

    FakeStack& stack = FakeStack::instance();
    UaClientSdk::SessionConnectInfo info;
    CompletionRecorder callback;
    std::optional<UaSession> session{std::in_place};
    ServiceSettings settings;
};

TEST_F(AsyncServiceTest, LongReadIsSentInBlocksAndCompletesOnce)
{
    info.maxOperationsPerServiceCall = 1000;
    ASSERT_TRUE(connect().isGood());
    const int before = stack.calls(OpcUa_ReadRequest_EncodeableType);
    const RecordedTrace trace;
    ASSERT_TRUE(beginRead(2500, 42).isGood());
    ASSERT_TRUE(callback.waitForCompletions(1));
    ASSERT_TRUE(disconnect().isGood());
    const std::vector<Completion> completions = callback.completions();
    EXPECT_EQ(completions, (std::vector<Completion>{{"read", 42, good, 2500}}));
    EXPECT_EQ(completions[0].lastValue, 102499);
    EXPECT_NE(completions[0].thread, std::this_thread::get_id());
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType) - before, 3);
    EXPECT_TRUE(trace.holds("--> UaSession::beginRead count=2500 [Session="));
    EXPECT_EQ(trace.count("CALL OpcUa_ClientApi_BeginRead"), 3);
    EXPECT_TRUE(trace.holds("CALL SessionCallback::readComplete [Session="));
    EXPECT_TRUE(trace.holds("Read 2500 nodes"));
    EXPECT_TRUE(trace.holds("  Node[2499] Value=102499 Status=0x0"));
}

TEST_F(AsyncServiceTest, BadBlockEndsTheCallAndKeepsWhatWasWritten)
{
    info.maxOperationsPerServiceCall = 10;
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {good, OpcUa_BadUserAccessDenied});
    ASSERT_TRUE(beginRead(50, 1).isGood());
    ASSERT_TRUE(callback.waitForCompletions(1));
    stack.failNext(OpcUa_WriteRequest_EncodeableType, {good, good, OpcUa_BadTimeout});
    ASSERT_TRUE(session->beginWrite(settings, UaWriteValues(50u), 2).isGood());
    ASSERT_TRUE(callback.waitForCompletions(2));
    // the second block is refused by the stack itself, from the pool
    stack.refuseNextBegin(OpcUa_WriteRequest_EncodeableType, {good, OpcUa_BadResourceUnavailable});
    ASSERT_TRUE(session->beginWrite(settings, UaWriteValues(50u), 3).isGood());
    ASSERT_TRUE(callback.waitForCompletions(3));
    EXPECT_EQ(callback.completions(),
              (std::vector<Completion>{{"read", 1, OpcUa_BadUserAccessDenied, 0},
                                       {"write", 2, OpcUa_BadTimeout, 20},
                                       {"write", 3, OpcUa_BadResourceUnavailable, 10}}));
}

TEST_F(AsyncServiceTest, ChecksComeInTheirOrderAndNothingCompletesThen)
{
    EXPECT_EQ(beginRead(0, 1).statusCode(), 0x80AE0000u);
    ASSERT_TRUE(connect().isGood());
    const RecordedTrace trace;
    EXPECT_EQ(beginRead(0, 2).statusCode(), 0x800F0000u);
    EXPECT_TRUE(trace.holds("<-- UaSession::beginRead [ret=OpcUa_BadNothingToDo] - Empty read array passed"));
    stack.refuseNextBegin(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadTooManyOperations});
    EXPECT_EQ(beginRead(1, 3).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTooManyOperations));
    ASSERT_TRUE(disconnect().isGood()); // waits for nothing
    const int calls = stack.calls(OpcUa_ReadRequest_EncodeableType);
    EXPECT_EQ(beginRead(1, 4).statusCode(), 0x80AE0000u);
    EXPECT_TRUE(
        trace.holds("<-- UaSession::beginRead [ret=OpcUa_BadConnectionClosed] - Server not connected"));
    EXPECT_EQ(stack.calls(OpcUa_ReadRequest_EncodeableType), calls);
    EXPECT_TRUE(callback.completions().empty());
}

TEST_F(AsyncServiceTest, FaultyAnswersCompleteWithTheirStatus)
{
    ASSERT_TRUE(connect().isGood());
    const auto completionOf = [&](std::size_t number) {
        EXPECT_TRUE(session->beginWrite(settings, UaWriteValues(2u), 7).isGood());
        EXPECT_TRUE(callback.waitForCompletions(number));
        return callback.completions().back();
    };
    std::size_t number = 0;
    for (const int surplus : {-2, -1, 1}) {
        stack.on(OpcUa_WriteRequest_EncodeableType, RESULTS_FOR(Write, NodesToWrite, surplus));
        EXPECT_EQ(completionOf(++number), (Completion{"write", 7, 0x80460000u, 0})) << surplus;
    }
    stack.failNext(OpcUa_WriteRequest_EncodeableType, {OpcUa_BadUserAccessDenied});
    EXPECT_EQ(completionOf(++number), (Completion{"write", 7, OpcUa_BadUserAccessDenied, 0}));
    stack.answerAs(OpcUa_WriteRequest_EncodeableType, OpcUa_BrowseResponse_EncodeableType);
    EXPECT_EQ(completionOf(++number), (Completion{"write", 7, OpcUa_BadUnknownResponse, 0}));
}

TEST_F(AsyncServiceTest, LostLinkCompletesWhatIsInFlight)
{
    ASSERT_TRUE(connect().isGood());
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, true);
    for (OpcUa_UInt32 i = 0; i < 100; ++i)
        ASSERT_TRUE(beginRead(1, i).isGood());
    stack.setConnectResult(OpcUa_BadConnectionRejected); // and it stays lost
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    stack.loseLink();
    ASSERT_TRUE(callback.waitForCompletions(100));
    for (const Completion& completion : callback.completions())
        EXPECT_EQ(completion.status, static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
    EXPECT_TRUE(disconnect().isGood());
}

TEST_F(AsyncServiceTest, DisconnectWaitsForAnswersAndDropsThem)
{
    ASSERT_TRUE(connect().isGood());
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, true);
    ASSERT_TRUE(beginRead(1, 1).isGood());
    const RecordedTrace trace;
    auto ended = std::async(std::launch::async, [this] { return disconnect(); });
    while (!trace.holds("] transaction count = 1"))
        std::this_thread::yield();
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 0);
    EXPECT_EQ(beginRead(1, 2).statusCode(), 0x80AE0000u); // no new ones meanwhile
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, false);
    ASSERT_EQ(ended.wait_for(limit), std::future_status::ready);
    EXPECT_TRUE(ended.get().isGood());
    EXPECT_TRUE(trace.holds("<-- UaSessionPrivate::readCallback - already disconnected"));
    EXPECT_TRUE(callback.completions().empty());
}

TEST_F(AsyncServiceTest, DisconnectOverABrokenLinkDoesNotWaitForThePeer)
{
    ASSERT_TRUE(connect().isGood());
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, true);
    ASSERT_TRUE(beginRead(1, 1).isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadTimeout}); // the check: a warning
    stack.ticks += session->watchdogTime() + 1;
    ASSERT_TRUE(callback.waitFor({1, 2}));
    EXPECT_TRUE(disconnect().isGood()); // while the answer is held
}

TEST_F(AsyncServiceTest, DisconnectAndDestructionWaitForARunningCallback)
{
    std::latch entered(1);
    std::latch released(1);
    std::atomic<bool> left{false};
    callback.reaction = [&](const Completion&) {
        entered.count_down();
        released.wait();
        left = true;
    };
    ASSERT_TRUE(connect().isGood());
    ASSERT_TRUE(beginRead(1, 1).isGood());
    entered.wait();
    const RecordedTrace trace;
    auto destroyed = std::async(std::launch::async, [&] {
        session.reset();
        return left.load();
    });
    while (!trace.holds("] transaction count = 1"))
        std::this_thread::yield();
    released.count_down();
    ASSERT_EQ(destroyed.wait_for(limit), std::future_status::ready);
    EXPECT_TRUE(destroyed.get());
}

TEST_F(AsyncServiceTest, CallbackMayCallTheSessionButNotDisconnectIt)
{
    std::atomic<OpcUa_StatusCode> refused{0};
    std::atomic<int> read{0};
    std::counting_semaphore<> reacted(0);
    callback.reaction = [&](const Completion& completion) {
        UaDataValues values;
        UaDiagnosticInfos diagnosticInfos;
        ServiceSettings own;
        const UaStatus status =
            session->read(own, 0.0, OpcUa_TimestampsToReturn_Both, numberedNodes(3), values, diagnosticInfos);
        read += status.isGood() ? static_cast<int>(values.length()) : 0;
        if (completion.transactionId < 20)
            EXPECT_TRUE(beginRead(1, completion.transactionId + 1).isGood());
        refused = disconnect().statusCode();
        reacted.release();
    };
    ASSERT_TRUE(connect().isGood());
    ASSERT_TRUE(beginRead(1, 1).isGood());
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(reacted.try_acquire_for(limit));
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(read, 60);
    EXPECT_EQ(refused, static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidState));
}

TEST_F(AsyncServiceTest, CallbackThatThrowsEndsItsTransactionOnly)
{
    callback.reaction = [](const Completion& completion) {
        if (completion.transactionId % 2 == 0)
            throw std::runtime_error("not my day");
    };
    ASSERT_TRUE(connect().isGood());
    for (OpcUa_UInt32 i = 0; i < 10; ++i)
        ASSERT_TRUE(beginRead(1, i).isGood());
    ASSERT_TRUE(callback.waitForCompletions(10));
    EXPECT_TRUE(disconnect().isGood());
}

// Each call is refused, completed or dropped by the disconnect; none completes after it.
TEST_F(AsyncServiceTest, DisconnectAtAnyMomentLeavesNothingBehind)
{
    info.maxOperationsPerServiceCall = 2;
    for (int round = 0; round < 30; ++round) {
        ASSERT_TRUE(connect().isGood());
        constexpr std::size_t inFlight = 50; // enough to be caught by the disconnect, and soon waited for
        std::atomic<std::size_t> sent{0};
        std::vector<std::thread> callers;
        const std::size_t before = callback.count();
        for (int n = 0; n < 3; ++n) {
            callers.emplace_back([&] {
                while (session->isConnected())
                    if (sent >= callback.count() - before + inFlight)
                        std::this_thread::yield();
                    else if (beginRead(5, 0).isGood())
                        ++sent;
            });
        }
        EXPECT_TRUE(round % 3 == 0 || callback.waitForCompletions(before + static_cast<std::size_t>(round)));
        EXPECT_TRUE(disconnect().isGood());
        const std::size_t after = callback.count();
        for (std::thread& caller : callers)
            caller.join();
        EXPECT_EQ(callback.count(), after);
        EXPECT_LE(after - before, sent);
    }
}

// One entry a service: it is sent as the request it should be, and its own completion comes.
TEST_F(AsyncServiceTest, EveryServiceCompletesByItsOwnName)
{
    stack.on(OpcUa_AddNodesRequest_EncodeableType, RESULTS_FOR(AddNodes, NodesToAdd));
    stack.on(OpcUa_AddReferencesRequest_EncodeableType, RESULTS_FOR(AddReferences, ReferencesToAdd));
    stack.on(OpcUa_DeleteNodesRequest_EncodeableType, RESULTS_FOR(DeleteNodes, NodesToDelete));
    stack.on(OpcUa_DeleteReferencesRequest_EncodeableType, RESULTS_FOR(DeleteReferences, ReferencesToDelete));
    stack.on(OpcUa_HistoryReadRequest_EncodeableType, RESULTS_FOR(HistoryRead, NodesToRead));
    stack.on(OpcUa_HistoryUpdateRequest_EncodeableType, RESULTS_FOR(HistoryUpdate, HistoryUpdateDetails));
    info.maxOperationsPerServiceCall = 2; // details and items of later blocks are the session's own copies
    ASSERT_TRUE(connect().isGood());
    UaClientSdk::HistoryReadProcessedContext processed;
    EXPECT_TRUE(processed.aggregateTypes.create(5));
    const std::vector<std::pair<std::string, std::function<UaStatus(OpcUa_UInt32)>>> services = {
        {"read", [&](auto id) { return beginRead(5, id); }},
        {"write", [&](auto id) { return session->beginWrite(settings, UaWriteValues(5u), id); }},
        {"addNodes", [&](auto id) { return session->beginAddNodes(settings, UaAddNodesItems(5u), id); }},
        {"addReferences",
         [&](auto id) { return session->beginAddReferences(settings, UaAddReferencesItems(5u), id); }},
        {"deleteNodes",
         [&](auto id) { return session->beginDeleteNodes(settings, UaDeleteNodesItems(5u), id); }},
        {"deleteReferences",
         [&](auto id) { return session->beginDeleteReferences(settings, UaDeleteReferencesItems(5u), id); }},
        {"historyReadRawModified",
         [&](auto id) {
             return session->beginHistoryReadRawModified(settings, {}, UaHistoryReadValueIds(5u), id);
         }},
        {"historyReadProcessed",
         [&](auto id) {
             return session->beginHistoryReadProcessed(settings, processed, UaHistoryReadValueIds(5u), id);
         }},
        {"historyReadAtTime",
         [&](auto id) {
             return session->beginHistoryReadAtTime(settings, {}, UaHistoryReadValueIds(5u), id);
         }},
        {"historyReadEvent",
         [&](auto id) {
             return session->beginHistoryReadEvent(settings, {}, UaHistoryReadValueIds(5u), id);
         }},
        {"historyUpdateData",
         [&](auto id) {
             return session->beginHistoryUpdateData(settings, UaUpdateDataDetailsArray(5u), id);
         }},
        {"historyDeleteRawModified",
         [&](auto id) {
             return session->beginHistoryDeleteRawModified(settings, UaDeleteRawModifiedDetailsArray(5u), id);
         }},
        {"historyDeleteAtTime",
         [&](auto id) {
             return session->beginHistoryDeleteAtTime(settings, UaDeleteAtTimeDetailsArray(5u), id);
         }},
        {"historyUpdateEvents",
         [&](auto id) {
             return session->beginHistoryUpdateEvents(settings, UaUpdateEventDetailsArray(5u), id);
         }},
        {"historyDeleteEvents",
         [&](auto id) {
             return session->beginHistoryDeleteEvents(settings, UaDeleteEventDetailsArray(5u), id);
         }},
    };
    const RecordedTrace trace;
    for (OpcUa_UInt32 i = 0; i < services.size(); ++i) {
        ASSERT_TRUE(services[i].second(i).isGood()) << services[i].first;
        ASSERT_TRUE(callback.waitForCompletions(i + 1)) << services[i].first;
        EXPECT_EQ(callback.completions().back(), (Completion{services[i].first, i, good, 5}));
        EXPECT_TRUE(trace.holds("CALL SessionCallback::" + services[i].first + "Complete [Session="));
    }
    EXPECT_EQ(stack.calls(OpcUa_HistoryReadRequest_EncodeableType), 4 * 3);
    EXPECT_EQ(stack.calls(OpcUa_HistoryUpdateRequest_EncodeableType), 5 * 3);
}

TEST_F(AsyncServiceTest, CallCompletesWithItsOutputArguments)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_CallRequest_EncodeableType,
             typed<OpcUa_CallRequest, OpcUa_CallResponse>([](const auto& request, auto& response) {
                 UaCallMethodResults results(1u);
                 UaVariantArray(request.MethodsToCall[0].NoOfInputArguments,
                                request.MethodsToCall[0].InputArguments)
                     .detach(&results[0].NoOfOutputArguments, &results[0].OutputArguments);
                 results.detach(&response.NoOfResults, &response.Results);
             }));
    CallIn callIn;
    EXPECT_TRUE(callIn.inputArguments.create(3));
    ASSERT_TRUE(session->beginCall(settings, callIn, 99).isGood());
    ASSERT_TRUE(callback.waitForCompletions(1));
    EXPECT_EQ(callback.completions().back(), (Completion{"call", 99, good, 3}));
}

} // namespace
