#include <tests/unit/uapkicpp/pkitest.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicertificatestore.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

using namespace PkiTest;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

namespace {

// The crypto library's own view of what we made.
std::unique_ptr<X509, decltype(&X509_free)> parsed(const UaPkiCertificate& certificate)
{
    const UaByteArray der = certificate.toDER();
    const unsigned char* position = der.rawData();
    return {d2i_X509(nullptr, &position, static_cast<long>(der.size())), &X509_free};
}

std::string value(const UaPkiCertificate& certificate, UaPkiCertificate::Extension extension)
{
    return certificate.extensionValue(extension).toStdString();
}

std::string criticals(const UaPkiCertificate& certificate)
{
    const auto x509 = parsed(certificate);
    std::string names;
    for (int i = 0; i < X509_get_ext_count(x509.get()); ++i) {
        X509_EXTENSION* extension = X509_get_ext(x509.get(), i);
        if (X509_EXTENSION_get_critical(extension) == 1)
            names += std::string(OBJ_nid2sn(OBJ_obj2nid(X509_EXTENSION_get_object(extension)))) + ' ';
    }
    return names;
}

} // namespace

TEST(UaPkiCertificate, AnApplicationsCertificateSaysWhatItWasToldTo)
{
    const OpcUa_Int64 before = UaDateTime::now().toTime_t();
    const UaPkiCertificate made = application();
    const OpcUa_Int64 after = UaDateTime::now().toTime_t();
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(made.toByteStringDER());
    ASSERT_FALSE(certificate.isNull()) << joined(made.getErrors());
    EXPECT_EQ(certificate, made);

    EXPECT_EQ(certificate.subject(), identity("Tavelin@host"));
    EXPECT_EQ(certificate.issuer(), identity("Tavelin@host"));
    EXPECT_EQ(certificate.commonName(), UaString("Tavelin@host"));
    EXPECT_EQ(certificate.serialNumber(), UaString("11:22:33:44:55:66:77:88"));
    const UaPkiCertificateInfo read = certificate.info();
    EXPECT_EQ(read.URI, info().URI) << "the comma must not split it";
    EXPECT_THAT(texts(read.DNSNames), ElementsAre("host", "host.example"));
    EXPECT_THAT(texts(read.IPAddresses), ElementsAre("192.0.2.17", "2001:db8::17"));
    EXPECT_EQ(read.eMail, info().eMail);
    EXPECT_EQ(read.validTime, 157680000);
    EXPECT_EQ(read.serialNumber, info().serialNumber);
    EXPECT_GE(read.validFrom.toTime_t(), before);
    EXPECT_LE(read.validFrom.toTime_t(), after);
    EXPECT_EQ(read.validTo, certificate.validTo());
    EXPECT_TRUE(certificate.isValid());
    EXPECT_TRUE(certificate.isSelfSigned());
    EXPECT_FALSE(certificate.isCA());
    EXPECT_EQ(certificate.signatureAlgorithm(), UaPkiCertificate::Sha256);
    EXPECT_EQ(certificate.signatureTypeString(), UaString("sha256WithRSAEncryption"));
    EXPECT_EQ(certificate.signatureTypeNID(), NID_sha256WithRSAEncryption);
    EXPECT_EQ(certificate.publicKey().keySize(), 2048);
    EXPECT_EQ(X509_get_version(parsed(certificate).get()), 2);
}

TEST(UaPkiCertificate, NamePartsLieInTheirOrder)
{
    const auto x509 = parsed(application());
    const X509_NAME* name = X509_get_subject_name(x509.get());
    std::string order;
    for (int i = 0; i < X509_NAME_entry_count(name); ++i) {
        order +=
            std::string(OBJ_nid2sn(OBJ_obj2nid(X509_NAME_ENTRY_get_object(X509_NAME_get_entry(name, i))))) +
            ' ';
    }
    EXPECT_EQ(order, "DC C ST L O OU CN ");
    EXPECT_EQ(ASN1_STRING_type(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, 4))), V_ASN1_UTF8STRING);
}

