// Members of UaSession about subscriptions; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/notificationmessage.h>
#include <uaclientsdk/subscription/subscriptionservices.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

namespace UaClientSdk {

UaStatus UaSession::createSubscription(ServiceSettings& settings, UaSubscriptionCallback* callback,
                                       OpcUa_UInt32 clientSubscriptionHandle,
                                       const SubscriptionSettings& subscriptionSettings,
                                       bool publishingEnabled, UaSubscription** subscription)
{
    if (!callback || !subscription)
        return UaStatus(OpcUa_BadInvalidArgument);
    *subscription = nullptr;
    return d->subscriptions.createSubscription(settings, *callback, clientSubscriptionHandle,
                                               subscriptionSettings, publishingEnabled, subscription);
}

UaStatus UaSession::deleteSubscription(ServiceSettings& settings, UaSubscription** subscription)
{
    return subscription ? d->subscriptions.deleteSubscription(settings, subscription)
                        : UaStatus(OpcUa_BadInvalidArgument);
}

UaStatus UaSession::modifySubscription(ServiceSettings& settings, UaSubscription* subscription,
                                       const SubscriptionSettings& subscriptionSettings)
{
    return d->subscriptions.owns(subscription)
               ? subscription->modifySubscription(settings, subscriptionSettings)
               : UaStatus(OpcUa_BadInvalidArgument);
}

UaStatus UaSession::setPublishingMode(ServiceSettings& settings, bool publishingEnabled,
                                      const UaUInt32Array& subscriptionIds, UaStatusCodeArray& results,
                                      UaDiagnosticInfos& diagnosticInfos)
{
    return d->subscriptions.setPublishingMode(settings, publishingEnabled, subscriptionIds, results,
                                              diagnosticInfos);
}

UaStatus UaSession::transferSubscription(ServiceSettings& settings, UaSubscriptionCallback* callback,
                                         OpcUa_UInt32 clientSubscriptionHandle, OpcUa_UInt32 subscriptionId,
                                         const SubscriptionSettings& subscriptionSettings,
                                         bool publishingEnabled, bool sendInitialValues,
                                         UaUInt32Array& availableSequenceNumbers,
                                         UaSubscription** subscription)
{
    availableSequenceNumbers.clear();
    if (!callback || !subscription)
        return UaStatus(OpcUa_BadInvalidArgument);
    *subscription = nullptr;
    return d->subscriptions.transferSubscription(settings, *callback, clientSubscriptionHandle,
                                                 subscriptionId, subscriptionSettings, publishingEnabled,
                                                 sendInitialValues, availableSequenceNumbers, subscription);
}

UaStatus UaSession::republish(ServiceSettings& settings, OpcUa_UInt32 subscriptionId,
                              OpcUa_UInt32 retransmitSequenceNumber, NotificationMessage& message)
{
    message = NotificationMessage();
    return callRepublish(d->context, settings, subscriptionId, retransmitSequenceNumber, message);
}

} // namespace UaClientSdk
