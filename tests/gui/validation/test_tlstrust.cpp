#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumtlsoverrules.h>
#include <certificates/qlumtlstrust.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/validation/validationfixture.h>
#include <tests/support/dialogdriver.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QPushButton>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

namespace {

class TlsTrust : public ValidationFixture
{
protected:
    TlsTrust()
    {
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
        QFile::remove(QFileInfo(folder).path() + "/overruled");
    }
    // By the name that OpenSSL itself looks for.
    QString path(const Der& der, int number) const
    {
        const unsigned char* at = der.data();
        const std::unique_ptr<X509, decltype(&X509_free)> one(
            d2i_X509(nullptr, &at, static_cast<long>(der.size())), X509_free);
        return folder + QString::asprintf("/%08lx.%d", X509_subject_name_hash(one.get()), number);
    }
    static bool askAt(const QString& url, const Der& der, OpcUa_StatusCode status)
    {
        const auto dialog = qlumTlsTrustDialog("Web", url, bytes(der), UaStatusCode(status), nullptr);
        return dialog->exec() == QDialog::Accepted && qlumTrustTlsCertificate(bytes(der));
    }
    static bool ask(const Der& der, const DialogDriver::Answer& answer, QStringList* seen = nullptr)
    {
        const DialogDriver driver(answer);
        const bool trusted = askAt(QString(), der, OpcUa_BadCertificateUntrusted);
        if (seen)
            *seen = driver.seen();
        return trusted;
    }
    static void accept(QDialog& dialog)
    {
        auto* button = dialog.findChild<QPushButton*>("trust");
        if (button && button->isEnabled())
            button->click();
        else
            dialog.reject();
    }
    const QString folder = QlumCertificateStore::tlsIssuerCertificates();
};

TEST_F(TlsTrust, StoresUnderTheFirstFreeNumber)
{
    Recipe recipe = flawless();
    const Der first = testcertificates::make(recipe);
    recipe.serial = 2;
    const Der second = testcertificates::make(recipe);
    EXPECT_FALSE(ask(first, {})) << "cancelled";
    EXPECT_TRUE(QDir(folder).isEmpty());
    EXPECT_TRUE(ask(first, accept));
    EXPECT_TRUE(ask(second, accept));
    for (const auto& [der, number] : {std::pair(first, 0), std::pair(second, 1)}) {
        const UaString file = toUaString(path(der, number));
        EXPECT_EQ(UaPkiCertificate::fromPEMFile(file), certificate(der)) << path(der, number).toStdString();
        EXPECT_EQ(TemporaryFolder::read(file.toUtf8()).rfind("-----BEGIN CERTIFICATE-----", 0), 0u);
    }
}

TEST_F(TlsTrust, ATrustedOneIsNotAskedAboutAgain)
{
    const Der own = testcertificates::make(flawless());
    ASSERT_TRUE(ask(own, accept));
    QStringList seen;
    EXPECT_FALSE(ask(own, accept, &seen));
    ASSERT_EQ(seen.size(), 1);
    EXPECT_EQ(
        seen.first(),
        "TLS Certificate Already Trusted: The TLS certificate of server 'Web' is already in Tavelin's trust "
        "list but validation still fails. Please check Tavelin's log files for details about the reason "
        "for this error.\n\nThe certificate location is: " +
            path(own, 0));
    EXPECT_FALSE(QFileInfo::exists(path(own, 1)));
}

TEST_F(TlsTrust, NoTrustedDeviceStaysLockedOutForItsHostOrItsClock)
{
    const QString url = "https://192.0.2.99:4843/ua";
    Recipe recipe = flawless();
    recipe.to = -60;
    const Der own = testcertificates::make(recipe);
    const auto status = [&](const Der& der, OpcUa_StatusCode finding) {
        return qlumIsTlsOverruled("https://192.0.2.99:4843", bytes(der), finding);
    };
    const auto askAtUrl = [&](const DialogDriver::Answer& answer) {
        const DialogDriver driver(answer);
        return askAt(url, own, OpcUa_BadCertificateUntrusted);
    };
    QStringList shown;
    EXPECT_FALSE(askAtUrl([&](QDialog& dialog) {
        auto* findings = dialog.findChild<QListWidget*>("findings");
        for (int row = 0; row < findings->count(); ++row)
            shown.append(findings->item(row)->text());
        EXPECT_FALSE(dialog.findChild<QPushButton*>("trust")->isEnabled()) << "not by trust alone";
        dialog.reject();
    }));
    EXPECT_EQ(shown.filter("BadCertificateTimeInvalid").size(), 1) << shown.join('\n').toStdString();
    EXPECT_EQ(shown.filter("BadCertificateHostNameInvalid").size(), 1) << shown.join('\n').toStdString();
    EXPECT_FALSE(status(own, OpcUa_BadCertificateHostNameInvalid));
    const auto overrule = [](QDialog& dialog) {
        if (auto* box = dialog.findChild<QCheckBox*>("overrule"); box && box->isVisible())
            box->setChecked(true);
        accept(dialog);
    };
    EXPECT_TRUE(askAtUrl(overrule));
    EXPECT_TRUE(status(own, OpcUa_BadCertificateHostNameInvalid));
    EXPECT_TRUE(status(own, OpcUa_BadCertificateTimeInvalid));
    EXPECT_FALSE(status(own, OpcUa_BadCertificateUntrusted)) << "that is what the trust list is for";
    EXPECT_FALSE(status(testcertificates::make(flawless()), OpcUa_BadCertificateHostNameInvalid))
        << "another certificate of the server is asked about anew";
    EXPECT_FALSE(qlumIsTlsOverruled("https://192.0.2.99:4844", bytes(own), OpcUa_BadCertificateTimeInvalid));
    EXPECT_TRUE(askAtUrl(overrule)) << "a trusted one can still be overruled";
    EXPECT_FALSE(QFileInfo::exists(path(own, 1))) << "and is not stored twice";
}

TEST_F(TlsTrust, NobodyOverrulesAWeakKey)
{
    Recipe recipe = flawless();
    recipe.pair = testcertificates::key(1024);
    const DialogDriver driver([](QDialog& dialog) {
        EXPECT_FALSE(dialog.findChild<QCheckBox*>("overrule")->isVisible());
        EXPECT_FALSE(dialog.findChild<QPushButton*>("trust")->isEnabled());
        dialog.reject();
    });
    EXPECT_FALSE(
        askAt("https://192.0.2.99", testcertificates::make(recipe), OpcUa_BadCertificatePolicyCheckFailed));
    EXPECT_EQ(driver.seen().size(), 1);
}

TEST_F(TlsTrust, WhatCannotBeStoredIsNotTrusted)
{
    QDir(folder).removeRecursively();
    TemporaryFolder::write(folder.toStdString(), "no folder");
    EXPECT_FALSE(ask(testcertificates::make(flawless()), accept));
    EXPECT_TRUE(application.texts().last().startsWith("The TLS certificate could not be written to '"));
    QFile::remove(folder);
    EXPECT_FALSE(ask(Der{1, 2, 3}, accept)) << "no certificate";
}
} // namespace
