// Host names that take their time, and names of several addresses. The program's own resolver stands in for
// the system's.
#include <tests/protocol/channelfixture.h>

#include <chrono>
#include <condition_variable>
#include <dlfcn.h>
#include <future>
#include <mutex>
#include <netdb.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Opened when look-ups of "hangs.test" may end.
class Gate
{
public:
    void pass()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_open; });
    }
    void set(bool open)
    {
        const std::lock_guard lock(m_mutex);
        m_open = open;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

Gate g_gate;

using Resolve = int (*)(const char*, const char*, const addrinfo*, addrinfo**);

int systemResolve(const char* host, const char* service, const addrinfo* hints, addrinfo** result)
{
    static const auto resolve = reinterpret_cast<Resolve>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return resolve(host, service, hints, result);
}

} // namespace

extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** result)
{
    const std::string_view name(host);
    if ((hints->ai_flags & AI_NUMERICHOST) != 0 || !name.ends_with(".test"))
        return systemResolve(host, service, hints, result);
    if (name == "hangs.test") {
        g_gate.pass();
        return EAI_AGAIN;
    }
    // "first-and-second.test": 127.0.0.2, then 127.0.0.1; "both-families.test": ::1, then 127.0.0.1
    addrinfo numeric = *hints;
    numeric.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    const char* const first = name == "both-families.test" ? "::1" : "127.0.0.2";
    if (const int error = systemResolve(first, service, &numeric, result); error != 0)
        return error;
    return systemResolve("127.0.0.1", service, &numeric, &(*result)->ai_next);
}

namespace opcua::test {
namespace {

class StackNames : public testing::Test
{
protected:
    void SetUp() override
    {
        g_gate.set(false);
        ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
    }
    void TearDown() override
    {
        g_gate.set(true);
        OpcUa_ProxyStub_Clear();
    }
};

TEST_F(StackNames, ResolvingKeepsTheConnectTimeAndCanBeCancelled)
{
    Channel channel;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(channel.connect("opc.tcp://hangs.test", 150), OpcUa_BadTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);

    auto result =
        std::async(std::launch::async, [&] { return channel.connect("opc.tcp://hangs.test", 60'000); });
    while (result.wait_for(1ms) != std::future_status::ready)
        OpcUa_Channel_CancelConnect(channel.handle());
    EXPECT_EQ(result.get(), OpcUa_BadRequestCancelledByClient);
}

TEST_F(StackNames, HangingLookUpsAreBoundedAndHoldUpNobodyElse)
{
    LoopbackPeer peer(serving(answerAtOnce));
    Channel channel;
    OpcUa_StatusCode status = OpcUa_BadTimeout;
    int hanging = 0;
    while (status == OpcUa_BadTimeout && ++hanging < 100)
        status = channel.connect("opc.tcp://hangs.test", 1);
    EXPECT_EQ(status, OpcUa_BadResourceUnavailable);
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good);
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    g_gate.set(true);
    do // the threads end one by one
        status = channel.connect("opc.tcp://hangs.test", 10'000);
    while (status == OpcUa_BadResourceUnavailable);
    EXPECT_EQ(status, OpcUa_BadCommunicationError);
}

TEST_F(StackNames, AddressThatRefusesMakesWayForTheNext)
{
    LoopbackPeer peer(serving(answerAtOnce));
    Channel channel;
    EXPECT_EQ(channel.connect(peer.url("first-and-second.test")), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

TEST_F(StackNames, AddressesOfBothFamiliesAreTried)
{
    LoopbackPeer peer(serving(answerAtOnce)); // where the first address leads to nobody
    Channel channel;
    EXPECT_EQ(channel.connect(peer.url("both-families.test")), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

TEST_F(StackNames, AddressThatIsSilentMakesWayForTheNext)
{
    LoopbackPeer peer(serving(answerAtOnce));
    // a listener at the first address whose queue is full lets every further attempt hang
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(peer.port());
    ASSERT_EQ(::inet_pton(AF_INET, "127.0.0.2", &address.sin_addr), 1);
    const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
    const UniqueFd full(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(full.get(), generic, sizeof address), 0);
    ASSERT_EQ(::listen(full.get(), 0), 0);
    std::vector<UniqueFd> queued;
    for (int n = 0; n < 4; ++n) {
        queued.emplace_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        static_cast<void>(::connect(queued.back().get(), generic, sizeof address));
    }
    const std::string silent = "opc.tcp://127.0.0.2:" + std::to_string(peer.port());
    Channel channel;
    EXPECT_EQ(channel.connect(silent, 200), OpcUa_BadTimeout);
    EXPECT_EQ(channel.connect(peer.url("first-and-second.test")), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

} // namespace
} // namespace opcua::test
