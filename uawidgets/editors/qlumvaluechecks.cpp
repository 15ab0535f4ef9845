#include <uawidgets/editors/qlumvaluechecks.h>

#include <app/api/qlumtext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>
#include <QLocale>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <optional>
#include <ranges>
#include <vector>

namespace {
class CheckTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumValueChecks)
};

void addLine(QString& text, const QString& line)
{
    if (line.isEmpty() || text.contains(line))
        return;
    text += text.isEmpty() ? line : QLatin1Char('\n') + line;
}

// What is asked for each element, looked up once.
struct Rules
{
    explicit Rules(const QlumValueContext& place)
        : context(place), types(qlumAllowedTypes(place)),
          enumeration(qlumEnumDefinition(place.dataType, place.dictionary.get())),
          optionSet(qlumOptionSetDefinition(place))
    {
    }

    const QlumValueContext& context;
    const std::vector<OpcUa_BuiltInType> types;
    const UaEnumDefinition enumeration;
    const UaOptionSetDefinition optionSet;
};

// ---- elements

QString checkType(OpcUa_BuiltInType type, const Rules& rules)
{
    if (type == OpcUaType_Null || std::ranges::find(rules.types, type) != rules.types.end())
        return {};
    if (type == OpcUaType_Variant && rules.types.size() > 1)
        return {}; // of an array whose elements differ
    return CheckTexts::tr("It is of type %1, the server expects %2.")
        .arg(qlumBuiltinTypeName(type), qlumDeclaredTypeName(rules.context));
}

std::optional<OpcUa_Int64> byteLength(const UaVariant& element)
{
    if (element.type() == OpcUaType_String)
        return element.get()->Value.String.Length;
    if (element.type() == OpcUaType_ByteString)
        return element.get()->Value.ByteString.Length;
    return std::nullopt;
}

QString checkEnumeration(const UaVariant& element, const Rules& rules)
{
    if (rules.enumeration.valueCount() == 0 || !qlumMayBeEnumeration(element.type()))
        return {};
    const OpcUa_Int64 number = element.toInt64();
    if (rules.enumeration.hasValue(number))
        return {};
    return CheckTexts::tr("%1 is no value of the enumeration %2.")
        .arg(QString::number(number), qlumDeclaredTypeName(rules.context));
}

// What a variable calls its numbers need not be all that it takes.
QString checkNames(const UaVariant& element, const QlumValueContext& context)
{
    if (context.valueNames.valueCount() == 0 || !qlumIsInteger(element.type()) ||
        context.valueNames.hasValue(element.toInt64()))
        return {};
    return CheckTexts::tr("The variable has no name for %1.").arg(qlumEditText(element));
}

QString checkBits(const UaVariant& element, const Rules& rules)
{
    if (rules.optionSet.bitCount() == 0 || !qlumIsUnsigned(element.type()))
        return {};
    const OpcUa_UInt64 number = element.toUInt64();
    for (int bit = 0; bit < 64; ++bit)
        if ((number >> bit & 1u) && rules.optionSet.bitName(bit).isNull())
            return CheckTexts::tr("Bit %1 has no meaning in %2.")
                .arg(bit)
                .arg(qlumDeclaredTypeName(rules.context));
    return {};
}

QString checkRange(double number, const QlumValueContext& context, const std::optional<QlumValueRange>& range,
                   const QString& name)
{
    if (!range || !(range->low < range->high)) // devices leave both ends 0
        return {};
    if (number >= range->low && number <= range->high)
        return {};
    const QString unit = context.unit.isEmpty() ? QString() : QLatin1Char(' ') + context.unit;
    return CheckTexts::tr("%1%2 lies outside %3, %4 to %5%2.")
        .arg(qlumDoubleText(number), unit, name, qlumDoubleText(range->low), qlumDoubleText(range->high));
}

QlumValueCheck checkElement(const UaVariant& element, const Rules& rules)
{
    QlumValueCheck check;
    const OpcUa_BuiltInType type = element.type();
    addLine(check.refused, checkType(type, rules));
    if (const std::optional<OpcUa_Int64> length = byteLength(element))
        addLine(check.refused, qlumCheckLength(*length, rules.context));
    addLine(check.refused, checkEnumeration(element, rules));
    addLine(check.unusual, checkBits(element, rules));
    addLine(check.unusual, checkNames(element, rules.context));
    if (qlumIsNumber(type) && (rules.context.euRange || rules.context.instrumentRange)) {
        const double number = element.toDouble();
        addLine(check.unusual,
                checkRange(number, rules.context, rules.context.euRange, CheckTexts::tr("EURange")));
        addLine(check.unusual, checkRange(number, rules.context, rules.context.instrumentRange,
                                          CheckTexts::tr("InstrumentRange")));
    }
    return check;
}

// Bytes of one array count as a value of the other type.
bool isByteArrayForByteString(const UaVariant& value, const QlumValueContext& context)
{
    return (value.type() == OpcUaType_ByteString && context.builtInType == OpcUaType_Byte) ||
           (value.type() == OpcUaType_Byte && value.isArray() && context.builtInType == OpcUaType_ByteString);
}

// Whether no element can be at fault, so that none need be looked at.
bool hasOnlyType(const UaVariant& value, const Rules& rules)
{
    const QlumValueContext& context = rules.context;
    const bool hasRange = context.euRange || context.instrumentRange;
    const bool hasNames = rules.enumeration.valueCount() > 0 || !rules.optionSet.isNull() ||
                          rules.context.valueNames.valueCount() > 0;
    return !(hasRange && qlumIsNumber(value.type())) && !context.maxStringLength && !hasNames;
}

