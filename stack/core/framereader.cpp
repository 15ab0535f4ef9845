#include <stack/core/framereader.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/byteio.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>

namespace opcua {

namespace {

constexpr std::array<std::string_view, 6> typeNames{"HEL", "ACK", "ERR", "OPN", "MSG", "CLO"};
constexpr std::string_view chunkLetters = "FCA";

std::optional<MessageType> typeOf(std::string_view name)
{
    const auto found = std::find(typeNames.begin(), typeNames.end(), name);
    if (found == typeNames.end())
        return std::nullopt;
    return static_cast<MessageType>(found - typeNames.begin());
}

} // namespace

OpcUa_StatusCode parseFrameHeader(ByteView header, size_t maxFrameSize, Frame& frame, size_t& size)
{
    const std::string_view text = asText(header.first(4));
    const auto type = typeOf(text.substr(0, 3));
    const size_t letter = chunkLetters.find(text[3]);
    if (!type || letter == std::string_view::npos)
        return OpcUa_BadTcpMessageTypeInvalid;
    frame.type = *type;
    frame.chunk = static_cast<ChunkType>(letter);
    if (frame.chunk != ChunkType::Final && frame.type != MessageType::Message)
        return OpcUa_BadTcpMessageTypeInvalid;
    size = getUInt32(header.data() + 4);
    if (size < frameHeaderSize || size > maxFrameSize)
        return OpcUa_BadTcpMessageTooLarge;
    return OpcUa_Good;
}

size_t beginFrame(Bytes& out, MessageType type, ChunkType chunk)
{
    const size_t begin = out.size();
    const std::string_view name = typeNames[static_cast<size_t>(type)];
    out.insert(out.end(), name.begin(), name.end());
    out.push_back(static_cast<OpcUa_Byte>(chunkLetters[static_cast<size_t>(chunk)]));
    appendUInt32(out, 0);
    return begin;
}

void finishFrame(Bytes& out, size_t begin)
{
    putUInt32(out.data() + begin + 4, static_cast<OpcUa_UInt32>(out.size() - begin));
}

bool FrameReader::checkHeader(ByteView header, Frame& frame, size_t& size)
{
    m_fault = parseFrameHeader(header, m_maxFrameSize, frame, size);
    return OpcUa_IsGood(m_fault);
}

// Moves bytes over until wanted are there.
bool FrameReader::collect(MutableByteView& input, size_t wanted)
{
    const size_t missing = wanted > m_partial.size() ? wanted - m_partial.size() : 0;
    const size_t taken = std::min(missing, input.size());
    m_partial.insert(m_partial.end(), input.begin(), input.begin() + static_cast<std::ptrdiff_t>(taken));
    input = input.subspan(taken);
    return taken == missing;
}

FrameReader::Outcome FrameReader::next(MutableByteView& input, Frame& frame)
{
    if (OpcUa_IsBad(m_fault))
        return Outcome::Fault;
    if (m_partialGivenOut) {
        m_partial.clear();
        m_partialGivenOut = false;
    }
    size_t size = 0;
    if (m_partial.empty() && input.size() >= frameHeaderSize) {
        if (!checkHeader(input.first(frameHeaderSize), frame, size))
            return Outcome::Fault;
        if (input.size() >= size) {
            frame.bytes = input.first(size);
            input = input.subspan(size);
            return Outcome::Frame;
        }
    }
    if (!collect(input, frameHeaderSize))
        return Outcome::NeedMore;
    if (!checkHeader(m_partial, frame, size))
        return Outcome::Fault;
    if (!collect(input, size))
        return Outcome::NeedMore;
    frame.bytes = m_partial;
    m_partialGivenOut = true;
    return Outcome::Frame;
}

} // namespace opcua
