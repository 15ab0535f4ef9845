#include <servers/qlumprojectnodeserver.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumconnectprogress.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumnamespacemap.h>
#include <servers/qlumnetworkwatch.h>
#include <servers/qlumtlstrap.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QApplication>
#include <QByteArray>
#include <QEventLoop>
#include <QIcon>
#include <QMessageBox>
#include <QMetaObject>
#include <QObject>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QVariant>

#include <memory>
#include <optional>
#include <utility>

namespace {
using UaClientSdk::ServiceSettings;
using UaClientSdk::UaClient;

unsigned int nextServerId()
{
    static unsigned int last = 0;
    return ++last;
}

QString statusName(UaClient::ServerStatus status)
{
    switch (status) {
    case UaClient::Disconnected:
        return QStringLiteral("Disconnected");
    case UaClient::Connected:
        return QStringLiteral("Connected");
    case UaClient::ConnectionWarningWatchdogTimeout:
        return QStringLiteral("ConnectionWarningWatchdogTimeout");
    case UaClient::ConnectionErrorApiReconnect:
        return QStringLiteral("ConnectionErrorApiReconnect");
    case UaClient::ServerShutdown:
        return QStringLiteral("ServerShutdown");
    case UaClient::NewSessionCreated:
        return QStringLiteral("NewSessionCreated");
    }
    return QString::number(status);
}

QIcon iconWithOverlay(const QString& overlay)
{
    const QIcon plain(QStringLiteral(":/images/serverconnect.png"));
    const QIcon over(overlay);
    QIcon icon;
    for (const int side : {16, 24, 32, 48}) {
        QPixmap pixmap = plain.pixmap(side, side);
        QPainter painter(&pixmap);
        over.paint(&painter, QRect(QPoint(0, 0), pixmap.size() / pixmap.devicePixelRatio()));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
} // namespace

QlumProjectNodeServer::QlumProjectNodeServer(const QlumDiscoverySetting& setting)
    : QlumProjectNodeServer(setting, std::make_unique<QlumConnectDialogs>())
{
    new QlumConnectProgress(*m_flow, m_flow.get());
}

QlumProjectNodeServer::QlumProjectNodeServer(const QlumDiscoverySetting& setting,
                                             std::unique_ptr<QlumConnectPrompts> prompts)
    : QlumServerNode(setting.displayName), m_serverId(nextServerId()), m_log(tr("Server Node"), m_serverId),
      m_setting(setting), m_session(std::make_shared<UaClientSdk::UaSession>()),
      m_typeCache(std::make_shared<QlumTypeCache>(
          m_serverId, [services = qlumServicesOf(m_session)](unsigned int) { return services; })),
      m_services(
          std::make_unique<QlumServicesRegistration>(m_serverId, qlumServicesOf(m_session, m_typeCache))),
      m_monitoring(std::make_unique<QlumServerMonitoring>(m_serverId, *m_session)),
      m_retrieveIcons(QlumSettings::retrieveIcons.value()), m_network(QlumNetworkWatch::shared()),
      m_prompts(std::move(prompts)), m_tlsQuestion(m_log, *m_prompts),
      m_flow(std::make_unique<QlumConnectFlow>(m_log, *m_session, *this, *m_prompts))
{
    m_tlsQuestion.setServerName(displayName());
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::newUntrustedSSLCertificate, this,
            &QlumProjectNodeServer::newUntrustedSSLCertificate);
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::trusted, this, &QlumServerNode::retryConnectServer);
    connect(m_flow.get(), &QlumConnectFlow::untrustedCertificate, this,
            &QlumProjectNodeServer::newUntrustedSSLCertificate);
    connect(m_flow.get(), &QlumConnectFlow::finished, this, &QlumProjectNodeServer::takeFlowResult);
    connect(m_network.get(), &QlumNetworkWatch::networkChanged, this,
            &QlumProjectNodeServer::sltNetworkChanged);
}

QlumProjectNodeServer::~QlumProjectNodeServer()
{
    m_closing = true;
    m_flow->stop(); // the session may still call back, and look at the flow, until it is gone
    m_services.reset();
    // A job may hold the session longer; it fails there, and nobody calls us any more.
    static_cast<void>(m_session->disconnect(UaClientSdk::ServiceSettings(), true));
    m_monitoring.reset();
}

// ---- tree node

Qt::ItemFlags QlumProjectNodeServer::flags() const
{
    return QlumServerNode::flags() | Qt::ItemIsEditable;
}

bool QlumProjectNodeServer::setData(const QVariant& value, int role)
{
    const QString name = value.toString().trimmed().left(QlumEndpointLimits::textLength);
    if (role != Qt::EditRole || name.isEmpty())
        return false;
    setDisplayName(name);
    return true;
}

