// What a server must prove when a session is created, and what the application may override.
#include <tests/support/securedserver.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/hostnames.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using testing::IsEmpty;
using UaClientSdk::SessionSecurityInfo;
using UaClientSdk::UaClient;

class CreateSessionTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_server = std::make_unique<SecuredServer>(stack, OpcUa_SecurityPolicy_Basic256Sha256,
                                                   OpcUa_MessageSecurityMode_SignAndEncrypt);
    }

    SecuredServer& server() { return *m_server; }

    UaStatus connectSecured(const char* url = "opc.tcp://localhost:4840")
    {
        return session.connect(UaString(url), info, server().clientSecurity(), &callback);
    }

private:
    std::unique_ptr<SecuredServer> m_server;
};

struct Fault
{
    const char* name;
    std::function<void(OpcUa_CreateSessionResponse&)> tamper;
    OpcUa_StatusCode status;
    bool overridable;
};

std::vector<Fault> faults(const UaByteString& other)
{
    return {
        {"empty certificate", [](auto& answer) { OpcUa_ByteString_Clear(&answer.ServerCertificate); },
         OpcUa_BadCertificateInvalid, true},
        {"short nonce", [](auto& answer) { answer.ServerNonce.Length = 31; }, OpcUa_BadNonceInvalid, true},
        {"no nonce", [](auto& answer) { OpcUa_ByteString_Clear(&answer.ServerNonce); }, OpcUa_BadNonceInvalid,
         true},
        {"other certificate in the endpoint",
         [other](auto& answer) {
             OpcUa_ByteString_Clear(&answer.ServerEndpoints[0].ServerCertificate);
             EXPECT_TRUE(OpcUa_IsGood(other.copyTo(&answer.ServerEndpoints[0].ServerCertificate)));
         },
         OpcUa_BadSecurityChecksFailed, true},
        {"endpoint downgraded to signing",
         [](auto& answer) { answer.ServerEndpoints[0].SecurityMode = OpcUa_MessageSecurityMode_Sign; },
         OpcUa_BadSecurityModeRejected, true},
        {"endpoint of another policy",
         [](auto& answer) {
             OpcUa_String_Clear(&answer.ServerEndpoints[0].SecurityPolicyUri);
             EXPECT_EQ(OpcUa_String_Assign(&answer.ServerEndpoints[0].SecurityPolicyUri,
                                           OpcUa_SecurityPolicy_Basic256, -1),
                       OpcUa_Good);
         },
         OpcUa_BadSecurityModeRejected, true},
        {"wrong signature", [](auto& answer) { answer.ServerSignature.Signature.Data[5] ^= 1; },
         OpcUa_BadSecurityChecksFailed, false},
        {"no signature", [](auto& answer) { OpcUa_ByteString_Clear(&answer.ServerSignature.Signature); },
         OpcUa_BadSecurityChecksFailed, false},
        {"other algorithm", [](auto& answer) { OpcUa_String_Clear(&answer.ServerSignature.Algorithm); },
         OpcUa_BadSecurityChecksFailed, false},
        {"no certificate at all", [](auto& answer) { answer.ServerCertificate.Length = 20; },
         OpcUa_BadDecodingError, false},
    };
}

TEST_F(CreateSessionTest, EachFaultClosesTheSessionBeforeAnybodyLogsIn)
{
    for (const Fault& fault : faults(SecuredServer::otherCertificate())) {
        server().tamperCreate = fault.tamper;
        EXPECT_EQ(connectSecured().statusCode(), fault.status) << fault.name;
        EXPECT_THAT(server().logins, IsEmpty()) << fault.name;
        EXPECT_EQ(stack.journal().back(), "Disconnect") << fault.name;
        EXPECT_EQ(stack.journal().rbegin()[1], "CloseSessionRequest") << fault.name;
        const std::string told = "2 " + UaStatusCode(fault.status).toString().toStdString();
        EXPECT_EQ(callback.errors().back(), told + (fault.overridable ? " ours" : "")) << fault.name;
    }
}

