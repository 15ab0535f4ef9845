// UaStructureField, declared in uastructuredefinition.h.
#include <opcua/opcua_identifiers.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

class UaStructureFieldPrivate
{
public:
    UaString name;
    UaLocalizedText description;
    UaNodeId dataTypeId;
    OpcUa_BuiltInType builtInType = OpcUaType_Null;
    OpcUa_Int32 valueRank = -1;
    UaArray<OpcUa_UInt32> arrayDimensions;
    OpcUa_UInt32 maxStringLength = 0;
    bool isOptional = false;
    bool allowSubTypes = false;
    UaStructureDefinition structureDefinition;
    UaEnumDefinition enumDefinition;
    UaOptionSetDefinition optionSetDefinition;
};

UaStructureField::UaStructureField() noexcept = default;
UaStructureField::UaStructureField(const UaStructureField&) noexcept = default;
UaStructureField& UaStructureField::operator=(const UaStructureField&) noexcept = default;
UaStructureField::~UaStructureField() = default;

UaStructureField::UaStructureField(const UaString& name, const UaNodeId& dataTypeId,
                                   OpcUa_BuiltInType builtInType, OpcUa_Int32 valueRank, bool isOptional)
{
    UaStructureFieldPrivate& content = d.edit();
    content.name = name;
    content.dataTypeId = dataTypeId;
    content.builtInType = builtInType;
    content.valueRank = valueRank;
    content.isOptional = isOptional;
}

bool UaStructureField::isNestedStructure() const noexcept
{
    return builtInType() == OpcUaType_ExtensionObject && !allowSubTypes() &&
           !d->dataTypeId.isNumeric(OpcUaId_Structure) && !d->dataTypeId.isNumeric(OpcUaId_Decimal);
}

// clang-format off
UaString UaStructureField::name() const noexcept { return d ? d->name : UaString(); }
UaLocalizedText UaStructureField::description() const noexcept { return d ? d->description : UaLocalizedText(); }
UaNodeId UaStructureField::dataTypeId() const noexcept { return d ? d->dataTypeId : UaNodeId(); }
OpcUa_BuiltInType UaStructureField::builtInType() const noexcept { return d ? d->builtInType : OpcUaType_Null; }
OpcUa_Int32 UaStructureField::valueRank() const noexcept { return d ? d->valueRank : -1; }
UaArray<OpcUa_UInt32> UaStructureField::arrayDimensions() const noexcept { return d ? d->arrayDimensions : UaArray<OpcUa_UInt32>(); }
OpcUa_UInt32 UaStructureField::maxStringLength() const noexcept { return d ? d->maxStringLength : 0; }
bool UaStructureField::isOptional() const noexcept { return d && d->isOptional; }
bool UaStructureField::allowSubTypes() const noexcept { return d && d->allowSubTypes; }
UaStructureDefinition UaStructureField::structureDefinition() const noexcept { return d ? d->structureDefinition : UaStructureDefinition(); }
UaEnumDefinition UaStructureField::enumDefinition() const noexcept { return d ? d->enumDefinition : UaEnumDefinition(); }
UaOptionSetDefinition UaStructureField::optionSetDefinition() const noexcept { return d ? d->optionSetDefinition : UaOptionSetDefinition(); }

void UaStructureField::setName(const UaString& name) { d.edit().name = name; }
void UaStructureField::setDescription(const UaLocalizedText& description) { d.edit().description = description; }
void UaStructureField::setDataTypeId(const UaNodeId& dataTypeId) { d.edit().dataTypeId = dataTypeId; }
void UaStructureField::setArrayDimensions(const UaArray<OpcUa_UInt32>& dimensions) { d.edit().arrayDimensions = dimensions; }
void UaStructureField::setMaxStringLength(OpcUa_UInt32 maxStringLength) { d.edit().maxStringLength = maxStringLength; }
void UaStructureField::setIsOptional(bool isOptional) { d.edit().isOptional = isOptional; }
void UaStructureField::setAllowSubTypes(bool allowSubTypes) { d.edit().allowSubTypes = allowSubTypes; }
void UaStructureField::setStructureDefinition(const UaStructureDefinition& definition) { d.edit().structureDefinition = definition; }
void UaStructureField::setEnumDefinition(const UaEnumDefinition& definition) { d.edit().enumDefinition = definition; }
void UaStructureField::setOptionSetDefinition(const UaOptionSetDefinition& definition) { d.edit().optionSetDefinition = definition; }
// clang-format on
