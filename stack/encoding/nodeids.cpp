#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/values.h>

#include <cstring>

void OpcUa_NodeId_Initialize(OpcUa_NodeId* value)
{
    std::memset(value, 0, sizeof *value);
}

void OpcUa_NodeId_Clear(OpcUa_NodeId* value)
{
    {
        opcua::TextReleaser texts;
        opcua::release(*value, texts);
    }
    OpcUa_NodeId_Initialize(value);
}

OpcUa_StatusCode OpcUa_NodeId_Copy(const OpcUa_NodeId* source, OpcUa_NodeId* destination)
{
    OpcUa_StatusCode status = OpcUa_Good;
    *destination = *source;
    if (source->IdentifierType == OpcUa_IdentifierType_String)
        status = OpcUa_String_Copy(&source->Identifier.String, &destination->Identifier.String);
    else if (source->IdentifierType == OpcUa_IdentifierType_Opaque)
        status = OpcUa_ByteString_Copy(&source->Identifier.ByteString, &destination->Identifier.ByteString);
    if (OpcUa_IsBad(status))
        OpcUa_NodeId_Initialize(destination);
    return status;
}

int OpcUa_NodeId_Compare(const OpcUa_NodeId* left, const OpcUa_NodeId* right)
{
    if (left->NamespaceIndex != right->NamespaceIndex)
        return opcua::order(left->NamespaceIndex, right->NamespaceIndex);
    if (left->IdentifierType != right->IdentifierType)
        return opcua::order(left->IdentifierType, right->IdentifierType);
    switch (left->IdentifierType) {
    case OpcUa_IdentifierType_String:
        return OpcUa_String_Compare(&left->Identifier.String, &right->Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return OpcUa_Guid_Compare(&left->Identifier.Guid, &right->Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return OpcUa_ByteString_Compare(&left->Identifier.ByteString, &right->Identifier.ByteString);
    default:
        return opcua::order(left->Identifier.Numeric, right->Identifier.Numeric);
    }
}

OpcUa_Boolean OpcUa_NodeId_IsNull(const OpcUa_NodeId* value)
{
    if (value->NamespaceIndex != 0)
        return OpcUa_False;
    static const OpcUa_Guid noGuid{};
    switch (value->IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return value->Identifier.Numeric == 0;
    case OpcUa_IdentifierType_String:
        return value->Identifier.String.Data == nullptr || value->Identifier.String.Length <= 0;
    case OpcUa_IdentifierType_Guid:
        return OpcUa_Guid_Compare(&value->Identifier.Guid, &noGuid) == 0;
    default:
        return value->Identifier.ByteString.Data == nullptr || value->Identifier.ByteString.Length <= 0;
    }
}

void OpcUa_ExpandedNodeId_Initialize(OpcUa_ExpandedNodeId* value)
{
    OpcUa_NodeId_Initialize(&value->NodeId);
    OpcUa_String_Initialize(&value->NamespaceUri);
    value->ServerIndex = 0;
}

void OpcUa_ExpandedNodeId_Clear(OpcUa_ExpandedNodeId* value)
{
    OpcUa_NodeId_Clear(&value->NodeId);
    OpcUa_String_Clear(&value->NamespaceUri);
    value->ServerIndex = 0;
}

OpcUa_StatusCode OpcUa_ExpandedNodeId_Copy(const OpcUa_ExpandedNodeId* source,
                                           OpcUa_ExpandedNodeId* destination)
{
    OpcUa_ExpandedNodeId_Initialize(destination);
    OpcUa_StatusCode status = OpcUa_NodeId_Copy(&source->NodeId, &destination->NodeId);
    if (OpcUa_IsGood(status))
        status = OpcUa_String_Copy(&source->NamespaceUri, &destination->NamespaceUri);
    if (OpcUa_IsBad(status))
        OpcUa_ExpandedNodeId_Clear(destination);
    else
        destination->ServerIndex = source->ServerIndex;
    return status;
}

int OpcUa_ExpandedNodeId_Compare(const OpcUa_ExpandedNodeId* left, const OpcUa_ExpandedNodeId* right)
{
    if (left->ServerIndex != right->ServerIndex)
        return opcua::order(left->ServerIndex, right->ServerIndex);
    const int result = OpcUa_String_Compare(&left->NamespaceUri, &right->NamespaceUri);
    return result != 0 ? result : OpcUa_NodeId_Compare(&left->NodeId, &right->NodeId);
}
