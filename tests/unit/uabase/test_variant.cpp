// Variants of every type and shape: setting, reading, elements, texts.
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
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

#include <cmath>
#include <initializer_list>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace {

UaVariant int32Array(std::initializer_list<OpcUa_Int32> numbers)
{
    UaVariant value;
    EXPECT_TRUE(OpcUa_IsGood(
        value.setArray(OpcUaType_Int32, static_cast<OpcUa_Int32>(numbers.size()), numbers.begin())));
    return value;
}

UaDiagnosticInfo diagnosticInfo()
{
    OpcUa_DiagnosticInfo raw;
    OpcUa_DiagnosticInfo_Initialize(&raw);
    EXPECT_TRUE(OpcUa_IsGood(UaString("why").detach(&raw.AdditionalInfo)));
    UaDiagnosticInfo info;
    info.attach(&raw);
    return info;
}

UaExtensionObject range()
{
    OpcUa_Range range;
    range.Low = -1;
    range.High = 2.5;
    UaExtensionObject object;
    EXPECT_EQ(object.setDecoded(OpcUa_Range_EncodeableType, &range), OpcUa_Good);
    return object;
}

struct Sample
{
    UaVariant value;
    const char* text;
};

// One value of each type with its text.
std::vector<Sample> samples()
{
    UaVariant xml;
    xml.setXmlElement(UaByteString::fromHex("3c612f3e"));
    UaVariant dataValue;
    dataValue.setDataValue(UaDataValue(UaVariant(OpcUa_Byte{3}), OpcUa_UncertainInitialValue));
    UaVariant diagnosis;
    diagnosis.setDiagnosticInfo(diagnosticInfo());
    return {
        {UaVariant(true), "true"},
        {UaVariant(OpcUa_SByte{-128}), "-128"},
        {UaVariant(OpcUa_Byte{255}), "255"},
        {UaVariant(OpcUa_Int16{-32768}), "-32768"},
        {UaVariant(OpcUa_UInt16{65535}), "65535"},
        {UaVariant(std::numeric_limits<OpcUa_Int32>::min()), "-2147483648"},
        {UaVariant(std::numeric_limits<OpcUa_UInt32>::max()), "4294967295"},
        {UaVariant(std::numeric_limits<OpcUa_Int64>::min()), "-9223372036854775808"},
        {UaVariant(std::numeric_limits<OpcUa_UInt64>::max()), "18446744073709551615"},
        {UaVariant(0.1f), "0.1"},
        {UaVariant(0.1), "0.1"},
        {UaVariant("text"), "text"},
        {UaVariant(UaDateTime::fromString("2026-11-21T10:15:30.123Z")), "2026-11-21T10:15:30.123Z"},
        {UaVariant(UaGuid::fromString("72962b91-fa75-4ae6-8d28-b404dc7daf63")),
         "72962b91-fa75-4ae6-8d28-b404dc7daf63"},
        {UaVariant(UaByteString::fromHex("00ff")), "0x00ff"},
        {xml, "<a/>"},
        {UaVariant(UaNodeId("abc", 2)), "ns=2;s=abc"},
        {UaVariant(UaExpandedNodeId(UaNodeId(5), "urn:x", 1)), "svr=1;nsu=urn:x;i=5"},
        {UaVariant(UaStatusCode(OpcUa_BadTimeout)), "BadTimeout"},
        {UaVariant(UaQualifiedName("Name", 2)), "2:Name"},
        {UaVariant(UaLocalizedText("en", "Text")), "Text"},
        {UaVariant(range()), "Range (i=886)"},
        {dataValue, "3; UncertainInitialValue"},
        {diagnosis, "DiagnosticInfo \"why\""},
    };
}

} // namespace

