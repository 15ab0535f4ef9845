#include <uaclientsdk/connection/sessioncontext.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace UaClientSdk {

namespace {

OpcUa_UInt32 nextTraceId()
{
    static std::atomic<OpcUa_UInt32> counter{0};
    return ++counter;
}

} // namespace

SessionContext::SessionContext() : traceId(nextTraceId()), pool(CallbackPool::instance())
{
    const OpcUa_StatusCode status = OpcUa_Channel_Create(&channel);
    if (OpcUa_IsBad(status)) {
        UaTrace::tError("Error: UaSession - can not create a channel [ret=0x%x]", status);
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
    header.Timestamp = OpcUa_DateTime_UtcNow();
    header.TimeoutHint = settings.callTimeout;
    header.ReturnDiagnostics = settings.returnDiagnostics;
    header.RequestHandle = settings.requestHandle != 0 ? settings.requestHandle : nextRequestHandle++;
    if (!settings.auditEntryId.isEmpty())
        static_cast<void>(settings.auditEntryId.copyTo(&header.AuditEntryId));
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

void SessionContext::wakeThreadLocked()
{
    mutex.assertLocked();
    threadWanted = true;
    wakeUp.notify_all();
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
    mutex.assertUnlocked();
    if (callback) {
        UaTrace::tIfCall("CALL SessionCallback::connectionStatusChanged [Session=%u] status=%d", traceId,
                         static_cast<int>(status));
        callback->connectionStatusChanged(connectionId(), status);
    }
}

bool SessionContext::reportConnectError(UaClient::ConnectServiceType step, const UaStatus& error,
                                        bool clientSide) const
{
    mutex.assertUnlocked();
    return callback && callback->connectError(connectionId(), step, error, clientSide);
}

} // namespace UaClientSdk
