// Bytes that a server calls an image. The walk through them must find a size within the limits before a
// decoder sees them, and the decoder must come to an image of that size or to none.
#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimagedecoder.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace {

constexpr qint64 mostMemory = 4 * 1024 * 1024; // larger images would be the same, and slow

void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "wrong: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int count = 1;
    static char name[] = "fuzz_images";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments); // decoders are plugins of Qt
    const std::span<const unsigned char> bytes(data, size);
    for (const QlumImageFormat declared : {QlumImageFormat::None, QlumImageFormat::Png}) {
        const QlumDecodedImage decoded = qlumDecodeImage(bytes, declared, {}, mostMemory);
        check(decoded.image.isNull() != decoded.fault.isEmpty(), "an image or a reason");
        const QSize checked = qlumReadImageHeader(bytes, declared).size;
        check(decoded.image.isNull() || decoded.image.size().boundedTo(checked) == decoded.image.size(),
              "no larger than what was checked");
        check(decoded.image.sizeInBytes() <= 2 * mostMemory, "the memory that was reckoned with");
        if (decoded.header.frames > 1) {
            const auto* const content = reinterpret_cast<const OpcUa_Byte*>(data);
            QlumImageFrames frames{UaVariant(UaByteString(std::span(content, size)))};
            for (int i = 0; i < 3; ++i)
                check(frames.next({}).image.sizeInBytes() <= 2 * mostMemory,
                      "a frame no larger than the first");
        }
    }
    return 0;
}
