// Opens a TLS session on a connected socket.
#pragma once

#include <stack/transport/cancellation.h>
#include <stack/transport/tlssession.h>

namespace opcua {

/// Shakes hands; the peer's certificate is not judged here. Good: the session is open. BadTimeout at the
/// deadline, whatever trickles; BadRequestCancelledByClient; BadConnectionClosed when the peer hangs up; the
/// session's fault.
[[nodiscard]] OpcUa_StatusCode shakeHands(const UniqueFd& socket, TlsSession& session, TimePoint deadline,
                                          const Cancellation& cancellation);

} // namespace opcua
