#include <uaclientsdk/types/batchbrowse.h>

#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/browseprogress.h>
#include <uaclientsdk/uasession.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <utility>

namespace UaClientSdk {

namespace {

// A hostile server may hand out continuation points for ever.
constexpr int maximumBrowseNextCalls = 1000;
// A server that has not even one continuation point for so many nodes has none for the others either.
constexpr std::size_t maximumRefusalsAlone = 20;

void warn(const UaNodeId& node, const UaString& reason)
{
    UaTrace::tWarning("Warning: browseBatch - node %s: %s", node.toFullString().toUtf8(), reason.toUtf8());
}

// A server that is short of continuation points may also take those back that it gave (OPC 10000-4, 7.9).
bool isShortOfPoints(const UaStatus& status)
{
    return status.statusCode() == OpcUa_BadNoContinuationPoints ||
           status.statusCode() == OpcUa_BadContinuationPointInvalid;
}

class BatchWalk
{
public:
    BatchWalk(UaSession& session, ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
              const BatchBrowse& what, std::vector<UaReferenceDescriptions>& references)
        : m_session(session), m_settings(settings), m_nodes(nodes), m_what(what), m_references(references)
    {
    }

    UaStatus walkAll();

private:
    // A node on the way.
    struct Step
    {
        std::size_t position;
        BrowseProgress progress;
    };

    [[nodiscard]] std::size_t widthOfCall() const;
    UaStatus walkInSlices(const std::vector<std::size_t>& positions, std::size_t width);
    UaStatus walk(std::span<const std::size_t> positions);
    [[nodiscard]] UaBrowseDescriptions descriptionsOf(std::span<const std::size_t> positions) const;
    UaStatus takeResults(UaBrowseResults& results);
    UaStatus takeResult(Step& step, OpcUa_BrowseResult& result);
    void takeFault(const Step& step, const UaStatus& status);
    void release(const UaByteStringArray& points) const;

