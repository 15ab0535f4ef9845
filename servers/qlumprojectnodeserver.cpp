#include <servers/qlumprojectnodeserver.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/doctor/qlumdoctordialog.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumconnectprogress.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumnamespacemap.h>
#include <servers/qlumnetworkwatch.h>
#include <servers/qlumserviceguard.h>
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
#include <QDateTime>
#include <QEventLoop>
#include <QIcon>
#include <QLocale>
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
#include <QTime>
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
    connect(static_cast<QlumConnectDialogs*>(m_prompts.get()), &QlumConnectDialogs::diagnoseWanted, this,
            [this] { qlumDiagnose(*this, QlumConnectDialogs::parentWindow()); });
}

QlumProjectNodeServer::QlumProjectNodeServer(const QlumDiscoverySetting& setting,
                                             std::unique_ptr<QlumConnectPrompts> prompts)
    : QlumServerNode(setting.displayName), m_serverId(nextServerId()), m_log(tr("Server Node"), m_serverId),
      m_setting(setting), m_guarded(std::make_shared<QlumGuardedServer>(m_serverId, setting.role)),
      m_session(std::make_shared<UaClientSdk::UaSession>()),
      m_typeCache(std::make_shared<QlumTypeCache>(
          m_serverId, [services = qlumServicesOf(m_session)](unsigned int) { return services; })),
      m_services(
          std::make_unique<QlumServicesRegistration>(m_serverId, qlumServicesOf(m_session, m_typeCache))),
      m_monitoring(std::make_unique<QlumServerMonitoring>(m_serverId, *m_session)),
      m_modelEvents(std::make_unique<QlumModelEvents>(m_serverId, *m_session)),
      m_icons(m_serverId, m_typeCache, QlumSettings::retrieveIcons.value()),
      m_network(QlumNetworkWatch::shared()), m_prompts(std::move(prompts)), m_tlsQuestion(m_log, *m_prompts),
      m_flow(std::make_unique<QlumConnectFlow>(m_log, *m_session, *this, *m_prompts))
{
    m_roleTimer.setSingleShot(true);
    connect(&m_roleTimer, &QTimer::timeout, this,
            [this] { setRole(m_roleAfterwards.value_or(QlumServerRole::Look)); });
    m_guarded->setName(displayName());
    m_sessionUser = qlumWatchSession(*m_session, m_guarded);
    m_tlsQuestion.setServerName(displayName());
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::newUntrustedSSLCertificate, this,
            &QlumProjectNodeServer::newUntrustedSSLCertificate);
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::trusted, this, &QlumServerNode::retryConnectServer);
    connect(m_flow.get(), &QlumConnectFlow::untrustedCertificate, this,
            &QlumProjectNodeServer::newUntrustedSSLCertificate);
    connect(m_flow.get(), &QlumConnectFlow::finished, this, &QlumProjectNodeServer::takeFlowResult);
    connect(m_modelEvents.get(), &QlumModelEvents::modelChanged, this,
            [this](const UaNodeId& changed, OpcUa_Byte verbs) {
                emit serverModelChanged(m_serverId, changed, verbs);
            });
    connect(&m_icons, &QlumIconLoader::loaded, this, &QlumServerNode::iconsLoaded);
    connect(&m_certificateWatch, &QlumCertificateWatch::changed, this,
            &QlumProjectNodeServer::sltCertificateChanged);
    connect(m_network.get(), &QlumNetworkWatch::networkChanged, this,
            &QlumProjectNodeServer::sltNetworkChanged);
}

