#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumclock.h>
#include <certificates/qlumcrlmodel.h>
#include <certificates/qlumthumbprint.h>
#include <tests/gui/certificates/storefixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QByteArray>
#include <QDateTime>
#include <QIcon>
#include <QImage>
#include <QModelIndex>
#include <QString>
#include <QStringList>

#include <utility>

namespace {
using Model = QlumCertificateModel;

class CertificateModels : public StoreTest
{
protected:
    static QString tip(const QAbstractItemModel& model, int row)
    {
        return model.index(row, 0).data(Qt::ToolTipRole).toString();
    }
    static QString cell(const QAbstractItemModel& model, int row, int column)
    {
        return model.index(row, column).data().toString();
    }
};

TEST_F(CertificateModels, RowsAndRoles)
{
    Model model(Model::Trusted, QIcon());
    const QAbstractItemModelTester tester(&model);
    const UaPkiCertificate one = certificate(QStringLiteral("one <b>"), 1700000000, 4100000000);
    const UaPkiCertificate own = certificate(QStringLiteral("own"));
    model.addCertificate(one, QStringLiteral("one.der"), QlumCertificateEntry::Rejected);
    model.addCertificate(own, QStringLiteral("copy.der"), QlumCertificateEntry::Own);
    model.addCertificate(certificate(QStringLiteral("two")), QStringLiteral("two.der"),
                         QlumCertificateEntry::InStore);
    model.addCertificate(own, QStringLiteral("tavelin.der"), QlumCertificateEntry::Own);
    ASSERT_EQ(model.rowCount(), 3);
    QStringList titles;
    for (int column = 0; column < 13; ++column)
        titles << model.headerData(column, Qt::Horizontal).toString();
    EXPECT_EQ(
        titles.join(QLatin1Char('|')),
        QStringLiteral("Status|Name|Valid From|Valid To|Organization|OrganizationUnit|Locality|State|Country|"
                       "AppURI|DomainName|IP|Filename"));
    QStringList states;
    for (int row = 0; row < 3; ++row)
        states << cell(model, row, Model::Status) + QLatin1Char(' ') + cell(model, row, Model::FileName);
    EXPECT_EQ(states,
              (QStringList{QStringLiteral("Untrusted one.der"), QStringLiteral("Own Certificate tavelin.der"),
                           QStringLiteral("Trusted two.der")}));
    EXPECT_EQ(cell(model, 0, Model::Name), QStringLiteral("one <b>"));
    EXPECT_EQ(cell(model, 0, Model::Organization), QStringLiteral("Korvanda")) << "of the issuer";
    EXPECT_EQ(cell(model, 0, Model::KeySize), QStringLiteral("2048 bits"));
    EXPECT_EQ(cell(model, 0, Model::Signature), QStringLiteral("sha256WithRSAEncryption"));
    EXPECT_TRUE(cell(model, 0, Model::ValidTo).contains(QStringLiteral("2099"))) << "all digits of the year";
    const QModelIndex first = model.index(0, 0);
    EXPECT_EQ(first.data(32).value<QlumCertificateEntry>().certificate(), one);
    const QByteArray der = first.data(33).toByteArray();
    EXPECT_EQ(
        UaPkiCertificate::fromDER(UaByteArray(der.size(), reinterpret_cast<const OpcUa_Byte*>(der.data()))),
        one);
    const QString path = home.filePath(QStringLiteral("one.der"));
    ASSERT_TRUE(one.toDERFile(uaPath(path)));
    const QString fingerprint =
        openssl({"x509", "-inform", "DER", "-in", path, "-noout", "-fingerprint", "-sha1"});
    EXPECT_EQ(first.data(34).toString(),
              fingerprint.section(QLatin1Char('='), 1).remove(QLatin1Char(':')).trimmed().toLower());
    EXPECT_EQ(first.data(34).toString(), qlumThumbprint(one));

    Model issuers(Model::Issuers, QIcon());
    issuers.addCertificate(one, QStringLiteral("x"), QlumCertificateEntry::InStore);
    Model tls(Model::TlsIssuers, QIcon());
    tls.addCertificate(one, QStringLiteral("x"), QlumCertificateEntry::InStore);
    EXPECT_EQ(cell(issuers, 0, 0) + cell(tls, 0, 0), QStringLiteral("Known IssuerTrusted"));
}

TEST_F(CertificateModels, SignsByTheDay)
{
    Model model(Model::Trusted, QIcon());
    const UaPkiCertificate one = certificate(QStringLiteral("one"), 1700000000, 1800000000);
    model.addCertificate(one, QStringLiteral("one.der"), QlumCertificateEntry::InStore);
    const auto picture = [&model] {
        return model.index(0, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage();
    };
    setDaysLeft(one, 15);
    const QImage plain = picture();
    EXPECT_EQ(tip(model, 0), QString());
    EXPECT_EQ(cell(model, 0, Model::DaysLeft), QStringLiteral("15"));
    for (const auto& [days, text] :
         {std::pair(14, "The certificate will expire soon"), std::pair(0, "The certificate will expire soon"),
          std::pair(-1, "The certificate has expired"),
          std::pair(2000, "The certificate is not yet valid")}) {
        setDaysLeft(one, days);
        EXPECT_EQ(tip(model, 0), QLatin1String(text)) << days;
        EXPECT_NE(picture(), plain) << days;
    }
}

TEST_F(CertificateModels, TimesOutsideOfTheUsualCenturies)
{
    Model model(Model::Trusted, QIcon());
    model.addCertificate(certificate(QStringLiteral("old"), -631152000 - 86400, -86400),
                         QStringLiteral("old.der"),
                         QlumCertificateEntry::InStore); // 1949 to 1969
    model.addCertificate(certificate(QStringLiteral("late"), 2556144000, 95617584000),
                         QStringLiteral("late.der"),
                         QlumCertificateEntry::InStore); // 2051 to 5000
    EXPECT_TRUE(cell(model, 0, Model::ValidFrom).contains(QStringLiteral("1949")))
        << cell(model, 0, Model::ValidFrom);
    EXPECT_TRUE(cell(model, 0, Model::ValidTo).contains(QStringLiteral("1969")));
    EXPECT_EQ(tip(model, 0), QStringLiteral("The certificate has expired"));
    EXPECT_TRUE(cell(model, 1, Model::ValidFrom).contains(QStringLiteral("2051")));
    EXPECT_TRUE(cell(model, 1, Model::ValidTo).contains(QStringLiteral("5000")));
    EXPECT_EQ(tip(model, 1), QStringLiteral("The certificate is not yet valid"));
}

TEST_F(CertificateModels, RevocationLists)
{
    QlumCRLModel model(QlumCRLModel::Trusted);
    const QAbstractItemModelTester tester(&model);
    UaPkiIdentity issuer;
    issuer.organization = "Plant\n\xE2\x80\xAE"; // a control character and one that turns the writing round
    issuer.country = "NL";
    UaPkiRevocationList list(30 * 86400, issuer, 10);
    ASSERT_TRUE(list.sign(key().privateKey()));
    UaPkiRevocationList other(30 * 86400, issuer, 9);
    ASSERT_TRUE(other.sign(key().privateKey()));
    model.addCRL(list, QStringLiteral("a.crl"));
    model.addCRL(other, QStringLiteral("b.crl"));
    ASSERT_EQ(model.columnCount(), 9);
    EXPECT_EQ(cell(model, 0, QlumCRLModel::Number), QStringLiteral("10"));
    EXPECT_EQ(cell(model, 0, QlumCRLModel::Organization), QStringLiteral("Plant\\n "));
    EXPECT_EQ(cell(model, 0, QlumCRLModel::Country), QStringLiteral("NL"));
    EXPECT_EQ(cell(model, 1, QlumCRLModel::FileName), QStringLiteral("b.crl"));
    EXPECT_GT(model.index(0, 0).data(QlumCRLModel::SortRole).toLongLong(),
              model.index(1, 0).data(QlumCRLModel::SortRole).toLongLong())
        << "numbers are not sorted as text";
    EXPECT_EQ(tip(model, 0), QString());
    static QDateTime now;
    QlumClock::setSource([] { return now; });
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(list.nextUpdate().toMSecsSinceEpoch());
    for (const auto& [days, text] :
         {std::pair(14, "The CRL will expire soon"), std::pair(-1, "The CRL has expired"),
          std::pair(40, "The CRL is not yet valid"), std::pair(15, "")}) {
        now = end.addDays(-days);
        EXPECT_EQ(tip(model, 0), QLatin1String(text)) << days;
    }
}
} // namespace
