#include <app/api/qlumimageformat.h>

#include <opcua/opcua_identifiers.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>

namespace {
bool beginsWith(std::span<const unsigned char> bytes, std::initializer_list<unsigned char> begin)
{
    return bytes.size() >= begin.size() && std::equal(begin.begin(), begin.end(), bytes.begin());
}

// Two letters alone would make an image of many a text.
bool beginsLikeBmp(std::span<const unsigned char> bytes)
{
    constexpr std::size_t headerSizeAt = 14;
    constexpr std::array<unsigned char, 7> headerSizes{12, 40, 52, 56, 64, 108, 124};
    return beginsWith(bytes, {'B', 'M'}) && bytes.size() >= headerSizeAt + 4 &&
           std::find(headerSizes.begin(), headerSizes.end(), bytes[headerSizeAt]) != headerSizes.end() &&
           bytes[headerSizeAt + 1] == 0 && bytes[headerSizeAt + 2] == 0 && bytes[headerSizeAt + 3] == 0;
}
} // namespace

QlumImageFormat qlumImageFormatOf(std::span<const unsigned char> bytes) noexcept
{
    if (beginsWith(bytes, {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}))
        return QlumImageFormat::Png;
    if (beginsWith(bytes, {0xFF, 0xD8, 0xFF}))
        return QlumImageFormat::Jpg;
    if (beginsWith(bytes, {'G', 'I', 'F', '8', '7', 'a'}) ||
        beginsWith(bytes, {'G', 'I', 'F', '8', '9', 'a'}))
        return QlumImageFormat::Gif;
    return beginsLikeBmp(bytes) ? QlumImageFormat::Bmp : QlumImageFormat::None;
}

QlumImageFormat qlumDeclaredImageFormat(const UaNodeId& dataType) noexcept
{
    if (!dataType.isNumeric() || dataType.namespaceIndex() != 0)
        return QlumImageFormat::None;
    switch (dataType.identifierNumeric()) {
    case OpcUaId_ImageBMP:
        return QlumImageFormat::Bmp;
    case OpcUaId_ImageGIF:
        return QlumImageFormat::Gif;
    case OpcUaId_ImageJPG:
        return QlumImageFormat::Jpg;
    case OpcUaId_ImagePNG:
        return QlumImageFormat::Png;
    default:
        return QlumImageFormat::None;
    }
}

const char* qlumImageFormatName(QlumImageFormat format) noexcept
{
    constexpr std::array<const char*, 5> names{nullptr, "BMP", "GIF", "JPG", "PNG"};
    return names.at(static_cast<std::size_t>(format));
}

std::span<const unsigned char> qlumImageBytes(const UaVariant& value) noexcept
{
    if (value.type() != OpcUaType_ByteString || !value.isScalar())
        return {};
    const OpcUa_ByteString& bytes = value.get()->Value.ByteString;
    return {bytes.Data, static_cast<std::size_t>(std::max(bytes.Length, 0))};
}

bool qlumIsImage(const UaVariant& value, const UaNodeId& dataType) noexcept
{
    const std::span<const unsigned char> bytes = qlumImageBytes(value);
    return !bytes.empty() && (qlumImageFormatOf(bytes) != QlumImageFormat::None ||
                              qlumDeclaredImageFormat(dataType) != QlumImageFormat::None);
}
