// The session layer against a server that is not ours.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace UaClientSdk;

constexpr OpcUa_UInt16 demoNs = 2;
constexpr OpcUa_UInt16 structureNs = 3;
constexpr OpcUa_UInt16 manyNs = 4;

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

class DemoServerTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        url = UaString(demoserver::endpointUrl().c_str());
        ASSERT_FALSE(url.isEmpty()) << "the demo server has not been started";
        SessionConnectInfo info;
        info.sessionName = UaString("integration test");
        info.maxOperationsPerServiceCall = 1000;
        const UaStatus status = session.connect(url, info, SessionSecurityInfo(), &callback);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    }

    void TearDown() override
    {
        if (session.isConnected())
            EXPECT_TRUE(session.disconnect(settings, true).isGood());
    }

    UaDataValue readValue(const UaNodeId& node)
    {
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        const UaStatus status =
            session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        return values.isEmpty() ? UaDataValue() : UaDataValue(values[0]);
    }

    OpcUa_StatusCode writeValue(const UaNodeId& node, const UaVariant& value)
    {
        UaWriteValues nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(node.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        EXPECT_TRUE(OpcUa_IsGood(value.copyTo(&nodes[0].Value.Value)));
        UaStatusCodeArray results;
        const UaStatus status = session.write(settings, nodes, results, diagnostics);
        return status.isBad() ? status.statusCode() : results[0];
    }

    static UaNodeId demoNode(const char* id) { return UaNodeId(UaString(id), demoNs); }

    UaString url;
    ServiceSettings settings;
    UaDiagnosticInfos diagnostics;
    QuietCallback callback;
    UaSession session;
};

TEST_F(DemoServerTest, DiscoveryListsTheEndpointsOfEachPolicy)
{
    UaDiscovery discovery;
    UaEndpointDescriptions endpoints;
    ASSERT_TRUE(discovery.getEndpoints(settings, url, ClientSecurityInfo(), endpoints).isGood());
    std::set<std::string> policies;
    for (const OpcUa_EndpointDescription& endpoint : endpoints)
        policies.insert(UaString(endpoint.SecurityPolicyUri).toStdString());
    EXPECT_EQ(policies.count(OpcUa_SecurityPolicy_None), 1u);
    EXPECT_EQ(policies.count(OpcUa_SecurityPolicy_Basic256Sha256), 1u);
    UaApplicationDescriptions servers;
    ASSERT_TRUE(discovery.findServers(settings, url, ClientSecurityInfo(), servers).isGood());
    EXPECT_GE(servers.length(), 1u);
}

TEST_F(DemoServerTest, ConnectReadsTheNamespaceTable)
{
    const UaStringArray table = session.getNamespaceTable();
    ASSERT_GT(table.length(), static_cast<OpcUa_UInt32>(manyNs));
    EXPECT_EQ(UaString(table[demoNs]), UaString("urn:korvanda:tavelin:demo"));
    EXPECT_GT(session.revisedSessionTimeout(), 0.0);
    EXPECT_GT(session.revisedSecureChannelLifetime(), 0u);
}

TEST_F(DemoServerTest, WrittenValuesOfEachShapeComeBack)
{
    const std::pair<const char*, UaVariant> scalars[] = {
        {"Scalar.Boolean", UaVariant(true)},
        {"Scalar.Byte", UaVariant(static_cast<OpcUa_Byte>(200))},
        {"Scalar.Int32", UaVariant(static_cast<OpcUa_Int32>(-123456))},
        {"Scalar.UInt64", UaVariant(static_cast<OpcUa_UInt64>(1) << 52)},
        {"Scalar.Double", UaVariant(2.5e-7)},
        {"Scalar.String", UaVariant("Größe µm²")},
        {"Scalar.Guid", UaVariant(UaGuid::fromString("01234567-89ab-cdef-0123-456789abcdef"))},
        {"Scalar.NodeId", UaVariant(UaNodeId(UaString("x;y"), 3))},
    };
    for (const auto& [id, value] : scalars) {
        const UaNodeId node = demoNode(id);
        const UaVariant before(readValue(node).value());
        ASSERT_EQ(writeValue(node, value), static_cast<OpcUa_StatusCode>(OpcUa_Good)) << id;
        EXPECT_EQ(UaVariant(readValue(node).value()), value) << id;
        EXPECT_EQ(writeValue(node, before), static_cast<OpcUa_StatusCode>(OpcUa_Good)) << id;
    }
    for (const char* id : {"Array.Int32", "Array.String", "Matrix.Double", "Cube.Int16"}) {
        const UaVariant value(readValue(demoNode(id)).value());
        ASSERT_FALSE(value.isEmpty()) << id;
        EXPECT_EQ(writeValue(demoNode(id), value), static_cast<OpcUa_StatusCode>(OpcUa_Good)) << id;
        EXPECT_EQ(UaVariant(readValue(demoNode(id)).value()), value) << id;
    }
    EXPECT_TRUE(OpcUa_IsBad(writeValue(demoNode("Access.ReadOnly"), UaVariant(1.0))));
}

