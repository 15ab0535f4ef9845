#include <tests/support/faultproxy.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <utility>

namespace faultproxy {

namespace {

constexpr std::size_t chunk = 64 * 1024;
constexpr std::size_t maxWaiting = 4 * 1024 * 1024;
constexpr short input = POLLIN | POLLHUP | POLLERR;

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// A socket at the port, or at a free one when that is 0, which others of ours may share. None when that
// fails.
opcua::UniqueFd boundTo(std::uint16_t port)
{
    opcua::UniqueFd socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int yes = 1;
    const sockaddr_in address = loopback(port);
    if (!socket || ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        socket.reset();
    return socket;
}

// False when the source has ended.
bool take(int from, std::vector<char>& bytes)
{
    char buffer[chunk];
    const ssize_t count = ::recv(from, buffer, sizeof buffer, MSG_DONTWAIT);
    if (count > 0)
        bytes.assign(buffer, buffer + count);
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

} // namespace

FaultProxy::FaultProxy(std::uint16_t serverPort)
    : m_serverPort(serverPort), m_place(boundTo(0)), m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (!m_place || !m_wake ||
        ::getsockname(m_place.get(), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("the relay has no port");
    m_port = ntohs(address.sin_port);
    listen();
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

void FaultProxy::listen()
{
    m_listener = boundTo(m_port);
    if (!m_listener || ::listen(m_listener.get(), 64) != 0)
        throw std::runtime_error("the relay cannot listen");
}

void FaultProxy::wake() const
{
    static_cast<void>(::eventfd_write(m_wake.get(), 1));
}

// ---- faults

void FaultProxy::freeze(bool on)
{
    const std::lock_guard lock(m_mutex);
    m_faults.frozen = on;
    wake();
}

void FaultProxy::refuse(bool on)
{
    const std::lock_guard lock(m_mutex);
    m_faults.refusing = on;
}

void FaultProxy::refuseNext(std::size_t count)
{
    const std::lock_guard lock(m_mutex);
    m_faults.refuseNext = count;
}

void FaultProxy::shutDoor(bool shut)
{
    const std::lock_guard lock(m_mutex);
    if (!shut) {
        openDoor();
    } else if (!m_faults.doorShut) {
        m_faults.doorShut = true;
        ::shutdown(m_listener.get(), SHUT_RD); // at once; a close would wait for the relay's thread
    }
    wake();
}

void FaultProxy::openDoor()
{
    if (!std::exchange(m_faults.doorShut, false))
        return;
    m_retired.push_back(std::move(m_listener));
    listen();
}

void FaultProxy::ignore(bool on)
{
    const std::lock_guard lock(m_mutex);
    m_faults.ignoring = on;
}

void FaultProxy::setFlow(Toward direction, const Flow& flow)
{
    const std::lock_guard lock(m_mutex);
    (direction == Toward::Client ? m_faults.toClient : m_faults.toServer) = flow;
    wake();
}

void FaultProxy::silentFrom(FramePredicate which)
{
    const std::lock_guard lock(m_mutex);
    m_faults.silentFrom = std::move(which);
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
    m_faults.damage = true;
}

void FaultProxy::garbageNext()
{
    const std::lock_guard lock(m_mutex);
    m_faults.garbage = true;
}

void FaultProxy::cutAfter(std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_faults.cutting = true;
    m_faults.cutAfter = bytes;
}

void FaultProxy::heal()
{
    const std::lock_guard lock(m_mutex);
    openDoor();
    m_faults = Faults();
    for (Pair& pair : m_pairs)
        if (!pair.server)
            end(pair, End::Good);
    wake();
}

std::size_t FaultProxy::accepted() const
{
    const std::lock_guard lock(m_mutex);
    return m_accepted;
}

std::size_t FaultProxy::struck() const
{
    const std::lock_guard lock(m_mutex);
    return m_struck;
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

// ---- one direction

bool FaultProxy::takes(const Direction& direction, const Flow& flow) const
{
    return !isStopped(flow) && !direction.sourceEnded && direction.waiting < maxWaiting;
}

FaultProxy::Clock::time_point FaultProxy::leaves(const Direction& direction, const Flow& flow) const
{
    if (isStopped(flow) || direction.packets.empty())
        return Clock::time_point::max();
    // a delay or limit that is gone holds nothing back
    return std::max(direction.packets.front().arrived + flow.delay,
                    flow.burst == 0 ? Clock::time_point() : direction.mayGiveAt);
}

void FaultProxy::put(Direction& direction, std::vector<char> bytes) const
{
    if (bytes.empty())
        return;
    direction.waiting += bytes.size();
    direction.packets.push_back({Clock::now(), std::move(bytes)});
}

// False when nobody takes it any more.
bool FaultProxy::give(int to, Direction& direction, const Flow& flow) const
{
    const auto now = Clock::now();
    while (leaves(direction, flow) <= now) {
        Packet& packet = direction.packets.front();
        std::size_t size = packet.bytes.size() - packet.given;
        if (flow.burst != 0)
            size = std::min(size, flow.burst);
        const ssize_t count =
            ::send(to, packet.bytes.data() + packet.given, size, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0)
            return errno == EAGAIN || errno == EINTR;
        packet.given += static_cast<std::size_t>(count);
        direction.waiting -= static_cast<std::size_t>(count);
        direction.mayGiveAt = now + flow.pause;
        if (packet.given == packet.bytes.size())
            direction.packets.pop_front();
    }
    return true;
}

// ---- relay

void FaultProxy::run()
{
    std::vector<pollfd> polled;
    std::vector<Pair*> pairs;
    for (;;) {
        int patience = -1;
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                return;
            m_retired.clear();
            m_pairs.remove_if([](const Pair& pair) { return pair.dead; });
            patience = collect(polled, pairs);
        }
        ::poll(polled.data(), polled.size(), patience);
        const std::lock_guard lock(m_mutex);
        eventfd_t wakes = 0;
        static_cast<void>(::eventfd_read(m_wake.get(), &wakes));
        if ((polled[1].revents & POLLIN) != 0 && !m_faults.frozen && !m_faults.doorShut)
            acceptOne();
        for (std::size_t n = 0; n < pairs.size(); ++n)
            if (!pairs[n]->dead)
                serve(*pairs[n], polled[2 + 2 * n].revents, polled[3 + 2 * n].revents);
    }
}

// What to wait for, and for how many milliseconds at most: until the first packet that is held back may
// leave.
int FaultProxy::collect(std::vector<pollfd>& polled, std::vector<Pair*>& pairs)
{
    const auto now = Clock::now();
    auto next = Clock::time_point::max();
    // a negative descriptor is passed over, hang-ups included
    const auto add = [&](const opcua::UniqueFd& fd, bool reads, const Direction& out, const Flow& flow) {
        const auto time = leaves(out, flow);
        if (time > now)
            next = std::min(next, time);
        const int events = (reads ? POLLIN : 0) | (time <= now ? POLLOUT : 0);
        polled.push_back({events == 0 ? -1 : fd.get(), static_cast<short>(events), 0});
    };
    polled.clear();
    pairs.clear();
    polled.push_back({m_wake.get(), POLLIN, 0});
    const bool accepting = !m_faults.frozen && !m_faults.doorShut;
    polled.push_back({accepting ? m_listener.get() : -1, POLLIN, 0});
    for (Pair& pair : m_pairs) {
        if (!pair.server)
            continue;
        add(pair.client, takes(pair.toServer, m_faults.toServer), pair.toClient, m_faults.toClient);
        add(pair.server, takes(pair.toClient, m_faults.toClient), pair.toServer, m_faults.toServer);
        pairs.push_back(&pair);
    }
    if (next == Clock::time_point::max())
        return -1;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(next - now).count());
}

void FaultProxy::acceptOne()
{
    opcua::UniqueFd client(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client)
        return;
    ++m_accepted;
    if (m_faults.refusing || m_faults.refuseNext > 0) {
        m_faults.refuseNext -= m_faults.refuseNext > 0 ? 1 : 0;
        ++m_struck;
        return;
    }
    opcua::UniqueFd server;
    if (m_faults.ignoring) {
        ++m_struck;
    } else {
        server = opcua::UniqueFd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const sockaddr_in address = loopback(m_serverPort);
        if (!server ||
            ::connect(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            return; // the client sees a server that hangs up
    }
    Pair& pair = m_pairs.emplace_back();
    pair.client = std::move(client);
    pair.server = std::move(server);
}

void FaultProxy::serve(Pair& pair, short clientEvents, short serverEvents)
{
    std::vector<char> fresh;
    if ((clientEvents & input) != 0 && takes(pair.toServer, m_faults.toServer)) {
        pair.toServer.sourceEnded = !take(pair.client.get(), fresh);
        put(pair.toServer, std::exchange(fresh, {}));
    }
    if ((serverEvents & input) != 0 && takes(pair.toClient, m_faults.toClient)) {
        pair.toClient.sourceEnded = !take(pair.server.get(), fresh);
        m_struck += pair.frames.filter(fresh, m_faults.silentFrom) ? 1 : 0;
        spoil(fresh, pair);
        put(pair.toClient, std::move(fresh));
    }
    const bool given = give(pair.server.get(), pair.toServer, m_faults.toServer) &&
                       give(pair.client.get(), pair.toClient, m_faults.toClient);
    const auto ended = [this](const Direction& direction, const Flow& flow) {
        return direction.sourceEnded && direction.packets.empty() && !isStopped(flow);
    };
    if (!given || ended(pair.toServer, m_faults.toServer) || ended(pair.toClient, m_faults.toClient))
        pair.dead = true;
}

void FaultProxy::spoil(std::vector<char>& bytes, Pair& pair)
{
    if (bytes.empty())
        return;
    if (std::exchange(m_faults.damage, false)) {
        ++m_struck;
        char& byte = bytes[bytes.size() / 2];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 0x10u);
    }
    if (std::exchange(m_faults.garbage, false)) {
        ++m_struck;
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(m_noise()); });
    }
    if (!m_faults.cutting)
        return;
    if (bytes.size() < m_faults.cutAfter) {
        m_faults.cutAfter -= bytes.size();
        return;
    }
    m_faults.cutting = false;
    ++m_struck;
    bytes.resize(m_faults.cutAfter);
    pair.toClient.sourceEnded = true; // ends when the rest is given
}

} // namespace faultproxy
