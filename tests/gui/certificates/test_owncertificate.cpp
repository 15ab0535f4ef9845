// The own certificate at start-up: every state of the loop, with the user's answers.
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsplashscreen.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumnewcertificatedlg.h>
#include <certificates/qlumowncertificate.h>
#include <tests/gui/certificates/storefixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumpassworddlg.h>

#include <QByteArray>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPixmap>
#include <QString>
#include <QStringList>

#include <utility>

namespace {
const auto dialogTitle = QStringLiteral("New Application Instance Certificate");

class OwnCertificate : public StoreTest
{
protected:
    static QString certificateFile() { return QlumCertificateStore::ownCertificateFile(); }
    static QString keyFile() { return QlumCertificateStore::ownPrivateKeyFile(); }

    // Answers as a user who wants the dialog's proposal with a short key.
    static void complete(QDialog& dialog, const QString& commonName = QString())
    {
        dialog.findChild<QLineEdit*>(QStringLiteral("country"))->setText(QStringLiteral("NL"));
        dialog.findChild<QComboBox*>(QStringLiteral("keyStrength"))->setCurrentIndex(0);
        if (!commonName.isEmpty())
            dialog.findChild<QLineEdit*>(QStringLiteral("commonName"))->setText(commonName);
        dialog.accept();
    }
    static void press(QDialog& dialog, QMessageBox::StandardButton button)
    {
        DialogDriver::press(button)(dialog);
    }

    // What the user meets at a start: boxes are answered with the button, the dialog as above, passwords in
    // turn.
    QStringList start(QMessageBox::StandardButton button = QMessageBox::Ok, QStringList passwords = {})
    {
        const DialogDriver driver([&](QDialog& dialog) {
            if (qobject_cast<QlumNewCertificateDlg*>(&dialog))
                return complete(dialog);
            if (!qobject_cast<QlumPasswordDlg*>(&dialog))
                return press(dialog, button);
            if (passwords.isEmpty())
                return dialog.reject();
            dialog.findChild<QLineEdit*>()->setText(passwords.takeFirst());
            dialog.accept();
        });
        QlumCertificates::instance();
        return driver.seen();
    }

