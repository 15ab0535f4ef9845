#include <app/settings/qlumlanguages.h>

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QSet>

#include <algorithm>

namespace {
const auto languagePrefix = QStringLiteral("tavelin_");

// Where they are loaded from.
QStringList languageFolders()
{
    const QString program = QCoreApplication::applicationDirPath();
    return {QString(), program + QStringLiteral("/translations"), QStringLiteral(":/translations")};
}
} // namespace

QStringList qlumLanguages()
{
    QSet<QString> names;
    for (const QString& folder : languageFolders())
        for (const QString& file :
             QDir(folder).entryList({languagePrefix + QStringLiteral("*.qm")}, QDir::Files))
            names.insert(file.mid(languagePrefix.size()).chopped(3));
    names.remove(QStringLiteral("en")); // its file only says how English counts
    QStringList sorted(names.cbegin(), names.cend());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

QString qlumLanguageName(const QString& language)
{
    const QLocale locale(language);
    QString name = locale.nativeLanguageName();
    if (locale.language() == QLocale::C || name.isEmpty())
        return language; // no language that is known here
    name[0] = name[0].toUpper();
    return language.contains(QLatin1Char('_'))
               ? QStringLiteral("%1 (%2)").arg(name, locale.nativeCountryName())
               : name;
}
