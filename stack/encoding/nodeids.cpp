#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/values.h>

namespace opcua {

void clear(OpcUa_NodeId& value)
{
    {
        TextReleaser texts;
        release(value, texts);
    }
    initialize(value);
}

OpcUa_StatusCode copy(const OpcUa_NodeId& source, OpcUa_NodeId& destination)
{
    OpcUa_StatusCode status = OpcUa_Good;
    destination = source;
    if (source.IdentifierType == OpcUa_IdentifierType_String)
        status = copy(source.Identifier.String, destination.Identifier.String);
    else if (source.IdentifierType == OpcUa_IdentifierType_Opaque)
        status = copy(source.Identifier.ByteString, destination.Identifier.ByteString);
    if (OpcUa_IsBad(status))
        initialize(destination);
    return status;
}

int compare(const OpcUa_NodeId& left, const OpcUa_NodeId& right)
{
    if (left.NamespaceIndex != right.NamespaceIndex)
        return order(left.NamespaceIndex, right.NamespaceIndex);
    if (left.IdentifierType != right.IdentifierType)
        return order(left.IdentifierType, right.IdentifierType);
    switch (left.IdentifierType) {
    case OpcUa_IdentifierType_String:
        return compare(left.Identifier.String, right.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return compare(left.Identifier.Guid, right.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return compare(left.Identifier.ByteString, right.Identifier.ByteString);
    default:
        return order(left.Identifier.Numeric, right.Identifier.Numeric);
    }
}

bool isNull(const OpcUa_NodeId& value)
{
    if (value.NamespaceIndex != 0)
        return false;
    static const OpcUa_Guid noGuid{};
    switch (value.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return value.Identifier.Numeric == 0;
    case OpcUa_IdentifierType_String:
        return value.Identifier.String.Data == nullptr || value.Identifier.String.Length <= 0;
    case OpcUa_IdentifierType_Guid:
        return compare(value.Identifier.Guid, noGuid) == 0;
    default:
        return value.Identifier.ByteString.Data == nullptr || value.Identifier.ByteString.Length <= 0;
    }
}

void clear(OpcUa_ExpandedNodeId& value)
{
    clear(value.NodeId);
    clear(value.NamespaceUri);
    value.ServerIndex = 0;
}

OpcUa_StatusCode copy(const OpcUa_ExpandedNodeId& source, OpcUa_ExpandedNodeId& destination)
{
    initialize(destination);
    OpcUa_StatusCode status = copy(source.NodeId, destination.NodeId);
    if (OpcUa_IsGood(status))
        status = copy(source.NamespaceUri, destination.NamespaceUri);
    if (OpcUa_IsBad(status))
        clear(destination);
    else
        destination.ServerIndex = source.ServerIndex;
    return status;
}

int compare(const OpcUa_ExpandedNodeId& left, const OpcUa_ExpandedNodeId& right)
{
    if (left.ServerIndex != right.ServerIndex)
        return order(left.ServerIndex, right.ServerIndex);
    const int result = compare(left.NamespaceUri, right.NamespaceUri);
    return result != 0 ? result : compare(left.NodeId, right.NodeId);
}

} // namespace opcua
