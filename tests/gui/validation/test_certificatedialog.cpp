#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumseverityicon.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/validation/validationfixture.h>
#include <tests/support/dialogdriver.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QString>
#include <QStringList>
#include <QTreeView>

#include <filesystem>
#include <memory>
#include <string>

namespace {

class CertificateDialog : public ValidationFixture
{
protected:
    void open(const UaByteString& sent, const QString& name = "Plc 1")
    {
        dialog = std::make_unique<QlumCertificateDialog>(name, "urn:plc", "opc.tcp://plc.example:4840", sent,
                                                         &security);
        dialog->show();
    }
    template <typename Widget>
    Widget* find(const char* name) const
    {
        return dialog->findChild<Widget*>(QLatin1String(name));
    }
    QString text(const char* name) const { return find<QLabel>(name)->text(); }
    QPushButton* go() const { return find<QPushButton>("continue"); }
    QPushButton* trustButton() const { return find<QPushButton>("trust"); }
    QCheckBox* once() const { return find<QCheckBox>("acceptOnce"); }
    QTreeView* chain() const { return find<QTreeView>("chain"); }
    std::unique_ptr<QlumCertificateDialog> dialog;
};

TEST_F(CertificateDialog, UntrustedIsTrustedForGood)
{
    const Der own = testcertificates::make(flawless());
    open(bytes(own));
    EXPECT_TRUE(dialog->isModal());
    EXPECT_EQ(text("caption"), "Validating the certificate of server '<b>Plc 1</b>' returned an error:");
    EXPECT_EQ(text("result"), "<b><font color=\"#ff0000\">BadCertificateUntrusted</font></b>");
    EXPECT_EQ(find<QLabel>("result")->toolTip(), "The Certificate is not trusted");
    EXPECT_EQ(go()->text(), "Continue");
    EXPECT_FALSE(go()->isEnabled());
    EXPECT_TRUE(once()->isEnabled());
    EXPECT_EQ(once()->text(), "Accept the server certificate temporarily for this session");
    EXPECT_EQ(trustButton()->text(), "Trust Server Certificate");
    ASSERT_TRUE(trustButton()->isEnabled());
    EXPECT_EQ(chain()->currentIndex().data(), "Plc");

    trustButton()->click();
    EXPECT_EQ(text("caption"), "The certificate of server '<b>Plc 1</b>' was validated successfully.");
    EXPECT_EQ(text("result"), "<b><font color=\"#00aa00\">Good</font></b>");
    EXPECT_EQ(find<QLabel>("result")->toolTip(), "Everything is as expected");
    EXPECT_TRUE(go()->isEnabled());
    EXPECT_FALSE(trustButton()->isEnabled());
    EXPECT_FALSE(once()->isEnabled());
    EXPECT_EQ(TemporaryFolder::read(store.file("trusted/") + qlumThumbprint(certificate(own)).toStdString() +
                                    ".der"),
              std::string(own.begin(), own.end()));
    go()->click();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(CertificateDialog, AcceptingOnceStoresNothing)
{
    open(bytes(testcertificates::make(flawless())));
    once()->click();
    EXPECT_TRUE(go()->isEnabled());
    once()->click();
    EXPECT_FALSE(go()->isEnabled());
    once()->click();
    go()->click();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(std::filesystem::is_empty(store.file("trusted")));
    EXPECT_TRUE(dialog->validationResult().isBad());
    open(bytes(testcertificates::make(flawless())));
    EXPECT_FALSE(once()->isChecked());
    find<QDialogButtonBox>("buttons")->button(QDialogButtonBox::Cancel)->click();
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(CertificateDialog, TrustedButExpiredCanOnlyBeAcceptedOnce)
{
    Recipe recipe = flawless();
    recipe.to = -60;
    const Der der = testcertificates::make(recipe);
    trust(der);
    open(bytes(der));
    EXPECT_EQ(text("result"), "<b><font color=\"#ff0000\">BadCertificateTimeInvalid</font></b>");
    EXPECT_EQ(find<QLabel>("result")->toolTip(), "The Certificate has expired or is not yet valid");
    EXPECT_FALSE(trustButton()->isEnabled());
    EXPECT_TRUE(once()->isEnabled());
    auto* findings = find<QListWidget>("findings");
    ASSERT_EQ(findings->count(), 1) << "in two ways of saying it";
    EXPECT_EQ(findings->item(0)->text(), "certificate has expired [BadCertificateTimeInvalid]");
    application.settings["General.DisableError.CertificateTimeInvalid"] = true;
    open(bytes(der));
    EXPECT_TRUE(go()->isEnabled());
    EXPECT_EQ(find<QListWidget>("findings")->count(), 1) << "what the settings let pass is still shown";
    EXPECT_EQ(dialog->validationError(), QlumCertificateError::Error);
}

TEST_F(CertificateDialog, TheIssuerCanBeLookedAtAndTrustedInstead)
{
    const Der root = testcertificates::make(authority("Root"));
    const Der own = testcertificates::make(issuedBy("Root"));
    put("trusted_crl", "root.crl", testcertificates::makeRevocationList("Root", key("Root"), {}));
    open(bytes({own, root}));
    auto* details = find<QTreeView>("details");
    const auto shownName = [&] {
        return details->model()->index(0, 1, details->model()->index(0, 0)).data();
    };
    const auto selectRoot = [&] { chain()->setCurrentIndex(chain()->model()->index(0, 0)); };
    while (details->model()->index(0, 0).data() == "Errors") // of the server's certificate
        selectRoot();
    EXPECT_EQ(shownName(), "Root");
    trustButton()->click();
    EXPECT_TRUE(std::filesystem::exists(store.file("trusted/") +
                                        qlumThumbprint(certificate(root)).toStdString() + ".der"));
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_Good);
    EXPECT_EQ(chain()->currentIndex().data(), "Plc") << "back at the server's certificate";
}

TEST_F(CertificateDialog, WhatIsNoCertificateCannotBeAccepted)
{
    open(UaByteString(3, reinterpret_cast<const OpcUa_Byte*>("abc")));
    EXPECT_EQ(text("result"), "<b><font color=\"#ff0000\">BadDecodingError</font></b>");
    EXPECT_EQ(find<QLabel>("result")->toolTip(), "No description available");
    EXPECT_FALSE(go()->isEnabled());
    EXPECT_FALSE(once()->isEnabled());
    EXPECT_FALSE(trustButton()->isEnabled());
    EXPECT_FALSE(find<QAction>("saveAs")->isEnabled());
}

TEST_F(CertificateDialog, ANameIsNeverMarkup)
{
    open(bytes(testcertificates::make(flawless("<img src=x>%1"))), "<a href=\"x\">%1</a>\n&");
    EXPECT_EQ(text("caption"),
              "Validating the certificate of server '<b>&lt;a href=&quot;x&quot;&gt;%1&lt;/a&gt; "
              "&amp;</b>' returned an error:");
    EXPECT_EQ(chain()->currentIndex().data(), "<img src=x>%1");
    EXPECT_TRUE(chain()->currentIndex().data(Qt::ToolTipRole).toString().contains("&lt;img"));
}

TEST_F(CertificateDialog, AFailedWriteIsToldAndChangesNothing)
{
    const std::string file = store.file("file");
    TemporaryFolder::write(file, "no folder");
    security.initializePkiProviderOpenSSL("", UaString(file), "", "");
    open(bytes(testcertificates::make(flawless())));
    trustButton()->click();
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_BadCertificateUntrusted);
    EXPECT_FALSE(go()->isEnabled());
    ASSERT_FALSE(application.entries().isEmpty());
    EXPECT_EQ(application.entries().last().level, 100);
    EXPECT_TRUE(application.entries().last().text.startsWith("The certificate could not be written to '"));
    EXPECT_TRUE(text("advice").startsWith("The certificate could not be written"))
        << text("advice").toStdString();
}

TEST_F(CertificateDialog, SavedUnderTheProposedNameItIsTrusted)
{
    const Der own = testcertificates::make(flawless());
    open(bytes(own));
    QString proposed;
    DialogDriver driver([&proposed](QDialog& one) {
        auto* files = qobject_cast<QFileDialog*>(&one);
        if (!files)
            return;
        proposed = files->selectedFiles().value(0);
        EXPECT_EQ(files->windowTitle(), "Save Certificate");
        EXPECT_EQ(files->nameFilters(), QStringList("*.der"));
        static_cast<QDialog*>(files)->done(QDialog::Accepted);
    });
    find<QAction>("copyThumbprint")->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), qlumThumbprint(certificate(own)));
    find<QAction>("saveAs")->trigger();
    EXPECT_EQ(proposed.toStdString(),
              store.file("trusted/") + qlumThumbprint(certificate(own)).toStdString() + ".der");
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_Good);
}

