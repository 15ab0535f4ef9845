// The one rule for all typed arrays: a length and an owned block of the stack's structures.
#pragma once

#include <uabase/values/uaelement.h>

#include <cassert>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

/// T is a structure of the stack (or a number). Copies are deep. The block's memory is the stack's, so arrays
/// change hands with C structures through attach and detach. Not thread-safe.
template <typename T>
class UaArray
{
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    UaArray() noexcept = default;
    /// Null values; empty when out of memory.
    explicit UaArray(OpcUa_UInt32 length) noexcept { static_cast<void>(create(length)); }
    /// Deep copy of a foreign array; a length below 1 or a null pointer gives an empty one, and so does a
    /// lack of memory.
    UaArray(OpcUa_Int32 length, const T* data) noexcept { static_cast<void>(assign(length, data)); }
    UaArray(const UaArray& other) noexcept : UaArray(static_cast<OpcUa_Int32>(other.m_length), other.m_data)
    {
    }
    UaArray(UaArray&& other) noexcept
        : m_length(std::exchange(other.m_length, 0)), m_data(std::exchange(other.m_data, nullptr))
    {
    }
    UaArray& operator=(UaArray other) noexcept
    {
        std::swap(m_length, other.m_length);
        std::swap(m_data, other.m_data);
        return *this;
    }
    ~UaArray() { clear(); }

    OpcUa_UInt32 length() const noexcept { return m_length; }
    OpcUa_UInt32 size() const noexcept { return m_length; }
    bool isEmpty() const noexcept { return m_length == 0; }

    T& operator[](OpcUa_UInt32 index) noexcept
    {
        assert(index < m_length);
        return m_data[index];
    }
    const T& operator[](OpcUa_UInt32 index) const noexcept
    {
        assert(index < m_length);
        return m_data[index];
    }
    T* begin() noexcept { return m_data; }
    T* end() noexcept { return m_data + m_length; }
    const T* begin() const noexcept { return m_data; }
    const T* end() const noexcept { return m_data + m_length; }
    /// Null when empty.
    T* rawData() noexcept { return m_data; }
    const T* rawData() const noexcept { return m_data; }
    std::span<const T> span() const noexcept { return {m_data, m_length}; }

    void clear() noexcept
    {
        if (m_data)
            UaElement<T>::destroy(m_data, m_length);
        m_data = nullptr;
        m_length = 0;
    }
    /// Replaces the content with null values. False (and empty) when out of memory.
    [[nodiscard]] bool create(OpcUa_UInt32 length) noexcept
    {
        clear();
        return resize(length);
    }
    /// Keeps the first elements; new ones are null values. False when out of memory, the array is then as
    /// before.
    [[nodiscard]] bool resize(OpcUa_UInt32 length) noexcept
    {
        if (length == m_length)
            return true;
        T* block = nullptr;
        if (length > 0 && !(block = allocate(length)))
            return false;
        const OpcUa_UInt32 kept = length < m_length ? length : m_length;
        if (kept > 0)
            std::memcpy(static_cast<void*>(block), m_data, kept * sizeof(T)); // elements move as bytes
        if (length > kept)
            UaElement<T>::initialize(block + kept, length - kept);
        if (m_length > kept)
            UaElement<T>::clear(m_data + kept, m_length - kept);
        OpcUa_Memory_Free(m_data);
        m_data = block;
        m_length = length;
        return true;
    }
    /// Adds a deep copy. False when out of memory, the array is then as before.
    [[nodiscard]] bool append(const T& element) noexcept { return append(1, &element); }
    [[nodiscard]] bool append(OpcUa_UInt32 count, const T* elements) noexcept
    {
        UaArray added(static_cast<OpcUa_Int32>(count), elements);
        return added.length() == count && appendMoved(std::move(added));
    }
    /// Adds the elements of other without copying them.
    [[nodiscard]] bool appendMoved(UaArray&& other) noexcept
    {
        const OpcUa_UInt32 before = m_length;
        if (other.m_length == 0)
            return true;
        if (other.m_length > maxLength - before || !resize(before + other.m_length))
            return false;
        std::memcpy(static_cast<void*>(m_data + before), other.m_data, other.m_length * sizeof(T));
        OpcUa_Memory_Free(other.m_data);
        other.m_data = nullptr;
        other.m_length = 0;
        return true;
    }
    /// Replaces the content with a deep copy. False when out of memory, the array is then as before.
    [[nodiscard]] bool assign(OpcUa_Int32 length, const T* data) noexcept
    {
        UaArray fresh;
        if (length > 0 && data) {
            T* block = allocate(static_cast<OpcUa_UInt32>(length));
            if (!block || !OpcUa_IsGood(UaElement<T>::copy(data, block, static_cast<std::size_t>(length)))) {
                OpcUa_Memory_Free(block);
                return false;
            }
            fresh.attach(length, block);
        }
        *this = std::move(fresh);
        return true;
    }

    /// Takes ownership of a block from the stack's allocator.
    void attach(OpcUa_Int32 length, T* data) noexcept
    {
        if (data == m_data && data)
            return;
        clear();
        if (length <= 0 || !data) {
            OpcUa_Memory_Free(data);
            return;
        }
        m_length = static_cast<OpcUa_UInt32>(length);
        m_data = data;
    }
    /// The same for a member pair of a C structure, which is left empty.
    void attachFrom(OpcUa_Int32* length, T** data) noexcept
    {
        attach(*length, *data);
        *length = 0;
        *data = nullptr;
    }
    /// Hands the block over; the array is empty afterwards.
    T* detach() noexcept
    {
        m_length = 0;
        return std::exchange(m_data, nullptr);
    }
    void detach(OpcUa_Int32* length, T** data) noexcept
    {
        *length = static_cast<OpcUa_Int32>(m_length);
        *data = detach();
    }
    /// Deep copy for a member pair of a C structure (what it held before is not freed). False: out of memory.
    [[nodiscard]] bool copyTo(OpcUa_Int32* length, T** data) const noexcept
    {
        UaArray copy(*this);
        const bool complete = copy.m_length == m_length;
        copy.detach(length, data);
        return complete;
    }

private:
    static constexpr OpcUa_UInt32 maxLength = INT32_MAX;
    static T* allocate(OpcUa_UInt32 length) noexcept
    {
        return length > maxLength ? nullptr : static_cast<T*>(OpcUa_Memory_AllocArray(length, sizeof(T)));
    }
    OpcUa_UInt32 m_length = 0;
    T* m_data = nullptr;
};
