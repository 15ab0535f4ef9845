// Room for a message that is being encoded.
#pragma once

#include <opcua/opcua_platform.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <utility>

namespace opcua {

/// Grows like a vector, but leaves fresh room as it is: filling it with zeros first takes a tenth of the time
/// that encoding takes.
class ByteBuffer
{
public:
    ByteBuffer() = default;
    ByteBuffer(ByteBuffer&& other) noexcept
        : m_bytes(std::move(other.m_bytes)), m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0))
    {
    }
    ByteBuffer& operator=(ByteBuffer&& other) noexcept
    {
        std::swap(m_bytes, other.m_bytes);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
        return *this;
    }
    [[nodiscard]] std::span<const OpcUa_Byte> view() const { return {m_bytes.get(), m_size}; }
    [[nodiscard]] OpcUa_Byte* data() { return m_bytes.get(); }
    [[nodiscard]] size_t size() const { return m_size; }
    [[nodiscard]] size_t capacity() const { return m_capacity; }
    /// At most capacity; what was not written yet has no value.
    void setSize(size_t size) { m_size = size; }
    void clear() { m_size = 0; }
    /// Room for that many bytes more, behind which nothing is promised. The first used bytes are kept,
    /// whatever size() is. Throws std::bad_alloc.
    void grow(size_t used, size_t more)
    {
        constexpr size_t minimum = 1024;
        const size_t wanted = std::max({used + more, 2 * m_capacity, minimum});
        void* const moved = std::realloc(m_bytes.get(), wanted);
        if (moved == nullptr)
            throw std::bad_alloc();
        static_cast<void>(m_bytes.release());
        m_bytes.reset(static_cast<OpcUa_Byte*>(moved));
        m_capacity = wanted;
    }
    /// Gives back all memory when there is more than this.
    void trim(size_t kept)
    {
        if (m_capacity <= kept)
            return;
        m_bytes.reset();
        m_capacity = m_size = 0;
    }

private:
    struct Freer
    {
        void operator()(OpcUa_Byte* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<OpcUa_Byte[], Freer> m_bytes;
    size_t m_size = 0;
    size_t m_capacity = 0;
};

} // namespace opcua
