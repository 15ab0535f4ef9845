#include <uabase/system/uaplatformlayer.h>

#include <opcua/opcua_channel.h>
#include <uabase/system/uatrace.h>

#include <mutex>

namespace {

std::mutex s_mutex;
unsigned int s_users = 0;

UaTrace::TraceLevel levelOf(OpcUa_UInt32 stackLevel)
{
    switch (stackLevel) {
    case OPCUA_TRACE_LEVEL_ERROR:
        return UaTrace::Errors;
    case OPCUA_TRACE_LEVEL_WARNING:
        return UaTrace::Warning;
    case OPCUA_TRACE_LEVEL_SYSTEM:
    case OPCUA_TRACE_LEVEL_INFO:
        return UaTrace::Info;
    default:
        return UaTrace::Data;
    }
}

// The stack has a level of its own, so what it lets through is written whatever the level of UaTrace.
void traceOfStack(OpcUa_UInt32 level, const char* text, void* /*context*/)
{
    UaTrace::traceOutput(levelOf(level), text, 0, true);
}

OpcUa_StatusCode startStack()
{
    OpcUa_StatusCode status = OpcUa_P_Initialize();
    if (OpcUa_IsBad(status))
        return status;
    OpcUa_Trace_SetHook(&traceOfStack, nullptr);
    status = OpcUa_ProxyStub_Initialize(nullptr);
    if (OpcUa_IsBad(status)) {
        OpcUa_Trace_SetHook(nullptr, nullptr);
        OpcUa_P_Clear();
    }
    return status;
}

} // namespace

int UaPlatformLayer::init()
{
    const std::lock_guard lock(s_mutex);
    if (s_users == 0) {
        const OpcUa_StatusCode status = startStack();
        if (OpcUa_IsBad(status))
            return static_cast<int>(status);
    }
    ++s_users;
    return 0;
}

void UaPlatformLayer::cleanup()
{
    const std::lock_guard lock(s_mutex);
    if (s_users == 0 || --s_users > 0)
        return;
    OpcUa_ProxyStub_Clear();
    OpcUa_Trace_SetHook(nullptr, nullptr);
    OpcUa_P_Clear();
}
