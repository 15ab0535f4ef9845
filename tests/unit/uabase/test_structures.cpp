// Structure bodies by definition, against bytes written out by hand.
#include <tests/unit/uabase/testdefinitions.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace testdefinitions;

namespace {

UaByteString bytes(std::string_view hex)
{
    return UaByteString::fromHex(hex);
}

UaExtensionObject object(const UaStructureDefinition& definition, std::string_view hex)
{
    return UaExtensionObject(UaExpandedNodeId(definition.binaryEncodingId()), bytes(hex));
}

std::string hexOf(const UaExtensionObject& value)
{
    UaByteString body;
    EXPECT_EQ(value.binaryBody(body), OpcUa_Good);
    return body.toHex(" ").toStdString();
}

// Every beginning of the body, and the body with one byte more, must be refused.
void expectOnlyWhole(const UaStructureDefinition& definition, std::string_view hex)
{
    const UaByteString whole = bytes(hex);
    UaGenericStructureValue value;
    for (OpcUa_Int32 length = 0; length < whole.length(); ++length) {
        EXPECT_TRUE(value.decode(UaByteString(length, whole.data()), definition).isBad()) << length;
        EXPECT_TRUE(value.isNull());
    }
    UaByteArray longer = whole.toByteArray();
    EXPECT_TRUE(longer.resize(longer.length() + 1));
    EXPECT_EQ(value.decode(UaByteString(longer), definition), OpcUa_BadDecodingError);
    EXPECT_TRUE(value.decode(whole, definition).isGood());
}

// Decodes, encodes again and compares; answers the decoded value.
UaGenericStructureValue roundTrip(const UaStructureDefinition& definition, std::string_view hex)
{
    UaGenericStructureValue value;
    EXPECT_EQ(value.decode(object(definition, hex), definition).toString(), "Good");
    UaExtensionObject again;
    EXPECT_TRUE(value.encode(again).isGood());
    EXPECT_EQ(hexOf(again), bytes(hex).toHex(" ").toStdString());
    EXPECT_EQ(again.encodingId(), definition.binaryEncodingId());
    expectOnlyWhole(definition, hex);
    return value;
}

} // namespace

TEST(GenericStructure, ReadsScalarsByNameAndIndex)
{
    const UaGenericStructureValue value =
        roundTrip(point(), "000000000000f03f 0000000000000040 02000000 6162");
    EXPECT_EQ(value.value(0).toDouble(), 1.0);
    EXPECT_EQ(value.value("Y").toDouble(), 2.0);
    EXPECT_EQ(value.value("Label").toString(), "ab");
    EXPECT_TRUE(value.value("Z").isNull());
    EXPECT_TRUE(value.value(3).isNull() && value.value(-1).isNull());
    EXPECT_EQ(value.definition().name(), "Point");
}

TEST(GenericStructure, OptionalFieldsMayBeAbsent)
{
    const UaGenericStructureValue none = roundTrip(options(), "00000000 07000000");
    EXPECT_FALSE(none.isFieldSet(0));
    EXPECT_TRUE(none.isFieldSet(1) && none.value(1).toInt32() == 7);
    UaGenericStructureValue second = roundTrip(options(), "02000000 07000000 01000000 78");
    EXPECT_EQ(second.value("Remark").toString(), "x");
    EXPECT_FALSE(second.isFieldSet(0));
    UaGenericStructureValue refused;
    EXPECT_EQ(refused.decode(bytes("04000000 07000000"), options()), OpcUa_BadDecodingError)
        << "a bit for a field that nobody knows";

    ASSERT_TRUE(second.setField("Limit", UaVariant(OpcUa_Byte{9})).isGood());
    ASSERT_TRUE(second.unsetField(2).isGood());
    EXPECT_EQ(second.unsetField(1), OpcUa_BadNotSupported);
    UaExtensionObject encoded;
    ASSERT_TRUE(second.encode(encoded).isGood());
    EXPECT_EQ(hexOf(encoded), "01 00 00 00 09 07 00 00 00");
}