TEST_F(CreateSessionTest, ApplicationGoesOnInSpiteOfWhatItMayOverride)
{
    callback.overrides = true;
    for (const Fault& fault : faults(SecuredServer::otherCertificate())) {
        server().tamperCreate = fault.tamper;
        const UaStatus status = connectSecured();
        EXPECT_EQ(status.isGood(), fault.overridable) << fault.name << status.toString().toUtf8();
        if (status.isGood())
            EXPECT_TRUE(disconnect().isGood()) << fault.name;
    }
}

UaEndpointDescriptions discovered(const char* policyUri, OpcUa_MessageSecurityMode mode)
{
    UaEndpointDescriptions result(1u);
    EXPECT_EQ(OpcUa_String_Assign(&result[0].EndpointUrl, "opc.tcp://localhost:4840", -1), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_Assign(&result[0].SecurityPolicyUri, policyUri, -1), OpcUa_Good);
    result[0].SecurityMode = mode;
    return result;
}

TEST_F(CreateSessionTest, BetterEndpointsThanDiscoveryShowedEndTheConnectUnlessOverridden)
{
    SecuredServer weak(stack, OpcUa_SecurityPolicy_Basic256, OpcUa_MessageSecurityMode_Sign);
    weak.tokens = {{OpcUa_UserTokenType_Anonymous, nullptr}};
    SessionSecurityInfo security = weak.clientSecurity();
    const UaString url("opc.tcp://localhost:4840");
    const auto seen = discovered(OpcUa_SecurityPolicy_Basic256, OpcUa_MessageSecurityMode_Sign);
    security.discoveredEndpoints = std::make_shared<const UaEndpointDescriptions>(seen);
    EXPECT_TRUE(session.connect(url, info, security, &callback).isGood());
    EXPECT_TRUE(disconnect().isGood());
    EXPECT_THAT(callback.errors(), IsEmpty());

    // one that everybody would have preferred
    weak.tamperCreate = [&](OpcUa_CreateSessionResponse& answer) {
        UaEndpointDescriptions endpoints;
        endpoints.attach(answer.NoOfServerEndpoints, answer.ServerEndpoints);
        const auto hidden =
            discovered(OpcUa_SecurityPolicy_Aes256Sha256RsaPss, OpcUa_MessageSecurityMode_SignAndEncrypt);
        EXPECT_TRUE(endpoints.append(hidden[0]));
        endpoints.detach(&answer.NoOfServerEndpoints, &answer.ServerEndpoints);
    };
    weak.logins.clear();
    const UaStatus status = session.connect(url, info, security, &callback);
    EXPECT_EQ(status.statusCode(), OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});
    EXPECT_THAT(status.diagnosticText().toStdString(), testing::HasSubstr("better security"));
    EXPECT_THAT(callback.errors(), testing::ElementsAre("2 BadSecurityChecksFailed ours"));
    EXPECT_THAT(weak.logins, IsEmpty());
    EXPECT_EQ(stack.journal().rbegin()[1], "CloseSessionRequest");
    callback.overrides = true;
    EXPECT_TRUE(session.connect(url, info, security, &callback).isGood());
    EXPECT_TRUE(disconnect().isGood());
    callback.overrides = false;
    security.discoveredEndpoints.reset(); // nobody asked
    EXPECT_TRUE(session.connect(url, info, security, &callback).isGood());
}

