#include <tests/support/faultproxy.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <utility>

namespace faultproxy {

namespace {

constexpr std::size_t chunk = 64 * 1024;
constexpr std::size_t maxWaiting = 4 * 1024 * 1024;

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// False when the source has ended.
bool take(int from, std::vector<char>& bytes)
{
    char buffer[chunk];
    const ssize_t count = ::recv(from, buffer, sizeof buffer, MSG_DONTWAIT);
    if (count > 0)
        bytes.insert(bytes.end(), buffer, buffer + count);
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

// False when nobody takes it any more.
bool give(int to, std::vector<char>& bytes)
{
    if (bytes.empty())
        return true;
    const ssize_t count = ::send(to, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count > 0)
        bytes.erase(bytes.begin(), bytes.begin() + count);
    return count >= 0 || errno == EAGAIN || errno == EINTR;
}

} // namespace

FaultProxy::FaultProxy(std::uint16_t serverPort)
    : m_serverPort(serverPort), m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    if (!m_listener || !m_wake ||
        ::bind(m_listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(m_listener.get(), 64) != 0 ||
        ::getsockname(m_listener.get(), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("the relay cannot listen");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

FaultProxy::~FaultProxy()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    wake();
    m_thread.join();
}

void FaultProxy::wake() const
{
    static_cast<void>(::eventfd_write(m_wake.get(), 1));
}

// ---- faults

void FaultProxy::freeze(bool on)
{
    {
        const std::lock_guard lock(m_mutex);
        m_frozen = on;
    }
    wake();
}

void FaultProxy::refuse(bool on)
{
    const std::lock_guard lock(m_mutex);
    m_refusing = on;
}

void FaultProxy::hangUp()
{
    const std::lock_guard lock(m_mutex);
    endAll(End::Good);
}

void FaultProxy::reset()
{
    const std::lock_guard lock(m_mutex);
    endAll(End::Broken);
}

void FaultProxy::damageNext()
{
    const std::lock_guard lock(m_mutex);
    m_damage = true;
}

void FaultProxy::cutAfter(std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_cutting = true;
    m_cutAfter = bytes;
}

std::size_t FaultProxy::accepted() const
{
    const std::lock_guard lock(m_mutex);
    return m_accepted;
}

void FaultProxy::endAll(End how)
{
    for (Pair& pair : m_pairs)
        end(pair, how);
    wake();
}

// The sockets are closed by the relay's own thread, which may be waiting for them.
void FaultProxy::end(Pair& pair, End how)
{
    if (how == End::Broken) {
        const linger now{1, 0};
        ::setsockopt(pair.client.get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
        ::setsockopt(pair.server.get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    }
    pair.dead = true;
}

// ---- relay

void FaultProxy::run()
{
    std::vector<pollfd> polled;
    std::vector<Pair*> pairs;
    for (;;) {
        polled.clear();
        pairs.clear();
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                return;
            m_pairs.remove_if([](const Pair& pair) { return pair.dead; });
            polled.push_back({m_wake.get(), POLLIN, 0});
            polled.push_back({m_listener.get(), static_cast<short>(m_frozen ? 0 : POLLIN), 0});
            for (Pair& pair : m_pairs) {
                const auto interest = [&](const Direction& in, const Direction& out) {
                    const bool read = !in.sourceEnded && in.waiting.size() < maxWaiting;
                    return static_cast<short>((read ? POLLIN : 0) | (out.waiting.empty() ? 0 : POLLOUT));
                };
                // a negative descriptor is passed over, hang-ups included
                polled.push_back(
                    {m_frozen ? -1 : pair.client.get(), interest(pair.toServer, pair.toClient), 0});
                polled.push_back(
                    {m_frozen ? -1 : pair.server.get(), interest(pair.toClient, pair.toServer), 0});
                pairs.push_back(&pair);
            }
        }
        ::poll(polled.data(), polled.size(), -1);
        const std::lock_guard lock(m_mutex);
        eventfd_t wakes = 0;
        static_cast<void>(::eventfd_read(m_wake.get(), &wakes));
        if (m_frozen)
            continue;
        if ((polled[1].revents & POLLIN) != 0)
            acceptOne();
        for (std::size_t n = 0; n < pairs.size(); ++n)
            if (!pairs[n]->dead)
                serve(*pairs[n], polled[2 + 2 * n].revents, polled[3 + 2 * n].revents);
    }
}

void FaultProxy::acceptOne()
{
    opcua::UniqueFd client(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client)
        return;
    ++m_accepted;
    if (m_refusing)
        return;
    opcua::UniqueFd server(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(m_serverPort);
    if (!server || ::connect(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return; // the client sees a server that hangs up
    Pair& pair = m_pairs.emplace_back();
    pair.client = std::move(client);
    pair.server = std::move(server);
}

void FaultProxy::serve(Pair& pair, short clientEvents, short serverEvents)
{
    constexpr short input = POLLIN | POLLHUP | POLLERR;
    if ((clientEvents & input) != 0 && !take(pair.client.get(), pair.toServer.waiting))
        pair.toServer.sourceEnded = true;
    if ((serverEvents & input) != 0) {
        std::vector<char> fresh;
        if (!take(pair.server.get(), fresh))
            pair.toClient.sourceEnded = true;
        spoil(fresh, pair);
        pair.toClient.waiting.insert(pair.toClient.waiting.end(), fresh.begin(), fresh.end());
    }
    const bool given =
        give(pair.server.get(), pair.toServer.waiting) && give(pair.client.get(), pair.toClient.waiting);
    const bool ended = (pair.toServer.sourceEnded && pair.toServer.waiting.empty()) ||
                       (pair.toClient.sourceEnded && pair.toClient.waiting.empty());
    if (!given || ended)
        pair.dead = true;
}

void FaultProxy::spoil(std::vector<char>& bytes, Pair& pair)
{
    if (bytes.empty())
        return;
    if (m_damage) {
        m_damage = false;
        char& byte = bytes[bytes.size() / 2];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 0x10u);
    }
    if (!m_cutting)
        return;
    if (bytes.size() < m_cutAfter) {
        m_cutAfter -= bytes.size();
        return;
    }
    m_cutting = false;
    bytes.resize(m_cutAfter);
    pair.toClient.sourceEnded = true; // ends when the rest is given
    if (bytes.empty() && pair.toClient.waiting.empty())
        pair.dead = true;
}

} // namespace faultproxy
