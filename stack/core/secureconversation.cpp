#include <stack/core/secureconversation.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/byteio.h>
#include <stack/core/transportmessages.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace opcua {

namespace {

constexpr size_t maxPolicyUriLength = 255;
constexpr size_t maxThumbprintLength = 64;

std::optional<AsymmetricHeader> readAsymmetricHeader(ByteReader& reader, size_t maxCertificateLength)
{
    const auto uri = reader.byteString(maxPolicyUriLength);
    const auto certificate = reader.byteString(maxCertificateLength);
    const auto thumbprint = reader.byteString(maxThumbprintLength);
    if (!uri || !certificate || !thumbprint)
        return std::nullopt;
    return AsymmetricHeader{asText(*uri), *certificate, *thumbprint};
}

} // namespace

SecureConversation::SecureConversation(std::unique_ptr<SecurityPolicy> policy, const ChannelLimits& ownLimits)
    : m_policy(std::move(policy)), m_assembler(ownLimits.maxMessageSize, ownLimits.maxChunkCount),
      m_sendSequence(m_policy->sequenceRule()), m_receiveSequence(m_policy->sequenceRule())
{
}

void SecureConversation::setSendLimits(OpcUa_UInt32 chunkSize, OpcUa_UInt32 maxMessageSize,
                                       OpcUa_UInt32 maxChunkCount)
{
    m_sendChunkSize = chunkSize;
    m_sendMaxMessageSize = maxMessageSize;
    m_sendMaxChunkCount = maxChunkCount;
}

void SecureConversation::addToken(SecurityToken token, bool sendWhenSeen)
{
    m_sendWithPrevious = sendWhenSeen && m_current.has_value();
    m_previous = std::move(m_current);
    m_current = std::move(token);
}

SecurityToken& SecureConversation::sendToken()
{
    return m_sendWithPrevious && m_previous ? *m_previous : *m_current;
}

// ---- writing

// Appends sequence header and body to the headers that lie at begin, fills in the size and protects it all.
bool SecureConversation::sealChunk(Bytes& out, size_t begin, size_t sequenceBegin, OpcUa_UInt32 requestId,
                                   ByteView body, ChunkProtection& protection)
{
    const size_t finalSize = sequenceBegin - begin + protection.sealedSize(sequenceHeaderSize + body.size());
    putUInt32(out.data() + begin + 4, static_cast<OpcUa_UInt32>(finalSize));
    appendUInt32(out, m_sendSequence.next());
    appendUInt32(out, requestId);
    out.insert(out.end(), body.begin(), body.end());
    return protection.seal(out, begin, sequenceBegin) && out.size() - begin == finalSize;
}

bool SecureConversation::writeChunk(Bytes& out, MessageType type, ChunkType chunk, OpcUa_UInt32 requestId,
                                    ByteView body)
{
    SecurityToken& token = sendToken();
    const size_t begin = beginFrame(out, type, chunk);
    appendUInt32(out, m_channelId);
    appendUInt32(out, token.id);
    return sealChunk(out, begin, out.size(), requestId, body, *token.protection.outgoing);
}

