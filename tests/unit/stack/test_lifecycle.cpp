// Memory that runs out, and values made by hand instead of read.
#include <opcua/opcua_types.h>
#include <tests/unit/stack/countingmemory.h>
#include <tests/unit/stack/describe.h>
#include <tests/unit/stack/encodingtest.h>

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <utility>
#include <vector>

namespace {

// Runs a step with the first, second ... allocation failing until it gets through; answers how often it
// failed.
template <typename Step>
long failEachAllocation(Step step)
{
    for (long failing = 0;; ++failing) {
        const size_t before = countingmemory::liveBlocks();
        countingmemory::failAfter(failing);
        const OpcUa_StatusCode status = step();
        countingmemory::failAfter(-1);
        if (OpcUa_IsGood(status))
            return failing;
        EXPECT_EQ(status, OpcUa_BadOutOfMemory);
        EXPECT_EQ(countingmemory::liveBlocks(), before) << "allocation " << failing;
        if (testing::Test::HasFailure())
            return failing;
    }
}

// The wire form of a value in which every part that can hold memory does: texts of one letter, arrays of one
// element, what is optional present. Made from the tables, and no reader or writer had a hand in it.
class FilledValue
{
public:
    static Bytes of(const OpcUa_EncodeableType& type)
    {
        FilledValue value;
        value.structure(type);
        return std::move(value.m_bytes);
    }

private:
    static constexpr int deepest = 3; // types that hold themselves end here

    void text() { m_bytes = std::move(m_bytes) + fromHex("01000000 61"); }
    void structure(const OpcUa_EncodeableType& type)
    {
        ++m_depth;
        const bool whole = m_depth <= deepest;
        if (type.IsUnion) {
            m_bytes = std::move(m_bytes) + wire(whole ? OpcUa_UInt32{1} : OpcUa_UInt32{0});
            if (whole && type.FieldCount > 0)
                field(type.Fields[0]);
        } else {
            if (type.HasOptionalFields)
                m_bytes = std::move(m_bytes) + wire(whole ? maskOf(type) : OpcUa_UInt32{0});
            for (OpcUa_UInt32 n = 0; n < type.FieldCount; ++n)
                if (whole || (type.OptionalMask >> n & 1) == 0)
                    field(type.Fields[n]);
        }
        --m_depth;
    }
    static OpcUa_UInt32 maskOf(const OpcUa_EncodeableType& type)
    {
        return (OpcUa_UInt32{1} << std::popcount(type.OptionalMask)) - 1;
    }
    void field(const OpcUa_FieldDescriptor& one)
    {
        if (one.IsArray) {
            const bool empty = m_depth > deepest;
            m_bytes = std::move(m_bytes) + wire(empty ? OpcUa_Int32{0} : OpcUa_Int32{1});
            if (empty)
                return;
        }
        if (one.Kind == OpcUa_FieldKind_Structure)
            structure(*one.StructureType);
        else
            scalar(one.Kind);
    }
    void scalar(OpcUa_Byte kind)
    {
        switch (kind) {
        case OpcUaType_String:
        case OpcUaType_ByteString:
        case OpcUaType_XmlElement:
            return text();
        case OpcUaType_NodeId:
            m_bytes = std::move(m_bytes) + fromHex("03 0200 01000000 61");
            return;
        case OpcUaType_ExpandedNodeId: // with its namespace as text
            m_bytes = std::move(m_bytes) + fromHex("83 0000 01000000 61 01000000 62");
            return;
        case OpcUaType_QualifiedName:
            m_bytes = std::move(m_bytes) + fromHex("0100 01000000 61");
            return;
        case OpcUaType_LocalizedText:
            m_bytes = std::move(m_bytes) + fromHex("03 01000000 61 01000000 62");
            return;
        case OpcUaType_ExtensionObject: // an Argument
            m_bytes = std::move(m_bytes) + fromHex("0100 2a01 01") + argumentBody();
            return;
        case OpcUaType_Variant: // two texts
            m_bytes = std::move(m_bytes) + fromHex("8c 02000000 01000000 61 01000000 62");
            return;
        case OpcUaType_DataValue:
            m_bytes = std::move(m_bytes) + fromHex("01 0c 01000000 61");
            return;
        case OpcUaType_DiagnosticInfo: // a text and one inside
            m_bytes = std::move(m_bytes) + fromHex("50 01000000 61 10 01000000 62");
            return;
        default:
            m_bytes = std::move(m_bytes) + Bytes(kind == OpcUa_FieldKind_Enumeration ? 4 : sizeOf(kind), 1);
        }
    }
    static size_t sizeOf(OpcUa_Byte kind) { return OpcUa_BuiltInType_Size(kind); }
    static Bytes argumentBody()
    {
        const Bytes body =
            fromHex("01000000 61 03 0200 01000000 62 ffffffff 01000000 02000000 02 01000000 63");
        return wire(static_cast<OpcUa_Int32>(body.size())) + body;
    }

