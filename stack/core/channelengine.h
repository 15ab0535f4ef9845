// What both roles of a secure channel are made of: bytes come in, are cut into frames and given to the role.
#pragma once

#include <stack/core/secureconversation.h>

#include <memory>
#include <utility>

namespace opcua {

class ChannelEngine
{
public:
    /// What the peer sent; may be changed in place.
    void receive(MutableByteView bytes, TimePoint now);
    /// Bytes for the peer; the owner takes them away.
    [[nodiscard]] Bytes& output() { return m_output; }

protected:
    ChannelEngine(const ChannelLimits& limits, std::unique_ptr<SecurityPolicy> policy)
        : m_conversation(std::move(policy), limits), m_reader(limits.receiveBufferSize)
    {
    }
    virtual ~ChannelEngine() = default;
    ChannelEngine(const ChannelEngine&) = delete;
    ChannelEngine& operator=(const ChannelEngine&) = delete;

    SecureConversation m_conversation;
    Bytes m_output;
    TimePoint m_frameBegan{}; ///< when the first bytes of the frame that is being handled arrived

private:
    friend class EngineProbe; // for tests

    /// Whether the channel is there to hear more; what arrives otherwise is dropped.
    [[nodiscard]] virtual bool isListening() const = 0;
    virtual void handleFrame(const Frame& frame, TimePoint now) = 0;
    /// The stream holds something that is no frame.
    virtual void streamFailed(OpcUa_StatusCode status) = 0;

    FrameReader m_reader;
};

} // namespace opcua
