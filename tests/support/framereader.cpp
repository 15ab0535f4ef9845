#include <tests/support/framereader.h>

#include <utility>

namespace faultproxy {

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t bodyOffset = 24; // of a message without encryption
constexpr std::size_t maximumSize = 16 * 1024 * 1024;
constexpr char fourByteNodeId = 1;

std::uint32_t number(const char* bytes, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t n = count; n-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[n]);
    return value;
}

} // namespace

Frame FrameReader::nextFrame(std::size_t at, std::size_t size)
{
    const char* bytes = m_rest.data() + at;
    Frame frame;
    frame.type.assign(bytes, 3);
    frame.ordinal = ++m_seen[frame.type];
    frame.size = size;
    if (size >= bodyOffset + 4 && bytes[bodyOffset] == fourByteNodeId && bytes[bodyOffset + 1] == 0)
        frame.typeId = number(bytes + bodyOffset + 2, 2);
    return frame;
}

bool FrameReader::filter(std::vector<char>& bytes, const FramePredicate& silentFrom)
{
    if (m_lost)
        return false;
    const bool before = m_silent;
    m_rest.insert(m_rest.end(), bytes.begin(), bytes.end());
    std::size_t whole = 0;
    while (!m_silent && m_rest.size() - whole >= headerSize) {
        const std::size_t size = number(m_rest.data() + whole + 4, 4);
        if (size < headerSize || size > maximumSize) {
            m_lost = true;
            bytes = std::exchange(m_rest, {});
            return false;
        }
        if (m_rest.size() - whole < size)
            break;
        const Frame frame = nextFrame(whole, size);
        if (silentFrom && silentFrom(frame))
            m_silent = true;
        else
            whole += size;
    }
    const auto end = m_rest.begin() + static_cast<std::ptrdiff_t>(whole);
    bytes.assign(m_rest.begin(), end);
    m_rest.erase(m_rest.begin(), m_silent ? m_rest.end() : end);
    return m_silent && !before;
}

} // namespace faultproxy
