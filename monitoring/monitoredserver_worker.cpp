// The thread that asks the server, one call after the other.
#include <monitoring/callfaults.h>
#include <monitoring/monitoredserver_p.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <utility>

namespace monitoring {

namespace {

using UaClientSdk::ServiceSettings;
using UaClientSdk::UaSession;

constexpr OpcUa_UInt64 firstRest = 5'000; // ms
constexpr OpcUa_UInt64 longestRest = 60'000;
constexpr std::chrono::milliseconds restTurn{200}; // the clock may be another than the system's

[[nodiscard]] OpcUa_UInt32 batchSize(const UaSession& session)
{
    OpcUa_UInt32 size = MonitoredServer::maximumBatch;
    for (const OpcUa_UInt32 limit :
         {session.operationLimits().maxMonitoredItemsPerCall, session.maxOperationsPerServiceCall()})
        if (limit > 0)
            size = std::min(size, limit);
    return size;
}

// In as many bits as an item has for it.
[[nodiscard]] unsigned int modeOf(OpcUa_MonitoringMode mode)
{
    return static_cast<unsigned int>(mode) & 3u;
}

// Out of memory leaves a null value, which the server refuses.
void fillParameters(const ItemSettings& settings, ItemId id, OpcUa_MonitoringParameters& parameters)
{
    parameters.ClientHandle = id;
    parameters.SamplingInterval = settings.samplingInterval;
    parameters.QueueSize = settings.queueSize;
    parameters.DiscardOldest = settings.discardOldest ? OpcUa_True : OpcUa_False;
    static_cast<void>(settings.filter.copyTo(&parameters.Filter));
}

} // namespace

void MonitoredServerPrivate::run()
{
    for (;;) {
        Job job;
        {
            News news;
            Lock lock(m_mutex);
            m_current = nullptr;
            m_idle.notify_all();
            if (m_end)
                return;
            job = nextJobLocked(news);
            if (job.group == nullptr && isRestingLocked())
                m_work.wait_for(lock, restTurn);
            else if (job.group == nullptr)
                m_work.wait(lock);
            m_current = job.group;
        }
        if (job.group != nullptr)
            (this->*job.work)(*job.group);
    }
}

bool MonitoredServerPrivate::isRestingLocked() const
{
    assertLocked(m_mutex);
    return m_online && m_restUntil != 0 && OpcUa_GetTickCount() < m_restUntil;
}

void MonitoredServerPrivate::restLocked(OpcUa_UInt64 link)
{
    assertLocked(m_mutex);
    if (link != m_link)
        return;
    m_restTime = std::clamp(m_restTime * 2, firstRest, longestRest);
    m_restUntil = OpcUa_GetTickCount() + m_restTime;
}

MonitoredServerPrivate::Job MonitoredServerPrivate::nextJobLocked(News& news)
{
    assertLocked(m_mutex);
    using Self = MonitoredServerPrivate;
    if (!m_online || m_session == nullptr || isRestingLocked())
        return {};
    for (const auto& one : m_groups) {
        ItemGroup* const group = one.get();
        if (group == nullptr)
            continue;
        if (group->isUncertain)
            voidGroupLocked(news, *group);
        if (group->subscription != nullptr && (group->isVoid || group->items == 0))
            return {&Self::deleteSubscription, group};
        if (group->items == 0)
            continue;
        if (group->subscription == nullptr && !group->toCreate.empty())
            return {&Self::createSubscription, group};
        if (!group->toDelete.empty())
            return {&Self::deleteItems, group};
        if (!group->toCreate.empty())
            return {&Self::createItems, group};
        if (!group->toModify.empty())
            return {&Self::modifyItems, group};
    }
    return {};
}

MonitoredServerPrivate::Portion MonitoredServerPrivate::portionOfLocked(const ItemGroup& group) const
{
    assertLocked(m_mutex);
    Portion portion;
    portion.subscription = group.subscription;
    portion.session = m_session;
    portion.epoch = group.epoch;
    portion.link = m_link;
    return portion;
}

// ---- subscriptions

void MonitoredServerPrivate::deleteSubscription(ItemGroup& group)
{
    Portion portion;
    {
        News news;
        const Lock lock(m_mutex);
        if (!group.isVoid && group.items > 0)
            return; // wanted again
        voidGroupLocked(news, group);
        portion = portionOfLocked(group);
        group.subscription = nullptr;
        group.subscriptionId = 0;
        group.isVoid = false;
    }
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    // what the server keeps against our will, the session deletes when it shows up
    static_cast<void>(portion.session->deleteSubscription(settings, &portion.subscription));
}

void MonitoredServerPrivate::createSubscription(ItemGroup& group)
{
    Portion portion;
    UaClientSdk::SubscriptionSettings wanted;
    {
        const Lock lock(m_mutex);
        portion = portionOfLocked(group);
        wanted.publishingInterval = group.requested.publishingInterval;
        wanted.lifetimeCount = group.requested.lifetimeCount;
        wanted.priority = group.requested.priority;
    }
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    UaClientSdk::UaSubscription* subscription = nullptr;
    const UaStatus status =
        portion.session->createSubscription(settings, &group, group.index + 1u, wanted, true, &subscription);
    SubscriptionWish revised;
    OpcUa_UInt32 id = 0, keepAliveCount = 0;
    if (status.isNotBad()) {
        revised = {subscription->publishingInterval(), subscription->lifetimeCount(),
                   subscription->priority()};
        id = subscription->subscriptionId();
        keepAliveCount = subscription->maxKeepAliveCount();
    }
    News news;
    const Lock lock(m_mutex);
    if (status.isNotBad()) {
        group.subscription = subscription;
        group.subscriptionId = id;
        group.revised = revised;
        group.keepAliveCount = keepAliveCount;
        group.isVoid = portion.epoch != group.epoch; // made in a session that is gone
    } else if (isPassingFault(status.statusCode())) {
        restLocked(portion.link);
    } else if (portion.epoch == group.epoch) { // else others wait for it now
        refuseGroupLocked(news, group, status.statusCode());
        group.toCreate.clear();
    }
}

// ---- creating items

// Takes up to so many from the list, of which all want the same timestamps; the others stay.
MonitoredServerPrivate::Portion
MonitoredServerPrivate::takePortionLocked(ItemGroup& group, std::vector<ItemId>& list, OpcUa_UInt32 limit)
{
    assertLocked(m_mutex);
    Portion portion = portionOfLocked(group);
    const bool modified = &list == &group.toModify;
    const std::size_t enough = std::min(limit, m_portionLimit);
    std::vector<ItemId> left;
    auto next = list.begin();
    for (; next != list.end() && portion.ids.size() < enough; ++next) {
        const ItemId id = *next;
        Item* const item = m_items.find(id);
        if (item == nullptr || !isDue(*item, group, modified))
            continue;
        if (portion.ids.empty())
            portion.timestamps = item->settings->timestamps;
        if (portion.timestamps != item->settings->timestamps) {
            left.push_back(id);
            continue;
        }
        portion.ids.push_back(id);
        portion.settings.push_back(item->settings);
        item->isModified = false;
        if (!modified)
            item->phase = Phase::Creating; // so that it is not taken again when it is named twice
    }
    left.insert(left.end(), next, list.end());
    list = std::move(left);
    return portion;
}

bool MonitoredServerPrivate::isDue(const Item& item, const ItemGroup& group, bool modified)
{
    return item.group == group.index &&
           (modified ? item.phase == Phase::Watched && item.isModified : item.phase == Phase::Waiting);
}

UaMonitoredItemCreateRequests MonitoredServerPrivate::makeRequestsLocked(const Portion& portion)
{
    assertLocked(m_mutex);
    UaMonitoredItemCreateRequests requests(static_cast<OpcUa_UInt32>(portion.ids.size()));
    for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
        const Item& item = *m_items.find(portion.ids[i]);
        OpcUa_MonitoredItemCreateRequest& request = requests[i];
        static_cast<void>(item.nodeId.copyTo(&request.ItemToMonitor.NodeId)); // as in fillParameters
        request.ItemToMonitor.AttributeId = item.attributeId;
        if (item.part) {
            static_cast<void>(item.part->indexRange.copyTo(&request.ItemToMonitor.IndexRange));
            static_cast<void>(item.part->dataEncoding.copyTo(&request.ItemToMonitor.DataEncoding));
        }
        request.MonitoringMode = item.settings->mode;
        fillParameters(*item.settings, portion.ids[i], request.RequestedParameters);
    }
    return requests;
}

