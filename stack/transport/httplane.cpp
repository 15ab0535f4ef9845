#include <stack/transport/httplane.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/security/certificate.h>
#include <stack/transport/socketconnect.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <ranges>
#include <string>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <system_error>
#include <utility>

namespace opcua {

HttpLane::HttpLane(std::shared_ptr<const HttpServer> server, std::shared_ptr<EventLoop> loop,
                   std::weak_ptr<HttpLaneHost> host, HttpOutcome& outcome)
    : m_server(std::move(server)), m_loop(std::move(loop)), m_host(std::move(host)), m_outcome(outcome),
      m_pipeline(m_server->requestHead, m_server->maxBodySize, *this)
{
}

// ---- opening

bool HttpLane::adopt(UniqueFd socket, std::unique_ptr<TlsSession> session, TimePoint now)
{
    m_begun = now;
    m_socket = std::move(socket);
    m_session = std::move(session);
    m_phase = Phase::Open;
    return join();
}

bool HttpLane::join()
{
    m_key = m_loop->add(m_socket.get(), shared_from_this());
    return m_key != 0;
}

void HttpLane::open(TimePoint now)
{
    m_begun = now;
    m_openDeadline = now + m_server->connectTimeout;
    m_session = std::make_unique<TlsSession>(*m_server->tls, m_server->host);
    const int error = beginConnect(m_server->address, m_socket);
    if (!m_socket)
        return failOpening(OpcUa_BadResourceUnavailable);
    if (error != 0 && error != EINPROGRESS)
        return failOpening(error == ECONNREFUSED ? OpcUa_BadConnectionRejected : OpcUa_BadCommunicationError);
    if (!join())
        return failOpening(OpcUa_BadResourceUnavailable);
    m_watchingOutput = true;
    m_loop->watchOutput(m_key, m_socket.get(), true);
}

void HttpLane::finishConnect()
{
    const int error = connectError(m_socket.get());
    if (error != 0) {
        m_outcome.remarks.push_back("Connecting to " + m_server->address.text() +
                                    " failed: " + std::generic_category().message(error));
        return failOpening(error == ECONNREFUSED ? OpcUa_BadConnectionRejected : OpcUa_BadCommunicationError);
    }
    m_phase = Phase::Handshake;
    m_session->start();
}

// The certificate that was judged when the channel was opened is the only one that it accepts later on.
void HttpLane::checkPeer()
{
    const Bytes chain = m_session->peerChain();
    const auto own = firstOfChain(chain);
    if (!own || !std::ranges::equal(*own, m_server->certificate)) {
        m_outcome.remarks.push_back("The server has another TLS certificate than before");
        return failOpening(OpcUa_BadCertificateInvalid);
    }
    m_phase = Phase::Open;
    m_openDeadline = never;
}

void HttpLane::failOpening(OpcUa_StatusCode status)
{
    m_openFault = status;
    m_pipeline.end(HttpPipeline::State::Broken, status);
}

// ---- requests and answers

void HttpLane::send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline, TimePoint now)
{
    if (m_pipeline.state() != HttpPipeline::State::Open) {
        m_outcome.completions.push_back({std::move(call), m_openFault, {}}); // it could not even be begun
        return;
    }
    OpcUa_CallMeasure* const measure = call->measure();
    if (measure != nullptr)
        m_sentStamps.reserve();
    const size_t outputBefore = m_pipeline.output().size();
    m_calls.emplace(m_pipeline.send(body, deadline, now), std::move(call));
    if (measure == nullptr)
        return;
    measure->BytesOut = static_cast<OpcUa_UInt32>(m_pipeline.output().size() - outputBefore);
    m_sentStamps.add(*measure);
    m_pipeline.measureLast(*measure);
}

void HttpLane::complete(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body)
{
    const auto found = m_calls.find(requestId);
    if (found == m_calls.end())
        return;
    auto& completion = m_outcome.completions.emplace_back(); // first, for it may fail, and the call be lost
    if (const OpcUa_CallMeasure* const measure = found->second->measure())
        m_sentStamps.forget(measure);
    completion = {std::move(found->second), status, std::move(body)};
    m_calls.erase(found);
}

void HttpLane::onResponse(OpcUa_UInt32 requestId, Bytes&& body)
{
    complete(requestId, OpcUa_Good, std::move(body));
}

void HttpLane::onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status, const std::string& reason)
{
    if (!reason.empty())
        m_outcome.remarks.push_back("The server refused a request: " + reason);
    complete(requestId, status, {});
}

// ---- the loop's side

void HttpLane::onReady(std::uint32_t epollEvents, MutableByteView scratch)
{
    if (const auto host = m_host.lock())
        host->onLaneReady(*this, epollEvents, scratch);
}

