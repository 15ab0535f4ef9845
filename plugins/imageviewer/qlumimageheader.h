// What the bytes of an image say of it before anybody decodes them.
#pragma once
#include <app/api/qlumimageformat.h>

#include <QSize>
#include <QString>
#include <QtGlobal>

#include <span>

/// Images beyond these are not decoded: a few hundred bytes can claim any size.
inline constexpr qint64 qlumMostPixels = 64'000'000;
/// What decoding may take, in bytes.
inline constexpr qint64 qlumMostImageMemory = qint64(512) * 1024 * 1024;
/// Frames of an animation that are counted and shown.
inline constexpr int qlumMostFrames = 10'000;

/// Found by walking through the blocks of the format, without a decoder.
struct QlumImageHeader
{
    QlumImageFormat format = QlumImageFormat::None;
    QSize size;                 ///< pixels; of a GIF as many as screen and frames reach
    QString form;               ///< "8 bits, RGBA, interlaced", for the user
    int frames = 0;             ///< that begin within the bytes, at most qlumMostFrames
    bool hasMoreFrames = false; ///< than are counted
    qint64 memory = 0;          ///< bytes that its decoder takes
    QString fault;              ///< why it must not be decoded; empty when it may
    QString remark;             ///< what is wrong with it all the same; empty for nothing
};

/// Reads as far as it has to. The declared format counts where the first bytes say nothing; where they say
/// another one, they count and the remark tells. An image that needs more than the memory is at fault.
[[nodiscard]] QlumImageHeader qlumReadImageHeader(std::span<const unsigned char> bytes,
                                                  QlumImageFormat declared = QlumImageFormat::None,
                                                  qint64 mostMemory = qlumMostImageMemory);
