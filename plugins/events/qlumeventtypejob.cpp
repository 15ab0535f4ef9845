#include <plugins/events/qlumeventtypejob.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace {
constexpr std::size_t nodesInACall = 100;
constexpr std::size_t maximumPath = 8;       // an object that has itself as a component ends there
constexpr std::size_t maximumNodes = 100000; // of a server without an end

QString text(const char* source)
{
    return QCoreApplication::translate("QlumMonitoredItemModel", source);
}

OpcUa_UInt32 wantedClasses()
{
    return OpcUa_NodeClass_Object | OpcUa_NodeClass_Variable | OpcUa_NodeClass_ObjectType;
}
} // namespace

QlumEventTypeReader::QlumEventTypeReader(unsigned int serverId, QlumSessionServices& session, QlumJob& job)
    : m_log(text("Event Plugin"), serverId), m_session(session), m_job(job), m_settings(job.serviceSettings())
{
    m_settings.callTimeout = QlumSettings::browseTimeout.value();
}

std::unique_ptr<QlumEventNodeTypeTree> QlumEventTypeReader::read()
{
    auto tree = std::make_unique<Node>();
    Nodes roots;
    for (const auto& [id, name] : {std::pair(OpcUaId_BaseEventType, "BaseEventType"),
                                   std::pair(OpcUaId_ConditionType, "ConditionType"),
                                   std::pair(OpcUaId_AuditEventType, "AuditEventType")}) {
        const UaNodeId nodeId(static_cast<OpcUa_UInt32>(id));
        m_types.insert(nodeId);
        roots.push_back(&tree->appendChild(
            std::make_unique<Node>(Node::EventType, nodeId, UaQualifiedName(UaString(name), 0))));
        if (id == OpcUaId_ConditionType)
            roots.back()->appendChild(std::make_unique<Node>(Node::EventField, nodeId,
                                                             UaQualifiedName(UaString("ConditionId"), 0)));
    }
    recursiveBrowseTypeTree(std::move(roots));
    if (m_job.isCancelled() || (m_status.isBad() && m_browsed == 0))
        return nullptr;
    tree->recursiveUpdateCheckState();
    return tree;
}

// All nodes of a level go into one call, as many as the server takes: node by node a thousand types would
// cost a thousand round trips.
void QlumEventTypeReader::recursiveBrowseTypeTree(Nodes level)
{
    qint64 known = static_cast<qint64>(level.size());
    while (!level.empty()) {
        Nodes next;
        for (std::size_t first = 0; first < level.size(); first += nodesInACall) {
            const std::size_t count = std::min(nodesInACall, level.size() - first);
            if (m_job.isCancelled() || !browse(level, first, count, next))
                return;
            m_browsed += static_cast<qint64>(count);
            m_job.setProgress(m_browsed, known + static_cast<qint64>(next.size()));
        }
        known += static_cast<qint64>(next.size());
        level = std::move(next);
    }
}

// The first one says why; each is in the log.
void QlumEventTypeReader::failed(const UaStatus& status, const Node* node)
{
    if (m_status.isGood())
        m_status = status;
    const QString result = toQString(status.toString());
    m_log.error(node ? text("Browse of event type %1 failed [ret = %2].")
                           .arg(toQString(node->nodeId().toXmlString()), result)
                     : text("Browse of event types failed [ret = %1].").arg(result));
}

