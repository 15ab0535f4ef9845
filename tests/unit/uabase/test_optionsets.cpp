// Option sets as numbers and as structures.
#include <uabase/structures/uagenericoptionsetvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

namespace {

UaOptionSetDefinition access(OpcUa_BuiltInType type)
{
    UaOptionSetDefinition definition("Access", UaNodeId(30, 2), type);
    definition.setBinaryEncodingId(UaNodeId(31, 2));
    definition.addBit(0, "Read");
    definition.addBit(1, "Write");
    definition.addBit(9, "Far");
    return definition;
}

} // namespace

TEST(OptionSet, NumbersHaveNamedBits)
{
    UaGenericOptionSetValue value;
    ASSERT_TRUE(value.decode(UaVariant(OpcUa_UInt16{0x8203}), access(OpcUaType_UInt16)).isGood());
    EXPECT_TRUE(value.isSet(0) && value.isSet(9) && !value.isSet(2));
    EXPECT_EQ(value.toString(), "Read | Write | Far | 15");
    EXPECT_EQ(access(OpcUaType_UInt16).toString(0x8203, ", "), "Read, Write, Far, 15");
    ASSERT_TRUE(value.setBit(1, false).isGood());
    EXPECT_EQ(value.setBit(16, true), OpcUa_BadOutOfRange);
    UaVariant encoded;
    ASSERT_TRUE(value.encode(encoded).isGood());
    EXPECT_EQ(encoded, UaVariant(OpcUa_UInt16{0x8201}));
    EXPECT_EQ(value.decode(UaVariant(OpcUa_UInt32{1}), access(OpcUaType_UInt16)), OpcUa_BadTypeMismatch);
    EXPECT_TRUE(value.isNull());

    UaGenericOptionSetValue fresh(access(OpcUaType_UInt64));
    ASSERT_TRUE(fresh.setBit(63, true).isGood());
    ASSERT_TRUE(fresh.encode(encoded).isGood());
    EXPECT_EQ(encoded, UaVariant(OpcUa_UInt64{1} << 63));
}

TEST(OptionSet, StructuredFormKnowsWhichBitsAreValid)
{
    const auto body = [](const char* hex) {
        return UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(31, 2)), UaByteString::fromHex(hex)));
    };
    const UaOptionSetDefinition definition = access(OpcUaType_ExtensionObject);
    UaGenericOptionSetValue value;
    ASSERT_TRUE(value.decode(body("02000000 0302 02000000 0102"), definition).isGood());
    EXPECT_EQ(value.toString(), "Read | Far") << "Write is set, but not valid";
    EXPECT_TRUE(value.isSet(1) && !value.isValid(1));
    ASSERT_TRUE(value.setBit(17, true).isGood());
    UaVariant encoded;
    ASSERT_TRUE(value.encode(encoded).isGood());
    EXPECT_EQ(encoded, body("03000000 030202 03000000 010202"));
    EXPECT_EQ(value.setBit(1u << 20, true), OpcUa_BadOutOfRange);
    for (const char* wrong : {"", "02000000 0302", "02000000 0302 01000000 01", "00000000 00000000 00"})
        EXPECT_EQ(value.decode(body(wrong), definition), OpcUa_BadDecodingError) << wrong;
}
