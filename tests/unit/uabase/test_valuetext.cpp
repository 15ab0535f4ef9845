// JSON and XML of values: the standard's form, and reading back what was written.
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/unit/uabase/testdefinitions.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

UaTypeDefinitionStore& dictionary()
{
    static UaTypeDefinitionStore made = [] {
        UaTypeDefinitionStore all;
        for (const UaStructureDefinition& definition :
             {testdefinitions::point(), testdefinitions::options(), testdefinitions::shape(),
              testdefinitions::arrays(), testdefinitions::measure()})
            all.add(definition);
        return all;
    }();
    return made;
}

std::string json(const UaVariant& value)
{
    UaString text;
    EXPECT_TRUE(UaValueText::toJson(value, &dictionary(), text).isGood());
    return text.toStdString();
}

// As both texts and back.
void expectRoundTrip(const UaVariant& value)
{
    UaString text;
    UaString error;
    UaVariant back;
    ASSERT_TRUE(UaValueText::toJson(value, &dictionary(), text).isGood());
    ASSERT_TRUE(UaValueText::fromJson(text.view(), &dictionary(), back, &error).isGood())
        << text.toUtf8() << error.toUtf8();
    EXPECT_EQ(value, back) << text.toUtf8();
    back = UaVariant();
    ASSERT_TRUE(UaValueText::toXml(value, &dictionary(), text).isGood()) << value.toString().toUtf8();
    ASSERT_TRUE(UaValueText::fromXml(text.view(), &dictionary(), back, &error).isGood())
        << text.toUtf8() << error.toUtf8();
    EXPECT_EQ(value, back) << text.toUtf8();
}

UaVariant arrayOf(OpcUa_BuiltInType type, const std::vector<UaVariant>& elements,
                  const std::vector<OpcUa_Int32>& dimensions = {})
{
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(type, elements)));
    if (!dimensions.empty())
        EXPECT_TRUE(OpcUa_IsGood(array.setDimensions(dimensions)));
    return array;
}

UaVariant shape()
{
    UaGenericStructureValue point(testdefinitions::point());
    EXPECT_TRUE(point.setField("X", UaVariant(1.5)).isGood());
    EXPECT_TRUE(point.setField("Label", UaVariant("a <b> & \"c\"\n\xC3\xA4")).isGood());
    UaGenericStructureValue value(testdefinitions::shape());
    EXPECT_TRUE(value.setField("Name", UaVariant("Shape")).isGood());
    EXPECT_TRUE(value.setField(1, point).isGood());
    UaExtensionObject corner;
    EXPECT_TRUE(point.encode(corner).isGood());
    EXPECT_TRUE(
        value.setField("Corners", arrayOf(OpcUaType_ExtensionObject, {UaVariant(corner), UaVariant(corner)}))
            .isGood());
    EXPECT_TRUE(value.setField("Mode", UaVariant(OpcUa_Int32{2})).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(value.encode(object).isGood());
    return UaVariant(object);
}

TEST(ValueText, JsonHasTheStandardsForm)
{
    EXPECT_EQ(json(UaVariant(OpcUa_Int32{-5})), R"({"Type":6,"Body":-5})");
    EXPECT_EQ(json(UaVariant(UINT64_MAX)), R"({"Type":9,"Body":"18446744073709551615"})");
    EXPECT_EQ(json(UaVariant(-std::numeric_limits<double>::infinity())), R"({"Type":11,"Body":"-Infinity"})");
    EXPECT_EQ(json(UaVariant("a\"\\\n\x01")), R"({"Type":12,"Body":"a\"\\\n\u0001"})");
    EXPECT_EQ(json(UaVariant(UaNodeId(UaString("x"), 2))),
              R"({"Type":17,"Body":{"IdType":1,"Id":"x","Namespace":2}})");
    EXPECT_EQ(json(UaVariant(UaExpandedNodeId(UaNodeId(85), UaString("urn:x"), 3))),
              R"({"Type":18,"Body":{"Id":85,"Namespace":"urn:x","ServerUri":3}})");
    EXPECT_EQ(json(UaVariant(UaLocalizedText("de", "ja"))),
              R"({"Type":21,"Body":{"Locale":"de","Text":"ja"}})");
    EXPECT_EQ(json(UaVariant(UaDateTime::fromString("2026-11-21T10:00:00.0000001Z"))),
              R"({"Type":13,"Body":"2026-11-21T10:00:00.0000001Z"})");
    EXPECT_EQ(json(arrayOf(OpcUaType_Byte, {UaVariant(OpcUa_Byte{1}), UaVariant(OpcUa_Byte{2})}, {1, 2})),
              R"({"Type":3,"Body":[1,2],"Dimensions":[1,2]})");
    EXPECT_EQ(json(UaVariant()), "null");
    UaGenericUnionValue measure(testdefinitions::measure());
    ASSERT_TRUE(measure.setValue("Text", UaVariant("hot")).isGood());
    UaExtensionObject object;
    ASSERT_TRUE(measure.encode(object).isGood());
    EXPECT_EQ(
        json(UaVariant(object)),
        R"({"Type":22,"Body":{"TypeId":{"Id":18,"Namespace":2},"Body":{"SwitchField":2,"Value":"hot"}}})");
    UaGenericStructureValue options(testdefinitions::options());
    ASSERT_TRUE(options.setField("Remark", UaVariant("r")).isGood());
    ASSERT_TRUE(options.encode(object).isGood());
    EXPECT_EQ(
        json(UaVariant(object)),
        R"({"Type":22,"Body":{"TypeId":{"Id":12,"Namespace":2},"Body":{"EncodingMask":2,"Count":0,"Remark":"r"}}})");
}

