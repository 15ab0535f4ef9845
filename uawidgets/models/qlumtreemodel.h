#pragma once
#include <app/api/qlumguithread.h>
#include <uawidgets/models/qlumtitledmodel.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>
#include <utility>
#include <vector>

/// How a tree model finds its way among nodes; specialise it for nodes that name things differently. child()
/// is null when out of range.
template <typename Node>
struct QlumTreeAccess
{
    /// Null for a node at the top.
    static Node* parent(const Node& node) { return node.parent(); }
    /// Null when out of range.
    static Node* child(const Node& node, int row) { return node.child(row); }
    /// Of the children that are there now.
    static int childCount(const Node& node) { return node.childCount(); }
    /// Among the children of the parent.
    static int row(const Node& node) { return node.row(); }
};

/// A tree of nodes that live as long as the model shows them. A tool's model gives the titles and says by
/// cell() what a node shows; all changes go through the functions below, which tell the views and stop a
/// debug build on any other than the GUI thread.
template <typename Node>
class QlumTreeModel : public QlumTitledModel<QAbstractItemModel>
{
public:
    /// Invalid when the row is not there.
    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = QModelIndex()) const override
    {
        if (row < 0 || column < 0 || column >= titleCount() || parent.column() > 0)
            return {};
        Node* found = parent.isValid() ? Access::child(*nodeAt(parent), row) : top(row);
        return found ? createIndex(row, column, found) : QModelIndex();
    }
    /// Invalid for rows at the top.
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override
    {
        const Node* node = nodeAt(index);
        return node ? indexOf(Access::parent(*node)) : QModelIndex();
    }
    /// Only the first column has children.
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        if (parent.column() > 0)
            return 0;
        return parent.isValid() ? Access::childCount(*nodeAt(parent)) : topCount();
    }
    /// One for each title.
    [[nodiscard]] int columnCount(const QModelIndex& = QModelIndex()) const override { return titleCount(); }
    /// What cell() answers.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const final
    {
        qlumAssertGuiThread();
        const Node* node = nodeAt(index);
        return node ? cell(*node, index.column(), role) : QVariant();
    }

    /// Null for an invalid index.
    [[nodiscard]] Node* nodeAt(const QModelIndex& index) const
    {
        Q_ASSERT(!index.isValid() || index.model() == this);
        return static_cast<Node*>(index.internalPointer());
    }
    /// Invalid for null and for a hidden root.
    [[nodiscard]] QModelIndex indexOf(const Node* node, int column = 0) const
    {
        if (!node || (node == m_root && m_rootKind == Root::Hidden))
            return {};
        return createIndex(Access::row(*node), column, const_cast<Node*>(node));
    }

protected:
    /// Whether the root is a row itself or its children are the top rows.
    enum class Root { Hidden, Shown };

    /// A column for each title.
    explicit QlumTreeModel(QStringList titles, QObject* parent = nullptr)
        : QlumTitledModel(std::move(titles), parent)
    {
    }

    /// What a node shows in a column; an invalid QVariant for roles that it has nothing for.
    [[nodiscard]] virtual QVariant cell(const Node& node, int column, int role) const = 0;
    /// The rows without a parent; a tree that has several and no root overrides both.
    [[nodiscard]] virtual int topCount() const
    {
        return !m_root ? 0 : m_rootKind == Root::Shown ? 1 : Access::childCount(*m_root);
    }
    /// Null when out of range.
    [[nodiscard]] virtual Node* top(int row) const
    {
        if (!m_root || m_rootKind == Root::Hidden)
            return m_root ? Access::child(*m_root, row) : nullptr;
        return row == 0 ? m_root : nullptr;
    }

    /// The root stays the caller's. Within reset(), or before any view looks.
    void setRoot(Node* root, Root kind = Root::Hidden)
    {
        m_root = root;
        m_rootKind = kind;
    }
    /// Null when none was set.
    [[nodiscard]] Node* rootNode() const { return m_root; }
    /// The root for an invalid index.
    [[nodiscard]] Node* nodeOrRoot(const QModelIndex& index) const
    {
        return index.isValid() ? nodeAt(index) : m_root;
    }

    /// Whatever the function does to the tree, views forget what they know of it.
    template <typename Change>
    void reset(Change&& apply)
    {
        qlumAssertGuiThread();
        beginResetModel();
        apply();
        endResetModel();
    }
    /// The function makes so many children, the first at that row.
    template <typename Change>
    void insertChildren(Node& parent, int first, int count, Change&& apply)
    {
        qlumAssertGuiThread();
        if (count <= 0)
            return;
        beginInsertRows(indexOf(&parent), first, first + count - 1);
        apply();
        endInsertRows();
    }
    /// The function takes so many children away, from that row on.
    template <typename Change>
    void removeChildren(Node& parent, int first, int count, Change&& apply)
    {
        qlumAssertGuiThread();
        if (count <= 0)
            return;
        beginRemoveRows(indexOf(&parent), first, first + count - 1);
        apply();
        endRemoveRows();
    }
    /// The function brings nodes into another order and deletes none.
    template <typename Change>
    void rearrange(Change&& apply)
    {
        qlumAssertGuiThread();
        emit layoutAboutToBeChanged();
        apply();
        const QModelIndexList before = persistentIndexList();
        QModelIndexList after;
        after.reserve(before.size());
        for (const QModelIndex& index : before)
            after.append(indexOf(nodeAt(index), index.column()));
        changePersistentIndexList(before, after);
        emit layoutChanged();
    }
    /// All columns of the node look different now, or only these roles of them.
    void tellChanged(const Node& node, const QVector<int>& roles = {})
    {
        qlumAssertGuiThread();
        if (const QModelIndex first = indexOf(&node); first.isValid())
            emit dataChanged(first, indexOf(&node, titleCount() - 1), roles);
    }

    // ---- for nodes that are QlumTreeNode

    /// Before that row.
    void insertNodes(Node& parent, int before, std::vector<std::unique_ptr<Node>> added)
    {
        insertChildren(
            parent, before, static_cast<int>(added.size()),
            [&] { parent.insertChildren(before, std::move(added)); });
    }
    /// Deletes them.
    void removeNodes(Node& parent, int first, int count)
    {
        removeChildren(
            parent, first, count, [&] { parent.takeChildren(first, count); });
    }
    /// Before a row of the new parent, counted before the move. False when that would change nothing, or move
    /// a node below itself.
    bool moveNodes(Node& from, int first, int count, Node& to, int before)
    {
        qlumAssertGuiThread();
        if (count <= 0 || !beginMoveRows(indexOf(&from), first, first + count - 1, indexOf(&to), before))
            return false;
        auto moved = from.takeChildren(first, count);
        to.insertChildren(&from == &to && before > first ? before - count : before, std::move(moved));
        endMoveRows();
        return true;
    }

private:
    using Access = QlumTreeAccess<Node>;

    Node* m_root = nullptr;
    Root m_rootKind = Root::Hidden;
};
