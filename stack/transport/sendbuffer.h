// Bytes that wait for a socket.
#pragma once

#include <stack/core/protocol.h>

namespace opcua {

class SendBuffer
{
public:
    /// Takes the bytes over and empties them.
    void append(Bytes& bytes);
    /// Writes what the socket takes. False when it is full, and room is to be waited for.
    [[nodiscard]] bool flush(int socket);
    [[nodiscard]] size_t size() const { return m_bytes.size() - m_sent; }

private:
    void dropSent();

    Bytes m_bytes;
    size_t m_sent = 0;
};

} // namespace opcua
