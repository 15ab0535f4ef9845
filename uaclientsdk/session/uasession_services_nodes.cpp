// The node management services of a session.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/services/servicetable.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

namespace UaClientSdk {

namespace {

const BlockService<OpcUa_AddNodesRequest, OpcUa_AddNodesResponse, OpcUa_AddNodesItem, OpcUa_AddNodesResult>
    addNodesService{{"addNodes", "AddNodes", "Empty node array passed", "beginAddNodes", "addNodesCallback",
                     "addNodesComplete"},
                    UA_SERVICE(AddNodes, NodesToAdd),
                    UA_RESULTS(AddNodes),
                    true};

const BlockService<OpcUa_AddReferencesRequest, OpcUa_AddReferencesResponse, OpcUa_AddReferencesItem,
                   OpcUa_StatusCode>
    addReferencesService{{"addReferences", "AddReferences", "Empty reference array passed",
                          "beginAddReferences", "addReferencesCallback", "addReferencesComplete"},
                         UA_SERVICE(AddReferences, ReferencesToAdd),
                         UA_RESULTS(AddReferences),
                         true};

const BlockService<OpcUa_DeleteNodesRequest, OpcUa_DeleteNodesResponse, OpcUa_DeleteNodesItem,
                   OpcUa_StatusCode>
    deleteNodesService{{"deleteNodes", "DeleteNodes", "Empty node array passed", "beginDeleteNodes",
                        "deleteNodesCallback", "deleteNodesComplete"},
                       UA_SERVICE(DeleteNodes, NodesToDelete),
                       UA_RESULTS(DeleteNodes),
                       true};

const BlockService<OpcUa_DeleteReferencesRequest, OpcUa_DeleteReferencesResponse, OpcUa_DeleteReferencesItem,
                   OpcUa_StatusCode>
    deleteReferencesService{{"deleteReferences", "DeleteReferences", "Empty reference array passed",
                             "beginDeleteReferences", "deleteReferencesCallback", "deleteReferencesComplete"},
                            UA_SERVICE(DeleteReferences, ReferencesToDelete),
                            UA_RESULTS(DeleteReferences),
                            true};

} // namespace

UaStatus UaSession::addNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                             UaAddNodesResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, addNodesService, settings, nodesToAdd.span(), results, diagnosticInfos,
                        NothingToPrepare());
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
                        diagnosticInfos, NothingToPrepare());
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
                        diagnosticInfos, NothingToPrepare());
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
                        diagnosticInfos, NothingToPrepare());
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
