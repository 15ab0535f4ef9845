// The channel under every security policy, against its counterpart and against faults.
#include <opcua/opcua_channel.h>
#include <stack/security/keyderivation.h>
#include <tests/protocol/securepipe.h>

#include <gtest/gtest.h>
#include <openssl/core_names.h>
#include <openssl/kdf.h>

#include <algorithm>
#include <memory>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

constexpr Suite usual{OpcUa_SecurityPolicy_Basic256Sha256, signAndEncrypt, 2048, 2048};

class StackSecurity : public testing::TestWithParam<Suite>
{
};

TEST_P(StackSecurity, CarriesMessagesThroughRenewals)
{
    SecurePipe secure(GetParam());
    MemoryPipe& pipe = secure.pipe;
    pipe.open();
    ASSERT_EQ(pipe.opened, 1);
    for (int round = 0; round < 3; ++round) {
        for (const size_t size : {0, 1, 7, 8, 15, 16, 17, 65'000, 65'480, 65'481, 200'000}) {
            const Bytes body = pattern(size, static_cast<OpcUa_Byte>(round));
            const OpcUa_UInt32 id = pipe.request(body);
            pipe.run();
            ASSERT_TRUE(pipe.responses.contains(id)) << size;
            EXPECT_EQ(pipe.responses[id], body) << size;
        }
        pipe.pass(Milliseconds{2'700'000}); // three quarters of an hour
        // a request under the old token is under way while the new one is made
        const OpcUa_UInt32 between = pipe.request(pattern(100));
        pipe.run();
        EXPECT_EQ(pipe.renewed, round + 1);
        EXPECT_EQ(pipe.statusOf(between), OpcUa_Good);
    }
    EXPECT_EQ(pipe.server.issuedTokens(), 4u);
    pipe.client.close();
    pipe.run();
    EXPECT_EQ(pipe.serverClosed, OpcUa_StatusCode{OpcUa_Good});
}

TEST_P(StackSecurity, KeepsEveryChunkWithinTheBuffer)
{
    SecurePipe secure(GetParam());
    MemoryPipe& pipe = secure.pipe;
    pipe.open();
    pipe.request(pattern(500'000));
    FrameReader reader(65536);
    MutableByteView bytes = pipe.client.output();
    size_t chunks = 0;
    size_t largest = 0;
    for (Frame frame; reader.next(bytes, frame) == FrameReader::Outcome::Frame; ++chunks)
        largest = std::max(largest, frame.bytes.size());
    EXPECT_TRUE(bytes.empty());
    EXPECT_EQ(chunks, 8u);
    EXPECT_LE(largest, 65536u);
    EXPECT_GT(largest, 65536u - 16);
}

TEST_P(StackSecurity, KeepsToBuffersOfAnySize)
{
    const Suite& suite = GetParam();
    const Identity& client = identity(suite.clientBits, "client");
    const Identity& server = identity(suite.serverBits, "server");
    for (OpcUa_UInt32 size = 8192; size < 8192 + 16; size += 3) {
        ServerChannelConfig config;
        config.limits.receiveBufferSize = size;
        config.limits.sendBufferSize = size + 1;
        MemoryPipe pipe(SecurePipe::configOf(suite), config, policy(suite.uri, suite.mode, client, server),
                        policy(suite.uri, suite.mode, server, client));
        pipe.open();
        const Bytes body = pattern(20'000);
        const OpcUa_UInt32 id = pipe.request(body); // the server's reader refuses frames that are larger
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        FrameReader reader(size + 1);
        MutableByteView answer = pipe.server.output();
        Frame frame;
        while (reader.next(answer, frame) == FrameReader::Outcome::Frame)
            EXPECT_GE(frame.bytes.size(), 3000u);
        EXPECT_EQ(reader.fault(), OpcUa_Good) << size;
        pipe.run();
        EXPECT_EQ(pipe.responses[id], body) << size;
    }
}

// Whatever byte of a chunk is wrong, the channel ends, and always in the same way.
TEST_P(StackSecurity, EndsTheSameWayWhateverByteIsWrong)
{
    SecurePipe sample(GetParam());
    const size_t length = sample.openAnswer().size();
    const size_t step = std::max<size_t>(1, length / 40);
    for (size_t at = frameHeaderSize; at < length; at += step) {
        SecurePipe secure(GetParam());
        Bytes answer = secure.openAnswer();
        answer[at] ^= 0x10;
        secure.pipe.toClient(std::move(answer));
        EXPECT_EQ(secure.pipe.clientClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed}) << at;
        EXPECT_EQ(secure.pipe.opened, 0);
    }
    for (size_t at = frameHeaderSize; at < 120; at += 3) {
        SecurePipe secure(GetParam());
        MemoryPipe& pipe = secure.pipe;
        pipe.open();
        pipe.request(pattern(60));
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        Bytes answer = std::exchange(pipe.server.output(), {});
        if (at >= answer.size())
            break;
        answer[at] ^= 0x01;
        pipe.toClient(std::move(answer));
        EXPECT_EQ(pipe.clientClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed}) << at;
        EXPECT_TRUE(pipe.responses.empty());
    }
}

std::vector<Suite> allSuites()
{
    std::vector<Suite> suites;
    for (const char* uri : {OpcUa_SecurityPolicy_Basic128Rsa15, OpcUa_SecurityPolicy_Basic256,
                            OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_SecurityPolicy_Aes128Sha256RsaOaep,
                            OpcUa_SecurityPolicy_Aes256Sha256RsaPss}) {
        suites.push_back({uri, signOnly, 2048, 2048});
        suites.push_back({uri, signAndEncrypt, 2048, 2048});
    }
    suites.push_back({OpcUa_SecurityPolicy_Basic128Rsa15, signAndEncrypt, 1024, 2048});
    suites.push_back({OpcUa_SecurityPolicy_Basic256Sha256, signAndEncrypt, 2048, 4096});
    suites.push_back({OpcUa_SecurityPolicy_Aes256Sha256RsaPss, signAndEncrypt, 4096, 3072});
    return suites;
}

INSTANTIATE_TEST_SUITE_P(Policies, StackSecurity, testing::ValuesIn(allSuites()), [](const auto& suite) {
    std::string name = suite.param.uri;
    name = name.substr(name.find('#') + 1) + (suite.param.mode == signOnly ? "Sign" : "Encrypt") +
           std::to_string(suite.param.clientBits) + "x" + std::to_string(suite.param.serverBits);
    std::erase(name, '_');
    return name;
});

// ---- who may answer

TEST(StackSecurityFaults, AcceptsNobodyButTheJudgedCertificate)
{
    SecurePipe honest(usual);
    SecurePipe stranger(usual, "stranger"); // its server speaks to another client
    honest.openAnswer();
    honest.pipe.toClient(stranger.openAnswer());
    EXPECT_EQ(honest.pipe.clientClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});

    const Identity& client = identity(2048, "client");
    MemoryPipe impostor(SecurePipe::configOf(usual), {},
                        policy(usual.uri, usual.mode, client, identity(2048, "server")),
                        policy(usual.uri, usual.mode, identity(2048, "impostor"), client));
    impostor.open();
    EXPECT_EQ(impostor.opened, 0);
    EXPECT_EQ(impostor.serverClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});
}

