// What a tool wants watched, and what has become of it.
#pragma once

#include <monitoring/namespaces.h>
#include <opcua/opcua_attributes.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

namespace monitoring {

/// Of the subscription that an item is in. Items whose wishes are equal share one.
struct SubscriptionWish
{
    double publishingInterval = 1000.0; ///< ms
    OpcUa_UInt32 lifetimeCount = 1200;  ///< publishing intervals
    OpcUa_Byte priority = 0;            ///< higher ones are sent first

    /// Equal in all.
    bool operator==(const SubscriptionWish&) const = default;
};

/// How something is watched. Items that are added or changed together share it.
struct ItemSettings
{
    SubscriptionWish subscription;                                       ///< where it is reported
    double samplingInterval = -1.0;                                      ///< ms; -1: as often as published
    OpcUa_UInt32 queueSize = 1;                                          ///< values kept at the server
    bool discardOldest = true;                                           ///< when that is full
    OpcUa_MonitoringMode mode = OpcUa_MonitoringMode_Reporting;          ///< reported, sampled only, or off
    OpcUa_TimestampsToReturn timestamps = OpcUa_TimestampsToReturn_Both; ///< that come with the values
    UaExtensionObject filter;                                            ///< null: every change
};

/// What is watched.
struct ItemWish
{
    UaNodeId nodeId;                                   ///< of the node
    OpcUa_UInt32 attributeId = OpcUa_Attributes_Value; ///< of the node's
    UaString indexRange;                               ///< of an array; empty for all of it
    UaQualifiedName dataEncoding;                      ///< of a structure; null for the usual one
    OpcUa_UInt64 key = 0; ///< the tool's own name for it, which comes with all news
};

/// Names an item of one server; never 0.
using ItemId = OpcUa_UInt32;

/// Where an item is.
enum class ItemState : unsigned char {
    Waiting, ///< for a connection, or for its turn
    Watched, ///< the server reports it
    Refused, ///< set apart until a new session, a change of its settings or a wish to try again
    Ended    ///< its server was removed
};

/// News of an item that are not values. Of several for one item the newest counts.
struct ItemChange
{
    OpcUa_UInt64 key = 0;                 ///< the tool's
    ItemState state = ItemState::Waiting; ///< from now on
    UaStatusCode status; ///< why it was refused; of a watched item, why a change was not made, told once
    double revisedSamplingInterval = 0.0; ///< ms; as the server has it, for a watched item
    OpcUa_UInt32 revisedQueueSize = 0;    ///< the same
};

/// All that is known of an item.
struct ItemInfo
{
    ItemWish wish;              ///< the node as it is called now
    ItemSettings requested;     ///< as asked for
    ItemChange now;             ///< its state, and the settings as the server has them
    OpcUa_UInt64 count = 0;     ///< values that came
    OpcUa_UInt32 overflows = 0; ///< of them, those before which the server's queue has lost some
    OpcUa_UInt32 gaps = 0;      ///< notifications of its subscription that were lost on the way
    UaDateTime lastHeard;       ///< when the last value came; null before the first
};

/// Whether the status of a value says that the server's queue of its item has lost some before it: DataValue
/// in the info type, and Overflow.
[[nodiscard]] constexpr bool tellsOverflow(OpcUa_StatusCode status)
{
    constexpr OpcUa_StatusCode infoTypeMask = 0x0C00u;
    constexpr OpcUa_StatusCode infoTypeDataValue = 0x0400u;
    constexpr OpcUa_StatusCode overflow = 0x0080u;
    return (status & infoTypeMask) == infoTypeDataValue && (status & overflow) != 0;
}

/// A subscription that items share.
struct SubscriptionInfo
{
    SubscriptionWish requested;      ///< as asked for
    OpcUa_UInt32 subscriptionId = 0; ///< the server's; 0 while there is none
    SubscriptionWish revised;        ///< as the server has it
    OpcUa_UInt32 items = 0;          ///< that are in it or wait for it
    OpcUa_UInt32 gaps = 0;           ///< notifications that were lost on the way
    UaDateTime lastHeard;            ///< a value or a keep-alive
    OpcUa_UInt64 notifications = 0;  ///< messages with values that came
    OpcUa_UInt32 keepAliveCount =
        0; ///< as the server has it: publishing intervals without news; 0: not known
};

} // namespace monitoring
