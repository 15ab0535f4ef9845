#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrendnodes.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QColor>
#include <QMimeData>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <deque>
#include <span>
#include <vector>

/// The variables of a trend view. Nodes are dropped on it; what their servers say of them comes by
/// takeNodes() then.
class QlumTrendItemModel : public QlumTableModel<QlumTrendItem>
{
    Q_OBJECT
public:
    /// Its columns.
    enum Column { Server, NodeId, Color, History };

    /// Application and provider must outlive the model.
    QlumTrendItemModel(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                       QObject* parent = nullptr);

    /// Asks for nodes to be looked at. False without a session.
    bool wantNodes(unsigned int serverId, const std::vector<UaNodeId>& ids);
    /// Appends those that have a history and are not there yet; the log says why others do not.
    void takeNodes(unsigned int serverId, const std::vector<QlumTrendNode>& nodes);
    /// Appends an item as it was kept; its key is given by the model.
    void restore(QlumTrendItem item);
    /// Removes rows, from a first one on.
    void removeItems(int first, int count) { remove(first, count); }
    /// Null when there is no item with that key. Valid until rows change.
    [[nodiscard]] const QlumTrendItem* find(int key) const;
    /// What was read of an item, or why nothing was.
    void setHistory(int key, const QString& history, QlumStatusLevel level);
    /// A node is called otherwise now, or is lost.
    void setNode(int key, const UaNodeId& nodeId, bool isLost);
    /// How the curve of an item is drawn.
    void setStyle(int key, bool stepped, int width);
    /// The server's name may be another one.
    void tellServerNames() { tellColumnChanged(Server); }

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override; ///< colours can be edited
    bool setData(const QModelIndex& index, const QVariant& value, int role) override; ///< a colour
    [[nodiscard]] QStringList mimeTypes() const override;                             ///< nodes
    [[nodiscard]] Qt::DropActions supportedDropActions() const override; ///< as the tree drags them
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override; ///< true when the nodes will be looked at

signals:
    /// Somebody shall read what the server says of them, and hand it to takeNodes().
    void nodesWanted(unsigned int serverId, const std::vector<UaNodeId>& ids);
    /// A node that is new, with what its server said.
    void itemAdded(int key, const QlumTrendNode& node);
    /// The user chose another colour.
    void colorChanged(int key);

protected:
    [[nodiscard]] QVariant cell(const QlumTrendItem& item, int column, int role) const override;

private:
    [[nodiscard]] bool has(unsigned int serverId, const UaNodeId& nodeId) const;
    [[nodiscard]] QColor nextColor();
    [[nodiscard]] int rowOf(int key) const;

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    int m_lastKey = 0;
    int m_nextColor = 0;
};
