// Connecting: from the stored settings to a session.
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumprojectnodeserver_p.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uawidgets/qlumuserpassworddlg.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QEventLoop>
#include <QLabel>
#include <QMessageBox>
#include <QObject>
#include <QProgressDialog>
#include <QSysInfo>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <utility>

namespace {
using UaClientSdk::ServiceSettings;
using UaClientSdk::SessionConnectInfo;
using UaClientSdk::SessionSecurityInfo;
using UaClientSdk::UaClient;

UaClient::TypeDictionaryMode dictionaryMode(const QString& text)
{
    if (text == QLatin1String("FirstUse"))
        return UaClient::FirstUse;
    if (text == QLatin1String("Manual"))
        return UaClient::Manual;
    if (text == QLatin1String("Connect"))
        return UaClient::Connect;
    return UaClient::Reconnect;
}

} // namespace

QWidget* qlumMainWindow()
{
    QlumApplicationInterface* application = QlumApplicationInterface::instance();
    return application ? static_cast<QWidget*>(application->mainWindow()) : nullptr;
}

int qlumWarn(const QString& title, const QString& text, QMessageBox::StandardButtons buttons,
             QMessageBox::StandardButton defaultButton, const QString& details)
{
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::Warning, title, text, buttons, qlumMainWindow());
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(details);
    box->setDefaultButton(defaultButton);
    const int pressed = box->exec();
    delete box;
    return pressed;
}

bool QlumProjectNodeServer::connectServer()
{
    if (m_busy || m_status == QlumConnectionStatus::Connected ||
        m_status == QlumConnectionStatus::NewSessionCreated)
        return false;
    const QPointer<QlumProjectNodeServer> self(this);
    if (m_status == QlumConnectionStatus::ConnectionError) {
        if (reconnectNow())
            return false;
        disconnectServer(); // it would wait for nothing but this
        if (!self)
            return false;
    }
    m_busy = true;
    ++m_connection;
    m_typeCache->clear();
    m_refusal = UaStatusCode();
    delete m_messageBox; // about the connection before
    setStatus(QlumConnectionStatus::Connecting);
    const bool connected = runConnect();
    if (!self)
        return false;
    m_busy = false;
    if (!m_refusedTlsCertificate.isEmpty())
        emit newUntrustedSSLCertificate(m_refusedTlsStatus, std::exchange(m_refusedTlsCertificate, {}));
    if (!connected && m_status != QlumConnectionStatus::ConnectFailed)
        setStatus(QlumConnectionStatus::Disconnected);
    return connected;
}

bool QlumProjectNodeServer::runConnect()
{
    const QPointer<QlumProjectNodeServer> self(this);
    Attempt attempt;
    if (!fetchEndpoints(attempt) || !self || !chooseEndpoint(attempt) || !self)
        return false;
    if (!allowSecurityPolicy() || !self || !userIdentity(attempt) || !self)
        return false;
    fillSecurity(attempt);
    return checkServerCertificate(attempt) && self && connectSession(attempt);
}

