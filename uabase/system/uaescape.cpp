#include <uabase/system/uaescape.h>

#include <array>
#include <cstring>

namespace {

constexpr std::size_t longestEscape = 4;

struct Piece
{
    std::array<char, longestEscape> text{};
    std::size_t length = 0; // of the text
    std::size_t taken = 1;  // bytes of the source
};

Piece hexadecimal(unsigned char byte, std::size_t taken)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    return {{'\\', 'x', digits[byte >> 4], digits[byte & 0x0F]}, 4, taken};
}

unsigned char byteAt(std::string_view text, std::size_t index)
{
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

Piece pieceAt(std::string_view text, std::size_t index)
{
    const unsigned char byte = byteAt(text, index);
    const unsigned char next = byteAt(text, index + 1);
    if (byte == 0xC2 && next >= 0x80 && next <= 0x9F)
        return hexadecimal(next, 2); // these steer terminals as well
    switch (byte) {
    case '\n':
        return {{'\\', 'n'}, 2, 1};
    case '\r':
        return {{'\\', 'r'}, 2, 1};
    case '\t':
        return {{'\\', 't'}, 2, 1};
    default:
        break;
    }
    if (byte < 0x20 || byte == 0x7F)
        return hexadecimal(byte, 1);
    return {{static_cast<char>(byte)}, 1, 1};
}

} // namespace

std::size_t uaEscapeControls(std::string_view text, char* buffer, std::size_t size) noexcept
{
    if (size == 0)
        return 0;
    std::size_t used = 0;
    for (std::size_t index = 0; index < text.size();) {
        const Piece piece = pieceAt(text, index);
        if (used + piece.length >= size)
            break;
        std::memcpy(buffer + used, piece.text.data(), piece.length);
        used += piece.length;
        index += piece.taken;
    }
    buffer[used] = '\0';
    return used;
}

std::string uaEscapeControls(std::string_view text)
{
    std::string escaped(text.size() * longestEscape + 1, '\0');
    escaped.resize(uaEscapeControls(text, escaped.data(), escaped.size()));
    return escaped;
}
