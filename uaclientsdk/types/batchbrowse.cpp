#include <uaclientsdk/types/batchbrowse.h>

#include <opcua/opcua_types.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uaclientsdk/uasession.h>

#include <utility>

namespace UaClientSdk {

namespace {

// A hostile server may hand out continuation points for ever.
constexpr int maxBrowseNextCalls = 1000;

UaBrowseDescriptions descriptionsOf(const std::vector<UaNodeId>& nodes, const BatchBrowse& what)
{
    UaBrowseDescriptions descriptions(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        OpcUa_BrowseDescription& description = descriptions[i];
        // without memory the id stays null, and the server refuses it
        static_cast<void>(nodes[i].copyTo(&description.NodeId));
        description.BrowseDirection =
            what.inverse ? OpcUa_BrowseDirection_Inverse : OpcUa_BrowseDirection_Forward;
        description.ReferenceTypeId.Identifier.Numeric = what.referenceTypeId;
        description.IncludeSubtypes = OpcUa_True;
        description.NodeClassMask = what.nodeClassMask;
        description.ResultMask = OpcUa_BrowseResultMask_BrowseName | OpcUa_BrowseResultMask_ReferenceTypeId;
    }
    return descriptions;
}

// Moves what has come to the lists of their nodes; positions then names the nodes that have more, and points
// where they go on. BadOutOfMemory.
UaStatus takeResults(UaBrowseResults& results, std::vector<std::size_t>& positions,
                     std::vector<UaReferenceDescriptions>& references, UaByteStringArray& points)
{
    points.clear();
    std::vector<std::size_t> pending;
    for (OpcUa_UInt32 i = 0; i < results.length() && i < positions.size(); ++i) {
        UaReferenceDescriptions found;
        found.attachFrom(&results[i].NoOfReferences, &results[i].References);
        if (!references[positions[i]].appendMoved(std::move(found)))
            return UaStatus(OpcUa_BadOutOfMemory);
        if (results[i].ContinuationPoint.Length > 0) {
            if (!points.append(results[i].ContinuationPoint))
                return UaStatus(OpcUa_BadOutOfMemory);
            pending.push_back(positions[i]);
        }
    }
    positions = std::move(pending);
    return UaStatus();
}

} // namespace

UaStatus browseBatch(UaSession& session, ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                     const BatchBrowse& what, std::vector<UaReferenceDescriptions>& references)
{
    references.assign(nodes.size(), UaReferenceDescriptions());
    if (nodes.empty())
        return UaStatus();
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    UaStatus status =
        session.browseList(settings, UaNodeId(), 0, descriptionsOf(nodes, what), results, diagnosticInfos);
    std::vector<std::size_t> positions(nodes.size());
    for (std::size_t i = 0; i < positions.size(); ++i)
        positions[i] = i;
    for (int calls = 0; status.isGood() && calls < maxBrowseNextCalls; ++calls) {
        UaByteStringArray points;
        if (const UaStatus taken = takeResults(results, positions, references, points); taken.isBad())
            return taken;
        if (points.isEmpty())
            break;
        status = session.browseListNext(settings, false, points, results, diagnosticInfos);
    }
    return status;
}

} // namespace UaClientSdk
