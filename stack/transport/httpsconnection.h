// The connection of a channel over HTTPS. HTTP answers in the order of the requests, so a Publish that waits
// for news would hold up every Read behind it: requests are spread over a few connections by how long a
// server may hold them back (see chooseLane). Ordinary calls share one, pipelined; publishing gets a second
// with the first Publish; a method call or a search of history has one to itself while it runs.
//
// The first connection is opened, and its certificate judged, when the channel connects. Later ones come and
// go with need: one that the peer closes while nothing is outstanding is no loss, and the next request opens
// another. One that breaks under requests fails these, none is sent again, and a new one is opened at once to
// see whether the server is still there. The channel is lost when that or any other cannot be opened.
#pragma once

#include <stack/transport/checkedmutex.h>
#include <stack/transport/dispatchorder.h>
#include <stack/transport/httplane.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace opcua {

class HttpsConnection final : public MessageTransport,
                              public HttpLaneHost,
                              public std::enable_shared_from_this<HttpsConnection>
{
public:
    static constexpr size_t maxPendingRequests = 16384;

    /// socket and session: connected, the server's certificate judged. lifetime (ms) is what the channel
    /// reports: there are no tokens to renew.
    HttpsConnection(HttpServer server, UniqueFd socket, std::unique_ptr<TlsSession> session,
                    OpcUa_UInt32 lifetime, std::shared_ptr<EventLoop> loop,
                    std::weak_ptr<ConnectionObserver> observer);

    [[nodiscard]] OpcUa_StatusCode start(TimePoint deadline) override;
    [[nodiscard]] OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                        bool mayWait) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override;

    void onLaneReady(HttpLane& lane, std::uint32_t epollEvents, MutableByteView scratch) override;
    void onLaneTime(HttpLane& lane, TimePoint now) override;

private:
    enum class State { Idle, Starting, Open, Lost, Closed };
    using LanePointer = std::shared_ptr<HttpLane>;

    /// Null when the channel is lost over it.
    [[nodiscard]] LanePointer laneForLocked(HttpPace pace, TimePoint now);
    [[nodiscard]] LanePointer openLaneLocked(TimePoint now);
    [[nodiscard]] size_t unsentLocked() const;
    [[nodiscard]] size_t outstandingLocked() const;
    void settleLocked(TimePoint now);
    void settleLanesLocked();
    void dropEndedLocked(TimePoint now);
    void endLocked(State state, OpcUa_StatusCode status);
    void settleAndDispatch(std::unique_lock<CheckedMutex>& lock, TimePoint now);
    void dispatch(HttpOutcome& outcome);
    template <typename Use>
    void guardedLocked(Use use);

    const std::shared_ptr<const HttpServer> m_server;
    const OpcUa_UInt32 m_lifetime;
    const std::shared_ptr<EventLoop> m_loop;
    const std::weak_ptr<ConnectionObserver> m_observer;
    mutable CheckedMutex m_mutex;
    CheckedCondition m_changed; ///< room to send, end of the connection
    DispatchOrder m_order{m_mutex};
    State m_state = State::Idle;
    UniqueFd m_firstSocket; ///< until start
    std::unique_ptr<TlsSession> m_firstSession;
    std::vector<LanePointer> m_lanes;
    HttpOutcome m_outcome;
};

} // namespace opcua