TEST_F(CreateSessionTest, SignatureThatFailsLeavesSubscriptionsAlone)
{
    bool deleted = true;
    stack.on(
        OpcUa_CloseSessionRequest_EncodeableType,
        [&](const void* request, void*) {
            deleted =
                static_cast<const OpcUa_CloseSessionRequest*>(request)->DeleteSubscriptions != OpcUa_False;
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
    server().tamperCreate = [](auto& answer) { answer.ServerSignature.Signature.Data[0] ^= 1; };
    EXPECT_TRUE(connectSecured().isBad());
    EXPECT_FALSE(deleted);
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
}

TEST_F(CreateSessionTest, CertificateOfAnotherServerIsRefused)
{
    // one that it has the key of, so that only the comparison with the channel's can tell
    auto security = server().clientSecurity();
    security.serverCertificate = SecuredServer::otherCertificate();
    const UaString url("opc.tcp://localhost:4840");
    EXPECT_EQ(session.connect(url, info, security, &callback).statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadCertificateUseNotAllowed));
    callback.overrides = true;
    EXPECT_TRUE(session.connect(url, info, security, &callback).isGood());
    EXPECT_EQ(session.serverCertificate(), server().certificate);
}

TEST_F(CreateSessionTest, HostOfTheUrlMustStandInTheCertificate)
{
    EXPECT_EQ(connectSecured("opc.tcp://elsewhere:4840").statusCode(),
              static_cast<OpcUa_StatusCode>(OpcUa_BadCertificateHostNameInvalid));
    for (const char* local :
         {"opc.tcp://LocalHost:4840", "opc.tcp://127.0.0.1:4840", "opc.tcp://[::1]:4840"}) {
        EXPECT_TRUE(connectSecured(local).isGood()) << local;
        EXPECT_TRUE(disconnect().isGood());
    }
}

TEST_F(CreateSessionTest, WhatWasOverriddenOnceIsNotAskedAgainByAReconnect)
{
    server().tamperCreate = [](auto& answer) { answer.ServerNonce.Length = 16; };
    callback.overrides = true;
    ASSERT_TRUE(connectSecured().isGood());
    callback.overrides = false;
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    EXPECT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect,
                                  UaClient::NewSessionCreated, UaClient::Connected}));
    EXPECT_TRUE(disconnect().isGood());
    // the next connect is another decision
    EXPECT_EQ(connectSecured().statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadNonceInvalid));
}

TEST_F(CreateSessionTest, WhatWasOverriddenOfOneCertificateIsAskedAgainOfAnother)
{
    // the channel has another one, to which the server has no key
    auto security = server().clientSecurity();
    security.serverCertificate = SecuredServer::otherCertificate();
    callback.overrides = true;
    ASSERT_TRUE(session.connect(UaString("opc.tcp://localhost:4840"), info, security, &callback).isGood());
    callback.overrides = false;
    const auto logins = server().logins.size();
    testcertificates::Recipe recipe;
    recipe.name = "Server";
    recipe.pair = testcertificates::key(2048, "server");
    recipe.serial = 2;
    server().certificate = SecuredServer::bytesOf(testcertificates::make(recipe));
    stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
    passWatchdogTime();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    const int closed = stack.calls(OpcUa_CloseSessionRequest_EncodeableType);
    passWatchdogTime();
    ASSERT_TRUE(stack.waitForCalls(OpcUa_CloseSessionRequest_EncodeableType, closed + 1));
    EXPECT_EQ(callback.errors().back(), "2 BadCertificateUseNotAllowed ours");
    EXPECT_EQ(server().logins.size(), logins) << "nobody logs in there";
}

TEST(HostNames, CompareByWhatTheyMean)
{
    UaPkiCertificateInfo certificate;
    EXPECT_TRUE(certificate.DNSNames.append(*UaString("Plant.Example.COM").get()));
    EXPECT_TRUE(certificate.DNSNames.append(*UaString("").get()));
    EXPECT_TRUE(certificate.IPAddresses.append(*UaString("2001:db8::1").get()));
    EXPECT_TRUE(certificate.IPAddresses.append(*UaString("192.0.2.7").get()));
    for (const char* host :
         {"plant.example.com", "PLANT.example.com.", "2001:DB8:0:0::1", "192.0.2.7", "2001:db8::1%eth0"})
        EXPECT_TRUE(UaClientSdk::namesHost(certificate, host)) << host;
    for (const char* host : {"plant", "example.com", "192.0.2.70", "2001:db8::10", "localhost", ""})
        EXPECT_FALSE(UaClientSdk::namesHost(certificate, host)) << host;
    std::array<char, 256> own{};
    ASSERT_EQ(gethostname(own.data(), own.size() - 1), 0);
    UaPkiCertificateInfo local;
    EXPECT_TRUE(local.DNSNames.append(*UaString(own.data()).get()));
    EXPECT_TRUE(UaClientSdk::namesHost(local, "127.0.0.1"));
    EXPECT_TRUE(UaClientSdk::namesHost(local, "::1"));
    EXPECT_FALSE(UaClientSdk::namesHost(local, "192.0.2.7"));
}

} // namespace
