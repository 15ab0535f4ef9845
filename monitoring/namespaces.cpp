#include <monitoring/namespaces.h>

namespace monitoring {

namespace {

// All of them are walked, so that one that is gone does not leave the others behind.
template <typename T, typename Remap>
bool remapAll(T* first, OpcUa_Int32 count, const Remap& remap)
{
    bool complete = true;
    for (OpcUa_Int32 i = 0; i < count; ++i)
        complete = remap(first[i]) && complete;
    return complete;
}

bool remapSimpleOperand(OpcUa_SimpleAttributeOperand& operand, const NamespaceMap& namespaces)
{
    const bool path =
        remapAll(operand.BrowsePath, operand.NoOfBrowsePath, [&namespaces](OpcUa_QualifiedName& name) {
            return remapIndex(name.NamespaceIndex, namespaces);
        });
    return remapIndex(operand.TypeDefinitionId.NamespaceIndex, namespaces) && path;
}

bool remapLiteral(OpcUa_Variant& literal, const NamespaceMap& namespaces)
{
    if (literal.ArrayType != OpcUa_VariantArrayType_Scalar)
        return true;
    if (literal.Datatype == OpcUaType_NodeId)
        return remapIndex(literal.Value.NodeId->NamespaceIndex, namespaces);
    if (literal.Datatype == OpcUaType_QualifiedName)
        return remapIndex(literal.Value.QualifiedName->NamespaceIndex, namespaces);
    return true;
}

template <typename T>
T* decodedAs(const OpcUa_ExtensionObject& object, const OpcUa_EncodeableType& type)
{
    return object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                   object.Body.EncodeableObject.Type == &type
               ? static_cast<T*>(object.Body.EncodeableObject.Object)
               : nullptr;
}

bool remapOperand(OpcUa_ExtensionObject& operand, const NamespaceMap& namespaces)
{
    if (auto* const simple =
            decodedAs<OpcUa_SimpleAttributeOperand>(operand, OpcUa_SimpleAttributeOperand_EncodeableType))
        return remapSimpleOperand(*simple, namespaces);
    if (auto* const literal = decodedAs<OpcUa_LiteralOperand>(operand, OpcUa_LiteralOperand_EncodeableType))
        return remapLiteral(literal->Value, namespaces);
    return true;
}

bool remapEventFilter(OpcUa_EventFilter& filter, const NamespaceMap& namespaces)
{
    const bool selected = remapAll(
        filter.SelectClauses, filter.NoOfSelectClauses,
        [&namespaces](OpcUa_SimpleAttributeOperand& operand) {
            return remapSimpleOperand(operand, namespaces);
        });
    return remapAll(filter.WhereClause.Elements, filter.WhereClause.NoOfElements,
                    [&namespaces](OpcUa_ContentFilterElement& element) {
                        return remapAll(element.FilterOperands, element.NoOfFilterOperands,
                                        [&namespaces](OpcUa_ExtensionObject& operand) {
                                            return remapOperand(operand, namespaces);
                                        });
                    }) &&
           selected;
}

} // namespace

bool remapIndex(OpcUa_UInt16& index, const NamespaceMap& namespaces)
{
    if (index == 0 || namespaces.empty())
        return true;
    const auto found = namespaces.find(index);
    if (found == namespaces.end())
        return false;
    index = found->second;
    return true;
}

bool remapNodeId(UaNodeId& nodeId, const NamespaceMap& namespaces)
{
    OpcUa_UInt16 index = nodeId.namespaceIndex();
    const bool known = remapIndex(index, namespaces);
    if (index != nodeId.namespaceIndex())
        nodeId.setNamespaceIndex(index);
    return known;
}

bool remapFilter(OpcUa_ExtensionObject& filter, const NamespaceMap& namespaces)
{
    if (auto* const events = decodedAs<OpcUa_EventFilter>(filter, OpcUa_EventFilter_EncodeableType))
        return remapEventFilter(*events, namespaces);
    if (auto* const aggregate =
            decodedAs<OpcUa_AggregateFilter>(filter, OpcUa_AggregateFilter_EncodeableType))
        return remapIndex(aggregate->AggregateType.NamespaceIndex, namespaces);
    return true;
}

bool remapRequest(OpcUa_MonitoredItemCreateRequest& request, const NamespaceMap& namespaces)
{
    const bool node = remapIndex(request.ItemToMonitor.NodeId.NamespaceIndex, namespaces);
    const bool encoding = remapIndex(request.ItemToMonitor.DataEncoding.NamespaceIndex, namespaces);
    return remapFilter(request.RequestedParameters.Filter, namespaces) && node && encoding;
}

} // namespace monitoring
