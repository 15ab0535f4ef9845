// Control characters in foreign text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Writes control characters out, as \n, \r, \t and \x1B, so that the text shows what it holds, on one line.
/// The form for a buffer takes as much as fits, ends it with NUL and returns the length.
std::size_t uaEscapeControls(std::string_view text, char* buffer, std::size_t size) noexcept;
[[nodiscard]] std::string uaEscapeControls(std::string_view text);
