#include <plugins/dataaccess/parts/qlumpathreader.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <set>
#include <utility>

namespace {
constexpr std::size_t climbedAtOnce = 1000;
constexpr std::size_t maximumLevels = 100;

QlumPathStep stepOf(const UaQualifiedName& name)
{
    return {name.namespaceIndex(), {}, toQString(name.name())};
}

class Climber
{
public:
    Climber(QlumJob& job, QlumSessionServices& session) : m_job(job), m_session(session) {}

    UaStatus readNames(std::span<const UaNodeId> nodes)
    {
        UaReadValueIds wanted(static_cast<OpcUa_UInt32>(nodes.size()));
        for (OpcUa_UInt32 i = 0; i < wanted.length(); ++i) {
            static_cast<void>(nodes[i].copyTo(&wanted[i].NodeId));
            wanted[i].AttributeId = OpcUa_Attributes_BrowseName;
        }
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaDataValues values;
        const UaStatus status = m_session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, wanted, values);
        for (OpcUa_UInt32 i = 0; i < std::min(values.length(), wanted.length()); ++i)
            if (!OpcUa_IsBad(values[i].StatusCode))
                m_known[nodes[i]].name = stepOf(UaVariant(values[i].Value).toQualifiedName());
        return status;
    }

    // Nodes of the next level are what is returned.
    UaStatus readParents(std::span<const UaNodeId> nodes, std::vector<UaNodeId>& above)
    {
        UaBrowseDescriptions wanted(static_cast<OpcUa_UInt32>(nodes.size()));
        for (OpcUa_UInt32 i = 0; i < wanted.length(); ++i) {
            static_cast<void>(nodes[i].copyTo(&wanted[i].NodeId));
            static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&wanted[i].ReferenceTypeId));
            wanted[i].BrowseDirection = OpcUa_BrowseDirection_Inverse;
            wanted[i].IncludeSubtypes = OpcUa_True;
            wanted[i].ResultMask = OpcUa_BrowseResultMask_BrowseName;
        }
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaBrowseResults results;
        const UaStatus status = m_session.browseList(settings, UaNodeId(), 0, wanted, results);
        UaByteStringArray points;
        for (OpcUa_UInt32 i = 0; i < std::min(results.length(), wanted.length()); ++i) {
            take(nodes[i], results[i], above);
            if (results[i].ContinuationPoint.Length > 0)
                static_cast<void>(points.append(results[i].ContinuationPoint)); // the first few will do
        }
        if (!points.isEmpty()) {
            UaClientSdk::ServiceSettings release = m_job.serviceSettings();
            UaBrowseResults none;
            static_cast<void>(m_session.browseListNext(release, true, points, none));
        }
        return status;
    }

    [[nodiscard]] QlumNodePath pathOf(const UaNodeId& node) const
    {
        QlumNodePath path;
        std::set<UaNodeId> seen;
        UaNodeId current = node;
        while (current != m_root && seen.insert(current).second) {
            const auto found = m_known.find(current);
            if (found == m_known.end() || found->second.parent.isNull() || found->second.name.name.isEmpty())
                break;
            path.path.push_back(found->second.name);
            current = found->second.parent;
        }
        std::reverse(path.path.begin(), path.path.end());
        if (current != m_root)
            path.start = current;
        return path;
    }
    [[nodiscard]] bool isClimbed(const UaNodeId& node) const
    {
        const auto found = m_known.find(node);
        return node == m_root || (found != m_known.end() && found->second.isAsked);
    }

private:
    struct Known
    {
        QlumPathStep name;
        UaNodeId parent; //< null: none was found
        bool isAsked = false;
    };

    void take(const UaNodeId& node, const OpcUa_BrowseResult& result, std::vector<UaNodeId>& above)
    {
        Known& known = m_known[node];
        known.isAsked = true;
        for (OpcUa_Int32 i = 0; i < result.NoOfReferences && known.parent.isNull(); ++i) {
            const OpcUa_ReferenceDescription& reference = result.References[i];
            const UaExpandedNodeId id(reference.NodeId);
            if (!id.isLocal() || id.nodeId() == node)
                continue;
            known.parent = id.nodeId();
            m_known[known.parent].name = stepOf(UaQualifiedName(reference.BrowseName));
            if (!isClimbed(known.parent))
                above.push_back(known.parent);
        }
    }

    QlumJob& m_job;
    QlumSessionServices& m_session;
    const UaNodeId m_root{OpcUaId_RootFolder};
    std::map<UaNodeId, Known> m_known;
};
} // namespace

UaStatus qlumReadPaths(QlumJob& job, QlumSessionServices& session, std::span<const UaNodeId> nodes,
                       std::vector<QlumNodePath>& paths)
{
    paths.clear();
    Climber climber(job, session);
    for (std::size_t begin = 0; begin < nodes.size(); begin += climbedAtOnce) {
        const std::span<const UaNodeId> portion =
            nodes.subspan(begin, std::min(climbedAtOnce, nodes.size() - begin));
        job.setProgress(static_cast<qint64>(begin), static_cast<qint64>(nodes.size()));
        UaStatus status = climber.readNames(portion);
        std::vector<UaNodeId> level(portion.begin(), portion.end());
        for (std::size_t depth = 0; depth < maximumLevels && !level.empty() && status.isNotBad(); ++depth) {
            std::vector<UaNodeId> above;
            std::sort(level.begin(), level.end());
            level.erase(std::unique(level.begin(), level.end()), level.end());
            std::erase_if(level, [&climber](const UaNodeId& node) { return climber.isClimbed(node); });
            if (job.isCancelled())
                status = UaStatus(OpcUa_BadRequestCancelledByClient);
            else if (!level.empty())
                status = climber.readParents(level, above);
            level = std::move(above);
        }
        if (status.isBad())
            return status;
    }
    for (const UaNodeId& node : nodes)
        paths.push_back(climber.pathOf(node));
    return {};
}
