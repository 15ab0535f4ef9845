#include <uabase/structures/uagenericstructurevalue.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <utility>

class UaGenericStructureValuePrivate
{
public:
    UaStructureDefinition definition; // its fields carry the nested definitions
    uabase::FieldValues fields;
};

namespace {

// The definition with the nested ones filled in while a dictionary is at hand.
UaStructureDefinition completed(const UaStructureDefinition& definition, UaDataTypeDictionary* dictionary)
{
    UaStructureDefinition complete = definition;
    if (!definition.plainTypes().empty())
        return complete;
    for (int i = 0; i < definition.fieldCount(); ++i) {
        UaStructureField field = definition.field(i);
        if (!field.isNestedStructure() || !field.structureDefinition().isNull())
            continue;
        field.setStructureDefinition(uabase::findDefinition(field, dictionary));
        complete.setField(i, field);
    }
    return complete;
}

} // namespace

UaVariant uaNullFieldValue(const UaStructureField& field, UaDataTypeDictionary* dictionary)
{
    if (field.valueRank() >= 0)
        return uabase::nullArray(field.builtInType());
    if (!field.isNestedStructure())
        return uabase::nullScalar(field.builtInType());
    const UaStructureDefinition nested = uabase::findDefinition(field, dictionary);
    uabase::StructureWriter writer(dictionary);
    if (!nested.isNull() && OpcUa_IsGood(writer.writeDefaults(nested)))
        return UaVariant(UaExtensionObject(UaExpandedNodeId(uabase::bodyTypeId(nested)), writer.bytes()));
    return uabase::nullScalar(field.builtInType());
}

UaGenericStructureValue::UaGenericStructureValue() noexcept = default;
UaGenericStructureValue::UaGenericStructureValue(const UaGenericStructureValue&) noexcept = default;
UaGenericStructureValue&
UaGenericStructureValue::operator=(const UaGenericStructureValue&) noexcept = default;
UaGenericStructureValue::~UaGenericStructureValue() = default;

UaGenericStructureValue::UaGenericStructureValue(const UaStructureDefinition& definition,
                                                 UaDataTypeDictionary* dictionary)
{
    if (definition.isNull() || definition.isUnion())
        return;
    UaGenericStructureValuePrivate& content = d.edit();
    content.definition = completed(definition, dictionary);
    for (int i = 0; i < definition.fieldCount(); ++i) {
        const UaStructureField field = content.definition.field(i);
        content.fields.values.push_back(field.isOptional() ? UaVariant()
                                                           : uaNullFieldValue(field, dictionary));
        content.fields.present.push_back(!field.isOptional());
    }
}

UaStatusCode UaGenericStructureValue::decode(const UaExtensionObject& value,
                                             const UaStructureDefinition& definition,
                                             UaDataTypeDictionary* dictionary)
{
    d.reset();
    UaByteString body;
    const OpcUa_StatusCode status = uabase::bodyOf(value, definition, body);
    return OpcUa_IsGood(status) ? decode(body, definition, dictionary) : UaStatusCode(status);
}

UaStatusCode UaGenericStructureValue::decode(const UaByteString& body,
                                             const UaStructureDefinition& definition,
                                             UaDataTypeDictionary* dictionary)
{
    d.reset();
    if (definition.isNull())
        return OpcUa_BadDataTypeIdUnknown;
    if (definition.isUnion())
        return OpcUa_BadNotSupported;
    uabase::StructureReader reader(body.bytes(), dictionary);
    uabase::FieldValues fields;
    OpcUa_StatusCode status = reader.readStructure(definition, &fields);
    if (OpcUa_IsGood(status) && !reader.atEnd())
        status = OpcUa_BadDecodingError;
    if (!OpcUa_IsGood(status))
        return status;
    UaGenericStructureValuePrivate& content = d.edit();
    content.definition = completed(definition, dictionary);
    content.fields = std::move(fields);
    return status;
}

