// Receiver of trace records.
#pragma once

#include <uabase/system/uatrace.h>

class UaTraceHook
{
public:
    virtual ~UaTraceHook() = default;
    /// One record without a line end, control characters as they came. Called on the thread that traces, no
    /// lock of the trace held. What the hook traces itself goes to the files but to no hook.
    virtual void traceOutput(UaTrace::TraceLevel level, const char* text, int moduleId) = 0;
};
