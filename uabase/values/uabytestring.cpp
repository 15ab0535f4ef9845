#include <uabase/values/uabytestring.h>

#include <uabase/values/uatext_p.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<signed char, 256> base64Values = [] {
    std::array<signed char, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < base64Digits.size(); ++i)
        values[static_cast<unsigned char>(base64Digits[i])] = static_cast<signed char>(i);
    return values;
}();

// The text without white space; its padding is checked and cut. False on a fault.
bool base64Payload(std::string_view text, std::string& payload)
{
    payload.reserve(text.size());
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n')
            payload += c;
    if (payload.size() % 4 != 0)
        return false;
    for (int i = 0; i < 2 && !payload.empty() && payload.back() == '='; ++i)
        payload.pop_back();
    return true;
}

} // namespace

UaByteString::UaByteString(OpcUa_Int32 length, const OpcUa_Byte* data) noexcept
{
    if (length < 0 || (length > 0 && !data))
        return;
    OpcUa_ByteString value;
    OpcUa_ByteString_Initialize(&value);
    value.Data =
        static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(length > 0 ? static_cast<std::size_t>(length) : 1));
    if (!value.Data)
        return;
    value.Length = length;
    if (length > 0)
        std::memcpy(value.Data, data, static_cast<std::size_t>(length));
    m_value.attach(&value);
}

UaByteString::UaByteString(std::span<const OpcUa_Byte> bytes) noexcept
{
    static constexpr OpcUa_Byte nothing = 0;
    if (bytes.size() <= INT32_MAX)
        *this = UaByteString(static_cast<OpcUa_Int32>(bytes.size()), bytes.empty() ? &nothing : bytes.data());
}

UaByteString UaByteString::fromHex(std::string_view text)
{
    text = uabase::trimmed(text);
    if (!uabase::takePrefix(text, "0x"))
        (void)uabase::takePrefix(text, "0X");
    std::vector<OpcUa_Byte> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ' || text[i] == ':') {
            ++i;
            continue;
        }
        const int high = uabase::hexDigit(text[i]);
        const int low = i + 1 < text.size() ? uabase::hexDigit(text[i + 1]) : -1;
        if (high < 0 || low < 0)
            return {};
        bytes.push_back(static_cast<OpcUa_Byte>(high * 16 + low));
        i += 2;
    }
    return UaByteString(bytes);
}

UaByteString UaByteString::fromBase64(std::string_view text)
{
    std::string payload;
    if (!base64Payload(text, payload) || payload.size() % 4 == 1)
        return {};
    std::vector<OpcUa_Byte> bytes;
    bytes.reserve(payload.size() * 3 / 4);
    unsigned bits = 0;
    int held = 0;
    for (const char c : payload) {
        const int value = base64Values[static_cast<unsigned char>(c)];
        if (value < 0)
            return {};
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFFu;
        held += 6;
        if (held >= 8) {
            held -= 8;
            bytes.push_back(static_cast<OpcUa_Byte>(bits >> held));
        }
    }
    return UaByteString(bytes);
}

UaString UaByteString::toHex(std::string_view separator) const
{
    std::string text;
    text.reserve(bytes().size() * (2 + separator.size()));
    for (const OpcUa_Byte byte : bytes()) {
        if (!text.empty())
            text += separator;
        text += uabase::hexDigits[byte >> 4];
        text += uabase::hexDigits[byte & 15];
    }
    return UaString(text);
}

UaString UaByteString::toBase64() const
{
    const auto input = bytes();
    std::string text;
    text.reserve((input.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < input.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, input.size() - i);
        unsigned bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? input[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? base64Digits[bits >> (18 - 6 * k) & 63u] : '=';
    }
    return UaString(text);
}
