#pragma once
#include <plugins/events/qlumbrowsepath.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QString>

#include <memory>
#include <set>
#include <vector>

/// The event types of a server with their fields, as a tree in which the user ticks fields. The node above
/// the three roots stands for nothing.
class QlumEventNodeTypeTree : public QlumTreeNode<QlumEventNodeTypeTree>
{
public:
    /// Fixed numbers.
    enum Kind {
        EventType = 1,  ///< below it its fields and its subtypes
        EventField = 2, ///< a variable, or a condition itself
        Component = 3   ///< an object with fields of its own
    };

    QlumEventNodeTypeTree() = default;
    /// A root, or what stands below one; the path is that from the event type.
    QlumEventNodeTypeTree(Kind kind, const UaNodeId& nodeId, const UaQualifiedName& browseName,
                          BrowsePathList path = {});

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const UaNodeId& nodeId() const { return m_nodeId; }
    [[nodiscard]] const UaQualifiedName& browseName() const { return m_browseName; }
    /// From the event type on; empty for types, and for the condition itself.
    [[nodiscard]] const BrowsePathList& path() const { return m_path; }
    /// Of whose fields this is one; the node's own for a type.
    [[nodiscard]] UaNodeId eventType() const;
    /// What the user sees.
    [[nodiscard]] QString name() const;
    /// One of the pictures of the application.
    [[nodiscard]] QString iconName() const;
    /// Whether the node can be a select clause.
    [[nodiscard]] bool isSelectable() const { return m_kind != EventType; }

    [[nodiscard]] Qt::CheckState checkState() const { return m_checkState; }
    /// Whether the node's own value is selected, whatever is below it.
    [[nodiscard]] bool isSelected() const { return m_isSelected; }
    /// Of the node alone; states are then out of date until updateCheckState().
    void setSelected(bool isSelected) { m_isSelected = isSelected; }
    /// Derives the state from the children, and from the node's own when it can be selected.
    void updateCheckState();
    /// The same for everything below first.
    void recursiveUpdateCheckState();
    /// Sets a whole subtree.
    void recursiveSetCheckState(Qt::CheckState state);

    /// Ticks what the clauses name, at every type that has the path, and nothing else.
    void select(const QlumSelectClauses& clauses);
    /// Calls for this node and all below it, from the top.
    template <typename Visit>
    void visit(Visit&& each)
    {
        each(*this);
        for (const auto& child : children())
            child->visit(each);
    }
    /// The same for nodes that stay as they are.
    template <typename Visit>
    void visit(Visit&& each) const
    {
        each(*this);
        for (const auto& child : children())
            const_cast<const QlumEventNodeTypeTree&>(*child).visit(each);
    }
    /// All of it, without children in common.
    [[nodiscard]] std::unique_ptr<QlumEventNodeTypeTree> clone() const;

private:
    Kind m_kind = EventType;
    UaNodeId m_nodeId;
    UaQualifiedName m_browseName;
    BrowsePathList m_path;
    Qt::CheckState m_checkState = Qt::Unchecked;
    bool m_isSelected = false;
};
