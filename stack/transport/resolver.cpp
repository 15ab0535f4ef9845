#include <stack/transport/resolver.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <netdb.h>
#include <utility>
#include <vector>

namespace opcua {

namespace {

constexpr size_t maxWorkers = 16;

int lookUp(const std::string& host, std::uint16_t port, int flags, std::vector<SocketAddress>& addresses)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0)
        return error;
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        SocketAddress address;
        if (entry->ai_addrlen > sizeof address.storage)
            continue;
        std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
        address.length = entry->ai_addrlen;
        addresses.push_back(address);
    }
    ::freeaddrinfo(found);
    return 0;
}

} // namespace

std::string SocketAddress::text() const
{
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> service{};
    const int error =
        ::getnameinfo(reinterpret_cast<const sockaddr*>(&storage), length, host.data(), host.size(),
                      service.data(), service.size(), NI_NUMERICHOST | NI_NUMERICSERV);
    return error != 0 ? std::string("?") : std::string(host.data()) + " port " + service.data();
}

struct Resolver::Lookup
{
    std::string host;
    std::uint16_t port = 0;
    std::shared_ptr<Cancellation> waiter;
    int error = 0;
    std::vector<SocketAddress> addresses;
    std::atomic<bool> done = false;

    void run()
    {
        std::vector<SocketAddress> found;
        const int result = lookUp(host, port, AI_ADDRCONFIG, found);
        waiter->change([&] {
            error = result;
            addresses = std::move(found);
            done = true;
        });
    }
};

Resolver::~Resolver()
{
    const std::lock_guard lock(m_mutex);
    for (Worker& worker : m_workers)
        worker.thread.join();
}

void Resolver::joinFinished()
{
    for (auto worker = m_workers.begin(); worker != m_workers.end();) {
        if (worker->lookup->done) {
            worker->thread.join();
            worker = m_workers.erase(worker);
        } else {
            ++worker;
        }
    }
}

bool Resolver::start(const std::shared_ptr<Lookup>& lookup)
{
    const std::lock_guard lock(m_mutex);
    joinFinished();
    if (m_workers.size() >= maxWorkers)
        return false;
    m_workers.push_back({lookup, std::thread([lookup] { lookup->run(); })});
    return true;
}

OpcUa_StatusCode Resolver::resolve(const std::string& host, std::uint16_t port, TimePoint deadline,
                                   const std::shared_ptr<Cancellation>& cancellation,
                                   std::vector<SocketAddress>& addresses)
{
    addresses.clear();
    if (lookUp(host, port, AI_NUMERICHOST, addresses) == 0 && !addresses.empty())
        return OpcUa_Good;
    auto lookup = std::make_shared<Lookup>();
    lookup->host = host;
    lookup->port = port;
    lookup->waiter = cancellation;
    if (!start(lookup))
        return OpcUa_BadResourceUnavailable;
    if (!cancellation->wait(deadline, [&] { return lookup->done.load(); }))
        return cancellation->cancelled() ? OpcUa_BadRequestCancelledByClient : OpcUa_BadTimeout;
    if (lookup->error != 0 || lookup->addresses.empty()) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "Host name '%s' cannot be resolved: %s", host.c_str(),
                    lookup->error != 0 ? ::gai_strerror(lookup->error) : "no address");
        return OpcUa_BadCommunicationError;
    }
    addresses = std::move(lookup->addresses);
    return OpcUa_Good;
}

} // namespace opcua
