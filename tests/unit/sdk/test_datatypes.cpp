// Data type definitions loaded from a server's address space.
#include <opcua/opcua_attributes.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>

#include <map>
#include <span>
#include <string>
#include <vector>

namespace {

using UaClientSdk::UaClient;

constexpr OpcUa_UInt16 ns = 2;

// A server with a structure derived from Structure, an enumeration, and a subtype of Double.
struct TypeServer
{
    std::multimap<UaNodeId, UaNodeId> subtypes{
        {UaNodeId(OpcUaId_BaseDataType), UaNodeId(OpcUaId_Structure)},
        {UaNodeId(OpcUaId_BaseDataType), UaNodeId(OpcUaId_Enumeration)},
        {UaNodeId(OpcUaId_BaseDataType), UaNodeId(OpcUaId_Double)},
        {UaNodeId(OpcUaId_Structure), UaNodeId(3001, ns)},
        {UaNodeId(OpcUaId_Enumeration), UaNodeId(3002, ns)},
        {UaNodeId(OpcUaId_Double), UaNodeId(3003, ns)},
        {UaNodeId(3003, ns), UaNodeId(OpcUaId_BaseDataType)}, // a loop must not be walked for ever
    };

    OpcUa_StatusCode browse(const OpcUa_BrowseRequest& request, OpcUa_BrowseResponse& response) const
    {
        UaBrowseResults results(static_cast<OpcUa_UInt32>(request.NoOfNodesToBrowse));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const auto [first, last] = subtypes.equal_range(UaNodeId(request.NodesToBrowse[i].NodeId));
            UaReferenceDescriptions references;
            for (auto it = first; it != last; ++it) {
                EXPECT_TRUE(references.resize(references.length() + 1));
                OpcUa_ReferenceDescription& reference = references[references.length() - 1];
                EXPECT_TRUE(OpcUa_IsGood(it->second.copyTo(&reference.NodeId.NodeId)));
                EXPECT_EQ(OpcUa_String_Assign(
                              &reference.BrowseName.Name,
                              ("Type" + std::to_string(it->second.identifierNumeric())).c_str(), -1),
                          OpcUa_Good);
            }
            references.detach(&results[i].NoOfReferences, &results[i].References);
        }
        results.detach(&response.NoOfResults, &response.Results);
        return OpcUa_Good;
    }

    static void put(OpcUa_DataValue& value, const OpcUa_EncodeableType& type, void* object)
    {
        value.Value.Datatype = OpcUaType_ExtensionObject;
        value.Value.Value.ExtensionObject =
            static_cast<OpcUa_ExtensionObject*>(OpcUa_Memory_Alloc(sizeof(OpcUa_ExtensionObject)));
        OpcUa_ExtensionObject_Initialize(value.Value.Value.ExtensionObject);
        OpcUa_ExtensionObject_AttachEncodeable(value.Value.Value.ExtensionObject, &type, object);
    }

    static void putStructure(OpcUa_DataValue& value)
    {
        auto* definition = static_cast<OpcUa_StructureDefinition*>(
            OpcUa_EncodeableObject_Create(&OpcUa_StructureDefinition_EncodeableType));
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(3101, ns).copyTo(&definition->DefaultEncodingId)));
        UaStructureFieldRecords fields(2u);
        EXPECT_EQ(OpcUa_String_Assign(&fields[0].Name, "Pressure", -1), OpcUa_Good);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(3003, ns).copyTo(&fields[0].DataType)));
        fields[0].ValueRank = -1;
        EXPECT_EQ(OpcUa_String_Assign(&fields[1].Name, "Mode", -1), OpcUa_Good);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(3002, ns).copyTo(&fields[1].DataType)));
        fields[1].ValueRank = -1;
        fields.detach(&definition->NoOfFields, &definition->Fields);
        put(value, OpcUa_StructureDefinition_EncodeableType, definition);
    }

    static void putEnum(OpcUa_DataValue& value)
    {
        auto* definition = static_cast<OpcUa_EnumDefinition*>(
            OpcUa_EncodeableObject_Create(&OpcUa_EnumDefinition_EncodeableType));
        UaEnumFieldRecords fields(1u);
        fields[0].Value = 5;
        EXPECT_EQ(OpcUa_String_Assign(&fields[0].Name, "Automatic", -1), OpcUa_Good);
        fields.detach(&definition->NoOfFields, &definition->Fields);
        put(value, OpcUa_EnumDefinition_EncodeableType, definition);
    }

    static OpcUa_StatusCode read(const OpcUa_ReadRequest& request, OpcUa_ReadResponse& response)
    {
        UaDataValues results(static_cast<OpcUa_UInt32>(request.NoOfNodesToRead));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            switch (request.NodesToRead[i].NodeId.Identifier.Numeric) {
            case 3001:
                putStructure(results[i]);
                break;
            case 3002:
                putEnum(results[i]);
                break;
            default:
                results[i].StatusCode = OpcUa_BadAttributeIdInvalid;
            }
        }
        results.detach(&response.NoOfResults, &response.Results);
        return OpcUa_Good;
    }
};

