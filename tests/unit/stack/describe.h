// Values as text, in the words of tests/data/encoding/README.md.
#pragma once

#include <opcua/opcua_builtintypes.h>

#include <string>

/// "ns=0 kind=numeric id=85"; "-" when no field is set.
[[nodiscard]] std::string describe(OpcUa_Byte builtInType, const void* value);
