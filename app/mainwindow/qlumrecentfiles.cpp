#include <app/mainwindow/qlumrecentfiles.h>

#include <app/settings/qlumsettingsmodel.h>

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QString>
#include <QWidget>

#include <algorithm>

namespace {
const auto recentFilesKey = QStringLiteral("RecentFiles");
constexpr int maximumFiles = 50;
} // namespace

QlumRecentFiles::QlumRecentFiles(QlumSettingsModel* settings, QWidget* window)
    : QObject(window), m_settings(settings), m_window(window),
      m_menu(new QMenu(tr("&Recent Projects"), window))
{
    m_menu->setObjectName(QStringLiteral("recentProjects"));
    // another window of the program may have changed the list meanwhile
    connect(m_menu, &QMenu::aboutToShow, this, &QlumRecentFiles::updateActions);
}

QStringList QlumRecentFiles::files() const
{
    const int count = m_settings->value(QStringLiteral("General.NoOfRecentFiles")).toInt();
    return QSettings().value(recentFilesKey).toStringList().mid(0, std::clamp(count, 0, maximumFiles));
}

void QlumRecentFiles::store(const QStringList& files)
{
    QSettings().setValue(recentFilesKey, files);
    updateActions();
}

void QlumRecentFiles::add(const QString& fileName)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    QStringList list = files();
    list.removeAll(path);
    list.prepend(path);
    const int count = m_settings->value(QStringLiteral("General.NoOfRecentFiles")).toInt();
    store(list.mid(0, std::clamp(count, 0, maximumFiles)));
}

void QlumRecentFiles::remove(const QString& fileName)
{
    QStringList list = files();
    list.removeAll(fileName);
    store(list);
}

void QlumRecentFiles::updateActions()
{
    m_menu->clear();
    const QStringList list = files();
    for (int i = 0; i < list.size(); ++i) {
        const QString& file = list.at(i);
        QString name = QFileInfo(file).fileName();
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* action = m_menu->addAction(tr("&%1 %2").arg(QString::number(i + 1), name));
        action->setObjectName(QStringLiteral("recentProject%1").arg(i + 1));
        action->setToolTip(QDir::toNativeSeparators(file));
        action->setStatusTip(QDir::toNativeSeparators(file));
        connect(action, &QAction::triggered, this, [this, file] { choose(file); });
    }
    m_menu->setToolTipsVisible(true);
    m_menu->setEnabled(!list.isEmpty());
    emit updated();
}

void QlumRecentFiles::choose(const QString& fileName)
{
    if (QFileInfo::exists(fileName)) {
        emit chosen(fileName);
        return;
    }
    QMessageBox::warning(
        m_window, tr("File not found"),
        tr("The selected project file does not exist. It will be removed from the list of recent projects."));
    remove(fileName);
}
