// Parts of the trace: forming of records, the files, the hooks.
#pragma once

#include <uabase/system/uadir_p.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/values/uastring.h>

#include <array>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

class UaTraceRecord
{
public:
    static constexpr std::size_t lineSize = 2000;

    struct Form
    {
        bool localTime = false;
        bool withDate = false;
    };
    UaTraceRecord(Form form, UaTrace::TraceLevel level, const char* text);

    /// One line with its line end.
    const char* line() const { return m_line.data(); }

private:
    void format(Form form, UaTrace::TraceLevel level, const char* text);

    std::array<char, lineSize> m_line;
};

struct UaTraceHeader
{
    UaString productVersion;
    std::vector<UaString> entries;
};

/// A trace file with its backups. Not thread-safe.
class UaTraceFile
{
public:
    struct Limits
    {
        unsigned int maxEntries = 0;
        unsigned int numBackupFiles = 0;
    };
    enum class Backups { Numbered, Bak };

    /// The header must outlive the file.
    UaTraceFile(const UaString& fileName, Backups backups, const UaTraceHeader& header);
    ~UaTraceFile() { close(); }
    UaTraceFile(const UaTraceFile&) = delete;
    UaTraceFile& operator=(const UaTraceFile&) = delete;

    [[nodiscard]] std::error_code open(Limits limits);
    void close();
    /// Writes one line and changes files when this one is full; after an error the file is of no use any
    /// more.
    [[nodiscard]] std::error_code write(const char* line, bool flush);
    void flush();
    void setLimits(Limits limits) { m_limits = limits; }

    /// As asked for; as opened.
    const UaString& requestedName() const { return m_requestedName; }
    UaString name() const { return UaString(m_path); }

private:
    [[nodiscard]] std::error_code reserve();
    [[nodiscard]] std::error_code lock(const std::string& path);
    [[nodiscard]] std::error_code backupTrace();
    [[nodiscard]] std::error_code keepBackups();
    [[nodiscard]] std::error_code reopen();
    [[nodiscard]] bool printHeader();
    std::string backupName(unsigned int number) const;

    const UaString m_requestedName;
    const Backups m_backups;
    const UaTraceHeader& m_header;
    std::string m_path;
    Limits m_limits;
    unsigned int m_entries = 0;
    std::FILE* m_file = nullptr;
    UaDirPrivate::Descriptor m_lock; ///< keeps other instances off while the file changes
};

/// A place for a hook that can be emptied safely while other threads trace.
class UaTraceHookSlot
{
public:
    void set(UaTraceHook* hook);
    void call(UaTrace::TraceLevel level, const char* text, int moduleId);
    bool isSet() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_left;
    UaTraceHook* m_hook = nullptr;
    unsigned int m_inside = 0;
};
