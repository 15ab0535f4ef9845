// Searches in the generated tables. Whatever is not there is null; names are static.
#pragma once

#include <opcua/opcua_encodeable.h>

namespace opcua {

[[nodiscard]] const OpcUa_EncodeableType* findTypeByBinaryId(OpcUa_UInt32 binaryEncodingTypeId);
[[nodiscard]] const OpcUa_EncodeableType* findTypeByTypeId(OpcUa_UInt32 dataTypeId);
[[nodiscard]] const OpcUa_EnumeratedType* findEnumeratedType(OpcUa_UInt32 dataTypeId);
[[nodiscard]] const char* nameOfEnumValue(OpcUa_UInt32 enumDataTypeId, OpcUa_Int32 value);
/// The low 16 bits do not count.
[[nodiscard]] const char* nameOfStatusCode(OpcUa_StatusCode code);
[[nodiscard]] const char* nameOfAttribute(OpcUa_UInt32 attributeId);

} // namespace opcua
