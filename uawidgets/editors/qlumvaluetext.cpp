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

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <span>
#include <string_view>

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("QlumValueText", text);
}

template <typename T>
bool fits(qlonglong number)
{
    return number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max();
}

// Decimal, or hexadecimal with 0x.
template <typename T, typename Setter>
bool readSigned(const QString& text, Setter set)
{
    bool ok = false;
    const qlonglong number = text.trimmed().toLongLong(&ok, 0);
    if (!ok || !fits<T>(number))
        return false;
    set(static_cast<T>(number));
    return true;
}

template <typename T, typename Setter>
bool readUnsigned(const QString& text, Setter set)
{
    bool ok = false;
    const QString trimmed = text.trimmed();
    const qulonglong number = trimmed.toULongLong(&ok, trimmed.startsWith(QLatin1String("0x")) ? 16 : 10);
    if (!ok || number > std::numeric_limits<T>::max())
        return false;
    set(static_cast<T>(number));
    return true;
}

// With a point, or as the user's locale writes it.
bool readDouble(const QString& text, double& number)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    number = QLocale::c().toDouble(trimmed, &ok);
    if (!ok)
        number = QLocale().toDouble(trimmed, &ok);
    return ok;
}

bool readFloating(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    double number = 0;
    if (!readDouble(text, number))
        return false;
    if (type == OpcUaType_Double) {
        value.setDouble(number);
        return true;
    }
    // Up to here a number still rounds to the largest float, whose own shortest text lies above it.
    constexpr double limit = 0x1.ffffffp127;
    if (std::isfinite(number) && std::abs(number) >= limit)
        return false;
    value.setFloat(static_cast<float>(number));
    return true;
}

bool readInteger(const QString& text, OpcUa_BuiltInType type, UaVariant& value)
{
    switch (type) {
    case OpcUaType_SByte:
        return readSigned<OpcUa_SByte>(text, [&](auto number) { value.setSByte(number); });
    case OpcUaType_Byte:
        return readUnsigned<OpcUa_Byte>(text, [&](auto number) { value.setByte(number); });
    case OpcUaType_Int16:
        return readSigned<OpcUa_Int16>(text, [&](auto number) { value.setInt16(number); });
    case OpcUaType_UInt16:
        return readUnsigned<OpcUa_UInt16>(text, [&](auto number) { value.setUInt16(number); });
    case OpcUaType_Int32:
        return readSigned<OpcUa_Int32>(text, [&](auto number) { value.setInt32(number); });
    case OpcUaType_UInt32:
        return readUnsigned<OpcUa_UInt32>(text, [&](auto number) { value.setUInt32(number); });
    case OpcUaType_Int64:
        return readSigned<OpcUa_Int64>(text, [&](auto number) { value.setInt64(number); });
    case OpcUaType_UInt64:
        return readUnsigned<OpcUa_UInt64>(text, [&](auto number) { value.setUInt64(number); });
    case OpcUaType_StatusCode:
        return readUnsigned<OpcUa_UInt32>(text,
                                          [&](auto number) { value.setStatusCode(UaStatusCode(number)); });
    default:
        return false;
    }
}

bool readBool(const QString& text, UaVariant& value)
{
    const QString word = text.trimmed().toLower();
    const bool isTrue = word == QLatin1String("true") || word == QLatin1String("1");
    if (!isTrue && word != QLatin1String("false") && word != QLatin1String("0"))
        return false;
    value.setBool(isTrue);
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

template <typename T>
QString range()
{
    return tr("%1 to %2").arg(std::numeric_limits<T>::min()).arg(std::numeric_limits<T>::max());
}
} // namespace

QString qlumFloatText(float number)
{
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return QString::fromLatin1(text.data(), static_cast<int>(end - text.data()));
}

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
        return QLocale::c().toString(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case OpcUaType_Byte:
        return QString::number(value.toByte());
    case OpcUaType_SByte:
        return QString::number(value.toSByte());
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
        return toQString(value.toStatusCode().toHexString());
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
    else if ((type >= OpcUaType_SByte && type <= OpcUaType_UInt64) || type == OpcUaType_StatusCode)
        ok = readInteger(text, type, read);
    else if (type == OpcUaType_Float || type == OpcUaType_Double)
        ok = readFloating(text, type, read);
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
    case OpcUaType_SByte:
        return range<OpcUa_SByte>();
    case OpcUaType_Byte:
        return range<OpcUa_Byte>();
    case OpcUaType_Int16:
        return range<OpcUa_Int16>();
    case OpcUaType_UInt16:
        return range<OpcUa_UInt16>();
    case OpcUaType_Int32:
        return range<OpcUa_Int32>();
    case OpcUaType_UInt32:
        return range<OpcUa_UInt32>();
    case OpcUaType_Int64:
        return range<OpcUa_Int64>();
    case OpcUaType_UInt64:
        return range<OpcUa_UInt64>();
    case OpcUaType_Guid:
        return QStringLiteral("72962b91-fa75-4ae6-8d28-b404dc7daf63");
    case OpcUaType_ByteString:
        return tr("hexadecimal bytes: 0x00ff");
    case OpcUaType_NodeId:
        return QStringLiteral("i=84, ns=2;s=text, ns=3;g=..., ns=4;b=...");
    case OpcUaType_ExpandedNodeId:
        return QStringLiteral("svr=1;nsu=http://...;s=text");
    case OpcUaType_QualifiedName:
        return tr("namespace index and name: 2:name");
    case OpcUaType_StatusCode:
        return tr("number of the code: 0x80340000");
    default:
        return {};
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
