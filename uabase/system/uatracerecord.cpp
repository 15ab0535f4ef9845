// UaTraceRecord of uatrace_p.h: the form of a line.
#include <uabase/system/uaescape.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatrace_p.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <ctime>

namespace {

// A cut must not leave half a character before the line end.
std::size_t wholeCharacters(const char* text, std::size_t length)
{
    std::size_t start = length;
    while (start > 0 && length - start < 4) {
        const auto byte = static_cast<unsigned char>(text[--start]);
        if ((byte & 0xC0) == 0x80)
            continue;
        const std::size_t needed = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length - start < needed ? start : length;
    }
    return length;
}

struct LocalTime
{
    std::tm parts{};
    int milliseconds = 0;
};

LocalTime localNow()
{
    std::timespec now{};
    std::timespec_get(&now, TIME_UTC);
    LocalTime local;
    ::localtime_r(&now.tv_sec, &local.parts);
    local.milliseconds = static_cast<int>(now.tv_nsec / 1000000);
    return local;
}

} // namespace

UaTraceRecord::UaTraceRecord(Form form, UaTrace::TraceLevel level, const char* text)
{
    std::array<char, lineSize> clean;
    uaEscapeControls(text, clean.data(), clean.size());
    m_line[0] = '\0';
    format(form, level, clean.data());
    std::size_t length = std::strlen(m_line.data());
    if (length == 0 || m_line[length - 1] != '\n') {
        length = wholeCharacters(m_line.data(), length < lineSize - 1 ? length : lineSize - 2);
        m_line[length] = '\n';
        m_line[length + 1] = '\0';
    }
}

void UaTraceRecord::format(Form form, UaTrace::TraceLevel level, const char* text)
{
    const int number = static_cast<int>(level);
    const OpcUa_UInt32 thread = OpcUa_Thread_GetCurrentThreadId();
    if (!form.localTime) {
        const UaDateTime now = UaDateTime::now();
        const UaString time = form.withDate ? now.toString() : now.toTimeString();
        OpcUa_StringA_snprintf(m_line.data(), lineSize, "%s|%d|%04X* %s\n", time.toUtf8(), number, thread,
                               text);
        return;
    }
    const LocalTime now = localNow();
    const std::tm& t = now.parts;
    if (form.withDate) {
        // readers of these files know the percent sign before the bar
        OpcUa_StringA_snprintf(m_line.data(), lineSize, "%04d-%02d-%02dT%02d:%02d:%02d.%03d%|%d|%04X* %s\n",
                               t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec,
                               now.milliseconds, number, thread, text);
    } else {
        OpcUa_StringA_snprintf(m_line.data(), lineSize, "%02d:%02d:%02d.%03d|%d|%04X* %s\n", t.tm_hour,
                               t.tm_min, t.tm_sec, now.milliseconds, number, thread, text);
    }
}
