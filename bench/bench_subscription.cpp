// What a subscription of 10,000 items costs its client: CPU time of this process, from the socket to
// dataChange. The server is another process, which answers each Publish at once.
#include <bench/budgets.h>
#include <bench/bulkmessages.h>
#include <bench/rawloops.h>
#include <bench/responder.h>
#include <stack/encoding/messagecodec.h>
#include <tests/protocol/loopbackpeer.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace opcua;
using namespace UaClientSdk;

namespace {

constexpr OpcUa_UInt32 items = 10'000;
const int rounds = repetitions(11);
constexpr int messagesOfARound = 20;
constexpr size_t bytesOfAnAnswer = 280'000; // of a Publish with all items; nearly those of their creation

[[noreturn]] void give(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

// ---- the server

template <typename Response>
void respond(ServerChannel& channel, OpcUa_UInt32 id, const OpcUa_EncodeableType& type,
             const Response& response)
{
    Bytes bytes;
    if (OpcUa_IsBad(encodeMessage(type, &response, {}, bytes)))
        std::_Exit(1);
    channel.respond(id, bytes);
}

void answerCreateSession(ServerChannel& channel, OpcUa_UInt32 id)
{
    bench::Owned<OpcUa_CreateSessionResponse, OpcUa_CreateSessionResponse_EncodeableType> response;
    response->RevisedSessionTimeout = 60'000;
    UaEndpointDescriptions endpoints(1u);
    static_cast<void>(UaString("opc.tcp://127.0.0.1:4840").copyTo(&endpoints[0].EndpointUrl));
    endpoints[0].SecurityMode = OpcUa_MessageSecurityMode_None;
    static_cast<void>(UaString(OpcUa_SecurityPolicy_None).copyTo(&endpoints[0].SecurityPolicyUri));
    UaUserTokenPolicys tokens(1u);
    static_cast<void>(UaString("anonymous").copyTo(&tokens[0].PolicyId));
    tokens.detach(&endpoints[0].NoOfUserIdentityTokens, &endpoints[0].UserIdentityTokens);
    endpoints.detach(&response->NoOfServerEndpoints, &response->ServerEndpoints);
    respond(channel, id, OpcUa_CreateSessionResponse_EncodeableType, *response);
}

void answerCreateItems(ServerChannel& channel, OpcUa_UInt32 id)
{
    bench::Owned<OpcUa_CreateMonitoredItemsResponse, OpcUa_CreateMonitoredItemsResponse_EncodeableType>
        response;
    UaMonitoredItemCreateResults results(items);
    for (OpcUa_UInt32 i = 0; i < items; ++i)
        results[i].MonitoredItemId = i + 1;
    results.detach(&response->NoOfResults, &response->Results);
    respond(channel, id, OpcUa_CreateMonitoredItemsResponse_EncodeableType, *response);
}

// An answer of that type with nothing in it.
template <typename Response>
void answerEmpty(ServerChannel& channel, OpcUa_UInt32 id, const OpcUa_EncodeableType& type)
{
    Response response;
    OpcUa_EncodeableObject_Initialize(&type, &response);
    if constexpr (requires { response.SubscriptionId; })
        response.SubscriptionId = 1;
    respond(channel, id, type, response);
}

void serve(test::PeerSocket& socket)
{
    bench::PublishResponse publish;
    bench::fill(*publish, static_cast<int>(items));
    publish->SubscriptionId = 1;
    OpcUa_UInt32 number = 0;
    OpcUa_UInt32 requests = 0;
    bool enabled = false; // a subscription that is not gets no answers
    test::PeerServer server([&](ServerChannel& channel, OpcUa_UInt32 id, const Bytes& body) {
        switch (body.size() < 4 ? 0 : body[2] | body[3] << 8) { // a node id of four bytes comes first
        case OpcUaId_CreateSessionRequest_Encoding_DefaultBinary:
            return answerCreateSession(channel, id);
        case OpcUaId_ActivateSessionRequest_Encoding_DefaultBinary:
            return answerEmpty<OpcUa_ActivateSessionResponse>(channel, id,
                                                              OpcUa_ActivateSessionResponse_EncodeableType);
        case OpcUaId_CreateSubscriptionRequest_Encoding_DefaultBinary:
            enabled = body[body.size() - 2] != 0; // before the priority, which is the last
            return answerEmpty<OpcUa_CreateSubscriptionResponse>(
                channel, id, OpcUa_CreateSubscriptionResponse_EncodeableType);
        case OpcUaId_CreateMonitoredItemsRequest_Encoding_DefaultBinary:
            return answerCreateItems(channel, id);
        case OpcUaId_PublishRequest_Encoding_DefaultBinary: {
            if (!enabled)
                return;
            publish->NotificationMessage.SequenceNumber = ++number;
            // the client's acknowledgements are as many as the notifications it has had
            UaStatusCodeArray results(requests < 2 ? 0u : 1u);
            ++requests;
            results.detach(&publish->NoOfResults, &publish->Results);
            respond(channel, id, OpcUa_PublishResponse_EncodeableType, *publish);
            return UaStatusCodeArray().attachFrom(&publish->NoOfResults, &publish->Results);
        }
        case OpcUaId_CloseSessionRequest_Encoding_DefaultBinary:
            return answerEmpty<OpcUa_CloseSessionResponse>(channel, id,
                                                           OpcUa_CloseSessionResponse_EncodeableType);
        default:
            return answerEmpty<OpcUa_ReadResponse>(channel, id, OpcUa_ReadResponse_EncodeableType);
        }
    });
    server.serve(socket);
}

// Its port, from a process that ends with this one.
std::uint16_t startServer()
{
    int channel[2];
    if (::pipe(channel) != 0)
        give("no pipe");
    if (::fork() == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const test::LoopbackPeer peer(serve);
        const std::uint16_t port = peer.port();
        if (::write(channel[1], &port, sizeof port) != sizeof port)
            std::_Exit(1);
        for (;;)
            ::pause();
    }
    std::uint16_t port = 0;
    if (::read(channel[0], &port, sizeof port) != sizeof port)
        give("no server");
    return port;
}

// ---- the client

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

class Counter : public UaSubscriptionCallback
{
public:
    void subscriptionStatusChanged(OpcUa_UInt32, const UaStatus&) override {}
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications, UaDiagnosticInfos&) override
    {
        OpcUa_UInt64 sum = 0;
        for (const OpcUa_MonitoredItemNotification& item : notifications)
            sum += item.ClientHandle;
        const std::lock_guard lock(m_mutex);
        m_sum += sum; // so that the handles are looked at
        ++m_messages;
        m_changed.notify_all();
    }
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}

