#include <uaclientsdk/connection/connectionstate.h>

#include <algorithm>
#include <array>

namespace UaClientSdk {

namespace {

using Phase = ConnectionState::Phase;
using Event = ConnectionState::Event;

constexpr auto table = std::to_array<ConnectionState::Transition>({
    {Phase::Closed, Event::ConnectCalled, Phase::Opening},
    {Phase::Opening, Event::SessionReady, Phase::Active},
    {Phase::Opening, Event::ConnectFailed, Phase::Closed},
    {Phase::Opening, Event::ConnectPostponed, Phase::Waiting},
    {Phase::Opening, Event::LinkLost, Phase::Opening},
    {Phase::Opening, Event::DisconnectCalled, Phase::Ending},

    {Phase::Active, Event::CheckMissed, Phase::Doubtful},
    {Phase::Active, Event::LinkLost, Phase::Broken},
    {Phase::Active, Event::SessionLost, Phase::Broken},
    {Phase::Active, Event::ServerShutDown, Phase::Waiting},
    {Phase::Active, Event::DisconnectCalled, Phase::Ending},

    {Phase::Doubtful, Event::CheckPassed, Phase::Active},
    {Phase::Doubtful, Event::LinkLost, Phase::Broken},
    {Phase::Doubtful, Event::SessionLost, Phase::Broken},
    {Phase::Doubtful, Event::ServerShutDown, Phase::Waiting},
    {Phase::Doubtful, Event::DisconnectCalled, Phase::Ending},

    {Phase::Broken, Event::LossTold, Phase::Waiting},
    {Phase::Broken, Event::DisconnectCalled, Phase::Ending},

    {Phase::Waiting, Event::AttemptBegun, Phase::Reopening},
    {Phase::Waiting, Event::GaveUp, Phase::GivenUp},
    {Phase::Waiting, Event::DisconnectCalled, Phase::Ending},

    {Phase::Reopening, Event::SessionReady, Phase::Active},
    {Phase::Reopening, Event::AttemptFailed, Phase::Waiting},
    {Phase::Reopening, Event::LinkLost, Phase::Reopening},
    {Phase::Reopening, Event::UserRefused, Phase::Refused},
    {Phase::Reopening, Event::DisconnectCalled, Phase::Ending},

    {Phase::Refused, Event::UserChanged, Phase::Waiting},
    {Phase::Refused, Event::DisconnectCalled, Phase::Ending},

    {Phase::GivenUp, Event::DisconnectCalled, Phase::Ending},

    {Phase::Ending, Event::Disconnected, Phase::Closed},
});

} // namespace

std::span<const ConnectionState::Transition> ConnectionState::transitions()
{
    return table;
}

bool ConnectionState::apply(Event event)
{
    const auto found = std::find_if(table.begin(), table.end(), [this, event](const Transition& one) {
        return one.from == m_phase && one.event == event;
    });
    if (found == table.end())
        return false;
    const bool wasServing = isServing();
    m_phase = found->to;
    const bool isLost = wasServing && !isServing() && m_phase != Phase::Ending;
    if (event == Event::LinkLost || event == Event::Disconnected || isLost)
        ++m_epoch.link;
    setStatusAfter(event);
    return true;
}

void ConnectionState::setStatusAfter(Event event)
{
    switch (m_phase) {
    case Phase::Active:
        m_status = UaClient::Connected;
        if (event == Event::SessionReady)
            m_serverState = OpcUa_ServerState_Running;
        break;
    case Phase::Doubtful:
        m_status = UaClient::ConnectionWarningWatchdogTimeout;
        break;
    case Phase::Closed:
        m_status = UaClient::Disconnected;
        m_serverState = OpcUa_ServerState_Unknown;
        break;
    case Phase::Waiting:
        if (event == Event::ServerShutDown) {
            m_status = UaClient::ServerShutdown;
            m_serverState = OpcUa_ServerState_Shutdown;
        } else if (event == Event::LossTold || event == Event::ConnectPostponed) {
            m_status = UaClient::ConnectionErrorApiReconnect;
            m_serverState = OpcUa_ServerState_Unknown;
        }
        break;
    case Phase::Opening:
    case Phase::Broken:
    case Phase::Reopening:
    case Phase::Refused:
    case Phase::GivenUp:
    case Phase::Ending:
        break; // as it was told last
    }
}

void ConnectionState::setServerSession(ServerSession known)
{
    if (known == ServerSession::Unknown && m_serverSession != ServerSession::Unknown)
        ++m_epoch.session;
    m_serverSession = known;
}

bool ConnectionState::isRequested() const
{
    return m_phase != Phase::Closed && m_phase != Phase::Opening && m_phase != Phase::Ending;
}

bool ConnectionState::mayCall(CallKind kind) const
{
    switch (kind) {
    case CallKind::Service:
    case CallKind::Publish:
        return isServing();
    case CallKind::Check:
        return isServing() || m_phase == Phase::Reopening;
    case CallKind::Identity:
        return isServing() || m_phase == Phase::Opening || m_phase == Phase::Reopening;
    case CallKind::Close:
        return m_phase != Phase::Closed;
    }
    return false;
}

} // namespace UaClientSdk
