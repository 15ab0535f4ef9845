// Who reads a channel's socket: callers who wait take turns with the event loop, and nobody is forgotten.
#include <tests/protocol/channelfixture.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>
#include <vector>

using namespace opcua;
using namespace opcua::test;

namespace {

// Answers a request only when a later one asks for it, and tells of each that has come.
class HoldingServer
{
public:
    // The requests with these numbers, from 0, stay open; the one with releaseWith answers all that are.
    HoldingServer(std::vector<size_t> held, size_t releaseWith)
        : m_held(std::move(held)), m_releaseWith(releaseWith)
    {
    }
    LoopbackPeer::Script script(ServerChannelConfig config = {})
    {
        return serving([this](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) { take(channel, id); },
                       config);
    }
    [[nodiscard]] bool waitForRequests(size_t count) { return m_arrived.waitForCount(count); }

private:
    void take(ServerChannel& channel, OpcUa_UInt32 id)
    {
        const size_t number = m_arrived.values().size();
        if (number == m_releaseWith)
            for (const OpcUa_UInt32 waiting : std::exchange(m_open, {}))
                channel.respond(waiting, findServersResponse());
        if (std::find(m_held.begin(), m_held.end(), number) == m_held.end())
            channel.respond(id, findServersResponse());
        else
            m_open.push_back(id);
        m_arrived.put(id);
    }

    const std::vector<size_t> m_held;
    const size_t m_releaseWith;
    Mailbox<OpcUa_UInt32> m_arrived;
    std::vector<OpcUa_UInt32> m_open;
};

constexpr size_t noRequest = SIZE_MAX;

// A blocking call on a thread of its own.
class Caller
{
public:
    explicit Caller(test::Channel& channel, OpcUa_UInt32 timeout = 60'000)
        : m_thread([this, &channel, timeout] { m_status = channel.call(timeout); })
    {
    }
    ~Caller()
    {
        if (m_thread.joinable())
            m_thread.join();
    }
    OpcUa_StatusCode status()
    {
        m_thread.join();
        return m_status;
    }

private:
    OpcUa_StatusCode m_status = OpcUa_BadUnexpectedError;
    std::thread m_thread;
};

class StackHandOver : public StackTransport
{
protected:
    // Starts calls that do not wait; their statuses come into the mailbox.
    void begin(test::Channel& channel, int count)
    {
        for (int n = 0; n < count; ++n)
            ASSERT_EQ(channel.begin(m_completed), OpcUa_Good);
    }