TEST(UaPkiCertificate, ExtensionsOfAnApplication)
{
    using Certificate = UaPkiCertificate;
    const Certificate certificate = application();
    EXPECT_THAT(certificate.extensions(),
                ElementsAre(Certificate::BasicConstraints, Certificate::NetscapeComment,
                            Certificate::SubjectKeyIdentifier, Certificate::AuthorityKeyIdentifier,
                            Certificate::KeyUsage, Certificate::ExtendedKeyUsage,
                            Certificate::SubjectAltName));
    EXPECT_EQ(criticals(certificate), "basicConstraints keyUsage extendedKeyUsage ");
    EXPECT_EQ(value(certificate, Certificate::BasicConstraints), "CA:FALSE");
    EXPECT_EQ(value(certificate, Certificate::NetscapeComment),
              "\"Generated with Korvanda UA Base Library using OpenSSL\"");
    EXPECT_EQ(value(certificate, Certificate::KeyUsage),
              "Digital Signature, Non Repudiation, Key Encipherment, Data Encipherment, Certificate Sign");
    EXPECT_EQ(value(certificate, Certificate::ExtendedKeyUsage),
              "TLS Web Server Authentication, TLS Web Client Authentication");
    EXPECT_EQ(value(certificate, Certificate::SubjectAltName),
              "URI:urn:host:Korvanda, Inc:Tavelin@host, DNS:host, DNS:host.example, IP Address:192.0.2.17, "
              "IP Address:2001:DB8:0:0:0:0:0:17, email:service@host.example");
    const std::string identifier = value(certificate, Certificate::SubjectKeyIdentifier);
    EXPECT_THAT(identifier, MatchesRegex("([0-9A-F]{2}:){19}[0-9A-F]{2}"));
    EXPECT_NE(identifier, "DA:39:A3:EE:5E:6B:4B:0D:32:55:BF:EF:95:60:18:90:AF:D8:07:09") << "of nothing";
    const std::string authority = value(certificate, Certificate::AuthorityKeyIdentifier);
    EXPECT_THAT(authority, HasSubstr("keyid:" + identifier));
    EXPECT_THAT(authority, HasSubstr("CN=Tavelin@host"));
    EXPECT_THAT(authority, HasSubstr("serial:11:22:33:44:55:66:77:88"));
    EXPECT_FALSE(certificate.hasExtension(Certificate::CRLDistributionPoints));
    EXPECT_TRUE(certificate.extensionValue(Certificate::CRLDistributionPoints).isNull());
}

TEST(UaPkiCertificate, ExtensionsOfAnAuthority)
{
    using Certificate = UaPkiCertificate;
    const Certificate certificate = authority();
    EXPECT_THAT(certificate.extensions(),
                ElementsAre(Certificate::BasicConstraints, Certificate::NetscapeComment,
                            Certificate::KeyUsage, Certificate::ExtendedKeyUsage,
                            Certificate::SubjectKeyIdentifier));
    EXPECT_EQ(criticals(certificate), "basicConstraints keyUsage extendedKeyUsage ");
    EXPECT_EQ(value(certificate, Certificate::BasicConstraints), "CA:TRUE");
    EXPECT_EQ(value(certificate, Certificate::NetscapeComment),
              "\"CA certificate generated with Korvanda UA Base Library using OpenSSL\"");
    EXPECT_EQ(value(certificate, Certificate::KeyUsage),
              "Digital Signature, Non Repudiation, Key Encipherment, Certificate Sign, CRL Sign");
    EXPECT_TRUE(certificate.isCA());
    EXPECT_TRUE(certificate.isSelfSigned());
    const OpcUa_Int64 age = UaDateTime::now().toTime_t() - certificate.info().serialNumber;
    EXPECT_TRUE(age >= 0 && age < 60) << "no serial number was given, so it is the time";
}

