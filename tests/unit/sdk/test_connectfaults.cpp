// Servers that fail in each phase of a connect or of the watch that follows it.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/connection/checkschedule.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>

#include <gmock/gmock.h>

#include <functional>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using UaClientSdk::UaClient;

class ConnectFaultTest : public SessionTest
{
protected:
    void reconnectFails()
    {
        stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
        passWatchdogTime();
        ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    }

    // Every read of the server's state gets that answer from now on, the others theirs.
    void answerState(const UaVariant& value, OpcUa_StatusCode status = OpcUa_Good, OpcUa_Int32 results = 1)
    {
        stack.on(
            OpcUa_ReadRequest_EncodeableType,
            [=](const void*, void* data) {
                auto& response = *static_cast<OpcUa_ReadResponse*>(data);
                UaDataValues values(static_cast<OpcUa_UInt32>(results));
                for (OpcUa_DataValue& one : values) {
                    EXPECT_TRUE(OpcUa_IsGood(value.copyTo(&one.Value)));
                    one.StatusCode = status;
                }
                values.detach(&response.NoOfResults, &response.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }

    UaClient::ServerStatus statusAfterOneCheck(const std::function<void()>& prepare)
    {
        stack.reset();
        RecordingCallback own;
        UaClientSdk::UaSession watched;
        EXPECT_TRUE(
            watched
                .connect(UaString("opc.tcp://localhost:4840"), info, UaClientSdk::SessionSecurityInfo(), &own)
                .isGood());
        prepare();
        stack.ticks += watched.watchdogTime() + 1;
        EXPECT_TRUE(own.waitForCount(2));
        const auto status = static_cast<UaClient::ServerStatus>(own.statuses().at(1));
        EXPECT_TRUE(watched.disconnect(UaClientSdk::ServiceSettings(), true).isGood());
        return status;
    }
};

TEST_F(ConnectFaultTest, ServerThatDiesInAPhaseLeavesTheSessionReadyForTheNextConnect)
{
    const struct
    {
        const OpcUa_EncodeableType* request; // null: the channel
        const char* told;
    } phases[] = {{nullptr, "1 BadConnectionClosed"},
                  {&OpcUa_CreateSessionRequest_EncodeableType, "2 BadConnectionClosed"},
                  {&OpcUa_ActivateSessionRequest_EncodeableType, "3 BadConnectionClosed"}};
    for (const auto& phase : phases) {
        if (phase.request)
            stack.failNext(*phase.request, {OpcUa_BadConnectionClosed});
        else
            stack.setConnectResult(OpcUa_BadConnectionClosed);
        EXPECT_TRUE(connect() == OpcUa_BadConnectionClosed) << phase.told;
        EXPECT_EQ(callback.errors().back(), phase.told);
        EXPECT_FALSE(session.isConnected());
        EXPECT_EQ(session.serverStatus(), UaClient::Disconnected);
        stack.setConnectResult(OpcUa_Good);
        EXPECT_TRUE(connect().isGood()) << phase.told;
        EXPECT_TRUE(disconnect().isGood());
    }
    // what is read after the activation is no reason to give up
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    EXPECT_TRUE(connect().isGood());
    EXPECT_EQ(session.getNamespaceTable().length(), 0u);
}

TEST_F(ConnectFaultTest, EachStatusOfTheCheckIsToleratedOnceOrNotAtAll)
{
    const auto afterFailure = [this](OpcUa_StatusCode status) {
        return statusAfterOneCheck(
            [this, status] { stack.failNext(OpcUa_ReadRequest_EncodeableType, {status}); });
    };
    for (const OpcUa_StatusCode status :
         {OpcUa_BadUnexpectedError, OpcUa_BadInternalError, OpcUa_BadCommunicationError, OpcUa_BadTimeout,
          OpcUa_BadNoCommunication, OpcUa_BadTcpServerTooBusy, OpcUa_BadTcpNotEnoughResources,
          OpcUa_BadTcpInternalError, OpcUa_BadRequestInterrupted})
        EXPECT_EQ(afterFailure(status), UaClient::ConnectionWarningWatchdogTimeout) << std::hex << status;
    for (const OpcUa_StatusCode status :
         {OpcUa_BadConnectionClosed, OpcUa_BadSessionIdInvalid, OpcUa_BadSessionClosed,
          OpcUa_BadSecureChannelIdInvalid, OpcUa_BadSecureChannelClosed, OpcUa_BadServiceUnsupported})
        EXPECT_EQ(afterFailure(status), UaClient::ConnectionErrorApiReconnect) << std::hex << status;
}

TEST_F(ConnectFaultTest, AnswerThatIsNoStateIsAFailedCheck)
{
    UaVariant array;
    UaInt32Array states(1u);
    array.setInt32Array(states);
    const std::function<void()> answers[] = {
        [this] { answerState(UaVariant(2.0)); },
        [this] { answerState(UaVariant()); },
        [&] { answerState(array); },
        [this] { answerState(UaVariant(static_cast<OpcUa_Int32>(0)), OpcUa_BadNodeIdUnknown); },
        [this] { answerState(UaVariant(static_cast<OpcUa_Int32>(0)), OpcUa_Good, 0); },
        [this] { answerState(UaVariant(static_cast<OpcUa_Int32>(0)), OpcUa_Good, 2); }};
    for (const auto& answer : answers)
        EXPECT_EQ(statusAfterOneCheck(answer), UaClient::ConnectionErrorApiReconnect);
}

TEST_F(ConnectFaultTest, SilentServerIsNoticedInTime)
{
    info.watchdogTime = 20000;
    info.watchdogTimeout = 1000;
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_ReadRequest_EncodeableType, [this](const void* request, void*) {
        stack.ticks += static_cast<const OpcUa_ReadRequest*>(request)->RequestHeader.TimeoutHint;
        return static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout);
    });
    const OpcUa_UInt64 silent = stack.ticks;
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionWarningWatchdogTimeout,
                                  UaClient::ConnectionErrorApiReconnect}));
    EXPECT_LE(stack.ticks - silent, 20000u + 3 * 1000u + 1);
}

