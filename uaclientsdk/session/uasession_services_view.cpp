// Members of UaSession that browse; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>

namespace UaClientSdk {

namespace {

// These two report a missing connection as an internal error.
template <typename Traits>
constexpr BlockService<Traits> browsingService(SplitService splitService, const char* emptyText)
{
    BlockService<Traits> service = blockService<Traits>(splitService, emptyText);
    service.names.notConnected = OpcUa_BadInternalError;
    service.names.notConnectedText = "OpcUa_BadInternalError";
    return service;
}

const auto browseService =
    browsingService<Services::Browse>(SplitService::Browse, "Empty browse array passed");
const auto browseNextService =
    browsingService<Services::BrowseNext>(SplitService::BrowseNext, "Empty continuation point passed");
const auto translateService = blockService<Services::TranslateBrowsePathsToNodeIds>(
    SplitService::TranslateBrowsePaths, "Empty browse path array passed");
const auto registerService =
    keepingService<Services::RegisterNodes>(SplitService::RegisterNodes, "Empty node array passed");
const auto unregisterService =
    keepingService<Services::UnregisterNodes>(SplitService::UnregisterNodes, "Empty node array passed");

// Takes the one result of a browse apart.
UaStatus takeBrowseResult(UaBrowseResults& results, UaByteString& continuationPoint,
                          UaReferenceDescriptions& references)
{
    OpcUa_BrowseResult& result = results[0];
    continuationPoint.attach(&result.ContinuationPoint);
    references.attachFrom(&result.NoOfReferences, &result.References);
    return UaStatus(result.StatusCode);
}

void setView(OpcUa_BrowseRequest& request, const BrowseContext& context)
{
    // borrowed, like the request's arrays
    request.View.ViewId = *context.viewId.get();
    request.View.Timestamp = context.viewTimestamp.value();
    request.View.ViewVersion = context.viewVersion;
    request.RequestedMaxReferencesPerNode = context.maxReferencesToReturn;
}

} // namespace

UaStatus UaSession::browse(ServiceSettings& settings, const UaNodeId& nodeToBrowse,
                           const BrowseContext& context, UaByteString& continuationPoint,
                           UaReferenceDescriptions& references)
{
    continuationPoint.clear();
    references.clear();
    UaBrowseDescriptions nodes(1u);
    if (OpcUa_IsBad(nodeToBrowse.copyTo(&nodes[0].NodeId)) ||
        OpcUa_IsBad(context.referenceTypeId.copyTo(&nodes[0].ReferenceTypeId)))
        return UaStatus(OpcUa_BadOutOfMemory);
    nodes[0].BrowseDirection = context.browseDirection;
    nodes[0].IncludeSubtypes = context.includeSubtypes ? OpcUa_True : OpcUa_False;
    nodes[0].NodeClassMask = context.nodeClassMask;
    nodes[0].ResultMask = context.resultMask;
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        callInBlocks(d->context, browseService, settings, nodes.span(), results, diagnosticInfos,
                     [&](OpcUa_BrowseRequest& request, OpcUa_UInt32) { setView(request, context); });
    return status.isBad() ? status : takeBrowseResult(results, continuationPoint, references);
}

UaStatus UaSession::browseNext(ServiceSettings& settings, bool releaseContinuationPoint,
                               UaByteString& continuationPoint, UaReferenceDescriptions& references)
{
    references.clear();
    UaByteStringArray points;
    if (!points.append(*continuationPoint.get()))
        return UaStatus(OpcUa_BadOutOfMemory);
    continuationPoint.clear();
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        browseListNext(settings, releaseContinuationPoint, points, results, diagnosticInfos);
    return status.isBad() || results.isEmpty() ? status
                                               : takeBrowseResult(results, continuationPoint, references);
}

UaStatus UaSession::browseList(ServiceSettings& settings, const UaNodeId& viewId,
                               OpcUa_UInt32 maxReferencesToReturn, const UaBrowseDescriptions& nodesToBrowse,
                               UaBrowseResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    BrowseContext context;
    context.viewId = viewId;
    context.maxReferencesToReturn = maxReferencesToReturn;
    return callInBlocks(d->context, browseService, settings, nodesToBrowse.span(), results, diagnosticInfos,
                        [&](OpcUa_BrowseRequest& request, OpcUa_UInt32) { setView(request, context); });
}

UaStatus UaSession::browseListNext(ServiceSettings& settings, bool releaseContinuationPoints,
                                   const UaByteStringArray& continuationPoints, UaBrowseResults& results,
                                   UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(
        d->context, browseNextService, settings, continuationPoints.span(), results, diagnosticInfos,
        [&](OpcUa_BrowseNextRequest& request, OpcUa_UInt32) {
            request.ReleaseContinuationPoints = releaseContinuationPoints ? OpcUa_True : OpcUa_False;
        });
}

UaStatus UaSession::translateBrowsePathsToNodeIds(ServiceSettings& settings, const UaBrowsePaths& browsePaths,
                                                  UaBrowsePathResults& results,
                                                  UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, translateService, settings, browsePaths.span(), results, diagnosticInfos);
}

UaStatus UaSession::registerNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToRegister,
                                  UaNodeIdArray& registeredNodes)
{
    UaDiagnosticInfos none;
    return callInBlocks(d->context, registerService, settings, nodesToRegister.span(), registeredNodes, none);
}

UaStatus UaSession::unregisterNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToUnregister)
{
    UaStatusCodeArray noResults;
    UaDiagnosticInfos none;
    return callInBlocks(d->context, unregisterService, settings, nodesToUnregister.span(), noResults, none);
}

} // namespace UaClientSdk
