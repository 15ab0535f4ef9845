// HTTPS with binary bodies against a front and a server that are not ours: the session layer above, and the
// stack with a subscription beside ordinary calls.
#include <opcua/opcua.h>
#include <tests/support/httpsfront.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

using namespace UaClientSdk;

constexpr OpcUa_UInt16 demoNs = 2;

class Asked : public UaSessionCallback
{
public:
    explicit Asked(bool accepted) : m_accepted(accepted) {}
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
    bool sslCertificateValidationFailed(OpcUa_UInt32, const UaStatus& status,
                                        const UaByteString& certificate) override
    {
        EXPECT_GT(certificate.length(), 0);
        findings.push_back(status.statusCode());
        return m_accepted;
    }
    std::vector<OpcUa_StatusCode> findings;

private:
    bool m_accepted;
};

class HttpsDemoServer : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        front = std::make_unique<HttpsFront>(TAVELIN_SOURCE_FOLDER);
    }
    static void TearDownTestSuite()
    {
        front.reset();
        UaPlatformLayer::cleanup();
    }
    void SetUp() override { ASSERT_FALSE(front->url().empty()) << front->log(); }

    static SessionSecurityInfo security(const std::string& trusted)
    {
        SessionSecurityInfo info;
        info.initializePkiProviderHttps(UaString(trusted.c_str()), UaString());
        return info;
    }
    static UaStatus connect(UaSession& session, const std::string& trusted, UaSessionCallback& callback)
    {
        return session.connect(UaString(front->url().c_str()), SessionConnectInfo(), security(trusted),
                               &callback);
    }

    inline static std::unique_ptr<HttpsFront> front;
};

TEST_F(HttpsDemoServer, SessionReadsWritesAndBrowses)
{
    Asked callback(false);
    UaSession session;
    const UaStatus connected = connect(session, front->trustedFolder(), callback);
    ASSERT_TRUE(connected.isGood()) << connected.toString().toUtf8() << '\n' << front->log();
    EXPECT_TRUE(callback.findings.empty());

    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    const UaNodeId node(UaString("Scalar.Double"), demoNs);
    UaWriteValues writes(1u);
    EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&writes[0].NodeId)));
    writes[0].AttributeId = OpcUa_Attributes_Value;
    EXPECT_TRUE(OpcUa_IsGood(UaVariant(42.125).copyTo(&writes[0].Value.Value)));
    UaStatusCodeArray results;
    ASSERT_TRUE(session.write(settings, writes, results, diagnostics).isGood());
    EXPECT_EQ(results[0], OpcUa_Good);

    UaReadValueIds reads(1u);
    EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&reads[0].NodeId)));
    reads[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    ASSERT_TRUE(
        session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, reads, values, diagnostics).isGood());
    EXPECT_EQ(UaVariant(values[0].Value), UaVariant(42.125));

    UaByteString continuation;
    UaReferenceDescriptions references;
    EXPECT_TRUE(
        session.browse(settings, UaNodeId(OpcUaId_ObjectsFolder), BrowseContext(), continuation, references)
            .isGood());
    EXPECT_GT(references.length(), 2u);
    EXPECT_TRUE(session.disconnect(settings, true).isGood());
}

TEST_F(HttpsDemoServer, AnUnknownCertificateIsTheApplicationsToJudge)
{
    for (const bool accepted : {false, true}) {
        Asked callback(accepted);
        UaSession session;
        const UaStatus status = connect(session, front->emptyFolder(), callback);
        EXPECT_EQ(status.statusCode(), accepted ? OpcUa_Good : OpcUa_BadCertificateUntrusted);
        EXPECT_EQ(callback.findings, std::vector<OpcUa_StatusCode>{OpcUa_BadCertificateUntrusted});
        ServiceSettings settings;
        if (accepted)
            EXPECT_TRUE(session.disconnect(settings, true).isGood());
    }
}

TEST_F(HttpsDemoServer, DiscoveryFindsTheEndpointOfTheFront)
{
    ServiceSettings settings;
    UaEndpointDescriptions endpoints;
    ASSERT_TRUE(UaDiscovery()
                    .getEndpoints(settings, UaString(front->url().c_str()), security(front->trustedFolder()),
                                  endpoints)
                    .isGood());
    ASSERT_GT(endpoints.length(), 0u);
    const auto& last = endpoints[endpoints.length() - 1];
    EXPECT_STREQ(UaString(last.EndpointUrl).toUtf8(), front->url().c_str());
    EXPECT_STREQ(UaString(last.TransportProfileUri).toUtf8(), OpcUa_TransportProfile_HttpsBinary);
}

// ---- a subscription, on the stack

// Answers of Publish requests.
struct Published
{
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
    int bad = 0;

    static void completed(OpcUa_Channel, void* response, const OpcUa_EncodeableType* type, void* data,
                          OpcUa_StatusCode status)
    {
        auto& published = *static_cast<Published*>(data);
        if (response != nullptr)
            OpcUa_EncodeableObject_Delete(type, &response);
        const std::lock_guard lock(published.mutex);
        ++published.count;
        published.bad += OpcUa_IsBad(status) ? 1 : 0;
        published.changed.notify_all();
    }
    bool waitForCount(int wanted)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(20), [&] { return count >= wanted; });
    }
};

