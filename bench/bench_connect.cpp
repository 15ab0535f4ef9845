// What a session costs that is connected and left alone: wake-ups and CPU time of this process, the server
// being another one.
#include <bench/budgets.h>
#include <bench/responder.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sys/resource.h>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

constexpr int rounds = 9;
constexpr auto roundLength = std::chrono::milliseconds(1000);
constexpr double mostWakeUps = 120.0; // a second
constexpr double mostCpu = 0.5;       // percent of a core

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

struct Usage
{
    double wakeUps;
    double cpuSeconds;
};

Usage usage()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {static_cast<double>(used.ru_nvcsw), seconds(used.ru_utime) + seconds(used.ru_stime)};
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
    info.watchdogTime = 600000; // the canned answers do not know the server's state
    const bool connected =
        session.connect(UaString(responder.url(false).c_str()), info, SessionSecurityInfo(), &callback)
            .isGood();
    std::vector<double> wakeUps;
    std::vector<double> cpu;
    for (int n = 0; n < rounds && connected; ++n) {
        const Usage before = usage();
        idle();
        const Usage after = usage();
        const double seconds = std::chrono::duration<double>(roundLength).count();
        wakeUps.push_back((after.wakeUps - before.wakeUps) / seconds);
        cpu.push_back((after.cpuSeconds - before.cpuSeconds) / seconds * 100.0);
    }
    printBudget("session_idle_wakeups", median(wakeUps), mostWakeUps, connected);
    printBudget("session_idle_cpu_percent", median(cpu), mostCpu, connected);
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
