#pragma once
#include <QContextMenuEvent>
#include <QString>
#include <QTreeView>
#include <QWidget>

class QAction;
class QMenu;
class QlumMainActions;
class QlumProjectModel;

/// The project as a tree. A double click connects a server; the context menu offers what can be done with the
/// node it was opened on, by the actions of the main window.
class QlumProjectView : public QTreeView
{
    Q_OBJECT
public:
    QlumProjectView(const QlumMainActions* actions, QlumProjectModel* project, QWidget* parent);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void fillMenu(QMenu* menu);
    void addRoles(QMenu* menu);
    void offer(QMenu* menu, QAction* action, const QString& text);
    void connectCurrent();

    const QlumMainActions* m_actions;
    QlumProjectModel* m_project;
};
