// UaTraceFile of uatrace_p.h: header, rotation, backups, the lock against other instances.
#include <uabase/system/uaescape.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatrace_p.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr unsigned int headerEntries = 2;
constexpr unsigned int maximumInstances = 9;

// Instance 1 writes the file itself, the others one with their number before the extension.
std::string instanceName(const std::string& path, unsigned int instance)
{
    if (instance == 1)
        return path;
    const std::size_t folder = path.find_last_of('/');
    const std::size_t name = folder == std::string::npos ? 0 : folder + 1;
    const std::size_t dot = path.find_last_of('.');
    const std::size_t end = dot == std::string::npos || dot <= name ? path.size() : dot;
    return path.substr(0, end) + '-' + std::to_string(instance) + path.substr(end);
}

bool isFilled(const UaDirPrivate::Descriptor& file)
{
    struct stat info;
    return ::fstat(file.get(), &info) == 0 && info.st_size > 0;
}

// What never was there cannot be lost.
std::error_code copyIfThere(const std::string& source, const std::string& target)
{
    if (::access(source.c_str(), F_OK) != 0 && errno == ENOENT)
        return {};
    return UaDirPrivate::copy(source, target, UaDirPrivate::Durability::Cached);
}

} // namespace

UaTraceFile::UaTraceFile(const UaString& fileName, Backups backups, const UaTraceHeader& header)
    : m_requestedName(fileName), m_backups(backups), m_header(header)
{
}

std::error_code UaTraceFile::open(Limits limits)
{
    m_limits = limits;
    if (const std::error_code error = reserve())
        return error;
    return backupTrace();
}

std::error_code UaTraceFile::reserve()
{
    const std::string path = UaDirPrivate::toPath(m_requestedName);
    if (path.empty())
        return std::make_error_code(std::errc::invalid_argument);
    std::error_code error;
    for (unsigned int instance = 1; instance <= maximumInstances; ++instance) {
        m_path = instanceName(path, instance);
        error = lock(m_path);
        if (error != std::errc::operation_would_block)
            break;
    }
    return error;
}

std::error_code UaTraceFile::lock(const std::string& path)
{
    // the trace tells what the user does where: it is for this user alone
    m_lock.reset(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600));
    if (!m_lock.isOpen())
        return UaDirPrivate::lastError();
    struct stat info;
    if (::fstat(m_lock.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return std::make_error_code(std::errc::invalid_argument);
    if (::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return std::make_error_code(std::errc::operation_would_block);
    return {}; // a file system without locks is used without them
}

void UaTraceFile::close()
{
    if (m_file != nullptr) {
        std::fclose(m_file);
        m_file = nullptr;
    }
}

std::error_code UaTraceFile::write(const char* line, bool flush)
{
    if (std::fputs(line, m_file) < 0 || (flush && std::fflush(m_file) != 0))
        return UaDirPrivate::lastError();
    ++m_entries;
    return m_limits.maxEntries != 0 && m_entries >= m_limits.maxEntries ? backupTrace() : std::error_code();
}

void UaTraceFile::flush()
{
    if (m_file != nullptr)
        std::fflush(m_file); // an error stays set and shows at the next record
}

std::error_code UaTraceFile::backupTrace()
{
    close();
    m_entries = headerEntries;
    // a file that could not be saved must not be emptied
    if (const std::error_code error = keepBackups())
        return error;
    return reopen();
}

std::error_code UaTraceFile::keepBackups()
{
    if (!isFilled(m_lock))
        return {};
    for (unsigned int number = m_limits.numBackupFiles; number >= 2; --number)
        if (const std::error_code error = copyIfThere(backupName(number - 1), backupName(number)))
            return error;
    return copyIfThere(m_path, backupName(1));
}

std::error_code UaTraceFile::reopen()
{
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int descriptor = ::open(m_path.c_str(), flags, 0600);
    if (descriptor < 0)
        return UaDirPrivate::lastError();
    m_file = ::fdopen(descriptor, "a");
    if (m_file == nullptr) {
        const std::error_code error = UaDirPrivate::lastError();
        ::close(descriptor);
        return error;
    }
    return printHeader() ? std::error_code() : UaDirPrivate::lastError();
}

bool UaTraceFile::printHeader()
{
    std::array<char, UaTraceRecord::lineSize> text;
    const auto print = [this, &text](const char* format, const UaString& value) {
        uaEscapeControls(value.view(), text.data(), text.size());
        return std::fprintf(m_file, format, text.data()) >= 0;
    };
    const UaDateTime now = UaDateTime::now();
    bool written = print("** %s: start trace\n", now.toString());
    written = print("** Product version: %s\n", m_header.productVersion) && written;
    for (const UaString& entry : m_header.entries)
        written = print("** %s\n", entry) && written;
    written = print("** Date: %s\n**\n", now.toDateString()) && written;
    return std::fflush(m_file) == 0 && written;
}

std::string UaTraceFile::backupName(unsigned int number) const
{
    return m_backups == Backups::Bak ? m_path + ".bak"
                                     : UaTrace::buildBackupFileName(UaString(m_path), number).toStdString();
}