// Asks in the background: a server that does not answer must not freeze the window.
bool QlumProjectNodeServer::fetchEndpoints(Attempt& attempt)
{
    const QPointer<QlumProjectNodeServer> self(this);
    const QlumWaitCursor wait;
    QEventLoop loop;
    QProgressDialog progress(QString(), tr("Cancel"), 0, 0, qlumMainWindow());
    progress.setObjectName(QStringLiteral("connectProgress"));
    progress.setWindowTitle(tr("Connecting"));
    progress.setWindowModality(Qt::ApplicationModal);
    auto* label = new QLabel(tr("Connecting to '%1'...").arg(m_setting.endpoint.url));
    label->setTextFormat(Qt::PlainText);
    progress.setLabel(label);
    QTimer::singleShot(500, &progress, &QWidget::show);

    bool answered = false;
    unsigned int status = OpcUa_BadUserAccessDenied;
    const QObject context; // ends the connections with this function
    connect(m_fetcher, &QlumEndpointFetcher::finished, &context,
            [&](unsigned int result, const QVector<QlumEndpoint>& endpoints) {
                answered = true;
                status = result;
                attempt.endpoints = endpoints;
                loop.quit();
            });
    connect(&progress, &QProgressDialog::canceled, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    m_fetcher->fetch(m_setting.endpoint.url, setting("General.ConnectTimeout").toInt());
    loop.exec();
    if (!self)
        return false;
    if (!answered) {
        m_fetcher->cancel();
        m_log.info(tr("Aborting connection attempt"));
        return false;
    }
    if (!OpcUa_IsGood(status))
        m_log.error(tr("Could not connect to server: ") + qlumStatusText(status));
    return OpcUa_IsGood(status);
}

bool QlumProjectNodeServer::chooseEndpoint(Attempt& attempt)
{
    const QPointer<QlumProjectNodeServer> self(this);
    const QlumEndpoint& wanted = m_setting.endpoint;
    const QlumEndpointChoice choice =
        qlumChooseEndpoint(attempt.endpoints, wanted.url, wanted.securityPolicyUri, wanted.securityMode);
    for (const int index : choice.qualified) {
        m_log.write(QlumLogLevel::Data, tr("Endpoint: '%1'").arg(attempt.endpoints.at(index).url));
        m_log.write(QlumLogLevel::Data,
                    tr("Security policy: '%1'").arg(attempt.endpoints.at(index).securityPolicyUri));
    }
    if (choice.match == QlumEndpointChoice::NoMatch) {
        attempt.endpoint = wanted;
        attempt.endpoint.serverCertificate.clear(); // what was once stored proves nothing
        m_log.write(QlumLogLevel::Data, tr("ApplicationUri: '%1'").arg(QString()));
        return acceptNoEndpoint();
    }
    attempt.endpoint = attempt.endpoints.at(choice.index);
    m_log.write(QlumLogLevel::Data, tr("ApplicationUri: '%1'").arg(attempt.endpoint.applicationUri));
    if (choice.match == QlumEndpointChoice::OtherUrl)
        qlumWarn(
            tr("URL not found"),
            tr("There was no exact match for the specified URL in the server's endpoints, using the first "
               "server certificate found for connecting."),
            QMessageBox::Ok);
    return self;
}

bool QlumProjectNodeServer::acceptNoEndpoint()
{
    m_log.error(tr("The server does not support the configured security policy '%1'.")
                    .arg(m_setting.endpoint.securityPolicyUri));
    return qlumWarn(
               tr("Unsupported Security Policy"),
               tr("The connection cannot be established, because the server does not support the configured "
                  "security policy.\nPlease try another configuration or press 'Ignore' to force trying to "
                  "connect."),
               QMessageBox::Ok | QMessageBox::Ignore) == QMessageBox::Ignore;
}

// ---- who the user is

bool QlumProjectNodeServer::userIdentity(Attempt& attempt)
{
    const QString told =
        attempt.changesUser ? tr("ChangeUser with UserTokenType: %1") : tr("Used UserTokenType: %1");
    switch (m_setting.userTokenType) {
    case QlumDiscoverySetting::UserName:
        m_log.info(told.arg(QLatin1String("UserName")));
        return userNameIdentity(attempt);
    case QlumDiscoverySetting::Certificate:
        m_log.info(told.arg(QLatin1String("Certificate")));
        return certificateIdentity(attempt);
    default:
        m_log.info(told.arg(QLatin1String("Anonymous")));
        attempt.security.setAnonymousUserIdentity();
        return true;
    }
}

bool QlumProjectNodeServer::userNameIdentity(Attempt& attempt)
{
    // a password that was given for a protected connection does not leave in the clear without a question
    const bool unprotected = qlumSendsUnprotectedPassword(attempt.endpoint);
    if (attempt.changesUser || !m_setting.storePassword || m_setting.password.isEmpty() ||
        (unprotected && !m_clearPasswordAllowed))
        return askForPassword(attempt);
    attempt.security.setUserPasswordUserIdentity(toUaString(m_setting.userName),
                                                 toUaString(m_setting.password));
    attempt.security.plainPasswordAccepted = unprotected;
    return true;
}

bool QlumProjectNodeServer::askForPassword(Attempt& attempt)
{
    const QPointer<QlumProjectNodeServer> self(this);
    QPointer<QlumUserPasswordDlg> dialog =
        new QlumUserPasswordDlg(displayName(), m_setting.userName, qlumMainWindow());
    const bool clear = qlumSendsClearPassword(attempt.endpoint);
    const bool unprotected = qlumSendsUnprotectedPassword(attempt.endpoint);
    if (clear)
        dialog->setWarning(tr("The password will be sent to the server without encryption."));
    else if (unprotected)
        dialog->setWarning(tr("The server's certificate cannot be checked: whoever answers in its place can "
                              "read the password."));
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const QString userName = dialog ? dialog->userName() : QString();
    const QString password = dialog ? dialog->password() : QString();
    delete dialog;
    if (!self)
        return false;
    if (!accepted) {
        m_log.info(attempt.changesUser ? tr("Aborting changing user of current session")
                                       : tr("Aborting connection attempt"));
        return false;
    }
    m_clearPasswordAllowed = unprotected;
    m_setting.userName = userName;
    if (m_setting.storePassword)
        m_setting.password = password;
    attempt.security.setUserPasswordUserIdentity(toUaString(userName), toUaString(password));
    attempt.security.plainPasswordAccepted = unprotected; // the dialog has said so
    return true;
}

bool QlumProjectNodeServer::certificateIdentity(Attempt& attempt)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(toUaString(m_setting.certificateFile));
    if (certificate.isNull()) {
        m_log.info(tr("Could not load certificate for X509 user token from file '%1'")
                       .arg(m_setting.certificateFile));
        return false;
    }
    const UaPkiRsaKeyPair key = UaPkiRsaKeyPair::fromPEMFile(toUaString(m_setting.privateKeyFile));
    if (key.isNull() || key.isMissingParameters()) {
        m_log.info(tr("Could not load private key for X509 user token from file '%1'")
                       .arg(m_setting.privateKeyFile));
        return false;
    }
    attempt.security.setCertificateUserIdentity(certificate.toByteStringDER(), UaByteString(key.toDER()));
    return true;
}