bool QlumEventTypeReader::browse(const Nodes& nodes, std::size_t first, std::size_t count, Nodes& found)
{
    UaBrowseDescriptions descriptions(static_cast<OpcUa_UInt32>(count));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        OpcUa_BrowseDescription& one = descriptions[i];
        static_cast<void>(nodes[first + i]->nodeId().copyTo(&one.NodeId)); // else null, which is refused
        static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&one.ReferenceTypeId));
        one.BrowseDirection = OpcUa_BrowseDirection_Forward;
        one.IncludeSubtypes = OpcUa_True;
        one.NodeClassMask = wantedClasses();
        one.ResultMask = OpcUa_BrowseResultMask_All;
    }
    UaBrowseResults results;
    const UaStatus status = m_session.browseList(m_settings, UaNodeId(), QlumSettings::maxReferences.value(),
                                                 descriptions, results);
    if (status.isBad()) {
        failed(status);
        return false;
    }
    std::vector<UaReferenceDescriptions> references(count);
    follow(nodes, first, results, references);
    for (std::size_t i = 0; i < count; ++i)
        take(*nodes[first + i], references[i], found);
    return true;
}

void QlumEventTypeReader::follow(const Nodes& nodes, std::size_t first, UaBrowseResults& results,
                                 std::vector<UaReferenceDescriptions>& references)
{
    std::vector<std::size_t> places(results.length());
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = i;
    const int limit = QlumSettings::maxBrowseNextCalls.value();
    for (int calls = 0;; ++calls) {
        std::vector<std::size_t> open;
        UaByteStringArray points;
        for (OpcUa_UInt32 i = 0; i < results.length() && i < places.size(); ++i) {
            const Node& node = *nodes[first + places[i]];
            const UaStatus result(results[i].StatusCode);
            // a server without conditions or audits does not have the type that they derive from
            const bool isRoot = node.parent() && !node.parent()->parent();
            if (result.isBad() && !(isRoot && result.statusCode() == OpcUa_BadNodeIdUnknown))
                failed(result, &node);
            UaReferenceDescriptions more;
            more.attachFrom(&results[i].NoOfReferences, &results[i].References);
            if (places[i] < references.size())
                static_cast<void>(references[places[i]].appendMoved(std::move(more)));
            if (results[i].ContinuationPoint.Length > 0 && points.append(results[i].ContinuationPoint))
                open.push_back(places[i]);
        }
        if (open.empty())
            return;
        const bool isOver = limit >= 0 && calls >= limit;
        m_isCut = m_isCut || isOver;
        if (isOver)
            m_log.write(QlumLogLevel::Warning,
                        text("Server returned more ContinuationPoints than accepted by setting "
                             "'General.MaxBrowseNextCalls'. Releasing current ContinuationPoint."));
        UaBrowseResults next;
        const UaStatus status =
            m_session.browseListNext(m_settings, isOver || m_job.isCancelled(), points, next);
        if (status.isBad() && !isOver)
            failed(status);
        if (isOver || m_job.isCancelled() || status.isBad())
            return;
        results = std::move(next);
        places = std::move(open);
    }
}

void QlumEventTypeReader::take(Node& parent, const UaReferenceDescriptions& references, Nodes& found)
{
    for (const OpcUa_ReferenceDescription& reference : references) {
        const UaNodeId id(reference.NodeId.NodeId);
        const UaQualifiedName name(reference.BrowseName);
        const bool isTooMany = m_types.size() + static_cast<std::size_t>(m_browsed) > maximumNodes;
        m_isCut = m_isCut || isTooMany;
        if (isTooMany || name.name().isEmpty())
            continue;
        std::unique_ptr<Node> child;
        if (reference.NodeClass == OpcUa_NodeClass_ObjectType) {
            // those with a root of their own, and types that derive from themselves
            if (parent.kind() != Node::EventType || !m_types.insert(id).second)
                continue;
            child = std::make_unique<Node>(Node::EventType, id, name);
        } else if (parent.path().names().size() < maximumPath) {
            const bool isField = reference.NodeClass == OpcUa_NodeClass_Variable;
            child = std::make_unique<Node>(isField ? Node::EventField : Node::Component, id, name,
                                           parent.path().child(name));
        } else {
            continue;
        }
        Node& added = parent.appendChild(std::move(child));
        if (!UaNodeId(reference.ReferenceTypeId).isNumeric(OpcUaId_HasProperty))
            found.push_back(&added); // a property has nothing below it
    }
}
