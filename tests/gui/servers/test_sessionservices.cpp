#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/servers/servernodefixture.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uasession.h>

#include <QString>

#include <memory>
#include <string>
#include <thread>

namespace {
UaStatus readOne(QlumSessionServices& services, const char* purpose = "")
{
    UaReadValueIds nodes(1);
    nodes[0].NodeId.Identifier.Numeric = 7;
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaClientSdk::ServiceSettings settings;
    settings.purpose = UaString(purpose);
    UaDataValues values;
    return services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
}

// Forbids one purpose.
class Guard : public UaClientSdk::ServiceGuard
{
public:
    UaStatus mayCall(const UaClientSdk::ServiceCall& call) override
    {
        return UaStatus(call.purpose.toStdString() == "spying" ? OpcUa_BadUserAccessDenied : OpcUa_Good);
    }
};

TEST_F(ServerNode, ItsServicesAreKnownByItsIdAndNameTheirPurpose)
{
    make();
    const auto services = qlumApplicationServices()(node->serverId());
    ASSERT_NE(services, nullptr);
    EXPECT_EQ(readOne(*services).statusCode(), OpcUa_BadConnectionClosed);
    ASSERT_TRUE(node->connectServer());
    node->session()->setServiceGuard(std::make_shared<Guard>());
    EXPECT_TRUE(readOne(*services, "reading").isGood());
    EXPECT_EQ(readOne(*services, "spying").statusCode(), OpcUa_BadUserAccessDenied);
    ASSERT_NE(services->types(), nullptr);
    const UaNodeId type(7);
    const QString name = node->typeName(&type, false);
    EXPECT_EQ(services->types()->knownTypeName(type), name) << "there is one cache for all";
}

TEST_F(ServerNode, NameWithNamespaceWasTheInverseName)
{
    make();
    FakeStack::instance().on(OpcUa_ReadRequest_EncodeableType, [](const void* request, void* response) {
        const auto& asked = *static_cast<const OpcUa_ReadRequest*>(request);
        UaDataValues values(static_cast<OpcUa_UInt32>(asked.NoOfNodesToRead));
        for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
            UaVariant value(UaLocalizedText(UaString("en"), UaString("Contains")));
            if (asked.NodesToRead[i].AttributeId == OpcUa_Attributes_InverseName)
                value = UaVariant(UaLocalizedText(UaString("en"), UaString("IsContainedIn")));
            else if (asked.NodesToRead[i].AttributeId == OpcUa_Attributes_NodeClass)
                value = UaVariant(static_cast<OpcUa_Int32>(OpcUa_NodeClass_ReferenceType));
            EXPECT_TRUE(OpcUa_IsGood(value.copyTo(&values[i].Value)));
        }
        auto& answer = *static_cast<OpcUa_ReadResponse*>(response);
        values.detach(&answer.NoOfResults, &answer.Results);
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    });
    ASSERT_TRUE(node->connectServer());
    const UaNodeId own(7, 2);
    const UaNodeId standard(8);
    EXPECT_EQ(node->typeName(&own, false), "Contains");
    EXPECT_EQ(node->typeName(&own, true), "2:Contains");
    EXPECT_EQ(node->typeName(&standard, true), "Contains");
    EXPECT_EQ(qlumApplicationServices()(node->serverId())->types()->typeName(own, true), "IsContainedIn");
}

TEST_F(ServerNode, WhoeverHoldsItsServicesOutlivesItsRemoval)
{
    make();
    ASSERT_TRUE(node->connectServer());
    const unsigned int id = node->serverId();
    auto services = qlumApplicationServices()(id);
    ASSERT_NE(services, nullptr);
    const std::weak_ptr session = services->session();
    FakeStack& stack = FakeStack::instance();
    stack.on(OpcUa_ReadRequest_EncodeableType, [&stack](const void*, void*) { return stack.hang(); });
    UaStatus ended;
    std::thread job([&] { ended = readOne(*services); });
    EXPECT_TRUE(stack.waitForHang());
    node.reset();
    job.join();
    EXPECT_EQ(ended.statusCode(), OpcUa_BadConnectionClosed);
    EXPECT_FALSE(services->isConnected());
    EXPECT_EQ(readOne(*services).statusCode(), OpcUa_BadConnectionClosed);
    EXPECT_EQ(services->types()->typeName(UaNodeId(8)), QString());
    EXPECT_EQ(qlumApplicationServices()(id), nullptr);
    services.reset();
    EXPECT_TRUE(session.expired());
}
} // namespace
