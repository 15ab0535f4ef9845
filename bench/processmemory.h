// Memory of the running process as the system counts it.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace opcua::bench {

/// The most that it has held at a time, code included; 0 when the system does not tell.
inline std::size_t peakKilobytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    std::size_t kilobytes = 0;
    while (status >> word)
        if (word == "VmHWM:")
            status >> kilobytes;
    return kilobytes;
}

} // namespace opcua::bench
