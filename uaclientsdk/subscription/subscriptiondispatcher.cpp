#include <uaclientsdk/subscription/subscriptiondispatcher.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/subscription/sequencenumbers.h>

#include <algorithm>
#include <utility>

namespace UaClientSdk {

namespace {

bool endsSubscription(const UaStatus& status)
{
    return status.statusCode() == OpcUa_BadTimeout || status.statusCode() == OpcUa_BadSubscriptionIdInvalid ||
           status.statusCode() == OpcUa_GoodSubscriptionTransferred;
}

void callStatusChanged(UaSubscriptionPrivate& subscription, const UaStatus& status)
{
    UaTrace::tIfCall("CALL SubscriptionCallback::subscriptionStatusChanged [SubscriptionId=%u] status=0x%x",
                     subscription.id, status.statusCode());
    subscription.callback.subscriptionStatusChanged(subscription.handle, status);
}

} // namespace

bool SubscriptionDispatcher::dispatchPublish(OpcUa_PublishResponse& response)
{
    OpcUa_NotificationMessage& message = response.NotificationMessage;
    const bool isKeepAlive = message.NoOfNotificationData <= 0;
    const SubscriptionRef subscription = m_state.find(response.SubscriptionId);
    if (!isKeepAlive) { // also what nobody wants: the server need not keep it
        SessionLock lock(m_state.context.mutex);
        m_state.acknowledgements.add(response.SubscriptionId, message.SequenceNumber);
    }
    if (!subscription)
        return false;
    if (isKeepAlive) {
        keepAlive(*subscription, message.SequenceNumber, availableNumbers(response));
        return true;
    }
    if (availableNumbers(response).empty()) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - List of available sequence numbers is "
                        "empty, at least current sequence number has to be available");
    }
    takeSequenceNumber(*subscription, message.SequenceNumber);
    dispatchNotifications(*subscription, message, Way::Published);
    return true;
}

void SubscriptionDispatcher::keepAlive(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number,
                                       std::span<const OpcUa_UInt32> available)
{
    UaTrace::tInfo("Received KeepAlive with SubscriptionId=%u SequenceNumber=%u", subscription.id, number);
    OpcUa_UInt32 last = 0;
    {
        SessionLock lock(m_state.context.mutex);
        last = subscription.lastSequenceNumber;
    }
    if (number == last || number - last >= unexpectedDistance) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - KeepAlive returned unexpected "
                        "SequenceNumber (expected=%u, received=%u)",
                        nextSequenceNumber(last), number);
    }
    if (std::find(available.begin(), available.end(), number) != available.end()) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - KeepAlive SequenceNumber (%u) is "
                        "contained in AvailableSequenceNumbers",
                        number);
    }
    const SubscriptionCall call(subscription);
    if (!call) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - Subscription not longer valid");
        return;
    }
    UaTrace::tIfCall("CALL SubscriptionCallback::keepAlive [SubscriptionId=%u]", subscription.id);
    subscription.callback.keepAlive(subscription.handle);
}

void SubscriptionDispatcher::takeSequenceNumber(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number)
{
    OpcUa_UInt32 last = 0;
    {
        SessionLock lock(m_state.context.mutex);
        last = std::exchange(subscription.lastSequenceNumber, number);
    }
    const OpcUa_UInt32 expected = nextSequenceNumber(last);
    if (std::min(number - last, last - number) >= unexpectedDistance) {
        UaTrace::tError("Error: UaSessionPrivate::publishCallback - Notification returned unexpected "
                        "SequenceNumber (expected=%u, received=%u)",
                        expected, number);
    }
    if (last != 0 && number != expected)
        tellMissing(subscription, last, number);
}

void SubscriptionDispatcher::tellMissing(UaSubscriptionPrivate& subscription, OpcUa_UInt32 previous,
                                         OpcUa_UInt32 next)
{
    UaTrace::tWarning("Warning: Notifications missing, lastSequenceNumber=%u newSequenceNumber=%u", previous,
                      next);
    if (const SubscriptionCall call(subscription); call) {
        UaTrace::tIfCall("CALL SubscriptionCallback::notificationsMissing [SubscriptionId=%u]",
                         subscription.id);
        subscription.callback.notificationsMissing(subscription.handle, previous, next);
    }
}

