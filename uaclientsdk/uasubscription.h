// One subscription of a session.
#pragma once

#include <uabase/system/uarefcounter.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasubscriptioncallback.h>

namespace UaClientSdk {

class UaSubscriptionPrivate;

/// Made by UaSession::createSubscription or transferSubscription, which owns it: it lives until
/// deleteSubscription or the end of the session object. Any thread.
///
/// Services (OPC 10000-4, 5.12 and 5.13) are those of the session: result arrays are cleared first and hold
/// as many entries as the request when the status is good; long requests are split by the session's maximum
/// operations per call, and when a block fails the results of those before it are kept.
/// BadSubscriptionIdInvalid when the subscription is no longer valid, BadConnectionClosed without a
/// connection, BadNothingToDo for an empty request.
class UaSubscription
{
public:
    explicit UaSubscription(const UaRefPtr<UaSubscriptionPrivate>& inside); ///< the session's
    ~UaSubscription();
    UaSubscription(const UaSubscription&) = delete;
    UaSubscription& operator=(const UaSubscription&) = delete;

    [[nodiscard]] OpcUa_UInt32 subscriptionId() const; ///< the server's
    [[nodiscard]] OpcUa_UInt32 clientSubscriptionHandle() const;
    /// False once the server has it no more, or a new session took the place of the one that had it.
    [[nodiscard]] bool isValid() const;
    /// As the server has revised them last.
    [[nodiscard]] double publishingInterval() const; ///< ms
    [[nodiscard]] OpcUa_UInt32 lifetimeCount() const;
    [[nodiscard]] OpcUa_UInt32 maxKeepAliveCount() const;
    /// As asked for.
    [[nodiscard]] OpcUa_UInt32 maxNotificationsPerPublish() const;
    [[nodiscard]] OpcUa_Byte priority() const;
    [[nodiscard]] bool publishingEnabled() const;

    UaStatus modifySubscription(ServiceSettings& settings, const SubscriptionSettings& subscriptionSettings);
    UaStatus setPublishingMode(ServiceSettings& settings, bool publishingEnabled);

    UaStatus createMonitoredItems(ServiceSettings& settings, OpcUa_TimestampsToReturn timestampsToReturn,
                                  const UaMonitoredItemCreateRequests& requests,
                                  UaMonitoredItemCreateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus modifyMonitoredItems(ServiceSettings& settings, OpcUa_TimestampsToReturn timestampsToReturn,
                                  const UaMonitoredItemModifyRequests& requests,
                                  UaMonitoredItemModifyResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus setMonitoringMode(ServiceSettings& settings, OpcUa_MonitoringMode monitoringMode,
                               const UaUInt32Array& monitoredItemIds, UaStatusCodeArray& results,
                               UaDiagnosticInfos& diagnosticInfos);
    UaStatus deleteMonitoredItems(ServiceSettings& settings, const UaUInt32Array& monitoredItemIds,
                                  UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos);
    /// Items that the server samples but reports only together with the triggering one. One of the two lists
    /// may be empty. Never split, since adding and removing belong together.
    UaStatus setTriggering(ServiceSettings& settings, OpcUa_UInt32 triggeringItemId,
                           const UaUInt32Array& linksToAdd, const UaUInt32Array& linksToRemove,
                           UaStatusCodeArray& addResults, UaDiagnosticInfos& addDiagnosticInfos,
                           UaStatusCodeArray& removeResults, UaDiagnosticInfos& removeDiagnosticInfos);

    /// The same without waiting; a good status means that the completion of UaSubscriptionCallback comes,
    /// once.
    UaStatus beginCreateMonitoredItems(ServiceSettings& settings, OpcUa_TimestampsToReturn timestampsToReturn,
                                       const UaMonitoredItemCreateRequests& requests,
                                       OpcUa_UInt32 transactionId);
    UaStatus beginModifyMonitoredItems(ServiceSettings& settings, OpcUa_TimestampsToReturn timestampsToReturn,
                                       const UaMonitoredItemModifyRequests& requests,
                                       OpcUa_UInt32 transactionId);
    UaStatus beginSetMonitoringMode(ServiceSettings& settings, OpcUa_MonitoringMode monitoringMode,
                                    const UaUInt32Array& monitoredItemIds, OpcUa_UInt32 transactionId);
    UaStatus beginDeleteMonitoredItems(ServiceSettings& settings, const UaUInt32Array& monitoredItemIds,
                                       OpcUa_UInt32 transactionId);

private:
    UaRefPtr<UaSubscriptionPrivate> d;
};

} // namespace UaClientSdk