void MonitoredServerPrivate::createItems(ItemGroup& group)
{
    const OpcUa_UInt32 limit = batchSize(*m_session);
    Portion portion;
    UaMonitoredItemCreateRequests requests;
    {
        const Lock lock(m_mutex);
        portion = takePortionLocked(group, group.toCreate, limit);
        requests = makeRequestsLocked(portion);
    }
    if (portion.ids.empty())
        return;
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnostics;
    const UaStatus status = portion.subscription->createMonitoredItems(settings, portion.timestamps, requests,
                                                                       results, diagnostics);
    applyCreated(group, portion, status, results);
}

void MonitoredServerPrivate::applyCreated(ItemGroup& group, const Portion& portion, const UaStatus& status,
                                          const UaMonitoredItemCreateResults& results)
{
    News news;
    const Lock lock(m_mutex);
    const std::size_t known = std::min<std::size_t>(results.length(), portion.ids.size());
    for (std::size_t i = 0; i < known; ++i)
        applyCreatedLocked(news, group, portion, i, results[static_cast<OpcUa_UInt32>(i)]);
    if (known < portion.ids.size())
        applyFaultLocked(news, group, portion, known,
                         status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse));
    else
        m_restTime = 0;
    dropUnusedSinksLocked(news);
}

void MonitoredServerPrivate::applyCreatedLocked(News& news, ItemGroup& group, const Portion& portion,
                                                std::size_t place,
                                                const OpcUa_MonitoredItemCreateResult& result)
{
    assertLocked(m_mutex);
    const ItemId id = portion.ids[place];
    Item* const item = m_items.find(id);
    const bool isCurrent = portion.epoch == group.epoch;
    if (item == nullptr)
        return;
    if (item->phase == Phase::Leaving) {
        if (isCurrent && OpcUa_IsNotBad(result.StatusCode))
            group.toDelete.push_back(result.MonitoredItemId);
        return freeItemLocked(id, *item);
    }
    if (!isCurrent || item->phase != Phase::Creating)
        return; // to be created again
    if (OpcUa_IsBad(result.StatusCode))
        return refuseLocked(news, id, *item, result.StatusCode);
    item->phase = Phase::Watched;
    item->answer = result.MonitoredItemId;
    item->revisedSamplingInterval = result.RevisedSamplingInterval;
    item->revisedQueueSize = result.RevisedQueueSize;
    item->mode = modeOf(portion.settings[place]->mode) & 3u;
    tellLocked(news, id, *item);
    if (item->settings.get() != portion.settings[place].get())
        applySettingsLocked(news, id, *item); // changed during the call
}

