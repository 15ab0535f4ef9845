#include <uawidgets/editors/qlumcelltext.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumshowntext.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <span>
#include <string_view>

namespace {
constexpr int cellLength = 160;
constexpr int innerValues = 8;       // of a structure or array that are named
constexpr int innerDepth = 3;        // of those within them
constexpr int innerBodyBytes = 4096; // a longer body is not taken apart for a cell

QString cellTr(const char* text)
{
    return QCoreApplication::translate("QlumCellText", text);
}

QString textOf(const UaVariant& value, const QlumValueContext& context, int depth);

QString listed(QStringList inner, bool hasMore)
{
    if (hasMore)
        inner.append(QStringLiteral("..."));
    return QLatin1Char('{') + inner.join(QLatin1String("; ")) + QLatin1Char('}');
}

QString fieldText(const UaStructureField& field, const UaVariant& value, const QlumValueContext& context,
                  int depth)
{
    return QStringLiteral("%1: %2").arg(toQString(field.name()),
                                        textOf(value, qlumFieldContext(context, field), depth + 1));
}

QString fieldsText(const UaByteString& body, const UaStructureDefinition& definition,
                   const QlumValueContext& context, int depth)
{
    UaGenericStructureValue fields;
    if (fields.decode(body, definition, context.dictionary.get()).isBad())
        return QString();
    QStringList inner;
    int seen = 0;
    for (; seen < fields.fieldCount() && inner.size() < innerValues; ++seen)
        if (fields.isFieldSet(seen))
            inner.append(fieldText(definition.fieldAt(seen), fields.value(seen), context, depth));
    return listed(inner, seen < fields.fieldCount());
}

QString memberText(const UaByteString& body, const UaStructureDefinition& definition,
                   const QlumValueContext& context, int depth)
{
    UaGenericUnionValue selected;
    if (selected.decode(body, definition, context.dictionary.get()).isBad())
        return QString();
    const UaStructureField field = selected.field();
    return field.isNull() ? QStringLiteral("{}")
                          : listed({fieldText(field, selected.value(), context, depth)}, false);
}

QString structureText(const UaExtensionObject& object, const QlumValueContext& context, int depth)
{
    if (object.isNull())
        return cellTr(QT_TRANSLATE_NOOP("QlumCellText", "Null"));
    const UaStructureDefinition definition =
        qlumStructureDefinition(object, {context.dataType, {}}, context.dictionary.get());
    UaByteString body;
    const bool hasBody = OpcUa_IsGood(object.binaryBody(body));
    if (definition.isNull())
        return cellTr(QT_TRANSLATE_NOOP("QlumCellText", "%1 bytes of type %2"))
            .arg(QString::number(std::max(body.length(), 0)), toQString(object.typeId().toString()));
    const QString name = toQString(definition.name());
    if (!hasBody || depth >= innerDepth || body.length() > innerBodyBytes)
        return name;
    const QString inner = definition.isUnion() ? memberText(body, definition, context, depth)
                                               : fieldsText(body, definition, context, depth);
    return inner.isEmpty() ? name : QStringLiteral("%1 %2").arg(name, inner);
}

QString elementsText(const UaVariant& array, const QlumValueContext& context, int depth)
{
    const QString name = qlumTypeTextOf(array, context);
    const int count = static_cast<int>(array.elementCount());
    if (count == 0 || depth >= innerDepth)
        return name;
    const QlumValueContext element = qlumElementContext(context);
    QStringList inner;
    for (int i = 0; i < std::min(count, innerValues); ++i)
        inner.append(textOf(array.at(static_cast<OpcUa_UInt32>(i)), element, depth + 1));
    return QStringLiteral("%1 %2").arg(name, listed(inner, count > innerValues));
}

QString textOf(const UaVariant& value, const QlumValueContext& context, int depth)
{
    if (value.isNull())
        return cellTr(QT_TRANSLATE_NOOP("QlumCellText", "Null"));
    if (!value.isScalar())
        return elementsText(value, context, depth);
    if (value.type() == OpcUaType_ExtensionObject)
        return structureText(value.toExtensionObject(), context, depth);
    OpcUa_Int32 length = 0;
    if (const UaVariant beginning = qlumBeginningOf(value, length); !beginning.isNull())
        return cellTr(QT_TRANSLATE_NOOP("QlumCellText", "%1 (%2 bytes)"))
            .arg(textOf(beginning, context, depth), QString::number(length));
    const UaEnumDefinition names = qlumValueNames(value.type(), context);
    const QString text = names.valueCount() > 0 && qlumIsInteger(value.type())
                             ? qlumEnumerationText(value.toInt64(), names)
                             : qlumShownText(value, {context.dataType, {}}, context.dictionary.get());
    return qlumCutText(text, cellLength);
}

// By name, where the type has names.
bool readNames(const QString& text, OpcUa_BuiltInType type, const QlumValueContext& context, UaVariant& value)
{
    OpcUa_Int64 number = 0;
    const UaEnumDefinition names = qlumValueNames(type, context);
    if (names.valueCount() > 0 && qlumIsInteger(type) && qlumFromEnumerationText(text, names, number))
        return qlumFromEditText(QString::number(number), type, value);
    OpcUa_UInt64 bits = 0;
    const UaOptionSetDefinition options = qlumOptionSetDefinition(context.dataType, context.dictionary.get());
    return qlumIsUnsigned(type) && !options.isNull() && qlumFromOptionSetText(text, options, bits) &&
           qlumFromEditText(QString::number(bits), type, value);
}
} // namespace

