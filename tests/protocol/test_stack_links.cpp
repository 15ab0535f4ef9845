// Links that come and go: what stays behind of them, by which addresses they are made, and what a peer that
// breaks the rules of a secured channel leaves in the trace.
#include <stack/core/openmessages.h>
#include <stack/core/transportmessages.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/channelfixture.h>
#include <tests/protocol/sealingpeer.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <malloc.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace opcua::test {
namespace {

// The certificates and the key of a client, as the C interface takes them.
struct ClientMaterial
{
    explicit ClientMaterial(Channel& channel, const char* policyUri)
    {
        channel.info.SecurityPolicyUri = policyUri;
        channel.info.SecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
        channel.info.ClientCertificate = &views[0];
        channel.info.ClientPrivateKey = &views[1];
        channel.info.ServerCertificate = &views[2];
    }
    static OpcUa_ByteString viewOf(const Bytes& bytes)
    {
        return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
    }
    const Bytes certificate = sealing::fromHex(sealing::clientCertificate);
    const Bytes key = sealing::fromHex(sealing::clientKey);
    const Bytes server = sealing::fromHex(sealing::serverCertificate);
    const OpcUa_ByteString views[3] = {viewOf(certificate), viewOf(key), viewOf(server)};
};

std::unique_ptr<SecurityPolicy> serverPolicy(const char* uri)
{
    return std::make_unique<RsaSecurityPolicy>(
        *findPolicyProfile(uri), true, sealing::identity(true).certificate->der(),
        sealing::identity(true).certificate, sealing::identity(true).key,
        sealing::identity(false).certificate);
}

LoopbackPeer::Script servingSecured(const char* uri)
{
    return [uri](PeerSocket& socket) { PeerServer(answerAtOnce, {}, serverPolicy(uri)).serve(socket); };
}

// ---- growth

struct Usage
{
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t heap = 0;     // bytes in use
    std::ptrdiff_t resident = 0; // bytes

