// Texts that share blocks, with the stack's own allocator.
#include <opcua/opcua_platform.h>
#include <opcua/opcua_types.h>
#include <stack/encoding/textpool.h>
#include <tests/unit/stack/encodingtest.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <malloc.h>
#include <random>
#include <thread>
#include <vector>

namespace {

struct Piece
{
    char* data;
    size_t size;
};

// Pieces of many lengths, each filled with its own byte.
std::vector<Piece> cutPieces(std::mt19937& random, size_t count)
{
    std::vector<Piece> pieces;
    opcua::TextPool pool(random() % 5000);
    for (size_t i = 0; i < count; ++i) {
        const size_t size = 1 + random() % 300;
        auto* const data = static_cast<char*>(pool.allocate(size));
        std::memset(data, static_cast<int>(i), size);
        pieces.push_back({data, size});
    }
    return pieces;
}

} // namespace

TEST(TextPool, PiecesDoNotOverlapAndOutliveThePool)
{
    std::mt19937 random(7);
    const std::vector<Piece> pieces = cutPieces(random, 2000);
    for (size_t i = 0; i < pieces.size(); ++i) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pieces[i].data) % 8, 0u);
        EXPECT_EQ(std::count(pieces[i].data, pieces[i].data + pieces[i].size, static_cast<char>(i)),
                  static_cast<ptrdiff_t>(pieces[i].size));
        OpcUa_Memory_Free(pieces[i].data);
    }
}

// Pieces of one block are freed by several threads at once, while the pool still cuts from it too; nothing
// stays.
TEST(TextPool, BlocksGoWithTheirLastPieceOnWhateverThread)
{
    constexpr size_t rounds = 200;
    constexpr size_t threadCount = 4;
    std::mt19937 random(11);
    const size_t before = mallinfo2().uordblks;
    for (size_t round = 0; round < rounds; ++round) {
        std::vector<Piece> pieces = cutPieces(random, 1000);
        std::shuffle(pieces.begin(), pieces.end(), random);
        std::vector<std::thread> threads;
        for (size_t t = 0; t < threadCount; ++t) {
            threads.emplace_back([&pieces, t] {
                for (size_t i = t; i < pieces.size(); i += threadCount)
                    OpcUa_Memory_Free(pieces[i].data);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        opcua::TextPool pool(4096);
        for (int i = 0; i < 100; ++i)
            OpcUa_Memory_Free(pool.allocate(40));
    }
    // all rounds together took thirty megabytes
    EXPECT_LT(mallinfo2().uordblks, before + 3'000'000);
}

// ---- messages whose texts share blocks

// The tests of the decoder put another pool in the place of the stack's, and under the address sanitizer
// every text is a block of its own: here are the short ways that depend on blocks.

TEST(SharedTexts, MessagesComeOutAsTheyCameInWhateverTheirLimits)
{
    constexpr OpcUa_UInt32 enough = 100; // for every text in these messages
    for (const ReferenceCase& reference : referenceCases("messages.txt")) {
        for (OpcUa_UInt32 longest = 0; longest <= enough; ++longest) {
            opcua::EncodingLimits limits;
            limits.maxStringLength = longest;
            opcua::DecodedMessage message;
            const OpcUa_StatusCode status = opcua::decodeMessage(reference.bytes, limits, message);
            if (OpcUa_IsBad(status)) {
                ASSERT_EQ(status, OpcUa_BadEncodingLimitsExceeded) << reference.type << ' ' << longest;
                ASSERT_LT(longest, enough);
                continue;
            }
            Bytes again;
            ASSERT_EQ(opcua::encodeMessage(*message.type, message.object, limits, again), OpcUa_Good)
                << reference.type << ' ' << longest;
            ASSERT_EQ(toHex(again), toHex(reference.bytes)) << reference.type;
        }
        for (size_t size = 0; size < reference.bytes.size(); ++size) {
            opcua::DecodedMessage message;
            ASSERT_EQ(opcua::decodeMessage({reference.bytes.data(), size}, {}, message),
                      OpcUa_BadDecodingError)
                << reference.type << ' ' << size;
        }
    }
}

// A unit whose name has a locale that lies in the block, and a text that does not: it is too long or cut.
TEST(SharedTexts, FieldsThatEndOtherwiseThanTheyBeganLeaveNothingBehind)
{
    const auto unit = [](OpcUa_Int32 saidLength, size_t length) {
        const Bytes body = wire<OpcUa_Int32>(3) + Bytes(3, 'u') + wire<OpcUa_Int32>(7) + fromHex("03") +
                           wire<OpcUa_Int32>(2) + fromHex("6465") + wire(saidLength) + Bytes(length, 'x') +
                           fromHex("00");
        return Bytes{1, 0} +
               wire(static_cast<OpcUa_UInt16>(OpcUa_EUInformation_EncodeableType.BinaryEncodingTypeId)) +
               Bytes{1} + wire(static_cast<OpcUa_Int32>(body.size())) + body;
    };
    const Bytes whole = unit(2000, 2000);
    const Bytes cut = unit(2000, 1900);
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 1000; ++round) {
        Value value(OpcUaType_ExtensionObject);
        ASSERT_EQ(value.decode(whole), OpcUa_Good);
        const auto& content = value.as<OpcUa_ExtensionObject>().Body.EncodeableObject;
        ASSERT_EQ(content.Type, &OpcUa_EUInformation_EncodeableType);
        const auto& name = static_cast<OpcUa_EUInformation*>(content.Object)->DisplayName;
        ASSERT_STREQ(name.Locale.Data, "de");
        ASSERT_EQ(name.Text.Length, 2000);
        Value other(OpcUaType_ExtensionObject);
        ASSERT_EQ(other.decode(cut), OpcUa_Good);
        ASSERT_EQ(other.as<OpcUa_ExtensionObject>().Encoding, OpcUa_ExtensionObjectEncoding_Binary);
    }
    EXPECT_LT(mallinfo2().uordblks, before + 1'000'000) << "each block that stays is four kilobytes";

    const Bytes beyondItsBody = unit(100, 50);
    Value value(OpcUaType_ExtensionObject);
    size_t consumed = 0;
    ASSERT_EQ(value.decode(beyondItsBody + Bytes(200, 'y'), &consumed), OpcUa_Good);
    EXPECT_EQ(consumed, beyondItsBody.size());
    EXPECT_EQ(value.as<OpcUa_ExtensionObject>().Encoding, OpcUa_ExtensionObjectEncoding_Binary);
}

TEST(TextPool, MemoryOfOneBlockEach)
{
    EXPECT_EQ(OpcUa_Memory_Alloc(0), nullptr);
    EXPECT_EQ(OpcUa_Memory_AllocArray(SIZE_MAX / 2, 3), nullptr);
    EXPECT_EQ(OpcUa_Memory_AllocArray(SIZE_MAX - 4, 1), nullptr);
    auto* const numbers = static_cast<unsigned*>(OpcUa_Memory_AllocArray(100, sizeof(unsigned)));
    EXPECT_EQ(std::count(numbers, numbers + 100, 0u), 100);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(numbers) % alignof(std::max_align_t), 0u);
    OpcUa_Memory_Free(numbers);
    OpcUa_Memory_Free(nullptr);
}
