#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumsessionservices.h>
#include <servers/qlumdiscoverysetting.h>
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
#include <QDialog>
#include <QIcon>
#include <QPointer>
#include <QSemaphore>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <memory>

class QlumEndpointFetcher;
class QlumNetworkWatch;

/// The project node of one server: owns its session and type cache, connects it with what the user
/// configured, and announces the state of the connection. GUI thread, but for the session callbacks.
class QlumProjectNodeServer : public QlumServerNode, public UaClientSdk::UaSessionCallback
{
    Q_OBJECT
public:
    explicit QlumProjectNodeServer(const QlumDiscoverySetting& setting);
    ~QlumProjectNodeServer() override;

    [[nodiscard]] const QlumDiscoverySetting& discoverySetting() const { return m_setting; }
    /// Takes effect with the next connect; the display name at once.
    void setDiscoverySetting(const QlumDiscoverySetting& setting);

    [[nodiscard]] Qt::ItemFlags flags() const override;
    bool setData(const QVariant& value, int role) override;
    [[nodiscard]] QIcon icon() const override;
    void setDisplayName(const QString& name) override;

    [[nodiscard]] unsigned int serverId() const override { return m_serverId; }
    [[nodiscard]] QlumConnectionStatus connectionStatus() const override { return m_status; }
    [[nodiscard]] UaClientSdk::UaSession* session() const override { return m_session.get(); }
    /// While a lost connection is waited for it makes the next attempt to restore it at once, and answers
    /// false.
    bool connectServer() override;
    void disconnectServer() override;
    void changeUser() override;
    void storeSettings(QSettings& settings) const override;
    [[nodiscard]] QStringList namespaceTable() const override { return m_namespaces; }
    void setNamespaceTable(const QStringList& uris) override { m_namespaces = uris; }

    /// The flag asks for the inverse name of a reference type.
    QString typeName(const UaNodeId* typeId, bool useInverseName) override;
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

private slots:
    void sltUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);
    void sltCertificateRefused(unsigned int status, const QByteArray& certificate);
    void sltNetworkChanged();

private:
    struct Attempt; ///< what one connect has found out so far

    /// The steps of a connect; each but the first and last answers false when the connect ends there. After
    /// any of them this node may be gone: some run nested event loops.
    bool runConnect();
    bool fetchEndpoints(Attempt& attempt);
    bool chooseEndpoint(Attempt& attempt);
    bool acceptNoEndpoint();
    bool userIdentity(Attempt& attempt);
    bool userNameIdentity(Attempt& attempt);
    bool askForPassword(Attempt& attempt);
    bool certificateIdentity(Attempt& attempt);
    bool allowSecurityPolicy();
    void fillSecurity(Attempt& attempt);
    [[nodiscard]] bool needsServerCertificate(const Attempt& attempt) const;
    bool checkServerCertificate(Attempt& attempt);
    bool connectSession(Attempt& attempt);
    [[nodiscard]] UaClientSdk::SessionConnectInfo connectInfo() const;
    /// False when the session will not try by itself.
    [[nodiscard]] bool reconnectNow();

    [[nodiscard]] bool isOwnCertificateRefused(const UaStatusCode& status) const;
    void showOwnCertificateRefused(const UaStatusCode& status);
    void showReconnectError(const UaStatusCode& status, UaClientSdk::UaClient::ConnectServiceType serviceType,
                            bool clientSideError);
    void showMessage(QDialog* dialog);

    void setStatus(QlumConnectionStatus status, const NamespaceMap& namespaceMap = NamespaceMap());
    void applySessionStatus(UaClientSdk::UaClient::ServerStatus serverStatus);
    void applyDataTypes(const UaStatus& result);
    template <typename News>
    void queueNews(News&& news);
    NamespaceMap updateNamespaces();
    [[nodiscard]] bool onOwnThread() const;
    [[nodiscard]] QVariant setting(const char* key) const;

    const unsigned int m_serverId;
    const QlumLog m_log;
    QlumDiscoverySetting m_setting;
    const std::shared_ptr<UaClientSdk::UaSession> m_session;
    const std::shared_ptr<QlumTypeCache> m_typeCache;
    std::unique_ptr<QlumServicesRegistration> m_services;
    QStringList m_namespaces;
    QSemaphore m_tlsPrompt{1};           ///< one prompt at a time
    UaStatusCode m_refusal;              ///< with which the server has ended the latest connect
    QString m_weakPolicyAllowedFor;      ///< URI; the user's word holds until the program ends
    bool m_clearPasswordAllowed = false; ///< for the stored password
    QPointer<QDialog> m_messageBox;      ///< one at a time
    QByteArray m_refusedTlsCertificate;  ///< of a connect under way
    unsigned int m_refusedTlsStatus = 0;
    bool m_retrieveIcons;
    bool m_busy = false; ///< a connect or change of user is under way, maybe in a nested event loop
    QlumConnectionStatus m_status = QlumConnectionStatus::Disconnected;
    const std::shared_ptr<QlumNetworkWatch> m_network;
    QlumEndpointFetcher* m_fetcher; ///< a cancelled question ends in the background
    std::atomic<bool> m_closing{false};
    std::atomic<unsigned int> m_connection{0}; ///< counts connects and disconnects; older news are dropped
};
