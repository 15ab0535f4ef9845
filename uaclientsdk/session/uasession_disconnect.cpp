// How a session ends, within a second whatever its server does; declared in uasession_p.h.
#include <uaclientsdk/session/uasession_p.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>

namespace UaClientSdk {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds pollInterval(100);
// What all steps have together.
constexpr milliseconds wholeTime(1000);
// What the steps before CloseSession may use up of it.
constexpr milliseconds timeBeforeClose(500);

milliseconds leftUntil(std::chrono::steady_clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(left, milliseconds::zero());
}

} // namespace

UaStatus UaSessionPrivate::disconnect(const ServiceSettings& settings, bool deleteSubscriptions)
{
    using Phase = ConnectionState::Phase;
    const bool inCallback = context.isInCallback();
    Phase phase{};
    bool begun = false;
    {
        SessionLock lock(context.mutex);
        phase = context.connection.phase();
        begun = !inCallback && context.connection.apply(ConnectionState::Event::DisconnectCalled);
        if (begun)
            context.sessionThread.raiseLocked(lock);
    }
    if (inCallback && phase != Phase::Closed && phase != Phase::Opening) {
        UaTrace::tError("<-- UaSession::disconnect [ret=OpcUa_BadInvalidState] - called by a callback, which "
                        "disconnect would wait for");
        return UaStatus(OpcUa_BadInvalidState);
    }
    UaStatus result;
    if (begun)
        endConnection(settings, deleteSubscriptions, phase == Phase::Active, result);
    if (begun && phase != Phase::Opening)
        return result;
    UaTrace::tError("<-- UaSession::disconnect [ret=OpcUa_BadInernalError] - Server not connected");
    return UaStatus(OpcUa_BadInternalError); // also for a connect that it has cut short
}

void UaSessionPrivate::endConnection(const ServiceSettings& settings, bool deleteSubscriptions, bool healthy,
                                     UaStatus& result)
{
    const auto deadline = Clock::now() + wholeTime;
    bool threadsEnded = false;
    if (healthy) {
        threadsEnded = waitForThreads(Clock::now() + timeBeforeClose);
        result = endServerSession(settings, deleteSubscriptions, deadline);
        subscriptions.waitForAnswers(leftUntil(deadline));
    } else {
        UaTrace::tError("Error: UaSession::disconnect - connection error - can not call "
                        "OpcUa_ClientApi_CloseSession");
    }
    m_connector.disconnectChannel(); // whatever still runs over it ends
    if (!threadsEnded)
        endThreads();
    context.transactions.waitForTransactionCompletion(context.traceId);
    bool wasTold = false;
    {
        SessionLock lock(context.mutex);
        context.connection.setServerSession(ConnectionState::ServerSession::Unknown);
        wasTold = context.connection.status() != UaClient::Disconnected;
        m_inTransition = true; // until all is told, nobody connects
        context.connection.apply(ConnectionState::Event::Disconnected);
    }
    subscriptions.clear();
    if (wasTold)
        context.notifyStatus(UaClient::Disconnected);
    subscriptions.waitForCallbacks(leftUntil(deadline));
    SessionLock lock(context.mutex);
    m_inTransition = false;
    m_transitionEnded.notify_all();
}

bool UaSessionPrivate::waitForThreads(Clock::time_point until)
{
    UaTrace::tInOut("UaSession::disconnect wait for Session thread termination");
    while (!threadsEnd(std::min(pollInterval, leftUntil(until)))) {
        UaTrace::tInOut("UaSession::disconnect Session thread still running");
        if (Clock::now() >= until)
            return false;
    }
    UaTrace::tInOut("UaSession::disconnect Session thread not longer running");
    return true;
}

void UaSessionPrivate::endThreads()
{
    UaTrace::tInOut("UaSession::disconnect wait for Session thread termination");
    while (!threadsEnd(pollInterval)) {
        UaTrace::tInOut("UaSession::disconnect Session thread still running");
        m_connector.disconnectChannel(); // one that was opened meanwhile, or is about to be
    }
    UaTrace::tInOut("UaSession::disconnect Session thread not longer running");
}

// The connect of another thread, the session thread, the load of definitions.
bool UaSessionPrivate::threadsEnd(milliseconds limit)
{
    {
        SessionLock lock(context.mutex);
        if (!m_transitionEnded.wait_for(lock, limit, [this] { return !m_inTransition; }))
            return false;
    }
    return wait(static_cast<unsigned int>(limit.count())) && m_dictionaryJob.end(limit);
}

UaStatus UaSessionPrivate::endServerSession(const ServiceSettings& settings, bool deleteSubscriptions,
                                            Clock::time_point deadline)
{
    const auto patience = leftUntil(deadline - timeBeforeClose);
    context.transactions.waitForTransactionCompletion(context.traceId, patience);
    ServiceSettings bounded = settings;
    const auto left = static_cast<OpcUa_UInt32>(std::max(leftUntil(deadline), milliseconds(1)).count());
    bounded.callTimeout = settings.callTimeout == 0 ? left : std::min(settings.callTimeout, left);
    const UaStatus result = m_activator.closeSession(bounded, deleteSubscriptions);
    definitions.clear();
    return result;
}

} // namespace UaClientSdk
