#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace {
class ValueTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumServerDiagnosticWidget)
};

constexpr OpcUa_UInt32 mostElements = 1000; // of an array; a server may send any number
constexpr int mostBytes = 32;               // of a byte string
constexpr int deepest = 8;                  // of structures in structures

QLocale plainLocale()
{
    QLocale locale = QLocale::system();
    locale.setNumberOptions(QLocale::OmitGroupSeparator); // identifiers are among the numbers
    return locale;
}

QlumDiagnosticText fault(const QString& text)
{
    return {{}, text, true, {}, {}};
}

QlumDiagnosticText notShown()
{
    return fault(ValueTexts::tr("Cannot be displayed"));
}

QlumDiagnosticText missing()
{
    return {{}, ValueTexts::tr("N/A"), false, {}, {}};
}

QString bytesText(const UaByteString& bytes)
{
    const QString hex = toQString(bytes.toHex()).left(mostBytes * 2);
    const QString more = bytes.length() > mostBytes ? QStringLiteral("...") : QString();
    return ValueTexts::tr("%n bytes: %1%2", nullptr, bytes.length()).arg(hex, more);
}

QString timeText(const UaDateTime& time)
{
    return qlumShowDateTime(time);
}

QString numberName(OpcUa_Int64 number, const QStringList* names, const UaEnumDefinition& definition)
{
    if (names && number >= 0 && number < names->size() && !names->at(static_cast<int>(number)).isEmpty())
        return names->at(static_cast<int>(number));
    const QString name = definition.isNull() ? QString() : toQString(definition.valueName(number));
    return name.isEmpty() ? QString::number(number) : name;
}

QlumDiagnosticText shown(const UaVariant& value, const UaEnumDefinition& enumeration, int depth);

// A counter within another structure comes as its bytes.
std::optional<OpcUa_ServiceCounterDataType> countsOf(const UaExtensionObject& object)
{
    if (const void* counter = object.decoded(OpcUa_ServiceCounterDataType_EncodeableType))
        return *static_cast<const OpcUa_ServiceCounterDataType*>(counter);
    const UaStructureDefinition definition = qlumStructureDefinition(object, {}, nullptr);
    UaGenericStructureValue fields;
    if (definition.isNull() || definition.name() != UaString("ServiceCounterDataType") ||
        fields.decode(object, definition).isBad())
        return std::nullopt;
    OpcUa_ServiceCounterDataType counts;
    counts.TotalCount = fields.value(UaString("TotalCount")).toUInt32();
    counts.ErrorCount = fields.value(UaString("ErrorCount")).toUInt32();
    return counts;
}

QlumDiagnosticText structureText(const UaExtensionObject& object, int depth)
{
    if (const auto counts = countsOf(object))
        return {{},
                ValueTexts::tr("Total %1 / Error %2").arg(counts->TotalCount).arg(counts->ErrorCount),
                false,
                {},
                {}};
    if (object.isNull())
        return missing();
    const UaStructureDefinition definition = qlumStructureDefinition(object, {}, nullptr);
    UaGenericStructureValue fields;
    if (depth > deepest || definition.isNull() || fields.decode(object, definition).isBad())
        return notShown();
    QlumDiagnosticText text;
    for (int i = 0; i < fields.fieldCount(); ++i) {
        const UaStructureField field = definition.field(i);
        QlumDiagnosticText part =
            shown(fields.value(i), qlumEnumDefinition(field.dataTypeId(), nullptr), depth + 1);
        part.label = qlumSingleLine(toQString(field.name()));
        if (part.parts.empty() && !part.isFault && text.text.size() < 100 && fields.isFieldSet(i) &&
            part.bytes.isNull() && !part.text.isEmpty() && part.text != missing().text)
            text.text += text.text.isEmpty() ? part.text : QStringLiteral(", ") + part.text;
        text.parts.push_back(std::move(part));
    }
    return text;
}

