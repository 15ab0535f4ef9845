// Connects a TCP socket to the first of several addresses that answers.
#pragma once

#include <stack/transport/resolver.h>

#include <vector>

namespace opcua {

/// Addresses are tried in turn; one that has not answered after a quarter of a second goes on trying while
/// the next begins, so that a dead first address costs little. Good: socket is connected, non-blocking,
/// without delay. BadTimeout; BadRequestCancelledByClient; BadConnectionRejected when a peer refused and none
/// accepted; BadCommunicationError otherwise.
[[nodiscard]] OpcUa_StatusCode connectTcp(const std::vector<SocketAddress>& addresses, TimePoint deadline,
                                          const Cancellation& cancellation, UniqueFd& socket);

} // namespace opcua
