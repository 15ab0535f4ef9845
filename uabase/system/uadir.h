#pragma once

#include <uabase/values/uastring.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>
#include <vector>

/// Folders and files as the base library and those above it use them. Paths are UTF-8; a path that holds a
/// NUL is refused. All functions are safe on any thread.
class UaDir
{
public:
    /// The user's configuration folder: $HOME with "/.config", or "/.config" without HOME; cut at 4095 bytes.
    [[nodiscard]] static UaString applicationDataPath();

    [[nodiscard]] static bool exists(const UaString& path);
    [[nodiscard]] static bool isFile(const UaString& path);
    [[nodiscard]] static bool isDirectory(const UaString& path);
    /// Creates the folder and those above it; an existing one is left alone.
    [[nodiscard]] static std::error_code mkpath(const UaString& path);
    /// The names (no paths) of the regular files of a folder, sorted; links count as what they point to. No
    /// more than maximum of them, so that a hostile folder cannot hold up the start.
    [[nodiscard]] static std::vector<UaString> fileNames(const UaString& path, std::size_t maximum = 10000);

    /// Copies a regular file; the target is replaced in one step when the copy is complete, and else left as
    /// it was. The copy gets the access rights of the source.
    [[nodiscard]] static std::error_code copy(const UaString& source, const UaString& target);
    /// Removes a file or a link, no folder.
    [[nodiscard]] static std::error_code remove(const UaString& path);
};

/// Replaces the file in one step: temporary file in the same folder, flush to the disk, rename. Whatever
/// happens meanwhile, the old or the new content is there. mode is exact, whatever the process's mask says;
/// keys take 0600. A link is followed, so that what it points to is replaced.
[[nodiscard]] std::error_code
uaWriteFileAtomically(const UaString& path, std::span<const unsigned char> bytes, unsigned int mode = 0644);

/// Reads a whole regular file of up to maximumSize bytes, without ever blocking on a pipe or device.
/// std::errc::file_too_large and std::errc::invalid_argument (no regular file) are its own errors.
[[nodiscard]] std::error_code uaReadFile(const UaString& path, std::uint64_t maximumSize,
                                         std::vector<unsigned char>& bytes);
