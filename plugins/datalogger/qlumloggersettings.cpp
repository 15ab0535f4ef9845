#include <plugins/datalogger/qlumloggersettings.h>

#include <app/api/qlumsettingsregistry.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QStandardPaths>
#include <QString>

namespace {
struct LoggerSettingsText
{
    Q_DECLARE_TR_FUNCTIONS(QlumLoggerSettings)
};
} // namespace

void qlumRegisterLoggerSettings()
{
    using T = LoggerSettingsText;
    namespace S = QlumLoggerSettings;
    using Row = QlumSettingRow;
    constexpr double mostMegabytes = 1e9;
    qlumRegisterSettings(
        {QStringLiteral("datalogger"),
         T::tr("Data &Logger"),
         {Row::note(QStringLiteral("dataLoggerNote"), T::tr("What new data logger views begin with:")),
          Row::line(S::folder, {T::tr("&Folder:"), T::tr("Where recordings are written. Empty: your folder "
                                                         "of documents.")}),
          Row::number(S::freeFloor,
                      {T::tr("F&ree space:"), T::tr("Recording pauses while the disk has less than that.")},
                      0, mostMegabytes, T::tr(" MB")),
          Row::number(S::queueSize,
                      {T::tr("&Queue size:"),
                       T::tr("How many values of a server are kept in memory while the disk is slow. When "
                             "there are more, the oldest are lost, and the recording says so.")},
                      1000, 10'000'000)}});
}

QlumLoggerSetup qlumLoggerDefaults()
{
    QlumLoggerSetup setup;
    QString folder = QlumLoggerSettings::folder.value();
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd_HH-mm"));
    setup.path = QDir(folder).absoluteFilePath(QStringLiteral("recording_%1.sqlite").arg(time));
    setup.freeFloor = QlumLoggerSettings::freeFloor.value();
    return setup;
}

QlumDataSettings qlumLoggerItemDefaults()
{
    QlumDataSettings settings;
    constexpr quint32 keptAtServer = 100;
    settings.queueSize = keptAtServer;
    return settings;
}
