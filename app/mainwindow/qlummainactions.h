#pragma once
#include <app/api/qlumactiontable.h>

#include <QList>
#include <QObject>
#include <QString>

#include <initializer_list>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;

/// The actions of the main window, its menus and its tool bars. What the actions do is connected elsewhere.
class QlumMainActions : public QObject
{
    Q_OBJECT
public:
    enum Id {
        NewProject,
        OpenProject,
        SaveProject,
        SaveProjectAs,
        Quit,
        AddServer,
        RemoveServer,
        ConnectServer,
        DisconnectServer,
        ServerProperties,
        ChangeUser,
        DiagnoseServer,
        FindNode,
        Palette,
        Journal,
        AddDocument,
        RemoveDocument,
        CloseTab,
        Configure,
        Plugins,
        Certificates,
        Manual,
        WhatsThis,
        TipOfTheDay,
        ReportBug,
        SupportReport,
        Shortcuts,
        CheckUpdates,
        About,
        ClearLog,
        SaveLog,
        Rebrowse,
        FindBelow,
        ExportBranch
    };

    explicit QlumMainActions(QMainWindow* window);

    [[nodiscard]] QAction* operator[](Id id) const { return m_actions[id]; }
    [[nodiscard]] QList<QAction*> list(std::initializer_list<int> ids) const { return m_actions.list(ids); }

    void makeToolBars();
    /// viewMenu comes from the main window when docks and tool bars stand; recentProjects is the sub-menu of
    /// files.
    void makeMenus(QMenu* viewMenu, QMenu* recentProjects);

private:
    QToolBar* makeToolBar(const QString& title, const QString& name, std::initializer_list<int> ids);
    void addMenu(const QString& title, const QString& name, const QList<QAction*>& actions);

    QMainWindow* m_window;
    QlumActionTable m_actions;
};
