#include <certificates/qlumcertificaterefuseddialog.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/validation/validationfixture.h>
#include <tests/support/dialogdriver.h>
#include <uabase/values/uastatuscode.h>

#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>

#include <string>

namespace {
using CertificateRefused = ValidationFixture;

TEST_F(CertificateRefused, SaysWhoRefusedWhatAndExportsIt)
{
    const Der own = testcertificates::make(flawless("Tavelin@here"));
    QlumCertificateRefusedDialog dialog("<b>Plc</b>", UaStatusCode(OpcUa_BadCertificateUntrusted),
                                        certificate(own), QString::fromStdString(store.file("tavelin.der")));
    const auto* message = dialog.findChild<QLabel*>("message");
    EXPECT_EQ(message->text(),
              "The server '<b>Plc</b>' ended the connection with 'BadCertificateUntrusted'.");
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    EXPECT_TRUE(dialog.findChild<QLabel*>("explanation")
                    ->text()
                    .startsWith("The server has refused Tavelin's own certificate, shown below."));
    EXPECT_EQ(dialog.findChild<QLineEdit*>("name")->text(), "Tavelin@here");
    EXPECT_EQ(dialog.findChild<QLineEdit*>("thumbprint")->text(), qlumThumbprint(certificate(own)));
    EXPECT_EQ(dialog.findChild<QLineEdit*>("location")->text().toStdString(), store.file("tavelin.der"));

    DialogDriver driver([this](QDialog& one) {
        if (auto* files = qobject_cast<QFileDialog*>(&one)) {
            files->selectFile(QString::fromStdString(store.file("exported.der")));
            static_cast<QDialog*>(files)->done(QDialog::Accepted);
        }
    });
    dialog.findChild<QPushButton*>("export")->click();
    EXPECT_EQ(TemporaryFolder::read(store.file("exported.der")), std::string(own.begin(), own.end()));
}

TEST_F(CertificateRefused, OnlyWhatSpeaksOfACertificateIsARefusal)
{
    for (const OpcUa_StatusCode status :
         {OpcUa_BadSecurityChecksFailed, OpcUa_BadCertificateUntrusted, OpcUa_BadCertificateUriInvalid,
          OpcUa_BadCertificateUntrusted | 0x0400u})
        EXPECT_TRUE(QlumCertificateRefusedDialog::isRefusal(UaStatusCode(status))) << status;
    for (const OpcUa_StatusCode status : {OpcUa_Good, OpcUa_BadTimeout, OpcUa_BadConnectionClosed,
                                          OpcUa_BadIdentityTokenRejected, OpcUa_BadUserAccessDenied})
        EXPECT_FALSE(QlumCertificateRefusedDialog::isRefusal(UaStatusCode(status))) << status;
}
} // namespace
