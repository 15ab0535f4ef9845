#include <stack/transport/sendbuffer.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <sys/socket.h>
#include <utility>

namespace opcua {

void SendBuffer::append(Bytes& bytes)
{
    if (m_bytes.empty())
        std::swap(m_bytes, bytes);
    else
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    bytes.clear();
}

bool SendBuffer::flush(int socket)
{
    bool full = false;
    while (size() != 0 && !full && !m_broken) {
        const ssize_t count = ::send(socket, m_bytes.data() + m_sent, size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            m_sent += static_cast<size_t>(count);
            m_sentInAll += static_cast<std::uint64_t>(count);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            full = true;
        } else if (errno != EINTR) {
            m_broken = true;
        }
    }
    if (m_broken)
        m_sent = m_bytes.size();
    dropSent();
    return !full;
}

void SendBuffer::clear()
{
    m_bytes.clear();
    m_sent = 0;
}

// Forgets what is sent, without moving the rest at every turn.
void SendBuffer::dropSent()
{
    constexpr size_t keptCapacity = 256 * 1024;
    constexpr size_t worthMoving = 1024 * 1024;
    if (m_sent == m_bytes.size()) {
        m_bytes.clear();
        m_sent = 0;
        if (m_bytes.capacity() > keptCapacity)
            m_bytes.shrink_to_fit();
    } else if (m_sent > worthMoving) {
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_sent));
        m_sent = 0;
    }
}

} // namespace opcua
