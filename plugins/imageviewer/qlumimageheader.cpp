#include <plugins/imageviewer/qlumimageheader.h>

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

class ImageHeaderText
{
    Q_DECLARE_TR_FUNCTIONS(QlumImageHeader)
};
using Text = ImageHeaderText;

constexpr int mostScans = 100; // a few bytes each have a progressive image gone through once more

// Numbers at places of the bytes; 0 beyond their end.
class ImageBytes
{
public:
    explicit ImageBytes(std::span<const unsigned char> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] bool has(std::size_t at, std::size_t count) const
    {
        return at <= m_bytes.size() && count <= m_bytes.size() - at;
    }
    [[nodiscard]] std::uint32_t byte(std::size_t at) const { return at < m_bytes.size() ? m_bytes[at] : 0; }
    [[nodiscard]] std::uint32_t little16(std::size_t at) const { return byte(at) | byte(at + 1) << 8; }
    [[nodiscard]] std::uint32_t little32(std::size_t at) const
    {
        return little16(at) | little16(at + 2) << 16;
    }
    [[nodiscard]] std::uint32_t big16(std::size_t at) const { return byte(at) << 8 | byte(at + 1); }
    [[nodiscard]] std::uint32_t big32(std::size_t at) const { return big16(at) << 16 | big16(at + 2); }
    // The place of the byte from there on, or the size.
    [[nodiscard]] std::size_t find(unsigned char wanted, std::size_t at) const
    {
        const void* found =
            at < size() ? std::memchr(m_bytes.data() + at, wanted, m_bytes.size() - at) : nullptr;
        return found ? static_cast<std::size_t>(static_cast<const unsigned char*>(found) - m_bytes.data())
                     : size();
    }
    [[nodiscard]] QString latin1(std::size_t at, int count) const
    {
        return has(at, static_cast<std::size_t>(count))
                   ? QString::fromLatin1(reinterpret_cast<const char*>(m_bytes.data() + at), count)
                   : QString();
    }

private:
    std::span<const unsigned char> m_bytes;
};

QString number(qint64 value)
{
    return QLocale().toString(value);
}

QString endsWithin(const QString& what)
{
    return Text::tr("The bytes end within %1: the image is cut off.").arg(what);
}

QString bits(std::uint32_t count)
{
    return Text::tr("%1-bit").arg(count);
}

void takeSize(QlumImageHeader& header, qint64 width, qint64 height)
{
    constexpr qint64 most = std::numeric_limits<int>::max();
    header.size = QSize(static_cast<int>(std::min(width, most)), static_cast<int>(std::min(height, most)));
}

// ---- BMP

void readBmp(const ImageBytes& bytes, QlumImageHeader& header)
{
    constexpr std::size_t coreHeader = 12;
    const std::uint32_t kind = bytes.little32(14);
    const bool isCore = kind == coreHeader;
    if (!bytes.has(14, isCore ? coreHeader : 40)) {
        header.fault = endsWithin(Text::tr("the header of a BMP"));
        return;
    }
    const auto signed32 = [&bytes](std::size_t at) {
        return qint64(static_cast<std::int32_t>(bytes.little32(at)));
    };
    const qint64 width = isCore ? bytes.little16(18) : signed32(18);
    const qint64 height = std::abs(isCore ? bytes.little16(20) : signed32(22));
    const std::uint32_t depth = bytes.little16(isCore ? 24 : 28);
    const std::uint32_t compression = isCore ? 0 : bytes.little32(30);
    constexpr std::uint32_t bitFields = 3;
    const bool isPlain = compression == 0 || compression == bitFields;
    takeSize(header, std::max<qint64>(width, 0), height);
    header.frames = 1;
    header.form = isPlain ? bits(depth) : Text::tr("%1, run-length encoded").arg(bits(depth));
    header.memory = qint64(4) * header.size.width() * header.size.height();
    const qint64 row = (width * depth + 31) / 32 * 4;
    const qint64 wanted = qint64(bytes.little32(10)) + row * height;
    if (isPlain && width > 0 && qint64(bytes.size()) < wanted)
        header.remark = Text::tr("The image is cut off: it has %1 of %2 bytes.")
                            .arg(number(qint64(bytes.size())), number(wanted));
}

// ---- PNG

QString pngForm(const ImageBytes& bytes, std::uint32_t colours)
{
    const QStringList names{Text::tr("greyscale"),
                            QString(),
                            QStringLiteral("RGB"),
                            Text::tr("palette"),
                            Text::tr("greyscale with alpha"),
                            QString(),
                            QStringLiteral("RGBA")};
    QStringList parts{bits(bytes.byte(24)), names.value(static_cast<int>(colours))};
    if (bytes.byte(28) != 0)
        parts.append(Text::tr("interlaced"));
    return parts.join(QStringLiteral(", "));
}

