#include <uabase/values/uashared.h>

bool uaHoldsMemory(const OpcUa_String& value) noexcept
{
    return value.Data != nullptr;
}

bool uaHoldsMemory(const OpcUa_ByteString& value) noexcept
{
    return value.Data != nullptr;
}

bool uaHoldsMemory(const OpcUa_NodeId& value) noexcept
{
    switch (value.IdentifierType) {
    case OpcUa_IdentifierType_String:
        return uaHoldsMemory(value.Identifier.String);
    case OpcUa_IdentifierType_Opaque:
        return uaHoldsMemory(value.Identifier.ByteString);
    default:
        return false;
    }
}

bool uaHoldsBlocks(const OpcUa_Variant& value) noexcept
{
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return value.Value.Array.Data != nullptr || value.Value.Array.Dimensions != nullptr;
    switch (value.Datatype) {
    case OpcUaType_String:
        return uaHoldsMemory(value.Value.String);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return uaHoldsMemory(value.Value.ByteString);
    case OpcUaType_Guid:
    case OpcUaType_DateTime:
    case OpcUaType_StatusCode:
        return false;
    default:
        return value.Datatype > OpcUaType_String;
    }
}

bool uaHoldsMemory(const OpcUa_ExtensionObject& value) noexcept
{
    if (uaHoldsMemory(value.TypeId.NodeId) || uaHoldsMemory(value.TypeId.NamespaceUri))
        return true;
    return value.Encoding != OpcUa_ExtensionObjectEncoding_None;
}

bool uaHoldsMemory(const OpcUa_DiagnosticInfo& value) noexcept
{
    return uaHoldsMemory(value.AdditionalInfo) || value.InnerDiagnosticInfo != nullptr;
}
