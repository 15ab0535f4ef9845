// What tools ask of MonitoredServer, and what comes for them.
#include <monitoring/monitoredserver_p.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatuscode.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace monitoring {

namespace {

[[nodiscard]] ItemState stateOf(Phase phase)
{
    switch (phase) {
    case Phase::Watched:
        return ItemState::Watched;
    case Phase::Refused:
        return ItemState::Refused;
    case Phase::Waiting:
    case Phase::Creating:
        return ItemState::Waiting;
    case Phase::Free:
    case Phase::Leaving:
    case Phase::Ended:
        break;
    }
    return ItemState::Ended;
}

[[nodiscard]] ItemChange changeOf(const Item& item, OpcUa_StatusCode status)
{
    const UaStatusCode why(item.phase == Phase::Refused ? item.answer : status);
    return {item.key, stateOf(item.phase), why, item.revisedSamplingInterval, item.revisedQueueSize};
}

[[nodiscard]] OpcUa_UInt64 nextNumber()
{
    static std::atomic<OpcUa_UInt32> last{0};
    return ++last;
}

} // namespace

MonitoredServerPrivate::MonitoredServerPrivate() : m_number(nextNumber()), m_worker([this] { run(); }) {}

void MonitoredServerPrivate::close()
{
    if (!m_worker.joinable())
        return;
    setSession(nullptr);
    {
        const Lock lock(m_mutex);
        m_end = true;
        m_work.notify_all();
    }
    m_worker.join();
    News news;
    const Lock lock(m_mutex);
    m_items.forEach([&](ItemId id, Item& item) {
        if (item.phase == Phase::Leaving)
            freeItemLocked(id, item);
        else if (item.phase != Phase::Ended) // added since then
            endItemLocked(news, id, item);
    });
    dropUnusedSinksLocked(news);
}

// ---- asked by tools

std::vector<ItemId> MonitoredServerPrivate::add(const std::shared_ptr<Sink>& sink,
                                                const ItemSettings& settings,
                                                std::span<const ItemWish> wishes)
{
    std::vector<ItemId> ids;
    ids.reserve(wishes.size());
    const auto shared = UaSharedPtr<ItemSettings>::make(settings);
    News news;
    const Lock lock(m_mutex);
    const unsigned short use = useSinkLocked(sink);
    for (const ItemWish& wish : wishes) {
        ItemId id = 0;
        Item* const item = m_items.add(id);
        ids.push_back(id);
        if (item == nullptr)
            continue;
        item->nodeId = wish.nodeId;
        item->attributeId = static_cast<unsigned char>(std::min(wish.attributeId, 0xFFu));
        item->key = wish.key;
        item->settings = shared;
        item->sink = use;
        ++m_sinks[use].items;
        if (!wish.indexRange.isEmpty() || !wish.dataEncoding.isNull())
            item->part = std::make_unique<ItemPart>(ItemPart{wish.indexRange, wish.dataEncoding});
        if (m_end)
            endItemLocked(news, id, *item);
        else
            enterGroupLocked(news, id, *item);
    }
    m_work.notify_all();
    return ids;
}

void MonitoredServerPrivate::modify(std::span<const ItemId> ids, const ItemSettings& settings)
{
    const auto shared = UaSharedPtr<ItemSettings>::make(settings);
    News news;
    const Lock lock(m_mutex);
    for (const ItemId id : ids) {
        Item* const item = m_items.find(id);
        if (item == nullptr || item->phase == Phase::Leaving || item->phase == Phase::Ended)
            continue;
        item->settings = shared;
        if (item->phase != Phase::Creating) // else when it is known what has become of it
            applySettingsLocked(news, id, *item);
    }
    m_work.notify_all();
}

