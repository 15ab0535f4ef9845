#include <uaclientsdk/subscription/subscriptionservices.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/blockservice.h>
#include <uaclientsdk/services/callonce.h>

#include <cmath>
#include <utility>

namespace UaClientSdk {

namespace {

constexpr const char* noSubscription = "Empty subscription array passed";

// One subscription at a time, as the session names it.
template <typename Traits>
constexpr BlockService<Traits> singleService(SplitService splitService, const char* method)
{
    BlockService<Traits> service = blockService<Traits>(splitService, noSubscription);
    service.names.method = method;
    return service;
}

const auto setPublishingModeService =
    blockService<Services::SetPublishingMode>(SplitService::SetPublishingMode, noSubscription);
const auto deleteService =
    singleService<Services::DeleteSubscriptions>(SplitService::DeleteSubscriptions, "deleteSubscription");
const auto transferService = singleService<Services::TransferSubscriptions>(
    SplitService::TransferSubscriptions, "transferSubscription");

// Services without one array to count.
template <typename Service>
constexpr ServiceNames plainNames(const char* emptyText)
{
    ServiceNames names = namesOf<Service>(emptyText);
    names.countTraced = false;
    return names;
}

UaUInt32Array single(OpcUa_UInt32 id)
{
    return UaUInt32Array(1, &id);
}

// What a create or a modify asks for; their requests name the fields alike.
template <typename Request>
void fillSettings(Request& request, const SubscriptionSettings& settings)
{
    request.RequestedPublishingInterval = settings.publishingInterval;
    request.RequestedLifetimeCount = settings.lifetimeCount;
    request.RequestedMaxKeepAliveCount = settings.maxKeepAliveCount;
    request.MaxNotificationsPerPublish = settings.maxNotificationsPerPublish;
    request.Priority = settings.priority;
}

template <typename Response>
void takeRevised(const Response& response, SubscriptionSettings& settings)
{
    if (std::isfinite(response.RevisedPublishingInterval))
        settings.publishingInterval = response.RevisedPublishingInterval;
    settings.lifetimeCount = response.RevisedLifetimeCount;
    settings.maxKeepAliveCount = response.RevisedMaxKeepAliveCount;
}

} // namespace

UaStatus callCreateSubscription(SessionContext& context, ServiceSettings& settings,
                                SubscriptionSettings& subscriptionSettings, bool publishingEnabled,
                                OpcUa_UInt32& subscriptionId)
{
    using Service = Services::CreateSubscription;
    return callOnce<Service>(
        context, plainNames<Service>(""), 1, settings,
        [&](Service::Request& request) {
            fillSettings(request, subscriptionSettings);
            request.PublishingEnabled = publishingEnabled ? OpcUa_True : OpcUa_False;
        },
        [&](const Service::Response& response) {
            takeRevised(response, subscriptionSettings);
            subscriptionId = response.SubscriptionId;
            return UaStatus();
        });
}

UaStatus callModifySubscription(SessionContext& context, ServiceSettings& settings,
                                SubscriptionSettings& subscriptionSettings, OpcUa_UInt32 subscriptionId)
{
    using Service = Services::ModifySubscription;
    return callOnce<Service>(
        context, plainNames<Service>(""), 1, settings,
        [&](Service::Request& request) {
            fillSettings(request, subscriptionSettings);
            request.SubscriptionId = subscriptionId;
        },
        [&](const Service::Response& response) {
            takeRevised(response, subscriptionSettings);
            return UaStatus();
        });
}

UaStatus callDeleteSubscription(SessionContext& context, ServiceSettings& settings,
                                OpcUa_UInt32 subscriptionId)
{
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        callInBlocks(context, deleteService, settings, single(subscriptionId), results, diagnosticInfos);
    return status.isBad() ? status : UaStatus(results[0]);
}

UaStatus callTransferSubscription(SessionContext& context, ServiceSettings& settings,
                                  OpcUa_UInt32 subscriptionId, bool sendInitialValues,
                                  UaUInt32Array& availableSequenceNumbers)
{
    UaTransferResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        callInBlocks(context, transferService, settings, single(subscriptionId), results, diagnosticInfos,
                     [sendInitialValues](OpcUa_TransferSubscriptionsRequest& request, OpcUa_UInt32) {
                         request.SendInitialValues = sendInitialValues ? OpcUa_True : OpcUa_False;
                     });
    if (status.isBad())
        return status;
    availableSequenceNumbers.attachFrom(&results[0].NoOfAvailableSequenceNumbers,
                                        &results[0].AvailableSequenceNumbers);
    return UaStatus(results[0].StatusCode);
}

UaStatus callSetPublishingMode(SessionContext& context, ServiceSettings& settings, bool publishingEnabled,
                               const UaUInt32Array& subscriptionIds, UaStatusCodeArray& results,
                               UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(
        context, setPublishingModeService, settings, subscriptionIds, results, diagnosticInfos,
        [publishingEnabled](OpcUa_SetPublishingModeRequest& request, OpcUa_UInt32) {
            request.PublishingEnabled = publishingEnabled ? OpcUa_True : OpcUa_False;
        });
}

UaStatus callRepublish(SessionContext& context, ServiceSettings& settings, OpcUa_UInt32 subscriptionId,
                       OpcUa_UInt32 retransmitSequenceNumber, NotificationMessage& message)
{
    using Service = Services::Republish;
    return callOnce<Service>(
        context, plainNames<Service>(""), 1, settings,
        [&](Service::Request& request) {
            request.SubscriptionId = subscriptionId;
            request.RetransmitSequenceNumber = retransmitSequenceNumber;
        },
        [&](Service::Response& response) {
            OpcUa_NotificationMessage& kept = response.NotificationMessage;
            message.sequenceNumber = kept.SequenceNumber;
            message.publishTime = UaDateTime(kept.PublishTime);
            message.notificationData.attachFrom(&kept.NoOfNotificationData, &kept.NotificationData);
            return UaStatus();
        });
}

UaStatus callSetTriggering(SessionContext& context, ServiceSettings& settings, OpcUa_UInt32 subscriptionId,
                           OpcUa_UInt32 triggeringItemId, const UaUInt32Array& linksToAdd,
                           const UaUInt32Array& linksToRemove, OpcUa_SetTriggeringResponse& response)
{
    using Service = Services::SetTriggering;
    return callOnce<Service>(
        context, plainNames<Service>("Empty link arrays passed"),
        linksToAdd.length() + linksToRemove.length(), settings,
        [&](Service::Request& request) {
            request.SubscriptionId = subscriptionId;
            request.TriggeringItemId = triggeringItemId;
            request.NoOfLinksToAdd = static_cast<OpcUa_Int32>(linksToAdd.length());
            request.LinksToAdd = const_cast<OpcUa_UInt32*>(linksToAdd.rawData()); // the stack only reads
            request.NoOfLinksToRemove = static_cast<OpcUa_Int32>(linksToRemove.length());
            request.LinksToRemove = const_cast<OpcUa_UInt32*>(linksToRemove.rawData());
        },
        [&](Service::Response& answer) {
            std::swap(answer, response); // the caller's is cleared with it
            return UaStatus();
        });
}

} // namespace UaClientSdk
