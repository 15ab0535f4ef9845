// The channel functions of the C interface over real sockets, against peers that behave as scripted.
#include <stack/core/transportmessages.h>
#include <stack/server/servermessages.h>
#include <tests/protocol/channelfixture.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

// ---- connecting

Bytes acknowledge(const ChannelLimits& limits = {})
{
    Bytes bytes;
    writeAcknowledge(bytes, {0, limits});
    return bytes;
}

Bytes errorMessage(OpcUa_StatusCode status)
{
    Bytes bytes;
    writeError(bytes, status, "scripted");
    return bytes;
}

TEST_F(StackTransport, EveryWayThatConnectFailsHasItsStatusAndItsTime)
{
    struct Case
    {
        const char* name;
        LoopbackPeer::Script script;
        OpcUa_StatusCode status;
    };
    const auto afterHello = [](Bytes answer, bool stay) {
        return [answer = std::move(answer), stay](PeerSocket& socket) {
            Bytes hello;
            socket.read(hello);
            socket.write(answer);
            if (stay)
                socket.stayUntilClosed();
        };
    };
    const Bytes http{'H', 'T', 'T', 'P', '/', '1', '.', '1', ' ', '4', '0', '0', '\r', '\n'};
    const std::vector<Case> cases{
        {"silent", [](PeerSocket& socket) { socket.stayUntilClosed(); }, OpcUa_BadTimeout},
        {"deaf", [](PeerSocket& socket) { socket.stayDeaf(); }, OpcUa_BadTimeout},
        {"drips", [](PeerSocket& socket) { socket.drip(acknowledge()); }, OpcUa_BadTimeout},
        {"silent after acknowledge", afterHello(acknowledge(), true), OpcUa_BadTimeout},
        {"closes at once", [](PeerSocket&) {}, OpcUa_BadConnectionClosed},
        {"closes after hello", afterHello({}, false), OpcUa_BadConnectionClosed},
        {"closes after acknowledge", afterHello(acknowledge(), false), OpcUa_BadConnectionClosed},
        {"speaks HTTP", afterHello(http, true), OpcUa_BadTcpMessageTypeInvalid},
        {"refuses with a reason", afterHello(errorMessage(OpcUa_BadTcpServerTooBusy), false),
         OpcUa_BadTcpServerTooBusy},
        {"offers tiny buffers", afterHello(acknowledge({100, 100, 0, 0}), true), OpcUa_BadConnectionRejected},
    };
    for (const Case& c : cases) {
        LoopbackPeer peer(c.script);
        Channel channel;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(channel.connect(peer.url(), c.status == OpcUa_BadTimeout ? 200 : 10'000), c.status)
            << c.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << c.name;
        EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
        EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_BadInvalidState) << c.name;
    }
}

TEST_F(StackTransport, NobodyListens)
{
    std::string url;
    {
        const LoopbackPeer gone([](PeerSocket&) {});
        url = gone.url();
    }
    Channel channel;
    EXPECT_EQ(channel.connect(url), OpcUa_BadConnectionRejected);
    EXPECT_TRUE(OpcUa_IsBad(channel.connect("opc.tcp://no-such-host.invalid:4840", 2000)));
}

TEST_F(StackTransport, WhatCannotBeConnectedIsRefusedBeforeTheNetwork)
{
    LoopbackPeer peer(serving(answerAtOnce));
    Channel channel;
    EXPECT_EQ(channel.connect("opc.tcp://"), OpcUa_BadTcpEndpointUrlInvalid);
    EXPECT_EQ(OpcUa_Channel_Connect(channel.handle(), nullptr, nullptr), OpcUa_BadInvalidArgument);
    channel.info.SecurityPolicyUri = "http://example.com/unheard-of";
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityPolicyRejected);
    channel.info.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
    channel.info.SecurityMode = OpcUa_MessageSecurityMode_Sign;
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityModeRejected);
    channel.info.SecurityMode = OpcUa_MessageSecurityMode_None;
    EXPECT_EQ(channel.call(), OpcUa_BadInvalidState);
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good);
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadInvalidState);
}

