// The dialogs by which a connect asks: what they say, and which button means what.
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumpkifolders.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/testcertificates.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>

namespace {
class ConnectDialogs : public testing::Test
{
protected:
    ConnectDialogs()
    {
        for (const QString& folder : QlumCertificateStore::folders())
            QDir().mkpath(folder);
        const QString folder = QlumCertificateStore::tlsIssuerCertificates();
        for (const QString& name : QDir(folder).entryList(QDir::Files))
            QFile::remove(folder + '/' + name);
        testcertificates::Recipe recipe;
        recipe.name = "Plc";
        recipe.pair = testcertificates::key(2048);
        const testcertificates::Der der = testcertificates::make(recipe);
        certificate = UaByteString(static_cast<OpcUa_Int32>(der.size()), der.data());
    }
    // The one that is open.
    template <typename Dialog = QDialog>
    Dialog* open() const
    {
        for (auto* dialog : application.window.findChildren<Dialog*>())
            if (dialog->isVisible())
                return dialog;
        return nullptr;
    }
    // "title: text", with what stands below in parentheses.
    QString words() const
    {
        const auto* box = open<QMessageBox>();
        if (!box)
            return QStringLiteral("no box");
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        const QString below = box->informativeText();
        return box->windowTitle() + ": " + box->text() + (below.isEmpty() ? "" : " (" + below + ")");
    }
    void press(QMessageBox::StandardButton button) { open<QMessageBox>()->button(button)->click(); }
    void click(std::initializer_list<const char*> buttons)
    {
        QDialog* dialog = open();
        ASSERT_NE(dialog, nullptr);
        for (const char* name : buttons) {
            auto* button = dialog->findChild<QAbstractButton*>(QLatin1String(name));
            ASSERT_NE(button, nullptr) << name;
            button->click();
        }
    }
    QlumConnectPrompts::Decided decides()
    {
        return [this](bool answer) { decided = answer; };
    }

