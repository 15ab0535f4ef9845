#include <uabase/text/uajson_p.h>

#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <algorithm>
#include <ranges>

namespace uabase {

namespace {

void writeString(std::string& out, std::string_view text)
{
    out += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (byte < 0x20 || byte == 0x7F) {
            out += "\\u00";
            out += hexDigits[byte >> 4];
            out += hexDigits[byte & 15];
        } else {
            out += c;
        }
    }
    out += '"';
}

void writeBreak(std::string& out, int indent)
{
    if (indent >= 0) {
        out += '\n';
        out.append(static_cast<std::size_t>(indent) * 2, ' ');
    }
}

void appendUtf8(std::string& out, unsigned code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
        return;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned heads[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(heads[more] | code >> 6 * more);
    for (int i = more - 1; i >= 0; --i)
        out += static_cast<char>(0x80u | (code >> 6 * i & 0x3Fu));
}

class Parser
{
public:
    explicit Parser(std::string_view text) : m_text(text) {}

    bool parse(JsonValue& value, std::string& error)
    {
        if (m_text.size() > maxJsonBytes)
            fail("the text is too long");
        else if (parseValue(value, 0)) {
            skipBlanks();
            if (m_at != m_text.size())
                fail("more text after the value");
        }
        error = m_error;
        return m_error.empty();
    }

private:
    bool fail(std::string_view what)
    {
        if (m_error.empty())
            m_error.append(what).append(" at character ").append(std::to_string(m_at + 1));
        return false;
    }
    void skipBlanks() { m_at = std::min(m_text.find_first_not_of(" \t\r\n", m_at), m_text.size()); }
    char peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    bool take(char c)
    {
        skipBlanks();
        if (peek() != c)
            return false;
        ++m_at;
        return true;
    }

    bool parseValue(JsonValue& value, int depth)
    {
        if (depth > maxJsonDepth)
            return fail("nested too deep");
        if (++m_values > maxJsonValues)
            return fail("too many values");
        skipBlanks();
        switch (peek()) {
        case '{':
            return parseObject(value, depth);
        case '[':
            return parseArray(value, depth);
        case '"': {
            std::string text;
            if (!parseString(text))
                return false;
            value = JsonValue::string(text);
            return true;
        }
        default:
            return parseWord(value);
        }
    }

    bool parseWord(JsonValue& value)
    {
        constexpr std::string_view wordCharacters = "+-.0123456789abcdefghijklmnopqrstuvwxyzE";
        const std::size_t end = std::min(m_text.find_first_not_of(wordCharacters, m_at), m_text.size());
        const std::string_view word = m_text.substr(m_at, end - m_at);
        if (word == "true" || word == "false")
            value = JsonValue::boolean(word == "true");
        else if (word == "null")
            value = JsonValue();
        else if (isNumber(word))
            value = JsonValue::number(std::string(word));
        else
            return fail("no value");
        m_at = end;
        return true;
    }

    static std::size_t digits(std::string_view& text)
    {
        const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
        text.remove_prefix(count);
        return count;
    }

    static bool isNumber(std::string_view text)
    {
        if (text.starts_with('-'))
            text.remove_prefix(1);
        const bool leadingZero = text.starts_with('0');
        const std::size_t whole = digits(text);
        if (whole == 0 || (leadingZero && whole > 1))
            return false;
        if (takePrefix(text, ".") && digits(text) == 0)
            return false;
        if (takePrefix(text, "e") || takePrefix(text, "E")) {
            if (text.starts_with('+') || text.starts_with('-'))
                text.remove_prefix(1);
            if (digits(text) == 0)
                return false;
        }
        return text.empty();
    }

    bool parseArray(JsonValue& value, int depth)
    {
        value = JsonValue::array();
        ++m_at;
        if (take(']'))
            return true;
        do {
            JsonValue item;
            if (!parseValue(item, depth + 1))
                return false;
            value.append(std::move(item));
        } while (take(','));
        return take(']') || fail("no ] or ,");
    }

    bool parseObject(JsonValue& value, int depth)
    {
        value = JsonValue::object();
        ++m_at;
        if (take('}'))
            return true;
        do {
            skipBlanks();
            std::string name;
            JsonValue member;
            if (peek() != '"')
                return fail("no member name");
            if (!parseString(name))
                return false;
            if (!take(':'))
                return fail("no colon");
            if (!parseValue(member, depth + 1))
                return false;
            value.set(std::move(name), std::move(member));
        } while (take(','));
        return take('}') || fail("no } or ,");
    }

    bool parseString(std::string& out)
    {
        ++m_at;
        for (;;) {
            const std::size_t end = std::min(m_text.find_first_of("\"\\", m_at), m_text.size());
            const std::string_view plain = m_text.substr(m_at, end - m_at);
            if (std::ranges::any_of(plain, [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
                return fail("a control character in a string");
            out += plain;
            m_at = end;
            if (m_at >= m_text.size())
                return fail("a string without end");
            if (m_text[m_at++] == '"')
                return UaString(out).isValidUtf8() || fail("a string that is no UTF-8");
            if (!parseEscape(out))
                return false;
        }
    }

    bool parseEscape(std::string& out)
    {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = peek();
        const std::size_t index = letter == '\0' ? std::string_view::npos : letters.find(letter);
        if (index != std::string_view::npos) {
            out += meanings[index];
            ++m_at;
            return true;
        }
        unsigned code = 0;
        if (letter != 'u' || !parseHex(code))
            return fail("an unknown escape");
        if (code >= 0xD800 && code < 0xDC00) {
            unsigned low = 0;
            if (m_text.substr(m_at, 2) != "\\u" || (++m_at, !parseHex(low)) || low < 0xDC00 || low > 0xDFFF)
                return fail("half a surrogate pair");
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        } else if (code >= 0xDC00 && code <= 0xDFFF) {
            return fail("half a surrogate pair");
        }
        appendUtf8(out, code);
        return true;
    }

    // At the u: takes it and four digits.
    bool parseHex(unsigned& code)
    {
        const std::string_view text = m_text.substr(m_at, 5);
        if (text.size() < 5)
            return false;
        code = 0;
        for (const char c : text.substr(1)) {
            const int digit = hexDigit(c);
            if (digit < 0)
                return false;
            code = code * 16 + static_cast<unsigned>(digit);
        }
        m_at += 5;
        return true;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_values = 0;
    std::string m_error;
};

} // namespace

const JsonValue* JsonValue::find(std::string_view name) const noexcept
{
    const auto found = std::ranges::find(m_members, name,
                                         [](const Member& member) { return std::string_view(member.first); });
    return found == m_members.end() ? nullptr : &found->second;
}

std::string JsonValue::toText(bool indented) const
{
    std::string out;
    write(out, indented ? 0 : -1);
    return out;
}

void JsonValue::write(std::string& out, int indent) const
{
    const int inner = indent < 0 ? -1 : indent + 1;
    const char* separator = "";
    switch (m_kind) {
    case Null:
        out += "null";
        return;
    case Boolean:
    case Number:
        out += m_text;
        return;
    case String:
        writeString(out, m_text);
        return;
    case Array:
        out += '[';
        for (const JsonValue& item : m_items) {
            out += std::exchange(separator, ",");
            writeBreak(out, inner);
            item.write(out, inner);
        }
        break;
    case Object:
        out += '{';
        for (const auto& [name, value] : m_members) {
            out += std::exchange(separator, ",");
            writeBreak(out, inner);
            writeString(out, name);
            out += indent < 0 ? ":" : ": ";
            value.write(out, inner);
        }
        break;
    }
    if (!m_items.empty() || !m_members.empty())
        writeBreak(out, indent);
    out += m_kind == Array ? ']' : '}';
}

bool parseJson(std::string_view text, JsonValue& value, std::string& error)
{
    value = JsonValue();
    return Parser(text).parse(value, error);
}

} // namespace uabase