void MonitoredServerPrivate::remove(std::span<const ItemId> ids)
{
    News news;
    const Lock lock(m_mutex);
    std::vector<std::vector<SinkItem>> dropped(m_sinks.size());
    std::vector<ItemId> present;
    for (const ItemId id : ids) {
        Item* const item = m_items.find(id);
        if (item == nullptr || item->phase == Phase::Leaving)
            continue;
        dropped[item->sink].push_back(sinkItemOf(id, *item));
        present.push_back(id);
    }
    for (std::size_t use = 0; use < dropped.size(); ++use)
        if (!dropped[use].empty())
            news.filling.drop(*m_sinks[use].sink, dropped[use]);
    for (const ItemId id : present)
        if (Item* const item = m_items.find(id)) // none when it was named twice
            removeItemLocked(id, *item);
    dropUnusedSinksLocked(news);
    m_work.notify_all();
}

void MonitoredServerPrivate::retry(std::span<const ItemId> ids)
{
    News news;
    const Lock lock(m_mutex);
    for (const ItemId id : ids)
        if (Item* const item = m_items.find(id))
            retryLocked(news, id, *item);
    m_work.notify_all();
}

void MonitoredServerPrivate::retryRefused()
{
    News news;
    const Lock lock(m_mutex);
    m_items.forEach([&](ItemId id, Item& item) { retryLocked(news, id, item); });
    m_work.notify_all();
}

std::optional<ItemInfo> MonitoredServerPrivate::info(ItemId id)
{
    const Lock lock(m_mutex);
    const Item* const item = m_items.find(id);
    if (item == nullptr || item->phase == Phase::Leaving)
        return std::nullopt;
    ItemInfo info;
    info.wish.nodeId = item->nodeId;
    info.wish.attributeId = item->attributeId;
    info.wish.key = item->key;
    if (item->part) {
        info.wish.indexRange = item->part->indexRange;
        info.wish.dataEncoding = item->part->dataEncoding;
    }
    info.requested = *item->settings;
    info.now = changeOf(*item, OpcUa_Good);
    info.count = item->count;
    info.overflows = item->overflows;
    const ItemGroup* const group = groupOf(*item);
    info.gaps = item->gapsBefore + (group != nullptr ? group->gaps : 0);
    info.lastHeard = UaDateTime(item->lastHeard);
    return info;
}

std::vector<SubscriptionInfo> MonitoredServerPrivate::subscriptions()
{
    std::vector<SubscriptionInfo> infos;
    const Lock lock(m_mutex);
    for (const auto& group : m_groups)
        if (group && group->items > 0)
            infos.push_back({group->requested, group->subscriptionId, group->revised, group->items,
                             group->gaps, UaDateTime(group->lastHeard), group->messages,
                             group->keepAliveCount});
    return infos;
}

// ---- come from the server

void MonitoredServerPrivate::takeValues(ItemGroup& group, UaMonitoredItemNotifications& notifications)
{
    const OpcUa_DateTime now = OpcUa_DateTime_UtcNow();
    const Arrival arrival{now, group.sequence};
    News news;
    const Lock lock(m_mutex);
    group.lastHeard = now;
    group.losses = 0;
    ++group.messages;
    for (OpcUa_MonitoredItemNotification& notification : notifications) {
        Item* const item = m_items.find(notification.ClientHandle);
        if (item == nullptr || item->group != group.index ||
            (item->phase != Phase::Watched && item->phase != Phase::Creating))
            continue;
        ++item->count;
        item->lastHeard = now;
        if (tellsOverflow(notification.Value.StatusCode))
            ++item->overflows;
        news.filling.put(*m_sinks[item->sink].sink, sinkItemOf(notification.ClientHandle, *item),
                         notification.Value, arrival);
    }
}

void MonitoredServerPrivate::takeKeepAlive(ItemGroup& group)
{
    const Lock lock(m_mutex);
    group.lastHeard = OpcUa_DateTime_UtcNow();
    group.losses = 0;
}

