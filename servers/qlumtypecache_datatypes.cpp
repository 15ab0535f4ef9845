// What data types derive from, and what derives from them.
#include <servers/qlumtypecache.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>

#include <set>

namespace {
constexpr int maximumLevels = 50; // a server may let its types go round in a circle
constexpr std::size_t maximumSubtypes = 1000;
} // namespace

UaNodeId QlumTypeCache::superType(QlumSessionServices& session, const UaNodeId& dataTypeId) const
{
    UaClientSdk::BrowseContext context;
    context.browseDirection = OpcUa_BrowseDirection_Inverse;
    context.referenceTypeId = UaNodeId(OpcUaId_HasSubtype);
    context.resultMask = OpcUa_BrowseResultMask_None;
    UaByteString point;
    UaReferenceDescriptions found;
    UaClientSdk::ServiceSettings settings = serviceSettings();
    if (session.browse(settings, dataTypeId, context, point, found).isBad() || found.isEmpty())
        return {};
    return UaExpandedNodeId(found[0].NodeId).nodeId();
}

OpcUa_BuiltInType QlumTypeCache::builtInType(const UaNodeId& dataTypeId)
{
    if (const OpcUa_BuiltInType type = uaNamespaceZeroBuiltInType(dataTypeId); type != OpcUaType_Null)
        return type;
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_builtInTypes.find(dataTypeId); found != m_builtInTypes.end())
            return found->second;
    }
    const auto session = connectedServices();
    if (!session)
        return OpcUaType_Null;
    const unsigned int generation = currentGeneration();
    UaNodeId current = dataTypeId;
    OpcUa_BuiltInType type = OpcUaType_Null;
    for (int level = 0; level < maximumLevels && type == OpcUaType_Null && !current.isNull(); ++level) {
        current = superType(*session, current);
        type = uaNamespaceZeroBuiltInType(current);
    }
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation && type != OpcUaType_Null)
        m_builtInTypes[dataTypeId] = type;
    return type;
}

std::vector<UaNodeId> QlumTypeCache::concreteTypes(const UaNodeId& dataTypeId)
{
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_concreteTypes.find(dataTypeId); found != m_concreteTypes.end())
            return found->second;
    }
    const auto session = connectedServices();
    if (!session)
        return {};
    const unsigned int generation = currentGeneration();
    const std::vector<UaNodeId> types = fetchConcreteTypes(*session, dataTypeId);
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation && !types.empty())
        m_concreteTypes[dataTypeId] = types;
    return types;
}

std::vector<UaNodeId> QlumTypeCache::fetchConcreteTypes(QlumSessionServices& session,
                                                        const UaNodeId& dataTypeId)
{
    std::vector<UaNodeId> all{dataTypeId};
    std::set<UaNodeId> seen{dataTypeId};
    std::vector<UaNodeId> level = all;
    for (int depth = 0; depth < maximumLevels && !level.empty() && all.size() < maximumSubtypes; ++depth) {
        std::vector<UaNodeId> next;
        for (const UaNodeId& type : subtypes(session, level))
            if (seen.insert(type).second)
                next.push_back(type);
        all.insert(all.end(), next.begin(), next.end());
        level = std::move(next);
    }
    return withoutAbstract(session, all);
}

std::vector<UaNodeId> QlumTypeCache::subtypes(QlumSessionServices& session, std::span<const UaNodeId> types)
{
    UaBrowseDescriptions nodes(static_cast<OpcUa_UInt32>(types.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(types[i].copyTo(&nodes[i].NodeId));
        static_cast<void>(UaNodeId(OpcUaId_HasSubtype).copyTo(&nodes[i].ReferenceTypeId));
        nodes[i].BrowseDirection = OpcUa_BrowseDirection_Forward;
        nodes[i].NodeClassMask = OpcUa_NodeClass_DataType;
    }
    UaClientSdk::ServiceSettings settings = serviceSettings();
    UaBrowseResults results;
    std::vector<UaNodeId> found;
    if (session.browseList(settings, UaNodeId(), 0, nodes, results).isBad())
        return found;
    for (const OpcUa_BrowseResult& result : results)
        for (OpcUa_Int32 k = 0; k < result.NoOfReferences; ++k)
            found.push_back(UaExpandedNodeId(result.References[k].NodeId).nodeId());
    return found;
}

// Reads their names with it, so that they can be offered without a call each.
std::vector<UaNodeId> QlumTypeCache::withoutAbstract(QlumSessionServices& session,
                                                     const std::vector<UaNodeId>& types)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(2 * types.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(types[i / 2].copyTo(&nodes[i].NodeId));
        nodes[i].AttributeId = i % 2 == 0 ? OpcUa_Attributes_IsAbstract : OpcUa_Attributes_DisplayName;
    }
    UaClientSdk::ServiceSettings settings = serviceSettings();
    UaDataValues values;
    std::vector<UaNodeId> concrete;
    const unsigned int generation = currentGeneration();
    if (session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isBad() ||
        values.length() != nodes.length())
        return concrete;
    for (std::size_t i = 0; i < types.size(); ++i) {
        const auto place = static_cast<OpcUa_UInt32>(2 * i);
        if (OpcUa_IsBad(values[place].StatusCode) || UaVariant(values[place].Value).toBool())
            continue;
        concrete.push_back(types[i]);
        auto info = std::make_shared<QlumTypeInfo>();
        info->name = toQString(UaVariant(values[place + 1].Value).toLocalizedText().text());
        info->inverseName = info->name;
        const std::lock_guard lock(m_mutex);
        if (generation == m_generation)
            m_typeInfos.emplace(types[i], std::move(info)); // one that says more stays
    }
    return concrete;
}
