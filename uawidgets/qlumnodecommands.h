#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumtoolservices.h>

#include <QAction>
#include <QEvent>
#include <QList>
#include <QObject>
#include <QWidget>

#include <functional>

class QMenu;

/// The commands of a view for the nodes that are selected in it: what other tools do with nodes, as far as
/// they are there and accept them ("Add to Data Access View", "Call..."). The actions are the view's own and
/// take part in its context menu, by mouse and by key; they follow the selection when the menu opens and
/// when another item becomes current, and the tools as these come and go. The object belongs to the view.
class QlumNodeCommands : public QObject
{
    Q_OBJECT
public:
    /// Commands that a view may leave out: the address space view reveals its nodes already.
    enum Without {
        Nothing, ///< all commands
        Reveal,  ///< not the one that shows the node in the address space view
        Tools    ///< not those that tools offer in menus: the view has its own
    };

    /// The view's context menu must be one of its actions. The function is asked for the selected nodes.
    QlumNodeCommands(QWidget* view, std::function<QlumToolNodes()> selected, Without without = Nothing);

    /// Shows the commands that make sense for the selected nodes and hides the others.
    void update();

protected:
    /// Makes the commands follow the selection before a menu opens.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeOpenActions();
    void makeToolMenus();
    void reveal();
    void callMethod();

    QWidget* m_view;
    std::function<QlumToolNodes()> m_selected;
    Without m_without;
    QlumActionTable m_actions;
    QList<QMenu*> m_menus;  ///< of what tools offer
    QList<QAction*> m_open; ///< one for each type of document that takes nodes; data() is the type
};
