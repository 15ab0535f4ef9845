// In which state the connection of a session is, and what follows from it.
#pragma once

#include <opcua/opcua_types.h>
#include <uaclientsdk/uaclient.h>

#include <span>

namespace UaClientSdk {

/// Tells apart what belongs to the connection of now from what an earlier one left. link rises whenever the
/// link is lost or given up (when a disconnect has ended, not when it begins), session whenever the server's
/// session is.
struct ConnectionEpoch
{
    OpcUa_UInt32 link = 0;
    OpcUa_UInt32 session = 0;
};

/// What a call to the server is for; each kind has its own time.
enum class CallKind {
    Service,  ///< of the application, and what the session reads for itself
    Publish,  ///< the request for notifications
    Check,    ///< of the server's state
    Identity, ///< CreateSession and ActivateSession
    Close     ///< CloseSession
};

/// The one state of a connection. It changes in apply() and nowhere else; docs/threads.md lists every
/// transition. Guarded by the session's mutex.
class ConnectionState
{
public:
    enum class Phase {
        Closed,    ///< nobody wants a connection
        Opening,   ///< a connect: channel, CreateSession, ActivateSession
        Active,    ///< services may be called
        Doubtful,  ///< the same, but the last check was missed
        Broken,    ///< the link is gone, which the application does not know yet
        Waiting,   ///< it knows; the next attempt is to come
        Reopening, ///< an attempt: channel, ActivateSession, perhaps CreateSession before it
        Refused,   ///< the server does not take the user: no attempt before another one is set
        GivenUp,   ///< lost, and nobody wants it back
        Ending     ///< a disconnect
    };
    enum class Event {
        ConnectCalled,
        ConnectFailed,
        ConnectPostponed, ///< failed, to be tried again in the background
        SessionReady,     ///< the session is activated on a link that holds
        CheckMissed,      ///< one that a busy server may miss
        CheckPassed,
        LinkLost,
        SessionLost, ///< the server's session came to an end, the link may hold
        LossTold,
        ServerShutDown,
        AttemptBegun,
        AttemptFailed,
        UserRefused,
        UserChanged,
        GaveUp,
        DisconnectCalled,
        Disconnected
    };
    /// What the server knows of a session of ours.
    enum class ServerSession { Unknown, Created, Activated };
    struct Transition
    {
        Phase from;
        Event event;
        Phase to;
    };

    /// All there are; every other pair of phase and event changes nothing.
    [[nodiscard]] static std::span<const Transition> transitions();

    /// Makes the transition; false when there is none.
    bool apply(Event event);
    /// CreateSession or ActivateSession went well, or CloseSession was sent. Another session than before is
    /// another epoch.
    void setServerSession(ServerSession known);
    /// The server's State as last read.
    void setServerState(OpcUa_ServerState state) { m_serverState = state; }

    [[nodiscard]] Phase phase() const { return m_phase; }
    [[nodiscard]] ServerSession serverSession() const { return m_serverSession; }
    [[nodiscard]] OpcUa_ServerState serverState() const { return m_serverState; }
    /// As the application is told.
    [[nodiscard]] UaClient::ServerStatus status() const { return m_status; }
    [[nodiscard]] ConnectionEpoch epoch() const { return m_epoch; }

    /// From the end of a good connect, or of one that is tried again, to the begin of the disconnect.
    [[nodiscard]] bool isRequested() const;
    /// Services have a session that is active on a link that holds.
    [[nodiscard]] bool isServing() const { return m_phase == Phase::Active || m_phase == Phase::Doubtful; }
    [[nodiscard]] bool mayCall(CallKind kind) const;
    /// Whether what began in that epoch goes on over the same link.
    [[nodiscard]] bool isCurrent(const ConnectionEpoch& epoch) const
    {
        return isRequested() && epoch.link == m_epoch.link && epoch.session == m_epoch.session;
    }
    /// Whether ids that the server gave out in that epoch still mean something.
    [[nodiscard]] bool isSameSession(const ConnectionEpoch& epoch) const
    {
        return isRequested() && epoch.session == m_epoch.session;
    }

private:
    void setStatusAfter(Event event);

    Phase m_phase = Phase::Closed;
    ServerSession m_serverSession = ServerSession::Unknown;
    UaClient::ServerStatus m_status = UaClient::Disconnected;
    OpcUa_ServerState m_serverState = OpcUa_ServerState_Unknown;
    ConnectionEpoch m_epoch;
};

} // namespace UaClientSdk
