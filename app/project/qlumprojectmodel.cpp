#include <app/project/qlumprojectmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumserverrole.h>
#include <app/project/qlumprojectnodedocument.h>

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

QlumProjectModel::QlumProjectModel(QObject* parent)
    : QlumTreeModel({tr("Item")}, parent), m_root(std::make_unique<QlumProjectNode>(tr("Project"))),
      m_servers(new QlumProjectNode(tr("Servers"))), m_documents(new QlumProjectNode(tr("Documents")))
{
    m_root->appendChild(m_servers);
    m_root->appendChild(m_documents);
    setRoot(m_root.get(), Root::Shown);
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
    connect(node, &QlumServerNode::nameChanged, this, [this, node] {
        sltNodeChanged(node);
        emit serverRenamed(node->serverId());
    });
    connect(node, &QlumServerNode::roleChanged, this, [this, node] {
        sltNodeChanged(node);
        emit serverRoleChanged(node->serverId());
    });
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
    insertChildren(
        *folder, folder->childNodes().size(), 1, [&] { folder->appendChild(node); });
}

void QlumProjectModel::remove(QlumProjectNode* folder, QlumProjectNode* node)
{
    const int row = folder->childNodes().indexOf(node);
    if (row < 0)
        return;
    node->disconnect(this);
    removeChildren(*folder, row, 1, [&] { folder->takeChild(node); });
    delete node;
}

void QlumProjectModel::sltNodeChanged(QlumProjectNode* node)
{
    qlumAssertGuiThread();
    if (const auto* server = qobject_cast<QlumServerNode*>(node))
        m_registry.rename(server->serverId(), server->displayName());
    tellChanged(*node);
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

namespace {
QVariant roleCell(const QlumProjectNode& node, int role)
{
    const auto* server = qobject_cast<const QlumServerNode*>(&node);
    if (!server)
        return {};
    if (role == QlumProjectModel::serverRole)
        return static_cast<int>(server->role());
    return QlumProjectModel::tr("Set to %1").arg(qlumRoleName(server->role()));
}
} // namespace

QVariant QlumProjectModel::cell(const QlumProjectNode& node, int, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return node.displayName();
    case Qt::DecorationRole:
        return node.icon();
    case Qt::ToolTipRole:
        return qlumPlainToolTip(node.toolTip());
    case Qt::AccessibleDescriptionRole:
    case serverRole:
        return roleCell(node, role);
    default:
        return {};
    }
}

bool QlumProjectModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    qlumAssertGuiThread();
    QlumProjectNode* node = nodeAt(index);
    if (!node || !node->setData(value, role))
        return false;
    sltNodeChanged(node);
    return true;
}

Qt::ItemFlags QlumProjectModel::flags(const QModelIndex& index) const
{
    const QlumProjectNode* node = nodeAt(index);
    return node ? node->flags() : Qt::NoItemFlags;
}
