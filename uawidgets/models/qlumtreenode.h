#pragma once
#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

/// Parent, row and children of a tree's node, for `class Node : public QlumTreeNode<Node>`. A node owns its
/// children and knows its row without searching. Change nodes that a model shows through the model.
template <typename Node>
class QlumTreeNode
{
public:
    QlumTreeNode() = default;
    QlumTreeNode(const QlumTreeNode&) = delete;
    QlumTreeNode& operator=(const QlumTreeNode&) = delete;

    /// Null for the root.
    [[nodiscard]] Node* parent() const { return m_parent; }
    /// Among the children of the parent; 0 for the root.
    [[nodiscard]] int row() const { return m_row; }
    /// Of this node alone, not of those below.
    [[nodiscard]] int childCount() const { return static_cast<int>(m_children.size()); }
    /// Null when out of range.
    [[nodiscard]] Node* child(int row) const
    {
        return row >= 0 && row < childCount() ? m_children[static_cast<std::size_t>(row)].get() : nullptr;
    }

    /// A new last child.
    Node& appendChild(std::unique_ptr<Node> child)
    {
        QlumTreeNode& base = *child;
        base.m_parent = static_cast<Node*>(this);
        base.m_row = childCount();
        m_children.push_back(std::move(child));
        return *m_children.back();
    }
    /// Before the child of that row, or at the end.
    void insertChildren(int before, std::vector<std::unique_ptr<Node>> added)
    {
        Q_ASSERT(before >= 0 && before <= childCount());
        for (const auto& child : added)
            static_cast<QlumTreeNode&>(*child).m_parent = static_cast<Node*>(this);
        m_children.insert(m_children.begin() + before, std::make_move_iterator(added.begin()),
                          std::make_move_iterator(added.end()));
        renumber(before);
    }
    /// The caller owns them from now on.
    std::vector<std::unique_ptr<Node>> takeChildren(int first, int count)
    {
        Q_ASSERT(first >= 0 && count >= 0 && first + count <= childCount());
        const auto begin = m_children.begin() + first;
        std::vector<std::unique_ptr<Node>> taken(std::make_move_iterator(begin),
                                                 std::make_move_iterator(begin + count));
        m_children.erase(begin, begin + count);
        for (const auto& child : taken) {
            QlumTreeNode& base = *child;
            base.m_parent = nullptr;
            base.m_row = 0;
        }
        renumber(first);
        return taken;
    }
    /// Deletes them.
    void clearChildren() { std::exchange(m_children, std::vector<std::unique_ptr<Node>>()).clear(); }
    /// Makes room for so many children in all; small portions do not copy each time.
    void reserveChildren(int count)
    {
        if (const auto wanted = static_cast<std::size_t>(count); wanted > m_children.capacity())
            m_children.reserve(std::max(wanted, m_children.capacity() * 2));
    }
    /// less compares two const Node&; equal ones keep their order.
    template <typename Less>
    void sortChildren(Less less)
    {
        std::stable_sort(m_children.begin(), m_children.end(),
                         [&less](const auto& left, const auto& right) { return less(*left, *right); });
        renumber(0);
    }
    /// The same for many: by key(const Node&), a number of 64 bits that tells most of them apart without a
    /// look at the nodes, and by less only where that is equal.
    template <typename Key, typename Less>
    void sortChildren(Key key, Less less)
    {
        std::vector<std::pair<std::uint64_t, std::unique_ptr<Node>>> keyed;
        keyed.reserve(m_children.size());
        for (std::unique_ptr<Node>& child : m_children) {
            const std::uint64_t number = key(std::as_const(*child));
            keyed.emplace_back(number, std::move(child));
        }
        std::stable_sort(keyed.begin(), keyed.end(), [&less](const auto& left, const auto& right) {
            return left.first != right.first ? left.first < right.first : less(*left.second, *right.second);
        });
        for (std::size_t i = 0; i < keyed.size(); ++i)
            m_children[i] = std::move(keyed[i].second);
        renumber(0);
    }

protected:
    ~QlumTreeNode() = default;

    /// By row.
    [[nodiscard]] const std::vector<std::unique_ptr<Node>>& children() const { return m_children; }

private:
    void renumber(int first)
    {
        for (int row = first; row < childCount(); ++row)
            static_cast<QlumTreeNode&>(*m_children[static_cast<std::size_t>(row)]).m_row = row;
    }

    Node* m_parent = nullptr;
    int m_row = 0;
    std::vector<std::unique_ptr<Node>> m_children;
};
