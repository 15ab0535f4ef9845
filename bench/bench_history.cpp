// A million values of a history from the socket to the samples of a curve, in CPU time of this process: the
// server is another one, with canned answers. The yardstick reads as many bytes and does nothing with them.
#include <app/api/qlumsessionservices.h>
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/responder.h>
#include <bench/tableanswers.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumhistoryvalues.h>
#include <tests/support/nodetable.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

constexpr int valuesOfAnswer = 10'000;
constexpr int answers = 100;
constexpr std::size_t bytesOfValue = 30;    // value, both times and what says that they are there
constexpr double maximumToBareBytes = 53.0; // 0.15 us where the bare bytes took 0.0028 us

const UaNodeId historyId(1, 1);

UaDateTime at(int index)
{
    return UaDateTime::fromMSecsSinceEpoch(1'700'000'000'000 + index);
}

void fill(NodeTable& table)
{
    table.variable(historyId, "History", UaVariant(0.0));
    std::vector<UaDataValue> values;
    for (int i = 0; i <= valuesOfAnswer; ++i) // one more than an answer takes
        values.emplace_back(UaVariant(i * 0.25), UaStatusCode(), at(i), at(i));
    table.history(historyId, std::move(values));
}

// The first answer again and again: it always says that there is more.
Answerer cannedAnswers(NodeTable& table)
{
    return
        [inner = answersOf(table), canned = std::optional<opcua::Bytes>()](const opcua::Bytes& body) mutable {
            constexpr unsigned historyRead = 664; // the encoding of its request, a number of two bytes
            const bool isHistory = body.size() > 4 && body[0] == 1 && body[1] == 0 &&
                                   (body[2] | static_cast<unsigned>(body[3]) << 8) == historyRead;
            if (!isHistory)
                return inner(body);
            if (!canned)
                canned = inner(body);
            return canned;
        };
}

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

std::size_t readIntoStore(QlumSessionServices& services)
{
    QlumHistoryPlan plan;
    plan.targets.push_back({1, historyId, {}, {}, 0});
    plan.start = at(0);
    plan.end = at(valuesOfAnswer * answers);
    plan.valuesPerNode = valuesOfAnswer;
    plan.maximumNextCalls = answers - 1;
    std::size_t count = 0;
    const auto take = [&](std::size_t, const HistoryReadDataResult& result, OpcUa_UInt32 first) {
        QlumSampleStore store; // a new one: the canned times begin anew with each answer
        store.append(qlumHistoryBatch(result, first, nullptr).samples);
        count += store.size();
        return true;
    };
    QlumHistoryReader reader(services, plan, {[] { return false; }, [] { return ServiceSettings(); }, take});
    static_cast<void>(reader.read());
    return count;
}

void measure(const Responder& responder)
{
    QuietCallback callback;
    const auto session = std::make_shared<UaSession>();
    const std::string url = responder.url(false);
    const UaStatus connected =
        session->connect(UaString(url.c_str()), SessionConnectInfo(), SessionSecurityInfo(), &callback);
    const std::shared_ptr<QlumSessionServices> services = qlumServicesOf(session);
    std::vector<double> ours, bare;
    constexpr double values = static_cast<double>(valuesOfAnswer) * answers;
    for (int n = 0; n < repetitions(7) && connected.isGood(); ++n) {
        double before = processCpu();
        const std::size_t read = readIntoStore(*services);
        ours.push_back((processCpu() - before) / values);
        if (read != static_cast<std::size_t>(values)) {
            std::fprintf(stderr, "%zu values were read\n", read);
            ours.clear();
            break;
        }
        before = processCpu();
        pingPong(responder.rawPort(), answers, valuesOfAnswer * bytesOfValue);
        bare.push_back((processCpu() - before) / values);
    }
    std::printf("a value takes %.4f us from the socket to the curve, its bare bytes %.4f us\n", median(ours),
                median(bare));
    printRatio("history_value_to_bare_bytes", median(ours), median(bare), maximumToBareBytes);
    static_cast<void>(session->disconnect(ServiceSettings(), true));
}

} // namespace

int main()
{
    NodeTable table;
    fill(table);
    const Responder responder(makeIdentity("server"), makeIdentity("client"), opcua::Bytes(32, 5),
                              cannedAnswers(table));
    if (UaPlatformLayer::init() != 0)
        return 1;
    measure(responder);
    UaPlatformLayer::cleanup();
    return 0;
}
