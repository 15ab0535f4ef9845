// One TCP connection with the channel engine on it: moves bytes between socket and engine, and answers to
// calls.
#pragma once

#include "eventloop.h"
#include "keylog.h"

#include <stack/core/clientchannel.h>

#include <condition_variable>

namespace opcua {

// Waits for one answer.
class Call
{
public:
    virtual ~Call() = default;
    // Exactly once, on any thread, with no lock of the stack held; must neither block nor throw.
    virtual void complete(OpcUa_StatusCode status, Bytes&& body) noexcept = 0;
};

// Hears of a connection's life; rules as for Call. Events come in order.
class ConnectionObserver
{
public:
    virtual ~ConnectionObserver() = default;
    virtual void onOpened(OpcUa_UInt32 revisedLifetime) = 0;
    virtual void onRenewed() = 0;
    virtual void onLost(OpcUa_StatusCode status) = 0; // not after close
};

// Threads: the engine is used under this object's mutex. A caller's thread puts a request into the engine and
// writes what the socket takes; the rest, and everything that arrives, is the event loop's. Nothing ties
// reading to the loop's thread, so that a caller who waits alone could do it too.
class Connection final : public EventHandler,
                         public std::enable_shared_from_this<Connection>,
                         private ClientChannelListener
{
public:
    // More bytes than this waiting for the socket hold up or refuse further requests.
    static constexpr size_t maxUnsentBytes = 4u * 1024 * 1024;

    Connection(UniqueFd socket, ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
               std::shared_ptr<EventLoop> loop, std::weak_ptr<ConnectionObserver> observer,
               std::shared_ptr<KeyLog> keyLog = nullptr);

    // Begins to open the channel. Good, or BadResourceUnavailable when the loop has no room.
    [[nodiscard]] OpcUa_StatusCode start(TimePoint deadline);
    // Good: call completes, at the deadline at the latest. Otherwise it never will. When the peer does not
    // take what was sent before, mayWait waits for that until the deadline (BadTimeout), else
    // BadResourceUnavailable.
    [[nodiscard]] OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                        bool mayWait);
    // Closes in good order. When it returns, every call has completed and no observer call runs or will.
    void close();
    [[nodiscard]] bool isOpen() const;

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
        std::string reason;   // the peer's words for a loss
        std::string keyLines; // of a new token; comes with opened or renewed
        [[nodiscard]] bool empty() const { return completions.empty() && !opened && !renewed && !lost; }
    };

    void onOpened(OpcUa_UInt32 revisedLifetime) override;
    void onRenewed(OpcUa_UInt32 revisedLifetime) override;
    void onTokenKeys(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys) override;
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
    const std::shared_ptr<KeyLog> m_keyLog; // null: keys are nobody's business
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
