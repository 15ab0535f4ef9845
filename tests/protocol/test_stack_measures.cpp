// What a measured call tells of its way, over both transports.
#include <stack/core/callmeasure.h>
#include <tests/protocol/httpsfixture.h>
#include <tests/protocol/memorypipe.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

using Stamps = std::array<OpcUa_UInt64, 4>;

Stamps stampsOf(const OpcUa_CallMeasure& measure)
{
    return {measure.Encoded, measure.Sent, measure.FirstByte, measure.Decoded};
}

// That a call went all the way since begin, one step after the other.
void expectWhole(const OpcUa_CallMeasure& measure, OpcUa_UInt64 begin)
{
    const Stamps stamps = stampsOf(measure);
    EXPECT_TRUE(std::is_sorted(stamps.begin(), stamps.end())) << testing::PrintToString(stamps);
    EXPECT_GE(measure.Encoded, begin);
    EXPECT_LE(measure.Decoded, stampOfNow());
}

// So many steps were reached, and no more.
void expectReached(const OpcUa_CallMeasure& measure, int steps)
{
    const Stamps stamps = stampsOf(measure);
    EXPECT_EQ(std::count(stamps.begin(), stamps.end(), 0u), 4 - steps) << testing::PrintToString(stamps);
    EXPECT_TRUE(steps == 0 || stamps[static_cast<size_t>(steps) - 1] != 0);
}

// A call with a text of so many bytes in it.
OpcUa_StatusCode callWithText(OpcUa_Channel channel, size_t size)
{
    const std::string text(size, 'x');
    OpcUa_FindServersRequest request;
    OpcUa_FindServersRequest_Initialize(&request);
    request.RequestHeader.TimeoutHint = 20'000;
    EXPECT_EQ(OpcUa_String_Assign(&request.RequestHeader.AuditEntryId, text.data(),
                                  static_cast<OpcUa_Int32>(text.size())),
              OpcUa_Good);
    OpcUa_FindServersResponse response;
    const OpcUa_StatusCode status = OpcUa_ClientApi_FindServers(channel, &request, &response);
    OpcUa_FindServersResponse_Clear(&response);
    OpcUa_FindServersRequest_Clear(&request);
    return status;
}

// A good answer with a text of so many bytes in it.
Bytes answerWithText(size_t size)
{
    const std::string text(size, 'y');
    OpcUa_FindServersResponse response;
    OpcUa_FindServersResponse_Initialize(&response);
    OpcUa_String strings;
    OpcUa_String_Initialize(&strings);
    EXPECT_EQ(OpcUa_String_Assign(&strings, text.data(), static_cast<OpcUa_Int32>(text.size())), OpcUa_Good);
    response.ResponseHeader.NoOfStringTable = 1;
    response.ResponseHeader.StringTable = &strings;
    Bytes bytes = encoded(OpcUa_FindServersResponse_EncodeableType, response);
    OpcUa_String_Clear(&strings);
    return bytes;
}

// What went over the wire after the channel was open.
struct Traffic
{
    Bytes received;
    size_t sent = 0;
};

// All chunks of requests; whatever else is in the stream does not count.
size_t sizeOfMessages(MutableByteView stream)
{
    size_t size = 0;
    Frame frame;
    FrameReader reader(defaultBufferSize);
    while (reader.next(stream, frame) == FrameReader::Outcome::Frame)
        size += frame.type == MessageType::Message ? frame.bytes.size() : 0;
    return size;
}

class StackMeasures : public StackTransport
{
protected:
    OpcUa_CallMeasure m_measure{};
};

