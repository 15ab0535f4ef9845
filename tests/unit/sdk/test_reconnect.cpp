// The way back to a server: what is kept, what is told, and what is not tried.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/useridentitytoken.h>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <vector>

namespace {

using testing::ElementsAre;
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;

class ReconnectTest : public SessionTest
{
protected:
    void loseLink()
    {
        const auto before = callback.statuses().size();
        stack.loseLink();
        ASSERT_TRUE(callback.waitForCount(before + 1));
        ASSERT_EQ(callback.statuses().back(), UaClient::ConnectionErrorApiReconnect);
    }
};

TEST_F(ReconnectTest, LossOfTheLinkAfterAShutdownIsNoWork)
{
    ASSERT_TRUE(connect().isGood());
    stack.setServerState(OpcUa_ServerState_Shutdown);
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ServerShutdown}));
    ASSERT_TRUE(stack.waitForCalls(OpcUa_CloseSessionRequest_EncodeableType, 1));
    stack.loseLink();
    const int before = stack.tickReads;
    EXPECT_FALSE(callback.waitFor({}, std::chrono::milliseconds(300))); // there is nothing to be told
    EXPECT_LT(stack.tickReads - before, 5);                             // a turn of the thread reads it once
}

TEST_F(ReconnectTest, ServerThatStillShutsDownIsNotCalledConnected)
{
    ASSERT_TRUE(connect().isGood());
    stack.setServerState(OpcUa_ServerState_Shutdown);
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ServerShutdown}));
    passWatchdogTime();
    ASSERT_TRUE(stack.waitForCalls(OpcUa_CloseSessionRequest_EncodeableType, 2));
    EXPECT_EQ(session.serverStatus(), UaClient::ServerShutdown);
    stack.setServerState(OpcUa_ServerState_Running);
    EXPECT_TRUE(passWatchdogTimesUntil(
        {UaClient::Connected, UaClient::ServerShutdown, UaClient::NewSessionCreated, UaClient::Connected}));
}

TEST_F(ReconnectTest, SessionOutlivesALinkThatBreaksDuringItsActivation)
{
    ASSERT_TRUE(connect().isGood());
    loseLink();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                   {OpcUa_BadConnectionClosed, OpcUa_BadTimeout});
    EXPECT_TRUE(passWatchdogTimesUntil(
        {UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 1);
    EXPECT_EQ(stack.calls(OpcUa_ActivateSessionRequest_EncodeableType), 4);
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 0);
}

TEST_F(ReconnectTest, SessionThatNoLinkActivatesIsReplacedInTheEnd)
{
    ASSERT_TRUE(connect().isGood());
    loseLink();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                   std::vector<OpcUa_StatusCode>(11, OpcUa_BadConnectionClosed));
    EXPECT_TRUE(passWatchdogTimesUntil({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                        UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 2);
    ASSERT_TRUE(passTurns()); // the time of an attempt counts from its end
    loseLink();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                   std::vector<OpcUa_StatusCode>(6, OpcUa_BadConnectionClosed));
    EXPECT_TRUE(passWatchdogTimesUntil({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                        UaClient::NewSessionCreated, UaClient::Connected,
                                        UaClient::ConnectionErrorApiReconnect, UaClient::Connected}))
        << "with as much patience for the new one";
}

TEST_F(ReconnectTest, EveryLossOfTheLinkFindsTheSamePatience)
{
    ASSERT_TRUE(connect().isGood());
    std::vector<int> told{UaClient::Connected};
    for (int loss = 0; loss < 3; ++loss) {
        loseLink();
        stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType,
                       std::vector<OpcUa_StatusCode>(6, OpcUa_BadConnectionClosed));
        told.insert(told.end(), {UaClient::ConnectionErrorApiReconnect, UaClient::Connected});
        ASSERT_TRUE(passWatchdogTimesUntil(told)) << loss;
        ASSERT_TRUE(passTurns());
    }
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 1);
}

TEST_F(ReconnectTest, NewSessionIsAskedForWithoutTheOldOnesToken)
{
    const auto create = stack.handler(OpcUa_CreateSessionRequest_EncodeableType);
    std::atomic<int> withToken{0};
    stack.on(OpcUa_CreateSessionRequest_EncodeableType, [&](const void* request, void* response) {
        const UaNodeId token(
            static_cast<const OpcUa_CreateSessionRequest*>(request)->RequestHeader.AuthenticationToken);
        withToken += token.isNull() ? 0 : 1;
        const OpcUa_StatusCode status = create(request, response);
        static_cast<OpcUa_CreateSessionResponse*>(response)->AuthenticationToken.Identifier.Numeric = 77;
        return status;
    });
    ASSERT_TRUE(connect().isGood());
    loseLink();
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    ASSERT_TRUE(passWatchdogTimesUntil({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                        UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 2);
    EXPECT_EQ(withToken, 0);
}

// The event may come before the answer that it makes worthless.
TEST_F(ReconnectTest, LinkThatBreaksBehindItsActivationDoesNotCount)
{
    ASSERT_TRUE(connect().isGood());
    loseLink();
    stack.on(OpcUa_ActivateSessionRequest_EncodeableType, [this](const void*, void*) {
        if (stack.connects() == 2)
            stack.loseLink();
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    EXPECT_TRUE(passWatchdogTimesUntil(
        {UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_EQ(stack.connects(), 3);
    EXPECT_EQ(stack.calls(OpcUa_CreateSessionRequest_EncodeableType), 1);
}

TEST_F(ReconnectTest, UserIsNotPromisedALogInThatWillNotCome)
{
    info.automaticReconnect = false;
    ASSERT_TRUE(connect().isGood());
    loseLink();
    ServiceSettings settings;
    const UaClientSdk::UaAnonymousIdentityToken nobody;
    EXPECT_EQ(session.changeUser(settings, &nobody).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
    EXPECT_TRUE(session.isConnected());
    EXPECT_TRUE(disconnect().isGood());
}

TEST_F(ReconnectTest, WishEndsTheWaitForTheNextAttempt)
{
    info.watchdogTime = 600000;
    ASSERT_TRUE(connect().isGood());
    loseLink();
    stack.setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_TRUE(session.reconnectNow());
    ASSERT_TRUE(waitUntil([this] { return stack.connects() == 2; }));
    stack.setConnectResult(OpcUa_Good);
    EXPECT_TRUE(session.reconnectNow());
    EXPECT_TRUE(
        callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_EQ(stack.connects(), 3);
    const int checks = stack.calls(OpcUa_ReadRequest_EncodeableType);
    EXPECT_TRUE(session.reconnectNow()); // one that stands is checked
    EXPECT_TRUE(stack.waitForCalls(OpcUa_ReadRequest_EncodeableType, checks + 1));
    EXPECT_EQ(stack.connects(), 3);
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_FALSE(session.reconnectNow());
}

TEST_F(ReconnectTest, UserWhoWasRefusedIsNotTriedByAWish)
{
    ASSERT_TRUE(connect().isGood());
    loseLink();
    ServiceSettings settings;
    const UaClientSdk::UaUserNameIdentityToken user(UaString("user"), UaString("unknown here"));
    EXPECT_EQ(session.changeUser(settings, &user).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_GoodCompletesAsynchronously));
    passWatchdogTime();
    ASSERT_TRUE(waitUntil([this] { return !session.reconnectNow(); }));
    const int connects = stack.connects();
    EXPECT_TRUE(passWatchdogTimeInVain());
    EXPECT_EQ(stack.connects(), connects);
    EXPECT_TRUE(session.isConnected());
}

} // namespace