TEST(StackSecurityFaults, RefusesReplayedAnswersAndChunks)
{
    SecurePipe first(usual);
    const Bytes recorded = first.openAnswer();
    SecurePipe second(usual);
    second.openAnswer();
    second.pipe.toClient(
        recorded); // signed and encrypted for this client, but its nonce is not of this token
    second.pipe.request(pattern(10));
    second.pipe.run();
    EXPECT_TRUE(second.pipe.responses.empty());

    SecurePipe replayed(usual);
    MemoryPipe& pipe = replayed.pipe;
    pipe.open();
    pipe.onServerRequest = [&](OpcUa_UInt32 id, const Bytes& body) { pipe.server.respond(id, body); };
    pipe.request(pattern(10));
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    const Bytes answer = std::exchange(pipe.server.output(), {});
    pipe.toClient(answer);
    EXPECT_EQ(pipe.responses.size(), 1u);
    pipe.toClient(answer);
    EXPECT_EQ(pipe.clientClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed});
}

TEST(StackSecurityFaults, RefusesChunksInTheClearAndShortOnes)
{
    for (const size_t size : {0, 1, 8, 15, 16, 24, 32, 33, 40, 48, 64}) {
        SecurePipe secure(usual);
        secure.pipe.open();
        RawChunk chunk;
        chunk.body = pattern(size);
        chunk.sequence = 2;
        chunk.requestId = secure.pipe.request(pattern(5));
        secure.pipe.toClient(chunk.bytes());
        EXPECT_EQ(secure.pipe.clientClosed, OpcUa_StatusCode{OpcUa_BadSecurityChecksFailed}) << size;
    }
}

TEST(StackSecurityFaults, TakesNoncesOfTheExactLengthAndOnce)
{
    const auto made = policy(usual.uri, usual.mode, identity(2048, "client"), identity(2048, "server"));
    for (const size_t length : {0, 1, 31, 33, 64})
        EXPECT_FALSE(made->acceptsNonce(Bytes(length, 7))) << length;
    EXPECT_TRUE(made->acceptsNonce(Bytes(32, 7)));
    EXPECT_FALSE(made->acceptsNonce(Bytes(32, 7)));
    EXPECT_TRUE(made->acceptsNonce(Bytes(32, 8)));
    EXPECT_NE(made->makeNonce(), made->makeNonce());
    EXPECT_EQ(made->makeNonce()->size(), 32u);
    const auto old = policy(OpcUa_SecurityPolicy_Basic128Rsa15, usual.mode, identity(2048, "client"),
                            identity(2048, "server"));
    EXPECT_EQ(old->makeNonce()->size(), 16u);
}

// ---- what a policy asks for

