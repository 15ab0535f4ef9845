// The HTTP engine without sockets: what counts as an answer, within which limits, and to which request.
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/core/httppipeline.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace opcua {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

constexpr size_t maxBody = 100'000;
const TimePoint start{1000s};

ByteView viewOf(const std::string& text)
{
    return {reinterpret_cast<const OpcUa_Byte*>(text.data()), text.size()};
}

std::string answer(const std::string& body, const std::string& fields = {})
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + fields + "\r\n" +
           body;
}

// What came of each request, as text: "1:body" or "1!80050000".
class Pipeline final : private HttpPipelineListener
{
public:
    OpcUa_UInt32 send(TimePoint deadline = start + 10s, const Bytes& body = {'r'})
    {
        return engine.send(body, deadline, start);
    }
    // In portions of so many bytes.
    void receive(const std::string& text, size_t portion = ~size_t{0})
    {
        for (size_t at = 0; at < text.size(); at += std::min(portion, text.size()))
            engine.receive(viewOf(text.substr(at, portion)), start);
    }
    static std::string failed(int id, OpcUa_StatusCode status)
    {
        char text[32];
        std::snprintf(text, sizeof text, "%d!%08x", id, status);
        return text;
    }

    std::vector<std::string> told;
    HttpPipeline engine{httpRequestHead("host:1", "/x", ""), maxBody, *this};

private:
    void onResponse(OpcUa_UInt32 id, Bytes&& body) override
    {
        told.push_back(std::to_string(id) + ':' + std::string(body.begin(), body.end()));
    }
    void onRequestFailed(OpcUa_UInt32 id, OpcUa_StatusCode status, const std::string&) override
    {
        told.push_back(failed(static_cast<int>(id), status));
    }
};

TEST(HttpAnswers, AreTheSameHoweverTheStreamIsCut)
{
    const std::string chunked = "HTTP/1.1 200 Fine\r\ntransfer-encoding: Chunked\r\nCONTENT-TYPE: "
                                "application/octet-stream; v=1\r\n\r\n3;x=\"y\"\r\nabc\r\n1\r\nd\r\n"
                                "0\r\nTrailer: t\r\n\r\n";
    const std::string stream = answer("one") + "HTTP/1.1 100 Continue\r\n\r\n" + chunked + answer("") +
                               answer("last", "Content-Type: application/opcua+uabinary\r\n");
    for (size_t portion = 1; portion < stream.size() + 1; ++portion) {
        Pipeline pipeline;
        for (int n = 0; n < 4; ++n)
            static_cast<void>(pipeline.send());
        pipeline.receive(stream, portion);
        ASSERT_THAT(pipeline.told, ElementsAre("1:one", "2:abcd", "3:", "4:last")) << portion;
        EXPECT_EQ(pipeline.engine.state(), HttpPipeline::State::Open);
    }
}

TEST(HttpAnswers, FaultsOfOneAnswerLeaveTheNextAlone)
{
    const std::string html = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 6\r\n\r\n<html>";
    const std::string packed = answer("zip", "Content-Encoding: gzip\r\n");
    const std::string error = "HTTP/1.1 500 Oh dear\r\nContent-Length: 3\r\n\r\nabc";
    const std::string moved =
        "HTTP/1.1 302 Found\r\nLocation: https://elsewhere/\r\nContent-Length: 0\r\n\r\n";
    const std::string none = "HTTP/1.1 204 No Content\r\n\r\n";
    Pipeline pipeline;
    for (int n = 0; n < 6; ++n)
        static_cast<void>(pipeline.send());
    pipeline.receive(html + packed + error + moved + none + answer("ok"));
    EXPECT_THAT(pipeline.told, ElementsAre(Pipeline::failed(1, OpcUa_BadUnknownResponse),
                                           Pipeline::failed(2, OpcUa_BadUnknownResponse),
                                           Pipeline::failed(3, OpcUa_BadCommunicationError),
                                           Pipeline::failed(4, OpcUa_BadCommunicationError),
                                           Pipeline::failed(5, OpcUa_BadCommunicationError), "6:ok"));
}

