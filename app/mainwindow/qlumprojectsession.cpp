#include <app/mainwindow/qlumprojectsession.h>

#include <app/api/qlumlog.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/settings/qlumsettingsmodel.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QStringList>

#include <utility>

#ifndef TAVELIN_BUILD_TAG
#    define TAVELIN_BUILD_TAG ""
#endif
#ifndef TAVELIN_REVISION
#    define TAVELIN_REVISION "0000000000000000000000000000000000000000"
#endif

namespace {
const auto projectSuffix = QStringLiteral(".uap");

QString makeBaseTitle()
{
    const QString tag = QStringLiteral(TAVELIN_BUILD_TAG);
    if (tag.isEmpty())
        return QlumProjectSession::tr("Korvanda Tavelin - The OPC Unified Architecture Client");
    return QStringLiteral("Korvanda Tavelin - %1 - %2").arg(QStringLiteral(TAVELIN_REVISION), tag);
}

// The dialog of a desktop does not add the suffix by itself; what follows a dot need not be one.
QString withSuffix(const QString& fileName)
{
    return fileName.endsWith(projectSuffix, Qt::CaseInsensitive) ? fileName : fileName + projectSuffix;
}
} // namespace

QlumProjectSession::QlumProjectSession(QMainWindow* window, const QlumMainActions* actions,
                                       QlumSettingsModel* settings, QlumRecentFiles* recentFiles, Hooks hooks)
    : QObject(window), m_window(window), m_actions(actions), m_settings(settings), m_recentFiles(recentFiles),
      m_hooks(std::move(hooks)), m_baseTitle(makeBaseTitle())
{
    using A = QlumMainActions;
    connect((*actions)[A::NewProject], &QAction::triggered, this, &QlumProjectSession::sltNew);
    connect((*actions)[A::OpenProject], &QAction::triggered, this, &QlumProjectSession::sltOpen);
    connect((*actions)[A::SaveProject], &QAction::triggered, this, &QlumProjectSession::sltSave);
    connect((*actions)[A::SaveProjectAs], &QAction::triggered, this, &QlumProjectSession::sltSaveAs);
    connect(recentFiles, &QlumRecentFiles::chosen, this, &QlumProjectSession::sltOpenRecent);
    showTitle();
}

void QlumProjectSession::showTitle()
{
    const QString name =
        m_file.isEmpty() ? QStringLiteral("NewProject") : QFileInfo(m_file).completeBaseName();
    // a "[*]" in a file name must not become a second mark
    m_window->setWindowTitle(
        tr("%1 - %2[*]")
            .arg(m_baseTitle, QString(name).replace(QLatin1String("[*]"), QLatin1String("[*][*]"))));
}

void QlumProjectSession::setCurrentFile(const QString& fileName, bool addToRecentFiles)
{
    m_file = fileName;
    if (addToRecentFiles && !fileName.isEmpty())
        m_recentFiles->add(fileName);
    showTitle();
    emit currentFileChanged(fileName);
}

void QlumProjectSession::setModified()
{
    m_window->setWindowModified(true);
    (*m_actions)[QlumMainActions::SaveProject]->setEnabled(true);
    (*m_actions)[QlumMainActions::SaveProjectAs]->setEnabled(true);
    emit changed();
}

void QlumProjectSession::setClean(bool hasProject)
{
    m_window->setWindowModified(false);
    (*m_actions)[QlumMainActions::SaveProject]->setEnabled(false);
    (*m_actions)[QlumMainActions::SaveProjectAs]->setEnabled(hasProject);
    emit clean();
}

void QlumProjectSession::open(const QString& fileName)
{
    openFile(fileName, true);
}

void QlumProjectSession::openFile(const QString& fileName, bool addToRecentFiles)
{
    if (replaceProject(fileName, fileName) && addToRecentFiles)
        m_recentFiles->add(fileName);
}

bool QlumProjectSession::openRecovered(const QString& copy, const QString& fileName)
{
    if (!replaceProject(copy, fileName))
        return false;
    setModified();
    return true;
}

bool QlumProjectSession::replaceProject(const QString& source, const QString& fileName)
{
    m_hooks.clear();
    setCurrentFile(fileName, false);
    setClean(true); // before, so that what is changed while the servers are connected counts
    const QlumProjectReading reading = m_hooks.load(source);
    if (!reading.error.isEmpty()) {
        setCurrentFile({}, false); // or saving would replace what is there
        setClean(false);
        tellUnreadable(source, reading.error);
        return false;
    }
    if (!reading.newerVersion.isEmpty())
        tellNewer(source, reading.newerVersion);
    if (!reading.leftOut.isEmpty()) {
        setModified();
        tellLeftOut(source, reading);
    }
    return true;
}

