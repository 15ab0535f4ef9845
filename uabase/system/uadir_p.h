#pragma once

#include <uabase/values/uastring.h>

#include <span>
#include <string>
#include <system_error>

/// File work of the base library on plain paths; an empty path is an error to all of them.
namespace UaDirPrivate {

/// Empty when the text holds a NUL: the system would see another name than the user.
[[nodiscard]] std::string toPath(const UaString& path);
[[nodiscard]] std::error_code lastError();

/// Whether a change is on the disk, or only safe from a crash of this program, when a function returns.
enum class Durability { Flushed, Cached };

[[nodiscard]] std::error_code copy(const std::string& source, const std::string& target,
                                   Durability durability);

/// An open file; closed with its scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~Descriptor() { static_cast<void>(close()); } // who writes has closed it and looked
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int get() const { return m_descriptor; }
    void reset(int descriptor)
    {
        static_cast<void>(close());
        m_descriptor = descriptor;
    }
    /// False when the system reports late that something was not written.
    [[nodiscard]] bool close();

private:
    int m_descriptor;
};

/// Opens a regular file for reading; a pipe or device is refused instead of waited for.
[[nodiscard]] std::error_code openRegularFile(const std::string& path, Descriptor& file);

/// A file that takes the place of another in one step. Without commit() nothing stays behind.
class Replacement
{
public:
    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    [[nodiscard]] std::error_code open(const std::string& target, unsigned int mode);
    [[nodiscard]] std::error_code write(std::span<const unsigned char> bytes);
    [[nodiscard]] std::error_code commit(Durability durability);

private:
    Descriptor m_file;
    std::string m_target;
    std::string m_temporary;
};

} // namespace UaDirPrivate
