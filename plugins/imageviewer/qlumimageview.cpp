#include <plugins/imageviewer/qlumimageview.h>

#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumdroppednodes.h>
#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimagecanvas.h>
#include <plugins/imageviewer/qlumimagefacts.h>
#include <plugins/imageviewer/qlumimagesettings.h>
#include <plugins/imageviewer/qlumimagetile.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlumemptydocument.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QList>
#include <QMimeData>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

QlumImageView::QlumImageView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                             QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(std::move(services)),
      m_monitoring(std::move(monitoring)), m_state(new QlumViewState(QStringLiteral("ImageViewer"), this)),
      m_facts(new QlumImageFactsModel(this)), m_heading(new QlumViewHeading(this)),
      m_messages(new QlumMessageBar(this)), m_interval(QlumImageSettings::interval.value(&application))
{
    setObjectName(QStringLiteral("imageView"));
    setAccessibleName(tr("Image Viewer"));
    setAcceptDrops(true);
    makeActions();
    m_area = new QWidget;
    m_area->setObjectName(QStringLiteral("imageArea"));
    m_area->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_grid = new QGridLayout(m_area);
    m_grid->setContentsMargins(2, 2, 2, 2);
    m_grid->setSpacing(4);
    m_pages = new QStackedWidget;
    m_pages->addWidget(new QlumEmptyDocument(
        tr("No image"), tr("Drop variables of the data types ImageBMP, ImageGIF, ImageJPG and ImagePNG here, "
                           "or byte strings that hold such images.")));
    auto* across = new QSplitter(Qt::Horizontal);
    across->setObjectName(QStringLiteral("imageSplitter"));
    across->addWidget(m_area);
    across->addWidget(makeFacts());
    across->setStretchFactor(0, 2);
    across->setStretchFactor(1, 1);
    m_state->keep(across, QStringLiteral("across"));
    m_pages->addWidget(across);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(makeBar());
    layout->addWidget(m_messages);
    layout->addWidget(m_pages, 1);
    connect(&m_second, &QTimer::timeout, this, [this] {
        if (!isVisible())
            return;
        for (QlumImageTile* tile : m_tiles)
            tile->showLine();
        showCurrent();
    });
    constexpr int second = 1000;
    m_second.start(second);
    setCurrent(nullptr);
}

QlumImageView::~QlumImageView()
{
    m_reads.cancelAll();
    m_decodes.cancelAll();
    for (QlumImageTile* tile : m_tiles)
        tile->disconnect(this); // the focus goes from one to the next
    qDeleteAll(m_tiles);        // while there are pools to give work up in
    delete m_state;
}

QWidget* QlumImageView::makeFacts()
{
    m_factsView = new QTableView;
    m_factsView->setObjectName(QStringLiteral("imageFacts"));
    m_factsView->setAccessibleName(tr("What is known of the current image"));
    m_factsView->setModel(m_facts);
    m_factsView->setContextMenuPolicy(Qt::ActionsContextMenu);
    constexpr int characters = 32; // so that many images leave room for what is known of one
    m_factsView->setMinimumWidth(m_factsView->fontMetrics().averageCharWidth() * characters);
    m_factsView->verticalHeader()->hide();
    constexpr int room = 6;
    m_factsView->verticalHeader()->setDefaultSectionSize(m_factsView->fontMetrics().height() + room);
    m_factsView->setWordWrap(false);
    m_factsView->setShowGrid(false);
    m_factsView->setAlternatingRowColors(true);
    m_factsView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_factsView->horizontalHeader()->setStretchLastSection(true);
    qlumMakeTable(m_factsView, {tr("Select an image."), tr("image"), m_state, QStringLiteral("facts")});
    connect(m_facts, &QAbstractItemModel::modelReset, m_factsView,
            [this] { m_factsView->resizeColumnToContents(QlumImageFactsModel::Fact); });
    return m_factsView;
}

// ---- images

bool QlumImageView::hasRoom()
{
    if (static_cast<int>(m_tiles.size()) < mostImages)
        return true;
    m_messages->tell({QlumMessage::Warning,
                      QStringLiteral("room"),
                      tr("A view shows at most %1 images.").arg(mostImages),
                      tr("Remove some, or open another image viewer."),
                      {},
                      {}});
    return false;
}

