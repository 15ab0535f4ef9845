// Sessions that are disconnected at random moments while all goes wrong between them and their server. Says
// how long that took for each kind of fault, and ends with an error when it was too long or not clean.
//
//   soak_disconnects [--rounds N] [--seed S] [--limit MS] [--lanes N] [--first N] [--kind NAME]
#include <tests/soak/disconnectrun.h>
#include <uabase/system/uaplatformlayer.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

bool parse(int argc, char** argv, soak::DisconnectOptions& options)
{
    for (int n = 1; n < argc; n += 2) {
        const std::string name = argv[n];
        if (n + 1 == argc)
            return false;
        const char* value = argv[n + 1];
        if (name == "--rounds")
            options.rounds = std::strtoul(value, nullptr, 10);
        else if (name == "--seed")
            options.seed = std::strtoull(value, nullptr, 10);
        else if (name == "--limit")
            options.limit = std::chrono::milliseconds(std::strtol(value, nullptr, 10));
        else if (name == "--lanes")
            options.lanes = std::strtoul(value, nullptr, 10);
        else if (name == "--first")
            options.first = std::strtoul(value, nullptr, 10);
        else if (name == "--kind")
            options.kind = value;
        else
            return false;
    }
    return options.rounds > 0;
}

void endAfterRound(int)
{
    soak::endDisconnects();
}

} // namespace

int main(int argc, char** argv)
{
    soak::DisconnectOptions options;
    if (!parse(argc, argv, options) || UaPlatformLayer::init() != 0) {
        std::fprintf(stderr, "usage: see the head of the source\n");
        return 2;
    }
    std::signal(SIGINT, endAfterRound); // the server must not be left behind, perhaps stopped
    std::signal(SIGTERM, endAfterRound);
    std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
    const bool good = soak::runDisconnects(options);
    UaPlatformLayer::cleanup();
    std::printf("%s\n", good ? "GOOD" : "FAILED");
    return good ? 0 : 1;
}
