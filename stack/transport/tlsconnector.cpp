#include <stack/transport/tlsconnector.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <sys/socket.h>

namespace opcua {

namespace {

bool isMomentary(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

// False when the peer has gone. What the socket does not take stays in bytes.
bool sendSome(int socket, Bytes& bytes)
{
    if (bytes.empty())
        return true;
    const ssize_t count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0)
        return isMomentary(errno);
    bytes.erase(bytes.begin(), bytes.begin() + count);
    return true;
}

// False when the peer has gone.
bool receiveSome(int socket, TlsSession& session)
{
    std::array<OpcUa_Byte, 16 * 1024> buffer;
    const ssize_t count = ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count <= 0)
        return count < 0 && isMomentary(errno);
    Bytes early; // no server speaks before it is asked
    session.receive(ByteView(buffer).first(static_cast<size_t>(count)), early);
    return early.empty();
}

// Good when there is something to do; waits in slices, since poll counts in an int.
OpcUa_StatusCode waitFor(int socket, bool output, TimePoint deadline, const Cancellation& cancellation)
{
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0)
        return OpcUa_BadTimeout;
    std::array<pollfd, 2> polled{{{cancellation.descriptor(), POLLIN, 0},
                                  {socket, static_cast<short>(POLLIN | (output ? POLLOUT : 0)), 0}}};
    ::poll(polled.data(), polled.size(), static_cast<int>(std::min<std::int64_t>(left.count(), 60'000)));
    return polled[0].revents != 0 ? OpcUa_BadRequestCancelledByClient : OpcUa_Good;
}

} // namespace

OpcUa_StatusCode shakeHands(const UniqueFd& socket, TlsSession& session, TimePoint deadline,
                            const Cancellation& cancellation)
{
    session.start();
    for (;;) {
        // an alert that tells the peer why goes out even when the session has failed
        const bool sent = sendSome(socket.get(), session.output());
        if (session.state() == TlsSession::State::Failed) {
            OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "The TLS handshake failed: %s", session.reason().c_str());
            return session.fault();
        }
        if (!sent || session.state() == TlsSession::State::Closed)
            return OpcUa_BadConnectionClosed;
        if (session.state() == TlsSession::State::Open && session.output().empty())
            return OpcUa_Good;
        const OpcUa_StatusCode waited =
            waitFor(socket.get(), !session.output().empty(), deadline, cancellation);
        if (OpcUa_IsBad(waited))
            return waited;
        if (!receiveSome(socket.get(), session) && session.state() != TlsSession::State::Failed)
            return OpcUa_BadConnectionClosed;
    }
}

} // namespace opcua