TEST(ValueText, XmlHasTheStandardsForm)
{
    UaString text;
    const std::string head = "<Variant xmlns=\"http://opcfoundation.org/UA/2008/02/Types.xsd\" "
                             "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">";
    ASSERT_TRUE(UaValueText::toXml(UaVariant(true), nullptr, text).isGood());
    EXPECT_EQ(text.toStdString(), head + "<Value><Boolean>true</Boolean></Value></Variant>");
    ASSERT_TRUE(UaValueText::toXml(shape(), &dictionary(), text).isGood());
    EXPECT_NE(
        text.view().find("<ExtensionObject><TypeId><Identifier>ns=2;i=14</Identifier></TypeId><Body><Shape>"
                         "<Name>Shape</Name><Center><X>1.5</X>"),
        std::string_view::npos)
        << text.toUtf8();
    EXPECT_NE(text.view().find("<Mode>Fast_2</Mode>"), std::string_view::npos);
    // no document may hold these
    EXPECT_TRUE(UaValueText::toXml(UaVariant("\x01"), nullptr, text).isBad());
    EXPECT_TRUE(UaValueText::toXml(UaVariant("\xFF"), nullptr, text).isBad());
}

TEST(ValueText, EveryTypeReadsBack)
{
    UaVariant xml;
    const UaString element("<a b='c'>d</a>");
    xml.setXmlElement(
        UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(element.toUtf8()), element.size())));
    UaVariant dataValue;
    UaDataValue content(UaVariant(OpcUa_UInt16{7}), OpcUa_BadTimeout,
                        UaDateTime(OpcUa_DateTime{132000000000000001}));
    content.setServerTimestamp(UaDateTime(OpcUa_DateTime{132000000000000000}), 99);
    dataValue.setDataValue(content);
    UaVariant nullText;
    nullText.setString(UaString());
    UaVariant nullArray;
    EXPECT_TRUE(OpcUa_IsGood(nullArray.attachArray(OpcUaType_String, -1, nullptr)));
    UaVariant empty;
    EXPECT_TRUE(OpcUa_IsGood(empty.attachArray(OpcUaType_Int32, 0, nullptr)));
    for (const UaVariant& value :
         {UaVariant(),
          UaVariant(false),
          UaVariant(OpcUa_SByte{-128}),
          UaVariant(OpcUa_Byte{255}),
          UaVariant(OpcUa_Int16{-32768}),
          UaVariant(OpcUa_UInt16{65535}),
          UaVariant(OpcUa_UInt32{4294967295u}),
          UaVariant(INT64_MIN),
          UaVariant(0.1f),
          UaVariant(5e-324),
          UaVariant(std::numeric_limits<double>::quiet_NaN()),
          UaVariant(std::numeric_limits<float>::infinity()),
          UaVariant(""),
          nullText,
          UaVariant(" a\r\n\tb "),
          UaVariant(UaGuid::fromString("01234567-89ab-cdef-0123-456789abcdef")),
          UaVariant(UaByteString::fromHex("00ff")),
          xml,
          UaVariant(UaNodeId(UaByteString::fromHex("0102"), 5)),
          UaVariant(UaNodeId(UaGuid::fromString("01234567-89ab-cdef-0123-456789abcdef"), 1)),
          UaVariant(UaExpandedNodeId(UaNodeId(UaString("a;b"), 0), UaString("urn:a;b%"), 1)),
          UaVariant(UaStatusCode(OpcUa_BadNodeIdUnknown)),
          UaVariant(UaQualifiedName("q:1", 3)),
          UaVariant(UaLocalizedText(UaString(), "t")),
          dataValue,
          nullArray,
          empty,
          UaVariant(UaExtensionObject()),
          arrayOf(OpcUaType_Variant, {UaVariant(OpcUa_Int32{1}), UaVariant("x"), UaVariant(),
                                      arrayOf(OpcUaType_Boolean, {UaVariant(true)})}),
          arrayOf(OpcUaType_String, {UaVariant("a"), nullText, UaVariant("")}),
          arrayOf(OpcUaType_Int16, std::vector<UaVariant>(12, UaVariant(OpcUa_Int16{-3})), {2, 3, 2}),
          shape()}) {
        SCOPED_TRACE(value.toString().toUtf8());
        expectRoundTrip(value);
    }
    // a body that nobody knows stays what it is
    expectRoundTrip(
        UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(999, 9)), UaByteString::fromHex("0102"))));
}

