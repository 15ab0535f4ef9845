// Connecting: certificates, and what the user must know before a weak connection is made.
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumtlstrust.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumpkifolders.h>
#include <servers/qlumprojectnodeserver_p.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QDebug>
#include <QMessageBox>
#include <QMetaObject>

namespace {
using UaClientSdk::UaClient;

QString stepName(UaClient::ConnectServiceType step)
{
    switch (step) {
    case UaClient::CertificateValidation:
        return QStringLiteral("CertificateValidation");
    case UaClient::OpenSecureChannel:
        return QStringLiteral("OpenSecureChannel");
    case UaClient::CreateSession:
        return QStringLiteral("CreateSession");
    case UaClient::ActivateSession:
        return QStringLiteral("ActivateSession");
    }
    return QString::number(step);
}

UaByteString toUaByteString(const QByteArray& bytes)
{
    return UaByteString(bytes.size(), reinterpret_cast<const OpcUa_Byte*>(bytes.constData()));
}
} // namespace

// ---- before the connect

// Answers about its padding let an attacker find out what was encrypted, so it is used only where somebody
// has said so for this server.
bool QlumProjectNodeServer::allowSecurityPolicy()
{
    const QString& policy = m_setting.endpoint.securityPolicyUri;
    if (qlumPolicyName(policy) != QLatin1String("Basic128Rsa15") || m_weakPolicyAllowedFor == policy)
        return true;
    const QPointer<QlumProjectNodeServer> self(this);
    const int answer =
        qlumWarn(tr("Unsafe Security Policy"),
                 tr("The security policy 'Basic128Rsa15' of server '%1' is broken: who records the traffic "
                    "can find out what was encrypted. Use it only when the server offers nothing better.\n"
                    "Do you want to use it for this server until Tavelin is closed?")
                     .arg(displayName()),
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (!self)
        return false;
    if (answer != QMessageBox::Yes) {
        m_log.info(tr("Aborting connection attempt"));
        return false;
    }
    m_log.write(QlumLogLevel::Warning, tr("The unsafe security policy 'Basic128Rsa15' is used."));
    m_weakPolicyAllowedFor = policy;
    return true;
}

void QlumProjectNodeServer::fillSecurity(Attempt& attempt)
{
    const QlumEndpoint& wanted = m_setting.endpoint;
    qDebug().noquote() << tr("Try connect using SecurityPolicy '%1', MessageSecurityMode '%2'")
                              .arg(wanted.securityPolicyUri, qlumSecurityModeName(wanted.securityMode));
    attempt.security.securityPolicyUri = toUaString(wanted.securityPolicyUri);
    attempt.security.messageSecurityMode = static_cast<OpcUa_MessageSecurityMode>(wanted.securityMode);
    attempt.security.serverCertificate = toUaByteString(attempt.endpoint.serverCertificate);
    attempt.security.discoveredEndpoints =
        std::make_shared<const UaEndpointDescriptions>(qlumEndpointDescriptions(attempt.endpoints));
    attempt.security.verifyServerCertificateOnConnect = false; // the user judges it
    attempt.security.basic128Rsa15Accepted = m_weakPolicyAllowedFor == wanted.securityPolicyUri;
    const QlumCertificates& own = *QlumCertificates::instance();
    if (!own.certificate().isNull()) {
        attempt.security.clientCertificate = own.certificate().toByteStringDER();
        attempt.security.clientPrivateKey = UaByteString(own.keyPair().toDER());
    }
    qlumFillPkiFolders(attempt.security);
}

// Whether anything on this connection depends on the server's certificate.
bool QlumProjectNodeServer::needsServerCertificate(const Attempt& attempt) const
{
    switch (m_setting.userTokenType) {
    case QlumDiscoverySetting::UserName:
        return attempt.security.isSecured() || qlumPasswordPolicy(attempt.endpoint) != qlumPolicyNone();
    case QlumDiscoverySetting::Certificate:
        return true; // the user signs for this server
    default:
        return attempt.security.isSecured();
    }
}

bool QlumProjectNodeServer::checkServerCertificate(Attempt& attempt)
{
    if (attempt.security.serverCertificate.isEmpty()) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The server returned no certificate, all certificate checks will be skipped."));
        return true;
    }
    if (!needsServerCertificate(attempt)) {
        m_log.write(QlumLogLevel::Warning,
                    tr("The connection is not secured, the server's certificate is not checked."));
        attempt.security.serverCertificate.clear(); // the session takes one that it is given as judged
        return true;
    }
    const QPointer<QlumProjectNodeServer> self(this);
    const QString& name = attempt.endpoint.applicationName;
    // the record that is judged here is the one that the session is given
    QPointer<QlumCertificateDialog> dialog = new QlumCertificateDialog(
        name.isEmpty() ? displayName() : name, attempt.endpoint.applicationUri, m_setting.endpoint.url,
        attempt.security.serverCertificate, &attempt.security, qlumMainWindow());
    const bool good = dialog->validationError() != QlumCertificateError::Error;
    const bool accepted = good || dialog->exec() == QDialog::Accepted;
    const QStringList findings = dialog && accepted ? dialog->findings() : QStringList();
    const bool once = dialog && dialog->validationResult().isBad();
    delete dialog;
    if (!self)
        return false;
    if (!accepted) {
        m_log.error(tr("Connecting cancelled by user."));
        return false;
    }
    for (const QString& finding : findings)
        m_log.write(QlumLogLevel::Warning, tr("Certificate of the server: %1").arg(finding));
    if (once)
        m_log.write(QlumLogLevel::Warning,
                    tr("The user has accepted the server's certificate for this session."));
    return true;
}

