// Memory that runs out, and values made by hand instead of read.
#include "countingmemory.h"
#include "describe.h"
#include "encodingtest.h"

#include <opcua/opcua_types.h>

#include <gtest/gtest.h>

namespace {

// Runs a step with the first, second ... allocation failing until it gets through; answers how often it
// failed.
template <class Step>
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

} // namespace

TEST(EncodingLifeCycle, everyAllocationMayFail)
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

TEST(EncodingLifeCycle, emptyAndNullAreToldApart)
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

TEST(EncodingLifeCycle, attachedStructureIsWrittenWithItsLength)
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

TEST(EncodingLifeCycle, whatCanNotBeWrittenIsRefused)
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
