// Endpoint URLs, the choice of an endpoint and certificate chains.
#include <opcua/opcua.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/endpointselector.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace UaClientSdk;

TEST(EndpointUrl, ReadsWhatTheStackReads)
{
    const EndpointUrl url = parseEndpointUrl("OPC.TCP://[fe80::1%eth0]:48010/path?x");
    EXPECT_TRUE(url.valid);
    EXPECT_EQ(url.scheme, "opc.tcp");
    EXPECT_EQ(url.host, "fe80::1%eth0");
    EXPECT_EQ(url.port, 48010);
    EXPECT_EQ(url.path, "/path?x");
    EXPECT_EQ(UaSession::getPortFromUrl(UaString("https://host/")), 4840);
    for (const std::string_view none : {std::string_view(), std::string_view("opc.tcp://user@host:4841/x")}) {
        const EndpointUrl refused = parseEndpointUrl(none);
        EXPECT_FALSE(refused.valid);
        EXPECT_EQ(refused.scheme + refused.host + refused.path, "");
        EXPECT_EQ(refused.port, 0);
    }
}

TEST(EndpointUrl, SchemesCompareWithoutCase)
{
    for (const char* const url : {"opc.tcp://box", "OPC.TCP://box", "Opc.Tcp://box"}) {
        EXPECT_STREQ(transportProfileOf(url), OpcUa_TransportProfile_UaTcp) << url;
        EXPECT_FALSE(isHttpsUrl(url)) << url;
    }
    for (const char* const url : {"https://box", "HTTPS://box"}) {
        EXPECT_STREQ(transportProfileOf(url), OpcUa_TransportProfile_HttpsBinary) << url;
        EXPECT_TRUE(isHttpsUrl(url)) << url;
    }
    for (const char* const url : {"", "opc.tcp", "ftp://box", "OPC.UDP://box", "opc.tcpx://box", "httpsx:"})
        EXPECT_EQ(transportProfileOf(url), nullptr) << url;
}

UaEndpointDescriptions endpointsOf(const std::vector<const char*>& urls)
{
    UaEndpointDescriptions endpoints(static_cast<OpcUa_UInt32>(urls.size()));
    for (OpcUa_UInt32 i = 0; i < endpoints.length(); ++i) {
        EXPECT_EQ(OpcUa_String_Assign(&endpoints[i].EndpointUrl, urls[i], -1), OpcUa_Good);
        EXPECT_EQ(OpcUa_String_Assign(&endpoints[i].SecurityPolicyUri, OpcUa_SecurityPolicy_None, -1),
                  OpcUa_Good);
        endpoints[i].SecurityMode = OpcUa_MessageSecurityMode_None;
    }
    return endpoints;
}

TEST(EndpointSelector, PrefersTheUrlThenThePortThenTheScheme)
{
    const UaString policy(OpcUa_SecurityPolicy_None);
    const UaString url("opc.tcp://box:4840");
    const auto chosen = [&](UaEndpointDescriptions& endpoints) {
        const auto* endpoint = selectEndpoint(endpoints, url, policy, OpcUa_MessageSecurityMode_None);
        return endpoint ? static_cast<int>(endpoint - endpoints.rawData()) : -1;
    };
    auto exact = endpointsOf({"https://box:4840", "opc.tcp://other:4840", "OPC.TCP://BOX:4840/Path"});
    EXPECT_EQ(chosen(exact), 2);
    auto port = endpointsOf({"opc.tcp://box2:4841", "opc.tcp://10.0.0.1:4840"});
    EXPECT_EQ(chosen(port), 1);
    auto scheme = endpointsOf({"https://box:4840", "opc.tcp://box2:4841"});
    EXPECT_EQ(chosen(scheme), 1);
    auto none = endpointsOf({"https://box:4840", "nonsense", ""});
    EXPECT_EQ(chosen(none), -1);
    exact[2].SecurityMode = OpcUa_MessageSecurityMode_Sign;
    EXPECT_EQ(chosen(exact), 1);
}

