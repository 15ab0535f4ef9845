// Members of UaSession for queries, and cancel; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/callonce.h>
#include <uaclientsdk/uasession.h>

#include <utility>

namespace UaClientSdk {

namespace {

constexpr ServiceNames queryFirstNames = namesOf<Services::QueryFirst>("Empty node type array passed");
constexpr ServiceNames queryNextNames = namesOf<Services::QueryNext>("Empty continuation point passed");
constexpr ServiceNames cancelNames = namesOf<Services::Cancel>("No request handle passed");

void setQuery(OpcUa_QueryFirstRequest& request, const QueryContext& context,
              const UaNodeTypeDescriptions& nodeTypes)
{
    // borrowed
    request.View.ViewId = *context.viewId.get();
    request.View.Timestamp = context.viewTimestamp.value();
    request.View.ViewVersion = context.viewVersion;
    request.NoOfNodeTypes = static_cast<OpcUa_Int32>(nodeTypes.length());
    request.NodeTypes = const_cast<OpcUa_NodeTypeDescription*>(nodeTypes.rawData());
    request.Filter.NoOfElements = static_cast<OpcUa_Int32>(context.filter.length());
    request.Filter.Elements = const_cast<OpcUa_ContentFilterElement*>(context.filter.rawData());
    request.MaxDataSetsToReturn = context.maxDataSetsToReturn;
    request.MaxReferencesToReturn = context.maxReferencesToReturn;
}

// Findings come for all node types and filter elements, or not at all.
UaStatus takeFindings(OpcUa_QueryFirstResponse& response, OpcUa_UInt32 nodeTypes, OpcUa_UInt32 filterElements,
                      QueryFindings& findings)
{
    findings.parsingResults.attachFrom(&response.NoOfParsingResults, &response.ParsingResults);
    findings.filterResults.attachFrom(&response.FilterResult.NoOfElementResults,
                                      &response.FilterResult.ElementResults);
    OpcUa_ResponseHeader& header = response.ResponseHeader;
    findings.diagnosticInfos.attach(
        std::exchange(response.NoOfDiagnosticInfos, 0), std::exchange(response.DiagnosticInfos, nullptr),
        std::exchange(header.NoOfStringTable, 0), std::exchange(header.StringTable, nullptr));
    const OpcUa_UInt32 filters = findings.filterResults.length();
    const OpcUa_UInt32 results =
        findings.parsingResults.isEmpty() ? nodeTypes : findings.parsingResults.length();
    const UaStatus counts = checkCounts(queryFirstNames, nodeTypes, static_cast<OpcUa_Int32>(results),
                                        static_cast<OpcUa_Int32>(findings.diagnosticInfos.length()));
    if (counts.isBad() || filters == 0)
        return counts;
    return checkCounts(queryFirstNames, filterElements, static_cast<OpcUa_Int32>(filters), 0);
}

} // namespace

UaStatus UaSession::queryFirst(ServiceSettings& settings, const QueryContext& context,
                               const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                               UaByteString& continuationPoint, QueryFindings& findings)
{
    dataSets.clear();
    continuationPoint.clear();
    findings = QueryFindings();
    const UaStatus status = callOnce<Services::QueryFirst>(
        d->context, queryFirstNames, nodeTypes.length(), settings,
        [&](OpcUa_QueryFirstRequest& request) { setQuery(request, context, nodeTypes); },
        [&](OpcUa_QueryFirstResponse& response) {
            dataSets.attachFrom(&response.NoOfQueryDataSets, &response.QueryDataSets);
            continuationPoint.attach(&response.ContinuationPoint);
            return takeFindings(response, nodeTypes.length(), context.filter.length(), findings);
        });
    if (status.isBad()) {
        // a continuation point stays: the caller can release it
        dataSets.clear();
        findings = QueryFindings();
    }
    return status;
}

UaStatus UaSession::queryNext(ServiceSettings& settings, bool releaseContinuationPoint,
                              UaByteString& continuationPoint, UaQueryDataSets& dataSets)
{
    dataSets.clear();
    const UaByteString point = std::exchange(continuationPoint, UaByteString());
    return callOnce<Services::QueryNext>(
        d->context, queryNextNames, point.isEmpty() ? 0 : 1, settings,
        [&](OpcUa_QueryNextRequest& request) {
            request.ReleaseContinuationPoint = releaseContinuationPoint ? OpcUa_True : OpcUa_False;
            request.ContinuationPoint = *point.get();
        },
        [&](OpcUa_QueryNextResponse& response) {
            dataSets.attachFrom(&response.NoOfQueryDataSets, &response.QueryDataSets);
            continuationPoint.attach(&response.RevisedContinuationPoint);
            return UaStatus();
        });
}

UaStatus UaSession::cancel(ServiceSettings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount)
{
    cancelCount = 0;
    return callOnce<Services::Cancel>(
        d->context, cancelNames, 1, settings,
        [&](OpcUa_CancelRequest& request) { request.RequestHandle = requestHandle; },
        [&](OpcUa_CancelResponse& response) {
            cancelCount = response.CancelCount;
            return UaStatus();
        });
}

} // namespace UaClientSdk
