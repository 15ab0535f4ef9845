#include <tests/soak/disconnectrun.h>

#include <tests/soak/disconnectfaults.h>
#include <tests/soak/disconnectround.h>
#include <tests/soak/identity.h>
#include <tests/soak/meter.h>
#include <tests/soak/witness.h>
#include <tests/support/owndemoserver.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace soak {

namespace {

using namespace std::chrono_literals;

// What is told this many rounds too late is still heard of.
constexpr std::size_t rememberedRounds = 20;
// A fault that is made so often and never finds anybody tests nothing.
constexpr unsigned long mustHaveStruck = 10;

std::atomic<bool> ending{false};

struct Tally
{
    unsigned long rounds = 0;
    unsigned long struck = 0;
    unsigned long tooLong = 0;
    unsigned long violations = 0;
    std::chrono::milliseconds longest{0};
    std::chrono::milliseconds sum{0};
};

class DisconnectRun
{
public:
    explicit DisconnectRun(const DisconnectOptions& options) : m_options(options) {}

    bool run()
    {
        m_plain.plainPasswordAccepted = true;
        m_lanes.resize(std::max(1ul, m_options.lanes));
        for (auto& lane : m_lanes) {
            lane = std::make_unique<Lane>();
            if (!lane->server.start() || !secure(lane->server.url(), lane->secured))
                return false;
        }
        // caches fill in the first rounds
        const unsigned long warmUp = m_options.rounds / 20 + 1;
        playRounds(m_options.first, warmUp);
        const Meter before = Meter::now();
        playRounds(m_options.first + warmUp, m_options.rounds - warmUp);
        while (!m_remembered.empty())
            forgetOldest();
        const bool same = sameAsBefore(before);
        return report() && same;
    }

private:
    // Rounds mostly wait: several go on at once, each with a server that it may stop.
    struct Lane
    {
        OwnDemoServer server;
        UaClientSdk::SessionSecurityInfo secured;
    };
    struct Remembered
    {
        std::array<std::shared_ptr<Witness>, 2> witnesses;
        std::size_t kind = 0;
        std::array<std::size_t, 2> told{}; // violations that were printed already
        std::string text;
    };

    void playRounds(unsigned long first, unsigned long count)
    {
        std::atomic<unsigned long> next = first;
        std::vector<std::jthread> players;
        for (const auto& lane : m_lanes) {
            players.emplace_back([this, &next, &lane = *lane, end = first + count] {
                for (unsigned long n = next++; n < end && !ending; n = next++) {
                    const std::size_t kind = n % kinds.size();
                    if (m_options.kind.empty() || m_options.kind == kinds[kind].name)
                        play(lane, n, kind);
                }
            });
        }
    }

    void play(Lane& lane, unsigned long number, std::size_t kind)
    {
        RoundSettings settings;
        settings.kind = &kinds[kind];
        settings.seed = m_options.seed * 1000003 + number; // each round can be repeated alone
        settings.server = &lane.server;
        const bool secured = (number + number / kinds.size()) % 2 != 0; // each kind comes to both
        settings.security = secured ? lane.secured : m_plain;
        settings.limit = m_options.limit;
        const Outcome outcome = runRound(settings);
        const std::string text = "round " + std::to_string(number) + ", " + kinds[kind].name +
                                 (secured ? ", secured, " : ", ") + outcome.plan;
        const std::lock_guard lock(m_mutex);
        note(m_tallies[kind], outcome, text);
        m_completions += outcome.completions;
        m_notifications += outcome.notifications;
        m_remembered.push_back({outcome.witnesses, kind, {}, text});
        tell(m_remembered.back());
        if (m_remembered.size() > rememberedRounds)
            forgetOldest();
    }

    void note(Tally& tally, const Outcome& outcome, const std::string& text) const
    {
        ++tally.rounds;
        tally.struck += outcome.struck ? 1 : 0;
        tally.sum += outcome.took;
        tally.longest = std::max(tally.longest, outcome.took);
        if (outcome.took <= m_options.limit)
            return;
        ++tally.tooLong;
        std::printf("%s: %lld ms\n", text.c_str(), static_cast<long long>(outcome.took.count()));
    }

    void tell(Remembered& round)
    {
        for (std::size_t n = 0; n < round.witnesses.size(); ++n) {
            const std::vector<std::string> violations = round.witnesses[n]->violations();
            for (std::size_t& told = round.told[n]; told < violations.size(); ++told) {
                ++m_tallies[round.kind].violations;
                std::printf("%s: VIOLATION%s: %s\n", round.text.c_str(),
                            n == 0 ? "" : " when connected again", violations[told].c_str());
            }
        }
        std::fflush(stdout);
    }

    void forgetOldest()
    {
        tell(m_remembered.front());
        m_remembered.pop_front();
    }

    static void printLine(const char* name, const Tally& tally)
    {
        const auto mean = tally.sum / std::max(1L, static_cast<long>(tally.rounds));
        std::printf("%-20s %6lu %7lu %10lld %8lld %9lu %11lu\n", name, tally.rounds, tally.struck,
                    static_cast<long long>(tally.longest.count()), static_cast<long long>(mean.count()),
                    tally.tooLong, tally.violations);
    }

    bool report() const
    {
        bool good = true;
        Tally all;
        std::printf("%-20s %6s %7s %10s %8s %9s %11s\n", "fault", "rounds", "struck", "longest ms", "mean ms",
                    "too long", "violations");
        for (std::size_t n = 0; n < kinds.size(); ++n) {
            const Tally& tally = m_tallies[n];
            printLine(kinds[n].name, tally);
            if (tally.struck == 0 && tally.rounds >= mustHaveStruck)
                good = false;
            all.rounds += tally.rounds;
            all.struck += tally.struck;
            all.tooLong += tally.tooLong;
            all.violations += tally.violations;
            all.sum += tally.sum;
            all.longest = std::max(all.longest, tally.longest);
        }
        printLine("all", all);
        std::printf("%zu completions, %zu notifications\n", m_completions, m_notifications);
        if (!good)
            std::printf("a fault has never found anybody\n");
        return good && all.rounds > 0 && all.tooLong == 0 && all.violations == 0;
    }

    const DisconnectOptions& m_options;
    UaClientSdk::SessionSecurityInfo m_plain;
    std::vector<std::unique_ptr<Lane>> m_lanes;
    std::mutex m_mutex; // of what follows
    std::array<Tally, kinds.size()> m_tallies{};
    std::deque<Remembered> m_remembered;
    std::size_t m_completions = 0;
    std::size_t m_notifications = 0;
};

} // namespace

bool runDisconnects(const DisconnectOptions& options)
{
    return DisconnectRun(options).run();
}

void endDisconnects()
{
    ending = true;
}

} // namespace soak
