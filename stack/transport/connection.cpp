#include "connection.h"

#include <sys/epoll.h>
#include <sys/socket.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

#include <cerrno>

namespace opcua {

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
    settleAndTell(lock);
    return OpcUa_Good;
}

OpcUa_StatusCode Connection::send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline, bool mayWait)
{
    std::unique_lock lock(m_mutex);
    const auto admitted = [this] {
        return m_unsent.size() - m_sentOfUnsent <= maxUnsentBytes ||
               m_engine.state() != ClientChannel::State::Open;
    };
    if (!admitted() && !mayWait)
        return OpcUa_BadResourceUnavailable;
    if (!m_changed.wait_until(lock, deadline, admitted))
        return OpcUa_BadTimeout;
    OpcUa_UInt32 requestId = 0;
    const OpcUa_StatusCode status = m_engine.send(body, deadline, requestId);
    if (OpcUa_IsBad(status))
        return status;
    m_calls.emplace(requestId, std::move(call));
    settleAndTell(lock);
    return OpcUa_Good;
}

void Connection::close()
{
    std::unique_lock lock(m_mutex);
    m_engine.close();
    settleAndTell(lock);
    lock.lock();
    m_changed.wait(lock, [this] { return m_telling == 0; });
}

bool Connection::isOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_engine.state() == ClientChannel::State::Open;
}

// ---- the loop's side ----------------------------------------------------------------------------

void Connection::onReady(std::uint32_t, MutableByteView scratch)
{
    std::unique_lock lock(m_mutex);
    if (!m_socket)
        return;
    // an error or hang-up shows when reading, behind what the peer said last
    receiveLocked(scratch);
    settleAndTell(lock);
}

void Connection::onTime(TimePoint now)
{
    std::unique_lock lock(m_mutex);
    if (!m_socket)
        return;
    m_engine.advance(now);
    settleAndTell(lock);
}

TimePoint Connection::deadline() const
{
    return m_deadline;
}

void Connection::receiveLocked(MutableByteView scratch)
{
    const ssize_t count = ::recv(m_socket.get(), scratch.data(), scratch.size(), MSG_DONTWAIT);
    if (count > 0)
        m_engine.receive(scratch.first(static_cast<size_t>(count)), std::chrono::steady_clock::now());
    else if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
        m_engine.streamEnded(OpcUa_BadConnectionClosed);
}

// ---- after each turn with the engine ------------------------------------------------------------

// Sends what the engine has to say, sets the timer, and tells what happened; unlocks.
void Connection::settleAndTell(std::unique_lock<std::mutex>& lock)
{
    settleLocked();
    Outcome outcome = std::exchange(m_outcome, {});
    if (outcome.empty()) {
        lock.unlock();
        return;
    }
    ++m_telling;
    lock.unlock();
    tell(outcome);
    outcome = {}; // whoever waits for this may free what the calls hold on to
    lock.lock();
    --m_telling;
    lock.unlock();
    m_changed.notify_all();
}

void Connection::tell(Outcome& outcome)
{
    if (m_keyLog && !outcome.keyLines.empty())
        m_keyLog->append(outcome.keyLines);
    for (Completion& completion : outcome.completions)
        completion.call->complete(completion.status, std::move(completion.body));
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
    flushLocked();
    if (m_engine.state() == ClientChannel::State::Closed)
        return leaveLoopLocked();
    const TimePoint wanted = m_engine.nextDeadline();
    const TimePoint before = m_deadline.exchange(wanted);
    if (wanted < before)
        m_loop->deadlineMoved(wanted);
}

void Connection::leaveLoopLocked()
{
    m_deadline = never;
    if (!m_socket)
        return;
    m_loop->remove(m_key, m_socket.get());
    m_socket.reset();
    m_watchingOutput = false;
    m_unsent.clear();
    m_sentOfUnsent = 0;
    m_changed.notify_all();
}

void Connection::flushLocked()
{
    Bytes& fresh = m_engine.output();
    if (m_unsent.empty())
        std::swap(m_unsent, fresh);
    else
        m_unsent.insert(m_unsent.end(), fresh.begin(), fresh.end());
    fresh.clear();
    bool full = false;
    while (m_sentOfUnsent < m_unsent.size() && m_socket && !m_writeBroken && !full) {
        const ssize_t count = ::send(m_socket.get(), m_unsent.data() + m_sentOfUnsent,
                                     m_unsent.size() - m_sentOfUnsent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0)
            m_sentOfUnsent += static_cast<size_t>(count);
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            full = true;
        else if (errno != EINTR)
            m_writeBroken = true; // the reader finds out why, and whether the peer said a last word
    }
    dropSentLocked();
    if (full != m_watchingOutput) {
        m_watchingOutput = full;
        m_loop->watchOutput(m_key, m_socket.get(), full);
    }
}

// Forgets what is sent, without moving the rest at every turn.
void Connection::dropSentLocked()
{
    constexpr size_t keptCapacity = 256 * 1024;
    if (m_writeBroken || m_sentOfUnsent == m_unsent.size()) {
        m_unsent.clear();
        m_sentOfUnsent = 0;
        if (m_unsent.capacity() > keptCapacity)
            m_unsent.shrink_to_fit();
        m_changed.notify_all();
    } else if (m_sentOfUnsent > maxUnsentBytes / 4) {
        m_unsent.erase(m_unsent.begin(), m_unsent.begin() + static_cast<std::ptrdiff_t>(m_sentOfUnsent));
        m_sentOfUnsent = 0;
        m_changed.notify_all();
    }
}

// ---- what the engine says, under the lock -------------------------------------------------------

void Connection::completeLocked(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body)
{
    auto node = m_calls.extract(requestId);
    if (!node.empty())
        m_outcome.completions.push_back({std::move(node.mapped()), status, std::move(body)});
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