TEST_F(CertificateDialog, TlsFormTrustsOrCancels)
{
    dialog = std::make_unique<QlumCertificateDialog>("Web", bytes(testcertificates::make(flawless())),
                                                     UaStatusCode(OpcUa_BadCertificateUntrusted));
    dialog->show();
    EXPECT_EQ(text("caption"), "Validating the TLS certificate of server '<b>Web</b>' returned an error:");
    EXPECT_EQ(go(), nullptr);
    EXPECT_FALSE(once()->isVisible());
    EXPECT_EQ(trustButton()->text(), "Trust TLS Certificate");
    trustButton()->click();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(std::filesystem::is_empty(store.file("trusted"))) << "who shows it stores it";
}

TEST_F(CertificateDialog, NoHeadlineAdvisesToTrustWhatIsWithdrawnOrExpired)
{
    const auto headline = [this](const UaByteString& sent) {
        open(sent);
        EXPECT_FALSE(text("advice").contains("trust it")) << text("advice").toStdString();
        return find<QLabel>("result")->toolTip();
    };
    Recipe expired = flawless();
    expired.to = -60;
    EXPECT_EQ(headline(bytes(testcertificates::make(expired))),
              "The Certificate has expired or is not yet valid");
    put("issuers_crl", "root.crl", testcertificates::makeRevocationList("Root", key("Root"), {1}));
    EXPECT_EQ(headline(bytes(
                  {testcertificates::make(issuedBy("Root")), testcertificates::make(authority("Root"))})),
              "The Certificate has been revoked");
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_BadCertificateUntrusted);
}

