#include <plugins/history/qlumtrendviewdocument.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlumcolorlisteditor.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <plugins/history/qlumtrendextras.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendlive.h>
#include <plugins/history/qlumtrendnodes.h>
#include <plugins/history/qlumtrendpanel.h>
#include <plugins/history/qlumtrendreading.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotnavigator.h>
#include <uawidgets/plot/qlumplotpicker.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumturningsplitter.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFont>
#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QPushButton>
#include <QScrollArea>
#include <QSet>
#include <QSizePolicy>
#include <QSplitter>
#include <QString>
#include <QTabWidget>
#include <QTableView>
#include <QTimeZone>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t mostWithoutQuestion = 100; // nodes that come at a time
constexpr std::size_t curveCapacity = 5'000'000;
constexpr int smallestPlot = 24; // characters

QString dropHint()
{
    return QlumTrendViewDocument::tr(
        "Drop nodes here from the Address Space window. Only nodes of type Variable that "
        "are History Readable are accepted.");
}

} // namespace

QlumTrendViewDocument::QlumTrendViewDocument(QlumApplicationInterface& application,
                                             QlumSessionServicesProvider services,
                                             QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(std::move(services)),
      m_state(new QlumViewState(QStringLiteral("HistoryTrendView"), this)),
      m_model(new QlumTrendItemModel(application, m_services, this)),
      m_reading(new QlumTrendReading(m_services, this)), m_heading(new QlumViewHeading(this)),
      m_messages(new QlumMessageBar(this)), m_live(new QlumTrendLive(std::move(monitoring), this))
{
    setObjectName(QStringLiteral("historyTrendView"));
    setAccessibleName(tr("History Trend View"));
    setAcceptDrops(true);
    auto* splitter = new QlumTurningSplitter(this);
    splitter->setObjectName(QStringLiteral("trendSplitter"));
    auto* left = makeLeft();
    splitter->addWidget(left);
    m_tabs = new QTabWidget(splitter);
    m_tabs->setObjectName(QStringLiteral("trendTabs"));
    m_tabs->setAccessibleName(tr("Values"));
    m_tabs->addTab(makeHistoryData(), tr("History Data"));
    m_tabs->addTab(makeNumericValues(), tr("Numeric Values"));
    m_tabs->addTab(makeModifiedValues(), tr("Modified Values"));
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    m_state->keep(splitter, QStringLiteral("splitter"));
    const auto turnLeft = [left](Qt::Orientation way) { // three above each other would leave none enough room
        left->setOrientation(way == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
    };
    turnLeft(splitter->orientation());
    connect(splitter, &QlumTurningSplitter::turned, left, turnLeft);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(splitter, 1);
    connectParts();
    connectExtras();
    showState();
}

QlumTrendViewDocument::~QlumTrendViewDocument()
{
    delete m_reading; // its jobs tell of batches
    delete m_live;
    m_model->disconnect(this);
    delete m_state;
}

// ---- widgets

// Many values on the screen, and times that can be read; before the user's own widths are restored.
void QlumTrendViewDocument::makeCompact(QTableView* view, std::initializer_list<int> timeColumns)
{
    constexpr int rowMargin = 6, cellMargin = 16;
    const QFontMetrics metrics = view->fontMetrics();
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(metrics.height() + rowMargin);
    view->horizontalHeader()->setStretchLastSection(true);
    for (const int column : timeColumns)
        view->setColumnWidth(column, metrics.horizontalAdvance(QStringLiteral("2026-12-28 22:58:58.888")) +
                                         cellMargin);
}

// The names of variables are as long as somebody has made them.
void QlumTrendViewDocument::letBeSmall(QComboBox* names)
{
    constexpr int shownCharacters = 8;
    names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    names->setMinimumContentsLength(shownCharacters);
}

QSplitter* QlumTrendViewDocument::makeLeft()
{
    auto* left = new QSplitter(Qt::Vertical);
    left->setObjectName(QStringLiteral("trendLeft"));
    auto* title = new QLabel(tr("Configuration"));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    m_panel = new QlumTrendPanel;
    m_extras = new QlumTrendExtras;
    m_panel->addGroup(m_extras);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(title);
    layout->addWidget(m_panel);
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("configurationArea"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(page->minimumSizeHint().width());
    scroll->setWidget(page);
    left->addWidget(scroll);
    left->addWidget(makeItems());
    m_state->keep(left, QStringLiteral("left"));
    return left;
}

QWidget* QlumTrendViewDocument::makeItems()
{
    m_items = new QTableView;
    m_items->setObjectName(QStringLiteral("trendItems"));
    m_items->setAccessibleName(tr("Variables"));
    m_items->setModel(m_model);
    m_items->setItemDelegateForColumn(QlumTrendItemModel::Color, new QlumColorDelegate(m_items));
    m_items->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_items->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_items->setDragDropMode(QAbstractItemView::DropOnly);
    m_items->setDropIndicatorShown(false);
    makeCompact(m_items, {QlumTrendItemModel::NodeId});
    auto* removeAction = new QAction(tr("Remove Trend Item"), m_items);
    removeAction->setObjectName(QStringLiteral("removeTrendItem"));
    removeAction->setShortcut(QKeySequence::Delete);
    removeAction->setShortcutContext(Qt::WidgetShortcut);
    removeAction->setWhatsThis(
        tr("<b>Remove Trend Item</b><br>Takes the selected variables and their curves out of "
           "this view. Nothing changes on the server."));
    connect(removeAction, &QAction::triggered, this, &QlumTrendViewDocument::removeSelected);
    m_items->addAction(removeAction);
    makeItemActions();
    m_items->setContextMenuPolicy(Qt::ActionsContextMenu);
    new QlumNodeCommands(m_items, [this] { return selectedNodes(); });
    qlumMakeTable(m_items,
                  {dropHint(), QStringLiteral("trenditems"), m_state, QStringLiteral("items"), false});
    return m_items;
}

QWidget* QlumTrendViewDocument::makeHistoryData()
{
    auto* page = new QWidget;
    m_plot = new QlumPlot;
    m_plot->setObjectName(QStringLiteral("historyPlot"));
    m_plot->setFollowing(false);
    m_plot->setMinimumWidth(fontMetrics().averageCharWidth() *
                            smallestPlot); // below what its axes would like
    m_picker = new QlumPlotPicker(m_plot->area());
    m_sample = new QLabel;
    m_sample->setObjectName(QStringLiteral("sampleStatus"));
    m_sample->setAccessibleName(tr("Sample at the pointer"));
    m_sample->setTextFormat(Qt::PlainText);
    m_sample->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // what it says moves nothing
    m_sample->setFixedHeight(m_sample->fontMetrics().height() + 4);
    auto* upper = new QWidget;
    auto* upperLayout = new QVBoxLayout(upper);
    upperLayout->setContentsMargins(0, 0, 0, 0);
    upperLayout->setSpacing(0);
    upperLayout->addWidget(makeBar());
    upperLayout->addWidget(makeProgress());
    upperLayout->addWidget(m_plot, 1);
    upperLayout->addWidget(m_sample);
    auto* splitter = new QSplitter(Qt::Vertical, page);
    splitter->setObjectName(QStringLiteral("dataSplitter"));
    splitter->addWidget(upper);
    splitter->addWidget(makeTexts());
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    m_state->keep(splitter, QStringLiteral("data"));
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    return page;
}

QWidget* QlumTrendViewDocument::makeBar()
{
    auto* bar = new QlumWrappingBar;
    bar->setObjectName(QStringLiteral("trendToolBar"));
    const auto add = [bar](QAbstractButton* button, const char* name, const QString& hint) {
        button->setObjectName(QLatin1String(name));
        button->setToolTip(hint);
        button->setWhatsThis(hint);
        bar->add(button);
    };
    m_catch = new QCheckBox(tr("&Catch Values"));
    auto* reset = new QPushButton(tr("&Reset View"));
    m_liveBox = new QCheckBox(tr("Continue Li&ve"));
    auto* save = new QPushButton(tr("Save as CSV..."));
    add(m_catch, "catchValues",
        tr("The text at the pointer tells the nearest value that was read, not a place between two."));
    add(reset, "resetView", tr("Shows the whole time range that was read."));
    add(m_liveBox, "continueLive", tr("Curves go on with the values that the servers report from now on."));
    add(save, "saveRange", tr("Reads the time range into a file, more than the plot could hold."));
    connect(m_catch, &QCheckBox::toggled, this, [this](bool on) { m_picker->setCatching(on); });
    connect(reset, &QPushButton::clicked, this, &QlumTrendViewDocument::sltResetView);
    connect(save, &QPushButton::clicked, this, &QlumTrendViewDocument::askForFile);
    return bar;
}

// A line of its own, since a text that grows must neither move nor cover anything.
QWidget* QlumTrendViewDocument::makeProgress()
{
    m_progressLine = new QWidget;
    m_progress = new QLabel;
    m_progress->setObjectName(QStringLiteral("readProgress"));
    m_progress->setAccessibleName(tr("Progress of reading"));
    m_progress->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_cancel = new QPushButton(tr("Cance&l"));
    m_cancel->setObjectName(QStringLiteral("cancelReading"));
    m_cancel->setToolTip(tr("Ends reading; what has come stays."));
    m_progressLine->setMinimumHeight(m_cancel->sizeHint().height());
    m_cancel->hide();
    connect(m_cancel, &QPushButton::clicked, this, &QlumTrendViewDocument::sltCancel);
    auto* layout = new QHBoxLayout(m_progressLine);
    layout->setContentsMargins(4, 0, 4, 0);
    layout->addWidget(m_progress, 1);
    layout->addWidget(m_cancel);
    m_progressLine->hide(); // until something is read
    return m_progressLine;
}

QWidget* QlumTrendViewDocument::makeTexts()
{
    m_textPane = new QWidget;
    m_textItem = new QComboBox;
    m_textItem->setObjectName(QStringLiteral("textItem"));
    m_textItem->setAccessibleName(tr("Variable whose values are listed"));
    m_textItem->setToolTip(tr("Variables with values that are no numbers."));
    letBeSmall(m_textItem);
    m_textView = new QTableView;
    m_textView->setObjectName(QStringLiteral("nonNumericValues"));
    m_textView->setAccessibleName(tr("Values that are no numbers"));
    m_noTexts = new QlumNonNumericModel(m_textView);
    m_textFilter = new QlumTableFilter(m_textView);
    m_textFilter->setSourceModel(m_noTexts);
    m_textView->setModel(m_textFilter);
    m_textView->setSortingEnabled(true);
    m_textView->sortByColumn(-1, Qt::AscendingOrder);
    m_textView->setSelectionBehavior(QAbstractItemView::SelectRows);
    makeCompact(m_textView, {QlumNonNumericModel::SourceTimestamp, QlumNonNumericModel::ServerTimestamp});
    m_textView->setContextMenuPolicy(Qt::ActionsContextMenu);
    qlumMakeTable(m_textView, {tr("Values that are no numbers appear here."), QStringLiteral("values"),
                               m_state, QStringLiteral("texts"), false});
    connect(m_textItem, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { showTexts(); });
    auto* layout = new QVBoxLayout(m_textPane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_textItem);
    layout->addWidget(m_textView, 1);
    m_textPane->hide();
    return m_textPane;
}

void QlumTrendViewDocument::connectParts()
{
    connect(m_model, &QlumTrendItemModel::nodesWanted, this, &QlumTrendViewDocument::wantNodes);
    connect(m_model, &QlumTrendItemModel::itemAdded, this, &QlumTrendViewDocument::addTrend);
    connect(m_model, &QlumTrendItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int first, int last) { removeTrends(first, last); });
    const auto tellServers = [this] {
        QSet<unsigned int> servers;
        for (int row = 0; row < m_model->rowCount(); ++row)
            servers.insert(m_model->rowAt(row).serverId);
        qlumSetDocumentServers(this, servers.values());
    };
    connect(m_model, &QAbstractItemModel::rowsInserted, this, tellServers);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, tellServers);
    connect(m_model, &QAbstractItemModel::modelReset, this, tellServers);
    connect(m_model, &QlumTrendItemModel::colorChanged, this, [this](int key) {
        curve(key)->setOwnColor(m_model->find(key)->color);
        m_plot->area()->refresh();
        markModified();
    });
    connect(m_reading, &QlumTrendReading::batchRead, this, &QlumTrendViewDocument::takeBatch);
    connect(m_reading, &QlumTrendReading::planEnded, this, &QlumTrendViewDocument::planEnded);
    connect(m_reading, &QlumTrendReading::allEnded, this, &QlumTrendViewDocument::allEnded);
    connect(m_reading, &QlumTrendReading::startTimeRead, this, &QlumTrendViewDocument::takeStartTime);
    connect(
        m_reading, &QlumTrendReading::nodesRead, this,
        [this](unsigned int serverId, const std::vector<QlumTrendNode>& nodes, bool areNew) {
            areNew ? m_model->takeNodes(serverId, nodes) : describe(serverId, nodes);
        });
    connect(m_panel, &QlumTrendPanel::updateClicked, this,
            [this] { sltUpdateTrendData(false, m_panel->startTime(), m_panel->endTime()); });
    connect(m_panel, &QlumTrendPanel::getStartTimeClicked, this, &QlumTrendViewDocument::sltReadStartTime);
    connect(m_panel, &QlumTrendPanel::startStopClicked, this, &QlumTrendViewDocument::sltStartStop);
    connect(
        m_panel, &QlumTrendPanel::changed, this, [this] { markModified(); });
    connect(m_plot->navigator(), &QlumPlotNavigator::navigated, this, [this] { m_hasOwnView = true; });
    connect(m_picker, &QlumPlotPicker::sampleNear, this, &QlumTrendViewDocument::showSample);
    connect(&m_cyclicTimer, &QTimer::timeout, this, &QlumTrendViewDocument::sltCyclicUpdate);
    m_stateTimer.setSingleShot(true);
    connect(&m_stateTimer, &QTimer::timeout, this, &QlumTrendViewDocument::showState);
    m_progressTimer.setInterval(200);
    connect(&m_progressTimer, &QTimer::timeout, this, &QlumTrendViewDocument::showProgress);
}

// ---- items

void QlumTrendViewDocument::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasFormat(m_model->mimeTypes().constFirst()))
        event->acceptProposedAction();
}

