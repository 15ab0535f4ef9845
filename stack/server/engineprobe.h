// Looks into an engine where its interface has nothing to offer: for tests, fuzzers and benchmarks.
#pragma once

#include <stack/core/clientchannel.h>

#include <cstdint>

namespace opcua {

class EngineProbe
{
public:
    [[nodiscard]] static SecureConversation& conversation(ChannelEngine& engine)
    {
        return engine.m_conversation;
    }
    [[nodiscard]] static SequenceSender& sendSequence(ChannelEngine& engine)
    {
        return engine.m_conversation.m_sendSequence;
    }
    /// Goes on from here; a channel that lives for weeks gets to the wrap-around, a test does not.
    static void continueFrom(SequenceSender& sender, OpcUa_UInt32 number) { sender.m_next = number; }
    /// As if the request with this id had been the last.
    static void continueFrom(RequestTable& table, OpcUa_UInt32 id) { table.m_lastId = id; }
    /// Of messages that are not complete yet.
    [[nodiscard]] static size_t bufferedBytes(const MessageAssembler& assembler)
    {
        return assembler.m_buffered.bytes;
    }
    [[nodiscard]] static size_t bufferedBytes(const ChannelEngine& engine)
    {
        return bufferedBytes(engine.m_conversation.m_assembler);
    }
    [[nodiscard]] static size_t pendingRequests(const ClientChannel& channel)
    {
        return channel.m_requests.size();
    }
    /// Answers that nobody waited for any more.
    [[nodiscard]] static std::uint64_t droppedResponses(const ClientChannel& channel)
    {
        return channel.m_dropped;
    }
};

} // namespace opcua
