// Our encoding against bytes that another implementation made.
#include <opcua/opcua_types.h>
#include <tests/unit/stack/countingmemory.h>
#include <tests/unit/stack/describe.h>
#include <tests/unit/stack/encodingtest.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

TEST(ReferenceEncoding, EveryBuiltInTypeReadsAndWritesTheSameBytes)
{
    const size_t blocksBefore = countingmemory::liveBlocks();
    std::set<OpcUa_Byte> seen;
    for (const ReferenceCase& reference : referenceCases("builtin.txt")) {
        SCOPED_TRACE(reference.type + " " + reference.name);
        const OpcUa_Byte type = builtInTypeByName(reference.type);
        ASSERT_NE(type, OpcUaType_Null);
        seen.insert(type);

        Value value(type);
        size_t consumed = 0;
        ASSERT_EQ(value.decode(reference.bytes, &consumed), OpcUa_Good);
        EXPECT_EQ(consumed, reference.bytes.size());
        EXPECT_EQ(describe(type, value.data()), reference.value);
        EXPECT_EQ(toHex(value.encode()), toHex(reference.bytes));

        Value copy(type);
        ASSERT_EQ(copy.copyFrom(value), OpcUa_Good);
        EXPECT_EQ(copy.compare(value), 0);
        EXPECT_EQ(describe(type, copy.data()), reference.value);
    }
    EXPECT_EQ(seen.size(), 25u);
    EXPECT_EQ(countingmemory::liveBlocks(), blocksBefore);
}

// Two different values of one type never compare equal, and the order does not depend on the side.
TEST(ReferenceEncoding, DifferentValuesCompareUnequal)
{
    const std::vector<ReferenceCase> cases = referenceCases("builtin.txt");
    for (size_t i = 1; i < cases.size(); ++i) {
        for (size_t j = i - 1; j < i && cases[j].type == cases[i].type; --j) {
            SCOPED_TRACE(cases[i].type + " " + cases[i].name + " / " + cases[j].name);
            const OpcUa_Byte type = builtInTypeByName(cases[i].type);
            Value left(type);
            Value right(type);
            ASSERT_EQ(left.decode(cases[i].bytes), OpcUa_Good);
            ASSERT_EQ(right.decode(cases[j].bytes), OpcUa_Good);
            const int order = left.compare(right);
            EXPECT_NE(order, 0);
            EXPECT_EQ(order<0, right.compare(left)> 0);
        }
    }
}

TEST(ReferenceEncoding, MessagesReadAndWriteTheSameBytes)
{
    const size_t blocksBefore = countingmemory::liveBlocks();
    const std::vector<ReferenceCase> cases = referenceCases("messages.txt");
    ASSERT_GE(cases.size(), 20u);
    const opcua::EncodingLimits limits;
    for (const ReferenceCase& reference : cases) {
        SCOPED_TRACE(reference.type + " " + reference.name);
        opcua::DecodedMessage message;
        ASSERT_EQ(opcua::decodeMessage(reference.bytes, limits, message), OpcUa_Good);
        EXPECT_EQ(message.type->TypeName, reference.type);
        EXPECT_EQ(std::to_string(message.type->BinaryEncodingTypeId), reference.value);

        Bytes encoded = fromHex("cafe"); // what is there already stays
        ASSERT_EQ(opcua::encodeMessage(*message.type, message.object, limits, encoded), OpcUa_Good);
        EXPECT_EQ(toHex(encoded), "cafe" + toHex(reference.bytes));

        void* copy = OpcUa_EncodeableObject_Create(message.type);
        OpcUa_EncodeableObject_Clear(message.type, copy);
        ASSERT_EQ(OpcUa_EncodeableObject_Copy(message.type, message.object, copy), OpcUa_Good);
        EXPECT_EQ(OpcUa_EncodeableObject_Compare(message.type, message.object, copy), 0);
        OpcUa_EncodeableObject_Delete(message.type, &copy);
        EXPECT_EQ(copy, nullptr);
    }
    EXPECT_EQ(countingmemory::liveBlocks(), blocksBefore);
}

// Fields land where the C structure has them, not only where writer and reader agree.
TEST(ReferenceEncoding, FieldsOfMessagesHaveTheirPlace)
{
    for (const ReferenceCase& reference : referenceCases("messages.txt")) {
        opcua::DecodedMessage message;
        ASSERT_EQ(opcua::decodeMessage(reference.bytes, opcua::EncodingLimits{}, message), OpcUa_Good);
        if (reference.type == "ServiceFault") {
            const auto& fault = *static_cast<const OpcUa_ServiceFault*>(message.object);
            EXPECT_EQ(fault.ResponseHeader.ServiceResult, OpcUa_BadSessionIdInvalid);
            EXPECT_EQ(fault.ResponseHeader.RequestHandle, 16u);
        } else if (reference.type == "ReadRequest") {
            const auto& request = *static_cast<const OpcUa_ReadRequest*>(message.object);
            EXPECT_EQ(request.MaxAge, 0.25);
            ASSERT_EQ(request.NoOfNodesToRead, 2);
            EXPECT_EQ(describe(OpcUaType_NodeId, &request.NodesToRead[0].NodeId),
                      "ns=2 kind=string id=\"Temperature\"");
        } else if (reference.type == "PublishResponse" && reference.name == "data-and-events") {
            const auto& response = *static_cast<const OpcUa_PublishResponse*>(message.object);
            EXPECT_EQ(response.SubscriptionId, 42u);
            ASSERT_EQ(response.NotificationMessage.NoOfNotificationData, 2);
            const OpcUa_ExtensionObject& first = response.NotificationMessage.NotificationData[0];
            ASSERT_EQ(first.Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
            EXPECT_EQ(first.Body.EncodeableObject.Type, &OpcUa_DataChangeNotification_EncodeableType);
        }
    }
}