QString placeOf(OpcUa_UInt32 index, const UaVariant& value)
{
    return qlumElementName(static_cast<int>(index), value.dimensions());
}

QlumValueCheck checkElements(const UaVariant& value, const Rules& rules)
{
    QlumValueCheck check;
    check.refused = checkType(value.type(), rules);
    if (hasOnlyType(value, rules))
        return check;
    const OpcUa_UInt32 count = value.elementCount();
    for (OpcUa_UInt32 i = 0; i < count && (check.refused.isEmpty() || check.unusual.isEmpty()); ++i) {
        const QlumValueCheck one = checkElement(value.at(i), rules);
        if (check.refused.isEmpty() && !one.refused.isEmpty())
            check.refused = placeOf(i, value) + QLatin1String(": ") + one.refused;
        if (check.unusual.isEmpty() && !one.unusual.isEmpty())
            check.unusual = placeOf(i, value) + QLatin1String(": ") + one.unusual;
    }
    return check;
}

// ---- shape

bool rankFits(OpcUa_Int32 rank, OpcUa_UInt32 dimensions)
{
    switch (rank) {
    case -3:
        return dimensions <= 1;
    case -2:
        return true;
    case -1:
        return dimensions == 0;
    case 0:
        return dimensions >= 1;
    default:
        return rank < -3 || dimensions == static_cast<OpcUa_UInt32>(rank);
    }
}

QString lengthsText(const std::vector<OpcUa_UInt32>& lengths)
{
    QStringList texts;
    for (const OpcUa_UInt32 length : lengths)
        texts.append(length == 0 ? CheckTexts::tr("any") : QString::number(length));
    return texts.join(QStringLiteral(" x "));
}

QString checkDimensions(const UaArray<OpcUa_Int32>& lengths, const QlumValueContext& context)
{
    const std::vector<OpcUa_UInt32>& most = context.arrayDimensions;
    if (most.size() != lengths.length())
        return {};
    for (OpcUa_UInt32 i = 0; i < lengths.length(); ++i)
        if (most[i] != 0 && lengths[i] > 0 && static_cast<OpcUa_UInt32>(lengths[i]) > most[i])
            return most.size() == 1
                       ? CheckTexts::tr("It has %1 elements, the server takes %2 at most.")
                             .arg(lengths[i])
                             .arg(most[i])
                       : CheckTexts::tr("Dimension %1 has %2 elements, the server takes %3 at most.")
                             .arg(i + 1)
                             .arg(lengths[i])
                             .arg(most[i]);
    return {};
}
} // namespace

QString QlumValueCheck::text() const
{
    QString both = refused;
    addLine(both, unusual);
    return both;
}

void QlumValueCheck::add(const QlumValueCheck& other)
{
    addLine(refused, other.refused);
    addLine(unusual, other.unusual);
}

QString qlumCheckLength(OpcUa_Int64 bytes, const QlumValueContext& context)
{
    const OpcUa_Int64 most = context.maxStringLength.value_or(0); // 0 is no limit
    if (most == 0 || bytes <= most)
        return {};
    return CheckTexts::tr("It is %1 bytes long, the server takes %2 at most (MaxStringLength).")
        .arg(QLocale().toString(bytes), QLocale().toString(most));
}

QlumValueCheck qlumCheckElement(const UaVariant& element, const QlumValueContext& context)
{
    return checkElement(element, Rules(context));
}

QString qlumCheckType(OpcUa_BuiltInType type, const QlumValueContext& context)
{
    return checkType(type, Rules(context));
}

QString qlumCheckLengths(const UaArray<OpcUa_Int32>& lengths, const QlumValueContext& context)
{
    QString refused;
    if (!rankFits(context.valueRank, lengths.length()))
        refused = CheckTexts::tr("The server expects %1, this has %2.")
                      .arg(qlumRankText(context),
                           lengths.length() == 0 ? CheckTexts::tr("no dimension")
                                                 : CheckTexts::tr("%1 dimensions").arg(lengths.length()));
    addLine(refused, checkDimensions(lengths, context));
    return refused;
}

QlumValueCheck qlumCheckShape(const UaVariant& value, const QlumValueContext& context)
{
    QlumValueCheck check;
    check.refused = context.accessFault;
    if (value.isNull() || isByteArrayForByteString(value, context))
        return check;
    addLine(check.refused, qlumCheckLengths(value.dimensions(), context));
    return check;
}

QlumValueCheck qlumCheckValue(const UaVariant& value, const QlumValueContext& context)
{
    QlumValueCheck check = qlumCheckShape(value, context);
    if (value.isNull() || isByteArrayForByteString(value, context))
        return check;
    const Rules rules(context);
    check.add(value.isScalar() ? checkElement(value, rules) : checkElements(value, rules));
    return check;
}

QString qlumRankText(const QlumValueContext& context)
{
    const QString lengths = lengthsText(context.arrayDimensions);
    switch (context.valueRank) {
    case -3:
        return CheckTexts::tr("a scalar or an array");
    case -1:
        return CheckTexts::tr("a scalar");
    case 0:
        return CheckTexts::tr("an array of any number of dimensions");
    case 1:
        return lengths.isEmpty() || context.arrayDimensions.front() == 0
                   ? CheckTexts::tr("an array")
                   : CheckTexts::tr("an array of %1 elements at most").arg(lengths);
    default:
        break;
    }
    if (context.valueRank < 0)
        return {};
    const QString rank = CheckTexts::tr("a matrix of %1 dimensions").arg(context.valueRank);
    return lengths.isEmpty() ? rank : CheckTexts::tr("%1, at most %2").arg(rank, lengths);
}