// All together may take a gigabyte.
qint64 QlumImageView::memoryLeft(const QlumImageFeed& feed) const
{
    qint64 left = 2 * qlumMostImageMemory;
    for (const QlumImageTile* tile : m_tiles)
        if (tile->feed() != &feed)
            left -= tile->feed()->image().sizeInBytes();
    return std::min(left, qlumMostImageMemory);
}

QlumImageTile* QlumImageView::addTile(const QlumImageSource& source)
{
    auto feed = std::make_unique<QlumImageFeed>(
        QlumImageFeed::Shared{m_services, m_monitoring, m_reads, m_decodes,
                              [this](const QlumImageFeed& one) { return memoryLeft(one); }},
        source);
    feed->setInterval(m_interval);
    auto* tile = new QlumImageTile(std::move(feed), m_area);
    connect(tile, &QlumImageTile::chosen, this, [this, tile] { setCurrent(tile); });
    connect(tile->feed(), &QlumImageFeed::sourceChanged, this, &QlumImageView::markModified);
    connect(tile->feed(), &QlumImageFeed::changed, this, [this, tile] {
        if (tile != m_current)
            return;
        m_heading->touch();
        showCurrent();
    });
    connect(tile->feed(), &QlumImageFeed::frameChanged, this, &QlumImageView::showCurrent);
    connect(tile->canvas(), &QlumImageCanvas::zoomChanged, this, &QlumImageView::showCommands);
    m_tiles.push_back(tile);
    arrange();
    markModified();
    return tile;
}

void QlumImageView::removeTile(QlumImageTile* tile)
{
    const auto found = std::find(m_tiles.begin(), m_tiles.end(), tile);
    if (found == m_tiles.end())
        return;
    const auto place = found - m_tiles.begin();
    m_tiles.erase(found);
    m_grid->removeWidget(tile);
    if (tile == m_current) {
        m_current = nullptr;
        const auto next = std::min<std::ptrdiff_t>(place, static_cast<std::ptrdiff_t>(m_tiles.size()) - 1);
        setCurrent(next < 0 ? nullptr : m_tiles[static_cast<std::size_t>(next)]);
    }
    delete tile;
    arrange();
    markModified();
}

// In a square, as near as it can be.
void QlumImageView::arrange()
{
    const int count = static_cast<int>(m_tiles.size());
    const int columns = std::max(1, int(std::ceil(std::sqrt(count))));
    for (QlumImageTile* tile : m_tiles)
        m_grid->removeWidget(tile);
    for (int i = 0; i < mostImages; ++i) {
        m_grid->setColumnStretch(i, i < columns && count > 0 ? 1 : 0);
        m_grid->setRowStretch(i, i * columns < count ? 1 : 0);
    }
    for (int i = 0; i < count; ++i) {
        m_grid->addWidget(m_tiles[static_cast<std::size_t>(i)], i / columns, i % columns);
        m_tiles[static_cast<std::size_t>(i)]->show();
    }
    m_pages->setCurrentIndex(count == 0 ? 0 : 1);
    QList<unsigned int> servers;
    for (const QlumImageTile* tile : m_tiles)
        if (const unsigned int id = tile->feed()->source().serverId;
            id != qlumNoServer && !servers.contains(id))
            servers.append(id);
    qlumSetDocumentServers(this, servers);
}

void QlumImageView::setCurrent(QlumImageTile* tile)
{
    if (m_current && m_current != tile)
        m_current->setCurrent(false);
    m_current = tile;
    if (tile)
        tile->setCurrent(true);
    m_heading->forget();
    if (tile && tile->feed()->hasValue())
        m_heading->touch();
    showCurrent();
}

// The current one before others, of several elements of a variable.
QlumImageTile* QlumImageView::tileOf(const std::function<bool(const QlumImageFeed&)>& isWanted) const
{
    if (m_current && isWanted(*m_current->feed()))
        return m_current;
    const auto found = std::find_if(m_tiles.begin(), m_tiles.end(),
                                    [&](const QlumImageTile* tile) { return isWanted(*tile->feed()); });
    return found == m_tiles.end() ? nullptr : *found;
}

