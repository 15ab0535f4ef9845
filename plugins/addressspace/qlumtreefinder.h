#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QKeyEvent>
#include <QModelIndex>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QToolButton;
class QTreeView;
class QlumServerNode;

/// A bar above a tree of nodes: finds names in what the tree has loaded, and goes to a node that is named by
/// its id or its browse path. Hidden until begin(); Escape hides it. GUI thread.
class QlumTreeFinder : public QWidget
{
    Q_OBJECT
public:
    /// Selects a node in the tree; false when it cannot be found.
    using Reveal = std::function<bool(const UaNodeId& nodeId)>;

    /// The tree has its model. The services follow browse paths.
    QlumTreeFinder(QTreeView* tree, QlumServerNode* server, QlumSessionServicesProvider services,
                   Reveal reveal, QWidget* parent = nullptr);
    ~QlumTreeFinder() override;

    /// Shows the bar, with the keyboard in its field.
    void begin();

signals:
    /// The user wants the text looked for on the whole server.
    void searchWanted(const QString& text);

protected:
    /// Escape gives the keyboard back to the tree.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QToolButton* makeButton(const char* name, const QString& text, const QString& toolTip);
    void find(bool forward);
    [[nodiscard]] QModelIndex next(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex previous(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex lastBelow(QModelIndex index) const;
    void go(QlumNodeAddress address);
    void show(const UaNodeId& nodeId);
    void tell(const QString& text);
    void leave();

    QTreeView* m_tree;
    QPointer<QlumServerNode> m_server;
    const QlumSessionServicesProvider m_services;
    const Reveal m_reveal;
    QLineEdit* m_text;
    QLabel* m_message;
    QToolButton* m_search;
    QlumJobPool m_pool; ///< last: its work ends first
};

/// Follows a browse path from its start, in a job; null with a good status where nothing is there.
[[nodiscard]] UaStatus qlumFollowPath(const QlumJob& job, QlumSessionServices& session,
                                      const QlumNodeAddress& address, UaNodeId& nodeId);
