// Connecting and staying connected, with a server that is not ours: every policy and user, wrong users, a
// server that freezes, dies, and comes back.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/owndemoserver.h>
#include <tests/support/testcertificates.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace UaClientSdk;
using testing::AnyOf;

constexpr OpcUa_StatusCode good = OpcUa_Good;

UaByteString bytesOf(const testcertificates::Der& der)
{
    return UaByteString(std::span<const OpcUa_Byte>(der.data(), der.size()));
}

// Remembers every status; a wait looks only at those that came after the last one.
class StatusLog : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus status) override
    {
        std::lock_guard lock(m_mutex);
        m_statuses.push_back(status);
        m_changed.notify_all();
    }

    bool connectError(OpcUa_UInt32, UaClient::ConnectServiceType step, const UaStatus& error, bool) override
    {
        std::lock_guard lock(m_mutex);
        m_lastError = std::to_string(step) + " " + error.toString().toStdString();
        ++m_errors;
        m_changed.notify_all();
        return false;
    }

    [[nodiscard]] bool waitFor(UaClient::ServerStatus wanted)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, [&] {
            while (m_seen < m_statuses.size())
                if (m_statuses[m_seen++] == wanted)
                    return true;
            return false;
        });
    }

    // The error that comes after so many others; empty when none does.
    std::string waitForError(int before)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, [&] { return m_errors > before; }) ? m_lastError : "";
    }

    int errors()
    {
        std::lock_guard lock(m_mutex);
        return m_errors;
    }

private:
    static constexpr auto limit = std::chrono::seconds(30);
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<int> m_statuses;
    std::size_t m_seen = 0;
    std::string m_lastError;
    int m_errors = 0;
};

class IdentityOnDemoServer : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        info.sessionName = "identity test";
        info.applicationUri = "urn:localhost:test"; // as in the certificate
    }

    void TearDown() override
    {
        if (session.isConnected())
            static_cast<void>(session.disconnect(settings, true)); // a test's own server is gone by now
    }

    static SessionSecurityInfo securityOf(const OpcUa_EndpointDescription& endpoint)
    {
        testcertificates::Recipe recipe;
        recipe.name = "Session test";
        recipe.pair = testcertificates::key(2048);
        SessionSecurityInfo security;
        security.clientCertificate = bytesOf(testcertificates::make(recipe));
        security.clientPrivateKey =
            std::make_shared<const UaClientSdk::SecretBytes>(testcertificates::privateDer(recipe.pair));
        security.securityPolicyUri = UaString(endpoint.SecurityPolicyUri);
        security.messageSecurityMode = endpoint.SecurityMode;
        security.serverCertificate = UaByteString(endpoint.ServerCertificate);
        return security;
    }

    UaEndpointDescriptions endpointsOf(const UaString& url)
    {
        UaDiscovery discovery;
        UaEndpointDescriptions endpoints;
        EXPECT_EQ(discovery.getEndpoints(settings, url, ClientSecurityInfo(), endpoints).statusCode(), good);
        return endpoints;
    }

    // The most secure endpoint of a server.
    SessionSecurityInfo bestSecurity(const UaString& url)
    {
        const UaEndpointDescriptions endpoints = endpointsOf(url);
        const auto best = std::max_element(endpoints.begin(), endpoints.end(), [](auto& one, auto& other) {
            return one.SecurityMode < other.SecurityMode;
        });
        return best == endpoints.end() ? SessionSecurityInfo() : securityOf(*best);
    }

    OpcUa_StatusCode readSomething()
    {
        UaReadValueIds nodes(1u);
        nodes[0].NodeId.Identifier.Numeric = OpcUaId_Server_ServerStatus_CurrentTime;
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        const UaStatus status =
            session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics);
        return status.isGood() ? values[0].StatusCode : status.statusCode();
    }

    void connectFast(const OwnDemoServer& server)
    {
        const UaString url(server.url().c_str());
        info.watchdogTime = 1000;
        info.watchdogTimeout = 1000;
        ASSERT_EQ(session.connect(url, info, bestSecurity(url), &log).statusCode(), good);
        ASSERT_TRUE(log.waitFor(UaClient::Connected));
    }

    ServiceSettings settings;
    SessionConnectInfo info;
    StatusLog log;
    UaSession session;
};

