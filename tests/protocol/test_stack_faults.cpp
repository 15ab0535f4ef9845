// Secured channels under faults that need the right keys to be made, and streams that end anywhere.
#include <stack/server/engineprobe.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/sealingpeer.h>
#include <tests/protocol/securepipe.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace opcua::test {
namespace {

// ---- streams that end anywhere

// A conversation (hello, open, one call) whose stream to the client ends after so many bytes. Answers how
// many there would have been.
size_t converse(MemoryPipe& pipe, size_t bytesToClient)
{
    size_t produced = 0;
    bool ended = false;
    pipe.start();
    for (int turn = 0; turn < 3; ++turn) {
        if (turn == 2 && pipe.opened == 1)
            pipe.request(pattern(40));
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        Bytes answer = std::exchange(pipe.server.output(), {});
        const size_t left = bytesToClient - std::min(bytesToClient, produced);
        produced += answer.size();
        ended = answer.size() > left;
        answer.resize(std::min(answer.size(), left));
        pipe.toClient(std::move(answer));
        if (ended) {
            pipe.client.streamEnded(OpcUa_BadConnectionClosed);
            break;
        }
    }
    return produced;
}

void expectEndAtEveryByte(const std::function<std::unique_ptr<MemoryPipe>()>& makePipe, size_t step)
{
    const size_t length = converse(*makePipe(), whole);
    ASSERT_GT(length, 150u);
    for (size_t cut = 0; cut < length; cut += step) {
        const auto pipe = makePipe();
        converse(*pipe, cut);
        EXPECT_EQ(pipe->clientClosed, OpcUa_StatusCode{OpcUa_BadConnectionClosed}) << cut;
        EXPECT_TRUE(pipe->responses.empty()) << cut;
        EXPECT_EQ(pipe->completions, pipe->opened) << cut; // the call that was made failed, once
        EXPECT_EQ(EngineProbe::pendingRequests(pipe->client), 0u) << cut;
        EXPECT_EQ(pipe->client.nextDeadline(), never) << cut;
        EXPECT_TRUE(pipe->client.output().empty()) << cut;
    }
}

std::unique_ptr<MemoryPipe> securedPipe(const sealing::Suite& suite)
{
    ClientChannelConfig config;
    config.securityMode = suite.encrypts ? signAndEncrypt : signOnly;
    return std::make_unique<MemoryPipe>(config, ServerChannelConfig{},
                                        std::make_unique<sealing::FixedNonces>(suite, false),
                                        std::make_unique<sealing::FixedNonces>(suite, true));
}

constexpr std::uint8_t encrypted = 1; // Basic256Sha256 in the numbering of sealing::suiteOf
constexpr std::uint8_t suiteCount = 10;

TEST(StackFaults, ADisconnectAtEveryByteOfAConversationEndsItAlike)
{
    expectEndAtEveryByte([] { return std::make_unique<MemoryPipe>(); }, 1);
    expectEndAtEveryByte([] { return securedPipe(sealing::suiteOf(encrypted)); }, 1);
}

// ---- what a hostile server may learn

struct Outcome
{
    std::optional<OpcUa_StatusCode> closed;
    std::optional<OpcUa_StatusCode> call;
    size_t responses = 0;
    size_t said = 0; // bytes to the peer
    bool operator==(const Outcome&) const = default;
};

// A client that is to be answered: its Open while opening, its call when open.
class Answered
{
public:
    explicit Answered(const sealing::Suite& suite) : m_pipe(securedPipe(suite)), m_peer(suite, true)
    {
        m_pipe->start();
        m_pipe->client.output().clear();
        Bytes acknowledge;
        writeAcknowledge(acknowledge, {0, {}});
        m_pipe->toClient(acknowledge);
        m_pipe->client.output().clear();
    }
    Bytes token(const sealing::Tail& tail = {})
    {
        Bytes body;
        EXPECT_EQ(encodeOpenResponse({0, 0, 1, 1, 3'600'000, m_peer.nonce(0)}, body), OpcUa_Good);
        return m_peer.open(1, 1, body, tail);
    }
    Bytes answer(const sealing::Tail& tail = {})
    {
        m_pipe->toClient(token());
        EXPECT_EQ(m_pipe->opened, 1);
        m_call = m_pipe->request(pattern(20));
        m_pipe->client.output().clear();
        return m_peer.message(MessageType::Message, ChunkType::Final, 0, 1, 1, m_call, pattern(30), tail);
    }
    Outcome outcomeOf(const Bytes& bytes)
    {
        m_pipe->toClient(bytes);
        return {m_pipe->clientClosed, m_call != 0 ? m_pipe->statusOf(m_call) : std::nullopt,
                m_pipe->responses.size(), m_pipe->client.output().size()};
    }

private:
    std::unique_ptr<MemoryPipe> m_pipe;
    sealing::SealingPeer m_peer;
    OpcUa_UInt32 m_call = 0;
};

Bytes withGarbledBlock(Bytes frame)
{
    for (size_t n = frame.size() - 64; n < frame.size(); ++n)
        frame[n] ^= 0x5A;
    return frame;
}

TEST(StackFaults, PaddingAndSignatureFaultsLookAlikeUnderEveryPolicy)
{
    const Bytes lie{1, 2, 0xF0}; // says that 240 bytes of padding lie before it
    for (std::uint8_t choice = 0; choice < suiteCount; ++choice) {
        const sealing::Suite suite = sealing::suiteOf(choice);
        SCOPED_TRACE(suite.profile.uri + std::to_string(choice % 2));
        const Outcome opened = Answered(suite).outcomeOf(Answered(suite).token());
        EXPECT_EQ(opened.closed, std::nullopt);
        const Outcome refused{OpcUa_BadSecurityChecksFailed, std::nullopt, 0, 0};
        EXPECT_EQ(Answered(suite).outcomeOf(Answered(suite).token({false, lie})), refused);
        EXPECT_EQ(Answered(suite).outcomeOf(Answered(suite).token({true, {}, false})), refused);
        EXPECT_EQ(Answered(suite).outcomeOf(Answered(suite).token({false, lie, false})), refused);
        EXPECT_EQ(Answered(suite).outcomeOf(withGarbledBlock(Answered(suite).token())), refused);

        const auto outcomeOf = [&](const sealing::Tail& tail, bool garbled = false) {
            Answered client(suite);
            Bytes frame = client.answer(tail);
            return client.outcomeOf(garbled ? withGarbledBlock(std::move(frame)) : frame);
        };
        EXPECT_EQ(outcomeOf({}).call, OpcUa_StatusCode{OpcUa_Good});
        const Outcome ended{OpcUa_BadSecurityChecksFailed, OpcUa_BadSecurityChecksFailed, 0, 0};
        EXPECT_EQ(outcomeOf({true, {}, false}), ended);
        EXPECT_EQ(outcomeOf({}, true), ended);
        if (suite.encrypts) {
            EXPECT_EQ(outcomeOf({false, lie}), ended);
            EXPECT_EQ(outcomeOf({false, lie, false}), ended);
        }
    }
}

TEST(StackFaults, AnOpenForAnotherThumbprintOrOfAnotherPolicyIsRefused)
{
    const sealing::Suite suite = sealing::suiteOf(encrypted);
    const Bytes right = Answered(suite).token();
    const size_t thumbprintAt = frameHeaderSize + 4 + 4 + std::string_view(suite.profile.uri).size() + 4 +
                                sealing::identity(true).certificate->der().size() + 4;
    for (size_t n = 0; n < 20; ++n) {
        Bytes wrong = right;
        wrong[thumbprintAt + n] ^= 1;
        EXPECT_EQ(Answered(suite).outcomeOf(wrong).closed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed})
            << n;
    }
    Bytes absent = right;
    absent.erase(absent.begin() + static_cast<std::ptrdiff_t>(thumbprintAt),
                 absent.begin() + static_cast<std::ptrdiff_t>(thumbprintAt + 20));
    putUInt32(absent.data() + thumbprintAt - 4, 0xFFFFFFFFu);
    finishFrame(absent, 0);
    EXPECT_EQ(Answered(suite).outcomeOf(absent).closed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});
    const sealing::Suite other = sealing::suiteOf(encrypted + 2);
    EXPECT_EQ(Answered(suite).outcomeOf(Answered(other).token()).closed,
              OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});
}