// A session made of single calls.
class PlainSession
{
public:
    PlainSession(const std::string& url, const std::string& trusted)
    {
        EXPECT_EQ(OpcUa_Channel_Create(&channel), OpcUa_Good);
        const OpcUa_PkiConfiguration pki{trusted.c_str(), nullptr, nullptr, nullptr};
        OpcUa_ChannelConnectInfo info{};
        info.Url = url.c_str();
        info.TransportProfileUri = OpcUa_TransportProfile_HttpsBinary;
        info.SecurityMode = OpcUa_MessageSecurityMode_None;
        info.PkiConfiguration = &pki;
        EXPECT_EQ(OpcUa_Channel_Connect(channel, &info, nullptr), OpcUa_Good);
        OpcUa_CreateSessionRequest create;
        OpcUa_CreateSessionRequest_Initialize(&create);
        create.RequestedSessionTimeout = 60'000;
        EXPECT_TRUE(OpcUa_IsGood(UaString(url.c_str()).copyTo(&create.EndpointUrl)));
        OpcUa_CreateSessionResponse created;
        EXPECT_EQ(OpcUa_ClientApi_CreateSession(channel, &create, &created), OpcUa_Good);
        OpcUa_NodeId_Copy(&created.AuthenticationToken, &token);
        OpcUa_CreateSessionRequest_Clear(&create);
        OpcUa_CreateSessionResponse_Clear(&created);
        OpcUa_ActivateSessionRequest activate =
            request<OpcUa_ActivateSessionRequest>(OpcUa_ActivateSessionRequest_EncodeableType);
        OpcUa_ActivateSessionResponse activated;
        EXPECT_EQ(OpcUa_ClientApi_ActivateSession(channel, &activate, &activated), OpcUa_Good);
        OpcUa_ActivateSessionRequest_Clear(&activate);
        OpcUa_ActivateSessionResponse_Clear(&activated);
    }
    ~PlainSession()
    {
        auto close = request<OpcUa_CloseSessionRequest>(OpcUa_CloseSessionRequest_EncodeableType);
        close.DeleteSubscriptions = OpcUa_True;
        OpcUa_CloseSessionResponse closed;
        EXPECT_EQ(OpcUa_ClientApi_CloseSession(channel, &close, &closed), OpcUa_Good);
        OpcUa_CloseSessionRequest_Clear(&close);
        OpcUa_CloseSessionResponse_Clear(&closed);
        OpcUa_Channel_Delete(&channel);
        OpcUa_NodeId_Clear(&token);
    }
    PlainSession(const PlainSession&) = delete;
    PlainSession& operator=(const PlainSession&) = delete;

    // With the session's token; to be cleared.
    template <typename Request>
    Request request(const OpcUa_EncodeableType& type) const
    {
        Request result;
        OpcUa_EncodeableObject_Initialize(&type, &result);
        OpcUa_NodeId_Copy(&token, &result.RequestHeader.AuthenticationToken);
        result.RequestHeader.TimeoutHint = 20'000;
        return result;
    }
    OpcUa_StatusCode readServerTime() const
    {
        auto read = request<OpcUa_ReadRequest>(OpcUa_ReadRequest_EncodeableType);
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(OpcUaId_Server_ServerStatus_CurrentTime).copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        read.NoOfNodesToRead = 1;
        read.NodesToRead = nodes.detach();
        OpcUa_ReadResponse response;
        const OpcUa_StatusCode status = OpcUa_ClientApi_Read(channel, &read, &response);
        OpcUa_ReadRequest_Clear(&read);
        OpcUa_ReadResponse_Clear(&response);
        return status;
    }
    void subscribe(double publishingInterval, OpcUa_UInt32 keepAliveCount) const
    {
        auto create =
            request<OpcUa_CreateSubscriptionRequest>(OpcUa_CreateSubscriptionRequest_EncodeableType);
        create.RequestedPublishingInterval = publishingInterval;
        create.RequestedMaxKeepAliveCount = keepAliveCount;
        create.RequestedLifetimeCount = 1000;
        create.PublishingEnabled = OpcUa_True;
        OpcUa_CreateSubscriptionResponse created;
        EXPECT_EQ(OpcUa_ClientApi_CreateSubscription(channel, &create, &created), OpcUa_Good);
        OpcUa_CreateSubscriptionRequest_Clear(&create);
        OpcUa_CreateSubscriptionResponse_Clear(&created);
    }
    void publish(Published& published) const
    {
        auto publish = request<OpcUa_PublishRequest>(OpcUa_PublishRequest_EncodeableType);
        EXPECT_EQ(OpcUa_ClientApi_BeginPublish(channel, &publish, &Published::completed, &published),
                  OpcUa_Good);
        OpcUa_PublishRequest_Clear(&publish);
    }

    OpcUa_Channel channel = nullptr;
    OpcUa_NodeId token{};
};

TEST_F(HttpsDemoServer, PublishThatWaitsHoldsUpNoRead)
{
    Published published;
    {
        const PlainSession session(front->url(), front->trustedFolder());
        session.subscribe(500, 1000); // nothing is monitored, and the next keep-alive is far away
        for (int n = 0; n < 3; ++n)
            session.publish(published);
        ASSERT_TRUE(published.waitForCount(1)) << "the first keep-alive comes at once";
        const auto start = std::chrono::steady_clock::now();
        for (int n = 0; n < 20; ++n)
            EXPECT_EQ(session.readServerTime(), OpcUa_Good);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
        EXPECT_EQ(published.count, 1) << "the others still wait";
    }
    EXPECT_EQ(published.count, 3) << "each has ended with the session";
    EXPECT_EQ(published.bad, 2);
}

} // namespace
