#include <stack/core/messageassembler.h>

namespace opcua {

namespace {
// Interleaving is rare; a peer that leaves many large messages unfinished is no friend.
constexpr size_t unfinishedMessages = 4;
} // namespace

MessageAssembler::Outcome MessageAssembler::add(OpcUa_UInt32 requestId, bool final, ByteView body,
                                                Bytes& message)
{
    const auto found = m_parts.find(requestId);
    const size_t sizeBefore = found == m_parts.end() ? 0 : found->second.body.size();
    const size_t chunksBefore = found == m_parts.end() ? 0 : found->second.chunks;
    if (body.size() > m_maxMessageSize - sizeBefore || chunksBefore >= m_maxChunkCount)
        return Outcome::TooLarge;
    if (final && found == m_parts.end()) {
        message.assign(body.begin(), body.end());
        return Outcome::Complete;
    }
    if (!final && (m_buffered + body.size() > unfinishedMessages * m_maxMessageSize ||
                   m_bufferedChunks >= unfinishedMessages * m_maxChunkCount))
        return Outcome::TooLarge;
    Part& part = found == m_parts.end() ? m_parts[requestId] : found->second;
    part.body.insert(part.body.end(), body.begin(), body.end());
    ++part.chunks;
    m_buffered += body.size();
    ++m_bufferedChunks;
    if (!final)
        return Outcome::Incomplete;
    Bytes whole = std::move(part.body);
    part.body.clear();
    m_buffered -= whole.size();
    drop(requestId);
    message = std::move(whole);
    return Outcome::Complete;
}

void MessageAssembler::drop(OpcUa_UInt32 requestId)
{
    const auto found = m_parts.find(requestId);
    if (found == m_parts.end())
        return;
    m_buffered -= found->second.body.size();
    m_bufferedChunks -= found->second.chunks;
    m_parts.erase(found);
}

void MessageAssembler::clear()
{
    m_parts.clear();
    m_buffered = 0;
    m_bufferedChunks = 0;
}

} // namespace opcua
