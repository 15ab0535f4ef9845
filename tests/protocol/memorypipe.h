// Both ends of a channel in one thread, with a clock that only tests move.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <stack/core/byteio.h>
#include <stack/core/clientchannel.h>
#include <stack/core/transportmessages.h>
#include <stack/server/engineprobe.h>
#include <stack/server/serverchannel.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace opcua::test {

inline constexpr size_t whole = static_cast<size_t>(-1);

inline Bytes pattern(size_t size, OpcUa_Byte seed = 1)
{
    Bytes bytes(size);
    for (size_t n = 0; n < size; ++n)
        bytes[n] = static_cast<OpcUa_Byte>(seed + n * 31 + n / 251);
    return bytes;
}

/// A chunk of a secure channel without protection, right or wrong.
struct RawChunk
{
    MessageType type = MessageType::Message;
    ChunkType chunk = ChunkType::Final;
    OpcUa_UInt32 channelId = 1;
    OpcUa_UInt32 tokenId = 1;
    OpcUa_UInt32 sequence = 0;
    OpcUa_UInt32 requestId = 0;
    Bytes body;

    [[nodiscard]] Bytes bytes() const
    {
        Bytes out;
        const size_t begin = beginFrame(out, type, chunk);
        for (const OpcUa_UInt32 number : {channelId, tokenId, sequence, requestId})
            appendUInt32(out, number);
        out.insert(out.end(), body.begin(), body.end());
        finishFrame(out, begin);
        return out;
    }
};

class MemoryPipe
{
    struct ClientSide final : ClientChannelListener
    {
        explicit ClientSide(MemoryPipe& owner) : pipe(owner) {}
        void onOpened(OpcUa_UInt32) override { ++pipe.opened; }
        void onRenewed(OpcUa_UInt32) override { ++pipe.renewed; }
        void onResponse(OpcUa_UInt32 id, Bytes&& body) override
        {
            ++pipe.completions;
            pipe.responses[id] = std::move(body);
        }
        void onRequestFailed(OpcUa_UInt32 id, OpcUa_StatusCode status) override
        {
            ++pipe.completions;
            pipe.failures[id] = status;
        }
        void onClosed(OpcUa_StatusCode status) override { pipe.clientClosed = status; }
        MemoryPipe& pipe;
    };
    struct ServerSide final : ServerChannelListener
    {
        explicit ServerSide(MemoryPipe& owner) : pipe(owner) {}
        void onRequest(OpcUa_UInt32 id, Bytes&& body) override
        {
            pipe.requests.push_back(body);
            pipe.onServerRequest(id, body);
        }
        void onClosed(OpcUa_StatusCode status) override { pipe.serverClosed = status; }
        MemoryPipe& pipe;
    };
    ClientSide m_clientSide{*this};
    ServerSide m_serverSide{*this};

public:
    using MakePolicy = std::unique_ptr<SecurityPolicy> (*)();
    explicit MemoryPipe(ClientChannelConfig clientConfig = {}, ServerChannelConfig serverConfig = {},
                        MakePolicy makePolicy = &makeSecurityPolicyNone)
        : MemoryPipe(std::move(clientConfig), serverConfig, makePolicy(), makePolicy())
    {
    }
    MemoryPipe(ClientChannelConfig clientConfig, ServerChannelConfig serverConfig,
               std::unique_ptr<SecurityPolicy> clientPolicy, std::unique_ptr<SecurityPolicy> serverPolicy)
        : client(withUrl(std::move(clientConfig)), std::move(clientPolicy), m_clientSide),
          server(serverConfig, std::move(serverPolicy), m_serverSide)
    {
        onServerRequest = [this](OpcUa_UInt32 id, const Bytes& body) { server.respond(id, body); };
    }

    void start(Milliseconds timeout = Milliseconds{10'000}) { client.start(now, now + timeout); }
    /// Hello to open channel.
    void open()
    {
        start();
        run();
    }

    /// Moves bytes until both sides are quiet, in pieces of at most slice bytes.
    void run(size_t slice = whole)
    {
        while (!client.output().empty() || !server.output().empty()) {
            toServer(std::exchange(client.output(), {}), slice);
            toClient(std::exchange(server.output(), {}), slice);
        }
    }
    void toClient(Bytes bytes, size_t slice = whole)
    {
        inPieces(
            bytes, slice, [this](MutableByteView piece) { client.receive(piece, now); });
    }
    void toServer(Bytes bytes, size_t slice = whole)
    {
        inPieces(
            bytes, slice, [this](MutableByteView piece) { server.receive(piece, now); });
    }
    void pass(Milliseconds time)
    {
        now += time;
        client.advance(now);
    }

    /// Queues a request with a second's patience; answers its id, or 0 with sendStatus set.
    OpcUa_UInt32 request(const Bytes& body, Milliseconds timeout = Milliseconds{1000})
    {
        OpcUa_UInt32 id = 0;
        sendStatus = client.send(body, now + timeout, id);
        return id;
    }
    OpcUa_UInt32 nextServerSequence() { return EngineProbe::sendSequence(server).next(); }
    /// The client's status of a request: what it failed with, Good when it was answered, nothing while it
    /// waits.
    [[nodiscard]] std::optional<OpcUa_StatusCode> statusOf(OpcUa_UInt32 id) const
    {
        if (failures.contains(id))
            return failures.at(id);
        if (responses.contains(id))
            return OpcUa_StatusCode{OpcUa_Good};
        return std::nullopt;
    }

    TimePoint now{std::chrono::hours(1)};
    ClientChannel client;
    ServerChannel server;
    std::function<void(OpcUa_UInt32, const Bytes&)> onServerRequest;

    OpcUa_StatusCode sendStatus = OpcUa_Good;
    std::map<OpcUa_UInt32, Bytes> responses;
    std::map<OpcUa_UInt32, OpcUa_StatusCode> failures;
    std::vector<Bytes> requests;
    int opened = 0;
    int renewed = 0;
    int completions = 0;
    std::optional<OpcUa_StatusCode> clientClosed;
    std::optional<OpcUa_StatusCode> serverClosed;

private:
    static ClientChannelConfig withUrl(ClientChannelConfig config)
    {
        if (config.endpointUrl.empty())
            config.endpointUrl = "opc.tcp://memory:4840/";
        return config;
    }
    template <typename Deliver>
    static void inPieces(Bytes& bytes, size_t slice, Deliver deliver)
    {
        MutableByteView rest = bytes;
        while (!rest.empty()) {
            const MutableByteView piece = rest.first(std::min(slice, rest.size()));
            rest = rest.subspan(piece.size());
            deliver(piece);
        }
    }
};

} // namespace opcua::test
