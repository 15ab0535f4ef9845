// Texts that share blocks, with the stack's own allocator.
#include <opcua/opcua_platform.h>
#include <stack/encoding/textpool.h>

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
