#include <plugins/addressspace/qlumaddressspacepage.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtext.h>
#include <plugins/addressspace/qlumaddressspacemodelinterface.h>
#include <plugins/addressspace/qlumaddressspacesettings.h>
#include <plugins/addressspace/qlumtreefinder.h>
#include <uawidgets/qlumnodecommands.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QModelIndex>
#include <QModelIndexList>
#include <QPalette>
#include <QShowEvent>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumAddressSpacePage", text)

namespace {
enum TreeAction { Find, CopyNodeId, CopyName, CopyPath, ReadingOrder };

constexpr QlumActionRow actionRows[] = {
    {Find, "findInTree", TEXT("&Find or Go to..."), "", QKeySequence::Find, "",
     TEXT("<b>Find or Go to</b><br>Finds a name among the nodes that were opened, or goes to a node by its "
          "id or browse path."),
     Qt::WidgetWithChildrenShortcut},
    {CopyNodeId, "copyNodeId", TEXT("Copy Node &Id"), "", qlumNoKey, "",
     TEXT("<b>Copy Node Id</b><br>Copies the node ids of the selected nodes.")},
    {CopyName, "copyName", TEXT("Copy &Name"), "", qlumNoKey, "",
     TEXT("<b>Copy Name</b><br>Copies the names of the selected nodes.")},
    {CopyPath, "copyPath", TEXT("Copy &Path"), "", qlumNoKey, "",
     TEXT("<b>Copy Path</b><br>Copies the names from the root to each of the selected nodes.")},
    {ReadingOrder, "readingOrder", TEXT("Sort as People &Read"), "", qlumNoKey, "",
     TEXT("<b>Sort as People Read</b><br>Sorts names by the alphabet, capitals beside small letters and "
          "digits as numbers, instead of by the codes of their letters.")},
};

QString pathOf(QModelIndex index)
{
    QStringList names;
    for (; index.isValid(); index = index.parent())
        names.prepend(index.data().toString());
    return names.join(QLatin1Char('/'));
}
} // namespace
#undef TEXT

QlumAddressSpacePage::QlumAddressSpacePage(QlumServerNode* server,
                                           const QlumAddressSpaceModelFactory& factory, QAction* rebrowse,
                                           QWidget* parent)
    : QWidget(parent), m_server(server), m_serverId(server->serverId()), m_tree(new QTreeView(this)),
      m_highlight(new QComboBox(this)), m_lost(new QLabel(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(makeBar(rebrowse));
    layout->addWidget(m_lost);
    layout->addWidget(m_tree);
    setupTree();
    m_lost->setObjectName(QStringLiteral("connectionLost"));
    m_lost->setTextFormat(Qt::PlainText);
    m_lost->setWordWrap(true);
    m_lost->setMargin(4);
    m_lost->hide();
    connect(server, &QlumServerNode::serverNodeChanged, this, &QlumAddressSpacePage::followConnection);
    followConnection();
    m_model = factory ? factory(server, m_highlight, m_tree) : nullptr;
    if (!m_model)
        return;
    m_tree->setModel(m_model->itemModel());
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumAddressSpacePage::sltCurrentChanged);
    m_model->setObserver({[this] { followIds(); }, [this](bool waiting) { setWaiting(waiting); },
                          [this](const QModelIndex& index) { m_tree->collapse(index); }});
    connect(m_tree, &QTreeView::expanded, this, &QlumAddressSpacePage::sltExpanded);
    connect(m_tree, &QTreeView::collapsed, this, [this] { m_tree->resizeColumnToContents(0); });
    m_tree->expand(m_model->itemModel()->index(0, 0));
    makeActions();
    makeFinder();
    new QlumNodeCommands(
        m_tree, [this] { return selectedNodes(); }, QlumNodeCommands::Reveal);
}

