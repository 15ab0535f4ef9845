// What becomes of items when the connection, the session or a subscription goes.
#include <monitoring/monitoredserver_p.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <unordered_map>
#include <utility>

namespace monitoring {

namespace {

// A server that ends a subscription as often without sending anything in it would do so for ever.
constexpr OpcUa_UInt32 maximumLosses = 3;

} // namespace

void MonitoredServerPrivate::setSession(UaClientSdk::UaSession* session)
{
    std::vector<UaClientSdk::UaSubscription*> old;
    UaClientSdk::UaSession* former = nullptr;
    {
        News news;
        Lock lock(m_mutex);
        m_online = false;
        m_idle.wait(lock, [this] { return m_current == nullptr; });
        former = std::exchange(m_session, session);
        voidAllLocked(news);
        for (const auto& group : m_groups)
            if (group && group->subscription != nullptr)
                old.push_back(group->subscription);
    }
    UaClientSdk::ServiceSettings settings;
    settings.purpose = UaString("Watching values");
    for (UaClientSdk::UaSubscription* subscription : old)
        static_cast<void>(former->deleteSubscription(settings, &subscription)); // it goes with the session
    const Lock lock(m_mutex);
    for (const auto& group : m_groups)
        if (group) {
            group->subscription = nullptr;
            group->subscriptionId = 0;
            group->isVoid = false;
        }
}

void MonitoredServerPrivate::statusChanged(UaClientSdk::UaClient::ServerStatus status,
                                           const NamespaceMap& namespaces)
{
    using UaClientSdk::UaClient;
    News news;
    const Lock lock(m_mutex);
    if (!m_isLinkTold)
        noteLinkLocked(news, status);
    m_online = status == UaClient::Connected;
    if (status == UaClient::Disconnected || status == UaClient::NewSessionCreated)
        voidAllLocked(news);
    if (!namespaces.empty())
        remapLocked(news, namespaces);
    if (m_online) {
        ++m_link;
        m_restUntil = 0;
        m_restTime = 0;
        m_work.notify_all();
    }
}

void MonitoredServerPrivate::takeLoss(ItemGroup& group, const UaStatus& status)
{
    if (!status.isBad() && status.statusCode() != OpcUa_GoodSubscriptionTransferred)
        return;
    News news;
    const Lock lock(m_mutex);
    loseLocked(news, group, status);
    m_work.notify_all();
}

void MonitoredServerPrivate::loseLocked(News& news, ItemGroup& group, const UaStatus& status)
{
    assertLocked(m_mutex);
    if (group.subscription == nullptr || group.isVoid)
        return; // known already
    Incident lost = incident(Incident::Kind::SubscriptionLost);
    lost.status = UaStatusCode(status.statusCode());
    noteLocked(news, group, lost);
    if (m_online && ++group.losses > maximumLosses) {
        group.losses = 0;
        refuseGroupLocked(news, group, status.statusCode());
    }
    voidGroupLocked(news, group);
}

void MonitoredServerPrivate::voidGroupLocked(News& news, ItemGroup& group)
{
    assertLocked(m_mutex);
    ++group.epoch;
    group.isVoid = group.subscription != nullptr;
    group.isUncertain = false;
    group.toCreate.clear();
    group.toModify.clear();
    group.toDelete.clear();
    m_items.forEach([&](ItemId id, Item& item) {
        if (item.group != group.index)
            return;
        if (item.phase == Phase::Watched || item.phase == Phase::Creating)
            waitAgainLocked(news, id, item);
        else if (item.phase == Phase::Waiting)
            group.toCreate.push_back(id);
    });
}

void MonitoredServerPrivate::voidAllLocked(News& news)
{
    assertLocked(m_mutex);
    m_portionLimit = MonitoredServer::maximumBatch;
    for (const auto& group : m_groups)
        if (group) {
            group->losses = 0;
            voidGroupLocked(news, *group);
        }
    m_items.forEach([&](ItemId id, Item& item) { retryLocked(news, id, item); });
}

void MonitoredServerPrivate::refuseGroupLocked(News& news, ItemGroup& group, OpcUa_StatusCode status)
{
    assertLocked(m_mutex);
    m_items.forEach([&](ItemId id, Item& item) {
        if (item.group == group.index && item.phase != Phase::Leaving)
            refuseLocked(news, id, item, status);
    });
}

// ---- namespaces

void MonitoredServerPrivate::remapLocked(News& news, const NamespaceMap& namespaces)
{
    assertLocked(m_mutex);
    // what items share is still shared afterwards
    std::unordered_map<const ItemSettings*, std::pair<UaSharedPtr<ItemSettings>, bool>> remapped;
    const auto remapSettings = [&](UaSharedPtr<ItemSettings>& settings) {
        const auto [found, isNew] = remapped.try_emplace(settings.get());
        if (isNew) {
            ItemSettings changed = *settings;
            OpcUa_ExtensionObject filter;
            OpcUa_ExtensionObject_Initialize(&filter);
            found->second.second =
                OpcUa_IsGood(changed.filter.copyTo(&filter)) && remapFilter(filter, namespaces);
            changed.filter.attach(&filter);
            found->second.first =
                changed.filter == settings->filter ? settings : UaSharedPtr<ItemSettings>::make(changed);
        }
        settings = found->second.first;
        return found->second.second;
    };
    m_items.forEach([&](ItemId id, Item& item) {
        if (item.phase == Phase::Leaving || item.isHomeless)
            return;
        const UaNodeId before = item.nodeId;
        const UaSharedPtr<ItemSettings> requested = item.settings; // keeps the address of what is compared
        const bool isKnown =
            remapSettings(item.settings) & static_cast<int>(remapItemLocked(item, namespaces));
        ItemGroup* const group = groupOf(item);
        const Phase phase = item.phase;
        if (!isKnown) {
            item.isHomeless = true;
            refuseLocked(news, id, item, OpcUa_BadNodeIdUnknown);
        }
        const bool isOther = !isKnown || before != item.nodeId || requested.get() != item.settings.get();
        if (isOther && (phase == Phase::Creating || (isKnown && phase == Phase::Watched)))
            voidGroupLocked(news, *group); // the server has it under its old name
    });
}

bool MonitoredServerPrivate::remapItemLocked(Item& item, const NamespaceMap& namespaces)
{
    assertLocked(m_mutex);
    bool isKnown = remapNodeId(item.nodeId, namespaces);
    if (item.part) {
        OpcUa_UInt16 index = item.part->dataEncoding.namespaceIndex();
        isKnown = remapIndex(index, namespaces) && isKnown;
        item.part->dataEncoding.setNamespaceIndex(index);
    }
    return isKnown;
}

} // namespace monitoring
