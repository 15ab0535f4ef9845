#include <app/project/qlumprojectmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/project/qlumprojectnodedocument.h>

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

QlumProjectModel::QlumProjectModel(QObject* parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<QlumProjectNode>(tr("Project"))),
      m_servers(new QlumProjectNode(tr("Servers"))), m_documents(new QlumProjectNode(tr("Documents")))
{
    m_root->appendChild(m_servers);
    m_root->appendChild(m_documents);
}

QlumProjectModel::~QlumProjectModel() = default;

QlumServerNode* QlumProjectModel::addServer(std::unique_ptr<QlumServerNode> server)
{
    QlumServerNode* node = server.release();
    m_registry.insert(node->serverId(), node->displayName(), node->session());
    append(m_servers, node);
    connect(node, &QlumServerNode::serverNodeChanged, this,
            [this](QlumProjectNode* changed) { sltNodeChanged(changed); });
    connect(node, &QlumServerNode::serverNodeChanged, this, &QlumProjectModel::serverNodeChanged);
    connect(node, &QlumServerNode::serverModelChanged, this, &QlumProjectModel::serverModelChanged);
    connect(node, &QlumServerNode::dataTypesLoaded, this, &QlumProjectModel::dataTypesLoaded);
    return node;
}

QlumProjectNodeDocument* QlumProjectModel::addDocument(std::unique_ptr<QlumProjectNodeDocument> document)
{
    QlumProjectNodeDocument* node = document.release();
    append(m_documents, node);
    connect(node, &QlumProjectNodeDocument::documentNodeChanged, this,
            [this](QlumProjectNode* changed) { sltNodeChanged(changed); });
    connect(node, &QlumProjectNodeDocument::documentNodeChanged, this,
            &QlumProjectModel::documentNodeChanged);
    return node;
}

void QlumProjectModel::removeServer(QlumServerNode* server)
{
    m_registry.remove(server->serverId());
    remove(m_servers, server);
}

void QlumProjectModel::removeDocument(QlumProjectNodeDocument* document)
{
    remove(m_documents, document);
}

void QlumProjectModel::append(QlumProjectNode* folder, QlumProjectNode* node)
{
    qlumAssertGuiThread();
    const int row = folder->childNodes().size();
    beginInsertRows(indexOf(folder), row, row);
    folder->appendChild(node);
    endInsertRows();
}

void QlumProjectModel::remove(QlumProjectNode* folder, QlumProjectNode* node)
{
    qlumAssertGuiThread();
    const int row = folder->childNodes().indexOf(node);
    if (row < 0)
        return;
    node->disconnect(this);
    beginRemoveRows(indexOf(folder), row, row);
    folder->takeChild(node);
    endRemoveRows();
    delete node;
}

void QlumProjectModel::sltNodeChanged(QlumProjectNode* node)
{
    qlumAssertGuiThread();
    if (const auto* server = qobject_cast<QlumServerNode*>(node))
        m_registry.rename(server->serverId(), server->displayName());
    const QModelIndex index = indexOf(node);
    if (index.isValid())
        emit dataChanged(index, index);
}

QlumServerNode* QlumProjectModel::findServer(unsigned int serverId) const
{
    for (QlumServerNode* server : servers())
        if (server->serverId() == serverId)
            return server;
    return nullptr;
}

QlumProjectNodeDocument* QlumProjectModel::findDocument(const QString& name) const
{
    for (QlumProjectNodeDocument* document : documents())
        if (document->displayName() == name)
            return document;
    return nullptr;
}

QlumProjectNodeDocument* QlumProjectModel::findDocument(const QWidget* widget) const
{
    for (QlumProjectNodeDocument* document : documents())
        if (document->widget() == widget)
            return document;
    return nullptr;
}

QList<QlumServerNode*> QlumProjectModel::servers() const
{
    QList<QlumServerNode*> result;
    for (QlumProjectNode* node : m_servers->childNodes())
        result.append(static_cast<QlumServerNode*>(node));
    return result;
}

QList<QlumProjectNodeDocument*> QlumProjectModel::documents() const
{
    QList<QlumProjectNodeDocument*> result;
    for (QlumProjectNode* node : m_documents->childNodes())
        result.append(static_cast<QlumProjectNodeDocument*>(node));
    return result;
}

QModelIndex QlumProjectModel::indexOf(const QlumProjectNode* node) const
{
    return node ? createIndex(node->row(), 0, const_cast<QlumProjectNode*>(node)) : QModelIndex();
}

QlumProjectNode* QlumProjectModel::nodeOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<QlumProjectNode*>(index.internalPointer()) : nullptr;
}

QModelIndex QlumProjectModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (!parent.isValid())
        return indexOf(m_root.get());
    return indexOf(nodeOf(parent)->childNodes().at(row));
}

QModelIndex QlumProjectModel::parent(const QModelIndex& index) const
{
    const QlumProjectNode* node = nodeOf(index);
    return node ? indexOf(node->parentNode()) : QModelIndex();
}

int QlumProjectModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return 1;
    return parent.column() == 0 ? nodeOf(parent)->childNodes().size() : 0;
}

int QlumProjectModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant QlumProjectModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    const QlumProjectNode* node = nodeOf(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return node->displayName();
    case Qt::DecorationRole:
        return node->icon();
    case Qt::ToolTipRole:
        return qlumPlainToolTip(node->displayName());
    default:
        return {};
    }
}

bool QlumProjectModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    qlumAssertGuiThread();
    QlumProjectNode* node = nodeOf(index);
    if (!node || !node->setData(value, role))
        return false;
    sltNodeChanged(node);
    return true;
}

Qt::ItemFlags QlumProjectModel::flags(const QModelIndex& index) const
{
    const QlumProjectNode* node = nodeOf(index);
    return node ? node->flags() : Qt::NoItemFlags;
}

QVariant QlumProjectModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Item");
    return {};
}
