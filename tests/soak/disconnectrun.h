#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace soak {

struct DisconnectOptions
{
    unsigned long rounds = 1000;
    unsigned long first = 0; ///< number of the first round, to repeat one of another run
    unsigned long lanes = 2; ///< rounds at a time
    std::string kind;        ///< only this one
    std::uint64_t seed = 1;
    std::chrono::milliseconds limit{1200};
};

/// Disconnects sessions at random moments under every kind of fault, against a demo server of its own, and
/// prints how long it took. False when one took too long, something was told that must not be, or something
/// grew.
bool runDisconnects(const DisconnectOptions& options);

/// Ends the run after its round; may be called by a signal handler.
void endDisconnects();

} // namespace soak
