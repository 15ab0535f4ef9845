#pragma once
#include <app/api/qlumservernode.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <uabase/values/uanodeid.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QWidget>

class QAction;
class QStackedWidget;

/// Content of the address space dock: a placeholder and one page for each connected server.
class QlumAddressSpacePages : public QObject
{
    Q_OBJECT
public:
    QlumAddressSpacePages(QAction* rebrowse, QlumAddressSpaceModelFactory factory, QWidget* parent);

    [[nodiscard]] QWidget* widget() const;
    /// Makes the server's page, or makes it anew.
    void createAddressSpace(QlumServerNode* server);
    void removePage(unsigned int serverId);
    /// Shows the page of the server, the placeholder when it has none.
    void showPage(unsigned int serverId);
    [[nodiscard]] bool hasPage(unsigned int serverId) const { return page(serverId) != nullptr; }
    /// Selects the node in the server's page; false when there is no such page or node.
    bool reveal(unsigned int serverId, const UaNodeId& node);

    /// Of the page in front; null when that is the placeholder.
    [[nodiscard]] QlumAddressSpacePage* shownPage() const;

    /// Actions of the context menus of all pages, also of those to come.
    void addAction(QAction* action);
    void removeAction(QAction* action);

    void rebrowseCurrent();
    void serverModelChanged(unsigned int serverId, const UaNodeId& node, unsigned char verb);

signals:
    void nodeSelected(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass, UaNodeId* parentId);
    /// The user wants a text looked for on the whole server.
    void searchWanted(unsigned int serverId, const QString& text);

private:
    [[nodiscard]] QlumAddressSpacePage* page(unsigned int serverId) const;
    [[nodiscard]] QList<QlumAddressSpacePage*> pages() const;

    QAction* m_rebrowse;
    QlumAddressSpaceModelFactory m_factory;
    QStackedWidget* m_stack;
    QList<QAction*> m_actions;
};
