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
    /// Forgets what has come of a message.
    void drop(OpcUa_UInt32 requestId);
    void clear();

private:
    friend class EngineProbe; // for tests

    struct Part
    {
        Bytes body;
        size_t chunks = 0;
    };

    size_t m_maxMessageSize;
    size_t m_maxChunkCount;
    size_t m_buffered = 0;
    size_t m_bufferedChunks = 0;
    std::unordered_map<OpcUa_UInt32, Part> m_parts;
};

} // namespace opcua
