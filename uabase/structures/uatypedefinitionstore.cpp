#include <uabase/structures/uatypedefinitionstore.h>

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>

namespace {

template <typename Definition>
Definition found(const std::map<UaNodeId, Definition>& definitions, const UaNodeId& id)
{
    const auto at = definitions.find(id);
    return at == definitions.end() ? Definition() : at->second;
}

} // namespace

void UaTypeDefinitionStore::add(const UaStructureDefinition& definition)
{
    if (definition.isNull())
        return;
    if (!definition.binaryEncodingId().isNull())
        m_encodings[definition.binaryEncodingId()] = definition.dataTypeId();
    m_structures[definition.dataTypeId()] = definition;
}

void UaTypeDefinitionStore::add(const UaEnumDefinition& definition)
{
    if (!definition.isNull())
        m_enumerations[definition.dataTypeId()] = definition;
}

void UaTypeDefinitionStore::add(const UaOptionSetDefinition& definition)
{
    if (!definition.isNull())
        m_optionSets[definition.dataTypeId()] = definition;
}

void UaTypeDefinitionStore::addMissing(const UaTypeDefinitionStore& other)
{
    m_structures.insert(other.m_structures.begin(), other.m_structures.end());
    m_encodings.insert(other.m_encodings.begin(), other.m_encodings.end());
    m_enumerations.insert(other.m_enumerations.begin(), other.m_enumerations.end());
    m_optionSets.insert(other.m_optionSets.begin(), other.m_optionSets.end());
}

void UaTypeDefinitionStore::clear()
{
    *this = UaTypeDefinitionStore();
}

std::size_t UaTypeDefinitionStore::count() const noexcept
{
    return m_structures.size() + m_enumerations.size() + m_optionSets.size();
}

bool UaTypeDefinitionStore::holds(const UaNodeId& dataTypeId) const
{
    return m_structures.contains(dataTypeId) || m_enumerations.contains(dataTypeId) ||
           m_optionSets.contains(dataTypeId);
}

UaStructureDefinition UaTypeDefinitionStore::structure(const UaNodeId& dataTypeOrEncodingId) const
{
    const auto encoding = m_encodings.find(dataTypeOrEncodingId);
    const UaStructureDefinition own =
        found(m_structures, encoding == m_encodings.end() ? dataTypeOrEncodingId : encoding->second);
    return own.isNull() ? uaNamespaceZeroStructure(dataTypeOrEncodingId) : own;
}

UaEnumDefinition UaTypeDefinitionStore::enumeration(const UaNodeId& dataTypeId) const
{
    const UaEnumDefinition own = found(m_enumerations, dataTypeId);
    return own.isNull() ? uaNamespaceZeroEnum(dataTypeId) : own;
}

UaOptionSetDefinition UaTypeDefinitionStore::optionSet(const UaNodeId& dataTypeId) const
{
    const UaOptionSetDefinition own = found(m_optionSets, dataTypeId);
    return own.isNull() ? uaNamespaceZeroOptionSet(dataTypeId) : own;
}

UaDataTypeDictionary::DefinitionType UaTypeDefinitionStore::definitionType(const UaNodeId& dataTypeId)
{
    const UaStructureDefinition known = structure(dataTypeId);
    if (known.isOptionSet())
        return OptionSetType;
    if (!known.isNull())
        return known.isUnion() ? UnionType : StructureType;
    if (!enumeration(dataTypeId).isNull())
        return EnumType;
    return optionSet(dataTypeId).isNull() ? UndefinedType : OptionSetType;
}

UaStructureDefinition UaTypeDefinitionStore::structureDefinition(const UaNodeId& dataTypeOrEncodingId)
{
    return structure(dataTypeOrEncodingId);
}

UaEnumDefinition UaTypeDefinitionStore::enumDefinition(const UaNodeId& dataTypeId)
{
    return enumeration(dataTypeId);
}

UaOptionSetDefinition UaTypeDefinitionStore::optionSetDefinition(const UaNodeId& dataTypeId)
{
    return optionSet(dataTypeId);
}
