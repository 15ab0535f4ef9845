// A scripted server whose items are remembered, and a session of which a MonitoredServer hears.
#pragma once

#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

class MonitoringTest : public SubscriptionReconnect
{
protected:
    using Strings = std::vector<std::string>;

    void SetUp() override
    {
        SubscriptionReconnect::SetUp();
        stack.on(OpcUa_CreateMonitoredItemsRequest_EncodeableType,
                 [this](const void* request, void* response) {
                     return createItems(*static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request),
                                        *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response));
                 });
        stack.on(OpcUa_ModifyMonitoredItemsRequest_EncodeableType,
                 [this](const void* request, void* response) {
                     modifyItems(*static_cast<const OpcUa_ModifyMonitoredItemsRequest*>(request),
                                 *static_cast<OpcUa_ModifyMonitoredItemsResponse*>(response));
                     return static_cast<OpcUa_StatusCode>(OpcUa_Good);
                 });
        stack.on(OpcUa_SetMonitoringModeRequest_EncodeableType, [this](const void* request, void* response) {
            const auto& asked = *static_cast<const OpcUa_SetMonitoringModeRequest*>(request);
            auto& answer = *static_cast<OpcUa_SetMonitoringModeResponse*>(response);
            note("mode " + std::to_string(asked.MonitoringMode), asked.MonitoredItemIds,
                 asked.NoOfMonitoredItemIds, answer.NoOfResults, answer.Results);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        stack.on(OpcUa_DeleteMonitoredItemsRequest_EncodeableType,
                 [this](const void* request, void* response) {
                     const auto& asked = *static_cast<const OpcUa_DeleteMonitoredItemsRequest*>(request);
                     auto& answer = *static_cast<OpcUa_DeleteMonitoredItemsResponse*>(response);
                     note("delete", asked.MonitoredItemIds, asked.NoOfMonitoredItemIds, answer.NoOfResults,
                          answer.Results);
                     return static_cast<OpcUa_StatusCode>(OpcUa_Good);
                 });
        server->setSession(&session);
        server->statusChanged(UaClientSdk::UaClient::Connected);
    }
    void TearDown() override
    {
        SubscriptionReconnect::TearDown(); // as an owner does: the session ends first
        if (server)
            server->setSession(nullptr);
    }

    // ---- the tool

    static std::vector<monitoring::ItemWish> nodes(std::initializer_list<OpcUa_UInt32> numbers)
    {
        std::vector<monitoring::ItemWish> wishes;
        for (const OpcUa_UInt32 number : numbers) {
            wishes.emplace_back().nodeId = UaNodeId(number, 2);
            wishes.back().key = number;
        }
        return wishes;
    }
    std::vector<monitoring::ItemId> add(std::initializer_list<OpcUa_UInt32> numbers,
                                        const monitoring::ItemSettings& settings = {})
    {
        return server->add(sink, settings, nodes(numbers));
    }
    bool waitForState(const std::vector<monitoring::ItemId>& ids, monitoring::ItemState state)
    {
        return waitUntil([&] {
            return std::all_of(
                ids.begin(), ids.end(),
                [&](monitoring::ItemId id) {
                    const auto known = server->info(id);
                    return known && known->now.state == state;
                });
        });
    }
    bool waitForWatched(const std::vector<monitoring::ItemId>& ids)
    {
        return waitForState(ids, monitoring::ItemState::Watched);
    }
    std::string statusOf(monitoring::ItemId id)
    {
        return server->info(id)->now.status.toString().toStdString();
    }
    bool waitForCount(monitoring::ItemId id, OpcUa_UInt64 count)
    {
        return waitUntil([&] { return server->info(id)->count >= count; });
    }

    // ---- the owner of the session

    void interrupt()
    {
        breakLink();
        server->statusChanged(UaClientSdk::UaClient::ConnectionErrorApiReconnect);
    }
    void resume()
    {
        mendLink();
        server->statusChanged(UaClientSdk::UaClient::Connected);
    }
    void replace(const monitoring::NamespaceMap& namespaces = {})
    {
        mendLink(true);
        server->statusChanged(UaClientSdk::UaClient::NewSessionCreated);
        server->statusChanged(UaClientSdk::UaClient::Connected, namespaces);
    }

    // ---- the server

    /// What it was asked for: "create 1: ns=2;i=5 ns=2;i=6", "modify: 3=250", "mode 2: 3", "delete: 3".
    Strings asked()
    {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }
    bool waitForAsked(const Strings& wanted)
    {
        return waitUntil([&] { return asked() == wanted; });
    }
    int created() { return stack.calls(OpcUa_CreateMonitoredItemsRequest_EncodeableType); }
    void refuse(const std::string& node, OpcUa_StatusCode status)
    {
        const std::lock_guard lock(m_mutex);
        m_refused[node] = status;
    }
    void accept(const std::string& node)
    {
        const std::lock_guard lock(m_mutex);
        m_refused.erase(node);
    }
    /// Runs when items are created, before the answer.
    std::function<void()> whenCreating;
    std::atomic<OpcUa_StatusCode> modifyResult{OpcUa_Good};
    std::thread::id creator; ///< where the latest items were created

    std::shared_ptr<monitoring::LatestSink> sink = std::make_shared<monitoring::LatestSink>(
        monitoring::Sink::Ready(), std::make_shared<monitoring::HandOverPacer>([] {
            return static_cast<OpcUa_UInt64>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                                 std::chrono::steady_clock::now().time_since_epoch())
                                                 .count());
        }));
    std::unique_ptr<monitoring::MonitoredServer> server = std::make_unique<monitoring::MonitoredServer>();