TEST(ValueText, ArraysAndMatricesOfStructureFieldsReadBack)
{
    UaGenericStructureValue value(testdefinitions::arrays());
    ASSERT_TRUE(value
                    .setField("Numbers", arrayOf(OpcUaType_Int16,
                                                 {UaVariant(OpcUa_Int16{1}), UaVariant(OpcUa_Int16{2})}))
                    .isGood());
    ASSERT_TRUE(value
                    .setField("Grid", arrayOf(OpcUaType_Byte,
                                              std::vector<UaVariant>(6, UaVariant(OpcUa_Byte{4})), {2, 3}))
                    .isGood());
    ASSERT_TRUE(value.setField("Any", shape()).isGood());
    ASSERT_TRUE(value.setField("Values", arrayOf(OpcUaType_Variant, {UaVariant(1.5), shape()})).isGood());
    UaExtensionObject object;
    ASSERT_TRUE(value.encode(object).isGood());
    expectRoundTrip(UaVariant(object));
    EXPECT_NE(json(UaVariant(object)).find(R"("Grid":[[4,4,4],[4,4,4]])"), std::string::npos);
}

TEST(ValueText, FaultyJsonIsRefusedAndSaysWhere)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "no value"},
        {"{", "member name"},
        {"[1,]", "no value"},
        {"nul", "no value"},
        {"01", "no value"},
        {"\"\\ud800\"", "surrogate"},
        {"\"a\nb\"", "control"},
        {"{\"Type\":6,\"Body\":1}}", "more text"},
        {"{\"Type\":99,\"Body\":1}", "built-in type"},
        {"{\"Type\":6}x", "more text"},
        {"{\"Type\":6,\"Body\":\"a\"}", "no number"},
        {"{\"Type\":3,\"Body\":256}", "no number"},
        {"{\"Type\":1,\"Body\":1}", "true or false"},
        {"{\"Type\":13,\"Body\":\"yesterday\"}", "no time"},
        {"{\"Type\":6,\"Body\":[1,2],\"Dimensions\":[3]}", "dimensions"},
        {"{\"Type\":6,\"Body\":[1,2],\"Dimensions\":[-1,-2]}", "dimensions"},
        {"{\"Type\":22,\"Body\":{\"TypeId\":{\"Id\":77,\"Namespace\":9},\"Body\":{}}}", "nobody knows"},
        {"{\"Type\":22,\"Body\":{\"TypeId\":{\"Id\":10,\"Namespace\":2},\"Body\":{\"X\":\"a\"}}}",
         "X: no number"},
        {"{\"Type\":22,\"Body\":{\"TypeId\":{\"Id\":16,\"Namespace\":2},\"Body\":{\"Grid\":[[1,2],[3]]}}}",
         "different length"},
        {"{\"Type\":22,\"Body\":{\"TypeId\":{\"Id\":18,\"Namespace\":2},\"Body\":{\"SwitchField\":4}}}",
         "Measure"},
    };
    for (const auto& [text, expected] : cases) {
        UaVariant value(OpcUa_Int32{42});
        UaString error;
        EXPECT_TRUE(UaValueText::fromJson(text, &dictionary(), value, &error).isBad()) << text;
        EXPECT_NE(error.view().find(expected), std::string_view::npos) << text << ": " << error.toUtf8();
        EXPECT_EQ(value, UaVariant(OpcUa_Int32{42}));
    }
    std::string deep;
    for (int i = 0; i < 150; ++i)
        deep += "{\"Type\":24,\"Body\":[";
    UaVariant value;
    EXPECT_TRUE(UaValueText::fromJson(std::string(100000, '['), nullptr, value).isBad());
    EXPECT_TRUE(UaValueText::fromJson(deep, nullptr, value).isBad());
    for (int i = 0; i < 150; ++i)
        deep += "]}";
    EXPECT_EQ(UaValueText::fromJson(deep, nullptr, value).code(),
              OpcUa_StatusCode(OpcUa_BadEncodingLimitsExceeded));
}

