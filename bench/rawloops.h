// Bare TCP round trips with the responder's echo: what no client can do without.
#pragma once

#include <cstdint>

namespace opcua::bench {

/// One thread sends and receives.
void pingPong(std::uint16_t port, int rounds);
/// A second thread receives and wakes the one that sends.
void pingPongWithHandOff(std::uint16_t port, int rounds);

} // namespace opcua::bench
