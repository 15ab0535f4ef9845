// What a channel needs of the connection below it: one implementation for each transport profile.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/protocol.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace opcua {

/// Waits for one answer.
class Call
{
public:
    /// measure may be null. It is written from when the transport has the call until complete begins, under
    /// the transport's lock.
    explicit Call(OpcUa_CallMeasure* measure) : m_measure(measure) {}
    virtual ~Call() = default;
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    /// Exactly once, on any thread, with no lock of the stack held; must neither block nor throw.
    virtual void complete(OpcUa_StatusCode status, Bytes&& body) noexcept = 0;
    [[nodiscard]] OpcUa_CallMeasure* measure() const { return m_measure; }

private:
    OpcUa_CallMeasure* const m_measure;
};

/// A call whose caller waits for the answer.
class AwaitedCall final : public Call
{
public:
    using Call::Call;
    void complete(OpcUa_StatusCode status, Bytes&& body) noexcept override;
    [[nodiscard]] bool isDone() const { return m_done.load(std::memory_order_acquire); }
    /// Blocks until the call is complete; hands its body out.
    [[nodiscard]] OpcUa_StatusCode wait(Bytes& body);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::atomic<bool> m_done{false};
    OpcUa_StatusCode m_status = 0;
    Bytes m_body;
};

/// Hears of a connection's life; rules as for Call. Events come in order.
class ConnectionObserver
{
public:
    virtual ~ConnectionObserver() = default;
    virtual void onOpened(OpcUa_UInt32 revisedLifetime) = 0;
    virtual void onRenewed() = 0;
    virtual void onLost(OpcUa_StatusCode status) = 0; ///< not after close
};

/// Carries encoded requests to one server and their answers back. Any thread.
class MessageTransport
{
public:
    /// More bytes than this waiting for the socket hold up or refuse further requests.
    static constexpr size_t maxUnsentBytes = 4u * 1024 * 1024;

    virtual ~MessageTransport() = default;

    /// Begins to open. Good: the observer's onOpened or onLost follows, by the deadline; or
    /// BadResourceUnavailable when the loop has no room.
    [[nodiscard]] virtual OpcUa_StatusCode start(TimePoint deadline) = 0;
    /// Good: call completes, at the deadline at the latest. Otherwise it never will. When the peer does not
    /// take what was sent before, mayWait waits for that until the deadline (BadTimeout), else
    /// BadResourceUnavailable.
    [[nodiscard]] virtual OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                                bool mayWait) = 0;
    /// As send with mayWait, by a caller who has nothing else to do until the answer is there: a transport
    /// may use his thread to fetch it, which saves waking one thread with another. Good: call is complete, or
    /// is being completed by another thread.
    [[nodiscard]] virtual OpcUa_StatusCode fetch(const std::shared_ptr<AwaitedCall>& call, ByteView body,
                                                 TimePoint deadline)
    {
        return send(call, body, deadline, true);
    }
    /// Sends what send has kept back for a moment, so that several requests leave in one go.
    virtual void flush() {}
    /// Closes in good order. When it returns, every call has completed and no observer call runs or will.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
};

} // namespace opcua
