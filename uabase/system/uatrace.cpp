#include <uabase/system/uatrace.h>

#include <uabase/system/uatrace_p.h>
#include <uabase/system/uatracehook.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

constexpr unsigned int defaultPreFileEntries = 1000;

// Everything but the hooks is guarded by the mutex; the atomics are read without it.
struct State
{
    std::mutex mutex;
    UaTraceHeader header;
    UaString applicationName;
    UaTraceFile::Limits limits;
    std::unique_ptr<UaTraceFile> file;
    std::unique_ptr<UaTraceFile> errorFile;
    std::deque<UaString> preFile;
    unsigned int maxPreFile = defaultPreFileEntries;
    bool preFileMode = false;
    UaTrace::TraceLevel preFileLevel = UaTrace::NoTrace;

    std::atomic<UaTrace::TraceLevel> level{UaTrace::NoTrace};
    std::atomic<UaTrace::TraceLevel> wanted{UaTrace::NoTrace}; // up to here somebody listens
    std::atomic<bool> localTime{false};
    std::atomic<bool> withDate{false};
    std::atomic<bool> flushDisabled{false};

    UaTraceHookSlot hook;
    UaTraceHookSlot errorHook;
};

State& state()
{
    // never destroyed: threads may trace until the very end of the process
    static State* const instance = std::make_unique<State>().release();
    return *instance;
}

UaTrace::TraceLevel bufferLevel(const State& s)
{
    return s.file == nullptr && s.preFileMode ? std::max(s.level.load(), s.preFileLevel) : UaTrace::NoTrace;
}

using Guard = std::lock_guard<std::mutex>; // handed to what needs it, so that nobody can forget it

void updateWantedLocked(State& s, const Guard&)
{
    UaTrace::TraceLevel wanted = bufferLevel(s);
    if (s.file != nullptr || s.hook.isSet())
        wanted = std::max(wanted, s.level.load());
    if (s.errorFile != nullptr || s.errorHook.isSet())
        wanted = std::max(wanted, UaTrace::Info);
    s.wanted = wanted;
}

// Writes to one of the files; one that fails is given up, and what to tell about it is added to failures.
void writeLocked(State& s, std::unique_ptr<UaTraceFile>& file, const UaTraceRecord& record,
                 std::vector<std::string>& failures, const Guard& lock)
{
    const std::error_code error = file->write(record.line(), !s.flushDisabled);
    if (error) {
        failures.push_back("Trace file " + file->name().toStdString() +
                           " was turned off: " + error.message());
        file.reset();
        updateWantedLocked(s, lock);
    }
}

void keepLocked(State& s, const UaTraceRecord& record, const Guard&)
{
    std::string line = record.line();
    line.pop_back();
    s.preFile.emplace_back(line);
    while (s.preFile.size() > s.maxPreFile)
        s.preFile.pop_front();
}

std::vector<std::string> store(State& s, UaTrace::TraceLevel level, const char* text, bool force)
{
    const UaTraceRecord record({s.localTime, s.withDate}, level, text);
    std::vector<std::string> failures;
    const Guard lock(s.mutex);
    if (s.file != nullptr && (force || level <= s.level))
        writeLocked(s, s.file, record, failures, lock);
    else if (s.file == nullptr && s.preFileMode && (force || level <= bufferLevel(s)))
        keepLocked(s, record, lock);
    if (s.errorFile != nullptr && level <= UaTrace::Info)
        writeLocked(s, s.errorFile, record, failures, lock);
    return failures;
}

std::unique_ptr<UaTraceFile> openFile(State& s, const UaString& fileName, UaTraceFile::Backups backups,
                                      UaTraceFile::Limits limits)
{
    auto file = std::make_unique<UaTraceFile>(fileName, backups, s.header);
    return file->open(limits) ? nullptr : std::move(file);
}

void formatted(UaTrace::TraceLevel level, const char* format, std::va_list arguments)
{
    std::array<char, UaTraceRecord::lineSize> text;
    std::vsnprintf(text.data(), text.size(), format, arguments);
    UaTrace::traceOutput(level, text.data(), 0);
}

} // namespace

int UaTrace::initTrace(TraceLevel level, unsigned int maxEntries, unsigned int numBackupFiles,
                       const UaString& fileName, const UaString& appName)
{
    State& s = state();
    const Guard lock(s.mutex);
    if (s.file != nullptr)
        return -1;
    s.applicationName = appName;
    s.limits = {maxEntries, numBackupFiles};
    s.preFileMode = false;
    s.file = openFile(s, fileName, UaTraceFile::Backups::Numbered, s.limits);
    if (s.file != nullptr)
        s.level = level;
    updateWantedLocked(s, lock);
    return s.file != nullptr ? 0 : -1;
}

int UaTrace::changeTrace(TraceLevel level, unsigned int maxEntries, unsigned int numBackupFiles,
                         const UaString& fileName)
{
    State& s = state();
    const Guard lock(s.mutex);
    if (s.file == nullptr)
        return -1;
    const UaTraceFile::Limits limits{maxEntries, numBackupFiles};
    if (fileName != s.file->requestedName()) {
        auto file = openFile(s, fileName, UaTraceFile::Backups::Numbered, limits);
        if (file == nullptr)
            return -1;
        s.file = std::move(file);
    }
    s.limits = limits;
    s.file->setLimits(limits);
    s.level = level;
    updateWantedLocked(s, lock);
    return 0;
}

void UaTrace::closeTrace()
{
    State& s = state();
    const Guard lock(s.mutex);
    s.file.reset();
    s.level = NoTrace;
    updateWantedLocked(s, lock);
}

