// The client's engine against peers that do what they must not.
#include <stack/server/engineprobe.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/memorypipe.h>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

using State = ClientChannel::State;

Bytes frameOf(std::string_view type, OpcUa_UInt32 size)
{
    Bytes bytes(type.begin(), type.end());
    appendUInt32(bytes, size);
    return bytes;
}

Bytes errorOf(OpcUa_StatusCode status, std::string_view reason = "no")
{
    Bytes bytes;
    writeError(bytes, status, reason);
    return bytes;
}

Bytes acknowledgeOf(const ChannelLimits& limits)
{
    Bytes bytes;
    writeAcknowledge(bytes, {0, limits});
    return bytes;
}

// Brings a pipe's client to a state, with one call waiting where the channel is open.
OpcUa_UInt32 bringTo(MemoryPipe& pipe, State state)
{
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    pipe.start();
    if (state == State::HelloSent)
        return 0;
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.toClient(std::exchange(pipe.server.output(), {}));
    if (state == State::Opening)
        return 0;
    pipe.run();
    const OpcUa_UInt32 id = pipe.request({1});
    pipe.run();
    EXPECT_EQ(pipe.client.state(), state);
    return id;
}

// What the channel ended with; the waiting call must have ended with the same.
std::optional<OpcUa_StatusCode> outcomeOf(State state, const Bytes& bytes)
{
    MemoryPipe pipe;
    const OpcUa_UInt32 id = bringTo(pipe, state);
    pipe.toClient(bytes);
    if (id != 0)
        EXPECT_EQ(pipe.statusOf(id), pipe.clientClosed);
    if (pipe.clientClosed) {
        EXPECT_TRUE(pipe.client.output().empty());
        EXPECT_EQ(pipe.client.nextDeadline(), never);
    }
    return pipe.clientClosed;
}

constexpr State connectedStates[] = {State::HelloSent, State::Opening, State::Open};

TEST(StackHostilePeer, WrongFramesEndTheChannelInEveryState)
{
    for (const State state : connectedStates) {
        for (const OpcUa_UInt32 size : {0u, 7u, 65537u, 0xFFFFFFFFu})
            EXPECT_EQ(outcomeOf(state, frameOf("MSGF", size)), OpcUa_BadTcpMessageTooLarge) << size;
        const std::string_view http = "HTTP/1.1 400 Bad Request\r\n\r\n";
        EXPECT_EQ(outcomeOf(state, Bytes(http.begin(), http.end())), OpcUa_BadTcpMessageTypeInvalid);
        for (const auto* const type : {"HELF", "CLOF", "MSGX", "OPNC"})
            EXPECT_EQ(outcomeOf(state, frameOf(type, 8)), OpcUa_BadTcpMessageTypeInvalid) << type;
    }
}

TEST(StackHostilePeer, RightMessagesAtTheWrongTimeEndTheChannel)
{
    const Bytes acknowledge = acknowledgeOf({});
    EXPECT_EQ(outcomeOf(State::Opening, acknowledge), OpcUa_BadTcpMessageTypeInvalid);
    EXPECT_EQ(outcomeOf(State::Open, acknowledge), OpcUa_BadTcpMessageTypeInvalid);
    const Bytes message = RawChunk{.sequence = 1, .requestId = 1, .body = {}}.bytes();
    EXPECT_EQ(outcomeOf(State::HelloSent, message), OpcUa_BadTcpMessageTypeInvalid);
    EXPECT_EQ(outcomeOf(State::Opening, message), OpcUa_BadTcpMessageTypeInvalid);
    // an Open that nobody asked for
    EXPECT_EQ(outcomeOf(State::HelloSent, frameOf("OPNF", 8)), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOf(State::Open, frameOf("OPNF", 8)), OpcUa_BadSecurityChecksFailed);
}