QIcon QlumProjectNodeServer::icon() const
{
    switch (m_status) {
    case QlumConnectionStatus::Connecting:
        return QIcon(QStringLiteral(":/images/serverconnect_creating.png"));
    case QlumConnectionStatus::Connected:
    case QlumConnectionStatus::NewSessionCreated:
        return QIcon(QStringLiteral(":/images/serverconnect_established.png"));
    case QlumConnectionStatus::ConnectFailed:
        return iconWithOverlay(QStringLiteral(":/images/contact_busy_overlay.png"));
    case QlumConnectionStatus::ConnectionError:
        return iconWithOverlay(QStringLiteral(":/images/status_unknown_overlay.png"));
    case QlumConnectionStatus::Disconnected:
        break;
    }
    return QIcon(QStringLiteral(":/images/serverconnect.png"));
}

void QlumProjectNodeServer::setDisplayName(const QString& name)
{
    QlumServerNode::setDisplayName(name);
    m_setting.displayName = name;
    m_tlsQuestion.setServerName(name);
}

void QlumProjectNodeServer::setDiscoverySetting(const QlumDiscoverySetting& setting)
{
    m_setting = setting;
    setDisplayName(setting.displayName);
}

void QlumProjectNodeServer::storeSettings(QSettings& settings) const
{
    m_setting.storeSettings(settings);
}

// ---- types

QString QlumProjectNodeServer::typeName(const UaNodeId* typeId, bool useInverseName)
{
    return typeId ? m_typeCache->typeName(*typeId, useInverseName) : QString();
}

unsigned int QlumProjectNodeServer::readDataTypeId(const UaNodeId* nodeId, UaNodeId* dataType, int* valueRank,
                                                   UaUInt32Array* arrayDimensions, QString* typeName,
                                                   UaLocalizedText* displayName)
{
    if (!nodeId)
        return OpcUa_BadInvalidArgument;
    return m_typeCache->readDataTypeId(*nodeId, dataType, valueRank, arrayDimensions, typeName, displayName)
        .statusCode();
}

bool QlumProjectNodeServer::isEnum(const UaNodeId* dataType)
{
    return m_typeCache->isEnum(dataType);
}

UaEnumDefinition QlumProjectNodeServer::getEnumDefinition(const UaNodeId* dataType)
{
    return m_typeCache->getEnumDefinition(dataType);
}

bool QlumProjectNodeServer::hasIcon(const UaNodeId* nodeId)
{
    return m_retrieveIcons && m_typeCache->hasIcon(nodeId);
}

QIcon QlumProjectNodeServer::getIcon(const UaNodeId* nodeId)
{
    return m_retrieveIcons ? QIcon(m_typeCache->getIcon(nodeId)) : QIcon();
}

// ---- connecting

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
    m_messages.clear(); // about the connection before
    m_monitoring->useSession();
    m_flow->start(setting, qlumConnectInfo(m_serverId, setting.sessionName), identity);
    setStatus(QlumConnectionStatus::Connecting);
}

void QlumProjectNodeServer::changeUser()
{
    if (m_isBusy || m_tlsQuestion.isOpen())
        return;
    m_isBusy = true;
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
    if (const std::optional<QlumCredentials>& entered = m_flow->entered()) {
        m_setting.userName = entered->userName;
        if (m_setting.storePassword)
            m_setting.password = entered->password;
    }
    if (result == Result::GivenUp || result == Result::Refused)
        m_monitoring->leaveSession();
    else if (result == Result::Unchanged)
        m_monitoring->retryRefused(); // perhaps as another user
    if (!m_flow->newlyIgnoredHost().isEmpty() && m_setting.ignoredHost != m_flow->newlyIgnoredHost()) {
        m_setting.ignoredHost = m_flow->newlyIgnoredHost();
        if (QlumApplicationInterface* application = QlumApplicationInterface::instance())
            application->setModified(); // for the project to keep it
    }
    const bool connected = result == Result::Connected;
    QMetaObject::invokeMethod(
        this, [this, connected] { endFlow(connected); }, Qt::QueuedConnection);
    if (result == Result::GivenUp && m_status != QlumConnectionStatus::Disconnected)
        setStatus(QlumConnectionStatus::Disconnected);
    else if (result == Result::Refused) {
        if (isOwnCertificateRefused(m_flow->refusal()))
            m_messages.tellCertificateRefused(displayName(), m_flow->refusal());
        setStatus(QlumConnectionStatus::ConnectFailed);
    }
}

// By the event loop, so that nothing follows but the signal.
void QlumProjectNodeServer::endFlow(bool connected)
{
    m_isBusy = false;
    m_tlsQuestion.setHeld(false);
    emit connectEnded(connected && m_status != QlumConnectionStatus::Disconnected);
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

// ---- session callbacks

bool QlumProjectNodeServer::onOwnThread() const
{
    return QThread::currentThread() == thread();
}

void QlumProjectNodeServer::connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus serverStatus)
{
    if (m_closing)
        return;
    if (onOwnThread()) { // during connect and disconnect
        applySessionStatus(serverStatus);
        return;
    }
    queueNews([this, serverStatus] { applySessionStatus(serverStatus); });
}

