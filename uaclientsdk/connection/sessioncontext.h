// The state of a session that its collaborators share.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/blocklimits.h>
#include <uaclientsdk/calls/callbackpool.h>
#include <uaclientsdk/calls/transactioncounter.h>
#include <uaclientsdk/connection/connectionstate.h>
#include <uaclientsdk/connection/erroroverrides.h>
#include <uaclientsdk/connection/sessionmutex.h>
#include <uaclientsdk/connection/threadsignal.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

#include <condition_variable>
#include <memory>
#include <thread>

namespace UaClientSdk {

/// Who watches a call.
struct ServiceWatch
{
    std::shared_ptr<ServiceGuard> guard;
    std::shared_ptr<ServiceObserver> observer;
    OpcUa_UInt64 number = 0; ///< of the call
};

/// Every field is guarded by mutex unless it says otherwise. The mutex is never held across a call into the
/// stack or a callback.
struct SessionContext
{
    SessionContext();
    ~SessionContext();
    SessionContext(const SessionContext&) = delete;
    SessionContext& operator=(const SessionContext&) = delete;

    mutable SessionMutex mutex;
    ConnectionState connection;
    ThreadSignal sessionThread;
    std::condition_variable_any activatorDone;
    ErrorOverrides errorOverrides; ///< of who is the activator, without the mutex

    /// Lives as long as the session and is connected again and again, so that a service call that runs while
    /// the link is replaced never meets a freed handle. Immutable.
    OpcUa_Channel channel = nullptr;
    const OpcUa_UInt32 traceId; ///< tells sessions apart in the trace. Immutable.

    UaString url;
    SessionConnectInfo connectInfo;
    SessionSecurityInfo securityInfo;
    UaStringArray localeIds; ///< what CreateSession and ActivateSession send
    UaSessionCallback* callback = nullptr;

    std::thread::id activator; ///< the thread that talks about the session's identity just now

    UaString currentEndpointUrl;
    UaNodeId sessionId;
    UaNodeId authenticationToken;
    UaByteString serverNonce;
    UaByteString serverCertificate;   ///< one, DER
    UaEndpointDescriptions endpoints; ///< as CreateSession returned them
    UaStringArray namespaceTable;
    BlockLimits blockLimits; ///< of the server as the present session knows it
    double revisedSessionTimeout = 0.0;
    OpcUa_UInt32 revisedChannelLifetime = 0;
    OpcUa_UInt32 nextRequestHandle = 1;

    bool isWatched = false; ///< there is a guard or an observer
    ServiceWatch watch;     ///< number: of the call before

    /// Asynchronous calls that are not completed yet. One begins under the mutex, while services may be
    /// called, so that disconnect misses none. Guards itself.
    TransactionCounter transactions;
    const std::shared_ptr<CallbackPool> pool; ///< Immutable.

    [[nodiscard]] OpcUa_UInt32 connectionId() const { return connectInfo.clientConnectionId; }
    /// Fills an initialised header; the caller clears it.
    void fillRequestHeaderLocked(const ServiceSettings& settings, OpcUa_RequestHeader& header);
    /// Without the observer while it does not want to look.
    [[nodiscard]] ServiceWatch nextWatchLocked();
    void setWatchdogTimeLocked(OpcUa_UInt32 milliseconds);
    /// The stack says so, or a call has shown it; the session thread tells the application. Any thread.
    void linkLost();
    /// Has the server's state read at once. Any thread.
    void wishForCheck();
    /// Has the next attempt made at once, or the connection checked at once; false when neither is to come.
    /// Any thread.
    [[nodiscard]] bool wishForAttempt();
    [[nodiscard]] ConnectionEpoch epoch() const;
    /// Executes a completion on the pool; at once and here when the pool cannot take it, for a completion is
    /// never lost. Without the mutex.
    void runOnPool(std::unique_ptr<CallbackJob> job) const;

    /// Callbacks, made without the mutex. What one throws ends in the trace.
    void notifyStatus(UaClient::ServerStatus status) const;
    bool reportConnectError(UaClient::ConnectServiceType step, const UaStatus& error, bool clientSide) const;
    bool reportTlsFinding(const UaStatus& finding, const UaByteString& certificates) const;
    void notifyDataTypesLoaded(const UaStatus& result) const;
    /// Whether the calling thread is in a callback of the session, which a disconnect would wait for.
    [[nodiscard]] bool isInCallback() const;
};

} // namespace UaClientSdk