TEST(UaVariant, EveryTypeHasATextAndSurvivesItsArray)
{
    int types = 0;
    for (const Sample& sample : samples()) {
        const OpcUa_BuiltInType type = sample.value.type();
        EXPECT_EQ(sample.value.toString(), sample.text);
        EXPECT_TRUE(sample.value.isScalar() && !sample.value.isNull() && !sample.value.isEmpty());
        EXPECT_EQ(sample.value.arraySize(), -1);

        const UaVariant elements[] = {sample.value, sample.value};
        UaVariant array;
        ASSERT_EQ(array.setArray(type, elements), OpcUa_Good) << sample.text;
        EXPECT_TRUE(array.isArray() && array.type() == type && array.arraySize() == 2);
        EXPECT_EQ(array.at(1), sample.value) << sample.text;
        EXPECT_EQ(array.at(1).type(), type);
        EXPECT_TRUE(array.at(2).isNull());
        EXPECT_EQ(array.toString().toStdString(), std::string("{") + sample.text + "|" + sample.text + "}");

        UaVariant inVariants;
        ASSERT_EQ(inVariants.setArray(OpcUaType_Variant, elements), OpcUa_Good);
        EXPECT_EQ(inVariants.at(0), sample.value) << "an element of a Variant array is the value itself";
        EXPECT_NE(inVariants, array);
        types |= 1 << type;
    }
    EXPECT_EQ(types, 0x3FFFFFE & ~(1 << OpcUaType_Variant)) << "a sample for every type";
}

