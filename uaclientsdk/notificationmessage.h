// A message of a subscription that the server has kept for being fetched again.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>

namespace UaClientSdk {

/// notificationData holds what the server has put together: data changes, lists of events, changes of status.
/// One that cannot be decoded stays encoded.
struct NotificationMessage
{
    OpcUa_UInt32 sequenceNumber = 0;
    UaDateTime publishTime;
    UaExtensionObjectArray notificationData;
};

} // namespace UaClientSdk
