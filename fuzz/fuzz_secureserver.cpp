// A client with the right keys that says what it likes to the server's role of a channel. The first byte
// chooses policy and mode, the second the pieces in which everything arrives; what follows are commands.
#include <stack/server/engineprobe.h>
#include <tests/protocol/memorypipe.h>
#include <tests/protocol/sealingpeer.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace {

using namespace opcua;
using namespace opcua::test::sealing;
using opcua::test::MemoryPipe;

enum Command { Request, OddChunk, Token, OddToken, Close, Plain, Pass, Jump, CommandCount };

constexpr size_t maxCommands = 48;
constexpr size_t maxOpens = 3;
constexpr OpcUa_UInt32 channelId = 1;
constexpr size_t maxMessage = 20'000;

ServerChannelConfig smallLimits()
{
    ServerChannelConfig config;
    config.limits = {8192, 8192, maxMessage, 8};
    return config;
}

class Conversation
{
public:
    Conversation(const Suite& suite, Script& script)
        : m_script(script), m_slice(1 + size_t{script.byte()} * 8), m_peer(suite, false),
          m_pipe({}, smallLimits(), makeSecurityPolicyNone(), std::make_unique<FixedNonces>(suite, true)),
          m_mode(suite.encrypts ? OpcUa_MessageSecurityMode_SignAndEncrypt : OpcUa_MessageSecurityMode_Sign)
    {
        m_pipe.onServerRequest = [this](OpcUa_UInt32 id, const Bytes& body) {
            static_cast<void>(m_pipe.server.respond(id, body));
        };
        Bytes hello;
        writeHello(hello, {0, {}, "opc.tcp://fuzz"});
        m_pipe.toServer(hello);
    }

    void run()
    {
        for (size_t n = 0; n < maxCommands && !m_script.atEnd(); ++n) {
            step(static_cast<Command>(m_script.byte() % CommandCount));
            m_pipe.server.output().clear();
        }
        check(EngineProbe::bufferedBytes(m_pipe.server) <= 4 * maxMessage);
        check(m_pipe.requests.size() <= m_whole);
        check(m_pipe.serverClosed.has_value() == (m_pipe.server.state() == ServerChannel::State::Closed));
    }

private:
    void step(Command command)
    {
        switch (command) {
        case Request:
            return deliver(chunk(MessageType::Message, ChunkType::Final, {}));
        case OddChunk:
            return deliver(oddChunk());
        case Token:
            return deliver(token());
        case OddToken:
            return deliver(oddToken());
        case Close:
            return deliver(chunk(MessageType::Close, ChunkType::Final, {}));
        case Plain:
            return deliverPlain();
        case Pass:
            m_pipe.now += Milliseconds{m_script.number() % 4'000'000};
            return;
        default:
            EngineProbe::continueFrom(m_peer.sequence(), m_script.number());
        }
    }

    Bytes chunk(MessageType type, ChunkType kind, const Tail& tail)
    {
        m_whole += kind == ChunkType::Final;
        const OpcUa_UInt32 requestId = m_script.byte();
        return m_peer.message(type, kind, m_token, channelId, m_token + 1, requestId, m_script.bytes(), tail);
    }
    Bytes oddChunk()
    {
        const auto kind = static_cast<ChunkType>(m_script.byte() % 3);
        const bool right = m_script.byte() % 2 == 0;
        return chunk(MessageType::Message, kind, {right, m_script.bytes()});
    }
    Bytes token()
    {
        if (m_opens >= maxOpens)
            return {};
        OpenRequest request;
        request.type =
            m_opens == 0 ? OpcUa_SecurityTokenRequestType_Issue : OpcUa_SecurityTokenRequestType_Renew;
        request.mode = m_mode;
        request.requestedLifetime = m_script.number();
        request.nonce = m_peer.nonce(static_cast<unsigned>(m_opens));
        Bytes body;
        check(OpcUa_IsGood(encodeOpenRequest(request, body)));
        m_token = static_cast<unsigned>(m_opens);
        return m_peer.open(m_opens++ == 0 ? 0 : channelId, m_script.byte(), body);
    }
    Bytes oddToken()
    {
        if (m_opens >= maxOpens)
            return {};
        ++m_opens;
        const OpcUa_Byte how = m_script.byte();
        const OpcUa_UInt32 channel = m_script.byte();
        const OpcUa_UInt32 requestId = m_script.byte();
        const auto bytes = m_script.bytes();
        if (how % 2 == 0)
            return m_peer.open(channel, requestId, bytes, {how % 4 == 0, m_script.bytes()});
        OpenRequest request;
        request.type = static_cast<OpcUa_SecurityTokenRequestType>(m_script.byte());
        request.mode = static_cast<OpcUa_MessageSecurityMode>(m_script.byte());
        request.nonce.assign(bytes.begin(), bytes.end());
        Bytes body;
        check(OpcUa_IsGood(encodeOpenRequest(request, body)));
        return m_peer.open(channel, requestId, body);
    }

    void deliver(Bytes frame)
    {
        if (frame.empty())
            return;
        const Delivery delivery = damaged(std::move(frame), m_script);
        m_pipe.toServer(delivery.bytes, m_slice);
        m_framed = m_framed && delivery.framed;
        check(!delivery.broken || !m_framed || m_pipe.server.state() == ServerChannel::State::Closed);
    }
    void deliverPlain()
    {
        const auto bytes = m_script.bytes();
        m_framed = false;
        m_pipe.toServer(Bytes(bytes.begin(), bytes.end()), m_slice);
    }

    Script& m_script;
    size_t m_slice;
    SealingPeer m_peer;
    MemoryPipe m_pipe;
    OpcUa_MessageSecurityMode m_mode;
    bool m_framed = true;
    size_t m_whole = 0; // requests that may have come through
    size_t m_opens = 0;
    unsigned m_token = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Script script({data, size});
    const Suite suite = suiteOf(script.byte());
    Conversation(suite, script).run();
    return 0;
}
