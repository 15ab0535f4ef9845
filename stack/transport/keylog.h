// Keys of secured conversations for a protocol analyser. Off unless the environment variable OPCUA_KEYLOGFILE
// names a file; whoever sets it gives away what the channels of this program say.
#pragma once

#include <stack/core/securitypolicy.h>
#include <stack/transport/uniquefd.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace opcua {

class KeyLog
{
public:
    /// What the environment asks for; null when it names no file, or one that cannot be kept to its owner.
    /// The file is appended to, for several programs may share it, and readable to its owner only.
    [[nodiscard]] static std::shared_ptr<KeyLog> fromEnvironment();
    [[nodiscard]] static std::shared_ptr<KeyLog> open(const std::string& path);

    /// One or more lines without the last line end, as they are. Any thread; lines of one call stay together.
    /// A line that cannot be written is lost: a full disk must not end a channel.
    void append(std::string_view lines);

private:
    explicit KeyLog(UniqueFd file) : m_file(std::move(file)) {}

    std::mutex m_mutex;
    UniqueFd m_file;
};

/// The lines for one token of a secured channel: vector and key in hexadecimal digits and the signature's
/// length, of the client's and of the server's chunks.
[[nodiscard]] std::string keyLogLines(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys);

} // namespace opcua
