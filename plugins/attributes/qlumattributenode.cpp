#include <plugins/attributes/qlumattributenode.h>

#include <algorithm>
#include <utility>

QlumAttributeNode::QlumAttributeNode(const QString& name, const QString& value) : m_name(name), m_value(value)
{
}

QlumAttributeNode::~QlumAttributeNode() = default;

QlumAttributeNode& QlumAttributeNode::append(const QString& name, const QString& value, QlumValueStep step)
{
    auto child = std::make_unique<QlumAttributeNode>(name, value);
    child->m_parent = this;
    child->m_row = childCount();
    child->m_step = step;
    child->m_writable = m_writable;
    child->m_status = m_status;
    m_children.push_back(std::move(child));
    return *m_children.back();
}

void QlumAttributeNode::clearChildren()
{
    m_source.reset();
    m_children.clear();
}

QlumAttributeNode* QlumAttributeNode::child(int row) const
{
    return row >= 0 && row < childCount() ? m_children[static_cast<std::size_t>(row)].get() : nullptr;
}

void QlumAttributeNode::setStatus(OpcUa_StatusCode status)
{
    m_status = status;
    for (const auto& child : m_children)
        child->setStatus(status);
}

void QlumAttributeNode::setWritable(bool writable)
{
    m_writable = writable;
    for (const auto& child : m_children)
        child->setWritable(writable);
}

void QlumAttributeNode::fetchMore(int count)
{
    const int last = childCount() + std::min(count, pendingCount());
    for (int index = childCount(); index < last; ++index)
        m_source->appendRow(*this, index);
}
