// What a subscription asks of its server.
#pragma once

#include <opcua/opcua_platform.h>

namespace UaClientSdk {

/// OPC 10000-4, 5.13.2. The server may revise the interval and the counts; see UaSubscription.
struct SubscriptionSettings
{
    double publishingInterval = 1000.0; ///< ms
    OpcUa_UInt32 lifetimeCount = 1200;  ///< publishing intervals without a Publish request until it ends
    OpcUa_UInt32 maxKeepAliveCount = 5; ///< publishing intervals without news until a keep-alive
    OpcUa_UInt32 maxNotificationsPerPublish = 0; ///< 0: no limit
    OpcUa_Byte priority = 0;
};

} // namespace UaClientSdk
