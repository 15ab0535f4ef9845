#include <uawidgets/editors/qlumdatafield.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QString>
#include <QStringList>

#include <algorithm>

namespace {

UaStructureDefinition definitionOf(const UaVariant& value, const QlumValueContext& context)
{
    QlumTypeHint hint;
    hint.dataTypeId = context.dataType;
    return qlumStructureDefinition(value.toExtensionObject(), hint, context.dictionary.get());
}

template <typename Decoded>
bool decode(const UaVariant& value, const UaStructureDefinition& definition, const QlumValueContext& context,
            Decoded& decoded)
{
    UaByteString body;
    return OpcUa_IsNotBad(value.toExtensionObject().binaryBody(body)) &&
           decoded.decode(body, definition, context.dictionary.get()).isNotBad();
}

int fieldNamed(const UaStructureDefinition& definition, const QString& name)
{
    for (int i = 0; i < definition.fieldCount(); ++i)
        if (toQString(definition.field(i).name()) == name)
            return i;
    return -1;
}

UaVariant stepIntoField(const UaVariant& whole, const QString& name, QlumValueContext& context)
{
    if (whole.type() != OpcUaType_ExtensionObject || !whole.isScalar())
        return {};
    const UaStructureDefinition definition = definitionOf(whole, context);
    const int index = definition.isNull() ? -1 : fieldNamed(definition, name);
    if (index < 0)
        return {};
    UaVariant part;
    UaGenericStructureValue fields;
    UaGenericUnionValue selected;
    if (decode(whole, definition, context, fields))
        part = fields.value(index);
    else if (decode(whole, definition, context, selected) && toQString(selected.field().name()) == name)
        part = selected.value();
    context = qlumFieldContext(context, definition.field(index));
    return part;
}

UaVariant stepIntoElement(const UaVariant& whole, const QString& index, QlumValueContext& context)
{
    bool isNumber = false;
    const uint place = index.toUInt(&isNumber);
    context = qlumElementContext(context);
    return isNumber && place < whole.elementCount() ? whole.at(place) : UaVariant();
}

} // namespace

UaVariant qlumFieldOf(const UaVariant& whole, const QString& path, QlumValueContext& context)
{
    UaVariant part = whole;
    for (int at = 0; at < path.size() && !part.isNull();) {
        if (path.at(at) == QLatin1Char('[')) {
            const int end = path.indexOf(QLatin1Char(']'), at);
            part = stepIntoElement(part, path.mid(at + 1, end - at - 1), context);
            at = end < 0 ? path.size() : end + 1;
            continue;
        }
        const int start = path.at(at) == QLatin1Char('.') ? at + 1 : at;
        int end = start;
        while (end < path.size() && path.at(end) != QLatin1Char('.') && path.at(end) != QLatin1Char('['))
            ++end;
        part = stepIntoField(part, path.mid(start, end - start), context);
        at = end;
    }
    return part;
}

QStringList qlumFieldsOf(const UaVariant& whole, const QlumValueContext& context, int maximum)
{
    QStringList paths;
    if (!whole.isScalar()) {
        const int count = std::min(maximum, static_cast<int>(whole.elementCount()));
        for (int i = 0; i < count; ++i)
            paths.append(QStringLiteral("[%1]").arg(i));
    } else if (whole.type() == OpcUaType_ExtensionObject) {
        const UaStructureDefinition definition = definitionOf(whole, context);
        const int count = definition.isNull() ? 0 : std::min(maximum, definition.fieldCount());
        for (int i = 0; i < count; ++i)
            paths.append(toQString(definition.field(i).name()));
    }
    return paths;
}
