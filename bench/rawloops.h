// Bare TCP round trips with the responder's echo: what no client can do without.
#pragma once

#include <bench/responder.h>

#include <cstddef>
#include <cstdint>

namespace opcua::bench {

/// One thread sends and receives answers of that many bytes, rawLargestAnswer at most.
void pingPong(std::uint16_t port, int rounds, size_t answerSize = rawAnswerSize);
/// A second thread receives and wakes the one that sends.
void pingPongWithHandOff(std::uint16_t port, int rounds);

} // namespace opcua::bench
