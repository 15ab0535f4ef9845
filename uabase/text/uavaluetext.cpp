#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/text/uavaluetext_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>

#include <optional>
#include <span>

namespace uabase {

UaStructureDefinition definitionFor(const UaExpandedNodeId& typeId, UaDataTypeDictionary* dictionary)
{
    if (!typeId.isLocal())
        return {};
    const UaStructureDefinition standard = uaNamespaceZeroStructure(typeId.nodeId());
    if (!standard.isNull() || !dictionary)
        return standard;
    return dictionary->structureDefinition(typeId.nodeId());
}

std::optional<OpenedStructure> openStructure(const UaExtensionObject& object,
                                             const UaStructureDefinition& definition,
                                             UaDataTypeDictionary* dictionary)
{
    OpenedStructure opened;
    opened.definition = definition;
    if (definition.isNull())
        return std::nullopt;
    if (object.isNull()) { // a nested structure that was never set
        opened.structure = UaGenericStructureValue(definition, dictionary);
        opened.chosen = UaGenericUnionValue(definition);
        return opened;
    }
    const UaStatusCode status = definition.isUnion()
                                    ? opened.chosen.decode(object, definition, dictionary)
                                    : opened.structure.decode(object, definition, dictionary);
    return status.isBad() ? std::nullopt : std::optional(opened);
}

int maskBit(const UaStructureDefinition& definition, int field)
{
    if (!definition.field(field).isOptional())
        return -1;
    int bit = 0;
    for (int i = 0; i < field; ++i)
        bit += definition.field(i).isOptional() ? 1 : 0;
    return bit < 32 ? bit : -1;
}

OpcUa_UInt32 presenceMask(const OpenedStructure& opened)
{
    OpcUa_UInt32 mask = 0;
    unsigned bit = 0;
    for (int i = 0; i < opened.definition.fieldCount() && bit < 32; ++i)
        if (opened.definition.field(i).isOptional())
            mask |= (opened.structure.isFieldSet(i) ? 1u : 0u) << bit++;
    return mask;
}

UaExtensionObject xmlObject(const UaExpandedNodeId& typeId, const UaString& xml)
{
    const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(xml.view().data());
    OpcUa_ExtensionObject object;
    OpcUa_ExtensionObject_Initialize(&object);
    const bool isComplete =
        OpcUa_IsGood(typeId.copyTo(&object.TypeId)) &&
        OpcUa_IsGood(UaByteString(std::span(bytes, xml.view().size())).copyTo(&object.Body.Xml));
    object.Encoding = OpcUa_ExtensionObjectEncoding_Xml;
    UaExtensionObject result;
    result.attach(&object);
    return isComplete ? result : UaExtensionObject();
}

} // namespace uabase