TEST(StackSecurityPolicies, ToldWhyOneCannotBeUsed)
{
    const Identity& good = identity(2048, "client");
    const Identity& other = identity(2048, "server");
    const Identity& small = identity(1024, "client");
    const Identity& large = identity(4096, "server");
    const char* const modern = OpcUa_SecurityPolicy_Basic256Sha256;
    std::unique_ptr<SecurityPolicy> made;
    const auto make = [&](const char* uri, OpcUa_MessageSecurityMode mode, const SecurityMaterial& material) {
        made.reset();
        const OpcUa_StatusCode status = makeSecurityPolicy(uri, mode, material, made);
        EXPECT_EQ(made != nullptr, OpcUa_IsGood(status));
        return status;
    };
    const SecurityMaterial usable{good.certificate, good.key, other.certificate};
    EXPECT_EQ(make(modern, signOnly, usable), OpcUa_Good);
    EXPECT_EQ(make("urn:unknown", signOnly, usable), OpcUa_BadSecurityPolicyRejected);
    EXPECT_EQ(make(modern, OpcUa_MessageSecurityMode_None, usable), OpcUa_BadSecurityModeRejected);
    EXPECT_EQ(make(OpcUa_SecurityPolicy_None, signOnly, usable), OpcUa_BadSecurityModeRejected);
    EXPECT_EQ(make(modern, signOnly, {{}, good.key, other.certificate}), OpcUa_BadCertificateInvalid);
    EXPECT_EQ(make(modern, signOnly, {good.certificate, good.key, pattern(300)}),
              OpcUa_BadCertificateInvalid);
    EXPECT_EQ(make(modern, signOnly, {good.certificate, other.key, other.certificate}),
              OpcUa_BadNoValidCertificates);
    EXPECT_EQ(make(modern, signOnly, {good.certificate, pattern(100), other.certificate}),
              OpcUa_BadNoValidCertificates);
    EXPECT_EQ(make(modern, signOnly, {small.certificate, small.key, other.certificate}),
              OpcUa_BadCertificatePolicyCheckFailed);
    EXPECT_EQ(make(OpcUa_SecurityPolicy_Basic256, signOnly, {good.certificate, good.key, large.certificate}),
              OpcUa_BadCertificatePolicyCheckFailed);
}

// ---- key derivation

Bytes libraryKeys(const char* digest, Bytes secret, Bytes seed, size_t length)
{
    EVP_KDF* const kdf = EVP_KDF_fetch(nullptr, "TLS1-PRF", nullptr);
    EVP_KDF_CTX* const context = EVP_KDF_CTX_new(kdf);
    Bytes out(length);
    const OSSL_PARAM parameters[] = {
        OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, const_cast<char*>(digest), 0),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_SECRET, secret.data(), secret.size()),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_SEED, seed.data(), seed.size()),
        OSSL_PARAM_construct_end()};
    EXPECT_EQ(EVP_KDF_derive(context, out.data(), length, parameters), 1);
    EVP_KDF_CTX_free(context);
    EVP_KDF_free(kdf);
    return out;
}

TEST(StackSecurityKeys, AreThoseOfTheStandardFunction)
{
    // published vector of the function with SHA-256; the seed begins with "test label"
    const Bytes secret = {0x9b, 0xbe, 0x43, 0x6b, 0xa9, 0x40, 0xf0, 0x17,
                          0xb1, 0x76, 0x52, 0x84, 0x9a, 0x71, 0xdb, 0x35};
    Bytes seed = {'t', 'e', 's', 't', ' ', 'l', 'a', 'b', 'e', 'l'};
    for (const int byte :
         {0xa0, 0xba, 0x9f, 0x93, 0x6c, 0xda, 0x31, 0x18, 0x27, 0xa6, 0xf7, 0x96, 0xff, 0xd5, 0x19, 0x8c})
        seed.push_back(static_cast<OpcUa_Byte>(byte));
    const Bytes expected = {0xe3, 0xf2, 0x29, 0xba, 0x72, 0x7b, 0xe1, 0x7b, 0x8d, 0x12, 0x26,
                            0x20, 0x55, 0x7c, 0xd4, 0x53, 0xc2, 0xaa, 0xb2, 0x1d, 0x07, 0xc3,
                            0xd4, 0x95, 0x32, 0x9b, 0x52, 0xd4, 0xe6, 0x1e, 0xdb, 0x5a, 0x6b,
                            0x30, 0x17, 0x91, 0xe9, 0x0d, 0x35, 0xc9, 0xc9, 0xa4, 0x6b, 0x4e};
    const auto derived = pseudoRandomBytes(Digest::Sha256, secret, seed, expected.size());
    ASSERT_TRUE(derived);
    EXPECT_TRUE(std::ranges::equal(derived->view(), expected));
    for (const size_t length : {1u, 20u, 32u, 48u, 56u, 72u, 80u, 200u}) {
        for (const auto& [digest, name] : {std::pair{Digest::Sha1, "SHA1"}, {Digest::Sha256, "SHA256"}}) {
            const auto ours = pseudoRandomBytes(digest, pattern(32), pattern(32, 9), length);
            ASSERT_TRUE(ours);
            EXPECT_TRUE(
                std::ranges::equal(ours->view(), libraryKeys(name, pattern(32), pattern(32, 9), length)))
                << name << " " << length;
        }
    }
}

} // namespace
} // namespace opcua::test