TEST_F(IdentityOnDemoServer, EveryPolicyAndModeTakesEveryUser)
{
    const UaString url(demoserver::endpointUrl().c_str());
    const UaEndpointDescriptions endpoints = endpointsOf(url);
    ASSERT_GE(endpoints.length(), 7u); // None, and three policies with two modes each
    testcertificates::Recipe user;
    user.name = "User";
    user.pair = testcertificates::key(2048, "user");
    const UaByteString userCertificate = bytesOf(testcertificates::make(user));
    const UaByteString userKey = bytesOf(testcertificates::privateDer(user.pair));
    const auto discovered = std::make_shared<const UaEndpointDescriptions>(endpoints);
    for (const OpcUa_EndpointDescription& endpoint : endpoints) {
        SessionSecurityInfo security = securityOf(endpoint);
        security.discoveredEndpoints = discovered; // by which an honest server has nothing to hide
        const std::function<void()> users[] = {
            [&] { security.setAnonymousUserIdentity(); },
            [&] { security.setUserPasswordUserIdentity("demo", "demo"); },
            [&] { security.setCertificateUserIdentity(userCertificate, userKey); }};
        for (const auto& setUser : users) {
            setUser();
            const UaStatus status = session.connect(url, info, security, &log);
            ASSERT_EQ(status.statusCode(), good)
                << security.securityPolicyUri.toUtf8() << " mode " << endpoint.SecurityMode << " user "
                << security.userIdentityToken()->tokenType() << ": " << status.toString().toUtf8();
            EXPECT_EQ(readSomething(), good);
            EXPECT_EQ(session.disconnect(settings, true).statusCode(), good);
        }
    }
}

TEST_F(IdentityOnDemoServer, WrongPasswordIsRefusedAndAnotherUserIsTaken)
{
    const UaString url(demoserver::endpointUrl().c_str());
    SessionSecurityInfo security = bestSecurity(url);
    security.setUserPasswordUserIdentity("demo", "wrong");
    info.retryInitialConnect = true; // which must not try the password again
    EXPECT_THAT(session.connect(url, info, security, &log).statusCode(),
                AnyOf(OpcUa_BadUserAccessDenied, OpcUa_BadIdentityTokenRejected));
    EXPECT_FALSE(session.isConnected());

    security.setAnonymousUserIdentity();
    ASSERT_EQ(session.connect(url, info, security, &log).statusCode(), good);
    const UaUserNameIdentityToken wrong("demo", UaString("wrong"));
    const UaUserNameIdentityToken right("demo", UaString("demo"));
    EXPECT_TRUE(session.changeUser(settings, &wrong).isBad());
    EXPECT_EQ(readSomething(), good);
    EXPECT_EQ(session.changeUser(settings, &right).statusCode(), good);
    EXPECT_EQ(readSomething(), good);
}

TEST_F(IdentityOnDemoServer, FrozenServerIsWarnedOfThenReconnected)
{
    OwnDemoServer server;
    ASSERT_TRUE(server.start());
    connectFast(server);
    const UaNodeId before = session.sessionId();
    server.freeze();
    EXPECT_TRUE(log.waitFor(UaClient::ConnectionWarningWatchdogTimeout));
    server.thaw();
    ASSERT_TRUE(log.waitFor(UaClient::Connected));
    server.freeze();
    EXPECT_TRUE(log.waitFor(UaClient::ConnectionErrorApiReconnect));
    server.thaw();
    ASSERT_TRUE(log.waitFor(UaClient::Connected));
    EXPECT_EQ(readSomething(), good);
    EXPECT_EQ(session.sessionId(), before); // the server remembers it
}

TEST_F(IdentityOnDemoServer, RestartedServerGetsANewSessionAndAnImpostorNone)
{
    OwnDemoServer server;
    ASSERT_TRUE(server.start());
    connectFast(server);
    const UaNodeId before = session.sessionId();
    server.kill();
    EXPECT_TRUE(log.waitFor(UaClient::ConnectionErrorApiReconnect));
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(log.waitFor(UaClient::NewSessionCreated));
    EXPECT_TRUE(log.waitFor(UaClient::Connected));
    EXPECT_NE(session.sessionId(), before);
    EXPECT_EQ(readSomething(), good);

    server.kill();
    EXPECT_TRUE(log.waitFor(UaClient::ConnectionErrorApiReconnect));
    ASSERT_TRUE(server.start("otherpki"));
    std::string error;
    for (int seen = log.errors(); error.empty() || error == "1 BadConnectionRejected"; ++seen) {
        error = log.waitForError(seen);
        ASSERT_FALSE(error.empty()) << "no attempt was refused";
    }
    EXPECT_EQ(error.substr(0, 5), "1 Bad") << error; // no channel was opened to it
    RecordProperty("refusal", error);
    EXPECT_EQ(session.serverStatus(), UaClient::ConnectionErrorApiReconnect);
    server.kill();
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(log.waitFor(UaClient::Connected));
}

} // namespace
