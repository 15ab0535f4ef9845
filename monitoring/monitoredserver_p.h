// What is behind MonitoredServer.
#pragma once

#include <monitoring/itemgroup_p.h>
#include <monitoring/itemtable_p.h>
#include <monitoring/monitoredserver.h>
#include <uabase/system/uamutex.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <array>
#include <condition_variable>
#include <memory>
#include <optional>
#include <span>
#include <thread>
#include <vector>

namespace monitoring {

/// One mutex guards everything; it is free during calls into the session. Order of locks: this one, a sink's,
/// the pacer's.
class MonitoredServerPrivate
{
public:
    using Lock = HeldLock;

    MonitoredServerPrivate();
    ~MonitoredServerPrivate() = default; ///< after close()

    void setSession(UaClientSdk::UaSession* session);
    void statusChanged(UaClientSdk::UaClient::ServerStatus status, const NamespaceMap& namespaces);
    void noteLink(UaClientSdk::UaClient::ServerStatus status);
    void close();
    std::vector<ItemId> add(const std::shared_ptr<Sink>& sink, const ItemSettings& settings,
                            std::span<const ItemWish> wishes);
    void modify(std::span<const ItemId> ids, const ItemSettings& settings);
    void remove(std::span<const ItemId> ids);
    void retry(std::span<const ItemId> ids);
    void retryRefused();
    std::optional<ItemInfo> info(ItemId id);
    std::vector<SubscriptionInfo> subscriptions();

    // ---- for the groups, on threads of the session
    void takeValues(ItemGroup& group, UaMonitoredItemNotifications& notifications);
    void takeLoss(ItemGroup& group, const UaStatus& status);
    void takeGap(ItemGroup& group, OpcUa_UInt32 previous, OpcUa_UInt32 next);
    void takeRepublished(ItemGroup& group);
    void takeKeepAlive(ItemGroup& group);

private:
    struct SinkUse
    {
        std::shared_ptr<Sink> sink;
        OpcUa_UInt32 items = 0;
    };
    /// What is done without the lock after a change: sinks are told, and those that nobody holds any more go.
    struct News
    {
        std::vector<std::shared_ptr<Sink>> unused; // goes last
        Sink::Filling filling;
    };
    /// Items of one call.
    struct Portion
    {
        std::vector<ItemId> ids;
        std::vector<UaSharedPtr<ItemSettings>> settings; ///< that the call is about
        OpcUa_TimestampsToReturn timestamps = OpcUa_TimestampsToReturn_Both;
        UaClientSdk::UaSubscription* subscription = nullptr;
        UaClientSdk::UaSession* session = nullptr;
        OpcUa_UInt32 epoch = 0; ///< of the group
        OpcUa_UInt64 link = 0;
    };
    struct Job
    {
        void (MonitoredServerPrivate::*work)(ItemGroup& group) = nullptr;
        ItemGroup* group = nullptr;
    };

    // ---- items
    [[nodiscard]] unsigned short useSinkLocked(const std::shared_ptr<Sink>& sink);
    [[nodiscard]] ItemGroup* groupForLocked(const SubscriptionWish& wish);
    [[nodiscard]] SinkItem sinkItemOf(ItemId id, Item& item) const
    {
        return {m_number << 32 | id, item.key, item.mark};
    }
    [[nodiscard]] ItemGroup* groupOf(const Item& item) const
    {
        return item.group == noGroup ? nullptr : m_groups[item.group].get();
    }
    /// status: of a change that the server has not made.
    void tellLocked(News& news, ItemId id, Item& item, OpcUa_StatusCode status = OpcUa_Good);
    void refuseLocked(News& news, ItemId id, Item& item, OpcUa_StatusCode status);
    void enterGroupLocked(News& news, ItemId id, Item& item);
    void leaveGroupLocked(Item& item);
    void waitAgainLocked(News& news, ItemId id, Item& item);
    void applySettingsLocked(News& news, ItemId id, Item& item);
    void retryLocked(News& news, ItemId id, Item& item);
    void removeItemLocked(ItemId id, Item& item);
    void freeItemLocked(ItemId id, Item& item);
    void endItemLocked(News& news, ItemId id, Item& item);
    void dropUnusedSinksLocked(News& news);

