#include <plugins/references/qlumreferencejob.h>

#include <app/api/qlumlocalid.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <QString>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {
constexpr int maximumTypeDepth = 50; // a server may let its types go round in a circle

QString typeName(QlumSessionServices& session, const UaNodeId& id, bool isInverse = false)
{
    QlumServerTypes* types = session.types();
    const QString name = types && !id.isNull() ? types->typeName(id, isInverse) : QString();
    return name.isEmpty() && !id.isNull() ? toQString(id.toXmlString()) : name;
}

QlumReference referenceOf(QlumSessionServices& session, const OpcUa_ReferenceDescription& description,
                          const UaStringArray& namespaces)
{
    QlumReference reference;
    const UaExpandedNodeId target(description.NodeId);
    reference.typeId = UaNodeId(description.ReferenceTypeId);
    reference.isForward = description.IsForward != 0;
    reference.typeName = typeName(session, reference.typeId, !reference.isForward);
    reference.target = qlumLocalId(target, namespaces);
    reference.targetText = toQString(target.toString());
    reference.displayName = toQString(UaLocalizedText(description.DisplayName).text());
    reference.browseName = toQString(UaQualifiedName(description.BrowseName).toString());
    reference.nodeClass = description.NodeClass;
    reference.typeDefinition = qlumLocalId(UaExpandedNodeId(description.TypeDefinition), namespaces);
    reference.typeDefinitionName = typeName(session, reference.typeDefinition);
    return reference;
}

UaStatus readPage(QlumSessionServices& session, QlumSessionServices::Settings& settings,
                  const QlumReferenceQuery& query, bool goOn, UaByteString& point,
                  UaReferenceDescriptions& page)
{
    if (goOn)
        return session.browseNext(settings, false, point, page);
    UaClientSdk::BrowseContext context;
    context.browseDirection = query.direction;
    context.referenceTypeId = query.typeId;
    context.includeSubtypes = query.includeSubtypes;
    context.maxReferencesToReturn = QlumSettings::maxReferences.value();
    return session.browse(settings, query.nodeId, context, point, page);
}
} // namespace

UaStatus qlumReadReferences(const QlumJob& job, QlumSessionServices& session, const QlumReferenceQuery& query,
                            bool goOn, QlumReferenceRest& rest, std::deque<QlumReference>& references,
                            bool& hasMore)
{
    hasMore = false;
    const UaStringArray namespaces = session.namespaceTable();
    UaByteString point = rest.take();
    UaStatus status;
    do {
        QlumSessionServices::Settings settings = job.serviceSettings();
        settings.callTimeout = QlumSettings::browseTimeout.value();
        UaReferenceDescriptions page;
        status = readPage(session, settings, query, std::exchange(goOn, true), point, page);
        if (status.isBad())
            return status;
        for (const OpcUa_ReferenceDescription& description : page) {
            if (job.isCancelled())
                break; // names of types may cost a call each
            references.push_back(referenceOf(session, description, namespaces));
        }
    } while (point.length() > 0 && references.size() < qlumReferencePortion && !job.isCancelled());
    hasMore = point.length() > 0;
    rest.put(point);
    if (job.isCancelled()) // after it was put: whoever gives the job up looks for it afterwards
        qlumReleaseRest(job, session, rest);
    return status;
}

void qlumReleaseRest(const QlumJob& job, QlumSessionServices& session, QlumReferenceRest& rest)
{
    UaByteString point = rest.take();
    if (point.length() <= 0)
        return;
    QlumSessionServices::Settings settings = job.serviceSettings();
    UaReferenceDescriptions none;
    static_cast<void>(session.browseNext(settings, true, point, none)); // the server forgets it in time
}

// ---- types

namespace {
using Children = std::map<UaNodeId, std::vector<QlumReferenceType>>;

// The subtypes of all types of one level, and which they are.
std::vector<UaNodeId> readLevel(const QlumJob& job, QlumSessionServices& session,
                                const std::vector<UaNodeId>& level, Children& children)
{
    UaBrowseDescriptions nodes(static_cast<OpcUa_UInt32>(level.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(level[i].copyTo(&nodes[i].NodeId));
        static_cast<void>(UaNodeId(OpcUaId_HasSubtype).copyTo(&nodes[i].ReferenceTypeId));
        nodes[i].BrowseDirection = OpcUa_BrowseDirection_Forward;
        nodes[i].NodeClassMask = OpcUa_NodeClass_ReferenceType;
        nodes[i].ResultMask = OpcUa_BrowseResultMask_DisplayName;
    }
    QlumSessionServices::Settings settings = job.serviceSettings();
    UaBrowseResults results;
    std::vector<UaNodeId> next;
    if (session.browseList(settings, UaNodeId(), 0, nodes, results).isBad() ||
        results.length() != nodes.length())
        return next;
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
        for (OpcUa_Int32 k = 0; k < results[i].NoOfReferences; ++k) {
            const OpcUa_ReferenceDescription& found = results[i].References[k];
            const UaNodeId id(found.NodeId.NodeId);
            if (children.contains(id))
                continue;
            children[id];
            children[level[i]].push_back({id, toQString(UaLocalizedText(found.DisplayName).text()), 0});
            next.push_back(id);
        }
    return next;
}

void flatten(Children& children, const UaNodeId& parent, int depth, std::vector<QlumReferenceType>& types)
{
    std::vector<QlumReferenceType>& below = children[parent];
    std::sort(below.begin(), below.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    for (const QlumReferenceType& type : below) {
        types.push_back({type.id, type.name, depth});
        flatten(children, type.id, depth + 1, types);
    }
}
} // namespace

std::vector<QlumReferenceType> qlumReadReferenceTypes(const QlumJob& job, QlumSessionServices& session)
{
    const UaNodeId root(OpcUaId_References);
    Children children;
    children[root];
    std::vector<UaNodeId> level{root};
    for (int depth = 0; !level.empty() && depth < maximumTypeDepth && !job.isCancelled(); ++depth)
        level = readLevel(job, session, level, children);
    std::vector<QlumReferenceType> types;
    flatten(children, root, 0, types);
    return types;
}
