#include <uaclientsdk/subscription/subscriptionservices.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/blockplan.h>
#include <uaclientsdk/services/blockservice.h>
#include <uaclientsdk/services/callonce.h>
#include <uaclientsdk/subscription/triggeringlinks.h>

#include <cmath>
#include <span>
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

// ---- triggering

struct Trigger
{
    OpcUa_UInt32 subscriptionId;
    OpcUa_UInt32 itemId;
};

struct LinksOfBlock
{
    TriggeringLinks& all;
    std::span<const OpcUa_UInt32> now;
};

UaStatus callTriggeringBlock(SessionContext& context, ServiceSettings& settings, const Trigger& trigger,
                             const LinksOfBlock& add, const LinksOfBlock& remove)
{
    return callOnce<Services::SetTriggering>(
        context, plainNames<Services::SetTriggering>("Empty link arrays passed"),
        static_cast<OpcUa_UInt32>(add.now.size() + remove.now.size()), settings,
        [&](OpcUa_SetTriggeringRequest& request) {
            request.SubscriptionId = trigger.subscriptionId;
            request.TriggeringItemId = trigger.itemId;
            request.NoOfLinksToAdd = static_cast<OpcUa_Int32>(add.now.size());
            request.LinksToAdd = const_cast<OpcUa_UInt32*>(add.now.data()); // the stack only reads
            request.NoOfLinksToRemove = static_cast<OpcUa_Int32>(remove.now.size());
            request.LinksToRemove = const_cast<OpcUa_UInt32*>(remove.now.data());
        },
        [&](OpcUa_SetTriggeringResponse& answer) {
            if (add.all.take(add.now.size(), &answer.NoOfAddResults, &answer.AddResults,
                             &answer.NoOfAddDiagnosticInfos, &answer.AddDiagnosticInfos) &&
                remove.all.take(remove.now.size(), &answer.NoOfRemoveResults, &answer.RemoveResults,
                                &answer.NoOfRemoveDiagnosticInfos, &answer.RemoveDiagnosticInfos))
                return UaStatus();
            UaTrace::tError(
                "Error: UaSession::setTriggering - number of results does not match number of requests");
            add.all.clear();
            remove.all.clear();
            return UaStatus(wrongResultCount);
        });
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
                           OpcUa_UInt32 triggeringItemId, TriggeringLinks& linksToAdd,
                           TriggeringLinks& linksToRemove)
{
    BlockPlan plan = planBlocks(context, SplitService::SetTriggering, true);
    for (;;) {
        // what goes makes room for what comes
        const auto removed = linksToRemove.next(plan.limit);
        const auto added = linksToAdd.next(plan.limit - static_cast<OpcUa_UInt32>(removed.size()));
        const UaStatus status = callTriggeringBlock(context, settings, {subscriptionId, triggeringItemId},
                                                    {linksToAdd, added}, {linksToRemove, removed});
        if (plan.shrinkAfter(status, static_cast<OpcUa_UInt32>(removed.size() + added.size())))
            continue;
        if (status.isGood())
            rememberSize(context, plan);
        if (status.isBad() || (linksToAdd.isDone() && linksToRemove.isDone()))
            return status;
    }
}

} // namespace UaClientSdk
