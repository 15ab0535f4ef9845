// What a call that failed says about trying it again.
#pragma once

#include <opcua/opcua_statuscodes.h>

namespace monitoring {

/// Whether the same call may go well later, without anything being changed: the way to the server is at
/// fault, or its session, or time. The call may have been carried out all the same.
[[nodiscard]] bool isPassingFault(OpcUa_StatusCode status);
/// Whether there was an answer that could not be read: the call has been carried out, and nobody knows what
/// came of it.
[[nodiscard]] bool isUnreadableAnswer(OpcUa_StatusCode status);
/// Whether the call may go well with fewer items.
[[nodiscard]] bool isTooMuchAtOnce(OpcUa_StatusCode status);

} // namespace monitoring
