// In a file of its own, so that a test can put a failing allocator in its place.
#include <stack/encoding/memory.h>

#include <stack/encoding/textpool.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace opcua {

// In front of what allocateMemory hands out stands a pointer: to the block that the memory is cut from, or
// null when it is a block of its own. freeMemory needs nothing else.
struct TextBlock
{
    // texts not freed yet, and as long as the pool cuts from the block, reserve besides
    std::atomic<std::uint32_t> users;
};

namespace {

constexpr std::uint32_t reserve = 1u << 31;
constexpr size_t ownerSize = sizeof(TextBlock*);
constexpr size_t headerSize = alignof(std::max_align_t); // of a block of its own; the pointer is its end
constexpr size_t smallestBlock = 256;
constexpr size_t firstBlock = 4096;
constexpr size_t largestBlock = 16384;
static_assert(longestPooledText + ownerSize + 8 + sizeof(TextBlock) < firstBlock);

#if defined(__SANITIZE_ADDRESS__)
constexpr bool pooled = false; // every text on its own, so that the sanitizer sees where it ends
#else
constexpr bool pooled = true;
#endif

void* behindHeader(void* raw)
{
    return raw == nullptr ? nullptr : static_cast<char*>(raw) + headerSize;
}

void setOwner(void* memory, TextBlock* owner)
{
    std::memcpy(static_cast<char*>(memory) - ownerSize, &owner, ownerSize);
}

TextBlock* ownerOf(const void* memory)
{
    TextBlock* owner = nullptr;
    std::memcpy(&owner, static_cast<const char*>(memory) - ownerSize, ownerSize);
    return owner;
}

void drop(TextBlock* block, std::uint32_t users)
{
    if (block->users.fetch_sub(users, std::memory_order_acq_rel) == users)
        std::free(block);
}

} // namespace

void* allocateMemory(size_t size)
{
    if (size == 0 || size > SIZE_MAX - headerSize)
        return nullptr;
    void* const memory = behindHeader(std::malloc(size + headerSize));
    if (memory != nullptr)
        setOwner(memory, nullptr);
    return memory;
}

void freeMemory(void* memory)
{
    if (memory == nullptr)
        return;
    TextBlock* const owner = ownerOf(memory);
    if (owner == nullptr)
        std::free(static_cast<char*>(memory) - headerSize);
    else
        drop(owner, 1);
}

void* allocateZeroedMemory(size_t count, size_t elementSize)
{
    size_t size = 0;
    if (__builtin_mul_overflow(count, elementSize, &size) || size == 0 || size > SIZE_MAX - headerSize)
        return nullptr;
    return behindHeader(std::calloc(1, size + headerSize)); // the zeros are the null owner too
}

TextPool::TextPool(size_t messageSize) : m_blockSize(std::clamp(2 * messageSize, smallestBlock, firstBlock))
{
}

TextPool::~TextPool()
{
    retireBlock();
}

void* TextPool::allocate(size_t size)
{
    const size_t needed = (ownerSize + size + 7) & ~size_t{7};
    if (!pooled || size == 0 || size > longestPooledText || needed + sizeof(TextBlock) + 8 > m_blockSize)
        return allocateMemory(size);
    void* const memory = allocateAtHand(size);
    if (memory != nullptr)
        return memory;
    return startBlock() ? allocateAtHand(size) : nullptr;
}

bool TextPool::startBlock()
{
    retireBlock();
    void* const raw = std::malloc(m_blockSize);
    if (raw == nullptr)
        return false;
    m_block = new (raw) TextBlock{reserve};
    m_at = static_cast<char*>(raw) + 8;
    m_end = static_cast<char*>(raw) + m_blockSize;
    if (m_blockSize >= firstBlock) // a message of many texts: fewer, larger blocks from here on
        m_blockSize = std::min(2 * m_blockSize, largestBlock);
    return true;
}

void TextPool::retireBlock()
{
    if (m_block != nullptr)
        drop(m_block, reserve - m_handedOut);
    m_block = nullptr;
    m_at = m_end = nullptr;
    m_handedOut = 0;
}

void TextReleaser::releaseText(void* text)
{
    TextBlock* const owner = ownerOf(text);
    if (owner == nullptr)
        return freeMemory(text);
    if (owner != m_block)
        flush();
    m_block = owner;
    ++m_count;
}

void TextReleaser::flush()
{
    if (m_count > 0)
        drop(m_block, m_count);
    m_block = nullptr;
    m_count = 0;
}

} // namespace opcua