    // ---- incidents
    [[nodiscard]] Incident incident(Incident::Kind kind) const;
    void noteLocked(News& news, const Incident& what); ///< to all sinks
    void noteLocked(News& news, const ItemGroup& group, const Incident& what);
    void noteLinkLocked(News& news, UaClientSdk::UaClient::ServerStatus status);

    // ---- connection
    void voidGroupLocked(News& news, ItemGroup& group);
    void voidAllLocked(News& news);
    void loseLocked(News& news, ItemGroup& group, const UaStatus& status);
    void refuseGroupLocked(News& news, ItemGroup& group, OpcUa_StatusCode status);
    void remapLocked(News& news, const NamespaceMap& namespaces);
    [[nodiscard]] bool remapItemLocked(Item& item, const NamespaceMap& namespaces);

    // ---- the worker; what a job names runs without the lock
    void run();
    [[nodiscard]] Job nextJobLocked(News& news);
    [[nodiscard]] bool isRestingLocked() const;
    /// A call failed for now: the worker rests, unless there is another link since.
    void restLocked(OpcUa_UInt64 link);
    [[nodiscard]] Portion portionOfLocked(const ItemGroup& group) const;
    void deleteSubscription(ItemGroup& group);
    void createSubscription(ItemGroup& group);
    void createItems(ItemGroup& group);
    void modifyItems(ItemGroup& group);
    void deleteItems(ItemGroup& group);
    [[nodiscard]] Portion takePortionLocked(ItemGroup& group, std::vector<ItemId>& list, OpcUa_UInt32 limit);
    [[nodiscard]] static bool isDue(const Item& item, const ItemGroup& group, bool modified);
    [[nodiscard]] UaMonitoredItemCreateRequests makeRequestsLocked(const Portion& portion);
    void applyCreated(ItemGroup& group, const Portion& portion, const UaStatus& status,
                      const UaMonitoredItemCreateResults& results);
    void applyCreatedLocked(News& news, ItemGroup& group, const Portion& portion, std::size_t place,
                            const OpcUa_MonitoredItemCreateResult& result);
    /// Of those from first on nobody knows anything.
    void applyFaultLocked(News& news, ItemGroup& group, const Portion& portion, std::size_t first,
                          const UaStatus& status);
    void applyModified(ItemGroup& group, const Portion& portion, const UaStatus& status,
                       const UaMonitoredItemModifyResults& results);
    void setModes(ItemGroup& group, const Portion& portion);
    void setMode(ItemGroup& group, const Portion& portion, OpcUa_MonitoringMode mode);

    UaMutex m_mutex;
    std::condition_variable_any m_work; ///< for the worker
    std::condition_variable_any m_idle; ///< the worker has come back from a call
    ItemTable m_items;
    std::array<std::unique_ptr<ItemGroup>, MonitoredServer::maximumSubscriptions> m_groups;
    std::vector<SinkUse> m_sinks;
    const OpcUa_UInt64 m_number;                                 ///< of no other server
    UaClientSdk::UaSession* m_session = nullptr;                 ///< the same while the worker calls
    ItemGroup* m_current = nullptr;                              ///< that the worker calls for
    OpcUa_UInt64 m_link = 0;                                     ///< rises with each connection
    OpcUa_UInt32 m_portionLimit = MonitoredServer::maximumBatch; ///< falls when a call was too much
    OpcUa_UInt64 m_restUntil = 0;
    OpcUa_UInt64 m_restTime = 0;
    UaClientSdk::UaClient::ServerStatus m_noted = UaClientSdk::UaClient::Disconnected;
    bool m_isLinkTold = false; ///< by noteLink, as it happens
    bool m_online = false;
    bool m_end = false;
    std::thread m_worker; ///< the last one: it uses the others
};

} // namespace monitoring