// ---- errors of a connect

bool QlumProjectNodeServer::connectError(OpcUa_UInt32, UaClient::ConnectServiceType serviceType,
                                         const UaStatus& error, bool clientSideError)
{
    if (m_closing)
        return false;
    const QString status = toQString(error.toString());
    if (!onOwnThread()) {
        // A reconnect goes on without the user: what he may override there is an error until he connects
        // anew.
        m_log.error(tr("Error '%1' was returned during %2").arg(status, stepName(serviceType)));
        const UaStatusCode code(error.statusCode());
        QMetaObject::invokeMethod(
            this,
            [this, code, serviceType, clientSideError, connection = m_connection.load()] {
                if (connection == m_connection)
                    showReconnectError(code, serviceType, clientSideError);
            },
            Qt::QueuedConnection);
        return false;
    }
    if (!clientSideError) {
        m_log.error(tr("Error '%1' was returned during %2").arg(status, stepName(serviceType)));
        if (!error.diagnosticText().isEmpty())
            m_log.write(QlumLogLevel::Error, toQString(error.diagnosticText()));
        m_refusal = serviceType != UaClient::CertificateValidation ? error.statusCode() : OpcUa_Good;
        return false;
    }
    const QlumWaitCursor::Pause pause;
    const int pressed = qlumWarn(tr("Connect Error"),
                                 tr("Error '%1' was returned during %2, press 'Ignore' to suppress the error "
                                    "and continue connecting.")
                                     .arg(status, stepName(serviceType)),
                                 QMessageBox::Abort | QMessageBox::Ignore, QMessageBox::Abort,
                                 toQString(error.diagnosticText()));
    return pressed == QMessageBox::Ignore;
}

bool QlumProjectNodeServer::isOwnCertificateRefused(const UaStatusCode& status) const
{
    const QlumEndpoint& endpoint = m_setting.endpoint;
    return endpoint.securityPolicyUri != qlumPolicyNone() && QlumCertificateRefusedDialog::isRefusal(status);
}

void QlumProjectNodeServer::showOwnCertificateRefused(const UaStatusCode& status)
{
    if (m_messageBox)
        return;
    auto* dialog =
        new QlumCertificateRefusedDialog(displayName(), status, QlumCertificates::instance()->certificate(),
                                         QlumCertificateStore::ownCertificateFile(), qlumMainWindow());
    showMessage(dialog);
}

void QlumProjectNodeServer::showReconnectError(const UaStatusCode& status,
                                               UaClient::ConnectServiceType serviceType, bool clientSideError)
{
    if (m_messageBox) // the same again, a few seconds later
        return;
    if (!clientSideError) {
        if (isOwnCertificateRefused(status))
            showOwnCertificateRefused(status);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Warning, tr("Connect Error"),
                                tr("Reconnecting to server '%1' was refused: error '%2' was returned during "
                                   "%3.\nDisconnect and connect again to decide about it.")
                                    .arg(displayName(), qlumStatusText(status.code()), stepName(serviceType)),
                                QMessageBox::Ok, qlumMainWindow());
    box->setObjectName(QStringLiteral("reconnectError"));
    box->setTextFormat(Qt::PlainText);
    showMessage(box);
}

// Beside what the user is doing; it goes when this node goes.
void QlumProjectNodeServer::showMessage(QDialog* dialog)
{
    m_messageBox = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(false);
    dialog->show();
}

// ---- TLS

bool QlumProjectNodeServer::sslCertificateValidationFailed(OpcUa_UInt32, const UaStatus& status,
                                                           const UaByteString& certificate)
{
    if (!m_closing && m_tlsPrompt.tryAcquire())
        emit newUntrustedSSLCertificate(
            status.statusCode(),
            QByteArray(reinterpret_cast<const char*>(certificate.data()), certificate.length()));
    return false;
}

void QlumProjectNodeServer::sltCertificateRefused(unsigned int status, const QByteArray& certificate)
{
    if (m_tlsPrompt.tryAcquire())
        emit newUntrustedSSLCertificate(status, certificate);
}

void QlumProjectNodeServer::sltUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate)
{
    if (m_busy) { // the question comes when the connect has failed
        m_refusedTlsStatus = status;
        m_refusedTlsCertificate = certificate;
        return;
    }
    const QPointer<QlumProjectNodeServer> self(this);
    m_log.error(tr("The TLS certificate of server '%1' is not trusted: '%2'")
                    .arg(displayName(), qlumStatusText(status)));
    const bool trusted =
        qlumAskTlsTrust(displayName(), toUaByteString(certificate), UaStatusCode(status), qlumMainWindow());
    if (!self)
        return;
    m_tlsPrompt.release();
    if (trusted)
        connectServer(); // a lost connection that is being restored tries again at once
}