void QlumTrendViewDocument::dropEvent(QDropEvent* event)
{
    if (m_model->dropMimeData(event->mimeData(), event->dropAction(), -1, -1, {}))
        event->acceptProposedAction();
}

void QlumTrendViewDocument::addNodes(std::span<const QlumToolNode> nodes)
{
    std::map<unsigned int, std::vector<UaNodeId>> ids;
    for (const QlumToolNode& node : nodes)
        ids[node.serverId].push_back(node.nodeId);
    for (const auto& [serverId, ofServer] : ids)
        m_model->wantNodes(serverId, ofServer);
}

void QlumTrendViewDocument::wantNodes(unsigned int serverId, const std::vector<UaNodeId>& ids)
{
    const auto read = [this, serverId, ids] { m_reading->readNodes(serverId, ids, true); };
    if (ids.size() <= mostWithoutQuestion)
        return read();
    m_messages->tell({QlumMessage::Warning, QStringLiteral("drop"),
                      tr("%n nodes are to be added at once.", nullptr, static_cast<int>(ids.size())),
                      tr("Each of them is read from its server, and gets a curve of its own."),
                      tr("&Add Them"), read});
}

void QlumTrendViewDocument::addTrend(int key, const QlumTrendNode& node)
{
    Trend& trend = m_trends[key];
    trend.node = node;
    trend.texts = std::make_shared<QlumNonNumericModel>();
    makeCurve(trend, *m_model->find(key));
    markModified();
    const QlumTrendItem& item = *m_model->find(key);
    if (m_liveBox->isChecked())
        m_live->watch(key, item.serverId, item.nodeId);
    if (!m_aggregateServers.contains(item.serverId) && isConnected(item.serverId)) {
        m_aggregateServers.insert(item.serverId);
        m_reading->readAggregates(item.serverId);
    }
    showStateSoon();
}