    Bytes m_bytes;
    int m_depth = 0;
};

} // namespace

TEST(EncodingLifeCycle, EveryAllocationOfEveryTypeMayFail)
{
    const size_t before = countingmemory::liveBlocks();
    size_t types = 0;
    long failures = 0;
    for (OpcUa_UInt32 id = 1; id < 40'000; ++id) {
        const OpcUa_EncodeableType* const type = OpcUa_EncodeableType_FindByTypeId(id);
        if (type == nullptr)
            continue;
        SCOPED_TRACE(type->TypeName);
        ++types;
        const Bytes bytes = FilledValue::of(*type);
        void* const object = OpcUa_EncodeableObject_Create(type);
        void* const copy = OpcUa_EncodeableObject_Create(type);
        size_t consumed = 0;
        failures += failEachAllocation([&] {
            return OpcUa_EncodeableObject_DecodeBinary(type, bytes.data(), bytes.size(), object, &consumed);
        });
        EXPECT_EQ(consumed, bytes.size());
        failures += failEachAllocation([&] { return OpcUa_EncodeableObject_Copy(type, object, copy); });
        EXPECT_EQ(OpcUa_EncodeableObject_Compare(type, object, copy), 0);
        OpcUa_ByteString encoded;
        failEachAllocation([&] { return OpcUa_EncodeableObject_EncodeBinary(type, copy, &encoded); });
        EXPECT_EQ(toHex({encoded.Data, static_cast<size_t>(encoded.Length)}), toHex(bytes));
        OpcUa_ByteString_Clear(&encoded);
        for (void* one : {object, copy})
            OpcUa_EncodeableObject_Delete(type, &one);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(types, 300u);
    EXPECT_GT(failures, 1000);
    EXPECT_EQ(countingmemory::liveBlocks(), before);
}

TEST(EncodingLifeCycle, EveryAllocationMayFail)
{
    const size_t before = countingmemory::liveBlocks();
    for (const ReferenceCase& reference : referenceCases("messages.txt")) {
        SCOPED_TRACE(reference.type + " " + reference.name);
        opcua::DecodedMessage message;
        EXPECT_GE(failEachAllocation([&] {
                      return opcua::decodeMessage(reference.bytes, opcua::EncodingLimits{}, message);
                  }),
                  1);
        void* const copy = OpcUa_EncodeableObject_Create(message.type);
        failEachAllocation([&] { return OpcUa_EncodeableObject_Copy(message.type, message.object, copy); });
        EXPECT_EQ(OpcUa_EncodeableObject_Compare(message.type, message.object, copy), 0);
        OpcUa_EncodeableObject_Clear(message.type, copy);
        OpcUa_Memory_Free(copy);
    }
    for (const ReferenceCase& reference : referenceCases("builtin.txt")) {
        SCOPED_TRACE(reference.type + " " + reference.name);
        const OpcUa_Byte type = builtInTypeByName(reference.type);
        Value value(type);
        failEachAllocation([&] { return value.decode(reference.bytes); });
        Value copy(type);
        failEachAllocation([&] { return copy.copyFrom(value); });
        EXPECT_EQ(describe(type, copy.data()), reference.value);
        OpcUa_ByteString encoded;
        failEachAllocation([&] { return OpcUa_BuiltInType_EncodeBinary(type, value.data(), &encoded); });
        OpcUa_ByteString_Clear(&encoded);
    }
    EXPECT_EQ(countingmemory::liveBlocks(), before);
}

TEST(EncodingLifeCycle, EmptyAndNullAreToldApart)
{
    OpcUa_String empty;
    OpcUa_String null;
    OpcUa_String text;
    ASSERT_EQ(OpcUa_String_Assign(&empty, "", -1), OpcUa_Good);
    ASSERT_EQ(OpcUa_String_Assign(&null, nullptr, 5), OpcUa_Good);
    ASSERT_EQ(OpcUa_String_Assign(&text, "texts", 4), OpcUa_Good);
    EXPECT_STREQ(text.Data, "text");
    EXPECT_LT(OpcUa_String_Compare(&null, &empty), 0);
    EXPECT_LT(OpcUa_String_Compare(&empty, &text), 0);
    OpcUa_String_Clear(&empty);
    OpcUa_String_Clear(&text);
    EXPECT_EQ(OpcUa_String_Compare(&null, &text), 0);

    // an array that the peer sent empty goes back empty, one that it left out goes back as null
    opcua::DecodedMessage message;
    const auto answer = [&](const char* array) {
        const Bytes header = Bytes(8 + 4 + 4 + 1, 0) + wire(-1) + fromHex("000000");
        const Bytes bytes = fromHex("01007a02") + header + fromHex(array) + wire(-1);
        EXPECT_EQ(opcua::decodeMessage(bytes, opcua::EncodingLimits{}, message), OpcUa_Good);
        EXPECT_EQ(static_cast<OpcUa_ReadResponse*>(message.object)->NoOfResults, 0);
        Bytes again;
        EXPECT_EQ(opcua::encodeMessage(*message.type, message.object, opcua::EncodingLimits{}, again),
                  OpcUa_Good);
        return toHex(again) == toHex(bytes);
    };
    EXPECT_TRUE(answer("00000000"));
    EXPECT_TRUE(answer("ffffffff"));
}

TEST(EncodingLifeCycle, AttachedStructureIsWrittenWithItsLength)
{
    const size_t before = countingmemory::liveBlocks();
    OpcUa_ExtensionObject object;
    OpcUa_ExtensionObject_Initialize(&object);
    auto* const range = static_cast<OpcUa_Range*>(OpcUa_EncodeableObject_Create(&OpcUa_Range_EncodeableType));
    range->Low = -1.0;
    range->High = 1.0;
    OpcUa_ExtensionObject_AttachEncodeable(&object, &OpcUa_Range_EncodeableType, range);
    OpcUa_ByteString bytes;
    ASSERT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_ExtensionObject, &object, &bytes), OpcUa_Good);
    EXPECT_EQ(toHex({bytes.Data, static_cast<size_t>(bytes.Length)}), "0100760301"
                                                                      "10000000"
                                                                      "000000000000f0bf"
                                                                      "000000000000f03f");
    OpcUa_ByteString_Clear(&bytes);
    OpcUa_ExtensionObject_Clear(&object);
    EXPECT_EQ(countingmemory::liveBlocks(), before);
}

