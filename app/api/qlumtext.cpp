#include <app/api/qlumtext.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <limits>
#include <string_view>

namespace {
// 100 ns intervals from 1601-01-01 to 1970-01-01
constexpr OpcUa_Int64 unixEpoch = 116444736000000000LL;
constexpr OpcUa_Int64 ticksPerMillisecond = 10000;
} // namespace

QString toQString(const UaString& text)
{
    return text.isNull() ? QString() : QString::fromUtf8(text.toUtf8(), static_cast<int>(text.size()));
}

UaString toUaString(const QString& text)
{
    if (text.isNull())
        return {};
    const QByteArray bytes = text.toUtf8();
    return UaString(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

QString qlumStatusText(OpcUa_StatusCode code)
{
    return toQString(UaStatus(code).toString());
}

QString qlumBuiltinTypeName(unsigned int builtInType)
{
    static constexpr std::array<const char*, 26> names{
        "Null",           "Boolean",       "SByte",         "Byte",          "Int16",           "UInt16",
        "Int32",          "UInt32",        "Int64",         "UInt64",        "Float",           "Double",
        "String",         "DateTime",      "Guid",          "ByteString",    "XmlElement",      "NodeId",
        "ExpandedNodeId", "StatusCode",    "QualifiedName", "LocalizedText", "ExtensionObject", "DataValue",
        "Variant",        "DiagnosticInfo"};
    if (builtInType < names.size())
        return QLatin1String(names[builtInType]);
    return QStringLiteral("(%1)").arg(builtInType);
}

QDateTime qlumDateTime(OpcUa_DateTime value)
{
    if (value <= 0 || value == std::numeric_limits<OpcUa_Int64>::max())
        return {};
    return QDateTime::fromMSecsSinceEpoch((value - unixEpoch) / ticksPerMillisecond);
}

OpcUa_DateTime qlumUaDateTime(const QDateTime& value)
{
    if (!value.isValid())
        return 0;
    const OpcUa_Int64 milliseconds = value.toMSecsSinceEpoch();
    constexpr OpcUa_Int64 first = -unixEpoch / ticksPerMillisecond;
    constexpr OpcUa_Int64 last = (std::numeric_limits<OpcUa_Int64>::max() - unixEpoch) / ticksPerMillisecond;
    if (milliseconds <= first)
        return 0;
    if (milliseconds >= last)
        return std::numeric_limits<OpcUa_Int64>::max();
    return milliseconds * ticksPerMillisecond + unixEpoch;
}

namespace {
QString withMilliseconds(QString format)
{
    static const QRegularExpression minutesOn(QStringLiteral(":m+(:s+(.z+)?)?"));
    return format.replace(minutesOn, QStringLiteral(":mm:ss.zzz"));
}
} // namespace

QString qlumDateTimeFormat()
{
    return withMilliseconds(QLocale::system().dateTimeFormat(QLocale::ShortFormat));
}

QString qlumTimeFormat()
{
    return withMilliseconds(QLocale::system().timeFormat(QLocale::ShortFormat));
}