class DataTypesTest : public SessionTest
{
protected:
    void serveTypes()
    {
        stack.on(
            OpcUa_BrowseRequest_EncodeableType,
            [](const void* request, void* response) {
                return TypeServer().browse(*static_cast<const OpcUa_BrowseRequest*>(request),
                                           *static_cast<OpcUa_BrowseResponse*>(response));
            });
        stack.on(OpcUa_ReadRequest_EncodeableType, [](const void* request, void* response) {
            return TypeServer::read(*static_cast<const OpcUa_ReadRequest*>(request),
                                    *static_cast<OpcUa_ReadResponse*>(response));
        });
    }
};

TEST_F(DataTypesTest, FirstLookUpLoadsAllTypesInFewCalls)
{
    ASSERT_TRUE(connect().isGood());
    serveTypes();
    const UaStructureDefinition byEncoding = session.structureDefinition(UaNodeId(3101, ns));
    ASSERT_FALSE(byEncoding.isNull());
    EXPECT_EQ(byEncoding.name(), UaString("Type3001"));
    ASSERT_EQ(byEncoding.fieldCount(), 2);
    EXPECT_EQ(byEncoding.field(0).builtInType(), OpcUaType_Double);
    EXPECT_EQ(byEncoding.field(1).builtInType(), OpcUaType_Int32);
    EXPECT_EQ(session.enumDefinition(UaNodeId(3002, ns)).valueName(5), UaString("Automatic"));
    EXPECT_EQ(session.definitionType(UaNodeId(3002, ns)), UaDataTypeDictionary::EnumType);
    EXPECT_TRUE(session.structureDefinition(UaNodeId(9999, ns)).isNull());
    EXPECT_EQ(stack.calls(OpcUa_BrowseRequest_EncodeableType), 3); // a level each
}

TEST_F(DataTypesTest, ManualModeAndNamespaceZeroAskNobody)
{
    info.typeDictionaryMode = UaClient::Manual;
    ASSERT_TRUE(connect().isGood());
    serveTypes();
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_EQ(session.enumDefinition(UaNodeId(OpcUaId_ServerState)).valueName(4), UaString("Shutdown"));
    EXPECT_EQ(stack.calls(OpcUa_BrowseRequest_EncodeableType), 0);
    ASSERT_TRUE(session.loadDataTypeDictionaries().isGood());
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    session.clearDataTypeDictionaries();
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
}

TEST_F(DataTypesTest, FailedLoadIsNotRepeatedByEachLookUp)
{
    ASSERT_TRUE(connect().isGood());
    stack.failNext(OpcUa_BrowseRequest_EncodeableType, {OpcUa_BadTimeout});
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_EQ(stack.calls(OpcUa_BrowseRequest_EncodeableType), 1);
}

// A link that is down is no answer of the server's.
TEST_F(DataTypesTest, LookUpDuringAnOutageLosesNothing)
{
    ASSERT_TRUE(connect().isGood());
    serveTypes();
    stack.loseLink();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_EQ(stack.calls(OpcUa_BrowseRequest_EncodeableType), 0);
    ASSERT_TRUE(passWatchdogTimesUntil(
        {UaClient::Connected, UaClient::ConnectionErrorApiReconnect, UaClient::Connected}));
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
}

