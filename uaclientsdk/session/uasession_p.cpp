#include <uaclientsdk/session/uasession_p.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/connection/activatorturn.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <chrono>
#include <exception>
#include <utility>

namespace UaClientSdk {

namespace {

UaStringArray joinLocaleIds(const SessionConnectInfo& info)
{
    UaStringArray result;
    // a locale that there is no memory for is not asked for
    static_cast<void>(result.append(*info.localeId.get()));
    static_cast<void>(result.append(info.additionalLocaleIds.length(), info.additionalLocaleIds.rawData()));
    return result;
}

ServiceSettings settingsWith(const SessionContext& context, OpcUa_UInt32 SessionConnectInfo::*timeout)
{
    ServiceSettings settings;
    SessionLock lock(context.mutex);
    settings.callTimeout = context.connectInfo.*timeout;
    return settings;
}

} // namespace

UaSessionPrivate::UaSessionPrivate(UaSession& session)
    : definitions(session), subscriptions(context), m_session(session), m_connector(context),
      m_activator(context), m_limitsReader(session, context),
      m_dictionaryJob(context, [this] { loadInBackground(); })
{
}

UaSessionPrivate::~UaSessionPrivate()
{
    m_connector.disconnectChannel(); // so that no answer is on its way any more
    endThreads();
    subscriptions.clear();
    subscriptions.waitIdle();
}

bool UaSessionPrivate::apply(ConnectionState::Event event)
{
    SessionLock lock(context.mutex);
    return context.connection.apply(event);
}

bool UaSessionPrivate::isRequested() const
{
    SessionLock lock(context.mutex);
    return context.connection.isRequested();
}

// ---- connect

// Lets one connect in at a time; a callback of it cannot begin another.
class UaSessionPrivate::ConnectGuard
{
public:
    explicit ConnectGuard(UaSessionPrivate& session) : m_session(session)
    {
        SessionLock lock(m_session.context.mutex);
        m_mine = !m_session.m_inTransition &&
                 m_session.context.connection.apply(ConnectionState::Event::ConnectCalled);
        m_session.m_inTransition = m_session.m_inTransition || m_mine;
    }
    ~ConnectGuard()
    {
        if (!m_mine)
            return;
        SessionLock lock(m_session.context.mutex);
        // a connect that ended in any other way than it should has failed
        m_session.context.connection.apply(ConnectionState::Event::ConnectFailed);
        m_session.m_inTransition = false;
        m_session.m_transitionEnded.notify_all();
    }
    ConnectGuard(const ConnectGuard&) = delete;
    ConnectGuard& operator=(const ConnectGuard&) = delete;