UaStatusCode UaGenericStructureValue::encode(UaExtensionObject& value) const
{
    value.clear();
    if (!d)
        return OpcUa_BadInvalidState;
    uabase::StructureWriter writer(nullptr);
    const OpcUa_StatusCode status = writer.writeStructure(d->definition, d->fields);
    if (OpcUa_IsGood(status))
        value = UaExtensionObject(UaExpandedNodeId(uabase::bodyTypeId(d->definition)), writer.bytes());
    return status;
}

UaStructureDefinition UaGenericStructureValue::definition() const noexcept
{
    return d ? d->definition : UaStructureDefinition();
}

int UaGenericStructureValue::fieldCount() const noexcept
{
    return d ? d->definition.fieldCount() : 0;
}

UaVariant UaGenericStructureValue::value(int index) const noexcept
{
    return isFieldSet(index) ? d->fields.values[static_cast<std::size_t>(index)] : UaVariant();
}

UaVariant UaGenericStructureValue::value(const UaString& fieldName) const noexcept
{
    return value(definition().fieldIndex(fieldName));
}

bool UaGenericStructureValue::isFieldSet(int index) const noexcept
{
    return index >= 0 && index < fieldCount() && d->fields.has(static_cast<std::size_t>(index));
}

UaGenericStructureValue UaGenericStructureValue::structure(int index, int arrayIndex,
                                                           UaDataTypeDictionary* dictionary) const
{
    const UaVariant found = value(index);
    const UaVariant element = arrayIndex < 0 ? found : found.at(static_cast<OpcUa_UInt32>(arrayIndex));
    UaGenericStructureValue nested;
    if (element.type() != OpcUaType_ExtensionObject || !element.isScalar())
        return nested;
    const UaExtensionObject object = element.toExtensionObject();
    UaStructureDefinition nestedDefinition = uabase::findDefinition(definition().field(index), dictionary);
    if (dictionary && !uabase::isOfType(object, nestedDefinition)) // a derived type
        nestedDefinition = dictionary->structureDefinition(object.encodingId());
    // a union and a faulty body stay null
    if (nested.decode(object, nestedDefinition, dictionary).isBad())
        return {};
    return nested;
}

UaStatusCode UaGenericStructureValue::setField(int index, const UaVariant& value)
{
    if (index < 0 || index >= fieldCount())
        return OpcUa_BadOutOfRange;
    if (!uabase::fitsField(d->definition.field(index), value))
        return OpcUa_BadTypeMismatch;
    UaGenericStructureValuePrivate& content = d.edit();
    content.fields.values[static_cast<std::size_t>(index)] = value;
    content.fields.setPresent(static_cast<std::size_t>(index), true);
    return OpcUa_Good;
}

UaStatusCode UaGenericStructureValue::setField(const UaString& fieldName, const UaVariant& value)
{
    return setField(definition().fieldIndex(fieldName), value);
}

UaStatusCode UaGenericStructureValue::setField(int index, const UaGenericStructureValue& value)
{
    UaExtensionObject body;
    const UaStatusCode status = value.encode(body);
    if (status.isBad())
        return status;
    const UaStructureField field = definition().field(index);
    const UaStructureDefinition nested = field.structureDefinition();
    if (field.isNestedStructure() && !nested.isNull() && !uabase::isOfType(body, nested))
        return OpcUa_BadTypeMismatch;
    return setField(index, UaVariant(body));
}

UaStatusCode UaGenericStructureValue::unsetField(int index)
{
    if (index < 0 || index >= fieldCount())
        return OpcUa_BadOutOfRange;
    if (!d->definition.field(index).isOptional())
        return OpcUa_BadNotSupported;
    UaGenericStructureValuePrivate& content = d.edit();
    content.fields.values[static_cast<std::size_t>(index)] = UaVariant();
    content.fields.setPresent(static_cast<std::size_t>(index), false);
    return OpcUa_Good;
}
