// Who logs in, how secrets travel, and what happens when the server does not want somebody.
#include <tests/support/securedserver.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <string_view>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using UaClientSdk::SessionSecurityInfo;
using UaClientSdk::UaClient;
using UaClientSdk::UaUserNameIdentityToken;

constexpr OpcUa_StatusCode plainPassword = OpcUa_BadSecurityModeInsufficient;

class IdentityTest : public SessionTest
{
protected:
    UaStatus connect(const SessionSecurityInfo& security)
    {
        return session.connect(UaString("opc.tcp://localhost:4840"), info, security, &callback);
    }

    static UaByteString chainOf(const UaByteString& leaf)
    {
        const std::string chain =
            std::string(leaf.view()) + std::string(SecuredServer::otherCertificate().view());
        return UaByteString(static_cast<OpcUa_Int32>(chain.size()),
                            reinterpret_cast<const OpcUa_Byte*>(chain.data()));
    }

    static void useCertificate(SessionSecurityInfo& security)
    {
        testcertificates::Recipe recipe;
        recipe.name = "User";
        recipe.pair = testcertificates::key(2048, "user");
        security.setCertificateUserIdentity(
            SecuredServer::bytesOf(testcertificates::make(recipe)),
            SecuredServer::bytesOf(testcertificates::privateDer(recipe.pair)));
    }

    void loseSession()
    {
        stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionClosed});
        passWatchdogTime();
        ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    }
};

TEST_F(IdentityTest, EveryPolicyProtectsEveryUser)
{
    const std::string longPassword(700, 'x'); // more than two blocks of a 2048-bit key
    for (const char* policy : {OpcUa_SecurityPolicy_Basic128Rsa15, OpcUa_SecurityPolicy_Basic256,
                               OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_SecurityPolicy_Aes128Sha256RsaOaep,
                               OpcUa_SecurityPolicy_Aes256Sha256RsaPss}) {
        SecuredServer server(stack, policy, OpcUa_MessageSecurityMode_Sign);
        SessionSecurityInfo security = server.clientSecurity();
        for (const std::string& password : {std::string("geheim"), std::string(), longPassword}) {
            security.setUserPasswordUserIdentity("anna", UaString(std::string_view(password)));
            EXPECT_TRUE(connect(security).isGood()) << policy;
            EXPECT_TRUE(disconnect().isGood());
        }
        useCertificate(security);
        EXPECT_TRUE(connect(security).isGood()) << policy;
        EXPECT_TRUE(disconnect().isGood());
        security.setAnonymousUserIdentity();
        EXPECT_TRUE(connect(security).isGood()) << policy;
        EXPECT_TRUE(disconnect().isGood());
        EXPECT_THAT(server.logins, ElementsAre("user anna geheim", "user anna ", "user anna " + longPassword,
                                               "certificate", "anonymous"))
            << policy;
    }
}

TEST_F(IdentityTest, TheUnsafePolicyNeedsTheUsersConsent)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic128Rsa15, OpcUa_MessageSecurityMode_SignAndEncrypt);
    SessionSecurityInfo security = server.clientSecurity();
    security.basic128Rsa15Accepted = false;
    EXPECT_EQ(connect(security).statusCode(), OpcUa_BadSecurityPolicyRejected);
    security.basic128Rsa15Accepted = true;
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
}

TEST_F(IdentityTest, UnsecuredChannelTakesTheStrongestPolicyOfTheTokens)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    server.tokens = {{OpcUa_UserTokenType_UserName, nullptr},
                     {OpcUa_UserTokenType_UserName, "urn:unknown"},
                     {OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_Basic128Rsa15},
                     {OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_Aes256Sha256RsaPss},
                     {OpcUa_UserTokenType_Certificate, OpcUa_SecurityPolicy_Basic256Sha256}};
    SessionSecurityInfo security = server.clientSecurity();
    // with an issuer behind it, which is no part of what is encrypted with and signed for
    security.serverCertificate = chainOf(server.certificate);
    security.setUserPasswordUserIdentity("anna", "geheim");
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_EQ(session.serverCertificate(), server.certificate);
    EXPECT_TRUE(disconnect().isGood());
    useCertificate(security);
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_THAT(server.logins, ElementsAre("user anna geheim", "certificate"));
    // the server's nonce is all that keeps an old login from being repeated
    server.tamperCreate = [](auto& answer) { answer.ServerNonce.Length = 8; };
    EXPECT_EQ(connect(security).statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadNonceInvalid));
    EXPECT_EQ(server.logins.size(), 2u);
}