TEST(ValueText, FaultyXmlIsRefusedAndSaysWhere)
{
    const std::string head = "<Variant xmlns='http://opcfoundation.org/UA/2008/02/Types.xsd'>";
    const std::pair<std::string, const char*> cases[] = {
        {"", "empty"},
        {"<Variant/>", "not a value"},
        {head + "<Value><Int32>x</Int32></Value></Variant>", "no value of its type"},
        {head + "<Value><Byte>256</Byte></Value></Variant>", "no value of its type"},
        {head + "<Value><Nothing/></Value></Variant>", "unknown type"},
        {head + "<Value><DateTime>x</DateTime></Value></Variant>", "no time"},
        {head + "<Value><NodeId><Identifier>x</Identifier></NodeId></Value></Variant>", "no node id"},
        {head +
             "<Value><Matrix><Dimensions><UInt32>3</UInt32></Dimensions><Elements><Int32>1</Int32></Elements>"
             "</Matrix></Value></Variant>",
         "dimensions"},
    };
    for (const auto& [text, expected] : cases) {
        UaVariant value(OpcUa_Int32{42});
        UaString error;
        EXPECT_TRUE(UaValueText::fromXml(text, &dictionary(), value, &error).isBad()) << text;
        EXPECT_NE(error.view().find(expected), std::string_view::npos) << text << ": " << error.toUtf8();
        EXPECT_EQ(value, UaVariant(OpcUa_Int32{42}));
    }
}

} // namespace
