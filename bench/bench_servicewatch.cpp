// What guard and observer cost a call: the same read with nobody, with an observer that does not look and
// with one that does, taking turns. The stack below is scripted, so that nothing else takes much time.
#include <bench/budgets.h>
#include <tests/support/fakestack.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace UaClientSdk;

namespace {

const int rounds = repetitions(101);
const int calls = operations(2000);
constexpr double maximumOff = 1.03; // of the call without: within what two runs of the same differ by

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

class Counter : public ServiceObserver
{
public:
    explicit Counter(bool isLooking) { setLooking(isLooking); }
    void serviceBegun(OpcUa_UInt64, const ServiceCall&) override {}
    void serviceEnded(OpcUa_UInt64, const ServiceOutcome&) override {}
};

class Permit : public ServiceGuard
{
public:
    UaStatus mayCall(const ServiceCall&) override { return UaStatus(); }
};

double readTime(UaSession& session)
{
    UaReadValueIds nodes(1u);
    const double before = processCpu();
    for (int i = 0; i < calls; ++i) {
        ServiceSettings settings;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        if (session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics)
                .isBad()) {
            std::fprintf(stderr, "the read failed\n");
            std::exit(1);
        }
    }
    return (processCpu() - before) / calls;
}

struct Watch
{
    std::shared_ptr<ServiceGuard> guard;
    std::shared_ptr<ServiceObserver> observer;
    std::vector<double> times;
};

} // namespace

int main()
{
    FakeStack::instance().reset();
    QuietCallback callback;
    UaSession session;
    if (session
            .connect(UaString("opc.tcp://localhost:4840"), SessionConnectInfo(), SessionSecurityInfo(),
                     &callback)
            .isBad())
        return 1;
    const auto guard = std::make_shared<Permit>();
    Watch guarded{guard, nullptr, {}};
    Watch off{guard, std::make_shared<Counter>(false), {}};
    Watch on{guard, std::make_shared<Counter>(true), {}};
    Watch none;
    for (int n = 0; n < rounds; ++n)
        for (Watch* watch : {&none, &guarded, &off, &on}) {
            session.setServiceGuard(watch->guard);
            session.setServiceObserver(watch->observer);
            watch->times.push_back(readTime(session));
        }
    std::printf(
        "read of one value: alone %.3f us, guarded %.3f us, observer off %.3f us, observer on %.3f us\n",
        median(none.times), median(guarded.times), median(off.times), median(on.times));
    printBudget("observer_off_to_call", median(off.times) / median(guarded.times), maximumOff,
                !guarded.times.empty());
    static_cast<void>(session.disconnect(ServiceSettings(), true));
    return 0;
}