TEST_F(IdentityTest, PasswordLeavesInClearOnlyWhenSomebodyHasAgreed)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    SessionSecurityInfo security = server.clientSecurity();
    security.setUserPasswordUserIdentity("anna", "geheim");
    EXPECT_EQ(connect(security).statusCode(), plainPassword);
    EXPECT_THAT(server.logins, IsEmpty());
    EXPECT_THAT(callback.errors(), ElementsAre("3 BadSecurityModeInsufficient ours")) << "asked once";
    security.plainPasswordAccepted = true;
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
    security.plainPasswordAccepted = false;
    callback.overrides = true;
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_THAT(server.logins, ElementsAre("user anna geheim in clear", "user anna geheim in clear"));

    // a token that asks for no encryption on a channel that only signs is no better; one that encrypts is
    callback.overrides = false;
    for (const auto mode : {OpcUa_MessageSecurityMode_Sign, OpcUa_MessageSecurityMode_SignAndEncrypt}) {
        SecuredServer secured(stack, OpcUa_SecurityPolicy_Basic256Sha256, mode);
        secured.tokens = {{OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_None}};
        SessionSecurityInfo signing = secured.clientSecurity();
        signing.setUserPasswordUserIdentity("anna", "geheim");
        const UaStatus status = connect(signing);
        EXPECT_EQ(status.statusCode(), mode == OpcUa_MessageSecurityMode_Sign ? plainPassword : OpcUa_Good);
        if (status.isGood())
            EXPECT_TRUE(disconnect().isGood());
    }
}

TEST_F(IdentityTest, CertificateThatNobodyJudgedProtectsNothingAndIsNotSignedFor)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    server.tokens = {{OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_Basic256Sha256},
                     {OpcUa_UserTokenType_Certificate, OpcUa_SecurityPolicy_Basic256Sha256}};
    SessionSecurityInfo security = server.clientSecurity();
    security.setUserPasswordUserIdentity("anna", "geheim");
    const UaStatus status = connect(security);
    EXPECT_EQ(status.statusCode(), plainPassword);
    EXPECT_THAT(status.diagnosticText().toStdString(), HasSubstr("certificate was not checked"));
    EXPECT_THAT(callback.errors(), ElementsAre("3 BadSecurityModeInsufficient ours"));
    // one that the session is to judge is judged by nobody when there is no security, and garbage neither
    security.serverCertificate = server.certificate;
    security.verifyServerCertificateOnConnect = true;
    EXPECT_EQ(connect(security).statusCode(), plainPassword);
    security.serverCertificate = UaByteString(4, reinterpret_cast<const OpcUa_Byte*>("junk"));
    security.verifyServerCertificateOnConnect = false;
    EXPECT_EQ(connect(security).statusCode(), plainPassword);
    security.serverCertificate.clear();
    useCertificate(security);
    EXPECT_EQ(connect(security).statusCode(), OpcUa_StatusCode{OpcUa_BadCertificateUntrusted});
    EXPECT_THAT(callback.errors(), Contains("3 BadCertificateUntrusted"));
    EXPECT_THAT(server.logins, IsEmpty());
    // who has agreed to clear text is not worse off with what the server asks for
    callback.overrides = true;
    security.setUserPasswordUserIdentity("anna", "geheim");
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_THAT(server.logins, ElementsAre("user anna geheim"));
}

TEST_F(IdentityTest, PasswordIsForTheHolderOfTheChannelsCertificateOnly)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_MessageSecurityMode_Sign);
    SessionSecurityInfo security = server.clientSecurity();
    security.serverCertificate = SecuredServer::otherCertificate();
    security.setUserPasswordUserIdentity("anna", "geheim");
    callback.overrides = true; // that CreateSession returns another certificate
    EXPECT_TRUE(connect(security).isGood());
    EXPECT_TRUE(disconnect().isGood());
    ASSERT_EQ(server.logins.size(), 1u);
    EXPECT_THAT(server.logins.front(), Not(HasSubstr("geheim"))) << "not for the key of another certificate";
}

TEST_F(IdentityTest, UserThatNoTokenOfTheEndpointFitsIsNotSent)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    server.tokens = {{OpcUa_UserTokenType_Anonymous, nullptr}, {OpcUa_UserTokenType_Certificate, nullptr}};
    SessionSecurityInfo security = server.clientSecurity();
    security.setUserPasswordUserIdentity("anna", "geheim");
    const OpcUa_StatusCode rejected = OpcUa_BadIdentityTokenRejected;
    EXPECT_EQ(connect(security).statusCode(), rejected);
    useCertificate(security); // there is no algorithm to sign with
    EXPECT_EQ(connect(security).statusCode(), rejected);
    EXPECT_THAT(server.logins, IsEmpty());
}

