// One TCP connection with the channel engine on it: moves bytes between socket and engine, and answers to
// calls.
#pragma once

#include <stack/core/clientchannel.h>
#include <stack/transport/checkedmutex.h>
#include <stack/transport/dispatchorder.h>
#include <stack/transport/eventloop.h>
#include <stack/transport/keylog.h>
#include <stack/transport/messagetransport.h>
#include <stack/transport/sendbuffer.h>
#include <stack/transport/sentstamps.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace opcua {

/// Threads: the engine is used under this object's mutex. A caller's thread puts a request into the engine
/// and writes what the socket takes; the rest is the event loop's. What arrives is read by one thread at a
/// time: by a caller who waits for his answer, the first of those that wait, or by the event loop when nobody
/// does. Completions and events are dispatched as DispatchOrder says.
class Connection final : public MessageTransport,
                         public EventHandler,
                         public std::enable_shared_from_this<Connection>,
                         private ClientChannelListener
{
public:
    Connection(UniqueFd socket, ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
               std::shared_ptr<EventLoop> loop, std::weak_ptr<ConnectionObserver> observer,
               std::shared_ptr<KeyLog> keyLog = nullptr);

    [[nodiscard]] OpcUa_StatusCode start(TimePoint deadline) override;
    [[nodiscard]] OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                        bool mayWait) override;
    [[nodiscard]] OpcUa_StatusCode fetch(const std::shared_ptr<AwaitedCall>& call, ByteView body,
                                         TimePoint deadline) override;
    void flush() override;
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
    /// What one use of the engine brought about, to be dispatched without the lock.
    struct Outcome
    {
        std::vector<Completion> completions;
        /// Those that the engine had no memory left to speak of.
        std::unordered_map<OpcUa_UInt32, std::shared_ptr<Call>> orphans;
        std::optional<OpcUa_UInt32> opened;
        bool renewed = false;
        std::optional<OpcUa_StatusCode> lost;
        std::string reason;   ///< the peer's words for a loss
        std::string keyLines; ///< of a new token; comes with opened or renewed
        [[nodiscard]] bool empty() const
        {
            return completions.empty() && orphans.empty() && !opened && !renewed && !lost;
        }
    };

    class Reading;

    void onOpened(OpcUa_UInt32 revisedLifetime) override;
    void onRenewed(OpcUa_UInt32 revisedLifetime) override;
    void onTokenKeys(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys) override;
    void onResponse(OpcUa_UInt32 requestId, Bytes&& body) override;
    void onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status) override;
    void onClosed(OpcUa_StatusCode status) override;

    [[nodiscard]] OpcUa_StatusCode enqueueLocked(std::unique_lock<CheckedMutex>& lock,
                                                 std::shared_ptr<Call> call, ByteView body,
                                                 TimePoint deadline, bool mayWait);
    void measureLocked(OpcUa_CallMeasure& measure, OpcUa_UInt32 requestId, size_t outputBefore);
    [[nodiscard]] bool delayFlushLocked();
    void readFor(const AwaitedCall& call, TimePoint deadline);
    void completeLocked(OpcUa_UInt32 requestId, OpcUa_StatusCode status, Bytes&& body);
    void receiveLocked(MutableByteView scratch);
    void advanceLocked(TimePoint now);
    template <typename Use>
    void guardedLocked(Use use);
    void endWithoutMemoryLocked();
    void settleLocked();
    void flushLocked();
    void watchLocked();
    void leaveLoopLocked();
    void settleAndDispatch(std::unique_lock<CheckedMutex>& lock);
    void dispatch(Outcome& outcome);

    const std::shared_ptr<EventLoop> m_loop;
    const std::weak_ptr<ConnectionObserver> m_observer;
    const std::shared_ptr<KeyLog> m_keyLog; ///< null: keys are nobody's business
    mutable CheckedMutex m_mutex;
    CheckedCondition m_changed; ///< room to send, end of the channel, a caller who has read
    DispatchOrder m_order{m_mutex};
    UniqueFd m_socket;
    ClientChannel m_engine;
    std::unordered_map<OpcUa_UInt32, std::shared_ptr<Call>> m_calls;
    Outcome m_outcome;
    SendBuffer m_unsent;
    SentStamps m_sentStamps;    ///< of m_calls only
    bool m_sendBlocked = false; ///< the socket is full
    bool m_watchingOutput = false;
    bool m_watchingInput = true;
    bool m_callerReads = false;
    UniqueFd m_closingSocket; ///< of a closed connection, until the caller who reads has noticed
    Bytes m_callerScratch;    ///< what the caller who reads reads into
    std::uint64_t m_key = 0;
    std::atomic<TimePoint> m_deadline{never};
};

} // namespace opcua
