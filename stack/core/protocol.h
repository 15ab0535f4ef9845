// Figures and small types of the connection protocol and of secure conversation, OPC 10000-6, 6.7 and 7.1.
#pragma once

#include <opcua/opcua_platform.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace opcua {

/// The engine never asks for the time; whoever drives it passes one in, always of the same clock.
using TimePoint = std::chrono::steady_clock::time_point;
using Milliseconds = std::chrono::milliseconds;
inline constexpr TimePoint never = TimePoint::max();

using Bytes = std::vector<OpcUa_Byte>;
using ByteView = std::span<const OpcUa_Byte>;
using MutableByteView = std::span<OpcUa_Byte>;

inline constexpr size_t frameHeaderSize = 8;                       ///< type, chunk type, size
inline constexpr size_t sequenceHeaderSize = 8;                    ///< sequence number, request id
inline constexpr size_t symmetricHeaderSize = frameHeaderSize + 8; ///< channel id, token id
inline constexpr OpcUa_UInt32 minimumBufferSize = 8192;
inline constexpr OpcUa_UInt32 defaultBufferSize = 65536;
inline constexpr OpcUa_UInt32 defaultMaxMessageSize = 16u * 1024 * 1024;
inline constexpr size_t maxUrlLength = 4096;
inline constexpr size_t maxReasonLength = 4096;

enum class MessageType : std::uint8_t { Hello, Acknowledge, Error, Open, Message, Close };
enum class ChunkType : std::uint8_t { Final, Intermediate, Abort };

/// Chunks that a message of that size may take: two percent more than full buffers give, and never none. It
/// is announced before the peer has said how large its buffers are, so they count as the smallest there are.
[[nodiscard]] constexpr OpcUa_UInt32 defaultChunkCount(OpcUa_UInt32 maxMessageSize)
{
    const std::uint64_t full = (std::uint64_t{maxMessageSize} + minimumBufferSize - 1) / minimumBufferSize;
    return static_cast<OpcUa_UInt32>(std::max<std::uint64_t>(1, (full * 102 + 99) / 100));
}

/// What one side announces about itself and keeps.
struct ChannelLimits
{
    OpcUa_UInt32 receiveBufferSize = defaultBufferSize;
    OpcUa_UInt32 sendBufferSize = defaultBufferSize;
    OpcUa_UInt32 maxMessageSize = defaultMaxMessageSize;
    OpcUa_UInt32 maxChunkCount = defaultChunkCount(defaultMaxMessageSize);
};

} // namespace opcua