OpcUa_StatusCode SecureConversation::writeOpen(Bytes& out, OpcUa_UInt32 requestId, ByteView body)
{
    ChunkProtection& protection = m_policy->outgoingOpen();
    const AsymmetricHeader header = m_policy->ownHeader();
    const size_t begin = beginFrame(out, MessageType::Open, ChunkType::Final);
    appendUInt32(out, m_channelId);
    appendByteString(out, asBytes(header.policyUri));
    appendByteString(out, header.senderCertificate);
    appendByteString(out, header.receiverThumbprint);
    const size_t headers = out.size() - begin;
    const size_t room = m_sendChunkSize > headers ? m_sendChunkSize - headers : 0;
    if (sequenceHeaderSize + body.size() > protection.plainCapacity(room)) {
        out.resize(begin);
        return OpcUa_BadRequestTooLarge;
    }
    if (!sealChunk(out, begin, out.size(), requestId, body, protection)) {
        out.resize(begin);
        return OpcUa_BadEncodingError;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode SecureConversation::writeMessage(Bytes& out, MessageType type, OpcUa_UInt32 requestId,
                                                  ByteView body)
{
    const size_t plain =
        sendToken().protection.outgoing->plainCapacity(m_sendChunkSize - symmetricHeaderSize);
    const size_t room = plain - sequenceHeaderSize;
    const size_t chunks = std::max<size_t>(1, (body.size() + room - 1) / room);
    if ((m_sendMaxMessageSize != 0 && body.size() > m_sendMaxMessageSize) ||
        (m_sendMaxChunkCount != 0 && chunks > m_sendMaxChunkCount))
        return OpcUa_BadRequestTooLarge;
    const size_t begin = out.size();
    out.reserve(begin + body.size() + chunks * (m_sendChunkSize - room));
    for (size_t n = 1; n <= chunks; ++n) {
        const size_t length = std::min(room, body.size());
        const ChunkType chunk = n == chunks ? ChunkType::Final : ChunkType::Intermediate;
        if (!writeChunk(out, type, chunk, requestId, body.first(length))) {
            out.resize(begin);
            return OpcUa_BadEncodingError;
        }
        body = body.subspan(length);
    }
    return OpcUa_Good;
}

OpcUa_StatusCode SecureConversation::writeAbort(Bytes& out, OpcUa_UInt32 requestId, OpcUa_StatusCode status,
                                                std::string_view reason)
{
    Bytes body;
    appendErrorBody(body, status, reason);
    const size_t begin = out.size();
    if (writeChunk(out, MessageType::Message, ChunkType::Abort, requestId, body))
        return OpcUa_Good;
    out.resize(begin);
    return OpcUa_BadEncodingError;
}

// ---- reading

// Before the channel has an id, the first answer brings it.
bool SecureConversation::channelMatches(OpcUa_UInt32 channelId) const
{
    return m_channelId == 0 || channelId == m_channelId;
}

std::optional<Chunk> SecureConversation::readSealed(const Frame& frame, ChunkProtection& protection,
                                                    size_t sequenceBegin)
{
    const auto end = protection.unseal(frame.bytes, sequenceBegin);
    if (!end || *end < sequenceBegin + sequenceHeaderSize || *end > frame.bytes.size())
        return std::nullopt;
    const OpcUa_Byte* const header = frame.bytes.data() + sequenceBegin;
    if (!m_receiveSequence.accept(getUInt32(header)))
        return std::nullopt;
    Chunk chunk;
    chunk.type = frame.chunk;
    chunk.requestId = getUInt32(header + 4);
    chunk.body =
        frame.bytes.subspan(sequenceBegin + sequenceHeaderSize, *end - sequenceBegin - sequenceHeaderSize);
    return chunk;
}

std::optional<Chunk> SecureConversation::readOpen(const Frame& frame)
{
    ByteReader reader(frame.body());
    const auto channelId = reader.uint32();
    if (!channelId || !channelMatches(*channelId))
        return std::nullopt;
    const auto header = readAsymmetricHeader(reader, frame.bytes.size());
    if (!header || !m_policy->acceptsHeader(*header))
        return std::nullopt;
    auto chunk = readSealed(frame, m_policy->incomingOpen(), frameHeaderSize + reader.position());
    if (chunk)
        chunk->channelId = *channelId;
    return chunk;
}

ChunkProtection* SecureConversation::incomingProtection(OpcUa_UInt32 tokenId, TimePoint now)
{
    if (m_current && m_current->id == tokenId && now < m_current->expires) {
        if (m_sendWithPrevious) {
            m_sendWithPrevious = false;
            m_previous.reset();
        }
        return m_current->protection.incoming.get();
    }
    if (m_previous && m_previous->id == tokenId && now < m_previous->expires)
        return m_previous->protection.incoming.get();
    return nullptr;
}

std::optional<Chunk> SecureConversation::readSymmetric(const Frame& frame, TimePoint now)
{
    if (frame.bytes.size() < symmetricHeaderSize + sequenceHeaderSize)
        return std::nullopt;
    const OpcUa_UInt32 channelId = getUInt32(frame.bytes.data() + frameHeaderSize);
    if (m_channelId == 0 || channelId != m_channelId)
        return std::nullopt;
    ChunkProtection* const protection =
        incomingProtection(getUInt32(frame.bytes.data() + frameHeaderSize + 4), now);
    if (protection == nullptr)
        return std::nullopt;
    auto chunk = readSealed(frame, *protection, symmetricHeaderSize);
    if (chunk)
        chunk->channelId = channelId;
    return chunk;
}

} // namespace opcua
