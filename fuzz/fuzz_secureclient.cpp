// A server with the right keys that says what it likes to a client, on a channel that is being opened, open
// or being renewed. The first byte chooses policy and mode, the second the pieces in which everything
// arrives; what follows are commands.
#include <stack/server/engineprobe.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/memorypipe.h>
#include <tests/protocol/sealingpeer.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace {

using namespace opcua;
using namespace opcua::test::sealing;
using opcua::test::MemoryPipe;

enum Command { Answer, Abort, OddChunk, Token, OddToken, Plain, Pass, Call, Jump, CommandCount };

constexpr size_t maxCommands = 48;
constexpr size_t maxOpens = 3; // each costs as much as a hundred messages
constexpr OpcUa_UInt32 channelId = 1;

ClientChannelConfig configOf(const Suite& suite)
{
    ClientChannelConfig config;
    config.limits = {8192, 8192, 20'000, 8};
    config.securityMode =
        suite.encrypts ? OpcUa_MessageSecurityMode_SignAndEncrypt : OpcUa_MessageSecurityMode_Sign;
    return config;
}

class Conversation
{
public:
    Conversation(const Suite& suite, Script& script)
        : m_script(script), m_slice(1 + size_t{script.byte()} * 8), m_peer(suite, true),
          m_pipe(configOf(suite), {}, std::make_unique<FixedNonces>(suite, false), makeSecurityPolicyNone())
    {
        m_pipe.start();
        m_pipe.client.output().clear();
        Bytes acknowledge;
        writeAcknowledge(acknowledge, {0, {}});
        m_pipe.toClient(acknowledge);
        noteOpenRequest();
    }

    void run()
    {
        for (size_t n = 0; n < maxCommands && !m_script.atEnd(); ++n) {
            step(static_cast<Command>(m_script.byte() % CommandCount));
            noteOpenRequest();
        }
        finish();
    }

private:
    void step(Command command)
    {
        switch (command) {
        case Answer:
        case Abort:
            return deliver(chunk(command == Abort ? ChunkType::Abort : ChunkType::Final, {}));
        case OddChunk:
            return deliver(oddChunk());
        case Token:
            return deliver(token());
        case OddToken:
            return deliver(oddToken());
        case Plain:
            return deliverPlain();
        case Pass:
            return m_pipe.pass(Milliseconds{m_script.number() % 4'000'000});
        case Call:
            return call();
        default:
            EngineProbe::continueFrom(m_peer.sequence(), m_script.number());
        }
    }
    void call()
    {
        const auto body = m_script.bytes();
        const OpcUa_UInt32 id = m_pipe.request(Bytes(body.begin(), body.end()), Milliseconds{600'000});
        if (id == 0)
            return;
        m_lastId = id;
        ++m_calls;
    }
    // The client numbers its requests in one row with those for tokens.
    void noteOpenRequest()
    {
        const Bytes& output = m_pipe.client.output();
        if (output.size() >= 4 && output[0] == 'O')
            m_openId = ++m_lastId;
        m_pipe.client.output().clear();
    }

    OpcUa_UInt32 requestId() { return m_lastId - m_script.byte() % 4; }
    Bytes chunk(ChunkType type, const Tail& tail)
    {
        const OpcUa_UInt32 id = requestId();
        return m_peer.message(MessageType::Message, type, m_token, channelId, m_tokenId, id, m_script.bytes(),
                              tail);
    }
    Bytes oddChunk()
    {
        const auto type = static_cast<ChunkType>(m_script.byte() % 3);
        const bool right = m_script.byte() % 2 == 0;
        return chunk(type, {right, m_script.bytes()});
    }
    Bytes token()
    {
        if (++m_opens > maxOpens)
            return {};
        const OpcUa_UInt32 id = m_tokenId + 1;
        Bytes body;
        const OpcUa_UInt32 lifetime = m_script.number();
        check(OpcUa_IsGood(
            encodeOpenResponse({0, m_openId, channelId, id, lifetime, m_peer.nonce(m_opened)}, body)));
        m_token = m_opened++;
        m_tokenId = id;
        return m_peer.open(channelId, m_openId, body);
    }
    // The input's own bytes in place of a response, or a response with a wrong part.
    Bytes oddToken()
    {
        if (++m_opens > maxOpens)
            return {};
        const OpcUa_Byte how = m_script.byte();
        const OpcUa_UInt32 channel = m_script.byte();
        if (how % 2 == 0) {
            const auto body = m_script.bytes();
            return m_peer.open(channel, m_openId, body, {how % 4 == 0, m_script.bytes()});
        }
        const auto nonce = m_script.bytes();
        Bytes body;
        check(OpcUa_IsGood(encodeOpenResponse(
            {0, 0, m_script.byte(), m_script.byte(), m_script.number(), {nonce.begin(), nonce.end()}},
            body)));
        return m_peer.open(channel, m_openId, body);
    }

    void deliver(Bytes frame)
    {
        if (frame.empty())
            return;
        const Delivery delivery = damaged(std::move(frame), m_script);
        m_pipe.toClient(delivery.bytes, m_slice);
        m_framed = m_framed && delivery.framed;
        check(!delivery.broken || !m_framed || m_pipe.client.state() == ClientChannel::State::Closed);
    }
    void deliverPlain()
    {
        const auto bytes = m_script.bytes();
        m_framed = false;
        m_pipe.toClient(Bytes(bytes.begin(), bytes.end()), m_slice);
    }
    void finish()
    {
        check(EngineProbe::bufferedBytes(m_pipe.client) <= 4 * 20'000);
        m_pipe.pass(Milliseconds{3'600'000});
        check(m_pipe.completions == m_calls);
        check(EngineProbe::pendingRequests(m_pipe.client) == 0);
        m_pipe.client.close();
        check(m_pipe.client.nextDeadline() == never);
        check(m_pipe.completions == m_calls);
    }

    Script& m_script;
    size_t m_slice;
    SealingPeer m_peer;
    MemoryPipe m_pipe;
    bool m_framed = true;
    int m_calls = 0;
    size_t m_opens = 0;
    unsigned m_opened = 0;
    unsigned m_token = 0;
    OpcUa_UInt32 m_tokenId = 0;
    OpcUa_UInt32 m_lastId = 0;
    OpcUa_UInt32 m_openId = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Script script({data, size});
    const Suite suite = suiteOf(script.byte());
    Conversation(suite, script).run();
    return 0;
}
