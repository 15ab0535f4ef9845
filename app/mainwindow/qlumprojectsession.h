#pragma once
#include <app/project/qlumprojectfile.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QMainWindow;
class QlumMainActions;
class QlumRecentFiles;
class QlumSettingsModel;

/// The project as a file that the user opens and saves: its name, whether it differs from the file, and the
/// window title that tells both.
class QlumProjectSession : public QObject
{
    Q_OBJECT
public:
    struct Hooks
    {
        std::function<void()> clear;
        std::function<QlumProjectReading(const QString&)> load;
        std::function<bool(const QString&)> save;
    };

    QlumProjectSession(QMainWindow* window, const QlumMainActions* actions, QlumSettingsModel* settings,
                       QlumRecentFiles* recentFiles, Hooks hooks);

    [[nodiscard]] QString currentFile() const { return m_file; }
    void setCurrentFile(const QString& fileName, bool addToRecentFiles);
    void setModified();
    /// Opens the project file of the command line (arguments without the program); refusals are told in the
    /// log.
    void parseArguments(const QStringList& arguments);
    /// Asks whether an unsaved project is to be saved; false when the window is to stay open.
    [[nodiscard]] bool mayClose();
    /// Opens a file in place of the project, which is then the file's. When it cannot be read the project is
    /// a new one, and when some of it was left out it is modified; both are told in a message.
    void open(const QString& fileName);
    /// Opens a copy that was kept of a project as that project, modified; its file name may be empty. False
    /// when the copy cannot be read, which is told in a message.
    bool openRecovered(const QString& copy, const QString& fileName);

signals:
    void changed();
    /// The project is what its file holds, or a new one.
    void clean();
    void currentFileChanged(const QString& fileName);

public slots:
    void sltNew();
    void sltOpen();
    bool sltSave();
    bool sltSaveAs();
    void sltOpenRecent(const QString& fileName);

private:
    enum class Unsaved { Keep, Discarded, Saved };

    void showTitle();
    void setClean(bool hasProject);
    void openFile(const QString& fileName, bool addToRecentFiles);
    [[nodiscard]] bool replaceProject(const QString& source, const QString& fileName);
    void tellUnreadable(const QString& fileName, const QString& why);
    void tellNewer(const QString& fileName, const QString& version);
    void tellLeftOut(const QString& fileName, const QlumProjectReading& reading);
    [[nodiscard]] bool mayReplace(const QString& fileName);
    bool saveTo(const QString& fileName);
    [[nodiscard]] Unsaved askForUnsaved();

    QMainWindow* m_window;
    const QlumMainActions* m_actions;
    QlumSettingsModel* m_settings;
    QlumRecentFiles* m_recentFiles;
    Hooks m_hooks;
    QString m_baseTitle;
    QString m_file;
};
