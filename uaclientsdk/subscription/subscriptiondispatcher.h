// Takes notification messages apart and tells the application of them.
#pragma once

#include <uabase/values/uastatus.h>
#include <uaclientsdk/subscription/publishstate.h>

#include <span>

namespace UaClientSdk {

/// One message at a time, in the order of the session's answers. Every callback runs without the session's
/// mutex; a subscription that has become invalid meanwhile hears nothing.
class SubscriptionDispatcher
{
public:
    explicit SubscriptionDispatcher(PublishState& state) : m_state(state) {}

    /// An answer to Publish: sequence numbers, acknowledgement, keep-alive, notifications. False when the
    /// session does not know the subscription.
    [[nodiscard]] bool dispatchPublish(OpcUa_PublishResponse& response);
    enum class Way { Published, Republished };
    /// The notifications of one message, and how it came.
    void dispatchNotifications(UaSubscriptionPrivate& subscription, OpcUa_NotificationMessage& message,
                               Way way);
    /// Those between the two numbers are lost.
    static void tellMissing(UaSubscriptionPrivate& subscription, OpcUa_UInt32 previous, OpcUa_UInt32 next);
    /// The server has the subscription no more: takes it out and says so, once.
    void endSubscription(UaSubscriptionPrivate& subscription, const UaStatus& status);

private:
    void keepAlive(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number,
                   std::span<const OpcUa_UInt32> available);
    void takeSequenceNumber(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number);
    void dispatchNotification(UaSubscriptionPrivate& subscription, OpcUa_ExtensionObject& data,
                              const char* caller);
    static void dataChange(UaSubscriptionPrivate& subscription, OpcUa_DataChangeNotification& notification);
    static void newEvents(UaSubscriptionPrivate& subscription, OpcUa_EventNotificationList& notification);
    void statusChange(UaSubscriptionPrivate& subscription, const UaStatus& status);

    PublishState& m_state;
};

} // namespace UaClientSdk