void HttpLane::onTime(TimePoint now)
{
    if (const auto host = m_host.lock())
        host->onLaneTime(*this, now);
}

void HttpLane::onEvents(std::uint32_t epollEvents, MutableByteView scratch, TimePoint now)
{
    if (m_phase == Phase::Connecting && (epollEvents & (EPOLLOUT | EPOLLERR | EPOLLHUP)) != 0)
        finishConnect();
    else if (m_phase == Phase::Handshake || m_phase == Phase::Open)
        receive(scratch, now); // an error or hang-up shows behind what the peer said last
}

void HttpLane::lookWhetherAlive(TimePoint now)
{
    std::array<OpcUa_Byte, 4096> scratch;
    if (m_phase == Phase::Open)
        receive(scratch, now);
}

void HttpLane::receive(MutableByteView scratch, TimePoint now)
{
    const ssize_t count = ::recv(m_socket.get(), scratch.data(), scratch.size(), MSG_DONTWAIT);
    if (count > 0)
        takeBytes(scratch.first(static_cast<size_t>(count)), now);
    else if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
        streamEnded(OpcUa_BadConnectionClosed);
}

void HttpLane::takeBytes(ByteView bytes, TimePoint now)
{
    m_plain.clear();
    m_session->receive(bytes, m_plain);
    if (m_phase == Phase::Handshake && m_session->state() == TlsSession::State::Open)
        checkPeer();
    if (m_phase == Phase::Open && !m_plain.empty())
        m_pipeline.receive(m_plain, now);
    if (m_session->state() == TlsSession::State::Failed) {
        m_outcome.remarks.push_back("The TLS session failed: " + m_session->reason());
        streamEnded(m_session->fault());
    } else if (m_session->state() == TlsSession::State::Closed) {
        streamEnded(OpcUa_BadConnectionClosed);
    }
}

void HttpLane::streamEnded(OpcUa_StatusCode status)
{
    if (m_phase != Phase::Open)
        return failOpening(status);
    m_brokeUnderRequests |= m_pipeline.waiting() != 0;
    m_pipeline.end(HttpPipeline::State::Broken, status);
}

void HttpLane::advance(TimePoint now)
{
    if (now >= m_openDeadline)
        return failOpening(OpcUa_BadTimeout);
    m_pipeline.advance(now);
    if (m_pipeline.outstanding() == 0 && now >= m_closeIdleAt)
        m_pipeline.end(HttpPipeline::State::Finished, OpcUa_BadConnectionClosed);
}

void HttpLane::close(OpcUa_StatusCode status)
{
    m_pipeline.end(HttpPipeline::State::Finished, status);
}

// ---- after each turn

void HttpLane::settle(bool spare)
{
    if (m_phase == Phase::Closed)
        return;
    flush();
    if (m_pipeline.state() != HttpPipeline::State::Open)
        leave();
    else
        setTimer(spare);
}

void HttpLane::flush()
{
    Bytes& requests = m_pipeline.output();
    if (m_phase == Phase::Open && !requests.empty()) {
        if (!m_session->send(requests))
            streamEnded(m_session->fault());
        requests.clear();
    }
    if (m_phase == Phase::Connecting || !m_socket)
        return;
    if (m_pipeline.state() == HttpPipeline::State::Finished)
        m_session->close();
    m_unsent.append(m_session->output());
    if (m_phase == Phase::Open)
        m_sentStamps.place(m_unsent.end()); // what they became under TLS is in there
    const bool full = !m_unsent.flush(m_socket.get());
    m_sentStamps.stamp(m_unsent.sentInAll());
    if (full != m_watchingOutput && m_key != 0) {
        m_watchingOutput = full;
        m_loop->watchOutput(m_key, m_socket.get(), full);
    }
}

void HttpLane::leave()
{
    m_phase = Phase::Closed;
    m_deadline = never;
    if (m_key != 0)
        m_loop->remove(m_key, m_socket.get());
    m_key = 0;
    m_socket.reset();
}

void HttpLane::setTimer(bool spare)
{
    m_closeIdleAt = m_pipeline.closeIdleAt();
    if (spare)
        m_closeIdleAt = std::min(m_closeIdleAt, std::max(m_begun, m_pipeline.lastUse()) + spareLife);
    TimePoint wanted = std::min(m_openDeadline, m_pipeline.nextDeadline());
    if (m_pipeline.outstanding() == 0)
        wanted = std::min(wanted, m_closeIdleAt);
    const TimePoint before = m_deadline.exchange(wanted);
    if (wanted < before)
        m_loop->deadlineMoved(wanted);
}

} // namespace opcua
