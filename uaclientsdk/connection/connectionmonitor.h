// Watches the connection of a session and brings it back.
#pragma once

#include <uabase/values/uastatus.h>
#include <uaclientsdk/connection/channelconnector.h>
#include <uaclientsdk/connection/checkschedule.h>
#include <uaclientsdk/connection/sessionactivator.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/uaclient.h>

namespace UaClientSdk {

class SessionHousekeeping;

/// Made when a connect succeeds, then used by the session thread only. One missed check is a warning, the
/// next one an error; an error is followed by reconnect attempts, one each watchdog time.
class ConnectionMonitor
{
public:
    ConnectionMonitor(SessionContext& context, SessionHousekeeping& housekeeping);

    /// One turn of the session thread; false ends it.
    [[nodiscard]] bool step();

private:
    /// Waits until there may be something to do; false when the connection is no longer wanted.
    [[nodiscard]] bool waitForWork();
    void publish();
    void doServerStatusCheck();
    void doTryReconnect();
    bool reactivate();
    void startNewSession();
    /// Whether the server refused the user, for whom nothing more is tried then.
    [[nodiscard]] bool giveUpRefusedUser();
    void connectionLost(const UaStatus& status);
    void closeAndDisconnect();
    void stamp() { m_schedule.stamp(OpcUa_GetTickCount()); }
    [[nodiscard]] UaStatus readServerState(OpcUa_UInt32 timeout, OpcUa_Int32& state);
    void evaluate(const UaStatus& status, OpcUa_Int32 state);
    /// Sets the status when connect is still requested; says whether it did.
    bool setStatus(UaClient::ServerStatus status, OpcUa_ServerState state);

    SessionContext& m_context;
    SessionHousekeeping& m_housekeeping;
    ChannelConnector m_connector;
    SessionActivator m_activator;
    CheckSchedule m_schedule;
};

/// What a session does beside its connection: tables of its server, subscriptions.
class SessionHousekeeping
{
public:
    virtual ~SessionHousekeeping() = default;
    virtual void afterConnect() = 0;
    virtual void afterReconnect() = 0;

    /// Whether publish is to be called from time to time.
    [[nodiscard]] virtual bool isPublishingLocked() const = 0;
    /// Bad when the link is broken.
    virtual UaStatus publish() = 0;
    /// A reconnect, before the status changes and after the application knows of it. Resumed: with the old
    /// session. Replaced: with a new one.
    virtual void prepareResumed() = 0;
    virtual void finishResumed() = 0;
    virtual void prepareReplaced() = 0;
    virtual void finishReplaced() = 0;
};

} // namespace UaClientSdk
