#include <plugins/imageviewer/qlumimagedecoder.h>

#include <app/api/qlumimageformat.h>

#include <QCoreApplication>
#include <QImageReader>
#include <QLocale>
#include <QSize>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace {

class ImageDecoderText
{
    Q_DECLARE_TR_FUNCTIONS(QlumImageDecoder)
};

constexpr qint64 overviewPixels = 4'000'000; // as many as a large screen has

// Reads bytes that somebody else owns, and fails as soon as the work is given up: decoders end then.
class ImageDevice final : public QIODevice
{
public:
    ImageDevice(std::span<const unsigned char> bytes, QlumImageCancelled isCancelled)
        : m_bytes(bytes), m_isCancelled(std::move(isCancelled))
    {
        open(ReadOnly | Unbuffered);
    }

    [[nodiscard]] qint64 size() const override { return static_cast<qint64>(m_bytes.size()); }
    bool seek(qint64 place) override
    {
        const bool isThere = place <= size() && QIODevice::seek(place);
        if (isThere)
            m_at = place;
        return isThere;
    }

protected:
    qint64 readData(char* data, qint64 most) override
    {
        if (m_isCancelled && m_isCancelled())
            return -1;
        const qint64 count = std::min(most, size() - m_at);
        if (count > 0)
            std::memcpy(data, m_bytes.data() + m_at, static_cast<std::size_t>(count));
        m_at += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const std::span<const unsigned char> m_bytes;
    const QlumImageCancelled m_isCancelled;
    qint64 m_at = 0;
};

std::uint32_t bigEndian(std::span<const unsigned char> bytes, std::size_t at)
{
    return std::uint32_t(bytes[at]) << 24 | std::uint32_t(bytes[at + 1]) << 16 |
           std::uint32_t(bytes[at + 2]) << 8 | bytes[at + 3];
}

constexpr std::array<std::uint32_t, 256> makeChecksums()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = byte;
        for (int bit = 0; bit < 8; ++bit)
            table[byte] = (table[byte] >> 1) ^ ((table[byte] & 1) != 0 ? 0xEDB88320 : 0);
    }
    return table;
}

std::uint32_t checksum(std::span<const unsigned char> bytes)
{
    static constexpr std::array<std::uint32_t, 256> table = makeChecksums();
    std::uint32_t sum = 0xFFFFFFFF;
    for (const unsigned char byte : bytes)
        sum = (sum >> 8) ^ table[(sum ^ byte) & 0xFF];
    return ~sum;
}

// Why the decoder would give up, which it also writes to the program's error output, where nobody can tell
// what it was about; empty for nothing that can be seen from outside.
QString pngDamage(std::span<const unsigned char> bytes)
{
    constexpr std::size_t signature = 8, lengthAndName = 8, around = 12;
    for (std::size_t at = signature; bytes.size() - at >= around;) {
        const std::size_t length = bigEndian(bytes, at);
        if (length > bytes.size() - at - around)
            break;
        const auto named = bytes.subspan(at + 4, 4 + length);
        const QString name = QString::fromLatin1(reinterpret_cast<const char*>(named.data()), 4);
        const bool isNeeded = name.at(0).isUpper(); // the others are passed over
        if (isNeeded && checksum(named) != bigEndian(bytes, at + lengthAndName + length))
            return ImageDecoderText::tr("the checksum of its part %1 is wrong").arg(name);
        if (name == QLatin1String("IEND"))
            return {};
        at += around + length;
    }
    return ImageDecoderText::tr("it is cut off");
}

