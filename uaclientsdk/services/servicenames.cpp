#include <uaclientsdk/services/servicenames.h>

#include <uabase/system/uatrace.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/uasessioncallback.h>

namespace UaClientSdk {

namespace {

UaStatus refuse(const ServiceNames& names, const char* method, const char* obstacle, OpcUa_UInt32 count)
{
    if (obstacle) {
        UaTrace::tError("<-- UaSession::%s [%s] - %s", method, names.notConnectedText, obstacle);
        return UaStatus(names.notConnected);
    }
    if (count == 0) {
        UaTrace::tError("<-- UaSession::%s [ret=OpcUa_BadNothingToDo] - %s", method, names.emptyText);
        return UaStatus(OpcUa_BadNothingToDo);
    }
    return UaStatus();
}

} // namespace

TraceScope traceService(const SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count)
{
    return names.countTraced ? TraceScope("UaSession", names.method, context.traceId, count)
                             : TraceScope("UaSession", names.method, context.traceId);
}

UaStatus checkReady(const SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count,
                    const GateRequest& wanted)
{
    const char* obstacle = nullptr;
    {
        SessionLock lock(context.mutex);
        obstacle = gateObstacleLocked(context, wanted);
    }
    return refuse(names, names.method, obstacle, count);
}

UaStatus beginTransaction(SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count,
                          const GateRequest& wanted, Transaction& transaction)
{
    const char* obstacle = nullptr;
    {
        SessionLock lock(context.mutex);
        obstacle = gateObstacleLocked(context, wanted);
        if (!obstacle && count > 0)
            transaction = Transaction(context.transactions);
    }
    return refuse(names, names.beginMethod, obstacle, count);
}

UaStatus checkCounts(const ServiceNames& names, OpcUa_UInt32 wanted, OpcUa_Int32 results,
                     OpcUa_Int32 diagnostics)
{
    if (results < 0 || static_cast<OpcUa_UInt32>(results) != wanted) {
        UaTrace::tError("Error: UaSession::%s - number of results does not match number of requests",
                        names.method);
        return UaStatus(wrongResultCount);
    }
    if (diagnostics > 0 && static_cast<OpcUa_UInt32>(diagnostics) != wanted) {
        UaTrace::tError("Error: UaSession::%s - number of diagnostic infos does not match number of requests",
                        names.method);
        return UaStatus(wrongResultCount);
    }
    return UaStatus();
}

UaSessionCallback* completionReceiver(const SessionContext& context, const ServiceNames& names)
{
    UaSessionCallback* receiver = nullptr;
    {
        SessionLock lock(context.mutex);
        receiver = context.connection.isRequested() ? context.callback : nullptr;
    }
    if (receiver)
        UaTrace::tIfCall("CALL SessionCallback::%s [Session=%u]", names.completion, context.traceId);
    else
        UaTrace::tInOut("<-- UaSessionPrivate::%s - already disconnected", names.handler);
    return receiver;
}

} // namespace UaClientSdk
