#include <monitoring/keptitems.h>

#include <monitoring/callfaults.h>

#include <algorithm>
#include <utility>

namespace monitoring {

using UaClientSdk::ServiceSettings;
using UaClientSdk::UaSubscription;

void KeptItems::add(const OpcUa_MonitoredItemCreateRequest& request)
{
    Entry& entry = m_entries[request.RequestedParameters.ClientHandle];
    entry = Entry();
    entry.request = UaMonitoredItemCreateRequests(OpcUa_Int32(1), &request);
}

UaStatus KeptItems::remove(UaSubscription* subscription, ServiceSettings& settings,
                           const std::vector<OpcUa_UInt32>& clientHandles)
{
    std::vector<OpcUa_UInt32> ids;
    for (const OpcUa_UInt32 handle : clientHandles) {
        if (const Entry* const entry = created(handle))
            ids.push_back(entry->result.MonitoredItemId);
        m_entries.erase(handle);
    }
    if (subscription == nullptr || ids.empty())
        return UaStatus();
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    return subscription->deleteMonitoredItems(
        settings, UaUInt32Array(static_cast<OpcUa_Int32>(ids.size()), ids.data()), results, diagnostics);
}

UaStatus KeptItems::create(UaSubscription& subscription, ServiceSettings& settings,
                           OpcUa_TimestampsToReturn timestamps)
{
    UaMonitoredItemCreateRequests requests;
    std::vector<Entry*> entries;
    for (auto& [handle, entry] : m_entries)
        if (!entry.isCreated && !entry.isRefused) {
            if (!requests.append(1, entry.request.rawData()))
                return UaStatus(OpcUa_BadOutOfMemory);
            entries.push_back(&entry);
        }
    if (entries.empty())
        return UaStatus();
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnostics;
    const UaStatus status =
        subscription.createMonitoredItems(settings, timestamps, requests, results, diagnostics);
    for (OpcUa_UInt32 i = 0; i < std::min<std::size_t>(results.length(), entries.size()); ++i) {
        Entry& entry = *entries[i];
        entry.isRefused = OpcUa_IsBad(results[i].StatusCode);
        entry.isCreated = !entry.isRefused;
        entry.result = results[i];
        entry.filterResult = UaExtensionObject(results[i].FilterResult);
        OpcUa_ExtensionObject_Initialize(&entry.result.FilterResult); // still the array's
    }
    if (results.length() < entries.size() &&
        (isPassingFault(status.statusCode()) || isUnreadableAnswer(status.statusCode())))
        m_mustReplace = true;
    return status;
}

UaStatus KeptItems::modify(UaSubscription& subscription, ServiceSettings& settings,
                           OpcUa_TimestampsToReturn timestamps, const std::vector<Change>& changes,
                           std::vector<OpcUa_StatusCode>& statuses)
{
    UaMonitoredItemModifyRequests requests;
    std::vector<std::size_t> places;
    statuses.assign(changes.size(), OpcUa_Good);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (!created(changes[i].clientHandle)) {
            m_entries.erase(changes[i].clientHandle);
            add(changes[i].request[0]);
            continue;
        }
        UaMonitoredItemModifyRequests one(1u);
        one[0].MonitoredItemId = monitoredItemId(changes[i].clientHandle);
        UaMonitoredItemCreateRequests copy(changes[i].request);
        std::swap(one[0].RequestedParameters, copy[0].RequestedParameters);
        if (!requests.appendMoved(std::move(one)))
            return UaStatus(OpcUa_BadOutOfMemory);
        places.push_back(i);
    }
    if (places.empty())
        return UaStatus();
    UaMonitoredItemModifyResults results;
    UaDiagnosticInfos diagnostics;
    const UaStatus status =
        subscription.modifyMonitoredItems(settings, timestamps, requests, results, diagnostics);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool isAnswered = i < results.length();
        OpcUa_StatusCode& itemStatus = statuses[places[i]];
        itemStatus = isAnswered ? results[static_cast<OpcUa_UInt32>(i)].StatusCode : status.statusCode();
        Entry& entry = m_entries[changes[places[i]].clientHandle];
        if (isAnswered)
            entry.filterResult = UaExtensionObject(results[static_cast<OpcUa_UInt32>(i)].FilterResult);
        if (OpcUa_IsBad(itemStatus))
            continue;
        entry.request = changes[places[i]].request;
        entry.result.RevisedQueueSize = results[static_cast<OpcUa_UInt32>(i)].RevisedQueueSize;
        entry.result.RevisedSamplingInterval = results[static_cast<OpcUa_UInt32>(i)].RevisedSamplingInterval;
        auto node = m_entries.extract(changes[places[i]].clientHandle);
        node.key() = changes[places[i]].request[0].RequestedParameters.ClientHandle;
        m_entries.insert(std::move(node));
    }
    return status;
}

void KeptItems::subscriptionReplaced()
{
    m_mustReplace = false;
    for (auto& [handle, entry] : m_entries) {
        entry.isCreated = false;
        entry.isRefused = entry.isHomeless;
    }
}

void KeptItems::remap(const NamespaceMap& namespaces)
{
    for (auto& [handle, entry] : m_entries) {
        if (entry.isHomeless || remapRequest(entry.request[0], namespaces))
            continue;
        entry.isHomeless = true;
        entry.isRefused = true;
        entry.isCreated = false;
        entry.result = {};
        entry.result.StatusCode = OpcUa_BadNodeIdUnknown;
    }
}

void KeptItems::retryRefused()
{
    for (auto& [handle, entry] : m_entries)
        entry.isRefused = entry.isHomeless;
}

std::vector<KeptItems::Refused> KeptItems::refused() const
{
    std::vector<Refused> list;
    for (const auto& [handle, entry] : m_entries)
        if (entry.isRefused)
            list.push_back({handle, entry.result.StatusCode});
    return list;
}

const KeptItems::Entry* KeptItems::created(OpcUa_UInt32 clientHandle) const
{
    const auto found = m_entries.find(clientHandle);
    return found != m_entries.end() && found->second.isCreated ? &found->second : nullptr;
}

OpcUa_UInt32 KeptItems::monitoredItemId(OpcUa_UInt32 clientHandle) const
{
    const Entry* const entry = created(clientHandle);
    return entry != nullptr ? entry->result.MonitoredItemId : 0;
}

const OpcUa_MonitoredItemCreateResult* KeptItems::result(OpcUa_UInt32 clientHandle) const
{
    const Entry* const entry = created(clientHandle);
    return entry != nullptr ? &entry->result : nullptr;
}

UaExtensionObject KeptItems::filterResult(OpcUa_UInt32 clientHandle) const
{
    const auto found = m_entries.find(clientHandle);
    return found != m_entries.end() ? found->second.filterResult : UaExtensionObject();
}

} // namespace monitoring
