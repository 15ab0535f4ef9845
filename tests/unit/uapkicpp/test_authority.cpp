#include <tests/support/temporaryfolder.h>
#include <tests/unit/uapkicpp/pkitest.h>
#include <uabase/uapkicpp/uapkiauthority.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/values/uastring.h>

#include <string>
#include <sys/stat.h>
#include <vector>

using namespace PkiTest;
using ::testing::HasSubstr;

TEST(UaPkiAuthority, IssuesUnderAPasswordWithoutRepeatingANumber)
{
    const TemporaryFolder folder;
    const UaString place(folder.file("ca").c_str());
    constexpr OpcUa_Int64 year = 365 * 86400;
    EXPECT_TRUE(UaPkiAuthority::create(place, identity("Plant CA"), year, UaString(), nullptr).isNull());
    const UaPkiAuthority made =
        UaPkiAuthority::create(place, identity("Plant CA"), year, UaString("secret"), nullptr);
    ASSERT_FALSE(made.isNull()) << joined(made.getErrors());
    EXPECT_EQ(made.certificate().extensionValue(UaPkiCertificate::BasicConstraints), "CA:TRUE, pathlen:0");
    EXPECT_EQ(made.revocationList().revokedCount(), 0);
    EXPECT_TRUE(made.revocationList().verify(made.certificate().publicKey()));
    EXPECT_TRUE(UaPkiAuthority::create(place, identity("Other"), year, UaString("x"), nullptr).isNull())
        << "one folder, one authority";

    const std::string keyFile = folder.file("ca/authority_key.pem");
    EXPECT_THAT(TemporaryFolder::read(keyFile), HasSubstr("ENCRYPTED PRIVATE KEY"));
    struct stat status
    {
    };
    ASSERT_EQ(::stat(keyFile.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_TRUE(UaPkiAuthority::open(place, UaString("wrong")).isNull());
    const UaPkiAuthority opened = UaPkiAuthority::open(place, UaString("secret"));
    ASSERT_FALSE(opened.isNull()) << joined(opened.getErrors());

    const UaPkiCSR request = UaPkiCertificate::createCSR(info(), identity("device"), applicationKey());
    const UaPkiCertificate first = opened.issue(request, 3600);
    const UaPkiCertificate second = opened.issue(request, 100 * year);
    ASSERT_FALSE(first.isNull() || second.isNull()) << joined(first.getErrors());
    EXPECT_TRUE(first.verifySignature(made.certificate().publicKey()));
    EXPECT_EQ(second.validTo(), made.certificate().validTo()) << "not for longer than the authority";
    const std::vector<std::string> numbers = TemporaryFolder::lines(folder.file("ca/serials.txt"));
    EXPECT_THAT(numbers, testing::ElementsAre(made.certificate().serialNumber().toStdString(),
                                              first.serialNumber().toStdString(),
                                              second.serialNumber().toStdString()));
}
