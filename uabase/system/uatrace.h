// The developer's trace: a text file with rotation, a file for errors, and hooks.
#pragma once

#include <uabase/values/uastring.h>

#include <vector>

class UaTraceHook;

/// One trace for the whole process. All functions may be called on any thread.
///
/// Texts are data: they are never read as a format, and control characters in them are written as \n, \x1B
/// and so on, so that a record stays one line whatever a server sends. A record is cut at 2000 bytes. A file
/// that cannot be written any more (disk full, say) is turned off, with an error record to the hooks; the
/// caller notices nothing.
class UaTrace
{
public:
    /// A record is written when its level is at most the configured one.
    enum TraceLevel {
        NoTrace = 0,
        Errors = 1,
        Warning = 2,
        Info = 3,
        InterfaceCall = 4,
        CtorDtor = 5,
        ProgramFlow = 6,
        Data = 7
    };

    /// Opens the file, after moving what a previous run left in it to backup 1. A file that another running
    /// instance writes is left to it: this one takes "trace-2.log" instead of "trace.log", and so on to 9.
    /// maxEntries counts the records of one file, its header as two; 0 means no limit. 0, or -1 when a file
    /// is open already or cannot be opened.
    [[nodiscard]] static int initTrace(TraceLevel level, unsigned int maxEntries, unsigned int numBackupFiles,
                                       const UaString& fileName, const UaString& appName);
    /// Changes the open trace; another name moves it to that file. -1, and all as it was, when none is open
    /// or the new file cannot be opened.
    [[nodiscard]] static int changeTrace(TraceLevel level, unsigned int maxEntries,
                                         unsigned int numBackupFiles, const UaString& fileName);
    /// Ends the file and sets the level to NoTrace. Errors, warnings and information still reach the error
    /// file and the error hook.
    static void closeTrace();
    /// Opens a file of its own for errors, warnings and information, whatever the level; its previous content
    /// is kept under the name with ".bak". 0 or -1 as for initTrace.
    [[nodiscard]] static int initErrorTrace(const UaString& fileName, const UaString& appName);
    static void closeErrorTrace();
    static void flushTrace();

    static void setTraceLevel(TraceLevel level);
    [[nodiscard]] static TraceLevel traceLevel();
    /// The file in use, null when none is open.
    [[nodiscard]] static UaString traceFileName();
    [[nodiscard]] static UaString applicationName();

    /// The trace hook gets what the level lets through, the error hook errors, warnings and information at
    /// any level. Null takes a hook away: on return it is not running and will not be called again (unless a
    /// hook itself makes the call).
    static void setTraceHook(UaTraceHook* hook);
    static void setErrorTraceHook(UaTraceHook* hook);

    /// Keeps records of at most the level in memory until a file is opened; beyond the maximum the oldest go.
    /// They stay until they are cleared.
    static void setPreFileTrace(bool enabled, TraceLevel level);
    static void setMaxPreFileTraceEntries(unsigned int maximum);
    [[nodiscard]] static std::vector<UaString> getPreFileTraces();
    static void clearPreFileTraces();

    /// Form of the records: local time instead of UTC, with the date, and whether each record is flushed.
    static void setLocalTimeOutput(bool enabled);
    static void setPrintDateInTrace(bool enabled);
    static void setFlushDisabled(bool disabled);
    /// Lines at the head of each file that is opened from now on.
    static void setProductVersion(const UaString& version);
    static void addTraceHeaderEntry(const UaString& entry);

    static void tError(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tWarning(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tInfo(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tIfCall(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tCtor(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tInOut(const char* format, ...) OPCUA_PRINTF(1, 2);
    static void tData(const char* format, ...) OPCUA_PRINTF(1, 2);

    /// Whether a record of this level goes anywhere; for callers whose text is dear to make.
    [[nodiscard]] static bool isWanted(TraceLevel level);
    /// force writes the record at any configured level.
    static void traceOutput(TraceLevel level, const char* text, int moduleId, bool force = false);

    /// "trace.log" and 1 give "trace.log_1.log"; "trace" gives "trace_1.log".
    [[nodiscard]] static UaString buildBackupFileName(const UaString& name, unsigned int number);

    UaTrace() = delete;
};
