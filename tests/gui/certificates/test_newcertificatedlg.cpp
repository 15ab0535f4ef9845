#include <certificates/qlumnewcertificatedlg.h>
#include <certificates/qlumowncertificate.h>
#include <tests/gui/certificates/storefixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>

#include <QApplication>
#include <QByteArray>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <memory>
#include <tuple>
#include <utility>

namespace {
constexpr int limit = 60000; // ms; a long key on a busy machine

class NewCertificateDlg : public ::testing::Test
{
protected:
    void SetUp() override
    {
        dialog =
            std::make_unique<QlumNewCertificateDlg>(QStringLiteral("Tavelin"), QStringLiteral("Korvanda"));
        dialog->show();
    }
    template <typename T>
    [[nodiscard]] T* find(const char* name) const
    {
        return dialog->findChild<T*>(QLatin1String(name));
    }
    void type(const char* field, const QString& text) const { find<QLineEdit>(field)->setText(text); }
    void choose(const char* name, const QString& text) const { find<QComboBox>(name)->setCurrentText(text); }
    [[nodiscard]] bool mayAccept() const { return find<QPushButton>("ok")->isEnabled(); }
    [[nodiscard]] QString problem() const { return find<QLabel>("problem")->text(); }

    [[nodiscard]] bool finishes() const
    {
        return QTest::qWaitFor([this] { return !dialog->isVisible(); }, limit);
    }
    [[nodiscard]] static QStringList texts(const QListWidget* list)
    {
        QStringList result;
        for (int row = 0; row < list->count(); ++row)
            result << list->item(row)->text();
        return result;
    }

