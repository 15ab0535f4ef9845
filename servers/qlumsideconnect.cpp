#include <servers/qlumsideconnect.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumtlsoverrules.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumconnectprogress.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumprojectnodeserver.h>
#include <servers/qlumserviceguard.h>
#include <servers/qlumtlstrap.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <mutex>
#include <utility>

// The session and its callback, which lives as long. While it is being connected it has a flow.
class QlumSideConnect::SideSession : public UaClientSdk::UaSessionCallback
{
public:
    explicit SideSession(QString url) : m_url(std::move(url)) {}
    ~SideSession() override
    {
        if (session.isConnected()) // while what it calls back lives
            static_cast<void>(session.disconnect(UaClientSdk::ServiceSettings(), true));
    }
    SideSession(const SideSession&) = delete;
    SideSession& operator=(const SideSession&) = delete;

    void setFlow(QlumConnectFlow* flow)
    {
        const std::lock_guard lock(m_mutex);
        m_flow = flow;
    }
    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus) override {}
    bool connectError(OpcUa_UInt32, UaClientSdk::UaClient::ConnectServiceType step, const UaStatus& error,
                      bool clientSideError) override
    {
        QlumConnectFlow* flow = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            flow = m_flow;
        }
        // on the flow's own thread, which it joins before it goes; a reconnect is not for the user to decide
        return flow && flow->isConnectThread() && flow->connectError(step, error, clientSideError);
    }
    bool sslCertificateValidationFailed(OpcUa_UInt32, const UaStatus& status,
                                        const UaByteString& certificate) override
    {
        if (qlumIsTlsOverruled(m_url, certificate, status.statusCode()))
            return true;
        const QByteArray bytes(reinterpret_cast<const char*>(certificate.data()), certificate.length());
        const std::lock_guard lock(m_mutex);
        if (m_flow)
            static_cast<void>(m_flow->takeTlsFailure({status.statusCode(), bytes}));
        return false;
    }

    UaClientSdk::UaSession session;

private:
    const QString m_url;
    std::mutex m_mutex;
    QlumConnectFlow* m_flow = nullptr;
};

QlumSideConnect::QlumSideConnect(const std::shared_ptr<QlumGuardedServer>& server,
                                 const QlumDiscoverySetting& setting, const QlumIdentity& identity,
                                 std::unique_ptr<QlumConnectPrompts> prompts, QlumSideSessionDone done,
                                 QObject* parent)
    : QObject(parent), m_done(std::move(done)),
      m_session(std::make_shared<SideSession>(setting.endpoint.url)), m_isShown(!prompts),
      m_prompts(prompts ? std::move(prompts) : std::make_unique<QlumConnectDialogs>()),
      m_flow(std::make_unique<QlumConnectFlow>(QlumLog(tr("Server Node"), server->serverId()),
                                               m_session->session, *m_session, *m_prompts))
{
    if (m_isShown)
        new QlumConnectProgress(*m_flow, m_flow.get());
    m_session->setFlow(m_flow.get());
    connect(m_flow.get(), &QlumConnectFlow::finished, this, &QlumSideConnect::take);
    qlumWatchSession(m_session->session, server);
    m_flow->start(setting, qlumConnectInfo(server->serverId(), setting), identity);
}

QlumSideConnect::~QlumSideConnect()
{
    m_flow->stop();
    m_session->setFlow(nullptr);
    tell(nullptr, UaStatus(OpcUa_BadRequestCancelledByClient));
}

void QlumSideConnect::take(QlumConnectFlow::Result result)
{
    m_session->setFlow(nullptr);
    deleteLater();
    if (result == QlumConnectFlow::Result::Connected)
        tell(std::shared_ptr<UaClientSdk::UaSession>(m_session, &m_session->session), UaStatus());
    else
        tell(nullptr, UaStatus(m_flow->outcome()));
}

// The last thing that is done here: who hears it may delete this.
void QlumSideConnect::tell(const std::shared_ptr<UaClientSdk::UaSession>& session, const UaStatus& status)
{
    if (const QlumSideSessionDone done = std::exchange(m_done, nullptr))
        done(session, status);
}

void qlumTakeServers(QlumToolServices& services, QObject* owner, const QlumFindServer& find,
                     const QlumMakePrompts& makePrompts)
{
    const auto nodeOf = [find](unsigned int serverId) {
        return qobject_cast<QlumProjectNodeServer*>(find(serverId));
    };
    services.takeSideSession(
        owner, [nodeOf, makePrompts](unsigned int serverId, const QlumSideEndpoint& endpoint,
                                     const QlumIdentity& identity, QlumSideSessionDone done) {
            QlumProjectNodeServer* node = nodeOf(serverId);
            if (!node)
                return done(nullptr, UaStatus(OpcUa_BadServerIndexInvalid));
            QlumDiscoverySetting setting = node->discoverySetting();
            if (!endpoint.url.isEmpty() && endpoint.url != setting.endpoint.url) {
                setting.endpoint.url = endpoint.url;
                setting.password.clear(); // it was given for the other server
            }
            qlumSetSecurity(setting.endpoint, endpoint.mode, endpoint.securityPolicy);
            // most tools close theirs before anybody wants to know a type
            setting.session.typeDictionaryMode = QStringLiteral("FirstUse");
            new QlumSideConnect(node->guarded(), setting, identity, makePrompts ? makePrompts() : nullptr,
                                std::move(done), node);
        });
    services.takeReconnectWith(
        owner, [nodeOf](unsigned int serverId, OpcUa_MessageSecurityMode mode, const QlumIdentity& identity) {
            QlumProjectNodeServer* node = nodeOf(serverId);
            return node && node->reconnectWith(mode, identity);
        });
    services.takeSessionUser(owner, [nodeOf](unsigned int serverId) {
        const QlumProjectNodeServer* const node = nodeOf(serverId);
        return node ? node->sessionUser() : QString();
    });
}
