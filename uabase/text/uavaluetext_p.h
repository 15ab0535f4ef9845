// What the text forms share: structures taken apart and put together.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastring.h>

#include <optional>

namespace uabase {

/// Fields of a structure or union, whichever a body is of.
struct OpenedStructure
{
    UaStructureDefinition definition;
    UaGenericStructureValue structure; ///< when it is no union
    UaGenericUnionValue chosen;        ///< when it is one
};

/// The definition for a type id as it stands in an ExtensionObject; null when nobody knows it.
[[nodiscard]] UaStructureDefinition definitionFor(const UaExpandedNodeId& typeId,
                                                  UaDataTypeDictionary* dictionary);
/// An object with an XML body; null when out of memory.
[[nodiscard]] UaExtensionObject xmlObject(const UaExpandedNodeId& typeId, const UaString& xml);
/// Nothing when the body is not of the definition.
[[nodiscard]] std::optional<OpenedStructure> openStructure(const UaExtensionObject& object,
                                                           const UaStructureDefinition& definition,
                                                           UaDataTypeDictionary* dictionary);
/// Bit of each field in the mask of optional ones; -1 for those that are always there.
[[nodiscard]] int maskBit(const UaStructureDefinition& definition, int field);
[[nodiscard]] OpcUa_UInt32 presenceMask(const OpenedStructure& opened);
/// Whether the text forms carry a mask.
[[nodiscard]] inline bool hasMask(const UaStructureDefinition& definition)
{
    return definition.hasOptionalFields() && !definition.layout();
}

} // namespace uabase
