#include <servers/qlumconnectdialogs.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumtlstrust.h>
#include <servers/qlumchangedcertificatedialog.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumidentitydialog.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/qlumuserpassworddlg.h>

#include <QAbstractButton>
#include <QPushButton>

#include <memory>
#include <optional>
#include <utility>

QlumConnectDialogs::~QlumConnectDialogs()
{
    withdraw();
}

QWidget* QlumConnectDialogs::parentWindow()
{
    QlumApplicationInterface* application = QlumApplicationInterface::instance();
    return application ? static_cast<QWidget*>(application->mainWindow()) : nullptr;
}

QWidget* QlumConnectDialogs::window() const
{
    auto* widget = qobject_cast<QWidget*>(parent());
    return widget ? widget : parentWindow();
}

// ---- one question at a time

// The answer comes last: whoever gets it may ask the next question, or delete all this.
void QlumConnectDialogs::show(QDialog* dialog, std::function<void(int result)> answer)
{
    withdraw();
    m_dialog = dialog;
    connect(
        dialog, &QDialog::finished, this,
        [this, dialog, answer](int result) {
            disconnect(dialog, nullptr, this, nullptr);
            m_dialog.clear();
            dialog->deleteLater();
            answer(result);
        });
    connect(dialog, &QObject::destroyed, this, [answer] { answer(QDialog::Rejected); }); // with its window
    dialog->open();
}

void QlumConnectDialogs::withdraw()
{
    if (!m_dialog)
        return;
    disconnect(m_dialog, nullptr, this, nullptr);
    delete m_dialog;
}

QMessageBox* QlumConnectDialogs::makeWarning(const QString& title, const QString& text,
                                             QMessageBox::StandardButtons buttons,
                                             QMessageBox::StandardButton defaultButton) const
{
    auto* box = new QMessageBox(QMessageBox::Warning, title, text, buttons, window());
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(defaultButton);
    return box;
}

// ---- where to

void QlumConnectDialogs::askUnsupportedPolicy(Decided answer)
{
    QMessageBox* box = makeWarning(
        tr("Unsupported Security Policy"),
        tr("The connection cannot be established, because the server does not support the configured "
           "security policy.\nPlease try another configuration or press 'Ignore' to force trying to "
           "connect."),
        QMessageBox::Ok | QMessageBox::Ignore, QMessageBox::Ok);
    box->setObjectName(QStringLiteral("unsupportedPolicy"));
    show(box, [answer](int result) { answer(result == QMessageBox::Ignore); });
}

void QlumConnectDialogs::tellFirstCertificate(Answered answer)
{
    QMessageBox* box = makeWarning(
        tr("URL not found"),
        tr("There was no exact match for the specified URL in the server's endpoints, using the first "
           "server certificate found for connecting."),
        QMessageBox::Ok, QMessageBox::Ok);
    box->setObjectName(QStringLiteral("firstCertificate"));
    show(box, [answer](int) { answer(); });
}