TEST(UaPkiCertificate, Sha1AndTheFingerprints)
{
    const UaPkiCertificate certificate(info(), identity("x"), applicationKey(), false,
                                       UaPkiCertificate::Sha1);
    EXPECT_EQ(certificate.signatureAlgorithm(), UaPkiCertificate::Sha1);
    EXPECT_EQ(certificate.signatureTypeString(), UaString("sha1WithRSAEncryption"));
    const UaByteArray der = certificate.toDER();
    std::array<unsigned char, 20> digest{};
    ASSERT_EQ(EVP_Digest(der.rawData(), der.size(), digest.data(), nullptr, EVP_sha1(), nullptr), 1);
    EXPECT_EQ(certificate.thumbPrint(), UaByteString(std::span<const OpcUa_Byte>(digest)));
    EXPECT_EQ(certificate.subjectNameHash(), X509_subject_name_hash(parsed(certificate).get()));
    EXPECT_NE(certificate.subjectNameHash(), application().subjectNameHash());
}

TEST(UaPkiCertificate, EmptyPartsAreAbsent)
{
    UaPkiIdentity only;
    only.commonName = "only";
    UaPkiCertificateInfo bare;
    bare.validTime = 60;
    const UaPkiCertificate certificate(bare, only, applicationKey());
    ASSERT_FALSE(certificate.isNull());
    EXPECT_EQ(X509_NAME_entry_count(X509_get_subject_name(parsed(certificate).get())), 1);
    EXPECT_FALSE(certificate.hasExtension(UaPkiCertificate::SubjectAltName));
    EXPECT_TRUE(certificate.subject().organization.isNull());
}

TEST(UaPkiCertificate, WhatCannotBeSaidGivesANullCertificateAndAReason)
{
    UaPkiIdentity threeLetters = identity("x");
    threeLetters.country = "NLD";
    const UaPkiCertificate country(info(), threeLetters, applicationKey());
    EXPECT_TRUE(country.isNull());
    EXPECT_THAT(joined(country.getErrors()), HasSubstr("The name's part C is not allowed: \"NLD\""));
    EXPECT_THAT(country.getErrors(), IsEmpty()) << "the list was taken";

    UaPkiCertificateInfo address = info();
    EXPECT_TRUE(address.IPAddresses.append(*UaString("300.1.1.1").get()));
    const UaPkiCertificate wrongAddress(address, identity("x"), applicationKey());
    EXPECT_TRUE(wrongAddress.isNull());
    EXPECT_THAT(joined(wrongAddress.getErrors()), HasSubstr("\"300.1.1.1\" is not allowed"));

    UaPkiCertificateInfo endless = info();
    endless.validTime = INT64_MAX;
    EXPECT_TRUE(UaPkiCertificate(endless, identity("x"), applicationKey()).isNull());
    EXPECT_TRUE(UaPkiCertificate(info(), identity("x"), UaPkiRsaKeyPair()).isNull());
    EXPECT_TRUE(UaPkiCertificate(info(), identity("x"), applicationKey().publicKey(), UaPkiCertificate(),
                                 authorityKey().privateKey())
                    .isNull());
    const UaPkiCertificate foreign(info(), identity("x"), applicationKey().publicKey(), authority(),
                                   applicationKey().privateKey());
    EXPECT_TRUE(foreign.isNull());
    EXPECT_THAT(joined(foreign.getErrors()), HasSubstr("does not belong to the issuer's certificate"));
}