QLayout* QlumAddressSpacePage::makeBar(QAction* rebrowse)
{
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("rebrowse"));
    button->setAccessibleName(tr("Rebrowse selected node"));
    button->setAutoRaise(true);
    button->setIcon(rebrowse->icon());
    button->setToolTip(tr("Rebrowse selected node"));
    button->setWhatsThis(rebrowse->whatsThis());
    connect(button, &QToolButton::clicked, this, &QlumAddressSpacePage::rebrowseCurrent);

    m_highlight->setObjectName(QStringLiteral("highlightNamespace"));
    m_highlight->setAccessibleName(tr("Highlight Namespace"));
    m_highlight->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_highlight->setWhatsThis(
        tr("<b>Highlight Namespace</b><br>Select an entry to highlight all nodes of the namespace "
           "in the Address Space."));

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(0, 0, 0, 0);
    bar->setSpacing(0);
    bar->addWidget(button);
    bar->addWidget(m_highlight);
    bar->addStretch();
    return bar;
}

void QlumAddressSpacePage::setupTree()
{
    m_tree->setObjectName(QStringLiteral("addressSpaceTree"));
    m_tree->setAccessibleName(tr("Address Space"));
    m_tree->setWhatsThis(
        tr("<b>Address Space</b><br>This window shows the address space of the current selected server. "
           "You can switch between the servers in the project window."));
    m_tree->setRootIsDecorated(false);
    m_tree->setDragEnabled(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tree->header()->setStretchLastSection(false);
}

void QlumAddressSpacePage::makeActions()
{
    m_actions = QlumActionTable(actionRows, "QlumAddressSpacePage", m_tree);
    connect(
        m_actions[CopyNodeId], &QAction::triggered, this,
        [this] {
            copy([this](const QModelIndex& index) {
                UaNodeId nodeId;
                UaNodeId parentId;
                OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
                m_model->nodeInfo(index, nodeId, nodeClass, parentId);
                return toQString(nodeId.toXmlString());
            });
        });
    connect(
        m_actions[CopyName], &QAction::triggered, this,
        [this] { copy([](const QModelIndex& index) { return index.data().toString(); }); });
    connect(m_actions[CopyPath], &QAction::triggered, this, [this] { copy(pathOf); });
    m_actions[ReadingOrder]->setCheckable(true);
    connect(m_actions[ReadingOrder], &QAction::toggled, this, &QlumAddressSpacePage::setReadingOrder);
    m_actions[ReadingOrder]->setChecked(QlumAddressSpaceSettings::readingOrder.value());
    m_tree->addActions(m_actions.list({Find, CopyNodeId, CopyName, CopyPath, ReadingOrder}));
}

void QlumAddressSpacePage::makeFinder()
{
    m_finder = new QlumTreeFinder(
        m_tree, m_server, qlumApplicationServices(), [this](const UaNodeId& node) { return reveal(node); },
        this);
    static_cast<QVBoxLayout*>(layout())->insertWidget(1, m_finder); // below the bar
    addAction(m_actions[Find]);                                     // its key works in the whole page
    connect(m_actions[Find], &QAction::triggered, m_finder, &QlumTreeFinder::begin);
    connect(m_finder, &QlumTreeFinder::searchWanted, this,
            [this](const QString& text) { emit searchWanted(m_serverId, text); });
}

// One line for each selected node.
void QlumAddressSpacePage::copy(const std::function<QString(const QModelIndex&)>& text) const
{
    QStringList lines;
    for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
        lines.append(text(index));
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void QlumAddressSpacePage::setReadingOrder(bool on)
{
    m_model->setReadingOrder(on);
    if (auto* application = QlumApplicationInterface::instance();
        application && QlumAddressSpaceSettings::readingOrder.value() != on)
        QlumAddressSpaceSettings::readingOrder.store(*application, on);
}

void QlumAddressSpacePage::retire()
{
    m_retired = true;
    if (m_waiting)
        hide();
    else
        delete this;
}

// The view that is waiting for rows is in the middle of laying them out: it must not do so anew, nor paint.
void QlumAddressSpacePage::setWaiting(bool waiting)
{
    m_waiting = waiting;
    m_tree->setUpdatesEnabled(!waiting);
    if (m_retired && !waiting)
        deleteLater(); // the model has more to do before it can go
    else if (!waiting)
        QTimer::singleShot(0, this, &QlumAddressSpacePage::showConnection);
}

void QlumAddressSpacePage::followConnection()
{
    if (!m_server || m_server->connectionStatus() != QlumConnectionStatus::ConnectionError)
        m_lostSince = QDateTime();
    else if (!m_lostSince.isValid())
        m_lostSince = QDateTime::currentDateTime();
    showConnection();
}

// The line moves the tree, which must stay as it is while it waits for rows.
void QlumAddressSpacePage::showConnection()
{
    const bool isLost = m_lostSince.isValid();
    if (m_waiting || isLost != m_lost->isHidden())
        return;
    if (isLost)
        m_lost->setText(
            tr("Server '%1': connection lost since %2. What was browsed before can still be read; "
               "nothing more can be opened until the connection is back.")
                .arg(qlumCutText(qlumSingleLine(m_server->displayName())), qlumShowDateTime(m_lostSince)));
    m_lost->setVisible(isLost);
    QPalette grey = m_tree->palette();
    grey.setColor(QPalette::Text, grey.color(QPalette::Disabled, QPalette::Text));
    m_tree->setPalette(isLost ? grey : QPalette());
}

void QlumAddressSpacePage::rebrowseCurrent()
{
    if (!m_model)
        return;
    QModelIndex index = m_tree->currentIndex();
    // a failed first browse leaves no row that could be selected
    if (!index.isValid())
        index = m_model->itemModel()->index(0, 0);
    m_model->rebrowseNodeIndex(index);
}

void QlumAddressSpacePage::serverModelChanged(const UaNodeId& node, unsigned char verb)
{
    if (m_model)
        m_model->serverModelChanged(node, verb);
}

bool QlumAddressSpacePage::reveal(const UaNodeId& node)
{
    const QModelIndex index = m_model ? m_model->reveal(node) : QModelIndex();
    if (!index.isValid())
        return false;
    m_tree->setCurrentIndex(index);
    m_tree->scrollTo(index);
    m_tree->setFocus();
    return true;
}

QlumToolNodes QlumAddressSpacePage::selectedNodes() const
{
    QlumToolNodes nodes;
    const QModelIndexList selected = m_tree->selectionModel()->selectedIndexes();
    for (const QModelIndex& index : selected) {
        QlumToolNode node{m_serverId, {}, OpcUa_NodeClass_Unspecified, {}, index.data().toString()};
        if (m_model->nodeInfo(index, node.nodeId, node.nodeClass, node.parentId))
            nodes.push_back(std::move(node));
    }
    return nodes;
}

void QlumAddressSpacePage::sltCurrentChanged(const QModelIndex& current)
{
    UaNodeId nodeId;
    UaNodeId parentId;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    if (!m_model->nodeInfo(current, nodeId, nodeClass, parentId))
        return;
    m_announced = nodeId;
    emit nodeSelected(m_serverId, &nodeId, nodeClass, parentId.isNull() ? nullptr : &parentId);
}

void QlumAddressSpacePage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    followIds();
    if (m_model) // the switch of another page may have been used
        m_actions[ReadingOrder]->setChecked(QlumAddressSpaceSettings::readingOrder.value());
}

// Tools show the selected node by its old id until they hear the new one. Those of a page that is not in
// front show a node of another.
void QlumAddressSpacePage::followIds()
{
    if (m_announced.isNull() || !isVisibleTo(parentWidget()))
        return;
    const QModelIndex current = m_tree->currentIndex();
    UaNodeId nodeId;
    UaNodeId parentId;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    if (!current.isValid()) // it is gone with all that was near it
        m_tree->setCurrentIndex(m_tree->model()->index(0, 0));
    else if (m_model->nodeInfo(current, nodeId, nodeClass, parentId) && nodeId != m_announced)
        sltCurrentChanged(current);
}

void QlumAddressSpacePage::sltExpanded(const QModelIndex& index)
{
    m_tree->resizeColumnToContents(0);
    const QAbstractItemModel* model = m_tree->model();
    if (const int count = model->rowCount(index); count > 0)
        m_tree->scrollTo(model->index(count - 1, 0, index), QAbstractItemView::EnsureVisible);
    m_tree->scrollTo(index, QAbstractItemView::EnsureVisible);
}
