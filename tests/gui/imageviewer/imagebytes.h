// Images as bytes, whole and damaged.
#pragma once
#include <uabase/values/uabytestring.h>
#include <uabase/values/uavariant.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <span>

inline std::span<const unsigned char> bytesOf(const QByteArray& bytes)
{
    return {reinterpret_cast<const unsigned char*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

inline UaVariant imageValue(const QByteArray& bytes)
{
    return UaVariant(UaByteString(bytesOf(bytes)));
}

/// Noise, so that no format makes it small; its pixel at 3, 2 is red.
inline QImage noise(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    quint32 state = 42;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, (state = state * 1'664'525u + 1'013'904'223u) >> 8);
    if (image.rect().contains(3, 2))
        image.setPixel(3, 2, qRgb(255, 0, 0));
    return image;
}

inline QByteArray encoded(const char* format, const QImage& image = noise(40, 30))
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

/// Nothing here writes this format. Each frame is one pixel of its number; with a screen of that size.
inline QByteArray gif(int frames, int width = 1, int height = 1)
{
    const auto number = [](int value) {
        return QByteArray(1, char(value & 0xFF)) + QByteArray(1, char(value >> 8));
    };
    QByteArray bytes = "GIF89a" + number(width) + number(height) +
                       QByteArray::fromHex("f00000" // 2 colours
                                           "ff0000"
                                           "0000ff");
    for (int i = 0; i < frames; ++i) {
        bytes += QByteArray::fromHex("21f9040002000000"); // 20 ms
        bytes += QByteArray::fromHex("2c00000000") + number(1) + number(1) + QByteArray::fromHex("00");
        bytes += QByteArray::fromHex(i % 2 == 0 ? "02024401" : "02024c01") + QByteArray(1, '\0');
    }
    return bytes + ';';
}

inline void setBig32(QByteArray& bytes, int at, quint32 value)
{
    for (int i = 0; i < 4; ++i)
        bytes[at + i] = char(value >> (8 * (3 - i)));
}

/// A small file that claims to be large.
inline QByteArray claimedPng(quint32 width, quint32 height)
{
    QByteArray bytes = encoded("PNG", noise(1, 1));
    setBig32(bytes, 16, width);
    setBig32(bytes, 20, height);
    return bytes;
}
