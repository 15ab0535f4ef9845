// What is found about a single certificate.
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatechecks.h>
#include <certificates/qlumcertificatedetailsmodel.h>
#include <certificates/qlumcertificateerror.h>
#include <tests/gui/validation/validationfixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QAbstractItemModelTester>
#include <QColor>
#include <QFont>
#include <QModelIndex>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>

namespace {

class CertificateChecks : public ValidationFixture
{
protected:
    static std::unique_ptr<QlumCertificateChainNode> check(const Der& der, bool extensions = true,
                                                           const QString& url = "opc.tcp://plc.example:4840",
                                                           const QString& uri = "urn:plc")
    {
        auto node =
            std::make_unique<QlumCertificateChainNode>(certificate(der), QlumCertificateChainNode::Untrusted);
        QlumCertificateChecks(uri, url).verifyNode(*node, extensions);
        return node;
    }
    static QStringList findings(const Recipe& recipe)
    {
        return findingsOf(*check(testcertificates::make(recipe)));
    }
    // The usual extensions with one replaced, or left out.
    static Recipe with(int nid, const std::string& value)
    {
        Recipe recipe = flawless();
        std::erase_if(*recipe.extensions, [nid](const auto& one) { return one.first == nid; });
        if (!value.empty())
            recipe.extensions->emplace_back(nid, value);
        return recipe;
    }
};

const char emptyHash[] = "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709";

TEST_F(CertificateChecks, NothingIsFoundAboutAFlawlessOne)
{
    const auto node = check(testcertificates::make(flawless()));
    EXPECT_EQ(findingsOf(*node), QStringList());
    EXPECT_EQ(node->severity(), QlumCertificateError::None);
    QStringList groups;
    for (int i = 0; i < node->detailsCount(); ++i)
        groups.append(node->details(i)->name());
    EXPECT_EQ(groups, (QStringList{"Subject", "Issuer", "Validity", "Info", "UA Extensions", "Extensions"}));
    EXPECT_EQ(valueOf(*node, "Info", "Cipher Strength"), "RSA (2048 bit)");
    EXPECT_EQ(valueOf(*node, "Info", "Signature Algorithm"), "sha256WithRSAEncryption");
    EXPECT_EQ(valueOf(*node, "UA Extensions", "URI"), "urn:plc");
    EXPECT_EQ(valueOf(*node, "UA Extensions", "IPAddresses"), "192.0.2.7");
}

TEST_F(CertificateChecks, TimesKeysAndAlgorithms)
{
    Recipe recipe = flawless();
    recipe.from = -7200;
    recipe.to = -3600;
    EXPECT_EQ(findings(recipe), QStringList("Validity/Valid To [1]: The certificate has expired"));
    recipe.from = 3600;
    recipe.to = 7200;
    EXPECT_EQ(findings(recipe), QStringList("Validity/Valid From [1]: The certificate is not yet valid"));

    recipe = flawless();
    recipe.digest = EVP_sha1();
    EXPECT_EQ(findings(recipe),
              QStringList("Info/Signature Algorithm [1]: Weak SignatureAlgorithm, SHA256 recommended"));
    for (const EVP_MD* strong : {EVP_sha384(), EVP_sha512()}) {
        recipe.digest = strong;
        EXPECT_EQ(findings(recipe), QStringList());
    }
    recipe.digest = EVP_sha3_256();
    EXPECT_EQ(findings(recipe), QStringList("Info/Signature Algorithm [2]: Unknown signature algorithm"));
    recipe = flawless();
    recipe.pair = testcertificates::key(1024);
    EXPECT_EQ(findings(recipe),
              QStringList("Info/Cipher Strength [1]: Weak Cipher Strength, at least 2048 recommended"));
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> curve(
        EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    recipe.pair = curve.get();
    EXPECT_EQ(findings(recipe), QStringList("Info/Cipher Strength [2]: Unknown key type"));
}

TEST_F(CertificateChecks, NamesOfTheServer)
{
    const Der der = testcertificates::make(flawless());
    EXPECT_EQ(findingsOf(*check(der, true, "opc.tcp://plc.example:4840", "urn:other%1<b>")),
              QStringList("UA Extensions/URI [1]: The URI returned in the certificate does not match the "
                          "Application URI of the server (urn:other%1<b>)."));
    const QString text =
        "The host of the server's URL ('10.0.0.1') cannot be found in the list of IP addresses "
        "or DNS names";
    EXPECT_EQ(findingsOf(*check(der, true, "opc.tcp://10.0.0.1:4840")),
              (QStringList{"UA Extensions/IPAddresses [1]: " + text, "UA Extensions/DNSNames [1]: " + text}));
    for (const char* url : {"opc.tcp://PLC.EXAMPLE:4840/path", "opc.tcp://192.0.2.7", ""})
        EXPECT_EQ(findingsOf(*check(der, true, url)), QStringList()) << url;

    EXPECT_EQ(
        findings(with(NID_subject_alt_name, "")),
        QStringList("Errors/Error [2]: SubjectAltName is missing - this extension is mandatory according "
                    "to the UA specification"));
    const auto node = check(testcertificates::make(with(NID_subject_alt_name, "")));
    EXPECT_EQ(node->details(0)->name(), "Errors");
    EXPECT_EQ(node->severity(), QlumCertificateError::Error);
    EXPECT_EQ(findingsOf(*check(testcertificates::make(with(NID_subject_alt_name, "")), false)),
              QStringList());
}

TEST_F(CertificateChecks, Extensions)
{
    const struct
    {
        int nid;
        std::string value;
        const char* finding; // null: none
    } cases[] = {
        {NID_subject_key_identifier, std::string("DER:0414") + emptyHash,
         "Extensions/SubjectKeyIdentifier [1]: SubjectKeyIdentifier is the hash of an empty string, this "
         "might "
         "lead to problems validating the server's certificate"},
        {NID_authority_key_identifier, std::string("DER:30168014") + emptyHash,
         "Extensions/AuthorityKeyIdentifier [1]: AuthorityKeyIdentifier contains the hash of an empty "
         "string, "
         "this might lead to problems validating the server's certificate"},
        {NID_authority_key_identifier, "",
         "Extensions/AuthorityKeyIdentifier [1]: AuthorityKeyIdentifier is missing - this can lead to "
         "validation problems\nIf you keep getting this warning, delete all old certificates of the server "
         "in "
         "the certificate trust list"},
        {NID_key_usage, "",
         "Extensions/KeyUsage [1]: KeyUsage is missing - this extension is mandatory according to the UA "
         "specification"},
        {NID_key_usage, "keyAgreement",
         "Extensions/KeyUsage [1]: KeyUsage: Shall include Digital Signature, Non Repudiation, Key "
         "Encipherment "
         "and Data Encipherment"},
        {NID_key_usage, "digitalSignature", nullptr},
        {NID_key_usage, "dataEncipherment", nullptr},
        {NID_ext_key_usage, "",
         "Extensions/ExtendedKeyUsage [1]: ExtendedKeyUsage is missing - this extension is mandatory "
         "according "
         "to the UA specification"},
        {NID_ext_key_usage, "codeSigning",
         "Extensions/ExtendedKeyUsage [1]: ExtendedKeyUsage: Shall specify TLS Web Server Authentication "
         "and/or "
         "TLS Web Client Authentication"},
        {NID_ext_key_usage, "clientAuth", nullptr},
        {NID_basic_constraints, "", nullptr},
    };
    for (const auto& one : cases)
        EXPECT_EQ(findings(with(one.nid, one.value)), one.finding ? QStringList(one.finding) : QStringList())
            << OBJ_nid2sn(one.nid) << '=' << one.value;
    EXPECT_EQ(valueOf(*check(testcertificates::make(with(NID_basic_constraints, ""))), "Extensions",
                      "BasicConstraints"),
              "(null)");
    Recipe signedByOther = with(NID_authority_key_identifier, "");
    signedByOther.issuer = "Root";
    signedByOther.issuerPair = key("Root");
    EXPECT_EQ(findings(signedByOther),
              QStringList("Extensions/AuthorityKeyIdentifier [2]: AuthorityKeyIdentifier is missing - this "
                          "extension is mandatory for CA-signed certificates according to the UA "
                          "specification"));
}

TEST_F(CertificateChecks, ForeignTextsStayTextAndFitOnALine)
{
    Recipe recipe = flawless("<b>big</b>\n%1 ../../etc");
    recipe.subject = {{"O", "a\xE2\x80\xAEreversed"}, {"OU", "\xC3\x96l & Gas"}};
    std::string names = "URI:urn:plc";
    for (int i = 0; i < 3000; ++i)
        names += numbered(",DNS:host", i, ".example");
    std::erase_if(*recipe.extensions, [](const auto& one) { return one.first == NID_subject_alt_name; });
    recipe.extensions->emplace_back(NID_subject_alt_name, names);
    const Der der = testcertificates::make(recipe);
    const auto node = check(der, true, "opc.tcp://HOST2999.example");
    EXPECT_EQ(findingsOf(*node), QStringList());
    EXPECT_EQ(node->displayName(), "<b>big</b>\\n%1 ../../etc");
    EXPECT_EQ(valueOf(*node, "Subject", "Organization"), "a reversed");
    EXPECT_EQ(valueOf(*node, "Subject", "OrganizationUnit"), QString::fromUtf8("\xC3\x96l & Gas"));
    EXPECT_EQ(valueOf(*node, "UA Extensions", "DNSNames").count('\n'), 2999);

    QlumCertificateDetailsModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setNode(node.get());
    const QModelIndex group = model.index(4, 0);
    ASSERT_EQ(group.data(), "UA Extensions");
    const QModelIndex hosts = model.index(2, 1, group);
    EXPECT_LT(hosts.data().toString().size(), 2100);
    EXPECT_EQ(hosts.data(Qt::EditRole).toString().count('\n'), 2999);
    EXPECT_TRUE(group.data(Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(hosts.data(Qt::FontRole).isValid());
}

TEST_F(CertificateChecks, LinesWithFindingsAreColouredAndExplained)
{
    Recipe recipe = with(NID_key_usage, "");
    recipe.digest = EVP_sha3_256();
    const auto node = check(testcertificates::make(recipe));
    QlumCertificateDetailsModel model;
    model.setNode(node.get());
    const QModelIndex algorithm = model.index(1, 1, model.index(3, 0));
    EXPECT_EQ(algorithm.data(), "Unknown");
    EXPECT_EQ(algorithm.data(Qt::ForegroundRole).value<QColor>(), QColor("red"));
    EXPECT_EQ(algorithm.data(Qt::ToolTipRole), "Unknown signature algorithm");
    const QModelIndex usage = model.index(3, 0, model.index(5, 0));
    EXPECT_EQ(usage.data(), "KeyUsage");
    EXPECT_EQ(usage.data(Qt::ForegroundRole).value<QColor>(), QColor("darkorange"));
    EXPECT_FALSE(model.index(0, 0).data(Qt::ForegroundRole).isValid());
    const auto findings = node->findings();
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings.front().severity, QlumCertificateError::Error) << "the worst first";
}

TEST_F(CertificateChecks, ReadsWhatAnotherProgramHasMade)
{
    const QString file = QString::fromStdString(store.file("made.der"));
    QProcess tool;
    tool.start("openssl", {"req",
                           "-x509",
                           "-newkey",
                           "rsa:2048",
                           "-nodes",
                           "-keyout",
                           QString::fromStdString(store.file("made.pem")),
                           "-outform",
                           "DER",
                           "-out",
                           file,
                           "-days",
                           "30",
                           "-sha256",
                           "-subj",
                           "/C=DE/O=Werk/CN=Presse 7",
                           "-addext",
                           "subjectAltName=URI:urn:werk:presse,DNS:presse,IP:2001:db8::1",
                           "-addext",
                           "keyUsage=digitalSignature",
                           "-addext",
                           "extendedKeyUsage=serverAuth"});
    ASSERT_TRUE(tool.waitForFinished(30000)) << "openssl is not installed";
    const UaPkiCertificate made = UaPkiCertificate::fromDERFile(toUaString(file));
    ASSERT_FALSE(made.isNull());
    QlumCertificateChainNode node(made, QlumCertificateChainNode::Untrusted);
    QlumCertificateChecks("urn:werk:presse", "opc.tcp://[2001:db8::1]:4840").verifyNode(node, true);
    EXPECT_EQ(findingsOf(node), QStringList());
    EXPECT_EQ(valueOf(node, "Subject", "Country"), "DE");
    EXPECT_EQ(valueOf(node, "Issuer", "Common Name"), "Presse 7");
    tool.start("openssl",
               {"x509", "-inform", "DER", "-in", file, "-noout", "-fingerprint", "-sha1", "-serial"});
    ASSERT_TRUE(tool.waitForFinished(30000));
    const QString told = QString::fromLatin1(tool.readAll()).remove(':').toLower();
    EXPECT_TRUE(told.contains("fingerprint=" + valueOf(node, "Info", "Thumbprint (SHA1)"))) << told;
    EXPECT_TRUE(told.contains("serial=" + valueOf(node, "Info", "Serial Number").remove(':').toLower()))
        << told;
}
} // namespace
