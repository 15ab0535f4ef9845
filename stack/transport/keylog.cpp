#include <stack/transport/keylog.h>

#include <opcua/opcua_channel.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace opcua {

namespace {

constexpr const char* variable = "OPCUA_KEYLOGFILE";
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

void appendHex(std::string& text, ByteView bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    for (const OpcUa_Byte byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
}

void appendDirection(std::string& text, std::string_view side, const std::string& token,
                     const TokenKeys::Direction& keys)
{
    const auto name = [&](const char* what) { text.append(side).append(what).append(token).append(": "); };
    name("_iv_");
    appendHex(text, keys.initializationVector.view());
    text += '\n';
    name("_key_");
    appendHex(text, keys.encrypting.view());
    text += '\n';
    name("_siglen_");
    text += std::to_string(keys.signatureLength);
}

} // namespace

std::shared_ptr<KeyLog> KeyLog::fromEnvironment()
{
    const char* const path = ::secure_getenv(variable);
    if (path == nullptr || *path == '\0')
        return nullptr;
    auto log = open(path);
    if (log)
        OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "Keys of secured channels are written to '%s'", path);
    else
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "'%s' cannot be used for keys of secured channels", path);
    return log;
}

std::shared_ptr<KeyLog> KeyLog::open(const std::string& path)
{
    // no link that somebody else laid, and no wait for the other end of a pipe
    UniqueFd file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, ownerOnly));
    struct stat status
    {
    };
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        ::fchmod(file.get(), ownerOnly) != 0)
        return nullptr;
    return std::shared_ptr<KeyLog>(new KeyLog(std::move(file)));
}

void KeyLog::append(std::string_view lines)
{
    Secret text(lines.size() + 1);
    std::copy(lines.begin(), lines.end(), text.data());
    text.data()[lines.size()] = '\n';
    const std::lock_guard lock(m_mutex);
    for (ByteView rest = text.view(); !rest.empty();) {
        const ssize_t count = ::write(m_file.get(), rest.data(), rest.size());
        if (count > 0)
            rest = rest.subspan(static_cast<size_t>(count));
        else if (errno != EINTR)
            return;
    }
}

std::string keyLogLines(OpcUa_UInt32 channelId, OpcUa_UInt32 tokenId, const TokenKeys& keys)
{
    const std::string token = std::to_string(channelId) + '_' + std::to_string(tokenId);
    std::string text;
    appendDirection(text, "client", token, keys.own);
    text += '\n';
    appendDirection(text, "server", token, keys.peer);
    return text;
}

} // namespace opcua
