#include <app/mainwindow/qlumhelpfiles.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
constexpr qint64 largestPage = 1024 * 1024; // bytes; a page has some thousand

// A translation says which one it is by translating this.
QString language()
{
    return QCoreApplication::translate("QlumHelpViewer", "en",
                                       "the folder of the manual's pages in this language");
}

QString folder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../help"));
}
} // namespace

QString qlumTranslatedHelpPage(const QString& file)
{
    QFile page(QStringLiteral("%1/%2/%3").arg(folder(), language(), QFileInfo(file).fileName()));
    if (page.size() > largestPage || !page.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(page.readAll());
}

QStringList qlumHelpFiles()
{
    const QString english = folder() + QStringLiteral("/tavelin.qch");
    const QString translated = QStringLiteral("%1/tavelin_%2.qch").arg(folder(), language());
    return QFile::exists(translated) ? QStringList{translated, english} : QStringList{english};
}
