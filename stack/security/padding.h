// Padding of encrypted chunks, OPC 10000-6, 6.7.2: its length in one byte, for keys beyond 2,048 bits with a
// high byte at its end, and as many times the low byte as the length says.
#pragma once

#include <stack/core/protocol.h>

#include <algorithm>
#include <optional>

namespace opcua {

/// The size fields for a block of cipher text.
[[nodiscard]] constexpr size_t paddingFields(size_t cipherBlock)
{
    return cipherBlock > 256 ? 2 : 1;
}

/// Writes length and padding; fields counts the bytes that the length takes.
inline void appendPadding(Bytes& out, size_t length, size_t fields)
{
    const auto low = static_cast<OpcUa_Byte>(length & 0xFF);
    out.insert(out.end(), length + 1, low);
    if (fields == 2)
        out.push_back(static_cast<OpcUa_Byte>(length >> 8));
}

/// Where the padding of bytes begins; nothing when it is wrong. Looks at as many bytes whatever they hold,
/// short of maxPadding.
[[nodiscard]] inline std::optional<size_t> findPadding(ByteView bytes, size_t fields, size_t maxPadding)
{
    if (bytes.size() < fields)
        return std::nullopt;
    const size_t end = bytes.size() - (fields - 1); // behind the last byte of padding
    const OpcUa_Byte low = bytes[end - 1];
    const size_t length = fields == 2 ? low | static_cast<size_t>(bytes[end]) << 8 : low;
    const size_t most = std::min(maxPadding, end - 1);
    unsigned wrong = length > most;
    for (size_t n = 0; n <= most; ++n)
        wrong |= static_cast<unsigned>(n <= length) & static_cast<unsigned>(bytes[end - 1 - n] != low);
    if (wrong != 0)
        return std::nullopt;
    return end - 1 - length;
}

} // namespace opcua