// What is opened again is shown, not doubled.
void QlumImageView::addNodes(std::span<const QlumToolNode> nodes)
{
    for (const QlumToolNode& node : nodes) {
        if (QlumImageTile* present = tileOf([&node](const QlumImageFeed& feed) {
                return feed.source().serverId == node.serverId && feed.source().nodeId == node.nodeId;
            })) {
            setCurrent(present);
            if (!present->feed()->source().isWatched)
                present->feed()->read();
            continue;
        }
        if (!hasRoom())
            return;
        QlumImageSource source;
        source.serverId = node.serverId;
        source.nodeId = node.nodeId;
        source.name = node.name;
        source.isWatched = QlumImageSettings::watchesAtFirst.value(&m_application);
        source.namespaceUri = namespaceUriOf(source);
        QlumImageTile* tile = addTile(source);
        setCurrent(tile);
        tile->feed()->begin();
    }
}

// A part of a value has no node of its own: it is shown as it was.
void QlumImageView::showValue(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType,
                              const QlumToolNode& origin)
{
    if (!origin.nodeId.isNull())
        return addNodes(std::span(&origin, 1));
    if (QlumImageTile* present = tileOf([&](const QlumImageFeed& feed) {
            return feed.source().serverId == serverId && feed.source().nodeId.isNull() &&
                   feed.newest().value() == value;
        }))
        return setCurrent(present);
    if (!hasRoom())
        return;
    QlumImageSource source;
    source.serverId = serverId;
    source.name = tr("Value shown by another view");
    source.isWatched = false;
    QlumImageTile* tile = addTile(source);
    setCurrent(tile);
    tile->feed()->setDataType(dataType);
    tile->feed()->take(UaDataValue(value));
}

// ---- showing

void QlumImageView::showCurrent()
{
    m_facts->show(m_current ? m_current->feed() : nullptr,
                  m_current ? m_application.serverName(m_current->feed()->source().serverId) : QString());
    showHeading();
    showCommands();
}

void QlumImageView::showHeading()
{
    if (!m_current)
        return m_heading->clear();
    const QlumImageFeed& feed = *m_current->feed();
    const unsigned int server = feed.source().serverId;
    if (server == qlumNoServer) { // a value that was typed or loaded
        m_heading->clear();
        return m_heading->setNode(feed.source().name);
    }
    m_heading->setServer(m_application.serverName(server));
    m_heading->setNode(feed.source().name);
    m_heading->setActivity(feed.isReading() && !feed.hasValue() ? tr("reading...") : QString());
    // a document that is opened later than its server has heard of no change
    const auto services = m_services(server);
    const auto now = services && services->isConnected() ? QlumConnectionStatus::Connected
                                                         : QlumConnectionStatus::Disconnected;
    m_heading->setStatus(m_status.value(server, now));
}

void QlumImageView::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

// ---- servers

void QlumImageView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                         const QMap<quint16, quint16>& map)
{
    const bool wasUp =
        m_status.value(serverId, QlumConnectionStatus::Disconnected) == QlumConnectionStatus::Connected;
    m_status.insert(serverId, status);
    const bool isUp = status == QlumConnectionStatus::Connected;
    for (QlumImageTile* tile : m_tiles) {
        QlumImageFeed& feed = *tile->feed();
        if (feed.source().serverId != serverId || feed.source().nodeId.isNull())
            continue;
        place(feed, map);
        if (isUp != wasUp || status == QlumConnectionStatus::Disconnected)
            feed.connectionChanged(isUp);
    }
    showCurrent();
}

void QlumImageView::sessionRemoved(unsigned int serverId)
{
    m_reads.endServer(serverId);
    m_decodes.endServer(serverId);
    m_status.remove(serverId);
    const std::vector<QlumImageTile*> tiles = m_tiles;
    for (QlumImageTile* tile : tiles)
        if (tile->feed()->source().serverId == serverId)
            removeTile(tile);
}

// ---- dropping

void QlumImageView::dragEnterEvent(QDragEnterEvent* event)
{
    if (qlumMayHaveNodes(event->mimeData()))
        event->acceptProposedAction();
}

void QlumImageView::dropEvent(QDropEvent* event)
{
    const QlumToolNodes nodes = qlumDroppedNodes(m_application, event->mimeData());
    if (nodes.empty())
        return;
    addNodes(nodes);
    event->acceptProposedAction();
}
