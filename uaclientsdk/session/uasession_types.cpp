// Members of UaSession as the dictionary of its server's data types; declared in uasession.h, which has too
// many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <chrono>

namespace UaClientSdk {

namespace {

// Types of namespace 0 are known without a word from the server, but for those of a newer standard.
bool needsLoading(const UaNodeId& id)
{
    return id.namespaceIndex() != 0 ||
           (uaNamespaceZeroBuiltInType(id) == OpcUaType_Null && uaNamespaceZeroStructure(id).isNull());
}

} // namespace

bool UaSession::waitForDataTypes(OpcUa_UInt32 timeout) const
{
    return d->waitForDataTypes(std::chrono::milliseconds(timeout));
}

UaStructureDefinition UaSession::structureDefinition(const UaNodeId& dataTypeOrEncodingId)
{
    if (needsLoading(dataTypeOrEncodingId))
        d->loadDefinitionsOnFirstUse();
    return d->definitions.structure(dataTypeOrEncodingId);
}

UaEnumDefinition UaSession::enumDefinition(const UaNodeId& dataTypeId)
{
    if (needsLoading(dataTypeId))
        d->loadDefinitionsOnFirstUse();
    return d->definitions.enumeration(dataTypeId);
}

UaOptionSetDefinition UaSession::optionSetDefinition(const UaNodeId& dataTypeId)
{
    if (needsLoading(dataTypeId))
        d->loadDefinitionsOnFirstUse();
    return d->definitions.optionSet(dataTypeId);
}

UaDataTypeDictionary::DefinitionType UaSession::definitionType(const UaNodeId& dataTypeId)
{
    const UaStructureDefinition structure = structureDefinition(dataTypeId);
    if (!structure.isNull())
        return structure.isUnion() ? UnionType : structure.isOptionSet() ? OptionSetType : StructureType;
    if (!enumDefinition(dataTypeId).isNull())
        return EnumType;
    return optionSetDefinition(dataTypeId).isNull() ? UndefinedType : OptionSetType;
}

} // namespace UaClientSdk
