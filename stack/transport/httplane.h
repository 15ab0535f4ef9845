// One of the HTTP connections of a channel: socket, TLS session and pipeline.
#pragma once

#include <stack/core/httppipeline.h>
#include <stack/transport/eventloop.h>
#include <stack/transport/messagetransport.h>
#include <stack/transport/resolver.h>
#include <stack/transport/sendbuffer.h>
#include <stack/transport/sentstamps.h>
#include <stack/transport/tlssession.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace opcua {

/// What the connections of one channel know of their server.
struct HttpServer
{
    std::string host;
    std::string requestHead;
    size_t maxBodySize = 0;
    Milliseconds connectTimeout{0};
    SocketAddress address;
    std::shared_ptr<TlsContext> tls;
    Bytes certificate; ///< DER, as it was judged; no other is accepted
};

/// What came of a turn with the connections, to be told without the lock.
struct HttpOutcome
{
    struct Completion
    {
        std::shared_ptr<Call> call;
        OpcUa_StatusCode status = 0;
        Bytes body;
    };
    std::vector<Completion> completions;
    std::vector<std::string> remarks; ///< for the trace
    std::optional<OpcUa_StatusCode> lost;
    [[nodiscard]] bool empty() const { return completions.empty() && remarks.empty() && !lost; }
};

class HttpLane;

/// Whose lanes these are; called on the event loop's thread with no lock held.
class HttpLaneHost
{
public:
    virtual ~HttpLaneHost() = default;
    virtual void onLaneReady(HttpLane& lane, std::uint32_t epollEvents, MutableByteView scratch) = 0;
    virtual void onLaneTime(HttpLane& lane, TimePoint now) = 0;
};

/// Everything but the event handler's functions runs under the host's lock.
class HttpLane final : public EventHandler,
                       public std::enable_shared_from_this<HttpLane>,
                       private HttpPipelineListener
{
public:
    /// An unused connection beside another goes after this time.
    static constexpr std::chrono::seconds spareLife{30};

    /// outcome is the host's and outlives its lock.
    HttpLane(std::shared_ptr<const HttpServer> server, std::shared_ptr<EventLoop> loop,
             std::weak_ptr<HttpLaneHost> host, HttpOutcome& outcome);

    /// Takes a connection that is open already. False when the loop has no room.
    [[nodiscard]] bool adopt(UniqueFd socket, std::unique_ptr<TlsSession> session, TimePoint now);
    /// Begins to connect; requests may be sent at once, and fail with the connection.
    void open(TimePoint now);
    void send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline, TimePoint now);
    /// What the socket has to say.
    void onEvents(std::uint32_t epollEvents, MutableByteView scratch, TimePoint now);
    /// An unused connection may have been closed by the peer without the loop having come to it yet.
    void lookWhetherAlive(TimePoint now);
    void advance(TimePoint now);
    /// After each turn: writes, sets the timer, leaves the loop when ended. spare: not the only one.
    void settle(bool spare);
    /// Says goodbye; what waits fails with status.
    void close(OpcUa_StatusCode status);

    [[nodiscard]] HttpLaneLoad load(TimePoint now) const { return m_pipeline.load(now); }
    [[nodiscard]] size_t outstanding() const { return m_pipeline.outstanding(); }
    [[nodiscard]] size_t unsent() { return m_pipeline.output().size() + m_unsent.size(); }
    [[nodiscard]] bool isOpening() const
    {
        return m_phase == Phase::Connecting || m_phase == Phase::Handshake;
    }
    [[nodiscard]] bool hasEnded() const { return m_phase == Phase::Closed; }
    /// Why a connection that never opened has ended; Good otherwise.
    [[nodiscard]] OpcUa_StatusCode openFault() const { return m_openFault; }
    /// Whether it ended under requests that somebody waited for, without a word from the peer.
    [[nodiscard]] bool brokeUnderRequests() const { return m_brokeUnderRequests; }

    void onReady(std::uint32_t epollEvents, MutableByteView scratch) override;
    void onTime(TimePoint now) override;
    [[nodiscard]] TimePoint deadline() const override { return m_deadline; }

private:
    enum class Phase { Connecting, Handshake, Open, Closed };

    void onResponse(OpcUa_UInt32 requestId, Bytes&& body) override;
    void onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status, const std::string& reason) override;

    [[nodiscard]] bool join();
    void complete(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body);
    void finishConnect();
    void receive(MutableByteView scratch, TimePoint now);
    void takeBytes(ByteView bytes, TimePoint now);
    void checkPeer();
    void failOpening(OpcUa_StatusCode status);
    void streamEnded(OpcUa_StatusCode status);
    void flush();
    void leave();
    void setTimer(bool spare);

    const std::shared_ptr<const HttpServer> m_server;
    const std::shared_ptr<EventLoop> m_loop;
    const std::weak_ptr<HttpLaneHost> m_host;
    HttpOutcome& m_outcome;
    HttpPipeline m_pipeline;
    std::unordered_map<OpcUa_UInt32, std::shared_ptr<Call>> m_calls;
    Phase m_phase = Phase::Connecting;
    UniqueFd m_socket;
    std::unique_ptr<TlsSession> m_session;
    Bytes m_plain;
    SendBuffer m_unsent;
    SentStamps m_sentStamps; ///< of m_calls only
    bool m_watchingOutput = false;
    std::uint64_t m_key = 0;
    TimePoint m_begun{};
    TimePoint m_openDeadline = never;
    TimePoint m_closeIdleAt = never;
    OpcUa_StatusCode m_openFault = 0;
    bool m_brokeUnderRequests = false;
    std::atomic<TimePoint> m_deadline{never};
};

} // namespace opcua
