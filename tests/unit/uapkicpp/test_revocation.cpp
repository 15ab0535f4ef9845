#include <tests/unit/uapkicpp/pkitest.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

using namespace PkiTest;
using ::testing::HasSubstr;

namespace {

UaPkiCertificate issued(OpcUa_Int64 serialNumber)
{
    UaPkiCertificateInfo about = info();
    about.serialNumber = serialNumber;
    return UaPkiCertificate(about, identity("device"), applicationKey().publicKey(), authority(),
                            authorityKey().privateKey());
}

} // namespace

TEST(UaPkiRevocationList, NamesWhatWasRevoked)
{
    UaPkiRevocationList list(3600, authority().subject(), 7);
    ASSERT_TRUE(list.addRevoked(issued(11), UaDateTime::now()));
    ASSERT_TRUE(list.addRevoked(issued(11), UaDateTime::now()));
    ASSERT_TRUE(list.addRevoked(issued(5), UaDateTime::now()));
    ASSERT_TRUE(list.sign(authorityKey().privateKey())) << joined(list.getErrors());

    const UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    ASSERT_FALSE(read.isNull()) << joined(read.getErrors());
    EXPECT_EQ(read.revokedCount(), 2) << "one of them was named twice";
    EXPECT_TRUE(read.isRevoked(issued(11)));
    EXPECT_TRUE(read.isRevoked(issued(5)));
    EXPECT_FALSE(read.isRevoked(issued(6)));
    EXPECT_FALSE(read.isRevoked(UaPkiCertificate()));
    EXPECT_EQ(read.crlNumber(), 7);
    EXPECT_EQ(read.issuer(), authority().subject());
    EXPECT_TRUE(read.isValid());
    EXPECT_EQ(read.validFrom().msecsTo(read.nextUpdate()), 3600 * 1000);
    EXPECT_TRUE(read.verify(authorityKey().privateKey()));
    EXPECT_TRUE(read.verify(authority().publicKey()));
    EXPECT_FALSE(read.verify(applicationKey().privateKey()));
}

TEST(UaPkiRevocationList, ForeignCertificatesDoNotCount)
{
    UaPkiRevocationList list(3600, authority().subject(), 1);
    const UaPkiCertificate other = application();
    EXPECT_FALSE(list.addRevoked(other, UaDateTime::now()));
    EXPECT_THAT(joined(list.getErrors()), HasSubstr("not of the list's issuer"));

    UaPkiCertificateInfo about = info();
    about.serialNumber = 21;
    const UaPkiCertificate sameNumber(about, identity("Tavelin@host"), applicationKey());
    ASSERT_TRUE(list.addRevoked(issued(21), UaDateTime::now()));
    ASSERT_TRUE(list.sign(authorityKey().privateKey()));
    EXPECT_TRUE(list.isRevoked(issued(21)));
    EXPECT_FALSE(list.isRevoked(sameNumber)) << "the same number of another issuer";
}

TEST(UaPkiRevocationList, ChangesLeaveCopiesAsTheyWere)
{
    UaPkiRevocationList list(3600, authority().subject(), 1);
    ASSERT_TRUE(list.sign(authorityKey().privateKey()));
    const UaPkiRevocationList copy = list;
    ASSERT_TRUE(list.addRevoked(issued(1), UaDateTime::now()));
    EXPECT_EQ(copy.revokedCount(), 0);
    EXPECT_TRUE(copy.verify(authorityKey().privateKey()));
    ASSERT_TRUE(list.sign(authorityKey().privateKey()));
    EXPECT_TRUE(list.verify(authorityKey().privateKey()));
    EXPECT_EQ(UaPkiRevocationList::fromDER(list.toDER()).revokedCount(), 1);
}

TEST(UaPkiRevocationList, OutdatedForgedAndEmptyLists)
{
    UaPkiRevocationList outdated(-60, authority().subject(), 1);
    ASSERT_TRUE(outdated.sign(authorityKey().privateKey()));
    EXPECT_FALSE(outdated.isValid());

    UaByteArray forged = outdated.toDER();
    forged[forged.size() - 1] = static_cast<OpcUa_Byte>(forged[forged.size() - 1] ^ 1);
    EXPECT_FALSE(UaPkiRevocationList::fromDER(forged).verify(authorityKey().privateKey()));

    UaPkiRevocationList null;
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(null.addRevoked(issued(1), UaDateTime::now()));
    EXPECT_FALSE(null.sign(authorityKey().privateKey()));
    EXPECT_FALSE(null.isValid());
    EXPECT_EQ(null.crlNumber(), -1);
    EXPECT_TRUE(null.toDER().isEmpty());
}

TEST(UaPkiRevocationList, FilesInBothForms)
{
    const TemporaryFolder folder;
    UaPkiRevocationList list(3600, authority().subject(), 9);
    ASSERT_TRUE(list.addRevoked(issued(3), UaDateTime::now()));
    ASSERT_TRUE(list.sign(authorityKey().privateKey()));
    ASSERT_TRUE(list.toDERFile(UaString(folder.file("a.crl"))));
    ASSERT_TRUE(list.toPEMFile(UaString(folder.file("b.crl"))));
    for (const char* name : {"a.crl", "b.crl"}) {
        const UaPkiRevocationList read = UaPkiRevocationList::fromFile(UaString(folder.file(name)));
        EXPECT_TRUE(read.isRevoked(issued(3))) << name;
        EXPECT_TRUE(read.verify(authority().publicKey())) << name;
        EXPECT_TRUE(UaPkiCertificate::fromDERFile(UaString(folder.file(name))).isNull());
    }
    TemporaryFolder::write(folder.file("c.crl"), "garbage");
    EXPECT_TRUE(UaPkiRevocationList::fromFile(UaString(folder.file("c.crl"))).isNull());
}
