#include <tests/support/nodetable.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace {
void mustHold(bool done)
{
    if (!done)
        std::abort();
}
} // namespace

bool NodeTable::isOrDerivesFrom(const UaNodeId& type, const UaNodeId& base) const
{
    UaNodeId at = type;
    // a type that derives from itself ends too
    for (std::size_t steps = 0; steps <= m_nodes.size(); ++steps) {
        if (at == base)
            return true;
        const Node* node = find(at);
        if (!node)
            return false;
        const UaNodeId hasSubtype(45);
        const auto super =
            std::find_if(node->references.begin(), node->references.end(), [&](const Reference& reference) {
                return !reference.isForward && reference.type == hasSubtype;
            });
        if (super == node->references.end())
            return false;
        at = super->target;
    }
    return false;
}

void NodeTable::queryType(const OpcUa_NodeTypeDescription& asked, UaQueryDataSets& found) const
{
    const UaNodeId wanted(asked.TypeDefinitionNode.NodeId);
    const std::span wishes(asked.DataToReturn, static_cast<std::size_t>(std::max(0, asked.NoOfDataToReturn)));
    for (const auto& [id, node] : m_nodes) {
        if (node.typeDefinition != wanted &&
            (!asked.IncludeSubTypes || !isOrDerivesFrom(node.typeDefinition, wanted)))
            continue;
        UaQueryDataSets one(1);
        mustHold(OpcUa_IsGood(id.copyTo(&one[0].NodeId.NodeId)));
        mustHold(OpcUa_IsGood(node.typeDefinition.copyTo(&one[0].TypeDefinitionNode.NodeId)));
        UaVariantArray values(static_cast<OpcUa_UInt32>(wishes.size()));
        for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
            const std::optional<UaNodeId> at = follow(id, wishes[i].RelativePath);
            if (at)
                mustHold(OpcUa_IsGood(attributeOf(*find(*at), wishes[i].AttributeId).copyTo(&values[i])));
        }
        values.detach(&one[0].NoOfValues, &one[0].Values);
        mustHold(found.appendMoved(std::move(one)));
    }
}

void NodeTable::handOut(UaQueryDataSets& dataSets, OpcUa_UInt32 maximum, OpcUa_ByteString& continuationPoint,
                        OpcUa_Int32& count, OpcUa_QueryDataSet*& to)
{
    if (maximum > 0 && dataSets.length() > maximum) {
        const std::string point = "query " + std::to_string(++m_points);
        UaQueryDataSets rest(static_cast<OpcUa_Int32>(dataSets.length() - maximum),
                             dataSets.rawData() + maximum);
        m_queryRests[point] = {std::move(rest), maximum};
        mustHold(dataSets.resize(maximum));
        const UaByteString bytes(std::span(reinterpret_cast<const OpcUa_Byte*>(point.data()), point.size()));
        mustHold(OpcUa_IsGood(bytes.copyTo(&continuationPoint)));
    }
    dataSets.detach(&count, &to);
}

OpcUa_StatusCode NodeTable::query(const OpcUa_QueryFirstRequest& request, OpcUa_QueryFirstResponse& response)
{
    const std::lock_guard lock(m_mutex);
    if (request.Filter.NoOfElements > 0)
        return OpcUa_BadContentFilterInvalid;
    UaParsingResults findings(static_cast<OpcUa_UInt32>(std::max(0, request.NoOfNodeTypes)));
    UaQueryDataSets found;
    for (OpcUa_UInt32 i = 0; i < findings.length(); ++i) {
        const OpcUa_NodeTypeDescription& type = request.NodeTypes[i];
        const OpcUa_UInt32 before = found.length();
        OpcUa_StatusCode& status = findings[i].StatusCode;
        status = statusOf(Query, UaNodeId(type.TypeDefinitionNode.NodeId));
        if (OpcUa_IsGood(status) || status == OpcUa_BadNodeIdUnknown)
            queryType(type, found);
        if (found.length() > before)
            status = OpcUa_Good; // types of the standard need no node to have instances
    }
    findings.detach(&response.NoOfParsingResults, &response.ParsingResults);
    handOut(found, request.MaxDataSetsToReturn, response.ContinuationPoint, response.NoOfQueryDataSets,
            response.QueryDataSets);
    return OpcUa_Good;
}

OpcUa_StatusCode NodeTable::queryNext(const OpcUa_QueryNextRequest& request,
                                      OpcUa_QueryNextResponse& response)
{
    const std::lock_guard lock(m_mutex);
    auto rest = m_queryRests.extract(std::string(UaByteString(request.ContinuationPoint).view()));
    if (!rest)
        return OpcUa_BadContinuationPointInvalid;
    if (!request.ReleaseContinuationPoint)
        handOut(rest.mapped().dataSets, rest.mapped().maximum, response.RevisedContinuationPoint,
                response.NoOfQueryDataSets, response.QueryDataSets);
    return OpcUa_Good;
}
