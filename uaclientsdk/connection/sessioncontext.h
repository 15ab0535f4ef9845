// The state of a session that its collaborators share.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/callbackpool.h>
#include <uaclientsdk/calls/transactioncounter.h>
#include <uaclientsdk/connection/erroroverrides.h>
#include <uaclientsdk/connection/sessionmutex.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <thread>

namespace UaClientSdk {

/// Every field is guarded by mutex unless it says otherwise. The mutex is never held across a call into the
/// stack or a callback.
struct SessionContext
{
    SessionContext();
    ~SessionContext();
    SessionContext(const SessionContext&) = delete;
    SessionContext& operator=(const SessionContext&) = delete;

    mutable SessionMutex mutex;
    std::condition_variable_any wakeUp; ///< ends the session thread's waits early
    bool threadWanted = false;          ///< ends its next wait
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

    bool connecting = false; ///< a connect is under way
    bool connectRequested = false;
    bool channelConnected = false;
    bool sessionCreated = false; ///< the server knows sessionId
    bool activatedOnce = false;
    bool sessionActive = false; ///< activated on the channel that is connected now: services may be called
    bool userRefused = false;   ///< the server took not this user; only another one is tried
    std::thread::id activator;  ///< the thread that talks about the session's identity just now
    UaClient::ServerStatus serverStatus = UaClient::Disconnected;
    OpcUa_ServerState serverState = OpcUa_ServerState_Unknown;

    UaString currentEndpointUrl;
    UaNodeId sessionId;
    UaNodeId authenticationToken;
    UaByteString serverNonce;
    UaByteString serverCertificate;   ///< one, DER
    UaEndpointDescriptions endpoints; ///< as CreateSession returned them
    UaStringArray namespaceTable;
    double revisedSessionTimeout = 0.0;
    OpcUa_UInt32 revisedChannelLifetime = 0;
    OpcUa_UInt32 nextRequestHandle = 1;

    /// Asynchronous calls that are not completed yet. One begins under the mutex, while a connect is
    /// requested, so that disconnect misses none. Guards itself.
    TransactionCounter transactions;
    const std::shared_ptr<CallbackPool> pool; ///< Immutable.

    /// Set by channel events on the stack's thread: the link is gone, check at once. Not guarded.
    std::atomic<bool> linkLost{false};

    [[nodiscard]] OpcUa_UInt32 connectionId() const { return connectInfo.clientConnectionId; }
    /// Fills an initialised header; the caller clears it.
    void fillRequestHeaderLocked(const ServiceSettings& settings, OpcUa_RequestHeader& header);
    void setWatchdogTimeLocked(OpcUa_UInt32 milliseconds);
    /// The session thread has something to do.
    void wakeThreadLocked();

    /// Executes a completion on the pool; at once and here when the pool cannot take it, for a completion is
    /// never lost. Without the mutex.
    void runOnPool(std::unique_ptr<CallbackJob> job) const;

    /// Callbacks, made without the mutex.
    void notifyStatus(UaClient::ServerStatus status) const;
    bool reportConnectError(UaClient::ConnectServiceType step, const UaStatus& error, bool clientSide) const;
};

} // namespace UaClientSdk
