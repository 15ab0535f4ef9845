// Connecting, the watchdog and reconnecting.
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using UaClientSdk::UaClient;

TEST_F(SessionTest, ConnectsInOrderAndClosesWhatItOpened)
{
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(session.serverStatus(), UaClient::Connected);
    EXPECT_EQ(session.getNamespaceTable().length(), 2u);
    EXPECT_EQ(connect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError));
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(disconnect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInternalError));
    EXPECT_THAT(callback.statuses(), ElementsAre(UaClient::Connected, UaClient::Disconnected));
    EXPECT_THAT(stack.journal(),
                ElementsAre("Connect", "CreateSessionRequest", "ActivateSessionRequest", "ReadRequest",
                            "ReadRequest", "ReadRequest", "CloseSessionRequest", "Disconnect"));
}

TEST_F(SessionTest, ChannelThatDoesNotOpenTriesTheAlternativesThenReports)
{
    stack.setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_TRUE(info.alternativeEndpointUrls.create(2));
    EXPECT_EQ(OpcUa_String_Assign(&info.alternativeEndpointUrls[0], "opc.tcp://second:4840", -1), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_Assign(&info.alternativeEndpointUrls[1], "ftp://third", -1),
              OpcUa_Good); // never reaches the stack
    EXPECT_EQ(connect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidArgument));
    EXPECT_EQ(stack.connects(), 2);
    EXPECT_THAT(callback.errors(), ElementsAre("1 BadInvalidArgument"));
    EXPECT_FALSE(session.isConnected());
}

TEST_F(SessionTest, RefusedActivationClosesTheSession)
{
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadUserAccessDenied});
    EXPECT_EQ(connect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    EXPECT_THAT(stack.journal(), ElementsAre("Connect", "CreateSessionRequest", "ActivateSessionRequest",
                                             "CloseSessionRequest", "Disconnect"));
    EXPECT_TRUE(callback.statuses().empty());
}

TEST_F(SessionTest, EndpointOfAnotherPolicyIsNotActivated)
{
    stack.on(OpcUa_CreateSessionRequest_EncodeableType,
             [](const void*, void*) { return static_cast<OpcUa_StatusCode>(OpcUa_Good); });
    EXPECT_EQ(connect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadSecurityModeRejected));
    EXPECT_EQ(stack.calls(OpcUa_ActivateSessionRequest_EncodeableType), 0);
}

TEST_F(SessionTest, RetriedInitialConnectGoesOnInTheBackground)
{
    info.retryInitialConnect = true;
    stack.setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_EQ(connect().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_GoodCompletesAsynchronously));
    EXPECT_THAT(callback.statuses(), ElementsAre(UaClient::ConnectionErrorApiReconnect));
    stack.setConnectResult(OpcUa_Good);
    passWatchdogTime();
    EXPECT_TRUE(callback.waitFor(
        {UaClient::ConnectionErrorApiReconnect, UaClient::NewSessionCreated, UaClient::Connected}));
}

TEST_F(SessionTest, OneMissedCheckIsAWarningTheNextAnError)
{
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadTcpServerTooBusy});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionWarningWatchdogTimeout}));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor(
        {UaClient::Connected, UaClient::ConnectionWarningWatchdogTimeout, UaClient::Connected}));
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadTcpServerTooBusy, OpcUa_BadTcpServerTooBusy});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({1, 0 + 2, 1, 2}));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({1, 2, 1, 2, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(callback.waitFor({1, 2, 1, 2, 3, UaClient::Connected}));
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType),
              1); // the old session was activated again
}

TEST_F(SessionTest, LostLinkIsNoticedWithoutWaitingForTheWatchdog)
{
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    stack.loseLink();
    EXPECT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    EXPECT_TRUE(
        disconnect().isGood()); // joins the thread, which closes the channel after it has told the status
    EXPECT_EQ(stack.disconnects(), 1);
}

TEST_F(SessionTest, ServerThatForgotTheSessionGetsANewOne)
{
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    stack.setNamespaces({"http://opcfoundation.org/UA/", "urn:server", "urn:more"});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                  UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_EQ(session.getNamespaceTable().length(), 3u);
}

TEST_F(SessionTest, ServerThatShutsDownEndsTheSession)
{
    ASSERT_TRUE(connect().isGood());
    stack.setServerState(OpcUa_ServerState_Shutdown);
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ServerShutdown}));
    EXPECT_EQ(session.serverState(), OpcUa_ServerState_Shutdown);
    EXPECT_TRUE(waitUntil([this] { return stack.calls(OpcUa_CloseSessionRequest_EncodeableType) == 1; }));
    EXPECT_TRUE(disconnect().isGood());
}

TEST_F(SessionTest, WithoutAutomaticReconnectTheFirstErrorClosesTheSession)
{
    info.automaticReconnect = false;
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(stack.waitForCalls(OpcUa_CloseSessionRequest_EncodeableType, 1));
    EXPECT_TRUE(disconnect().isGood()); // joins the thread
    EXPECT_EQ(stack.connects(), 1);
}

TEST_F(SessionTest, DisconnectDoesNotWaitForAConnectThatHangs)
{
    ASSERT_TRUE(connect().isGood());
    stack.setConnectHangs(true);
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    const auto started = std::chrono::steady_clock::now();
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(10));
    EXPECT_EQ(callback.statuses().back(), UaClient::Disconnected);
}

TEST_F(SessionTest, WatchdogTimeStaysWithinItsBounds)
{
    ASSERT_TRUE(connect().isGood());
    session.setWatchdogTime(500);
    EXPECT_EQ(session.watchdogTime(), 1000u);
    EXPECT_TRUE(disconnect().isGood());

    stack.setRevisedSessionTimeout(1200.0);
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(session.watchdogTime(), 600u);
    session.setWatchdogTime(500);
    EXPECT_EQ(session.watchdogTime(), 600u);
    EXPECT_TRUE(disconnect().isGood());

    for (const double odd : {std::nan(""), -5.0, 0.0, 1e300, HUGE_VAL}) {
        stack.setRevisedSessionTimeout(odd);
        ASSERT_TRUE(connect().isGood());
        EXPECT_GE(session.watchdogTime(), 1000u) << odd;
        EXPECT_TRUE(std::isfinite(session.revisedSessionTimeout())) << odd;
        EXPECT_TRUE(disconnect().isGood());
    }
}

TEST_F(SessionTest, ExceptionInACallbackDoesNotEndTheSupervision)
{
    class ThrowingCallback : public RecordingCallback
    {
    public:
        void connectionStatusChanged(OpcUa_UInt32 id, UaClient::ServerStatus status) override
        {
            RecordingCallback::connectionStatusChanged(id, status);
            throw std::runtime_error("application fault");
        }
    } throwing;
    const RecordedTrace trace;
    ASSERT_TRUE(session
                    .connect(UaString("opc.tcp://localhost:4840"), info, UaClientSdk::SessionSecurityInfo(),
                             &throwing)
                    .isGood());
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
    passWatchdogTime();
    EXPECT_TRUE(throwing.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(
        throwing.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(throwing.statuses().back(), UaClient::Disconnected);
    EXPECT_EQ(trace.count("a callback threw 'application fault'"), 4);
}

} // namespace
