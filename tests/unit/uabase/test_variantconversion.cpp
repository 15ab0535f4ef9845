// Which types convert into which, and to what.
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
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
#include <map>
#include <string>

namespace {

// Columns and rows in this order; '=' same, 'I' implicit, 'E' explicit, '.' none.
constexpr OpcUa_BuiltInType types[] = {
    OpcUaType_Boolean,       OpcUaType_SByte,          OpcUaType_Byte,       OpcUaType_Int16,
    OpcUaType_UInt16,        OpcUaType_Int32,          OpcUaType_UInt32,     OpcUaType_Int64,
    OpcUaType_UInt64,        OpcUaType_Float,          OpcUaType_Double,     OpcUaType_String,
    OpcUaType_DateTime,      OpcUaType_Guid,           OpcUaType_ByteString, OpcUaType_XmlElement,
    OpcUaType_NodeId,        OpcUaType_ExpandedNodeId, OpcUaType_StatusCode, OpcUaType_QualifiedName,
    OpcUaType_LocalizedText,
};
constexpr int typeCount = 21;

constexpr const char* table[typeCount] = {
    // BSBUIUIUIUFDSDGBXNESQL
    "=IIIIIIIIIIE.........", // Boolean
    "E=EIIIIIIIIE.........", // SByte
    "EI=IIIIIIIIE.........", // Byte
    "EEE=EIIIIIIE.........", // Int16
    "EEEI=IIIIIIE......I..", // UInt16
    "EEEEE=EIIIIE......E..", // Int32
    "EEEEEI=IIIIE......E..", // UInt32
    "EEEEEEE=EIIE......E..", // Int64
    "EEEEEEEI=IIE......E..", // UInt64
    "EEEEEEEEE=IE.........", // Float
    "EEEEEEEEEE=E.........", // Double
    "IIIIIIIIIII=EI..EE.EE", // String
    "...........E=........", // DateTime
    "...........E.=E......", // Guid
    ".............E=......", // ByteString
    "...............=.....", // XmlElement
    "...........I....=I...", // NodeId
    "...........I....E=...", // ExpandedNodeId
    "....EIIII.........=..", // StatusCode
    "...........I.......=I", // QualifiedName
    "...........I........=", // LocalizedText
};

char letter(UaVariant::Conversion conversion)
{
    return ".=IE"[conversion];
}

// A value of the type that every permitted target accepts.
UaVariant sampleFor(OpcUa_BuiltInType from, OpcUa_BuiltInType to)
{
    const std::map<OpcUa_BuiltInType, const char*> texts = {
        {OpcUaType_DateTime, "2026-11-21T10:00:00Z"},
        {OpcUaType_Guid, "72962b91-fa75-4ae6-8d28-b404dc7daf63"},
        {OpcUaType_NodeId, "ns=1;s=x"},
        {OpcUaType_ExpandedNodeId, "nsu=urn:x;s=x"},
    };
    UaVariant value;
    switch (from) {
    case OpcUaType_String:
        return UaVariant(texts.contains(to) ? texts.at(to) : "1");
    case OpcUaType_DateTime:
        return UaVariant(UaDateTime(0));
    case OpcUaType_Guid:
        return UaVariant(UaGuid());
    case OpcUaType_ByteString:
        return UaVariant(UaGuid().toByteString());
    case OpcUaType_XmlElement:
        value.setXmlElement(UaByteString::fromHex("3c"));
        return value;
    case OpcUaType_NodeId:
        return UaVariant(UaNodeId(1));
    case OpcUaType_ExpandedNodeId:
        return UaVariant(UaExpandedNodeId(UaNodeId(1)));
    case OpcUaType_StatusCode:
        return UaVariant(UaStatusCode(1u));
    case OpcUaType_QualifiedName:
        return UaVariant(UaQualifiedName("n", 1));
    case OpcUaType_LocalizedText:
        return UaVariant(UaLocalizedText("en", "t"));
    default:
        value.setByte(1);
        EXPECT_TRUE(value.changeType(from, false).isGood());
        return value;
    }
}

// The text of a value after conversion, or the name of the status.
std::string converted(const UaVariant& value, OpcUa_BuiltInType type, bool toArray = false)
{
    UaVariant copy = value;
    const UaStatusCode status = copy.changeType(type, toArray);
    if (status.isGood()) {
        EXPECT_EQ(copy.type(), type);
        return copy.toString().toStdString();
    }
    EXPECT_EQ(copy, value) << "a failure changes nothing";
    return status.toString().toStdString();
}

struct Case
{
    UaVariant value;
    OpcUa_BuiltInType type;
    const char* result;
};

void expectAll(std::initializer_list<Case> cases)
{
    for (const Case& c : cases)
        EXPECT_EQ(converted(c.value, c.type), c.result)
            << c.value.toString().toUtf8() << " to "
            << OpcUa_BuiltInType_Name(static_cast<OpcUa_Byte>(c.type));
}

constexpr const char* tooLarge = "BadOutOfRange";
constexpr const char* badSyntax = "BadSyntaxError";

} // namespace

