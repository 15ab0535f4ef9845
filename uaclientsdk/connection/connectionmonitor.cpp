#include <uaclientsdk/connection/connectionmonitor.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/activatorturn.h>
#include <uaclientsdk/connection/linkfaults.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace UaClientSdk {

namespace {

constexpr auto publishWait = std::chrono::milliseconds(10);
// Bounded, so that a clock that was set or a computer that slept is noticed.
constexpr auto idleWait = std::chrono::milliseconds(100);
constexpr auto reconnectWait = std::chrono::milliseconds(500);
constexpr OpcUa_UInt32 closeTimeout = 10000;
constexpr OpcUa_Int32 shutdownState = 4;
// A server whose links break again and again during the activation has a session that is of no use.
constexpr unsigned int maxHeldOn = 10;

// Failures that a busy server or network may show once without being gone.
bool isTolerable(OpcUa_StatusCode status)
{
    constexpr std::array<OpcUa_StatusCode, 9> tolerable = {
        OpcUa_BadUnexpectedError,  OpcUa_BadInternalError,         OpcUa_BadCommunicationError,
        OpcUa_BadTimeout,          OpcUa_BadNoCommunication,       OpcUa_BadTcpServerTooBusy,
        OpcUa_BadTcpInternalError, OpcUa_BadTcpNotEnoughResources, OpcUa_BadRequestInterrupted};
    return std::find(tolerable.begin(), tolerable.end(), status) != tolerable.end();
}

} // namespace

ConnectionMonitor::ConnectionMonitor(SessionContext& context, ChannelConnector& connector,
                                     SessionActivator& activator, SessionHousekeeping& housekeeping)
    : m_context(context), m_connector(connector), m_activator(activator), m_housekeeping(housekeeping),
      m_schedule(OpcUa_GetTickCount())
{
}

bool ConnectionMonitor::apply(Event event)
{
    SessionLock lock(m_context.mutex);
    return m_context.connection.apply(event);
}

bool ConnectionMonitor::isRequested() const
{
    SessionLock lock(m_context.mutex);
    return m_context.connection.isRequested();
}

bool ConnectionMonitor::step()
{
    waitForWork();
    publish();
    Phase phase{};
    UaClient::ServerStatus status{};
    OpcUa_UInt64 period = 0;
    bool automatic = false;
    {
        SessionLock lock(m_context.mutex);
        phase = m_context.connection.phase();
        status = m_context.connection.status();
        period = m_context.connectInfo.watchdogTime;
        automatic = m_context.connectInfo.automaticReconnect;
    }
    const OpcUa_UInt64 now = OpcUa_GetTickCount();
    switch (phase) {
    case Phase::Active:
    case Phase::Doubtful:
        if (m_schedule.isCheckDue(now, period))
            check(status);
        return true;
    case Phase::Broken:
        tellLoss();
        return true;
    case Phase::Waiting:
        return waitingTurn(now, period, automatic);
    case Phase::Refused: // credentials that were refused once may lock the account when they are tried again
        return true;
    case Phase::Closed:
    case Phase::Opening:
    case Phase::Reopening:
    case Phase::GivenUp:
    case Phase::Ending:
        break;
    }
    return false;
}

void ConnectionMonitor::waitForWork()
{
    SessionLock lock(m_context.mutex);
    const ConnectionState& connection = m_context.connection;
    const auto wait = !connection.isServing()               ? reconnectWait
                      : m_housekeeping.isPublishingLocked() ? publishWait
                                                            : idleWait;
    const ThreadSignal::Wishes wishes = m_context.sessionThread.waitLocked(lock, wait, [&connection] {
        return !connection.isRequested() || connection.phase() == Phase::Broken;
    });
    if (wishes.check)
        m_schedule.hurryCheck();
    if (wishes.attempt)
        m_schedule.hurryAttempt();
}

void ConnectionMonitor::publish()
{
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.connection.isServing() || !m_housekeeping.isPublishingLocked())
            return;
    }
    const UaStatus status = m_housekeeping.publish();
    if (status.isBad()) {
        UaTrace::tError(
            "Error: UaSession - a request for notifications was not taken [Session=%u] [status=0x%x]",
            m_context.traceId, status.statusCode());
        apply(Event::LinkLost);
        tellLoss();
    }
}

