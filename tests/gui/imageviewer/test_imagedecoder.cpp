// What bytes of servers come to: images, or words that say why not, and never a decoder that is taken in.
#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimagedecoder.h>
#include <tests/gui/imageviewer/imagebytes.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QImage>
#include <QSize>
#include <QString>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

QlumDecodedImage decode(const QByteArray& bytes, QlumImageFormat declared = QlumImageFormat::None)
{
    return qlumDecodeImage(bytesOf(bytes), declared);
}

struct Kind
{
    const char* name;
    QlumImageFormat format;
};
constexpr Kind writable[] = {
    {"BMP", QlumImageFormat::Bmp}, {"JPG", QlumImageFormat::Jpg}, {"PNG", QlumImageFormat::Png}};

TEST(ImageDecoder, EachFormatIsKnownByItsBytesAndDecoded)
{
    for (const Kind& kind : writable) {
        const QlumDecodedImage decoded = decode(encoded(kind.name));
        EXPECT_EQ(decoded.header.format, kind.format) << kind.name;
        EXPECT_EQ(decoded.header.size, QSize(40, 30)) << kind.name;
        EXPECT_EQ(decoded.image.size(), QSize(40, 30)) << kind.name;
        EXPECT_EQ(decoded.fault + decoded.remark, QString()) << kind.name;
        if (kind.format != QlumImageFormat::Jpg)
            EXPECT_EQ(decoded.image.pixel(3, 2), qRgb(255, 0, 0)) << kind.name;
    }
    const QlumDecodedImage animated = decode(gif(3));
    EXPECT_EQ(animated.header.frames, 3);
    EXPECT_EQ(animated.image.pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_EQ(animated.fault + animated.remark, QString());
}

// At whatever place an image is cut off, the words say so, and what is there is shown or not.
TEST(ImageDecoder, TruncatedImagesOfEachFormatAreToldOf)
{
    const QByteArray images[] = {encoded("BMP", noise(12, 9)), encoded("JPG", noise(12, 9)),
                                 encoded("PNG", noise(12, 9)), gif(3)};
    for (const QByteArray& whole : images)
        for (int length = 1; length < whole.size(); ++length) {
            // decoders may not look beyond the end, which a sanitized build sees
            const std::vector<unsigned char> cut(whole.begin(), whole.begin() + length);
            const QlumDecodedImage decoded = qlumDecodeImage(cut, QlumImageFormat::None);
            EXPECT_NE(decoded.fault + decoded.remark, QString()) << whole.left(4).toStdString() << length;
            EXPECT_EQ(decoded.image.isNull(), !decoded.fault.isEmpty()) << length;
        }
    EXPECT_NE(decode(images[1].left(images[1].size() - 20)).image, QImage())
        << "most of a photo is worth seeing";
}

// What the decoder says of broken images goes to where no user of a desktop ever looks.
TEST(ImageDecoder, BrokenImagesAreToldOfInTheViewAlone)
{
    const QByteArray whole = encoded("PNG", noise(12, 9));
    QByteArray changed = whole;
    const int data = whole.indexOf("IDAT");
    changed[data + 20] = char(~changed[data + 20]);
    testing::internal::CaptureStderr();
    const QString fault = decode(changed).fault;
    for (int length = 1; length < whole.size(); ++length)
        EXPECT_NE(decode(whole.left(length)).fault, QString()) << length;
    for (const char* format : {"BMP", "JPG"})
        decode(encoded(format, noise(12, 9)).left(100));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(fault, "The PNG cannot be decoded: the checksum of its part IDAT is wrong.");
    EXPECT_EQ(decode(whole + "and more").fault, QString());
}

TEST(ImageDecoder, BombsAreRefusedBeforeTheyAreDecoded)
{
    const auto fault = [](const QByteArray& bytes) { return decode(bytes).fault.toStdString(); };
    EXPECT_EQ(fault(claimedPng(60'000, 60'000)),
              "It claims to be 60000 x 60000 pixels large, and more than 64 megapixels are not decoded.");
    EXPECT_EQ(fault(claimedPng(0xFFFFFFFF, 1)).substr(0, 9), "It claims");
    EXPECT_EQ(fault(claimedPng(0, 0)), "The image has no pixels: its size is 0 x 0.");
    EXPECT_EQ(fault(gif(1, 65'535, 65'535)).substr(0, 9), "It claims");
    EXPECT_EQ(fault(gif(1, 0, 0)), "The image has no pixels: its size is 0 x 0.");
    EXPECT_EQ(fault(gif(0)), "The GIF has no frame.");
    QByteArray bmp = encoded("BMP", noise(1, 1));
    bmp.replace(18, 8, QByteArray::fromHex("0000010000000080")); // 65,536 wide, INT_MIN high
    EXPECT_EQ(fault(bmp).substr(0, 9), "It claims");
    bmp.replace(18, 8, QByteArray(8, '\0'));
    EXPECT_EQ(fault(bmp), "The image has no pixels: its size is 0 x 0.");
    QByteArray jpg = encoded("JPG", noise(8, 8));
    const int frame = jpg.indexOf(QByteArray::fromHex("ffc0"));
    jpg.replace(frame + 5, 4, QByteArray::fromHex("ffffffff"));
    EXPECT_EQ(fault(jpg).substr(0, 9), "It claims");
    QByteArray empty = jpg;
    empty.replace(frame + 5, 4, QByteArray(4, '\0'));
    EXPECT_EQ(fault(empty), "The image has no pixels: its size is 0 x 0.");
    jpg.replace(frame, 2, QByteArray::fromHex("ffc2")); // progressive: coefficients are held besides
    jpg.replace(frame + 5, 4, QByteArray::fromHex("1f401f40"));
    EXPECT_EQ(fault(jpg), "With 8000 x 8000 pixels it needs 610 MB of memory, and there are 512 MB for it.");
    EXPECT_NE(qlumDecodeImage(bytesOf(encoded("PNG")), QlumImageFormat::None, {}, 1000).fault, QString())
        << "what is left for one of many may be less";
}

// Each scan has a progressive image gone through once more; a text unpacks to eight megabytes.
TEST(ImageDecoder, SmallPartsThatCostMuchAreLeftOutOrRefused)
{
    QByteArray jpg = encoded("JPG", noise(8, 8));
    const int scan = jpg.indexOf(QByteArray::fromHex("ffda"));
    const QByteArray one = jpg.mid(scan, 14);
    jpg.insert(scan, one.repeated(200));
    EXPECT_EQ(decode(jpg).fault, "It has more than 100 scans, which no camera makes.");

    QByteArray png = encoded("PNG");
    const QByteArray text = QByteArray("\0\0\0\4", 4) + "zTXt" + "bomb" + "wrong checksum";
    png.insert(33, text.left(16).repeated(1000));
    const QlumDecodedImage decoded = decode(png);
    EXPECT_EQ(decoded.image.pixel(3, 2), qRgb(255, 0, 0)) << "the decoder never sees it";
}

TEST(ImageDecoder, OtherTypeThanDeclaredIsShownAndSaid)
{
    const QlumDecodedImage other = decode(encoded("BMP"), QlumImageFormat::Png);
    EXPECT_FALSE(other.image.isNull());
    EXPECT_EQ(other.remark, "The data type says PNG, but the bytes are those of a BMP.");
    EXPECT_EQ(decode("this is no picture", QlumImageFormat::Jpg).fault,
              "The data type says JPG, but the bytes do not begin like one.");
    EXPECT_EQ(decode("BM: a text that begins so").fault,
              "The bytes begin like none of BMP, GIF, JPG and PNG.");
    EXPECT_EQ(decode("<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>").image, QImage())
        << "decoders of other formats are not asked";
}

TEST(ImageDecoder, AnimationOfTenThousandFramesIsCountedAndPlayedFrameByFrame)
{
    const QByteArray bytes = gif(qlumMostFrames + 1);
    const QlumDecodedImage decoded = decode(bytes);
    EXPECT_EQ(decoded.header.frames, qlumMostFrames);
    EXPECT_TRUE(decoded.header.hasMoreFrames);
    QlumImageFrames frames(imageValue(gif(3)));
    std::string numbers;
    for (int i = 0; i < 7; ++i) {
        const QlumImageFrames::Frame frame = frames.next({});
        ASSERT_FALSE(frame.image.isNull()) << i;
        EXPECT_EQ(frame.image.pixel(0, 0), frame.number % 2 == 1 ? qRgb(255, 0, 0) : qRgb(0, 0, 255));
        EXPECT_EQ(frame.delay, 20);
        numbers += std::to_string(frame.number);
    }
    EXPECT_EQ(numbers, "1231231");
    EXPECT_TRUE(QlumImageFrames(imageValue(gif(2).left(30))).next({}).image.isNull());
}

TEST(ImageDecoder, WorkThatIsGivenUpEndsWithoutAnImage)
{
    int asked = 0;
    const QByteArray png = encoded("PNG", noise(600, 600));
    const QlumDecodedImage decoded =
        qlumDecodeImage(bytesOf(png), QlumImageFormat::None, [&asked] { return ++asked > 20; });
    EXPECT_TRUE(decoded.image.isNull());
    EXPECT_EQ(decoded.fault, QString());
    EXPECT_GT(asked, 20);
}

TEST(ImageDecoder, FirstBytesStandInLinesOfSixteen)
{
    EXPECT_EQ(qlumHexLines(bytesOf("GIF89a, but no more\xFF")),
              "0000  47 49 46 38 39 61 2c 20 62 75 74 20 6e 6f 20 6d  GIF89a, but no m\n"
              "0010  6f 72 65 ff                                      ore.");
    EXPECT_EQ(qlumHexLines(bytesOf(QByteArray(1000, 'x'))).count('\n'), 7);
}

} // namespace
