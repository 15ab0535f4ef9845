#include <uawidgets/editors/qlumvaluetext.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <span>
#include <string_view>

namespace {
class ValueTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumValueText)
};

bool readBool(const QString& text, UaVariant& value)
{
    const QString word = text.trimmed().toLower();
    const bool isTrue = word == QLatin1String("true") || word == QLatin1String("1");
    if (!isTrue && word != QLatin1String("false") && word != QLatin1String("0"))
        return false;
    value.setBool(isTrue);
    return true;
}

bool readStatusCode(const QString& text, UaVariant& value)
{
    const auto code = qlumStatusCodeNames().constFind(text.trimmed().toLower());
    if (code == qlumStatusCodeNames().constEnd())
        return qlumFromNumberText(text, OpcUaType_StatusCode, value);
    value.setStatusCode(UaStatusCode(*code));
    return true;
}

bool readBytes(const QString& text, UaVariant& value)
{
    const QByteArray bytes = text.trimmed().toLatin1();
    const UaByteString parsed =
        bytes.isEmpty() ? UaByteString(std::span<const OpcUa_Byte>())
                        : UaByteString::fromHex({bytes.constData(), static_cast<size_t>(bytes.size())});
    if (parsed.isNull())
        return false;
    value.setByteString(parsed);
    return true;
}

bool readNamed(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    const UaString utf8 = toUaString(text);
    bool ok = true;
    switch (type) {
    case OpcUaType_DateTime:
        value.setDateTime(UaDateTime::fromString(utf8.view(), &ok));
        return ok;
    case OpcUaType_Guid:
        value.setGuid(UaGuid::fromString(utf8.view(), &ok));
        return ok;
    case OpcUaType_NodeId:
        value.setNodeId(UaNodeId::fromString(utf8.view(), &ok));
        return ok;
    case OpcUaType_ExpandedNodeId:
        value.setExpandedNodeId(UaExpandedNodeId::fromString(utf8.view(), &ok));
        return ok;
    case OpcUaType_QualifiedName:
        value.setQualifiedName(UaQualifiedName::fromString(utf8.view()));
        return true;
    case OpcUaType_LocalizedText:
        value.setLocalizedText(UaLocalizedText(value.toLocalizedText().locale(), utf8));
        return true;
    case OpcUaType_XmlElement: {
        const std::string_view view = utf8.view();
        value.setXmlElement(
            UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(view.data()), view.size())));
        return true;
    }
    default:
        value.setString(utf8.isNull() ? UaString("") : utf8);
        return true;
    }
}
} // namespace

bool qlumIsTextEditable(OpcUa_BuiltInType type)
{
    return type >= OpcUaType_Boolean && type <= OpcUaType_LocalizedText;
}

bool qlumHasLineBreaks(const UaVariant& value)
{
    const QString text = qlumEditText(value);
    return text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
}

QString qlumEditText(const UaVariant& value)
{
    switch (value.type()) {
    case OpcUaType_Float:
        return qlumFloatText(value.toFloat());
    case OpcUaType_Double:
        return qlumDoubleText(value.toDouble());
    case OpcUaType_Byte:
        return QString::number(value.toByte());
    case OpcUaType_SByte:
        return QString::number(value.toSByte());
    case OpcUaType_DateTime:
        return toQString(value.toDateTime().toFullString());
    case OpcUaType_ByteString:
        return QLatin1String("0x") + toQString(value.toByteString().toHex());
    case OpcUaType_XmlElement: {
        const UaByteString bytes = value.toXmlElement();
        return QString::fromUtf8(bytes.view().data(), bytes.length());
    }
    case OpcUaType_NodeId:
        return toQString(value.toNodeId().toXmlString());
    case OpcUaType_ExpandedNodeId:
        return toQString(value.toExpandedNodeId().toString());
    case OpcUaType_QualifiedName:
        return toQString(value.toQualifiedName().toString());
    case OpcUaType_LocalizedText:
        return toQString(value.toLocalizedText().text());
    case OpcUaType_StatusCode:
        return qlumStatusEditText(value.toStatusCode());
    default:
        return toQString(value.toString());
    }
}

bool qlumFromEditText(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    UaVariant read = value;
    bool ok = false;
    if (type == OpcUaType_Boolean)
        ok = readBool(text, read);
    else if (qlumIsNumber(type))
        ok = qlumFromNumberText(text, type, read);
    else if (type == OpcUaType_StatusCode)
        ok = readStatusCode(text, read);
    else if (type == OpcUaType_ByteString)
        ok = readBytes(text, read);
    else if (qlumIsTextEditable(type))
        ok = readNamed(text, type, read);
    if (ok)
        value = read;
    return ok;
}