void readPng(const ImageBytes& bytes, QlumImageHeader& header)
{
    constexpr std::size_t firstChunk = 8, headerEnd = 33, around = 12;
    if (!bytes.has(0, headerEnd) || bytes.latin1(firstChunk + 4, 4) != QLatin1String("IHDR")) {
        header.fault = bytes.has(0, headerEnd) ? Text::tr("The PNG does not begin with its header.")
                                               : endsWithin(Text::tr("the header of a PNG"));
        return;
    }
    takeSize(header, bytes.big32(16), bytes.big32(20));
    header.frames = 1;
    header.form = pngForm(bytes, bytes.byte(25));
    constexpr std::uint32_t deep = 16;
    header.memory = qint64(bytes.byte(24) == deep ? 8 : 4) * header.size.width() * header.size.height();
    for (std::size_t at = firstChunk; at < bytes.size();) {
        const std::uint32_t length = bytes.big32(at);
        const QString name = bytes.latin1(at + 4, 4);
        if (!bytes.has(at, around) || !bytes.has(at + around, length)) {
            header.remark = name.isEmpty() ? endsWithin(Text::tr("the PNG"))
                                           : endsWithin(Text::tr("its part %1").arg(name));
            return;
        }
        if (name == QLatin1String("IEND"))
            return;
        at += around + length;
    }
    header.remark = Text::tr("The PNG has no end mark: it is cut off.");
}

// ---- JPG

// A marker that begins a frame and tells its size; the others of this range are tables.
bool isJpgFrame(std::uint32_t marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

QString jpgForm(std::uint32_t marker, std::uint32_t precision, std::uint32_t components)
{
    constexpr std::uint32_t grey = 1, colour = 3;
    QStringList parts{bits(precision)};
    parts.append(components == grey     ? Text::tr("greyscale")
                 : components == colour ? Text::tr("colour")
                                        : Text::tr("%n component(s)", nullptr, static_cast<int>(components)));
    if (marker == 0xC2)
        parts.append(Text::tr("progressive"));
    return parts.join(QStringLiteral(", "));
}

void readJpgFrame(const ImageBytes& bytes, std::size_t at, QlumImageHeader& header)
{
    const std::uint32_t marker = bytes.byte(at + 1), components = bytes.byte(at + 9);
    takeSize(header, bytes.big16(at + 7), bytes.big16(at + 5));
    header.frames = 1;
    header.form = jpgForm(marker, bytes.byte(at + 4), components);
    constexpr qint64 pixel = 4, coefficient = 2;
    const bool isInScans = marker == 0xC2; // all coefficients are held until the last
    header.memory =
        (pixel + (isInScans ? coefficient * components : 0)) * header.size.width() * header.size.height();
}

// Behind the data of a scan: the next marker that is none of its own.
std::size_t endOfJpgScan(const ImageBytes& bytes, std::size_t at)
{
    for (;; ++at) {
        at = bytes.find(0xFF, at);
        const std::uint32_t next = bytes.byte(at + 1);
        const bool isData = next == 0 || next == 0xFF || (next >= 0xD0 && next <= 0xD7);
        if (at >= bytes.size() || !isData)
            return at;
    }
}

void readJpg(const ImageBytes& bytes, QlumImageHeader& header)
{
    int scans = 0;
    for (std::size_t at = 2; bytes.has(at, 2);) {
        const std::uint32_t marker = bytes.byte(at + 1);
        if (bytes.byte(at) != 0xFF) {
            header.remark = Text::tr("There is no part where one has to begin, at byte %1.").arg(at);
            return;
        }
        if (marker == 0xFF || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8)) {
            at += marker == 0xFF ? 1 : 2; // fill bytes, and marks without content
            continue;
        }
        if (marker == 0xD9)
            return;
        const std::uint32_t length = bytes.big16(at + 2);
        if (!bytes.has(at + 2, std::max<std::uint32_t>(length, 2)))
            break;
        if (isJpgFrame(marker) && header.frames == 0)
            readJpgFrame(bytes, at, header);
        at += 2 + std::max<std::uint32_t>(length, 2);
        if (marker != 0xDA)
            continue;
        if (++scans > mostScans) {
            header.fault = Text::tr("It has more than %1 scans, which no camera makes.").arg(mostScans);
            return;
        }
        at = endOfJpgScan(bytes, at);
    }
    if (header.frames == 0)
        header.fault = endsWithin(Text::tr("the header of a JPG"));
    else
        header.remark = Text::tr("The JPG has no end mark: it is cut off.");
}

// ---- GIF

// Behind the blocks of data that begin there; beyond the size when they are cut off.
std::size_t endOfGifBlocks(const ImageBytes& bytes, std::size_t at)
{
    while (at < bytes.size() && bytes.byte(at) != 0)
        at += 1 + bytes.byte(at);
    return at + 1;
}

std::size_t gifTable(std::uint32_t flags)
{
    return (flags & 0x80U) != 0 ? std::size_t(3) << ((flags & 7U) + 1) : 0;
}

