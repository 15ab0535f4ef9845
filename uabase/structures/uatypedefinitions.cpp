// Definitions from the DataTypeDefinition attribute; declared in uanamespacezero.h.
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

namespace {

OpcUa_BuiltInType resolvedType(const UaNodeId& dataTypeId, const UaBuiltInTypeResolver& resolver)
{
    OpcUa_BuiltInType type = uaNamespaceZeroBuiltInType(dataTypeId);
    if (type == OpcUaType_Null && resolver)
        type = resolver(dataTypeId);
    return type;
}

UaStructureField fieldOf(const OpcUa_StructureField& attribute, bool subTypesAllowed, OpcUa_BuiltInType type)
{
    const bool allowSubTypes = subTypesAllowed && attribute.IsOptional;
    if (allowSubTypes && type != OpcUaType_ExtensionObject)
        type = OpcUaType_Variant; // any number, any value: it travels with its type
    UaStructureField field(UaString(attribute.Name), UaNodeId(attribute.DataType), type, attribute.ValueRank,
                           attribute.IsOptional && !subTypesAllowed);
    field.setAllowSubTypes(allowSubTypes);
    field.setDescription(UaLocalizedText(attribute.Description));
    field.setMaxStringLength(attribute.MaxStringLength);
    field.setArrayDimensions({attribute.NoOfArrayDimensions, attribute.ArrayDimensions});
    field.setEnumDefinition(uaNamespaceZeroEnum(field.dataTypeId()));
    field.setOptionSetDefinition(uaNamespaceZeroOptionSet(field.dataTypeId()));
    return field;
}

UaEnumValue valueOf(const OpcUa_EnumField& attribute)
{
    return {attribute.Value, UaString(attribute.Name), UaLocalizedText(attribute.DisplayName),
            UaLocalizedText(attribute.Description)};
}

} // namespace

UaStructureDefinition uaStructureDefinition(const OpcUa_StructureDefinition& attribute, const UaString& name,
                                            const UaNodeId& dataTypeId, const UaBuiltInTypeResolver& resolver)
{
    UaStructureDefinition definition(name, dataTypeId, UaNodeId(attribute.DefaultEncodingId));
    definition.setBaseId(UaNodeId(attribute.BaseDataType));
    definition.setUnion(attribute.StructureType == OpcUa_StructureType_Union ||
                        attribute.StructureType == OpcUa_StructureType_UnionWithSubtypedValues);
    definition.setHasOptionalFields(attribute.StructureType ==
                                    OpcUa_StructureType_StructureWithOptionalFields);
    const bool subTypesAllowed = attribute.StructureType == OpcUa_StructureType_StructureWithSubtypedValues ||
                                 attribute.StructureType == OpcUa_StructureType_UnionWithSubtypedValues;
    for (OpcUa_Int32 i = 0; i < attribute.NoOfFields; ++i) {
        const OpcUa_StructureField& field = attribute.Fields[i];
        const OpcUa_BuiltInType type = resolvedType(UaNodeId(field.DataType), resolver);
        if (type == OpcUaType_Null)
            return {};
        definition.addField(fieldOf(field, subTypesAllowed, type));
    }
    return definition;
}

UaEnumDefinition uaEnumDefinition(const OpcUa_EnumDefinition& attribute, const UaString& name,
                                  const UaNodeId& dataTypeId)
{
    UaEnumDefinition definition(name, dataTypeId);
    for (OpcUa_Int32 i = 0; i < attribute.NoOfFields; ++i)
        definition.addValue(valueOf(attribute.Fields[i]));
    return definition;
}

UaOptionSetDefinition uaOptionSetDefinition(const OpcUa_EnumDefinition& attribute, const UaString& name,
                                            const UaNodeId& dataTypeId, OpcUa_BuiltInType builtInType)
{
    UaOptionSetDefinition definition(name, dataTypeId, builtInType);
    for (OpcUa_Int32 i = 0; i < attribute.NoOfFields; ++i)
        definition.addBit(valueOf(attribute.Fields[i]));
    return definition;
}