QString qlumEditHint(OpcUa_BuiltInType type)
{
    switch (type) {
    case OpcUaType_Guid:
        return QStringLiteral("72962b91-fa75-4ae6-8d28-b404dc7daf63");
    case OpcUaType_ByteString:
        return ValueTexts::tr("hexadecimal bytes: 0x00ff");
    case OpcUaType_NodeId:
        return QStringLiteral("i=84, ns=2;s=text, ns=3;g=..., ns=4;b=...");
    case OpcUaType_ExpandedNodeId:
        return QStringLiteral("svr=1;nsu=http://...;s=text");
    case OpcUaType_QualifiedName:
        return ValueTexts::tr("namespace index and name: 2:name");
    case OpcUaType_StatusCode:
        return ValueTexts::tr("name or number of the code: BadNotWritable, 0x803b0000");
    default:
        return qlumNumberRangeText(type);
    }
}

bool qlumMayBeEnumeration(OpcUa_BuiltInType type)
{
    return type == OpcUaType_Int32 || type == OpcUaType_Int64 || type == OpcUaType_UInt32 ||
           type == OpcUaType_Byte;
}

QString qlumEnumerationText(OpcUa_Int64 number, const UaEnumDefinition& definition)
{
    const QString name = toQString(definition.valueName(number));
    const QString digits = QString::number(number);
    return name.isEmpty() ? digits : QStringLiteral("%1 (%2)").arg(name, digits);
}

bool qlumFromEnumerationText(const QString& text, const UaEnumDefinition& definition, OpcUa_Int64& number)
{
    const QString trimmed = text.trimmed();
    if (definition.valueOf(toUaString(trimmed), number))
        return true;
    UaVariant read;
    if (qlumFromNumberText(trimmed, OpcUaType_Int64, read)) {
        number = read.toInt64();
        return true;
    }
    // "Running (1)", whose name may itself have parentheses
    const int open = trimmed.lastIndexOf(QLatin1Char('('));
    if (open < 1 || !trimmed.endsWith(QLatin1Char(')')))
        return false;
    const QString digits = trimmed.mid(open + 1, trimmed.size() - open - 2);
    if (!qlumFromNumberText(digits, OpcUaType_Int64, read) ||
        qlumEnumerationText(read.toInt64(), definition) != trimmed)
        return false;
    number = read.toInt64();
    return true;
}

QString qlumOptionSetText(OpcUa_UInt64 number, const UaOptionSetDefinition& definition)
{
    QStringList parts;
    OpcUa_UInt64 rest = 0;
    for (int bit = 0; bit < 64; ++bit) {
        const OpcUa_UInt64 mask = OpcUa_UInt64{1} << bit;
        if (!(number & mask))
            continue;
        const QString name = toQString(definition.bitName(bit));
        OpcUa_UInt64 read = 0;
        if (!name.isEmpty() && qlumFromOptionSetText(name, definition, read) && read == mask)
            parts.append(name);
        else
            rest |= mask; // without a name, or with one that says something else
    }
    if (rest != 0 || parts.isEmpty())
        parts.append(QLatin1String("0x") + QString::number(rest, 16));
    return parts.join(QStringLiteral(" | "));
}

bool qlumFromOptionSetText(const QString& text, const UaOptionSetDefinition& definition, OpcUa_UInt64& number)
{
    OpcUa_UInt64 bits = 0;
    for (const QString& part : text.split(QLatin1Char('|'))) {
        const QString trimmed = part.trimmed();
        UaVariant read;
        OpcUa_Int64 bit = 0;
        if (qlumFromNumberText(trimmed, OpcUaType_UInt64, read))
            bits |= read.toUInt64();
        else if (definition.bitOf(toUaString(trimmed), bit) && bit >= 0 && bit < 64)
            bits |= OpcUa_UInt64{1} << bit;
        else
            return false;
    }
    number = bits;
    return true;
}

QString qlumStatusEditText(UaStatusCode code)
{
    const QString name = toQString(code.toString());
    const auto known = qlumStatusCodeNames().constFind(name.toLower());
    return known != qlumStatusCodeNames().constEnd() && *known == code.code() ? name
                                                                              : toQString(code.toHexString());
}

const QMap<QString, OpcUa_StatusCode>& qlumStatusCodeNames()
{
    static const QMap<QString, OpcUa_StatusCode> names = [] {
        QMap<QString, OpcUa_StatusCode> found;
        for (OpcUa_UInt32 code = 0; code <= 0xFFFF; ++code)
            if (const char* name = OpcUa_StatusCode_Name(code << 16))
                found.insert(QString::fromLatin1(name).toLower(), code << 16);
        return found;
    }();
    return names;
}
