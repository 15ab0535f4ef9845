#include <uabase/values/uacontentfilter.h>

#include <uabase/values/uafilterobject_p.h>

OpcUa_StatusCode uaFillSimpleAttribute(OpcUa_SimpleAttributeOperand& operand,
                                       const UaNodeId& typeDefinitionId, const UaBrowseNames& path,
                                       OpcUa_UInt32 attributeId)
{
    OpcUa_StatusCode status = typeDefinitionId.copyTo(&operand.TypeDefinitionId);
    UaQualifiedNameArray names(static_cast<OpcUa_UInt32>(path.size()));
    if (names.length() != path.size())
        return OpcUa_BadOutOfMemory;
    for (OpcUa_UInt32 i = 0; i < names.length() && OpcUa_IsGood(status); ++i)
        status = path[i].copyTo(&names[i]);
    names.detach(&operand.NoOfBrowsePath, &operand.BrowsePath);
    operand.AttributeId = attributeId;
    return status;
}

namespace {

// One operand's structure, filled by fill; a null object when out of memory.
template <typename T, typename Fill>
UaExtensionObject makeOperand(const OpcUa_EncodeableType& type, const Fill& fill)
{
    OpcUa_ExtensionObject object;
    OpcUa_ExtensionObject_Initialize(&object);
    auto* const operand = uaAttachNew<T>(type, &object);
    if (operand && OpcUa_IsBad(fill(*operand)))
        OpcUa_ExtensionObject_Clear(&object);
    UaExtensionObject result;
    result.attach(&object);
    return result;
}

} // namespace

UaFilterOperand UaFilterOperand::literal(const UaVariant& value)
{
    return UaFilterOperand(makeOperand<OpcUa_LiteralOperand>(
        OpcUa_LiteralOperand_EncodeableType,
        [&value](OpcUa_LiteralOperand& operand) { return value.copyTo(&operand.Value); }));
}

UaFilterOperand UaFilterOperand::element(OpcUa_UInt32 index)
{
    return UaFilterOperand(makeOperand<OpcUa_ElementOperand>(
        OpcUa_ElementOperand_EncodeableType,
        [index](OpcUa_ElementOperand& operand) {
            operand.Index = index;
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        }));
}

UaFilterOperand UaFilterOperand::attribute(const UaNodeId& typeDefinitionId, const UaBrowseNames& path,
                                           OpcUa_UInt32 attributeId)
{
    return UaFilterOperand(makeOperand<OpcUa_SimpleAttributeOperand>(
        OpcUa_SimpleAttributeOperand_EncodeableType,
        [&](OpcUa_SimpleAttributeOperand& operand) {
            return uaFillSimpleAttribute(operand, typeDefinitionId, path, attributeId);
        }));
}

OpcUa_UInt32 UaContentFilter::add(OpcUa_FilterOperator filterOperator,
                                  const std::vector<UaFilterOperand>& operands)
{
    const OpcUa_UInt32 index = m_elements.length();
    UaExtensionObjectArray copies(static_cast<OpcUa_UInt32>(operands.size()));
    m_complete = m_complete && copies.length() == operands.size() && m_elements.resize(index + 1);
    if (!m_complete)
        return index;
    for (OpcUa_UInt32 i = 0; i < copies.length(); ++i) {
        m_complete = m_complete && !operands[i].value().isNull() &&
                     OpcUa_IsGood(operands[i].value().copyTo(&copies[i]));
    }
    m_elements[index].FilterOperator = filterOperator;
    copies.detach(&m_elements[index].NoOfFilterOperands, &m_elements[index].FilterOperands);
    return index;
}

OpcUa_StatusCode UaContentFilter::copyTo(OpcUa_ContentFilter* destination) const noexcept
{
    return m_complete && m_elements.copyTo(&destination->NoOfElements, &destination->Elements)
               ? static_cast<OpcUa_StatusCode>(OpcUa_Good)
               : OpcUa_BadOutOfMemory;
}
