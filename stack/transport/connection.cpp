#include <stack/transport/connection.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace opcua {

namespace {

// From so many pending calls on, requests of callers who do not wait are sent together: a system call costs
// more than all else that is done for a small request. They wait until the event loop or a caller uses the
// engine next, and no longer than the maximum delay.
constexpr size_t callsForDelay = 8;
constexpr size_t maximumDelayedBytes = 16 * 1024;
constexpr Milliseconds maximumDelay{1};

constexpr size_t callerScratchSize = 64 * 1024;

int millisecondsUntil(TimePoint deadline)
{
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 3'600'000));
}

} // namespace

Connection::Connection(UniqueFd socket, ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
                       std::shared_ptr<EventLoop> loop, std::weak_ptr<ConnectionObserver> observer,
                       std::shared_ptr<KeyLog> keyLog)
    : m_loop(std::move(loop)), m_observer(std::move(observer)), m_keyLog(std::move(keyLog)),
      m_socket(std::move(socket)), m_engine(std::move(config), std::move(policy), *this)
{
}

OpcUa_StatusCode Connection::start(TimePoint deadline)
{
    std::unique_lock lock(m_mutex);
    m_key = m_loop->add(m_socket.get(), shared_from_this());
    if (m_key == 0)
        return OpcUa_BadResourceUnavailable;
    m_engine.start(std::chrono::steady_clock::now(), deadline);
    settleAndDispatch(lock);
    return OpcUa_Good;
}

OpcUa_StatusCode Connection::enqueueLocked(std::unique_lock<CheckedMutex>& lock, std::shared_ptr<Call> call,
                                           ByteView body, TimePoint deadline, bool mayWait)
{
    assertLocked(m_mutex);
    const auto admitted = [this] {
        return m_unsent.size() <= maxUnsentBytes || m_engine.state() != ClientChannel::State::Open;
    };
    if (!admitted() && !mayWait)
        return OpcUa_BadResourceUnavailable;
    if (!m_changed.wait_until(lock, deadline, admitted))
        return OpcUa_BadTimeout;
    OpcUa_CallMeasure* const measure = call->measure();
    if (measure != nullptr)
        m_sentStamps.reserve();
    const size_t outputBefore = m_engine.output().size();
    OpcUa_UInt32 requestId = 0;
    const OpcUa_StatusCode status = m_engine.send(body, deadline, requestId);
    if (OpcUa_IsBad(status))
        return status;
    m_calls.emplace(requestId, std::move(call));
    if (measure != nullptr)
        measureLocked(*measure, requestId, outputBefore);
    return OpcUa_Good;
}

void Connection::measureLocked(OpcUa_CallMeasure& measure, OpcUa_UInt32 requestId, size_t outputBefore)
{
    assertLocked(m_mutex);
    const size_t output = m_engine.output().size();
    measure.BytesOut = static_cast<OpcUa_UInt32>(output - outputBefore);
    m_sentStamps.add(measure, m_unsent.end() + output);
    m_engine.measure(requestId, measure);
}

OpcUa_StatusCode Connection::send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline, bool mayWait)
{
    std::unique_lock lock(m_mutex);
    const OpcUa_StatusCode status = enqueueLocked(lock, std::move(call), body, deadline, mayWait);
    if (OpcUa_IsGood(status) && !delayFlushLocked())
        settleAndDispatch(lock);
    return status;
}

// Leaves the engine's output for a later flush, and sets the timer so that there is one.
bool Connection::delayFlushLocked()
{
    assertLocked(m_mutex);
    if (m_calls.size() < callsForDelay || m_engine.output().size() > maximumDelayedBytes)
        return false;
    const TimePoint latest = std::chrono::steady_clock::now() + maximumDelay;
    const TimePoint wanted = std::min(m_engine.nextDeadline(), latest);
    if (wanted < m_deadline.load()) {
        m_deadline = wanted;
        m_loop->deadlineMoved(wanted);
    }
    return true;
}

void Connection::flush()
{
    std::unique_lock lock(m_mutex);
    if (m_socket && !m_engine.output().empty())
        settleAndDispatch(lock);
}

void Connection::close()
{
    std::unique_lock lock(m_mutex);
    m_engine.close();
    settleAndDispatch(lock);
    lock.lock();
    m_changed.wait(lock, [this] { return !m_callerReads; });
    m_order.drainLocked(lock);
}

bool Connection::isOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_engine.state() == ClientChannel::State::Open;
}

