#include <tests/unit/stack/countingmemory.h>

#include <stack/encoding/memory.h>
#include <stack/encoding/textpool.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

size_t g_blocks = 0;
size_t g_bytes = 0;
size_t g_peak = 0;
long g_goodOnes = -1;

// in front of every block, as wide as the strictest alignment
constexpr size_t headerSize = alignof(std::max_align_t);

} // namespace

size_t countingmemory::liveBlocks()
{
    return g_blocks;
}

size_t countingmemory::peakBytes()
{
    return g_peak;
}

void countingmemory::resetPeak()
{
    g_peak = g_bytes;
}

void countingmemory::failAfter(long goodOnes)
{
    g_goodOnes = goodOnes;
}

void* opcua::allocateMemory(size_t size)
{
    if (size == 0 || (g_goodOnes >= 0 && g_goodOnes-- == 0))
        return nullptr;
    auto* const block = static_cast<char*>(std::malloc(size + headerSize));
    if (block == nullptr)
        return nullptr;
    std::memcpy(block, &size, sizeof size);
    // what is not written must not look like null values
    std::memset(block + headerSize, 0xA5, size);
    ++g_blocks;
    g_bytes += size;
    g_peak = std::max(g_peak, g_bytes);
    return block + headerSize;
}

void opcua::freeMemory(void* memory)
{
    if (memory == nullptr)
        return;
    char* const block = static_cast<char*>(memory) - headerSize;
    size_t size = 0;
    std::memcpy(&size, block, sizeof size);
    --g_blocks;
    g_bytes -= size;
    std::free(block);
}

void* opcua::allocateZeroedMemory(size_t count, size_t elementSize)
{
    void* const memory = allocateMemory(count * elementSize);
    if (memory != nullptr)
        std::memset(memory, 0, count * elementSize);
    return memory;
}

// every text is a block, which is counted and may fail
opcua::TextPool::TextPool(size_t messageSize) : m_blockSize(messageSize) {}

opcua::TextPool::~TextPool() = default;

void* opcua::TextPool::allocate(size_t size)
{
    return allocateMemory(size);
}

void opcua::TextReleaser::releaseText(void* text)
{
    freeMemory(text);
}

void opcua::TextReleaser::flush() {}
