#pragma once

#include <tests/soak/options.h>

namespace soak {

/// Connects and disconnects so often; every second round is secured. False when one fails.
bool runRounds(const Options& options, unsigned long rounds);

} // namespace soak
