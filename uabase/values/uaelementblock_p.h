// An array of built-in values that grows while it is read.
#pragma once

#include <opcua/opcua_builtintypes.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace uabase {

/// Elements that are decoded one after the other; memory grows with what was there to decode, not with the
/// length that a body claims.
class ElementBlock
{
public:
    explicit ElementBlock(OpcUa_BuiltInType type) noexcept
        : m_type(static_cast<OpcUa_Byte>(type)), m_size(OpcUa_BuiltInType_Size(m_type))
    {
    }
    ElementBlock(const ElementBlock&) = delete;
    ElementBlock& operator=(const ElementBlock&) = delete;
    ~ElementBlock()
    {
        if (m_data)
            OpcUa_BuiltInType_ClearArray(m_type, m_data, m_count);
        OpcUa_Memory_Free(m_data);
    }
    /// Room for the next element; null when out of memory.
    void* next(std::size_t expected) noexcept
    {
        if (m_count == m_capacity && !grow(std::min(std::max<std::size_t>(m_capacity * 2, 256), expected)))
            return nullptr;
        return m_data + m_count * m_size;
    }
    void keep() noexcept { ++m_count; }
    void* release() noexcept
    {
        m_count = 0;
        return std::exchange(m_data, nullptr);
    }

private:
    bool grow(std::size_t capacity) noexcept
    {
        auto* data = static_cast<unsigned char*>(OpcUa_Memory_AllocArray(capacity, m_size));
        if (!data)
            return false;
        if (m_data)
            std::memcpy(data, m_data, m_count * m_size);
        OpcUa_Memory_Free(m_data);
        m_data = data;
        m_capacity = capacity;
        return true;
    }
    OpcUa_Byte m_type;
    std::size_t m_size;
    unsigned char* m_data = nullptr;
    std::size_t m_count = 0;
    std::size_t m_capacity = 0;
};

} // namespace uabase