    static bool pairFits()
    {
        const QlumCertificates* own = QlumCertificates::instance();
        return UaPkiRsaKeyPair::checkKeyPair(own->certificate().publicKey(), own->keyPair().privateKey());
    }
};

TEST_F(OwnCertificate, FirstStartWelcomesAndMakesThePair)
{
    QlumSplashScreen splash{QPixmap(50, 50)};
    splash.show();
    QStringList values;
    bool splashSeen = false;
    {
        const DialogDriver driver([&](QDialog& dialog) {
            splashSeen = splashSeen || splash.isVisible();
            auto* wanted = qobject_cast<QlumNewCertificateDlg*>(&dialog);
            if (!wanted)
                return press(dialog, QMessageBox::Ok);
            values = QStringList{dialog.findChild<QLineEdit*>(QStringLiteral("commonName"))->text(),
                                 dialog.findChild<QLineEdit*>(QStringLiteral("organization"))->text(),
                                 dialog.findChild<QLineEdit*>(QStringLiteral("applicationUri"))->text()};
            complete(dialog);
        });
        EXPECT_EQ(QlumCertificates::instance(&splash)->failure(), 0);
        ASSERT_EQ(driver.seen().size(), 2);
        EXPECT_TRUE(driver.seen().first().startsWith(
            QStringLiteral("Welcome to the Tavelin Initial Application Setup: When starting Tavelin for the "
                           "first time, you have to create an application instance certificate to identify "
                           "your installation.\nThis is needed")));
        EXPECT_EQ(driver.seen().last(), dialogTitle);
    }
    EXPECT_FALSE(splashSeen);
    EXPECT_TRUE(splash.isVisible());
    const QString host = qlumHostName();
    EXPECT_EQ(values, (QStringList{QStringLiteral("Tavelin@") + host, QStringLiteral("Korvanda"),
                                   QStringLiteral("urn:%1:Korvanda:Tavelin@%1").arg(host)}));
    const auto messages = QlumCertificates::instance()->takeMessages();
    EXPECT_EQ(messages.last(), qMakePair(30, QStringLiteral("Loaded Tavelin's certificate.")));
    EXPECT_TRUE(pairFits());
    const auto own = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(QFile::permissions(keyFile()), own);
    EXPECT_EQ(QFile::permissions(QFileInfo(keyFile()).path()) & (QFile::ReadOther | QFile::ReadGroup),
              QFile::Permissions());
    const UaPkiCertificate made = QlumCertificates::instance()->certificate();
    QlumCertificates::cleanup();
    EXPECT_EQ(start(), QStringList());
    EXPECT_EQ(QlumCertificates::instance()->certificate(), made);
}

TEST_F(OwnCertificate, AsksFromThirteenDaysOn)
{
    QlumOwnCertificate shortLived = values();
    shortLived.info.validTime = 20 * 86400;
    ASSERT_EQ(shortLived.create(), QString());
    const auto old = UaPkiCertificate::fromDERFile(uaPath(certificateFile()));
    for (const int days : {14, 15}) {
        setDaysLeft(old, days);
        EXPECT_EQ(start(), QStringList()) << days;
        QlumCertificates::cleanup();
    }
    for (const auto& [days, text] :
         {std::pair(13, "Tavelin's certificate will expire in 13 days!\nDo you want to create a new one?"),
          std::pair(0, "Tavelin's certificate will expire in 0 days!\nDo you want to create a new one?"),
          std::pair(-1, "Tavelin's certificate has expired.\nDo you want to create a new one?")}) {
        setDaysLeft(old, days);
        EXPECT_EQ(start(QMessageBox::No),
                  QStringList(QStringLiteral("Tavelin Certificate Store: ") + QLatin1String(text)));
        EXPECT_EQ(QlumCertificates::instance()->certificate(), old);
        EXPECT_TRUE(pairFits());
        QlumCertificates::cleanup();
    }
    EXPECT_EQ(start(QMessageBox::Yes).size(), 2);
    EXPECT_FALSE(QlumCertificates::instance()->certificate() == old);
    EXPECT_EQ(QlumCertificates::instance()->certificate().commonName(), UaString("Test"))
        << "filled from the old";
    EXPECT_TRUE(pairFits());
}

TEST_F(OwnCertificate, WhoCancelsAtTheFirstStartIsNotLockedOut)
{
    const DialogDriver driver([](QDialog& dialog) {
        qobject_cast<QMessageBox*>(&dialog) ? press(dialog, QMessageBox::Ok) : dialog.reject();
    });
    EXPECT_EQ(QlumCertificates::instance()->failure(), 0);
    EXPECT_EQ(driver.seen().size(), 2) << "not asked again and again";
    EXPECT_TRUE(QlumCertificates::instance()->certificate().isNull());
    EXPECT_FALSE(QFile::exists(certificateFile()));
}

TEST_F(OwnCertificate, TheCountryIsThatOfTheUser)
{
    const QLocale before;
    const auto country = [](const QLocale& locale) {
        QLocale::setDefault(locale);
        return QlumOwnCertificate::initial(QStringLiteral("a"), QStringLiteral("b")).subject.country;
    };
    EXPECT_EQ(country(QLocale(QStringLiteral("de_AT"))), UaString("AT"));
    EXPECT_TRUE(country(QLocale::c()).isEmpty());
    QLocale::setDefault(before);
}

TEST_F(OwnCertificate, WhoThinksBetterOfARenewalKeepsThePair)
{
    ASSERT_EQ(values().create(), QString());
    const QByteArray before = read(certificateFile()) + read(keyFile());
    setDaysLeft(UaPkiCertificate::fromDERFile(uaPath(certificateFile())), 5);
    const DialogDriver driver([](QDialog& dialog) {
        qobject_cast<QMessageBox*>(&dialog) ? press(dialog, QMessageBox::Yes) : dialog.reject();
    });
    EXPECT_EQ(QlumCertificates::instance()->failure(), 0);
    EXPECT_EQ(driver.seen().size(), 2);
    EXPECT_EQ(read(certificateFile()) + read(keyFile()), before);
    EXPECT_TRUE(pairFits());
}

TEST_F(OwnCertificate, OtherUriFormsAreReplaced)
{
    QlumOwnCertificate wanted = values(QStringLiteral("Old Name"));
    wanted.info.URI = "URN:localhost:%1:<b>x</b>";
    wanted.subject.locality = "Delft";
    EXPECT_TRUE(wanted.info.IPAddresses.append(*UaString("192.0.2.7").get()));
    ASSERT_EQ(wanted.create(), QString());
    const QStringList seen = start();
    ASSERT_EQ(seen.size(), 2);
    EXPECT_TRUE(seen.first().startsWith(QStringLiteral(
        "Tavelin Certificate Generation Setup: The application URI 'URN:localhost:%1:<b>x</b>' of "
        "the existing instance certificate is not compliant")));
    const UaPkiCertificate made = QlumCertificates::instance()->certificate();
    EXPECT_TRUE(made.info().URI.startsWith("urn:"));
    EXPECT_EQ(made.subject().locality, UaString("Delft"));
    EXPECT_EQ(made.commonName(), UaString("Old Name"));
    ASSERT_EQ(made.info().IPAddresses.length(), 1u);
    EXPECT_EQ(UaString(made.info().IPAddresses[0]), UaString("192.0.2.7"));
}

TEST_F(OwnCertificate, HashOfAnEmptyKeyOffersRenewal)
{
    const QString said =
        openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "100", "-outform", "DER", "-subj",
                 "/O=Plant/CN=Faulty", "-addext", "subjectAltName=URI:urn:x:y:z", "-addext",
                 "subjectKeyIdentifier=DA39A3EE5E6B4B0D3255BFEF95601890AFD80709", "-keyout", keyFile(),
                 "-out", certificateFile()});
    ASSERT_TRUE(QFile::exists(certificateFile())) << said;
    const QStringList seen = start(QMessageBox::No);
    ASSERT_EQ(seen.size(), 1);
    EXPECT_TRUE(seen.first().contains(QStringLiteral("is the hash of an empty string")));
    EXPECT_TRUE(pairFits());
    QlumCertificates::cleanup();
    EXPECT_EQ(start(QMessageBox::Yes).size(), 2);
    EXPECT_NE(QlumCertificates::instance()->certificate().commonName(), UaString());
}

