#pragma once
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlumeventtypetree.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QVariant>

#include <memory>
#include <vector>

/// The field tree of a server, with the ticks of one notifier.
class QlumEventTypeModel : public QlumTreeModel<QlumEventNodeTypeTree>
{
    Q_OBJECT
public:
    explicit QlumEventTypeModel(QObject* parent = nullptr);
    ~QlumEventTypeModel() override;

    /// Shows a copy of the tree; null for none.
    void setTree(const QlumEventTypes::Tree& tree);
    /// Ticks these and nothing else.
    void setClauses(const QlumSelectClauses& clauses);
    /// What is ticked: what was set and is not in this server's tree, what was ticked before, in that order,
    /// and then what was added.
    [[nodiscard]] const QlumSelectClauses& clauses() const { return m_clauses; }
    /// The types at which something is ticked.
    [[nodiscard]] std::vector<UaNodeId> eventTypes() const;
    [[nodiscard]] bool isEmpty() const { return !m_tree; }

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// The check state alone; that of a node is that of all below it, and of all nodes of the same path.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// By the user.
    void clausesEdited();

protected:
    QVariant cell(const QlumEventNodeTypeTree& node, int column, int role) const override;

private:
    void takeTicks();
    void tellAll(const QModelIndex& parent);

    std::unique_ptr<QlumEventNodeTypeTree> m_tree;
    QlumSelectClauses m_clauses;
};