private:
    OpcUa_StatusCode createItems(const OpcUa_CreateMonitoredItemsRequest& request,
                                 OpcUa_CreateMonitoredItemsResponse& response)
    {
        if (whenCreating)
            whenCreating();
        UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(request.NoOfItemsToCreate));
        std::ostringstream line;
        line << "create " << request.SubscriptionId << ":";
        const std::lock_guard lock(m_mutex);
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_MonitoredItemCreateRequest& one = request.ItemsToCreate[i];
            const std::string node = UaNodeId(one.ItemToMonitor.NodeId).toString().toStdString();
            line << ' ' << node;
            const auto refused = m_refused.find(node);
            results[i].StatusCode = refused == m_refused.end() ? OpcUa_Good : refused->second;
            results[i].MonitoredItemId = ++m_lastItem;
            results[i].RevisedSamplingInterval = one.RequestedParameters.SamplingInterval * 2;
            results[i].RevisedQueueSize = one.RequestedParameters.QueueSize;
        }
        results.detach(&response.NoOfResults, &response.Results);
        m_asked.push_back(line.str());
        creator = std::this_thread::get_id();
        return OpcUa_Good;
    }
    void modifyItems(const OpcUa_ModifyMonitoredItemsRequest& request,
                     OpcUa_ModifyMonitoredItemsResponse& response)
    {
        UaMonitoredItemModifyResults results(static_cast<OpcUa_UInt32>(request.NoOfItemsToModify));
        std::ostringstream line;
        line << "modify:";
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_MonitoredItemModifyRequest& one = request.ItemsToModify[i];
            line << ' ' << one.MonitoredItemId << '=' << one.RequestedParameters.SamplingInterval;
            results[i].StatusCode = modifyResult;
            results[i].RevisedSamplingInterval = one.RequestedParameters.SamplingInterval * 2;
            results[i].RevisedQueueSize = one.RequestedParameters.QueueSize;
        }
        results.detach(&response.NoOfResults, &response.Results);
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(line.str());
    }
    void note(const std::string& what, const OpcUa_UInt32* ids, OpcUa_Int32 count, OpcUa_Int32& resultCount,
              OpcUa_StatusCode*& results)
    {
        std::ostringstream line;
        line << what << ':';
        for (OpcUa_Int32 i = 0; i < count; ++i)
            line << ' ' << ids[i];
        UaStatusCodeArray(static_cast<OpcUa_UInt32>(count)).detach(&resultCount, &results);
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(line.str());
    }

    std::mutex m_mutex;
    Strings m_asked;
    std::map<std::string, OpcUa_StatusCode> m_refused;
    OpcUa_UInt32 m_lastItem = 0;
};
