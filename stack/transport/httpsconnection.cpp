#include <stack/transport/httpsconnection.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <numeric>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace opcua {

HttpsConnection::HttpsConnection(HttpServer server, UniqueFd socket, std::unique_ptr<TlsSession> session,
                                 OpcUa_UInt32 lifetime, std::shared_ptr<EventLoop> loop,
                                 std::weak_ptr<ConnectionObserver> observer)
    : m_server(std::make_shared<const HttpServer>(std::move(server))), m_lifetime(lifetime),
      m_loop(std::move(loop)), m_observer(std::move(observer)), m_firstSocket(std::move(socket)),
      m_firstSession(std::move(session))
{
}

OpcUa_StatusCode HttpsConnection::start(TimePoint)
{
    {
        const TimePoint now = std::chrono::steady_clock::now();
        const std::lock_guard lock(m_mutex);
        auto lane = std::make_shared<HttpLane>(m_server, m_loop, weak_from_this(), m_outcome);
        m_lanes.push_back(lane);
        m_state = State::Starting; // whatever the lane hears is looked at behind onOpened
        if (!lane->adopt(std::move(m_firstSocket), std::move(m_firstSession), now))
            return OpcUa_BadResourceUnavailable;
    }
    if (const auto observer = m_observer.lock())
        observer->onOpened(m_lifetime);
    std::unique_lock lock(m_mutex);
    if (m_state == State::Starting)
        m_state = State::Open;
    settleAndDispatch(lock, std::chrono::steady_clock::now());
    return OpcUa_Good;
}

// ---- requests

OpcUa_StatusCode HttpsConnection::send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                       bool mayWait)
{
    std::unique_lock lock(m_mutex);
    const auto admitted = [this] { return unsentLocked() <= maxUnsentBytes || m_state != State::Open; };
    if (!admitted() && !mayWait)
        return OpcUa_BadResourceUnavailable;
    if (!m_changed.wait_until(lock, deadline, admitted))
        return OpcUa_BadTimeout;
    if (m_state != State::Open)
        return OpcUa_BadConnectionClosed;
    if (outstandingLocked() >= maxPendingRequests)
        return OpcUa_BadTooManyOperations;
    const TimePoint now = std::chrono::steady_clock::now();
    const LanePointer lane = laneForLocked(paceOf(body), now);
    if (lane)
        lane->send(std::move(call), body, deadline, now);
    settleAndDispatch(lock, now);
    return lane ? OpcUa_Good : OpcUa_BadConnectionClosed;
}

HttpsConnection::LanePointer HttpsConnection::laneForLocked(HttpPace pace, TimePoint now)
{
    assertLocked(m_mutex);
    for (;;) {
        std::vector<HttpLaneLoad> loads;
        for (const LanePointer& lane : m_lanes)
            loads.push_back(lane->load(now));
        const auto chosen = chooseLane(loads, pace);
        if (!chosen)
            return openLaneLocked(now);
        const LanePointer lane = m_lanes[*chosen];
        if (lane->outstanding() == 0)
            lane->lookWhetherAlive(now);
        settleLocked(now);
        if (m_state != State::Open)
            return nullptr;
        if (!lane->hasEnded())
            return lane;
    }
}

HttpsConnection::LanePointer HttpsConnection::openLaneLocked(TimePoint now)
{
    assertLocked(m_mutex);
    auto lane = std::make_shared<HttpLane>(m_server, m_loop, weak_from_this(), m_outcome);
    m_lanes.push_back(lane);
    lane->open(now);
    return lane;
}

size_t HttpsConnection::unsentLocked() const
{
    assertLocked(m_mutex);
    return std::accumulate(m_lanes.begin(), m_lanes.end(), size_t{0},
                           [](size_t sum, const LanePointer& lane) { return sum + lane->unsent(); });
}

size_t HttpsConnection::outstandingLocked() const
{
    assertLocked(m_mutex);
    return std::accumulate(m_lanes.begin(), m_lanes.end(), size_t{0},
                           [](size_t sum, const LanePointer& lane) { return sum + lane->outstanding(); });
}

