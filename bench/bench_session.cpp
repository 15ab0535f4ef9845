// What a session adds to the stack's own call: CPU time of this process, the server being another one. Every
// round measures both, so that a busy moment hits both alike.
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/stackclient.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

const int rounds = repetitions(21);
const int calls = operations(2000);
constexpr double maximumOverhead = 0.7; // of a bare round trip: 3 us where it took 4.3

template <typename Work>
double cpuOfCall(Work work)
{
    const double before = processCpu();
    work();
    return (processCpu() - before) / calls;
}

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

void readBySession(UaSession& session, const UaReadValueIds& nodes)
{
    for (int i = 0; i < calls; ++i) {
        ServiceSettings settings;
        UaDataValues values;
        UaDiagnosticInfos diagnosticInfos;
        if (session.read(settings, 0.0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnosticInfos)
                .isBad()) {
            std::fprintf(stderr, "the session's read failed\n");
            std::exit(1);
        }
    }
}

UaReadValueIds oneNode()
{
    UaReadValueIds nodes(1u);
    nodes[0].NodeId.NamespaceIndex = 1;
    nodes[0].NodeId.Identifier.Numeric = 1'000'000u;
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    return nodes;
}

void measure(const ClientSetup& setup, const Responder& responder)
{
    QuietCallback callback;
    UaSession session;
    const std::string url = responder.url(false);
    const UaStatus connected =
        session.connect(UaString(url.c_str()), SessionConnectInfo(), SessionSecurityInfo(), &callback);
    StackClient stack(setup, responder, false);
    stack.connect();
    const UaReadValueIds nodes = oneNode();
    std::vector<double> bySession;
    std::vector<double> byStack;
    std::vector<double> bare;
    for (int n = 0; n < rounds && connected.isGood(); ++n) {
        bySession.push_back(cpuOfCall([&] { readBySession(session, nodes); }));
        byStack.push_back(cpuOfCall([&] { stack.read(1, calls); }));
        bare.push_back(cpuOfCall([&] { pingPong(responder.rawPort(), calls); }));
    }
    const double overhead = excess(median(bySession), median(byStack));
    std::printf("read of one value: session %.2f us, stack %.2f us, bare round trip %.2f us\n",
                median(bySession), median(byStack), median(bare));
    // may be nothing within the noise
    printBudget("session_read_overhead_to_ping_pong", overhead / median(bare), maximumOverhead,
                !bare.empty());
}

} // namespace

int main()
{
    const TemporaryFolder trusted;
    const ClientSetup setup{makeIdentity("client"), makeIdentity("server"), opcua::Bytes(32, 5),
                            trusted.path()};
    const Responder responder(setup.server, setup.client, setup.clientNonce);
    if (UaPlatformLayer::init() != 0)
        return 1;
    measure(setup, responder);
    UaPlatformLayer::cleanup();
    return 0;
}