TEST_F(IdentityTest, NonceThatIsShortOrRepeatedClosesTheSession)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_MessageSecurityMode_Sign);
    UaByteString last;
    server.tamperCreate = [&](auto& answer) { last = UaByteString(answer.ServerNonce); };
    const std::function<void(OpcUa_ActivateSessionResponse&)> tampers[] = {
        [](auto& answer) { answer.ServerNonce.Length = 31; },
        [](auto& answer) { OpcUa_ByteString_Clear(&answer.ServerNonce); },
        [&](auto& answer) {
            OpcUa_ByteString_Clear(&answer.ServerNonce);
            EXPECT_TRUE(OpcUa_IsGood(last.copyTo(&answer.ServerNonce)));
        }};
    int closed = 0;
    for (const auto& tamper : tampers) {
        server.tamperActivate = tamper;
        EXPECT_EQ(connect(server.clientSecurity()).statusCode(),
                  static_cast<OpcUa_StatusCode>(OpcUa_BadNonceInvalid));
        EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), ++closed);
        EXPECT_EQ(callback.errors().back(), "3 BadNonceInvalid");
    }
}

TEST_F(IdentityTest, ChangedUserStaysAcrossAReconnect)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    ASSERT_TRUE(connect(server.clientSecurity()).isGood());
    UaClientSdk::ServiceSettings settings;
    const UaUserNameIdentityToken berta("berta", UaString("b"));
    const UaUserNameIdentityToken carla("carla", UaString("c"));
    ASSERT_TRUE(session.changeUser(settings, &berta).isGood());
    server.activateResult = OpcUa_BadUserAccessDenied;
    EXPECT_EQ(session.changeUser(settings, &carla).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadUserAccessDenied));
    EXPECT_EQ(session.changeUser(settings, nullptr).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadInvalidArgument));
    server.activateResult = OpcUa_Good;
    loseSession();
    passWatchdogTime();
    ASSERT_TRUE(
        callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_THAT(server.logins, ElementsAre("anonymous", "user berta b", "user carla c", "user berta b"));
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_EQ(session.changeUser(settings, &berta).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadConnectionClosed));
}

TEST_F(IdentityTest, RefusedUserIsTriedOnceAndAnotherOneTakesOver)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    SessionSecurityInfo security = server.clientSecurity();
    security.setUserPasswordUserIdentity("anna", "geheim");
    ASSERT_TRUE(connect(security).isGood());
    loseSession();
    server.activateResult = OpcUa_BadUserAccessDenied;
    passWatchdogTime();
    ASSERT_TRUE(stack.waitForCalls(OpcUa_CloseSessionRequest_EncodeableType, 1));
    const int connects = stack.connects();
    EXPECT_TRUE(passWatchdogTimeInVain()); // the first may end while the attempt still does
    EXPECT_TRUE(passWatchdogTimeInVain());
    EXPECT_EQ(stack.connects(), connects);
    server.activateResult = OpcUa_Good;
    UaClientSdk::ServiceSettings settings;
    const UaUserNameIdentityToken berta("berta", UaString("b"));
    EXPECT_EQ(session.changeUser(settings, &berta).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_GoodCompletesAsynchronously));
    ASSERT_TRUE(passWatchdogTimesUntil({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                        UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_EQ(stack.connects(), connects + 1);
    EXPECT_THAT(server.logins, ElementsAre("user anna geheim", "user anna geheim", "user berta b"));
}

TEST_F(IdentityTest, RefusedUserEndsARetriedInitialConnect)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    SessionSecurityInfo security = server.clientSecurity();
    info.retryInitialConnect = true;
    server.activateResult = OpcUa_BadIdentityTokenRejected;
    security.setUserPasswordUserIdentity("anna", "geheim");
    EXPECT_EQ(connect(security).statusCode(), server.activateResult);
    EXPECT_FALSE(session.isConnected());
    security.setAnonymousUserIdentity(); // nobody's account is at stake
    EXPECT_EQ(connect(security).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_GoodCompletesAsynchronously));
}

TEST_F(IdentityTest, NonceFaultOfAChangedUserIsRecoveredFrom)
{
    SecuredServer server(stack, OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    ASSERT_TRUE(connect(server.clientSecurity()).isGood());
    server.tamperActivate = [](auto& answer) { answer.ServerNonce.Length = 3; };
    UaClientSdk::ServiceSettings settings;
    const UaUserNameIdentityToken berta("berta", UaString("b"));
    EXPECT_EQ(session.changeUser(settings, &berta).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadNonceInvalid));
    server.tamperActivate = nullptr;
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                  UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_EQ(server.logins.back(), "anonymous"); // the user that the server knew last
}

} // namespace
