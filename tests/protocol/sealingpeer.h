// A peer that holds the right keys and says with them what it likes: chunks of any content, signed and
// encrypted as they should be, which damage before or after the sealing takes apart again.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/byteio.h>
#include <stack/core/framereader.h>
#include <stack/security/algorithms.h>
#include <stack/security/keyderivation.h>
#include <stack/security/padding.h>
#include <stack/security/rsaoperations.h>
#include <stack/security/rsasecuritypolicy.h>
#include <tests/protocol/fixedidentities.h>

#include <openssl/core_names.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>

namespace opcua::test::sealing {

inline void check(bool holds)
{
    if (!holds)
        std::abort();
}

struct Identity
{
    CertificatePointer certificate;
    PrivateKeyPointer key;
};

inline Bytes fromHex(std::string_view text)
{
    const auto digit = [](char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'a' + 10); };
    Bytes bytes;
    for (size_t n = 0; n + 1 < text.size(); n += 2)
        bytes.push_back(static_cast<OpcUa_Byte>(digit(text[n]) << 4 | digit(text[n + 1])));
    return bytes;
}

inline const Identity& identity(bool ofServer)
{
    static const Identity client{Certificate::parse(fromHex(clientCertificate)),
                                 PrivateKey::parse(fromHex(clientKey))};
    static const Identity server{Certificate::parse(fromHex(serverCertificate)),
                                 PrivateKey::parse(fromHex(serverKey))};
    return ofServer ? server : client;
}

/// What one input chooses.
struct Suite
{
    const PolicyProfile& profile;
    bool encrypts;
};

inline Suite suiteOf(std::uint8_t choice)
{
    constexpr const char* uris[] = {OpcUa_SecurityPolicy_Basic256Sha256,
                                    OpcUa_SecurityPolicy_Aes128Sha256RsaOaep,
                                    OpcUa_SecurityPolicy_Aes256Sha256RsaPss, OpcUa_SecurityPolicy_Basic256,
                                    OpcUa_SecurityPolicy_Basic128Rsa15};
    return {*findPolicyProfile(uris[choice / 2 % 5]), choice % 2 != 0};
}

/// The nonces of a side's tokens, each other than the one before.
inline Bytes nonceOf(const PolicyProfile& profile, bool ofEngine, unsigned token)
{
    return Bytes(profile.nonceLength, static_cast<OpcUa_Byte>((ofEngine ? 0x80 : 0) + token % 0x80));
}

/// Most inputs begin alike; what was sealed or opened before need not cost the private key again.
class SealedBefore
{
public:
    /// out holds the plain frame, and the sealed one when it returns; sealNow does the work on out.
    template <typename Seal>
    [[nodiscard]] bool seal(Bytes& out, Seal sealNow)
    {
        std::string plain(asText(out));
        if (const auto found = m_known.find(plain); found != m_known.end()) {
            out = found->second;
            return true;
        }
        if (!sealNow())
            return false;
        if (m_known.size() >= 256)
            m_known.clear();
        m_known.emplace(std::move(plain), out);
        return true;
    }

private:
    std::map<std::string, Bytes> m_known;
};

class CachedSeal final : public ChunkProtection
{
public:
    explicit CachedSeal(ChunkProtection& real) : m_real(real) {}
    size_t plainCapacity(size_t room) const override { return m_real.plainCapacity(room); }
    size_t sealedSize(size_t plain) const override { return m_real.sealedSize(plain); }
    bool seal(Bytes& out, size_t chunkBegin, size_t sequenceBegin) override
    {
        static SealedBefore before;
        return before.seal(out, [&] { return m_real.seal(out, chunkBegin, sequenceBegin); });
    }
    std::optional<size_t> unseal(MutableByteView chunk, size_t sequenceBegin) override
    {
        static std::map<std::string, Opened> before;
        const std::string sealed(asText(chunk));
        if (const auto found = before.find(sealed); found != before.end()) {
            std::ranges::copy(found->second.chunk, chunk.begin());
            return found->second.end;
        }
        const auto end = m_real.unseal(chunk, sequenceBegin);
        if (before.size() >= 256)
            before.clear();
        before.emplace(sealed, Opened{Bytes(chunk.begin(), chunk.end()), end});
        return end;
    }

private:
    struct Opened
    {
        Bytes chunk;
        std::optional<size_t> end;
    };

    ChunkProtection& m_real;
};