void MonitoredServerPrivate::takeGap(ItemGroup& group, OpcUa_UInt32 previous, OpcUa_UInt32 next)
{
    Incident gap = incident(Incident::Kind::Missing);
    gap.first = previous + 1;
    gap.last = next - 1;
    News news;
    const Lock lock(m_mutex);
    group.gaps += next - previous - 1;
    noteLocked(news, group, gap);
}

void MonitoredServerPrivate::takeRepublished(ItemGroup& group)
{
    Incident again = incident(Incident::Kind::Republished);
    again.first = group.sequence;
    again.last = group.sequence;
    News news;
    const Lock lock(m_mutex);
    noteLocked(news, group, again);
}

// ---- incidents

Incident MonitoredServerPrivate::incident(Incident::Kind kind) const
{
    Incident result;
    result.kind = kind;
    result.server = m_number;
    result.time = OpcUa_DateTime_UtcNow();
    return result;
}

void MonitoredServerPrivate::noteLocked(News& news, const Incident& what)
{
    assertLocked(m_mutex);
    for (const SinkUse& use : m_sinks)
        if (use.sink && use.items > 0)
            news.filling.note(*use.sink, what);
}

void MonitoredServerPrivate::noteLocked(News& news, const ItemGroup& group, const Incident& what)
{
    assertLocked(m_mutex);
    std::vector<bool> isConcerned(m_sinks.size(), false);
    m_items.forEach([&](ItemId, const Item& item) {
        if (item.group == group.index)
            isConcerned[item.sink] = true;
    });
    Incident ofGroup = what;
    ofGroup.subscriptionId = group.subscriptionId;
    for (std::size_t use = 0; use < m_sinks.size(); ++use)
        if (isConcerned[use] && m_sinks[use].sink)
            news.filling.note(*m_sinks[use].sink, ofGroup);
}

void MonitoredServerPrivate::noteLink(UaClientSdk::UaClient::ServerStatus status)
{
    News news;
    const Lock lock(m_mutex);
    m_isLinkTold = true;
    noteLinkLocked(news, status);
}

void MonitoredServerPrivate::noteLinkLocked(News& news, UaClientSdk::UaClient::ServerStatus status)
{
    assertLocked(m_mutex);
    if (std::exchange(m_noted, status) == status)
        return;
    Incident link = incident(Incident::Kind::Link);
    link.link = status;
    noteLocked(news, link);
}

// ---- one item

unsigned short MonitoredServerPrivate::useSinkLocked(const std::shared_ptr<Sink>& sink)
{
    assertLocked(m_mutex);
    std::size_t unused = m_sinks.size();
    for (std::size_t use = 0; use < m_sinks.size(); ++use) {
        if (m_sinks[use].sink == sink)
            return static_cast<unsigned short>(use);
        if (!m_sinks[use].sink)
            unused = use;
    }
    if (unused == m_sinks.size())
        m_sinks.emplace_back();
    m_sinks[unused].sink = sink;
    return static_cast<unsigned short>(unused);
}

void MonitoredServerPrivate::dropUnusedSinksLocked(News& news)
{
    assertLocked(m_mutex);
    for (SinkUse& use : m_sinks)
        if (use.sink && use.items == 0)
            news.unused.push_back(std::move(use.sink));
}

void MonitoredServerPrivate::tellLocked(News& news, ItemId id, Item& item, OpcUa_StatusCode status)
{
    assertLocked(m_mutex);
    const ItemChange change = changeOf(item, status);
    Sink& sink = *m_sinks[item.sink].sink;
    news.filling.change(sink, sinkItemOf(id, item), change);
    if (!sink.keepsIncidents())
        return;
    Incident ofItem = incident(Incident::Kind::Item);
    ofItem.key = item.key;
    ofItem.origin = m_number << 32 | id;
    ofItem.state = change.state;
    ofItem.status = change.status;
    news.filling.note(sink, ofItem);
}

