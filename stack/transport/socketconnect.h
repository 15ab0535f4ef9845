// Connecting without blocking, in two steps.
#pragma once

#include <stack/transport/resolver.h>
#include <stack/transport/uniquefd.h>

namespace opcua {

/// Makes a non-blocking TCP socket without delay and begins to connect it. 0 when it is connected,
/// EINPROGRESS when it will be writable once that is decided, otherwise the error; socket stays empty when
/// there is none to be had.
[[nodiscard]] int beginConnect(const SocketAddress& address, UniqueFd& socket);
/// How an attempt ended whose socket became writable: 0 or the error.
[[nodiscard]] int connectError(int socket);

} // namespace opcua
