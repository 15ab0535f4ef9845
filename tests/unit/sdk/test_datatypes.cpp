// Data type definitions loaded from a server's address space.
#include "sessiontest.h"

#include <map>

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
                references.resize(references.length() + 1);
                OpcUa_ReferenceDescription& reference = references[references.length() - 1];
                it->second.copyTo(&reference.NodeId.NodeId);
                OpcUa_String_Assign(&reference.BrowseName.Name,
                                    ("Type" + std::to_string(it->second.identifierNumeric())).c_str(), -1);
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
        UaNodeId(3101, ns).copyTo(&definition->DefaultEncodingId);
        UaStructureFieldRecords fields(2u);
        OpcUa_String_Assign(&fields[0].Name, "Pressure", -1);
        UaNodeId(3003, ns).copyTo(&fields[0].DataType);
        fields[0].ValueRank = -1;
        OpcUa_String_Assign(&fields[1].Name, "Mode", -1);
        UaNodeId(3002, ns).copyTo(&fields[1].DataType);
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
        OpcUa_String_Assign(&fields[0].Name, "Automatic", -1);
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
        stack.on(OpcUa_BrowseRequest_EncodeableType, [](const void* request, void* response) {
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

} // namespace