    UaSession& m_session;
    ServiceSettings& m_settings;
    const std::vector<UaNodeId>& m_nodes;
    const BatchBrowse& m_what;
    std::vector<UaReferenceDescriptions>& m_references;
    std::vector<Step> m_steps;          // of the slice, those that go on
    UaByteStringArray m_points;         // where they do
    UaByteStringArray m_given;          // continuation points that nobody will follow
    std::vector<std::size_t> m_refused; // nodes that the server had no continuation point for
    std::size_t m_mostPoints = 0;       // that the server gave at a time
};

UaStatus BatchWalk::walkAll()
{
    std::vector<std::size_t> positions(m_nodes.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::size_t width = std::min(widthOfCall(), positions.size());
    while (!positions.empty()) {
        m_refused.clear();
        m_mostPoints = 0;
        const UaStatus status = walkInSlices(positions, width);
        if (status.isBad())
            return status;
        const std::size_t together = std::min(width, positions.size());
        if (together == 1)
            break;
        // as many as the server had points for, but fewer than before, or it would go on for ever
        width = std::clamp<std::size_t>(m_mostPoints, 1, together / 2);
        positions = m_refused;
    }
    for (const std::size_t position : m_refused)
        warn(m_nodes[position], UaString("the server has no continuation point left"));
    return UaStatus();
}

// What goes into one call, so that a later block that fails takes no points along.
std::size_t BatchWalk::widthOfCall() const
{
    const OperationLimits server = m_session.operationLimits();
    OpcUa_UInt32 width = std::max<OpcUa_UInt32>(m_session.maxOperationsPerServiceCall(), 1);
    for (const OpcUa_UInt32 limit :
         {server.maxNodesPerBrowse, server.maxBrowseContinuationPoints, m_what.nodesAtOnce})
        if (limit > 0)
            width = std::min(width, limit);
    return width;
}

UaStatus BatchWalk::walkInSlices(const std::vector<std::size_t>& positions, std::size_t width)
{
    const std::span all(positions);
    for (std::size_t first = 0; first < all.size(); first += width) {
        if (width == 1 && m_refused.size() >= maximumRefusalsAlone) {
            m_refused.insert(m_refused.end(), positions.begin() + static_cast<std::ptrdiff_t>(first),
                             positions.end());
            break;
        }
        const UaStatus status = walk(all.subspan(first, std::min(width, all.size() - first)));
        if (status.isBad())
            return status;
    }
    return UaStatus();
}

// Some nodes to their end.
UaStatus BatchWalk::walk(std::span<const std::size_t> positions)
{
    m_steps.clear();
    for (const std::size_t position : positions) {
        m_references[position].clear();
        m_steps.push_back({position, BrowseProgress()});
    }
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    UaStatus status =
        m_session.browseList(m_settings, UaNodeId(), 0, descriptionsOf(positions), results, diagnosticInfos);
    m_points.clear();
    for (int calls = 0; !status.isBad(); ++calls) {
        status = takeResults(results);
        release(m_given);
        if (m_steps.empty() || status.isBad())
            break;
        if (calls == maximumBrowseNextCalls) {
            for (const Step& step : m_steps)
                warn(m_nodes[step.position], UaString("the references do not come to an end"));
            break;
        }
        status = m_session.browseListNext(m_settings, false, m_points, results, diagnosticInfos);
    }
    if (!status.isBad() || keepsContinuationPoint(status))
        release(m_points);
    return status;
}

UaBrowseDescriptions BatchWalk::descriptionsOf(std::span<const std::size_t> positions) const
{
    UaBrowseDescriptions descriptions(static_cast<OpcUa_UInt32>(positions.size()));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        OpcUa_BrowseDescription& description = descriptions[i];
        // without memory the id stays null, and the server refuses it
        static_cast<void>(m_nodes[positions[i]].copyTo(&description.NodeId));
        description.BrowseDirection =
            m_what.inverse ? OpcUa_BrowseDirection_Inverse : OpcUa_BrowseDirection_Forward;
        description.ReferenceTypeId.Identifier.Numeric = m_what.referenceTypeId;
        description.IncludeSubtypes = OpcUa_True;
        description.NodeClassMask = m_what.nodeClassMask;
        description.ResultMask = OpcUa_BrowseResultMask_BrowseName | OpcUa_BrowseResultMask_ReferenceTypeId;
    }
    return descriptions;
}

// Moves what has come to the lists of their nodes; the steps are then those that have more. BadOutOfMemory.
UaStatus BatchWalk::takeResults(UaBrowseResults& results)
{
    m_points.clear();
    m_given.clear();
    UaStatus status;
    std::vector<Step> steps = std::exchange(m_steps, {});
    for (OpcUa_UInt32 i = 0; i < results.length() && i < steps.size(); ++i)
        if (const UaStatus taken = takeResult(steps[i], results[i]); taken.isBad())
            status = taken;
    m_mostPoints = std::max<std::size_t>(m_mostPoints, m_points.length());
    return status;
}

UaStatus BatchWalk::takeResult(Step& step, OpcUa_BrowseResult& result)
{
    const UaStatus status(result.StatusCode);
    UaByteString point;
    point.attach(&result.ContinuationPoint);
    UaReferenceDescriptions found;
    found.attachFrom(&result.NoOfReferences, &result.References);
    step.progress.take(found.length(), point);
    if (status.isBad())
        takeFault(step, status);
    const bool appended = m_references[step.position].appendMoved(std::move(found));
    if (point.isEmpty())
        return appended ? UaStatus() : UaStatus(OpcUa_BadOutOfMemory);
    const bool goesOn = appended && !status.isBad() && !step.progress.isStuck();
    if (!goesOn && !status.isBad())
        warn(m_nodes[step.position], UaString("the references do not come to an end"));
    UaByteStringArray& points = goesOn ? m_points : m_given;
    if (!points.append(*point.get()) || !appended)
        return UaStatus(OpcUa_BadOutOfMemory);
    if (goesOn)
        m_steps.push_back(std::move(step));
    return UaStatus();
}

void BatchWalk::takeFault(const Step& step, const UaStatus& status)
{
    if (isShortOfPoints(status))
        m_refused.push_back(step.position);
    else
        warn(m_nodes[step.position], status.toString());
}

// Nobody is asked who is about to go, nor is an answer needed.
void BatchWalk::release(const UaByteStringArray& points) const
{
    if (points.isEmpty() || !m_session.isConnected())
        return;
    ServiceSettings settings = settingsOfRelease(m_settings);
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    static_cast<void>(m_session.browseListNext(settings, true, points, results, diagnosticInfos));
}

} // namespace

UaStatus browseBatch(UaSession& session, ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                     const BatchBrowse& what, std::vector<UaReferenceDescriptions>& references)
{
    references.assign(nodes.size(), UaReferenceDescriptions());
    return BatchWalk(session, settings, nodes, what, references).walkAll();
}

} // namespace UaClientSdk
