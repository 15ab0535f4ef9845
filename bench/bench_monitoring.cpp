// What watching 10,000 items for tools costs above a bare subscription: CPU time of this process, the server
// being the scripted stack.
#include <bench/budgets.h>
#include <monitoring/allsink.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <opcua/opcua_attributes.h>
#include <tests/support/fakestack.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <type_traits>
#include <vector>

using namespace UaClientSdk;
using namespace monitoring;

namespace {

constexpr OpcUa_UInt32 items = 10'000;
const int rounds = repetitions(15);
constexpr OpcUa_UInt32 messagesOfARound = 5;
constexpr auto limit = std::chrono::seconds(60);

[[noreturn]] void give(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

// Counts up to what somebody waits for.
class Tally
{
public:
    void add(std::size_t count)
    {
        const std::lock_guard lock(m_mutex);
        m_count += count;
        m_changed.notify_all();
    }
    void waitFor(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, limit, [&] { return m_count >= count; }))
            give("it does not come");
        m_count -= count;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_count = 0;
};

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

// Looks at every value and keeps none.
class Bare : public UaSubscriptionCallback
{
public:
    void subscriptionStatusChanged(OpcUa_UInt32, const UaStatus&) override {}
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications, UaDiagnosticInfos&) override
    {
        for (const OpcUa_MonitoredItemNotification& one : notifications)
            m_sum += one.ClientHandle;
        messages.add(1);
    }
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}

    Tally messages;

private:
    OpcUa_UInt64 m_sum = 0;
};

// ---- the server

UaMonitoredItemNotifications makeNotifications(std::span<const ItemId> handles)
{
    UaMonitoredItemNotifications list(static_cast<OpcUa_UInt32>(handles.size()));
    for (OpcUa_UInt32 i = 0; i < list.length(); ++i) {
        list[i].ClientHandle = handles[i];
        list[i].Value.Value.Datatype = OpcUaType_Double;
        list[i].Value.Value.Value.Double = i;
    }
    return list;
}

