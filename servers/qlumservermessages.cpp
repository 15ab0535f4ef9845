#include <servers/qlumservermessages.h>

#include <certificates/qlumcertificaterefuseddialog.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <servers/qlumconnectdialogs.h>

#include <QCoreApplication>
#include <QMessageBox>

namespace {
struct MessageTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumServerMessages)
};
} // namespace

QlumServerMessages::~QlumServerMessages()
{
    clear();
}

void QlumServerMessages::clear()
{
    delete m_dialog;
}

void QlumServerMessages::tellCertificateRefused(const QString& server, const UaStatusCode& status)
{
    if (m_dialog) // the same again, a few seconds later
        return;
    show(new QlumCertificateRefusedDialog(server, status, QlumCertificates::instance()->certificate(),
                                          QlumCertificateStore::ownCertificateFile(),
                                          QlumConnectDialogs::parentWindow()));
}

void QlumServerMessages::tellReconnectError(const QString& server, const QlumConnectError& error)
{
    if (m_dialog)
        return;
    auto* box = new QMessageBox(QMessageBox::Warning, MessageTexts::tr("Connect Error"),
                                MessageTexts::tr("Reconnecting to server '%1' was refused: error '%2' was "
                                                 "returned during %3.\nDisconnect and connect again to "
                                                 "decide about it.")
                                    .arg(server, error.status, error.step),
                                QMessageBox::Ok, QlumConnectDialogs::parentWindow());
    box->setObjectName(QStringLiteral("reconnectError"));
    box->setTextFormat(Qt::PlainText);
    show(box);
}

void QlumServerMessages::show(QDialog* dialog)
{
    m_dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(false);
    dialog->show();
}
