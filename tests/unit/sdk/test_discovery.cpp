// Discovery over the scripted stack: servers on the network, and a directory asked by a method.
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>

#include <gmock/gmock.h>

#include <chrono>
#include <sstream>
#include <string>
#include <thread>

namespace {

using testing::ElementsAre;
using UaClientSdk::ServiceSettings;

constexpr OpcUa_DateTime resetTime = 133000000000000000;

void fill(OpcUa_ServerOnNetwork& server, OpcUa_UInt32 id, const char* name)
{
    server.RecordId = id;
    EXPECT_EQ(OpcUa_String_Assign(&server.ServerName, name, -1), OpcUa_Good);
}

// What a directory answers: a time and servers.
void answerQuery(OpcUa_CallResponse& response, OpcUa_Int32 outputs)
{
    response.NoOfResults = 1;
    response.Results =
        static_cast<OpcUa_CallMethodResult*>(OpcUa_Memory_AllocArray(1, sizeof(OpcUa_CallMethodResult)));
    OpcUa_CallMethodResult& result = response.Results[0];
    OpcUa_EncodeableObject_Initialize(&OpcUa_CallMethodResult_EncodeableType, &result);
    UaArray<OpcUa_ExtensionObject> servers(1u);
    auto* server = static_cast<OpcUa_ServerOnNetwork*>(
        OpcUa_EncodeableObject_Create(&OpcUa_ServerOnNetwork_EncodeableType));
    fill(*server, 11, "press");
    OpcUa_ExtensionObject_AttachEncodeable(&servers[0], &OpcUa_ServerOnNetwork_EncodeableType, server);
    UaVariant list;
    list.setExtensionObjectArray(servers);
    UaVariantArray arguments;
    EXPECT_TRUE(arguments.append(*UaVariant(UaDateTime(resetTime)).get()));
    EXPECT_TRUE(arguments.append(*list.get()));
    EXPECT_TRUE(arguments.resize(static_cast<OpcUa_UInt32>(outputs)));
    arguments.detach(&result.NoOfOutputArguments, &result.OutputArguments);
}

class DiscoveryTest : public SessionTest
{
protected:
    void answerCallsWith(OpcUa_Int32 outputs)
    {
        stack.on(
            OpcUa_CallRequest_EncodeableType,
            [this, outputs](const void* request, void* response) {
                const auto& call = static_cast<const OpcUa_CallRequest*>(request)->MethodsToCall[0];
                std::ostringstream text;
                text << UaNodeId(call.ObjectId).toXmlString().toUtf8() << ' '
                     << UaNodeId(call.MethodId).toXmlString().toUtf8();
                for (OpcUa_Int32 i = 0; i < call.NoOfInputArguments; ++i)
                    text << ' ' << UaVariant(call.InputArguments[i]).toString().toUtf8();
                asked = text.str();
                answerQuery(*static_cast<OpcUa_CallResponse*>(response), outputs);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }

    UaStatus query(UaClientSdk::UaSession* on)
    {
        UaStringArray capabilities;
        EXPECT_TRUE(capabilities.append(*UaString("DA").get()));
        return discovery.queryDirectory(settings, on, 3, 40, "name", "uri", "product", capabilities, reset,
                                        servers);
    }

    UaClientSdk::UaDiscovery discovery;
    ServiceSettings settings;
    UaDateTime reset;
    UaServerOnNetworks servers{2u}; // so that what is left of them shows
    std::string asked;
};

TEST_F(DiscoveryTest, ServersOnTheNetworkAreAskedForOverAChannelOfItsOwn)
{
    std::string request;
    stack.on(OpcUa_FindServersOnNetworkRequest_EncodeableType, [&](const void* data, void* answer) {
        const auto& asking = *static_cast<const OpcUa_FindServersOnNetworkRequest*>(data);
        std::ostringstream text;
        text << asking.StartingRecordId << ' ' << asking.MaxRecordsToReturn << ' '
             << UaString(asking.ServerCapabilityFilter[0]).toUtf8();
        request = text.str();
        auto& response = *static_cast<OpcUa_FindServersOnNetworkResponse*>(answer);
        UaServerOnNetworks found(1u);
        fill(found[0], 5, "mill");
        found.detach(&response.NoOfServers, &response.Servers);
        response.LastCounterResetTime = resetTime;
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    UaStringArray filter;
    EXPECT_TRUE(filter.append(*UaString("HD").get()));
    const UaString url("opc.tcp://lds:4840");
    ASSERT_TRUE(discovery
                    .findServersOnNetwork(settings, url, UaClientSdk::ClientSecurityInfo(), 7, 30, filter,
                                          reset, servers)
                    .isGood());
    EXPECT_EQ(request, "7 30 HD");
    ASSERT_EQ(servers.length(), 1u);
    EXPECT_EQ(servers[0].RecordId, 5u);
    EXPECT_EQ(reset, UaDateTime(resetTime));
    EXPECT_THAT(stack.journal(), ElementsAre("Connect", "FindServersOnNetworkRequest", "Disconnect"));

    stack.setConnectResult(OpcUa_BadConnectionRejected);
    EXPECT_TRUE(discovery.findServersOnNetwork(settings, url, UaClientSdk::ClientSecurityInfo(), 0, 0, reset,
                                               servers) == OpcUa_BadConnectionRejected);
    EXPECT_TRUE(servers.isEmpty());
    EXPECT_EQ(reset, UaDateTime());
}

TEST_F(DiscoveryTest, DirectoryIsFoundByItsNamespace)
{
    answerCallsWith(2);
    EXPECT_TRUE(query(nullptr) == OpcUa_BadInvalidArgument);
    EXPECT_TRUE(query(&session) == OpcUa_BadConnectionClosed);
    EXPECT_TRUE(servers.isEmpty());
    ASSERT_TRUE(connect().isGood());
    ASSERT_TRUE(query(&session).isGood());
    EXPECT_EQ(asked, "i=141 i=151 3 40 name uri product {DA}");
    EXPECT_TRUE(disconnect().isGood());
    stack.setNamespaces({"http://opcfoundation.org/UA/", "urn:server", "http://opcfoundation.org/UA/GDS/"});
    ASSERT_TRUE(connect().isGood());
    ASSERT_TRUE(query(&session).isGood());
    EXPECT_EQ(asked.substr(0, 22), "ns=2;i=141 ns=2;i=151 ");
    ASSERT_EQ(servers.length(), 1u);
    EXPECT_EQ(servers[0].RecordId, 11u);
    EXPECT_EQ(reset, UaDateTime(resetTime));
    answerCallsWith(1);
    EXPECT_TRUE(query(&session).isBad());
    EXPECT_TRUE(servers.isEmpty());
    stack.failNext(OpcUa_CallRequest_EncodeableType, {OpcUa_BadMethodInvalid});
    EXPECT_TRUE(query(&session) == OpcUa_BadMethodInvalid);
}

TEST_F(DiscoveryTest, DirectoryByUrlClosesWhatItOpened)
{
    answerCallsWith(2);
    const UaString url("opc.tcp://localhost:4840");
    ASSERT_TRUE(discovery.queryDirectory(settings, url, 0, 10, reset, servers).isGood());
    EXPECT_EQ(servers.length(), 1u);
    EXPECT_EQ(asked, "i=141 i=151 0 10    {}");
    EXPECT_EQ(stack.calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
    EXPECT_EQ(stack.disconnects(), 1);
    stack.setConnectResult(OpcUa_BadTimeout);
    EXPECT_TRUE(discovery.queryDirectory(settings, url, 0, 10, reset, servers) == OpcUa_BadTimeout);
    EXPECT_TRUE(servers.isEmpty());
}

// Cancels a call from another thread, as soon as the stack has heard of it.
TEST_F(DiscoveryTest, CancelEndsWhatAServerDoesNotAnswer)
{
    const UaString url("opc.tcp://silent:4840");
    const auto hang = [this](const void*, void*) { return stack.hang(); };
    stack.on(OpcUa_FindServersOnNetworkRequest_EncodeableType, hang);
    stack.on(OpcUa_CreateSessionRequest_EncodeableType, hang);
    const auto ask = [&](UaClientSdk::UaDiscovery& client, bool isDirectory) {
        return isDirectory ? client.queryDirectory(settings, url, 0, 10, reset, servers)
                           : client.findServersOnNetwork(settings, url, UaClientSdk::ClientSecurityInfo(), 0,
                                                         0, reset, servers);
    };
    for (const bool isDirectory : {false, true}) {
        for (const bool connects : {true, false}) {
            stack.setConnectHangs(!connects);
            UaClientSdk::UaDiscovery client;
            const int before = stack.connects();
            UaStatus status;
            const auto begin = std::chrono::steady_clock::now();
            std::thread caller([&] { status = ask(client, isDirectory); });
            while (connects ? !stack.waitForHang() : stack.connects() == before)
                std::this_thread::yield();
            client.cancel();
            caller.join();
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
            EXPECT_TRUE(status.isBad());
            if (!isDirectory)
                EXPECT_TRUE(status == OpcUa_BadRequestCancelledByClient);
            EXPECT_TRUE(ask(client, isDirectory) == OpcUa_BadRequestCancelledByClient) << "for good";
            EXPECT_EQ(stack.connects(), before + 1);
        }
    }
}

} // namespace
