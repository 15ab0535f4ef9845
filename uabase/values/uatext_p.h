// Small text helpers that the value classes share.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace uabase {

/// The whole text is a decimal number of type T; a sign only where T has one. Never throws, no locale.
template <typename T>
[[nodiscard]] std::optional<T> parseNumber(std::string_view text) noexcept
{
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return number;
}

[[nodiscard]] constexpr int hexDigit(char c) noexcept
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

constexpr char hexDigits[] = "0123456789abcdef";

/// White space of XML: space, tab, line ends.
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) noexcept
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Cuts prefix off the front of text; false when it is not there.
[[nodiscard]] constexpr bool takePrefix(std::string_view& text, std::string_view prefix) noexcept
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

} // namespace uabase
