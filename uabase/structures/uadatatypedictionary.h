// Where definitions of data types come from.
#pragma once

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>

/// Answers null definitions (isNull) for types that it does not know. Implementations say which threads may
/// ask.
class UaDataTypeDictionary
{
public:
    enum DefinitionType { UndefinedType, StructureType, UnionType, EnumType, OptionSetType };

    virtual ~UaDataTypeDictionary() = default;

    [[nodiscard]] virtual DefinitionType definitionType(const UaNodeId& dataTypeId) = 0;
    /// Structures and unions, by the id of the data type or of its binary encoding.
    [[nodiscard]] virtual UaStructureDefinition structureDefinition(const UaNodeId& dataTypeOrEncodingId) = 0;
    [[nodiscard]] virtual UaEnumDefinition enumDefinition(const UaNodeId& dataTypeId) = 0;
    [[nodiscard]] virtual UaOptionSetDefinition optionSetDefinition(const UaNodeId& dataTypeId) = 0;
};
