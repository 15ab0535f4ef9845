// Whatever tools want and the server does in whatever order: in the end it has what is wanted, each once.
#include <tests/unit/monitoring/monitoringtest.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uaclient.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace {

using monitoring::ItemId;
using monitoring::ItemSettings;
using monitoring::ItemState;
using UaClientSdk::UaClient;

// Node, sampling interval, mode.
using Kept = std::tuple<std::string, double, int>;

// What a server keeps, with calls that fail before they are carried out, or afterwards.
class FaultyServer
{
public:
    explicit FaultyServer(unsigned int seed) : m_random(seed) {}

    void install(FakeStack& stack)
    {
        on(stack, OpcUa_CreateSubscriptionRequest_EncodeableType, &FaultyServer::createSubscription);
        on(stack, OpcUa_DeleteSubscriptionsRequest_EncodeableType, &FaultyServer::deleteSubscriptions);
        on(stack, OpcUa_CreateMonitoredItemsRequest_EncodeableType, &FaultyServer::createItems);
        on(stack, OpcUa_ModifyMonitoredItemsRequest_EncodeableType, &FaultyServer::modifyItems);
        on(stack, OpcUa_SetMonitoringModeRequest_EncodeableType, &FaultyServer::setMode);
        on(stack, OpcUa_DeleteMonitoredItemsRequest_EncodeableType, &FaultyServer::deleteItems);
    }
    // Takes everything from now on.
    void heal()
    {
        const std::lock_guard lock(m_mutex);
        m_isFaulty = false;
    }
    // Starts again with nothing.
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_subscriptions.clear();
    }
    // What is in those subscriptions, by client handle.
    std::multimap<ItemId, Kept> keptIn(const std::set<OpcUa_UInt32>& ids)
    {
        const std::lock_guard lock(m_mutex);
        std::multimap<ItemId, Kept> all;
        for (const auto& [id, items] : m_subscriptions)
            if (ids.contains(id))
                for (const auto& [number, item] : items)
                    all.emplace(item.handle, Kept(item.node, item.interval, item.mode));
        return all;
    }

