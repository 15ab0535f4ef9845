// A scripted server on the loopback interface, in the test's own process.
#pragma once

#include <stack/server/serverchannel.h>
#include <stack/transport/uniquefd.h>

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <utility>

namespace opcua::test {

/// One accepted connection. Every wait ends when the client has gone or the peer is to stop.
class PeerSocket
{
public:
    PeerSocket(UniqueFd socket, int stop) : m_socket(std::move(socket)), m_stop(stop) {}

    /// False when the client has gone or the peer is to stop.
    bool read(Bytes& bytes)
    {
        bytes.resize(65536);
        if (!wait(-1))
            return false;
        const ssize_t count = ::recv(m_socket.get(), bytes.data(), bytes.size(), 0);
        bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
        return count > 0;
    }
    void write(const Bytes& bytes)
    {
        static_cast<void>(::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
    }
    /// Reads and forgets until the client goes.
    void stayUntilClosed()
    {
        Bytes bytes;
        while (read(bytes)) {
        }
    }
    /// Takes nothing more from the socket, and waits to be stopped.
    void stayDeaf()
    {
        pollfd stop{m_stop, POLLIN, 0};
        ::poll(&stop, 1, -1);
    }
    /// One byte every few milliseconds, for as long as the client listens.
    void drip(const Bytes& bytes)
    {
        for (const OpcUa_Byte byte : bytes) {
            Bytes ignored;
            if (wait(20) && !read(ignored))
                return;
            write({byte});
        }
        stayUntilClosed();
    }

private:
    /// True when there is something to read, or the end of the stream.
    bool wait(int timeout)
    {
        pollfd polled[2] = {{m_socket.get(), POLLIN, 0}, {m_stop, POLLIN, 0}};
        return ::poll(polled, 2, timeout) > 0 && polled[1].revents == 0;
    }

    UniqueFd m_socket;
    int m_stop;
};

class LoopbackPeer
{
public:
    using Script = std::function<void(PeerSocket&)>;

    /// Listens at the IPv4 address, or at the IPv6 one; throws where there is none.
    explicit LoopbackPeer(Script script, int family = AF_INET)
        : m_script(std::move(script)), m_stop(::eventfd(0, EFD_CLOEXEC)),
          m_listener(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in6 address{}; // longer than the other, with the port at the same place
        address.sin6_family = static_cast<sa_family_t>(family);
        socklen_t length = sizeof(sockaddr_in);
        if (family == AF_INET6) {
            length = sizeof address;
            address.sin6_addr = in6addr_loopback;
        } else {
            reinterpret_cast<sockaddr_in&>(address).sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        }
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener.get(), generic, length) != 0 || ::listen(m_listener.get(), 64) != 0 ||
            ::getsockname(m_listener.get(), generic, &length) != 0)
            throw std::runtime_error("no loopback");
        m_port = ntohs(address.sin6_port);
        m_thread = std::thread([this] { acceptAll(); });
    }
    ~LoopbackPeer()
    {
        ::eventfd_write(m_stop.get(), 1);
        m_thread.join();
        for (Worker& worker : m_workers)
            worker.thread.join();
    }
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;

    /// Until every connection that was accepted has ended, its thread too.
    void waitUntilIdle()
    {
        m_asked = true;
        ::eventfd_write(m_wake.get(), 1);
        while (m_asked)
            std::this_thread::yield();
    }
    [[nodiscard]] std::uint16_t port() const { return m_port; }
    [[nodiscard]] std::string url(const std::string& host = "127.0.0.1") const
    {
        return "opc.tcp://" + host + ":" + std::to_string(m_port) + "/test";
    }

private:
    struct Worker
    {
        std::thread thread;
        std::atomic<bool> done = false;
    };

    void acceptAll()
    {
        for (;;) {
            pollfd polled[3] = {
                {m_listener.get(), POLLIN, 0}, {m_stop.get(), POLLIN, 0}, {m_wake.get(), POLLIN, 0}};
            if (::poll(polled, 3, -1) <= 0 || polled[1].revents != 0)
                return;
            if (polled[0].revents == 0) {
                joinAll();
                continue;
            }
            UniqueFd accepted(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            joinFinished();
            Worker& worker = m_workers.emplace_back();
            worker.thread = std::thread(
                [this, &worker, socket = PeerSocket(std::move(accepted), m_stop.get())]() mutable {
                    m_script(socket);
                    {
                        const PeerSocket closed = std::move(socket);
                    }
                    worker.done = true;
                });
        }
    }
    void joinAll()
    {
        eventfd_t wakes = 0;
        ::eventfd_read(m_wake.get(), &wakes);
        for (Worker& worker : m_workers)
            worker.thread.join();
        m_workers.clear();
        m_asked = false;
    }
    void joinFinished()
    {
        for (auto worker = m_workers.begin(); worker != m_workers.end();) {
            if (!worker->done) {
                ++worker;
                continue;
            }
            worker->thread.join();
            worker = m_workers.erase(worker);
        }
    }

    Script m_script;
    UniqueFd m_stop;
    UniqueFd m_wake{::eventfd(0, EFD_CLOEXEC)};
    std::atomic<bool> m_asked = false;
    UniqueFd m_listener;
    std::uint16_t m_port = 0;
    std::thread m_thread;
    std::list<Worker> m_workers; ///< of the accepting thread until it has ended
};

/// A well-behaved server on a connection; answer is called for each request and uses the engine it is given.
class PeerServer final : private ServerChannelListener
{
public:
    using Answer = std::function<void(ServerChannel& channel, OpcUa_UInt32 requestId, const Bytes& body)>;

    explicit PeerServer(Answer answer, ServerChannelConfig config = {},
                        std::unique_ptr<SecurityPolicy> policy = makeSecurityPolicyNone())
        : m_answer(std::move(answer)), m_channel(config, std::move(policy), *this)
    {
    }
    /// Keeps what the client sends, as it comes.
    void record(Bytes& received) { m_record = &received; }
    /// Until the client goes or the channel ends, or for so many reads.
    void serve(PeerSocket& socket, int reads = -1)
    {
        Bytes bytes;
        while (reads-- != 0 && m_channel.state() != ServerChannel::State::Closed && socket.read(bytes)) {
            if (m_record != nullptr)
                m_record->insert(m_record->end(), bytes.begin(), bytes.end());
            m_channel.receive(bytes, std::chrono::steady_clock::now());
            socket.write(std::exchange(m_channel.output(), {}));
        }
    }

private:
    void onRequest(OpcUa_UInt32 id, Bytes&& body) override { m_answer(m_channel, id, body); }
    void onClosed(OpcUa_StatusCode) override {}

    Answer m_answer;
    ServerChannel m_channel;
    Bytes* m_record = nullptr;
};

} // namespace opcua::test
