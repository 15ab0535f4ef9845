#include <uaclientsdk/connection/sessioncontext.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/requestheader.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <utility>

namespace UaClientSdk {

namespace {

OpcUa_UInt32 nextTraceId()
{
    static std::atomic<OpcUa_UInt32> counter{0};
    return ++counter;
}

// The callbacks that the calling thread is in.
class CallbackScope
{
public:
    explicit CallbackScope(const SessionContext& context) : m_context(context), m_outer(t_innermost)
    {
        t_innermost = this;
    }
    ~CallbackScope() { t_innermost = m_outer; }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    [[nodiscard]] static bool isOpen(const SessionContext& context)
    {
        const CallbackScope* scope = t_innermost;
        while (scope && &scope->m_context != &context)
            scope = scope->m_outer;
        return scope != nullptr;
    }

private:
    static thread_local const CallbackScope* t_innermost;

    const SessionContext& m_context;
    const CallbackScope* const m_outer;
};

thread_local const CallbackScope* CallbackScope::t_innermost = nullptr;

// An application's fault must neither end the process nor the session's supervision.
template <typename Call>
bool callApplication(const SessionContext& context, const Call& call)
{
    context.mutex.assertUnlocked();
    if (!context.callback)
        return false;
    const CallbackScope scope(context);
    try {
        return call(*context.callback);
    } catch (const std::exception& error) {
        UaTrace::tError("Error: SessionCallback - a callback threw '%s' [Session=%u]", error.what(),
                        context.traceId);
    } catch (...) {
        UaTrace::tError("Error: SessionCallback - a callback threw [Session=%u]", context.traceId);
    }
    return false;
}

} // namespace

SessionContext::SessionContext() : traceId(nextTraceId()), pool(CallbackPool::instance())
{
    const OpcUa_StatusCode status = OpcUa_Channel_Create(&channel);
    if (OpcUa_IsBad(status)) {
        UaTrace::tError("Error: UaSession - cannot create a channel [ret=0x%x]", status);
        channel = nullptr;
    }
}

SessionContext::~SessionContext()
{
    if (channel)
        OpcUa_Channel_Delete(&channel); // what was still asked for is answered now
    transactions.waitForTransactionCompletion(traceId);
}

void SessionContext::fillRequestHeaderLocked(const ServiceSettings& settings, OpcUa_RequestHeader& header)
{
    mutex.assertLocked();
    // without memory the token stays null, and the server refuses the call
    static_cast<void>(authenticationToken.copyTo(&header.AuthenticationToken));
    const OpcUa_UInt32 handle = settings.requestHandle != 0 ? settings.requestHandle : nextRequestHandle++;
    fillRequestHeader(settings, handle, header);
}

ServiceWatch SessionContext::nextWatchLocked()
{
    mutex.assertLocked();
    ++watch.number;
    const bool isLooking = watch.observer && watch.observer->isLooking();
    return {watch.guard, isLooking ? watch.observer : nullptr, watch.number};
}

void SessionContext::setWatchdogTimeLocked(OpcUa_UInt32 milliseconds)
{
    mutex.assertLocked();
    milliseconds = std::max<OpcUa_UInt32>(milliseconds, 1000);
    // written so that a NaN from the server falls through
    if (revisedSessionTimeout > 0.0 && revisedSessionTimeout / 2 < static_cast<double>(milliseconds))
        milliseconds = std::max<OpcUa_UInt32>(static_cast<OpcUa_UInt32>(revisedSessionTimeout / 2), 1);
    connectInfo.watchdogTime = milliseconds;
}

void SessionContext::linkLost()
{
    SessionLock lock(mutex);
    if (connection.apply(ConnectionState::Event::LinkLost))
        sessionThread.raiseLocked(lock);
}

void SessionContext::wishForCheck()
{
    SessionLock lock(mutex);
    sessionThread.raiseLocked(lock, {true, true, false});
}

bool SessionContext::wishForAttempt()
{
    using Phase = ConnectionState::Phase;
    SessionLock lock(mutex);
    const Phase phase = connection.phase();
    const bool isLost = phase == Phase::Broken || phase == Phase::Waiting || phase == Phase::Reopening;
    if (!connection.isServing() && !(isLost && connectInfo.automaticReconnect))
        return false;
    sessionThread.raiseLocked(lock, {true, !isLost, isLost});
    return true;
}

ConnectionEpoch SessionContext::epoch() const
{
    SessionLock lock(mutex);
    return connection.epoch();
}

void SessionContext::runOnPool(std::unique_ptr<CallbackJob> job) const
{
    mutex.assertUnlocked();
    if (!pool->add(std::move(job), this)) {
        UaTrace::tError("Error: SessionCallback - no thread for a callback, it runs here [Session=%u]",
                        traceId);
        job->execute();
    }
}

void SessionContext::notifyStatus(UaClient::ServerStatus status) const
{
    UaTrace::tIfCall("CALL SessionCallback::connectionStatusChanged [Session=%u] status=%d", traceId,
                     static_cast<int>(status));
    callApplication(*this, [&](UaSessionCallback& application) {
        application.connectionStatusChanged(connectionId(), status);
        return true;
    });
}

bool SessionContext::reportConnectError(UaClient::ConnectServiceType step, const UaStatus& error,
                                        bool clientSide) const
{
    return callApplication(
        *this,
        [&](UaSessionCallback& application) {
            return application.connectError(connectionId(), step, error, clientSide);
        });
}

bool SessionContext::reportTlsFinding(const UaStatus& finding, const UaByteString& certificates) const
{
    return callApplication(
        *this,
        [&](UaSessionCallback& application) {
            return application.sslCertificateValidationFailed(connectionId(), finding, certificates);
        });
}

void SessionContext::notifyDataTypesLoaded(const UaStatus& result) const
{
    UaTrace::tIfCall("CALL SessionCallback::dataTypesLoaded [Session=%u] status=0x%x", traceId,
                     result.statusCode());
    callApplication(*this, [&](UaSessionCallback& application) {
        application.dataTypesLoaded(connectionId(), result);
        return true;
    });
}

bool SessionContext::isInCallback() const
{
    return CallbackScope::isOpen(*this) || CallbackPool::runsJobOf(this);
}

} // namespace UaClientSdk
