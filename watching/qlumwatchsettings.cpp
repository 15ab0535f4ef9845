#include <watching/qlumwatchsettings.h>

#include <uabase/values/uadatachangefilter.h>
#include <uabase/values/uaextensionobject.h>

#include <QCoreApplication>
#include <QLocale>
#include <QMap>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <span>

namespace {

struct QlumWatchSettingsText
{
    Q_DECLARE_TR_FUNCTIONS(QlumWatchSettings)
};

constexpr double mostMilliseconds = std::numeric_limits<int>::max();

constexpr const char* watchDeadbands[] = {QT_TRANSLATE_NOOP("QlumWatchSettings", "None"),
                                          QT_TRANSLATE_NOOP("QlumWatchSettings", "Absolute"),
                                          QT_TRANSLATE_NOOP("QlumWatchSettings", "Percent")};
constexpr const char* watchTriggers[] = {QT_TRANSLATE_NOOP("QlumWatchSettings", "Status"),
                                         QT_TRANSLATE_NOOP("QlumWatchSettings", "Status, value"),
                                         QT_TRANSLATE_NOOP("QlumWatchSettings", "Status, value, timestamp")};
constexpr const char* watchTimestamps[] = {
    QT_TRANSLATE_NOOP("QlumWatchSettings", "Source"), QT_TRANSLATE_NOOP("QlumWatchSettings", "Server"),
    QT_TRANSLATE_NOOP("QlumWatchSettings", "Both"), QT_TRANSLATE_NOOP("QlumWatchSettings", "Neither")};
constexpr const char* watchModes[] = {QT_TRANSLATE_NOOP("QlumWatchSettings", "Disabled"),
                                      QT_TRANSLATE_NOOP("QlumWatchSettings", "Sampling"),
                                      QT_TRANSLATE_NOOP("QlumWatchSettings", "Reporting")};

QStringList watchNames(std::span<const char* const> names)
{
    QStringList result;
    for (const char* name : names)
        result.append(QLatin1String(name));
    return result;
}

UaExtensionObject filterOf(const QlumDataSettings& settings)
{
    const bool isUsual =
        settings.trigger == QlumDataTrigger::StatusValue && settings.deadband == QlumDeadband::None;
    UaExtensionObject filter;
    if (isUsual)
        return filter;
    const UaDataChangeFilter wanted(static_cast<OpcUa_DataChangeTrigger>(settings.trigger),
                                    static_cast<OpcUa_DeadbandType>(settings.deadband),
                                    settings.deadband == QlumDeadband::None ? 0 : settings.deadbandValue);
    OpcUa_ExtensionObject raw;
    OpcUa_ExtensionObject_Initialize(&raw);
    if (OpcUa_IsGood(wanted.copyTo(&raw)))
        filter.attach(&raw);
    return filter;
}

} // namespace

QStringList qlumDaDeadbands()
{
    return watchNames(watchDeadbands);
}

QStringList qlumDaTriggers()
{
    return watchNames(watchTriggers);
}

QStringList qlumDaTimestamps()
{
    return watchNames(watchTimestamps);
}

QStringList qlumDaModes()
{
    return watchNames(watchModes);
}

QStringList qlumDaWords(const QStringList& stored)
{
    QStringList result;
    for (const QString& name : stored)
        result.append(QCoreApplication::translate("QlumWatchSettings", name.toLatin1().constData()));
    return result;
}

QString qlumDaInterval(double milliseconds)
{
    constexpr double second = 1000;
    if (milliseconds <= 0)
        return QlumWatchSettingsText::tr("fastest");
    return milliseconds < second
               ? QlumWatchSettingsText::tr("%1 ms").arg(QLocale().toString(milliseconds, 'g', 4))
               : QlumWatchSettingsText::tr("%1 s").arg(QLocale().toString(milliseconds / second, 'g', 6));
}

monitoring::ItemSettings qlumMonitoringSettings(const QlumDataSettings& settings)
{
    monitoring::ItemSettings result;
    result.subscription.publishingInterval = settings.publishingInterval;
    result.subscription.lifetimeCount = settings.lifetimeCount;
    result.subscription.priority = settings.priority;
    result.samplingInterval = settings.samplingInterval;
    result.queueSize = settings.queueSize;
    result.discardOldest = settings.discardOldest;
    result.mode = settings.mode;
    result.timestamps = settings.timestamps;
    result.filter = filterOf(settings);
    return result;
}

// ---- project

QString qlumStoredDaSettings(const QlumDataSettings& settings)
{
    const QlumDataSettings fresh;
    QStringList parts;
    const auto keep = [&parts](const char* name, auto value, auto standard) {
        if (value != standard)
            parts.append(QStringLiteral("%1=%2").arg(QLatin1String(name)).arg(value));
    };
    keep("publishing", settings.publishingInterval, fresh.publishingInterval);
    keep("sampling", settings.samplingInterval, fresh.samplingInterval);
    keep("queue", settings.queueSize, fresh.queueSize);
    keep("discardOldest", int(settings.discardOldest), int(fresh.discardOldest));
    keep("deadband", int(settings.deadband), int(fresh.deadband));
    keep("deadbandValue", settings.deadbandValue, fresh.deadbandValue);
    keep("trigger", int(settings.trigger), int(fresh.trigger));
    keep("timestamps", int(settings.timestamps), int(fresh.timestamps));
    keep("mode", int(settings.mode), int(fresh.mode));
    keep("priority", int(settings.priority), int(fresh.priority));
    keep("lifetime", settings.lifetimeCount, fresh.lifetimeCount);
    keep("read", settings.readInterval, fresh.readInterval);
    return parts.join(QLatin1Char(' '));
}

QlumDataSettings qlumRestoredDaSettings(const QString& line)
{
    QMap<QString, double> values;
    for (const QString& part : line.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const double number = part.section(QLatin1Char('='), 1).toDouble(&isNumber);
        if (isNumber && number >= -1 && number <= mostMilliseconds)
            values.insert(part.section(QLatin1Char('='), 0, 0), number);
    }
    QlumDataSettings settings;
    const auto restored = [&values](const char* name, double standard, double least, double most) {
        return std::clamp(values.value(QLatin1String(name), standard), least, most);
    };
    settings.publishingInterval = restored("publishing", settings.publishingInterval, 1, mostMilliseconds);
    settings.samplingInterval = restored("sampling", settings.samplingInterval, -1, mostMilliseconds);
    settings.queueSize = static_cast<quint32>(restored("queue", settings.queueSize, 1, mostMilliseconds));
    settings.discardOldest = restored("discardOldest", settings.discardOldest ? 1 : 0, 0, 1) > 0;
    settings.deadband = static_cast<QlumDeadband>(restored("deadband", 0, 0, 2));
    settings.deadbandValue = restored("deadbandValue", 0, 0, mostMilliseconds);
    settings.trigger = static_cast<QlumDataTrigger>(restored("trigger", int(settings.trigger), 0, 2));
    settings.timestamps =
        static_cast<OpcUa_TimestampsToReturn>(restored("timestamps", settings.timestamps, 0, 3));
    settings.mode = static_cast<OpcUa_MonitoringMode>(restored("mode", settings.mode, 0, 2));
    settings.priority = static_cast<quint8>(restored("priority", 0, 0, 255));
    settings.lifetimeCount =
        static_cast<quint32>(restored("lifetime", settings.lifetimeCount, 3, mostMilliseconds));
    settings.readInterval = restored("read", 0, 0, mostMilliseconds);
    return settings;
}