class Server
{
public:
    Server()
    {
        stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [this](const void*, void* response) {
            static_cast<OpcUa_CreateSubscriptionResponse*>(response)->SubscriptionId = ++lastId;
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        stack.on(OpcUa_DeleteSubscriptionsRequest_EncodeableType, [](const void*, void* response) {
            auto& answer = *static_cast<OpcUa_DeleteSubscriptionsResponse*>(response);
            UaStatusCodeArray(1u).detach(&answer.NoOfResults, &answer.Results);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        stack.on(
            OpcUa_CreateMonitoredItemsRequest_EncodeableType,
            [](const void* request, void* response) {
                const auto& asked = *static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request);
                auto& answer = *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
                UaMonitoredItemCreateResults(static_cast<OpcUa_UInt32>(asked.NoOfItemsToCreate))
                    .detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        stack.on(OpcUa_PublishRequest_EncodeableType, [this](const void* request, void* response) {
            return publish(*static_cast<const OpcUa_PublishRequest*>(request),
                           *static_cast<OpcUa_PublishResponse*>(response));
        });
        stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
    }

    // Values of these items in so many messages of that subscription.
    void send(OpcUa_UInt32 id, std::span<const ItemId> handles, OpcUa_UInt32 messages)
    {
        {
            const std::lock_guard lock(m_mutex);
            for (OpcUa_UInt32 i = 0; i < messages; ++i)
                m_turns.push_back({id, handles});
        }
        stack.releaseAnswers(OpcUa_PublishRequest_EncodeableType, static_cast<int>(messages));
    }
    void end() { stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, false); }

    FakeStack& stack = FakeStack::instance();
    std::atomic<OpcUa_UInt32> lastId{0};

private:
    struct Turn
    {
        OpcUa_UInt32 id;
        std::span<const ItemId> handles;
    };

    OpcUa_StatusCode publish(const OpcUa_PublishRequest& request, OpcUa_PublishResponse& response)
    {
        const std::lock_guard lock(m_mutex);
        if (m_turns.empty())
            return OpcUa_BadSessionClosed;
        const Turn turn = m_turns.front();
        m_turns.erase(m_turns.begin());
        UaStatusCodeArray(static_cast<OpcUa_UInt32>(request.NoOfSubscriptionAcknowledgements))
            .detach(&response.NoOfResults, &response.Results);
        response.SubscriptionId = turn.id;
        OpcUa_NotificationMessage& message = response.NotificationMessage;
        message.SequenceNumber = ++m_numbers[turn.id];
        auto* const change = static_cast<OpcUa_DataChangeNotification*>(
            OpcUa_EncodeableObject_Create(&OpcUa_DataChangeNotification_EncodeableType));
        makeNotifications(turn.handles).detach(&change->NoOfMonitoredItems, &change->MonitoredItems);
        UaExtensionObjectArray list(1u);
        OpcUa_ExtensionObject_AttachEncodeable(&list[0], &OpcUa_DataChangeNotification_EncodeableType,
                                               change);
        list.detach(&message.NoOfNotificationData, &message.NotificationData);
        return OpcUa_Good;
    }

    std::mutex m_mutex;
    std::vector<Turn> m_turns;
    std::map<OpcUa_UInt32, OpcUa_UInt32> m_numbers;
};

// ---- the tool

// On a clock of its own: that of the stack is the scripted one's, which stands still.
std::shared_ptr<HandOverPacer> makePacer()
{
    return std::make_shared<HandOverPacer>([] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<OpcUa_UInt64>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    });
}

// Takes as soon as there is something, and counts the items that come to be watched.
template <typename Kind>
class Tool
{
public:
    ~Tool() { sink->close(); }

    void take()
    {
        const auto batch = sink->take();
        watched.add(static_cast<std::size_t>(
            std::count_if(batch.changes.begin(), batch.changes.end(),
                          [](const ItemChange& change) { return change.state == ItemState::Watched; })));
    }

    std::atomic<bool> isBusy{false}; // and takes nothing
    Tally watched;
    std::shared_ptr<HandOverPacer> pacer = makePacer();
    std::shared_ptr<Kind> sink = make();

private:
    std::shared_ptr<Kind> make()
    {
        const Sink::Ready ready = [this] {
            if (!isBusy)
                take();
        };
        if constexpr (std::is_same_v<Kind, AllSink>)
            return std::make_shared<Kind>(ready, AllSink::usualCapacity, pacer);
        else
            return std::make_shared<Kind>(ready, pacer);
    }
};

std::vector<ItemWish> makeWishes()
{
    std::vector<ItemWish> wishes(items);
    for (OpcUa_UInt32 i = 0; i < items; ++i) {
        wishes[i].nodeId = UaNodeId(1'000'000u + i, 1);
        wishes[i].key = i;
    }
    return wishes;
}

ItemSettings settingsOf(double publishingInterval)
{
    ItemSettings settings;
    settings.subscription.publishingInterval = publishingInterval;
    return settings;
}

// ---- measurements

struct Figures
{
    std::vector<double> loop; // us of CPU for a value, all of them
    std::vector<double> bare;
    std::vector<double> latest;
    std::vector<double> all;
    std::vector<double> bareCreation; // us of CPU for all items
    std::vector<double> creation;
    std::vector<double> recovery;
    double bytes = 0; // of an item
};

class Run
{
public:
    Run()
    {
        if (session.connect(UaString("opc.tcp://localhost:4840"), info, SessionSecurityInfo(), &quiet)
                .isBad())
            give("no session");
        bare = subscribe();
        bareId = server.lastId;
        monitored.setSession(&session);
        monitored.statusChanged(UaClient::Connected);
    }
    ~Run()
    {
        server.end();
        static_cast<void>(session.disconnect(ServiceSettings(), true));
        monitored.setSession(nullptr);
    }

    UaSubscription* subscribe()
    {
        ServiceSettings settings;
        UaSubscription* subscription = nullptr;
        if (session.createSubscription(settings, &counter, 1, SubscriptionSettings(), true, &subscription)
                .isBad())
            give("no subscription");
        return subscription;
    }
    void unsubscribe(UaSubscription* subscription)
    {
        ServiceSettings settings;
        static_cast<void>(session.deleteSubscription(settings, &subscription));
    }

    Server server;
    SessionConnectInfo info;
    QuietCallback quiet;
    Bare counter;
    UaSession session;
    MonitoredServer monitored;
    UaSubscription* bare = nullptr;
    OpcUa_UInt32 bareId = 0;
};

// Values into a place of each item: the least that anything which keeps them has to do.
double measureLoop(std::span<const ItemId> handles)
{
    std::vector<UaDataValue> values(items);
    double used = 0;
    for (OpcUa_UInt32 i = 0; i < messagesOfARound; ++i) {
        UaMonitoredItemNotifications list = makeNotifications(handles);
        const double before = processCpu();
        for (OpcUa_UInt32 place = 0; place < items; ++place)
            values[place].attach(&list[place].Value);
        used += processCpu() - before;
    }
    return used / (messagesOfARound * items);
}

// Of a value, from the answer to Publish on; an answer for the bare one shows that those before have been
// dealt with, since they come one after the other.
double measureMessages(Run& run, OpcUa_UInt32 id, std::span<const ItemId> handles)
{
    const double before = processCpu();
    run.server.send(id, handles, messagesOfARound);
    run.server.send(run.bareId, handles.first(1), 1);
    run.counter.messages.waitFor(id == run.bareId ? messagesOfARound + 1 : 1);
    return (processCpu() - before) / (messagesOfARound * items);
}

double measureBareCreation(Run& run)
{
    const std::vector<ItemWish> wishes = makeWishes();
    ServiceSettings settings;
    const double before = processCpu();
    UaSubscription* const subscription = run.subscribe();
    for (OpcUa_UInt32 first = 0; first < items; first += MonitoredServer::maximumBatch) {
        UaMonitoredItemCreateRequests requests(MonitoredServer::maximumBatch);
        for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
            static_cast<void>(wishes[first + i].nodeId.copyTo(&requests[i].ItemToMonitor.NodeId));
            requests[i].ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
            requests[i].RequestedParameters.ClientHandle = first + i + 1;
        }
        UaMonitoredItemCreateResults results;
        UaDiagnosticInfos diagnostics;
        if (subscription
                ->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, requests, results,
                                       diagnostics)
                .isBad())
            give("no items");
    }
    const double used = processCpu() - before;
    run.unsubscribe(subscription);
    return used;
}