    [[nodiscard]] bool isMine() const { return m_mine; }

private:
    UaSessionPrivate& m_session;
    bool m_mine = false;
};

UaStatus UaSessionPrivate::connect(const UaString& url, const SessionConnectInfo& connectInfo,
                                   const SessionSecurityInfo& securityInfo, UaSessionCallback* callback)
{
    const ConnectGuard guard(*this);
    if (!guard.isMine()) {
        UaTrace::tError("<-- UaSession::connect [ret=OpcUa_BadInternalError] - Server already connected");
        return UaStatus(OpcUa_BadInternalError);
    }
    return connectGuarded(url, connectInfo, securityInfo, callback);
}

UaStatus UaSessionPrivate::connectGuarded(const UaString& url, const SessionConnectInfo& connectInfo,
                                          const SessionSecurityInfo& securityInfo,
                                          UaSessionCallback* callback)
{
    {
        SessionLock lock(context.mutex);
        context.callback = callback; // the check of the certificate asks it already
        context.connectInfo = connectInfo;
    }
    SessionSecurityInfo security = securityInfo;
    const UaStatus certificate = checkServerCertificate(security);
    if (certificate.isBad())
        return certificate;
    takeOver(url, connectInfo, security, callback);
    const UaStatus opened = openSession();
    if (opened.isGood())
        return startWatching(UaClient::Connected);
    m_connector.disconnectChannel();
    // a user who was refused once is not tried again and again
    const bool tryAgain = connectInfo.retryInitialConnect && !m_activator.refusesUser(opened) &&
                          apply(ConnectionState::Event::ConnectPostponed);
    return tryAgain ? startWatching(UaClient::ConnectionErrorApiReconnect) : opened;
}

UaStatus UaSessionPrivate::startWatching(UaClient::ServerStatus status)
{
    const bool good = status == UaClient::Connected;
    if (good)
        afterConnect();
    if (isRequested())
        context.notifyStatus(status);
    SessionHousekeeping& housekeeping = *this;
    m_monitor = std::make_unique<ConnectionMonitor>(context, m_connector, m_activator, housekeeping);
    const bool wanted = isRequested();
    if (wanted && !start()) {
        UaTrace::tError("Error: UaSession::connect - cannot start the session thread");
        giveUpConnect();
        return UaStatus(OpcUa_BadResourceUnavailable);
    }
    if (!wanted || !isRequested())
        return UaStatus(OpcUa_BadConnectionClosed); // another thread has disconnected, and waits for us
    return good ? UaStatus() : UaStatus(OpcUa_GoodCompletesAsynchronously);
}

// Without a thread nobody would watch what the application believes to be connected.
void UaSessionPrivate::giveUpConnect()
{
    if (!apply(ConnectionState::Event::DisconnectCalled))
        return;
    static_cast<void>(
        m_activator.closeSession(settingsWith(context, &SessionConnectInfo::connectTimeout), true));
    m_connector.disconnectChannel();
    m_dictionaryJob.wait();
    apply(ConnectionState::Event::Disconnected);
    context.notifyStatus(UaClient::Disconnected);
}

UaStatus UaSessionPrivate::changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity)
{
    if (!identity)
        return UaStatus(OpcUa_BadInvalidArgument);
    return m_activator.changeUser(settings, identity->clone());
}

UaStatus UaSessionPrivate::checkServerCertificate(SessionSecurityInfo& security)
{
    const bool secured = security.isSecured();
    if (!secured && security.verifyServerCertificateOnConnect)
        security.serverCertificate.clear(); // the connect does not depend on it, so nobody judges it
    if (security.serverCertificate.isEmpty())
        return UaStatus();
    UaStatus verified;
    if (secured && security.verifyServerCertificateOnConnect) {
        context.mutex.assertUnlocked();
        verified = security.verifyServerCertificate(&m_session); // with the issuers that the server sent
    }
    UaByteStringArray chain;
    const UaStatus split = SessionSecurityInfo::splitCertificateChain(security.serverCertificate, chain);
    if (split.isBad())
        UaTrace::tError("Split server certificate chain failed with error '%s'", split.toString().toUtf8());
    if (split.isGood())
        security.serverCertificate = UaByteString(chain[0]);
    else if (!secured)
        security.serverCertificate.clear(); // nobody can have judged it
    if (verified.isBad())
        UaTrace::tError("Server certificate validation failed with error '%s'", verified.toString().toUtf8());
    return verified;
}

void UaSessionPrivate::takeOver(const UaString& url, const SessionConnectInfo& connectInfo,
                                const SessionSecurityInfo& securityInfo, UaSessionCallback* callback)
{
    OpcUa_ProxyStubConfiguration limits{};
    OpcUa_ProxyStub_GetConfiguration(&limits);
    SessionLock lock(context.mutex);
    const bool isOther = context.url != url;
    context.url = url;
    context.connectInfo = connectInfo;
    OpcUa_UInt32& operations = context.connectInfo.maxOperationsPerServiceCall;
    if (operations == 0 || operations > limits.MaxArrayLength)
        operations = limits.MaxArrayLength;
    context.securityInfo = securityInfo;
    context.localeIds = joinLocaleIds(connectInfo);
    context.callback = callback;
    context.connection.setServerSession(ConnectionState::ServerSession::Unknown);
    context.errorOverrides.forget();
    context.namespaceTable.clear();
    context.blockLimits.forget();
    context.revisedSessionTimeout = 0.0;
    lock.unlock();
    if (isOther)
        definitions.clear();
}