TEST(UaPkiCertificate, ForeignNamesAreShownLiterally)
{
    using namespace std::string_view_literals;
    UaPkiIdentity odd = identity("<b>%1</b>\n");
    odd.organization = UaString("bank.example\0.evil.example"sv);
    odd.locality = "Z\xC3\xBCrich";
    UaPkiCertificateInfo names = info();
    names.URI = "urn:<i>%n</i>";
    const UaPkiCertificate certificate(names, odd, applicationKey());
    EXPECT_EQ(certificate.commonName(), UaString("<b>%1</b>\\n"));
    EXPECT_EQ(certificate.subject().organization, UaString("bank.example\\x00.evil.example"));
    EXPECT_EQ(certificate.subject().locality, UaString("Z\xC3\xBCrich"));
    EXPECT_EQ(certificate.info().URI, UaString("urn:<i>%n</i>"));
    EXPECT_EQ(value(certificate, UaPkiCertificate::AuthorityKeyIdentifier).find('\0'), std::string::npos);
}

TEST(UaPkiCertificate, AnAuthorityIssues)
{
    const UaPkiCertificate issuer = authority();
    const UaPkiCertificate issued(info(), identity("device"), applicationKey().publicKey(), issuer,
                                  authorityKey().privateKey());
    ASSERT_FALSE(issued.isNull()) << joined(issued.getErrors());
    EXPECT_EQ(issued.issuer(), issuer.subject());
    EXPECT_TRUE(issued.isIssuedBy(issuer));
    EXPECT_FALSE(issued.isSelfSigned());
    EXPECT_TRUE(issued.verifySignature(issuer.publicKey()));
    EXPECT_FALSE(issued.verifySignature(issued.publicKey()));
    EXPECT_FALSE(issued.verifySignature(UaPkiPublicKey()));
    EXPECT_THAT(value(issued, UaPkiCertificate::AuthorityKeyIdentifier),
                HasSubstr("keyid:" + value(issuer, UaPkiCertificate::SubjectKeyIdentifier)));
    EXPECT_EQ(value(issued, UaPkiCertificate::KeyUsage),
              "Digital Signature, Non Repudiation, Key Encipherment, Data Encipherment");

    const UaPkiCertificate byName(info(), identity("device"), applicationKey().publicKey(), issuer.subject(),
                                  authorityKey().privateKey());
    EXPECT_TRUE(byName.isIssuedBy(issuer)) << joined(byName.getErrors());
    EXPECT_TRUE(byName.verifySignature(issuer.publicKey()));
}

TEST(UaPkiCertificate, SigningAgainLeavesCopiesAsTheyWere)
{
    const UaPkiCertificate issuer = authority();
    UaPkiCertificate certificate = application();
    const UaPkiCertificate copy = certificate;
    EXPECT_FALSE(certificate.sign(issuer, applicationKey().privateKey())) << "not the issuer's key";
    EXPECT_EQ(certificate, copy);
    ASSERT_TRUE(certificate.sign(issuer, authorityKey().privateKey(), UaPkiCertificate::Sha1));
    EXPECT_TRUE(certificate.isIssuedBy(issuer));
    EXPECT_TRUE(certificate.verifySignature(issuer.publicKey()));
    EXPECT_EQ(certificate.signatureAlgorithm(), UaPkiCertificate::Sha1);
    EXPECT_EQ(certificate.extensions(), copy.extensions());
    EXPECT_EQ(certificate.subject(), copy.subject());
    EXPECT_TRUE(copy.isSelfSigned());
    EXPECT_FALSE(certificate == copy);
}

