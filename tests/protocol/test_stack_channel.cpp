// The channel engine against its counterpart, at memory speed.
#include <stack/server/engineprobe.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/memorypipe.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace opcua::test {
namespace {

constexpr size_t bodyOfFullChunk = 65536 - 24;

TEST(StackChannel, CarriesMessagesOfEverySizeBothWays)
{
    for (const size_t slice : {size_t{1}, size_t{23}, size_t{65537}, whole}) {
        MemoryPipe pipe;
        pipe.start();
        pipe.run(slice);
        ASSERT_EQ(pipe.opened, 1);
        EXPECT_EQ(pipe.server.endpointUrl(), "opc.tcp://memory:4840/");
        for (const size_t size :
             {size_t{0}, size_t{1}, bodyOfFullChunk, bodyOfFullChunk + 1, size_t{300'000}}) {
            const Bytes body = pattern(size);
            const OpcUa_UInt32 id = pipe.request(body);
            pipe.run(slice);
            EXPECT_EQ(pipe.requests.back(), body);
            ASSERT_TRUE(pipe.responses.contains(id)) << size;
            EXPECT_EQ(pipe.responses[id], body);
        }
    }
}

TEST(StackChannel, CarriesTheLargestMessageAndNoLargerOne)
{
    MemoryPipe pipe;
    pipe.open();
    const Bytes largest = pattern(defaultMaxMessageSize);
    const OpcUa_UInt32 id = pipe.request(largest);
    pipe.run();
    EXPECT_EQ(pipe.responses[id], largest);
    EXPECT_EQ(pipe.request(pattern(defaultMaxMessageSize + 1)), 0u);
    EXPECT_EQ(pipe.sendStatus, OpcUa_BadRequestTooLarge);
    EXPECT_TRUE(pipe.client.output().empty());
}

TEST(StackChannel, TheLargestMessageComesThroughTheSmallestBuffersToo)
{
    ServerChannelConfig small;
    small.limits.receiveBufferSize = minimumBufferSize;
    small.limits.sendBufferSize = minimumBufferSize;
    MemoryPipe pipe({}, small);
    pipe.open();
    const Bytes largest = pattern(defaultMaxMessageSize);
    pipe.onServerRequest = [&](OpcUa_UInt32 id, const Bytes&) { pipe.server.respond(id, largest); };
    const OpcUa_UInt32 id = pipe.request({1});
    pipe.run();
    EXPECT_EQ(pipe.statusOf(id), OpcUa_Good);
    EXPECT_EQ(pipe.responses[id], largest);
}

TEST(StackChannel, DoesNotMindWhereTheStreamIsCut)
{
    const auto conversation = [](size_t cut, Bytes& stream) {
        MemoryPipe pipe;
        pipe.start();
        const auto deliver = [&](Bytes bytes) {
            const size_t at = cut - std::min(cut, stream.size());
            stream.insert(stream.end(), bytes.begin(), bytes.end());
            pipe.toClient(std::move(bytes), at == 0 ? whole : at);
        };
        for (int turn = 0; turn < 3; ++turn) {
            pipe.toServer(std::exchange(pipe.client.output(), {}));
            deliver(std::exchange(pipe.server.output(), {}));
            if (turn == 1)
                pipe.request(pattern(50));
        }
        return pipe.responses.size() == 1 && pipe.responses.begin()->second == pattern(50);
    };
    Bytes stream;
    ASSERT_TRUE(conversation(whole, stream));
    const size_t length = stream.size();
    ASSERT_GT(length, 150u);
    for (size_t cut = 1; cut < length; ++cut) {
        Bytes again;
        EXPECT_TRUE(conversation(cut, again)) << "cut at " << cut;
    }
}

TEST(StackChannel, NeverJoinsInterleavedChunksOfTwoMessages)
{
    MemoryPipe pipe;
    pipe.open();
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    const OpcUa_UInt32 first = pipe.request({1});
    const OpcUa_UInt32 second = pipe.request({2});
    pipe.run();
    const auto chunk = [&](OpcUa_UInt32 id, ChunkType type, Bytes body) {
        return RawChunk{MessageType::Message, type, 1, 1, pipe.nextServerSequence(), id, std::move(body)}
            .bytes();
    };
    pipe.toClient(chunk(first, ChunkType::Intermediate, {10}));
    pipe.toClient(chunk(second, ChunkType::Intermediate, {20}));
    pipe.toClient(chunk(second, ChunkType::Final, {21}));
    pipe.toClient(chunk(first, ChunkType::Final, {11}));
    EXPECT_EQ(pipe.responses[first], (Bytes{10, 11}));
    EXPECT_EQ(pipe.responses[second], (Bytes{20, 21}));
}

TEST(StackChannel, AbortEndsItsCallAlone)
{
    MemoryPipe pipe;
    pipe.open();
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    const OpcUa_UInt32 aborted = pipe.request({1});
    const OpcUa_UInt32 other = pipe.request({2});
    pipe.run();
    pipe.toClient(RawChunk{MessageType::Message, ChunkType::Intermediate, 1, 1, pipe.nextServerSequence(),
                           aborted, pattern(1000)}
                      .bytes());
    ASSERT_EQ(pipe.server.abort(aborted, OpcUa_BadEncodingLimitsExceeded, "too much"), OpcUa_Good);
    ASSERT_EQ(pipe.server.respond(other, Bytes{9}), OpcUa_Good);
    pipe.run();
    EXPECT_EQ(pipe.statusOf(aborted), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(pipe.responses[other], Bytes{9});
    EXPECT_EQ(EngineProbe::bufferedBytes(pipe.client), 0u);
    EXPECT_EQ(pipe.client.state(), ClientChannel::State::Open);
}

TEST(StackChannel, KeepsToWhatThePeerTakes)
{
    ServerChannelConfig small;
    small.limits = {8192, 8192, 20'000, 2};
    MemoryPipe pipe({}, small);
    pipe.open();
    constexpr size_t room = 8192 - 24;
    for (const size_t size : {2 * room + 1, size_t{20'001}}) {
        EXPECT_EQ(pipe.request(pattern(size)), 0u);
        EXPECT_EQ(pipe.sendStatus, OpcUa_BadRequestTooLarge);
    }
    const OpcUa_UInt32 id = pipe.request(pattern(2 * room));
    pipe.run();
    EXPECT_EQ(pipe.statusOf(id), OpcUa_Good);
}

// The size of the largest frame of a stream.
OpcUa_UInt32 largestFrame(const Bytes& stream)
{
    OpcUa_UInt32 largest = 0;
    for (size_t at = 0; at + frameHeaderSize <= stream.size(); at += getUInt32(stream.data() + at + 4))
        largest = std::max(largest, getUInt32(stream.data() + at + 4));
    return largest;
}

TEST(StackChannel, BuffersOfTheTwoDirectionsAreNotMistakenForEachOther)
{
    struct Case
    {
        ChannelLimits client, server;
        OpcUa_UInt32 requests, responses; // the largest frames of each
    };
    const ChannelLimits usual;
    const ChannelLimits small{8192, 8192};
    const ChannelLimits receivesLittle{8192, 65536};
    const ChannelLimits sendsLittle{65536, 8192};
    for (const Case& c : {Case{usual, receivesLittle, 8192, 65536}, Case{usual, sendsLittle, 65536, 8192},
                          Case{receivesLittle, usual, 65536, 8192}, Case{sendsLittle, usual, 8192, 65536},
                          Case{small, usual, 8192, 8192}, Case{receivesLittle, receivesLittle, 8192, 8192}}) {
        ClientChannelConfig client;
        client.limits = c.client;
        ServerChannelConfig server;
        server.limits = c.server;
        MemoryPipe pipe(client, server);
        pipe.open();
        const OpcUa_UInt32 id = pipe.request(pattern(200'000));
        EXPECT_EQ(largestFrame(pipe.client.output()), c.requests);
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        EXPECT_EQ(largestFrame(pipe.server.output()), c.responses);
        pipe.run();
        EXPECT_EQ(pipe.statusOf(id), OpcUa_Good);
    }
}

TEST(StackChannel, TellsThePeerWhatItTakesItself)
{
    ClientChannelConfig small;
    small.limits = {8192, 8192, 10'000, 2};
    MemoryPipe pipe(small);
    pipe.open();
    pipe.onServerRequest = [&](OpcUa_UInt32 id, const Bytes&) { pipe.server.respond(id, pattern(10'001)); };
    const OpcUa_UInt32 id = pipe.request({1});
    pipe.run();
    EXPECT_EQ(pipe.statusOf(id), OpcUa_BadResponseTooLarge);
    EXPECT_EQ(pipe.client.state(), ClientChannel::State::Open);
}

TEST(StackChannel, CallsEndAtTheirDeadlineAndLateAnswersAreDropped)
{
    MemoryPipe pipe;
    pipe.open();
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    const OpcUa_UInt32 slow = pipe.request({1}, Milliseconds{700});
    const OpcUa_UInt32 patient = pipe.request({2}, Milliseconds{5000});
    pipe.run();
    EXPECT_EQ(pipe.client.nextDeadline(), pipe.now + Milliseconds{700});
    pipe.toClient(RawChunk{MessageType::Message, ChunkType::Intermediate, 1, 1, pipe.nextServerSequence(),
                           slow, pattern(1000)}
                      .bytes());
    pipe.pass(Milliseconds{699});
    EXPECT_EQ(pipe.statusOf(slow), std::nullopt);
    pipe.pass(Milliseconds{1});
    EXPECT_EQ(pipe.statusOf(slow), OpcUa_BadTimeout);
    EXPECT_EQ(EngineProbe::bufferedBytes(pipe.client), 0u);

    pipe.server.respond(slow, Bytes{1}); // late
    pipe.server.respond(patient, Bytes{2});
    pipe.run();
    EXPECT_EQ(pipe.responses[patient], Bytes{2});
    EXPECT_EQ(EngineProbe::droppedResponses(pipe.client), 1u);
    EXPECT_EQ(pipe.client.state(), ClientChannel::State::Open);

    pipe.server.respond(patient, Bytes{3}); // a second time
    pipe.run();
    EXPECT_EQ(pipe.responses[patient], Bytes{2});
    EXPECT_EQ(pipe.completions, 2);
    EXPECT_EQ(pipe.clientClosed, OpcUa_BadSecurityChecksFailed);
}

TEST(StackChannel, BoundsTheCallsThatWait)
{
    ClientChannelConfig config;
    config.maxPendingRequests = 2;
    MemoryPipe pipe(config);
    pipe.open();
    pipe.request({1});
    pipe.request({2});
    EXPECT_EQ(pipe.request({3}), 0u);
    EXPECT_EQ(pipe.sendStatus, OpcUa_BadTooManyOperations);
    pipe.run();
    EXPECT_NE(pipe.request({3}), 0u);
}

TEST(StackChannel, CloseEndsCallsAndTellsThePeer)
{
    MemoryPipe pipe;
    pipe.open();
    const OpcUa_UInt32 id = pipe.request({1});
    pipe.client.close();
    EXPECT_EQ(pipe.statusOf(id), OpcUa_BadConnectionClosed);
    EXPECT_EQ(pipe.clientClosed, std::nullopt);
    EXPECT_EQ(pipe.client.nextDeadline(), never);
    EXPECT_EQ(pipe.request({2}), 0u);
    EXPECT_EQ(pipe.sendStatus, OpcUa_BadConnectionClosed);
    pipe.run();
    EXPECT_EQ(pipe.serverClosed, OpcUa_StatusCode{OpcUa_Good});
    EXPECT_EQ(pipe.completions, 1);
}

TEST(StackChannel, ConnectTimeCountsFromTheStartWhateverTrickles)
{
    MemoryPipe pipe;
    pipe.start(Milliseconds{3000});
    pipe.pass(Milliseconds{2000});
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.toClient(std::exchange(pipe.server.output(), {}));
    ASSERT_EQ(pipe.client.state(), ClientChannel::State::Opening);
    pipe.pass(Milliseconds{999});
    EXPECT_EQ(pipe.clientClosed, std::nullopt);
    pipe.pass(Milliseconds{1});
    EXPECT_EQ(pipe.clientClosed, OpcUa_BadTimeout);
}

// ---- tokens

ServerChannelConfig withLifetime(OpcUa_UInt32 lifetime)
{
    ServerChannelConfig config;
    config.minLifetime = lifetime;
    config.maxLifetime = lifetime;
    return config;
}

TEST(StackToken, IsRenewedAtThreeQuartersButNotMoreThanOnceASecond)
{
    struct Case
    {
        OpcUa_UInt32 lifetime;
        std::int64_t renewalAfter;
    };
    for (const Case& c : {Case{0, 1000}, Case{1, 1000}, Case{1333, 1000}, Case{60'000, 45'000},
                          Case{0xFFFFFFFFu, 3'221'225'471}}) {
        MemoryPipe pipe({}, withLifetime(c.lifetime));
        pipe.open();
        for (int round = 1; round <= 3; ++round) {
            EXPECT_EQ(pipe.client.nextDeadline(), pipe.now + Milliseconds{c.renewalAfter}) << c.lifetime;
            pipe.pass(Milliseconds{c.renewalAfter});
            pipe.run();
            EXPECT_EQ(pipe.renewed, round);
        }
        EXPECT_EQ(pipe.client.state(), ClientChannel::State::Open);
    }
}

TEST(StackToken, CanBeUsedUntilItsRenewalHoweverShortItsLife)
{
    for (const OpcUa_UInt32 lifetime : {0, 1, 1333}) {
        MemoryPipe pipe({}, withLifetime(lifetime));
        pipe.open();
        const OpcUa_UInt32 id = pipe.request({1}, Milliseconds{100'000});
        pipe.pass(Milliseconds{1000}); // and the renewal takes a while
        pipe.now += Milliseconds{900};
        const OpcUa_UInt32 during = pipe.request({2}, Milliseconds{100'000});
        for (const OpcUa_UInt32 request : {id, during})
            pipe.toClient(RawChunk{
                MessageType::Message, ChunkType::Final, 1, 1, pipe.nextServerSequence(), request, {5}}
                              .bytes());
        EXPECT_EQ(pipe.statusOf(id), OpcUa_Good) << lifetime;
        EXPECT_EQ(pipe.statusOf(during), OpcUa_Good) << lifetime;
    }
}

TEST(StackToken, TrafficGoesOnThroughRenewal)
{
    MemoryPipe pipe({}, withLifetime(60'000));
    pipe.open();
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    const OpcUa_UInt32 before = pipe.request({1}, Milliseconds{100'000});
    pipe.pass(Milliseconds{45'000});
    const OpcUa_UInt32 during = pipe.request({2}, Milliseconds{100'000});
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    // answered with the old token: the server has not seen the new one in use yet
    pipe.server.respond(before, Bytes{1});
    pipe.toClient(std::exchange(pipe.server.output(), {}));
    EXPECT_EQ(pipe.statusOf(before), OpcUa_Good);

    const OpcUa_UInt32 after = pipe.request({3}, Milliseconds{100'000});
    EXPECT_EQ(getUInt32(pipe.client.output().data() + 12), 2u); // at once with the new token
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.server.respond(during, Bytes{2});
    EXPECT_EQ(getUInt32(pipe.server.output().data() + 12), 2u);
    pipe.server.respond(after, Bytes{3});
    pipe.run();
    EXPECT_EQ(pipe.responses[during], Bytes{2});
    EXPECT_EQ(pipe.responses[after], Bytes{3});
}

TEST(StackToken, OldOneIsAcceptedForAQuarterMoreThanItsLifeAndNoLonger)
{
    struct Case
    {
        OpcUa_UInt32 lifetime;
        int age;
        bool accepted;
    };
    for (const auto& [lifetime, age, accepted] : {Case{60'000, 74'999, true}, Case{60'000, 75'000, false},
                                                  Case{4'000, 4'999, true}, Case{4'000, 5'000, false}}) {
        MemoryPipe pipe({}, withLifetime(lifetime));
        pipe.open();
        const TimePoint opened = pipe.now;
        pipe.pass(Milliseconds{lifetime * 3 / 4});
        pipe.run();
        ASSERT_EQ(pipe.renewed, 1);
        pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
        const OpcUa_UInt32 id = pipe.request({1}, Milliseconds{100'000});
        pipe.now = opened + Milliseconds{age};
        pipe.toClient(
            RawChunk{MessageType::Message, ChunkType::Final, 1, 1, pipe.nextServerSequence(), id, {5}}
                .bytes());
        EXPECT_EQ(pipe.statusOf(id), accepted ? OpcUa_Good : OpcUa_BadSecurityChecksFailed);
    }
}

TEST(StackToken, SilentRenewalEndsTheChannelWithItsToken)
{
    for (const int lifetime : {2'000, 4'000, 19'999, 60'000}) {
        MemoryPipe pipe({}, withLifetime(static_cast<OpcUa_UInt32>(lifetime)));
        pipe.open();
        const TimePoint opened = pipe.now;
        const OpcUa_UInt32 id = pipe.request({1}, Milliseconds{100'000});
        pipe.client.output().clear();
        pipe.pass(Milliseconds{lifetime * 3 / 4});
        EXPECT_EQ(pipe.client.nextDeadline(), opened + Milliseconds{lifetime});
        pipe.now = opened + Milliseconds{lifetime - 1};
        pipe.client.advance(pipe.now);
        EXPECT_EQ(pipe.clientClosed, std::nullopt);
        pipe.pass(Milliseconds{1});
        EXPECT_EQ(pipe.clientClosed, OpcUa_BadTimeout) << lifetime;
        EXPECT_EQ(pipe.statusOf(id), OpcUa_BadTimeout);
    }
}

TEST(StackToken, RenewalIsNotWaitedForLongerThanAMinute)
{
    MemoryPipe pipe({}, withLifetime(3'600'000));
    pipe.open();
    pipe.pass(Milliseconds{2'700'000});
    EXPECT_EQ(pipe.client.nextDeadline(), pipe.now + Milliseconds{60'000});
    pipe.pass(Milliseconds{60'000});
    EXPECT_EQ(pipe.clientClosed, OpcUa_BadTimeout);
}

TEST(StackToken, OneThatIsTooOldIsNotAcceptedWhateverHeldUpTheClock)
{
    for (const auto& [age, status] :
         {std::pair(4'999, OpcUa_StatusCode{OpcUa_Good}), std::pair(5'000, OpcUa_BadSecurityChecksFailed)}) {
        MemoryPipe pipe({}, withLifetime(4'000));
        pipe.open();
        const OpcUa_UInt32 id = pipe.request({1}, Milliseconds{100'000});
        pipe.now += Milliseconds{age};
        pipe.toClient(
            RawChunk{MessageType::Message, ChunkType::Final, 1, 1, pipe.nextServerSequence(), id, {5}}
                .bytes());
        EXPECT_EQ(pipe.statusOf(id), status) << age;
    }
}

TEST(StackToken, AnswerThatNamesItIsTakenOnce)
{
    MemoryPipe pipe;
    pipe.open();
    Bytes body;
    Bytes out;
    ASSERT_EQ(encodeOpenResponse({0, 0, 1, 7, 60'000, {}}, body), OpcUa_Good);
    ASSERT_EQ(EngineProbe::conversation(pipe.server).writeOpen(out, 1, body), OpcUa_Good);
    pipe.toClient(out);
    EXPECT_EQ(pipe.renewed, 0);
    EXPECT_EQ(pipe.clientClosed, OpcUa_BadSecurityChecksFailed);
}

TEST(StackToken, OneThatWasNotRenewedInTimeIsNotUsedAnyMore)
{
    MemoryPipe pipe({}, withLifetime(4'000));
    pipe.open();
    pipe.pass(Milliseconds{4'000}); // whoever keeps the time was held up
    EXPECT_EQ(pipe.clientClosed, OpcUa_BadSecureChannelTokenUnknown);
    EXPECT_TRUE(pipe.client.output().empty());
}

// A renewal that the server answers in another way than with a new token.
std::optional<OpcUa_StatusCode> renewalAnswered(const std::function<Bytes(OpcUa_UInt32 requestId)>& answer,
                                                OpcUa_UInt32 wrongId = 0)
{
    MemoryPipe pipe;
    pipe.open();
    pipe.pass(Milliseconds{2'700'000});
    const Bytes renewal = std::exchange(pipe.client.output(), {});
    const size_t requestIdAt =
        frameHeaderSize + 4 + 4 + EngineProbe::conversation(pipe.client).policy().uri().size() + 8 + 4;
    const OpcUa_UInt32 id = getUInt32(renewal.data() + requestIdAt) + wrongId;
    Bytes out;
    EXPECT_EQ(EngineProbe::conversation(pipe.server).writeOpen(out, id, answer(id)), OpcUa_Good);
    pipe.toClient(out);
    return pipe.clientClosed;
}

TEST(StackToken, RefusedOrWrongRenewalEndsTheChannel)
{
    const auto refusal = [](OpcUa_UInt32 id) {
        Bytes body;
        EXPECT_EQ(encodeServiceFault(0, id, OpcUa_BadSecurityPolicyRejected, body), OpcUa_Good);
        return body;
    };
    const auto token = [](OpcUa_UInt32 channelId) {
        return [channelId](OpcUa_UInt32) {
            Bytes body;
            EXPECT_EQ(encodeOpenResponse({0, 0, channelId, 7, 60'000, {}}, body), OpcUa_Good);
            return body;
        };
    };
    EXPECT_EQ(renewalAnswered(refusal), OpcUa_BadSecurityPolicyRejected);
    EXPECT_EQ(renewalAnswered(token(2)), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(renewalAnswered(token(1), 1), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(renewalAnswered([](OpcUa_UInt32) { return pattern(30); }), OpcUa_BadDataTypeIdUnknown);
    EXPECT_EQ(renewalAnswered(token(1)), std::nullopt);
}

TEST(StackChannel, SequenceNumbersWrapWithoutAGap)
{
    MemoryPipe pipe;
    pipe.start();
    EngineProbe::continueFrom(EngineProbe::sendSequence(pipe.client), legacyWrapAbove - 5);
    EngineProbe::continueFrom(EngineProbe::sendSequence(pipe.server), legacyWrapAbove - 9);
    pipe.run();
    for (int n = 0; n < 20; ++n) {
        const OpcUa_UInt32 id = pipe.request(pattern(100'000));
        pipe.run();
        EXPECT_EQ(pipe.statusOf(id), OpcUa_Good);
    }
}

} // namespace
} // namespace opcua::test
