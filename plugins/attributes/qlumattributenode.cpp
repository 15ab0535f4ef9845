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
    child->m_step = step;
    child->m_writable = m_writable;
    child->m_status = m_status;
    return appendChild(std::move(child));
}

void QlumAttributeNode::clearChildren()
{
    m_source.reset();
    QlumTreeNode::clearChildren();
}

void QlumAttributeNode::setStatus(OpcUa_StatusCode status)
{
    m_status = status;
    for (const auto& child : children())
        child->setStatus(status);
}

void QlumAttributeNode::setWritable(bool writable)
{
    m_writable = writable;
    for (const auto& child : children())
        child->setWritable(writable);
}

void QlumAttributeNode::fetchMore(int count)
{
    const int last = childCount() + std::min(count, pendingCount());
    for (int index = childCount(); index < last; ++index)
        m_source->appendRow(*this, index);
}
