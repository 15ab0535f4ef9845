#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <servers/qlumcertificatewatch.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumiconloader.h>
#include <servers/qlummodelevents.h>
#include <servers/qlumservermessages.h>
#include <servers/qlumservermonitoring.h>
#include <servers/qlumtlstrustquestion.h>
#include <servers/qlumtypecache.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QByteArray>
#include <QIcon>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <atomic>
#include <memory>
#include <optional>

class QlumGuardedServer;
class QlumSessionUser;
class QlumNetworkWatch;

/// The project node of one server: owns its session and type cache, connects it with what the user
/// configured, and announces the state of the connection. GUI thread, but for the session callbacks.
class QlumProjectNodeServer : public QlumServerNode, public UaClientSdk::UaSessionCallback
{
    Q_OBJECT
public:
    /// Asks the user in dialogs.
    explicit QlumProjectNodeServer(const QlumDiscoverySetting& setting);
    QlumProjectNodeServer(const QlumDiscoverySetting& setting, std::unique_ptr<QlumConnectPrompts> prompts);
    ~QlumProjectNodeServer() override;

    [[nodiscard]] const QlumDiscoverySetting& discoverySetting() const { return m_setting; }
    /// Takes effect with the next connect; the display name at once.
    void setDiscoverySetting(const QlumDiscoverySetting& setting);

    [[nodiscard]] Qt::ItemFlags flags() const override;
    bool setData(const QVariant& value, int role) override;
    [[nodiscard]] QIcon icon() const override;
    /// Name, URL, and why it is not connected.
    [[nodiscard]] QString toolTip() const override;
    void applySettings() override;
    void setDisplayName(const QString& name) override;

    [[nodiscard]] unsigned int serverId() const override { return m_serverId; }
    [[nodiscard]] QlumConnectionStatus connectionStatus() const override { return m_status; }
    [[nodiscard]] UaClientSdk::UaSession* session() const override { return m_session.get(); }
    [[nodiscard]] QlumServerRole role() const override { return m_setting.role; }
    void setRole(QlumServerRole role) override;
    void setRoleFor(QlumServerRole role, int milliseconds) override;
    /// What guards every session with this server has to look at.
    [[nodiscard]] const std::shared_ptr<QlumGuardedServer>& guarded() const { return m_guarded; }
    /// As whom the session is logged in; empty for an anonymous one, and before there was one.
    [[nodiscard]] QString sessionUser() const;
    /// startConnect(), and a nested event loop until it has ended.
    bool connectServer() override;
    /// While a lost connection is waited for it makes the next attempt to restore it at once, and answers
    /// false.
    bool startConnect() override;
    bool startConnectByUser() override;
    /// Connects anew with another security mode (0: the same) and user (null: as the settings say), which
    /// the settings do not keep. False while a connect or a change of the user is under way.
    [[nodiscard]] bool reconnectWith(OpcUa_MessageSecurityMode mode, const QlumIdentity& identity);
    void disconnectServer() override;
    /// Begins it, and does not wait for what it comes to.
    void changeUser() override;
    /// Whether a connect or a change of the user is under way.
    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    /// The steps of connects, for those who want to follow or cancel them.
    [[nodiscard]] QlumConnectFlow& connectFlow() { return *m_flow; }
    void storeSettings(QSettings& settings) const override;
    void forgetSecrets() override;
    [[nodiscard]] QStringList namespaceTable() const override { return m_namespaces; }
    void setNamespaceTable(const QStringList& uris) override { m_namespaces = uris; }

    QString typeName(const UaNodeId* typeId, bool withNamespace) override;
    unsigned int readDataTypeId(const UaNodeId* nodeId, UaNodeId* dataType, int* valueRank,
                                UaUInt32Array* arrayDimensions, QString* typeName,
                                UaLocalizedText* displayName) override;
    bool isEnum(const UaNodeId* dataType) override;
    UaEnumDefinition getEnumDefinition(const UaNodeId* dataType) override;
    bool hasIcon(const UaNodeId* nodeId) override;
    QIcon getIcon(const UaNodeId* nodeId) override;

