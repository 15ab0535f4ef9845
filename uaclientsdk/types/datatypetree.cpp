#include <uaclientsdk/types/datatypetree.h>

#include <opcua/opcua_identifiers.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/types/batchbrowse.h>
#include <uaclientsdk/uasession.h>

namespace UaClientSdk {

namespace {

// More than any server defines, few enough to stay harmless: a hostile one may invent types for ever.
constexpr std::size_t maxTypes = 50000;
constexpr int maxDepth = 100;

} // namespace

UaStatus DataTypeTree::browse(UaSession& session, ServiceSettings& settings)
{
    const UaNodeId root(OpcUaId_BaseDataType);
    m_types.emplace(root, DataType{root, UaNodeId(), UaString("BaseDataType")});
    std::vector<UaNodeId> level{root};
    UaStatus status;
    for (int depth = 0; status.isGood() && !level.empty() && depth < maxDepth; ++depth)
        status = browseLevel(session, settings, level);
    return status;
}

UaStatus DataTypeTree::browseLevel(UaSession& session, ServiceSettings& settings,
                                   std::vector<UaNodeId>& level)
{
    std::vector<UaReferenceDescriptions> found;
    const UaStatus status =
        browseBatch(session, settings, level, {OpcUaId_HasSubtype, false, OpcUa_NodeClass_DataType}, found);
    std::vector<UaNodeId> next;
    for (std::size_t i = 0; i < found.size(); ++i) {
        for (const OpcUa_ReferenceDescription& reference : found[i]) {
            const UaNodeId id(reference.NodeId.NodeId);
            if (m_types.size() < maxTypes &&
                m_types.emplace(id, DataType{id, level[i], UaString(reference.BrowseName.Name)}).second)
                next.push_back(id);
        }
    }
    level = std::move(next);
    return status;
}

OpcUa_BuiltInType DataTypeTree::wireType(const UaNodeId& dataTypeId) const
{
    UaNodeId id = dataTypeId;
    for (int depth = 0; depth < maxDepth; ++depth) {
        if (id.namespaceIndex() == 0) {
            const OpcUa_BuiltInType known = uaNamespaceZeroBuiltInType(id);
            if (known != OpcUaType_Null)
                return known;
        }
        const auto type = m_types.find(id);
        if (type == m_types.end() || type->second.parent.isNull())
            break;
        id = type->second.parent;
    }
    return OpcUaType_Null;
}

bool DataTypeTree::derivesFrom(const UaNodeId& dataTypeId, const UaNodeId& base) const
{
    UaNodeId id = dataTypeId;
    for (int depth = 0; depth < maxDepth && id != base; ++depth) {
        const auto type = m_types.find(id);
        if (type == m_types.end())
            return false;
        id = type->second.parent;
    }
    return id == base;
}

} // namespace UaClientSdk