TEST(UaVariant, ReadsBackWhatWasSet)
{
    const UaExtensionObject object = UaVariant(range()).toExtensionObject();
    const auto* decoded = static_cast<const OpcUa_Range*>(object.decoded(OpcUa_Range_EncodeableType));
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->High, 2.5);
    EXPECT_EQ(object.decoded(OpcUa_Argument_EncodeableType), nullptr);

    const UaDataValue source(UaVariant("v"), OpcUa_BadTimeout, UaDateTime(7), UaDateTime(9));
    UaVariant value;
    value.setDataValue(source);
    EXPECT_EQ(value.toDataValue(), source);
    value.setDiagnosticInfo(diagnosticInfo());
    EXPECT_EQ(value.toDiagnosticInfo().additionalInfo(), "why");
    EXPECT_EQ(UaVariant(UaLocalizedText("en", "Text")).toLocalizedText(), UaLocalizedText("en", "Text"));

    bool ok = true;
    EXPECT_EQ(UaVariant("12x").toInt32(&ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(UaVariant(5.0).toNodeId(&ok).isNull());
    EXPECT_FALSE(ok);
    EXPECT_EQ(UaVariant("12").toInt32(&ok), 12);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(UaVariant().toString() == "Null" && UaVariant().isEmpty());
}

TEST(UaVariant, TypedArraysGoInAndOut)
{
    UaStringArray texts(2);
    EXPECT_TRUE(OpcUa_IsGood(UaString("a").detach(&texts[1])));
    UaVariant value;
    value.setStringArray(texts);
    EXPECT_EQ(value.toString(), "{|a}");
    UaStringArray back;
    ASSERT_TRUE(value.toStringArray(back));
    EXPECT_TRUE(UaString(back[0]).isNull() && UaString(back[1]) == "a");

    UaUInt16Array numbers;
    EXPECT_TRUE(int32Array({1, 2}).toUInt16Array(numbers)) << "converted";
    EXPECT_EQ(numbers[1], 2);
    EXPECT_FALSE(int32Array({1, -2}).toUInt16Array(numbers));
    EXPECT_TRUE(numbers.isEmpty());
    EXPECT_FALSE(UaVariant(OpcUa_UInt16{1}).toUInt16Array(numbers)) << "a scalar is no array";

    value.setStringArray(UaStringArray());
    EXPECT_TRUE(value.isArray() && value.arraySize() == 0 && value.isEmpty() && !value.isNull());
    ASSERT_EQ(value.attachArray(OpcUaType_String, -1, nullptr), OpcUa_Good);
    EXPECT_EQ(value.arraySize(), -1);
    EXPECT_EQ(value.toString(), "{}");
    EXPECT_EQ(value.setArray(static_cast<OpcUa_BuiltInType>(26), 1, &numbers), OpcUa_BadInvalidArgument);
}

TEST(UaVariant, MatricesKeepTheirDimensions)
{
    UaVariant matrix = int32Array({1, 2, 3, 4, 5, 6});
    const OpcUa_Int32 wrong[] = {2, 4};
    const OpcUa_Int32 negative[] = {-2, -3};
    const OpcUa_Int32 huge[] = {65536, 65536, 65536, 65536};
    EXPECT_EQ(matrix.setDimensions(wrong), OpcUa_BadInvalidArgument);
    EXPECT_EQ(matrix.setDimensions(negative), OpcUa_BadInvalidArgument);
    EXPECT_EQ(matrix.setDimensions(huge), OpcUa_BadInvalidArgument);
    EXPECT_EQ(matrix.setDimensions({}), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(matrix.isArray());

    const OpcUa_Int32 right[] = {2, 3};
    ASSERT_EQ(matrix.setDimensions(right), OpcUa_Good);
    EXPECT_TRUE(matrix.isMatrix());
    EXPECT_EQ(matrix.toString(), "[2,3]{1|2|3|4|5|6}");
    EXPECT_EQ(matrix.dimensions().length(), 2u);
    EXPECT_EQ(matrix.at(5).toInt32(), 6);
    const UaVariant copy = matrix;
    const OpcUa_Int32 flat[] = {6};
    ASSERT_EQ(matrix.setDimensions(flat), OpcUa_Good);
    EXPECT_TRUE(matrix.isArray());
    EXPECT_EQ(copy.toString(), "[2,3]{1|2|3|4|5|6}");
    EXPECT_NE(copy, matrix);
    EXPECT_EQ(UaVariant(OpcUa_Int32{1}).setDimensions(flat), OpcUa_BadInvalidArgument);
}

TEST(UaVariant, ReplacesElements)
{
    const UaVariant elements[] = {UaVariant("a"), UaVariant("b")};
    UaVariant array;
    ASSERT_EQ(array.setArray(OpcUaType_String, elements), OpcUa_Good);
    const UaVariant before = array;
    ASSERT_EQ(array.setAt(0, UaVariant("x")), OpcUa_Good);
    EXPECT_EQ(array.setAt(2, UaVariant("x")), OpcUa_BadIndexRangeInvalid);
    EXPECT_EQ(array.setAt(0, UaVariant(1.0)), OpcUa_BadTypeMismatch);
    EXPECT_EQ(array.toString(), "{x|b}");
    EXPECT_EQ(before.toString(), "{a|b}");
    const UaVariant mixed[] = {UaVariant("a"), UaVariant(1.0)};
    EXPECT_EQ(array.setArray(OpcUaType_String, mixed), OpcUa_BadTypeMismatch);
    EXPECT_TRUE(array.isNull());
}

TEST(UaVariant, EqualityLooksAtTypeShapeAndElements)
{
    EXPECT_EQ(UaVariant("a"), UaVariant("a"));
    EXPECT_NE(UaVariant(OpcUa_Int32{1}), UaVariant(OpcUa_UInt32{1}));
    EXPECT_NE(UaVariant(OpcUa_Int32{1}), int32Array({1}));
    EXPECT_NE(int32Array({1, 2}), int32Array({1, 3}));
    EXPECT_NE(int32Array({1}), int32Array({1, 1}));
    EXPECT_EQ(UaVariant(), UaVariant());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(UaVariant(nan), UaVariant(nan)) << "a value is equal to its copy";
}

TEST(UaVariant, UnknownTypesAndMissingElementsAreHarmless)
{
    OpcUa_Variant raw;
    OpcUa_Variant_Initialize(&raw);
    raw.Datatype = 200;
    UaVariant value(raw);
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.toString(), "Null");
    EXPECT_EQ(value.changeType(OpcUaType_Int32, false), OpcUa_BadTypeMismatch);
    raw.Datatype = OpcUaType_String;
    raw.ArrayType = OpcUa_VariantArrayType_Array;
    raw.Value.Array.Length = 5; // and no elements
    value.attach(&raw);
    EXPECT_EQ(value.elementCount(), 0u);
    EXPECT_TRUE(value.at(0).isNull() && value.isEmpty());
    EXPECT_EQ(value.toString(), "{}");
}

TEST(UaVariant, TextOfDeepNestingEnds)
{
    UaVariant value("core");
    for (int i = 0; i < 150; ++i) {
        UaVariant around;
        EXPECT_TRUE(OpcUa_IsGood(around.setArray(OpcUaType_Variant, std::span<const UaVariant>(&value, 1))));
        value = around;
    }
    const std::string text = value.toString().toStdString();
    EXPECT_NE(text.find("..."), std::string::npos);
    EXPECT_LT(text.size(), 300u);
}