TEST(UaPkiCertificate, RequestsAreGrantedButNoMoreThanThat)
{
    const UaPkiCertificate issuer = authority();
    const UaPkiCSR request =
        UaPkiCSR::fromDER(UaPkiCertificate::createCSR(info(), identity("device"), applicationKey()).toDER());
    ASSERT_FALSE(request.isNull()) << joined(request.getErrors());
    EXPECT_TRUE(request.verifySignature());
    EXPECT_EQ(request.subject(), identity("device"));
    EXPECT_THAT(texts(request.info().DNSNames), ElementsAre("host", "host.example"));
    EXPECT_EQ(request.info().URI, info().URI);

    const UaDateTime from = UaDateTime::fromTime_t(1700000000);
    const UaDateTime to = UaDateTime::fromTime_t(4200000000);
    const UaPkiCertificate granted =
        UaPkiCertificate::fromCSR(request, issuer, authorityKey().privateKey(), from, to);
    ASSERT_FALSE(granted.isNull()) << joined(granted.getErrors());
    EXPECT_EQ(granted.subject(), identity("device"));
    EXPECT_EQ(granted.info().URI, info().URI);
    EXPECT_EQ(granted.validFrom(), from);
    EXPECT_EQ(granted.validTo(), to);
    EXPECT_FALSE(granted.isCA());
    EXPECT_TRUE(granted.isIssuedBy(issuer));
    EXPECT_TRUE(UaPkiRsaKeyPair::checkKeyPair(granted.publicKey(), applicationKey().privateKey()));
    const UaPkiCertificate second =
        UaPkiCertificate::fromCSR(request, issuer, authorityKey().privateKey(), from, to);
    EXPECT_NE(second.serialNumber(), granted.serialNumber());

    EXPECT_TRUE(
        UaPkiCertificate::fromCSR(UaPkiCSR(), issuer, authorityKey().privateKey(), from, to).isNull());
    UaByteArray forged = request.toDER();
    forged[forged.size() - 1] = static_cast<OpcUa_Byte>(forged[forged.size() - 1] ^ 1);
    const UaPkiCertificate refused =
        UaPkiCertificate::fromCSR(UaPkiCSR::fromDER(forged), issuer, authorityKey().privateKey(), from, to);
    EXPECT_TRUE(refused.isNull());
    EXPECT_THAT(joined(refused.getErrors()), HasSubstr("not signed by its own key"));

    const UaPkiCSR renewal = granted.createCSR(applicationKey().privateKey());
    EXPECT_EQ(renewal.subject(), granted.subject());
    EXPECT_THAT(texts(renewal.info().IPAddresses), ElementsAre("192.0.2.17", "2001:db8::17"));
    EXPECT_TRUE(renewal.verifySignature());
    EXPECT_TRUE(granted.createCSR(authorityKey().privateKey()).isNull());
}

TEST(UaPkiCertificate, FilesInBothFormsAndTheOtherWayRound)
{
    const TemporaryFolder folder;
    const UaString der(folder.file("own.der"));
    const UaString pem(folder.file("own.pem"));
    const UaPkiCertificate certificate = application();
    ASSERT_TRUE(certificate.toDERFile(der));
    ASSERT_TRUE(certificate.toPEMFile(pem));
    EXPECT_EQ(UaPkiCertificate::fromDERFile(der), certificate);
    EXPECT_EQ(UaPkiCertificate::fromPEMFile(pem), certificate);
    EXPECT_TRUE(UaPkiCertificate::fromDERFile(pem).isNull());
    EXPECT_TRUE(UaPkiCertificate::fromPEMFile(der).isNull());
    const UaPkiCertificate missing = UaPkiCertificate::fromDERFile(UaString(folder.file("missing.der")));
    EXPECT_THAT(joined(missing.getErrors()), HasSubstr("No such file or directory"));
    EXPECT_FALSE(UaPkiCertificate().toDERFile(der));
    EXPECT_FALSE(certificate.toDERFile(UaString(folder.file("missing/own.der"))));
    EXPECT_EQ(UaPkiCertificate::fromDERFile(der), certificate) << "still there";

    const UaPkiCSR request = UaPkiCertificate::createCSR(info(), identity("x"), applicationKey());
    ASSERT_TRUE(request.toDERFile(der));
    ASSERT_TRUE(request.toPEMFile(pem));
    EXPECT_EQ(texts(UaPkiCSR::fromFile(der).info().DNSNames), texts(info().DNSNames));
    EXPECT_EQ(UaPkiCSR::fromFile(pem).subject(), identity("x"));
}