TEST(GenericStructure, NestedStructuresStayBodies)
{
    const char* hex = "01000000 41"                                         // Name "A"
                      "0000000000000000 000000000000f03f ffffffff"          // Center: null label
                      "02000000 0000000000000000 0000000000000000 00000000" // Corners: two
                      "000000000000f03f 000000000000f03f 01000000 62"
                      "02000000"; // Mode
    UaGenericStructureValue value = roundTrip(shape(), hex);
    EXPECT_EQ(value.value(1).toExtensionObject().encodingId(), point().binaryEncodingId());
    EXPECT_EQ(value.structure(1).value("Y").toDouble(), 1.0);
    EXPECT_TRUE(value.structure(1).value("Label").toString().isEmpty());
    EXPECT_EQ(value.value("Corners").arraySize(), 2);
    EXPECT_EQ(value.structure(2, 1).value("Label").toString(), "b");
    EXPECT_TRUE(value.structure(2, 2).isNull());
    EXPECT_TRUE(value.structure(0).isNull());
    EXPECT_EQ(value.value("Mode").toInt32(), 2);
    EXPECT_EQ(value.definition().field(3).enumDefinition().valueName(2), "Fast");

    UaGenericStructureValue center = value.structure(1);
    ASSERT_TRUE(center.setField("X", UaVariant(5.0)).isGood());
    ASSERT_TRUE(value.setField(1, center).isGood());
    EXPECT_EQ(value.structure(1).value("X").toDouble(), 5.0);
    EXPECT_EQ(value.setField(1, UaGenericStructureValue(options())), OpcUa_BadTypeMismatch);
    EXPECT_EQ(value.setField(0, UaVariant(1.0)), OpcUa_BadTypeMismatch);
    EXPECT_EQ(value.setField(2, UaVariant(OpcUa_Int32{1})), OpcUa_BadTypeMismatch);
    EXPECT_EQ(value.setField(9, UaVariant("x")), OpcUa_BadOutOfRange);
}

TEST(GenericStructure, ArraysAndMatrices)
{
    const char* hex = "03000000 0100 0200 ffff"                // Numbers
                      "ffffffff"                               // Texts: null
                      "02000000 02000000 02000000 01 02 03 04" // Grid 2 x 2
                      "06 02000000"                            // Any: a variant with an Int32
                      "00000000"                               // Values: empty array of variants
        ;
    const UaGenericStructureValue value = roundTrip(arrays(), hex);
    EXPECT_EQ(value.value("Numbers").toString(), "{1|2|-1}");
    EXPECT_EQ(value.value("Texts").arraySize(), -1);
    EXPECT_EQ(value.value("Grid").toString(), "[2,2]{1|2|3|4}");
    EXPECT_EQ(value.value("Any"), UaVariant(OpcUa_Int32{2}));
    EXPECT_EQ(value.value("Values").arraySize(), 0);
}

TEST(GenericStructure, StartsWithDefaultsThatEncode)
{
    for (const UaStructureDefinition& definition : {point(), options(), shape(), arrays()}) {
        const UaGenericStructureValue fresh(definition);
        UaExtensionObject encoded;
        ASSERT_TRUE(fresh.encode(encoded).isGood()) << definition.name().toUtf8();
        UaGenericStructureValue back;
        EXPECT_TRUE(back.decode(encoded, definition).isGood()) << definition.name().toUtf8();
    }
    EXPECT_EQ(UaGenericStructureValue(shape()).structure(1).value("X"), UaVariant(0.0));
    UaExtensionObject encoded;
    EXPECT_EQ(UaGenericStructureValue().encode(encoded), OpcUa_BadInvalidState);
    EXPECT_TRUE(UaGenericStructureValue(measure()).isNull()) << "a union has a class of its own";
}

TEST(GenericStructure, RefusesOtherTypesAndForms)
{
    UaGenericStructureValue value;
    EXPECT_EQ(value.decode(object(point(), ""), options()), OpcUa_BadDataTypeIdUnknown);
    EXPECT_EQ(value.decode(object(measure(), "00000000"), measure()), OpcUa_BadNotSupported);
    EXPECT_EQ(value.decode(UaExtensionObject(UaExpandedNodeId(point().binaryEncodingId()), UaByteString()),
                           point()),
              OpcUa_BadDecodingError);
    const UaStructureDefinition marker("Marker", UaNodeId(92, 5), UaNodeId(93, 5));
    EXPECT_TRUE(
        value.decode(UaExtensionObject(UaExpandedNodeId(UaNodeId(93, 5)), UaByteString()), marker).isGood())
        << "no fields, no body";
    UaStructureDefinition unknown("Unknown", UaNodeId(90, 5), UaNodeId(91, 5));
    unknown.addField(UaStructureField("Nested", UaNodeId(99, 5), OpcUaType_ExtensionObject));
    EXPECT_EQ(value.decode(bytes("00"), unknown), OpcUa_BadDataTypeIdUnknown);
}

