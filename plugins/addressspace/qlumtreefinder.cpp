#include <plugins/addressspace/qlumtreefinder.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumlocalid.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uawidgets/qlumformrow.h>

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <initializer_list>
#include <memory>
#include <utility>

QlumTreeFinder::QlumTreeFinder(QTreeView* tree, QlumServerNode* server, QlumSessionServicesProvider services,
                               Reveal reveal, QWidget* parent)
    : QWidget(parent), m_tree(tree), m_server(server), m_services(std::move(services)),
      m_reveal(std::move(reveal)), m_text(new QLineEdit), m_message(new QLabel)
{
    setObjectName(QStringLiteral("treeFinder"));
    qlumDescribeField(m_text,
                      {QStringLiteral("treeFinderText"),
                       tr("Find or go to"),
                       {},
                       tr("A part of a name in the opened tree; or a node id (ns=2;s=Pump) or a browse "
                          "path (/Objects/2:Plant) to go to")});
    m_text->setPlaceholderText(tr("Name, node id or /browse path"));
    m_text->setClearButtonEnabled(true);
    m_message->setObjectName(QStringLiteral("treeFinderMessage"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_message->hide();
    QToolButton* before = makeButton("treeFinderPrevious", {}, tr("The one before"));
    before->setArrowType(Qt::UpArrow);
    QToolButton* after = makeButton("treeFinderNext", {}, tr("The next one"));
    after->setArrowType(Qt::DownArrow);
    m_search = makeButton("treeFinderSearch", tr("On Server"),
                          tr("Looks for it among all nodes of the server, opened or not"));
    QToolButton* close = makeButton("treeFinderClose", QStringLiteral("\u00d7"), tr("Closes the bar"));
    connect(m_text, &QLineEdit::returnPressed, this, [this] { find(true); });
    connect(m_text, &QLineEdit::textChanged, m_message, &QWidget::hide);
    connect(
        before, &QToolButton::clicked, this, [this] { find(false); });
    connect(
        after, &QToolButton::clicked, this, [this] { find(true); });
    connect(m_search, &QToolButton::clicked, this, [this] { emit searchWanted(m_text->text()); });
    connect(close, &QToolButton::clicked, this, &QlumTreeFinder::leave);
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    for (QWidget* part : std::initializer_list<QWidget*>{m_text, before, after, m_search, close})
        row->addWidget(part);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row);
    layout->addWidget(m_message);
    hide();
}

QlumTreeFinder::~QlumTreeFinder() = default;

QToolButton* QlumTreeFinder::makeButton(const char* name, const QString& text, const QString& toolTip)
{
    auto* button = new QToolButton;
    button->setAutoRaise(true);
    button->setText(text);
    qlumDescribeField(button, {QLatin1String(name), text.size() > 1 ? text : toolTip, {}, toolTip});
    return button;
}

void QlumTreeFinder::begin()
{
    QWidget::show();
    m_text->setFocus();
    m_text->selectAll();
}

void QlumTreeFinder::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        leave();
    else
        QWidget::keyPressEvent(event);
}

void QlumTreeFinder::leave()
{
    m_pool.cancelAll();
    hide();
    m_tree->setFocus();
}

void QlumTreeFinder::tell(const QString& text)
{
    m_message->setText(text);
    m_message->setVisible(!text.isEmpty());
}

// ---- what the tree has

void QlumTreeFinder::find(bool forward)
{
    const QString text = m_text->text().trimmed();
    tell({});
    if (text.isEmpty())
        return;
    if (QlumNodeAddress address = qlumReadAddress(text); address.fault.isEmpty())
        return go(std::move(address));
    const QModelIndex top = m_tree->model()->index(0, 0);
    const QModelIndex start = m_tree->currentIndex().isValid() ? m_tree->currentIndex() : top;
    QModelIndex index = start;
    while (index.isValid()) {
        index = forward ? next(index) : previous(index);
        if (!index.isValid())
            index = forward ? top : lastBelow(top);
        if (index.data().toString().contains(text, Qt::CaseInsensitive)) {
            m_tree->setCurrentIndex(index);
            m_tree->scrollTo(index);
            return;
        }
        if (index == start)
            break;
    }
    tell(tr("No opened node has this in its name. Press \"On Server\" to look for it everywhere."));
}