private:
    struct Item
    {
        OpcUa_UInt32 handle;
        std::string node;
        double interval;
        int mode;
    };
    using Items = std::map<OpcUa_UInt32, Item>;
    static constexpr std::size_t subscriptionLimit = 2;

    template <typename Request, typename Response>
    void on(FakeStack& stack, const OpcUa_EncodeableType& type,
            OpcUa_StatusCode (FaultyServer::*service)(const Request&, Response&))
    {
        stack.on(
            type,
            [this, service](const void* request, void* response) {
                const std::lock_guard lock(m_mutex);
                const bool fails = m_isFaulty && chance(4);
                if (fails && chance(2))
                    return oneOf({OpcUa_BadTimeout, OpcUa_BadServerTooBusy, OpcUa_BadConnectionClosed});
                const OpcUa_StatusCode status = (this->*service)(*static_cast<const Request*>(request),
                                                                 *static_cast<Response*>(response));
                return fails && OpcUa_IsGood(status)
                           ? oneOf({OpcUa_BadTimeout, OpcUa_BadResponseTooLarge, OpcUa_BadDecodingError})
                           : status;
            });
    }
    bool chance(unsigned int oneIn) { return m_random() % oneIn == 0; }
    OpcUa_StatusCode oneOf(std::vector<OpcUa_StatusCode> statuses)
    {
        return statuses[m_random() % statuses.size()];
    }
    template <typename Results, typename Response>
    static void answer(Results& results, Response& response)
    {
        results.detach(&response.NoOfResults, &response.Results);
    }

    OpcUa_StatusCode createSubscription(const OpcUa_CreateSubscriptionRequest& request,
                                        OpcUa_CreateSubscriptionResponse& response)
    {
        if (m_isFaulty && m_subscriptions.size() >= subscriptionLimit)
            return OpcUa_BadTooManySubscriptions;
        response.SubscriptionId = ++m_last;
        response.RevisedPublishingInterval = request.RequestedPublishingInterval;
        response.RevisedLifetimeCount = request.RequestedLifetimeCount;
        response.RevisedMaxKeepAliveCount = request.RequestedMaxKeepAliveCount;
        m_subscriptions[m_last];
        return OpcUa_Good;
    }
    OpcUa_StatusCode deleteSubscriptions(const OpcUa_DeleteSubscriptionsRequest& request,
                                         OpcUa_DeleteSubscriptionsResponse& response)
    {
        UaStatusCodeArray results(static_cast<OpcUa_UInt32>(request.NoOfSubscriptionIds));
        m_subscriptions.erase(request.SubscriptionIds[0]);
        answer(results, response);
        return OpcUa_Good;
    }
    OpcUa_StatusCode createItems(const OpcUa_CreateMonitoredItemsRequest& request,
                                 OpcUa_CreateMonitoredItemsResponse& response)
    {
        const auto found = m_subscriptions.find(request.SubscriptionId);
        if (found == m_subscriptions.end())
            return OpcUa_BadSubscriptionIdInvalid;
        UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(request.NoOfItemsToCreate));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_MonitoredItemCreateRequest& one = request.ItemsToCreate[i];
            if (m_isFaulty && chance(10)) {
                results[i].StatusCode = OpcUa_BadTooManyMonitoredItems;
                continue;
            }
            results[i].MonitoredItemId = ++m_last;
            found->second[m_last] = {one.RequestedParameters.ClientHandle,
                                     UaNodeId(one.ItemToMonitor.NodeId).toString().toStdString(),
                                     one.RequestedParameters.SamplingInterval,
                                     static_cast<int>(one.MonitoringMode)};
        }
        answer(results, response);
        return OpcUa_Good;
    }
    template <typename Id, typename Change>
    OpcUa_StatusCode changeItem(OpcUa_UInt32 subscription, Id id, const Change& change)
    {
        const auto found = m_subscriptions[subscription].find(id);
        if (found == m_subscriptions[subscription].end())
            return OpcUa_BadMonitoredItemIdInvalid;
        change(found->second);
        return OpcUa_Good;
    }
    OpcUa_StatusCode modifyItems(const OpcUa_ModifyMonitoredItemsRequest& request,
                                 OpcUa_ModifyMonitoredItemsResponse& response)
    {
        if (!m_subscriptions.contains(request.SubscriptionId))
            return OpcUa_BadSubscriptionIdInvalid;
        UaMonitoredItemModifyResults results(static_cast<OpcUa_UInt32>(request.NoOfItemsToModify));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_MonitoredItemModifyRequest& one = request.ItemsToModify[i];
            results[i].StatusCode =
                changeItem(request.SubscriptionId, one.MonitoredItemId,
                           [&one](Item& item) { item.interval = one.RequestedParameters.SamplingInterval; });
        }
        answer(results, response);
        return OpcUa_Good;
    }
    OpcUa_StatusCode setMode(const OpcUa_SetMonitoringModeRequest& request,
                             OpcUa_SetMonitoringModeResponse& response)
    {
        if (!m_subscriptions.contains(request.SubscriptionId))
            return OpcUa_BadSubscriptionIdInvalid;
        UaStatusCodeArray results(static_cast<OpcUa_UInt32>(request.NoOfMonitoredItemIds));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
            results[i] =
                changeItem(request.SubscriptionId, request.MonitoredItemIds[i],
                           [&request](Item& item) { item.mode = static_cast<int>(request.MonitoringMode); });
        answer(results, response);
        return OpcUa_Good;
    }
    OpcUa_StatusCode deleteItems(const OpcUa_DeleteMonitoredItemsRequest& request,
                                 OpcUa_DeleteMonitoredItemsResponse& response)
    {
        if (!m_subscriptions.contains(request.SubscriptionId))
            return OpcUa_BadSubscriptionIdInvalid;
        UaStatusCodeArray results(static_cast<OpcUa_UInt32>(request.NoOfMonitoredItemIds));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
            m_subscriptions[request.SubscriptionId].erase(request.MonitoredItemIds[i]);
        answer(results, response);
        return OpcUa_Good;
    }

    std::mutex m_mutex;
    std::mt19937 m_random;
    std::map<OpcUa_UInt32, Items> m_subscriptions;
    OpcUa_UInt32 m_last = 0;
    bool m_isFaulty = true;
};