UaVariant qlumBeginningOf(OpcUa_BuiltInType type, const void* element, OpcUa_Int32& length)
{
    const auto shown = static_cast<std::size_t>(qlumCellBytes);
    UaVariant beginning;
    length = 0;
    if (type == OpcUaType_String) {
        const auto& text = *static_cast<const OpcUa_String*>(element);
        length = text.Length;
        if (length > qlumCellBytes)
            beginning.setString(UaString(std::string_view(reinterpret_cast<const char*>(text.Data), shown)));
    } else if (type == OpcUaType_ByteString || type == OpcUaType_XmlElement) {
        const auto& bytes = *static_cast<const OpcUa_ByteString*>(element);
        length = bytes.Length;
        if (length <= qlumCellBytes)
            return beginning;
        const UaByteString cut(std::span<const OpcUa_Byte>(bytes.Data, shown));
        if (type == OpcUaType_ByteString)
            beginning.setByteString(cut);
        else
            beginning.setXmlElement(cut);
    }
    return beginning;
}

UaVariant qlumBeginningOf(const UaVariant& value, OpcUa_Int32& length)
{
    length = 0;
    const OpcUa_Variant& raw = *value.get();
    if (!value.isScalar())
        return {};
    if (value.type() == OpcUaType_String)
        return qlumBeginningOf(value.type(), &raw.Value.String, length);
    if (value.type() == OpcUaType_ByteString || value.type() == OpcUaType_XmlElement)
        return qlumBeginningOf(value.type(), &raw.Value.ByteString, length);
    return {};
}

bool qlumFitsCellEditor(OpcUa_BuiltInType type, OpcUa_Int32 length)
{
    constexpr OpcUa_Int32 mostBytes = 16 * 1024; // more is felt with each key in a line edit
    return qlumIsTextEditable(type) && length <= mostBytes;
}

QString qlumCellText(const UaVariant& value, const QlumValueContext& context)
{
    return qlumCutText(qlumSingleLine(textOf(value, context, 0)), cellLength);
}

QString qlumCopyText(const UaVariant& value, const QlumValueContext& context)
{
    if (value.isNull())
        return QString();
    if (value.isScalar() && qlumIsTextEditable(value.type())) {
        const UaEnumDefinition names = qlumValueNames(value.type(), context);
        return names.valueCount() == 0 || !qlumIsInteger(value.type())
                   ? qlumEditText(value)
                   : qlumEnumerationText(value.toInt64(), names);
    }
    UaString json;
    if (UaValueText::toJson(value, context.dictionary.get(), json).isBad())
        return QString();
    return toQString(json);
}

bool qlumReadCell(const QString& text, OpcUa_BuiltInType type, const QlumValueContext& context,
                  UaVariant& value)
{
    if (readNames(text, type, context, value))
        return true;
    if (qlumIsTextEditable(type))
        return qlumFromEditText(text, type, value);
    UaVariant read;
    const UaString utf8 = toUaString(text);
    if (UaValueText::fromJson(utf8.view(), context.dictionary.get(), read).isBad())
        return false;
    if (type != OpcUaType_Variant && (read.type() != type || !read.isScalar()))
        return false;
    value = read;
    return true;
}