// The longest texts that are written without a look at the room for each.
TEST(EncodingLifeCycle, FieldsFindRoomWhereverInTheBufferTheyBegin)
{
    OpcUa_EUInformation unit;
    OpcUa_EncodeableObject_Initialize(&OpcUa_EUInformation_EncodeableType, &unit);
    const std::string longest(64, 'x');
    for (OpcUa_String* const text :
         {&unit.DisplayName.Locale, &unit.DisplayName.Text, &unit.Description.Locale, &unit.Description.Text})
        ASSERT_EQ(OpcUa_String_Assign(text, longest.data(), 64), OpcUa_Good);
    for (size_t before = 0; before < 1200; ++before) {
        const std::string uri(before, 'u');
        OpcUa_String_Clear(&unit.NamespaceUri);
        ASSERT_EQ(OpcUa_String_Assign(&unit.NamespaceUri, uri.data(), static_cast<OpcUa_Int32>(before)),
                  OpcUa_Good);
        Bytes bytes;
        ASSERT_EQ(opcua::encodeMessage(OpcUa_EUInformation_EncodeableType, &unit, {}, bytes), OpcUa_Good);
        EXPECT_EQ(bytes.size(), 4 + 4 + before + 4 + 2 * (1 + 2 * (4 + longest.size())));
    }
    OpcUa_EncodeableObject_Clear(&OpcUa_EUInformation_EncodeableType, &unit);
}

