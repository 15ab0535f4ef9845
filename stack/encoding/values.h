// How a variant keeps its value.
#pragma once

#include <stack/encoding/elements.h>
#include <stack/encoding/lifecycle.h>
#include <stack/encoding/textpool.h>

namespace opcua {

/// A scalar of this type is a block of its own.
[[nodiscard]] bool isHeldByPointer(OpcUa_Byte builtInType);

/// The value of a scalar variant of a built-in type, wherever it lies; null when a pointer is missing.
[[nodiscard]] const void* scalarOf(const OpcUa_Variant& value);

/// Free what a value owns; it must be initialised before it is used again.
void release(OpcUa_ExtensionObject& value);
void release(OpcUa_DiagnosticInfo& value);
void releaseBlocks(OpcUa_Variant& value);

inline void release(const OpcUa_NodeId& value, TextReleaser& texts)
{
    if (value.IdentifierType == OpcUa_IdentifierType_String ||
        value.IdentifierType == OpcUa_IdentifierType_Opaque)
        texts.release(value.Identifier.String.Data);
}

inline void release(OpcUa_Variant& value)
{
    // most variants are plain numbers
    if (value.ArrayType == OpcUa_VariantArrayType_Scalar && value.Datatype < OpcUaType_String)
        return;
    releaseBlocks(value);
}

inline void releaseBuiltIn(OpcUa_Byte kind, void* data, TextReleaser& texts)
{
    switch (kind) {
    case OpcUaType_String:
        return texts.release(static_cast<OpcUa_String*>(data)->Data);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return texts.release(static_cast<OpcUa_ByteString*>(data)->Data);
    case OpcUaType_NodeId:
        return release(*static_cast<OpcUa_NodeId*>(data), texts);
    case OpcUaType_ExpandedNodeId:
        release(static_cast<OpcUa_ExpandedNodeId*>(data)->NodeId, texts);
        return texts.release(static_cast<OpcUa_ExpandedNodeId*>(data)->NamespaceUri.Data);
    case OpcUaType_QualifiedName:
        return texts.release(static_cast<OpcUa_QualifiedName*>(data)->Name.Data);
    case OpcUaType_LocalizedText:
        texts.release(static_cast<OpcUa_LocalizedText*>(data)->Locale.Data);
        return texts.release(static_cast<OpcUa_LocalizedText*>(data)->Text.Data);
    case OpcUaType_ExtensionObject:
        return release(*static_cast<OpcUa_ExtensionObject*>(data));
    case OpcUaType_DataValue:
        return release(static_cast<OpcUa_DataValue*>(data)->Value);
    case OpcUaType_Variant:
        return release(*static_cast<OpcUa_Variant*>(data));
    case OpcUaType_DiagnosticInfo:
        return release(*static_cast<OpcUa_DiagnosticInfo*>(data));
    default:
        return;
    }
}

} // namespace opcua
