#include <uawidgets/editors/qlumvaluepath.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>

#include <vector>

namespace {

template <typename Value>
UaStatusCode decode(const QlumTypedValue& whole, Value& decoded, UaDataTypeDictionary* dictionary)
{
    const UaExtensionObject object = whole.value.toExtensionObject();
    const UaStructureDefinition definition = qlumStructureDefinition(object, whole.hint, dictionary);
    if (definition.isNull())
        return OpcUa_BadDataTypeIdUnknown;
    UaByteString body;
    const UaStatusCode status = object.binaryBody(body);
    return status.isBad() ? status : decoded.decode(body, definition, dictionary);
}

QlumTypedValue elementOf(const QlumTypedValue& whole, int index)
{
    return {whole.value.at(static_cast<OpcUa_UInt32>(index)), whole.hint};
}

QlumTypedValue fieldOf(const QlumTypedValue& whole, int index, UaDataTypeDictionary* dictionary)
{
    UaGenericStructureValue fields;
    if (decode(whole, fields, dictionary).isBad())
        return {};
    return {fields.value(index), qlumFieldHint(fields.definition().field(index), dictionary)};
}

QlumTypedValue selectedOf(const QlumTypedValue& whole, UaDataTypeDictionary* dictionary)
{
    UaGenericUnionValue selected;
    if (decode(whole, selected, dictionary).isBad())
        return {};
    return {selected.value(), qlumFieldHint(selected.field(), dictionary)};
}

QlumTypedValue stepInto(const QlumTypedValue& whole, QlumValueStep step, UaDataTypeDictionary* dictionary)
{
    switch (step.kind) {
    case QlumValueStep::Element:
        return elementOf(whole, step.index);
    case QlumValueStep::Field:
        return fieldOf(whole, step.index, dictionary);
    case QlumValueStep::Selected:
        return selectedOf(whole, dictionary);
    case QlumValueStep::None:
        return whole;
    case QlumValueStep::Detail:
        break;
    }
    return {};
}

// The id of the encoding stays what the server used.
template <typename Value>
UaStatusCode encode(QlumTypedValue& whole, const Value& decoded)
{
    UaExtensionObject object;
    const UaStatusCode status = decoded.encode(object);
    if (status.isBad())
        return status;
    UaByteString body;
    const UaStatusCode bodyStatus = object.binaryBody(body);
    if (bodyStatus.isBad())
        return bodyStatus;
    whole.value.setExtensionObject(UaExtensionObject(whole.value.toExtensionObject().typeId(), body));
    return {};
}

UaStatusCode putBack(QlumTypedValue& whole, QlumValueStep step, const UaVariant& part,
                     UaDataTypeDictionary* dictionary)
{
    switch (step.kind) {
    case QlumValueStep::Element:
        return whole.value.setAt(static_cast<OpcUa_UInt32>(step.index), part);
    case QlumValueStep::Field: {
        UaGenericStructureValue fields;
        UaStatusCode status = decode(whole, fields, dictionary);
        if (status.isNotBad())
            status = fields.setField(step.index, part);
        return status.isBad() ? status : encode(whole, fields);
    }
    case QlumValueStep::Selected: {
        UaGenericUnionValue selected;
        UaStatusCode status = decode(whole, selected, dictionary);
        if (status.isNotBad())
            status = selected.setValue(selected.switchValue(), part);
        return status.isBad() ? status : encode(whole, selected);
    }
    case QlumValueStep::None:
        whole.value = part;
        return {};
    case QlumValueStep::Detail:
        break;
    }
    return OpcUa_BadNotWritable;
}
} // namespace

QlumTypedValue qlumPartOf(const QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                          UaDataTypeDictionary* dictionary)
{
    QlumTypedValue part = whole;
    for (const QlumValueStep step : steps)
        part = stepInto(part, step, dictionary);
    return part;
}

UaStatusCode qlumReplacePart(QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                             const UaVariant& part, UaDataTypeDictionary* dictionary)
{
    // From the innermost value outwards; each is put back into the one that holds it.
    std::vector<QlumTypedValue> levels{whole};
    for (const QlumValueStep step : steps)
        levels.push_back(stepInto(levels.back(), step, dictionary));
    levels.back().value = part;
    for (std::size_t level = steps.size(); level > 0; --level) {
        const UaStatusCode status =
            putBack(levels[level - 1], steps[level - 1], levels[level].value, dictionary);
        if (status.isBad())
            return status;
    }
    whole = levels.front();
    return {};
}
