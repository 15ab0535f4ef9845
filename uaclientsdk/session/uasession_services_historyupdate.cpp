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

using UpdateCompletion = void (UaSessionCallback::*)(OpcUa_UInt32, const UaStatus&, UaHistoryUpdateResults&,
                                                     UaDiagnosticInfos&);

// One service of the server goes by five names, one for each kind of details.
template <typename Details>
struct UpdateKind
{
    constexpr UpdateKind(SplitService splitService, const char* method, const char* beginMethod,
                         const char* completeMethod, const OpcUa_EncodeableType& detailsType,
                         UpdateCompletion told)
        : service{{method, "Empty update details array passed", beginMethod, Services::HistoryUpdate::handler,
                   completeMethod},
                  splitService},
          type(detailsType), completion(told)
    {
        service.hasEffects = true;
    }

    BlockService<Services::HistoryUpdate> service;
    const OpcUa_EncodeableType& type;
    const UpdateCompletion completion;
};

const UpdateKind<OpcUa_UpdateDataDetails> updateData{SplitService::HistoryUpdateData,
                                                     "historyUpdateData",
                                                     "beginHistoryUpdateData",
                                                     "historyUpdateDataComplete",
                                                     OpcUa_UpdateDataDetails_EncodeableType,
                                                     &UaSessionCallback::historyUpdateDataComplete};
const UpdateKind<OpcUa_UpdateEventDetails> updateEvents{SplitService::HistoryUpdateEvents,
                                                        "historyUpdateEvents",
                                                        "beginHistoryUpdateEvents",
                                                        "historyUpdateEventsComplete",
                                                        OpcUa_UpdateEventDetails_EncodeableType,
                                                        &UaSessionCallback::historyUpdateEventsComplete};
const UpdateKind<OpcUa_DeleteRawModifiedDetails> deleteRawModified{
    SplitService::HistoryUpdateData,
    "historyDeleteRawModified",
    "beginHistoryDeleteRawModified",
    "historyDeleteRawModifiedComplete",
    OpcUa_DeleteRawModifiedDetails_EncodeableType,
    &UaSessionCallback::historyDeleteRawModifiedComplete};
const UpdateKind<OpcUa_DeleteAtTimeDetails> deleteAtTime{SplitService::HistoryUpdateData,
                                                         "historyDeleteAtTime",
                                                         "beginHistoryDeleteAtTime",
                                                         "historyDeleteAtTimeComplete",
                                                         OpcUa_DeleteAtTimeDetails_EncodeableType,
                                                         &UaSessionCallback::historyDeleteAtTimeComplete};
const UpdateKind<OpcUa_DeleteEventDetails> deleteEvents{SplitService::HistoryUpdateEvents,
                                                        "historyDeleteEvents",
                                                        "beginHistoryDeleteEvents",
                                                        "historyDeleteEventsComplete",
                                                        OpcUa_DeleteEventDetails_EncodeableType,
                                                        &UaSessionCallback::historyDeleteEventsComplete};

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
UaStatus update(SessionContext& context, const UpdateKind<Details>& kind, ServiceSettings& settings,
                const UaArray<Details>& details, UaHistoryUpdateResults& results,
                UaDiagnosticInfos& diagnosticInfos)
try {
    return callInBlocks(context, kind.service, settings, wrap(details, kind.type), results, diagnosticInfos);
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

template <typename Details>
UaStatus beginUpdate(SessionContext& context, const UpdateKind<Details>& kind, ServiceSettings& settings,
                     const UaArray<Details>& details, OpcUa_UInt32 transactionId)
try {
    return beginInBlocks(context, kind.service, settings, wrap(details, kind.type), NothingToPrepare(),
                         completeWith(transactionId, kind.completion));
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

} // namespace

UaStatus UaSession::historyUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                                      UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, updateData, settings, details, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                                           OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, updateData, settings, details, transactionId);
}

UaStatus UaSession::historyUpdateEvents(ServiceSettings& settings, const UaUpdateEventDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, updateEvents, settings, details, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryUpdateEvents(ServiceSettings& settings,
                                             const UaUpdateEventDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, updateEvents, settings, details, transactionId);
}

UaStatus UaSession::historyDeleteRawModified(ServiceSettings& settings,
                                             const UaDeleteRawModifiedDetailsArray& details,
                                             UaHistoryUpdateResults& results,
                                             UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteRawModified, settings, details, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteRawModified(ServiceSettings& settings,
                                                  const UaDeleteRawModifiedDetailsArray& details,
                                                  OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteRawModified, settings, details, transactionId);
}

UaStatus UaSession::historyDeleteAtTime(ServiceSettings& settings, const UaDeleteAtTimeDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteAtTime, settings, details, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteAtTime(ServiceSettings& settings,
                                             const UaDeleteAtTimeDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteAtTime, settings, details, transactionId);
}

UaStatus UaSession::historyDeleteEvents(ServiceSettings& settings, const UaDeleteEventDetailsArray& details,
                                        UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return update(d->context, deleteEvents, settings, details, results, diagnosticInfos);
}

UaStatus UaSession::beginHistoryDeleteEvents(ServiceSettings& settings,
                                             const UaDeleteEventDetailsArray& details,
                                             OpcUa_UInt32 transactionId)
{
    return beginUpdate(d->context, deleteEvents, settings, details, transactionId);
}

} // namespace UaClientSdk