/// The policy of the engine under test; all of it is real but the random source.
class FixedNonces final : public SecurityPolicy
{
public:
    FixedNonces(const Suite& suite, bool ofServer)
        : m_profile(suite.profile),
          m_real(suite.profile, suite.encrypts, identity(ofServer).certificate->der(),
                 identity(ofServer).certificate, identity(ofServer).key, identity(!ofServer).certificate),
          m_open(m_real.outgoingOpen())
    {
    }
    std::string_view uri() const override { return m_real.uri(); }
    SequenceRule sequenceRule() const override { return m_real.sequenceRule(); }
    AsymmetricHeader ownHeader() const override { return m_real.ownHeader(); }
    bool acceptsHeader(const AsymmetricHeader& header) const override { return m_real.acceptsHeader(header); }
    ChunkProtection& outgoingOpen() override { return m_open; }
    ChunkProtection& incomingOpen() override { return m_open; }
    std::optional<Bytes> makeNonce() override { return nonceOf(m_profile, true, m_made++); }
    bool acceptsNonce(ByteView nonce) override { return m_real.acceptsNonce(nonce); }
    TokenProtection deriveKeys(ByteView ownNonce, ByteView peerNonce) override
    {
        return m_real.deriveKeys(ownNonce, peerNonce);
    }

private:
    const PolicyProfile& m_profile;
    RsaSecurityPolicy m_real;
    CachedSeal m_open;
    unsigned m_made = 0;
};

/// How the plain bytes of a chunk end before they are signed: with the padding that belongs there, or with
/// bytes of the input's own.
struct Tail
{
    bool right = true;
    ByteView bytes{};
    bool signedRight = true;
};

class SealingPeer
{
public:
    SealingPeer(const Suite& suite, bool isServer) : m_suite(suite), m_isServer(isServer) {}

    [[nodiscard]] Bytes open(OpcUa_UInt32 channelId, OpcUa_UInt32 requestId, ByteView body,
                             const Tail& tail = {})
    {
        const Identity& own = identity(m_isServer);
        const Identity& peer = identity(!m_isServer);
        Bytes out;
        const size_t begin = beginFrame(out, MessageType::Open, ChunkType::Final);
        appendUInt32(out, channelId);
        appendByteString(out, asBytes(m_suite.profile.uri));
        appendByteString(out, own.certificate->der());
        appendByteString(out, peer.certificate->thumbprint());
        const size_t sealed = out.size();
        appendPlain(out, requestId, body);
        const size_t room = plainBlockSize(peer.certificate->publicKey(), m_suite.profile.encryption);
        const size_t block = cipherBlockSize(peer.certificate->publicKey());
        pad(out, sealed, cipherBlockSize(own.key->key()), room, tail);
        const size_t blocks = (out.size() - sealed + cipherBlockSize(own.key->key())) / room;
        putUInt32(out.data() + begin + 4, static_cast<OpcUa_UInt32>(sealed + blocks * block));
        static SealedBefore before;
        if (tail.signedRight)
            check(before.seal(out, [&] { return sealOpen(out, sealed, true); }));
        else
            check(sealOpen(out, sealed, false));
        return out;
    }

    /// Under the keys of the token of that number, counted from 0.
    [[nodiscard]] Bytes message(MessageType type, ChunkType chunk, unsigned token, OpcUa_UInt32 channelId,
                                OpcUa_UInt32 tokenId, OpcUa_UInt32 requestId, ByteView body,
                                const Tail& tail = {})
    {
        const DirectionKeys& tokenKeys = keys(token);
        const size_t signature = digestLength(m_suite.profile.digest);
        Bytes out;
        const size_t begin = beginFrame(out, type, chunk);
        appendUInt32(out, channelId);
        appendUInt32(out, tokenId);
        appendPlain(out, requestId, body);
        if (m_suite.encrypts)
            pad(out, symmetricHeaderSize, signature, 16, tail);
        else if (!tail.right)
            out.insert(out.end(), tail.bytes.begin(), tail.bytes.end());
        putUInt32(out.data() + begin + 4, static_cast<OpcUa_UInt32>(out.size() + signature));
        sign(out, tokenKeys.signing.view(), signature);
        out.back() ^= tail.signedRight ? 0 : 1;
        if (m_suite.encrypts)
            encrypt(MutableByteView(out).subspan(symmetricHeaderSize), tokenKeys);
        return out;
    }

