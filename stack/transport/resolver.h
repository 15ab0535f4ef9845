// Host names to addresses, without blocking longer than the caller allows.
#pragma once

#include <stack/transport/cancellation.h>

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace opcua {

struct SocketAddress
{
    sockaddr_storage storage{};
    socklen_t length = 0;

    [[nodiscard]] int family() const { return storage.ss_family; }
    [[nodiscard]] std::string text() const; ///< numeric, for the trace
};

/// The system's resolver can neither be cancelled nor told a time limit, so it runs on a thread of its own
/// for each name. A caller that has waited long enough leaves; its thread is joined later, at the latest by
/// the destructor.
class Resolver
{
public:
    Resolver() = default;
    ~Resolver();
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;

    /// Numeric addresses are answered at once. Good with at least one address; BadTimeout at the deadline;
    /// BadRequestCancelledByClient; BadCommunicationError for unknown names; BadResourceUnavailable when too
    /// many look-ups hang. Any thread.
    [[nodiscard]] OpcUa_StatusCode resolve(const std::string& host, std::uint16_t port, TimePoint deadline,
                                           const std::shared_ptr<Cancellation>& cancellation,
                                           std::vector<SocketAddress>& addresses);

private:
    struct Lookup;
    struct Worker
    {
        std::shared_ptr<Lookup> lookup;
        std::thread thread;
    };

    [[nodiscard]] bool start(const std::shared_ptr<Lookup>& lookup);
    void joinFinished();

    std::mutex m_mutex;
    std::list<Worker> m_workers;
};

} // namespace opcua