// Texts and colour profiles are unpacked by the decoder, to megabytes each; the pixels need none of them.
QByteArray pixelsOfPng(std::span<const unsigned char> bytes)
{
    constexpr std::array<const char*, 5> needed{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    constexpr std::size_t signature = 8, around = 12;
    const auto* const data = reinterpret_cast<const char*>(bytes.data());
    QByteArray result(data, signature);
    for (std::size_t at = signature; bytes.size() - at >= around;) {
        const std::size_t rest = bytes.size() - at;
        const std::size_t length = std::min<std::size_t>(around + bigEndian(bytes, at), rest);
        const bool isNeeded = std::any_of(needed.begin(), needed.end(), [&](const char* name) {
            return std::memcmp(data + at + 4, name, 4) == 0;
        });
        if (isNeeded)
            result.append(data + at, static_cast<int>(length));
        at += length;
    }
    return result;
}

bool areAllNeeded(std::span<const unsigned char> bytes, const QByteArray& kept)
{
    return static_cast<std::size_t>(kept.size()) == bytes.size();
}

std::span<const unsigned char> spanOf(const QByteArray& bytes)
{
    return {reinterpret_cast<const unsigned char*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

QImage overviewOf(const QImage& image)
{
    const qint64 pixels = qint64(image.width()) * image.height();
    if (pixels <= overviewPixels)
        return {};
    const double scale = std::sqrt(double(overviewPixels) / double(pixels));
    const QSize size(std::max(1, int(image.width() * scale)), std::max(1, int(image.height() * scale)));
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// What the walk through the bytes has found says more than a decoder does, so it comes first.
QString refusal(const QlumImageHeader& header, const QString& decoder)
{
    const QString text = ImageDecoderText::tr("The %1 cannot be decoded: %2.")
                             .arg(QLatin1String(qlumImageFormatName(header.format)), decoder);
    return header.remark.isEmpty() ? text : header.remark + QLatin1Char(' ') + text;
}

} // namespace

QlumDecodedImage qlumDecodeImage(std::span<const unsigned char> bytes, QlumImageFormat declared,
                                 const QlumImageCancelled& isCancelled, qint64 mostMemory)
{
    QlumDecodedImage result;
    result.header = qlumReadImageHeader(bytes, declared, mostMemory);
    result.fault = result.header.fault;
    if (!result.fault.isEmpty())
        return result;
    const bool isPng = result.header.format == QlumImageFormat::Png;
    if (const QString damage = isPng ? pngDamage(bytes) : QString(); !damage.isEmpty()) {
        result.fault = refusal(result.header, damage);
        return result;
    }
    const QByteArray kept = isPng ? pixelsOfPng(bytes) : QByteArray();
    ImageDevice device(!isPng || areAllNeeded(bytes, kept) ? bytes : spanOf(kept), isCancelled);
    QImageReader reader;
    reader.setAutoDetectImageFormat(false);
    reader.setDecideFormatFromContent(false);
    reader.setFormat(QByteArray(qlumImageFormatName(result.header.format)).toLower());
    reader.setDevice(&device);
    reader.setAutoTransform(false);
    if (!reader.canRead() || !reader.read(&result.image)) {
        result.image = QImage(); // rows that were never written may be left in it
        result.fault = refusal(result.header, reader.errorString());
    } else {
        result.remark = result.header.remark;
        result.header.size = result.image.size(); // of a GIF, whose screen and frames may differ
    }
    if (isCancelled && isCancelled())
        return {result.header, {}, {}, {}, {}};
    result.overview = overviewOf(result.image);
    return result;
}

QString qlumHexLines(std::span<const unsigned char> bytes, std::size_t most)
{
    constexpr std::size_t perLine = 16;
    QStringList lines;
    for (std::size_t at = 0; at < std::min(bytes.size(), most); at += perLine) {
        QString hex, text;
        for (const unsigned char byte :
             bytes.subspan(at, std::min({perLine, bytes.size() - at, most - at}))) {
            hex += QStringLiteral("%1 ").arg(byte, 2, 16, QLatin1Char('0'));
            text += QLatin1Char(byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.');
        }
        lines.append(QStringLiteral("%1  %2 %3")
                         .arg(at, 4, 16, QLatin1Char('0'))
                         .arg(hex, -static_cast<int>(3 * perLine))
                         .arg(text));
    }
    return lines.join(QLatin1Char('\n'));
}

// ---- animations

QlumImageFrames::QlumImageFrames(UaVariant value) : m_value(std::move(value)) {}

QlumImageFrames::~QlumImageFrames() = default;

void QlumImageFrames::rewind()
{
    m_reader.reset();
    m_device = std::make_unique<ImageDevice>(qlumImageBytes(m_value),
                                             [this] { return m_isCancelled && m_isCancelled(); });
    m_reader = std::make_unique<QImageReader>();
    m_reader->setAutoDetectImageFormat(false);
    m_reader->setDecideFormatFromContent(false);
    m_reader->setFormat("gif");
    m_reader->setDevice(m_device.get());
    m_number = 0;
}

QlumImageFrames::Frame QlumImageFrames::next(const QlumImageCancelled& isCancelled)
{
    constexpr int leastDelay = 20, usualDelay = 100; // ms; 0 is what many a file says
    m_isCancelled = isCancelled;
    Frame frame;
    for (int attempt = 0; attempt < 2 && frame.image.isNull(); ++attempt) {
        if (!m_reader || m_number >= qlumMostFrames || !m_reader->canRead())
            rewind();
        if (m_reader->read(&frame.image))
            frame.number = ++m_number;
        else
            m_number = qlumMostFrames; // begins anew
    }
    const int delay = m_reader->nextImageDelay();
    frame.delay = delay <= 0 ? usualDelay : std::max(delay, leastDelay);
    m_isCancelled = {};
    return frame;
}