void measureCreation(Run& run, Figures& figures)
{
    const std::vector<ItemWish> wishes = makeWishes();
    Tool<LatestSink> tool;
    for (int round = 0; round < rounds; ++round) {
        figures.bareCreation.push_back(measureBareCreation(run));
        double before = processCpu();
        const std::vector<ItemId> ids = run.monitored.add(tool.sink, settingsOf(100), wishes);
        tool.watched.waitFor(items);
        figures.creation.push_back(processCpu() - before);
        before = processCpu();
        run.monitored.statusChanged(UaClient::NewSessionCreated);
        run.monitored.statusChanged(UaClient::Connected);
        tool.watched.waitFor(items);
        figures.recovery.push_back(processCpu() - before);
        run.monitored.remove(ids);
    }
}

template <typename Kind>
std::vector<ItemId> watch(Run& run, Tool<Kind>& tool, double publishingInterval)
{
    const std::vector<ItemId> ids =
        run.monitored.add(tool.sink, settingsOf(publishingInterval), makeWishes());
    tool.watched.waitFor(items);
    return ids;
}

OpcUa_UInt32 subscriptionAt(Run& run, double publishingInterval)
{
    for (const SubscriptionInfo& one : run.monitored.subscriptions())
        if (one.requested.publishingInterval == publishingInterval)
            return one.subscriptionId;
    give("no subscription");
}

void measureValues(Run& run, Figures& figures)
{
    Tool<LatestSink> latest;
    Tool<AllSink> all;
    const std::vector<ItemId> latestIds = watch(run, latest, 200);
    const std::vector<ItemId> allIds = watch(run, all, 300);
    const OpcUa_UInt32 latestId = subscriptionAt(run, 200);
    const OpcUa_UInt32 allId = subscriptionAt(run, 300);
    for (int round = 0; round < rounds; ++round) {
        figures.loop.push_back(measureLoop(latestIds));
        figures.bare.push_back(measureMessages(run, run.bareId, latestIds));
        figures.latest.push_back(measureMessages(run, latestId, latestIds));
        figures.all.push_back(measureMessages(run, allId, allIds));
    }
    if (run.monitored.info(latestIds[0])->count != run.monitored.info(allIds[0])->count)
        give("values are lost");
    run.monitored.remove(latestIds);
    run.monitored.remove(allIds);
}

double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// With a newest value of each that its owner has not taken yet.
double measureMemory(Run& run)
{
    Tool<LatestSink> tool;
    const double before = bytesInUse();
    const std::vector<ItemId> ids = watch(run, tool, 400);
    tool.isBusy = true;
    measureMessages(run, subscriptionAt(run, 400), ids);
    const double used = (bytesInUse() - before) / items - sizeof(ItemId); // which are the tool's
    run.monitored.remove(ids);
    return used;
}

} // namespace

int main()
{
    if (UaPlatformLayer::init() != 0)
        give("no platform layer");
    Figures figures;
    FakeStack::instance().reset();
    {
        Run run;
        figures.bytes = measureMemory(run); // first: places of items are used again
        measureValues(run, figures);
        measureCreation(run, figures);
    }
    UaPlatformLayer::cleanup();
    const double loop = median(figures.loop);
    const double bare = median(figures.bare);
    const double latest = excess(median(figures.latest), bare);
    const double all = excess(median(figures.all), bare);
    std::printf(
        "a value: kept by a bare loop %.3f us, to dataChange %.3f us, from there to latest %.3f us, to all "
        "%.3f us; an item %.0f bytes\n",
        loop, bare, latest, all, figures.bytes);
    std::printf("%u items: created by hand %.0f us, watched %.0f us, again in a new session %.0f us\n", items,
                median(figures.bareCreation), median(figures.creation), median(figures.recovery));
    // 0.10 and 0.15 us where the loop took 0.016 us
    printRatio("monitoring_latest_to_bare_loop", latest, loop, 6.25);
    printRatio("monitoring_all_to_bare_loop", all, loop, 9.4);
    printRatio("monitoring_create_10000_to_bare", median(figures.creation), median(figures.bareCreation),
               2.5);
    printRatio("monitoring_recover_10000_to_bare", median(figures.recovery), median(figures.bareCreation),
               2.5);
    printBudget("monitoring_bytes_of_an_item", figures.bytes, 200.0, figures.bytes > 0);
    return 0;
}