TEST(StackHostilePeer, ErrorMessagesReachTheCallsInEveryState)
{
    for (const State state : connectedStates) {
        EXPECT_EQ(outcomeOf(state, errorOf(OpcUa_BadTcpServerTooBusy)), OpcUa_BadTcpServerTooBusy);
        EXPECT_EQ(outcomeOf(state, errorOf(OpcUa_Good)), OpcUa_BadCommunicationError);
        EXPECT_EQ(outcomeOf(state, frameOf("ERRF", 8)), OpcUa_BadCommunicationError);
    }
    Bytes lyingReason = errorOf(OpcUa_BadTcpServerTooBusy);
    putUInt32(lyingReason.data() + 12, 0x7FFFFFFF);
    EXPECT_EQ(outcomeOf(State::Open, lyingReason), OpcUa_BadTcpServerTooBusy);

    for (const size_t length : {size_t{4096}, size_t{4097}}) {
        MemoryPipe pipe;
        bringTo(pipe, State::Open);
        Bytes bytes;
        const size_t begin = beginFrame(bytes, MessageType::Error, ChunkType::Final);
        appendUInt32(bytes, OpcUa_BadTcpServerTooBusy);
        appendByteString(bytes, pattern(length));
        finishFrame(bytes, begin);
        pipe.toClient(bytes);
        EXPECT_EQ(pipe.clientClosed, OpcUa_BadTcpServerTooBusy);
        EXPECT_EQ(pipe.client.peerReason().size(), length == 4096 ? length : 0);
    }
}