TEST(CheckSchedule, AttemptsFollowTheWatchdogTimeUntilTheServerHasRefusedForLong)
{
    UaClientSdk::CheckSchedule schedule(1000);
    EXPECT_FALSE(schedule.isAttemptDue(6000, 5000));
    EXPECT_TRUE(schedule.isAttemptDue(6001, 5000));
    EXPECT_TRUE(schedule.isAttemptDue(999, 5000)); // the clock went back
    EXPECT_TRUE(schedule.isCheckDue(999, 5000));
    for (OpcUa_UInt32 i = 0; i < UaClientSdk::CheckSchedule::patience; ++i) {
        EXPECT_TRUE(schedule.isAttemptDue(6001, 5000));
        schedule.refused();
    }
    EXPECT_FALSE(schedule.isAttemptDue(61000, 5000));
    EXPECT_TRUE(schedule.isAttemptDue(61001, 5000));
    EXPECT_FALSE(schedule.isAttemptDue(61001, 90000)); // never faster than was asked for
    schedule.accepted();
    EXPECT_TRUE(schedule.isAttemptDue(6001, 5000));
    schedule.hurryCheck();
    EXPECT_TRUE(schedule.isCheckDue(1001, 5000));
    schedule.stamp(1002);
    EXPECT_FALSE(schedule.isCheckDue(1003, 5000));
}

TEST_F(ConnectFaultTest, ErrorsOfAReconnectAreToldOnTheSessionThread)
{
    ASSERT_TRUE(connect().isGood());
    reconnectFails();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                   {OpcUa_BadSessionIdInvalid, OpcUa_BadTooManySessions});
    const auto caller = std::this_thread::get_id();
    ASSERT_TRUE(passWatchdogTimesUntil({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                        UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_THAT(callback.errors(), ElementsAre("3 BadSessionIdInvalid", "3 BadTooManySessions"));
    EXPECT_NE(callback.lastErrorThread(), caller);
    // the session that could not be activated was closed
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
}

TEST_F(ConnectFaultTest, NoServiceIsCalledBetweenANewChannelAndItsActivation)
{
    ASSERT_TRUE(connect().isGood());
    reconnectFails();
    OpcUa_StatusCode meanwhile = OpcUa_Good;
    stack.on(OpcUa_ActivateSessionRequest_EncodeableType, [&](const void*, void*) {
        UaReadValueIds nodes(1u);
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        UaClientSdk::ServiceSettings settings;
        meanwhile =
            session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics).code();
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(passWatchdogTimesUntil(
        {UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_EQ(meanwhile, static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
}

TEST_F(ConnectFaultTest, ACallbackOfAConnectCannotBeginAnother)
{
    class Impatient : public RecordingCallback
    {
    public:
        explicit Impatient(UaClientSdk::UaSession& session) : m_session(session) {}
        bool connectError(OpcUa_UInt32, UaClient::ConnectServiceType, const UaStatus&, bool) override
        {
            UaClientSdk::ServiceSettings settings;
            const UaClientSdk::UaAnonymousIdentityToken nobody;
            answers = {m_session
                           .connect(UaString("opc.tcp://localhost:4840"), UaClientSdk::SessionConnectInfo(),
                                    UaClientSdk::SessionSecurityInfo(), this)
                           .code(),
                       m_session.changeUser(settings, &nobody).code(),
                       m_session.disconnect(settings, true).code()};
            return false;
        }
        std::vector<OpcUa_StatusCode> answers;

    private:
        UaClientSdk::UaSession& m_session;
    } impatient(session);
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadTooManySessions});
    EXPECT_TRUE(session.connect(UaString("opc.tcp://localhost:4840"), info,
                                UaClientSdk::SessionSecurityInfo(), &impatient) == OpcUa_BadTooManySessions);
    EXPECT_THAT(impatient.answers, ElementsAre(static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError),
                                               static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidState),
                                               static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError)));
}

} // namespace
