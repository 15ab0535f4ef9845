#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumprojectnode.h>
#include <plugins/addressspace/qlumaddressspacemodel_p.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QApplication>
#include <QComboBox>
#include <QFont>
#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QPersistentModelIndex>
#include <QSignalBlocker>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace {
constexpr OpcUa_UInt32 rootFolder = 84;
constexpr OpcUa_UInt32 folderType = 61;
constexpr unsigned char referenceAdded = 4; // verbs of a model change, OPC 10000-3, 9.32.3
constexpr unsigned char referenceDeleted = 8;
constexpr int nextSlice = 30; // ms
} // namespace

QlumAddressSpaceModel::QlumAddressSpaceModel(QlumServerNode* server, QComboBox* highlightCombo,
                                             QObject* parent, std::shared_ptr<QlumSessionServices> services)
    : QlumTreeModel({tr("Item")}, parent), m_server(server), m_highlightCombo(highlightCombo),
      m_services(services ? std::move(services) : qlumApplicationServices()(server->serverId())),
      m_root(std::make_unique<QlumAddressSpaceNode>(tr("Root"), UaNodeId(rootFolder), UaNodeId(folderType),
                                                    OpcUa_NodeClass_Object)),
      m_serverId(server->serverId()), m_log(tr("AddressSpaceModel"), m_serverId),
      m_caller(m_services, m_serverId), m_timer(new QTimer(this))
{
    if (m_highlightCombo)
        connectHighlighting();
    start();
}

QlumAddressSpaceModel::QlumAddressSpaceModel(QlumServerNode* server, const UaNodeId* startNode,
                                             QObject* parent, std::shared_ptr<QlumSessionServices> services)
    : QlumTreeModel({tr("Item")}, parent), m_server(server),
      m_services(services ? std::move(services) : qlumApplicationServices()(server->serverId())),
      m_root(std::make_unique<QlumAddressSpaceNode>(server->typeName(startNode, false), *startNode,
                                                    UaNodeId(), OpcUa_NodeClass_Unspecified)),
      m_serverId(server->serverId()), m_log(tr("AddressSpaceModel"), m_serverId),
      m_caller(m_services, m_serverId), m_timer(new QTimer(this))
{
    start();
}

void QlumAddressSpaceModel::start()
{
    setRoot(m_root.get(), Root::Shown);
    m_timer->setSingleShot(true);
    connect(
        m_timer, &QTimer::timeout, this,
        [this] {
            if (!putOff([this] { m_timer->start(0); }))
                runTasks(nextSlice);
        });
    connect(m_server, &QlumServerNode::serverNodeChanged, this,
            [this](QlumProjectNode*, QWidget*, QlumConnectionStatus, unsigned int,
                   const NamespaceMap& namespaces) { followNamespaces(namespaces); });
    browseNode(m_root.get());
}

QlumAddressSpaceModel::~QlumAddressSpaceModel()
{
    dropTasks(m_root.get());
}

// ---- item model

QModelIndex QlumAddressSpaceModel::index(int row, int column, const QModelIndex& parent) const
{
    // The root row stays hidden until it has something to show.
    if (!parent.isValid() && m_root->childCount() == 0)
        return {};
    return QlumTreeModel::index(row, column, parent);
}

bool QlumAddressSpaceModel::hasChildren(const QModelIndex& index) const
{
    const QlumAddressSpaceNode* node = nodeAt(index);
    return !node || !node->isBrowsed() || node->hasChildren();
}

bool QlumAddressSpaceModel::canFetchMore(const QModelIndex& index) const
{
    const QlumAddressSpaceNode* node = nodeAt(index);
    return node && !node->isBrowsed();
}

void QlumAddressSpaceModel::fetchMore(const QModelIndex& index)
{
    if (canFetchMore(index) && nodeAt(index) != m_inVain)
        browseNode(nodeAt(index));
}

Qt::ItemFlags QlumAddressSpaceModel::flags(const QModelIndex& index) const
{
    const QlumAddressSpaceNode* node = nodeAt(index);
    if (!node)
        return Qt::NoItemFlags;
    if (node == m_root.get())
        return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEnabled;
}

