// Where the stack's trace lines go.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/protocol.h>

#include <cstdarg>
#include <string_view>

namespace opcua {

/// When it returns, the old hook is not running any more, unless it is this very call that it makes.
void setTraceHook(OpcUa_Trace_PfnHook hook, void* context);
void setTraceLevel(OpcUa_UInt32 outputLevel);
[[nodiscard]] bool isTraced(OpcUa_UInt32 level);

/// One line of at most 4,095 bytes; control characters come out escaped, so that no peer can forge a line. A
/// line that a hook causes is dropped. Any thread.
void traceFormatted(OpcUa_UInt32 level, const char* format, va_list arguments);

/// Shows the bytes of a message on the content level, shortened. Bodies that carry credentials stay out.
void traceContent(std::string_view direction, const OpcUa_EncodeableType& type, ByteView body);

} // namespace opcua
