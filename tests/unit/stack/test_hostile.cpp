// Bytes that nobody should send: every one ends in a status, nothing is read or taken beyond what is there.
#include <opcua/opcua_types.h>
#include <tests/unit/stack/countingmemory.h>
#include <tests/unit/stack/describe.h>
#include <tests/unit/stack/encodingtest.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr OpcUa_Byte arrayBit = 0x80;
constexpr OpcUa_Byte matrixBit = 0xC0;

OpcUa_StatusCode decode(OpcUa_Byte type, const Bytes& bytes)
{
    // a block of its own exact size, so that the sanitizer sees a read beyond it
    const std::unique_ptr<OpcUa_Byte[]> exact(new OpcUa_Byte[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    Value value(type);
    return value.decode({exact.get(), bytes.size()});
}

OpcUa_StatusCode decodeMessage(const Bytes& bytes, const opcua::EncodingLimits& limits = {})
{
    const std::unique_ptr<OpcUa_Byte[]> exact(new OpcUa_Byte[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    opcua::DecodedMessage message;
    const OpcUa_StatusCode status = opcua::decodeMessage({exact.get(), bytes.size()}, limits, message);
    EXPECT_EQ(OpcUa_IsGood(status), message.object != nullptr);
    return status;
}

Bytes variantOfVariants(size_t levels, const Bytes& innermost)
{
    return repeated(Bytes{arrayBit | OpcUaType_Variant} + wire<OpcUa_Int32>(1), levels) + innermost;
}

class HostileEncoding : public testing::Test
{
protected:
    ~HostileEncoding() override
    {
        EXPECT_EQ(countingmemory::liveBlocks(), m_blocks) << "something is leaked";
    }

private:
    size_t m_blocks = countingmemory::liveBlocks();
};

} // namespace

TEST_F(HostileEncoding, CutAnywhere)
{
    for (const ReferenceCase& reference : referenceCases("builtin.txt")) {
        for (size_t size = 0; size < reference.bytes.size(); ++size) {
            const Bytes cut(reference.bytes.begin(), reference.bytes.begin() + static_cast<ptrdiff_t>(size));
            ASSERT_EQ(decode(builtInTypeByName(reference.type), cut), OpcUa_BadDecodingError)
                << reference.type << ' ' << reference.name << " at " << size;
        }
    }
    for (const ReferenceCase& reference : referenceCases("messages.txt")) {
        for (size_t size = 0; size < reference.bytes.size(); ++size) {
            const Bytes cut(reference.bytes.begin(), reference.bytes.begin() + static_cast<ptrdiff_t>(size));
            ASSERT_EQ(decodeMessage(cut), OpcUa_BadDecodingError) << reference.type << " at " << size;
        }
        EXPECT_EQ(decodeMessage(reference.bytes + Bytes{0}), OpcUa_BadDecodingError) << "a tail";
    }
}

TEST_F(HostileEncoding, LyingLengthsTakeNoMemory)
{
    countingmemory::resetPeak();
    const size_t before = countingmemory::peakBytes();
    for (const OpcUa_Int32 length : {0x7FFFFFFF, 0x10000001, 5}) {
        for (const OpcUa_Byte type : {OpcUaType_String, OpcUaType_ByteString, OpcUaType_XmlElement})
            EXPECT_EQ(decode(type, wire(length) + Bytes(4, 'x')), OpcUa_BadDecodingError);
        for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_DiagnosticInfo; ++type) {
            const Bytes array = Bytes{static_cast<OpcUa_Byte>(arrayBit | type)} + wire(length);
            EXPECT_EQ(decode(OpcUaType_Variant, array + Bytes(4, 0)), OpcUa_BadDecodingError) << int{type};
        }
    }
    EXPECT_EQ(countingmemory::peakBytes(), before);
}

TEST_F(HostileEncoding, NegativeLengthsAreNull)
{
    for (const OpcUa_Int32 length : {-1, -2, INT32_MIN}) {
        Value text(OpcUaType_String);
        ASSERT_EQ(text.decode(wire(length)), OpcUa_Good);
        EXPECT_EQ(describe(OpcUaType_String, text.data()), "value=null");
        Value variant(OpcUaType_Variant);
        ASSERT_EQ(variant.decode(Bytes{arrayBit | OpcUaType_String} + wire(length)), OpcUa_Good);
        EXPECT_EQ(describe(OpcUaType_Variant, variant.data()), "type=String rank=array length=null");
    }
}

TEST_F(HostileEncoding, LimitsOfTheCallerAreKept)
{
    const Bytes header = fromHex("01008d01") + Bytes(8 + 4 + 4 + 1, 0);
    const auto withTexts = [&](const Bytes& texts) { return header + texts + fromHex("000000"); };
    const Bytes text = wire<OpcUa_Int32>(10) + Bytes(10, 'x');
    const Bytes two = withTexts(wire<OpcUa_Int32>(2) + text + text);
    opcua::EncodingLimits limits;
    EXPECT_EQ(decodeMessage(two, limits), OpcUa_Good);
    limits.maxStringLength = 9;
    EXPECT_EQ(decodeMessage(two, limits), OpcUa_BadEncodingLimitsExceeded);
    limits.maxStringLength = 10;
    limits.maxArrayLength = 1;
    EXPECT_EQ(decodeMessage(two, limits), OpcUa_BadEncodingLimitsExceeded);
    limits.maxArrayLength = 2;
    EXPECT_EQ(decodeMessage(two, limits), OpcUa_Good);

    opcua::DecodedMessage message;
    ASSERT_EQ(opcua::decodeMessage(two, limits, message), OpcUa_Good);
    limits.maxStringLength = 9;
    Bytes out = fromHex("ca");
    EXPECT_EQ(opcua::encodeMessage(*message.type, message.object, limits, out),
              OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(toHex(out), "ca");
}

// What a caller's limits let in they let out again, and nothing that is larger.
TEST_F(HostileEncoding, LimitsOfTheCallerAreTheSameForReadingAndForWriting)
{
    constexpr OpcUa_UInt32 enough = 300; // for everything in these messages
    const Bytes fault = fromHex("01008d01") + Bytes(8 + 4 + 4 + 1, 0) + wire<OpcUa_Int32>(-1);
    const Bytes text = wire<OpcUa_Int32>(10) + Bytes(10, 'x');
    std::vector<ReferenceCase> references = referenceCases("messages.txt");
    references.push_back({"ServiceFault", "body of XML", {}, fault + fromHex("000002") + text});
    references.push_back(
        {"ServiceFault", "value of XML", {}, fault + fromHex("01005502 01 0f000000 10") + text});
    for (const ReferenceCase& reference : references) {
        opcua::DecodedMessage message;
        ASSERT_EQ(opcua::decodeMessage(reference.bytes, {}, message), OpcUa_Good);
        for (const auto limit :
             {&opcua::EncodingLimits::maxStringLength, &opcua::EncodingLimits::maxByteStringLength,
              &opcua::EncodingLimits::maxArrayLength, &opcua::EncodingLimits::maxNestingLevel}) {
            for (OpcUa_UInt32 value = 0; value <= enough; ++value) {
                opcua::EncodingLimits limits;
                limits.*limit = value;
                Bytes out = fromHex("ca");
                const OpcUa_StatusCode read = decodeMessage(reference.bytes, limits);
                ASSERT_EQ(opcua::encodeMessage(*message.type, message.object, limits, out), read)
                    << reference.type << ' ' << reference.name << ' ' << value;
                EXPECT_EQ(out.size(), OpcUa_IsGood(read) ? 1 + reference.bytes.size() : 1);
                ASSERT_TRUE(value < enough || OpcUa_IsGood(read));
            }
        }
    }
}

TEST_F(HostileEncoding, NestingStopsAtOneHundred)
{
    const Bytes leaf{OpcUaType_Byte, 7};
    EXPECT_EQ(decode(OpcUaType_Variant, variantOfVariants(100, leaf)), OpcUa_Good);
    EXPECT_EQ(decode(OpcUaType_Variant, variantOfVariants(101, leaf)), OpcUa_BadEncodingLimitsExceeded);
    // variants that hold one, without an array
    EXPECT_EQ(decode(OpcUaType_Variant, Bytes(100, OpcUaType_Variant) + leaf), OpcUa_Good);
    EXPECT_EQ(decode(OpcUaType_Variant, Bytes(500'000, OpcUaType_Variant)), OpcUa_BadEncodingLimitsExceeded);
    // data values in variants
    EXPECT_EQ(decode(OpcUaType_Variant, repeated({OpcUaType_DataValue, 1}, 100) + leaf), OpcUa_Good);
    EXPECT_EQ(decode(OpcUaType_Variant, repeated({OpcUaType_DataValue, 1}, 500'000)),
              OpcUa_BadEncodingLimitsExceeded);
    // diagnostics
    EXPECT_EQ(decode(OpcUaType_DiagnosticInfo, Bytes(100, 0x40) + Bytes{0}), OpcUa_Good);
    EXPECT_EQ(decode(OpcUaType_DiagnosticInfo, Bytes(500'000, 0x40)), OpcUa_BadEncodingLimitsExceeded);
}

// All kinds draw on one budget: sixty levels of one in sixty of the other are too many.
TEST_F(HostileEncoding, NestingOfMixedKindsAddsUp)
{
    const Bytes dataValues = repeated({OpcUaType_DataValue, 1}, 60) + Bytes{OpcUaType_Byte, 7};
    EXPECT_EQ(decode(OpcUaType_Variant, variantOfVariants(40, dataValues)), OpcUa_Good);
    EXPECT_EQ(decode(OpcUaType_Variant, variantOfVariants(60, dataValues)), OpcUa_BadEncodingLimitsExceeded);

    // an extension object in an extension object: a LiteralOperand holds a variant
    Bytes body = Bytes{OpcUaType_Byte, 7};
    for (int level = 0; level < 60; ++level) {
        const Bytes window = wire(static_cast<OpcUa_Int32>(body.size())) + body;
        body = Bytes{OpcUaType_ExtensionObject} + fromHex("01005502 01") + window;
    }
    EXPECT_EQ(decode(OpcUaType_Variant, body), OpcUa_BadEncodingLimitsExceeded);
}

TEST_F(HostileEncoding, MemoryStaysInProportion)
{
    constexpr size_t count = 4'000'000;
    // four million empty data values would be fourteen times the message
    Bytes message = Bytes{arrayBit | OpcUaType_DataValue} + wire<OpcUa_Int32>(count) + Bytes(count, 0);
    message.resize(16u * 1024 * 1024);
    countingmemory::resetPeak();
    const size_t before = countingmemory::peakBytes();
    EXPECT_EQ(decode(OpcUaType_Variant, message), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_LE(countingmemory::peakBytes() - before, message.size() * 8);

    message = Bytes{arrayBit | OpcUaType_Byte} + wire<OpcUa_Int32>(count) + Bytes(count, 1);
    EXPECT_EQ(decode(OpcUaType_Variant, message), OpcUa_Good);
    // an ordinary answer of many refused nodes is not stopped
    const Bytes refused = repeated(fromHex("0200003480"), 100'000);
    EXPECT_EQ(decode(OpcUaType_Variant,
                     Bytes{arrayBit | OpcUaType_DataValue} + wire<OpcUa_Int32>(100'000) + refused),
              OpcUa_Good);
}

TEST_F(HostileEncoding, DimensionsThatDoNotFitLeaveAPlainArray)
{
    const Bytes six = Bytes{matrixBit | OpcUaType_Byte} + wire<OpcUa_Int32>(6) + Bytes{1, 2, 3, 4, 5, 6};
    const std::vector<std::vector<OpcUa_Int32>> wrong = {
        {2, 2}, {-2, -3}, {0, 6}, {65536, 65536}, {0x40000000, 4, 0, 6}, {INT32_MAX, INT32_MAX, INT32_MAX},
        {6},    {}};
    for (const std::vector<OpcUa_Int32>& dimensions : wrong) {
        Bytes bytes = six + wire(static_cast<OpcUa_Int32>(dimensions.size()));
        for (const OpcUa_Int32 dimension : dimensions)
            bytes = bytes + wire(dimension);
        Value value(OpcUaType_Variant);
        size_t consumed = 0;
        ASSERT_EQ(value.decode(bytes, &consumed), OpcUa_Good);
        EXPECT_EQ(consumed, bytes.size());
        EXPECT_EQ(describe(OpcUaType_Variant, value.data()),
                  "type=Byte rank=array length=6 0=1 1=2 2=3 3=4 4=5 5=6");
    }
    EXPECT_EQ(decode(OpcUaType_Variant, six + wire<OpcUa_Int32>(0x20000000)), OpcUa_BadDecodingError);
    Value empty(OpcUaType_Variant);
    ASSERT_EQ(empty.decode(fromHex("c1 00000000 02000000 00000000 03000000")), OpcUa_Good);
    EXPECT_EQ(describe(OpcUaType_Variant, empty.data()), "type=Boolean rank=matrix dims=0,3 length=0");
}

TEST_F(HostileEncoding, TypeIdsThatDoNotExist)
{
    for (OpcUa_Byte type = 26; type <= 31; ++type) {
        Value value(OpcUaType_Variant);
        ASSERT_EQ(value.decode(Bytes{type} + fromHex("02000000 cafe")), OpcUa_Good);
        EXPECT_EQ(describe(OpcUaType_Variant, value.data()), "type=ByteString rank=scalar value=xcafe");
    }
    for (OpcUa_Byte type = 32; type <= 63; ++type)
        EXPECT_EQ(decode(OpcUaType_Variant, Bytes{type} + Bytes(32, 0)), OpcUa_BadDecodingError);
    EXPECT_EQ(decode(OpcUaType_Variant, fromHex("41 01")), OpcUa_BadDecodingError)
        << "dimensions without an array";
    EXPECT_EQ(decode(OpcUaType_Variant, fromHex("80 01000000 00")), OpcUa_BadDecodingError)
        << "an array of nothing";
    for (const OpcUa_Byte format : Bytes{0x06, 0x3F, 0x40, 0x80})
        EXPECT_EQ(decode(OpcUaType_NodeId, Bytes{format} + Bytes(32, 0)), OpcUa_BadDecodingError);
    EXPECT_EQ(decode(OpcUaType_ExtensionObject, fromHex("000003 00000000")), OpcUa_BadDecodingError);
    EXPECT_EQ(decodeMessage(fromHex("01000100 00000000")), OpcUa_BadDataTypeIdUnknown);
    EXPECT_EQ(decodeMessage(fromHex("01017702 00000000")), OpcUa_BadDataTypeIdUnknown) << "another namespace";
}

TEST_F(HostileEncoding, NumbersOutOfRangeAreTamed)
{
    Value date(OpcUaType_DateTime);
    ASSERT_EQ(date.decode(wire(INT64_MIN)), OpcUa_Good);
    EXPECT_EQ(date.as<OpcUa_DateTime>(), 0);
    Value dates(OpcUaType_Variant);
    ASSERT_EQ(dates.decode(Bytes{arrayBit | OpcUaType_DateTime} + wire<OpcUa_Int32>(2) +
                           wire<OpcUa_Int64>(-5) + wire<OpcUa_Int64>(5)),
              OpcUa_Good);
    EXPECT_EQ(describe(OpcUaType_Variant, dates.data()), "type=DateTime rank=array length=2 0=0 1=5");
    Value flags(OpcUaType_Variant);
    ASSERT_EQ(flags.decode(fromHex("81 02000000 ff00")), OpcUa_Good);
    EXPECT_EQ(toHex(flags.encode()), "81020000000100");
}

// A range in an extension object: the length of the body is what counts.
TEST_F(HostileEncoding, ExtensionBodyIsAWindow)
{
    const Bytes id =
        Bytes{1, 0} + wire(static_cast<OpcUa_UInt16>(OpcUa_Range_EncodeableType.BinaryEncodingTypeId));
    const Bytes range = wire(1.5) + wire(2.5);
    const auto object = [&](OpcUa_Int32 length, const Bytes& body) {
        return id + Bytes{1} + wire(length) + body;
    };
    const Bytes behind = fromHex("00 cafe");
    const auto pair = [&](const Bytes& first) {
        return Bytes{arrayBit | OpcUaType_ExtensionObject} + wire(2) + first + behind;
    };
    const auto first = [](Value& value) {
        return static_cast<OpcUa_ExtensionObject*>(value.as<OpcUa_Variant>().Value.Array.Data);
    };

    Value surplus(OpcUaType_Variant); // a later version of the type: its new fields are skipped
    ASSERT_EQ(surplus.decode(pair(object(19, range + Bytes(3, 0x77))) + Bytes{0}), OpcUa_BadDecodingError)
        << "what stands behind the window is read next, and cafe is no type id";
    ASSERT_EQ(surplus.decode(Bytes{arrayBit | OpcUaType_ExtensionObject} + wire(2) +
                             object(19, range + Bytes(3, 0x77)) + fromHex("000000")),
              OpcUa_Good);
    ASSERT_EQ(first(surplus)->Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
    EXPECT_EQ(static_cast<OpcUa_Range*>(first(surplus)->Body.EncodeableObject.Object)->High, 2.5);

    Value cut(
        OpcUaType_Variant); // does not fill the type: its bytes are kept, and not those behind them read
    ASSERT_EQ(cut.decode(Bytes{arrayBit | OpcUaType_ExtensionObject} + wire(2) +
                         object(15, Bytes(range.begin(), range.end() - 1)) + fromHex("000000")),
              OpcUa_Good);
    ASSERT_EQ(first(cut)->Encoding, OpcUa_ExtensionObjectEncoding_Binary);
    EXPECT_EQ(first(cut)->Body.Binary.Length, 15);

    EXPECT_EQ(decode(OpcUaType_ExtensionObject, object(17, range)), OpcUa_BadDecodingError)
        << "beyond the message";
    Value null(OpcUaType_ExtensionObject);
    ASSERT_EQ(null.decode(object(-1, {})), OpcUa_Good);
    EXPECT_EQ(null.as<OpcUa_ExtensionObject>().Encoding, OpcUa_ExtensionObjectEncoding_Binary);
}

// Any change of a few bytes either fails or gives a value that can be written, read again and compared.
TEST_F(HostileEncoding, RandomChanges)
{
    std::mt19937 random(20240611);
    const std::vector<ReferenceCase> cases = referenceCases("messages.txt");
    const opcua::EncodingLimits limits;
    size_t accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        Bytes bytes = cases[random() % cases.size()].bytes;
        for (auto changes = 1 + random() % 4; changes > 0; --changes)
            bytes[4 + random() % (bytes.size() - 4)] = static_cast<OpcUa_Byte>(random());
        opcua::DecodedMessage message;
        if (OpcUa_IsBad(opcua::decodeMessage(bytes, limits, message)))
            continue;
        ++accepted;
        Bytes again;
        ASSERT_EQ(opcua::encodeMessage(*message.type, message.object, limits, again), OpcUa_Good)
            << toHex(bytes);
        opcua::DecodedMessage second;
        ASSERT_EQ(opcua::decodeMessage(again, limits, second), OpcUa_Good) << toHex(bytes);
        ASSERT_EQ(OpcUa_EncodeableObject_Compare(message.type, message.object, second.object), 0)
            << toHex(bytes);
    }
    EXPECT_GT(accepted, 1000u);
}
