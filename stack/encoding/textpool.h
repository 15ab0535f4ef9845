// Memory for the many short texts of one message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace opcua {

struct TextBlock;

/// Longer ones are blocks of their own.
inline constexpr size_t longestPooledText = 256;

/// Cuts short texts from larger blocks, so that a message of a thousand names takes a few allocations. Each
/// text goes back through freeMemory by itself, on any thread; a block goes with the last of its
/// texts.
class TextPool
{
public:
    /// Blocks are in proportion to the message, for one text that is kept keeps its block.
    explicit TextPool(size_t messageSize);
    ~TextPool();
    TextPool(const TextPool&) = delete;
    TextPool& operator=(const TextPool&) = delete;

    /// As allocateMemory, with no more than 8 bytes of alignment.
    [[nodiscard]] void* allocate(size_t size);
    /// The same from what is left of the current block; null when that is not enough.
    [[nodiscard]] void* allocateAtHand(size_t size)
    {
        const size_t needed = (sizeof m_block + size + 7) & ~size_t{7};
        if (size > longestPooledText || static_cast<size_t>(m_end - m_at) < needed)
            return nullptr;
        char* const memory = m_at + sizeof m_block;
        std::memcpy(m_at, &m_block, sizeof m_block);
        m_at += needed;
        ++m_handedOut;
        return memory;
    }

private:
    [[nodiscard]] bool startBlock();
    void retireBlock();

    size_t m_blockSize;
    TextBlock* m_block = nullptr;
    char* m_at = nullptr;
    char* m_end = nullptr;
    std::uint32_t m_handedOut = 0; ///< of the current block
};

/// Gives many texts back. Those that were cut one after the other go in one step, for a step is an atomic
/// operation.
class TextReleaser
{
public:
    TextReleaser() = default;
    ~TextReleaser() { flush(); }
    TextReleaser(const TextReleaser&) = delete;
    TextReleaser& operator=(const TextReleaser&) = delete;

    /// Null is no text. The memory may stay in use until flush or the end of this object.
    void release(void* text)
    {
        if (text != nullptr)
            releaseText(text);
    }
    void flush();

private:
    void releaseText(void* text);

    TextBlock* m_block = nullptr;
    std::uint32_t m_count = 0;
};

} // namespace opcua
