#include <stack/transport/probe.h>

#include <opcua/opcua_probe.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/core/framereader.h>
#include <stack/transport/tcpconnector.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace opcua {

namespace {

// An acknowledgement is short, and so is an error with its reason.
constexpr size_t longestAnswer = minimumBufferSize;

TimePoint deadlineAfter(Milliseconds timeout)
{
    return std::chrono::steady_clock::now() + timeout;
}

bool comesLater(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

Probe::Probe(std::shared_ptr<Runtime> runtime, std::string url, std::string host, std::uint16_t port)
    : m_runtime(std::move(runtime)), m_url(std::move(url)), m_host(std::move(host)), m_port(port),
      m_cancellation(std::make_shared<Cancellation>())
{
}

OpcUa_StatusCode Probe::resolve(Milliseconds timeout)
{
    m_texts.clear();
    const OpcUa_StatusCode status =
        m_runtime->resolver().resolve(m_host, m_port, deadlineAfter(timeout), m_cancellation, m_addresses);
    for (const SocketAddress& address : m_addresses)
        m_texts.push_back(address.text());
    return status;
}

OpcUa_StatusCode Probe::connect(Milliseconds timeout)
{
    m_peer.clear();
    m_socket.reset();
    if (m_addresses.empty())
        return OpcUa_BadInvalidState;
    const OpcUa_StatusCode status =
        connectTcp(m_addresses, deadlineAfter(timeout), *m_cancellation, m_socket);
    SocketAddress peer;
    peer.length = sizeof peer.storage;
    if (OpcUa_IsGood(status) &&
        ::getpeername(m_socket.get(), reinterpret_cast<sockaddr*>(&peer.storage), &peer.length) == 0)
        m_peer = peer.text();
    return status;
}

OpcUa_StatusCode Probe::greet(Milliseconds timeout)
{
    m_answer = {};
    if (!m_socket)
        return OpcUa_BadInvalidState;
    const OpcUa_StatusCode status = exchange(deadlineAfter(timeout));
    m_socket.reset();
    return status;
}

// What comes is kept until it is whole, for the user to recognise who answers.
OpcUa_StatusCode Probe::exchange(TimePoint deadline)
{
    Bytes greeting;
    writeHello(greeting, {0, m_runtime->channelLimits(), m_url});
    FrameReader reader(longestAnswer);
    for (;;) {
        const OpcUa_StatusCode ready =
            waitFor(static_cast<short>(greeting.empty() ? POLLIN : POLLIN | POLLOUT), deadline);
        if (OpcUa_IsBad(ready))
            return ready;
        sendSome(greeting);
        std::array<OpcUa_Byte, longestAnswer> buffer;
        const ssize_t count = ::recv(m_socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count < 0 && comesLater(errno))
            continue;
        if (count <= 0)
            return OpcUa_BadConnectionClosed;
        MutableByteView input(buffer.data(), static_cast<size_t>(count));
        keep(input);
        Frame frame;
        const FrameReader::Outcome outcome = reader.next(input, frame);
        if (outcome == FrameReader::Outcome::Fault)
            return OpcUa_BadTcpMessageTypeInvalid;
        if (outcome == FrameReader::Outcome::Frame)
            return take(frame);
    }
}

void Probe::sendSome(Bytes& bytes) const
{
    if (bytes.empty())
        return;
    const ssize_t sent = ::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0)
        bytes.erase(bytes.begin(), bytes.begin() + sent);
}

void Probe::keep(ByteView bytes)
{
    Bytes& kept = m_answer.foreign;
    const ByteView fitting = bytes.first(std::min(bytes.size(), OPCUA_PROBE_ANSWER_LENGTH - kept.size()));
    kept.insert(kept.end(), fitting.begin(), fitting.end());
}

OpcUa_StatusCode Probe::take(const Frame& frame)
{
    ErrorMessage error;
    const bool isError = frame.type == MessageType::Error && readError(frame.body(), error);
    const bool isAcknowledged =
        frame.type == MessageType::Acknowledge && readAcknowledge(frame.body(), m_answer.acknowledge);
    if (!isError && !isAcknowledged)
        return OpcUa_BadTcpMessageTypeInvalid;
    m_answer.foreign.clear();
    m_answer.reason = std::move(error.reason);
    if (isAcknowledged)
        return OpcUa_Good;
    return OpcUa_IsBad(error.status) ? error.status : OpcUa_BadTcpInternalError;
}

OpcUa_StatusCode Probe::waitFor(short events, TimePoint deadline) const
{
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0)
        return OpcUa_BadTimeout;
    std::array<pollfd, 2> polled{{{m_cancellation->descriptor(), POLLIN, 0}, {m_socket.get(), events, 0}}};
    // in slices, since poll counts in an int
    ::poll(polled.data(), polled.size(), static_cast<int>(std::min<std::int64_t>(left.count(), 60'000)));
    return polled[0].revents != 0 ? OpcUa_BadRequestCancelledByClient : OpcUa_Good;
}

} // namespace opcua
