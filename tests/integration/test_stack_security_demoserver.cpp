// Secured channels of the stack against a server that is not ours.
#include <tests/support/demoserverinfo.h>
#include <tests/support/testcertificates.h>

#include <opcua/opcua.h>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>

namespace {

namespace certificates = testcertificates;
using certificates::Der;

OpcUa_ByteString viewOf(const Der& bytes)
{
    return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
}

struct Endpoint
{
    std::string policy;
    OpcUa_MessageSecurityMode mode;
    Der certificate;
};

struct Events
{
    std::atomic<int> renewed{0};
    std::atomic<int> findings{0};
    OpcUa_StatusCode answer = OpcUa_Bad;
};

OpcUa_StatusCode onEvent(OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode, void*, void* context)
{
    auto& events = *static_cast<Events*>(context);
    events.renewed += event == OpcUa_Channel_Event_Renewed;
    events.findings += event == OpcUa_Channel_Event_VerifyCertificate;
    return events.answer;
}

class StackSecurityAgainstDemoServer : public testing::Test
{
protected:
    void SetUp() override
    {
        m_url = demoserver::endpointUrl();
        ASSERT_FALSE(m_url.empty());
        ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
        ASSERT_EQ(OpcUa_Channel_Create(&m_channel), OpcUa_Good);
        certificates::Recipe recipe;
        recipe.name = "Stack test";
        recipe.pair = certificates::key(2048);
        m_certificate = certificates::make(recipe);
        m_key = certificates::privateDer(recipe.pair);
    }
    void TearDown() override
    {
        OpcUa_Channel_Delete(&m_channel);
        OpcUa_ProxyStub_Clear();
    }

    OpcUa_StatusCode connect(const Endpoint& endpoint, OpcUa_UInt32 lifetime = 3'600'000,
                             const OpcUa_PkiConfiguration* pki = nullptr)
    {
        const OpcUa_ByteString views[] = {viewOf(m_certificate), viewOf(m_key), viewOf(endpoint.certificate)};
        OpcUa_ChannelConnectInfo info{};
        info.Url = m_url.c_str();
        info.SecurityPolicyUri = endpoint.policy.c_str();
        info.SecurityMode = endpoint.mode;
        info.ClientCertificate = &views[0];
        info.ClientPrivateKey = &views[1];
        info.ServerCertificate = &views[2];
        info.PkiConfiguration = pki;
        info.RequestedLifetime = lifetime;
        info.ConnectTimeout = 10'000;
        info.Callback = onEvent;
        info.CallbackContext = &m_events;
        return OpcUa_Channel_Connect(m_channel, &info, nullptr);
    }

    // What the server offers, asked over the channel that is open.
    std::vector<Endpoint> endpoints()
    {
        OpcUa_GetEndpointsRequest request;
        OpcUa_GetEndpointsRequest_Initialize(&request);
        OpcUa_GetEndpointsResponse response;
        EXPECT_EQ(OpcUa_String_Assign(&request.EndpointUrl, m_url.c_str(), -1), OpcUa_Good);
        EXPECT_EQ(OpcUa_ClientApi_GetEndpoints(m_channel, &request, &response), OpcUa_Good);
        std::vector<Endpoint> list;
        for (OpcUa_Int32 n = 0; n < response.NoOfEndpoints; ++n) {
            const OpcUa_EndpointDescription& one = response.Endpoints[n];
            list.push_back(
                {one.SecurityPolicyUri.Data, one.SecurityMode,
                 Der(one.ServerCertificate.Data, one.ServerCertificate.Data + one.ServerCertificate.Length)});
        }
        OpcUa_GetEndpointsResponse_Clear(&response);
        OpcUa_GetEndpointsRequest_Clear(&request);
        return list;
    }
    std::vector<Endpoint> securedEndpoints()
    {
        EXPECT_EQ(connect({OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None, {}}), OpcUa_Good);
        auto list = endpoints();
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
        std::erase_if(list, [](const Endpoint& one) { return one.mode == OpcUa_MessageSecurityMode_None; });
        return list;
    }

    std::string m_url;
    OpcUa_Channel m_channel = nullptr;
    Der m_certificate;
    Der m_key;
    Events m_events;
};

TEST_F(StackSecurityAgainstDemoServer, SpeaksEveryPolicyThatItOffersThroughARenewal)
{
    const auto offered = securedEndpoints();
    EXPECT_GE(offered.size(), 6u); // three policies with two modes each
    for (const Endpoint& endpoint : offered) {
        m_events.renewed = 0;
        ASSERT_EQ(connect(endpoint, 1500), OpcUa_Good) << endpoint.policy << " " << endpoint.mode;
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (m_events.renewed < 1 && std::chrono::steady_clock::now() < limit)
            ASSERT_GE(endpoints().size(), offered.size()) << endpoint.policy << " " << endpoint.mode;
        EXPECT_GE(m_events.renewed, 1) << endpoint.policy << " " << endpoint.mode;
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    }
}

TEST_F(StackSecurityAgainstDemoServer, OpensNoChannelToAnotherCertificate)
{
    const auto offered = securedEndpoints();
    ASSERT_FALSE(offered.empty());
    Endpoint endpoint = offered.front();
    certificates::Recipe impostor;
    impostor.name = "Impostor";
    impostor.pair = certificates::key(2048, "impostor");
    endpoint.certificate = certificates::make(impostor);
    EXPECT_TRUE(OpcUa_IsBad(connect(endpoint)));
    endpoint.certificate.clear();
    EXPECT_EQ(connect(endpoint), OpcUa_BadCertificateInvalid);
}

TEST_F(StackSecurityAgainstDemoServer, AsksAboutACertificateThatIsNotTrusted)
{
    const auto offered = securedEndpoints();
    ASSERT_FALSE(offered.empty());
    const auto folder =
        std::filesystem::temp_directory_path() / ("tavelin-channel-pki-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string trusted = folder;
    const OpcUa_PkiConfiguration pki{trusted.c_str(), nullptr, nullptr, nullptr};
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_BadCertificateUntrusted);
    EXPECT_GE(m_events.findings, 1);
    m_events.answer = OpcUa_Good;
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_Good);
    EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    m_events.answer = OpcUa_Bad;
    const Der& certificate = offered.front().certificate;
    std::ofstream(folder / "server.der", std::ios::binary)
        .write(reinterpret_cast<const char*>(certificate.data()),
               static_cast<std::streamsize>(certificate.size()));
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_Good);
    std::filesystem::remove_all(folder);
}

} // namespace