TEST(StackHostilePeer, AcknowledgeWithBadBuffers)
{
    for (const ChannelLimits& limits :
         {ChannelLimits{8191, 65536, 0, 0}, ChannelLimits{65536, 8191, 0, 0}, ChannelLimits{0, 0, 0, 0}})
        EXPECT_EQ(outcomeOf(State::HelloSent, acknowledgeOf(limits)), OpcUa_BadConnectionRejected);
    EXPECT_EQ(outcomeOf(State::HelloSent, frameOf("ACKF", 8)), OpcUa_BadDecodingError);

    // larger than offered: the own values hold
    MemoryPipe pipe;
    bringTo(pipe, State::HelloSent);
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.server.output() = acknowledgeOf({0xFFFFFFFFu, 0xFFFFFFFFu, 0, 0});
    pipe.run();
    pipe.request(pattern(100'000));
    EXPECT_EQ(getUInt32(pipe.client.output().data() + 4), 65536u);
}

TEST(StackHostilePeer, ChunksThatFailAnyCheckEndTheChannelAlike)
{
    const auto outcomeOfChunk = [](const std::function<void(RawChunk&)>& spoil, size_t cutTo = 0) {
        MemoryPipe pipe;
        const OpcUa_UInt32 id = bringTo(pipe, State::Open);
        RawChunk chunk{.sequence = pipe.nextServerSequence(), .requestId = id, .body = {1}};
        spoil(chunk);
        Bytes bytes = chunk.bytes();
        if (cutTo != 0) {
            bytes.resize(cutTo);
            finishFrame(bytes, 0);
        }
        pipe.toClient(bytes);
        return pipe.clientClosed ? pipe.clientClosed : pipe.statusOf(id);
    };
    EXPECT_EQ(outcomeOfChunk([](RawChunk&) {}), OpcUa_Good);
    EXPECT_EQ(outcomeOfChunk([](RawChunk& c) { c.channelId = 2; }), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOfChunk([](RawChunk& c) { c.channelId = 0; }), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOfChunk([](RawChunk& c) { c.tokenId = 2; }), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOfChunk([](RawChunk& c) { c.sequence -= 1; }), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOfChunk([](RawChunk& c) { c.sequence += 1; }), OpcUa_BadSecurityChecksFailed);
    for (size_t size = 8; size < 24; ++size)
        EXPECT_EQ(outcomeOfChunk([](RawChunk&) {}, size), OpcUa_BadSecurityChecksFailed) << size;
}

TEST(StackHostilePeer, OpenAnswersThatFailAnyCheckEndTheChannel)
{
    const auto outcomeOfOpen = [](const std::function<void(Bytes&)>& spoil) {
        MemoryPipe pipe;
        bringTo(pipe, State::Opening);
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        Bytes answer = std::exchange(pipe.server.output(), {});
        spoil(answer);
        pipe.toClient(answer);
        return pipe.clientClosed;
    };
    const size_t uriLengthAt = 12;
    const size_t requestIdAt = 12 + 4 + makeSecurityPolicyNone()->uri().size() + 8 + 4;
    EXPECT_EQ(outcomeOfOpen([](Bytes&) {}), std::nullopt);
    const auto spoiledAt = [&](size_t at, OpcUa_UInt32 value) {
        return outcomeOfOpen([&](Bytes& bytes) { putUInt32(bytes.data() + at, value); });
    };
    EXPECT_EQ(spoiledAt(8, 99), OpcUa_BadSecurityChecksFailed); // header and body name different channels
    EXPECT_EQ(spoiledAt(uriLengthAt, 0xFFFFFFFFu), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(spoiledAt(uriLengthAt, 0x7FFFFFFFu), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(spoiledAt(uriLengthAt + 4, 0x41414141), OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(spoiledAt(requestIdAt, 77), OpcUa_BadSecurityChecksFailed);
    for (size_t cut = 8; cut < requestIdAt + 4; ++cut) {
        EXPECT_EQ(outcomeOfOpen([&](Bytes& bytes) {
                      bytes.resize(cut);
                      finishFrame(bytes, 0);
                  }),
                  OpcUa_BadSecurityChecksFailed)
            << cut;
    }
}

TEST(StackHostilePeer, EndlessMessagesEndAtTheAnnouncedLimits)
{
    for (const size_t chunkSize : {size_t{0}, size_t{100}, size_t{60'000}}) {
        ClientChannelConfig config;
        config.limits = {65536, 65536, 1'000'000, 50};
        MemoryPipe pipe(config);
        const OpcUa_UInt32 id = bringTo(pipe, State::Open);
        int chunks = 0;
        while (!pipe.clientClosed && ++chunks < 1000) {
            pipe.toClient(RawChunk{MessageType::Message, ChunkType::Intermediate, 1, 1,
                                   pipe.nextServerSequence(), id, pattern(chunkSize)}
                              .bytes());
        }
        EXPECT_EQ(chunks, chunkSize == 60'000 ? 17 : 51);
        EXPECT_EQ(pipe.clientClosed, OpcUa_BadTcpMessageTooLarge);
        EXPECT_EQ(pipe.statusOf(id), OpcUa_BadResponseTooLarge);
    }
}

TEST(StackHostilePeer, AnswersToRequestsThatWereNeverMadeEndTheChannel)
{
    for (const ChunkType type : {ChunkType::Intermediate, ChunkType::Final, ChunkType::Abort}) {
        for (const OpcUa_UInt32 distance : {1u, 1000u, 0xF0000000u}) {
            MemoryPipe pipe;
            const OpcUa_UInt32 id = bringTo(pipe, State::Open);
            pipe.toClient(RawChunk{MessageType::Message, type, 1, 1, pipe.nextServerSequence(), id + distance,
                                   pattern(100)}
                              .bytes());
            EXPECT_EQ(pipe.clientClosed, OpcUa_BadSecurityChecksFailed) << distance;
            EXPECT_EQ(pipe.statusOf(id), OpcUa_BadSecurityChecksFailed);
        }
    }
}

// A client with calls that have timed out, the first of them in the middle of its answer; its limits are
// 1,000,000 bytes and 50 chunks.
struct GivenUpCalls
{
    explicit GivenUpCalls(size_t count)
    {
        ids.push_back(bringTo(pipe, State::Open));
        while (ids.size() < count)
            ids.push_back(pipe.request({1}));
        pipe.client.output().clear();
        answer(ids.front(), ChunkType::Intermediate, 60'000);
        pipe.pass(Milliseconds{1000});
        EXPECT_EQ(pipe.statusOf(ids.back()), OpcUa_BadTimeout);
        EXPECT_EQ(EngineProbe::bufferedBytes(pipe.client), 0u);
    }
    void answer(OpcUa_UInt32 id, ChunkType type, size_t size)
    {
        pipe.toClient(
            RawChunk{MessageType::Message, type, 1, 1, pipe.nextServerSequence(), id, pattern(size)}.bytes());
    }
    static ClientChannelConfig smallLimits()
    {
        ClientChannelConfig config;
        config.limits = {65536, 65536, 1'000'000, 50};
        return config;
    }
    MemoryPipe pipe{smallLimits()};
    std::vector<OpcUa_UInt32> ids;
};

TEST(StackHostilePeer, EndlessAnswersToGivenUpCallsEndAtTheAnnouncedLimits)
{
    for (const size_t chunkSize : {size_t{0}, size_t{60'000}}) {
        GivenUpCalls calls(1);
        int chunks = 1;
        while (!calls.pipe.clientClosed && ++chunks < 1000)
            calls.answer(calls.ids.front(), ChunkType::Intermediate, chunkSize);
        EXPECT_EQ(chunks, chunkSize == 60'000 ? 17 : 51) << "what came before the call ended counts too";
        EXPECT_EQ(calls.pipe.clientClosed, OpcUa_BadTcpMessageTooLarge);
    }
    GivenUpCalls calls(100);
    size_t bytes = 0;
    for (size_t n = 0; n < 1000 && !calls.pipe.clientClosed; ++n) {
        calls.answer(calls.ids[n % calls.ids.size()], ChunkType::Intermediate, 60'000);
        bytes += 60'000;
    }
    EXPECT_LE(bytes, 4'100'000u) << "many unfinished answers together";
    EXPECT_EQ(calls.pipe.clientClosed, OpcUa_BadTcpMessageTooLarge);
}

TEST(StackHostilePeer, EveryGivenUpCallMayStillBeAnsweredOnce)
{
    GivenUpCalls calls(100);
    for (const OpcUa_UInt32 id : calls.ids) {
        calls.answer(id, ChunkType::Intermediate, 60'000);
        calls.answer(id, ChunkType::Final, 60'000);
    }
    EXPECT_EQ(calls.pipe.client.state(), State::Open);
    EXPECT_EQ(EngineProbe::bufferedBytes(calls.pipe.client), 0u);
    calls.answer(calls.ids.front(), ChunkType::Final, 60'000);
    EXPECT_EQ(calls.pipe.clientClosed, OpcUa_BadSecurityChecksFailed) << "more answers than calls";
}

TEST(StackHostilePeer, AbortThatSaysNothingEndsItsCallAllTheSame)
{
    for (const Bytes& body : {Bytes{}, Bytes{0, 0}, Bytes(8, 0)}) {
        MemoryPipe pipe;
        const OpcUa_UInt32 id = bringTo(pipe, State::Open);
        pipe.toClient(
            RawChunk{MessageType::Message, ChunkType::Abort, 1, 1, pipe.nextServerSequence(), id, body}
                .bytes());
        EXPECT_EQ(pipe.statusOf(id), OpcUa_BadDecodingError);
        EXPECT_EQ(pipe.client.state(), State::Open);
    }
}

TEST(StackHostilePeer, ServerRoleRefusesWhatIsOutOfOrder)
{
    const auto outcomeOf = [](const std::function<void(MemoryPipe&)>& action) {
        MemoryPipe pipe;
        action(pipe);
        return pipe.serverClosed;
    };
    Bytes hello;
    writeHello(hello, {0, {}, "opc.tcp://x"});
    EXPECT_EQ(outcomeOf([&](MemoryPipe& pipe) { pipe.toServer(frameOf("OPNF", 8)); }),
              OpcUa_BadTcpMessageTypeInvalid);
    EXPECT_EQ(outcomeOf([&](MemoryPipe& pipe) {
                  pipe.toServer(hello);
                  pipe.toServer(hello);
              }),
              OpcUa_BadTcpMessageTypeInvalid);
    EXPECT_EQ(outcomeOf([&](MemoryPipe& pipe) {
                  pipe.open();
                  pipe.toServer(RawChunk{.channelId = 9, .body = {}}.bytes());
              }),
              OpcUa_BadSecurityChecksFailed);
    EXPECT_EQ(outcomeOf([&](MemoryPipe& pipe) {
                  pipe.open();
                  Bytes body;
                  Bytes out;
                  ASSERT_EQ(encodeOpenRequest({}, body), OpcUa_Good);
                  ASSERT_EQ(EngineProbe::conversation(pipe.client).writeOpen(out, 77, body), OpcUa_Good);
                  pipe.toServer(out); // asks for a first token again
              }),
              OpcUa_BadRequestTypeInvalid);
}

} // namespace
} // namespace opcua::test