TEST(EncodingLifeCycle, WhatCannotBeWrittenIsRefused)
{
    OpcUa_Variant variant{};
    OpcUa_ByteString bytes;
    variant.Datatype = 26;
    EXPECT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_Variant, &variant, &bytes), OpcUa_BadEncodingError);
    variant.Datatype = OpcUaType_NodeId; // and no node id
    EXPECT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_Variant, &variant, &bytes), OpcUa_BadEncodingError);
    EXPECT_EQ(bytes.Data, nullptr);
    OpcUa_NodeId id{};
    id.IdentifierType = 9;
    EXPECT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_NodeId, &id, &bytes), OpcUa_BadEncodingError);

    // deeper than any reader accepts
    std::vector<OpcUa_DiagnosticInfo> chain(102);
    for (size_t i = 0; i < chain.size(); ++i) {
        OpcUa_DiagnosticInfo_Initialize(&chain[i]);
        chain[i].InnerDiagnosticInfo = i + 1 < chain.size() ? &chain[i + 1] : nullptr;
    }
    EXPECT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_DiagnosticInfo, &chain[0], &bytes),
              OpcUa_BadEncodingLimitsExceeded);
    ASSERT_EQ(OpcUa_BuiltInType_EncodeBinary(OpcUaType_DiagnosticInfo, &chain[1], &bytes), OpcUa_Good);
    EXPECT_EQ(bytes.Length, 101);
    OpcUa_ByteString_Clear(&bytes);
}

TEST(EncodingLifeCycle, NullPointersAreAnsweredAndNotFollowed)
{
    OpcUa_String text = {-1, nullptr};
    OpcUa_ByteString bytes;
    OpcUa_NodeId id{};
    OpcUa_Range range{1.0, 2.0};
    const OpcUa_EncodeableType& type = OpcUa_Range_EncodeableType;
    OpcUa_Variant_Initialize(nullptr);
    OpcUa_ExtensionObject_Clear(nullptr);
    OpcUa_EncodeableObject_Clear(nullptr, &range);
    OpcUa_EncodeableObject_Delete(&type, nullptr);
    EXPECT_EQ(OpcUa_String_Copy(nullptr, &text), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_Assign(nullptr, "a", -1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableObject_Copy(&type, &range, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableObject_EncodeBinary(&type, nullptr, &bytes), OpcUa_BadInvalidArgument);
    EXPECT_EQ(bytes.Data, nullptr);
    EXPECT_EQ(OpcUa_EncodeableObject_DecodeBinary(&type, nullptr, 16, &range, nullptr),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(range.High, 0.0);
    EXPECT_EQ(OpcUa_BuiltInType_CopyArray(OpcUaType_NodeId, &id, nullptr, 1), OpcUa_BadInvalidArgument);
    EXPECT_LT(OpcUa_NodeId_Compare(nullptr, &id), 0);
    EXPECT_EQ(OpcUa_NodeId_Compare(nullptr, nullptr), 0);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(nullptr));
}
