// From bytes to pixels. Nothing here belongs to a thread.
#pragma once
#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimageheader.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QIODevice>
#include <QImage>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

class QImageReader;

/// Whether the work has been given up: asked on the thread that decodes.
using QlumImageCancelled = std::function<bool()>;

/// What came of bytes.
struct QlumDecodedImage
{
    QlumImageHeader header;
    QImage image;    ///< null when it could not be decoded
    QImage overview; ///< of a large one, for zooming out; else null
    QString fault;   ///< why there is no image; empty when there is
    QString remark;  ///< what is wrong with it all the same; empty for nothing
};

/// Decodes the first frame, with the decoder of its own format and no other; within limits that are checked
/// before. Whoever gives it up gets a null image and no fault.
[[nodiscard]] QlumDecodedImage qlumDecodeImage(std::span<const unsigned char> bytes, QlumImageFormat declared,
                                               const QlumImageCancelled& isCancelled = {},
                                               qint64 mostMemory = qlumMostImageMemory);

/// The first bytes in lines of sixteen, hexadecimal and as text.
[[nodiscard]] QString qlumHexLines(std::span<const unsigned char> bytes, std::size_t most = 128);

/// The frames of an animation, one after the other, and from the first again.
class QlumImageFrames
{
public:
    /// Of a ByteString whose header says that it is a GIF which may be decoded; shares its bytes.
    explicit QlumImageFrames(UaVariant value);
    ~QlumImageFrames();
    QlumImageFrames(const QlumImageFrames&) = delete;
    QlumImageFrames& operator=(const QlumImageFrames&) = delete;

    /// One of them.
    struct Frame
    {
        QImage image;   ///< null when the frame, or the work, was broken off
        int number = 0; ///< from 1
        int delay = 0;  ///< ms until the next one
    };
    /// Decodes the next one.
    [[nodiscard]] Frame next(const QlumImageCancelled& isCancelled);

private:
    void rewind();

    const UaVariant m_value;
    QlumImageCancelled m_isCancelled;
    std::unique_ptr<QIODevice> m_device;
    std::unique_ptr<QImageReader> m_reader;
    int m_number = 0;
};