    StubApplication application;
    UaByteString certificate;
    std::unique_ptr<QlumConnectDialogs> dialogs = std::make_unique<QlumConnectDialogs>();
    std::optional<bool> decided;
};

TEST_F(ConnectDialogs, BoxesSayWhatIsWrongAndOneButtonGoesOn)
{
    const struct
    {
        std::function<void()> ask;
        QString words;
        QMessageBox::StandardButton goesOn;
        QMessageBox::StandardButton ends;
    } cases[] = {
        {[this] { dialogs->askUnsupportedPolicy(decides()); },
         "Unsupported Security Policy: The connection cannot be established, because the server does not "
         "support the configured security policy.\nPlease try another configuration or press 'Ignore' to "
         "force trying to connect.",
         QMessageBox::Ignore, QMessageBox::Ok},
        {[this] { dialogs->askDialledHost("%2", "inner%3", "plc", decides()); },
         "Host Not Found: Server '%2' says that it is at 'inner%3', a host that cannot be found from here.\n"
         "Do you want to keep to 'plc', where it has answered, now and in future?",
         QMessageBox::Yes, QMessageBox::No},
        {[this] { dialogs->askWeakPolicy("<b>Plc</b>", decides()); },
         "Unsafe Security Policy: The security policy 'Basic128Rsa15' of server '<b>Plc</b>' is broken: who "
         "records the traffic can find out what was encrypted. Use it only when the server offers nothing "
         "better.\nDo you want to use it for this server until Tavelin is closed?",
         QMessageBox::Yes, QMessageBox::No},
        {[this] {
             dialogs->askConnectError({"BadX", "CreateSession", "because of %1"}, decides());
         },
         "Connect Error: Error 'BadX' was returned during CreateSession, press 'Ignore' to suppress the "
         "error and continue connecting. (because of %1)",
         QMessageBox::Ignore, QMessageBox::Abort},
        {[this] {
             dialogs->askConnectError({"BadX", "CreateSession", {}}, decides());
             dialogs->askConnectAnew({"BadX", "CreateSession", {}}, decides());
         },
         "Connect Error: Error 'BadX' was returned during CreateSession.\nThe server did not wait any "
         "longer. "
         "(Connect anew to be asked about the error again.)",
         QMessageBox::Retry, QMessageBox::Close}};
    for (const auto& test : cases) {
        for (const bool goesOn : {true, false}) {
            decided.reset();
            test.ask();
            EXPECT_EQ(words(), test.words);
            EXPECT_EQ(decided, std::nullopt) << "nobody has answered";
            EXPECT_EQ(open<QMessageBox>()->defaultButton(), open<QMessageBox>()->button(test.ends));
            press(goesOn ? test.goesOn : test.ends);
            EXPECT_EQ(decided, goesOn) << test.words.toStdString();
        }
        decided.reset();
        test.ask();
        open<QMessageBox>()->reject(); // Escape
        EXPECT_EQ(decided, false);
    }
}

TEST_F(ConnectDialogs, FirstCertificateIsToldAndGoneOnWith)
{
    bool isAnswered = false;
    dialogs->tellFirstCertificate([&] { isAnswered = true; });
    EXPECT_EQ(words(), "URL not found: There was no exact match for the specified URL in the server's "
                       "endpoints, using the first server certificate found for connecting.");
    press(QMessageBox::Ok);
    EXPECT_TRUE(isAnswered);
}

TEST_F(ConnectDialogs, PasswordIsAskedForWithAWarningWhereOthersCanReadIt)
{
    std::optional<QlumCredentials> given;
    const auto take = [&](const std::optional<QlumCredentials>& credentials) { given = credentials; };
    const auto warning = [this] {
        const auto* label = open()->findChild<QLabel*>("warning");
        return label->isVisible() ? label->text() : QString();
    };
    dialogs->askPassword({"Plc", "joe", "plc1", QlumPasswordDanger::Nobody}, take);
    EXPECT_EQ(open()->windowTitle(), "Plc");
    EXPECT_EQ(open()->findChild<QLineEdit*>("userName")->text(), "joe");
    EXPECT_EQ(warning(), "");
    open()->findChild<QLineEdit*>("password")->setText("secret");
    open()->accept();
    ASSERT_TRUE(given.has_value());
    EXPECT_EQ(given->userName + '/' + given->password.text(), "joe/secret");
    dialogs->askClearPassword({"Plc", "joe", "plc%1", QlumPasswordDanger::Anyone}, take);
    EXPECT_EQ(warning(),
              "The password leaves this computer in clear text, for host 'plc%1': everybody on the "
              "way can read it.");
    open()->reject();
    EXPECT_FALSE(given.has_value());
    dialogs->askClearPassword({"Plc", "joe", "plc1", QlumPasswordDanger::FalseServer}, take);
    EXPECT_TRUE(warning().contains("certificate of host 'plc1' cannot be checked")) << warning();
}

TEST_F(ConnectDialogs, UserIsChosenAmongAllKindsOfIdentity)
{
    std::optional<QlumUserChoice> chosen;
    const auto take = [&](const std::optional<QlumUserChoice>& choice) { chosen = choice; };
    QlumUserChoice proposal;
    proposal.certificateFile = "/me.der";
    dialogs->askUser({"Plc", "", "plc1", QlumPasswordDanger::Anyone}, proposal, take);
    auto* kind = open()->findChild<QComboBox*>("userTokenType");
    EXPECT_EQ(kind->currentText(), "Anonymous");
    EXPECT_FALSE(open()->findChild<QLabel*>("warning")->isVisible()) << "no password leaves";
    kind->setCurrentIndex(kind->findText("Certificate"));
    EXPECT_EQ(open()->findChild<QLineEdit*>("Certificate file")->text(), "/me.der");
    kind->setCurrentIndex(kind->findText("User name and password"));
    EXPECT_TRUE(open()->findChild<QLabel*>("warning")->text().contains("clear text, for host 'plc1'"));
    EXPECT_TRUE(open()->findChild<QLabel*>("warning")->isVisible());
    open()->findChild<QLineEdit*>("userName")->setText("operator");
    open()->findChild<QLineEdit*>("password")->setText("secret");
    open()->accept();
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(chosen->userName + '/' + chosen->password.text(), "operator/secret");
    EXPECT_EQ(chosen->tokenType, 1);
    dialogs->askUser({"Plc", "", "plc1", QlumPasswordDanger::Nobody}, proposal, take);
    EXPECT_EQ(open()->findChild<QLabel*>("warning"), nullptr);
    open()->reject();
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(ConnectDialogs, ChangedCertificateStandsBesideTheOneOfBefore)
{
    testcertificates::Recipe recipe;
    recipe.name = "False Plc";
    recipe.pair = testcertificates::key(2048);
    const testcertificates::Der other = testcertificates::make(recipe);
    QlumCertificateChange change{"Plc", "opc.tcp://plc:4840", certificate,
                                 UaByteString(static_cast<OpcUa_Int32>(other.size()), other.data()), false};
    const auto text = [this](const char* name) { return open()->findChild<QLabel*>(name)->text(); };
    dialogs->askChangedCertificate(change, decides());
    EXPECT_EQ(text("before0") + " | " + text("now0"), "Plc | False Plc");
    EXPECT_LE(open()->width(), 900) << "small screens";
    for (const QLabel* label : open()->findChildren<QLabel*>())
        EXPECT_LE(label->minimumSizeHint().height(), label->height()) << "cut: " << label->text();
    EXPECT_NE(text("before9"), text("now9")) << "thumbprints";
    EXPECT_TRUE(open()->findChild<QLabel*>("now0")->font().bold());
    EXPECT_FALSE(open()->findChild<QLabel*>("now8")->font().bold()) << "the same algorithm";
    open()->reject();
    EXPECT_EQ(decided, false);
    dialogs->askChangedCertificate(change, decides());
    click({"useNew"});
    EXPECT_EQ(decided, true);
}

TEST_F(ConnectDialogs, CertificateIsAcceptedOnceOrNotAtAll)
{
    QlumCertificateQuestion question;
    question.serverName = "Plc";
    question.url = "opc.tcp://plc:4840";
    question.security.serverCertificate = certificate;
    question.security.securityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
    qlumFillPkiFolders(question.security);
    std::optional<QlumCertificateVerdict> verdict;
    const auto take = [&](const QlumCertificateVerdict& given) { verdict = given; };
    dialogs->askCertificate(question, take);
    EXPECT_EQ(open()->windowTitle(), "Certificate Validation");
    click({"acceptOnce", "continue"});
    ASSERT_TRUE(verdict.has_value());
    EXPECT_TRUE(verdict->isAccepted && verdict->isForOnce);
    EXPECT_FALSE(verdict->findings.isEmpty());
    dialogs->askCertificate(question, take);
    open()->reject();
    EXPECT_FALSE(verdict->isAccepted);
}

TEST_F(ConnectDialogs, TrustedTlsCertificateIsStoredAndToldOfWhenItFailsAgain)
{
    const QDir folder(QlumCertificateStore::tlsIssuerCertificates());
    dialogs->askTlsTrust("Plc", QString(), certificate, UaStatusCode(OpcUa_BadCertificateUntrusted),
                         decides());
    open()->reject();
    EXPECT_EQ(decided, false);
    EXPECT_TRUE(folder.isEmpty());
    dialogs->askTlsTrust("Plc", QString(), certificate, UaStatusCode(OpcUa_BadCertificateUntrusted),
                         decides());
    click({"trust"});
    EXPECT_EQ(decided, true);
    EXPECT_EQ(folder.entryList(QDir::Files).size(), 1);
    dialogs->askTlsTrust("Plc", QString(), certificate, UaStatusCode(OpcUa_BadCertificateUntrusted),
                         decides());
    EXPECT_TRUE(words().startsWith("TLS Certificate Already Trusted: ")) << words();
    press(QMessageBox::Ok);
    EXPECT_EQ(decided, false) << "another attempt would fail alike";
}

TEST_F(ConnectDialogs, FailuresSayWhyAndWhatToDoAndOfferAnotherAttempt)
{
    const QlumConnectFailure failure{"It is so (BadX).", "Do that."};
    dialogs->tellFailure("Plc", "opc.tcp://plc%2", failure, decides());
    EXPECT_EQ(words(), "Connecting Failed: Server 'Plc' at opc.tcp://plc%2 was not connected.\nIt is so "
                       "(BadX). (Do that.)");
    press(QMessageBox::Retry);
    EXPECT_EQ(decided, true);
    dialogs->tellFailure("Plc", "opc.tcp://plc", failure, decides());
    bool isDiagnosed = false;
    QObject::connect(dialogs.get(), &QlumConnectDialogs::diagnoseWanted, [&] { isDiagnosed = !open(); });
    open()->findChild<QPushButton*>("diagnose")->click();
    EXPECT_EQ(decided, false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDiagnosed; }));
    dialogs->tellUserRefused("Plc", failure, decides());
    EXPECT_TRUE(words().startsWith("Changing the User Failed: ")) << words();
    press(QMessageBox::Close);
    EXPECT_EQ(decided, false);