TEST_F(DemoServerTest, TenThousandChildrenComeThroughContinuationPoints)
{
    BrowseContext context;
    context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
    context.maxReferencesToReturn = 900;
    UaByteString point;
    UaReferenceDescriptions references;
    std::set<UaNodeId> children;
    UaStatus status =
        session.browse(settings, UaNodeId(UaString("Many"), manyNs), context, point, references);
    for (;;) {
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
        for (const OpcUa_ReferenceDescription& reference : references)
            children.insert(UaNodeId(reference.NodeId.NodeId));
        if (point.isEmpty())
            break;
        status = session.browseNext(settings, false, point, references);
    }
    EXPECT_EQ(children.size(), 10000u);
    EXPECT_EQ(children.count(UaNodeId(109999, manyNs)), 1u);
}

TEST_F(DemoServerTest, ReadBeyondTheServersLimitIsSplit)
{
    UaReadValueIds nodes(2500u);
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(100000 + i, manyNs).copyTo(&nodes[i].NodeId)));
        nodes[i].AttributeId = OpcUa_Attributes_NodeId;
    }
    UaDataValues values;
    ASSERT_TRUE(
        session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics).isGood());
    ASSERT_EQ(values.length(), nodes.length());
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
        ASSERT_EQ(UaVariant(values[i].Value).toNodeId(), UaNodeId(nodes[i].NodeId));
}

TEST_F(DemoServerTest, StructuresDecodeByTheDefinitionsOfTheServer)
{
    const UaNodeId sample(UaString("Structure.SampleFull"), structureNs);
    UaExtensionObject object = UaVariant(readValue(sample).value()).toExtensionObject();
    const UaStructureDefinition definition = session.structureDefinition(object.encodingId());
    ASSERT_FALSE(definition.isNull());
    EXPECT_TRUE(definition.hasOptionalFields());
    UaGenericStructureValue value;
    ASSERT_TRUE(value.decode(object, definition, &session).isGood());
    UaExtensionObject encoded;
    ASSERT_TRUE(value.encode(encoded).isGood());
    EXPECT_EQ(encoded, object);

    const UaNodeId measurement(UaString("Structure.MeasurementText"), structureNs);
    object = UaVariant(readValue(measurement).value()).toExtensionObject();
    EXPECT_TRUE(session.structureDefinition(object.encodingId()).isUnion());
    EXPECT_FALSE(session.enumDefinition(UaNodeId(3001, structureNs)).isNull());
}

TEST_F(DemoServerTest, PathsAreTranslated)
{
    UaBrowsePaths paths(1u);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(OpcUaId_Server).copyTo(&paths[0].StartingNode)));
    UaRelativePathElements elements(1u);
    elements[0].ReferenceTypeId.Identifier.Numeric = OpcUaId_HierarchicalReferences;
    elements[0].IncludeSubtypes = OpcUa_True;
    OpcUa_String_Assign(&elements[0].TargetName.Name, "ServerStatus", -1);
    elements.detach(&paths[0].RelativePath.NoOfElements, &paths[0].RelativePath.Elements);
    UaBrowsePathResults results;
    ASSERT_TRUE(session.translateBrowsePathsToNodeIds(settings, paths, results, diagnostics).isGood());
    ASSERT_EQ(results[0].NoOfTargets, 1);
    EXPECT_EQ(UaNodeId(results[0].Targets[0].TargetId.NodeId), UaNodeId(OpcUaId_Server_ServerStatus));
}

TEST_F(DemoServerTest, CallsOfManyThreadsShareOneChannel)
{
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i) {
                ServiceSettings own;
                UaReadValueIds nodes(1u);
                EXPECT_TRUE(OpcUa_IsGood(demoNode("Dynamic.Counter").copyTo(&nodes[0].NodeId)));
                nodes[0].AttributeId = OpcUa_Attributes_Value;
                UaDataValues values;
                UaDiagnosticInfos infos;
                good += session.read(own, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, infos).isGood()
                            ? 1
                            : 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 400);
}

} // namespace
