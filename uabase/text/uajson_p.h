// A small JSON reader and writer, for the text forms of values. RFC 8259.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace uabase {

/// A value of a document. Numbers keep their text, so that none loses digits.
class JsonValue
{
public:
    enum Kind { Null, Boolean, Number, String, Array, Object };
    using Member = std::pair<std::string, JsonValue>;

    JsonValue() = default;
    static JsonValue boolean(bool value) { return JsonValue(Boolean, value ? "true" : "false"); }
    static JsonValue number(std::string text) { return JsonValue(Number, std::move(text)); }
    static JsonValue string(std::string_view text) { return JsonValue(String, std::string(text)); }
    static JsonValue array() { return JsonValue(Array, {}); }
    static JsonValue object() { return JsonValue(Object, {}); }

    Kind kind() const noexcept { return m_kind; }
    bool isNull() const noexcept { return m_kind == Null; }
    bool isTrue() const noexcept { return m_kind == Boolean && m_text == "true"; }
    const std::string& text() const noexcept { return m_text; } ///< of a string or number
    const std::vector<JsonValue>& items() const noexcept { return m_items; }
    const std::vector<Member>& members() const noexcept { return m_members; }
    /// Null when there is none of that name.
    const JsonValue* find(std::string_view name) const noexcept;

    void append(JsonValue item) { m_items.push_back(std::move(item)); }
    void set(std::string name, JsonValue value) { m_members.emplace_back(std::move(name), std::move(value)); }

    /// Without blanks, or indented by two for each level.
    std::string toText(bool indented = false) const;

private:
    JsonValue(Kind kind, std::string text) : m_kind(kind), m_text(std::move(text)) {}
    void write(std::string& out, int indent) const;

    Kind m_kind = Null;
    std::string m_text;
    std::vector<JsonValue> m_items;
    std::vector<Member> m_members;
};

/// Bounds of a document: hostile text is input like any other.
constexpr int maxJsonDepth = 512;
constexpr std::size_t maxJsonValues = 4u * 1024 * 1024;
constexpr std::size_t maxJsonBytes = 64u * 1024 * 1024;

/// False with error (what and where) when the text is not one JSON document.
[[nodiscard]] bool parseJson(std::string_view text, JsonValue& value, std::string& error);

} // namespace uabase