TEST_F(DataTypesTest, FailedLoadIsTriedAgainAfterTheNextReconnect)
{
    ASSERT_TRUE(connect().isGood());
    serveTypes();
    stack.failNext(OpcUa_BrowseRequest_EncodeableType, {OpcUa_BadTimeout});
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    stack.loseLink();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForLoads({"Good"}));
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
}

TEST_F(DataTypesTest, OldDefinitionsStayUntilALoadHasGoneWell)
{
    info.typeDictionaryMode = UaClient::Reconnect;
    serveTypes();
    ASSERT_TRUE(connect().isGood());
    ASSERT_TRUE(callback.waitForLoads({"Good"}));
    stack.failNext(OpcUa_BrowseRequest_EncodeableType, {OpcUa_Good, OpcUa_BadTimeout}); // half of it
    stack.loseLink();
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    passWatchdogTime();
    ASSERT_TRUE(callback.waitForLoads({"Good", "BadTimeout"}));
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
}

TEST_F(DataTypesTest, AnotherServerBringsItsOwnDefinitions)
{
    ASSERT_TRUE(connect().isGood());
    serveTypes();
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    stack.loseLink(); // or the disconnect would forget them
    ASSERT_TRUE(callback.waitFor({UaClient::Connected, UaClient::ConnectionErrorApiReconnect}));
    EXPECT_TRUE(disconnect().isGood());
    const int before = stack.calls(OpcUa_BrowseRequest_EncodeableType);
    ASSERT_TRUE(
        session
            .connect(UaString("opc.tcp://another:4840"), info, UaClientSdk::SessionSecurityInfo(), &callback)
            .isGood());
    EXPECT_FALSE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_GT(stack.calls(OpcUa_BrowseRequest_EncodeableType), before);
}

TEST_F(DataTypesTest, ATreeWithoutAnEndIsLeftAtAHundredLevels)
{
    ASSERT_TRUE(connect().isGood());
    stack.on(OpcUa_BrowseRequest_EncodeableType, [](const void* request, void* response) {
        const auto& in = *static_cast<const OpcUa_BrowseRequest*>(request);
        const UaNodeId node(in.NodesToBrowse[0].NodeId);
        TypeServer server;
        server.subtypes = {{node, UaNodeId(node.identifierNumeric() + 1, ns)}};
        return server.browse(in, *static_cast<OpcUa_BrowseResponse*>(response));
    });
    EXPECT_TRUE(session.structureDefinition(UaNodeId(3001, ns)).isNull());
    EXPECT_EQ(stack.calls(OpcUa_BrowseRequest_EncodeableType), 100);
}

// A server of before the DataTypeDefinition attribute: properties, and dictionaries of which one is broken.
class OldServer
{
public:
    OldServer()
    {
        const UaNodeId enumeration(OpcUaId_Enumeration);
        const UaNodeId structure(OpcUaId_Structure);
        add(UaNodeId(OpcUaId_BaseDataType), OpcUaId_HasSubtype, enumeration, "Enumeration");
        add(UaNodeId(OpcUaId_BaseDataType), OpcUaId_HasSubtype, structure, "Structure");
        add(UaNodeId(OpcUaId_BaseDataType), OpcUaId_HasSubtype, UaNodeId(OpcUaId_UInt32), "UInt32");
        addProperty(enumeration, 1, "Colour", "EnumStrings", texts({"Red", "Blue"}));
        addProperty(enumeration, 2, "Mode", "EnumValues", enumValues(-7, "Emergency"));
        addProperty(enumeration, 3, "Broken", "EnumStrings", UaVariant(1.5));
        addProperty(UaNodeId(OpcUaId_UInt32), 4, "Flags", "OptionSetValues", texts({"On", "", "Fault"}));
        addStructure(10, "Pump", 100);
        addStructure(11, "Valve", 101);
        const std::string head = "<o:TypeDictionary xmlns:o='http://opcfoundation.org/BinarySchema/' "
                                 "xmlns:i='urn:import' TargetNamespace='urn:";
        addDictionary(100, head + "old'><o:Import Namespace='urn:import'/><o:StructuredType Name='Pump'>"
                                  "<o:Field Name='State' TypeName='i:State'/></o:StructuredType>"
                                  "</o:TypeDictionary>");
        addDictionary(101, "<o:TypeDictionary");
        addDictionary(102, head + "import'><o:EnumeratedType Name='State' LengthInBits='32'>"
                                  "<o:EnumeratedValue Name='Idle' Value='5'/></o:EnumeratedType>"
                                  "</o:TypeDictionary>");
        add(UaNodeId(93), OpcUaId_HasComponent, UaNodeId(102, ns), "Import");
        add(UaNodeId(102, ns), OpcUaId_HasProperty, UaNodeId(1021, ns), "NamespaceUri");
        m_values[UaNodeId(1021, ns)] = UaVariant("urn:import");
    }

