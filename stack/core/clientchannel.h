// The client's side of one secure channel as a pure protocol engine: bytes and a time in; bytes, events and
// the next deadline out. No sockets, threads, clocks or log inside. One thread at a time.
#pragma once

#include <stack/core/channelengine.h>
#include <stack/core/openmessages.h>
#include <stack/core/requesttable.h>

#include <cstdint>
#include <memory>
#include <string>

namespace opcua {

struct ClientChannelConfig
{
    ChannelLimits limits;
    std::string endpointUrl; ///< as it goes into Hello; at most 4,096 bytes
    OpcUa_MessageSecurityMode securityMode = OpcUa_MessageSecurityMode_None;
    OpcUa_UInt32 requestedLifetime = 3'600'000; ///< ms
    size_t maxPendingRequests = 16384;
    OpcUa_DateTime (*utcNow)() = nullptr; ///< for the time stamps of own requests; null leaves them empty
    bool tellsKeys = false;               ///< whether onTokenKeys is wanted
};

/// Told from inside the engine's functions; must not call back into the engine.
class ClientChannelListener
{
public:
    virtual ~ClientChannelListener() = default;
    virtual void onOpened(OpcUa_UInt32 revisedLifetime) = 0; ///< ms
    virtual void onRenewed(OpcUa_UInt32 revisedLifetime) = 0;
    /// A token came into use under a policy that has keys; before onOpened or onRenewed.
    virtual void onTokenKeys(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys)
    {
        static_cast<void>(channelId);
        static_cast<void>(tokenId);
        static_cast<void>(keys);
    }
    /// Exactly one of the next two for each request that send accepted.
    virtual void onResponse(OpcUa_UInt32 requestId, Bytes&& body) = 0;
    virtual void onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status) = 0;
    /// The channel ended otherwise than by close; comes after the failures of all requests.
    virtual void onClosed(OpcUa_StatusCode status) = 0;
};

class ClientChannel final : public ChannelEngine
{
public:
    enum class State { Idle, HelloSent, Opening, Open, Closed };

    ClientChannel(ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
                  ClientChannelListener& listener);

    /// Says Hello. The channel must be open by the deadline, whatever trickles in, or it closes with
    /// BadTimeout.
    void start(TimePoint now, TimePoint deadline);
    /// The peer ended the stream, or it broke.
    void streamEnded(OpcUa_StatusCode status);
    /// To be called when nextDeadline is reached; harmless at other times.
    void advance(TimePoint now);
    [[nodiscard]] TimePoint nextDeadline() const;

    /// Queues a request. Good: requestId is set and one completion follows, BadTimeout at the deadline.
    /// BadConnectionClosed, BadRequestTooLarge, BadTooManyOperations, BadEncodingError: nothing was queued.
    [[nodiscard]] OpcUa_StatusCode send(ByteView body, TimePoint deadline, OpcUa_UInt32& requestId);
    /// Notes in the record what comes of the answer to a request that send has just accepted, until its
    /// completion.
    void measure(OpcUa_UInt32 requestId, OpcUa_CallMeasure& measure)
    {
        m_requests.measure(requestId, measure);
    }
    /// Closes in good order; requests fail with BadConnectionClosed. No onClosed follows.
    void close();

    [[nodiscard]] State state() const { return m_state; }
    /// The peer's words when it ended the channel with an error; untrusted text.
    [[nodiscard]] const std::string& peerReason() const { return m_peerReason; }

private:
    friend class EngineProbe; // for tests

    [[nodiscard]] bool isListening() const override;
    void handleFrame(const Frame& frame, TimePoint now) override;
    void streamFailed(OpcUa_StatusCode status) override { fail(status); }
    void handleAcknowledge(const Frame& frame, TimePoint now);
    void handleError(const Frame& frame);
    void handleOpen(const Frame& frame, TimePoint now);
    void handleMessage(const Frame& frame, TimePoint now);
    void handleUnawaited(const Chunk& chunk);
    void handleAbort(const Chunk& chunk);

    void requestToken(OpcUa_SecurityTokenRequestType type, TimePoint now, TimePoint deadline);
    [[nodiscard]] bool installToken(const OpenResponse& response, OpcUa_UInt32 headerChannelId,
                                    TimePoint now);
    void tellKeys(const OpenResponse& response);
    void renew(TimePoint now);
    void expireRequests(TimePoint now);
    void failRequests(OpcUa_StatusCode status);
    void fail(OpcUa_StatusCode status);
    [[nodiscard]] OpcUa_DateTime utcNow() const { return m_config.utcNow ? m_config.utcNow() : 0; }

    ClientChannelConfig m_config;
    ClientChannelListener& m_listener;
    RequestTable m_requests;
    State m_state = State::Idle;
    OpcUa_UInt32 m_openRequestId = 0; ///< of the Open request that waits for its answer; 0 for none
    Bytes m_openNonce;
    TimePoint m_openDeadline = never; ///< of connect, later of the renewal that is under way
    TimePoint m_renewAt = never;
    TimePoint m_tokenEnds = never; ///< not used for sending from then on
    std::uint64_t m_givenUp = 0;   ///< requests that ended at their deadline
    std::uint64_t m_dropped = 0;   ///< answers that came to them later
    std::string m_peerReason;
};

} // namespace opcua