void QlumProjectSession::tellUnreadable(const QString& fileName, const QString& why)
{
    QMessageBox box(QMessageBox::Warning, tr("Open Project"),
                    tr("The project %1 could not be read.\n%2").arg(QDir::toNativeSeparators(fileName), why),
                    QMessageBox::Ok, m_window);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void QlumProjectSession::tellNewer(const QString& fileName, const QString& version)
{
    QMessageBox box(QMessageBox::Information, tr("Open Project"),
                    tr("The project %1 was saved by Tavelin %2, which is newer than this one. What only that "
                       "version knows "
                       "is not shown here, and may be lost when the project is saved under the same name.")
                        .arg(QDir::toNativeSeparators(fileName), version),
                    QMessageBox::Ok, m_window);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void QlumProjectSession::tellLeftOut(const QString& fileName, const QlumProjectReading& reading)
{
    QMessageBox box(
        QMessageBox::Warning, tr("Open Project"),
        tr("Not all of the project %1 could be read. Saving it would replace the file by what was "
           "read: servers: %2, documents: %3.")
            .arg(QDir::toNativeSeparators(fileName))
            .arg(reading.servers)
            .arg(reading.documents),
        QMessageBox::Ok, m_window);
    box.setTextFormat(Qt::PlainText);
    box.setDetailedText(reading.leftOut.join(QLatin1Char('\n')));
    box.exec();
}

void QlumProjectSession::parseArguments(const QStringList& arguments)
{
    const QlumLog log(QStringLiteral("Tavelin"));
    m_window->setWindowModified(false);
    if (arguments.size() > 1) {
        log.error(tr("Too many command line arguments, Tavelin project file expected!"));
    } else if (arguments.size() == 1) {
        const QString& path = arguments.first();
        if (path.endsWith(projectSuffix) && QFile::exists(path))
            openFile(path, false);
        else
            log.error(tr("Invalid command line argument, project could not be loaded!"));
    }
}

QlumProjectSession::Unsaved QlumProjectSession::askForUnsaved()
{
    if (!m_window->isWindowModified())
        return Unsaved::Discarded;
    const auto answer =
        QMessageBox::question(m_window, tr("Unsaved changes"), tr("Do you want to save the current project?"),
                              QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer == QMessageBox::No)
        return Unsaved::Discarded;
    return answer == QMessageBox::Yes && sltSave() ? Unsaved::Saved : Unsaved::Keep;
}

bool QlumProjectSession::mayClose()
{
    if (m_settings->value(QStringLiteral("General.SuppressSaveOnExit")).toBool())
        return true;
    return askForUnsaved() != Unsaved::Keep;
}

void QlumProjectSession::sltNew()
{
    if (askForUnsaved() == Unsaved::Keep)
        return;
    m_hooks.clear();
    setCurrentFile(QString(), false);
    setClean(false);
}

void QlumProjectSession::sltOpen()
{
    if (askForUnsaved() == Unsaved::Keep)
        return;
    const QString fileName = QFileDialog::getOpenFileName(
        m_window, tr("Open Project"), QFileInfo(m_file).absolutePath(), tr("UA Project File (*.uap)"));
    if (!fileName.isEmpty())
        open(fileName);
}

void QlumProjectSession::sltOpenRecent(const QString& fileName)
{
    if (askForUnsaved() != Unsaved::Keep)
        open(fileName);
}

bool QlumProjectSession::sltSave()
{
    return m_file.isEmpty() ? sltSaveAs() : saveTo(m_file);
}

bool QlumProjectSession::sltSaveAs()
{
    for (QString proposed = m_file;;) {
        const QString chosen = QFileDialog::getSaveFileName(m_window, tr("Save Project"), proposed,
                                                            tr("UA Project File (*.uap)"));
        if (chosen.isEmpty())
            return false;
        const QString fileName = withSuffix(chosen);
        // about the chosen name itself the dialog has asked
        if (fileName == chosen || !QFileInfo::exists(fileName) || mayReplace(fileName))
            return saveTo(fileName);
        proposed = fileName;
    }
}

bool QlumProjectSession::mayReplace(const QString& fileName)
{
    QMessageBox box(
        QMessageBox::Warning, tr("Save Project"),
        tr("%1 already exists.\nDo you want to replace it?").arg(QDir::toNativeSeparators(fileName)),
        QMessageBox::Yes | QMessageBox::No, m_window);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool QlumProjectSession::saveTo(const QString& fileName)
{
    if (!m_hooks.save(fileName)) {
        QMessageBox::warning(
            m_window, tr("Save Project"),
            tr("Could not save the project.\nPlease check if you have sufficient rights to write to "
               "the file."));
        return false;
    }
    setCurrentFile(fileName, true);
    setClean(true);
    return true;
}
