#include <uaclientsdk/uasubscription.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/subscription/subscriptionservices.h>
#include <uaclientsdk/subscription/triggeringlinks.h>
#include <uaclientsdk/subscription/uasubscription_p.h>
#include <uaclientsdk/uasessioncallback.h>

#include <memory>
#include <utility>

namespace UaClientSdk {

namespace {

const auto createItemsService = keepingService<Services::CreateMonitoredItems>(
    SplitService::CreateMonitoredItems, "Empty monitored item array passed");
const auto modifyItemsService = keepingService<Services::ModifyMonitoredItems>(
    SplitService::ModifyMonitoredItems, "Empty monitored item array passed");
const auto monitoringModeService = keepingService<Services::SetMonitoringMode>(
    SplitService::SetMonitoringMode, "Empty monitored item id array passed");
const auto deleteItemsService = keepingService<Services::DeleteMonitoredItems>(
    SplitService::DeleteMonitoredItems, "Empty monitored item id array passed");

template <typename T>
T guarded(const UaSubscriptionPrivate& inside, T UaSubscriptionPrivate::*field)
{
    SessionLock lock(inside.context.mutex);
    return inside.*field;
}

UaStatus checkValid(const UaSubscriptionPrivate& inside)
{
    return guarded(inside, &UaSubscriptionPrivate::valid) ? UaStatus()
                                                          : UaStatus(OpcUa_BadSubscriptionIdInvalid);
}

// One item service, in blocks, for a valid subscription. prepare(request) sets what is its own.
template <typename Service, typename Prepare>
UaStatus callItems(UaSubscriptionPrivate& inside, const Service& service, ServiceSettings& settings,
                   const UaArray<typename Service::ItemType>& items,
                   UaArray<typename Service::ResultType>& results, UaDiagnosticInfos& diagnosticInfos,
                   const Prepare& prepare)
{
    const UaStatus valid = checkValid(inside);
    if (valid.isBad()) {
        results.clear();
        diagnosticInfos.clear();
        return valid;
    }
    return callInBlocks(inside.context, service, settings, items.span(), results, diagnosticInfos,
                        [&inside, &prepare](typename Service::RequestType& request, OpcUa_UInt32) {
                            request.SubscriptionId = inside.id;
                            prepare(request);
                        });
}

template <typename Result>
using Completion = void (UaSubscriptionCallback::*)(OpcUa_UInt32, const UaStatus&, const UaArray<Result>&,
                                                    const UaDiagnosticInfos&);

template <typename Service, typename Prepare>
UaStatus beginItems(const UaRefPtr<UaSubscriptionPrivate>& inside, const Service& service,
                    ServiceSettings& settings, const UaArray<typename Service::ItemType>& items,
                    OpcUa_UInt32 transactionId, Completion<typename Service::ResultType> completion,
                    const Prepare& prepare)
{
    const std::shared_ptr<SubscriptionPending> pending = SubscriptionPending::begin(inside);
    if (!pending)
        return UaStatus(OpcUa_BadSubscriptionIdInvalid);
    return beginInBlocks(
        inside->context, service, settings, items.span(),
        [id = inside->id, prepare](typename Service::RequestType& request, OpcUa_UInt32) {
            request.SubscriptionId = id;
            prepare(request);
        },
        [pending, completion, transactionId](UaSessionCallback&, const UaStatus& status,
                                             const UaArray<typename Service::ResultType>& results,
                                             const UaDiagnosticInfos& diagnosticInfos) {
            pending->complete([&](UaSubscriptionCallback& callback) {
                (callback.*completion)(transactionId, status, results, diagnosticInfos);
            });
        });
}

constexpr auto prepareNothing = [](auto&) {};

} // namespace

UaSubscription::UaSubscription(const UaRefPtr<UaSubscriptionPrivate>& inside) : d(inside) {}

UaSubscription::~UaSubscription() = default;

OpcUa_UInt32 UaSubscription::subscriptionId() const
{
    return d->id;
}

OpcUa_UInt32 UaSubscription::clientSubscriptionHandle() const
{
    return d->handle;
}

bool UaSubscription::isValid() const
{
    return guarded(*d, &UaSubscriptionPrivate::valid);
}

double UaSubscription::publishingInterval() const
{
    return guarded(*d, &UaSubscriptionPrivate::settings).publishingInterval;
}

OpcUa_UInt32 UaSubscription::lifetimeCount() const
{
    return guarded(*d, &UaSubscriptionPrivate::settings).lifetimeCount;
}

OpcUa_UInt32 UaSubscription::maxKeepAliveCount() const
{
    return guarded(*d, &UaSubscriptionPrivate::settings).maxKeepAliveCount;
}

OpcUa_UInt32 UaSubscription::maxNotificationsPerPublish() const
{
    return guarded(*d, &UaSubscriptionPrivate::settings).maxNotificationsPerPublish;
}

OpcUa_Byte UaSubscription::priority() const
{
    return guarded(*d, &UaSubscriptionPrivate::settings).priority;
}

bool UaSubscription::publishingEnabled() const
{
    return guarded(*d, &UaSubscriptionPrivate::publishingEnabled);
}

UaStatus UaSubscription::modifySubscription(ServiceSettings& settings,
                                            const SubscriptionSettings& subscriptionSettings)
{
    UaStatus status = checkValid(*d);
    SubscriptionSettings revised = subscriptionSettings;
    if (status.isGood())
        status = callModifySubscription(d->context, settings, revised, d->id);
    if (status.isGood()) {
        SessionLock lock(d->context.mutex);
        d->settings = revised;
    }
    return status;
}

UaStatus UaSubscription::setPublishingMode(ServiceSettings& settings, bool publishingEnabled)
{
    const UaStatus valid = checkValid(*d);
    if (valid.isBad())
        return valid;
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status = callSetPublishingMode(d->context, settings, publishingEnabled,
                                                  UaUInt32Array(1, &d->id), results, diagnosticInfos);
    if (status.isBad() || OpcUa_IsBad(results[0]))
        return status.isBad() ? status : UaStatus(results[0]);
    SessionLock lock(d->context.mutex);
    d->publishingEnabled = publishingEnabled;
    return status;
}

UaStatus UaSubscription::createMonitoredItems(ServiceSettings& settings,
                                              OpcUa_TimestampsToReturn timestampsToReturn,
                                              const UaMonitoredItemCreateRequests& requests,
                                              UaMonitoredItemCreateResults& results,
                                              UaDiagnosticInfos& diagnosticInfos)
{
    return callItems(
        *d, createItemsService, settings, requests, results, diagnosticInfos,
        [timestampsToReturn](auto& request) { request.TimestampsToReturn = timestampsToReturn; });
}

UaStatus UaSubscription::modifyMonitoredItems(ServiceSettings& settings,
                                              OpcUa_TimestampsToReturn timestampsToReturn,
                                              const UaMonitoredItemModifyRequests& requests,
                                              UaMonitoredItemModifyResults& results,
                                              UaDiagnosticInfos& diagnosticInfos)
{
    return callItems(
        *d, modifyItemsService, settings, requests, results, diagnosticInfos,
        [timestampsToReturn](auto& request) { request.TimestampsToReturn = timestampsToReturn; });
}

UaStatus UaSubscription::setMonitoringMode(ServiceSettings& settings, OpcUa_MonitoringMode monitoringMode,
                                           const UaUInt32Array& monitoredItemIds, UaStatusCodeArray& results,
                                           UaDiagnosticInfos& diagnosticInfos)
{
    return callItems(
        *d, monitoringModeService, settings, monitoredItemIds, results, diagnosticInfos,
        [monitoringMode](auto& request) { request.MonitoringMode = monitoringMode; });
}

UaStatus UaSubscription::deleteMonitoredItems(ServiceSettings& settings,
                                              const UaUInt32Array& monitoredItemIds,
                                              UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callItems(*d, deleteItemsService, settings, monitoredItemIds, results, diagnosticInfos,
                     prepareNothing);
}

UaStatus UaSubscription::setTriggering(ServiceSettings& settings, OpcUa_UInt32 triggeringItemId,
                                       const UaUInt32Array& linksToAdd, const UaUInt32Array& linksToRemove,
                                       UaStatusCodeArray& addResults, UaDiagnosticInfos& addDiagnosticInfos,
                                       UaStatusCodeArray& removeResults,
                                       UaDiagnosticInfos& removeDiagnosticInfos)
{
    TriggeringLinks added(linksToAdd, addResults, addDiagnosticInfos);
    TriggeringLinks removed(linksToRemove, removeResults, removeDiagnosticInfos);
    const UaStatus valid = checkValid(*d);
    return valid.isBad() ? valid
                         : callSetTriggering(d->context, settings, d->id, triggeringItemId, added, removed);
}

UaStatus UaSubscription::beginCreateMonitoredItems(ServiceSettings& settings,
                                                   OpcUa_TimestampsToReturn timestampsToReturn,
                                                   const UaMonitoredItemCreateRequests& requests,
                                                   OpcUa_UInt32 transactionId)
{
    return beginItems(
        d, createItemsService, settings, requests, transactionId,
        &UaSubscriptionCallback::createMonitoredItemsComplete,
        [timestampsToReturn](auto& request) { request.TimestampsToReturn = timestampsToReturn; });
}

UaStatus UaSubscription::beginModifyMonitoredItems(ServiceSettings& settings,
                                                   OpcUa_TimestampsToReturn timestampsToReturn,
                                                   const UaMonitoredItemModifyRequests& requests,
                                                   OpcUa_UInt32 transactionId)
{
    return beginItems(
        d, modifyItemsService, settings, requests, transactionId,
        &UaSubscriptionCallback::modifyMonitoredItemsComplete,
        [timestampsToReturn](auto& request) { request.TimestampsToReturn = timestampsToReturn; });
}

UaStatus UaSubscription::beginSetMonitoringMode(ServiceSettings& settings,
                                                OpcUa_MonitoringMode monitoringMode,
                                                const UaUInt32Array& monitoredItemIds,
                                                OpcUa_UInt32 transactionId)
{
    return beginItems(
        d, monitoringModeService, settings, monitoredItemIds, transactionId,
        &UaSubscriptionCallback::setMonitoringModeComplete,
        [monitoringMode](auto& request) { request.MonitoringMode = monitoringMode; });
}

UaStatus UaSubscription::beginDeleteMonitoredItems(ServiceSettings& settings,
                                                   const UaUInt32Array& monitoredItemIds,
                                                   OpcUa_UInt32 transactionId)
{
    return beginItems(d, deleteItemsService, settings, monitoredItemIds, transactionId,
                      &UaSubscriptionCallback::deleteMonitoredItemsComplete, prepareNothing);
}

} // namespace UaClientSdk
