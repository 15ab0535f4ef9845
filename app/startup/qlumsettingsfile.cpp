#include <app/startup/qlumsettingsfile.h>

#include <app/api/qlumtext.h>
#include <app/ini/qluminicheck.h>
#include <uabase/system/uadir.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <cstdio>
#include <span>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumSettingsFile)
};

// Name for a file that is to be kept: the first that is free, so that no damaged file replaces another.
QString nameToKeep(const QString& path)
{
    constexpr int maximumKept = 1000;
    QString name = path + QStringLiteral(".bad");
    for (int i = 2; i < maximumKept && QFileInfo::exists(name); ++i)
        name = path + QStringLiteral(".bad%1").arg(i);
    return name;
}

bool write(const QString& path, const QByteArray& content)
{
    const auto bytes = std::span(reinterpret_cast<const unsigned char*>(content.constData()),
                                 static_cast<std::size_t>(content.size()));
    return !uaWriteFileAtomically(toUaString(path), bytes, 0600);
}
} // namespace

QStringList qlumCleanSettingsFile()
{
    // not asked of QSettings, which would read the file
    const QString path =
        toQString(UaDir::applicationDataPath()) + QStringLiteral("/korvanda/tavelin/tavelin.ini");
    const QlumIniCheck check = qlumCheckIniFile(path);
    if (check.unchanged)
        return {};
    if (check.readable && check.refused.isEmpty()) {
        // edited by hand; a link to the file stays one
        if (!write(QFileInfo(path).canonicalFilePath(), check.content))
            return {Text::tr("The settings could not be written.")};
        return {};
    }
    const QString kept = nameToKeep(path);
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(kept).constData()) != 0)
        return {Text::tr("The settings file %1 cannot be read and not be moved.")
                    .arg(QDir::toNativeSeparators(path))};
    QStringList messages = check.refused;
    if (!check.readable)
        messages.append(check.error);
    if (check.readable && !write(path, check.content))
        messages.append(Text::tr("The settings could not be written."));
    messages.append(
        Text::tr("The settings file was damaged; it is kept as %1.").arg(QDir::toNativeSeparators(kept)));
    return messages;
}
