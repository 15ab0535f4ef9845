// Files as a whole, copied and replaced in one step; declared in uadir.h and uadir_p.h.
#include <uabase/system/uadir.h>
#include <uabase/system/uadir_p.h>
#include <uabase/values/uastring.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace UaDirPrivate {

std::string toPath(const UaString& path)
{
    std::string name = path.toStdString();
    return name.find('\0') == std::string::npos ? name : std::string();
}

std::error_code lastError()
{
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

bool Descriptor::close()
{
    if (m_descriptor < 0)
        return true;
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    return result == 0;
}

std::error_code openRegularFile(const std::string& path, Descriptor& file)
{
    file.reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen())
        return lastError();
    struct stat info;
    if (::fstat(file.get(), &info) != 0)
        return lastError();
    return S_ISREG(info.st_mode) ? std::error_code() : std::make_error_code(std::errc::invalid_argument);
}

namespace {

// Reads up to the size of the buffer; 0 at the end of the file, negative on an error.
ssize_t readSome(int file, std::span<unsigned char> buffer)
{
    for (;;) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

// What a link finally names, so that replacing the file leaves the link in place.
std::string resolved(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real != nullptr ? std::string(real.get()) : path;
}

std::string folderOf(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().native();
    return folder.empty() ? std::string(".") : folder;
}

// The rename itself must survive a power cut too; file systems that cannot do it lose nothing else.
void flushFolder(const std::string& folder)
{
    const Descriptor handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.isOpen())
        ::fsync(handle.get());
}

} // namespace

Replacement::~Replacement()
{
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

std::error_code Replacement::open(const std::string& target, unsigned int mode)
{
    if (target.empty())
        return std::make_error_code(std::errc::invalid_argument);
    m_target = resolved(target);
    // the name does not grow with that of the target, which may use up the system's limit
    std::string name = folderOf(m_target) + "/.tavelin-XXXXXX";
    m_file.reset(::mkostemp(name.data(), O_CLOEXEC));
    if (!m_file.isOpen())
        return lastError();
    m_temporary = name;
    return ::fchmod(m_file.get(), static_cast<mode_t>(mode)) == 0 ? std::error_code() : lastError();
}

std::error_code Replacement::write(std::span<const unsigned char> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return lastError();
        if (count > 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code Replacement::commit(Durability durability)
{
    const bool flush = durability == Durability::Flushed;
    if ((flush && ::fsync(m_file.get()) != 0) || !m_file.close() ||
        ::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        return lastError();
    m_temporary.clear();
    if (flush)
        flushFolder(folderOf(m_target));
    return {};
}

std::error_code copy(const std::string& source, const std::string& target, Durability durability)
{
    Descriptor from;
    if (const std::error_code error = openRegularFile(source, from))
        return error;
    struct stat info;
    if (::fstat(from.get(), &info) != 0)
        return lastError();
    Replacement to;
    if (const std::error_code error = to.open(target, info.st_mode & 0777u))
        return error;
    std::array<unsigned char, 65536> buffer;
    ssize_t count = 0;
    while ((count = readSome(from.get(), buffer)) > 0)
        if (const std::error_code error = to.write(std::span(buffer).first(static_cast<std::size_t>(count))))
            return error;
    return count < 0 ? lastError() : to.commit(durability);
}

} // namespace UaDirPrivate

std::error_code uaWriteFileAtomically(const UaString& path, std::span<const unsigned char> bytes,
                                      unsigned int mode)
{
    UaDirPrivate::Replacement replacement;
    if (const std::error_code error = replacement.open(UaDirPrivate::toPath(path), mode))
        return error;
    if (const std::error_code error = replacement.write(bytes))
        return error;
    return replacement.commit(UaDirPrivate::Durability::Flushed);
}

std::error_code uaReadFile(const UaString& path, std::uint64_t maximumSize, std::vector<unsigned char>& bytes)
{
    bytes.clear();
    UaDirPrivate::Descriptor file;
    if (const std::error_code error = UaDirPrivate::openRegularFile(UaDirPrivate::toPath(path), file))
        return error;
    struct stat info;
    if (::fstat(file.get(), &info) != 0)
        return UaDirPrivate::lastError();
    if (static_cast<std::uint64_t>(info.st_size) <= maximumSize)
        bytes.reserve(static_cast<std::size_t>(info.st_size));
    std::array<unsigned char, 65536> buffer;
    ssize_t count = 0;
    // the file may grow while it is read: what counts is what came
    while ((count = UaDirPrivate::readSome(file.get(), buffer)) > 0) {
        if (bytes.size() + static_cast<std::size_t>(count) > maximumSize) {
            bytes.clear();
            return std::make_error_code(std::errc::file_too_large);
        }
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + count);
    }
    return count < 0 ? UaDirPrivate::lastError() : std::error_code();
}