TEST(Conversion, FollowsTheTable)
{
    for (int row = 0; row < typeCount; ++row)
        for (int column = 0; column < typeCount; ++column) {
            const char* from = OpcUa_BuiltInType_Name(static_cast<OpcUa_Byte>(types[row]));
            const char* to = OpcUa_BuiltInType_Name(static_cast<OpcUa_Byte>(types[column]));
            const char expected = table[row][column];
            EXPECT_EQ(letter(UaVariant::conversion(types[row], types[column])), expected)
                << from << " to " << to;
            UaVariant value = sampleFor(types[row], types[column]);
            const UaStatusCode status = value.changeType(types[column], false);
            EXPECT_EQ(status.code(), expected == '.' ? OpcUa_BadTypeMismatch : OpcUa_Good)
                << from << " to " << to;
            EXPECT_EQ(value.type(), expected == '.' ? types[row] : types[column]);
        }
}

TEST(Conversion, NumbersFitOrAreRefused)
{
    const double infinity = std::numeric_limits<double>::infinity();
    expectAll({
        {UaVariant(OpcUa_Int32{-1}), OpcUaType_UInt32, tooLarge},
        {UaVariant(OpcUa_Int32{255}), OpcUaType_Byte, "255"},
        {UaVariant(OpcUa_Int32{256}), OpcUaType_Byte, tooLarge},
        {UaVariant(std::numeric_limits<OpcUa_UInt64>::max()), OpcUaType_Int64, tooLarge},
        {UaVariant(std::numeric_limits<OpcUa_Int64>::min()), OpcUaType_Double, "-9223372036854775808"},
        {UaVariant(2.5), OpcUaType_Int16, "3"},
        {UaVariant(-2.5), OpcUaType_Int16, "-2"},
        {UaVariant(-2.6), OpcUaType_Int16, "-3"},
        {UaVariant(0.49999999999999994), OpcUaType_Int32, "0"},
        {UaVariant(-0.4), OpcUaType_Byte, "0"},
        {UaVariant(32767.5), OpcUaType_Int16, tooLarge},
        {UaVariant(9223372036854775807.0), OpcUaType_Int64, tooLarge},
        {UaVariant(-9223372036854775808.0), OpcUaType_Int64, "-9223372036854775808"},
        {UaVariant(18446744073709551616.0), OpcUaType_UInt64, tooLarge},
        {UaVariant(std::nan("")), OpcUaType_Int32, tooLarge},
        {UaVariant(infinity), OpcUaType_UInt64, tooLarge},
        {UaVariant(1e300), OpcUaType_Float, tooLarge},
        {UaVariant(-infinity), OpcUaType_Float, "-INF"},
        {UaVariant(0.25), OpcUaType_Boolean, "true"},
        {UaVariant(OpcUa_SByte{0}), OpcUaType_Boolean, "false"},
        {UaVariant(true), OpcUaType_Float, "1"},
    });
}

TEST(Conversion, TextsAreReadStrictly)
{
    expectAll({
        {UaVariant(" +12\n"), OpcUaType_SByte, "12"},
        {UaVariant("-128"), OpcUaType_SByte, "-128"},
        {UaVariant("128"), OpcUaType_SByte, tooLarge},
        {UaVariant("99999999999999999999999"), OpcUaType_Int32, tooLarge},
        {UaVariant("18446744073709551615"), OpcUaType_UInt64, "18446744073709551615"},
        {UaVariant(""), OpcUaType_Int32, badSyntax},
        {UaVariant("1.0"), OpcUaType_Int32, badSyntax},
        {UaVariant("+-1"), OpcUaType_Int32, badSyntax},
        {UaVariant("0x10"), OpcUaType_Int32, badSyntax},
        {UaVariant("1,5"), OpcUaType_Double, badSyntax},
        {UaVariant("inf"), OpcUaType_Double, badSyntax},
        {UaVariant("0x1p3"), OpcUaType_Double, badSyntax},
        {UaVariant("-INF"), OpcUaType_Double, "-INF"},
        {UaVariant("NaN"), OpcUaType_Float, "NaN"},
        {UaVariant("1e400"), OpcUaType_Double, tooLarge},
        {UaVariant("1e40"), OpcUaType_Float, tooLarge},
        {UaVariant("+1.5e3"), OpcUaType_Float, "1500"},
        {UaVariant("0.1"), OpcUaType_Float, "0.1"},
        {UaVariant("true"), OpcUaType_Boolean, "true"},
        {UaVariant("0"), OpcUaType_Boolean, "false"},
        {UaVariant("yes"), OpcUaType_Boolean, badSyntax},
        {UaVariant("ns=2;s=a"), OpcUaType_NodeId, "ns=2;s=a"},
        {UaVariant("nonsense"), OpcUaType_NodeId, badSyntax},
        {UaVariant("2026-02-30"), OpcUaType_DateTime, badSyntax},
        {UaVariant("text"), OpcUaType_LocalizedText, "text"},
    });
    EXPECT_EQ(UaVariant("2:name").toQualifiedName(), UaQualifiedName("2:name", 0));
    EXPECT_TRUE(UaVariant("text").toLocalizedText().locale().isNull());
}

