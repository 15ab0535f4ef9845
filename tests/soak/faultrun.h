#pragma once

#include <tests/soak/options.h>

namespace soak {

/// Subscriptions of three sessions, each over a relay of its own, while faults come at random; each must be
/// overcome within a limit. False when one was not, or when a completion was lost.
bool runFaults(const Options& options);

} // namespace soak
