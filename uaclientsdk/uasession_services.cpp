// The attribute and view services of a session.
#include <uaclientsdk/uasession.h>

#include <opcua/opcua_clientapi.h>
#include <uabase/uavariant.h>
#include <uaclientsdk/blockservice.h>
#include <uaclientsdk/uasession_p.h>

namespace UaClientSdk {

namespace {

// The view services report a missing connection as an internal error.
constexpr OpcUa_StatusCode viewNotConnected = OpcUa_BadInternalError;
constexpr const char* viewNotConnectedText = "OpcUa_BadInternalError";

const BlockService<OpcUa_ReadRequest, OpcUa_ReadResponse, OpcUa_ReadValueId, OpcUa_DataValue> readService{
    {"read", "Read", "Empty read array passed"},
    OpcUa_ClientApi_Read,
    OpcUa_ReadRequest_EncodeableType,
    OpcUa_ReadResponse_EncodeableType,
    &OpcUa_ReadRequest::NoOfNodesToRead,
    &OpcUa_ReadRequest::NodesToRead,
    &OpcUa_ReadResponse::NoOfResults,
    &OpcUa_ReadResponse::Results};

const BlockService<OpcUa_WriteRequest, OpcUa_WriteResponse, OpcUa_WriteValue, OpcUa_StatusCode> writeService{
    {"write", "Write", "Empty write array passed"},
    OpcUa_ClientApi_Write,
    OpcUa_WriteRequest_EncodeableType,
    OpcUa_WriteResponse_EncodeableType,
    &OpcUa_WriteRequest::NoOfNodesToWrite,
    &OpcUa_WriteRequest::NodesToWrite,
    &OpcUa_WriteResponse::NoOfResults,
    &OpcUa_WriteResponse::Results};

const BlockService<OpcUa_BrowseRequest, OpcUa_BrowseResponse, OpcUa_BrowseDescription, OpcUa_BrowseResult>
    browseService{{"browse", "Browse", "Empty browse array passed", viewNotConnected, viewNotConnectedText},
                  OpcUa_ClientApi_Browse,
                  OpcUa_BrowseRequest_EncodeableType,
                  OpcUa_BrowseResponse_EncodeableType,
                  &OpcUa_BrowseRequest::NoOfNodesToBrowse,
                  &OpcUa_BrowseRequest::NodesToBrowse,
                  &OpcUa_BrowseResponse::NoOfResults,
                  &OpcUa_BrowseResponse::Results};

const BlockService<OpcUa_BrowseNextRequest, OpcUa_BrowseNextResponse, OpcUa_ByteString, OpcUa_BrowseResult>
    browseNextService{{"browseNext", "BrowseNext", "Empty continuation point passed", viewNotConnected,
                       viewNotConnectedText},
                      OpcUa_ClientApi_BrowseNext,
                      OpcUa_BrowseNextRequest_EncodeableType,
                      OpcUa_BrowseNextResponse_EncodeableType,
                      &OpcUa_BrowseNextRequest::NoOfContinuationPoints,
                      &OpcUa_BrowseNextRequest::ContinuationPoints,
                      &OpcUa_BrowseNextResponse::NoOfResults,
                      &OpcUa_BrowseNextResponse::Results};

const BlockService<OpcUa_TranslateBrowsePathsToNodeIdsRequest, OpcUa_TranslateBrowsePathsToNodeIdsResponse,
                   OpcUa_BrowsePath, OpcUa_BrowsePathResult>
    translateService{
        {"translateBrowsePathsToNodeIds", "TranslateBrowsePathsToNodeIds", "Empty browse path array passed"},
        OpcUa_ClientApi_TranslateBrowsePathsToNodeIds,
        OpcUa_TranslateBrowsePathsToNodeIdsRequest_EncodeableType,
        OpcUa_TranslateBrowsePathsToNodeIdsResponse_EncodeableType,
        &OpcUa_TranslateBrowsePathsToNodeIdsRequest::NoOfBrowsePaths,
        &OpcUa_TranslateBrowsePathsToNodeIdsRequest::BrowsePaths,
        &OpcUa_TranslateBrowsePathsToNodeIdsResponse::NoOfResults,
        &OpcUa_TranslateBrowsePathsToNodeIdsResponse::Results};

void traceReadRequests(const UaReadValueIds& nodes)
{
    if (UaTrace::traceLevel() < UaTrace::Data) {
        return;
    }
    UaTrace::tData("Read %u nodes", nodes.length());
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        UaTrace::tData("  Node[%u] NodeId=%s AtrId=%u", i, UaNodeId(nodes[i].NodeId).toFullString().toUtf8(),
                       nodes[i].AttributeId);
    }
}

void traceReadResults(const UaDataValues& values)
{
    if (UaTrace::traceLevel() < UaTrace::Data) {
        return;
    }
    UaTrace::tData("Read results for %u nodes", values.length());
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        const OpcUa_DataValue& value = values[i];
        if (OpcUa_IsBad(value.StatusCode)) {
            UaTrace::tData("  Node[%u] Failed StatusCode=0x%x", i, value.StatusCode);
        } else {
            UaTrace::tData("  Node[%u] Value=%s Status=0x%x", i, UaVariant(value.Value).toString().toUtf8(),
                           value.StatusCode);
        }
    }
}

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

