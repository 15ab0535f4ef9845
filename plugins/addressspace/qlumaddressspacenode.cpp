#include <plugins/addressspace/qlumaddressspacenode.h>

#include <uawidgets/qlumnodelook.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace {
void translate(UaNodeId& id, const NamespaceMap& namespaces)
{
    const auto found = namespaces.constFind(id.namespaceIndex());
    if (found == namespaces.constEnd())
        id = UaNodeId();
    else if (*found != id.namespaceIndex())
        id.setNamespaceIndex(*found);
}
} // namespace

QlumAddressSpaceNode::QlumAddressSpaceNode(const QString& name, const UaNodeId& nodeId,
                                           const UaNodeId& typeDefinition, OpcUa_UInt32 nodeClass)
    : m_name(name), m_nodeId(nodeId), m_typeDefinition(typeDefinition), m_nodeClass(nodeClass)
{
}

QlumAddressSpaceNode::~QlumAddressSpaceNode() = default;

QIcon QlumAddressSpaceNode::icon() const
{
    return qlumNodeIcon(m_nodeClass, m_typeDefinition);
}

// Names of a folder often begin alike, so that what comes behind that tells them apart. A hundred thousand of
// them would hold up the window if each comparison had to go and see the names.
void QlumAddressSpaceNode::sortChildren()
{
    const int prefix = commonPrefix();
    const auto key = [prefix](const QlumAddressSpaceNode& node) {
        std::uint64_t number = 0;
        for (int i = prefix; i < prefix + 4; ++i)
            number = number << 16U | (i < node.m_name.size() ? node.m_name.at(i).unicode() : 0U);
        return number;
    };
    QlumTreeNode::sortChildren(
        key, [](const auto& left, const auto& right) { return left.m_name < right.m_name; });
}

// Of the children's names.
int QlumAddressSpaceNode::commonPrefix() const
{
    if (children().empty())
        return 0;
    const QString& first = children().front()->m_name;
    int length = first.size();
    for (const auto& child : children()) {
        const QString& name = child->m_name; // const: one that shares its text would be copied by begin()
        const int possible = std::min(length, name.size());
        length = static_cast<int>(std::mismatch(first.begin(), first.begin() + possible, name.begin()).first -
                                  first.begin());
    }
    return length;
}

void QlumAddressSpaceNode::sortChildren(const QCollator& collator)
{
    QlumTreeNode::sortChildren([&collator](const auto& left, const auto& right) {
        return collator.compare(left.m_name, right.m_name) < 0;
    });
}

QlumAddressSpaceNode* QlumAddressSpaceNode::findChild(const UaNodeId& nodeId) const
{
    if (!m_childMap)
        return nullptr;
    const auto found = m_childMap->find(nodeId);
    return found == m_childMap->end() ? nullptr : *found;
}

void QlumAddressSpaceNode::appendChild(std::unique_ptr<QlumAddressSpaceNode> child)
{
    if (!m_childMap)
        m_childMap = std::make_unique<ChildMap>();
    m_childMap->insert(child.get());
    QlumTreeNode::appendChild(std::move(child));
}

void QlumAddressSpaceNode::reserveChildren(int count)
{
    QlumTreeNode::reserveChildren(count);
    if (!m_childMap)
        m_childMap = std::make_unique<ChildMap>();
    const auto buckets = static_cast<double>(m_childMap->bucket_count());
    if (static_cast<double>(count) > buckets * m_childMap->max_load_factor())
        m_childMap->reserve(children().capacity());
}

void QlumAddressSpaceNode::clearChildren()
{
    m_childMap.reset();
    QlumTreeNode::clearChildren();
    m_browsed = false;
}

void QlumAddressSpaceNode::translateIds(const NamespaceMap& namespaces)
{
    translate(m_nodeId, namespaces);
    translate(m_typeDefinition, namespaces);
}

std::vector<int> QlumAddressSpaceNode::translateChildren(const NamespaceMap& namespaces)
{
    std::vector<int> lost;
    if (!m_childMap)
        return lost;
    m_childMap->clear(); // before the ids change by which it finds them
    for (const auto& child : children()) {
        child->translateIds(namespaces);
        if (child->nodeId().isNull() || !m_childMap->insert(child.get()).second)
            lost.push_back(child->row());
    }
    return lost;
}