TEST_F(CertificateDialog, AnotherHostsCertificateIsNotCalledGood)
{
    Recipe recipe = flawless();
    recipe.extensions->back().second = "URI:urn:plc,DNS:other.example";
    const Der own = testcertificates::make(recipe);
    open(bytes(own));
    trustButton()->click();
    EXPECT_EQ(text("result"), "<b><font color=\"#ff0000\">BadCertificateHostNameInvalid</font></b>");
    EXPECT_TRUE(text("advice").contains("other host names"));
    EXPECT_EQ(find<QListWidget>("findings")->count(), 1);
    EXPECT_FALSE(go()->isEnabled());
    once()->click();
    EXPECT_TRUE(go()->isEnabled());
    security.securityPolicyUri = "http://opcfoundation.org/UA/SecurityPolicy#None";
    open(bytes(own));
    EXPECT_NE(text("result").indexOf("Good"), -1) << "the session will not ask either";
}

TEST_F(CertificateDialog, NoTickStandsBesideUntrusted)
{
    const auto shown = [this] {
        return chain()->currentIndex().data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
    };
    open(bytes(testcertificates::make(flawless())));
    EXPECT_EQ(shown(), qlumSeverityIcon(QlumCertificateError::Warning).pixmap(16).toImage());
    trustButton()->click();
    EXPECT_EQ(shown(), qlumSeverityIcon(QlumCertificateError::None).pixmap(16).toImage());
}