TEST(CertificateChain, IsCutIntoItsCertificatesAndRefusedWhenItIsDamaged)
{
    const UaPkiRsaKeyPair key(2048);
    UaPkiCertificateInfo info;
    info.URI = UaString("urn:chain:test");
    info.validTime = 3600;
    UaPkiIdentity name;
    name.commonName = UaString("chain");
    const UaPkiCertificate certificate(info, name, key);
    const std::string one(certificate.toByteStringDER().view());
    ASSERT_FALSE(one.empty());

    const auto split = [](const std::string& bytes, UaByteStringArray& out) {
        const UaByteString chain(static_cast<OpcUa_Int32>(bytes.size()),
                                 reinterpret_cast<const OpcUa_Byte*>(bytes.data()));
        return SessionSecurityInfo::splitCertificateChain(chain, out).statusCode();
    };
    const OpcUa_StatusCode damaged = OpcUa_BadDecodingError;
    UaByteStringArray out;
    ASSERT_EQ(split(one + one, out), static_cast<OpcUa_StatusCode>(OpcUa_Good));
    ASSERT_EQ(out.length(), 2u);
    EXPECT_EQ(UaByteString(out[1]).view(), one);
    std::string eleven;
    for (int i = 0; i < 11; ++i)
        eleven += one;
    for (const std::string& bytes : {std::string(), one + "x", one.substr(0, one.size() - 1), eleven,
                                     std::string("\x30\x84\xFF\xFF\xFF\xFF", 6)}) {
        EXPECT_EQ(split(bytes, out), damaged) << bytes.size();
        EXPECT_TRUE(out.isEmpty());
    }
}

TEST(Discovery, UnknownSchemeNeverReachesTheNetwork)
{
    UaDiscovery discovery;
    ServiceSettings settings;
    UaEndpointDescriptions endpoints(3u);
    EXPECT_EQ(discovery.getEndpoints(settings, UaString("ftp://host"), ClientSecurityInfo(), endpoints)
                  .statusCode(),
              0x80AB0000u);
    EXPECT_TRUE(endpoints.isEmpty());
}

// A port that takes connections and says nothing.
class SilentPort
{
public:
    SilentPort() : m_socket(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(m_socket, any, length), 0);
        EXPECT_EQ(listen(m_socket, 1), 0);
        EXPECT_EQ(getsockname(m_socket, any, &length), 0);
        m_port = ntohs(address.sin_port);
    }
    ~SilentPort()
    {
        close(m_peer);
        close(m_socket);
    }
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;
    [[nodiscard]] std::string url() const { return "opc.tcp://127.0.0.1:" + std::to_string(m_port); }
    // Whether somebody connects within the limit.
    [[nodiscard]] bool waitForPeer()
    {
        pollfd waiting{m_socket, POLLIN, 0};
        if (poll(&waiting, 1, 10000) == 1)
            m_peer = accept(m_socket, nullptr, nullptr);
        return m_peer >= 0;
    }

private:
    const int m_socket;
    int m_peer = -1;
    int m_port = 0;
};

TEST(Discovery, CancelDoesNotWaitForASilentServer)
{
    ASSERT_EQ(UaPlatformLayer::init(), 0);
    {
        SilentPort port;
        UaDiscovery discovery;
        ServiceSettings settings;
        settings.callTimeout = 60000;
        UaEndpointDescriptions endpoints;
        UaStatus status;
        std::thread caller([&] {
            status = discovery.getEndpoints(settings, UaString(port.url().c_str()), ClientSecurityInfo(),
                                            endpoints);
        });
        EXPECT_TRUE(port.waitForPeer());
        const auto begin = std::chrono::steady_clock::now();
        discovery.cancel();
        caller.join();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_EQ(status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadRequestCancelledByClient));
    }
    UaPlatformLayer::cleanup();
}

} // namespace