// ---- the session

SessionConnectInfo QlumProjectNodeServer::connectInfo() const
{
    SessionConnectInfo info;
    info.clientConnectionId = m_serverId;
    info.connectTimeout = setting("General.ConnectTimeout").toUInt();
    info.sessionTimeout = setting("General.SessionTimeout").toDouble();
    info.publishTimeout = setting("General.PublishTimeout").toUInt();
    info.secureChannelLifetime = setting("General.SecureChannelLifetime").toUInt();
    info.localeId = toUaString(setting("General.LocaleId").toString());
    const UaPkiCertificate& own = QlumCertificates::instance()->certificate();
    info.applicationUri =
        own.isNull() ? toUaString(QStringLiteral("urn:%1:Korvanda:Tavelin").arg(QSysInfo::machineHostName()))
                     : own.info().URI;
    info.applicationName = toUaString(tr("Korvanda Tavelin"));
    info.productUri = toUaString(tr("urn:Korvanda:Tavelin"));
    info.sessionName = toUaString(m_setting.sessionName);
    info.automaticReconnect = setting("General.AutomaticReconnect").toBool();
    info.watchdogTime = setting("General.WatchdogTime").toUInt();
    info.watchdogTimeout = setting("General.WatchdogTimeout").toUInt();
    info.maxOperationsPerServiceCall = setting("General.MaxOperationsPerServiceCall").toUInt();
    info.typeDictionaryMode = dictionaryMode(setting("General.TypeDictionaryMode").toString());
    info.internalServiceCallTimeout = setting("General.InternalServiceCallTimeout").toUInt();
    return info;
}

bool QlumProjectNodeServer::connectSession(Attempt& attempt)
{
    const QPointer<QlumProjectNodeServer> self(this);
    const SessionConnectInfo info = connectInfo();
    UaStatus status;
    {
        const QlumWaitCursor wait;
        status = m_session->connect(toUaString(m_setting.endpoint.url), info, attempt.security, this);
    }
    if (!status.isGood()) {
        m_log.error(tr("Connecting failed with error '%1'").arg(toQString(status.toString())));
        setStatus(QlumConnectionStatus::ConnectFailed);
        if (self && isOwnCertificateRefused(m_refusal))
            showOwnCertificateRefused(m_refusal);
        return false;
    }
    m_log.info(tr("Successfully connected UA server."));
    m_log.info(tr("Revised values: SessionTimeout=%1, SecureChannelLifetime=%2")
                   .arg(QString::number(m_session->revisedSessionTimeout(), 'g', 12),
                        QString::number(m_session->revisedSecureChannelLifetime())));
    if (m_status == QlumConnectionStatus::Connecting) // the session told another thread; its news come later
        setStatus(QlumConnectionStatus::Connected, updateNamespaces());
    return true;
}

// ---- the way back

bool QlumProjectNodeServer::reconnectNow()
{
    const bool isComing = m_session->reconnectNow();
    if (isComing)
        m_log.info(tr("Reconnecting to server '%1' now").arg(displayName()));
    return isComing;
}

void QlumProjectNodeServer::sltNetworkChanged()
{
    if (m_status == QlumConnectionStatus::ConnectionError && reconnectNow())
        m_log.info(tr("The network has changed."));
}

void QlumProjectNodeServer::disconnectServer()
{
    ServiceSettings settings;
    settings.callTimeout = qlumCallTimeout();
    UaStatus status;
    {
        const QlumWaitCursor wait;
        status = m_session->disconnect(settings, true);
    }
    ++m_connection; // what the session's threads have said until now comes too late
    if (status.isGood())
        m_log.info(tr("Disconnect succeeded."));
    else
        m_log.write(QlumLogLevel::Error,
                    tr("Disconnecting failed with error '%1'").arg(toQString(status.toString())));
    if (m_status != QlumConnectionStatus::Disconnected)
        setStatus(QlumConnectionStatus::Disconnected);
}

void QlumProjectNodeServer::changeUser()
{
    if (m_busy)
        return;
    const QPointer<QlumProjectNodeServer> self(this);
    Attempt attempt;
    attempt.endpoint = m_setting.endpoint;
    attempt.changesUser = true;
    m_busy = true;
    const bool known = userIdentity(attempt);
    if (!self)
        return;
    m_busy = false;
    if (!known)
        return;
    ServiceSettings settings;
    settings.callTimeout = qlumCallTimeout();
    UaStatus status;
    {
        const QlumWaitCursor wait;
        status = m_session->changeUser(settings, attempt.security.userIdentityToken().get());
    }
    if (status.isGood())
        m_log.info(tr("ChangeUser succeeded."));
    else
        m_log.error(tr("ChangeUser failed with error '%1'").arg(toQString(status.toString())));
}