// ---- lengths of nonces and keys

// A certificate around a public key of exactly so many bits, of which nobody has the private one.
Bytes certificateOfBits(int bits)
{
    const auto size = static_cast<size_t>(bits + 7) / 8;
    Bytes modulus(size, 0x5B); // little-endian and odd
    modulus.back() = static_cast<OpcUa_Byte>(1u << (bits - 1) % 8);
    Bytes exponent{1, 0, 1};
    const OSSL_PARAM parameters[] = {OSSL_PARAM_construct_BN("n", modulus.data(), modulus.size()),
                                     OSSL_PARAM_construct_BN("e", exponent.data(), exponent.size()),
                                     OSSL_PARAM_construct_end()};
    const KeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY* key = nullptr;
    EXPECT_EQ(EVP_PKEY_fromdata_init(context.get()), 1);
    EXPECT_EQ(
        EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, const_cast<OSSL_PARAM*>(parameters)), 1);
    const KeyHandle owner(key);
    testcertificates::Recipe recipe;
    recipe.pair = key;
    recipe.issuer = "Somebody";
    recipe.issuerPair = testcertificates::key(2048, "client");
    return testcertificates::make(recipe);
}

TEST(StackFaults, EveryPolicyKeepsItsLengthsOfNoncesAndKeys)
{
    struct Row
    {
        const char* uri;
        size_t nonce;
        int least, most;
    };
    constexpr Row rows[] = {{OpcUa_SecurityPolicy_Basic128Rsa15, 16, 1024, 2048},
                            {OpcUa_SecurityPolicy_Basic256, 32, 1024, 2048},
                            {OpcUa_SecurityPolicy_Basic256Sha256, 32, 2048, 4096},
                            {OpcUa_SecurityPolicy_Aes128Sha256RsaOaep, 32, 2048, 4096},
                            {OpcUa_SecurityPolicy_Aes256Sha256RsaPss, 32, 2048, 4096}};
    const Identity& own = identity(2048, "client");
    const Identity& peer = identity(2048, "server");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.uri);
        const auto made = policy(row.uri, signAndEncrypt, own, peer);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->makeNonce()->size(), row.nonce);
        EXPECT_NE(made->makeNonce(), made->makeNonce());
        for (const size_t wrong : {size_t{0}, size_t{1}, row.nonce - 1, row.nonce + 1, 2 * row.nonce})
            EXPECT_FALSE(made->acceptsNonce(Bytes(wrong, 3))) << wrong;
        EXPECT_TRUE(made->acceptsNonce(Bytes(row.nonce, 3)));
        EXPECT_FALSE(made->acceptsNonce(Bytes(row.nonce, 3))) << "repeated";
        for (const int bits : {row.least - 1, row.least, row.most, row.most + 1}) {
            std::unique_ptr<SecurityPolicy> ofBits;
            const bool fits = bits >= row.least && bits <= row.most;
            EXPECT_EQ(makeSecurityPolicy(row.uri, signOnly,
                                         {own.certificate, own.key, certificateOfBits(bits)}, ofBits),
                      fits ? OpcUa_Good : OpcUa_BadCertificatePolicyCheckFailed)
                << bits;
        }
    }
    const auto none = makeSecurityPolicyNone();
    EXPECT_TRUE(none->makeNonce()->empty());
    EXPECT_TRUE(none->acceptsNonce(pattern(5))); // some servers send one; it means nothing
}