void QlumTrendViewDocument::makeCurve(Trend& trend, const QlumTrendItem& item)
{
    const bool isDigital = !trend.node.valueNames.isEmpty();
    if (isDigital && trend.node.unit.isEmpty())
        trend.node.unit = tr("state"); // beside numbers without a unit a state would look flat
    QlumPlotCurve* made = m_plot->addCurve(
        item.name, trend.node.unit, item.stepped || isDigital ? QlumCurveForm::Steps : QlumCurveForm::Lines,
        curveCapacity);
    made->setOwnColor(item.color);
    made->setWidth(item.width);
    if (trend.node.range)
        made->setUsualRange(QwtInterval(trend.node.range->first, trend.node.range->second));
    made->setValueNames(trend.node.valueNames);
    if (trend.curve) {
        made->samples() = trend.curve->samples();
        m_plot->removeCurve(trend.curve);
    }
    trend.curve = made;
}

// What a server says of nodes that were there before it was connected.
void QlumTrendViewDocument::describe(unsigned int serverId, const std::vector<QlumTrendNode>& nodes)
{
    for (const QlumTrendItem& item : m_model->rows()) {
        const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const QlumTrendNode& node) {
            return serverId == item.serverId && node.nodeId == item.nodeId && node.refused.isEmpty();
        });
        if (found == nodes.end())
            continue;
        Trend& trend = m_trends.at(item.key);
        trend.node = *found;
        makeCurve(trend, item);
    }
    showState();
}