class MonitoringWalk : public MonitoringTest, public testing::WithParamInterface<unsigned int>
{
protected:
    void SetUp() override
    {
        info.maxOperationsPerServiceCall = 7;
        MonitoringTest::SetUp();
        faulty.install(stack);
    }

    unsigned int below(unsigned int bound) { return static_cast<unsigned int>(random() % bound); }
    ItemSettings someSettings()
    {
        ItemSettings settings;
        settings.subscription.publishingInterval = 100 * (1 + below(3));
        settings.samplingInterval = 10 * (1 + below(5));
        settings.mode = below(3) == 0 ? OpcUa_MonitoringMode_Sampling : OpcUa_MonitoringMode_Reporting;
        return settings;
    }
    Kept keptAs(OpcUa_UInt32 node, OpcUa_UInt16 nameSpace, const ItemSettings& settings)
    {
        return {UaNodeId(node, nameSpace).toString().toStdString(), settings.samplingInterval,
                static_cast<int>(settings.mode)};
    }
    void addSome()
    {
        const ItemSettings settings = someSettings();
        std::vector<monitoring::ItemWish> wishes(1 + below(12));
        for (auto& wish : wishes)
            wish.nodeId = UaNodeId(++lastNode, static_cast<OpcUa_UInt16>(2 + below(2)));
        const std::vector<ItemId> ids = server->add(sink, settings, wishes);
        for (std::size_t i = 0; i < ids.size(); ++i)
            wanted[ids[i]] =
                keptAs(wishes[i].nodeId.identifierNumeric(), wishes[i].nodeId.namespaceIndex(), settings);
    }
    std::vector<ItemId> some()
    {
        std::vector<ItemId> ids;
        for (const auto& [id, kept] : wanted)
            if (below(4) == 0)
                ids.push_back(id);
        return ids;
    }
    void changeSome()
    {
        const ItemSettings settings = someSettings();
        const std::vector<ItemId> ids = some();
        server->modify(ids, settings);
        for (const ItemId id : ids) {
            std::get<1>(wanted[id]) = settings.samplingInterval;
            std::get<2>(wanted[id]) = static_cast<int>(settings.mode);
        }
    }
    void removeSome()
    {
        const std::vector<ItemId> ids = some();
        server->remove(ids);
        for (const ItemId id : ids)
            wanted.erase(id);
    }
    void restart()
    {
        interrupt();
        faulty.forget();
        if (below(2) == 0)
            return replace();
        replace({{0, 0}, {1, 1}, {2, 3}, {3, 2}});
        for (auto& [id, kept] : wanted) {
            char& index = std::get<0>(kept)[3];
            index = index == '2' ? '3' : '2';
        }
    }
    void step()
    {
        const unsigned int kind = below(20);
        if (kind < 6)
            return addSome();
        if (kind < 11)
            return changeSome();
        if (kind < 14)
            return removeSome();
        if (kind == 14)
            return restart();
        if (kind == 15) {
            interrupt();
            return resume();
        }
        stack.ticks += 60'000; // the rest after a failure
    }
    std::multimap<ItemId, Kept> kept()
    {
        std::set<OpcUa_UInt32> ids;
        for (const monitoring::SubscriptionInfo& one : server->subscriptions())
            ids.insert(one.subscriptionId);
        return faulty.keptIn(ids);
    }

    std::mt19937 random{GetParam()};
    FaultyServer faulty{GetParam()};
    OpcUa_UInt32 lastNode = 0;
    std::map<ItemId, Kept> wanted;
};

TEST_P(MonitoringWalk, EndsWithWhatIsWanted)
{
    for (int turn = 0; turn < 60; ++turn) {
        ASSERT_NO_FATAL_FAILURE(step()) << turn;
        for (unsigned int pause = below(3000); pause > 0; --pause)
            std::this_thread::yield();
    }
    faulty.heal();
    const std::multimap<ItemId, Kept> all(wanted.begin(), wanted.end());
    EXPECT_TRUE(waitUntil([&] {
        stack.ticks += 1'000;
        server->retryRefused();
        return kept() == all;
    }));
    EXPECT_THAT(kept(), testing::ContainerEq(all));
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonitoringWalk, testing::Range(1u, 5u));

} // namespace