TEST(UaPkiCertificateStore, IssuerThatWasRenewedTakesThePlaceOfTheExpiredOne)
{
    UaPkiCertificateInfo about;
    about.validTime = -60;
    const UaPkiCertificate expired(about, identity("Plant Authority"), authorityKey(), true);
    const UaPkiCertificate renewed = authority();
    ASSERT_FALSE(expired.isValid());
    const UaPkiCertificate issued(info(), identity("device"), applicationKey().publicKey(), renewed,
                                  authorityKey().privateKey());
    const std::vector<std::vector<UaPkiCertificate>> orders{{expired, renewed}, {renewed, expired}};
    for (const auto& order : orders) {
        UaPkiCertificateStore store;
        for (const UaPkiCertificate& one : order)
            store.add(one);
        EXPECT_EQ(store.issuerOf(issued), renewed);
        EXPECT_TRUE(store.issuerOf(renewed).isNull()) << "has issued itself";
    }
    UaPkiCertificateStore outdated;
    outdated.add(application()); // of another name
    outdated.add(UaPkiCertificate());
    EXPECT_TRUE(outdated.issuerOf(issued).isNull());
    outdated.add(expired);
    EXPECT_EQ(outdated.issuerOf(issued), expired) << "better than none";
}

TEST(UaPkiCertificateStore, FoldersAreReadByTheNamesOfTheirFiles)
{
    const TemporaryFolder folder;
    const UaPkiCertificate issuer = authority();
    const UaPkiCertificate issued(info(), identity("device"), applicationKey().publicKey(), issuer,
                                  authorityKey().privateKey());
    const UaByteArray der = issuer.toDER();
    const std::string bytes(der.begin(), der.end());
    TemporaryFolder::write(folder.file("issuer.txt"), bytes);
    TemporaryFolder::write(folder.file("garbage.der"), "0123456789");
    UaPkiCertificateStore store;
    EXPECT_TRUE(store.addFolder(UaString(folder.file(""))).empty());
    EXPECT_TRUE(store.issuerOf(issued).isNull());
    TemporaryFolder::write(folder.file("issuer.CER"), bytes);
    TemporaryFolder::write(folder.file("copy.der"), bytes);
    ASSERT_TRUE(application().toDERFile(UaString(folder.file("own.der"))));
    EXPECT_EQ(store.addFolder(UaString(folder.file(""))).size(), 2u) << "the copy has the same digest";
    EXPECT_EQ(store.issuerOf(issued), issuer);
}

TEST(UaPkiCertificateCollection, ChainsAreSplit)
{
    const UaPkiCertificate first = application();
    const UaPkiCertificate second = authority();
    UaByteArray blob = first.toDER();
    const UaByteArray more = second.toDER();
    EXPECT_TRUE(blob.append(more.size(), more.rawData()));
    const auto chain = UaPkiCertificateCollection::fromDERChain(UaByteString(blob));
    ASSERT_EQ(chain.size(), 2);
    EXPECT_EQ(chain[0], first);
    EXPECT_EQ(chain.certificate(1), second);
    EXPECT_TRUE(chain.certificate(2).isNull());
    EXPECT_FALSE(chain.hasErrors());

    const auto cut = UaPkiCertificateCollection::fromDERChain(
        UaByteString(std::span<const OpcUa_Byte>(blob.rawData(), blob.size() - 1)));
    EXPECT_EQ(cut.size(), 1);
    EXPECT_TRUE(cut.hasErrors());
    EXPECT_EQ(UaPkiCertificateCollection::fromDERChain(UaByteString()).size(), 0);
    UaByteArray endless;
    for (int i = 0; i < 11; ++i)
        EXPECT_TRUE(endless.append(more.size(), more.rawData()));
    const auto bounded = UaPkiCertificateCollection::fromDERChain(UaByteString(endless));
    EXPECT_EQ(bounded.size(), 10);
    EXPECT_TRUE(bounded.hasErrors());
    UaPkiCertificateCollection collection;
    EXPECT_FALSE(collection.addCertificate(UaPkiCertificate()));
    EXPECT_EQ(collection.size(), 0);
}