void QlumTrendViewDocument::removeTrends(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto found = m_trends.find(m_model->rowAt(row).key);
        if (found == m_trends.end())
            continue;
        m_live->unwatch(found->first);
        m_plot->removeCurve(found->second.curve);
        if (found->second.processed != nullptr)
            m_plot->removeCurve(found->second.processed);
        const int key = found->first;
        const auto removed = m_trends.extract(found); // not found by its key any more, but there
        m_textItem->removeItem(m_textItem->findData(key));
        showTexts();
    }
    m_sample->clear();
    markModified();
    showStateSoon();
}

void QlumTrendViewDocument::removeSelected()
{
    QModelIndexList rows = m_items->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& left, const QModelIndex& right) { return left.row() > right.row(); });
    for (const QModelIndex& row : rows)
        m_model->removeItems(row.row(), 1);
}

QlumToolNodes QlumTrendViewDocument::selectedNodes() const
{
    QlumToolNodes nodes;
    for (const QModelIndex& row : m_items->selectionModel()->selectedRows()) {
        const QlumTrendItem& item = m_model->rowAt(row.row());
        nodes.push_back({item.serverId, item.nodeId, OpcUa_NodeClass_Variable, {}, item.name});
    }
    return nodes;
}

QlumPlotCurve* QlumTrendViewDocument::curve(int key) const
{
    const auto found = m_trends.find(key);
    return found == m_trends.end() ? nullptr : found->second.curve;
}

