// Reaches a server step by step, for a diagnosis of where that stops.
#pragma once

#include <stack/core/transportmessages.h>
#include <stack/transport/cancellation.h>
#include <stack/transport/runtime.h>
#include <stack/transport/uniquefd.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace opcua {

struct Frame;

/// The steps block, one thread at a time; cancel() may come from any other.
class Probe
{
public:
    /// What was said to the greeting.
    struct Answer
    {
        AcknowledgeMessage acknowledge;
        std::string reason; ///< of an error
        Bytes foreign;      ///< how it began when it is none of the protocol
    };

    Probe(std::shared_ptr<Runtime> runtime, std::string url, std::string host, std::uint16_t port);

    [[nodiscard]] OpcUa_StatusCode resolve(Milliseconds timeout);
    [[nodiscard]] OpcUa_StatusCode connect(Milliseconds timeout);
    [[nodiscard]] OpcUa_StatusCode greet(Milliseconds timeout);
    void cancel() { m_cancellation->cancel(); }

    [[nodiscard]] const std::vector<std::string>& addresses() const { return m_texts; }
    [[nodiscard]] const std::string& peer() const { return m_peer; }
    [[nodiscard]] const Answer& answer() const { return m_answer; }

private:
    [[nodiscard]] OpcUa_StatusCode exchange(TimePoint deadline);
    [[nodiscard]] OpcUa_StatusCode waitFor(short events, TimePoint deadline) const;
    void sendSome(Bytes& bytes) const;
    void keep(ByteView bytes);
    [[nodiscard]] OpcUa_StatusCode take(const Frame& frame);

    const std::shared_ptr<Runtime> m_runtime;
    const std::string m_url;
    const std::string m_host;
    const std::uint16_t m_port;
    const std::shared_ptr<Cancellation> m_cancellation;
    std::vector<SocketAddress> m_addresses;
    std::vector<std::string> m_texts;
    std::string m_peer;
    UniqueFd m_socket;
    Answer m_answer;
};

} // namespace opcua
