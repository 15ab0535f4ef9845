// Puts the chunks of messages together again, by request id.
#pragma once

#include <stack/core/protocol.h>

#include <unordered_map>

namespace opcua {

class MessageAssembler
{
public:
    enum class Outcome { Incomplete, Complete, TooLarge };

    MessageAssembler(size_t maxMessageSize, size_t maxChunkCount)
        : m_maxMessageSize(maxMessageSize), m_maxChunkCount(maxChunkCount)
    {
    }

    /// One chunk of a message that somebody waits for. On Complete the whole body is in message. On TooLarge
    /// a limit is passed, of one message or of all unfinished ones together, and the chunk was not kept.
    [[nodiscard]] Outcome add(OpcUa_UInt32 requestId, bool final, ByteView body, Bytes& message);
    /// One chunk of a message that nobody waits for. It is not kept, but the limits are those of add.
    [[nodiscard]] Outcome skip(OpcUa_UInt32 requestId, bool final, size_t size);
    /// Forgets what has come of a message.
    void drop(OpcUa_UInt32 requestId);
    /// As drop, but what has come already counts for the chunks that skip is told of.
    void giveUp(OpcUa_UInt32 requestId);
    void clear();

private:
    friend class EngineProbe; // for tests

    struct Part
    {
        Bytes body;
        size_t chunks = 0;
    };
    struct Extent
    {
        size_t bytes = 0;
        size_t chunks = 0;
    };

    [[nodiscard]] bool fits(const Extent& message, size_t size) const;
    [[nodiscard]] bool fitsUnfinished(const Extent& messages, size_t size) const;
    void addSkipped(OpcUa_UInt32 requestId, const Extent& extent);

    size_t m_maxMessageSize;
    size_t m_maxChunkCount;
    Extent m_buffered; ///< all parts together
    std::unordered_map<OpcUa_UInt32, Part> m_parts;
    Extent m_skippedTotal;
    std::unordered_map<OpcUa_UInt32, Extent> m_skipped; ///< unfinished messages that nobody waits for
};

} // namespace opcua
