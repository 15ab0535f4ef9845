// Chunks of one secure channel, both directions: tokens, sequence numbers, limits, reassembly. Client and
// server roles share it; the state of the channel is theirs.
#pragma once

#include <stack/core/framereader.h>
#include <stack/core/messageassembler.h>
#include <stack/core/securitypolicy.h>

#include <memory>
#include <optional>
#include <string_view>

namespace opcua {

/// A verified chunk. The body is valid as long as its frame.
struct Chunk
{
    ChunkType type = ChunkType::Final;
    OpcUa_UInt32 channelId = 0;
    OpcUa_UInt32 requestId = 0;
    ByteView body;
};

struct SecurityToken
{
    OpcUa_UInt32 id = 0;
    TimePoint expires = never;
    SecurityPolicy::TokenProtection protection;
};

class SecureConversation
{
public:
    SecureConversation(std::unique_ptr<SecurityPolicy> policy, const ChannelLimits& ownLimits);

    [[nodiscard]] SecurityPolicy& policy() { return *m_policy; }
    /// What the peer takes: chunk size, and with 0 for "no limit" message size and chunk count.
    void setSendLimits(OpcUa_UInt32 chunkSize, OpcUa_UInt32 maxMessageSize, OpcUa_UInt32 maxChunkCount);
    void setChannelId(OpcUa_UInt32 channelId) { m_channelId = channelId; }
    [[nodiscard]] OpcUa_UInt32 channelId() const { return m_channelId; }

    /// The new token becomes the one to send with, the current one is accepted until it expires. With
    /// sendWhenSeen the old one goes on being sent until the peer uses the new one (the server's side).
    void addToken(SecurityToken token, bool sendWhenSeen);

    /// Append chunks to out. On failure out is as before.
    /// Good; BadRequestTooLarge for what the peer would not take; BadEncodingError when the cryptography
    /// fails.
    [[nodiscard]] OpcUa_StatusCode writeOpen(Bytes& out, OpcUa_UInt32 requestId, ByteView body);
    [[nodiscard]] OpcUa_StatusCode writeMessage(Bytes& out, MessageType type, OpcUa_UInt32 requestId,
                                                ByteView body);
    [[nodiscard]] OpcUa_StatusCode writeAbort(Bytes& out, OpcUa_UInt32 requestId, OpcUa_StatusCode status,
                                              std::string_view reason);

    /// Verify in the order of OPC 10000-6, 6.7.4: channel, policy or token, signature, padding, sequence
    /// number. Nothing when any of them is wrong; the channel must end then.
    [[nodiscard]] std::optional<Chunk> readOpen(const Frame& frame);
    [[nodiscard]] std::optional<Chunk> readSymmetric(const Frame& frame, TimePoint now);

    [[nodiscard]] MessageAssembler& assembler() { return m_assembler; }

private:
    friend class EngineProbe; // for tests

    [[nodiscard]] bool channelMatches(OpcUa_UInt32 channelId) const;
    [[nodiscard]] ChunkProtection* incomingProtection(OpcUa_UInt32 tokenId, TimePoint now);
    [[nodiscard]] std::optional<Chunk> readSealed(const Frame& frame, ChunkProtection& protection,
                                                  size_t sequenceBegin);
    [[nodiscard]] bool writeChunk(Bytes& out, MessageType type, ChunkType chunk, OpcUa_UInt32 requestId,
                                  ByteView body);
    [[nodiscard]] bool sealChunk(Bytes& out, size_t begin, size_t sequenceBegin, OpcUa_UInt32 requestId,
                                 ByteView body, ChunkProtection& protection);
    [[nodiscard]] SecurityToken& sendToken();

    std::unique_ptr<SecurityPolicy> m_policy;
    MessageAssembler m_assembler;
    SequenceSender m_sendSequence;
    SequenceVerifier m_receiveSequence;
    OpcUa_UInt32 m_channelId = 0;
    OpcUa_UInt32 m_sendChunkSize = minimumBufferSize;
    OpcUa_UInt32 m_sendMaxMessageSize = 0;
    OpcUa_UInt32 m_sendMaxChunkCount = 0;
    std::optional<SecurityToken> m_current;
    std::optional<SecurityToken> m_previous;
    bool m_sendWithPrevious = false;
};

} // namespace opcua
