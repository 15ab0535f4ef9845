#include <stack/transport/trace.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>

namespace opcua {

namespace {

constexpr size_t maxLine = 4096;
constexpr size_t maxContent = 1024;
constexpr std::string_view hexDigits = "0123456789abcdef";

struct Sink
{
    std::mutex mutex;
    std::condition_variable idle;
    OpcUa_Trace_PfnHook hook = nullptr;
    void* context = nullptr;
    int running = 0;
};

Sink g_sink;
std::atomic<OpcUa_UInt32> g_outputLevel{OPCUA_TRACE_OUTPUT_LEVEL_NONE};
std::atomic<bool> g_hooked{false};
thread_local bool t_insideHook = false;

std::string escaped(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F) {
            line += c;
            continue;
        }
        line += "\\x";
        line += hexDigits[byte >> 4];
        line += hexDigits[byte & 15];
    }
    if (line.size() >= maxLine)
        line.resize(maxLine - 1);
    return line;
}

void emitLine(OpcUa_UInt32 level, const std::string& line)
{
    OpcUa_Trace_PfnHook hook = nullptr;
    void* context = nullptr;
    {
        const std::lock_guard lock(g_sink.mutex);
        if (g_sink.hook == nullptr)
            return;
        hook = g_sink.hook;
        context = g_sink.context;
        ++g_sink.running;
    }
    t_insideHook = true;
    hook(level, line.c_str(), context);
    t_insideHook = false;
    {
        const std::lock_guard lock(g_sink.mutex);
        --g_sink.running;
    }
    g_sink.idle.notify_all();
}

} // namespace

void setTraceHook(OpcUa_Trace_PfnHook hook, void* context)
{
    std::unique_lock lock(g_sink.mutex);
    g_sink.hook = hook;
    g_sink.context = context;
    g_hooked = hook != nullptr;
    g_sink.idle.wait(lock, [] { return g_sink.running == (t_insideHook ? 1 : 0); });
}

void setTraceLevel(OpcUa_UInt32 outputLevel)
{
    g_outputLevel = outputLevel;
}

bool isTraced(OpcUa_UInt32 level)
{
    return g_hooked && (g_outputLevel & level) != 0 && !t_insideHook;
}

void traceFormatted(OpcUa_UInt32 level, const char* format, va_list arguments)
{
    if (!isTraced(level))
        return;
    std::array<char, maxLine> buffer{};
    const int wanted = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    if (wanted >= 0)
        emitLine(level, escaped(buffer.data()));
}

void traceContent(std::string_view direction, const OpcUa_EncodeableType& type, ByteView body)
{
    if (!isTraced(OPCUA_TRACE_LEVEL_CONTENT))
        return;
    std::string line(direction);
    line += ' ';
    line += type.TypeName;
    line += ", " + std::to_string(body.size()) + " bytes: ";
    if (&type == &OpcUa_ActivateSessionRequest_EncodeableType) {
        emitLine(OPCUA_TRACE_LEVEL_CONTENT, line + "not shown, holds credentials");
        return;
    }
    for (const OpcUa_Byte byte : body.first(std::min(body.size(), maxContent))) {
        line += hexDigits[byte >> 4];
        line += hexDigits[byte & 15];
    }
    emitLine(OPCUA_TRACE_LEVEL_CONTENT, body.size() > maxContent ? line + "..." : line);
}

} // namespace opcua
