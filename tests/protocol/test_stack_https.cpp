// Channels over HTTPS, against peers that behave as scripted.
#include <stack/core/httppace.h>
#include <tests/protocol/httpsfixture.h>

#include <openssl/tls1.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

// The first connection gets this answer to its first request, everything else a good one.
HttpsPeer::Script answersFirstWith(std::string text)
{
    return [text = std::move(text)](TlsPeerSocket& socket, int number) {
        HttpRequest request;
        if (number == 0) {
            if (!socket.read(request) || !socket.write(text))
                return;
        }
        serveAll(socket, number);
    };
}

// ---- connecting

TEST_F(StackHttps, EveryWayThatConnectFailsHasItsStatusAndItsTime)
{
    const Bytes plainHttp{'H', 'T', 'T', 'P', '/', '1', '.', '1', ' ', '4', '0', '0', '\r', '\n'};
    const Bytes record{0x16, 3, 3, 0x40, 0, 2, 0, 0x3f, 0xfc, 3, 3}; // promises more than ever comes
    struct Case
    {
        const char* name;
        LoopbackPeer::Script script;
        OpcUa_StatusCode status;
    };
    const auto afterHello = [](Bytes answer) {
        return [answer = std::move(answer)](PeerSocket& socket) {
            Bytes hello;
            socket.read(hello);
            socket.write(answer);
            socket.stayUntilClosed();
        };
    };
    const std::vector<Case> cases{
        {"silent", [](PeerSocket& socket) { socket.stayUntilClosed(); }, OpcUa_BadTimeout},
        {"drips", [&](PeerSocket& socket) { socket.drip(record); }, OpcUa_BadTimeout},
        {"begins", afterHello(record), OpcUa_BadTimeout},
        {"closes at once", [](PeerSocket&) {}, OpcUa_BadConnectionClosed},
        {"speaks HTTP without TLS", afterHello(plainHttp), OpcUa_BadSecurityChecksFailed},
    };
    for (const Case& c : cases) {
        LoopbackPeer peer(c.script);
        HttpsChannel channel;
        const auto start = std::chrono::steady_clock::now();
        const std::string url = "https" + peer.url().substr(7);
        EXPECT_EQ(channel.connect(url, c.status == OpcUa_BadTimeout ? 200 : 10'000), c.status) << c.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << c.name;
        EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
    }
    TlsIdentity old = makeIdentity();
    old.highestVersion = TLS1_1_VERSION;
    const HttpsPeer peer(serveAll, old);
    EXPECT_EQ(HttpsChannel().connect(peer.url()), OpcUa_BadSecurityChecksFailed);
}

TEST_F(StackHttps, WhatCannotBeConnectedIsRefusedBeforeTheNetwork)
{
    const HttpsPeer peer(serveAll);
    HttpsChannel channel;
    EXPECT_EQ(channel.connect("http" + peer.url().substr(5)), OpcUa_BadTcpEndpointUrlInvalid);
    EXPECT_EQ(channel.connect("opc.tcp" + peer.url().substr(5)), OpcUa_BadTcpEndpointUrlInvalid);
    channel.info.SecurityPolicyUri = "http://example.com/unheard-of\r\nX: y";
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityPolicyRejected);
    channel.info.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
    channel.info.SecurityMode = OpcUa_MessageSecurityMode_Sign;
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadSecurityModeRejected);
    channel.info.SecurityMode = OpcUa_MessageSecurityMode_None;
    channel.info.TransportProfileUri = OpcUa_TransportProfile_UaTcp;
    EXPECT_EQ(channel.connect(peer.url()), OpcUa_BadTcpEndpointUrlInvalid);
    EXPECT_EQ(channel.connect("http" + peer.url().substr(5)), OpcUa_BadTcpEndpointUrlInvalid);
    EXPECT_EQ(peer.connections(), 0);
    channel.info.TransportProfileUri = nullptr;
    EXPECT_EQ(channel.connect("HTTPS" + peer.url().substr(5)), OpcUa_Good) << "the address says which";
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

TEST_F(StackHttps, AHandshakeThatBreaksAnywhereFails)
{
    constexpr size_t step = 5;
    size_t broken = 0;
    for (size_t bytes = 0;; bytes += step) {
        const HttpsPeer peer([](TlsPeerSocket&, int) {}, makeIdentity(), bytes);
        HttpsChannel channel;
        const OpcUa_StatusCode status = channel.connect(peer.url());
        if (OpcUa_IsGood(status))
            break;
        ASSERT_EQ(status, OpcUa_BadConnectionClosed) << bytes;
        ++broken;
    }
    EXPECT_GT(broken, 100u);
}

TEST_F(StackHttps, ConnectCanBeCancelled)
{
    std::promise<void> accepted;
    LoopbackPeer peer([&](PeerSocket& socket) {
        accepted.set_value();
        socket.stayUntilClosed();
    });
    HttpsChannel channel;
    const std::string url = "https" + peer.url().substr(7);
    auto result = std::async(std::launch::async, [&] { return channel.connect(url, 60'000); });
    accepted.get_future().wait();
    OpcUa_Channel_CancelConnect(channel.handle());
    ASSERT_EQ(result.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(result.get(), OpcUa_BadRequestCancelledByClient);
}

// ---- calls

TEST_F(StackHttps, RequestsCarryWhatServersAskFor)
{
    Mailbox<HttpRequest> requests;
    const HttpsPeer peer([&](TlsPeerSocket& socket, int) {
        HttpRequest request;
        while (socket.read(request)) {
            requests.put(request);
            socket.write(chunkedAnswer(findServersResponse(), 7));
        }
    });
    HttpsChannel channel;
    channel.info.SecurityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
    channel.info.SecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(channel.call(), OpcUa_Good);
    const HttpRequest request = requests.values().front();
    const std::string authority = peer.url().substr(8, peer.url().size() - 8 - 5);
    EXPECT_TRUE(request.head.starts_with("POST /test HTTP/1.1\r\nHost: " + authority + "\r\n"));
    EXPECT_NE(request.head.find("\r\nContent-Type: application/octet-stream\r\n"), std::string::npos);
    EXPECT_NE(request.head.find("\r\nOPCUA-SecurityPolicy: http://opcfoundation.org/UA/SecurityPolicy"
                                "#Basic256Sha256\r\n"),
              std::string::npos);
    DecodedMessage message;
    ASSERT_EQ(decodeMessage(request.body, {}, message), OpcUa_Good) << "the body is the request as it stands";
    EXPECT_EQ(message.type, &OpcUa_FindServersRequest_EncodeableType);
}

TEST_F(StackHttps, FaultsOfAnAnswerAreFaultsOfTheCallAndTheChannelStays)
{
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    struct Case
    {
        const char* name;
        std::string answer;
        OpcUa_StatusCode status;
    };
    const std::vector<Case> cases{
        {"server error with a page", httpAnswer({'<'}, {}, "500 Internal"), OpcUa_BadCommunicationError},
        {"page", ok + "Content-Type: text/html\r\nContent-Length: 6\r\n\r\n<html>", OpcUa_BadUnknownResponse},
        {"redirect", httpAnswer({}, "Location: https://127.0.0.1:1/\r\n", "302 Found"),
         OpcUa_BadCommunicationError},
        {"not found", httpAnswer({}, {}, "404 Nothing"), OpcUa_BadTcpEndpointUrlInvalid},
        {"busy", httpAnswer({}, {}, "503 Busy"), OpcUa_BadTcpServerTooBusy},
        {"too large", httpAnswer({}, {}, "413 Large"), OpcUa_BadRequestTooLarge},
        {"forbidden", httpAnswer({}, {}, "403 No"), OpcUa_BadUserAccessDenied},
        {"gateway's timeout", httpAnswer({}, {}, "504 Late"), OpcUa_BadTimeout},
        {"empty", httpAnswer({}), OpcUa_BadDecodingError},
        {"compressed", httpAnswer(findServersResponse(), "Content-Encoding: gzip\r\n"),
         OpcUa_BadUnknownResponse},
        {"endless header", ok + "A: " + std::string(70'000, 'x'), OpcUa_BadResponseTooLarge},
        {"length beyond the limit", ok + "Content-Length: 99999999\r\n\r\n", OpcUa_BadResponseTooLarge},
        {"no HTTP", "ACKF", OpcUa_BadDecodingError},
        {"service fault", httpAnswer(findServersResponse(OpcUa_BadServerHalted)), OpcUa_BadServerHalted},
        {"good and closing", httpAnswer(findServersResponse(), "Connection: close\r\n"), OpcUa_Good},
    };
    for (const Case& c : cases) {
        const HttpsPeer peer(answersFirstWith(c.answer));
        HttpsChannel channel;
        Mailbox<OpcUa_Channel_Event> events;
        channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode) { events.put(event); });
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        EXPECT_EQ(channel.call(), c.status) << c.name;
        EXPECT_TRUE(OpcUa_Channel_IsConnected(channel.handle())) << c.name;
        EXPECT_EQ(channel.call(), OpcUa_Good) << c.name;
        EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
        EXPECT_EQ(events.values().size(), 1u) << "only the connect was told: " << c.name;
    }
}

TEST_F(StackHttps, ALengthThatLiesEndsInTimeOrInAFault)
{
    std::string tooLong = goodAnswer();
    tooLong.replace(tooLong.find("Content-Length: "), 16, "Content-Length: 9");
    const HttpsPeer waiting(answersFirstWith(tooLong));
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(waiting.url()), OpcUa_Good);
    EXPECT_EQ(channel.call(300), OpcUa_BadTimeout);
    EXPECT_EQ(channel.call(), OpcUa_Good) << "on a connection of its own";

    const HttpsPeer surplus(answersFirstWith(goodAnswer() + "and then some"));
    HttpsChannel other;
    ASSERT_EQ(other.connect(surplus.url()), OpcUa_Good);
    EXPECT_EQ(other.call(), OpcUa_Good);
    EXPECT_EQ(other.call(), OpcUa_Good);
}

TEST_F(StackHttps, AnAnswerThatBreaksAnywhereFailsItsCallOnce)
{
    const std::string whole = goodAnswer();
    for (size_t bytes = 0; bytes < whole.size(); bytes += 11) {
        std::atomic<int> requests = 0;
        const HttpsPeer peer([&](TlsPeerSocket& socket, int number) {
            HttpRequest request;
            while (socket.read(request)) {
                ++requests;
                socket.write(number == 0 ? whole.substr(0, bytes) : whole);
                if (number == 0)
                    return; // and hangs up
            }
        });
        HttpsChannel channel;
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        EXPECT_EQ(channel.call(), OpcUa_BadConnectionClosed) << bytes;
        EXPECT_EQ(requests, 1) << "nothing is sent twice";
        EXPECT_EQ(channel.call(), OpcUa_Good) << bytes;
    }
}

TEST_F(StackHttps, ManyRequestsShareOneConnection)
{
    constexpr size_t count = 64;
    const HttpsPeer peer([](TlsPeerSocket& socket, int) {
        HttpRequest request;
        size_t held = 0;
        while (socket.read(request)) {
            if (++held < count)
                continue; // no answer before all are here
            for (; held != 0; --held)
                socket.write(goodAnswer());
        }
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    for (int round = 0; round < 3; ++round) {
        Mailbox<OpcUa_StatusCode> completed;
        Channel::Completed complete = [&](OpcUa_StatusCode status) { completed.put(status); };
        for (size_t n = 0; n < count; ++n)
            ASSERT_EQ(channel.begin(complete), OpcUa_Good);
        ASSERT_TRUE(completed.waitForCount(count));
        EXPECT_EQ(completed.values(), std::vector<OpcUa_StatusCode>(count, OpcUa_Good));
    }
    EXPECT_EQ(peer.connections(), 1);
}

// A request of another kind, whose answer the test's server never gives before its connection ends.
template <typename Request>
OpcUa_StatusCode beginHeld(OpcUa_Channel channel, const OpcUa_EncodeableType& request,
                           const OpcUa_EncodeableType& response, Mailbox<OpcUa_StatusCode>& completed)
{
    Request object;
    OpcUa_EncodeableObject_Initialize(&request, &object);
    object.RequestHeader.TimeoutHint = 60'000;
    return OpcUa_Channel_BeginInvokeService(
        channel, &request, &object, &response,
        [](OpcUa_Channel, void* body, const OpcUa_EncodeableType* type, void* data, OpcUa_StatusCode status) {
            if (body != nullptr)
                OpcUa_EncodeableObject_Delete(type, &body);
            static_cast<Mailbox<OpcUa_StatusCode>*>(data)->put(status);
        },
        &completed);
}

TEST_F(StackHttps, NeitherPublishNorASlowMethodHoldsUpOthers)
{
    const HttpsPeer peer([](TlsPeerSocket& socket, int) {
        HttpRequest request;
        while (socket.read(request))
            if (paceOf(request.body) == HttpPace::Quick)
                socket.write(goodAnswer());
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    ASSERT_EQ(channel.call(), OpcUa_Good);
    Mailbox<OpcUa_StatusCode> held;
    for (int n = 0; n < 3; ++n)
        ASSERT_EQ(beginHeld<OpcUa_PublishRequest>(channel.handle(), OpcUa_PublishRequest_EncodeableType,
                                                  OpcUa_PublishResponse_EncodeableType, held),
                  OpcUa_Good);
    ASSERT_EQ(channel.call(), OpcUa_Good);
    EXPECT_EQ(peer.connections(), 2);
    ASSERT_EQ(beginHeld<OpcUa_CallRequest>(channel.handle(), OpcUa_CallRequest_EncodeableType,
                                           OpcUa_CallResponse_EncodeableType, held),
              OpcUa_Good);
    for (int n = 0; n < 5; ++n)
        EXPECT_EQ(channel.call(), OpcUa_Good);
    EXPECT_EQ(peer.connections(), 3);
    EXPECT_TRUE(held.values().empty());
    EXPECT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
    EXPECT_EQ(held.values(), std::vector<OpcUa_StatusCode>(4, OpcUa_BadConnectionClosed));
}

TEST_F(StackHttps, ARequestThatTimedOutDoesNotTakeTheAnswerOfAnother)
{
    std::promise<void> goOn;
    auto mayGoOn = goOn.get_future().share();
    const HttpsPeer peer([&](TlsPeerSocket& socket, int number) {
        HttpRequest request;
        for (int n = 0; socket.read(request); ++n) {
            if (number == 0 && n == 0) {
                mayGoOn.wait();
                socket.write(httpAnswer(findServersResponse(OpcUa_BadServerHalted)));
            } else {
                socket.write(goodAnswer());
            }
        }
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed complete = [&](OpcUa_StatusCode status) { completed.put(status); };
    ASSERT_EQ(channel.begin(complete, 60'000), OpcUa_Good);
    EXPECT_EQ(channel.call(200), OpcUa_BadTimeout) << "behind the first on its connection";
    goOn.set_value();
    ASSERT_TRUE(completed.waitForCount(1));
    EXPECT_EQ(completed.values(), std::vector<OpcUa_StatusCode>{OpcUa_BadServerHalted});
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

// ---- connections that come and go

TEST_F(StackHttps, AConnectionThatWasClosedWhileUnusedIsNoLoss)
{
    Mailbox<int> closed;
    const HttpsPeer peer([&](TlsPeerSocket& socket, int number) {
        HttpRequest request;
        if (!socket.read(request))
            return;
        if (number == 0) { // closed by the server, with a word
            socket.write(goodAnswer());
            socket.sayGoodbye();
        } else if (number == 1) { // and without
            socket.write(goodAnswer());
        } else if (number == 2) { // with a word, but nothing more is done about it
            socket.write(goodAnswer());
            socket.sayGoodbye();
            socket.stayUntilClosed();
        } else { // by the client, before the server does it
            socket.write(goodAnswer("Keep-Alive: timeout=1\r\n"));
            socket.stayUntilClosed();
        }
        closed.put(number);
    });
    HttpsChannel channel;
    Mailbox<OpcUa_Channel_Event> events;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode) { events.put(event); });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    for (size_t n = 1; n <= 5; ++n) {
        EXPECT_EQ(channel.call(), OpcUa_Good) << n;
        ASSERT_TRUE(closed.waitForCount(n));
    }
    EXPECT_TRUE(OpcUa_Channel_IsConnected(channel.handle()));
    EXPECT_EQ(peer.connections(), 5);
    EXPECT_EQ(events.values().size(), 1u);
}

TEST_F(StackHttps, AServerThatHasGoneIsNoticedAtOnce)
{
    Mailbox<OpcUa_StatusCode> held;
    Mailbox<std::pair<OpcUa_Channel_Event, OpcUa_StatusCode>> events;
    HttpsChannel channel;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode status) { events.put({event, status}); });
    {
        std::promise<void> arrived;
        const HttpsPeer peer([&](TlsPeerSocket& socket, int) {
            HttpRequest request;
            if (socket.read(request))
                arrived.set_value();
            socket.stayUntilClosed();
        });
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        ASSERT_EQ(beginHeld<OpcUa_PublishRequest>(channel.handle(), OpcUa_PublishRequest_EncodeableType,
                                                  OpcUa_PublishResponse_EncodeableType, held),
                  OpcUa_Good);
        arrived.get_future().wait();
    }
    ASSERT_TRUE(events.waitForCount(2));
    EXPECT_EQ(events.values()[1].first, OpcUa_Channel_Event_Disconnected);
    EXPECT_TRUE(OpcUa_IsBad(events.values()[1].second));
    EXPECT_EQ(held.values(), std::vector<OpcUa_StatusCode>{OpcUa_BadConnectionClosed});
    EXPECT_FALSE(OpcUa_Channel_IsConnected(channel.handle()));
    EXPECT_EQ(channel.call(), OpcUa_BadConnectionClosed);

    const HttpsPeer back(serveAll);
    EXPECT_EQ(channel.connect(back.url()), OpcUa_Good) << "without a disconnect in between";
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

TEST_F(StackHttps, LaterConnectionsAcceptTheJudgedCertificateOnly)
{
    HttpsPeer peer(answersFirstWith(goodAnswer("Connection: close\r\n")));
    HttpsChannel channel;
    Mailbox<std::pair<OpcUa_Channel_Event, OpcUa_StatusCode>> events;
    channel.listen([&](OpcUa_Channel_Event event, OpcUa_StatusCode status) { events.put({event, status}); });
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    EXPECT_EQ(channel.call(), OpcUa_Good);
    peer.changeIdentity(makeIdentity(recipe("Test", ellipticKey("another"))));
    EXPECT_EQ(channel.call(), OpcUa_BadCertificateInvalid);
    ASSERT_TRUE(events.waitForCount(2));
    EXPECT_EQ(events.values()[1],
              std::pair(OpcUa_Channel_Event_Disconnected, OpcUa_StatusCode{OpcUa_BadCertificateInvalid}));
}

TEST_F(StackHttps, APeerThatDoesNotReadHoldsUpNobodyForLongerThanTheCall)
{
    const HttpsPeer peer([](TlsPeerSocket& socket, int number) {
        if (number == 0)
            socket.stayDeaf();
        else
            serveAll(socket, number);
    });
    HttpsChannel channel;
    ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
    const std::string filler(6'000'000, 'x');
    OpcUa_FindServersRequest request;
    OpcUa_FindServersRequest_Initialize(&request);
    ASSERT_EQ(
        OpcUa_String_Assign(&request.EndpointUrl, filler.data(), static_cast<OpcUa_Int32>(filler.size())),
        OpcUa_Good);
    request.RequestHeader.TimeoutHint = 300;
    OpcUa_FindServersResponse response;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(OpcUa_ClientApi_FindServers(channel.handle(), &request, &response), OpcUa_BadTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    OpcUa_FindServersRequest_Clear(&request);
    EXPECT_EQ(channel.call(), OpcUa_Good) << "on another connection";
}

TEST_F(StackHttps, ChannelsComeAndGoWithoutGrowth)
{
    const HttpsPeer peer(serveAll);
    const auto descriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto connectAndLeave = [&](bool twice) {
        HttpsChannel channel;
        ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        ASSERT_EQ(channel.call(), OpcUa_Good);
        if (twice) {
            ASSERT_EQ(OpcUa_Channel_Disconnect(channel.handle()), OpcUa_Good);
            ASSERT_EQ(channel.connect(peer.url()), OpcUa_Good);
        }
    };
    connectAndLeave(true);
    const auto before = descriptors();
    for (int n = 0; n < 50; ++n)
        connectAndLeave(n % 2 == 0);
    // the peer's own ends close a moment later
    const auto end = std::chrono::steady_clock::now() + patience;
    while (descriptors() > before && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_LE(descriptors(), before);
}

} // namespace
} // namespace opcua::test
