#include <app/api/qlumprojectnode.h>

QlumProjectNode::QlumProjectNode(const QString& displayName) : m_displayName(displayName) {}

QlumProjectNode::~QlumProjectNode()
{
    qDeleteAll(m_children);
}

int QlumProjectNode::type() const
{
    return Folder;
}

Qt::ItemFlags QlumProjectNode::flags() const
{
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

bool QlumProjectNode::setData(const QVariant&, int)
{
    return false;
}

QIcon QlumProjectNode::icon() const
{
    return QIcon(QStringLiteral(":/images/folder.png"));
}

void QlumProjectNode::setDisplayName(const QString& name)
{
    m_displayName = name;
}

int QlumProjectNode::row() const
{
    return m_parent ? m_parent->m_children.indexOf(const_cast<QlumProjectNode*>(this)) : 0;
}

void QlumProjectNode::appendChild(QlumProjectNode* child)
{
    child->m_parent = this;
    m_children.append(child);
}

void QlumProjectNode::takeChild(QlumProjectNode* child)
{
    if (m_children.removeOne(child))
        child->m_parent = nullptr;
}