void HttpsConnection::close()
{
    std::unique_lock lock(m_mutex);
    if (m_state != State::Lost)
        endLocked(State::Closed, OpcUa_BadConnectionClosed);
    settleAndDispatch(lock, std::chrono::steady_clock::now());
    lock.lock();
    m_order.drainLocked(lock);
}

bool HttpsConnection::isOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_state == State::Open;
}

// ---- the loop's side

void HttpsConnection::onLaneReady(HttpLane& lane, std::uint32_t epollEvents, MutableByteView scratch)
{
    std::unique_lock lock(m_mutex);
    if (m_state != State::Open || lane.hasEnded())
        return;
    const TimePoint now = std::chrono::steady_clock::now();
    guardedLocked([&] { lane.onEvents(epollEvents, scratch, now); });
    settleAndDispatch(lock, now);
}

void HttpsConnection::onLaneTime(HttpLane& lane, TimePoint now)
{
    std::unique_lock lock(m_mutex);
    if (m_state != State::Open || lane.hasEnded())
        return;
    guardedLocked([&] { lane.advance(now); });
    settleAndDispatch(lock, now);
}

// A lane that was left in the middle of something cannot go on.
template <typename Use>
void HttpsConnection::guardedLocked(Use use)
{
    assertLocked(m_mutex);
    try {
        use();
    } catch (const std::bad_alloc&) {
        endLocked(State::Lost, OpcUa_BadOutOfMemory);
    }
}

// ---- after each use of the lanes

// Sends what is pending, sets the timers and dispatches the outcome; unlocks.
void HttpsConnection::settleAndDispatch(std::unique_lock<CheckedMutex>& lock, TimePoint now)
{
    settleLocked(now);
    m_changed.notify_all(); // there may be room to send
    m_order.dispatch(lock, std::exchange(m_outcome, {}), [this](HttpOutcome& outcome) { dispatch(outcome); });
}

void HttpsConnection::dispatch(HttpOutcome& outcome)
{
    for (const std::string& remark : outcome.remarks)
        OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "%s", remark.c_str());
    for (HttpOutcome::Completion& completion : outcome.completions)
        completion.call->complete(completion.status, std::move(completion.body));
    const auto observer = m_observer.lock();
    if (observer && outcome.lost)
        observer->onLost(*outcome.lost);
}

void HttpsConnection::settleLocked(TimePoint now)
{
    assertLocked(m_mutex);
    settleLanesLocked();
    dropEndedLocked(now);
}

void HttpsConnection::settleLanesLocked()
{
    assertLocked(m_mutex);
    for (const LanePointer& lane : m_lanes)
        lane->settle(lane != m_lanes.front());
}

// Forgets the lanes that have ended, and draws the conclusions.
void HttpsConnection::dropEndedLocked(TimePoint now)
{
    assertLocked(m_mutex);
    OpcUa_StatusCode openFault = 0;
    bool broken = false;
    std::erase_if(m_lanes, [&](const LanePointer& lane) {
        if (lane->hasEnded()) {
            openFault = openFault != 0 ? openFault : lane->openFault();
            broken |= lane->brokeUnderRequests();
        }
        return lane->hasEnded();
    });
    if (m_state != State::Open)
        return;
    const bool opening = std::ranges::any_of(m_lanes, [](const auto& lane) { return lane->isOpening(); });
    if (broken && openFault == 0 && !opening) {
        const LanePointer probe = openLaneLocked(now);
        probe->settle(true);
        openFault = probe->openFault();
    }
    if (openFault != 0)
        endLocked(State::Lost, openFault);
}

void HttpsConnection::endLocked(State state, OpcUa_StatusCode status)
{
    assertLocked(m_mutex);
    if (state == State::Lost)
        m_outcome.lost = status;
    m_state = state;
    for (const LanePointer& lane : m_lanes)
        lane->close(status);
    settleLanesLocked();
    m_lanes.clear();
}

} // namespace opcua