// ---- a caller who reads

// The right to read, from before the request is sent, so that its answer does not wake the loop.
class Connection::Reading
{
public:
    explicit Reading(Connection& connection) : m_connection(connection) {}
    ~Reading() // without the mutex
    {
        if (!m_held)
            return;
        UniqueFd closed; // outside the lock, for closing may take its time
        const std::lock_guard lock(m_connection.m_mutex);
        m_connection.m_callerReads = false;
        closed = std::move(m_connection.m_closingSocket);
        m_connection.watchLocked();
        m_connection.m_changed.notify_all();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    // With the mutex. Takes the right only when it is free: while another caller reads, or an outcome is
    // still being dispatched, the event loop or that caller reads on.
    void takeLocked()
    {
        assertLocked(m_connection.m_mutex);
        if (!m_connection.m_socket || m_connection.m_callerReads ||
            m_connection.m_order.isDispatchingLocked())
            return;
        m_held = true;
        m_connection.m_callerReads = true;
        m_connection.watchLocked();
    }
    [[nodiscard]] bool held() const { return m_held; }

private:
    Connection& m_connection;
    bool m_held = false;
};

OpcUa_StatusCode Connection::fetch(const std::shared_ptr<AwaitedCall>& call, ByteView body,
                                   TimePoint deadline)
{
    Reading reading(*this);
    std::unique_lock lock(m_mutex);
    const OpcUa_StatusCode status = enqueueLocked(lock, call, body, deadline, true);
    if (OpcUa_IsBad(status))
        return status;
    reading.takeLocked();
    settleAndDispatch(lock);
    if (reading.held())
        readFor(*call, deadline);
    return OpcUa_Good;
}

// Serves all calls until this one is complete; timers stay with the loop, but for the caller's own deadline.
void Connection::readFor(const AwaitedCall& call, TimePoint deadline)
{
    m_callerScratch.resize(callerScratchSize);
    while (!call.isDone()) {
        std::unique_lock lock(m_mutex);
        if (!m_socket)
            return;
        pollfd polled{m_socket.get(), POLLIN, 0};
        lock.unlock();
        const int ready = ::poll(&polled, 1, millisecondsUntil(deadline));
        lock.lock();
        if (!m_socket)
            return;
        if (ready > 0)
            receiveLocked(m_callerScratch);
        else
            advanceLocked(std::chrono::steady_clock::now());
        settleAndDispatch(lock);
    }
}

// ---- the loop's side

void Connection::onReady(std::uint32_t, MutableByteView scratch)
{
    std::unique_lock lock(m_mutex);
    if (!m_socket)
        return;
    // an error or hang-up shows when reading, behind what the peer said last
    if (!m_callerReads)
        receiveLocked(scratch);
    settleAndDispatch(lock);
}

void Connection::onTime(TimePoint now)
{
    std::unique_lock lock(m_mutex);
    if (!m_socket)
        return;
    advanceLocked(now);
    settleAndDispatch(lock);
}

TimePoint Connection::deadline() const
{
    return m_deadline;
}

void Connection::receiveLocked(MutableByteView scratch)
{
    assertLocked(m_mutex);
    const ssize_t count = ::recv(m_socket.get(), scratch.data(), scratch.size(), MSG_DONTWAIT);
    const bool ended = count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
    guardedLocked([&] {
        if (count > 0)
            m_engine.receive(scratch.first(static_cast<size_t>(count)), std::chrono::steady_clock::now());
        else if (ended)
            m_engine.streamEnded(OpcUa_BadConnectionClosed);
    });
}

void Connection::advanceLocked(TimePoint now)
{
    assertLocked(m_mutex);
    guardedLocked([&] { m_engine.advance(now); });
}

// An engine that was left in the middle of something has lost its place in the stream: its channel ends, and
// what that gives back lets the others go on.
template <typename Use>
void Connection::guardedLocked(Use use)
{
    assertLocked(m_mutex);
    const bool hadEnded = m_engine.state() == ClientChannel::State::Closed; // and has said so
    try {
        use();
    } catch (const std::bad_alloc&) {
        if (!hadEnded)
            endWithoutMemoryLocked();
    }
}

void Connection::endWithoutMemoryLocked()
{
    assertLocked(m_mutex);
    try {
        m_engine.streamEnded(OpcUa_BadOutOfMemory);
    } catch (const std::bad_alloc&) {
        // it has closed, but not told everybody
    }
    if (!m_outcome.lost)
        m_outcome.lost = OpcUa_BadOutOfMemory;
}

// ---- after each use of the engine

// Sends the engine's output, sets the timer and dispatches the outcome; unlocks.
void Connection::settleAndDispatch(std::unique_lock<CheckedMutex>& lock)
{
    settleLocked();
    m_order.dispatch(lock, std::exchange(m_outcome, {}), [this](Outcome& outcome) { dispatch(outcome); });
}

void Connection::dispatch(Outcome& outcome)
{
    if (m_keyLog && !outcome.keyLines.empty())
        m_keyLog->append(outcome.keyLines);
    for (Completion& completion : outcome.completions)
        completion.call->complete(completion.status, std::move(completion.body));
    for (const auto& orphan : outcome.orphans)
        orphan.second->complete(OpcUa_BadOutOfMemory, {});
    const auto observer = m_observer.lock();
    if (!observer)
        return;
    if (outcome.opened)
        observer->onOpened(*outcome.opened);
    if (outcome.renewed)
        observer->onRenewed();
    if (!outcome.reason.empty())
        OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "The peer gave as reason: %s", outcome.reason.c_str());
    if (outcome.lost)
        observer->onLost(*outcome.lost);
}

