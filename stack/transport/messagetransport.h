// What a channel needs of the connection below it: one implementation for each transport profile.
#pragma once

#include <stack/core/protocol.h>

#include <memory>

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

// Carries encoded requests to one server and their answers back. Any thread.
class MessageTransport
{
public:
    // More bytes than this waiting for the socket hold up or refuse further requests.
    static constexpr size_t maxUnsentBytes = 4u * 1024 * 1024;

    virtual ~MessageTransport() = default;

    // Begins to open. Good: the observer's onOpened or onLost follows, by the deadline; or
    // BadResourceUnavailable when the loop has no room.
    [[nodiscard]] virtual OpcUa_StatusCode start(TimePoint deadline) = 0;
    // Good: call completes, at the deadline at the latest. Otherwise it never will. When the peer does not
    // take what was sent before, mayWait waits for that until the deadline (BadTimeout), else
    // BadResourceUnavailable.
    [[nodiscard]] virtual OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                                bool mayWait) = 0;
    // Closes in good order. When it returns, every call has completed and no observer call runs or will.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
};

} // namespace opcua