// In the order of the rows, also of those in closed branches; nothing is fetched.
QModelIndex QlumTreeFinder::next(const QModelIndex& index) const
{
    const QAbstractItemModel* model = m_tree->model();
    if (model->rowCount(index) > 0)
        return model->index(0, 0, index);
    for (QModelIndex at = index; at.isValid(); at = at.parent())
        if (const QModelIndex sibling = at.siblingAtRow(at.row() + 1); sibling.isValid())
            return sibling;
    return {};
}

QModelIndex QlumTreeFinder::previous(const QModelIndex& index) const
{
    return index.row() > 0 ? lastBelow(index.siblingAtRow(index.row() - 1)) : index.parent();
}

QModelIndex QlumTreeFinder::lastBelow(QModelIndex index) const
{
    const QAbstractItemModel* model = m_tree->model();
    while (index.isValid() && model->rowCount(index) > 0)
        index = model->index(model->rowCount(index) - 1, 0, index);
    return index;
}

// ---- a node by its name

void QlumTreeFinder::go(QlumNodeAddress address)
{
    m_pool.cancelAll();
    if (!m_server)
        return;
    if (const QString fault = qlumPlaceAddress(address, m_server->namespaceTable()); !fault.isEmpty())
        return tell(fault);
    if (address.path.empty())
        return show(address.nodeId);
    tell(tr("Following the path..."));
    const unsigned int serverId = m_server->serverId();
    m_pool.add({tr("Following a browse path"), serverId},
               [this, address = std::move(address), serverId, services = m_services](QlumJob& job) {
                   const std::shared_ptr<QlumSessionServices> session = services(serverId);
                   UaNodeId nodeId;
                   const UaStatus status = session ? qlumFollowPath(job, *session, address, nodeId)
                                                   : UaStatus(OpcUa_BadServerNotConnected);
                   job.post([this, status, nodeId] {
                       if (!status.isBad() && !nodeId.isNull())
                           show(nodeId);
                       else
                           tell(status.isBad() ? qlumResultInWords(status)
                                               : tr("The server has nothing at this path. Names of other "
                                                    "namespaces than 0 need their index: /Objects/2:Plant."));
                   });
               });
}

void QlumTreeFinder::show(const UaNodeId& nodeId)
{
    tell({});
    if (!m_reveal(nodeId))
        tell(tr("%1 cannot be reached from the root, or is not there.")
                 .arg(qlumCutText(toQString(nodeId.toXmlString()), 100)));
}

UaStatus qlumFollowPath(const QlumJob& job, QlumSessionServices& session, const QlumNodeAddress& address,
                        UaNodeId& nodeId)
{
    UaBrowsePaths paths(1);
    UaRelativePathElements elements(static_cast<OpcUa_UInt32>(address.path.size()));
    static_cast<void>(address.nodeId.copyTo(&paths[0].StartingNode));
    for (OpcUa_UInt32 i = 0; i < elements.length(); ++i) {
        const QlumPathStep& step = address.path[i];
        elements[i].ReferenceTypeId.Identifier.Numeric = OpcUaId_HierarchicalReferences;
        elements[i].IncludeSubtypes = OpcUa_True;
        static_cast<void>(
            UaQualifiedName(toUaString(step.name), step.namespaceIndex).copyTo(&elements[i].TargetName));
    }
    elements.detach(&paths[0].RelativePath.NoOfElements, &paths[0].RelativePath.Elements);
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    UaBrowsePathResults results;
    const UaStatus status = session.translateBrowsePathsToNodeIds(settings, paths, results);
    nodeId = UaNodeId();
    if (status.isBad() || results.length() != 1)
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    const OpcUa_BrowsePathResult& result = results[0];
    if (OpcUa_IsBad(result.StatusCode))
        return result.StatusCode == OpcUa_BadNoMatch ? UaStatus() : UaStatus(result.StatusCode);
    if (result.NoOfTargets > 0)
        nodeId = qlumLocalId(UaExpandedNodeId(result.Targets[0].TargetId), session.namespaceTable());
    return status;
}
