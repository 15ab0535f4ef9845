#include <tests/soak/meter.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace soak {

namespace {

std::size_t entriesOf(const char* folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

std::size_t residentKilobytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        std::size_t kilobytes = 0;
        if (word == "VmRSS:" && status >> kilobytes)
            return kilobytes;
    }
    return 0;
}

} // namespace

Meter Meter::now()
{
    return {soak::residentKilobytes(), entriesOf("/proc/self/task"), entriesOf("/proc/self/fd")};
}

std::string Meter::text() const
{
    return "RSS " + std::to_string(residentKilobytes) + " kB, " + std::to_string(threads) + " threads, " +
           std::to_string(descriptors) + " descriptors";
}

} // namespace soak
