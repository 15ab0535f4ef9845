#include <uaclientsdk/subscription/subscriptionservices.h>

#include <opcua/opcua_clientapi.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/services/blockservice.h>

#include <cmath>

namespace UaClientSdk {

namespace {

const BlockService<OpcUa_SetPublishingModeRequest, OpcUa_SetPublishingModeResponse, OpcUa_UInt32,
                   OpcUa_StatusCode>
    setPublishingModeService{{"setPublishingMode", "SetPublishingMode", "Empty subscription array passed"},
                             OpcUa_ClientApi_SetPublishingMode,
                             OpcUa_ClientApi_BeginSetPublishingMode,
                             OpcUa_SetPublishingModeRequest_EncodeableType,
                             OpcUa_SetPublishingModeResponse_EncodeableType,
                             &OpcUa_SetPublishingModeRequest::NoOfSubscriptionIds,
                             &OpcUa_SetPublishingModeRequest::SubscriptionIds,
                             &OpcUa_SetPublishingModeResponse::NoOfResults,
                             &OpcUa_SetPublishingModeResponse::Results};

const BlockService<OpcUa_DeleteSubscriptionsRequest, OpcUa_DeleteSubscriptionsResponse, OpcUa_UInt32,
                   OpcUa_StatusCode>
    deleteService{{"deleteSubscription", "DeleteSubscriptions", "Empty subscription array passed"},
                  OpcUa_ClientApi_DeleteSubscriptions,
                  OpcUa_ClientApi_BeginDeleteSubscriptions,
                  OpcUa_DeleteSubscriptionsRequest_EncodeableType,
                  OpcUa_DeleteSubscriptionsResponse_EncodeableType,
                  &OpcUa_DeleteSubscriptionsRequest::NoOfSubscriptionIds,
                  &OpcUa_DeleteSubscriptionsRequest::SubscriptionIds,
                  &OpcUa_DeleteSubscriptionsResponse::NoOfResults,
                  &OpcUa_DeleteSubscriptionsResponse::Results};

const BlockService<OpcUa_TransferSubscriptionsRequest, OpcUa_TransferSubscriptionsResponse, OpcUa_UInt32,
                   OpcUa_TransferResult>
    transferService{{"transferSubscription", "TransferSubscriptions", "Empty subscription array passed"},
                    OpcUa_ClientApi_TransferSubscriptions,
                    OpcUa_ClientApi_BeginTransferSubscriptions,
                    OpcUa_TransferSubscriptionsRequest_EncodeableType,
                    OpcUa_TransferSubscriptionsResponse_EncodeableType,
                    &OpcUa_TransferSubscriptionsRequest::NoOfSubscriptionIds,
                    &OpcUa_TransferSubscriptionsRequest::SubscriptionIds,
                    &OpcUa_TransferSubscriptionsResponse::NoOfResults,
                    &OpcUa_TransferSubscriptionsResponse::Results};

UaUInt32Array single(OpcUa_UInt32 id)
{
    return UaUInt32Array(1, &id);
}

// One call of a service that has no array. prepare(request) fills what is its own.
template <typename Request, typename Response, typename Prepare>
UaStatus callOnce(SessionContext& context, ServiceSettings& settings, const ServiceNames& names,
                  OpcUa_StatusCode (*function)(OpcUa_Channel, const Request*, Response*),
                  const OpcUa_EncodeableType& requestType, Response& response, const Prepare& prepare,
                  OpcUa_UInt32 count = 1)
{
    UaTrace::tInOut("--> UaSession::%s [Session=%u]", names.method, context.traceId);
    UaStatus status = checkReady(context, names, count);
    if (status.isGood()) {
        BorrowingRequest<Request> request(requestType);
        {
            SessionLock lock(context.mutex);
            context.fillRequestHeaderLocked(settings, request->RequestHeader);
        }
        settings.requestTime = UaDateTime(request->RequestHeader.Timestamp);
        prepare(*request);
        status = UaStatus(callStack(names.stackName, function, context.channel, *request, response));
        settings.responseTime = UaDateTime(response.ResponseHeader.Timestamp);
    }
    UaTrace::tInOut("<-- UaSession::%s [ret=0x%lx]", names.method,
                    static_cast<unsigned long>(status.statusCode()));
    return status;
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
    Encodeable<OpcUa_CreateSubscriptionResponse> response(OpcUa_CreateSubscriptionResponse_EncodeableType);
    const UaStatus status =
        callOnce(context, settings, {"createSubscription", "CreateSubscription", ""},
                 OpcUa_ClientApi_CreateSubscription, OpcUa_CreateSubscriptionRequest_EncodeableType,
                 *response, [&](OpcUa_CreateSubscriptionRequest& request) {
                     fillSettings(request, subscriptionSettings);
                     request.PublishingEnabled = publishingEnabled ? OpcUa_True : OpcUa_False;
                 });
    if (status.isGood()) {
        takeRevised(*response, subscriptionSettings);
        subscriptionId = response->SubscriptionId;
    }
    return status;
}

UaStatus callModifySubscription(SessionContext& context, ServiceSettings& settings,
                                SubscriptionSettings& subscriptionSettings, OpcUa_UInt32 subscriptionId)
{
    Encodeable<OpcUa_ModifySubscriptionResponse> response(OpcUa_ModifySubscriptionResponse_EncodeableType);
    const UaStatus status =
        callOnce(context, settings, {"modifySubscription", "ModifySubscription", ""},
                 OpcUa_ClientApi_ModifySubscription, OpcUa_ModifySubscriptionRequest_EncodeableType,
                 *response, [&](OpcUa_ModifySubscriptionRequest& request) {
                     fillSettings(request, subscriptionSettings);
                     request.SubscriptionId = subscriptionId;
                 });
    if (status.isGood())
        takeRevised(*response, subscriptionSettings);
    return status;
}

UaStatus callDeleteSubscription(SessionContext& context, ServiceSettings& settings,
                                OpcUa_UInt32 subscriptionId)
{
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status = callInBlocks(context, deleteService, settings, single(subscriptionId), results,
                                         diagnosticInfos, NothingToPrepare());
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

UaStatus callSetTriggering(SessionContext& context, ServiceSettings& settings, OpcUa_UInt32 subscriptionId,
                           OpcUa_UInt32 triggeringItemId, const UaUInt32Array& linksToAdd,
                           const UaUInt32Array& linksToRemove, OpcUa_SetTriggeringResponse& response)
{
    return callOnce(
        context, settings, {"setTriggering", "SetTriggering", "Empty link arrays passed"},
        OpcUa_ClientApi_SetTriggering, OpcUa_SetTriggeringRequest_EncodeableType, response,
        [&](OpcUa_SetTriggeringRequest& request) {
            request.SubscriptionId = subscriptionId;
            request.TriggeringItemId = triggeringItemId;
            request.NoOfLinksToAdd = static_cast<OpcUa_Int32>(linksToAdd.length());
            request.LinksToAdd = const_cast<OpcUa_UInt32*>(linksToAdd.rawData()); // the stack only reads
            request.NoOfLinksToRemove = static_cast<OpcUa_Int32>(linksToRemove.length());
            request.LinksToRemove = const_cast<OpcUa_UInt32*>(linksToRemove.rawData());
        },
        linksToAdd.length() + linksToRemove.length());
}

} // namespace UaClientSdk
