// Connecting a server node, and what follows when that has ended.
#include <servers/qlumprojectnodeserver.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumserviceguard.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QByteArray>
#include <QEventLoop>
#include <QMetaObject>
#include <QObject>
#include <QString>

#include <optional>
#include <utility>

using UaClientSdk::ServiceSettings;

QString QlumProjectNodeServer::sessionUser() const
{
    return m_sessionUser->get();
}

bool QlumProjectNodeServer::connectServer()
{
    QEventLoop loop;
    bool connected = false;
    bool hasEnded = false;
    const auto end = [&](bool result) {
        connected = result;
        hasEnded = true;
        loop.quit();
    };
    connect(this, &QlumServerNode::connectEnded, &loop, end);
    connect(this, &QObject::destroyed, &loop, [end] { end(false); });
    if (startConnect() && !hasEnded)
        loop.exec(); // from here on this node may be gone
    return connected;
}

bool QlumProjectNodeServer::startConnect()
{
    if (m_isBusy || m_tlsQuestion.isOpen() || m_status == QlumConnectionStatus::Connected ||
        m_status == QlumConnectionStatus::NewSessionCreated)
        return false;
    m_tlsQuestion.begin(m_setting.endpoint.url);
    if (m_status == QlumConnectionStatus::ConnectionError && reconnectNow())
        return false;
    begin(m_setting, nullptr);
    return true;
}

bool QlumProjectNodeServer::startConnectByUser()
{
    const bool isBegun = startConnect();
    m_isUsers = isBegun;
    return isBegun;
}

bool QlumProjectNodeServer::reconnectWith(OpcUa_MessageSecurityMode mode, const QlumIdentity& identity)
{
    if (m_isBusy || m_tlsQuestion.isOpen())
        return false;
    m_tlsQuestion.begin(m_setting.endpoint.url);
    QlumDiscoverySetting setting = m_setting;
    qlumSetSecurity(setting.endpoint, mode, QString());
    begin(setting, identity);
    return true;
}

void QlumProjectNodeServer::begin(const QlumDiscoverySetting& setting, const QlumIdentity& identity)
{
    m_isBusy = true;
    m_isUsers = false;
    m_reason.clear();
    stopTelling();
    m_certificateWatch.stop();
    m_tlsQuestion.setHeld(true);
    if (m_status == QlumConnectionStatus::Disconnected || m_status == QlumConnectionStatus::ConnectFailed)
        return beginConnect(setting, identity);
    QMetaObject::invokeMethod(
        this, [this, setting, identity] { beginConnect(setting, identity); }, Qt::QueuedConnection);
    disconnectServer();
}

void QlumProjectNodeServer::beginConnect(const QlumDiscoverySetting& setting, const QlumIdentity& identity)
{
    ++m_connection;
    m_typeCache->clear();
    m_icons.clear();
    m_messages.clear(); // about the connection before
    m_monitoring->useSession();
    m_flow->start(setting, qlumConnectInfo(m_serverId, setting), identity);
    setStatus(QlumConnectionStatus::Connecting);
}

void QlumProjectNodeServer::changeUser()
{
    if (m_isBusy || m_tlsQuestion.isOpen())
        return;
    m_isBusy = true;
    m_isUsers = true;
    stopTelling();
    m_tlsQuestion.setHeld(true);
    QlumDiscoverySetting setting = m_setting;
    if (const QlumEndpoint& used = m_flow->endpoint(); !used.url.isEmpty()) { // by a tool's wish, another one
        setting.endpoint.securityMode = used.securityMode;
        setting.endpoint.securityPolicyUri = used.securityPolicyUri;
    }
    m_flow->startUserChange(setting);
}

void QlumProjectNodeServer::takeFlowResult(QlumConnectFlow::Result result)
{
    using Result = QlumConnectFlow::Result;
    takeEntered(result == Result::Unchanged);
    m_failure = m_flow->failure();
    if (m_failure && result != Result::Unchanged)
        m_reason = m_failure->reason;
    m_isUserChange = result == Result::Unchanged;
    if (result == Result::GivenUp || result == Result::Refused)
        m_monitoring->leaveSession();
    else if (result == Result::Unchanged)
        m_monitoring->retryRefused(); // perhaps as another user
    else {
        takeTrust();
        m_setting.dialledHost = m_flow->dialledHost();
    }
    if (!m_flow->newlyIgnoredHost().isEmpty() && m_setting.ignoredHost != m_flow->newlyIgnoredHost()) {
        m_setting.ignoredHost = m_flow->newlyIgnoredHost();
        keepInProject();
    }
    const bool connected = result == Result::Connected;
    QMetaObject::invokeMethod(
        this, [this, connected] { endFlow(connected); }, Qt::QueuedConnection);
    if (result == Result::GivenUp && m_status != QlumConnectionStatus::Disconnected)
        setStatus(QlumConnectionStatus::Disconnected);
    else if (result == Result::Refused) {
        if (isOwnCertificateRefused(m_flow->refusal())) {
            m_messages.tellCertificateRefused(displayName(), m_flow->refusal());
            m_isUsers = false; // it is told
        }
        setStatus(QlumConnectionStatus::ConnectFailed);
    }
}