    OpcUa_StatusCode browse(const OpcUa_BrowseRequest& request, OpcUa_BrowseResponse& response) const
    {
        UaBrowseResults results(static_cast<OpcUa_UInt32>(request.NoOfNodesToBrowse));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_BrowseDescription& wanted = request.NodesToBrowse[i];
            const bool inverse = wanted.BrowseDirection == OpcUa_BrowseDirection_Inverse;
            UaReferenceDescriptions references;
            for (const Reference& reference : m_references) {
                const OpcUa_UInt32 type = wanted.ReferenceTypeId.Identifier.Numeric;
                if ((inverse ? reference.target : reference.source) != UaNodeId(wanted.NodeId) ||
                    (type != 0 && type != reference.type))
                    continue;
                EXPECT_TRUE(references.resize(references.length() + 1));
                OpcUa_ReferenceDescription& made = references[references.length() - 1];
                EXPECT_TRUE(OpcUa_IsGood(
                    (inverse ? reference.source : reference.target).copyTo(&made.NodeId.NodeId)));
                made.ReferenceTypeId.Identifier.Numeric = reference.type;
                EXPECT_EQ(OpcUa_String_Assign(&made.BrowseName.Name, reference.name, -1), OpcUa_Good);
            }
            references.detach(&results[i].NoOfReferences, &results[i].References);
        }
        results.detach(&response.NoOfResults, &response.Results);
        return OpcUa_Good;
    }

    OpcUa_StatusCode read(const OpcUa_ReadRequest& request, OpcUa_ReadResponse& response) const
    {
        UaDataValues results(static_cast<OpcUa_UInt32>(request.NoOfNodesToRead));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const auto found = m_values.find(UaNodeId(request.NodesToRead[i].NodeId));
            if (request.NodesToRead[i].AttributeId != OpcUa_Attributes_Value || found == m_values.end())
                results[i].StatusCode = OpcUa_BadAttributeIdInvalid;
            else
                EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&results[i].Value)));
        }
        results.detach(&response.NoOfResults, &response.Results);
        return OpcUa_Good;
    }