    [[nodiscard]] Bytes nonce(unsigned token) const { return nonceOf(m_suite.profile, false, token); }
    [[nodiscard]] SequenceSender& sequence() { return m_sequence; }

private:
    void appendPlain(Bytes& out, OpcUa_UInt32 requestId, ByteView body)
    {
        appendUInt32(out, m_sequence.next());
        appendUInt32(out, requestId);
        out.insert(out.end(), body.begin(), body.end());
    }
    [[nodiscard]] bool sealOpen(Bytes& out, size_t sealed, bool signedRight) const
    {
        const auto signature = rsaSign(identity(m_isServer).key->key(), m_suite.profile.signature, out);
        check(signature.has_value());
        out.insert(out.end(), signature->begin(), signature->end());
        out.back() ^= signedRight ? 0 : 1;
        const auto cipher = rsaEncrypt(identity(!m_isServer).certificate->publicKey(),
                                       m_suite.profile.encryption, ByteView(out).subspan(sealed));
        if (!cipher)
            return false;
        out.resize(sealed);
        out.insert(out.end(), cipher->begin(), cipher->end());
        return true;
    }
    /// Nonces are the same in every run, and so are the keys.
    [[nodiscard]] const DirectionKeys& keys(unsigned token) const
    {
        static std::map<std::pair<const PolicyProfile*, unsigned>, DirectionKeys> known;
        const auto key = std::pair{&m_suite.profile, token};
        if (const auto found = known.find(key); found != known.end())
            return found->second;
        auto made = deriveDirectionKeys(m_suite.profile, nonceOf(m_suite.profile, true, token),
                                        nonceOf(m_suite.profile, false, token));
        check(made.has_value());
        return known.emplace(key, std::move(*made)).first->second;
    }
    /// To full blocks; what the input has too little of is filled up.
    static void pad(Bytes& out, size_t sealed, size_t signature, size_t block, const Tail& tail)
    {
        if (!tail.right)
            out.insert(out.end(), tail.bytes.begin(), tail.bytes.end());
        const size_t used = out.size() - sealed + signature + (tail.right ? 1 : 0);
        const size_t missing = (block - used % block) % block;
        if (tail.right)
            appendPadding(out, missing, 1);
        else
            out.insert(out.end(), missing, tail.bytes.empty() ? OpcUa_Byte{0} : tail.bytes.back());
    }
    void sign(Bytes& out, ByteView key, size_t length) const
    {
        Bytes mac(length);
        size_t written = 0;
        std::array<char, 8> digest{};
        std::string_view(digestName(m_suite.profile.digest)).copy(digest.data(), digest.size() - 1);
        const std::array parameters = {
            OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), 0),
            OSSL_PARAM_construct_end()};
        const MacContext context(EVP_MAC_CTX_new(hmacAlgorithm()));
        check(EVP_MAC_init(context.get(), key.data(), key.size(), parameters.data()) == 1 &&
              EVP_MAC_update(context.get(), out.data(), out.size()) == 1 &&
              EVP_MAC_final(context.get(), mac.data(), &written, mac.size()) == 1 && written == length);
        out.insert(out.end(), mac.begin(), mac.end());
    }
    static void encrypt(MutableByteView bytes, const DirectionKeys& keys)
    {
        const CipherContext context(EVP_CIPHER_CTX_new());
        int written = 0;
        check(EVP_EncryptInit_ex2(context.get(), aesCbc(keys.encrypting.size()),
                                  keys.encrypting.view().data(), keys.initializationVector.view().data(),
                                  nullptr) == 1 &&
              EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
              EVP_EncryptUpdate(context.get(), bytes.data(), &written, bytes.data(),
                                static_cast<int>(bytes.size())) == 1);
    }

    Suite m_suite;
    bool m_isServer;
    SequenceSender m_sequence{SequenceRule::Legacy};
};

/// Reads an input from the front; behind its end everything is zero.
class Script
{
public:
    explicit Script(ByteView bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool atEnd() const { return m_bytes.empty(); }
    [[nodiscard]] OpcUa_Byte byte()
    {
        const OpcUa_Byte value = m_bytes.empty() ? OpcUa_Byte{0} : m_bytes.front();
        m_bytes = m_bytes.subspan(std::min<size_t>(1, m_bytes.size()));
        return value;
    }
    [[nodiscard]] OpcUa_UInt32 number()
    {
        OpcUa_UInt32 value = 0;
        for (int n = 0; n < 4; ++n)
            value = value << 8 | byte();
        return value;
    }
    /// A length in one byte, and as many bytes.
    [[nodiscard]] ByteView bytes()
    {
        const size_t wanted = byte();
        const size_t length = std::min(wanted, m_bytes.size());
        const ByteView taken = m_bytes.first(length);
        m_bytes = m_bytes.subspan(length);
        return taken;
    }

private:
    ByteView m_bytes;
};

/// What becomes of a sealed frame on its way.
struct Delivery
{
    Bytes bytes;
    bool broken = false; ///< no engine may go on after it
    bool framed = true;  ///< the bytes are whole frames still
};

/// Most frames go through as they are; some are changed, cut, lengthened or come twice.
inline Delivery damaged(Bytes frame, Script& script)
{
    const OpcUa_Byte kind = script.byte();
    if (kind < 0xA0)
        return {std::move(frame)};
    if (kind < 0xC8) {
        const size_t at = script.number() % frame.size();
        frame[at] ^= static_cast<OpcUa_Byte>(1u << kind % 8);
        return {std::move(frame), at >= frameHeaderSize, at >= frameHeaderSize};
    }
    if (kind < 0xF0) {
        const size_t before = frame.size();
        frame.resize(frameHeaderSize + script.number() % (2 * before), kind);
        putUInt32(frame.data() + 4, static_cast<OpcUa_UInt32>(frame.size()));
        const bool changed = frame.size() != before;
        return {std::move(frame), changed, true};
    }
    const Bytes copy = frame;
    frame.insert(frame.end(), copy.begin(), copy.end());
    return {std::move(frame), true, true};
}

} // namespace opcua::test::sealing
