#include <uabase/values/uastring.h>

#include <cstdint>
#include <cstring>

namespace {

// Room for size bytes and the terminator; null data when that is too much.
OpcUa_String allocateText(std::size_t size) noexcept
{
    OpcUa_String text;
    OpcUa_String_Initialize(&text);
    if (size >= INT32_MAX)
        return text;
    text.Data = static_cast<char*>(OpcUa_Memory_Alloc(size + 1));
    if (text.Data) {
        text.Data[size] = '\0';
        text.Length = static_cast<OpcUa_Int32>(size);
    }
    return text;
}

// Length of the well-formed sequence at the front of bytes, 0 when there is none.
std::size_t sequenceLength(std::string_view bytes) noexcept
{
    const auto at = [&](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
    };
    const auto follows = [&](std::size_t i, unsigned low = 0x80, unsigned high = 0xBF) {
        return at(i) >= low && at(i) <= high;
    };
    const unsigned lead = at(0);
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) // no overlong forms, no surrogates
        return follows(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF) && follows(2) ? 3 : 0;
    if (lead >= 0xF0 && lead <= 0xF4) // nothing above U+10FFFF
        return follows(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF) && follows(2) && follows(3)
                   ? 4
                   : 0;
    return 0;
}

} // namespace

UaString::UaString(const char* text) noexcept
{
    if (text)
        *this = UaString(std::string_view(text));
}

UaString::UaString(std::string_view text) noexcept
{
    OpcUa_String value = allocateText(text.size());
    if (value.Data && !text.empty())
        std::memcpy(value.Data, text.data(), text.size());
    m_value.attach(&value);
}

UaString& UaString::operator+=(std::string_view text) noexcept
{
    if (text.empty())
        return *this;
    const std::string_view mine = view();
    OpcUa_String joined = allocateText(mine.size() + text.size());
    if (!joined.Data)
        return *this;
    if (!mine.empty())
        std::memcpy(joined.Data, mine.data(), mine.size());
    std::memcpy(joined.Data + mine.size(), text.data(), text.size());
    m_value.attach(&joined);
    return *this;
}

bool UaString::isValidUtf8() const noexcept
{
    std::string_view rest = view();
    while (!rest.empty()) {
        const std::size_t length = sequenceLength(rest);
        if (length == 0)
            return false;
        rest.remove_prefix(length);
    }
    return true;
}
