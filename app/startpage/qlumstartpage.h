#pragma once
#include <app/api/qlumjobpool.h>

#include <QList>
#include <QResizeEvent>
#include <QString>
#include <QStringList>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QVBoxLayout;

/// What the user sees before there is a server: recent projects with their servers, the first steps, and what
/// each tool is for. It is no document and never saved.
class QlumStartPage : public QWidget
{
    Q_OBJECT
public:
    struct Tool
    {
        QString type;        ///< of its document
        QString description; ///< rich text
    };

    explicit QlumStartPage(QWidget* parent = nullptr);

    void setTools(const QList<Tool>& tools);
    /// The newest first. Their servers are read from the files meanwhile, which may lie on a slow disk.
    void setRecentProjects(const QStringList& files);
    /// A project that shows what the program does; its button is there while this is not empty.
    void setDemoProject(const QString& file);

signals:
    void addServerWanted();
    void openProjectWanted();
    void projectWanted(const QString& file);
    void documentWanted(const QString& type);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeSteps();
    QWidget* makeRecent();
    QWidget* makeTools();
    void addRecent(const QString& file);

    QBoxLayout* m_columns = nullptr;
    QVBoxLayout* m_recent = nullptr;
    QLabel* m_noRecent = nullptr;
    QVBoxLayout* m_tools = nullptr;
    QWidget* m_demo = nullptr;
    QString m_demoFile;
    QStringList m_files;
    QlumJobPool m_pool; ///< last: its work ends first
};

/// A project that opens on the demo server, where there is one; empty in an installation without it.
[[nodiscard]] QString qlumDemoProject();

/// The names of the servers of a project file, at most so many; empty when it cannot be read. Any thread.
[[nodiscard]] QStringList qlumServersOfProject(const QString& file, int maximum);
