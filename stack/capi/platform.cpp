// Clock, thread ids, text and the life cycle of the platform layer.
#include <opcua/opcua_builtintypes.h>
#include <opcua/opcua_platform.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/capi/sourcetimestamp.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

namespace {

std::atomic<int> g_initializations{0};
std::atomic<OpcUa_UInt32> g_lastThreadId{0};

constexpr OpcUa_Int64 ticksPerSecond = 10'000'000;
constexpr OpcUa_Int64 secondsFrom1601To1970 = 11'644'473'600;

// Conversions that printf knows; anything else is no conversion and stays as it is.
bool isConversion(char c)
{
    return c != '\0' && std::strchr("diouxXeEfFgGaAcspn%", c) != nullptr;
}

// The end of the conversion that starts behind a percent sign; its last character tells which it is.
const char* endOfConversion(const char* at)
{
    at += std::strspn(at, "-+ #0");
    at += std::strspn(at, "0123456789*");
    if (*at == '.')
        at += 1 + std::strspn(at + 1, "0123456789*");
    return at + std::strspn(at, "hlqjztL");
}

// A copy of format with a second percent sign before what is no conversion; false when it does not fit.
bool escapeUnknown(const char* format, char* out, size_t size)
{
    size_t used = 0;
    const auto put = [&](char c) {
        if (used + 1 >= size)
            return false;
        out[used++] = c;
        return true;
    };
    while (*format != '\0') {
        if (!put(*format))
            return false;
        if (*format++ != '%')
            continue;
        const char* const last = endOfConversion(format);
        if (!isConversion(*last) || *last == 'n') {
            if (!put('%'))
                return false;
            continue;
        }
        for (; format <= last; ++format)
            if (!put(*format))
                return false;
    }
    out[used] = '\0';
    return true;
}

} // namespace

OpcUa_StatusCode OpcUa_P_Initialize(void)
{
    ++g_initializations;
    return OpcUa_Good;
}

void OpcUa_P_Clear(void)
{
    int count = g_initializations.load();
    while (count > 0 && !g_initializations.compare_exchange_weak(count, count - 1)) {
    }
}

const char* OpcUa_P_GetVersion(void)
{
    static const std::string version = std::string(TAVELIN_STACK_VERSION "\\") + opcua::sourceTimestamp +
                                       "\\" __DATE__ " " __TIME__
                                       "\\Tavelin\\Platform layer for Linux\\" __VERSION__;
    return version.c_str();
}

const char* OpcUa_P_GetConfigString(void)
{
    return "Platform:Linux\\Threads:pthread\\Clock:CLOCK_MONOTONIC\\Memory:malloc";
}

int OpcUa_StringA_snprintf(char* buffer, size_t size, const char* format, ...)
{
    if (buffer == nullptr || size == 0)
        return 0;
    buffer[0] = '\0';
    char safe[4096];
    if (format == nullptr || !escapeUnknown(format, safe, sizeof safe))
        return 0;
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(buffer, size, safe, arguments);
    va_end(arguments);
    if (wanted < 0) {
        buffer[0] = '\0';
        return 0;
    }
    return static_cast<size_t>(wanted) < size ? wanted : static_cast<int>(size - 1);
}

OpcUa_UInt32 OpcUa_Thread_GetCurrentThreadId(void)
{
    thread_local const OpcUa_UInt32 id = ++g_lastThreadId;
    return id;
}

OpcUa_UInt64 OpcUa_GetTickCount(void)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<OpcUa_UInt64>(now.tv_sec) * 1000u +
           static_cast<OpcUa_UInt64>(now.tv_nsec) / 1'000'000u;
}

OpcUa_DateTime OpcUa_DateTime_UtcNow(void)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return (static_cast<OpcUa_Int64>(now.tv_sec) + secondsFrom1601To1970) * ticksPerSecond +
           now.tv_nsec / 100;
}