void ConnectionMonitor::closeAndDisconnect()
{
    ServiceSettings settings;
    settings.callTimeout = closeTimeout;
    if (m_connector.isOpen())
        static_cast<void>(m_activator.closeSession(settings, true)); // nobody is left to tell
    m_connector.disconnectChannel();
}

// ---- the check

UaStatus ConnectionMonitor::readServerState(OpcUa_UInt32 timeout, OpcUa_Int32& state)
{
    OpcUa_ReadValueId item;
    OpcUa_ReadValueId_Initialize(&item);
    item.NodeId.Identifier.Numeric = OpcUaId_Server_ServerStatus_State;
    item.AttributeId = OpcUa_Attributes_Value;

    BorrowingRequest<Services::Read> request;
    OwningResponse<Services::Read> response;
    request->TimestampsToReturn = OpcUa_TimestampsToReturn_Neither;
    request->NoOfNodesToRead = 1;
    request->NodesToRead = &item;
    ServiceSettings settings;
    settings.callTimeout = timeout;
    const UaStatus status =
        callThroughGate<Services::Read>(m_context, {CallKind::Check}, settings, *request, *response);
    if (status.isBad())
        return status;
    if (response->NoOfResults != 1)
        return UaStatus(wrongResultCount);
    const OpcUa_DataValue& value = response->Results[0];
    if (OpcUa_IsBad(value.StatusCode))
        return UaStatus(value.StatusCode);
    if (value.Value.Datatype != OpcUaType_Int32 || value.Value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return UaStatus(OpcUa_BadTypeMismatch);
    state = value.Value.Value.Int32;
    return UaStatus();
}

void ConnectionMonitor::check(UaClient::ServerStatus before)
{
    TraceScope trace("UaSessionPrivate", "doServerStatusCheck", m_context.traceId);
    OpcUa_UInt32 timeout = 0;
    {
        SessionLock lock(m_context.mutex);
        timeout = m_context.connectInfo.watchdogTimeout;
    }
    if (before == UaClient::ConnectionWarningWatchdogTimeout)
        timeout = timeout > 0x7FFFFFFFu ? timeout : timeout * 2;
    OpcUa_Int32 state = 0;
    const UaStatus status = trace.ending(readServerState(timeout, state));
    stamp();
    if (status.isBad()) {
        checkFailed(status, before);
    } else if (state == shutdownState) {
        if (apply(Event::ServerShutDown))
            serverShutDown();
    } else {
        {
            SessionLock lock(m_context.mutex);
            m_context.connection.setServerState(static_cast<OpcUa_ServerState>(state));
        }
        if (apply(Event::CheckPassed))
            m_context.notifyStatus(UaClient::Connected);
    }
}

void ConnectionMonitor::serverShutDown()
{
    m_context.notifyStatus(UaClient::ServerShutdown);
    closeAndDisconnect();
}

void ConnectionMonitor::checkFailed(const UaStatus& status, UaClient::ServerStatus before)
{
    UaTrace::tWarning("UaSessionPrivate::doServerStatusCheck failed [Session=%u] [status=0x%x]",
                      m_context.traceId, status.statusCode());
    if (before == UaClient::Connected && isTolerable(status.statusCode())) {
        if (apply(Event::CheckMissed)) {
            if (status == OpcUa_BadTimeout)
                m_schedule.hurryCheck();
            m_context.notifyStatus(UaClient::ConnectionWarningWatchdogTimeout);
        }
    } else {
        apply(Event::LinkLost);
        tellLoss();
    }
}

void ConnectionMonitor::tellLoss()
{
    if (!apply(Event::LossTold))
        return;
    UaTrace::tError("Error: UaSession - connection lost [Session=%u]", m_context.traceId);
    m_context.notifyStatus(UaClient::ConnectionErrorApiReconnect);
    bool automatic = false;
    {
        SessionLock lock(m_context.mutex);
        automatic = m_context.connectInfo.automaticReconnect;
    }
    if (automatic)
        m_connector.disconnectChannel();
}

// ---- the way back

bool ConnectionMonitor::waitingTurn(OpcUa_UInt64 now, OpcUa_UInt64 period, bool automatic)
{
    if (!automatic) {
        closeAndDisconnect();
        apply(Event::GaveUp);
        return false;
    }
    if (m_schedule.isAttemptDue(now, period))
        doTryReconnect();
    return true;
}

void ConnectionMonitor::doTryReconnect()
{
    const TraceScope trace("UaSessionPrivate", "doTryReconnect", m_context.traceId);
    OpcUa_UInt32 link = 0;
    bool known = false;
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.connection.apply(Event::AttemptBegun))
            return;
        link = m_context.connection.epoch().link;
        known = m_context.connection.serverSession() == ConnectionState::ServerSession::Activated;
    }
    if (m_connector.connectChannel().isGood()) {
        Attempt attempt = known ? resume(link) : Attempt::SessionGone;
        if (attempt == Attempt::SessionGone)
            attempt = replace(link);
        if (attempt == Attempt::Failed)
            m_schedule.refused();
        else
            m_schedule.accepted();
    } else {
        m_schedule.refused();
        apply(Event::AttemptFailed);
    }
    stamp();
}

