#include <uabase/values/uaguid.h>

#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/random.h>
#include <utility>

namespace {

using GuidBytes = std::array<OpcUa_Byte, 16>;

// In the order of the text form.
GuidBytes textOrder(const OpcUa_Guid& guid) noexcept
{
    GuidBytes bytes{};
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<OpcUa_Byte>(guid.Data1 >> (24 - 8 * i));
    for (std::size_t i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<OpcUa_Byte>(guid.Data2 >> (8 - 8 * i));
        bytes[6 + i] = static_cast<OpcUa_Byte>(guid.Data3 >> (8 - 8 * i));
    }
    std::memcpy(bytes.data() + 8, guid.Data4, 8);
    return bytes;
}

OpcUa_Guid fromTextOrder(const GuidBytes& bytes) noexcept
{
    OpcUa_Guid guid{};
    for (std::size_t i = 0; i < 4; ++i)
        guid.Data1 = guid.Data1 << 8 | bytes[i];
    guid.Data2 = static_cast<OpcUa_UInt16>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<OpcUa_UInt16>(bytes[6] << 8 | bytes[7]);
    std::memcpy(guid.Data4, bytes.data() + 8, 8);
    return guid;
}

// The binary encoding holds the first three numbers with the lowest byte first.
void swapNumbers(GuidBytes& bytes) noexcept
{
    std::swap(bytes[0], bytes[3]);
    std::swap(bytes[1], bytes[2]);
    std::swap(bytes[4], bytes[5]);
    std::swap(bytes[6], bytes[7]);
}

constexpr bool hyphenAt(std::size_t byteIndex) noexcept
{
    return byteIndex == 4 || byteIndex == 6 || byteIndex == 8 || byteIndex == 10;
}

} // namespace

UaGuid UaGuid::fromString(std::string_view text, bool* ok) noexcept
{
    if (ok)
        *ok = false;
    if (text.size() == 38 && text.front() == '{' && text.back() == '}')
        text = text.substr(1, 36);
    if (text.size() != 36)
        return {};
    GuidBytes bytes{};
    std::size_t position = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hyphenAt(i) && text[position++] != '-')
            return {};
        const int high = uabase::hexDigit(text[position++]);
        const int low = uabase::hexDigit(text[position++]);
        if (high < 0 || low < 0)
            return {};
        bytes[i] = static_cast<OpcUa_Byte>(high * 16 + low);
    }
    if (ok)
        *ok = true;
    return UaGuid(fromTextOrder(bytes));
}

UaGuid UaGuid::fromByteString(const UaByteString& source, bool* ok) noexcept
{
    const bool fits = source.length() == 16;
    if (ok)
        *ok = fits;
    if (!fits)
        return {};
    GuidBytes bytes{};
    std::memcpy(bytes.data(), source.data(), bytes.size());
    swapNumbers(bytes);
    return UaGuid(fromTextOrder(bytes));
}

UaGuid UaGuid::create()
{
    GuidBytes bytes{};
    if (getentropy(bytes.data(), bytes.size()) != 0)
        return {};
    bytes[6] = static_cast<OpcUa_Byte>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<OpcUa_Byte>((bytes[8] & 0x3F) | 0x80);
    return UaGuid(fromTextOrder(bytes));
}

UaString UaGuid::toString() const
{
    const GuidBytes bytes = textOrder(m_value);
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hyphenAt(i))
            text += '-';
        text += uabase::hexDigits[bytes[i] >> 4];
        text += uabase::hexDigits[bytes[i] & 15];
    }
    return UaString(text);
}

UaByteString UaGuid::toByteString() const
{
    GuidBytes bytes = textOrder(m_value);
    swapNumbers(bytes);
    return UaByteString(bytes);
}
