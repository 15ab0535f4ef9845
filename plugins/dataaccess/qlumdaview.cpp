#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumjobpool.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/work/qlumdaparts.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemView>
#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QList>
#include <QMenu>
#include <QMimeData>
#include <QModelIndex>
#include <QSplitter>
#include <QString>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <span>
#include <utility>
#include <vector>

QlumDaView::QlumDaView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                       QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(std::move(services)),
      m_monitoring(std::move(monitoring)), m_state(new QlumViewState(QStringLiteral("DataAccessView"), this)),
      m_pool(std::make_unique<QlumJobPool>()), m_model(new QlumDaModel(application, this)),
      m_filter(new QlumTableFilter(this)), m_messages(new QlumMessageBar(this))
{
    setObjectName(QStringLiteral("dataAccessView"));
    setAccessibleName(tr("Data Access View"));
    setAcceptDrops(true);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("dataSplitter"));
    makeTable();
    m_pages = new QTabWidget(splitter);
    m_pages->setObjectName(QStringLiteral("dataPages"));
    splitter->addWidget(m_table);
    splitter->addWidget(m_pages);
    m_pages->hide();
    m_state->keep(splitter, QStringLiteral("splitter"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messages);
    layout->addWidget(makeBar());
    layout->addWidget(splitter, 1);
    m_parts = qlumMakeDaParts(*this);
    const auto filler =
        std::find_if(m_parts.begin(), m_parts.end(), [](const auto& part) { return part->hasNewValues(); });
    m_model->setNewValues(filler == m_parts.end() ? nullptr : filler->get());
}

QlumDaView::~QlumDaView()
{
    m_model->setNewValues(nullptr);
    m_pool.reset(); // before what receives its results
    m_parts.clear();
    delete m_state;
}

// ---- widgets

void QlumDaView::makeTable()
{
    m_filter->setSourceModel(m_model);
    m_filter->setSortRole(QlumDaModel::SortRole);
    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("dataItems"));
    m_table->setAccessibleName(tr("Watched values"));
    m_table->setModel(m_filter);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(-1, Qt::AscendingOrder);
    m_table->verticalHeader()->hide();
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    qlumMakeTable(m_table, {tr("Drop variables or branches here from the Address Space window."),
                            QStringLiteral("values"), m_state, QStringLiteral("items"), false});
}

QWidget* QlumDaView::makeBar()
{
    auto* bar = new QWidget;
    m_filterText = new QLineEdit;
    m_filterText->setObjectName(QStringLiteral("dataFilter"));
    m_filterText->setAccessibleName(tr("Filter"));
    m_filterText->setPlaceholderText(tr("Filter"));
    m_filterText->setClearButtonEnabled(true);
    connect(m_filterText, &QLineEdit::textChanged, m_filter, &QlumTableFilter::setText);
    auto* commands = new QToolButton;
    commands->setObjectName(QStringLiteral("dataCommands"));
    commands->setText(tr("Commands"));
    commands->setPopupMode(QToolButton::InstantPopup);
    m_menu = new QMenu(commands);
    commands->setMenu(m_menu);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_filterText, 1);
    layout->addWidget(commands);
    return bar;
}

// ---- rows

std::vector<quint32> QlumDaView::selectedKeys() const
{
    std::vector<quint32> keys;
    QList<int> places;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        places.append(index.row());
    std::sort(places.begin(), places.end());
    for (const int row : places)
        keys.push_back(m_filter->index(row, 0).data(QlumDaModel::KeyRole).toUInt());
    return keys;
}

std::vector<quint32> QlumDaView::shownKeys() const
{
    std::vector<quint32> keys;
    for (int row = 0; row < m_filter->rowCount(); ++row)
        keys.push_back(m_filter->index(row, 0).data(QlumDaModel::KeyRole).toUInt());
    return keys;
}

std::vector<quint32> QlumDaView::addItems(std::vector<QlumDataItem> items)
{
    const std::vector<quint32> keys = m_model->add(std::move(items));
    tellServers();
    markModified();
    return keys;
}

void QlumDaView::addNodes(std::span<const QlumToolNode> nodes)
{
    std::vector<QlumDataItem> items;
    for (const QlumToolNode& node : nodes) {
        QlumDataItem item;
        item.serverId = node.serverId;
        item.nodeId = node.nodeId;
        item.displayName = node.name;
        items.push_back(std::move(item));
    }
    addItems(std::move(items));
}

void QlumDaView::tellServers()
{
    const std::vector<unsigned int> ids = m_model->serverIds();
    qlumSetDocumentServers(this, {ids.begin(), ids.end()});
}

void QlumDaView::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasFormat(QStringLiteral("application/UaNodeInformation")))
        event->acceptProposedAction();
}

void QlumDaView::dropEvent(QDropEvent* event)
{
    unsigned int serverId = qlumNoServer, count = 0;
    UaNodeId* ids = nullptr;
    if (!m_application.nodeIdsFromMimeData(event->mimeData(), &serverId, &count, &ids))
        return;
    const std::unique_ptr<UaNodeId[]> owned(ids);
    event->acceptProposedAction();
    std::vector<QlumToolNode> nodes;
    for (unsigned int i = 0; i < count; ++i) {
        QlumToolNode node;
        node.serverId = serverId;
        node.nodeId = ids[i];
        nodes.push_back(std::move(node));
    }
    addNodes(nodes);
}

// ---- parts

void QlumDaView::addPage(QWidget* page, const QString& title)
{
    m_pages->addTab(page, title);
    m_pages->show();
}

void QlumDaView::showPage(QWidget* page)
{
    m_pages->setCurrentWidget(page);
}

void QlumDaView::addCommands(const QString& title, const QList<QAction*>& actions)
{
    m_table->addActions(actions);
    m_menu->addMenu(title)->addActions(actions);
}

void QlumDaView::tell(const QlumMessage& message)
{
    m_messages->tell(message);
}

void QlumDaView::dismiss(const QString& topic)
{
    m_messages->dismiss(topic);
}

void QlumDaView::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

// ---- servers and project

void QlumDaView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    m_model->setStatus(serverId, status);
    for (const auto& part : m_parts)
        part->statusChanged(serverId, status);
}

void QlumDaView::sessionRemoved(unsigned int serverId)
{
    m_pool->endServer(serverId);
    for (const auto& part : m_parts)
        part->serverRemoved(serverId);
}

void QlumDaView::saveSettings(QSettings& settings)
{
    for (const auto& part : m_parts)
        part->saveSettings(settings);
}

void QlumDaView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    for (const auto& part : m_parts)
        part->loadSettings(settings, serverIdMap);
}
