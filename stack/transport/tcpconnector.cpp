#include <stack/transport/tcpconnector.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/transport/socketconnect.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <poll.h>
#include <system_error>
#include <utility>
#include <vector>

namespace opcua {

namespace {

constexpr Milliseconds nextAddressAfter{250};

struct Attempt
{
    const SocketAddress* address = nullptr;
    UniqueFd socket;
};

class Connector
{
public:
    Connector(const std::vector<SocketAddress>& addresses, TimePoint deadline,
              const Cancellation& cancellation)
        : m_addresses(addresses), m_deadline(deadline), m_cancellation(cancellation)
    {
    }

    OpcUa_StatusCode run(UniqueFd& socket)
    {
        for (;;) {
            if (m_pending.empty() || std::chrono::steady_clock::now() >= m_nextStart)
                startNext();
            if (m_connected) {
                socket = std::move(m_connected);
                return OpcUa_Good;
            }
            if (m_pending.empty() && m_next == m_addresses.size())
                return m_refused ? OpcUa_BadConnectionRejected : OpcUa_BadCommunicationError;
            if (m_pending.empty())
                continue;
            if (!waitForAny())
                return OpcUa_BadRequestCancelledByClient;
            if (!m_connected && std::chrono::steady_clock::now() >= m_deadline)
                return OpcUa_BadTimeout;
        }
    }

private:
    void startNext()
    {
        m_nextStart = never;
        if (m_next == m_addresses.size())
            return;
        const SocketAddress& address = m_addresses[m_next++];
        if (m_next < m_addresses.size())
            m_nextStart = std::chrono::steady_clock::now() + nextAddressAfter;
        Attempt attempt{&address, {}};
        const int error = beginConnect(address, attempt.socket);
        if (error == 0)
            m_connected = std::move(attempt.socket);
        else if (error == EINPROGRESS)
            m_pending.push_back(std::move(attempt));
        else
            failed(address, error);
    }

    void failed(const SocketAddress& address, int error)
    {
        m_refused |= error == ECONNREFUSED;
        if (m_next < m_addresses.size())
            m_nextStart = std::chrono::steady_clock::now();
        OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "Connecting to %s failed: %s", address.text().c_str(),
                    std::generic_category().message(error).c_str());
    }

    // False when cancelled.
    bool waitForAny()
    {
        std::vector<pollfd> polled;
        polled.push_back({m_cancellation.descriptor(), POLLIN, 0});
        for (const Attempt& attempt : m_pending)
            polled.push_back({attempt.socket.get(), POLLOUT, 0});
        const auto left = std::chrono::ceil<Milliseconds>(std::min(m_deadline, m_nextStart) -
                                                          std::chrono::steady_clock::now());
        // in slices, since poll counts in an int
        const int timeout = static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
        if (::poll(polled.data(), polled.size(), timeout) <= 0)
            return true;
        if (polled.front().revents != 0)
            return false;
        for (size_t n = polled.size(); n-- > 1;)
            if (polled[n].revents != 0)
                finish(n - 1);
        return true;
    }

    void finish(size_t index)
    {
        Attempt attempt = std::move(m_pending[index]);
        m_pending.erase(m_pending.begin() + static_cast<std::ptrdiff_t>(index));
        const int error = connectError(attempt.socket.get());
        if (error == 0) {
            OpcUa_Trace(OPCUA_TRACE_LEVEL_INFO, "Connected to %s", attempt.address->text().c_str());
            m_connected = std::move(attempt.socket);
        } else {
            failed(*attempt.address, error);
        }
    }

    const std::vector<SocketAddress>& m_addresses;
    TimePoint m_deadline;
    const Cancellation& m_cancellation;
    size_t m_next = 0;
    TimePoint m_nextStart = never;
    std::vector<Attempt> m_pending;
    UniqueFd m_connected;
    bool m_refused = false;
};

} // namespace

OpcUa_StatusCode connectTcp(const std::vector<SocketAddress>& addresses, TimePoint deadline,
                            const Cancellation& cancellation, UniqueFd& socket)
{
    return Connector(addresses, deadline, cancellation).run(socket);
}

} // namespace opcua
