#include <tests/soak/meter.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace soak {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s;
// The heap keeps pieces; what leaks at every connect or fault is far more after thousands of them.
constexpr std::size_t slackKilobytes = 8 * 1024;
#ifdef __SANITIZE_ADDRESS__
constexpr bool memoryTells = false; // what was freed is kept for a while; leaks are found at the end
#else
constexpr bool memoryTells = true;
#endif

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

bool sameAsBefore(const Meter& before)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    Meter after = Meter::now();
    while (after.threads > before.threads && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(10ms);
        after = Meter::now();
    }
    std::printf("before: %s\nafter:  %s\n", before.text().c_str(), after.text().c_str());
    return after.threads <= before.threads && after.descriptors <= before.descriptors &&
           (!memoryTells || after.residentKilobytes <= before.residentKilobytes + slackKilobytes);
}

} // namespace soak