void Connection::settleLocked()
{
    assertLocked(m_mutex);
    guardedLocked([&] { flushLocked(); });
    if (m_engine.state() == ClientChannel::State::Closed) {
        m_sentStamps.clear();
        m_outcome.orphans.swap(m_calls);
        return leaveLoopLocked();
    }
    watchLocked();
    const TimePoint wanted = m_engine.nextDeadline();
    const TimePoint before = m_deadline.exchange(wanted);
    if (wanted < before)
        m_loop->deadlineMoved(wanted);
}

void Connection::leaveLoopLocked()
{
    assertLocked(m_mutex);
    m_deadline = never;
    if (!m_socket)
        return;
    m_loop->remove(m_key, m_socket.get());
    if (m_callerReads) {
        // its number must not become another socket's while he waits for it
        static_cast<void>(::shutdown(m_socket.get(), SHUT_RDWR));
        m_closingSocket = std::move(m_socket);
    }
    m_socket.reset();
    m_unsent.clear();
    m_changed.notify_all();
}

void Connection::flushLocked()
{
    assertLocked(m_mutex);
    m_unsent.append(m_engine.output());
    if (!m_socket)
        return;
    m_sendBlocked = !m_unsent.flush(m_socket.get());
    m_sentStamps.stamp(m_unsent.sentInAll());
    m_changed.notify_all(); // there may be room for a request
}

// What the loop is to watch for: input unless a caller reads, output when the socket is full.
void Connection::watchLocked()
{
    assertLocked(m_mutex);
    if (!m_socket || (m_watchingInput == !m_callerReads && m_watchingOutput == m_sendBlocked))
        return;
    m_watchingInput = !m_callerReads;
    m_watchingOutput = m_sendBlocked;
    m_loop->watch(m_key, m_socket.get(), m_watchingInput, m_watchingOutput);
}

// ---- events of the engine, under the lock

void Connection::completeLocked(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body)
{
    assertLocked(m_mutex);
    const auto found = m_calls.find(requestId);
    if (found == m_calls.end())
        return;
    auto& completion = m_outcome.completions.emplace_back(); // first, for it may fail, and the call be lost
    if (const OpcUa_CallMeasure* const measure = found->second->measure())
        m_sentStamps.forget(measure);
    completion = {std::move(found->second), status, std::move(body)};
    m_calls.erase(found);
}

void Connection::onOpened(OpcUa_UInt32 revisedLifetime)
{
    m_outcome.opened = revisedLifetime;
}

void Connection::onRenewed(OpcUa_UInt32)
{
    m_outcome.renewed = true;
}

void Connection::onTokenKeys(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys)
{
    m_outcome.keyLines = keyLogLines(channelId, tokenId, keys);
}

void Connection::onResponse(OpcUa_UInt32 requestId, Bytes&& body)
{
    completeLocked(requestId, OpcUa_Good, std::move(body));
}

void Connection::onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status)
{
    completeLocked(requestId, status, {});
}

void Connection::onClosed(OpcUa_StatusCode status)
{
    m_outcome.lost = status;
    m_outcome.reason = m_engine.peerReason();
}

} // namespace opcua
