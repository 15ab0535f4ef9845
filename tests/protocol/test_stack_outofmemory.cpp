// Channels while the system has no memory left for what a server sends.
#include <tests/protocol/channelfixture.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

std::atomic<std::size_t> g_largestBlock{~std::size_t{0}};
thread_local bool t_isServer = false; // the one that plays the server has all the memory it wants

} // namespace

extern "C" void* tavelinLimitedNew(std::size_t size)
{
    void* const block = size > g_largestBlock && !t_isServer ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

#ifndef __SANITIZE_THREAD__ // which has operators of its own; the linker puts the one above into their place
void* operator new(std::size_t size)
{
    return tavelinLimitedNew(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}
#endif

namespace opcua::test {
namespace {

constexpr std::size_t blockForAll = 1024 * 1024;

void answerTooMuch(ServerChannel& channel, OpcUa_UInt32 id, const Bytes&)
{
    t_isServer = true;
    channel.respond(id, Bytes(8 * blockForAll));
}

class StackOutOfMemory : public StackTransport
{
protected:
    void SetUp() override
    {
        StackTransport::SetUp();
        g_largestBlock = blockForAll;
    }
    void TearDown() override
    {
        g_largestBlock = ~std::size_t{0};
        StackTransport::TearDown();
    }
};

TEST_F(StackOutOfMemory, EndsTheChannelWhoseAnswerHasNoRoom)
{
    LoopbackPeer peer(serving(answerTooMuch));
    Mailbox<OpcUa_StatusCode> losses;
    Mailbox<OpcUa_StatusCode> results;
    Channel::Completed completed = [&](OpcUa_StatusCode status) { results.put(status); };
    Channel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode status) {
        if (event == OpcUa_Channel_Event_Disconnected)
            losses.put(status);
    });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(channel.begin(completed), OpcUa_Good);
    ASSERT_TRUE(results.waitForCount(1));
    EXPECT_EQ(results.values().front(), OpcUa_BadOutOfMemory);
    ASSERT_TRUE(losses.waitForCount(1));
    EXPECT_EQ(losses.values().front(), OpcUa_BadOutOfMemory);
    EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
}

TEST_F(StackOutOfMemory, ACallerWhoReadsHearsOfItAndOtherChannelsGoOn)
{
    LoopbackPeer peer(serving(answerTooMuch));
    LoopbackPeer other(serving(answerAtOnce));
    Channel channel;
    Channel lucky;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(lucky.connect(other.url()), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_BadOutOfMemory);
    EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
    EXPECT_EQ(lucky.call(), OpcUa_Good);
}

// Whatever is left undone for want of memory, a call that was begun is completed, and the loop lives.
TEST_F(StackOutOfMemory, CallsAreCompletedWithoutAnyMemory)
{
    constexpr int calls = 5;
    std::atomic<int> begun = 0;
    LoopbackPeer peer(serving([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
        t_isServer = true;
        if (++begun < calls)
            return;
        g_largestBlock = 0;
        channel.respond(id, findServersResponse());
    }));
    LoopbackPeer other(serving(answerAtOnce));
    std::atomic<int> completed = 0;
    std::atomic<int> outOfMemory = 0;
    Channel::Completed completion = [&](OpcUa_StatusCode status) {
        outOfMemory += status == OpcUa_BadOutOfMemory;
        ++completed;
    };
    Channel channel;
    Channel lucky;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(lucky.connect(other.url()), OpcUa_Good);
    const auto limit = std::chrono::steady_clock::now() + patience;
    for (int n = 0; n < calls; ++n)
        ASSERT_EQ(channel.begin(completion), OpcUa_Good);
    while (completed < calls && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    g_largestBlock = blockForAll;
    EXPECT_EQ(completed, calls);
    EXPECT_EQ(outOfMemory, calls);
    EXPECT_EQ(lucky.call(), OpcUa_Good);
}

} // namespace
} // namespace opcua::test