int UaTrace::initErrorTrace(const UaString& fileName, const UaString& appName)
{
    State& s = state();
    const Guard lock(s.mutex);
    if (s.errorFile != nullptr)
        return -1;
    s.applicationName = appName;
    s.errorFile = openFile(s, fileName, UaTraceFile::Backups::Bak, s.limits);
    updateWantedLocked(s, lock);
    return s.errorFile != nullptr ? 0 : -1;
}

void UaTrace::closeErrorTrace()
{
    State& s = state();
    const Guard lock(s.mutex);
    s.errorFile.reset();
    updateWantedLocked(s, lock);
}

void UaTrace::flushTrace()
{
    State& s = state();
    const Guard lock(s.mutex);
    for (UaTraceFile* file : {s.file.get(), s.errorFile.get()})
        if (file != nullptr)
            file->flush();
}

void UaTrace::setTraceLevel(TraceLevel level)
{
    State& s = state();
    const Guard lock(s.mutex);
    s.level = level;
    updateWantedLocked(s, lock);
}

UaTrace::TraceLevel UaTrace::traceLevel()
{
    return state().level;
}

UaString UaTrace::traceFileName()
{
    State& s = state();
    const Guard lock(s.mutex);
    return s.file != nullptr ? s.file->name() : UaString();
}

UaString UaTrace::applicationName()
{
    State& s = state();
    const Guard lock(s.mutex);
    return s.applicationName;
}

void UaTrace::setTraceHook(UaTraceHook* hook)
{
    State& s = state();
    s.hook.set(hook);
    const Guard lock(s.mutex);
    updateWantedLocked(s, lock);
}

void UaTrace::setErrorTraceHook(UaTraceHook* hook)
{
    State& s = state();
    s.errorHook.set(hook);
    const Guard lock(s.mutex);
    updateWantedLocked(s, lock);
}

void UaTrace::setPreFileTrace(bool enabled, TraceLevel level)
{
    State& s = state();
    const Guard lock(s.mutex);
    s.preFileMode = enabled;
    s.preFileLevel = level;
    updateWantedLocked(s, lock);
}

void UaTrace::setMaxPreFileTraceEntries(unsigned int maximum)
{
    State& s = state();
    const Guard lock(s.mutex);
    s.maxPreFile = maximum;
}

std::vector<UaString> UaTrace::getPreFileTraces()
{
    State& s = state();
    const Guard lock(s.mutex);
    return {s.preFile.begin(), s.preFile.end()};
}

void UaTrace::clearPreFileTraces()
{
    State& s = state();
    const Guard lock(s.mutex);
    s.preFile.clear();
}

void UaTrace::setLocalTimeOutput(bool enabled)
{
    state().localTime = enabled;
}

void UaTrace::setPrintDateInTrace(bool enabled)
{
    state().withDate = enabled;
}

void UaTrace::setFlushDisabled(bool disabled)
{
    state().flushDisabled = disabled;
}

void UaTrace::setProductVersion(const UaString& version)
{
    State& s = state();
    const Guard lock(s.mutex);
    s.header.productVersion = version;
}

void UaTrace::addTraceHeaderEntry(const UaString& entry)
{
    State& s = state();
    const Guard lock(s.mutex);
    s.header.entries.push_back(entry);
}

// The level is tested before anything is formatted: most records of a quiet trace cost this one comparison.
#define UATRACE_WRITER(name, level)                                                                          \
    void UaTrace::name(const char* format, ...)                                                              \
    {                                                                                                        \
        if (isWanted(level)) {                                                                               \
            std::va_list arguments;                                                                          \
            va_start(arguments, format);                                                                     \
            formatted(level, format, arguments);                                                             \
            va_end(arguments);                                                                               \
        }                                                                                                    \
    }

UATRACE_WRITER(tError, Errors)
UATRACE_WRITER(tWarning, Warning)
UATRACE_WRITER(tInfo, Info)
UATRACE_WRITER(tIfCall, InterfaceCall)
UATRACE_WRITER(tCtor, CtorDtor)
UATRACE_WRITER(tInOut, ProgramFlow)
UATRACE_WRITER(tData, Data)

#undef UATRACE_WRITER

bool UaTrace::isWanted(TraceLevel level)
{
    return level <= state().wanted.load(std::memory_order_relaxed);
}

void UaTrace::traceOutput(TraceLevel level, const char* text, int moduleId, bool force)
{
    State& s = state();
    if (text == nullptr || !(force || isWanted(level)))
        return;
    if (force || level <= s.level)
        s.hook.call(level, text, moduleId);
    const std::vector<std::string> failures = store(s, level, text, force);
    if (level <= Info)
        s.errorHook.call(level, text, moduleId);
    for (const std::string& failure : failures)
        traceOutput(Errors, failure.c_str(), moduleId, true);
}

UaString UaTrace::buildBackupFileName(const UaString& name, unsigned int number)
{
    std::array<char, 2000> backup;
    const std::size_t dot = name.view().find_last_of('.');
    const std::size_t folder = name.view().find_last_of('/');
    // a dot in the name of a folder starts no extension
    if (dot == std::string_view::npos || (folder != std::string_view::npos && dot < folder))
        std::snprintf(backup.data(), backup.size(), "%s_%u.log", name.toUtf8(), number);
    else
        std::snprintf(backup.data(), backup.size(), "%s_%u%s", name.toUtf8(), number, name.toUtf8() + dot);
    return UaString(backup.data());
}
