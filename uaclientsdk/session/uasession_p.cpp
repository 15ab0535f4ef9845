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
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <chrono>
#include <exception>
#include <utility>

namespace UaClientSdk {

namespace {

constexpr unsigned int pollInterval = 100; // ms

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
      m_activator(context)
{
}

UaSessionPrivate::~UaSessionPrivate()
{
    endThread();
    m_connector.disconnectChannel(); // so that no answer is on its way any more
    subscriptions.clear();
    subscriptions.waitIdle();
}

// Lets one connect in at a time; a callback of it cannot begin another.
class UaSessionPrivate::ConnectGuard
{
public:
    explicit ConnectGuard(SessionContext& context) : m_context(context)
    {
        SessionLock lock(m_context.mutex);
        m_mine = !m_context.connectRequested && !m_context.connecting;
        m_context.connecting = m_context.connecting || m_mine;
    }
    ~ConnectGuard()
    {
        if (m_mine) {
            SessionLock lock(m_context.mutex);
            m_context.connecting = false;
        }
    }
    ConnectGuard(const ConnectGuard&) = delete;
    ConnectGuard& operator=(const ConnectGuard&) = delete;

    [[nodiscard]] bool isMine() const { return m_mine; }

private:
    SessionContext& m_context;
    bool m_mine = false;
};

UaStatus UaSessionPrivate::connect(const UaString& url, const SessionConnectInfo& connectInfo,
                                   const SessionSecurityInfo& securityInfo, UaSessionCallback* callback)
{
    const ConnectGuard guard(context);
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
    endThread(); // one that ended by itself is still to be joined
    m_connector.disconnectChannel();
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
        return startWatching(true);
    m_connector.disconnectChannel();
    // a user who was refused once is not tried again and again
    return connectInfo.retryInitialConnect && !userIsRefused() ? startWatching(false) : opened;
}

UaStatus UaSessionPrivate::startWatching(bool good)
{
    const auto status = good ? UaClient::Connected : UaClient::ConnectionErrorApiReconnect;
    {
        SessionLock lock(context.mutex);
        context.connectRequested = true;
        context.serverStatus = status;
        context.serverState = good ? OpcUa_ServerState_Running : OpcUa_ServerState_Unknown;
    }
    if (good)
        afterConnect();
    context.notifyStatus(status);
    SessionHousekeeping& housekeeping = *this;
    m_monitor = std::make_unique<ConnectionMonitor>(context, housekeeping);
    if (!start()) {
        UaTrace::tError("Error: UaSession::connect - cannot start the session thread");
        ServiceSettings settings;
        static_cast<void>(disconnect(settings, true)); // the caller hears of the thread
        return UaStatus(OpcUa_BadResourceUnavailable);
    }
    return good ? UaStatus() : UaStatus(OpcUa_GoodCompletesAsynchronously);
}

bool UaSessionPrivate::userIsRefused() const
{
    SessionLock lock(context.mutex);
    return context.userRefused;
}

UaStatus UaSessionPrivate::changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity)
{
    if (!identity)
        return UaStatus(OpcUa_BadInvalidArgument);
    const UaStatus result = m_activator.changeUser(settings, identity->clone());
    context.wakeUp.notify_all(); // there may be something to reconnect with, or nothing left to watch
    return result;
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
    context.url = url;
    context.connectInfo = connectInfo;
    OpcUa_UInt32& operations = context.connectInfo.maxOperationsPerServiceCall;
    if (operations == 0 || operations > limits.MaxArrayLength)
        operations = limits.MaxArrayLength;
    context.securityInfo = securityInfo;
    context.localeIds = joinLocaleIds(connectInfo);
    context.callback = callback;
    context.sessionCreated = false;
    context.activatedOnce = false;
    context.userRefused = false;
    context.errorOverrides.forget();
    context.namespaceTable.clear();
    context.revisedSessionTimeout = 0.0;
}

UaStatus UaSessionPrivate::openSession()
{
    UaStatus status = m_connector.connectChannel();
    if (status.isBad())
        return status;
    status = m_activator.createSession();
    if (status.isGood())
        status = m_activator.activateSession();
    if (status.isBad())
        static_cast<void>(
            m_activator.closeSession(settingsWith(context, &SessionConnectInfo::connectTimeout), true));
    return status;
}

// The session works without its tables and definitions, too.
void UaSessionPrivate::afterConnect()
{
    static_cast<void>(updateNamespaceTable());
    if (dictionaryModeIs([](auto mode) { return mode == UaClient::Connect || mode == UaClient::Reconnect; }))
        static_cast<void>(loadDefinitions());
}

void UaSessionPrivate::afterReconnect()
{
    static_cast<void>(updateNamespaceTable());
    if (dictionaryModeIs([](auto mode) { return mode == UaClient::Reconnect; }))
        static_cast<void>(loadDefinitions());
}

bool UaSessionPrivate::dictionaryModeIs(bool (*wanted)(UaClient::TypeDictionaryMode)) const
{
    SessionLock lock(context.mutex);
    return wanted(context.connectInfo.typeDictionaryMode);
}

void UaSessionPrivate::loadDefinitionsOnFirstUse()
{
    if (!definitions.isLoaded() && dictionaryModeIs([](auto mode) { return mode != UaClient::Manual; }))
        static_cast<void>(loadDefinitions());
}

UaStatus UaSessionPrivate::loadDefinitions()
{
    return definitions.load(settingsWith(context, &SessionConnectInfo::internalServiceCallTimeout));
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

void UaSessionPrivate::endThread()
{
    if (isCurrentThread())
        return; // the thread ends by itself, nobody can wait for himself
    UaTrace::tInOut("UaSession::disconnect wait for Session thread termination");
    while (!wait(pollInterval)) {
        UaTrace::tInOut("UaSession::disconnect Session thread still running");
        // a connect that is under way would keep us waiting for its whole timeout
        bool reconnecting = false;
        {
            SessionLock lock(context.mutex);
            reconnecting = !context.channelConnected;
        }
        if (reconnecting)
            OpcUa_Channel_CancelConnect(context.channel);
    }
    UaTrace::tInOut("UaSession::disconnect Session thread not longer running");
}

UaStatus UaSessionPrivate::disconnect(const ServiceSettings& settings, bool deleteSubscriptions)
{
    if (CallbackPool::runsJobOf(&context)) {
        UaTrace::tError("<-- UaSession::disconnect [ret=OpcUa_BadInvalidState] - called by a callback, which "
                        "disconnect would wait for");
        return UaStatus(OpcUa_BadInvalidState);
    }
    if (!withdrawConnect()) {
        UaTrace::tError("<-- UaSession::disconnect [ret=OpcUa_BadInernalError] - Server not connected");
        return UaStatus(OpcUa_BadInternalError);
    }
    endThread();
    const UaStatus result = endServerSession(settings, deleteSubscriptions);
    subscriptions.waitForAnswers();
    setDisconnected();
    m_connector.disconnectChannel();
    subscriptions.clear();
    context.notifyStatus(UaClient::Disconnected);
    subscriptions.waitForCallbacks();
    return result;
}

bool UaSessionPrivate::withdrawConnect()
{
    {
        SessionLock lock(context.mutex);
        if (!context.connectRequested)
            return false;
        context.connectRequested = false;
    }
    context.wakeUp.notify_all();
    return true;
}

UaStatus UaSessionPrivate::endServerSession(const ServiceSettings& settings, bool deleteSubscriptions)
{
    bool connected = false;
    {
        SessionLock lock(context.mutex);
        connected = context.serverStatus == UaClient::Connected;
    }
    if (!connected)
        m_connector.disconnectChannel(); // calls over a broken link are answered at once
    context.transactions.waitForTransactionCompletion(context.traceId);
    if (!connected) {
        UaTrace::tError("Error: UaSession::disconnect - connection error - can not call "
                        "OpcUa_ClientApi_CloseSession");
        return UaStatus();
    }
    const UaStatus result = m_activator.closeSession(settings, deleteSubscriptions);
    definitions.clear();
    return result;
}

void UaSessionPrivate::setDisconnected()
{
    SessionLock lock(context.mutex);
    context.serverStatus = UaClient::Disconnected;
    context.serverState = OpcUa_ServerState_Unknown;
    context.sessionCreated = false;
    context.activatedOnce = false;
}

void UaSessionPrivate::run()
{
    UaTrace::tInOut("--> UaSession::run [Session=%u]", context.traceId);
    try {
        while (m_monitor->step()) {
        }
    } catch (const std::exception& error) {
        // an application's callback failed; the session must not take the process down with it
        UaTrace::tError("Error: UaSession - the session thread ended with '%s' [Session=%u]", error.what(),
                        context.traceId);
    }
    UaTrace::tInOut("<-- UaSession::run [Session=%u]", context.traceId);
}

} // namespace UaClientSdk