QlumNonNumericModel* QlumTrendViewDocument::texts(int key) const
{
    const auto found = m_trends.find(key);
    return found == m_trends.end() ? nullptr : found->second.texts.get();
}

// ---- values under the pointer, and values without a curve

void QlumTrendViewDocument::showSample(QlumPlotCurve* curve, quint64 index)
{
    if (curve == nullptr) {
        m_sample->clear();
        return;
    }
    const QlumSample sample = curve->samples().at(index);
    const bool isUtc = m_plot->area()->timeZone() == QTimeZone::utc();
    const QString status = qlumStatusText(sample.status), words = qlumStatusWords(status);
    const QString server =
        sample.serverTime == 0 ? tr("unknown") : qlumHistoryTime(UaDateTime(sample.serverTime), isUtc);
    m_sample->setText(tr("%1: %2; %3; source %4, server %5")
                          .arg(qlumSingleLine(curve->name()), curve->valueText(sample.value),
                               words.isEmpty() ? status : tr("%1 (%2)").arg(status, words),
                               qlumHistoryTime(UaDateTime(sample.time), isUtc), server));
}

void QlumTrendViewDocument::showTexts()
{
    QlumNonNumericModel* shown = texts(m_textItem->currentData().toInt());
    m_textPane->setVisible(shown != nullptr);
    QAbstractItemModel* model = shown != nullptr ? shown : m_noTexts;
    if (m_textFilter->sourceModel() != model)
        m_textFilter->setSourceModel(model);
}