    void waitForMore(int messages)
    {
        std::unique_lock lock(m_mutex);
        const int wanted = m_messages + messages;
        if (!m_changed.wait_for(lock, std::chrono::seconds(60), [&] { return m_messages >= wanted; }))
            give("no notifications");
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_messages = 0;
    OpcUa_UInt64 m_sum = 0;
};

UaMonitoredItemCreateRequests makeRequests()
{
    UaMonitoredItemCreateRequests requests(items);
    for (OpcUa_UInt32 i = 0; i < items; ++i) {
        requests[i].ItemToMonitor.NodeId.NamespaceIndex = 1;
        requests[i].ItemToMonitor.NodeId.Identifier.Numeric = 1'000'000u + i;
        requests[i].ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        requests[i].MonitoringMode = OpcUa_MonitoringMode_Reporting;
        requests[i].RequestedParameters.ClientHandle = i + 1;
        requests[i].RequestedParameters.SamplingInterval = 100;
        requests[i].RequestedParameters.QueueSize = 1;
    }
    return requests;
}

struct Figures
{
    std::vector<double> creating;      // us of CPU for all items
    std::vector<double> notifications; // us of CPU for all items
    std::vector<double> bare;          // us of CPU for a round trip with an answer as large
};

void measureNotifications(UaSession& session, Figures& figures)
{
    ServiceSettings settings;
    Counter counter;
    UaSubscription* subscription = nullptr;
    if (session.createSubscription(settings, &counter, 1, SubscriptionSettings(), true, &subscription)
            .isBad())
        give("no subscription");
    for (int round = 0; round < rounds; ++round) {
        counter.waitForMore(1);
        const double before = processCpu();
        counter.waitForMore(messagesOfARound);
        figures.notifications.push_back((processCpu() - before) / messagesOfARound);
    }
    static_cast<void>(session.deleteSubscription(settings, &subscription)); // waits for the last callback
}

void measureCreation(UaSession& session, Figures& figures)
{
    ServiceSettings settings;
    Counter counter;
    UaSubscription* subscription = nullptr;
    if (session.createSubscription(settings, &counter, 1, SubscriptionSettings(), false, &subscription)
            .isBad())
        give("no subscription");
    const UaMonitoredItemCreateRequests requests = makeRequests();
    for (int round = 0; round < rounds; ++round) {
        UaMonitoredItemCreateResults results;
        UaDiagnosticInfos diagnostics;
        const double before = processCpu();
        if (subscription
                ->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, requests, results,
                                       diagnostics)
                .isBad())
            give("no items");
        figures.creating.push_back(processCpu() - before);
    }
    static_cast<void>(session.deleteSubscription(settings, &subscription));
}

void withSession(std::uint16_t port, Figures& figures, void (*measure)(UaSession&, Figures&))
{
    QuietCallback callback;
    UaSession session;
    SessionConnectInfo info;
    info.watchdogTime = 30000; // nothing but the subscription is measured
    const std::string url = "opc.tcp://127.0.0.1:" + std::to_string(port);
    const UaStatus connected = session.connect(UaString(url.c_str()), info, SessionSecurityInfo(), &callback);
    if (connected.isBad())
        give(connected.toString().toUtf8());
    measure(session, figures);
    static_cast<void>(session.disconnect(ServiceSettings(), true));
}

void measureBare(const bench::Responder& responder, Figures& figures)
{
    const int trips = operations(100);
    for (int round = 0; round < rounds; ++round) {
        const double before = processCpu();
        bench::pingPong(responder.rawPort(), trips, bytesOfAnAnswer);
        figures.bare.push_back((processCpu() - before) / trips);
    }
}

} // namespace

int main()
{
    // both while there is one thread only
    const bench::Responder responder(bench::makeIdentity("server"), bench::makeIdentity("client"),
                                     Bytes(32, 5));
    const std::uint16_t port = startServer();
    if (UaPlatformLayer::init() != 0)
        give("no platform layer");
    Figures figures;
    withSession(port, figures, measureCreation);
    withSession(port, figures, measureNotifications);
    measureBare(responder, figures);
    UaPlatformLayer::cleanup();
    const double bare = median(figures.bare);
    std::printf("%u notifications %.0f us, their items created %.0f us, a bare round trip with as many bytes "
                "%.0f us\n",
                items, median(figures.notifications), median(figures.creating), bare);
    // 0.25 us each and 30 ms where the bare round trip took 50 us
    printRatio("subscription_notifications_to_bare", median(figures.notifications), bare, 50.0);
    printRatio("create_10000_items_to_bare", median(figures.creating), bare, 600.0);
    return 0;
}
