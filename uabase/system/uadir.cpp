#include <uabase/system/uadir.h>

#include <uabase/system/uadir_p.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

UaString UaDir::applicationDataPath()
{
    std::array<char, 4096> path{};
    const char* home = std::getenv("HOME");
    std::snprintf(path.data(), path.size(), "%s/.config", home != nullptr ? home : "");
    return UaString(path.data());
}

bool UaDir::exists(const UaString& path)
{
    struct stat info;
    const std::string name = UaDirPrivate::toPath(path);
    return !name.empty() && ::stat(name.c_str(), &info) == 0;
}

bool UaDir::isFile(const UaString& path)
{
    struct stat info;
    const std::string name = UaDirPrivate::toPath(path);
    return !name.empty() && ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool UaDir::isDirectory(const UaString& path)
{
    struct stat info;
    const std::string name = UaDirPrivate::toPath(path);
    return !name.empty() && ::stat(name.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::error_code UaDir::mkpath(const UaString& path)
{
    const std::string name = UaDirPrivate::toPath(path);
    if (name.empty())
        return std::make_error_code(std::errc::invalid_argument);
    std::error_code error;
    fs::create_directories(name, error);
    if (!error && !isDirectory(path))
        error = std::make_error_code(std::errc::not_a_directory);
    return error;
}

std::vector<UaString> UaDir::fileNames(const UaString& path, std::size_t maximum)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(UaDirPrivate::toPath(path), error);
    for (; !error && entry != fs::directory_iterator() && names.size() < maximum; entry.increment(error)) {
        std::error_code unreadable; // a link to itself, say: skipped
        if (entry->is_regular_file(unreadable))
            names.push_back(entry->path().filename().native());
    }
    std::sort(names.begin(), names.end());
    std::vector<UaString> result;
    result.reserve(names.size());
    for (const std::string& name : names)
        result.emplace_back(name.c_str());
    return result;
}

std::error_code UaDir::copy(const UaString& source, const UaString& target)
{
    return UaDirPrivate::copy(UaDirPrivate::toPath(source), UaDirPrivate::toPath(target),
                              UaDirPrivate::Durability::Flushed);
}

std::error_code UaDir::remove(const UaString& path)
{
    const std::string name = UaDirPrivate::toPath(path);
    if (name.empty())
        return std::make_error_code(std::errc::invalid_argument);
    return ::unlink(name.c_str()) == 0 ? std::error_code() : UaDirPrivate::lastError();
}
