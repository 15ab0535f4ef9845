// Definitions of the standard's types, and definitions that a server publishes.
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaelement.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <utility>

TEST(NamespaceZero, StructuresByEitherId)
{
    const UaStructureDefinition status = uaNamespaceZeroStructure(UaNodeId(862));
    EXPECT_EQ(status.name(), "ServerStatusDataType");
    EXPECT_EQ(status.binaryEncodingId(), UaNodeId(864));
    EXPECT_EQ(uaNamespaceZeroStructure(UaNodeId(864)).dataTypeId(), UaNodeId(862));
    EXPECT_EQ(status.field(2).enumDefinition().valueName(0), "Running");
    EXPECT_TRUE(status.field(3).isNestedStructure());
    EXPECT_TRUE(uaNamespaceZeroStructure(UaNodeId(862, 1)).isNull());
    EXPECT_TRUE(uaNamespaceZeroStructure(UaNodeId(84)).isNull());
    EXPECT_TRUE(uaNamespaceZeroStructure(UaNodeId("862", 0)).isNull());
}

TEST(NamespaceZero, EnumerationsAndOptionSets)
{
    const UaEnumDefinition nodeClass = uaNamespaceZeroEnum(UaNodeId(257));
    EXPECT_EQ(nodeClass.valueName(8), "ObjectType");
    EXPECT_TRUE(nodeClass.valueName(3).isNull());
    OpcUa_Int64 number = 0;
    EXPECT_TRUE(nodeClass.valueOf("View", number) && number == 128);
    EXPECT_FALSE(nodeClass.valueOf("Nothing", number));
    const UaNodeId accessLevelEx(15406);
    EXPECT_TRUE(uaNamespaceZeroEnum(accessLevelEx).isNull());
    const UaOptionSetDefinition access = uaNamespaceZeroOptionSet(accessLevelEx);
    EXPECT_EQ(access.builtInType(), OpcUaType_UInt32);
    EXPECT_EQ(access.toString(5), "CurrentRead | HistoryRead");
    EXPECT_TRUE(uaNamespaceZeroOptionSet(UaNodeId(257)).isNull());
}

TEST(NamespaceZero, WireTypes)
{
    const std::pair<OpcUa_UInt32, OpcUa_BuiltInType> types[] = {
        {1, OpcUaType_Boolean},           {17, OpcUaType_NodeId},       {290, OpcUaType_Double},
        {294, OpcUaType_DateTime},        {2003, OpcUaType_ByteString}, {257, OpcUaType_Int32},
        {862, OpcUaType_ExtensionObject}, {24, OpcUaType_Variant},      {26, OpcUaType_Variant},
        {15406, OpcUaType_UInt32},        {84, OpcUaType_Null},         {22, OpcUaType_ExtensionObject},
    };
    for (const auto& [id, type] : types)
        EXPECT_EQ(uaNamespaceZeroBuiltInType(UaNodeId(id)), type) << id;
    EXPECT_EQ(uaNamespaceZeroBuiltInType(UaNodeId(1, 1)), OpcUaType_Null);
    EXPECT_EQ(uaNamespaceZeroBuiltInType(UaNodeId("x", 0)), OpcUaType_Null);
}

// The stack's own writer is another implementation of the same bodies.
TEST(NamespaceZero, EveryStructureReadsWhatTheStackWrites)
{
    int compared = 0;
    for (OpcUa_UInt32 id = 1; id < 40000; ++id) {
        const OpcUa_EncodeableType* type = OpcUa_EncodeableType_FindByTypeId(id);
        if (!type || type->BinaryEncodingTypeId == 0 || type->IsUnion)
            continue;
        void* empty = OpcUa_EncodeableObject_Create(type);
        UaExtensionObject object;
        object.attachDecoded(*type, empty);
        UaByteString body;
        ASSERT_EQ(object.binaryBody(body), OpcUa_Good) << type->TypeName;
        const UaStructureDefinition definition = uaNamespaceZeroStructure(UaNodeId(id));
        UaGenericStructureValue value;
        ASSERT_EQ(value.decode(object, definition).toString(), "Good") << type->TypeName;
        UaExtensionObject again;
        ASSERT_TRUE(value.encode(again).isGood()) << type->TypeName;
        UaByteString second;
        ASSERT_EQ(again.binaryBody(second), OpcUa_Good);
        EXPECT_EQ(second, body) << type->TypeName;
        ++compared;
    }
    EXPECT_GT(compared, 200);
}

TEST(NamespaceZero, ReadsFilledStructures)
{
    OpcUa_Argument argument;
    UaElement<OpcUa_Argument>::initialize(&argument, 1);
    EXPECT_TRUE(OpcUa_IsGood(UaString("Speed").detach(&argument.Name)));
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(11).detach(&argument.DataType)));
    argument.ValueRank = 1;
    UaUInt32Array dimensions(2);
    dimensions[1] = 7;
    dimensions.detach(&argument.NoOfArrayDimensions, &argument.ArrayDimensions);
    EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText("en", "How fast").copyTo(&argument.Description)));
    UaExtensionObject object;
    ASSERT_EQ(object.setDecoded(OpcUa_Argument_EncodeableType, &argument), OpcUa_Good);
    UaElement<OpcUa_Argument>::clear(&argument, 1);

    UaGenericStructureValue value;
    ASSERT_TRUE(value.decode(object, uaNamespaceZeroStructure(object.encodingId())).isGood());
    EXPECT_EQ(value.value("Name").toString(), "Speed");
    EXPECT_EQ(value.value("DataType").toNodeId(), UaNodeId(11));
    EXPECT_EQ(value.value("ArrayDimensions").toString(), "{0|7}");
    EXPECT_EQ(value.value("Description").toLocalizedText(), UaLocalizedText("en", "How fast"));
}