// A password that the server did not take is of no use another time.
void QlumProjectNodeServer::takeEntered(bool isUserChange)
{
    const bool isRefused = qlumIsLoginRefused(m_flow->refusal()) || qlumIsLoginRefused(m_flow->outcome());
    if (isRefused && !isUserChange)
        forgetPassword(m_setting);
    const std::optional<QlumCredentials>& entered = m_flow->entered();
    if (!entered || (isUserChange && m_flow->outcome().isBad()))
        return;
    if (entered->userName != m_setting.userName)
        forgetPassword(m_setting);
    if (QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance();
        keeper && m_setting.storePassword && m_flow->outcome().isGood() && !m_flow->isPasswordFound() &&
        !entered->password.isEmpty())
        keeper->keep(m_flow->passwordKey(), entered->password, displayName());
    m_setting.userName = entered->userName;
    if (m_setting.storePassword && !isRefused)
        m_setting.password = entered->password;
}

// Here, and where it outlives the program.
void QlumProjectNodeServer::forgetPassword(const QlumDiscoverySetting& setting)
{
    if (QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance(); keeper && setting.storePassword)
        keeper->forget(qlumPasswordKey(setting, {}));
    m_setting.password.clear();
}

void QlumProjectNodeServer::forgetSecrets()
{
    forgetPassword(m_setting);
}

void QlumProjectNodeServer::takeTrust()
{
    const QByteArray& used = m_flow->usedCertificate();
    QByteArray& given = m_setting.givenCertificate;
    const bool isKnown = m_setting.trustedCertificate == used && (given.isEmpty() || given == used);
    if (used.isEmpty() || !m_flow->isCertificateTrusted() || isKnown)
        return;
    m_setting.trustedCertificate = used;
    if (!given.isEmpty())
        given = used; // as the user has decided
    if (m_flow->isCertificateDecided())
        keepInProject();
}

void QlumProjectNodeServer::keepInProject()
{
    if (QlumApplicationInterface* application = QlumApplicationInterface::instance())
        application->setModified();
}

// By the event loop, so that nothing follows but the signal.
void QlumProjectNodeServer::endFlow(bool connected)
{
    m_isBusy = false;
    m_tlsQuestion.setHeld(false);
    if (m_isUsers && m_failure)
        tellFailure();
    emit connectEnded(connected && m_status != QlumConnectionStatus::Disconnected);
}

// It holds nothing up: another attempt follows whenever the user wants it.
void QlumProjectNodeServer::tellFailure()
{
    m_isTelling = true;
    const auto again = [this, isUserChange = m_isUserChange](bool isWanted) {
        m_isTelling = false;
        if (isWanted)
            QMetaObject::invokeMethod(
                this,
                [this, isUserChange] {
                    if (isUserChange)
                        changeUser();
                    else
                        emit retryConnectServer();
                },
                Qt::QueuedConnection);
    };
    if (m_isUserChange)
        m_prompts->tellUserRefused(displayName(), *m_failure, again);
    else
        m_prompts->tellFailure(displayName(), m_setting.endpoint.url, *m_failure, again);
}

void QlumProjectNodeServer::stopTelling()
{
    if (std::exchange(m_isTelling, false))
        m_prompts->withdraw();
}

// A connect anew asks the user; the attempts to go on with the certificate of before would only fail.
void QlumProjectNodeServer::sltCertificateChanged()
{
    if (m_isBusy || m_tlsQuestion.isOpen() || m_status != QlumConnectionStatus::ConnectionError)
        return;
    m_log.error(tr("Server '%1' presents another certificate than before. Reconnecting waits for the user.")
                    .arg(displayName()));
    QlumDiscoverySetting setting = m_setting;
    setting.trustedCertificate = m_flow->usedCertificate();
    qlumSetSecurity(setting.endpoint, m_flow->endpoint().securityMode, m_flow->endpoint().securityPolicyUri);
    begin(setting, nullptr);
    m_isUsers = true;
    m_reason = tr("The server presents another certificate than before.");
}

void QlumProjectNodeServer::disconnectServer()
{
    if (!m_flow->isIdle() && m_flow->step() != QlumConnectFlow::Step::UserChange) {
        m_flow->cancel();
        return;
    }
    ServiceSettings settings;
    settings.callTimeout = qlumCallTimeout();
    UaStatus status;
    {
        const QlumWaitCursor wait;
        status = m_session->disconnect(settings, true);
    }
    ++m_connection; // what the session's threads have said until now comes too late
    m_monitoring->leaveSession();
    if (status.isGood())
        m_log.info(tr("Disconnect succeeded."));
    else
        m_log.error(tr("Disconnecting failed with error '%1'").arg(toQString(status.toString())));
    if (m_status != QlumConnectionStatus::Disconnected)
        setStatus(QlumConnectionStatus::Disconnected);
}

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
