// Cuts a byte stream into frames: whole messages of the connection protocol or whole chunks.
#pragma once

#include <stack/core/protocol.h>

namespace opcua {

struct Frame
{
    MessageType type = MessageType::Error;
    ChunkType chunk = ChunkType::Final;
    MutableByteView bytes; ///< all of it, header included

    [[nodiscard]] ByteView body() const { return bytes.subspan(frameHeaderSize); }
};

/// Type, chunk type and size of a frame's first eight bytes.
/// Good; BadTcpMessageTypeInvalid; BadTcpMessageTooLarge (also for sizes below the header's own).
[[nodiscard]] OpcUa_StatusCode parseFrameHeader(ByteView header, size_t maxFrameSize, Frame& frame,
                                                size_t& size);

/// Appends the eight bytes with a size still to be filled in by finishFrame; answers where the frame begins.
[[nodiscard]] size_t beginFrame(Bytes& out, MessageType type, ChunkType chunk);
void finishFrame(Bytes& out, size_t begin);

class FrameReader
{
public:
    enum class Outcome { Frame, NeedMore, Fault };

    explicit FrameReader(size_t maxFrameSize) : m_maxFrameSize(maxFrameSize) {}

    /// Takes bytes off the front of input until a frame is whole. The frame lies in input itself where it
    /// arrived in one piece and is valid until the next call. After Fault, fault() says why and nothing more
    /// is read.
    [[nodiscard]] Outcome next(MutableByteView& input, Frame& frame);
    [[nodiscard]] OpcUa_StatusCode fault() const { return m_fault; }
    /// Whether the next frame has begun to arrive.
    [[nodiscard]] bool hasPart() const { return !m_partial.empty() && !m_partialGivenOut; }

private:
    [[nodiscard]] bool collect(MutableByteView& input, size_t wanted);
    [[nodiscard]] bool checkHeader(ByteView header, Frame& frame, size_t& size);

    size_t m_maxFrameSize;
    Bytes m_partial;
    bool m_partialGivenOut = false;
    OpcUa_StatusCode m_fault = 0;
};

} // namespace opcua