TEST(GenericStructure, HostileLengthsEndInAStatus)
{
    UaGenericStructureValue value;
    EXPECT_EQ(value.decode(bytes("ffffff7f 0100"), arrays()), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(value.decode(bytes("00000100 0100"), arrays()), OpcUa_BadDecodingError);
    // dimensions whose product overflows, and one that is too large
    EXPECT_EQ(value.decode(bytes("00000000 00000000 03000000 ffffff7f ffffff7f ffffff7f"), arrays()),
              OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(value.decode(bytes("00000000 00000000 ffffff7f 00"), arrays()), OpcUa_BadDecodingError);
    // negative dimensions mean no elements
    EXPECT_TRUE(
        value.decode(bytes("ffffffff ffffffff 02000000 f0ffffff 02000000 00 ffffffff"), arrays()).isGood());
    EXPECT_EQ(value.value("Grid").elementCount(), 0u);
}

TEST(GenericStructure, RecursionEnds)
{
    Dictionary dictionary;
    UaStructureDefinition chain("Chain", UaNodeId(50, 2), UaNodeId(51, 2));
    chain.addField(UaStructureField("Next", UaNodeId(50, 2), OpcUaType_ExtensionObject, 1));
    dictionary.add(chain);
    const auto nested = [](int levels) {
        std::string hex;
        for (int i = 0; i < levels; ++i)
            hex += "01000000";
        return bytes(hex + "00000000");
    };
    UaGenericStructureValue value;
    EXPECT_TRUE(value.decode(nested(90), chain, &dictionary).isGood());
    EXPECT_EQ(value.structure(0, 0, &dictionary).structure(0, 0, &dictionary).value("Next").arraySize(), 1);
    EXPECT_EQ(value.decode(nested(101), chain, &dictionary), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(value.decode(nested(10000), chain, &dictionary), OpcUa_BadEncodingLimitsExceeded);
}

TEST(GenericStructure, DefinitionsThatExplodeEnd)
{
    // every level holds the next ten times and the last one is empty: 10^30 visits for a body without a byte
    Dictionary dictionary;
    for (OpcUa_UInt32 level = 0; level < 30; ++level) {
        UaStructureDefinition definition("Level", UaNodeId(100 + level, 2), UaNodeId());
        for (int i = 0; i < 10 && level < 29; ++i)
            definition.addField(
                UaStructureField("Next", UaNodeId(101 + level, 2), OpcUaType_ExtensionObject));
        dictionary.add(definition);
    }
    const UaStructureDefinition first = dictionary.structureDefinition(UaNodeId(100, 2));
    UaGenericStructureValue value;
    EXPECT_EQ(value.decode(UaByteString(0, nullptr), first, &dictionary), OpcUa_BadEncodingLimitsExceeded);
    const UaGenericStructureValue fresh(first, &dictionary);
    UaExtensionObject encoded;
    EXPECT_TRUE(fresh.encode(encoded).isBad());
}

TEST(GenericUnion, HoldsOneFieldOrNone)
{
    UaGenericUnionValue value;
    ASSERT_TRUE(value.decode(object(measure(), "00000000"), measure()).isGood());
    EXPECT_EQ(value.switchValue(), 0u);
    EXPECT_TRUE(value.field().isNull() && value.value().isNull());
    ASSERT_TRUE(value.decode(object(measure(), "02000000 01000000 78"), measure()).isGood());
    EXPECT_EQ(value.field().name(), "Text");
    EXPECT_EQ(value.value().toString(), "x");
    for (const char* wrong :
         {"", "020000", "02000000", "04000000", "ffffffff", "00000000 00", "01000000 010203"})
        EXPECT_EQ(value.decode(bytes(wrong), measure()), OpcUa_BadDecodingError) << wrong;
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.decode(bytes("00"), point()), OpcUa_BadNotSupported);

    UaGenericUnionValue made(measure());
    UaExtensionObject encoded;
    ASSERT_TRUE(made.setValue("Number", UaVariant(OpcUa_Int32{5})).isGood());
    ASSERT_TRUE(made.encode(encoded).isGood());
    EXPECT_EQ(hexOf(encoded), "01 00 00 00 05 00 00 00");
    EXPECT_EQ(made.setValue("Number", UaVariant("5")), OpcUa_BadTypeMismatch);
    EXPECT_EQ(made.setValue("Other", UaVariant("5")), OpcUa_BadOutOfRange);
    ASSERT_TRUE(made.setValue(0, UaVariant()).isGood());
    ASSERT_TRUE(made.encode(encoded).isGood());
    EXPECT_EQ(hexOf(encoded), "00 00 00 00");
}

TEST(GenericUnion, LiesInsideStructures)
{
    UaStructureDefinition holder("Holder", UaNodeId(60, 2), UaNodeId(61, 2));
    UaStructureField field("Measure", measure().dataTypeId(), OpcUaType_ExtensionObject);
    field.setStructureDefinition(measure());
    holder.addField(field);
    holder.addField(UaStructureField("After", UaNodeId(3), OpcUaType_Byte));
    const UaGenericStructureValue value =
        roundTrip(holder, "03000000 0000000000000000 0000000000000000 00000000 2a");
    EXPECT_EQ(value.value("After").toByte(), 42);
    UaGenericUnionValue inner;
    ASSERT_TRUE(inner.decode(value.value(0).toExtensionObject(), measure()).isGood());
    EXPECT_EQ(inner.field().name(), "Place");
}