void QlumProjectNodeServer::dataTypesLoaded(OpcUa_UInt32, const UaStatus& result)
{
    if (!m_closing)
        queueNews([this, result] { applyDataTypes(result); });
}

bool QlumProjectNodeServer::connectError(OpcUa_UInt32, UaClient::ConnectServiceType serviceType,
                                         const UaStatus& error, bool clientSideError)
{
    if (m_closing)
        return false;
    if (m_flow->isConnectThread())
        return m_flow->connectError(serviceType, error, clientSideError);
    // A reconnect goes on without the user: what he may override there is an error until he connects anew.
    m_log.error(tr("Error '%1' was returned during %2")
                    .arg(toQString(error.toString()), qlumConnectStepName(serviceType)));
    queueNews([this, code = UaStatusCode(error.statusCode()), serviceType, clientSideError] {
        showReconnectError(code, serviceType, clientSideError);
    });
    return false;
}

bool QlumProjectNodeServer::isOwnCertificateRefused(const UaStatusCode& status) const
{
    return m_setting.endpoint.securityPolicyUri != qlumPolicyNone() &&
           QlumCertificateRefusedDialog::isRefusal(status);
}

void QlumProjectNodeServer::showReconnectError(const UaStatusCode& status,
                                               UaClient::ConnectServiceType serviceType, bool clientSideError)
{
    if (clientSideError)
        m_messages.tellReconnectError(displayName(),
                                      {qlumStatusText(status.code()), qlumConnectStepName(serviceType), {}});
    else if (isOwnCertificateRefused(status))
        m_messages.tellCertificateRefused(displayName(), status);
}

bool QlumProjectNodeServer::sslCertificateValidationFailed(OpcUa_UInt32, const UaStatus& status,
                                                           const UaByteString& certificate)
{
    if (m_tlsQuestion.isOverruled(status, certificate))
        return true;
    const QlumTlsFailure failure{
        status.statusCode(),
        QByteArray(reinterpret_cast<const char*>(certificate.data()), certificate.length())};
    if (!m_closing && !m_flow->takeTlsFailure(failure))
        m_tlsQuestion.raise(failure);
    return false; // the user decides in his own time, and another attempt follows
}

// From a thread of the session to ours.
template <typename News>
void QlumProjectNodeServer::queueNews(News&& news)
{
    const unsigned int connection = m_connection;
    QMetaObject::invokeMethod(
        this,
        [this, connection, news = std::forward<News>(news)] {
            if (connection == m_connection) // not of a connection that was ended meanwhile
                news();
        },
        Qt::QueuedConnection);
}

// ---- status

void QlumProjectNodeServer::applyDataTypes(const UaStatus& result)
{
    if (!result.isGood()) { // what was known before is still as good as it was
        m_log.write(QlumLogLevel::Warning, tr("Loading the data types of server '%1' failed with error '%2'")
                                               .arg(displayName(), toQString(result.toString())));
        return;
    }
    m_log.info(tr("Data types of server '%1' loaded").arg(displayName()));
    m_typeCache->clearDefinitions();
    emit QlumServerNode::dataTypesLoaded(m_serverId);
}

void QlumProjectNodeServer::applySessionStatus(UaClient::ServerStatus serverStatus)
{
    m_log.write(
        QlumLogLevel::Warning,
        tr("Connection status of server '%1' changed to '%2'.").arg(displayName(), statusName(serverStatus)));
    NamespaceMap namespaceMap;
    QlumConnectionStatus status = QlumConnectionStatus::ConnectionError;
    switch (serverStatus) {
    case UaClient::Disconnected:
        status = QlumConnectionStatus::Disconnected;
        break;
    case UaClient::Connected:
        status = QlumConnectionStatus::Connected;
        namespaceMap = updateNamespaces();
        break;
    case UaClient::NewSessionCreated:
        status = QlumConnectionStatus::NewSessionCreated;
        m_typeCache->clear(); // ids and definitions may be others now
        break;
    case UaClient::ConnectionWarningWatchdogTimeout:
    case UaClient::ConnectionErrorApiReconnect:
    case UaClient::ServerShutdown:
        break;
    }
    m_monitoring->statusChanged(serverStatus, namespaceMap);
    if (status != m_status)
        setStatus(status, namespaceMap);
}

void QlumProjectNodeServer::setStatus(QlumConnectionStatus status, const NamespaceMap& namespaceMap)
{
    m_status = status;
    emit serverNodeChanged(this, nullptr, m_status, m_serverId, namespaceMap);
}

NamespaceMap QlumProjectNodeServer::updateNamespaces()
{
    const UaStringArray table = m_session->getNamespaceTable();
    QStringList uris;
    for (const OpcUa_String& uri : table)
        uris.append(toQString(UaString(uri)).left(QlumEndpointLimits::textLength));
    if (uris.isEmpty() || uris == m_namespaces)
        return {};
    const NamespaceMap namespaceMap = qlumNamespaceMap(m_namespaces, uris);
    m_log.info(tr("Namespace table changed, mapping old to new namespace indices"));
    m_namespaces = uris;
    return namespaceMap;
}