TEST(Conversion, TextOfANumberReadsBackAsTheSame)
{
    for (const double number : {0.1, 1.0 / 3, 5e-324, 1.7976931348623157e308, -0.0, 123456789.125}) {
        UaVariant value(number);
        ASSERT_TRUE(value.changeType(OpcUaType_String, false).isGood());
        ASSERT_TRUE(value.changeType(OpcUaType_Double, false).isGood());
        EXPECT_EQ(value, UaVariant(number)) << number;
    }
    for (const float number : {0.1f, 16777217.0f, 3.4028235e38f, 1e-45f})
        EXPECT_EQ(UaVariant(UaVariant(number).toString()).toFloat(), number);
}

TEST(Conversion, IdentifiersAndStatusCodes)
{
    expectAll({
        {UaVariant(UaExpandedNodeId(UaNodeId("a", 2))), OpcUaType_NodeId, "ns=2;s=a"},
        {UaVariant(UaExpandedNodeId(UaNodeId("a", 0), "urn:x")), OpcUaType_NodeId, tooLarge},
        {UaVariant(UaExpandedNodeId(UaNodeId("a", 2), UaString(), 1)), OpcUaType_NodeId, tooLarge},
        {UaVariant(UaByteString::fromHex("00")), OpcUaType_Guid, tooLarge},
        {UaVariant(UaQualifiedName("name", 2)), OpcUaType_String, "name"},
        {UaVariant(UaQualifiedName("name", 2)), OpcUaType_LocalizedText, "name"},
        {UaVariant(UaStatusCode(OpcUa_BadTimeout)), OpcUaType_UInt16, "32778"},
        {UaVariant(UaStatusCode(OpcUa_BadTimeout)), OpcUaType_Int32, "-2146828288"},
        {UaVariant(UaStatusCode(OpcUa_BadTimeout)), OpcUaType_UInt64, "2148139008"},
        {UaVariant(OpcUa_UInt16{0x800A}), OpcUaType_StatusCode, "BadTimeout"},
        {UaVariant(OpcUa_Int32{-2146828288}), OpcUaType_StatusCode, "BadTimeout"},
        {UaVariant(OpcUa_Int64{2148139008}), OpcUaType_StatusCode, "BadTimeout"},
        {UaVariant(OpcUa_Int64{-1}), OpcUaType_StatusCode, tooLarge},
    });
}

TEST(Conversion, ShapesFollow)
{
    const OpcUa_Int32 numbers[] = {1, 2, 300, 4};
    const OpcUa_Int32 square[] = {2, 2};
    UaVariant array;
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Int32, 4, numbers)));
    UaVariant matrix = array;
    ASSERT_EQ(matrix.setDimensions(square), OpcUa_Good);
    EXPECT_EQ(converted(array, OpcUaType_String, true), "{1|2|300|4}");
    EXPECT_EQ(converted(matrix, OpcUaType_Double, true), "[2,2]{1|2|300|4}");
    EXPECT_EQ(converted(array, OpcUaType_Byte, true), tooLarge);
    EXPECT_EQ(converted(array, OpcUaType_NodeId, true), "BadTypeMismatch");
    EXPECT_EQ(converted(array, OpcUaType_String, false), "BadTypeMismatch");
    EXPECT_EQ(converted(array, OpcUaType_Variant, true), "{1|2|300|4}");
    EXPECT_EQ(converted(UaVariant("5"), OpcUaType_Int32, true), "{5}");
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Int32, 1, numbers)));
    EXPECT_EQ(converted(array, OpcUaType_Double, false), "1");

    EXPECT_EQ(converted(UaVariant(UaByteString::fromHex("01ff")), OpcUaType_Byte, true), "{1|255}");
    const OpcUa_Byte bytes[] = {1, 255};
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Byte, 2, bytes)));
    EXPECT_EQ(converted(array, OpcUaType_ByteString, false), "0x01ff");

    const UaVariant mixed[] = {UaVariant("7"), UaVariant(8.0), UaVariant(true)};
    EXPECT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_Variant, mixed)));
    EXPECT_EQ(converted(array, OpcUaType_Int16, true), "{7|8|1}");

    EXPECT_TRUE(OpcUa_IsGood(array.attachArray(OpcUaType_Int32, -1, nullptr)));
    ASSERT_TRUE(array.changeType(OpcUaType_String, true).isGood());
    EXPECT_TRUE(array.isArray() && array.arraySize() == -1) << "a null array stays one";
    EXPECT_EQ(converted(array, OpcUaType_ByteString, true), "BadTypeMismatch") << "also without elements";
    UaVariant null;
    EXPECT_EQ(null.changeType(OpcUaType_Int32, false), OpcUa_BadTypeMismatch);
    EXPECT_EQ(UaVariant("x").changeType(static_cast<OpcUa_BuiltInType>(30), false), OpcUa_BadTypeMismatch);
}
