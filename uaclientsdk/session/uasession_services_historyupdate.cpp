// Members of UaSession that change history; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/values/uaarray.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <new>
#include <vector>

namespace UaClientSdk {

namespace {

using UpdateService = BlockService<Services::HistoryUpdate>;

// One service of the server under five names.
constexpr UpdateService updateService(const char* method, const char* beginMethod, const char* completion)
{
    return {{method, "Empty update details array passed", beginMethod, Services::HistoryUpdate::handler,
             completion},
            true};
}

const UpdateService updateDataService =
    updateService("historyUpdateData", "beginHistoryUpdateData", "historyUpdateDataComplete");
const UpdateService updateEventsService =
    updateService("historyUpdateEvents", "beginHistoryUpdateEvents", "historyUpdateEventsComplete");
const UpdateService deleteRawModifiedService = updateService(
    "historyDeleteRawModified", "beginHistoryDeleteRawModified", "historyDeleteRawModifiedComplete");
const UpdateService deleteAtTimeService =
    updateService("historyDeleteAtTime", "beginHistoryDeleteAtTime", "historyDeleteAtTimeComplete");
const UpdateService deleteEventsService =
    updateService("historyDeleteEvents", "beginHistoryDeleteEvents", "historyDeleteEventsComplete");

// The details as the request carries them; their bodies are borrowed.
template <typename Details>
std::vector<OpcUa_ExtensionObject> wrap(const UaArray<Details>& details, const OpcUa_EncodeableType& type)
{
    std::vector<OpcUa_ExtensionObject> wrapped(details.length());
    for (OpcUa_UInt32 i = 0; i < details.length(); ++i) {
        OpcUa_ExtensionObject_Initialize(&wrapped[i]);
        OpcUa_ExtensionObject_AttachEncodeable(&wrapped[i], &type, const_cast<Details*>(&details[i]));
    }
    return wrapped;
}

template <typename Details>
UaStatus update(SessionContext& context, const UpdateService& service, ServiceSettings& settings,
                const UaArray<Details>& details, const OpcUa_EncodeableType& type,
                UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
try {
    return callInBlocks(context, service, settings, wrap(details, type), results, diagnosticInfos);
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

using UpdateCompletion = void (UaSessionCallback::*)(OpcUa_UInt32, const UaStatus&, UaHistoryUpdateResults&,
                                                     UaDiagnosticInfos&);

template <typename Details>
UaStatus beginUpdate(SessionContext& context, const UpdateService& service, ServiceSettings& settings,
                     const UaArray<Details>& details, const OpcUa_EncodeableType& type,
                     OpcUa_UInt32 transactionId, UpdateCompletion completion)
try {
    return beginInBlocks(context, service, settings, wrap(details, type), NothingToPrepare(),
                         completeWith(transactionId, completion));
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

} // namespace

UaStatus UaSession::historyUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                                      UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, updateDataService, settings, details, OpcUa_UpdateDataDetails_EncodeableType,
                  results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                                           OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, updateDataService, settings, details,
                       OpcUa_UpdateDataDetails_EncodeableType, transactionId,
                       &UaSessionCallback::historyUpdateDataComplete);
}

UaStatus UaSession::historyUpdateEvents(ServiceSettings& settings, const UaUpdateEventDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, updateEventsService, settings, details, OpcUa_UpdateEventDetails_EncodeableType,
                  results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryUpdateEvents(ServiceSettings& settings,
                                             const UaUpdateEventDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, updateEventsService, settings, details,
                       OpcUa_UpdateEventDetails_EncodeableType, transactionId,
                       &UaSessionCallback::historyUpdateEventsComplete);
}

UaStatus UaSession::historyDeleteRawModified(ServiceSettings& settings,
                                             const UaDeleteRawModifiedDetailsArray& details,
                                             UaHistoryUpdateResults& results,
                                             UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteRawModifiedService, settings, details,
                  OpcUa_DeleteRawModifiedDetails_EncodeableType, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteRawModified(ServiceSettings& settings,
                                                  const UaDeleteRawModifiedDetailsArray& details,
                                                  OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteRawModifiedService, settings, details,
                       OpcUa_DeleteRawModifiedDetails_EncodeableType, transactionId,
                       &UaSessionCallback::historyDeleteRawModifiedComplete);
}

UaStatus UaSession::historyDeleteAtTime(ServiceSettings& settings, const UaDeleteAtTimeDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteAtTimeService, settings, details,
                  OpcUa_DeleteAtTimeDetails_EncodeableType, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteAtTime(ServiceSettings& settings,
                                             const UaDeleteAtTimeDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteAtTimeService, settings, details,
                       OpcUa_DeleteAtTimeDetails_EncodeableType, transactionId,
                       &UaSessionCallback::historyDeleteAtTimeComplete);
}

UaStatus UaSession::historyDeleteEvents(ServiceSettings& settings, const UaDeleteEventDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteEventsService, settings, details, OpcUa_DeleteEventDetails_EncodeableType,
                  results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteEvents(ServiceSettings& settings,
                                             const UaDeleteEventDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteEventsService, settings, details,
                       OpcUa_DeleteEventDetails_EncodeableType, transactionId,
                       &UaSessionCallback::historyDeleteEventsComplete);
}

} // namespace UaClientSdk