QString elementLabel(const UaVariant& element, OpcUa_UInt32 index)
{
    const QString name =
        element.type() == OpcUaType_ExtensionObject
            ? toQString(qlumStructureDefinition(element.toExtensionObject(), {}, nullptr).name())
            : QString();
    return QStringLiteral("%1[%2]").arg(name).arg(index);
}

QlumDiagnosticText arrayText(const UaVariant& value, const UaEnumDefinition& enumeration, int depth)
{
    if (value.elementCount() == 0)
        return missing();
    QlumDiagnosticText text;
    const OpcUa_UInt32 count = std::min(value.elementCount(), mostElements);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        const UaVariant element = value.at(i);
        QlumDiagnosticText part = shown(element, enumeration, depth + 1);
        part.label = elementLabel(element, i);
        text.parts.push_back(std::move(part));
    }
    text.text = value.elementCount() == 1 ? ValueTexts::tr("1 element")
                                          : ValueTexts::tr("%1 elements").arg(value.elementCount());
    return text;
}

// The text of a value that has no parts.
QString scalarText(const UaVariant& value)
{
    switch (value.type()) {
    case OpcUaType_DateTime:
        return timeText(value.toDateTime());
    case OpcUaType_Double:
    case OpcUaType_Float:
        return plainLocale().toString(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    case OpcUaType_Boolean:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case OpcUaType_ByteString:
        return bytesText(value.toByteString());
    case OpcUaType_LocalizedText:
        return toQString(value.toLocalizedText().text());
    case OpcUaType_StatusCode:
        return qlumStatusText(value.toStatusCode().code());
    default:
        return toQString(value.toString());
    }
}

QlumDiagnosticText shown(const UaVariant& value, const UaEnumDefinition& enumeration, int depth)
{
    if (value.isArray() || value.isMatrix())
        return arrayText(value, enumeration, depth);
    const bool isNoTime = value.type() == OpcUaType_DateTime && !qlumDateTime(value.toDateTime()).isValid();
    const bool isNumber = value.type() >= OpcUaType_Boolean && value.type() <= OpcUaType_Double;
    if (value.isNull() || isNoTime || (!isNumber && value.isEmpty()))
        return missing();
    if (value.type() == OpcUaType_ExtensionObject)
        return structureText(value.toExtensionObject(), depth);
    if (value.type() == OpcUaType_DataValue || value.type() == OpcUaType_DiagnosticInfo)
        return notShown();
    if (!enumeration.isNull() && value.type() == OpcUaType_Int32)
        return {{}, numberName(value.toInt32(), nullptr, enumeration), false, {}, {}};
    QlumDiagnosticText text{{}, qlumCutText(qlumSingleLine(scalarText(value)), 4096), false, {}, {}};
    if (value.type() == OpcUaType_ByteString)
        text.bytes = value.toByteString();
    return text;
}

UaEnumDefinition enumerationOf(const QlumDiagnosticContext& context)
{
    switch (context.kind) {
    case QlumDiagnosticKind::ServerState:
        return uaNamespaceZeroEnum(uaNamespaceZeroDataType("ServerState"));
    case QlumDiagnosticKind::RedundancySupport:
        return uaNamespaceZeroEnum(uaNamespaceZeroDataType("RedundancySupport"));
    default:
        return context.label == QLatin1String("SecurityMode")
                   ? uaNamespaceZeroEnum(uaNamespaceZeroDataType("MessageSecurityMode"))
                   : UaEnumDefinition();
    }
}

// Whether the value is what the row is about, which cannot be said of all of them.
bool fits(const UaVariant& value, const QlumDiagnosticContext& context)
{
    const bool isNumber =
        value.isScalar() && value.type() > OpcUaType_Boolean && value.type() <= OpcUaType_Double;
    switch (context.kind) {
    case QlumDiagnosticKind::Counter:
        return value.isNull() || isNumber ||
               (value.isScalar() && value.type() == OpcUaType_ExtensionObject &&
                countsOf(value.toExtensionObject()));
    case QlumDiagnosticKind::ServerState:
    case QlumDiagnosticKind::RedundancySupport:
    case QlumDiagnosticKind::Limit:
        return value.isNull() || isNumber;
    default:
        return true;
    }
}
} // namespace

