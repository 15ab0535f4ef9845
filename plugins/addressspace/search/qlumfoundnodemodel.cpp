#include <plugins/addressspace/search/qlumfoundnodemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <uawidgets/qlumnodelook.h>

#include <QGuiApplication>
#include <QPalette>
#include <QString>

#include <utility>

QlumFoundNodeModel::QlumFoundNodeModel(QObject* parent)
    : QlumTableModel({tr("Name"), tr("Node Id"), tr("Class"), tr("Type"), tr("Path"), tr("Description"),
                      tr("Data Type"), tr("Unit"), tr("Access")},
                     parent)
{
}

void QlumFoundNodeModel::begin(unsigned int serverId, std::shared_ptr<const QlumNodeIndex> index)
{
    reset();
    m_serverId = serverId;
    m_index = std::move(index);
}

void QlumFoundNodeModel::add(const QlumSearchHits& nodes)
{
    append(nodes);
}

void QlumFoundNodeModel::setGrey(bool grey)
{
    if (std::exchange(m_isGrey, grey) != grey)
        for (int column = 0; column < columnCount(); ++column)
            tellColumnChanged(column, {Qt::ForegroundRole});
}

QlumToolNode QlumFoundNodeModel::node(const QModelIndex& index) const
{
    const QlumNodeIndex::Copy copy = m_index->copy(rowAt(index).number);
    QlumToolNode node{m_serverId, copy.id, static_cast<OpcUa_NodeClass>(copy.nodeClass), {}, copy.name};
    if (copy.parent != QlumNodeIndex::none)
        node.parentId = m_index->id(copy.parent);
    return node;
}

Qt::ItemFlags QlumFoundNodeModel::flags(const QModelIndex& index) const
{
    return QlumTableModel::flags(index) | (index.isValid() ? Qt::ItemIsDragEnabled : Qt::NoItemFlags);
}

QStringList QlumFoundNodeModel::mimeTypes() const
{
    return {qlumNodeMimeType()};
}

QMimeData* QlumFoundNodeModel::mimeData(const QModelIndexList& indexes) const
{
    QlumDraggedNodes dragged;
    dragged.serverId = m_serverId;
    for (const QModelIndex& index : indexes)
        if (index.isValid() && index.column() == 0) { // a row has many cells
            QlumToolNode found = node(index);
            dragged.nodes.push_back({std::move(found.nodeId), std::move(found.name)});
        }
    auto* mimeData = new QMimeData;
    mimeData->setData(qlumNodeMimeType(), qlumEncodeNodes(dragged, static_cast<int>(dragged.nodes.size())));
    return mimeData;
}

QVariant QlumFoundNodeModel::cell(const QlumSearchHit& row, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumSingleLine(qlumCutText(text(row, column), 1024));
    case Qt::ToolTipRole:
        return qlumPlainToolTip(qlumCutText(text(row, column), 1024));
    case Qt::DecorationRole:
        if (column == Name) {
            const QlumNodeIndex::Copy copy = m_index->copy(row.number);
            return qlumNodeIcon(copy.nodeClass, copy.typeDefinition);
        }
        return {};
    case Qt::ForegroundRole:
        return m_isGrey ? QVariant(QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text))
                        : QVariant();
    default:
        return {};
    }
}

QString QlumFoundNodeModel::text(const QlumSearchHit& row, int column) const
{
    if (column == Path)
        return m_index->path(row.number);
    if (column >= Description) {
        if (!row.details)
            return {};
        return column == Description ? row.details->description
               : column == DataType  ? row.details->dataType
               : column == Unit      ? row.details->unit
                                     : row.details->access;
    }
    const QlumNodeIndex::Copy copy = m_index->copy(row.number);
    switch (column) {
    case Name:
        return copy.name;
    case NodeId:
        return toQString(copy.id.toXmlString());
    case NodeClass:
        return qlumNodeClassText(static_cast<OpcUa_Int32>(copy.nodeClass));
    default:
        return copy.typeName.isEmpty() && !copy.typeDefinition.isNull()
                   ? toQString(copy.typeDefinition.toXmlString())
                   : copy.typeName;
    }
}
