// A text with its locale, OPC 10000-3, 8.5.
#pragma once

#include <uabase/values/uastring.h>

#include <compare>

class UaLocalizedText
{
public:
    UaLocalizedText() noexcept = default;
    UaLocalizedText(const UaString& locale, const UaString& text) noexcept : m_locale(locale), m_text(text) {}
    explicit UaLocalizedText(const OpcUa_LocalizedText& value) noexcept
        : m_locale(value.Locale), m_text(value.Text)
    {
    }

    /// The text alone.
    [[nodiscard]] UaString toString() const { return m_text; }
    bool isNull() const noexcept { return m_locale.isNull() && m_text.isNull(); }
    const UaString& locale() const noexcept { return m_locale; }
    const UaString& text() const noexcept { return m_text; }
    void setText(const UaString& text) noexcept { m_text = text; }

    /// Deep copy into raw memory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_LocalizedText* destination) const noexcept;

    friend bool operator==(const UaLocalizedText&, const UaLocalizedText&) noexcept = default;
    friend std::strong_ordering operator<=>(const UaLocalizedText&,
                                            const UaLocalizedText&) noexcept = default;

private:
    UaString m_locale;
    UaString m_text;
};
