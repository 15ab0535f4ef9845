// Bytes that wait for a socket.
#pragma once

#include <stack/core/protocol.h>

#include <cstdint>

namespace opcua {

class SendBuffer
{
public:
    /// Takes the bytes over and empties them.
    void append(Bytes& bytes);
    /// Writes what the socket takes. False when it is full, and room is to be waited for. After a failure
    /// everything is dropped, now and later: the reader finds out why, and whether the peer said a last word.
    [[nodiscard]] bool flush(int socket);
    [[nodiscard]] size_t size() const { return m_bytes.size() - m_sent; }
    /// How many bytes sockets have taken in all.
    [[nodiscard]] std::uint64_t sentInAll() const { return m_sentInAll; }
    /// As many, when all that is here has been sent.
    [[nodiscard]] std::uint64_t end() const { return m_sentInAll + size(); }
    void clear();

private:
    void dropSent();

    Bytes m_bytes;
    size_t m_sent = 0; ///< of m_bytes
    std::uint64_t m_sentInAll = 0;
    bool m_broken = false;
};

} // namespace opcua
