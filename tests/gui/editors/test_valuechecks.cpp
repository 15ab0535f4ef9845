// What is known to be wrong or unusual with a value before it is sent.
#include <tests/support/modeltext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace {
QlumValueContext place(OpcUa_BuiltInType type, OpcUa_Int32 rank = -1)
{
    QlumValueContext context;
    context.builtInType = type;
    context.dataType = UaNodeId(type);
    context.valueRank = rank;
    return context;
}

UaVariant doubles(std::vector<double> numbers)
{
    UaVariant value;
    EXPECT_EQ(value.setArray(OpcUaType_Double, static_cast<OpcUa_Int32>(numbers.size()), numbers.data()), 0u);
    return value;
}

TEST(ValueChecks, ValuesOutsideTheRangesOfADeviceAreOnlyRemarked)
{
    QlumValueContext context = place(OpcUaType_Double);
    context.euRange = QlumValueRange{0, 100};
    context.instrumentRange = QlumValueRange{-10, 110};
    context.unit = "bar";
    EXPECT_EQ(qlumCheckValue(UaVariant(100.0), context).text(), "");
    const QlumValueCheck above = qlumCheckValue(UaVariant(105.5), context);
    EXPECT_EQ(above.refused, "");
    EXPECT_EQ(above.unusual, "105.5 bar lies outside EURange, 0 to 100 bar.");
    EXPECT_TRUE(qlumCheckValue(UaVariant(-11.0), context).unusual.contains("InstrumentRange"));
    context.euRange = QlumValueRange{0, 0};
    EXPECT_EQ(qlumCheckValue(UaVariant(5.0), context).text(), "")
        << "a range that was never set says nothing";
    context = place(OpcUaType_Double, 1);
    context.euRange = QlumValueRange{0, 100};
    EXPECT_TRUE(qlumCheckValue(doubles({1, 2, 300}), context).unusual.startsWith("[2]: 300"));
}

TEST(ValueChecks, TypeAndShapeMustBeTheDeclaredOnes)
{
    EXPECT_EQ(qlumCheckValue(UaVariant(OpcUa_Int32{1}), place(OpcUaType_Double)).refused,
              "It is of type Int32, the server expects Double.");
    QlumValueContext unsignedNumber = place(OpcUaType_Null);
    unsignedNumber.dataType = UaNodeId(28);
    EXPECT_EQ(qlumCheckValue(UaVariant(OpcUa_UInt16{1}), unsignedNumber).refused, "");
    EXPECT_NE(qlumCheckValue(UaVariant(OpcUa_Int16{1}), unsignedNumber).refused, "");
    EXPECT_NE(qlumCheckValue(UaVariant(1.0), place(OpcUaType_Double, 1)).refused, "");
    EXPECT_NE(qlumCheckValue(doubles({1}), place(OpcUaType_Double)).refused, "");
    EXPECT_EQ(qlumCheckValue(doubles({1}), place(OpcUaType_Double, -3)).refused, "");
    EXPECT_EQ(qlumCheckValue(doubles({1}), place(OpcUaType_Double, 0)).refused, "");
    QlumValueContext matrix = place(OpcUaType_Double, 2);
    matrix.arrayDimensions = {0, 2};
    UaVariant value = doubles({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(qlumCheckValue(value, matrix).refused,
              "The server expects a matrix of 2 dimensions, at most any x 2, this has 1 dimensions.");
    ASSERT_TRUE(OpcUa_IsGood(value.setDimensions(std::array<OpcUa_Int32, 2>{3, 2})));
    EXPECT_EQ(qlumCheckValue(value, matrix).refused, "");
    ASSERT_TRUE(OpcUa_IsGood(value.setDimensions(std::array<OpcUa_Int32, 2>{2, 3})));
    EXPECT_EQ(qlumCheckValue(value, matrix).refused,
              "Dimension 2 has 3 elements, the server takes 2 at most.");
    const UaByteString bytes(UaByteArray(3));
    EXPECT_EQ(qlumCheckValue(UaVariant(bytes), place(OpcUaType_Byte, 1)).refused, "")
        << "a byte string stands for an array of bytes";
}

TEST(ValueChecks, LengthNamesAndAccessAreKnownBeforehand)
{
    QlumValueContext text = place(OpcUaType_String);
    text.maxStringLength = 4;
    EXPECT_EQ(qlumCheckValue(UaVariant("abcd"), text).refused, "");
    EXPECT_EQ(qlumCheckValue(UaVariant("\xC3\xA4\xC3\xA4x"), text).refused,
              "It is 5 bytes long, the server takes 4 at most (MaxStringLength).")
        << "bytes, not characters";
    text.accessFault = "Nobody may write it.";
    EXPECT_EQ(qlumCheckValue(UaVariant("a"), text).refused, "Nobody may write it.");

    UaEnumDefinition colors(UaString("Colors"), UaNodeId(3000, 2));
    colors.addValue(1, UaString("Red"));
    UaOptionSetDefinition rights(UaString("Rights"), UaNodeId(3001, 2), OpcUaType_UInt16);
    rights.addBit(0, UaString("Read"));
    auto store = std::make_shared<UaTypeDefinitionStore>();
    store->add(colors);
    store->add(rights);
    QlumValueContext named = place(OpcUaType_Int32);
    named.dictionary = store;
    named.dataType = UaNodeId(3000, 2);
    named.typeName = [](const UaNodeId&) { return QString("Colors"); };
    EXPECT_EQ(qlumCheckValue(UaVariant(OpcUa_Int32{1}), named).text(), "");
    EXPECT_EQ(qlumCheckValue(UaVariant(OpcUa_Int32{7}), named).refused,
              "7 is no value of the enumeration Colors.");
    named.dataType = UaNodeId(3001, 2);
    named.builtInType = OpcUaType_UInt16;
    EXPECT_EQ(qlumCheckValue(UaVariant(OpcUa_UInt16{1}), named).text(), "");
    EXPECT_NE(qlumCheckValue(UaVariant(OpcUa_UInt16{3}), named).unusual, "");
}
} // namespace
