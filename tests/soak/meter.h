// What a process holds of the system's resources, as the kernel tells it.
#pragma once

#include <cstddef>
#include <string>

namespace soak {

struct Meter
{
    std::size_t residentKilobytes = 0;
    std::size_t threads = 0;
    std::size_t descriptors = 0;

    [[nodiscard]] static Meter now();
    [[nodiscard]] std::string text() const;
};

/// Prints both; false when more threads, descriptors or memory are held than before. Threads that are about
/// to end are given some time.
[[nodiscard]] bool sameAsBefore(const Meter& before);

} // namespace soak
