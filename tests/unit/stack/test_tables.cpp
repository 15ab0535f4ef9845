// Structures with optional fields, unions and recursion, which namespace 0 has none of, and the lookups.
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <tests/unit/stack/countingmemory.h>
#include <tests/unit/stack/encodingtest.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace {

struct Sheet
{
    OpcUa_UInt32 EncodingMask;
    OpcUa_String Name; // optional
    OpcUa_Int32 Pages;
    OpcUa_Int32 NoOfNotes; // optional
    OpcUa_String* Notes;
};

struct Choice
{
    OpcUa_UInt32 SwitchField;
    union {
        OpcUa_Double Number;
        OpcUa_String Text;
    };
};

struct Tree
{
    OpcUa_UInt32 EncodingMask;
    OpcUa_Byte Label;
    Tree* Left;  // optional
    Tree* Right; // optional
};

const OpcUa_FieldDescriptor sheetFields[] = {
    {"Name", OpcUaType_String, 0, 0, offsetof(Sheet, Name), 0, nullptr, 12},
    {"Pages", OpcUaType_Int32, 0, 0, offsetof(Sheet, Pages), 0, nullptr, 6},
    {"Notes", OpcUaType_String, 1, 0, offsetof(Sheet, Notes), offsetof(Sheet, NoOfNotes), nullptr, 12},
};
const OpcUa_EncodeableType sheetType = {"Sheet", 1, 2, 3, sizeof(Sheet), sheetFields, 3, 0, 1, 0b101, 8, 0};

const OpcUa_FieldDescriptor choiceFields[] = {
    {"Number", OpcUaType_Double, 0, 0, offsetof(Choice, Number), 0, nullptr, 11},
    {"Text", OpcUaType_String, 0, 0, offsetof(Choice, Text), 0, nullptr, 12},
};
const OpcUa_EncodeableType choiceType = {"Choice", 1, 2, 3, sizeof(Choice), choiceFields, 2, 1, 0, 0, 4, 0};

extern const OpcUa_EncodeableType treeType;
const OpcUa_FieldDescriptor treeFields[] = {
    {"Label", OpcUaType_Byte, 0, 0, offsetof(Tree, Label), 0, nullptr, 3},
    {"Left", OpcUa_FieldKind_Structure, 0, 1, offsetof(Tree, Left), 0, &treeType, 1},
    {"Right", OpcUa_FieldKind_Structure, 0, 1, offsetof(Tree, Right), 0, &treeType, 1},
};
const OpcUa_EncodeableType treeType = {"Tree", 1, 2, 3, sizeof(Tree), treeFields, 3, 0, 1, 0b110, 5, 0};

// Reads, copies, compares and writes again; answers the bytes written, or nothing when they cannot be read.
template <typename Structure>
std::string roundTrip(const OpcUa_EncodeableType& type, const Bytes& bytes)
{
    const size_t before = countingmemory::liveBlocks();
    Structure first;
    Structure second;
    std::memset(static_cast<void*>(&first), 0xA5, sizeof first);
    std::memset(static_cast<void*>(&second), 0xA5, sizeof second);
    size_t consumed = 0;
    std::string result;
    const auto status =
        OpcUa_EncodeableObject_DecodeBinary(&type, bytes.data(), bytes.size(), &first, &consumed);
    if (OpcUa_IsGood(status)) {
        EXPECT_EQ(consumed, bytes.size());
        EXPECT_EQ(OpcUa_EncodeableObject_Copy(&type, &first, &second), OpcUa_Good);
        EXPECT_EQ(OpcUa_EncodeableObject_Compare(&type, &first, &second), 0);
        OpcUa_EncodeableObject_Clear(&type, &first);
        OpcUa_ByteString encoded;
        EXPECT_EQ(OpcUa_EncodeableObject_EncodeBinary(&type, &second, &encoded), OpcUa_Good);
        result = toHex({encoded.Data, static_cast<size_t>(encoded.Length)});
        OpcUa_ByteString_Clear(&encoded);
        EXPECT_NE(OpcUa_EncodeableObject_Compare(&type, &first, &second), 0);
        OpcUa_EncodeableObject_Clear(&type, &second);
    } else {
        EXPECT_EQ(status, OpcUa_BadDecodingError);
        OpcUa_EncodeableObject_Clear(&type, &first); // initialised all the same
    }
    EXPECT_EQ(countingmemory::liveBlocks(), before);
    return result;
}

// What is read is written again; cut by one byte it is refused.
template <typename Structure>
void expectRoundTrip(const OpcUa_EncodeableType& type, const char* hex)
{
    Bytes bytes = fromHex(hex);
    EXPECT_EQ(roundTrip<Structure>(type, bytes), toHex(bytes));
    bytes.pop_back();
    EXPECT_EQ(roundTrip<Structure>(type, bytes), "") << hex;
}

} // namespace

TEST(EncodingTables, OptionalFieldsFollowTheMask)
{
    expectRoundTrip<Sheet>(sheetType, "00000000 07000000");
    expectRoundTrip<Sheet>(sheetType, "01000000 02000000 6869 07000000");
    expectRoundTrip<Sheet>(sheetType, "02000000 07000000 02000000 01000000 61 ffffffff");
    expectRoundTrip<Sheet>(sheetType, "03000000 02000000 6869 07000000 01000000 01000000 61");
    EXPECT_EQ(roundTrip<Sheet>(sheetType, fromHex("04000000 07000000")), "") << "a bit without a field";
}

