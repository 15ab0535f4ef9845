#include <uaclientsdk/connection/connectionmonitor.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
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
constexpr OpcUa_UInt32 shutdownState = 4;

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

ConnectionMonitor::ConnectionMonitor(SessionContext& context, SessionHousekeeping& housekeeping)
    : m_context(context), m_housekeeping(housekeeping), m_connector(context), m_activator(context),
      m_schedule(OpcUa_GetTickCount())
{
}

bool ConnectionMonitor::step()
{
    if (!waitForWork())
        return false;
    publish();
    UaClient::ServerStatus status{};
    OpcUa_UInt64 period = 0;
    bool automatic = false;
    bool userRefused = false;
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.connectRequested)
            return false;
        status = m_context.serverStatus;
        period = m_context.connectInfo.watchdogTime;
        automatic = m_context.connectInfo.automaticReconnect;
        userRefused = m_context.userRefused;
    }
    const OpcUa_UInt64 now = OpcUa_GetTickCount();
    if (status == UaClient::Connected || status == UaClient::ConnectionWarningWatchdogTimeout) {
        // a link that is known to be gone needs no patience
        if (m_schedule.isCheckDue(now, period) || m_context.linkLost.exchange(false))
            doServerStatusCheck();
        return true;
    }
    if (status == UaClient::ServerShutdown || !automatic) {
        closeAndDisconnect();
        if (!automatic)
            return false;
    }
    // credentials that were refused once may lock the account when they are tried again
    if (!userRefused && m_schedule.isAttemptDue(now, period))
        doTryReconnect();
    return true;
}

bool ConnectionMonitor::waitForWork()
{
    SessionLock lock(m_context.mutex);
    const bool reconnecting = m_context.serverStatus == UaClient::ConnectionErrorApiReconnect;
    const auto wait = reconnecting                          ? reconnectWait
                      : m_housekeeping.isPublishingLocked() ? publishWait
                                                            : idleWait;
    m_context.wakeUp.wait_for(lock, wait, [this, reconnecting] {
        return !m_context.connectRequested || m_context.threadWanted || (!reconnecting && m_context.linkLost);
    });
    m_context.threadWanted = false;
    return m_context.connectRequested;
}

void ConnectionMonitor::publish()
{
    {
        SessionLock lock(m_context.mutex);
        const bool alive = m_context.serverStatus == UaClient::Connected ||
                           m_context.serverStatus == UaClient::ConnectionWarningWatchdogTimeout;
        if (!alive || !m_housekeeping.isPublishingLocked())
            return;
    }
    const UaStatus status = m_housekeeping.publish();
    if (status.isBad())
        connectionLost(status);
}

bool ConnectionMonitor::setStatus(UaClient::ServerStatus status, OpcUa_ServerState state)
{
    SessionLock lock(m_context.mutex);
    if (!m_context.connectRequested)
        return false;
    m_context.serverStatus = status;
    m_context.serverState = state;
    return true;
}

void ConnectionMonitor::closeAndDisconnect()
{
    ServiceSettings settings;
    settings.callTimeout = closeTimeout;
    bool open = false;
    {
        SessionLock lock(m_context.mutex);
        open = m_context.channelConnected;
    }
    if (open)
        static_cast<void>(m_activator.closeSession(settings, true)); // nobody is left to tell
    m_connector.disconnectChannel();
}

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
    {
        SessionLock lock(m_context.mutex);
        ServiceSettings settings;
        settings.callTimeout = timeout;
        m_context.fillRequestHeaderLocked(settings, request->RequestHeader);
    }
    const UaStatus status(callStack<Services::Read>(m_context.channel, *request, *response));
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

void ConnectionMonitor::doServerStatusCheck()
{
    TraceScope trace("UaSessionPrivate", "doServerStatusCheck", m_context.traceId);
    OpcUa_UInt32 timeout = 0;
    bool closed = false;
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.connectRequested) {
            trace.keepSilent();
            return;
        }
        closed = !m_context.activatedOnce; // by a change of the user that went wrong
        timeout = m_context.connectInfo.watchdogTimeout;
        if (m_context.serverStatus == UaClient::ConnectionWarningWatchdogTimeout)
            timeout = timeout > 0x7FFFFFFFu ? timeout : timeout * 2;
    }
    OpcUa_Int32 state = 0;
    const UaStatus status =
        trace.ending(closed ? UaStatus(OpcUa_BadSessionClosed) : readServerState(timeout, state));
    stamp();
    evaluate(status, state);
}

