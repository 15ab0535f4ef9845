#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QCollator>
#include <QIcon>
#include <QString>

#include <memory>
#include <unordered_set>
#include <vector>

/// One node of the address space tree; owns its children.
class QlumAddressSpaceNode : public QlumTreeNode<QlumAddressSpaceNode>
{
public:
    QlumAddressSpaceNode(const QString& name, const UaNodeId& nodeId, const UaNodeId& typeDefinition,
                         OpcUa_UInt32 nodeClass);
    virtual ~QlumAddressSpaceNode();

    /// By node class and, for objects and variables, by type definition.
    [[nodiscard]] virtual QIcon icon() const;
    [[nodiscard]] virtual int type() const { return 0; }
    /// By name, in the order of UTF-16 code units.
    virtual void sortChildren();
    /// By name, in the order of the collator.
    void sortChildren(const QCollator& collator);

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const UaNodeId& nodeId() const { return m_nodeId; }
    [[nodiscard]] const UaNodeId& typeDefinition() const { return m_typeDefinition; }
    [[nodiscard]] OpcUa_UInt32 nodeClass() const { return m_nodeClass; }
    /// Classes of the children to browse for; 0 means all.
    [[nodiscard]] OpcUa_UInt32 childNodeClassMask() const { return m_childNodeClassMask; }

    /// Children were fetched, or never will be.
    [[nodiscard]] bool isBrowsed() const { return m_browsed; }
    void setBrowsed(bool browsed) { m_browsed = browsed; }
    [[nodiscard]] bool hasChildren() const { return childCount() > 0; }

    /// Null when the node has no such child.
    [[nodiscard]] QlumAddressSpaceNode* findChild(const UaNodeId& nodeId) const;
    /// The child's node id must be new here.
    void appendChild(std::unique_ptr<QlumAddressSpaceNode> child);
    void reserveChildren(int count);
    /// Deletes them and makes the node unbrowsed.
    void clearChildren();
    /// Gives the node's own ids other namespace indexes; ids whose namespace is not in the map become null.
    void translateIds(const NamespaceMap& namespaces);
    /// The same for all children; answers the rows of those that are lost by it, in ascending order.
    std::vector<int> translateChildren(const NamespaceMap& namespaces);

    /// Hash and equality of nodes by their node id, so that sets find them without keeping the id twice.
    struct ById
    {
        using is_transparent = void;
        std::size_t operator()(const UaNodeId& id) const noexcept { return id.hash(); }
        std::size_t operator()(const QlumAddressSpaceNode* node) const noexcept
        {
            return node->nodeId().hash();
        }
        bool operator()(const QlumAddressSpaceNode* left, const QlumAddressSpaceNode* right) const noexcept
        {
            return left->nodeId() == right->nodeId();
        }
        bool operator()(const UaNodeId& left, const QlumAddressSpaceNode* right) const noexcept
        {
            return left == right->nodeId();
        }
        bool operator()(const QlumAddressSpaceNode* left, const UaNodeId& right) const noexcept
        {
            return left->nodeId() == right;
        }
    };

private:
    [[nodiscard]] int commonPrefix() const;

    using ChildMap = std::unordered_set<QlumAddressSpaceNode*, ById, ById>;

    QString m_name;
    UaNodeId m_nodeId;
    UaNodeId m_typeDefinition;
    OpcUa_UInt32 m_nodeClass;
    OpcUa_UInt32 m_childNodeClassMask = 0;
    bool m_browsed : 1 = false;
    std::unique_ptr<ChildMap> m_childMap; ///< most nodes are leaves
};
