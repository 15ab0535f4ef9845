#include <stack/core/messageassembler.h>

namespace opcua {

namespace {
// Interleaving is rare; a peer that leaves many large messages unfinished is no friend.
constexpr size_t unfinishedMessages = 4;
} // namespace

bool MessageAssembler::fits(const Extent& message, size_t size) const
{
    return size <= m_maxMessageSize - message.bytes && message.chunks < m_maxChunkCount;
}

bool MessageAssembler::fitsUnfinished(const Extent& messages, size_t size) const
{
    return messages.bytes + size <= unfinishedMessages * m_maxMessageSize &&
           messages.chunks < unfinishedMessages * m_maxChunkCount;
}

MessageAssembler::Outcome MessageAssembler::add(OpcUa_UInt32 requestId, bool final, ByteView body,
                                                Bytes& message)
{
    const auto found = m_parts.find(requestId);
    const Extent before =
        found == m_parts.end() ? Extent{} : Extent{found->second.body.size(), found->second.chunks};
    if (!fits(before, body.size()))
        return Outcome::TooLarge;
    if (final && found == m_parts.end()) {
        message.assign(body.begin(), body.end());
        return Outcome::Complete;
    }
    if (!final && !fitsUnfinished(m_buffered, body.size()))
        return Outcome::TooLarge;
    Part& part = found == m_parts.end() ? m_parts[requestId] : found->second;
    part.body.insert(part.body.end(), body.begin(), body.end());
    ++part.chunks;
    m_buffered.bytes += body.size();
    ++m_buffered.chunks;
    if (!final)
        return Outcome::Incomplete;
    Bytes whole = std::move(part.body);
    part.body.clear();
    m_buffered.bytes -= whole.size();
    drop(requestId);
    message = std::move(whole);
    return Outcome::Complete;
}

MessageAssembler::Outcome MessageAssembler::skip(OpcUa_UInt32 requestId, bool final, size_t size)
{
    const auto found = m_skipped.find(requestId);
    if (!fits(found == m_skipped.end() ? Extent{} : found->second, size))
        return Outcome::TooLarge;
    if (final) {
        drop(requestId);
        return Outcome::Complete;
    }
    if (!fitsUnfinished(m_skippedTotal, size))
        return Outcome::TooLarge;
    addSkipped(requestId, {size, 1});
    return Outcome::Incomplete;
}

void MessageAssembler::addSkipped(OpcUa_UInt32 requestId, const Extent& extent)
{
    Extent& message = m_skipped[requestId];
    for (Extent* const sum : {&message, &m_skippedTotal}) {
        sum->bytes += extent.bytes;
        sum->chunks += extent.chunks;
    }
}

void MessageAssembler::drop(OpcUa_UInt32 requestId)
{
    if (const auto part = m_parts.extract(requestId)) {
        m_buffered.bytes -= part.mapped().body.size();
        m_buffered.chunks -= part.mapped().chunks;
    }
    if (const auto skipped = m_skipped.extract(requestId)) {
        m_skippedTotal.bytes -= skipped.mapped().bytes;
        m_skippedTotal.chunks -= skipped.mapped().chunks;
    }
}

void MessageAssembler::giveUp(OpcUa_UInt32 requestId)
{
    const auto found = m_parts.find(requestId);
    if (found == m_parts.end())
        return;
    const Extent extent{found->second.body.size(), found->second.chunks};
    drop(requestId);
    addSkipped(requestId, extent);
}

void MessageAssembler::clear()
{
    m_parts.clear();
    m_buffered = {};
    m_skipped.clear();
    m_skippedTotal = {};
}

} // namespace opcua
