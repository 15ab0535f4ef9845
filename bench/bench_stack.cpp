// What the stack costs its client over loopback: CPU time of this process, the server being another one.
// Every round measures all cases, so that a busy moment hits all alike; medians of the rounds are compared.
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/stackclient.h>
#include <tests/support/temporaryfolder.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

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

void measureKeyOperations(Measurements& cpu, const ClientSetup& setup)
{
    constexpr int times = 5;
    cpu.add("key_operations", times, [&] {
        for (int n = 0; n < times; ++n)
            keyOperations(setup.client, setup.server);
    });
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
    constexpr int pipelinedCalls = 20'000; // enough for the window to settle
    constexpr int bulkCalls = 200;
    constexpr int publishes = 200;
    const std::string mode = suffix(secured);
    cpu.add(
        "read" + mode, calls, [&] { client.read(1, calls); });
    cpu.add(
        "pipelined_read" + mode, pipelinedCalls, [&] { client.readPipelined(64, pipelinedCalls); });
    cpu.add(
        "bulk_read" + mode, bulkCalls, [&] { client.read(bulkValues, bulkCalls); });
    cpu.add("notification" + mode, publishes * notifications,
            [&] { client.receiveNotifications(10, publishes); });
}

void measureRaw(Measurements& cpu, const Responder& responder)
{
    constexpr int trips = 3000;
    cpu.add(
        "ping_pong", trips, [&] { pingPong(responder.rawPort(), trips); });
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
    {"connect_none", 400.0},
};

void printTimes(const Measurements& cpu)
{
    const double raw = cpu.of("ping_pong");
    const double handOff = cpu.of("ping_pong_hand_off");
    std::printf("ping-pong %.2f us, with hand-off %.2f us, key operations of a connect %.0f us\n", raw,
                handOff, cpu.of("key_operations"));
    const auto print = [&](const char* name) {
        std::printf("%s %.3f us, %.3f of ping-pong\n", name, cpu.of(name), cpu.of(name) / raw);
    };
    for (const char* const name : {"read_none", "read_sign_encrypt", "connect_sign_encrypt"})
        print(name);
    for (const Budget& budget : budgets)
        print(budget.name);
}

void printTimeBudgets(const Measurements& cpu)
{
    const double handOff = cpu.of("ping_pong_hand_off");
    const double keys = cpu.of("key_operations");
    printBudget("read_none_to_hand_off", cpu.of("read_none") / handOff, 1.4, handOff > 0);
    for (const Budget& budget : budgets) {
        const double value = cpu.of(budget.name);
        printBudget((std::string(budget.name) + "_us").c_str(), value, budget.limit, value > 0);
    }
    // 2.1 ms where the operations with keys take 1.06 ms
    printBudget("connect_sign_encrypt_to_key_operations", cpu.of("connect_sign_encrypt") / keys, 2.1 / 1.06,
                keys > 0);
}

// ---- memory

using Output = std::unique_ptr<FILE, int (*)(FILE*)>;

struct Memory // kB
{
    double bare = 0;
    double idle = 0;
    double browsed = 0;
    bool measured = false;
};

constexpr int browses = 100;

Memory measureMemory(const Responder& responder)
{
    Memory memory;
    const Output bare(popen(PROBE_BARE, "r"), pclose);
    const std::string command =
        std::string(PROBE_CLIENT) + ' ' + responder.url(false) + ' ' + std::to_string(browses);
    const Output client(popen(command.c_str(), "r"), pclose);
    memory.measured = bare && client && std::fscanf(bare.get(), "%lf", &memory.bare) == 1 &&
                      std::fscanf(client.get(), "%lf %lf", &memory.idle, &memory.browsed) == 2;
    return memory;
}

void printMemoryBudgets(const Memory& memory)
{
    std::printf("memory: bare process %.0f kB, idle channel %.0f kB, %d references kept %.0f kB\n",
                memory.bare, memory.idle, browses * references, memory.browsed);
    printBudget("memory_idle_channel_mb", (memory.idle - memory.bare) / 1024, 4.0, memory.measured);
    printBudget("memory_browsed_reference_bytes",
                (memory.browsed - memory.idle) * 1024 / (browses * references), 280.0, memory.measured);
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
            measureKeyOperations(cpu, setup);
            measureCalls(cpu, plain, false);
            measureCalls(cpu, secured, true);
            measureConnects(cpu, setup, responder, false);
            measureConnects(cpu, setup, responder, true);
        }
    }
    OpcUa_ProxyStub_Clear();
    printTimes(cpu);
    printTimeBudgets(cpu);
    printMemoryBudgets(measureMemory(responder));
    return 0;
}
