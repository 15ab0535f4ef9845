#pragma once
#include <QObject>
#include <QString>

class QDockWidget;
class QMainWindow;
class QTreeView;
class QlumAddressSpacePages;
class QlumFindNodeView;
class QlumMainActions;
class QlumProjectModel;

/// How the user comes to the search of nodes, and what the search hears of the project's servers.
class QlumFindCommands : public QObject
{
    Q_OBJECT
public:
    /// What it joins.
    struct Parts
    {
        QMainWindow* window;
        const QlumMainActions* actions;
        QlumProjectModel* project;
        QTreeView* projectView;
        QlumAddressSpacePages* pages;
        QlumFindNodeView* view;
        QDockWidget* dock; ///< of the view
    };

    /// Belongs to the window.
    explicit QlumFindCommands(const Parts& parts);

private:
    void followProject();
    void findNode();
    void findBelow();
    void exportBranch();
    void showDock();

    const Parts m_parts;
};