TEST_F(CertificateDialog, NoFindingIsCutAtTheFirstOfItsLines)
{
    Recipe recipe = flawless();
    recipe.extensions->back().second =
        "DNS:plc.example,URI:urn:a-rather-long-name-of-a-computer-in-a-plant:Maker:ProductWithAName";
    recipe.extensions->erase(recipe.extensions->begin() + 2); // no key identifier: another long one
    open(bytes(testcertificates::make(recipe)));
    auto* findings = find<QListWidget>("findings");
    ASSERT_EQ(findings->count(), 2);
    for (const int width : {1000, 420}) {
        dialog->resize(width, 700);
        EXPECT_LE(findings->visualItemRect(findings->item(1)).bottom(), findings->viewport()->height());
        EXPECT_EQ(findings->verticalScrollBar()->maximum(), 0) << width;
    }
    EXPECT_GE(findings->visualItemRect(findings->item(0)).height(), 2 * findings->fontMetrics().height());
}

TEST_F(CertificateDialog, AnIssuerAndItsListNeedNoDetour)
{
    const Der root = testcertificates::make(authority("Root"));
    open(bytes({testcertificates::make(issuedBy("Root")), root}));
    auto* issuer = find<QPushButton>("trustIssuer");
    ASSERT_TRUE(issuer->isVisible());
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::No));
        issuer->click();
        EXPECT_TRUE(driver.seen().value(0).contains(qlumThumbprint(certificate(root))));
        EXPECT_TRUE(std::filesystem::is_empty(store.file("trusted")));
    }
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::Yes));
        issuer->click();
    }
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_BadCertificateRevocationUnknown);
    EXPECT_FALSE(issuer->isVisible());

    QPushButton* import = find<QPushButton>("importCrl");
    ASSERT_TRUE(import->isVisible());
    const auto importList = [&](const char* signer) {
        const Der list = testcertificates::makeRevocationList("Root", key(signer), {});
        TemporaryFolder::write(store.file("list.crl"), std::string(list.begin(), list.end()));
        const DialogDriver driver([this](QDialog& one) {
            if (auto* files = qobject_cast<QFileDialog*>(&one)) {
                files->selectFile(QString::fromStdString(store.file("list.crl")));
                static_cast<QDialog*>(files)->done(QDialog::Accepted);
            } else {
                one.reject();
            }
        });
        import->click();
        return driver.seen().size();
    };
    EXPECT_EQ(importList("other"), 2) << "a list that somebody else has made is refused";
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_BadCertificateRevocationUnknown);
    EXPECT_EQ(importList("Root"), 1);
    EXPECT_EQ(dialog->validationResult().code(), OpcUa_Good);
    EXPECT_FALSE(import->isVisible());
}

TEST_F(CertificateDialog, WhoeverCancelsFindsTheCertificateAmongTheRejected)
{
    const QString folder = QlumCertificateStore::rejected();
    ASSERT_TRUE(QDir().mkpath(folder));
    const Der own = testcertificates::make(flawless());
    open(bytes(own));
    find<QDialogButtonBox>("buttons")->button(QDialogButtonBox::Cancel)->click();
    const QString file = folder + '/' + qlumThumbprint(certificate(own)) + ".der";
    EXPECT_EQ(UaPkiCertificate::fromDERFile(toUaString(file)), certificate(own));
    ASSERT_TRUE(QFile::remove(file));
    trust(own);
    open(bytes(own));
    dialog->reject();
    open(bytes(testcertificates::make(flawless("Other"))));
    dialog.reset(); // taken back by the program
    EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST_F(CertificateDialog, FindingsOfTheWholeChainForTheLog)
{
    Recipe root = authority("Root");
    root.digest = EVP_sha1();
    open(bytes({testcertificates::make(issuedBy("Root")), testcertificates::make(root)}));
    const QStringList findings = dialog->findings();
    EXPECT_TRUE(findings.contains("Root: Weak SignatureAlgorithm, SHA256 recommended"))
        << findings.join('\n').toStdString();
    EXPECT_FALSE(findings.filter("Plc: ").isEmpty());
}
} // namespace
