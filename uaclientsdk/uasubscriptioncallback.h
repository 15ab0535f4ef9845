// What an application is told of its subscriptions.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>

namespace UaClientSdk {

/// Runs on threads of the shared pool, one call at a time for each session but for the completions; no lock
/// is held. A callback may call the session and the subscription, also delete the subscription; it must not
/// disconnect the session. It holds up the notifications of its own session while it runs, and disconnect
/// waits a second for it at most. The callee must live until deleteSubscription has returned, which waits for
/// as long as it takes, also after a disconnect.
class UaSubscriptionCallback
{
public:
    virtual ~UaSubscriptionCallback() = default;

    /// BadSubscriptionIdInvalid, BadTimeout and GoodSubscriptionTransferred: the server has it no more, and
    /// no further call comes. The object stays until it is deleted with deleteSubscription.
    virtual void subscriptionStatusChanged(OpcUa_UInt32 clientSubscriptionHandle, const UaStatus& status) = 0;
    virtual void keepAlive(OpcUa_UInt32 /*clientSubscriptionHandle*/) {}
    /// A message with notifications begins; what is told until the next one begins came in it. Republished:
    /// it had been sent before and was fetched, since it had not arrived.
    virtual void messageBegins(OpcUa_UInt32 /*clientSubscriptionHandle*/, OpcUa_UInt32 /*sequenceNumber*/,
                               bool /*isRepublished*/)
    {
    }
    /// Notifications between the two numbers are lost, or come twice when the new one is not ahead. After a
    /// reconnect it may come without a notification behind it; the previous number is 0 when the first one of
    /// all is lost too.
    virtual void notificationsMissing(OpcUa_UInt32 /*clientSubscriptionHandle*/,
                                      OpcUa_UInt32 /*previousSequenceNumber*/,
                                      OpcUa_UInt32 /*newSequenceNumber*/)
    {
    }
    /// The notifications belong to the callee, which may move them away. Their client handles are the
    /// server's word: look them up, never use them as an index.
    virtual void dataChange(OpcUa_UInt32 clientSubscriptionHandle,
                            UaMonitoredItemNotifications& notifications,
                            UaDiagnosticInfos& diagnosticInfos) = 0;
    virtual void newEvents(OpcUa_UInt32 clientSubscriptionHandle, UaEventFieldLists& events) = 0;

    /// Completions of the begin... calls of UaSubscription. Results are as many as were asked for when the
    /// status is good; else those of the blocks that went well. None comes when the session is disconnected
    /// first.
    virtual void createMonitoredItemsComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*status*/,
                                              const UaMonitoredItemCreateResults& /*results*/,
                                              const UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void modifyMonitoredItemsComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*status*/,
                                              const UaMonitoredItemModifyResults& /*results*/,
                                              const UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void setMonitoringModeComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*status*/,
                                           const UaStatusCodeArray& /*results*/,
                                           const UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void deleteMonitoredItemsComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*status*/,
                                              const UaStatusCodeArray& /*results*/,
                                              const UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
};

} // namespace UaClientSdk
