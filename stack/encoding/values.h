// How a variant keeps its value.
#pragma once

#include <stack/encoding/elements.h>

namespace opcua {

// A scalar of this type is a block of its own.
[[nodiscard]] bool isHeldByPointer(OpcUa_Byte builtInType);

// The value of a scalar variant, wherever it lies; null when a pointer is missing.
[[nodiscard]] const void* scalarOf(const OpcUa_Variant& value);

} // namespace opcua