bool ConnectionMonitor::mayHoldOn(const UaStatus& status, OpcUa_UInt32 link)
{
    const bool linkFault = concernsLink(status.statusCode()) || m_context.epoch().link != link;
    return linkFault && ++m_heldOn <= maxHeldOn;
}

void ConnectionMonitor::endAttempt(const UaStatus& status)
{
    if (!m_activator.refusesUser(status)) {
        closeAndDisconnect();
        apply(Event::AttemptFailed);
        return;
    }
    UaTrace::tError("Error: UaSession - the server refused the user, he is not tried again [Session=%u]",
                    m_context.traceId);
    apply(Event::UserRefused);
    closeAndDisconnect();
}

ConnectionMonitor::Attempt ConnectionMonitor::resume(OpcUa_UInt32 link)
{
    {
        const ActivatorTurn turn(m_context); // another user may be set before or after, but not in between
        const UaStatus status = m_activator.activateSession();
        if (status.isBad() && mayHoldOn(status, link)) {
            m_connector.disconnectChannel();
            apply(Event::AttemptFailed);
            return Attempt::Failed;
        }
        if (status.isBad() && !m_activator.refusesUser(status))
            return Attempt::SessionGone;
        if (status.isBad()) {
            endAttempt(status);
            return Attempt::Failed;
        }
        m_heldOn = 0;
        m_housekeeping.prepareResumed();
        if (!becomeActive(link))
            return Attempt::Failed;
    }
    m_housekeeping.afterReconnect();
    if (isRequested()) {
        m_context.notifyStatus(UaClient::Connected);
        m_housekeeping.finishResumed();
    }
    return Attempt::Done;
}

ConnectionMonitor::Attempt ConnectionMonitor::replace(OpcUa_UInt32 link)
{
    m_heldOn = 0;
    {
        SessionLock lock(m_context.mutex);
        m_context.connection.setServerSession(ConnectionState::ServerSession::Unknown);
        m_context.sessionId = UaNodeId();
    }
    {
        const ActivatorTurn turn(m_context);
        UaStatus status = m_activator.createSession();
        if (status.isGood())
            status = m_activator.activateSession();
        if (status.isBad()) {
            endAttempt(status);
            return Attempt::Failed;
        }
        m_housekeeping.prepareReplaced();
        if (!becomeActive(link))
            return Attempt::Failed;
    }
    m_housekeeping.afterReconnect();
    if (isRequested()) {
        m_context.notifyStatus(UaClient::NewSessionCreated);
        if (isRequested())
            m_context.notifyStatus(UaClient::Connected);
        m_housekeeping.finishReplaced();
    }
    return Attempt::Done;
}

bool ConnectionMonitor::becomeActive(OpcUa_UInt32 link)
{
    if (stillShutsDown()) {
        closeAndDisconnect();
        apply(Event::AttemptFailed);
        return false;
    }
    {
        SessionLock lock(m_context.mutex);
        ConnectionState& connection = m_context.connection;
        if (connection.epoch().link == link && connection.apply(Event::SessionReady))
            return true;
    }
    m_connector.disconnectChannel();
    apply(Event::AttemptFailed);
    return false;
}

// A server that has announced its end may take sessions until it is there; to call it connected would be
// true for a moment only.
bool ConnectionMonitor::stillShutsDown()
{
    OpcUa_UInt32 timeout = 0;
    {
        SessionLock lock(m_context.mutex);
        if (m_context.connection.status() != UaClient::ServerShutdown)
            return false;
        timeout = m_context.connectInfo.watchdogTimeout;
    }
    OpcUa_Int32 state = 0;
    return readServerState(timeout, state).isGood() && state == shutdownState;
}

} // namespace UaClientSdk
