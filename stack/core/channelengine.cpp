#include <stack/core/channelengine.h>

namespace opcua {

void ChannelEngine::receive(MutableByteView bytes, TimePoint now)
{
    Frame frame;
    if (!m_reader.hasPart())
        m_frameBegan = now;
    while (isListening()) {
        switch (m_reader.next(bytes, frame)) {
        case FrameReader::Outcome::Frame:
            handleFrame(frame, now);
            m_frameBegan = now;
            break;
        case FrameReader::Outcome::NeedMore:
            return;
        case FrameReader::Outcome::Fault:
            return streamFailed(m_reader.fault());
        }
    }
}

} // namespace opcua
