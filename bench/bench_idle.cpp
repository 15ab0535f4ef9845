// What a session costs that is connected and left alone: wake-ups and CPU time of this process, the server
// being another one.
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/responder.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <sys/resource.h>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

const int rounds = repetitions(9);
constexpr auto roundLength = std::chrono::milliseconds(1000);
constexpr int trips = 3000;
constexpr double maximumWakeUps = 120.0; // a second
constexpr double maximumCpu =
    1160.0; // of a bare round trip, each second: half a percent of a core where it took 4.3 us

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

struct Usage
{
    double wakeUps;
    double cpu; // us
};

Usage usage()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return {static_cast<double>(used.ru_nvcsw), processCpu()};
}

void idle()
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock lock(mutex);
    never.wait_for(lock, roundLength, [] { return false; });
}

void measure(const Responder& responder)
{
    QuietCallback callback;
    UaSession session;
    SessionConnectInfo info;
    const bool connected =
        session.connect(UaString(responder.url(false).c_str()), info, SessionSecurityInfo(), &callback)
            .isGood();
    std::vector<double> wakeUps;
    std::vector<double> cpu;
    std::vector<double> bare;
    for (int n = 0; n < rounds && connected; ++n) {
        const Usage before = usage();
        idle();
        const Usage after = usage();
        const double seconds = std::chrono::duration<double>(roundLength).count();
        wakeUps.push_back((after.wakeUps - before.wakeUps) / seconds);
        cpu.push_back((after.cpu - before.cpu) / seconds);
        const double start = processCpu();
        pingPong(responder.rawPort(), trips);
        bare.push_back((processCpu() - start) / trips);
    }
    std::printf("idle session: %.1f wake-ups and %.0f us of CPU a second; bare round trip %.2f us\n",
                median(wakeUps), median(cpu), median(bare));
    printBudget("session_idle_wakeups_per_s", median(wakeUps), maximumWakeUps, connected);
    printRatio("session_idle_cpu_to_ping_pong", median(cpu), median(bare), maximumCpu);
}

} // namespace

int main()
{
    const Responder responder(makeIdentity("server"), makeIdentity("client"), opcua::Bytes(32, 5));
    if (UaPlatformLayer::init() != 0)
        return 1;
    measure(responder);
    UaPlatformLayer::cleanup();
    return 0;
}
