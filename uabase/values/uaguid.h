// A 16-byte globally unique identifier, OPC 10000-6, 5.1.3.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <compare>
#include <functional>
#include <string_view>

class UaGuid
{
public:
    UaGuid() noexcept = default;
    explicit UaGuid(const OpcUa_Guid& value) noexcept : m_value(value) {}

    /// "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx" in either case, with or without braces. Null on a fault; ok
    /// tells that apart from the null identifier written out.
    [[nodiscard]] static UaGuid fromString(std::string_view text, bool* ok = nullptr) noexcept;
    /// From the 16 bytes of the binary encoding; null for another length.
    [[nodiscard]] static UaGuid fromByteString(const UaByteString& bytes, bool* ok = nullptr) noexcept;
    /// A random identifier (version 4); null when the system has no random numbers.
    [[nodiscard]] static UaGuid create();

    /// "72962b91-fa75-4ae6-8d28-b404dc7daf63"
    [[nodiscard]] UaString toString() const;
    [[nodiscard]] UaByteString toByteString() const;
    bool isNull() const noexcept { return *this == UaGuid(); }

    const OpcUa_Guid& value() const noexcept { return m_value; }
    const OpcUa_Guid* get() const noexcept { return &m_value; }
    void copyTo(OpcUa_Guid* destination) const noexcept { *destination = m_value; }

    friend bool operator==(const UaGuid& left, const UaGuid& right) noexcept { return (left <=> right) == 0; }
    friend std::strong_ordering operator<=>(const UaGuid& left, const UaGuid& right) noexcept
    {
        return OpcUa_Guid_Compare(&left.m_value, &right.m_value) <=> 0;
    }

private:
    OpcUa_Guid m_value{};
};

template <>
struct std::hash<UaGuid>
{
    std::size_t operator()(const UaGuid& value) const noexcept
    {
        return std::hash<std::string_view>()(
            {reinterpret_cast<const char*>(value.get()), sizeof(OpcUa_Guid)});
    }
};
