#include <plugins/events/qlumeventtypemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uanodeid.h>

#include <QIcon>

#include <algorithm>
#include <map>
#include <set>

QlumEventTypeModel::QlumEventTypeModel(QObject* parent)
    : QlumTreeModel({tr("Event fields"), tr("Path")}, parent)
{
}

QlumEventTypeModel::~QlumEventTypeModel() = default;

void QlumEventTypeModel::setTree(const QlumEventTypes::Tree& tree)
{
    reset([&] {
        m_tree = tree ? tree->clone() : nullptr;
        setRoot(m_tree.get());
        if (m_tree)
            m_tree->select(m_clauses);
    });
}

void QlumEventTypeModel::setClauses(const QlumSelectClauses& clauses)
{
    m_clauses = clauses;
    if (m_tree) {
        m_tree->select(m_clauses);
        tellAll({});
    }
}

std::vector<UaNodeId> QlumEventTypeModel::eventTypes() const
{
    std::vector<UaNodeId> types;
    if (m_tree)
        m_tree->visit([&types](const QlumEventNodeTypeTree& node) {
            if (node.kind() == QlumEventNodeTypeTree::EventType && node.parent() &&
                node.checkState() != Qt::Unchecked)
                types.push_back(node.nodeId());
        });
    return types;
}

// ---- ticks

Qt::ItemFlags QlumEventTypeModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags standard = QlumTreeModel::flags(index);
    return index.isValid() && index.column() == 0 ? standard | Qt::ItemIsUserCheckable : standard;
}

bool QlumEventTypeModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    QlumEventNodeTypeTree* const node = nodeAt(index);
    if (!node || role != Qt::CheckStateRole)
        return false;
    const Qt::CheckState state = value.toInt() == Qt::Checked ? Qt::Checked : Qt::Unchecked;
    std::set<BrowsePathList> paths;
    node->visit([&](const QlumEventNodeTypeTree& one) {
        if (one.isSelectable() && one.isSelected() != (state == Qt::Checked))
            paths.insert(one.path());
    });
    node->recursiveSetCheckState(state);
    m_tree->visit([&](QlumEventNodeTypeTree& one) {
        if (one.isSelectable() && paths.count(one.path()) != 0)
            one.setSelected(state == Qt::Checked);
    });
    m_tree->recursiveUpdateCheckState();
    takeTicks();
    tellAll({});
    emit clausesEdited();
    return true;
}

void QlumEventTypeModel::takeTicks()
{
    std::map<BrowsePathList, bool> known; // whether ticked
    QlumSelectClauses ticked;
    m_tree->visit([&](const QlumEventNodeTypeTree& node) {
        if (!node.isSelectable())
            return;
        if (known.emplace(node.path(), node.isSelected()).second && node.isSelected())
            ticked.push_back(
                {node.eventType(), node.path(), node.kind() == QlumEventNodeTypeTree::Component});
    });
    std::erase_if(m_clauses, [&](const QlumSelectClause& clause) {
        const auto found = known.find(clause.path);
        return found != known.end() && !found->second;
    });
    for (const QlumSelectClause& clause : ticked)
        if (std::none_of(m_clauses.begin(), m_clauses.end(),
                         [&](const QlumSelectClause& one) { return one.path == clause.path; }))
            m_clauses.push_back(clause);
}

void QlumEventTypeModel::tellAll(const QModelIndex& parent)
{
    const int count = rowCount(parent);
    if (count == 0)
        return;
    emit dataChanged(index(0, 0, parent), index(count - 1, 0, parent), {Qt::CheckStateRole});
    for (int row = 0; row < count; ++row)
        tellAll(index(row, 0, parent));
}

QVariant QlumEventTypeModel::cell(const QlumEventNodeTypeTree& node, int column, int role) const
{
    if (column == 0 && role == Qt::CheckStateRole)
        return node.checkState();
    if (column == 0 && role == Qt::DecorationRole)
        return QIcon(node.iconName());
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(toQString(node.nodeId().toXmlString()));
    if (role != Qt::DisplayRole)
        return {};
    return qlumSingleLine(qlumCutText(column == 0 ? node.name() : node.path().toString()));
}