// ---- tokens

TEST(StackFaults, SecuredTrafficHasNoGapWhenTheTokenIsRenewed)
{
    for (std::uint8_t choice = 0; choice < suiteCount; ++choice) {
        const auto pipe = securedPipe(sealing::suiteOf(choice));
        pipe->open();
        pipe->onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
        const OpcUa_UInt32 before = pipe->request({1}, Milliseconds{10'000'000});
        pipe->pass(Milliseconds{2'700'000});
        const OpcUa_UInt32 during = pipe->request({2}, Milliseconds{10'000'000});
        pipe->toServer(std::exchange(pipe->client.output(), {}));
        EXPECT_EQ(pipe->server.respond(before, Bytes{7}), OpcUa_Good); // still under the old token
        pipe->toClient(std::exchange(pipe->server.output(), {}));
        EXPECT_EQ(pipe->statusOf(before), OpcUa_StatusCode{OpcUa_Good});
        EXPECT_EQ(pipe->server.respond(during, Bytes{8}), OpcUa_Good);
        pipe->toClient(std::exchange(pipe->server.output(), {}));
        EXPECT_EQ(pipe->statusOf(during), OpcUa_StatusCode{OpcUa_Good});
        const OpcUa_UInt32 after = pipe->request({3});
        pipe->toServer(std::exchange(pipe->client.output(), {}));
        EXPECT_EQ(pipe->server.respond(after, Bytes{9}), OpcUa_Good);
        EXPECT_EQ(getUInt32(pipe->server.output().data() + 12), 2u); // the server follows
        pipe->run();
        EXPECT_EQ(pipe->statusOf(after), OpcUa_StatusCode{OpcUa_Good});
    }
}

} // namespace
} // namespace opcua::test