    static Usage now()
    {
        Usage usage;
        usage.descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
        usage.threads = std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
        usage.heap = static_cast<std::ptrdiff_t>(::mallinfo2().uordblks);
        std::ifstream statm("/proc/self/statm");
        statm >> usage.resident >> usage.resident;
        usage.resident *= 4096;
        return usage;
    }
};

int wantedRounds()
{
    const char* const text = std::getenv("TAVELIN_RECONNECTS");
    return text != nullptr ? std::atoi(text) : 300;
}

void reconnect(Channel& channel, const LoopbackPeer& peer, int rounds)
{
    for (int n = 0; n < rounds; ++n) {
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        ASSERT_EQ(channel.call(), OpcUa_Good);
        ASSERT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    }
}

// Plain and secured in turn, with events, for it is the callback thread that comes and goes with a link.
TEST_F(StackTransport, ReconnectsWithoutGrowth)
{
    const int rounds = wantedRounds();
    LoopbackPeer plainPeer(serving(answerAtOnce));
    LoopbackPeer securedPeer(servingSecured(OpcUa_SecurityPolicy_Basic256));
    Channel plain;
    Channel secured;
    const ClientMaterial material(secured, OpcUa_SecurityPolicy_Basic256);
    for (Channel* const channel : {&plain, &secured})
        channel->listen([](OpcUa_Channel_Event, OpcUa_StatusCode) {});
    const auto run = [&](int count) {
        reconnect(plain, plainPeer, count - count / 10);
        reconnect(secured, securedPeer, count / 10);
        plainPeer.waitUntilIdle();
        securedPeer.waitUntilIdle();
    };
    run(std::max(50, rounds / 10));
    const Usage before = Usage::now();
    run(rounds);
    const Usage after = Usage::now();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
    // less than the smallest block a round; below that it is what threads keep at hand
    EXPECT_LE(after.heap - before.heap, std::max(64 * 1024, rounds * 24));
    if (rounds >= 10'000) // fewer say nothing, and sanitizers keep what was freed
        EXPECT_LE(after.resident - before.resident, 2 * 1024 * 1024);
    std::printf("%d reconnects: %td descriptors, %td threads, %td bytes of heap, %td bytes resident more\n",
                rounds, after.descriptors - before.descriptors, after.threads - before.threads,
                after.heap - before.heap, after.resident - before.resident);
}

// ---- addresses

TEST_F(StackTransport, ConnectsToAnIpv6Address)
{
    std::unique_ptr<LoopbackPeer> peer;
    try {
        peer = std::make_unique<LoopbackPeer>(serving(answerAtOnce), AF_INET6);
    } catch (const std::runtime_error&) {
        GTEST_SKIP() << "this system has no IPv6";
    }
    Channel channel;
    EXPECT_EQ(channel.connect(peer->url("[::1]")), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

// ---- unsafe policies and hostile servers

TEST_F(StackTransport, Basic128Rsa15IsSpokenOnlyWhenAskedFor)
{
    LoopbackPeer peer(servingSecured(OpcUa_SecurityPolicy_Basic128Rsa15));
    Channel channel;
    const ClientMaterial material(channel, OpcUa_SecurityPolicy_Basic128Rsa15);
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityPolicyRejected);
    channel.info.AllowBasic128Rsa15 = OpcUa_True;
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

// A server that answers Open with what it likes.
LoopbackPeer::Script answeringOpen(const std::function<Bytes(sealing::SealingPeer&)>& answer)
{
    return [answer](PeerSocket& socket) {
        Bytes bytes;
        socket.read(bytes);
        Bytes acknowledge;
        writeAcknowledge(acknowledge, {0, {}});
        socket.write(acknowledge);
        socket.read(bytes);
        sealing::SealingPeer peer({*findPolicyProfile(OpcUa_SecurityPolicy_Basic256), true}, true);
        socket.write(answer(peer));
        socket.stayUntilClosed();
    };
}

std::vector<std::string> traceOfConnect(const LoopbackPeer::Script& script)
{
    Mailbox<std::string> lines;
    OpcUa_Trace_SetHook([](OpcUa_UInt32, const char* text,
                           void* context) { static_cast<Mailbox<std::string>*>(context)->put(text); },
                        &lines);
    EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_ALL), OpcUa_Good);
    std::string port;
    {
        LoopbackPeer peer(script);
        port = std::to_string(peer.port());
        Channel channel;
        const ClientMaterial material(channel, OpcUa_SecurityPolicy_Basic256);
        EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityChecksFailed);
    }
    OpcUa_Trace_SetHook(nullptr, nullptr);
    EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_NONE), OpcUa_Good);
    std::vector<std::string> all = lines.values();
    for (std::string& line : all)
        for (size_t at = line.find(port); at != std::string::npos; at = line.find(port, at))
            line.replace(at, port.size(), "PORT");
    return all;
}

TEST_F(StackTransport, TheTraceDoesNotTellWhatWasWrongWithASealedAnswer)
{
    const auto body = [](sealing::SealingPeer& peer) {
        Bytes bytes;
        EXPECT_EQ(encodeOpenResponse({0, 0, 1, 1, 3'600'000, peer.nonce(0)}, bytes), OpcUa_Good);
        return bytes;
    };
    static const Bytes lie{1, 2, 0xF0};
    const auto ofSignature = traceOfConnect(answeringOpen([&](sealing::SealingPeer& peer) {
        return peer.open(1, 1, body(peer), {true, {}, false});
    }));
    const auto ofPadding = traceOfConnect(answeringOpen([&](sealing::SealingPeer& peer) {
        return peer.open(1, 1, body(peer), {false, lie});
    }));
    const auto ofCipher = traceOfConnect(answeringOpen([&](sealing::SealingPeer& peer) {
        Bytes frame = peer.open(1, 1, body(peer));
        frame.back() ^= 1;
        return frame;
    }));
    const auto ofSequence = traceOfConnect(answeringOpen([&](sealing::SealingPeer& peer) {
        return peer.open(1, 2, body(peer)); // of another request
    }));
    EXPECT_FALSE(ofSignature.empty());
    EXPECT_EQ(ofPadding, ofSignature);
    EXPECT_EQ(ofCipher, ofSignature);
    EXPECT_EQ(ofSequence, ofSignature);
}

} // namespace
} // namespace opcua::test
