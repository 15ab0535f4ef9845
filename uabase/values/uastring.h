// Text in UTF-8, OPC 10000-6, 5.2.2.4.
#pragma once

#include <uabase/values/uashared.h>

#include <compare>
#include <functional>
#include <string>
#include <string_view>

/// Null and empty are different values, also in comparisons (null orders first). Bytes are kept as received,
/// even when they are not valid UTF-8. Copies share the text.
class UaString
{
public:
    UaString() noexcept = default;
    UaString(const char* text) noexcept;      ///< null pointer: null string
    UaString(std::string_view text) noexcept; ///< never null
    explicit UaString(const OpcUa_String& value) noexcept : m_value(value) {}
    /// null pointer: null string
    explicit UaString(const OpcUa_String* value) noexcept
    {
        if (value)
            m_value = UaSharedValue<OpcUa_String>(*value);
    }

    bool isNull() const noexcept { return m_value->Length < 0; }
    bool isEmpty() const noexcept { return size() == 0; }       ///< true for null as well
    std::size_t size() const noexcept { return view().size(); } ///< bytes
    std::size_t length() const noexcept { return size(); }
    std::string_view view() const noexcept
    {
        return m_value->Length > 0 && m_value->Data
                   ? std::string_view(m_value->Data, static_cast<std::size_t>(m_value->Length))
                   : std::string_view();
    }
    /// Ends with NUL, never null; valid until this string changes.
    const char* toUtf8() const noexcept { return m_value->Data ? m_value->Data : ""; }
    std::string toStdString() const { return std::string(view()); }
    /// Whether the bytes are well-formed UTF-8.
    bool isValidUtf8() const noexcept;
    bool startsWith(std::string_view prefix) const noexcept { return view().starts_with(prefix); }
    bool endsWith(std::string_view suffix) const noexcept { return view().ends_with(suffix); }

    UaString& operator+=(std::string_view text) noexcept; ///< out of memory: unchanged
    UaString& operator+=(const UaString& text) noexcept { return *this += text.view(); }
    UaString& operator+=(const char* text) noexcept { return text ? *this += std::string_view(text) : *this; }
    void clear() noexcept { m_value.clear(); }

    /// Borrowed; valid until this string changes.
    const OpcUa_String* get() const noexcept { return m_value.get(); }
    /// Takes over the text of a C string, which is null afterwards.
    void attach(OpcUa_String* value) noexcept { m_value.attach(value); }
    /// Moves the text into raw memory; this string is null afterwards. BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_String* destination) noexcept
    {
        return m_value.detach(destination);
    }
    /// Deep copy into raw memory (what destination held is not freed). BadOutOfMemory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_String* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    friend bool operator==(const UaString& left, const UaString& right) noexcept
    {
        return left.isNull() == right.isNull() && left.view() == right.view();
    }
    friend std::strong_ordering operator<=>(const UaString& left, const UaString& right) noexcept
    {
        const auto nulls = right.isNull() <=> left.isNull();
        return nulls != 0 ? nulls : left.view() <=> right.view();
    }
    friend UaString operator+(UaString left, const UaString& right) noexcept { return left += right; }

private:
    UaSharedValue<OpcUa_String> m_value;
};

template <>
struct std::hash<UaString>
{
    std::size_t operator()(const UaString& value) const noexcept
    {
        return std::hash<std::string_view>()(value.view());
    }
};