void QlumConnectDialogs::askDialledHost(const QString& server, const QString& named, const QString& dialled,
                                        Decided answer)
{
    QMessageBox* box =
        makeWarning(tr("Host Not Found"),
                    tr("Server '%1' says that it is at '%2', a host that cannot be found from here.\n"
                       "Do you want to keep to '%3', where it has answered, now and in future?")
                        .arg(server, qlumCutText(named), dialled),
                    QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    box->setObjectName(QStringLiteral("dialledHost"));
    show(box, [answer](int result) { answer(result == QMessageBox::Yes); });
}

void QlumConnectDialogs::askWeakPolicy(const QString& server, Decided answer)
{
    QMessageBox* box = makeWarning(
        tr("Unsafe Security Policy"),
        tr("The security policy 'Basic128Rsa15' of server '%1' is broken: who records the traffic "
           "can find out what was encrypted. Use it only when the server offers nothing better.\n"
           "Do you want to use it for this server until Tavelin is closed?")
            .arg(server),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    box->setObjectName(QStringLiteral("weakPolicy"));
    show(box, [answer](int result) { answer(result == QMessageBox::Yes); });
}

// ---- who

namespace {
QString passwordWarning(const QlumPasswordQuestion& question)
{
    if (question.danger == QlumPasswordDanger::Nobody)
        return question.problem;
    if (question.danger == QlumPasswordDanger::Anyone)
        return QlumConnectDialogs::tr("The password leaves this computer in clear text, for host '%1': "
                                      "everybody on the way can read it.")
            .arg(qlumCutText(question.host));
    if (question.danger == QlumPasswordDanger::FalseServer)
        return QlumConnectDialogs::tr("The certificate of host '%1' cannot be checked: whoever answers in "
                                      "its place can read the password.")
            .arg(qlumCutText(question.host));
    return {};
}
} // namespace

void QlumConnectDialogs::askPassword(const QlumPasswordQuestion& question, Named answer)
{
    askClearPassword(question, std::move(answer));
}

void QlumConnectDialogs::askClearPassword(const QlumPasswordQuestion& question, Named answer)
{
    auto* dialog = new QlumUserPasswordDlg(question.server, question.userName, window());
    dialog->setObjectName(QStringLiteral("connectPassword"));
    dialog->setWarning(passwordWarning(question));
    show(dialog, [dialog, answer](int result) {
        if (result == QDialog::Accepted)
            answer(QlumCredentials{dialog->userName(), dialog->password()});
        else
            answer(std::nullopt);
    });
}

void QlumConnectDialogs::askUser(const QlumPasswordQuestion& question, const QlumUserChoice& proposal,
                                 Chosen answer)
{
    auto* dialog = new QlumIdentityDialog(question.server, proposal, passwordWarning(question), window());
    dialog->setObjectName(QStringLiteral("changeUser"));
    show(dialog, [dialog, answer](int result) {
        if (result == QDialog::Accepted)
            answer(dialog->choice());
        else
            answer(std::nullopt);
    });
}

void QlumConnectDialogs::askCertificate(const QlumCertificateQuestion& question, Judged answer)
{
    // the dialog looks at the record as long as it lives
    const auto security = std::make_shared<UaClientSdk::SessionSecurityInfo>(question.security);
    auto* dialog = new QlumCertificateDialog(question.serverName, question.applicationUri, question.url,
                                             security->serverCertificate, security.get(), window());
    connect(
        dialog, &QObject::destroyed, [security] {});
    show(dialog, [dialog, answer](int result) {
        if (result == QDialog::Accepted)
            answer({true, dialog->validationResult().isBad(), dialog->findings()});
        else
            answer({});
    });
}

// ---- in the middle of the connect

void QlumConnectDialogs::askConnectError(const QlumConnectError& error, Decided answer)
{
    QMessageBox* box =
        makeWarning(tr("Connect Error"),
                    tr("Error '%1' was returned during %2, press 'Ignore' to suppress the error "
                       "and continue connecting.")
                        .arg(error.status, error.step),
                    QMessageBox::Abort | QMessageBox::Ignore, QMessageBox::Abort);
    box->setObjectName(QStringLiteral("connectError"));
    box->setInformativeText(error.details);
    show(box, [answer](int result) { answer(result == QMessageBox::Ignore); });
}

void QlumConnectDialogs::askConnectAnew(const QlumConnectError& error, Decided answer)
{
    QMessageBox* box =
        makeWarning(tr("Connect Error"),
                    tr("Error '%1' was returned during %2.\nThe server did not wait any longer.")
                        .arg(error.status, error.step),
                    QMessageBox::Retry | QMessageBox::Close, QMessageBox::Close);
    box->setObjectName(QStringLiteral("connectAnew"));
    box->setInformativeText(tr("Connect anew to be asked about the error again."));
    box->button(QMessageBox::Retry)->setText(tr("Connect &Anew"));
    show(box, [answer](int result) { answer(result == QMessageBox::Retry); });
}

void QlumConnectDialogs::askChangedCertificate(const QlumCertificateChange& change, Decided answer)
{
    auto* dialog = new QlumChangedCertificateDialog(change, window());
    dialog->setObjectName(QStringLiteral("changedCertificate"));
    show(dialog, [answer](int result) { answer(result == QDialog::Accepted); });
}

void QlumConnectDialogs::askTlsTrust(const QString& server, const QString& url,
                                     const UaByteString& certificate, const UaStatusCode& status,
                                     Decided answer)
{
    show(
        qlumTlsTrustDialog(server, url, certificate, status, window()).release(),
        [certificate, answer](int result) {
            answer(result == QDialog::Accepted && qlumTrustTlsCertificate(certificate));
        });
}

// ---- afterwards

QMessageBox* QlumConnectDialogs::makeFailure(const QString& title, const QString& text,
                                             const QString& advice) const
{
    QMessageBox* box = makeWarning(title, text, QMessageBox::Retry | QMessageBox::Close, QMessageBox::Retry);
    box->setObjectName(QStringLiteral("connectFailure"));
    box->setInformativeText(advice);
    box->button(QMessageBox::Retry)->setText(tr("&Try Again"));
    return box;
}

void QlumConnectDialogs::showFailure(QMessageBox* box, Decided answer)
{
    show(
        box, [answer](int result) { answer(result == QMessageBox::Retry); });
}

void QlumConnectDialogs::tellFailure(const QString& server, const QString& url,
                                     const QlumConnectFailure& failure, Decided answer)
{
    QMessageBox* box = makeFailure(
        tr("Connecting Failed"),
        tr("Server '%1' at %2 was not connected.\n%3").arg(server, qlumCutText(url), failure.reason),
        failure.advice);
    QPushButton* diagnose = box->addButton(tr("&Diagnose..."), QMessageBox::ActionRole);
    diagnose->setObjectName(QStringLiteral("diagnose"));
    diagnose->setToolTip(tr("Try the connection step by step, to see where it stops"));
    connect(diagnose, &QAbstractButton::clicked, this, &QlumConnectDialogs::diagnoseWanted,
            Qt::QueuedConnection); // when the box is gone
    showFailure(box, std::move(answer));
}

void QlumConnectDialogs::tellUserRefused(const QString& server, const QlumConnectFailure& failure,
                                         Decided answer)
{
    showFailure(makeFailure(tr("Changing the User Failed"),
                            tr("The session with server '%1' goes on with the user that it had.\n%2")
                                .arg(server, failure.reason),
                            failure.advice),
                std::move(answer));
}
