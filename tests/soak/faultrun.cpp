#include <tests/soak/faultrun.h>

#include <tests/soak/identity.h>
#include <tests/soak/participant.h>
#include <tests/support/faultproxy.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace soak {

namespace {

using namespace std::chrono_literals;
using UaClientSdk::SessionSecurityInfo;

// From the end of a fault until every subscription delivers again: watchdog, connect and publish time-outs
// of a session add up to less.
constexpr auto overcomeWithin = 90s;
constexpr std::size_t participantCount = 3;
constexpr std::size_t securedOne = 2; // the only one that notices a single wrong bit

enum class Fault { HangUp, Reset, Cut, ShortFreeze, LongFreeze, Refuse, Damage, Restart };
constexpr std::array<const char*, 8> faultNames{"hang-up",     "reset",  "cut",    "short freeze",
                                                "long freeze", "refuse", "damage", "restart"};

struct Line
{
    std::unique_ptr<faultproxy::FaultProxy> relay;
    std::unique_ptr<Participant> participant;
};

class FaultRun
{
public:
    explicit FaultRun(const Options& options)
        : m_options(options), m_random(options.seed),
          m_end(Clock::now() + std::chrono::minutes(options.minutes))
    {
    }

    bool run()
    {
        if (!start())
            return false;
        bool good = true;
        unsigned long faults = 0;
        while (good && (Clock::now() < m_end || faults < m_options.faults)) {
            good = oneFault();
            ++faults;
        }
        for (Line& line : m_lines)
            line.participant->stop();
        m_lines.clear();
        return report(faults) && good;
    }

private:
    bool start()
    {
        SessionSecurityInfo plain;
        SessionSecurityInfo secured;
        const unsigned int port = UaClientSdk::UaSession::getPortFromUrl(UaString(m_options.url.c_str()));
        if (!secure(m_options.url, secured))
            return false;
        for (std::size_t n = 0; n < participantCount; ++n) {
            Line& line = m_lines.emplace_back();
            line.relay = std::make_unique<faultproxy::FaultProxy>(static_cast<std::uint16_t>(port));
            line.participant =
                std::make_unique<Participant>("session " + std::to_string(n), m_random(), m_counts);
            const UaString url(withPort(m_options.url, line.relay->port()).c_str());
            if (!line.participant->start(url, n == securedOne ? secured : plain))
                return false;
        }
        return recovered(Clock::now(), "start");
    }

    // Hits some of the sessions at once and waits until all have overcome it.
    bool oneFault()
    {
        std::this_thread::sleep_for(random(200ms, 4000ms));
        const std::size_t kinds =
            m_options.restartCommand.empty() ? faultNames.size() - 1 : faultNames.size();
        auto fault = static_cast<Fault>(m_random() % kinds);
        if (fault == Fault::Restart && m_random() % 4 != 0) // it hits all, and takes its time
            fault = Fault::Reset;
        std::vector<std::size_t> hit;
        for (std::size_t n = 0; n < m_lines.size(); ++n)
            if (m_random() % 2 == 0 || n == securedOne)
                hit.push_back(n);
        ++m_seen[faultNames[static_cast<std::size_t>(fault)]];
        apply(fault, hit);
        return recovered(Clock::now(), faultNames[static_cast<std::size_t>(fault)]);
    }

    void apply(Fault fault, const std::vector<std::size_t>& hit)
    {
        switch (fault) {
        case Fault::HangUp:
            return each(hit, [](auto& relay) { relay.hangUp(); });
        case Fault::Reset:
            return each(hit, [](auto& relay) { relay.reset(); });
        case Fault::Cut:
            return each(hit, [this](auto& relay) { relay.cutAfter(m_random() % 20000); });
        case Fault::ShortFreeze:
            return hold(hit, random(300ms, 2500ms), &faultproxy::FaultProxy::freeze);
        case Fault::LongFreeze:
            return hold(hit, random(6000ms, 25000ms), &faultproxy::FaultProxy::freeze);
        case Fault::Refuse:
            each(hit, [](auto& relay) { relay.reset(); });
            return hold(hit, random(500ms, 8000ms), &faultproxy::FaultProxy::refuse);
        case Fault::Damage:
            m_lines[securedOne].relay->damageNext();
            return;
        case Fault::Restart:
            if (std::system(m_options.restartCommand.c_str()) != 0)
                std::fprintf(stderr, "the server did not come back\n");
            return;
        }
    }

    template <typename Action>
    void each(const std::vector<std::size_t>& hit, Action action)
    {
        for (const std::size_t n : hit)
            action(*m_lines[n].relay);
    }

    void hold(const std::vector<std::size_t>& hit, std::chrono::milliseconds time,
              void (faultproxy::FaultProxy::*fault)(bool))
    {
        each(hit, [&](auto& relay) { (relay.*fault)(true); });
        std::this_thread::sleep_for(time);
        each(hit, [&](auto& relay) { (relay.*fault)(false); });
    }

    bool recovered(Clock::time_point since, const char* after)
    {
        const auto alive = [&](const Line& line) { return line.participant->deliveredSince(since); };
        while (!std::all_of(m_lines.begin(), m_lines.end(), alive)) {
            if (Clock::now() - since > overcomeWithin) {
                std::fprintf(stderr, "not overcome: %s\n", after);
                for (const Line& line : m_lines)
                    std::fprintf(stderr, "  %s\n", line.participant->state().c_str());
                return false;
            }
            std::this_thread::sleep_for(20ms);
        }
        m_longest =
            std::max(m_longest, std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since));
        return true;
    }

    bool report(unsigned long faults) const
    {
        std::printf("%lu faults:", faults);
        for (const auto& [name, count] : m_seen)
            std::printf(" %s %lu,", name.c_str(), count);
        std::printf(" longest recovery %lld ms\n", static_cast<long long>(m_longest.count()));
        const auto number = [](const std::atomic<std::uint64_t>& value) {
            return static_cast<unsigned long long>(value.load());
        };
        std::printf("%llu notifications, %llu keep-alives, %llu gaps, %llu reconnects, %llu new sessions, "
                    "%llu subscriptions lost\n",
                    number(m_counts.notifications), number(m_counts.keepAlives), number(m_counts.gaps),
                    number(m_counts.reconnects), number(m_counts.newSessions),
                    number(m_counts.subscriptionsLost));
        std::printf("%llu calls good, %llu bad, %llu begun, %llu completed, %llu violations\n",
                    number(m_counts.callsGood), number(m_counts.callsBad), number(m_counts.begun),
                    number(m_counts.completed), number(m_counts.violations));
        return m_counts.violations == 0 && m_counts.begun == m_counts.completed;
    }

    std::chrono::milliseconds random(std::chrono::milliseconds least, std::chrono::milliseconds most)
    {
        return least +
               std::chrono::milliseconds(m_random() % static_cast<std::uint64_t>((most - least).count()));
    }

    const Options& m_options;
    std::mt19937_64 m_random;
    const Clock::time_point m_end;
    Counts m_counts;
    std::vector<Line> m_lines;
    std::map<std::string, unsigned long> m_seen;
    std::chrono::milliseconds m_longest{0};
};

} // namespace

bool runFaults(const Options& options)
{
    return FaultRun(options).run();
}

} // namespace soak
