#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <QAction>
#include <QDateTime>
#include <QLayout>
#include <QModelIndex>
#include <QObject>
#include <QPointer>
#include <QShowEvent>
#include <QString>
#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QTreeView;
class QlumAddressSpaceModelInterface;
class QlumServerNode;
class QlumTreeFinder;

/// Makes the model of a page; a null result means that the address space cannot be shown.
using QlumAddressSpaceModelFactory = std::function<QlumAddressSpaceModelInterface*(
    QlumServerNode* server, QComboBox* highlight, QObject* parent)>;

/// One server's address space as a tree, with the means to browse again and to highlight a namespace. While
/// the connection is lost the tree is grey, and a line above it says so and since when.
class QlumAddressSpacePage : public QWidget
{
    Q_OBJECT
public:
    QlumAddressSpacePage(QlumServerNode* server, const QlumAddressSpaceModelFactory& factory,
                         QAction* rebrowse, QWidget* parent = nullptr);

    [[nodiscard]] unsigned int serverId() const { return m_serverId; }
    [[nodiscard]] QTreeView* tree() const { return m_tree; }
    /// Deletes the page, at once or as soon as nobody waits for an answer that belongs into it.
    void retire();
    void rebrowseCurrent();
    void serverModelChanged(const UaNodeId& node, unsigned char verb);
    /// Selects a node, whether the tree holds it already or not; false when it cannot be found.
    bool reveal(const UaNodeId& node);
    /// The selected nodes, in the order of their selection.
    [[nodiscard]] QlumToolNodes selectedNodes() const;

signals:
    /// parentId is null for the root.
    void nodeSelected(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass, UaNodeId* parentId);
    /// The user wants a text looked for on the whole server.
    void searchWanted(unsigned int serverId, const QString& text);

protected:
    /// Tells what changed while another server's page was in front.
    void showEvent(QShowEvent* event) override;

private:
    QLayout* makeBar(QAction* rebrowse);
    void setupTree();
    void makeActions();
    void makeFinder();
    void copy(const std::function<QString(const QModelIndex&)>& text) const;
    void setReadingOrder(bool on);
    void sltCurrentChanged(const QModelIndex& current);
    void followIds();
    void setWaiting(bool waiting);
    void sltExpanded(const QModelIndex& index);
    void followConnection();
    void showConnection();

    QPointer<QlumServerNode> m_server;
    unsigned int m_serverId;
    QTreeView* m_tree;
    QComboBox* m_highlight;
    QLabel* m_lost;                                    ///< hidden while the connection stands
    QDateTime m_lostSince;                             ///< invalid while it stands
    QlumActionTable m_actions;                         ///< of the tree
    QlumAddressSpaceModelInterface* m_model = nullptr; ///< child of the tree
    QlumTreeFinder* m_finder = nullptr;                ///< null without a model
    UaNodeId m_announced;                              ///< by nodeSelected
    bool m_waiting = false;                            ///< for the server, in an event loop of the model
    bool m_retired = false;
};