TEST(EncodingTables, UnionsHoldOneField)
{
    expectRoundTrip<Choice>(choiceType, "01000000 000000000000f03f");
    expectRoundTrip<Choice>(choiceType, "02000000 02000000 6869");
    EXPECT_EQ(roundTrip<Choice>(choiceType, fromHex("03000000 00000000 00000000")), "");
    Choice choice;
    size_t consumed = 0;
    const Bytes nothing = fromHex("00000000");
    EXPECT_EQ(OpcUa_EncodeableObject_DecodeBinary(&choiceType, nothing.data(), 4, &choice, &consumed),
              OpcUa_Good);
    EXPECT_EQ(choice.SwitchField, 0u);
}

TEST(EncodingTables, RecursionIsBounded)
{
    expectRoundTrip<Tree>(treeType, "03000000 01 00000000 02 02000000 03 00000000 04");
    Tree tree;
    const Bytes deep = repeated(fromHex("01000000 01"), 100'000);
    EXPECT_EQ(OpcUa_EncodeableObject_DecodeBinary(&treeType, deep.data(), deep.size(), &tree, nullptr),
              OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(tree.Left, nullptr);
}

TEST(EncodingTables, EveryTypeIsFoundAndItsNullValueIsItsLeastEncoding)
{
    size_t types = 0;
    for (OpcUa_UInt32 id = 1; id < 40'000; ++id) {
        const OpcUa_EncodeableType* const type = OpcUa_EncodeableType_FindByTypeId(id);
        if (type == nullptr)
            continue;
        SCOPED_TRACE(type->TypeName);
        ++types;
        EXPECT_EQ(type->TypeId, id);
        if (type->BinaryEncodingTypeId != 0)
            EXPECT_EQ(OpcUa_EncodeableType_FindByBinaryId(type->BinaryEncodingTypeId), type);
        void* object = OpcUa_EncodeableObject_Create(type);
        OpcUa_ByteString bytes;
        ASSERT_EQ(OpcUa_EncodeableObject_EncodeBinary(type, object, &bytes), OpcUa_Good);
        // a null data value or text takes a byte, so nothing is smaller than the null value
        EXPECT_EQ(static_cast<OpcUa_UInt32>(bytes.Length), type->MinimumSize);
        size_t consumed = 0;
        void* const again = OpcUa_Memory_Alloc(type->AllocationSize);
        EXPECT_EQ(OpcUa_EncodeableObject_DecodeBinary(type, bytes.Data, static_cast<size_t>(bytes.Length),
                                                      again, &consumed),
                  OpcUa_Good);
        EXPECT_EQ(consumed, type->MinimumSize);
        EXPECT_EQ(OpcUa_EncodeableObject_Compare(type, object, again), 0);
        OpcUa_ByteString_Clear(&bytes);
        OpcUa_EncodeableObject_Clear(type, again);
        OpcUa_Memory_Free(again);
        OpcUa_EncodeableObject_Delete(type, &object);
    }
    EXPECT_GT(types, 300u);
    EXPECT_EQ(OpcUa_EncodeableType_FindByBinaryId(0), nullptr);
    EXPECT_EQ(OpcUa_EncodeableType_FindByTypeId(UINT32_MAX), nullptr);
}

TEST(EncodingTables, FieldsTellTheirDataType)
{
    const OpcUa_EncodeableType* const type = OpcUa_EncodeableType_FindByTypeId(OpcUaId_ServerStatusDataType);
    ASSERT_NE(type, nullptr);
    EXPECT_STREQ(type->Fields[0].Name, "StartTime");
    EXPECT_EQ(type->Fields[0].DataTypeId, OpcUaId_UtcTime);
    EXPECT_EQ(type->Fields[0].Kind, OpcUaType_DateTime);
    EXPECT_EQ(type->Fields[2].DataTypeId, OpcUaId_ServerState);
    EXPECT_EQ(type->Fields[3].StructureType, &OpcUa_BuildInfo_EncodeableType);
}

TEST(EncodingTables, NamesOfNumbers)
{
    EXPECT_STREQ(OpcUa_StatusCode_Name(OpcUa_Good), "Good");
    EXPECT_STREQ(OpcUa_StatusCode_Name(0x800A0000u), "BadTimeout");
    EXPECT_STREQ(OpcUa_StatusCode_Name(OpcUa_BadTimeout | 0x0480u), "BadTimeout");
    EXPECT_EQ(OpcUa_StatusCode_Name(0x8FFF0000u), nullptr);
    EXPECT_STREQ(OpcUa_AttributeId_Name(OpcUa_Attributes_NodeId), "NodeId");
    EXPECT_STREQ(OpcUa_AttributeId_Name(13), "Value");
    EXPECT_STREQ(OpcUa_AttributeId_Name(27), "AccessLevelEx");
    EXPECT_EQ(OpcUa_AttributeId_Name(0), nullptr);
    EXPECT_EQ(OpcUa_AttributeId_Name(28), nullptr);
    EXPECT_STREQ(OpcUa_EnumValue_Name(OpcUaId_NodeClass, OpcUa_NodeClass_Variable), "Variable");
    EXPECT_EQ(OpcUa_EnumValue_Name(OpcUaId_NodeClass, 3), nullptr);
    EXPECT_EQ(OpcUa_EnumValue_Name(OpcUaId_Range, 0), nullptr);
    const OpcUa_EnumeratedType* const access = OpcUa_EnumeratedType_Find(OpcUaId_AccessLevelType);
    ASSERT_NE(access, nullptr);
    EXPECT_TRUE(access->IsOptionSet);
    EXPECT_EQ(access->BuiltInType, OpcUaType_Byte);
    EXPECT_STREQ(OpcUa_BuiltInType_Name(OpcUaType_Null), "Null");
    EXPECT_STREQ(OpcUa_BuiltInType_Name(200), "Unknown");
    EXPECT_EQ(OpcUa_BuiltInType_Size(26), 0u);
}
