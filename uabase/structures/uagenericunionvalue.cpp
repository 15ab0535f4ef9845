#include <uabase/structures/uagenericunionvalue.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

UaStatusCode UaGenericUnionValue::decode(const UaExtensionObject& value,
                                         const UaStructureDefinition& definition,
                                         UaDataTypeDictionary* dictionary)
{
    *this = UaGenericUnionValue();
    UaByteString body;
    const OpcUa_StatusCode status = uabase::bodyOf(value, definition, body);
    return OpcUa_IsGood(status) ? decode(body, definition, dictionary) : UaStatusCode(status);
}

UaStatusCode UaGenericUnionValue::decode(const UaByteString& body, const UaStructureDefinition& definition,
                                         UaDataTypeDictionary* dictionary)
{
    *this = UaGenericUnionValue();
    if (definition.isNull())
        return OpcUa_BadDataTypeIdUnknown;
    if (!definition.isUnion())
        return OpcUa_BadNotSupported;
    uabase::StructureReader reader(body.bytes(), dictionary);
    OpcUa_UInt32 switchValue = 0;
    UaVariant value;
    OpcUa_StatusCode status = reader.readUnion(definition, switchValue, &value);
    if (OpcUa_IsGood(status) && !reader.atEnd())
        status = OpcUa_BadDecodingError;
    if (!OpcUa_IsGood(status))
        return status;
    m_definition = definition;
    m_switchValue = switchValue;
    m_value = value;
    return status;
}

UaStatusCode UaGenericUnionValue::encode(UaExtensionObject& value) const
{
    value.clear();
    if (isNull())
        return OpcUa_BadInvalidState;
    uabase::StructureWriter writer(nullptr);
    const OpcUa_StatusCode status = writer.writeUnion(m_definition, m_switchValue, m_value);
    if (OpcUa_IsGood(status))
        value = UaExtensionObject(UaExpandedNodeId(uabase::bodyTypeId(m_definition)), writer.bytes());
    return status;
}

UaStructureField UaGenericUnionValue::field() const noexcept
{
    return m_switchValue == 0 ? UaStructureField() : m_definition.field(static_cast<int>(m_switchValue) - 1);
}

UaStatusCode UaGenericUnionValue::setValue(OpcUa_UInt32 switchValue, const UaVariant& value)
{
    if (switchValue > static_cast<OpcUa_UInt32>(m_definition.fieldCount()))
        return OpcUa_BadOutOfRange;
    const bool fits = switchValue == 0
                          ? value.isNull()
                          : uabase::fitsField(m_definition.field(static_cast<int>(switchValue) - 1), value);
    if (!fits)
        return OpcUa_BadTypeMismatch;
    m_switchValue = switchValue;
    m_value = value;
    return OpcUa_Good;
}

UaStatusCode UaGenericUnionValue::setValue(const UaString& fieldName, const UaVariant& value)
{
    const int index = m_definition.fieldIndex(fieldName);
    return index < 0 ? UaStatusCode(OpcUa_BadOutOfRange)
                     : setValue(static_cast<OpcUa_UInt32>(index) + 1, value);
}