TEST_F(StackMeasures, TellTheWayOfACallAndItsBytesHoweverManyChunks)
{
    for (const size_t size : {size_t{0}, size_t{200'000}}) {
        Traffic traffic;
        LoopbackPeer peer([&](PeerSocket& socket) {
            PeerServer server([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
                const size_t before = channel.output().size();
                channel.respond(id, answerWithText(size));
                traffic.sent = channel.output().size() - before;
            });
            server.serve(socket, 2); // hello and open
            server.record(traffic.received);
            server.serve(socket);
        });
        const OpcUa_UInt64 begin = stampOfNow();
        {
            Channel channel;
            ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
            OpcUa_Channel_MeasureNextCall(&m_measure);
            EXPECT_EQ(callWithText(channel.handle(), size), OpcUa_Good);
            expectWhole(m_measure, begin);
        }
        peer.waitUntilIdle();
        EXPECT_EQ(m_measure.BytesIn, traffic.sent);
        EXPECT_EQ(m_measure.BytesOut, sizeOfMessages(traffic.received));
        EXPECT_GT(m_measure.BytesOut, size);
    }
}

TEST_F(StackMeasures, ConcernTheNextCallOfTheirThreadOnly)
{
    LoopbackPeer peer(serving(answerAtOnce));
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    std::thread([&] { EXPECT_EQ(channel.call(), OpcUa_Good); }).join();
    expectReached(m_measure, 0);
    EXPECT_EQ(channel.call(), OpcUa_Good);
    expectReached(m_measure, 4);
    const Stamps first = stampsOf(m_measure);
    EXPECT_EQ(channel.call(), OpcUa_Good);
    EXPECT_EQ(stampsOf(m_measure), first);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    expectReached(m_measure, 0); // forgets the call before
    OpcUa_Channel_MeasureNextCall(nullptr);
    EXPECT_EQ(channel.call(), OpcUa_Good);
    expectReached(m_measure, 0);
}

TEST_F(StackMeasures, TellHowFarACallCameThatFailed)
{
    Mailbox<int> answered;
    LoopbackPeer peer(serving([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
        answered.put(1);
        switch (answered.values().size()) {
        case 1:
            return; // never
        case 2:
            channel.respond(id, findServersResponse(OpcUa_BadServerTooBusy));
            return;
        default:
            channel.respond(id, Bytes(5));
        }
    }));
    Channel channel;
    OpcUa_Channel_MeasureNextCall(&m_measure);
    EXPECT_EQ(channel.call(), OpcUa_BadInvalidState);
    expectReached(m_measure, 1);
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    EXPECT_EQ(channel.call(100), OpcUa_BadTimeout);
    expectReached(m_measure, 2);
    EXPECT_EQ(m_measure.BytesIn, 0u);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    EXPECT_EQ(channel.call(), OpcUa_BadServerTooBusy);
    expectReached(m_measure, 4);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    EXPECT_EQ(channel.call(), OpcUa_BadUnknownResponse);
    expectReached(m_measure, 3);
    OpcUa_Channel_MeasureNextCall(&m_measure);
    EXPECT_EQ(OpcUa_Channel_InvokeService(nullptr, nullptr, nullptr, nullptr, nullptr),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(channel.call(), OpcUa_BadUnknownResponse);
    expectReached(m_measure, 0); // that was the next call, and it did not even begin
}

// With so many calls open, requests are kept back, and leave together.
TEST_F(StackMeasures, OfCallsThatDoNotWaitAreWholeInTheirCallbacks)
{
    constexpr size_t calls = 200;
    LoopbackPeer peer(serving(answerAtOnce));
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    const OpcUa_UInt64 begin = stampOfNow();
    std::vector<OpcUa_CallMeasure> measures(calls);
    Mailbox<size_t> completed;
    std::vector<Channel::Completed> completions;
    for (size_t n = 0; n < calls; ++n)
        completions.emplace_back([&, n](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_Good);
            expectWhole(measures[n], begin);
            completed.put(n);
        });
    for (size_t n = 0; n < calls; ++n) {
        OpcUa_Channel_MeasureNextCall(&measures[n]);
        ASSERT_EQ(channel.begin(completions[n]), OpcUa_Good);
    }
    ASSERT_TRUE(completed.waitForCount(calls));
}

TEST_F(StackMeasures, ARequestThatTheSocketDidNotTakeIsNotSent)
{
    LoopbackPeer peer([](PeerSocket& socket) {
        PeerServer server(answerNever);
        server.serve(socket, 2); // hello and open
        socket.stayDeaf();
    });
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    OpcUa_WriteRequest request;
    OpcUa_WriteRequest_Initialize(&request);
    const std::string text(200'000, 'x');
    EXPECT_EQ(OpcUa_String_Assign(&request.RequestHeader.AuditEntryId, text.data(), 200'000), OpcUa_Good);
    request.RequestHeader.TimeoutHint = 600'000;
    const auto begin = [&](OpcUa_CallMeasure& measure) {
        OpcUa_Channel_MeasureNextCall(&measure);
        return OpcUa_ClientApi_BeginWrite(
            channel.handle(), &request,
            [](OpcUa_Channel, void*, const OpcUa_EncodeableType*, void*, OpcUa_StatusCode) {}, nullptr);
    };
    std::deque<OpcUa_CallMeasure> measures(1);
    while (OpcUa_IsGood(begin(measures.back())))
        measures.emplace_back();
    measures.emplace_back();
    OpcUa_Channel_MeasureNextCall(&measures.back());
    EXPECT_EQ(channel.call(50), OpcUa_BadTimeout);
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    OpcUa_WriteRequest_Clear(&request);
    ASSERT_GT(measures.size(), 3u);
    expectReached(measures[0], 2);
    expectReached(measures[measures.size() - 3], 1); // accepted last
    EXPECT_GT(measures[measures.size() - 3].BytesOut, text.size());
    for (size_t refused = measures.size() - 2; refused < measures.size(); ++refused) {
        expectReached(measures[refused], 1);
        EXPECT_EQ(measures[refused].BytesOut, 0u);
    }
}

// ---- engines, at times of the test's choice

TEST(StackMeasuresOfEngines, TheFirstByteOfAnAnswerIsThatOfItsFirstChunk)
{
    MemoryPipe pipe;
    pipe.open();
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    OpcUa_CallMeasure measure{};
    OpcUa_CallMeasure other{};
    const OpcUa_UInt32 id = pipe.request({1}, 60s);
    pipe.client.measure(id, measure);
    const OpcUa_UInt32 otherId = pipe.request({2}, 60s);
    pipe.client.measure(otherId, other);
    pipe.run();
    pipe.server.respond(otherId, pattern(10));
    pipe.server.respond(id, pattern(150'000));
    Bytes stream = std::exchange(pipe.server.output(), {});
    const size_t all = stream.size();
    const auto take = [&](size_t count) {
        const auto end = stream.begin() + static_cast<std::ptrdiff_t>(count);
        pipe.toClient(Bytes(stream.begin(), end));
        stream.erase(stream.begin(), end);
        return stampOf(std::exchange(pipe.now, pipe.now + 1s));
    };
    const OpcUa_UInt64 first = take(3); // of the other answer
    const OpcUa_UInt64 second = take(100);
    EXPECT_EQ(other.FirstByte, first);
    EXPECT_EQ(measure.FirstByte, 0u) << "nothing is known of a chunk before it is whole";
    take(stream.size() - 5);
    EXPECT_EQ(measure.FirstByte, second) << "behind the other answer";
    take(5);
    EXPECT_EQ(measure.FirstByte, second);
    EXPECT_EQ(pipe.statusOf(id), OpcUa_StatusCode{OpcUa_Good});
    EXPECT_EQ(measure.BytesIn + other.BytesIn, all);
    EXPECT_EQ(other.BytesIn, 34u);
}

// ---- HTTPS

TEST_F(StackMeasures, CountHttpMessages)
{
    size_t requestSize = 0;
    const std::string answer = chunkedAnswer(findServersResponse(), 7);
    const HttpsPeer peer([&](TlsPeerSocket& socket, int) {
        HttpRequest request;
        while (socket.read(request)) {
            requestSize = request.head.size() + 2 + request.body.size();
            socket.write("HTTP/1.1 100 Continue\r\n\r\n");
            socket.write(answer);
        }
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    for (int round = 0; round < 2; ++round) {
        const OpcUa_UInt64 begin = stampOfNow();
        OpcUa_Channel_MeasureNextCall(&m_measure);
        ASSERT_EQ(channel.call(), OpcUa_Good);
        expectWhole(m_measure, begin);
        EXPECT_EQ(m_measure.BytesOut, requestSize);
        EXPECT_EQ(m_measure.BytesIn, answer.size() + 25);
    }
}

TEST_F(StackMeasures, OverHttpsKnowWhatWasAnswered)
{
    std::atomic<int> requests = 0;
    const HttpsPeer peer([&](TlsPeerSocket& socket, int) {
        HttpRequest request;
        while (socket.read(request))
            if (++requests <= 50)
                socket.write(goodAnswer());
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    const OpcUa_UInt64 begin = stampOfNow();
    std::vector<OpcUa_CallMeasure> measures(51);
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed completion = [&](OpcUa_StatusCode status) { completed.put(status); };
    for (OpcUa_CallMeasure& measure : measures) {
        OpcUa_Channel_MeasureNextCall(&measure);
        ASSERT_EQ(channel.begin(completion), OpcUa_Good);
    }
    ASSERT_TRUE(completed.waitForCount(50));
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    for (size_t n = 0; n < 50; ++n)
        expectWhole(measures[n], begin);
    expectReached(measures.back(), 2);
    EXPECT_EQ(measures.back().BytesOut, measures.front().BytesOut);
}

} // namespace
} // namespace opcua::test
