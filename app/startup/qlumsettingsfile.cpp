#include <app/startup/qlumsettingsfile.h>

#include <app/api/qlumtext.h>
#include <app/project/qluminicheck.h>
#include <uabase/system/uadir.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdio>
#include <span>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumSettingsFile)
};
} // namespace

QStringList qlumCleanSettingsFile()
{
    // not asked of QSettings, which would read the file
    const QString path =
        toQString(UaDir::applicationDataPath()) + QStringLiteral("/korvanda/tavelin/tavelin.ini");
    const QlumIniCheck check = qlumCheckIniFile(path);
    if (check.readable && check.refused.isEmpty())
        return {};
    const QString kept = path + QStringLiteral(".bad");
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(kept).constData()) != 0)
        return {Text::tr("The settings file %1 cannot be read and not be moved.")
                    .arg(QDir::toNativeSeparators(path))};
    QStringList messages = check.refused;
    if (!check.readable)
        messages.append(check.error);
    const auto bytes = std::span(reinterpret_cast<const unsigned char*>(check.content.constData()),
                                 static_cast<std::size_t>(check.content.size()));
    if (check.readable && uaWriteFileAtomically(toUaString(path), bytes, 0600))
        messages.append(Text::tr("The settings could not be written."));
    messages.append(
        Text::tr("The settings file was damaged; it is kept as %1.").arg(QDir::toNativeSeparators(kept)));
    return messages;
}