void MonitoredServerPrivate::refuseLocked(News& news, ItemId id, Item& item, OpcUa_StatusCode status)
{
    assertLocked(m_mutex);
    leaveGroupLocked(item);
    item.phase = Phase::Refused;
    item.answer = status;
    item.isModified = false;
    tellLocked(news, id, item);
}

ItemGroup* MonitoredServerPrivate::groupForLocked(const SubscriptionWish& wish)
{
    assertLocked(m_mutex);
    std::unique_ptr<ItemGroup>* unused = nullptr;
    for (auto& group : m_groups) {
        if (group && group->requested == wish)
            return group.get();
        if (unused == nullptr && (!group || group->items == 0))
            unused = &group;
    }
    if (unused == nullptr)
        return nullptr;
    if (*unused)
        (*unused)->reuse(wish);
    else
        *unused =
            std::make_unique<ItemGroup>(*this, static_cast<unsigned char>(unused - m_groups.data()), wish);
    return unused->get();
}

void MonitoredServerPrivate::enterGroupLocked(News& news, ItemId id, Item& item)
{
    assertLocked(m_mutex);
    ItemGroup* const group = groupForLocked(item.settings->subscription);
    if (group == nullptr)
        return refuseLocked(news, id, item, OpcUa_BadTooManySubscriptions);
    item.group = group->index;
    item.gapsBefore -= group->gaps; // those that come from now on are left of their sum
    ++group->items;
    item.phase = Phase::Waiting;
    item.answer = 0;
    group->toCreate.push_back(id);
}

void MonitoredServerPrivate::leaveGroupLocked(Item& item)
{
    assertLocked(m_mutex);
    if (ItemGroup* const group = groupOf(item)) {
        item.gapsBefore += group->gaps;
        --group->items;
        if (item.phase == Phase::Watched && !group->isVoid)
            group->toDelete.push_back(item.answer);
    }
    item.group = noGroup;
}

void MonitoredServerPrivate::waitAgainLocked(News& news, ItemId id, Item& item)
{
    assertLocked(m_mutex);
    item.phase = Phase::Waiting;
    item.answer = 0;
    item.isModified = false;
    groupOf(item)->toCreate.push_back(id);
    tellLocked(news, id, item);
}

void MonitoredServerPrivate::applySettingsLocked(News& news, ItemId id, Item& item)
{
    assertLocked(m_mutex);
    if (item.isHomeless)
        return;
    ItemGroup* const group = groupOf(item);
    if (group == nullptr || group->requested != item.settings->subscription) {
        leaveGroupLocked(item);
        enterGroupLocked(news, id, item);
        if (item.phase == Phase::Waiting)
            tellLocked(news, id, item);
    } else if (item.phase == Phase::Watched && !item.isModified) {
        item.isModified = true;
        group->toModify.push_back(id);
    }
}

void MonitoredServerPrivate::retryLocked(News& news, ItemId id, Item& item)
{
    assertLocked(m_mutex);
    if (item.phase != Phase::Refused || item.isHomeless)
        return;
    enterGroupLocked(news, id, item);
    if (item.phase == Phase::Waiting)
        tellLocked(news, id, item);
}

void MonitoredServerPrivate::removeItemLocked(ItemId id, Item& item)
{
    assertLocked(m_mutex);
    if (item.phase == Phase::Creating)
        item.phase = Phase::Leaving; // the server may have it, so its id is waited for
    else if (item.phase != Phase::Leaving)
        freeItemLocked(id, item);
}

void MonitoredServerPrivate::endItemLocked(News& news, ItemId id, Item& item)
{
    assertLocked(m_mutex);
    leaveGroupLocked(item);
    item.phase = Phase::Ended;
    item.isModified = false;
    tellLocked(news, id, item, OpcUa_BadServerNotConnected);
}

void MonitoredServerPrivate::freeItemLocked(ItemId id, Item& item)
{
    assertLocked(m_mutex);
    leaveGroupLocked(item);
    --m_sinks[item.sink].items;
    m_items.remove(id);
}

} // namespace monitoring
