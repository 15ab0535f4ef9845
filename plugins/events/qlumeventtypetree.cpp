#include <plugins/events/qlumeventtypetree.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>

#include <utility>

QlumEventNodeTypeTree::QlumEventNodeTypeTree(Kind kind, const UaNodeId& nodeId,
                                             const UaQualifiedName& browseName, BrowsePathList path)
    : m_kind(kind), m_nodeId(nodeId), m_browseName(browseName), m_path(std::move(path))
{
}

UaNodeId QlumEventNodeTypeTree::eventType() const
{
    const QlumEventNodeTypeTree* node = this;
    while (node->m_kind != EventType && node->parent())
        node = node->parent();
    return node->m_nodeId;
}

QString QlumEventNodeTypeTree::name() const
{
    const bool isRoot = parent() && !parent()->parent() && m_kind == EventType;
    if (isRoot && m_nodeId.isNumeric(OpcUaId_BaseEventType))
        return QStringLiteral("SimpleEvents");
    if (m_kind == EventField && m_path.isEmpty())
        return QStringLiteral("ConditionId");
    return toQString(m_browseName.toString());
}

QString QlumEventNodeTypeTree::iconName() const
{
    switch (m_kind) {
    case EventType:
        return QStringLiteral(":/images/objecttype.png");
    case EventField:
        return QStringLiteral(":/images/property.png");
    default:
        return QStringLiteral(":/images/object.png");
    }
}

void QlumEventNodeTypeTree::updateCheckState()
{
    int checked = 0;
    int unchecked = 0;
    const auto count = [&](Qt::CheckState state) {
        checked += state != Qt::Unchecked ? 1 : 0;
        unchecked += state != Qt::Checked ? 1 : 0;
    };
    // an object is mostly there for the fields in it, so that only a ticked one counts
    if (m_kind == EventField || (m_kind == Component && (m_isSelected || childCount() == 0)))
        count(m_isSelected ? Qt::Checked : Qt::Unchecked);
    for (const auto& child : children())
        count(child->m_checkState);
    if (checked == 0)
        m_checkState = Qt::Unchecked;
    else
        m_checkState = unchecked == 0 ? Qt::Checked : Qt::PartiallyChecked;
}

void QlumEventNodeTypeTree::recursiveUpdateCheckState()
{
    for (const auto& child : children())
        child->recursiveUpdateCheckState();
    updateCheckState();
}

void QlumEventNodeTypeTree::recursiveSetCheckState(Qt::CheckState state)
{
    m_isSelected = isSelectable() && state == Qt::Checked;
    for (const auto& child : children())
        child->recursiveSetCheckState(state);
    updateCheckState();
}

void QlumEventNodeTypeTree::select(const QlumSelectClauses& clauses)
{
    std::set<BrowsePathList> paths;
    for (const QlumSelectClause& clause : clauses)
        paths.insert(clause.path);
    visit([&paths](QlumEventNodeTypeTree& node) {
        node.m_isSelected = node.isSelectable() && paths.count(node.m_path) != 0;
    });
    recursiveUpdateCheckState();
}

std::unique_ptr<QlumEventNodeTypeTree> QlumEventNodeTypeTree::clone() const
{
    auto copy = std::make_unique<QlumEventNodeTypeTree>(m_kind, m_nodeId, m_browseName, m_path);
    copy->m_checkState = m_checkState;
    copy->m_isSelected = m_isSelected;
    copy->reserveChildren(childCount());
    for (const auto& child : children())
        copy->appendChild(child->clone());
    return copy;
}