TEST_F(StackTransport, ConnectCanBeCancelled)
{
    std::promise<void> accepted;
    LoopbackPeer peer([&](PeerSocket& socket) {
        accepted.set_value();
        socket.stayUntilClosed();
    });
    Channel channel;
    auto result = std::async(std::launch::async, [&] { return channel.connect(peer.url(), 60'000); });
    accepted.get_future().wait();
    OpcUa_Channel_CancelConnect(channel.handle());
    ASSERT_EQ(result.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(result.get(), OpcUa_BadRequestCancelledByClient);
}

TEST_F(StackTransport, EndOfTheStackEndsConnectAndCalls)
{
    Mailbox<int> waiting;
    LoopbackPeer silent([&](PeerSocket& socket) {
        waiting.put(1);
        socket.stayUntilClosed();
    });
    LoopbackPeer slow(serving([&](ServerChannel&, OpcUa_UInt32, const Bytes&) { waiting.put(1); }));
    Channel connecting;
    Channel calling;
    auto connected = std::async(std::launch::async, [&] { return connecting.connect(silent.url(), 60'000); });
    ASSERT_EQ(calling.connect(slow.url()), OpcUa_Good);
    auto called = std::async(std::launch::async, [&] { return calling.call(60'000); });
    ASSERT_TRUE(waiting.waitForCount(2));
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(connected.get(), OpcUa_BadRequestCancelledByClient);
    EXPECT_EQ(called.get(), OpcUa_BadConnectionClosed);
    EXPECT_EQ(connecting.connect(slow.url()), OpcUa_BadInvalidState);
}

// ---- calls

TEST_F(StackTransport, AnswersThatAreNoneEndTheirCallOnly)
{
    OpcUa_ServiceFault fault;
    OpcUa_ServiceFault_Initialize(&fault);
    const Bytes faultWithGood = encoded(OpcUa_ServiceFault_EncodeableType, fault);
    fault.ResponseHeader.ServiceResult = OpcUa_BadServiceUnsupported;
    const Bytes faultWithBad = encoded(OpcUa_ServiceFault_EncodeableType, fault);
    OpcUa_ReadResponse read;
    OpcUa_ReadResponse_Initialize(&read);
    Bytes cut = findServersResponse();
    cut.pop_back();
    const std::vector<std::pair<Bytes, OpcUa_StatusCode>> answers{
        {faultWithBad, OpcUa_BadServiceUnsupported},
        {faultWithGood, OpcUa_BadUnknownResponse},
        {encoded(OpcUa_ReadResponse_EncodeableType, read), OpcUa_BadUnknownResponse},
        {{1, 0, 0xFF, 0xFF}, OpcUa_BadUnknownResponse}, // a type that nobody knows
        {{}, OpcUa_BadDecodingError},
        {cut, OpcUa_BadDecodingError},
        {findServersResponse(OpcUa_BadUserAccessDenied), OpcUa_BadUserAccessDenied},
        {findServersResponse(), OpcUa_Good},
    };
    size_t next = 0;
    LoopbackPeer peer(serving([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
        channel.respond(id, answers[next++ / 2].first);
    }));
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed completion = [&](OpcUa_StatusCode result) { completed.put(result); };
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    for (size_t n = 0; n < answers.size(); ++n) {
        EXPECT_EQ(channel.call(), answers[n].second);
        ASSERT_EQ(channel.begin(completion), OpcUa_Good);
        ASSERT_TRUE(completed.waitForCount(n + 1));
        EXPECT_EQ(completed.values().back(), answers[n].second);
    }
}

TEST_F(StackTransport, CallsEndAtTheirTimeAndTheChannelGoesOn)
{
    std::vector<OpcUa_UInt32> unanswered;
    LoopbackPeer peer(serving([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
        unanswered.push_back(id);
        if (unanswered.size() == 2) // the second call brings the late answer to the first along
            for (const OpcUa_UInt32 late : unanswered)
                channel.respond(late, findServersResponse());
    }));
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(channel.call(150), OpcUa_BadTimeout);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, 150ms);
    EXPECT_LT(waited, 5s);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

OpcUa_StatusCode beginPublish(OpcUa_Channel channel, OpcUa_UInt32 hint, Mailbox<OpcUa_StatusCode>& completed)
{
    OpcUa_PublishRequest request;
    OpcUa_PublishRequest_Initialize(&request);
    request.RequestHeader.TimeoutHint = hint;
    return OpcUa_ClientApi_BeginPublish(
        channel, &request,
        [](OpcUa_Channel, void* response, const OpcUa_EncodeableType* type, void* data,
           OpcUa_StatusCode status) {
            if (response != nullptr)
                OpcUa_EncodeableObject_Delete(type, &response);
            static_cast<Mailbox<OpcUa_StatusCode>*>(data)->put(status);
        },
        &completed);
}

// Servers hold a Publish back for as long as its hint allows.
TEST_F(StackTransport, APublishHearsTheAnswerThatComesShortlyAfterItsHint)
{
    constexpr OpcUa_UInt32 hint = 200;
    std::promise<void> overdue;
    const auto hintIsOver = overdue.get_future().share();
    LoopbackPeer peer(serving([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes&) {
        hintIsOver.wait();
        OpcUa_PublishResponse response;
        OpcUa_PublishResponse_Initialize(&response);
        channel.respond(id, encoded(OpcUa_PublishResponse_EncodeableType, response));
    }));
    Mailbox<OpcUa_StatusCode> published;
    Mailbox<OpcUa_StatusCode> others;
    Channel::Completed completed = [&](OpcUa_StatusCode status) { others.put(status); };
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(beginPublish(channel.handle(), hint, published), OpcUa_Good);
    EXPECT_EQ(channel.begin(completed, hint + 100), OpcUa_Good);
    EXPECT_TRUE(others.waitForCount(1)); // and with it the other's hint is over by 100 ms
    EXPECT_EQ(others.values(), std::vector<OpcUa_StatusCode>{OpcUa_BadTimeout});
    overdue.set_value();
    ASSERT_TRUE(published.waitForCount(1));
    EXPECT_EQ(published.values(), std::vector<OpcUa_StatusCode>{OpcUa_Good});
}

TEST_F(StackTransport, LossReachesEveryCallAndTheListener)
{
    LoopbackPeer peer([](PeerSocket& socket) {
        int calls = 0;
        PeerServer([&](ServerChannel& channel, OpcUa_UInt32, const Bytes&) {
            if (++calls == 3)
                channel.fail(OpcUa_BadTcpInternalError);
        }).serve(socket);
    });
    Mailbox<std::pair<OpcUa_Channel_Event, OpcUa_StatusCode>> events;
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed completion = [&](OpcUa_StatusCode result) { completed.put(result); };
    Channel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode status) { events.put({event, status}); });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(channel.begin(completion), OpcUa_Good);
    ASSERT_EQ(channel.begin(completion), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_BadTcpInternalError);
    ASSERT_TRUE(completed.waitForCount(2));
    EXPECT_EQ(completed.values(), (std::vector<OpcUa_StatusCode>(2, OpcUa_BadTcpInternalError)));
    ASSERT_TRUE(events.waitForCount(2));
    EXPECT_EQ(events.values().front().first, OpcUa_Channel_Event_Connected);
    EXPECT_EQ(events.values().back(),
              (std::pair{OpcUa_Channel_Event_Disconnected, OpcUa_StatusCode{OpcUa_BadTcpInternalError}}));
    EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
    EXPECT_EQ(channel.call(), OpcUa_BadConnectionClosed);
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good); // without a disconnect between
}

TEST_F(StackTransport, DisconnectCompletesEveryCallBeforeItReturns)
{
    LoopbackPeer peer(serving(answerNever));
    std::atomic<int> events = 0;
    std::atomic<int> completed = 0;
    Channel::Completed completion = [&](OpcUa_StatusCode status) {
        completed += status == OpcUa_BadConnectionClosed;
    };
    Channel channel;
    channel.listen([&](OpcUa_Channel_Event, OpcUa_StatusCode) { ++events; });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    for (int n = 0; n < 50; ++n)
        ASSERT_EQ(channel.begin(completion), OpcUa_Good);
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    EXPECT_EQ(completed, 50);
    EXPECT_EQ(events, 1); // connected; a wanted end is no event
}

TEST_F(StackTransport, SlowCallbackHoldsUpItsOwnChannelOnly)
{
    LoopbackPeer peer(serving(answerAtOnce));
    std::promise<void> release;
    std::promise<void> inside;
    std::atomic<bool> left = false;
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed completion = [&](OpcUa_StatusCode result) { completed.put(result); };
    Channel::Completed blocking;
    Channel slow;
    Channel other;
    ASSERT_EQ(slow.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(other.connect(peer.url()), OpcUa_Good);
    blocking = [&](OpcUa_StatusCode) {
        EXPECT_EQ(OpcUa_Channel_Disconnect(slow.handle()), OpcUa_BadInvalidState);
        EXPECT_EQ(slow.call(), OpcUa_Good); // other functions work as anywhere
        inside.set_value();
        release.get_future().wait();
        left = true;
    };
    ASSERT_EQ(slow.begin(blocking), OpcUa_Good);
    inside.get_future().wait();
    ASSERT_EQ(other.begin(completion), OpcUa_Good);
    EXPECT_TRUE(completed.waitForCount(1));
    auto disconnected =
        std::async(std::launch::async, [&] { return OpcUa_Channel_Disconnect(slow.handle()); });
    EXPECT_EQ(other.call(), OpcUa_Good);
    EXPECT_EQ(disconnected.wait_for(0s), std::future_status::timeout);
    release.set_value();
    EXPECT_EQ(disconnected.get(), OpcUa_Good);
    EXPECT_TRUE(left);
}

// Requests of which a few fill the buffers of a connection.
class LongRequests
{
public:
    explicit LongRequests(OpcUa_Channel channel, size_t length = 200'000) : m_channel(channel)
    {
        OpcUa_WriteRequest_Initialize(&m_request);
        std::string text(length, 'x');
        for (size_t n = 0; n < length; n += 1000)
            text[n] = static_cast<char>('0' + n / 1000 % 37);
        m_request.RequestHeader.TimeoutHint = 600'000;
        EXPECT_EQ(OpcUa_String_Assign(&m_request.RequestHeader.AuditEntryId, text.data(),
                                      static_cast<OpcUa_Int32>(text.size())),
                  OpcUa_Good);
    }
    ~LongRequests() { OpcUa_WriteRequest_Clear(&m_request); }
    LongRequests(const LongRequests&) = delete;
    LongRequests& operator=(const LongRequests&) = delete;

    OpcUa_StatusCode begin()
    {
        return OpcUa_ClientApi_BeginWrite(
            m_channel, &m_request,
            [](OpcUa_Channel, void*, const OpcUa_EncodeableType*, void* data, OpcUa_StatusCode status) {
                static_cast<Mailbox<OpcUa_StatusCode>*>(data)->put(status);
            },
            &completed);
    }
    [[nodiscard]] Bytes body() const { return encoded(OpcUa_WriteRequest_EncodeableType, m_request); }
    // As many as are accepted; answers how many they were.
    size_t beginAll()
    {
        constexpr size_t tooMany = 1000;
        size_t accepted = 0;
        while (accepted < tooMany && OpcUa_IsGood(begin()))
            ++accepted;
        EXPECT_LT(accepted, tooMany);
        return accepted;
    }

    Mailbox<OpcUa_StatusCode> completed;

private:
    OpcUa_Channel m_channel;
    OpcUa_WriteRequest m_request{};
};

TEST_F(StackTransport, PeerThatStopsReadingHoldsNobodyUp)
{
    LoopbackPeer peer([](PeerSocket& socket) {
        PeerServer server(answerNever);
        server.serve(socket, 2); // hello and open
        socket.stayDeaf();
    });
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    LongRequests requests(channel.handle());
    const size_t accepted = requests.beginAll();
    EXPECT_EQ(requests.begin(), OpcUa_BadResourceUnavailable);
    EXPECT_EQ(channel.call(200), OpcUa_BadTimeout);
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    EXPECT_EQ(requests.completed.values().size(), accepted);
}

TEST_F(StackTransport, LongRequestsArriveWholeInWhateverPiecesTheyAreSent)
{
    std::mutex mutex;
    std::vector<Bytes> received;
    LoopbackPeer peer(serving([&](ServerChannel& server, OpcUa_UInt32 id, const Bytes& body) {
        const std::lock_guard lock(mutex);
        received.push_back(body);
        answerAtOnce(server, id, body);
    }));
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    LongRequests requests(channel.handle(), 14'000'000); // much more than what sockets take at once
    for (size_t n = 1; n <= 3; ++n) {
        ASSERT_EQ(requests.begin(), OpcUa_Good);
        ASSERT_TRUE(requests.completed.waitForCount(n));
        const std::lock_guard lock(mutex);
        ASSERT_EQ(received.size(), n);
        // the header's time and handle differ
        const Bytes expected = requests.body();
        ASSERT_EQ(received.back().size(), expected.size());
        EXPECT_TRUE(std::equal(expected.begin() + 100, expected.end(), received.back().begin() + 100));
    }
}

TEST_F(StackTransport, WhoWaitsForRoomGoesOnAsSoonAsThePeerReadsOn)
{
    std::promise<void> goOn;
    LoopbackPeer peer([read = goOn.get_future().share()](PeerSocket& socket) {
        PeerServer server(answerAtOnce);
        server.serve(socket, 2);
        read.wait_for(patience);
        server.serve(socket);
    });
    Channel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    LongRequests requests(channel.handle());
    const size_t accepted = requests.beginAll();
    std::atomic<int> waiting = 0;
    std::vector<std::future<OpcUa_StatusCode>> calls;
    for (int n = 0; n < 4; ++n) {
        calls.push_back(std::async(
            std::launch::async,
            [&] {
                ++waiting;
                return channel.call(600'000);
            }));
    }
    while (waiting < 4)
        std::this_thread::yield();
    EXPECT_EQ(requests.begin(), OpcUa_BadResourceUnavailable) << "so there is no room for the others either";
    goOn.set_value();
    bool inTime = true;
    for (auto& call : calls)
        inTime = inTime && call.wait_for(patience) == std::future_status::ready;
    EXPECT_TRUE(inTime);
    if (!inTime)
        EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good); // lets them go
    for (auto& call : calls)
        EXPECT_EQ(call.get(), OpcUa_Good);
    EXPECT_TRUE(requests.completed.waitForCount(accepted));
}

TEST_F(StackTransport, ManyThreadsCallWhileTheChannelComesAndGoes)
{
    LoopbackPeer peer(serving(answerAtOnce));
    std::atomic<int> good = 0;
    std::atomic<int> accepted = 0;
    std::atomic<int> completed = 0;
    std::atomic<bool> stop = false;
    Channel::Completed completion = [&](OpcUa_StatusCode) { ++completed; };
    Channel channel;
    std::vector<std::thread> callers;
    for (int n = 0; n < 4; ++n) {
        callers.emplace_back([&] {
            while (!stop) {
                const OpcUa_StatusCode status = channel.call();
                good += OpcUa_IsGood(status);
                if (OpcUa_IsBad(status)) {
                    EXPECT_TRUE(status == OpcUa_BadInvalidState || status == OpcUa_BadConnectionClosed)
                        << status;
                    std::this_thread::yield();
                }
                accepted += OpcUa_IsGood(channel.begin(completion));
            }
        });
    }
    for (int round = 1; round <= 30; ++round) {
        EXPECT_EQ(channel.connect(peer.url()), OpcUa_Good);
        const int before = good;
        while (good < before + 5)
            std::this_thread::yield();
        EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    }
    stop = true;
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(completed, accepted);
}

TEST_F(StackTransport, TokensAreRenewedWhileNobodyCalls)
{
    ServerChannelConfig config;
    config.minLifetime = 1334;
    config.maxLifetime = 1334;
    LoopbackPeer peer(serving(answerAtOnce, config));
    Mailbox<OpcUa_Channel_Event> events;
    Channel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode) { events.put(event); });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_TRUE(events.waitForCount(2));
    EXPECT_EQ(events.values().back(), OpcUa_Channel_Event_Renewed);
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

// ---- trace

class StackTrace : public testing::Test
{
protected:
    using Line = std::pair<OpcUa_UInt32, std::string>;
    void SetUp() override
    {
        OpcUa_Trace_SetHook(
            [](OpcUa_UInt32 level, const char* text, void* context) {
                static_cast<Mailbox<Line>*>(context)->put({level, text});
                OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "from inside the hook");
            },
            &lines);
    }
    void TearDown() override
    {
        OpcUa_Trace_SetHook(nullptr, nullptr);
        EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_NONE), OpcUa_Good);
    }
    bool contains(std::string_view text)
    {
        const auto all = lines.values();
        return std::any_of(all.begin(), all.end(),
                           [&](const Line& line) { return line.second.find(text) != std::string::npos; });
    }

    Mailbox<Line> lines;
};

TEST_F(StackTrace, LinesAreFilteredBoundedAndCannotBeForged)
{
    EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_WARNING), OpcUa_Good);
    OpcUa_Trace(OPCUA_TRACE_LEVEL_INFO, "too fine");
    OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "server says %s", "a\nERROR b\x1b[0m");
    OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "%s", std::string(10'000, '\t').c_str());
    const auto all = lines.values();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0], (Line{OPCUA_TRACE_LEVEL_ERROR, "server says a\\x0aERROR b\\x1b[0m"}));
    EXPECT_LT(all[1].second.size(), 4096u);
    EXPECT_EQ(all[1].second.find('\t'), std::string::npos);
}

TEST_F(StackTrace, ContentShowsBodiesButNoCredentials)
{
    EXPECT_EQ(OpcUa_Trace_ChangeTraceLevel(OPCUA_TRACE_OUTPUT_LEVEL_CONTENT), OpcUa_Good);
    ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
    {
        LoopbackPeer peer(serving(answerAtOnce));
        Channel channel;
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        EXPECT_EQ(channel.call(), OpcUa_Good);
        OpcUa_ActivateSessionRequest request;
        OpcUa_ActivateSessionRequest_Initialize(&request);
        ASSERT_EQ(OpcUa_String_Assign(&request.UserTokenSignature.Algorithm, "secret", -1), OpcUa_Good);
        OpcUa_ActivateSessionResponse response;
        EXPECT_EQ(OpcUa_ClientApi_ActivateSession(channel.handle(), &request, &response),
                  OpcUa_BadUnknownResponse);
        OpcUa_ActivateSessionRequest_Clear(&request);
    }
    OpcUa_ProxyStub_Clear();
    EXPECT_TRUE(contains("Sending FindServersRequest"));
    EXPECT_TRUE(contains("Received FindServersResponse"));
    EXPECT_TRUE(contains("Sending ActivateSessionRequest"));
    EXPECT_FALSE(contains("736563726574")); // "secret"
}

} // namespace
} // namespace opcua::test
