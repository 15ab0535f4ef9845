#include <opcua/opcua_channel.h>
#include <stack/capi/guard.h>
#include <stack/transport/trace.h>

void OpcUa_Trace_SetHook(OpcUa_Trace_PfnHook hook, void* context)
{
    static_cast<void>(opcua::guarded([&] {
        opcua::setTraceHook(hook, context);
        return OpcUa_Good;
    }));
}

OpcUa_StatusCode OpcUa_Trace_ChangeTraceLevel(OpcUa_UInt32 outputLevel)
{
    opcua::setTraceLevel(outputLevel);
    return OpcUa_Good;
}

void OpcUa_Trace(OpcUa_UInt32 level, const char* format, ...)
{
    if (format == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    static_cast<void>(opcua::guarded([&] {
        opcua::traceFormatted(level, format, arguments);
        return OpcUa_Good;
    }));
    va_end(arguments);
}
