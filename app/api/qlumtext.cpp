#include <app/api/qlumtext.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <atomic>
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

// ---- times

namespace {
std::atomic<bool> g_isUtc{false};
std::atomic<bool> g_isIso{false};

QString withMilliseconds(QString format)
{
    static const QRegularExpression minutesOn(QStringLiteral(":m+(:s+(.z+)?)?"));
    return format.replace(minutesOn, QStringLiteral(":mm:ss.zzz"));
}

QString timeFormat()
{
    static const QString system = withMilliseconds(QLocale::system().timeFormat(QLocale::ShortFormat));
    return g_isIso ? QStringLiteral("HH:mm:ss.zzz") : system;
}

QString minuteFormat()
{
    // two digits of a year do not tell 1951 from 2051, and certificates are from both
    static const QRegularExpression shortYear(QStringLiteral("(?<!y)yy(?!y)"));
    static const QString system =
        QLocale::system().dateTimeFormat(QLocale::ShortFormat).replace(shortYear, QStringLiteral("yyyy"));
    return g_isIso ? QStringLiteral("yyyy-MM-dd HH:mm") : system;
}

// Without a zone a text is local time.
QString shown(const QDateTime& moment, const QString& format)
{
    if (!moment.isValid())
        return {};
    return g_isUtc ? QLocale::system().toString(moment.toUTC(), format) + QLatin1Char('Z')
                   : QLocale::system().toString(moment.toLocalTime(), format);
}
} // namespace

void qlumSetTimeLook(QlumTimeLook look)
{
    g_isUtc = look.isUtc;
    g_isIso = look.isIso;
}

QlumTimeLook qlumTimeLook()
{
    return {g_isUtc, g_isIso};
}

QString qlumDateTimeFormat()
{
    static const QString system = withMilliseconds(QLocale::system().dateTimeFormat(QLocale::ShortFormat));
    return g_isIso ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz") : system;
}

QString qlumShowDateTime(const QDateTime& moment)
{
    return shown(moment, qlumDateTimeFormat());
}

QString qlumShowDateTime(OpcUa_DateTime moment)
{
    return qlumShowDateTime(qlumDateTime(moment));
}

QString qlumShowTime(const QDateTime& moment)
{
    return shown(moment, timeFormat());
}

QString qlumShowMinute(const QDateTime& moment)
{
    return shown(moment, minuteFormat());
}
