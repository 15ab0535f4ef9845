// What measuring costs a call, against the bare call of the same session over a scripted stack, taking turns;
// and what a million samples take in memory.
#include <app/api/qlumsessionservices.h>
#include <bench/budgets.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlummeasurer.h>
#include <plugins/performance/qlumsamplelog.h>
#include <tests/support/fakestack.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <vector>

namespace {

const int rounds = repetitions(51);
const auto calls = static_cast<quint32>(operations(5000));
// the bare call takes 1.1 us where the overhead's limit of 0.5 us is met with room
constexpr double maximumMeasured = (1.1 + 0.5) / 1.1;

class QuietCallback : public UaClientSdk::UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus) override {}
};

double bareTime(QlumSessionServices& services)
{
    UaReadValueIds nodes(1u);
    UaDataValues values;
    QlumSessionServices::Settings settings;
    const double before = processCpu();
    for (quint32 i = 0; i < calls; ++i) {
        if (services.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values).isBad()) {
            std::fprintf(stderr, "the read failed\n");
            std::exit(1);
        }
        values.clear();
    }
    return (processCpu() - before) / calls;
}

double measuredTime(const std::shared_ptr<QlumSessionServices>& services)
{
    QlumMeasurementRun run;
    run.plan.nodes = {{1, UaNodeId(2258), OpcUa_NodeClass_Variable, {}, {}}};
    run.plan.calls = calls;
    run.plan.warmUp = 0;
    const auto samples = std::make_shared<QlumSampleLog>();
    QlumMeasurer measurer(run, services, samples);
    const double before = processCpu();
    const QlumMeasurementRun done = measurer.run();
    const double time = (processCpu() - before) / calls;
    if (done.end != QlumRunEnd::Done || done.figures.calls != calls) {
        std::fprintf(stderr, "the run failed\n");
        std::exit(1);
    }
    return time;
}

std::size_t allocatedBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void measureMemory()
{
    const int count = operations(1'000'000);
    const auto log = std::make_unique<QlumSampleLog>();
    const std::size_t before = allocatedBytes();
    for (int i = 0; i < count; ++i)
        log->append({});
    printBudget("measured_sample_bytes", static_cast<double>(allocatedBytes() - before) / count, 16.05,
                log->size() > 0);
}

} // namespace

int main()
{
    FakeStack::instance().reset();
    QuietCallback callback;
    const auto session = std::make_shared<UaClientSdk::UaSession>();
    if (session
            ->connect(UaString("opc.tcp://localhost:4840"), UaClientSdk::SessionConnectInfo(),
                      UaClientSdk::SessionSecurityInfo(), &callback)
            .isBad())
        return 1;
    const auto services = qlumServicesOf(session);
    std::vector<double> bare;
    std::vector<double> measured;
    for (int n = 0; n < rounds; ++n) {
        bare.push_back(bareTime(*services));
        measured.push_back(measuredTime(services));
    }
    std::printf("read of one value: bare %.3f us, measured %.3f us\n", median(bare), median(measured));
    printRatio("measured_call_to_bare", median(measured), median(bare), maximumMeasured);
    measureMemory();
    static_cast<void>(session->disconnect(UaClientSdk::ServiceSettings(), true));
    return 0;
}
