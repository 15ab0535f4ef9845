#pragma once

#include <cstdint>
#include <string>

namespace soak {

struct Options
{
    std::string url; ///< of a server on this machine
    unsigned long rounds = 0;
    unsigned long minutes = 0;
    unsigned long faults = 0; ///< at least so many, however long it takes
    std::uint64_t seed = 1;
    std::string restartCommand; ///< ends the server and starts it again on the same port
};

} // namespace soak
