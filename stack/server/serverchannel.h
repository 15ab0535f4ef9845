// The server's side of one secure channel as a pure protocol engine, the counterpart of ClientChannel. It
// serves tests and tools that need a peer with no network between.
#pragma once

#include <stack/core/channelengine.h>
#include <stack/server/servermessages.h>

#include <memory>
#include <string>
#include <string_view>

namespace opcua {

struct ServerChannelConfig
{
    ChannelLimits limits;
    OpcUa_UInt32 channelId = 1;
    OpcUa_UInt32 firstTokenId = 1;
    OpcUa_UInt32 minLifetime = 1000; ///< ms
    OpcUa_UInt32 maxLifetime = 3'600'000;
    OpcUa_DateTime (*utcNow)() = nullptr;
};

/// Told from inside the engine's functions.
class ServerChannelListener
{
public:
    virtual ~ServerChannelListener() = default;
    /// A whole request; it may be answered from inside.
    virtual void onRequest(OpcUa_UInt32 requestId, Bytes&& body) = 0;
    /// Good when the client closed in good order.
    virtual void onClosed(OpcUa_StatusCode status) = 0;
};

class ServerChannel final : public ChannelEngine
{
public:
    enum class State { AwaitHello, AwaitOpen, Open, Closed };

    ServerChannel(ServerChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
                  ServerChannelListener& listener);

    /// Answers a request; one that the client would not take becomes an abort with BadResponseTooLarge.
    /// BadConnectionClosed when the channel is not open.
    OpcUa_StatusCode respond(OpcUa_UInt32 requestId, ByteView body);
    OpcUa_StatusCode abort(OpcUa_UInt32 requestId, OpcUa_StatusCode status, std::string_view reason);
    /// Sends an Error message and ends the channel.
    void fail(OpcUa_StatusCode status, std::string_view reason = {});

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] const std::string& endpointUrl() const { return m_endpointUrl; }
    [[nodiscard]] OpcUa_UInt32 issuedTokens() const { return m_issuedTokens; }

private:
    [[nodiscard]] bool isListening() const override { return m_state != State::Closed; }
    void handleFrame(const Frame& frame, TimePoint now) override;
    void streamFailed(OpcUa_StatusCode status) override { fail(status); }
    void handleHello(const Frame& frame);
    void handleOpen(const Frame& frame, TimePoint now);
    void handleMessage(const Frame& frame, TimePoint now);
    void handleClose(const Frame& frame, TimePoint now);
    void issueToken(OpcUa_UInt32 requestId, const OpenRequest& request, TimePoint now);
    void ended(OpcUa_StatusCode status);

    ServerChannelConfig m_config;
    ServerChannelListener& m_listener;
    std::string m_endpointUrl;
    State m_state = State::AwaitHello;
    OpcUa_UInt32 m_issuedTokens = 0;
};

} // namespace opcua
