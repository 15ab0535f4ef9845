// The seam of security policies, with a policy that has blocks, padding, a signature and nonces but no
// secrets.
#include <stack/security/securitypolicies.h>
#include <tests/protocol/memorypipe.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <ranges>
#include <string_view>
#include <utility>

namespace opcua::test {
namespace {

constexpr size_t blockSize = 16;
constexpr size_t signatureSize = 20;
constexpr OpcUa_Byte scramble = 0x5A;

// Plain bytes, padding that ends with its own length, and a signature; all of it scrambled.
class BlockProtection final : public ChunkProtection
{
public:
    explicit BlockProtection(OpcUa_Byte key) : m_key(key) {}

    size_t plainCapacity(size_t room) const override
    {
        return room / blockSize * blockSize - signatureSize - 1;
    }
    size_t sealedSize(size_t plain) const override
    {
        return (plain + 1 + signatureSize + blockSize - 1) / blockSize * blockSize;
    }
    bool seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin) override
    {
        const size_t plain = out.size() - sequenceBegin;
        const size_t padding = sealedSize(plain) - plain - signatureSize;
        out.insert(out.end(), padding, static_cast<OpcUa_Byte>(padding));
        const OpcUa_Byte sign = signatureOf(ByteView(out).subspan(chunkBegin));
        out.insert(out.end(), signatureSize, sign);
        for (size_t n = sequenceBegin; n < out.size(); ++n)
            out[n] ^= scramble;
        return true;
    }
    std::optional<size_t> unseal(MutableByteView chunk, size_t sequenceBegin) override
    {
        const size_t sealed = chunk.size() - std::min(chunk.size(), sequenceBegin);
        if (sealed == 0 || sealed % blockSize != 0 || sealed <= signatureSize)
            return std::nullopt;
        for (OpcUa_Byte& byte : chunk.subspan(sequenceBegin))
            byte ^= scramble;
        const size_t end = chunk.size() - signatureSize;
        const OpcUa_Byte sign = signatureOf(chunk.first(end));
        const auto signature = chunk.subspan(end);
        const size_t padding = chunk[end - 1];
        if (!std::all_of(signature.begin(), signature.end(), [&](OpcUa_Byte byte) { return byte == sign; }) ||
            padding == 0 || padding > end - sequenceBegin)
            return std::nullopt;
        return end - padding;
    }

private:
    OpcUa_Byte signatureOf(ByteView bytes) const
    {
        return std::accumulate(bytes.begin(), bytes.end(), m_key, add);
    }
    static OpcUa_Byte add(OpcUa_Byte left, OpcUa_Byte right) { return static_cast<OpcUa_Byte>(left + right); }

    OpcUa_Byte m_key;
};

class BlockPolicy final : public SecurityPolicy
{
public:
    std::string_view uri() const override { return "http://example.com/blocks"; }
    SequenceRule sequenceRule() const override { return SequenceRule::FullRange; }
    AsymmetricHeader ownHeader() const override { return {uri(), m_certificate, m_thumbprint}; }
    bool acceptsHeader(const AsymmetricHeader& header) const override
    {
        return header.policyUri == uri() && std::ranges::equal(header.senderCertificate, m_certificate) &&
               std::ranges::equal(header.receiverThumbprint, m_thumbprint);
    }
    ChunkProtection& outgoingOpen() override { return m_open; }
    ChunkProtection& incomingOpen() override { return m_open; }
    std::optional<Bytes> makeNonce() override { return Bytes(32, ++s_lastNonce); }
    bool acceptsNonce(ByteView nonce) override { return nonce.size() == 32; }
    TokenProtection deriveKeys(ByteView ownNonce, ByteView peerNonce) override
    {
        return {std::make_unique<BlockProtection>(ownNonce[0]),
                std::make_unique<BlockProtection>(peerNonce[0])};
    }
    static std::unique_ptr<SecurityPolicy> make() { return std::make_unique<BlockPolicy>(); }

private:
    static inline OpcUa_Byte s_lastNonce = 0;
    Bytes m_certificate = pattern(900);
    Bytes m_thumbprint = pattern(20);
    BlockProtection m_open{7};
};

TEST(StackProtection, MessagesOfEverySizeAroundTheBlocksComeThrough)
{
    MemoryPipe pipe({}, {}, &BlockPolicy::make);
    pipe.open();
    ASSERT_EQ(pipe.opened, 1);
    const size_t full = 65520 - signatureSize - 1 - sequenceHeaderSize;
    for (const size_t size : {size_t{0}, size_t{1}, size_t{2}, size_t{3}, size_t{4}, size_t{15}, size_t{16},
                              full - 1, full, full + 1, 3 * full, size_t{300'000}}) {
        const Bytes body = pattern(size);
        const OpcUa_UInt32 id = pipe.request(body);
        EXPECT_LE(getUInt32(pipe.client.output().data() + 4), 65536u);
        pipe.run();
        EXPECT_EQ(pipe.responses[id], body) << size;
    }
    pipe.pass(Milliseconds{2'700'000});
    pipe.run();
    EXPECT_EQ(pipe.renewed, 1);
    const OpcUa_UInt32 id = pipe.request(pattern(100)); // with keys of its own
    pipe.run();
    EXPECT_EQ(pipe.statusOf(id), OpcUa_Good);
}

// What becomes of the client when one byte of the server's answer is changed: to a request, or to Open
// itself.
std::optional<OpcUa_StatusCode> outcomeOfFlip(bool ofOpen, size_t at, size_t* length = nullptr)
{
    MemoryPipe pipe({}, {}, &BlockPolicy::make);
    pipe.start();
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.toClient(std::exchange(pipe.server.output(), {}));
    if (!ofOpen) {
        pipe.run();
        pipe.request(pattern(40));
    }
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    Bytes answer = std::exchange(pipe.server.output(), {});
    if (length != nullptr)
        *length = answer.size();
    if (at < answer.size())
        answer[at] ^= 1;
    pipe.toClient(answer);
    return pipe.clientClosed;
}

TEST(StackProtection, AnyChangedByteOfAChunkEndsTheChannelAlike)
{
    for (const bool ofOpen : {true, false}) {
        size_t length = 0;
        EXPECT_EQ(outcomeOfFlip(ofOpen, whole, &length), std::nullopt);
        for (size_t at = frameHeaderSize; at < length; ++at)
            EXPECT_EQ(outcomeOfFlip(ofOpen, at), OpcUa_BadSecurityChecksFailed) << at;
    }
}

TEST(StackProtection, OneSidedOrMissingPolicyIsRefused)
{
    MemoryPipe plain;
    plain.start();
    MemoryPipe blocks({}, {}, &BlockPolicy::make);
    plain.toServer(std::exchange(plain.client.output(), {}));
    plain.toClient(std::exchange(plain.server.output(), {}));
    blocks.toServer([] {
        Bytes hello;
        writeHello(hello, {0, {}, "opc.tcp://x"});
        return hello;
    }());
    blocks.toServer(std::exchange(plain.client.output(), {}));
    EXPECT_EQ(blocks.serverClosed, OpcUa_BadSecurityChecksFailed);

    std::unique_ptr<SecurityPolicy> policy;
    EXPECT_EQ(makeSecurityPolicy("http://example.com/blocks", OpcUa_MessageSecurityMode_Sign, {}, policy),
              OpcUa_BadSecurityPolicyRejected);
    EXPECT_EQ(policy, nullptr);
}

} // namespace
} // namespace opcua::test
