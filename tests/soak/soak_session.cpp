// Hours of use in one program: rounds of connects, then subscriptions over a relay that spoils the traffic
// at random. Says what it saw and ends with an error when something was lost, doubled or grew.
//
//   soak_session --server opc.tcp://... [--rounds N] [--minutes M] [--faults N] [--seed S]
//                [--restart COMMAND]
#include <tests/soak/faultrun.h>
#include <tests/soak/meter.h>
#include <tests/soak/rounds.h>
#include <uabase/system/uaplatformlayer.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

soak::Options parse(int argc, char** argv)
{
    soak::Options options;
    for (int n = 1; n + 1 < argc; n += 2) {
        const std::string name = argv[n];
        const char* value = argv[n + 1];
        if (name == "--server")
            options.url = value;
        else if (name == "--rounds")
            options.rounds = std::strtoul(value, nullptr, 10);
        else if (name == "--minutes")
            options.minutes = std::strtoul(value, nullptr, 10);
        else if (name == "--faults")
            options.faults = std::strtoul(value, nullptr, 10);
        else if (name == "--seed")
            options.seed = std::strtoull(value, nullptr, 10);
        else if (name == "--restart")
            options.restartCommand = value;
        else
            options.url.clear();
    }
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    const soak::Options options = parse(argc, argv);
    if (options.url.empty() || UaPlatformLayer::init() != 0) {
        std::fprintf(stderr, "usage: see the head of the source\n");
        return 2;
    }
    std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
    bool good = true;
    if (options.rounds > 0) {
        good = soak::runRounds(options, options.rounds / 20 + 1); // caches fill in the first rounds
        const soak::Meter before = soak::Meter::now();
        good = good && soak::runRounds(options, options.rounds) && soak::sameAsBefore(before);
    }
    if (good && (options.minutes > 0 || options.faults > 0)) {
        soak::Options warm = options;
        warm.minutes = 0;
        warm.faults = 3;
        good = soak::runFaults(warm);
        const soak::Meter before = soak::Meter::now();
        good = good && soak::runFaults(options) && soak::sameAsBefore(before);
    }
    UaPlatformLayer::cleanup();
    std::printf("%s\n", good ? "GOOD" : "FAILED");
    return good ? 0 : 1;
}
