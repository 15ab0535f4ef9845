#include <uaclientsdk/connection/sessiongate.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uadatetime.h>

#include <utility>

namespace UaClientSdk {

namespace {

thread_local EpochScope* t_scope = nullptr;

} // namespace

EpochScope::EpochScope(const SessionContext& context, const ConnectionEpoch& epoch)
    : m_context(context), m_epoch(epoch), m_outer(std::exchange(t_scope, this))
{
}

EpochScope::~EpochScope()
{
    t_scope = m_outer;
}

bool EpochScope::allowsLocked(const SessionContext& context)
{
    context.mutex.assertLocked();
    for (const EpochScope* scope = t_scope; scope; scope = scope->m_outer)
        if (&scope->m_context == &context && !context.connection.isCurrent(scope->m_epoch))
            return false;
    return true;
}

const char* gateObstacleLocked(const SessionContext& context, const GateRequest& wanted)
{
    context.mutex.assertLocked();
    const ConnectionState& connection = context.connection;
    const bool forApplication = wanted.kind == CallKind::Service || wanted.kind == CallKind::Publish;
    if (forApplication && !connection.isRequested())
        return "Server not connected";
    if (!connection.mayCall(wanted.kind))
        return "Channel not connected"; // not even while a reconnect has a channel again
    if ((wanted.epoch && !connection.isCurrent(*wanted.epoch)) || !EpochScope::allowsLocked(context))
        return "Connection was replaced";
    return nullptr;
}

UaStatus passGate(SessionContext& context, const GateRequest& wanted, ServiceSettings& settings,
                  const OpcUa_EncodeableType& type, void* request, std::unique_ptr<ObservedCall>& observed)
{
    auto& header = *static_cast<OpcUa_RequestHeader*>(request); // every request begins with it
    ServiceWatch watch;
    {
        SessionLock lock(context.mutex);
        if (gateObstacleLocked(context, wanted))
            return UaStatus(OpcUa_BadConnectionClosed);
        context.fillRequestHeaderLocked(settings, header);
        if (context.isWatched)
            watch = context.nextWatchLocked();
    }
    settings.requestTime = UaDateTime(header.Timestamp);
    context.mutex.assertUnlocked();
    if (!watch.guard && !watch.observer && !settings.observer)
        return UaStatus();
    const ServiceCall call{type, request, settings.purpose, settings.note.get()};
    const UaStatus allowed = watch.guard ? watch.guard->mayCall(call) : UaStatus();
    if (allowed.isBad())
        return allowed;
    auto witness = watch.guard ? watch.guard->witness(call) : nullptr;
    if (watch.observer || witness || settings.observer)
        observed = std::make_unique<ObservedCall>(
            ObservedCall::Observers{std::move(watch.observer), std::move(witness), settings.observer},
            watch.number, call);
    return allowed;
}

} // namespace UaClientSdk
