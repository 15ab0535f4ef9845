// Memory for the many short texts of one message.
#pragma once

#include <cstddef>
#include <cstdint>

namespace opcua {

struct TextBlock;

// Cuts short texts from larger blocks, so that a message of a thousand names takes a few allocations. Each
// text goes back through OpcUa_Memory_Free by itself, on any thread; a block goes with the last of its texts.
class TextPool
{
public:
    // Blocks are in proportion to the message, for one text that is kept keeps its block.
    explicit TextPool(size_t messageSize);
    ~TextPool();
    TextPool(const TextPool&) = delete;
    TextPool& operator=(const TextPool&) = delete;

    // As OpcUa_Memory_Alloc, with no more than 8 bytes of alignment.
    [[nodiscard]] void* allocate(size_t size);

private:
    [[nodiscard]] bool startBlock();
    void retireBlock();

    size_t m_blockSize;
    TextBlock* m_block = nullptr;
    char* m_at = nullptr;
    char* m_end = nullptr;
    std::uint32_t m_handedOut = 0; // of the current block
};

} // namespace opcua