private:
    struct Reference
    {
        UaNodeId source;
        OpcUa_UInt32 type;
        UaNodeId target;
        const char* name;
    };

    void add(const UaNodeId& source, OpcUa_UInt32 type, const UaNodeId& target, const char* name)
    {
        m_references.push_back({source, type, target, name});
    }

    void addProperty(const UaNodeId& base, OpcUa_UInt32 id, const char* name, const char* property,
                     const UaVariant& value)
    {
        add(base, OpcUaId_HasSubtype, UaNodeId(id, ns), name);
        add(UaNodeId(id, ns), OpcUaId_HasProperty, UaNodeId(id + 1000, ns), property);
        m_values[UaNodeId(id + 1000, ns)] = value;
    }

    void addStructure(OpcUa_UInt32 id, const char* name, OpcUa_UInt32 dictionary)
    {
        add(UaNodeId(OpcUaId_Structure), OpcUaId_HasSubtype, UaNodeId(id, ns), name);
        add(UaNodeId(id, ns), OpcUaId_HasEncoding, UaNodeId(id + 2000, ns), "Default Binary");
        add(UaNodeId(id + 2000, ns), OpcUaId_HasDescription, UaNodeId(id + 3000, ns), name);
        add(UaNodeId(dictionary, ns), OpcUaId_HasComponent, UaNodeId(id + 3000, ns), name);
        m_values[UaNodeId(id + 3000, ns)] = UaVariant(name);
    }

    void addDictionary(OpcUa_UInt32 id, const std::string& text)
    {
        const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(text.data());
        m_values[UaNodeId(id, ns)] = UaVariant(UaByteString(std::span<const OpcUa_Byte>(bytes, text.size())));
    }

    static UaVariant texts(const std::vector<const char*>& names)
    {
        std::vector<UaVariant> elements;
        for (const char* name : names)
            elements.emplace_back(UaLocalizedText("en", name));
        UaVariant array;
        EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_LocalizedText, elements)));
        return array;
    }

    static UaVariant enumValues(OpcUa_Int64 number, const char* name)
    {
        auto* record = static_cast<OpcUa_EnumValueType*>(
            OpcUa_EncodeableObject_Create(&OpcUa_EnumValueType_EncodeableType));
        record->Value = number;
        EXPECT_EQ(OpcUa_String_Assign(&record->DisplayName.Text, name, -1), OpcUa_Good);
        UaExtensionObject object;
        object.attachDecoded(OpcUa_EnumValueType_EncodeableType, record);
        const UaVariant element(object);
        UaVariant array;
        EXPECT_TRUE(
            OpcUa_IsGood(array.setArray(OpcUaType_ExtensionObject, std::span<const UaVariant>(&element, 1))));
        return array;
    }

    std::vector<Reference> m_references;
    std::map<UaNodeId, UaVariant> m_values;
};

TEST_F(DataTypesTest, OlderServersTellByPropertiesAndDictionaries)
{
    ASSERT_TRUE(connect().isGood());
    const OldServer server;
    stack.on(
        OpcUa_BrowseRequest_EncodeableType,
        [&server](const void* request, void* response) {
            return server.browse(*static_cast<const OpcUa_BrowseRequest*>(request),
                                 *static_cast<OpcUa_BrowseResponse*>(response));
        });
    stack.on(OpcUa_ReadRequest_EncodeableType, [&server](const void* request, void* response) {
        return server.read(*static_cast<const OpcUa_ReadRequest*>(request),
                           *static_cast<OpcUa_ReadResponse*>(response));
    });
    UaTrace::setPreFileTrace(true, UaTrace::Warning);
    ASSERT_TRUE(session.loadDataTypeDictionaries().isGood());
    std::string warnings;
    for (const UaString& line : UaTrace::getPreFileTraces())
        warnings += line.toStdString() + '\n';
    UaTrace::setPreFileTrace(false, UaTrace::Warning);
    UaTrace::clearPreFileTraces();

    EXPECT_EQ(session.enumDefinition(UaNodeId(1, ns)).valueName(1), UaString("Blue"));
    EXPECT_EQ(session.enumDefinition(UaNodeId(2, ns)).valueName(-7), UaString("Emergency"));
    EXPECT_TRUE(session.enumDefinition(UaNodeId(3, ns)).isNull());
    const UaOptionSetDefinition flags = session.optionSetDefinition(UaNodeId(4, ns));
    EXPECT_EQ(flags.builtInType(), OpcUaType_UInt32);
    EXPECT_EQ(flags.toString(0b101), UaString("On | Fault"));
    const UaStructureDefinition pump = session.structureDefinition(UaNodeId(2010, ns));
    EXPECT_EQ(pump.dataTypeId(), UaNodeId(10, ns));
    EXPECT_EQ(pump.field(0).enumDefinition().valueName(5), UaString("Idle")); // of the imported dictionary
    EXPECT_TRUE(session.structureDefinition(UaNodeId(2011, ns)).isNull());
    // what is lost says so
    EXPECT_NE(warnings.find("unusable members of data type ns=2;i=3"), std::string::npos) << warnings;
    EXPECT_NE(warnings.find("type dictionary ns=2;i=101"), std::string::npos) << warnings;
    EXPECT_NE(warnings.find("no description of data type ns=2;i=11"), std::string::npos) << warnings;
}

} // namespace