    std::unique_ptr<QlumNewCertificateDlg> dialog;
};

TEST_F(NewCertificateDlg, NoRenewalWeakensTheKeyOrItsSignature)
{
    const QlumOwnCertificate initial = StoreTest::values();
    const UaPkiCertificate old(initial.info, initial.subject, UaPkiRsaKeyPair(1536), false,
                               UaPkiCertificate::Sha512);
    QlumOwnCertificate renewed = QlumOwnCertificate::renewed(old, initial);
    for (const auto& [bits, offered] : {std::pair(renewed.keyBits, 2048), std::pair(1024, 1024),
                                        std::pair(3000, 3072), std::pair(6144, 6144)}) {
        renewed.keyBits = bits;
        dialog->setValues(renewed);
        EXPECT_EQ(dialog->values().keyBits, offered) << bits;
        EXPECT_EQ(dialog->values().algorithm, UaPkiCertificate::Sha512);
    }
}

TEST_F(NewCertificateDlg, OkWaitsForEveryRule)
{
    EXPECT_FALSE(mayAccept()) << "the country is missing";
    for (const auto& [country, fine] :
         {std::pair("D", false), std::pair("DEU", false), std::pair("1$", false),
          std::pair("\u00c4\u00d6", false), std::pair("DE", true)}) {
        type("country", QString::fromUtf8(country));
        EXPECT_EQ(mayAccept(), fine) << country;
    }
    EXPECT_EQ(problem(), QString());
    for (const char* field : {"commonName", "organization"}) {
        type(field, QStringLiteral("  "));
        EXPECT_FALSE(mayAccept()) << field;
        EXPECT_FALSE(problem().isEmpty());
        EXPECT_EQ(find<QLabel>((QByteArray(field) + "Status").constData())->toolTip(), problem());
        type(field, QStringLiteral("x"));
        EXPECT_TRUE(mayAccept());
    }
    auto* names = find<QListWidget>("dnsNames");
    EXPECT_EQ(texts(names), QStringList(qlumHostName()));
    names->setCurrentRow(0);
    find<QPushButton>("dnsNamesRemove")->click();
    EXPECT_FALSE(mayAccept()) << "neither name nor address";

    QlumOwnCertificate values = dialog->values();
    EXPECT_TRUE(values.info.IPAddresses.append(*UaString("::1").get()));
    dialog->setValues(values);
    EXPECT_TRUE(mayAccept());
    find<QCheckBox>("protectKey")->setChecked(true);
    for (const auto& [password, repetition, fine] :
         {std::tuple("abc", "abc", false), std::tuple("abcd", "abce", false),
          std::tuple("abcd", "abcd", true)}) {
        type("password", QLatin1String(password));
        type("passwordRepetition", QLatin1String(repetition));
        EXPECT_EQ(mayAccept(), fine) << password << repetition;
    }
    type("password", QStringLiteral("x"));
    EXPECT_FALSE(mayAccept());
    find<QCheckBox>("protectKey")->setChecked(false);
    EXPECT_TRUE(mayAccept());
}

TEST_F(NewCertificateDlg, TheUriFollowsTheNames)
{
    const auto* uri = find<QLineEdit>("applicationUri");
    EXPECT_TRUE(uri->isReadOnly());
    EXPECT_EQ(uri->text(), QStringLiteral("urn:%1:Korvanda:Tavelin").arg(qlumHostName()));
    type("organization", QStringLiteral("%3 G\u00f6 & Co"));
    type("commonName", QStringLiteral("%1"));
    EXPECT_EQ(uri->text(), QStringLiteral("urn:") + qlumHostName() + QStringLiteral(":%3 G%C3%B6 & Co:%1"));
}

TEST_F(NewCertificateDlg, OnlyLongValiditiesWarn)
{
    EXPECT_EQ(dialog->values().info.validTime, 157680000);
    EXPECT_EQ(dialog->values().keyBits, 2048);
    EXPECT_EQ(dialog->values().algorithm, UaPkiCertificate::Sha256);
    const DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
    choose("validity", QStringLiteral("1 Month"));
    EXPECT_EQ(dialog->values().info.validTime, 2678400);
    choose("validity", QStringLiteral("5 Years"));
    EXPECT_EQ(driver.seen(), QStringList());
    choose("validity", QStringLiteral("10 Years"));
    choose("validity", QStringLiteral("20 Years"));
    EXPECT_EQ(dialog->values().info.validTime, 630720000);
    const auto warning = QStringLiteral(
        "Security Warning: It is not recommended to use certificates with a lifetime greater than 5 years.");
    EXPECT_EQ(driver.seen(), (QStringList{warning, warning}));
}

TEST_F(NewCertificateDlg, AddingAsksAgainUntilItIsAName)
{
    QStringList prompts;
    QStringList answers{QStringLiteral("-bad"), QStringLiteral(" plc.example. ")};
    const auto answer = [&](QDialog& box) {
        auto* input = qobject_cast<QInputDialog*>(&box);
        ASSERT_TRUE(input);
        prompts << input->windowTitle() + QStringLiteral(": ") + input->labelText();
        if (answers.isEmpty())
            return box.reject();
        input->setTextValue(answers.takeFirst());
        box.accept();
    };
    const DialogDriver driver(answer);
    find<QPushButton>("dnsNamesAdd")->click();
    EXPECT_EQ(prompts,
              (QStringList{QStringLiteral("Add DNS Name: Enter the DNS name to add:"),
                           QStringLiteral("Add DNS Name: Please ensure to enter a valid DNS name!\nEnter the "
                                          "DNS name to add:")}));
    EXPECT_EQ(texts(find<QListWidget>("dnsNames")),
              (QStringList{qlumHostName(), QStringLiteral("plc.example.")}));

    prompts.clear();
    answers = QStringList{QStringLiteral("1.2.3"), QStringLiteral("[fe80::1%12]")};
    find<QPushButton>("ipAddressesAdd")->click();
    answers = QStringList{QStringLiteral("fe80::1")}; // once more
    find<QPushButton>("ipAddressesAdd")->click();
    find<QPushButton>("ipAddressesAdd")->click(); // cancelled
    EXPECT_EQ(texts(find<QListWidget>("ipAddresses")), QStringList(QStringLiteral("fe80::1")));
    ASSERT_EQ(prompts.size(), 4);
    EXPECT_EQ(prompts[1],
              QStringLiteral("Add IP Address: Please ensure to enter a valid IPv4 or IPv6 address!\nEnter "
                             "the IP address to add:"));
}

TEST(NewCertificateNames, WhatIsANameAndWhatAnAddress)
{
    using Dialog = QlumNewCertificateDlg;
    const QString label63(63, QLatin1Char('a'));
    for (const QString& name : QStringList{"a", "plc-1", "9.example.org.", label63})
        EXPECT_TRUE(Dialog::isDnsName(name)) << name;
    for (const QString& name : QStringList{"", ".", "a..b", "-a", "a-", "a_b", "b\u00fcro", "a b", "a\n",
                                           label63 + "a", (label63 + ".").repeated(4) + "a"})
        EXPECT_FALSE(Dialog::isDnsName(name)) << name;
    for (const QString& address : QStringList{"192.0.2.1", "[2001:db8::1]", "::ffff:1.2.3.4", "fe80::1%3"})
        EXPECT_TRUE(Dialog::isAddress(Dialog::withoutZone(address))) << address;
    for (const QString& address :
         QStringList{"", "256.1.1.1", "1.2.3", "0x7f.1", "fe80::1%eth0", "[::1", "host"})
        EXPECT_FALSE(Dialog::isAddress(Dialog::withoutZone(address))) << address;
}

TEST_F(NewCertificateDlg, MakesWhatWasAskedFor)
{
    type("commonName", QString::fromUtf8("B\u00fcro \U0001F600 <b>%1</b>"));
    type("country", QStringLiteral("de"));
    type("locality", QStringLiteral("Delft"));
    choose("keyStrength", QStringLiteral("1024 bits"));
    choose("signatureAlgorithm", QStringLiteral("Sha1"));
    choose("validity", QStringLiteral("1 Hour"));
    find<QCheckBox>("protectKey")->setChecked(true);
    type("password", QStringLiteral("secret"));
    type("passwordRepetition", QStringLiteral("secret"));
    find<QPushButton>("ok")->click();
    EXPECT_TRUE(dialog->isVisible()) << "made in the background";
    ASSERT_TRUE(finishes());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    const UaPkiCertificate& made = dialog->certificate();
    EXPECT_EQ(made.commonName(), UaString("B\u00fcro \U0001F600 <b>%1</b>"));
    EXPECT_EQ(made.subject().locality, UaString("Delft"));
    EXPECT_TRUE(made.subject().state.isNull());
    EXPECT_EQ(made.publicKey().keySize(), 1024);
    EXPECT_EQ(made.signatureAlgorithm(), UaPkiCertificate::Sha1);
    EXPECT_EQ(made.info().validTime, 3600);
    EXPECT_TRUE(made.info().URI.startsWith("urn:"));
    EXPECT_FALSE(made.isCA());
    EXPECT_TRUE(UaPkiRsaKeyPair::checkKeyPair(made.publicKey(), dialog->keyPair().privateKey()));
    EXPECT_EQ(dialog->password(), QStringLiteral("secret"));
    EXPECT_EQ(find<QLineEdit>("password")->text(), QString()) << "no longer in the field";
}

TEST_F(NewCertificateDlg, MakingALongKeyBlocksNothingAndCanBeStopped)
{
    type("country", QStringLiteral("DE"));
    choose("keyStrength", QStringLiteral("4096 bits"));
    QElapsedTimer timer;
    timer.start();
    dialog->accept();
    EXPECT_LT(timer.elapsed(), 500) << "on a thread of its own";
    EXPECT_TRUE(find<QWidget>("progress")->isVisible());
    EXPECT_FALSE(find<QLineEdit>("country")->isEnabled());
    EXPECT_FALSE(mayAccept());
    find<QPushButton>("stop")->click();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(mayAccept());
    EXPECT_FALSE(find<QWidget>("progress")->isVisible());

    choose("keyStrength", QStringLiteral("1024 bits"));
    dialog->accept();
    ASSERT_TRUE(finishes());
    EXPECT_EQ(dialog->keyPair().keySize(), 1024) << "not the late result of the stopped one";
    dialog = std::make_unique<QlumNewCertificateDlg>(QStringLiteral("x"), QStringLiteral("y"));
    dialog->show();
    type("country", QStringLiteral("DE"));
    choose("keyStrength", QStringLiteral("4096 bits"));
    dialog->accept();
    timer.restart();
    dialog.reset(); // joins
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(NewCertificateDlg, AFailureKeepsWhatWasEntered)
{
    QlumOwnCertificate values = dialog->values();
    values.subject.country = "DE";
    values.keyBits = 1024;
    EXPECT_TRUE(values.info.IPAddresses.append(*UaString("not an address").get()));
    dialog->setValues(values);
    const DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
    dialog->accept();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !driver.seen().isEmpty() && !QApplication::activeModalWidget(); }, limit));
    EXPECT_TRUE(driver.seen().first().startsWith(
        QStringLiteral("Could Not Create Certificate: The application certificate could not be created:\n")));
    EXPECT_TRUE(driver.seen().first().contains(QStringLiteral("not an address")));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(find<QLineEdit>("country")->text(), QStringLiteral("DE"));
    EXPECT_TRUE(dialog->certificate().isNull());
}
} // namespace
