// The items of one server that share a subscription.
#pragma once

#include <monitoring/watch.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <vector>

namespace monitoring {

class MonitoredServerPrivate;

/// Its fields are guarded by the server's mutex. The lists name items that may have changed since: who takes
/// them looks again.
struct ItemGroup final : public UaClientSdk::UaSubscriptionCallback
{
    ItemGroup(MonitoredServerPrivate& owner, unsigned char place, const SubscriptionWish& wish)
        : server(owner), index(place), requested(wish)
    {
    }

    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void keepAlive(OpcUa_UInt32 handle) override;
    void notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous, OpcUa_UInt32 next) override;
    void messageBegins(OpcUa_UInt32 handle, OpcUa_UInt32 sequenceNumber, bool isRepublished) override;
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                    UaDiagnosticInfos& diagnosticInfos) override;
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}

    /// For items of other wishes when there is none in it any more; the worker may be about to delete its
    /// subscription, or to make it, and finds out by the epoch.
    void reuse(const SubscriptionWish& wish);

    MonitoredServerPrivate& server;
    const unsigned char index;
    SubscriptionWish requested;
    UaClientSdk::UaSubscription* subscription = nullptr;
    OpcUa_UInt32 subscriptionId = 0;
    SubscriptionWish revised;
    OpcUa_UInt32 keepAliveCount = 0;
    OpcUa_UInt32 items = 0;
    OpcUa_UInt32 gaps = 0;
    OpcUa_UInt32 losses = 0; ///< since it was last heard
    OpcUa_DateTime lastHeard{};
    OpcUa_UInt64 messages = 0; ///< with values, that came
    OpcUa_UInt32 sequence = 0; ///< of the message whose values come; only callbacks know it
    OpcUa_UInt32 epoch = 0;    ///< rises when all in it are to be created again
    bool isVoid = false;       ///< the subscription is of no use any more
    bool isUncertain = false;  ///< a call that may have been carried out has failed
    std::vector<ItemId> toCreate;
    std::vector<ItemId> toModify;
    std::vector<OpcUa_UInt32> toDelete; ///< the server's ids
};

} // namespace monitoring
