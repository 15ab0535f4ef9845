// Little-endian numbers in byte sequences: the few that headers need.
#pragma once

#include <stack/core/protocol.h>

#include <optional>
#include <string_view>

namespace opcua {

inline void putUInt32(OpcUa_Byte* at, OpcUa_UInt32 value)
{
    at[0] = static_cast<OpcUa_Byte>(value);
    at[1] = static_cast<OpcUa_Byte>(value >> 8);
    at[2] = static_cast<OpcUa_Byte>(value >> 16);
    at[3] = static_cast<OpcUa_Byte>(value >> 24);
}

inline void appendUInt32(Bytes& out, OpcUa_UInt32 value)
{
    out.resize(out.size() + 4);
    putUInt32(out.data() + out.size() - 4, value);
}

/// A length and the bytes; the null value when there are none.
inline void appendByteString(Bytes& out, ByteView bytes)
{
    appendUInt32(out, bytes.empty() ? 0xFFFFFFFFu : static_cast<OpcUa_UInt32>(bytes.size()));
    out.insert(out.end(), bytes.begin(), bytes.end());
}

inline ByteView asBytes(std::string_view text)
{
    return {reinterpret_cast<const OpcUa_Byte*>(text.data()), text.size()};
}

inline std::string_view asText(ByteView bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

[[nodiscard]] inline OpcUa_UInt32 getUInt32(const OpcUa_Byte* at)
{
    return static_cast<OpcUa_UInt32>(at[0]) | static_cast<OpcUa_UInt32>(at[1]) << 8 |
           static_cast<OpcUa_UInt32>(at[2]) << 16 | static_cast<OpcUa_UInt32>(at[3]) << 24;
}

/// Reads from the front; after the first thing that is not there, everything else is absent too.
class ByteReader
{
public:
    explicit ByteReader(ByteView bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::optional<OpcUa_UInt32> uint32()
    {
        const auto bytes = take(4);
        if (!bytes)
            return std::nullopt;
        return getUInt32(bytes->data());
    }

    /// A length of -1 gives an empty view; other negative lengths and those beyond maxLength are refused.
    [[nodiscard]] std::optional<ByteView> byteString(size_t maxLength)
    {
        const auto length = uint32();
        if (!length)
            return std::nullopt;
        if (*length == 0xFFFFFFFFu)
            return ByteView{};
        if (*length > maxLength)
            return fail();
        return take(*length);
    }

    [[nodiscard]] ByteView rest() const { return m_bytes; }
    [[nodiscard]] size_t position() const { return m_position; }

private:
    std::optional<ByteView> take(size_t count)
    {
        if (m_bytes.size() < count)
            return fail();
        const ByteView taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        m_position += count;
        return taken;
    }

    std::nullopt_t fail()
    {
        m_bytes = {};
        return std::nullopt;
    }

    ByteView m_bytes;
    size_t m_position = 0;
};

} // namespace opcua