    /// UaSessionCallback; called on threads of the session.
    void connectionStatusChanged(OpcUa_UInt32 clientConnectionId,
                                 UaClientSdk::UaClient::ServerStatus serverStatus) override;
    bool connectError(OpcUa_UInt32 clientConnectionId, UaClientSdk::UaClient::ConnectServiceType serviceType,
                      const UaStatus& error, bool clientSideError) override;
    bool sslCertificateValidationFailed(OpcUa_UInt32 clientConnectionId, const UaStatus& status,
                                        const UaByteString& certificate) override;
    void dataTypesLoaded(OpcUa_UInt32 clientConnectionId, const UaStatus& result) override;

signals:
    /// From the stack's thread to ours.
    void newUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);

private:
    void begin(const QlumDiscoverySetting& setting, const QlumIdentity& identity);
    void beginConnect(const QlumDiscoverySetting& setting, const QlumIdentity& identity);
    void takeFlowResult(QlumConnectFlow::Result result);
    void takeEntered(bool isUserChange);
    void takeTrust();
    void forgetPassword(const QlumDiscoverySetting& setting);
    static void keepInProject();
    [[nodiscard]] QString dialledText() const;
    void endFlow(bool connected);
    void tellFailure();
    void stopTelling();
    void sltCertificateChanged();
    /// False when the session will not try by itself.
    [[nodiscard]] bool reconnectNow();
    void sltNetworkChanged();
    [[nodiscard]] bool isOwnCertificateRefused(const UaStatusCode& status) const;
    void showReconnectError(const UaStatusCode& status, UaClientSdk::UaClient::ConnectServiceType serviceType,
                            bool clientSideError);

    void applyRole(QlumServerRole role);
    void setStatus(QlumConnectionStatus status, const NamespaceMap& namespaceMap = NamespaceMap());
    void applySessionStatus(UaClientSdk::UaClient::ServerStatus serverStatus);
    void applyDataTypes(const UaStatus& result);
    template <typename News>
    void queueNews(News&& news);
    NamespaceMap updateNamespaces();
    [[nodiscard]] bool onOwnThread() const;

    const unsigned int m_serverId;
    const QlumLog m_log;
    QlumDiscoverySetting m_setting;
    const std::shared_ptr<QlumGuardedServer> m_guarded;
    std::optional<QlumServerRole> m_roleAfterwards; ///< while another one holds for a time
    QTimer m_roleTimer;
    const std::shared_ptr<UaClientSdk::UaSession> m_session;
    std::shared_ptr<const QlumSessionUser> m_sessionUser;
    const std::shared_ptr<QlumTypeCache> m_typeCache;
    std::unique_ptr<QlumServicesRegistration> m_services;
    std::unique_ptr<QlumServerMonitoring> m_monitoring;
    std::unique_ptr<QlumModelEvents> m_modelEvents;
    QStringList m_namespaces;
    QlumIconLoader m_icons;
    bool m_isBusy = false;
    bool m_isUsers = false;      ///< the work under way was commanded by the user, who is told how it ends
    bool m_isUserChange = false; ///< what has ended last, rather than a connect
    bool m_isTelling = false;
    QString m_reason; ///< for the present state
    std::optional<QlumConnectFailure> m_failure;
    QlumConnectionStatus m_status = QlumConnectionStatus::Disconnected;
    const std::shared_ptr<QlumNetworkWatch> m_network;
    std::atomic<bool> m_closing{false};
    std::atomic<unsigned int> m_connection{0}; ///< counts connects and disconnects; older news are dropped
    const std::unique_ptr<QlumConnectPrompts> m_prompts;
    QlumServerMessages m_messages;
    QlumTlsTrustQuestion m_tlsQuestion;
    QlumCertificateWatch m_certificateWatch;
    std::unique_ptr<QlumConnectFlow> m_flow;
};