UaStatus UaSession::read(ServiceSettings& settings, double maxAge,
                         OpcUa_TimestampsToReturn timestampsToReturn, const UaReadValueIds& nodesToRead,
                         UaDataValues& values, UaDiagnosticInfos& diagnosticInfos)
{
    traceReadRequests(nodesToRead);
    const UaStatus status = callInBlocks(d->context, readService, settings, nodesToRead, values,
                                         diagnosticInfos, [&](OpcUa_ReadRequest& request) {
                                             request.MaxAge = maxAge;
                                             request.TimestampsToReturn = timestampsToReturn;
                                         });
    traceReadResults(values);
    return status;
}

UaStatus UaSession::write(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                          UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, writeService, settings, nodesToWrite, results, diagnosticInfos,
                        [](OpcUa_WriteRequest&) {});
}

UaStatus UaSession::browse(ServiceSettings& settings, const UaNodeId& nodeToBrowse,
                           const BrowseContext& context, UaByteString& continuationPoint,
                           UaReferenceDescriptions& references)
{
    continuationPoint.clear();
    references.clear();
    UaBrowseDescriptions nodes(1u);
    nodeToBrowse.copyTo(&nodes[0].NodeId);
    context.referenceTypeId.copyTo(&nodes[0].ReferenceTypeId);
    nodes[0].BrowseDirection = context.browseDirection;
    nodes[0].IncludeSubtypes = context.includeSubtypes ? OpcUa_True : OpcUa_False;
    nodes[0].NodeClassMask = context.nodeClassMask;
    nodes[0].ResultMask = context.resultMask;
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status = callInBlocks(d->context, browseService, settings, nodes, results, diagnosticInfos,
                                         [&](OpcUa_BrowseRequest& request) { setView(request, context); });
    return status.isBad() ? status : takeBrowseResult(results, continuationPoint, references);
}

UaStatus UaSession::browseNext(ServiceSettings& settings, bool releaseContinuationPoint,
                               UaByteString& continuationPoint, UaReferenceDescriptions& references)
{
    references.clear();
    UaByteStringArray points;
    points.append(*continuationPoint.get());
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
    return callInBlocks(d->context, browseService, settings, nodesToBrowse, results, diagnosticInfos,
                        [&](OpcUa_BrowseRequest& request) { setView(request, context); });
}

UaStatus UaSession::browseListNext(ServiceSettings& settings, bool releaseContinuationPoints,
                                   const UaByteStringArray& continuationPoints, UaBrowseResults& results,
                                   UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, browseNextService, settings, continuationPoints, results, diagnosticInfos,
                        [&](OpcUa_BrowseNextRequest& request) {
                            request.ReleaseContinuationPoints =
                                releaseContinuationPoints ? OpcUa_True : OpcUa_False;
                        });
}

UaStatus UaSession::translateBrowsePathsToNodeIds(ServiceSettings& settings, const UaBrowsePaths& browsePaths,
                                                  UaBrowsePathResults& results,
                                                  UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, translateService, settings, browsePaths, results, diagnosticInfos,
                        [](OpcUa_TranslateBrowsePathsToNodeIdsRequest&) {});
}

} // namespace UaClientSdk
