// What arrives from servers and in folders that others write to.
#include <tests/unit/uapkicpp/pkitest.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

using namespace PkiTest;
using ::testing::HasSubstr;

namespace {

UaPkiCertificate decode(const std::vector<unsigned char>& bytes)
{
    return UaPkiCertificate::fromDER(UaByteString(std::span<const OpcUa_Byte>(bytes)));
}

std::vector<unsigned char> bytesOf(const UaPkiCertificate& certificate)
{
    const UaByteArray der = certificate.toDER();
    return {der.begin(), der.end()};
}

bool isShowable(const UaString& text)
{
    return text.view().find_first_of(std::string_view("\0\x1B\x7F\r", 4)) == std::string_view::npos;
}

} // namespace

TEST(UaPkiHostile, CutCertificatesAreNone)
{
    const std::vector<unsigned char> whole = bytesOf(application());
    ASSERT_FALSE(decode(whole).isNull());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const UaPkiCertificate cut =
            decode({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        ASSERT_TRUE(cut.isNull()) << length;
        ASSERT_TRUE(cut.hasErrors()) << length;
    }
}

TEST(UaPkiHostile, BytesBehindTheCertificateAreRefused)
{
    std::vector<unsigned char> tail = bytesOf(application());
    tail.push_back(0);
    const UaPkiCertificate certificate = decode(tail);
    EXPECT_TRUE(certificate.isNull());
    EXPECT_THAT(joined(certificate.getErrors()), HasSubstr("More data follows"));
}

TEST(UaPkiHostile, LyingLengthsAndGarbage)
{
    const std::vector<std::vector<unsigned char>> heads = {
        {0x30, 0x84, 0xFF, 0xFF, 0xFF, 0xFF},
        {0x30, 0x84, 0x7F, 0xFF, 0xFF, 0xFF},
        {0x30, 0x88, 0, 0, 0, 0, 0, 0, 0, 1, 0},
        {0x30, 0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
        {0x30, 0x80, 0, 0},
        {0x30, 0xFF},
        {0x30, 0x00},
        {0x1F, 0x00},
        {0xFF, 0xFF, 0xFF}};
    for (const auto& head : heads) {
        std::vector<unsigned char> bytes = bytesOf(application());
        bytes.erase(bytes.begin(), bytes.begin() + 4);
        bytes.insert(bytes.begin(), head.begin(), head.end());
        EXPECT_TRUE(decode(bytes).isNull());
        EXPECT_TRUE(decode(head).isNull());
    }
    // a length that is right but longer written than the rules allow would change the thumbprint
    std::vector<unsigned char> sloppy = bytesOf(application());
    ASSERT_EQ(sloppy[1], 0x82);
    sloppy[1] = 0x83;
    sloppy.insert(sloppy.begin() + 2, 0x00);
    const UaPkiCertificate certificate = decode(sloppy);
    EXPECT_TRUE(certificate.isNull());
    EXPECT_TRUE(certificate.hasErrors());
}

TEST(UaPkiHostile, ChangedBytesNeverVerifyAndNeverHarm)
{
    const UaPkiCertificate original = application();
    const std::vector<unsigned char> whole = bytesOf(original);
    for (std::size_t i = 0; i < whole.size(); i += 3) {
        std::vector<unsigned char> changed = whole;
        changed[i] ^= 0x15;
        const UaPkiCertificate certificate = decode(changed);
        ASSERT_FALSE(certificate.verifySignature(original.publicKey())) << i;
        ASSERT_FALSE(certificate == original) << i;
        // whatever still decodes can be shown
        ASSERT_TRUE(isShowable(certificate.commonName())) << i;
        ASSERT_TRUE(isShowable(certificate.info().URI)) << i;
        for (const UaPkiCertificate::Extension extension : certificate.extensions())
            ASSERT_TRUE(isShowable(certificate.extensionValue(extension))) << i;
        ASSERT_FALSE(certificate.isSelfSigned()) << i;
    }
}

TEST(UaPkiHostile, OnlyRegularFilesUpToOneMegabyte)
{
    const TemporaryFolder folder;
    const UaString big(folder.file("big.der"));
    const UaString pipe(folder.file("pipe.der"));
    std::filesystem::create_directory(folder.file("folder.der"));
    ASSERT_EQ(::mkfifo(pipe.toUtf8(), 0600), 0);
    TemporaryFolder::write(folder.file("big.der"), std::string(1024 * 1024 + 1, '0'));
    for (const UaString& path : {big, pipe, UaString(folder.file("folder.der")), UaString("/dev/zero")}) {
        EXPECT_TRUE(UaPkiCertificate::fromDERFile(path).isNull()) << path.toUtf8();
        EXPECT_TRUE(UaPkiCertificate::fromPEMFile(path).isNull()) << path.toUtf8();
        EXPECT_TRUE(UaPkiRevocationList::fromFile(path).isNull()) << path.toUtf8();
        EXPECT_TRUE(UaPkiCSR::fromFile(path).isNull()) << path.toUtf8();
        EXPECT_TRUE(UaPkiRsaKeyPair::fromPEMFile(path).isNull()) << path.toUtf8();
    }
    EXPECT_THAT(joined(UaPkiCertificate::fromDERFile(big).getErrors()), HasSubstr("File too large"));
}

TEST(UaPkiHostile, ThousandsOfNamesAreRead)
{
    UaPkiCertificateInfo many;
    many.validTime = 60;
    for (int i = 0; i < 3000; ++i)
        EXPECT_TRUE(many.DNSNames.append(*UaString("host" + std::to_string(i)).get()));
    const UaPkiCertificate certificate(many, identity("x"), applicationKey());
    ASSERT_FALSE(certificate.isNull());
    EXPECT_EQ(certificate.info().DNSNames.size(), 3000u);
    EXPECT_THAT(certificate.extensionValue(UaPkiCertificate::SubjectAltName).toStdString(),
                HasSubstr("DNS:host2999"));
}