TEST(HttpAnswers, WhatCannotBeReadEndsTheConnectionAndNothingGrows)
{
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    std::string manyHeaders = ok;
    for (int n = 0; n < 12'000; ++n)
        manyHeaders += "A: b\r\n";
    std::string manyInterim;
    for (int n = 0; n < 9000; ++n)
        manyInterim += "HTTP/1.1 102 Processing\r\n\r\n";
    std::string chunks = ok + "Transfer-Encoding: chunked\r\n\r\n";
    for (size_t n = 0; n < maxBody + 1; ++n)
        chunks += "1\r\nx\r\n";
    struct Case
    {
        const char* name;
        std::string stream;
        OpcUa_StatusCode status;
    };
    const std::vector<Case> cases{
        {"endless header", ok + "A: " + std::string(70'000, 'x'), OpcUa_BadResponseTooLarge},
        {"endless name", ok + std::string(70'000, 'x'), OpcUa_BadResponseTooLarge},
        {"endless reason", "HTTP/1.1 200 " + std::string(70'000, 'x'), OpcUa_BadResponseTooLarge},
        {"many headers", manyHeaders, OpcUa_BadResponseTooLarge},
        {"many interim answers", manyInterim, OpcUa_BadResponseTooLarge},
        {"length above the limit", ok + "Content-Length: 100001\r\n\r\n", OpcUa_BadResponseTooLarge},
        {"length beyond 64 bits", ok + "Content-Length: 18446744073709551617\r\n\r\n",
         OpcUa_BadDecodingError},
        {"negative length", ok + "Content-Length: -1\r\n\r\n", OpcUa_BadDecodingError},
        {"two lengths", ok + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", OpcUa_BadDecodingError},
        {"length and chunks", ok + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n",
         OpcUa_BadDecodingError},
        {"neither", ok + "\r\nbody", OpcUa_BadDecodingError},
        {"chunk bomb", chunks, OpcUa_BadResponseTooLarge},
        {"huge chunk",
         ok + "Transfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFF\r\n" + std::string(maxBody + 1, 'x'),
         OpcUa_BadResponseTooLarge},
        {"chunk beyond 64 bits", ok + "Transfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFFF\r\n",
         OpcUa_BadDecodingError},
        {"no chunk size", ok + "Transfer-Encoding: chunked\r\n\r\nxyz\r\n", OpcUa_BadDecodingError},
        {"other protocol", ok.substr(0, 9) + "101 Switching\r\nUpgrade: h2\r\nConnection: upgrade\r\n\r\n",
         OpcUa_BadDecodingError},
        {"no HTTP", "ACKF\x1c", OpcUa_BadDecodingError},
        {"a request", "POST / HTTP/1.1\r\n\r\n", OpcUa_BadDecodingError},
    };
    for (const Case& c : cases) {
        Pipeline pipeline;
        static_cast<void>(pipeline.send());
        static_cast<void>(pipeline.send());
        pipeline.receive(c.stream, 4096);
        EXPECT_THAT(pipeline.told, ElementsAre(Pipeline::failed(1, c.status),
                                               Pipeline::failed(2, OpcUa_BadConnectionClosed)))
            << c.name;
        EXPECT_EQ(pipeline.engine.state(), HttpPipeline::State::Broken) << c.name;
    }
}

TEST(HttpAnswers, CountForThemselvesAloneHoweverManyOneConnectionCarries)
{
    const std::string body(maxBody - 1, 'x');
    const std::string field = "Server: " + std::string(1000, 's') + "\r\n";
    const std::string chunked = "HTTP/1.1 200 OK\r\n" + field +
                                "Transfer-Encoding: chunked\r\n\r\n1869f\r\n" + body + "\r\n0\r\n\r\n";
    Pipeline pipeline;
    for (int n = 1; n <= 100; ++n) {
        static_cast<void>(pipeline.send());
        pipeline.receive(n % 2 == 0 ? chunked : answer(body, field));
        ASSERT_EQ(pipeline.told.back(), std::to_string(n) + ':' + body);
        pipeline.told.clear();
    }
    EXPECT_EQ(pipeline.engine.state(), HttpPipeline::State::Open);
}

TEST(HttpPipelines, WriteRequestsThatAServerUnderstands)
{
    Pipeline pipeline;
    static_cast<void>(pipeline.send(start + 1s, {'a', 'b'}));
    static_cast<void>(pipeline.send(start + 1s, {}));
    const Bytes& output = pipeline.engine.output();
    const std::string head = "POST /x HTTP/1.1\r\nHost: host:1\r\nContent-Type: application/octet-stream\r\n"
                             "Accept: application/octet-stream\r\nAccept-Encoding: identity\r\n"
                             "Content-Length: ";
    EXPECT_EQ(std::string(output.begin(), output.end()), head + "2\r\n\r\nab" + head + "0\r\n\r\n");
    EXPECT_NE(httpRequestHead("h", "/a b\xc3\xa9#part", "urn:policy").find("POST /a%20b%C3%A9 HTTP/1.1\r\n"),
              std::string::npos);
    EXPECT_EQ(httpRequestHead("h", "?a=b", "").find("POST /?a=b HTTP/1.1\r\n"), 0u);
    EXPECT_NE(httpRequestHead("h", "", "urn:policy").find("\r\nOPCUA-SecurityPolicy: urn:policy\r\n"),
              std::string::npos);
}

TEST(HttpPipelines, KeepAnswersApartFromRequestsThatTimedOut)
{
    Pipeline pipeline;
    static_cast<void>(pipeline.send(start + 2s));
    static_cast<void>(pipeline.send(start + 9s));
    EXPECT_EQ(pipeline.engine.nextDeadline(), start + 2s);
    pipeline.engine.advance(start + 2s);
    EXPECT_THAT(pipeline.told, ElementsAre(Pipeline::failed(1, OpcUa_BadTimeout)));
    pipeline.receive(answer("late") + answer("second"));
    EXPECT_THAT(pipeline.told, ElementsAre(Pipeline::failed(1, OpcUa_BadTimeout), "2:second"));

    // when nobody waits any more, the connection is given up with what it owes
    static_cast<void>(pipeline.send(start + 3s));
    pipeline.engine.advance(start + 4s);
    EXPECT_EQ(pipeline.told.back(), Pipeline::failed(3, OpcUa_BadTimeout));
    EXPECT_EQ(pipeline.engine.state(), HttpPipeline::State::Finished);
    pipeline.receive(answer("too late"));
    EXPECT_EQ(pipeline.told.size(), 3u);
}

TEST(HttpPipelines, EndWhenThePeerSaysSo)
{
    Pipeline closing;
    static_cast<void>(closing.send());
    static_cast<void>(closing.send());
    closing.receive(answer("x", "Connection: close\r\n") + answer("not read"));
    EXPECT_THAT(closing.told, ElementsAre("1:x", Pipeline::failed(2, OpcUa_BadConnectionClosed)));
    EXPECT_EQ(closing.engine.state(), HttpPipeline::State::Finished);

    Pipeline unasked;
    unasked.receive("HTTP/1.1 408 Too slow\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(unasked.engine.state(), HttpPipeline::State::Finished);

    Pipeline idle;
    EXPECT_EQ(idle.engine.closeIdleAt(), never);
    static_cast<void>(idle.send());
    idle.receive(answer("x", "Keep-Alive: timeout=8, max=5\r\n"));
    EXPECT_EQ(idle.engine.closeIdleAt(), start + 6s);

    // a server that takes so many requests only would close behind the last of them, whatever follows
    for (int n = 0; n < 4; ++n)
        static_cast<void>(idle.send());
    EXPECT_FALSE(idle.engine.load(start).full);
    static_cast<void>(idle.send());
    EXPECT_TRUE(idle.engine.load(start).full);
    Pipeline changed; // the latest answer counts, with and without a word about it
    for (int n = 0; n < 5; ++n)
        static_cast<void>(changed.send());
    changed.receive(answer("", "Keep-Alive: timeout=8, max=2\r\n"));
    EXPECT_TRUE(changed.engine.load(start).full);
    changed.receive(answer(""));
    EXPECT_FALSE(changed.engine.load(start).full);
    EXPECT_EQ(changed.engine.closeIdleAt(), never);
    const std::string left = "Keep-Alive: max=";
    idle.receive(answer("", left + "4\r\n") + answer("", left + "3\r\n") + answer("", left + "2\r\n") +
                 answer("", left + "1\r\n"));
    EXPECT_EQ(idle.engine.state(), HttpPipeline::State::Open);
    idle.receive(answer("", left + "0\r\n"));
    EXPECT_EQ(idle.engine.state(), HttpPipeline::State::Finished);
}

TEST(HttpPipelines, TellAPublishFromARead)
{
    const auto request = [](OpcUa_UInt32 id) {
        return Bytes{1, 0, static_cast<OpcUa_Byte>(id), static_cast<OpcUa_Byte>(id >> 8)};
    };
    EXPECT_EQ(paceOf(request(OpcUaId_PublishRequest_Encoding_DefaultBinary)), HttpPace::LongPoll);
    EXPECT_EQ(paceOf(request(OpcUaId_CallRequest_Encoding_DefaultBinary)), HttpPace::Slow);
    EXPECT_EQ(paceOf(request(OpcUaId_ReadRequest_Encoding_DefaultBinary)), HttpPace::Quick);
    EXPECT_EQ(paceOf(Bytes{1, 0, 0x3A}), HttpPace::Quick);

    Pipeline pipeline;
    static_cast<void>(pipeline.send(start + 10s, request(OpcUaId_ReadRequest_Encoding_DefaultBinary)));
    EXPECT_EQ(pipeline.engine.load(start + 500ms).slowest, HttpPace::Quick);
    EXPECT_FALSE(pipeline.engine.load(start + 500ms).stalled);
    static_cast<void>(pipeline.send(start + 10s, request(OpcUaId_PublishRequest_Encoding_DefaultBinary)));
    EXPECT_EQ(pipeline.engine.load(start).slowest, HttpPace::LongPoll);
    EXPECT_TRUE(pipeline.engine.load(start + 2s).stalled);
    pipeline.receive(answer("") + answer(""));
    EXPECT_EQ(pipeline.engine.load(start + 2s).outstanding, 0u);
    EXPECT_FALSE(pipeline.engine.load(start + 2s).stalled);
    EXPECT_EQ(pipeline.engine.load(start + 2s).slowest, HttpPace::Quick) << "what was answered is over";
}

TEST(HttpPipelines, ThatAnswerOneRequestAfterTheOtherAreNotStalled)
{
    Pipeline pipeline;
    static_cast<void>(pipeline.send());
    static_cast<void>(pipeline.send());
    const std::string first = answer("");
    pipeline.engine.receive(viewOf(first), start + 900ms);
    EXPECT_FALSE(pipeline.engine.load(start + 1800ms).stalled);
    EXPECT_TRUE(pipeline.engine.load(start + 2s).stalled);
}

TEST(HttpLanes, NoQuickRequestWaitsBehindASlowOne)
{
    using enum HttpPace;
    const HttpLaneLoad idle;
    const HttpLaneLoad reading{5, Quick, false};
    const HttpLaneLoad stuck{5, Quick, true};
    const HttpLaneLoad calling{1, Slow, false};
    const HttpLaneLoad publishing{3, LongPoll, true};
    const HttpLaneLoad full{2, Quick, false, true};
    struct Case
    {
        std::vector<HttpLaneLoad> lanes;
        HttpPace pace;
        std::optional<size_t> lane;
    };
    const std::optional<size_t> fresh;
    const std::vector<Case> cases{
        {{}, Quick, fresh},
        {{idle}, LongPoll, 0},
        {{reading}, Quick, 0},
        {{publishing, idle, reading}, Quick, 2},
        {{publishing, idle}, Quick, 1},
        {{publishing}, Quick, fresh},
        {{idle, publishing}, LongPoll, 1},
        {{reading}, LongPoll, fresh},
        {{stuck, calling}, Quick, fresh},
        {{full, {0, Quick, false, true}, reading}, Quick, 2},
        {{reading, calling}, Slow, fresh},
        {{reading, calling, idle}, Slow, 2},
        // no place is left: behind what is likeliest to move
        {{publishing, stuck, calling, stuck, {2, Slow, false}, stuck}, Quick, 2},
        {{publishing, publishing, stuck, stuck, stuck, {9, Quick, true}}, Slow, 2},
    };
    for (size_t n = 0; n < cases.size(); ++n)
        EXPECT_EQ(chooseLane(cases[n].lanes, cases[n].pace), cases[n].lane) << n;
}

} // namespace
} // namespace opcua
