// How a variant keeps its value.
#pragma once

#include <stack/encoding/elements.h>

namespace opcua {

// A scalar of this type is a block of its own.
[[nodiscard]] bool isHeldByPointer(OpcUa_Byte builtInType);

// The value of a scalar variant, wherever it lies; null when a pointer is missing.
[[nodiscard]] const void* scalarOf(const OpcUa_Variant& value);

// Free what a value owns; it must be initialised before it is used again.
void release(OpcUa_ExtensionObject& value);
void release(OpcUa_DiagnosticInfo& value);
void releaseBlocks(OpcUa_Variant& value);

inline void release(OpcUa_NodeId& value)
{
    if (value.IdentifierType == OpcUa_IdentifierType_String ||
        value.IdentifierType == OpcUa_IdentifierType_Opaque)
        OpcUa_Memory_Free(value.Identifier.String.Data);
}

inline void release(OpcUa_Variant& value)
{
    // most variants are plain numbers
    if (value.ArrayType == OpcUa_VariantArrayType_Scalar && value.Datatype < OpcUaType_String)
        return;
    releaseBlocks(value);
}

} // namespace opcua
