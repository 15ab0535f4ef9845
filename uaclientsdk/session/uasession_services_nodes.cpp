// Members of UaSession about nodes; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

namespace UaClientSdk {

namespace {

const auto addNodesService =
    keepingService<Services::AddNodes>(SplitService::AddNodes, "Empty node array passed");
const auto addReferencesService =
    keepingService<Services::AddReferences>(SplitService::AddReferences, "Empty reference array passed");
const auto deleteNodesService =
    keepingService<Services::DeleteNodes>(SplitService::DeleteNodes, "Empty node array passed");
const auto deleteReferencesService = keepingService<Services::DeleteReferences>(
    SplitService::DeleteReferences, "Empty reference array passed");

} // namespace

UaStatus UaSession::addNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                             UaAddNodesResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, addNodesService, settings, nodesToAdd.span(), results, diagnosticInfos);
}

UaStatus UaSession::beginAddNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                                  OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, addNodesService, settings, nodesToAdd.span(), NothingToPrepare(),
                         completeWith(transactionId, &UaSessionCallback::addNodesComplete));
}

UaStatus UaSession::addReferences(ServiceSettings& settings, const UaAddReferencesItems& referencesToAdd,
                                  UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, addReferencesService, settings, referencesToAdd.span(), results,
                        diagnosticInfos);
}

UaStatus UaSession::beginAddReferences(ServiceSettings& settings, const UaAddReferencesItems& referencesToAdd,
                                       OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, addReferencesService, settings, referencesToAdd.span(),
                         NothingToPrepare(),
                         completeWith(transactionId, &UaSessionCallback::addReferencesComplete));
}

UaStatus UaSession::deleteNodes(ServiceSettings& settings, const UaDeleteNodesItems& nodesToDelete,
                                UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, deleteNodesService, settings, nodesToDelete.span(), results,
                        diagnosticInfos);
}

UaStatus UaSession::beginDeleteNodes(ServiceSettings& settings, const UaDeleteNodesItems& nodesToDelete,
                                     OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, deleteNodesService, settings, nodesToDelete.span(), NothingToPrepare(),
                         completeWith(transactionId, &UaSessionCallback::deleteNodesComplete));
}

UaStatus UaSession::deleteReferences(ServiceSettings& settings,
                                     const UaDeleteReferencesItems& referencesToDelete,
                                     UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, deleteReferencesService, settings, referencesToDelete.span(), results,
                        diagnosticInfos);
}

UaStatus UaSession::beginDeleteReferences(ServiceSettings& settings,
                                          const UaDeleteReferencesItems& referencesToDelete,
                                          OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, deleteReferencesService, settings, referencesToDelete.span(),
                         NothingToPrepare(),
                         completeWith(transactionId, &UaSessionCallback::deleteReferencesComplete));
}

} // namespace UaClientSdk
