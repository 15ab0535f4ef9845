// The value of a union: one of its fields or none; OPC 10000-6, 5.2.8.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

/// Copies share the value; one object belongs to one thread.
class UaGenericUnionValue
{
public:
    UaGenericUnionValue() noexcept = default;
    explicit UaGenericUnionValue(const UaStructureDefinition& definition) : m_definition(definition) {}

    /// As UaGenericStructureValue::decode; a switch value above the number of fields is a BadDecodingError.
    UaStatusCode decode(const UaExtensionObject& value, const UaStructureDefinition& definition,
                        UaDataTypeDictionary* dictionary = nullptr);
    UaStatusCode decode(const UaByteString& body, const UaStructureDefinition& definition,
                        UaDataTypeDictionary* dictionary = nullptr);
    UaStatusCode encode(UaExtensionObject& value) const;

    bool isNull() const noexcept { return m_definition.isNull(); }
    const UaStructureDefinition& definition() const noexcept { return m_definition; }
    /// 0: no field; n: the n-th field.
    OpcUa_UInt32 switchValue() const noexcept { return m_switchValue; }
    UaStructureField field() const noexcept; ///< the selected one; null when there is none
    const UaVariant& value() const noexcept { return m_value; }
    /// Selects a field. BadOutOfRange, BadTypeMismatch; switch value 0 takes no value.
    UaStatusCode setValue(OpcUa_UInt32 switchValue, const UaVariant& value);
    UaStatusCode setValue(const UaString& fieldName, const UaVariant& value);

private:
    UaStructureDefinition m_definition;
    OpcUa_UInt32 m_switchValue = 0;
    UaVariant m_value;
};