void MonitoredServerPrivate::applyFaultLocked(News& news, ItemGroup& group, const Portion& portion,
                                              std::size_t first, const UaStatus& status)
{
    assertLocked(m_mutex);
    const bool isPassing = isPassingFault(status.statusCode());
    const bool isCurrent = portion.epoch == group.epoch;
    const std::size_t count = portion.ids.size() - first;
    const bool isShrunk = count > 1 && isTooMuchAtOnce(status.statusCode());
    const bool isLost = status.statusCode() == OpcUa_BadSubscriptionIdInvalid;
    for (std::size_t i = first; i < portion.ids.size(); ++i) {
        Item* const item = m_items.find(portion.ids[i]);
        if (item != nullptr && item->phase == Phase::Leaving)
            freeItemLocked(portion.ids[i], *item);
        else if (item == nullptr || !isCurrent || item->phase != Phase::Creating)
            continue;
        else if (isPassing || isShrunk || isLost)
            waitAgainLocked(news, portion.ids[i], *item);
        else
            refuseLocked(news, portion.ids[i], *item, status.statusCode());
    }
    if (isCurrent && (isPassing || isUnreadableAnswer(status.statusCode())))
        group.isUncertain = true; // the server may have them, and must not have them twice
    if (isShrunk && portion.session == m_session)
        m_portionLimit = static_cast<OpcUa_UInt32>(count / 2);
    if (isPassing)
        restLocked(portion.link);
    if (isCurrent && isLost)
        loseLocked(news, group, status);
}

// ---- changing and deleting items

void MonitoredServerPrivate::modifyItems(ItemGroup& group)
{
    const OpcUa_UInt32 limit = batchSize(*m_session);
    Portion portion;
    UaMonitoredItemModifyRequests requests;
    {
        const Lock lock(m_mutex);
        portion = takePortionLocked(group, group.toModify, limit);
        requests = UaMonitoredItemModifyRequests(static_cast<OpcUa_UInt32>(portion.ids.size()));
        for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
            requests[i].MonitoredItemId = m_items.find(portion.ids[i])->answer;
            fillParameters(*portion.settings[i], portion.ids[i], requests[i].RequestedParameters);
        }
    }
    if (portion.ids.empty())
        return;
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    UaMonitoredItemModifyResults results;
    UaDiagnosticInfos diagnostics;
    const UaStatus status = portion.subscription->modifyMonitoredItems(settings, portion.timestamps, requests,
                                                                       results, diagnostics);
    applyModified(group, portion, status, results);
    setModes(group, portion);
}

