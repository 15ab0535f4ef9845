#include <uaclientsdk/uasession.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/session/uasession_p.h>

#include <string_view>
#include <utility>

namespace UaClientSdk {

namespace {

// One field of the session's state, read or written under its mutex.
template <typename T>
T guarded(const SessionContext& context, T SessionContext::*field)
{
    SessionLock lock(context.mutex);
    return context.*field;
}

ConnectionState connectionOf(const SessionContext& context)
{
    return guarded(context, &SessionContext::connection);
}

template <typename T>
T guardedInfo(const SessionContext& context, T SessionConnectInfo::*field)
{
    SessionLock lock(context.mutex);
    return context.connectInfo.*field;
}

OpcUa_ProxyStubConfiguration stackLimits()
{
    OpcUa_ProxyStubConfiguration limits{};
    OpcUa_ProxyStub_GetConfiguration(&limits);
    return limits;
}

} // namespace

UaSession::UaSession() : d(UaRefPtr<UaSessionPrivate>::adopt(new UaSessionPrivate(*this))) {}

UaSession::~UaSession()
{
    if (isConnected())
        static_cast<void>(disconnect(ServiceSettings(), true)); // nobody is left to tell
}

UaStatus UaSession::connect(const UaString& url, const SessionConnectInfo& connectInfo,
                            const SessionSecurityInfo& securityInfo, UaSessionCallback* callback)
{
    TraceScope trace("UaSession", "connect", "url", url);
    return trace.ending(d->connect(url, connectInfo, securityInfo, callback));
}

UaStatus UaSession::disconnect(const ServiceSettings& settings, bool deleteSubscriptions)
{
    TraceScope trace("UaSession", "disconnect");
    return trace.ending(d->disconnect(settings, deleteSubscriptions));
}

bool UaSession::reconnectNow()
{
    return d->context.wishForAttempt();
}

UaStatus UaSession::changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity)
{
    TraceScope trace("UaSession", "changeUser");
    return trace.ending(d->changeUser(settings, identity));
}

void UaSession::setServiceGuard(std::shared_ptr<ServiceGuard> guard)
{
    SessionLock lock(d->context.mutex);
    d->context.watch.guard = std::move(guard);
    d->context.isWatched = d->context.watch.guard || d->context.watch.observer;
}

void UaSession::setServiceObserver(std::shared_ptr<ServiceObserver> observer)
{
    SessionLock lock(d->context.mutex);
    d->context.watch.observer = std::move(observer);
    d->context.isWatched = d->context.watch.guard || d->context.watch.observer;
}

bool UaSession::isConnected() const
{
    return connectionOf(d->context).isRequested();
}

UaClient::ServerStatus UaSession::serverStatus() const
{
    return connectionOf(d->context).status();
}

OpcUa_ServerState UaSession::serverState() const
{
    return connectionOf(d->context).serverState();
}

UaString UaSession::currentlyUsedEndpointUrl() const
{
    return guarded(d->context, &SessionContext::currentEndpointUrl);
}

UaNodeId UaSession::sessionId() const
{
    return guarded(d->context, &SessionContext::sessionId);
}

UaByteString UaSession::serverCertificate() const
{
    return guarded(d->context, &SessionContext::serverCertificate);
}

OpcUa_MessageSecurityMode UaSession::messageSecurityMode() const
{
    SessionLock lock(d->context.mutex);
    return d->context.securityInfo.messageSecurityMode;
}

OpcUa_UInt32 UaSession::connectTimeout() const
{
    return guardedInfo(d->context, &SessionConnectInfo::connectTimeout);
}

void UaSession::setConnectTimeout(OpcUa_UInt32 milliseconds)
{
    SessionLock lock(d->context.mutex);
    d->context.connectInfo.connectTimeout = milliseconds;
}

OpcUa_UInt32 UaSession::maxOperationsPerServiceCall() const
{
    return guardedInfo(d->context, &SessionConnectInfo::maxOperationsPerServiceCall);
}

void UaSession::setMaxOperationsPerServiceCall(OpcUa_UInt32 count)
{
    const OpcUa_UInt32 maximum = maxArrayLength();
    SessionLock lock(d->context.mutex);
    d->context.connectInfo.maxOperationsPerServiceCall = count == 0 || count > maximum ? maximum : count;
}

OpcUa_UInt32 UaSession::watchdogTime() const
{
    return guardedInfo(d->context, &SessionConnectInfo::watchdogTime);
}

void UaSession::setWatchdogTime(OpcUa_UInt32 milliseconds)
{
    SessionLock lock(d->context.mutex);
    d->context.setWatchdogTimeLocked(milliseconds);
}

OpcUa_UInt32 UaSession::watchdogTimeout() const
{
    return guardedInfo(d->context, &SessionConnectInfo::watchdogTimeout);
}

void UaSession::setWatchdogTimeout(OpcUa_UInt32 milliseconds)
{
    SessionLock lock(d->context.mutex);
    d->context.connectInfo.watchdogTimeout = milliseconds;
}

OpcUa_UInt32 UaSession::revisedSecureChannelLifetime() const
{
    return guarded(d->context, &SessionContext::revisedChannelLifetime);
}

double UaSession::revisedSessionTimeout() const
{
    return guarded(d->context, &SessionContext::revisedSessionTimeout);
}

OpcUa_UInt32 UaSession::maxArrayLength() const
{
    return stackLimits().MaxArrayLength;
}

OpcUa_UInt32 UaSession::maxStringLength() const
{
    return stackLimits().MaxStringLength;
}

OpcUa_UInt32 UaSession::maxByteStringLength() const
{
    return stackLimits().MaxByteStringLength;
}

OperationLimits UaSession::operationLimits() const
{
    SessionLock lock(d->context.mutex);
    return d->context.blockLimits.told();
}

UaStringArray UaSession::getNamespaceTable() const
{
    return guarded(d->context, &SessionContext::namespaceTable);
}

UaStatus UaSession::updateNamespaceTable()
{
    return d->updateNamespaceTable();
}

UaStatus UaSession::loadDataTypeDictionaries()
{
    return d->loadDefinitions();
}

void UaSession::clearDataTypeDictionaries()
{
    d->definitions.clear();
}

int UaSession::verificationError(SessionSecurityInfo* /*security*/, void* context,
                                 const UaByteString& /*certificate*/, unsigned int /*errorCode*/,
                                 unsigned int depth)
{
    UaStatusCode status;
    int openSslError = 0;
    UaString text;
    SessionSecurityInfo::getCurrentErrorInformationOpenSSL(context, status, openSslError, text);
    UaTrace::tError("Error: UaSession::verificationError - %s [status=%s] [error=%d] [depth=%u]",
                    text.toUtf8(), status.toString().toUtf8(), openSslError, depth);
    const bool accepted =
        d->context.reportConnectError(UaClient::CertificateValidation, UaStatus(status.code(), text),
                                      SessionSecurityInfo::mayBeOverridden(status));
    return accepted ? 1 : 0;
}

UaString UaSession::getHostFromUrl(const UaString& url)
{
    return UaString(std::string_view(parseEndpointUrl(url.view()).host));
}

OpcUa_UInt16 UaSession::getPortFromUrl(const UaString& url)
{
    return parseEndpointUrl(url.view()).port;
}

} // namespace UaClientSdk
