// A dictionary in memory.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>

#include <map>
#include <memory>

/// Holds definitions from any source; what it does not hold it takes from the standard's own. Looking up is
/// const inside, so a filled store may be asked from several threads.
class UaTypeDefinitionStore : public UaDataTypeDictionary
{
public:
    /// Null definitions are not kept; one of the same data type is replaced.
    void add(const UaStructureDefinition& definition);
    void add(const UaEnumDefinition& definition);
    void add(const UaOptionSetDefinition& definition);
    /// Takes over what is not there yet.
    void addMissing(const UaTypeDefinitionStore& other);
    void clear();
    [[nodiscard]] std::size_t count() const noexcept;

    [[nodiscard]] DefinitionType definitionType(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaStructureDefinition structureDefinition(const UaNodeId& dataTypeOrEncodingId) override;
    [[nodiscard]] UaEnumDefinition enumDefinition(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaOptionSetDefinition optionSetDefinition(const UaNodeId& dataTypeId) override;

    /// The same for a constant store.
    [[nodiscard]] UaStructureDefinition structure(const UaNodeId& dataTypeOrEncodingId) const;
    [[nodiscard]] UaEnumDefinition enumeration(const UaNodeId& dataTypeId) const;
    [[nodiscard]] UaOptionSetDefinition optionSet(const UaNodeId& dataTypeId) const;
    [[nodiscard]] bool holds(const UaNodeId& dataTypeId) const; ///< itself, not the standard

private:
    std::map<UaNodeId, UaStructureDefinition> m_structures;
    std::map<UaNodeId, UaNodeId> m_encodings; ///< binary encoding to data type
    std::map<UaNodeId, UaEnumDefinition> m_enumerations;
    std::map<UaNodeId, UaOptionSetDefinition> m_optionSets;
};
