// Bytes that must not stay in memory.
#pragma once

#include <stack/core/protocol.h>

#include <utility>

namespace opcua {

/// Overwrites in a way that the compiler keeps, and empties.
void wipe(Bytes& bytes);

class Secret
{
public:
    Secret() = default;
    explicit Secret(size_t size) : m_bytes(size) {}
    explicit Secret(Bytes&& bytes) : m_bytes(std::move(bytes)) {}
    ~Secret() { wipe(m_bytes); }
    Secret(Secret&& other) noexcept : m_bytes(std::exchange(other.m_bytes, {})) {}
    Secret& operator=(Secret&& other) noexcept
    {
        wipe(m_bytes);
        m_bytes = std::exchange(other.m_bytes, {});
        return *this;
    }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    [[nodiscard]] OpcUa_Byte* data() { return m_bytes.data(); }
    [[nodiscard]] size_t size() const { return m_bytes.size(); }
    [[nodiscard]] ByteView view() const { return m_bytes; }
    /// Cuts off the tail; what is cut is overwritten.
    void truncate(size_t size);

private:
    Bytes m_bytes;
};

} // namespace opcua
