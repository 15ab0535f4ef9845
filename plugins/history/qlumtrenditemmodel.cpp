#include <plugins/history/qlumtrenditemmodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrendnodes.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QApplication>
#include <QColor>
#include <QMimeData>
#include <QModelIndex>
#include <QPalette>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

QlumTrendItemModel::QlumTrendItemModel(QlumApplicationInterface& application,
                                       QlumSessionServicesProvider services, QObject* parent)
    : QlumTableModel({tr("Server"), tr("Node Id"), tr("Color"), tr("History")}, parent),
      m_application(application), m_services(std::move(services))
{
}

// ---- what is shown

QVariant QlumTrendItemModel::cell(const QlumTrendItem& item, int column, int role) const
{
    const QString node = toQString(item.nodeId.toXmlString());
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(column == History ? item.history
                                : item.history.isEmpty()
                                    ? tr("%1 (%2)").arg(item.name, node)
                                    : tr("%1 (%2): %3").arg(item.name, node, item.history));
    switch (column) {
    case Server: // with a sign of what is in the last column, which small windows do not show
        if (role == Qt::DecorationRole)
            return qlumStatusCell(item.level, role);
        return role == Qt::DisplayRole ? QVariant(qlumSingleLine(m_application.serverName(item.serverId)))
                                       : QVariant();
    case NodeId:
        return role == Qt::DisplayRole ? QVariant(qlumSingleLine(node)) : QVariant();
    case Color:
        if (role == Qt::DecorationRole)
            return QlumPlotColors(QApplication::palette()).adapted(item.color);
        return role == Qt::DisplayRole || role == Qt::EditRole ? QVariant(item.color.name().toUpper())
                                                               : QVariant();
    case History:
        return role == Qt::DisplayRole ? QVariant(item.history) : qlumStatusCell(item.level, role);
    default:
        return {};
    }
}

Qt::ItemFlags QlumTrendItemModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QlumTableModel::flags(index) | Qt::ItemIsDropEnabled;
    return index.column() == Color ? flags | Qt::ItemIsEditable : flags;
}

bool QlumTrendItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const QColor color(value.toString());
    if (!index.isValid() || index.column() != Color || role != Qt::EditRole || !color.isValid())
        return false;
    change(index.row(), [&color](QlumTrendItem& item) { item.color = color; });
    emit colorChanged(rowAt(index).key);
    return true;
}

// ---- nodes that come

QStringList QlumTrendItemModel::mimeTypes() const
{
    return {QStringLiteral("application/UaNodeInformation")};
}

Qt::DropActions QlumTrendItemModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

bool QlumTrendItemModel::dropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&)
{
    unsigned int serverId = qlumNoServer, count = 0;
    UaNodeId* nodes = nullptr;
    if (!m_application.nodeIdsFromMimeData(data, &serverId, &count, &nodes))
        return false;
    const std::unique_ptr<UaNodeId[]> owned(nodes);
    return wantNodes(serverId, {nodes, nodes + count});
}

bool QlumTrendItemModel::wantNodes(unsigned int serverId, const std::vector<UaNodeId>& ids)
{
    const std::shared_ptr<QlumSessionServices> session = m_services(serverId);
    if (!session || !session->isConnected()) {
        QlumLog(qlumHistoryLogSource(), serverId).error(tr("Session object invalid."));
        return false;
    }
    emit nodesWanted(serverId, ids);
    return true;
}

bool QlumTrendItemModel::has(unsigned int serverId, const UaNodeId& nodeId) const
{
    return std::any_of(
        rows().begin(), rows().end(),
        [&](const QlumTrendItem& item) { return item.serverId == serverId && item.nodeId == nodeId; });
}

void QlumTrendItemModel::takeNodes(unsigned int serverId, const std::vector<QlumTrendNode>& nodes)
{
    const QlumLog log(qlumHistoryLogSource(), serverId);
    for (const QlumTrendNode& node : nodes) {
        if (!node.refused.isEmpty()) {
            log.error(node.refused);
            continue;
        }
        if (has(serverId, node.nodeId)) {
            log.error(tr("Added item already showing in current HistoryTrendView."));
            continue;
        }
        for (const QString& fault : node.faults)
            log.error(fault);
        QlumTrendItem item;
        item.key = ++m_lastKey;
        item.serverId = serverId;
        item.nodeId = node.nodeId;
        item.name = node.name;
        item.color = nextColor();
        item.stepped = node.isStepped;
        append(std::vector{std::move(item)});
        emit itemAdded(m_lastKey, node);
    }
}

void QlumTrendItemModel::restore(QlumTrendItem item)
{
    item.key = ++m_lastKey;
    if (!item.color.isValid())
        item.color = nextColor();
    QlumTrendNode node;
    node.nodeId = item.nodeId;
    node.name = item.name;
    node.isStepped = item.stepped;
    append(std::vector{std::move(item)});
    emit itemAdded(m_lastKey, node);
}

// The first one that no item has; when all are taken, one after the other.
QColor QlumTrendItemModel::nextColor()
{
    const QlumPlotColors colors((QPalette(Qt::white)));
    const auto isTaken = [this](const QColor& color) {
        return std::any_of(rows().begin(), rows().end(),
                           [&color](const QlumTrendItem& item) { return item.color == color; });
    };
    for (int number = 0; number < QlumPlotColors::curveCount(); ++number)
        if (!isTaken(colors.curve(number)))
            return colors.curve(number);
    return colors.curve(m_nextColor++);
}

// ---- items that are there

int QlumTrendItemModel::rowOf(int key) const
{
    const auto found = std::find_if(rows().begin(), rows().end(),
                                    [key](const QlumTrendItem& item) { return item.key == key; });
    return found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
}

const QlumTrendItem* QlumTrendItemModel::find(int key) const
{
    const int row = rowOf(key);
    return row < 0 ? nullptr : &rowAt(row);
}

void QlumTrendItemModel::setHistory(int key, const QString& history, QlumStatusLevel level)
{
    const int row = rowOf(key);
    if (row >= 0)
        change(row, [&](QlumTrendItem& item) {
            item.history = history;
            item.level = level;
        });
}

void QlumTrendItemModel::setNode(int key, const UaNodeId& nodeId, bool isLost)
{
    const int row = rowOf(key);
    if (row >= 0)
        change(row, [&](QlumTrendItem& item) {
            item.nodeId = nodeId;
            item.isLost = isLost;
        });
}

void QlumTrendItemModel::setStyle(int key, bool stepped, int width)
{
    const int row = rowOf(key);
    if (row >= 0)
        change(row, [&](QlumTrendItem& item) {
            item.stepped = stepped;
            item.width = width;
        });
}