    Mailbox<OpcUa_StatusCode> m_statuses;
    test::Channel::Completed m_completed = [this](OpcUa_StatusCode status) { m_statuses.put(status); };
};

TEST_F(StackHandOver, ManyThreadsCallAndBeginAtOnce)
{
    constexpr int threads = 4;
    constexpr int calls = 150;
    LoopbackPeer peer(serving(answerAtOnce));
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    std::atomic<int> good = 0;
    std::vector<std::thread> workers;
    for (int n = 0; n < threads; ++n)
        workers.emplace_back([&] {
            for (int call = 0; call < calls; ++call) {
                good += OpcUa_IsGood(channel.call());
                if (call % 3 == 0)
                    begin(channel, 1);
            }
        });
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(good, threads * calls);
    ASSERT_TRUE(m_statuses.waitForCount(threads * calls / 3));
    EXPECT_EQ(m_statuses.values(), std::vector<OpcUa_StatusCode>(threads * calls / 3, OpcUa_Good));
}

TEST_F(StackHandOver, TheOneWhoReadsServesTheOthersAndIsServedAfterwards)
{
    constexpr int begun = 20;
    HoldingServer server({0}, begun + 2);
    LoopbackPeer peer(server.script());
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Caller first(channel);
    ASSERT_TRUE(server.waitForRequests(1));
    begin(channel, begun);
    ASSERT_TRUE(m_statuses.waitForCount(begun));
    EXPECT_EQ(channel.call(), OpcUa_Good); // waits while the first one reads
    begin(channel, 1);
    EXPECT_EQ(first.status(), OpcUa_Good);
    ASSERT_TRUE(m_statuses.waitForCount(begun + 1));
}

TEST_F(StackHandOver, TimeOutOfTheOneWhoReadsLeavesTheOthersWaiting)
{
    HoldingServer server({0, 1}, 2);
    LoopbackPeer peer(server.script());
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Caller reads(channel, 150);
    ASSERT_TRUE(server.waitForRequests(1));
    Caller waits(channel);
    ASSERT_TRUE(server.waitForRequests(2));
    EXPECT_EQ(reads.status(), OpcUa_BadTimeout);
    begin(channel, 1);
    EXPECT_EQ(waits.status(), OpcUa_Good);
}

TEST_F(StackHandOver, TimeOutsOfOthersAreKeptWhileACallerReads)
{
    HoldingServer server({0, 1, 2}, 3);
    LoopbackPeer peer(server.script());
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Caller reads(channel);
    ASSERT_TRUE(server.waitForRequests(1));
    ASSERT_EQ(channel.begin(m_completed, 100), OpcUa_Good);
    EXPECT_EQ(channel.call(100), OpcUa_BadTimeout);
    ASSERT_TRUE(m_statuses.waitForCount(1));
    EXPECT_EQ(m_statuses.values().front(), OpcUa_BadTimeout);
    begin(channel, 1);
    EXPECT_EQ(reads.status(), OpcUa_Good);
}

TEST_F(StackHandOver, TokensAreRenewedWhileACallerReads)
{
    HoldingServer server({0}, 1);
    ServerChannelConfig config;
    config.maxLifetime = 1000;
    LoopbackPeer peer(server.script(config));
    test::Channel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode) {
        if (event == OpcUa_Channel_Event_Renewed && m_statuses.values().empty())
            begin(channel, 1); // which lets the server answer the one who reads
    });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    EXPECT_EQ(channel.call(60'000), OpcUa_Good);
}

TEST_F(StackHandOver, DisconnectEndsTheReadingOfACaller)
{
    test::Channel channel;
    for (int round = 0; round < 20; ++round) {
        HoldingServer silent({0, 1}, noRequest);
        LoopbackPeer there(silent.script());
        ASSERT_EQ(channel.connect(there.url()), OpcUa_Good);
        Caller reads(channel);
        Caller waits(channel);
        ASSERT_TRUE(silent.waitForRequests(2));
        EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
        EXPECT_EQ(reads.status(), OpcUa_BadConnectionClosed);
        EXPECT_EQ(waits.status(), OpcUa_BadConnectionClosed);
    }
}

TEST_F(StackHandOver, LossIsNoticedByTheOneWhoReadsAndToldToAll)
{
    LoopbackPeer peer([](PeerSocket& socket) {
        size_t requests = 0;
        const auto hangUpAfterTwo = [&](ServerChannel& channel, OpcUa_UInt32, const Bytes&) {
            if (++requests == 2)
                channel.fail(OpcUa_BadTcpInternalError);
        };
        PeerServer(hangUpAfterTwo).serve(socket);
    });
    Mailbox<OpcUa_StatusCode> lost;
    test::Channel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode status) {
        if (event == OpcUa_Channel_Event_Disconnected)
            lost.put(status);
    });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Caller reads(channel);
    Caller waits(channel);
    EXPECT_EQ(reads.status(), OpcUa_BadTcpInternalError);
    EXPECT_EQ(waits.status(), OpcUa_BadTcpInternalError);
    ASSERT_TRUE(lost.waitForCount(1));
    EXPECT_EQ(lost.values(), std::vector<OpcUa_StatusCode>{OpcUa_BadTcpInternalError});
}

// Publish answers must reach the application in the order in which the server sent them, whoever reads.
TEST_F(StackHandOver, CompletionsKeepTheirOrder)
{
    constexpr int begun = 400;
    LoopbackPeer peer(serving(answerAtOnce));
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Mailbox<int> order;
    std::vector<test::Channel::Completed> completions;
    for (int n = 0; n < begun; ++n)
        completions.emplace_back([&order, n](OpcUa_StatusCode) { order.put(n); });
    std::atomic<bool> done = false;
    std::thread caller([&] {
        while (!done)
            EXPECT_EQ(channel.call(), OpcUa_Good);
    });
    for (test::Channel::Completed& completion : completions)
        EXPECT_EQ(channel.begin(completion), OpcUa_Good);
    EXPECT_TRUE(order.waitForCount(begun));
    done = true;
    caller.join();
    const std::vector<int> came = order.values();
    EXPECT_TRUE(std::is_sorted(came.begin(), came.end()));
}

// ---- requests that leave together

TEST_F(StackHandOver, KeptBackRequestsLeaveOnTheirOwn)
{
    constexpr size_t begun = 30;
    std::vector<size_t> all;
    for (size_t n = 0; n < begun; ++n)
        all.push_back(n);
    HoldingServer server(all, noRequest);
    LoopbackPeer peer(server.script());
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    begin(channel, begun);
    EXPECT_TRUE(server.waitForRequests(begun)); // no answer and no further call helps them out
}

TEST_F(StackHandOver, ACallbackThatBlocksHoldsUpNoRequest)
{
    constexpr int begun = 30;
    std::vector<size_t> all;
    for (size_t n = 1; n <= begun; ++n)
        all.push_back(n);
    HoldingServer server(all, noRequest);
    LoopbackPeer peer(server.script());
    test::Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Mailbox<bool> sawAll;
    test::Channel::Completed blocks = [&](OpcUa_StatusCode) {
        begin(channel, begun);
        sawAll.put(server.waitForRequests(begun + 1));
    };
    ASSERT_EQ(channel.begin(blocks), OpcUa_Good);
    ASSERT_TRUE(sawAll.waitForCount(1));
    EXPECT_TRUE(sawAll.values().front());
}

} // namespace
