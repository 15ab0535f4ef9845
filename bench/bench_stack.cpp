// What the stack costs its client over loopback: CPU time of this process, the server being another one.
// Every round measures all cases, so that a busy moment hits all alike; medians of the rounds are compared.
#include "budgets.h"
#include "rawloops.h"
#include "stackclient.h"

#include <tests/support/temporaryfolder.h>

#include <ctime>
#include <functional>
#include <map>

using namespace opcua;
using namespace opcua::bench;

namespace {

constexpr int rounds = 11;

double processCpu() // us
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

class Measurements
{
public:
    // CPU for each of the operations.
    void add(const std::string& name, int operations, const std::function<void()>& work)
    {
        const double before = processCpu();
        work();
        m_values[name].push_back((processCpu() - before) / operations);
    }
    [[nodiscard]] double of(const std::string& name) const
    {
        const auto found = m_values.find(name);
        return found == m_values.end() ? 0.0 : median(found->second);
    }

private:
    std::map<std::string, std::vector<double>> m_values;
};

const char* suffix(bool secured)
{
    return secured ? "_sign_encrypt" : "_none";
}

void measureConnects(Measurements& cpu, const ClientSetup& setup, const Responder& responder, bool secured)
{
    constexpr int connects = 10;
    for (int n = 0; n < connects; ++n) {
        StackClient client(setup, responder, secured);
        cpu.add(std::string("connect") + suffix(secured), 1, [&] {
            client.connect();
            client.openSession();
        });
    }
}

void measureCalls(Measurements& cpu, StackClient& client, bool secured)
{
    constexpr int calls = 3000;
    constexpr int bulkCalls = 200;
    constexpr int publishes = 200;
    const std::string mode = suffix(secured);
    cpu.add("read" + mode, calls, [&] { client.read(1, calls); });
    cpu.add("pipelined_read" + mode, calls, [&] { client.readPipelined(64, calls); });
    cpu.add("bulk_read" + mode, bulkCalls, [&] { client.read(bulkValues, bulkCalls); });
    cpu.add("notification" + mode, publishes * notifications,
            [&] { client.receiveNotifications(10, publishes); });
}

void measureRaw(Measurements& cpu, const Responder& responder)
{
    constexpr int trips = 3000;
    cpu.add("ping_pong", trips, [&] { pingPong(responder.rawPort(), trips); });
    cpu.add("ping_pong_hand_off", trips, [&] { pingPongWithHandOff(responder.rawPort(), trips); });
}

struct Budget
{
    const char* name;
    double limit; // us
};

constexpr Budget budgets[] = {
    {"pipelined_read_none", 5.0}, {"pipelined_read_sign_encrypt", 7.0},
    {"bulk_read_none", 75.0},     {"bulk_read_sign_encrypt", 130.0},
    {"notification_none", 0.11},  {"notification_sign_encrypt", 0.14},
    {"connect_none", 400.0},      {"connect_sign_encrypt", 2100.0},
};

void print(const Measurements& cpu)
{
    const double raw = cpu.of("ping_pong");
    const double handOff = cpu.of("ping_pong_hand_off");
    std::printf("ping-pong %.2f us, with hand-off %.2f us\n", raw, handOff);
    for (const char* const name : {"read_none", "read_sign_encrypt"})
        std::printf("%s %.2f us, %.2f of ping-pong, %.2f of hand-off\n", name, cpu.of(name),
                    cpu.of(name) / raw, cpu.of(name) / handOff);
    for (const Budget& budget : budgets)
        std::printf("%s %.3f us, %.3f of ping-pong\n", budget.name, cpu.of(budget.name),
                    cpu.of(budget.name) / raw);
    printBudget("read_none_to_hand_off", cpu.of("read_none") / handOff, 1.4, handOff > 0);
    for (const Budget& budget : budgets) {
        const double value = cpu.of(budget.name);
        printBudget((std::string(budget.name) + "_us").c_str(), value, budget.limit, value > 0);
    }
}

} // namespace

int main()
{
    const TemporaryFolder trusted;
    ClientSetup setup{makeIdentity("client"), makeIdentity("server"), Bytes(32, 5), trusted.path()};
    std::ofstream(trusted.file("server.der"), std::ios::binary)
        .write(reinterpret_cast<const char*>(setup.server.certificate.data()),
               static_cast<std::streamsize>(setup.server.certificate.size()));
    const Responder responder(setup.server, setup.client, setup.clientNonce);
    if (OpcUa_IsBad(OpcUa_ProxyStub_Initialize(nullptr)))
        return 1;
    Measurements cpu;
    {
        StackClient plain(setup, responder, false);
        StackClient secured(setup, responder, true);
        plain.connect();
        secured.connect();
        for (int n = 0; n < rounds; ++n) {
            measureRaw(cpu, responder);
            measureCalls(cpu, plain, false);
            measureCalls(cpu, secured, true);
            measureConnects(cpu, setup, responder, false);
            measureConnects(cpu, setup, responder, true);
        }
    }
    OpcUa_ProxyStub_Clear();
    print(cpu);
    return 0;
}