    const QlumConnectFailure refused = qlumConnectFailure(OpcUa_BadUserAccessDenied);
    EXPECT_EQ(refused.reason, "The server does not let this user in (BadUserAccessDenied).");
    const QlumConnectFailure unknown = qlumConnectFailure(OpcUa_BadDeviceFailure);
    EXPECT_TRUE(unknown.reason.contains("BadDeviceFailure")) << unknown.reason;
    EXPECT_FALSE(unknown.advice.isEmpty());
    EXPECT_NE(unknown.advice, refused.advice);
}

TEST_F(ConnectDialogs, WithdrawnQuestionsCloseAndAreNotAnswered)
{
    dialogs->askUnsupportedPolicy(decides());
    dialogs->withdraw();
    EXPECT_EQ(open(), nullptr);
    dialogs->askUnsupportedPolicy(decides());
    dialogs.reset();
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(decided, std::nullopt);
}

TEST_F(ConnectDialogs, TheNextQuestionMayFollowFromAnAnswer)
{
    dialogs->tellFirstCertificate([this] { dialogs->askUnsupportedPolicy(decides()); });
    press(QMessageBox::Ok);
    EXPECT_TRUE(words().startsWith("Unsupported Security Policy")) << words();
    dialogs->withdraw();
    dialogs->tellFirstCertificate([this] { dialogs.reset(); });
    press(QMessageBox::Ok);
    EXPECT_EQ(open(), nullptr);
}

TEST_F(ConnectDialogs, QuestionWhoseWindowGoesIsDeclined)
{
    dialogs->askUnsupportedPolicy(decides());
    delete open(); // as its parent would
    EXPECT_EQ(decided, false);
}
} // namespace