UaStatus UaSessionPrivate::openSession()
{
    const ConnectionEpoch epoch = context.epoch();
    UaStatus status = m_connector.connectChannel();
    if (status.isBad())
        return status;
    {
        const ActivatorTurn turn(context); // whoever changes the user finds him set or the session active
        status = m_activator.createSession();
        if (status.isGood())
            status = m_activator.activateSession();
        SessionLock lock(context.mutex);
        if (status.isGood() && (context.connection.epoch().link != epoch.link ||
                                !context.connection.apply(ConnectionState::Event::SessionReady)))
            status = UaStatus(OpcUa_BadConnectionClosed);
    }
    if (status.isBad())
        static_cast<void>(
            m_activator.closeSession(settingsWith(context, &SessionConnectInfo::connectTimeout), true));
    return status;
}

// ---- tables and definitions

// The session works without its tables and definitions, too.
void UaSessionPrivate::afterConnect()
{
    static_cast<void>(updateNamespaceTable());
    m_limitsReader.update();
    const UaClient::TypeDictionaryMode mode = dictionaryMode();
    if (mode == UaClient::Connect || mode == UaClient::Reconnect)
        m_dictionaryJob.start();
}

void UaSessionPrivate::afterReconnect()
{
    static_cast<void>(updateNamespaceTable());
    m_limitsReader.update();
    const UaClient::TypeDictionaryMode mode = dictionaryMode();
    if (mode == UaClient::Reconnect || (mode != UaClient::Manual && definitions.hasFailed()))
        m_dictionaryJob.start();
}

UaClient::TypeDictionaryMode UaSessionPrivate::dictionaryMode() const
{
    SessionLock lock(context.mutex);
    return context.connectInfo.typeDictionaryMode;
}

void UaSessionPrivate::loadInBackground()
{
    const UaStatus result = loadDefinitions();
    if (isRequested())
        context.notifyDataTypesLoaded(result);
}

void UaSessionPrivate::loadDefinitionsOnFirstUse()
{
    if (m_dictionaryJob.isRunning())
        return; // the application will hear of its end, and need not be held up by it
    bool mayLoad = false;
    OpcUa_UInt32 link = 0;
    {
        SessionLock lock(context.mutex);
        mayLoad = context.connectInfo.typeDictionaryMode != UaClient::Manual &&
                  context.connection.mayCall(CallKind::Service);
        link = context.connection.epoch().link;
    }
    if (mayLoad && definitions.needsLoad(link))
        static_cast<void>(loadDefinitions());
}

UaStatus UaSessionPrivate::loadDefinitions()
{
    return definitions.load(settingsWith(context, &SessionConnectInfo::internalServiceCallTimeout),
                            context.epoch().link);
}

UaStatus UaSessionPrivate::updateNamespaceTable()
{
    ServiceSettings settings = settingsWith(context, &SessionConnectInfo::internalServiceCallTimeout);
    UaReadValueIds nodes(1u);
    nodes[0].NodeId.Identifier.Numeric = OpcUaId_Server_NamespaceArray;
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    UaDiagnosticInfos diagnostics;
    UaStatus status =
        m_session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics);
    if (status.isGood())
        status = UaStatus(values[0].StatusCode);
    UaStringArray table;
    if (status.isGood() && !UaVariant(values[0].Value).toStringArray(table))
        status = UaStatus(OpcUa_BadTypeMismatch);
    if (status.isBad()) {
        UaTrace::tError("Error: UaSession - reading the namespace table failed [status=0x%x]",
                        status.statusCode());
        return status;
    }
    SessionLock lock(context.mutex);
    context.namespaceTable = std::move(table);
    return status;
}

void UaSessionPrivate::run()
{
    UaTrace::tInOut("--> UaSession::run [Session=%u]", context.traceId);
    while (turn()) {
    }
    UaTrace::tInOut("<-- UaSession::run [Session=%u]", context.traceId);
}

// What a callback throws ends in the callback; what is left is want of memory, and that may pass.
bool UaSessionPrivate::turn()
{
    try {
        return m_monitor->step();
    } catch (const std::exception& error) {
        UaTrace::tError("Error: UaSession - a turn of the session thread ended with '%s' [Session=%u]",
                        error.what(), context.traceId);
        context.linkLost(); // whatever was left half-done begins anew
        return isRequested();
    }
}

} // namespace UaClientSdk
