// What reader and writer share.
#include <uabase/structures/uastructurecodec_p.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

namespace uabase {

UaStructureDefinition findDefinition(const UaStructureField& field, UaDataTypeDictionary* dictionary)
{
    UaStructureDefinition definition = field.structureDefinition();
    if (definition.isNull())
        definition = uaNamespaceZeroStructure(field.dataTypeId());
    if (definition.isNull() && dictionary)
        definition = dictionary->structureDefinition(field.dataTypeId());
    return definition;
}

UaNodeId bodyTypeId(const UaStructureDefinition& definition)
{
    const UaNodeId encodingId = definition.binaryEncodingId();
    return encodingId.isNull() ? definition.dataTypeId() : encodingId;
}

bool isOfType(const UaExtensionObject& value, const UaStructureDefinition& definition)
{
    const UaExpandedNodeId id = value.typeId();
    return !id.isLocal() || id.nodeId() == definition.binaryEncodingId() ||
           id.nodeId() == definition.dataTypeId();
}

OpcUa_StatusCode bodyOf(const UaExtensionObject& value, const UaStructureDefinition& definition,
                        UaByteString& body)
{
    if (value.encoding() == OpcUa_ExtensionObjectEncoding_Xml)
        return OpcUa_BadNotSupported;
    if (definition.isNull() || !isOfType(value, definition))
        return OpcUa_BadDataTypeIdUnknown;
    const OpcUa_StatusCode status = value.binaryBody(body);
    return OpcUa_IsGood(status) || status == OpcUa_BadNoData ? OpcUa_Good : OpcUa_BadDecodingError;
}

bool fitsField(const UaStructureField& field, const UaVariant& value)
{
    const bool isPlural = field.valueRank() >= 0;
    if (field.builtInType() == OpcUaType_Variant && !isPlural)
        return true;
    if (value.isNull())
        return isPlural;
    if (value.type() != field.builtInType())
        return false;
    return field.valueRank() > 1 ? value.isMatrix() || value.elementCount() == 0
                                 : (isPlural ? value.isArray() : value.isScalar());
}

} // namespace uabase