namespace {

// The record of one field as a server sends it.
void describe(OpcUa_StructureField& field, const char* name, const UaNodeId& dataType, OpcUa_Int32 rank,
              bool flag)
{
    EXPECT_TRUE(OpcUa_IsGood(UaString(name).detach(&field.Name)));
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(dataType).detach(&field.DataType)));
    field.ValueRank = rank;
    field.IsOptional = flag;
}

} // namespace

TEST(PublishedDefinition, StructureWithOptionalFields)
{
    UaStructureDefinitionRecords records(1);
    OpcUa_StructureDefinition& record = records[0];
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(71, 2).detach(&record.DefaultEncodingId)));
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(22).detach(&record.BaseDataType)));
    record.StructureType = OpcUa_StructureType_StructureWithOptionalFields;
    UaStructureFieldRecords fields(4);
    describe(fields[0], "Delay", UaNodeId(290), -1, true);
    describe(fields[1], "State", UaNodeId(852), -1, false);
    describe(fields[2], "Own", UaNodeId(72, 2), 1, false);
    describe(fields[3], "Info", UaNodeId(338), -1, false);
    fields.detach(&record.NoOfFields, &record.Fields);

    const auto resolver = [](const UaNodeId& id) {
        return id == UaNodeId(72, 2) ? OpcUaType_UInt16 : OpcUaType_Null;
    };
    const UaStructureDefinition definition = uaStructureDefinition(record, "Mine", UaNodeId(70, 2), resolver);
    ASSERT_EQ(definition.fieldCount(), 4);
    EXPECT_EQ(definition.binaryEncodingId(), UaNodeId(71, 2));
    EXPECT_EQ(definition.baseId(), UaNodeId(22));
    EXPECT_TRUE(definition.hasOptionalFields() && definition.field(0).isOptional());
    EXPECT_EQ(definition.field(0).builtInType(), OpcUaType_Double);
    EXPECT_EQ(definition.field(1).enumDefinition().valueName(0), "Running");
    EXPECT_EQ(definition.field(2).builtInType(), OpcUaType_UInt16);
    EXPECT_TRUE(definition.field(2).isArray());
    EXPECT_TRUE(definition.field(3).isNestedStructure());
    EXPECT_EQ(definition.fieldIndex("Info"), 3);
    EXPECT_TRUE(uaStructureDefinition(record, "Mine", UaNodeId(70, 2)).isNull())
        << "a type that nobody knows";
}

TEST(PublishedDefinition, SubtypedValuesTravelWithTheirType)
{
    UaStructureDefinitionRecords records(1);
    records[0].StructureType = OpcUa_StructureType_StructureWithSubtypedValues;
    UaStructureFieldRecords fields(3);
    describe(fields[0], "Info", UaNodeId(338), -1, true);
    describe(fields[1], "Number", UaNodeId(26), -1, true);
    describe(fields[2], "Plain", UaNodeId(338), -1, false);
    fields.detach(&records[0].NoOfFields, &records[0].Fields);
    const UaStructureDefinition definition = uaStructureDefinition(records[0], "Mine", UaNodeId(70, 2));
    EXPECT_FALSE(definition.hasOptionalFields());
    EXPECT_FALSE(definition.field(0).isNestedStructure());
    EXPECT_EQ(definition.field(1).builtInType(), OpcUaType_Variant);
    EXPECT_TRUE(definition.field(2).isNestedStructure());

    UaGenericStructureValue value(definition);
    ASSERT_TRUE(value.setField("Number", UaVariant(OpcUa_Int16{5})).isGood());
    UaExtensionObject encoded;
    ASSERT_TRUE(value.encode(encoded).isGood());
    UaByteString body;
    ASSERT_EQ(encoded.binaryBody(body), OpcUa_Good);
    EXPECT_TRUE(body.toHex().startsWith("000000"    // an ExtensionObject without type and body
                                        "040500")); // a Variant with an Int16
    UaGenericStructureValue back;
    ASSERT_TRUE(back.decode(encoded, definition).isGood());
    EXPECT_EQ(back.value("Number"), UaVariant(OpcUa_Int16{5}));
}

TEST(PublishedDefinition, EnumerationAndOptionSet)
{
    UaEnumDefinitionRecords records(1);
    UaEnumFieldRecords fields(2);
    fields[0].Value = 1;
    EXPECT_TRUE(OpcUa_IsGood(UaString("One").detach(&fields[0].Name)));
    fields[1].Value = 3;
    EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText("de", "Drei").copyTo(&fields[1].DisplayName)));
    fields.detach(&records[0].NoOfFields, &records[0].Fields);
    const UaEnumDefinition definition = uaEnumDefinition(records[0], "Count", UaNodeId(80, 2));
    EXPECT_EQ(definition.valueName(1), "One");
    EXPECT_EQ(definition.valueName(3), "Drei") << "the display name where there is no other";
    EXPECT_FALSE(definition.hasValue(0));
    const UaOptionSetDefinition bits =
        uaOptionSetDefinition(records[0], "Bits", UaNodeId(81, 2), OpcUaType_Byte);
    EXPECT_EQ(bits.toString(0x0A), "One | Drei");

    UaEnumDefinition changed = definition;
    changed.addValue(5, "Five");
    EXPECT_EQ(definition.valueCount(), 2);
    EXPECT_TRUE(changed.hasValue(5));
    EXPECT_TRUE(UaEnumDefinition().isNull() && !definition.isNull());
}
