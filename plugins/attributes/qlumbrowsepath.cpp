#include <plugins/attributes/qlumbrowsepath.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>

#include <set>
#include <utility>

namespace {
constexpr std::size_t maximumSteps = 200; // deep enough for trees; a circle ends sooner

UaStatus readName(const QlumJob& job, QlumSessionServices& session, const UaNodeId& nodeId, QString& name)
{
    UaReadValueIds nodes(1);
    static_cast<void>(nodeId.copyTo(&nodes[0].NodeId));
    nodes[0].AttributeId = OpcUa_Attributes_BrowseName;
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    UaDataValues values;
    const UaStatus status = session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    if (status.isBad() || values.length() != 1)
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    if (OpcUa_IsBad(values[0].StatusCode))
        return UaStatus(values[0].StatusCode);
    name = toQString(UaVariant(values[0].Value).toQualifiedName().toString());
    return status;
}

// Null when none is known.
UaStatus readParent(const QlumJob& job, QlumSessionServices& session, const UaNodeId& nodeId,
                    const std::set<UaNodeId>& seen, UaNodeId& parent)
{
    UaClientSdk::BrowseContext context;
    context.browseDirection = OpcUa_BrowseDirection_Inverse;
    context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
    context.resultMask = OpcUa_BrowseResultMask_None;
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    UaByteString point;
    UaReferenceDescriptions found;
    const UaStatus status = session.browse(settings, nodeId, context, point, found);
    for (const OpcUa_ReferenceDescription& reference : found) {
        const UaExpandedNodeId id(reference.NodeId);
        if (parent.isNull() && id.isLocal() && !seen.contains(id.nodeId()))
            parent = id.nodeId();
    }
    if (point.length() > 0) {
        UaReferenceDescriptions none;
        static_cast<void>(session.browseNext(settings, true, point, none)); // the first few will do
    }
    return status;
}
} // namespace

UaStatus qlumReadBrowsePath(const QlumJob& job, QlumSessionServices& session, const UaNodeId& nodeId,
                            QString& path)
{
    std::set<UaNodeId> seen;
    UaNodeId current = nodeId;
    path.clear();
    while (current != UaNodeId(OpcUaId_RootFolder) && seen.size() < maximumSteps && !job.isCancelled()) {
        seen.insert(current);
        QString name;
        UaNodeId parent;
        UaStatus status = readName(job, session, current, name);
        if (status.isGood())
            status = readParent(job, session, current, seen, parent);
        if (status.isBad())
            return status;
        path = QLatin1Char('/') + name + path;
        if (parent.isNull()) {
            path = toQString(current.toXmlString()) + path.mid(name.size() + 1);
            break;
        }
        current = std::move(parent);
    }
    return {};
}