QVariant QlumAddressSpaceModel::cell(const QlumAddressSpaceNode& node, int, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumSingleLine(node.name());
    case Qt::ToolTipRole:
        return qlumPlainToolTip(node.name());
    case Qt::DecorationRole:
        return decoration(node);
    case Qt::FontRole:
        if (m_highlightedNamespace >= 0 && node.nodeId().namespaceIndex() == m_highlightedNamespace) {
            QFont font = QApplication::font();
            font.setWeight(QFont::Bold);
            return font;
        }
        return {};
    default:
        return {};
    }
}

QVariant QlumAddressSpaceModel::decoration(const QlumAddressSpaceNode& node) const
{
    const bool mayHaveOwn =
        node.nodeClass() == OpcUa_NodeClass_Object || node.nodeClass() == OpcUa_NodeClass_ObjectType;
    if (mayHaveOwn && m_server && m_server->hasIcon(&node.nodeId()))
        return m_server->getIcon(&node.nodeId());
    return node.icon();
}

QStringList QlumAddressSpaceModel::mimeTypes() const
{
    return {qlumNodeMimeType()};
}

QMimeData* QlumAddressSpaceModel::mimeData(const QModelIndexList& indexes) const
{
    qlumAssertGuiThread();
    m_log.write(QlumLogLevel::Function, QStringLiteral("QlumAddressSpaceModel::mimeData"));
    QlumDraggedNodes dragged;
    dragged.serverId = m_serverId;
    for (const QModelIndex& index : indexes)
        if (const QlumAddressSpaceNode* node = nodeAt(index))
            dragged.nodes.push_back({node->nodeId(), node->name()});
    auto* mimeData = new QMimeData;
    mimeData->setData(qlumNodeMimeType(), qlumEncodeNodes(dragged, indexes.size()));
    return mimeData;
}

// ---- refreshing

void QlumAddressSpaceModel::browseNodeIndex(const QModelIndex& index)
{
    browseNode(nodeOrRoot(index));
}

void QlumAddressSpaceModel::rebrowseNodeIndex(const QModelIndex& index)
{
    qlumAssertGuiThread();
    if (putOff([this, kept = QPersistentModelIndex(index), isRoot = !index.isValid()] {
            if (isRoot || kept.isValid())
                rebrowseNodeIndex(kept);
        }))
        return;
    QlumAddressSpaceNode* node = nodeOrRoot(index);
    if (refuse(*node)) // before what is known of it goes
        return;
    removeChildren(node);
    browseNode(node);
}

void QlumAddressSpaceModel::serverModelChanged(const UaNodeId& affectedNode, unsigned char verb)
{
    qlumAssertGuiThread();
    if ((verb & (referenceAdded | referenceDeleted)) == 0)
        return;
    const UaNodeId id = affectedNode; // might lie in a node that goes
    if (putOff([this, id, verb] { serverModelChanged(id, verb); }))
        return;
    if (m_root->nodeId() == id)
        rebrowseNodeIndex(QModelIndex());
    else
        refreshNodeId(m_root.get(), id);
}

bool QlumAddressSpaceModel::nodeInfo(const QModelIndex& index, UaNodeId& nodeId, OpcUa_NodeClass& nodeClass,
                                     UaNodeId& parentId) const
{
    const QlumAddressSpaceNode* node = nodeAt(index);
    if (!node)
        return false;
    nodeId = node->nodeId();
    nodeClass = static_cast<OpcUa_NodeClass>(node->nodeClass());
    parentId = node->parent() ? node->parent()->nodeId() : UaNodeId();
    return true;
}

void QlumAddressSpaceModel::setObserver(Observer observer)
{
    m_observer = std::move(observer);
    m_caller.setObserver(m_observer.waiting);
}

// ---- highlighting

void QlumAddressSpaceModel::connectHighlighting()
{
    connect(m_highlightCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &QlumAddressSpaceModel::sltSetHighlightNamespace);
    connect(m_server, &QlumServerNode::serverNodeChanged, this, &QlumAddressSpaceModel::sltServerNodeChanged);
    if (qlumIsConnected(m_server->connectionStatus()))
        fillHighlightCombo(m_server->namespaceTable());
}

void QlumAddressSpaceModel::sltServerNodeChanged(QlumProjectNode*, QWidget*, QlumConnectionStatus status,
                                                 unsigned int serverId)
{
    qlumAssertGuiThread();
    if (!m_server || serverId != m_serverId)
        return;
    fillHighlightCombo(status == QlumConnectionStatus::Connected ? m_server->namespaceTable()
                                                                 : QStringList());
}