QlumProjectNodeServer::~QlumProjectNodeServer()
{
    m_closing = true;
    m_flow->stop(); // the session may still call back, and look at the flow, until it is gone
    m_services.reset();
    // A job may hold the session longer; it fails there, and nobody calls us any more.
    if (m_session->isConnected())
        static_cast<void>(m_session->disconnect(UaClientSdk::ServiceSettings(), true));
    m_modelEvents.reset();
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

QString QlumProjectNodeServer::toolTip() const
{
    QString text = displayName() + QLatin1Char('\n') + m_setting.endpoint.url;
    text += QLatin1Char('\n') + tr("%1: %2").arg(qlumRoleName(role()), qlumRoleExplanation(role()));
    if (m_roleAfterwards)
        text += QLatin1Char(' ') +
                tr("%1 again at %2.")
                    .arg(qlumRoleName(*m_roleAfterwards),
                         qlumShowMinute(QDateTime::currentDateTime().addMSecs(m_roleTimer.remainingTime())));
    if (!m_setting.dialledHost.isEmpty())
        text += QLatin1Char('\n') + dialledText();
    if (!m_reason.isEmpty())
        text += QLatin1Char('\n') + m_reason;
    return text;
}

QString QlumProjectNodeServer::dialledText() const
{
    const QString& named = m_setting.ignoredHost;
    return named.isEmpty()
               ? tr("Dialled at %1, which is not the host that the server names.").arg(m_setting.dialledHost)
               : tr("Dialled at %1. The server names the host '%2', which cannot be found from here.")
                     .arg(m_setting.dialledHost, qlumCutText(named));
}

void QlumProjectNodeServer::applySettings()
{
    m_icons.setWanted(QlumSettings::retrieveIcons.value());
    m_modelEvents->applySetting();
}

void QlumProjectNodeServer::setDisplayName(const QString& name)
{
    QlumServerNode::setDisplayName(name);
    m_setting.displayName = name;
    m_guarded->setName(name);
    m_tlsQuestion.setServerName(name);
}

void QlumProjectNodeServer::setRole(QlumServerRole role)
{
    m_roleTimer.stop();
    m_roleAfterwards.reset();
    applyRole(role);
}

void QlumProjectNodeServer::setRoleFor(QlumServerRole role, int milliseconds)
{
    m_roleAfterwards = m_roleAfterwards.value_or(m_setting.role);
    m_roleTimer.start(milliseconds);
    applyRole(role);
}

void QlumProjectNodeServer::applyRole(QlumServerRole role)
{
    m_guarded->setRole(role);
    if (std::exchange(m_setting.role, role) != role)
        m_log.info(tr("Server '%1' is set to %2 now.").arg(displayName(), qlumRoleName(role)));
    emit roleChanged(); // or the time that it holds for
}

void QlumProjectNodeServer::setDiscoverySetting(const QlumDiscoverySetting& setting)
{
    if (setting.role != m_setting.role)
        setRole(setting.role);
    const QlumDiscoverySetting before = std::exchange(m_setting, setting);
    m_setting.forgetWhatBelongsTo(before);
    if (!m_setting.isSameLogIn(before) || !m_setting.storePassword) {
        const QlumSecretText entered = m_setting.password; // for the settings of now
        forgetPassword(before);
        m_setting.password = entered;
    }
    setDisplayName(setting.displayName);
}

void QlumProjectNodeServer::storeSettings(QSettings& settings) const
{
    QlumDiscoverySetting kept = m_setting;
    kept.role = m_roleAfterwards.value_or(m_setting.role);
    kept.storeSettings(settings);
}

// ---- types

QString QlumProjectNodeServer::typeName(const UaNodeId* typeId, bool withNamespace)
{
    const QString name = typeId ? m_typeCache->typeName(*typeId) : QString();
    return withNamespace && !name.isEmpty() && typeId->namespaceIndex() != 0
               ? QStringLiteral("%1:%2").arg(QString::number(typeId->namespaceIndex()), name)
               : name;
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
    return !getIcon(nodeId).isNull();
}

QIcon QlumProjectNodeServer::getIcon(const UaNodeId* nodeId)
{
    return nodeId && qlumIsConnected(m_status) ? m_icons.icon(*nodeId) : QIcon();
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
    m_monitoring->noteLink(serverStatus);
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
    if (serviceType == UaClient::ActivateSession && qlumIsLoginRefused(status)) {
        forgetPassword(m_setting); // the server has another one now
        m_failure = qlumConnectFailure(status);
        m_reason = m_failure->reason;
        m_isUserChange = false;
        if (!m_isBusy && !m_isTelling && !m_tlsQuestion.isOpen())
            tellFailure();
    } else if (serviceType == UaClient::OpenSecureChannel &&
               m_status == QlumConnectionStatus::ConnectionError) {
        QlumEndpoint endpoint = m_flow->endpoint();
        endpoint.serverCertificate = m_flow->usedCertificate();
        m_certificateWatch.channelFailed(status, endpoint);
    }
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
        m_reason.clear();
        namespaceMap = updateNamespaces();
        break;
    case UaClient::NewSessionCreated:
        status = QlumConnectionStatus::NewSessionCreated;
        m_typeCache->clear(); // ids and definitions may be others now
        m_icons.clear();
        break;
    case UaClient::ConnectionWarningWatchdogTimeout:
    case UaClient::ConnectionErrorApiReconnect:
    case UaClient::ServerShutdown:
        m_reason = tr("The connection is lost.");
        break;
    }
    m_monitoring->statusChanged(serverStatus, namespaceMap);
    if (serverStatus == UaClient::NewSessionCreated)
        m_modelEvents->sessionReplaced();
    else if (serverStatus == UaClient::Connected)
        m_modelEvents->connected();
    if (status != m_status)
        setStatus(status, namespaceMap);
}

void QlumProjectNodeServer::setStatus(QlumConnectionStatus status, const NamespaceMap& namespaceMap)
{
    m_status = status;
    if (status == QlumConnectionStatus::Disconnected || status == QlumConnectionStatus::ConnectFailed)
        m_modelEvents->disconnected();
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
