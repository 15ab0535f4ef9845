// A sequence of bytes, OPC 10000-6, 5.2.2.7.
#pragma once

#include <uabase/values/uaarray.h>
#include <uabase/values/uastring.h>

#include <compare>
#include <functional>
#include <span>
#include <string_view>

using UaByteArray = UaArray<OpcUa_Byte>;

/// Null and empty are different values. Copies share the bytes. XmlElement values use this class, too.
class UaByteString
{
public:
    UaByteString() noexcept = default;
    UaByteString(OpcUa_Int32 length, const OpcUa_Byte* data) noexcept; ///< length below 0: null
    explicit UaByteString(std::span<const OpcUa_Byte> bytes) noexcept; ///< never null
    explicit UaByteString(const OpcUa_ByteString& value) noexcept : m_value(value) {}
    explicit UaByteString(const UaByteArray& bytes) noexcept : UaByteString(bytes.span()) {}

    /// Digits with or without a leading "0x"; spaces and colons between bytes are skipped. Null on a fault.
    [[nodiscard]] static UaByteString fromHex(std::string_view text);
    /// RFC 4648 with padding; white space is skipped. Null on a fault.
    [[nodiscard]] static UaByteString fromBase64(std::string_view text);
    /// "0aff", lower case; separator lies between bytes.
    [[nodiscard]] UaString toHex(std::string_view separator = {}) const;
    [[nodiscard]] UaString toBase64() const;
    UaByteArray toByteArray() const noexcept { return UaByteArray(length(), data()); }

    bool isNull() const noexcept { return m_value->Length < 0; }
    bool isEmpty() const noexcept { return length() == 0; }
    OpcUa_Int32 length() const noexcept { return m_value->Length > 0 && m_value->Data ? m_value->Length : 0; }
    const OpcUa_Byte* data() const noexcept { return m_value->Data; } ///< null when null
    std::span<const OpcUa_Byte> bytes() const noexcept
    {
        return {m_value->Data, static_cast<std::size_t>(length())};
    }
    /// The bytes as text, for XmlElement values and comparisons.
    std::string_view view() const noexcept
    {
        return {reinterpret_cast<const char*>(m_value->Data), static_cast<std::size_t>(length())};
    }
    void clear() noexcept { m_value.clear(); }

    /// As for UaString: get borrows, attach takes over, detach hands over, copyTo copies into raw memory.
    const OpcUa_ByteString* get() const noexcept { return m_value.get(); }
    void attach(OpcUa_ByteString* value) noexcept { m_value.attach(value); }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_ByteString* destination) noexcept
    {
        return m_value.detach(destination);
    }
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ByteString* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    friend bool operator==(const UaByteString& left, const UaByteString& right) noexcept
    {
        return left.isNull() == right.isNull() && left.view() == right.view();
    }
    friend std::strong_ordering operator<=>(const UaByteString& left, const UaByteString& right) noexcept
    {
        const auto nulls = right.isNull() <=> left.isNull();
        return nulls != 0 ? nulls : left.view() <=> right.view();
    }

private:
    UaSharedValue<OpcUa_ByteString> m_value;
};

template <>
struct std::hash<UaByteString>
{
    std::size_t operator()(const UaByteString& value) const noexcept
    {
        return std::hash<std::string_view>()(value.view());
    }
};