void QlumAddressSpaceModel::fillHighlightCombo(const QStringList& namespaces)
{
    if (!m_highlightCombo)
        return;
    {
        const QSignalBlocker blocker(m_highlightCombo); // one change, not one for every entry
        m_highlightCombo->clear();
        m_highlightCombo->addItem(tr("No Highlight"));
        for (int i = 0; i < namespaces.size(); ++i)
            m_highlightCombo->addItem(
                qlumSingleLine(tr("%1: %2").arg(QString::number(i), qlumCutText(namespaces.at(i)))));
        m_highlightCombo->setCurrentIndex(0);
        for (int i = 0; i < m_highlightCombo->count(); ++i)
            m_highlightCombo->setItemData(i, qlumPlainToolTip(m_highlightCombo->itemText(i)),
                                          Qt::ToolTipRole);
    }
    sltSetHighlightNamespace(0);
}

void QlumAddressSpaceModel::sltSetHighlightNamespace(int comboIndex)
{
    qlumAssertGuiThread();
    const int newNamespace = comboIndex - 1;
    const int oldNamespace = m_highlightedNamespace;
    if (newNamespace == oldNamespace)
        return;
    m_highlightedNamespace = newNamespace; // before the signals: views ask at once
    const int rootNamespace = m_root->nodeId().namespaceIndex();
    if (rootNamespace == oldNamespace || rootNamespace == newNamespace)
        tellChanged(*m_root);
    emitNamespaceChanged(m_root.get(), oldNamespace, newNamespace);
}

// Neighbouring rows are told together: a folder may hold a hundred thousand of them.
void QlumAddressSpaceModel::emitNamespaceChanged(QlumAddressSpaceNode* node, int oldNamespace,
                                                 int newNamespace)
{
    int first = -1;
    for (int row = 0; row <= node->childCount(); ++row) {
        QlumAddressSpaceNode* child = node->child(row);
        const int index = child ? child->nodeId().namespaceIndex() : -1;
        const bool affected = child && (index == oldNamespace || index == newNamespace);
        if (affected && first < 0)
            first = row;
        if (!affected && first >= 0) {
            emit dataChanged(indexOf(node->child(first)), indexOf(node->child(row - 1)));
            first = -1;
        }
    }
    for (int row = 0; row < node->childCount(); ++row)
        if (node->child(row)->hasChildren())
            emitNamespaceChanged(node->child(row), oldNamespace, newNamespace);
}

// ---- a server that has moved its namespaces

// What is known of the server stays; only the numbers of its namespaces are others, and one of the old
// numbers may now mean somebody else's node.
void QlumAddressSpaceModel::followNamespaces(const NamespaceMap& namespaces)
{
    qlumAssertGuiThread();
    if (namespaces.isEmpty() || putOff([this, namespaces] { followNamespaces(namespaces); }))
        return;
    m_root->translateIds(namespaces);
    if (m_root->nodeId().isNull())
        removeChildren(m_root.get());
    else
        tellChanged(*m_root);
    followNamespaces(m_root.get(), namespaces);
    if (m_observer.idsChanged)
        m_observer.idsChanged();
}

void QlumAddressSpaceModel::followNamespaces(QlumAddressSpaceNode* node, const NamespaceMap& namespaces)
{
    // all ids before any row goes: views choose a neighbour and ask it who it is
    const std::vector<int> lost = node->translateChildren(namespaces);
    for (auto last = lost.rbegin(); last != lost.rend();) {
        auto first = last;
        while (std::next(first) != lost.rend() && *std::next(first) == *first - 1)
            ++first;
        for (int row = *first; row <= *last; ++row)
            dropTasks(node->child(row));
        removeNodes(*node, *first, *last - *first + 1);
        last = std::next(first);
    }
    if (!node->hasChildren()) {
        if (!lost.empty())
            node->setBrowsed(false); // something else may be there
        return;
    }
    emit dataChanged(indexOf(node->child(0)), indexOf(node->child(node->childCount() - 1)));
    for (int row = 0; row < node->childCount(); ++row)
        followNamespaces(node->child(row), namespaces);
}
