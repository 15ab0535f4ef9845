// What a node says of its Value, and what that means for an editor.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

#include <map>
#include <optional>
#include <string>
#include <vector>

/// As far as it was read; what was not stays empty.
struct QlumValueFacts
{
    UaNodeId dataType;                           ///< attribute DataType
    OpcUa_Int32 valueRank = -2;                  ///< attribute ValueRank
    UaUInt32Array arrayDimensions;               ///< attribute ArrayDimensions
    std::optional<OpcUa_Byte> accessLevel;       ///< attribute AccessLevel
    std::optional<OpcUa_Byte> userAccessLevel;   ///< attribute UserAccessLevel
    std::map<std::string, UaVariant> properties; ///< by name, those of qlumEditingProperties()
};

/// What a variable calls its numbers, by its properties EnumStrings or EnumValues, and its states, by
/// TrueState and FalseState, as 1 and 0; null when it has none of them.
[[nodiscard]] UaEnumDefinition qlumVariableNames(const std::map<std::string, UaVariant>& properties);
/// The names of the properties that an editor makes use of.
[[nodiscard]] const std::vector<std::string>& qlumEditingProperties();
/// Puts into the context what follows from the facts; the rest of it stays.
void qlumTakeFacts(const QlumValueFacts& facts, QlumValueContext& context);
/// Why the Value cannot be written, in words; empty when it can, and where the node does not say.
[[nodiscard]] QString qlumAccessFault(std::optional<OpcUa_Byte> accessLevel,
                                      std::optional<OpcUa_Byte> userAccessLevel);
/// The fields of a structure of the standard ("Range"); null when the value is none.
[[nodiscard]] UaGenericStructureValue qlumStandardFields(const UaVariant& value, const char* structure);
