// Cuts what a server says into the frames of the protocol, as far as that is possible without keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace faultproxy {

struct Frame
{
    std::string type;         ///< "ACK", "OPN", "MSG", ...
    std::size_t ordinal = 0;  ///< among those of its type on this connection, from 1
    std::size_t size = 0;     ///< bytes, with its header
    std::uint32_t typeId = 0; ///< of what the body encodes; says nothing when that is encrypted
};

using FramePredicate = std::function<bool(const Frame&)>;

class FrameReader
{
public:
    /// Leaves in bytes what may be passed on now: whole frames, the rest is kept for later. From the first
    /// frame on that silentFrom picks nothing is passed on any more. True when it picks one.
    bool filter(std::vector<char>& bytes, const FramePredicate& silentFrom);

private:
    [[nodiscard]] Frame nextFrame(std::size_t at, std::size_t size);

    std::vector<char> m_rest;
    std::map<std::string, std::size_t> m_seen;
    bool m_silent = false;
    bool m_lost = false; ///< the stream is none of frames, everything is passed on
};

} // namespace faultproxy
