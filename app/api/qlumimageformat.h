// The formats in which servers offer images.
#pragma once
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <span>

/// Those that have a data type of their own.
enum class QlumImageFormat : unsigned char { None, Bmp, Gif, Jpg, Png };

/// What the first bytes say.
[[nodiscard]] QlumImageFormat qlumImageFormatOf(std::span<const unsigned char> bytes) noexcept;
/// What a data type promises; None for Image itself, which may be any, and for all other types.
[[nodiscard]] QlumImageFormat qlumDeclaredImageFormat(const UaNodeId& dataType) noexcept;
/// "PNG", as a decoder and a user call it; null for None.
[[nodiscard]] const char* qlumImageFormatName(QlumImageFormat format) noexcept;

/// Borrows what a single byte string holds; empty for every other value.
[[nodiscard]] std::span<const unsigned char> qlumImageBytes(const UaVariant& value) noexcept;
/// Whether a value is worth to be shown as an image: a byte string that begins like one, or is declared as
/// one and is not empty.
[[nodiscard]] bool qlumIsImage(const UaVariant& value, const UaNodeId& dataType) noexcept;
