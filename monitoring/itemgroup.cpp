#include <monitoring/itemgroup_p.h>

#include <monitoring/monitoredserver_p.h>

namespace monitoring {

void ItemGroup::reuse(const SubscriptionWish& wish)
{
    requested = wish;
    revised = SubscriptionWish();
    keepAliveCount = 0;
    gaps = 0;
    losses = 0;
    lastHeard = OpcUa_DateTime{};
    messages = 0;
    ++epoch;
    isVoid = subscription != nullptr;
    isUncertain = false;
    toCreate.clear();
    toModify.clear();
    toDelete.clear();
}

void ItemGroup::subscriptionStatusChanged(OpcUa_UInt32, const UaStatus& status)
{
    server.takeLoss(*this, status);
}

void ItemGroup::keepAlive(OpcUa_UInt32)
{
    server.takeKeepAlive(*this);
}

void ItemGroup::notificationsMissing(OpcUa_UInt32, OpcUa_UInt32 previous, OpcUa_UInt32 next)
{
    // a number that is not ahead says that some come twice, which loses nothing
    const OpcUa_UInt32 distance = next - previous;
    if (distance > 1 && distance < 0x80000000u)
        server.takeGap(*this, previous, next);
}

void ItemGroup::messageBegins(OpcUa_UInt32, OpcUa_UInt32 sequenceNumber, bool isRepublished)
{
    sequence = sequenceNumber;
    if (isRepublished)
        server.takeRepublished(*this);
}

void ItemGroup::dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications, UaDiagnosticInfos&)
{
    server.takeValues(*this, notifications);
}

} // namespace monitoring
