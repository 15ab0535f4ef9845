// One TCP connection with the channel engine on it: moves bytes between socket and engine, and answers to
// calls.
#pragma once

#include "eventloop.h"
#include "messagetransport.h"

#include <stack/core/clientchannel.h>

#include <condition_variable>

namespace opcua {

// Threads: the engine is used under this object's mutex. A caller's thread puts a request into the engine and
// writes what the socket takes; the rest, and everything that arrives, is the event loop's. Nothing ties
// reading to the loop's thread, so that a caller who waits alone could do it too.
class Connection final : public MessageTransport,
                         public EventHandler,
                         public std::enable_shared_from_this<Connection>,
                         private ClientChannelListener
{
public:
    Connection(UniqueFd socket, ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
               std::shared_ptr<EventLoop> loop, std::weak_ptr<ConnectionObserver> observer);

    [[nodiscard]] OpcUa_StatusCode start(TimePoint deadline) override;
    [[nodiscard]] OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                        bool mayWait) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override;

    void onReady(std::uint32_t epollEvents, MutableByteView scratch) override;
    void onTime(TimePoint now) override;
    [[nodiscard]] TimePoint deadline() const override;

private:
    struct Completion
    {
        std::shared_ptr<Call> call;
        OpcUa_StatusCode status = 0;
        Bytes body;
    };
    // What came of one turn with the engine, to be told without the lock.
    struct Outcome
    {
        std::vector<Completion> completions;
        std::optional<OpcUa_UInt32> opened;
        bool renewed = false;
        std::optional<OpcUa_StatusCode> lost;
        std::string reason; // the peer's words for a loss
        [[nodiscard]] bool empty() const { return completions.empty() && !opened && !renewed && !lost; }
    };

    void onOpened(OpcUa_UInt32 revisedLifetime) override;
    void onRenewed(OpcUa_UInt32 revisedLifetime) override;
    void onResponse(OpcUa_UInt32 requestId, Bytes&& body) override;
    void onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status) override;
    void onClosed(OpcUa_StatusCode status) override;

    void completeLocked(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body);
    void receiveLocked(MutableByteView scratch);
    void settleLocked();
    void flushLocked();
    void dropSentLocked();
    void leaveLoopLocked();
    void settleAndTell(std::unique_lock<std::mutex>& lock);
    void tell(Outcome& outcome);

    const std::shared_ptr<EventLoop> m_loop;
    const std::weak_ptr<ConnectionObserver> m_observer;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed; // room to send, end of the channel, nothing being told
    UniqueFd m_socket;
    ClientChannel m_engine;
    std::unordered_map<OpcUa_UInt32, std::shared_ptr<Call>> m_calls;
    Outcome m_outcome;
    Bytes m_unsent;
    size_t m_sentOfUnsent = 0;
    bool m_watchingOutput = false;
    bool m_writeBroken = false;
    int m_telling = 0;
    std::uint64_t m_key = 0;
    std::atomic<TimePoint> m_deadline{never};
};

} // namespace opcua