TEST_F(OwnCertificate, OnlyTheFileOfThatNameIsTheOwn)
{
    ASSERT_TRUE(
        certificate(QStringLiteral("Other"))
            .toDERFile(uaPath(QlumCertificateStore::ownCertificates() + QStringLiteral("/other.der"))));
    write(certificateFile(), "no certificate at all");
    const QStringList seen = start();
    ASSERT_EQ(seen.size(), 2);
    EXPECT_TRUE(seen.first().startsWith(QStringLiteral("Welcome")));
    EXPECT_TRUE(pairFits());
}

TEST_F(OwnCertificate, WrongPasswordHasThreeWaysOut)
{
    const auto wrongTitle =
        QStringLiteral("Wrong password: The PEM password you have specified was not correct. Do you "
                       "want to retry it? Press 'Reset' to generate a new key.");
    const auto askTitle = QStringLiteral("Enter Password");
    ASSERT_EQ(values().create(QStringLiteral("pass\u00e4")), QString());
    const QByteArray certificateBefore = read(certificateFile());

    EXPECT_EQ(start(QMessageBox::Yes, {"wrong", "pass\u00e4"}),
              (QStringList{askTitle, wrongTitle, askTitle}));
    EXPECT_TRUE(pairFits());
    QlumCertificates::cleanup();

    EXPECT_EQ(start(QMessageBox::Cancel), (QStringList{askTitle, wrongTitle})) << "no password at all";
    EXPECT_TRUE(QlumCertificates::instance()->keyPair().isNull());
    EXPECT_FALSE(QlumCertificates::instance()->certificate().isNull());
    EXPECT_EQ(QlumCertificates::instance()->takeMessages().last().first, QlumLogLevel::Warning);
    QlumCertificates::cleanup();

    EXPECT_EQ(start(QMessageBox::Reset, {"wrong"}), (QStringList{askTitle, wrongTitle, dialogTitle}));
    EXPECT_TRUE(pairFits());
    EXPECT_NE(read(certificateFile()), certificateBefore);
}