void ConnectionMonitor::evaluate(const UaStatus& status, OpcUa_Int32 state)
{
    UaClient::ServerStatus before{};
    {
        SessionLock lock(m_context.mutex);
        before = m_context.serverStatus;
    }
    if (status.isGood()) {
        if (state == static_cast<OpcUa_Int32>(shutdownState)) {
            if (setStatus(UaClient::ServerShutdown, OpcUa_ServerState_Shutdown)) {
                m_context.notifyStatus(UaClient::ServerShutdown);
                closeAndDisconnect();
            }
        } else if (setStatus(UaClient::Connected, static_cast<OpcUa_ServerState>(state)) &&
                   before != UaClient::Connected) {
            m_context.notifyStatus(UaClient::Connected);
        }
        return;
    }
    UaTrace::tWarning("UaSessionPrivate::doServerStatusCheck failed [Session=%u] [status=0x%x]",
                      m_context.traceId, status.statusCode());
    if (before == UaClient::Connected && isTolerable(status.statusCode())) {
        SessionLock lock(m_context.mutex);
        if (m_context.connectRequested) {
            m_context.serverStatus = UaClient::ConnectionWarningWatchdogTimeout;
            lock.unlock();
            if (status == OpcUa_BadTimeout)
                m_schedule.hurry();
            m_context.notifyStatus(UaClient::ConnectionWarningWatchdogTimeout);
        }
    } else if (before == UaClient::Connected || before == UaClient::ConnectionWarningWatchdogTimeout) {
        connectionLost(status);
    }
}

void ConnectionMonitor::connectionLost(const UaStatus& status)
{
    UaTrace::tError("Error: UaSession - connection lost [Session=%u] [status=0x%x]", m_context.traceId,
                    status.statusCode());
    if (!setStatus(UaClient::ConnectionErrorApiReconnect, OpcUa_ServerState_Unknown))
        return;
    m_context.notifyStatus(UaClient::ConnectionErrorApiReconnect);
    bool automatic = false;
    {
        SessionLock lock(m_context.mutex);
        automatic = m_context.connectInfo.automaticReconnect;
    }
    if (automatic)
        m_connector.disconnectChannel();
}

void ConnectionMonitor::doTryReconnect()
{
    const TraceScope trace("UaSessionPrivate", "doTryReconnect", m_context.traceId);
    const UaStatus opened = m_connector.connectChannel();
    if (opened.isGood()) {
        if (!reactivate() && !giveUpRefusedUser())
            startNewSession();
    } else {
        m_schedule.refused();
    }
    stamp();
}

bool ConnectionMonitor::giveUpRefusedUser()
{
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.userRefused)
            return false;
    }
    UaTrace::tError("Error: UaSession - the server refused the user, he is not tried again [Session=%u]",
                    m_context.traceId);
    closeAndDisconnect();
    return true;
}

bool ConnectionMonitor::reactivate()
{
    bool known = false;
    {
        SessionLock lock(m_context.mutex);
        known = m_context.activatedOnce;
    }
    if (!known || m_activator.activateSession().isBad())
        return false;
    m_schedule.accepted();
    m_housekeeping.prepareResumed();
    if (setStatus(UaClient::Connected, OpcUa_ServerState_Running)) {
        m_housekeeping.afterReconnect();
        m_context.notifyStatus(UaClient::Connected);
        m_housekeeping.finishResumed();
    }
    return true;
}

void ConnectionMonitor::startNewSession()
{
    {
        SessionLock lock(m_context.mutex);
        m_context.sessionCreated = false;
        m_context.activatedOnce = false;
        m_context.sessionId = UaNodeId();
        if (!m_context.connectRequested)
            return;
    }
    if (m_activator.createSession().isBad() || m_activator.activateSession().isBad()) {
        m_schedule.refused();
        closeAndDisconnect();
        return;
    }
    m_schedule.accepted();
    m_housekeeping.prepareReplaced();
    if (setStatus(UaClient::Connected, OpcUa_ServerState_Running)) {
        m_housekeeping.afterReconnect();
        m_context.notifyStatus(UaClient::NewSessionCreated);
        m_context.notifyStatus(UaClient::Connected);
        m_housekeeping.finishReplaced();
    }
}

} // namespace UaClientSdk