void MonitoredServerPrivate::applyModified(ItemGroup& group, const Portion& portion, const UaStatus& status,
                                           const UaMonitoredItemModifyResults& results)
{
    News news;
    const Lock lock(m_mutex);
    if (portion.epoch != group.epoch)
        return;
    const bool isPassing = status.isBad() && isPassingFault(status.statusCode());
    for (OpcUa_UInt32 i = 0; i < portion.ids.size(); ++i) {
        Item* const item = m_items.find(portion.ids[i]);
        if (item == nullptr || item->phase != Phase::Watched || item->group != group.index)
            continue;
        OpcUa_StatusCode result = status.isBad() ? status.statusCode() : OpcUa_BadUnknownResponse;
        if (i < results.length()) {
            result = results[i].StatusCode;
            if (OpcUa_IsNotBad(results[i].StatusCode)) {
                item->revisedSamplingInterval = results[i].RevisedSamplingInterval;
                item->revisedQueueSize = results[i].RevisedQueueSize;
            }
        } else if (isPassing) {
            applySettingsLocked(news, portion.ids[i], *item); // no harm in doing it twice
            continue;
        }
        tellLocked(news, portion.ids[i], *item, result);
    }
    if (isPassing)
        restLocked(portion.link);
    if (status.statusCode() == OpcUa_BadSubscriptionIdInvalid)
        loseLocked(news, group, status);
}

void MonitoredServerPrivate::setModes(ItemGroup& group, const Portion& portion)
{
    for (const OpcUa_MonitoringMode mode :
         {OpcUa_MonitoringMode_Disabled, OpcUa_MonitoringMode_Sampling, OpcUa_MonitoringMode_Reporting})
        setMode(group, portion, mode);
}

void MonitoredServerPrivate::setMode(ItemGroup& group, const Portion& portion, OpcUa_MonitoringMode mode)
{
    std::vector<ItemId> ids;
    std::vector<OpcUa_UInt32> theirs;
    {
        const Lock lock(m_mutex);
        if (portion.epoch != group.epoch || group.isVoid)
            return;
        for (std::size_t i = 0; i < portion.ids.size(); ++i) {
            const Item* const item = m_items.find(portion.ids[i]);
            if (item != nullptr && item->phase == Phase::Watched && item->group == group.index &&
                !item->isModified && portion.settings[i]->mode == mode && item->mode != modeOf(mode)) {
                ids.push_back(portion.ids[i]);
                theirs.push_back(item->answer);
            }
        }
    }
    if (ids.empty())
        return;
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    const UaUInt32Array serverIds(static_cast<OpcUa_Int32>(theirs.size()), theirs.data());
    const UaStatus status =
        portion.subscription->setMonitoringMode(settings, mode, serverIds, results, diagnostics);
    News news;
    const Lock lock(m_mutex);
    if (portion.epoch != group.epoch)
        return;
    for (OpcUa_UInt32 i = 0; i < ids.size(); ++i) {
        Item* const item = m_items.find(ids[i]);
        if (item == nullptr || item->phase != Phase::Watched)
            continue;
        const OpcUa_StatusCode result = i < results.length() ? results[i] : status.statusCode();
        if (OpcUa_IsNotBad(result))
            item->mode = modeOf(mode) & 3u;
        else if (isPassingFault(result))
            applySettingsLocked(news, ids[i], *item);
        tellLocked(news, ids[i], *item, result);
    }
    if (status.isBad() && isPassingFault(status.statusCode()))
        restLocked(portion.link);
}

void MonitoredServerPrivate::deleteItems(ItemGroup& group)
{
    const OpcUa_UInt32 limit = batchSize(*m_session);
    Portion portion;
    UaUInt32Array ids;
    {
        const Lock lock(m_mutex);
        portion = portionOfLocked(group);
        const std::size_t count = std::min<std::size_t>(limit, group.toDelete.size());
        const auto first = group.toDelete.end() - static_cast<std::ptrdiff_t>(count);
        ids = UaUInt32Array(static_cast<OpcUa_Int32>(count), std::to_address(first));
        group.toDelete.erase(first, group.toDelete.end());
    }
    if (ids.isEmpty() || portion.subscription == nullptr)
        return;
    ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    const UaStatus status = portion.subscription->deleteMonitoredItems(settings, ids, results, diagnostics);
    if (status.isNotBad() || isUnreadableAnswer(status.statusCode()))
        return; // what the server has no more is as good as deleted
    const Lock lock(m_mutex);
    const bool isPassing = isPassingFault(status.statusCode());
    if (portion.epoch == group.epoch && isPassing)
        group.toDelete.insert(group.toDelete.end(), ids.begin(), ids.end()); // no harm in doing it twice
    else if (portion.epoch == group.epoch)
        group.isUncertain = true; // they go with the subscription
    if (isPassing)
        restLocked(portion.link);
}

} // namespace monitoring