// The size of what is there grows with frames that reach beyond the screen.
void readGifFrames(const ImageBytes& bytes, std::size_t at, QlumImageHeader& header)
{
    constexpr std::uint32_t extension = 0x21, image = 0x2C, end = 0x3B;
    while (bytes.has(at, 1)) {
        const std::uint32_t kind = bytes.byte(at);
        if (kind == end)
            return;
        if (kind != extension && kind != image) {
            header.remark = Text::tr("There is no part where one has to begin, at byte %1.").arg(at);
            return;
        }
        if (kind == image) {
            header.hasMoreFrames = header.frames == qlumMostFrames;
            if (header.hasMoreFrames)
                return;
            if (!bytes.has(at, 11))
                break;
            ++header.frames;
            header.size = header.size.expandedTo(
                QSize(static_cast<int>(bytes.little16(at + 1) + bytes.little16(at + 5)),
                      static_cast<int>(bytes.little16(at + 3) + bytes.little16(at + 7))));
            at += 11 + gifTable(bytes.byte(at + 9));
        } else {
            at += 2;
        }
        at = endOfGifBlocks(bytes, at);
        if (at > bytes.size())
            break;
    }
    header.remark = endsWithin(header.frames == 0 ? Text::tr("the header of a GIF")
                                                  : Text::tr("frame %1").arg(header.frames));
}

void readGif(const ImageBytes& bytes, QlumImageHeader& header)
{
    constexpr std::size_t screenEnd = 13;
    if (!bytes.has(0, screenEnd)) {
        header.fault = endsWithin(Text::tr("the header of a GIF"));
        return;
    }
    const std::uint32_t flags = bytes.byte(10);
    takeSize(header, bytes.little16(6), bytes.little16(8));
    const bool hasScreen = !header.size.isEmpty();
    header.form = Text::tr("palette");
    readGifFrames(bytes, screenEnd + gifTable(flags), header);
    constexpr qint64 pixels = 8; // what is seen, and what was there before the frame
    header.memory = pixels * header.size.width() * header.size.height();
    if (header.frames == 0)
        header.fault = header.remark.isEmpty() ? Text::tr("The GIF has no frame.") : header.remark;
    else if (!hasScreen)
        takeSize(header, 0, 0);
}

// ---- all

void checkLimits(QlumImageHeader& header, qint64 mostMemory)
{
    const qint64 pixels = qint64(header.size.width()) * header.size.height();
    const QString size = QStringLiteral("%1 x %2").arg(header.size.width()).arg(header.size.height());
    if (header.size.isEmpty())
        header.fault = Text::tr("The image has no pixels: its size is %1.").arg(size);
    else if (pixels > qlumMostPixels)
        header.fault =
            Text::tr("It claims to be %1 pixels large, and more than %2 megapixels are not decoded.")
                .arg(size, number(qlumMostPixels / 1'000'000));
    else if (header.memory > mostMemory)
        header.fault =
            Text::tr("With %1 pixels it needs %2 MB of memory, and there are %3 MB for it.")
                .arg(size, number(header.memory >> 20), number(std::max<qint64>(mostMemory, 0) >> 20));
}

QString otherThanDeclared(QlumImageFormat declared, QlumImageFormat found)
{
    return Text::tr("The data type says %1, but the bytes are those of a %2.")
        .arg(QLatin1String(qlumImageFormatName(declared)), QLatin1String(qlumImageFormatName(found)));
}

} // namespace

QlumImageHeader qlumReadImageHeader(std::span<const unsigned char> bytes, QlumImageFormat declared,
                                    qint64 mostMemory)
{
    QlumImageHeader header;
    const QlumImageFormat found = qlumImageFormatOf(bytes);
    const bool isOther = declared != QlumImageFormat::None && found != declared;
    header.format = found;
    switch (found) {
    case QlumImageFormat::Bmp:
        readBmp(ImageBytes(bytes), header);
        break;
    case QlumImageFormat::Gif:
        readGif(ImageBytes(bytes), header);
        break;
    case QlumImageFormat::Jpg:
        readJpg(ImageBytes(bytes), header);
        break;
    case QlumImageFormat::Png:
        readPng(ImageBytes(bytes), header);
        break;
    case QlumImageFormat::None:
        header.fault = declared == QlumImageFormat::None
                           ? Text::tr("The bytes begin like none of BMP, GIF, JPG and PNG.")
                           : Text::tr("The data type says %1, but the bytes do not begin like one.")
                                 .arg(QLatin1String(qlumImageFormatName(declared)));
        return header;
    }
    if (header.fault.isEmpty())
        checkLimits(header, mostMemory);
    if (isOther)
        header.remark = header.remark.isEmpty()
                            ? otherThanDeclared(declared, found)
                            : otherThanDeclared(declared, found) + QLatin1Char(' ') + header.remark;
    return header;
}
