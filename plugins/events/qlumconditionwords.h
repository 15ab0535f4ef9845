#pragma once
#include <opcua/opcua_builtintypes.h>

#include <QString>

/// Why a server has refused what was wanted of a condition, and what that means, in a sentence.
[[nodiscard]] QString qlumConditionWords(OpcUa_StatusCode status);
