// Watches the connection of a session and brings it back.
#pragma once

#include <uaclientsdk/channelconnector.h>
#include <uaclientsdk/sessionactivator.h>
#include <uaclientsdk/sessioncontext.h>

namespace UaClientSdk {

class SessionHousekeeping;

// Made when a connect succeeds, then used by the session thread only. One missed check is a warning, the next
// one an error; an error is followed by reconnect attempts, one each watchdog time.
class ConnectionMonitor
{
public:
    ConnectionMonitor(SessionContext& context, SessionHousekeeping& housekeeping);

    // One turn of the session thread; false ends it.
    [[nodiscard]] bool step();

private:
    void doServerStatusCheck();
    void doTryReconnect();
    bool reactivate();
    void startNewSession();
    // Whether the server refused the user, for whom nothing more is tried then.
    [[nodiscard]] bool giveUpRefusedUser();
    void connectionLost(const UaStatus& status);
    void closeAndDisconnect();
    void stamp() { m_lastCheck = OpcUa_GetTickCount(); }
    [[nodiscard]] UaStatus readServerState(OpcUa_UInt32 timeout, OpcUa_Int32& state);
    void evaluate(const UaStatus& status, OpcUa_Int32 state);
    // Sets the status when connect is still requested; says whether it did.
    bool setStatus(UaClient::ServerStatus status, OpcUa_ServerState state);

    SessionContext& m_context;
    SessionHousekeeping& m_housekeeping;
    ChannelConnector m_connector;
    SessionActivator m_activator;
    OpcUa_UInt64 m_lastCheck;
    OpcUa_UInt32 m_refusedInARow = 0;
};

// What follows a connect: tables that the session keeps of its server.
class SessionHousekeeping
{
public:
    virtual ~SessionHousekeeping() = default;
    virtual void afterConnect() = 0;
    virtual void afterReconnect() = 0;
};

} // namespace UaClientSdk
