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
    /// What the session is connected by; all are borrowed.
    ConnectionMonitor(SessionContext& context, ChannelConnector& connector, SessionActivator& activator,
                      SessionHousekeeping& housekeeping);

    /// One turn of the session thread; false ends it.
    [[nodiscard]] bool step();

private:
    using Event = ConnectionState::Event;
    using Phase = ConnectionState::Phase;
    /// How an attempt came out.
    enum class Attempt { Done, Failed, SessionGone };

    void waitForWork();
    void publish();
    void check(UaClient::ServerStatus before);
    void checkFailed(const UaStatus& status, UaClient::ServerStatus before);
    void tellLoss();
    void serverShutDown();
    [[nodiscard]] bool waitingTurn(OpcUa_UInt64 now, OpcUa_UInt64 period, bool automatic);
    void doTryReconnect();
    [[nodiscard]] Attempt resume(OpcUa_UInt32 link);
    [[nodiscard]] Attempt replace(OpcUa_UInt32 link);
    /// The session is active: says so to the housekeeping and the application. False when the link has broken
    /// meanwhile, or the server still says that it shuts down.
    [[nodiscard]] bool becomeActive(OpcUa_UInt32 link);
    [[nodiscard]] bool stillShutsDown();
    [[nodiscard]] bool mayHoldOn(const UaStatus& status, OpcUa_UInt32 link);
    void endAttempt(const UaStatus& status);
    void closeAndDisconnect();
    [[nodiscard]] UaStatus readServerState(OpcUa_UInt32 timeout, OpcUa_Int32& state);
    bool apply(Event event);
    [[nodiscard]] bool isRequested() const;
    void stamp() { m_schedule.stamp(OpcUa_GetTickCount()); }

    SessionContext& m_context;
    ChannelConnector& m_connector;
    SessionActivator& m_activator;
    SessionHousekeeping& m_housekeeping;
    CheckSchedule m_schedule;
    unsigned int m_heldOn = 0; ///< attempts in a row that a link failed during, and the session was kept
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
