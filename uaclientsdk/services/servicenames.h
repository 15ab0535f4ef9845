// What one service is called in the trace, and the checks that every service begins with.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/uasessioncallback.h>

namespace UaClientSdk {

struct ServiceNames
{
    const char* method;    ///< "read"
    const char* emptyText; ///< "Empty read array passed"
    /// of the asynchronous form, where there is one
    const char* beginMethod; ///< "beginRead"
    const char* handler;     ///< "readCallback"
    const char* completion;  ///< "readComplete"
    /// without a connection
    OpcUa_StatusCode notConnected = OpcUa_BadConnectionClosed;
    const char* notConnectedText = "ret=OpcUa_BadConnectionClosed";
    bool countTraced = true; ///< whether its first line says how long the request's array is
};

/// The names that follow from the service's own.
template <typename Service>
constexpr ServiceNames namesOf(const char* emptyText)
{
    return {Service::method, emptyText, Service::beginMethod, Service::handler, Service::completion};
}

/// The lines about a synchronous service from begin to end.
[[nodiscard]] TraceScope traceService(const SessionContext& context, const ServiceNames& names,
                                      OpcUa_UInt32 count);

/// Whether a synchronous service can be called. count is that of its request array.
[[nodiscard]] UaStatus checkReady(const SessionContext& context, const ServiceNames& names,
                                  OpcUa_UInt32 count, const GateRequest& wanted = {});

/// The same for an asynchronous one, which is counted in one go with the check, so that a disconnect either
/// refuses the call or waits for it.
[[nodiscard]] UaStatus beginTransaction(SessionContext& context, const ServiceNames& names,
                                        OpcUa_UInt32 count, const GateRequest& wanted,
                                        Transaction& transaction);

/// Checks that an answer has as many results as were asked for, and no or as many diagnostic infos.
[[nodiscard]] UaStatus checkCounts(const ServiceNames& names, OpcUa_UInt32 wanted, OpcUa_Int32 results,
                                   OpcUa_Int32 diagnostics);

/// Whom a completion is for: null, with a trace, when the session was disconnected meanwhile.
[[nodiscard]] UaSessionCallback* completionReceiver(const SessionContext& context, const ServiceNames& names);

} // namespace UaClientSdk