void SubscriptionDispatcher::dispatchNotifications(UaSubscriptionPrivate& subscription,
                                                   OpcUa_NotificationMessage& message, Way way)
{
    const bool isRepublished = way == Way::Republished;
    if (const SubscriptionCall call(subscription); call)
        subscription.callback.messageBegins(subscription.handle, message.SequenceNumber, isRepublished);
    const char* const caller = isRepublished ? "doRepublishAfterReconnect" : "publishCallback";
    for (OpcUa_Int32 i = 0; i < message.NoOfNotificationData; ++i)
        dispatchNotification(subscription, message.NotificationData[i], caller);
}

void SubscriptionDispatcher::dispatchNotification(UaSubscriptionPrivate& subscription,
                                                  OpcUa_ExtensionObject& data, const char* caller)
{
    if (data.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject) {
        UaTrace::tError("Error: UaSessionPrivate::%s - Server sent invalid extension object for notification",
                        caller);
        return;
    }
    const auto& content = data.Body.EncodeableObject;
    if (content.Type == &OpcUa_DataChangeNotification_EncodeableType) {
        dataChange(subscription, *static_cast<OpcUa_DataChangeNotification*>(content.Object));
    } else if (content.Type == &OpcUa_EventNotificationList_EncodeableType) {
        newEvents(subscription, *static_cast<OpcUa_EventNotificationList*>(content.Object));
    } else if (content.Type == &OpcUa_StatusChangeNotification_EncodeableType) {
        statusChange(subscription,
                     UaStatus(static_cast<OpcUa_StatusChangeNotification*>(content.Object)->Status));
    } else {
        UaTrace::tError(
            "Error: UaSessionPrivate::%s - Server sent unknown extension object (ID=%u) for notification",
            caller, content.Type ? content.Type->TypeId : 0);
    }
}

void SubscriptionDispatcher::dataChange(UaSubscriptionPrivate& subscription,
                                        OpcUa_DataChangeNotification& notification)
{
    UaMonitoredItemNotifications items;
    items.attachFrom(&notification.NoOfMonitoredItems, &notification.MonitoredItems);
    UaDiagnosticInfos diagnostics;
    diagnostics.attach(std::exchange(notification.NoOfDiagnosticInfos, 0),
                       std::exchange(notification.DiagnosticInfos, nullptr));
    if (const SubscriptionCall call(subscription); call) {
        UaTrace::tIfCall("CALL SubscriptionCallback::dataChange with %d data notifications",
                         static_cast<int>(items.length()));
        subscription.callback.dataChange(subscription.handle, items, diagnostics);
    }
}

void SubscriptionDispatcher::newEvents(UaSubscriptionPrivate& subscription,
                                       OpcUa_EventNotificationList& notification)
{
    UaEventFieldLists events;
    events.attachFrom(&notification.NoOfEvents, &notification.Events);
    if (const SubscriptionCall call(subscription); call) {
        UaTrace::tIfCall("CALL SubscriptionCallback::newEvents with %d events",
                         static_cast<int>(events.length()));
        subscription.callback.newEvents(subscription.handle, events);
    }
}

void SubscriptionDispatcher::statusChange(UaSubscriptionPrivate& subscription, const UaStatus& status)
{
    if (endsSubscription(status))
        endSubscription(subscription, status);
    else if (const SubscriptionCall call(subscription); call)
        callStatusChanged(subscription, status);
}

void SubscriptionDispatcher::endSubscription(UaSubscriptionPrivate& subscription, const UaStatus& status)
{
    const SubscriptionCall call(subscription, SubscriptionCall::Kind::End);
    {
        SetPointTrace trace(m_state.context);
        SessionLock lock(m_state.context.mutex);
        m_state.removeLocked(subscription, trace);
    }
    if (call)
        callStatusChanged(subscription, status);
}

} // namespace UaClientSdk
