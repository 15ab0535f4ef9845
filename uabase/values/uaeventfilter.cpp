#include <uabase/values/uaeventfilter.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uafilterobject_p.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <string_view>
#include <utility>

void UaEventFilter::select(std::string_view field)
{
    select(UaNodeId(OpcUaId_BaseEventType), {UaQualifiedName(UaString(field), 0)});
}

void UaEventFilter::select(const UaNodeId& typeDefinitionId, const UaBrowseNames& path)
{
    select(typeDefinitionId, path, OpcUa_Attributes_Value);
}

void UaEventFilter::select(const UaNodeId& typeDefinitionId, const UaBrowseNames& path,
                           OpcUa_UInt32 attributeId)
{
    UaSimpleAttributeOperands clause(1u);
    m_complete = m_complete && !clause.isEmpty() &&
                 OpcUa_IsGood(uaFillSimpleAttribute(clause[0], typeDefinitionId, path, attributeId)) &&
                 m_selectClauses.appendMoved(std::move(clause));
}

OpcUa_StatusCode UaEventFilter::copyTo(OpcUa_EventFilter* destination) const noexcept
{
    if (!m_complete || !m_selectClauses.copyTo(&destination->NoOfSelectClauses, &destination->SelectClauses))
        return OpcUa_BadOutOfMemory;
    return m_where.copyTo(&destination->WhereClause);
}

OpcUa_StatusCode UaEventFilter::copyTo(OpcUa_ExtensionObject* destination) const noexcept
{
    auto* const filter = uaAttachNew<OpcUa_EventFilter>(OpcUa_EventFilter_EncodeableType, destination);
    return filter ? copyTo(filter) : OpcUa_BadOutOfMemory;
}
