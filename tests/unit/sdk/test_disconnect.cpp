// A disconnect at any moment, whatever the server does.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <optional>
#include <thread>

namespace {

using std::chrono::milliseconds;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;

// The second that it has, and what a busy machine may add.
constexpr milliseconds disconnectLimit(3000);

class DisconnectTest : public SessionTest
{
protected:
    // The server goes silent in that service.
    void hangIn(const OpcUa_EncodeableType& requestType)
    {
        stack.on(
            requestType, [this](const void*, void*) { return stack.hang(); });
    }

    milliseconds timeOfDisconnect(OpcUa_UInt32 callTimeout = 30000)
    {
        ServiceSettings settings;
        settings.callTimeout = callTimeout;
        const auto begin = std::chrono::steady_clock::now();
        result = session.disconnect(settings, true);
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
    }

    UaStatus result;
};

TEST_F(DisconnectTest, DoesNotWaitForACheckThatIsNotAnswered)
{
    ASSERT_TRUE(connect().isGood());
    hangIn(OpcUa_ReadRequest_EncodeableType);
    passWatchdogTime();
    ASSERT_TRUE(stack.waitForHang());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    // what hangs is one call; the session may be closed beside it
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
    EXPECT_FALSE(session.isConnected());
    EXPECT_THAT(callback.statuses(), testing::ElementsAre(UaClient::Connected, UaClient::Disconnected));
}

TEST_F(DisconnectTest, DoesNotWaitForTheActivationOfAReconnect)
{
    ASSERT_TRUE(connect().isGood());
    hangIn(OpcUa_ActivateSessionRequest_EncodeableType);
    stack.loseLink();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    ASSERT_TRUE(stack.waitForHang());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 1); // nothing was begun after it
    EXPECT_EQ(callback.statuses().back(), UaClient::Disconnected);
}

TEST_F(DisconnectTest, CloseSessionGetsWhatIsLeftOfASecond)
{
    ASSERT_TRUE(connect().isGood());
    OpcUa_UInt32 hint = 0;
    stack.on(OpcUa_CloseSessionRequest_EncodeableType, [&hint](const void* request, void*) {
        hint = static_cast<const OpcUa_CloseSessionRequest*>(request)->RequestHeader.TimeoutHint;
        return static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout);
    });
    timeOfDisconnect();
    EXPECT_GT(hint, 0u);
    EXPECT_LE(hint, 1000u);
    EXPECT_EQ(result.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));
    EXPECT_EQ(stack.disconnects(), 1);
    ASSERT_TRUE(connect().isGood());
    timeOfDisconnect(7); // who wants to wait less than that does
    EXPECT_LE(hint, 7u);
}

TEST_F(DisconnectTest, AsynchronousCallsWithoutAnAnswerEndWithTheChannel)
{
    ASSERT_TRUE(connect().isGood());
    stack.holdAnswers(OpcUa_ReadRequest_EncodeableType, true);
    UaReadValueIds nodes(1u);
    ServiceSettings settings;
    ASSERT_TRUE(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 1).isGood());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    EXPECT_TRUE(result.isGood());
}

TEST_F(DisconnectTest, DoesNotWaitForALoadOfTheDataTypes)
{
    info.typeDictionaryMode = UaClient::Reconnect;
    hangIn(OpcUa_BrowseRequest_EncodeableType);
    ASSERT_TRUE(connect().isGood()); // which does not wait for it either
    ASSERT_TRUE(stack.waitForHang());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    EXPECT_TRUE(callback.waitForLoads({})); // nobody is told after the end
}

TEST_F(DisconnectTest, EndsTheConnectOfAnotherThread)
{
    hangIn(OpcUa_CreateSessionRequest_EncodeableType);
    auto connected = std::async(std::launch::async, [this] { return connect().statusCode(); });
    ASSERT_TRUE(stack.waitForHang());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    EXPECT_EQ(result.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError));
    EXPECT_EQ(connected.get(), static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
    EXPECT_THAT(callback.statuses(), testing::IsEmpty());
    stack.reset();
    EXPECT_TRUE(connect().isGood());
}

TEST_F(DisconnectTest, ConnectTellsNothingAfterTheDisconnectOfAnotherThread)
{
    // the connect is reading its tables: the session is active already
    hangIn(OpcUa_ReadRequest_EncodeableType);
    auto connected = std::async(std::launch::async, [this] { return connect().statusCode(); });
    ASSERT_TRUE(stack.waitForHang());
    EXPECT_LT(timeOfDisconnect(), disconnectLimit);
    const auto told = callback.statuses();
    EXPECT_EQ(connected.get(), static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
    EXPECT_THAT(told, testing::ElementsAre(UaClient::Disconnected));
    EXPECT_EQ(callback.statuses(), told);
}

TEST_F(DisconnectTest, StatusCallbackCannotDisconnect)
{
    class Leaving : public RecordingCallback
    {
    public:
        void connectionStatusChanged(OpcUa_UInt32 id, UaClient::ServerStatus status) override
        {
            if (status != UaClient::Disconnected)
                answer = leave();
            RecordingCallback::connectionStatusChanged(id, status);
        }
        std::function<OpcUa_StatusCode()> leave;
        std::atomic<OpcUa_StatusCode> answer{0};
    } leaving;
    leaving.leave = [this] { return session.disconnect(ServiceSettings(), true).statusCode(); };
    const UaString url("opc.tcp://localhost:4840");
    ASSERT_TRUE(session.connect(url, info, UaClientSdk::SessionSecurityInfo(), &leaving).isGood());
    EXPECT_EQ(leaving.answer, static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidState));
    leaving.answer = 0;
    stack.loseLink();
    ASSERT_TRUE(leaving.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    EXPECT_EQ(leaving.answer, static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidState));
    EXPECT_TRUE(disconnect().isGood());
}

// From every phase that a session can be left in, again and again, while another thread uses it.
TEST_F(DisconnectTest, MayComeAtAnyMoment)
{
    for (int round = 0; round < 60; ++round) {
        ASSERT_TRUE(connect().isGood()) << round;
        std::atomic<bool> ended{false};
        std::thread user([&] {
            UaReadValueIds nodes(3u);
            while (!ended) {
                UaDataValues values;
                UaDiagnosticInfos diagnosticInfos;
                ServiceSettings settings;
                static_cast<void>(session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values,
                                               diagnosticInfos));
                static_cast<void>(session.beginRead(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, 1));
            }
        });
        if (round % 2 == 0)
            stack.loseLink();
        for (int turn = 0; turn < round; ++turn) {
            std::this_thread::yield();
            passWatchdogTime();
        }
        EXPECT_LT(timeOfDisconnect(), disconnectLimit) << round;
        ended = true;
        user.join();
        EXPECT_EQ(callback.statuses().back(), UaClient::Disconnected) << round;
        EXPECT_FALSE(session.isConnected()) << round;
    }
}

} // namespace