QlumDiagnosticText qlumDiagnosticText(const UaDataValue& value, const QlumDiagnosticContext& context)
{
    const UaStatus status(value.statusCode());
    if (status.statusCode() == OpcUa_BadNodeIdUnknown)
        return fault(ValueTexts::tr("Node does not exist"));
    if (status.isBad())
        return fault(ValueTexts::tr("Node could not be read (%1)").arg(qlumResultText(status)));
    if (!fits(value.value(), context))
        return notShown();
    const UaEnumDefinition enumeration = enumerationOf(context);
    const bool isNamed = context.names || !enumeration.isNull();
    if (isNamed && value.value().isScalar() && !value.value().isNull())
        return {{}, numberName(value.value().toInt64(), context.names, enumeration), false, {}, {}};
    return shown(value.value(), enumeration, 0);
}

QlumDiagnosticText qlumStructureText(const OpcUa_EncodeableType& type, const void* structure)
{
    UaExtensionObject object;
    return OpcUa_IsGood(object.setDecoded(type, structure)) ? structureText(object, 0) : notShown();
}

std::optional<OpcUa_UInt32> qlumCounterOf(const UaDataValue& value)
{
    if (value.statusCode().isBad() || !value.value().isScalar() || value.value().isNull())
        return std::nullopt;
    if (value.value().type() == OpcUaType_ExtensionObject) {
        const auto counts = countsOf(value.value().toExtensionObject());
        return counts ? std::optional(counts->TotalCount) : std::nullopt;
    }
    bool isNumber = false;
    const OpcUa_UInt32 number = value.value().toUInt32(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::vector<UaDataValue> qlumFieldValues(const UaExtensionObject& structure,
                                         std::span<const QlumDetailRow> rows)
{
    std::vector<UaDataValue> values(rows.size(), UaDataValue(UaVariant(), OpcUa_BadNodeIdUnknown));
    const UaStructureDefinition definition = qlumStructureDefinition(structure, {}, nullptr);
    UaGenericStructureValue fields;
    if (definition.isNull() || fields.decode(structure, definition).isBad())
        return values;
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (const char* name : {rows[i].label, rows[i].otherName})
            if (name && definition.fieldIndex(UaString(name)) >= 0)
                values[i] = UaDataValue(fields.value(UaString(name)));
    return values;
}

void qlumFillAbsent(std::vector<UaDataValue>& values, const UaExtensionObject& structure,
                    std::span<const QlumDetailRow> rows)
{
    if (structure.isNull())
        return;
    const std::vector<UaDataValue> fields = qlumFieldValues(structure, rows);
    for (std::size_t i = 0; i < values.size() && i < fields.size(); ++i)
        if (const OpcUa_StatusCode status = values[i].statusCode().code();
            status == OpcUa_BadNodeIdUnknown || status == OpcUa_BadServiceUnsupported)
            values[i] = fields[i];
}

QString qlumDiagnosticName(const QString& name)
{
    return qlumCutText(qlumSingleLine(name));
}

QString qlumDiagnosticPolicy(const QString& uri)
{
    return uri.mid(uri.lastIndexOf(QLatin1Char('#')) + 1);
}

QString qlumDiagnosticMode(OpcUa_MessageSecurityMode mode)
{
    return numberName(mode, nullptr, uaNamespaceZeroEnum(uaNamespaceZeroDataType("MessageSecurityMode")));
}

QString qlumRateText(double rate)
{
    if (rate < 0)
        return {};
    constexpr double few = 10;
    return plainLocale().toString(rate, 'f', rate < few ? 2 : 1);
}

double qlumRate(OpcUa_UInt32 before, OpcUa_UInt32 now, double seconds)
{
    return now >= before && seconds > 0 ? (now - before) / seconds : -1;
}
