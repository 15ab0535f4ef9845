// The service calls about whole subscriptions, OPC 10000-4, 5.13, and triggering, 5.12.5; without what
// follows from them.
#pragma once

#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/notificationmessage.h>
#include <uaclientsdk/subscriptionsettings.h>

namespace UaClientSdk {

class TriggeringLinks;

/// Each checks the connection first, blocks, and traces its begin and end. What the server revises is put
/// into settings. Without the session's mutex.
[[nodiscard]] UaStatus callCreateSubscription(SessionContext& context, ServiceSettings& settings,
                                              SubscriptionSettings& subscriptionSettings,
                                              bool publishingEnabled, OpcUa_UInt32& subscriptionId);
[[nodiscard]] UaStatus callModifySubscription(SessionContext& context, ServiceSettings& settings,
                                              SubscriptionSettings& subscriptionSettings,
                                              OpcUa_UInt32 subscriptionId);
[[nodiscard]] UaStatus callDeleteSubscription(SessionContext& context, ServiceSettings& settings,
                                              OpcUa_UInt32 subscriptionId);
[[nodiscard]] UaStatus callTransferSubscription(SessionContext& context, ServiceSettings& settings,
                                                OpcUa_UInt32 subscriptionId, bool sendInitialValues,
                                                UaUInt32Array& availableSequenceNumbers);
[[nodiscard]] UaStatus callSetPublishingMode(SessionContext& context, ServiceSettings& settings,
                                             bool publishingEnabled, const UaUInt32Array& subscriptionIds,
                                             UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos);
[[nodiscard]] UaStatus callRepublish(SessionContext& context, ServiceSettings& settings,
                                     OpcUa_UInt32 subscriptionId, OpcUa_UInt32 retransmitSequenceNumber,
                                     NotificationMessage& message);
/// In pieces that the server takes, links that go first. BadNothingToDo when both lists are empty. What was
/// done stays done when a later piece fails: the results of those before it are kept.
[[nodiscard]] UaStatus callSetTriggering(SessionContext& context, ServiceSettings& settings,
                                         OpcUa_UInt32 subscriptionId, OpcUa_UInt32 triggeringItemId,
                                         TriggeringLinks& linksToAdd, TriggeringLinks& linksToRemove);

} // namespace UaClientSdk