TEST_F(OwnCertificate, MissingAndForeignKeysAreNoticed)
{
    ASSERT_EQ(values().create(), QString());
    const QByteArray ownKey = read(keyFile());
    ASSERT_TRUE(QFile::remove(keyFile()));
    EXPECT_EQ(start(),
              QStringList(QStringLiteral("Private Key Not Found: The certificate's private key could not "
                                         "be found.")));
    QlumCertificates::cleanup();

    const auto otherTitle =
        QStringLiteral("Private Key does not match Certificate: The private key does not match the "
                       "certificate's public key.\nDo you want to create a new certificate?");
    ASSERT_TRUE(key().toPEMFile(uaPath(keyFile())));
    const QFile::Permissions others = QFile::ReadGroup | QFile::ReadOther;
    ASSERT_TRUE(QFile::setPermissions(keyFile(), QFile::ReadOwner | QFile::ReadGroup));
    EXPECT_EQ(start(QMessageBox::No), QStringList(otherTitle));
    EXPECT_FALSE(QFile::permissions(keyFile()) & others) << "closed to the group";
    ASSERT_TRUE(QFile::setPermissions(keyFile(), QFile::ReadOwner | QFile::ReadOther));
    EXPECT_EQ(QlumCertificates::instance()->keyPair().keySize(), 2048);

    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
        QlumCertificates::instance()->reload();
        EXPECT_EQ(driver.seen(), QStringList(QStringLiteral(
                                     "Private Key does not match Certificate: The private key does not "
                                     "match the certificate's public key.")));
    }
    EXPECT_FALSE(QFile::permissions(keyFile()) & others) << "closed to all others";
    QlumCertificates::cleanup();
    EXPECT_EQ(start(QMessageBox::Yes), (QStringList{otherTitle, dialogTitle}));
    EXPECT_TRUE(pairFits());
}

TEST_F(OwnCertificate, ReloadTakesTheNewPairAndReportsAKeyThatItCannotRead)
{
    ASSERT_EQ(values().create(), QString());
    EXPECT_EQ(start(), QStringList());
    ASSERT_EQ(values(QStringLiteral("Second")).create(), QString());
    QlumCertificates::instance()->reload();
    EXPECT_EQ(QlumCertificates::instance()->certificate().commonName(), UaString("Second"));
    EXPECT_TRUE(pairFits());
    write(keyFile(), "no key");
    const DialogDriver driver(DialogDriver::press(QMessageBox::Cancel));
    QlumCertificates::instance()->reload();
    EXPECT_EQ(driver.seen(),
              QStringList(QStringLiteral("Wrong password: The PEM password you have specified was "
                                         "not correct. Do you want to retry it?")));
}

TEST_F(OwnCertificate, FirstStartOnAFullDiskGoesOnWithThePairInMemory)
{
    const FullDisk full(200);
    const QStringList seen = start();
    ASSERT_EQ(seen.size(), 3);
    EXPECT_TRUE(
        seen.last().startsWith(QStringLiteral("Could Not Create Certificate: The application certificate "
                                              "could not be created:\n")));
    EXPECT_TRUE(pairFits());
    EXPECT_EQ(QlumCertificates::instance()->failure(), 0);
    EXPECT_EQ(QDir(QFileInfo(keyFile()).path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}
} // namespace
