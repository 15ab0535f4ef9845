#include <plugins/performance/qlumperformanceview.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumdroppednodes.h>
#include <app/api/qlumtext.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumruncomparisonmodel.h>
#include <plugins/performance/qlumrunmodel.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumbarplot.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumturningsplitter.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFormLayout>
#include <QFrame>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QList>
#include <QLocale>
#include <QMimeData>
#include <QModelIndex>
#include <QModelIndexList>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSize>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

namespace {
constexpr int progressInterval = 250; // ms
constexpr std::size_t mostPoints = 1'000'000;
constexpr int rowMargin = 6;
constexpr int binsPerDecade = 5;        // whose names have room beside each other
constexpr QSize smallestPlot{200, 120}; // more names than that are no reason to make the window wider
} // namespace

QlumPerformanceView::QlumPerformanceView(QlumApplicationInterface& application,
                                         QlumSessionServicesProvider services, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(services),
      m_state(new QlumViewState(QStringLiteral("PerformanceView"), this)),
      m_work(new QlumPerformanceWork(std::move(services), this)),
      m_nodes(
          new QlumMeasuredNodesModel([this](unsigned int id) { return m_application.serverName(id); }, this)),
      m_runs(new QlumRunModel(this)), m_figures(new QlumRunComparisonModel(this)),
      m_sortedRuns(new QlumTableFilter(this)), m_heading(new QlumViewHeading(this)),
      m_messages(new QlumMessageBar(this)), m_panel(new QlumPerformancePanel(m_nodes, m_state))
{
    setObjectName(QStringLiteral("performanceView"));
    setAccessibleName(tr("Performance View"));
    setAcceptDrops(true);
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("measurementArea"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(m_panel);
    scroll->setMinimumWidth(m_panel->minimumSizeHint().width());
    auto* across = new QlumTurningSplitter;
    across->setObjectName(QStringLiteral("performanceSplitter"));
    across->addWidget(scroll);
    across->addWidget(makeResults());
    across->setStretchFactor(0, 0);
    across->setStretchFactor(1, 1);
    m_state->keep(across, QStringLiteral("across"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(across, 1);
    connectParts();
    for (QTableView* table : findChildren<QTableView*>())
        table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + rowMargin);
    showServers();
    listRuns();
    showRun();
}

QlumPerformanceView::~QlumPerformanceView()
{
    delete m_work; // its jobs tell of runs
    delete m_state;
}

// ---- widgets

QWidget* QlumPerformanceView::makeResults()
{
    auto* down = new QSplitter(Qt::Vertical);
    down->setObjectName(QStringLiteral("performanceResults"));
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("performanceTabs"));
    m_tabs->setAccessibleName(tr("The selected run"));
    m_tabs->addTab(makeFigures(), tr("Figures"));
    m_histogram = new QlumBarPlot;
    m_histogram->setObjectName(QStringLiteral("histogram"));
    m_histogram->setAccessibleName(tr("How the durations are spread"));
    m_histogram->setEmptyText(tr("No samples"), tr("Measure, and select the run in the table below."));
    m_histogram->setMinimumSize(smallestPlot);
    m_tabs->addTab(m_histogram, tr("Histogram"));
    m_course = new QlumPlot;
    m_course->setObjectName(QStringLiteral("course"));
    m_course->setAccessibleName(tr("Durations over time"));
    m_course->setEmptyText(tr("No samples"), tr("Measure, and select the run in the table below."));
    m_course->setFollowing(false);
    m_tabs->addTab(m_course, tr("Course"));
    auto* sweep = new QWidget;
    auto* layout = new QVBoxLayout(sweep);
    m_sweepText = new QLabel;
    m_sweepText->setObjectName(QStringLiteral("sweepText"));
    m_sweepText->setWordWrap(true);
    m_sweepText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_sweepPlot = new QlumBarPlot;
    m_sweepPlot->setObjectName(QStringLiteral("sweepPlot"));
    m_sweepPlot->setAccessibleName(tr("Values a second for each step of the sweep"));
    m_sweepPlot->setEmptyText(tr("No sweep"),
                              tr("\"Sweep Nodes a Call\" measures the same with ever larger calls."));
    m_sweepPlot->setMinimumSize(smallestPlot);
    layout->addWidget(m_sweepText);
    layout->addWidget(m_sweepPlot, 1);
    m_tabs->addTab(sweep, tr("Sweep"));
    down->addWidget(m_tabs);
    down->addWidget(makeRuns());
    m_state->keep(down, QStringLiteral("down"));
    return down;
}

QWidget* QlumPerformanceView::makeFigures()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    m_compareWith = new QComboBox;
    m_compareWith->setObjectName(QStringLiteral("compareWith"));
    m_compareWith->setMinimumContentsLength(16);
    m_compareWith->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* label = new QLabel(tr("Compare &with:"));
    label->setBuddy(m_compareWith);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_compareWith, 1);
    m_remarks = new QLabel;
    m_remarks->setObjectName(QStringLiteral("remarks"));
    m_remarks->setWordWrap(true);
    m_remarks->setTextFormat(Qt::PlainText);
    m_remarks->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* view = new QTableView;
    view->setObjectName(QStringLiteral("figures"));
    view->setAccessibleName(tr("Figures"));
    view->setModel(m_figures);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->verticalHeader()->hide();
    view->setColumnWidth(QlumRunComparisonModel::Figure, view->fontMetrics().averageCharWidth() * 50);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    qlumMakeTable(view, {tr("Measure, and select the run in the table below."), QStringLiteral("figures"),
                         m_state, QStringLiteral("figures"), false});
    layout->addLayout(row);
    layout->addWidget(view, 1);
    layout->addWidget(m_remarks);
    return page;
}

QWidget* QlumPerformanceView::makeRuns()
{
    m_runsView = new QTableView;
    m_runsView->setObjectName(QStringLiteral("runs"));
    m_runsView->setAccessibleName(tr("Runs"));
    m_sortedRuns->setSourceModel(m_runs);
    m_sortedRuns->setSortRole(Qt::EditRole);
    m_runsView->setModel(m_sortedRuns);
    m_runsView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_runsView->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_runsView->verticalHeader()->hide();
    m_runsView->setColumnWidth(QlumRunModel::Name, m_runsView->fontMetrics().averageCharWidth() * 24);
    m_runsView->setSortingEnabled(true);
    m_runsView->sortByColumn(-1, Qt::AscendingOrder);
    m_runsView->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* removeAction = new QAction(tr("&Remove Runs"), m_runsView);
    removeAction->setObjectName(QStringLiteral("removeRuns"));
    removeAction->setShortcut(QKeySequence::Delete);
    removeAction->setShortcutContext(Qt::WidgetShortcut);
    removeAction->setWhatsThis(tr("<b>Remove Runs</b><br>Takes the selected runs out of the table."));
    connect(removeAction, &QAction::triggered, this, &QlumPerformanceView::removeRuns);
    m_runsView->addAction(removeAction);
    qlumMakeTable(m_runsView, {tr("What you measure is listed here, and kept in the project."),
                               QStringLiteral("runs"), m_state, QStringLiteral("runs"), false});
    return m_runsView;
}

void QlumPerformanceView::connectParts()
{
    auto* removeNodes = new QAction(tr("&Remove Nodes"), m_panel->nodesView());
    removeNodes->setObjectName(QStringLiteral("removeMeasuredNodes"));
    removeNodes->setShortcut(QKeySequence::Delete);
    removeNodes->setShortcutContext(Qt::WidgetShortcut);
    removeNodes->setWhatsThis(
        tr("<b>Remove Nodes</b><br>Takes the selected nodes out of this view. Nothing changes "
           "on the server."));
    connect(removeNodes, &QAction::triggered, this, [this] {
        QModelIndexList rows = m_panel->nodesView()->selectionModel()->selectedRows();
        std::sort(rows.begin(), rows.end(),
                  [](const QModelIndex& a, const QModelIndex& b) { return a.row() > b.row(); });
        for (const QModelIndex& row : std::as_const(rows))
            m_nodes->removeNodes(row.row(), 1);
        markModified();
    });
    m_panel->nodesView()->insertAction(m_panel->nodesView()->actions().value(0), removeNodes);
    new QlumNodeCommands(m_panel->nodesView(), [this] {
        QlumToolNodes nodes;
        for (const QModelIndex& row : m_panel->nodesView()->selectionModel()->selectedRows())
            nodes.push_back(m_nodes->rowAt(row).node);
        return nodes;
    });
    connect(m_panel, &QlumPerformancePanel::measure, this, &QlumPerformanceView::measure);
    connect(
        m_panel, &QlumPerformancePanel::sweepNodes, this, [this] { sweep(QlumSweepOver::NodesPerCall); });
    connect(
        m_panel, &QlumPerformancePanel::sweepOutstanding, this,
        [this] { sweep(QlumSweepOver::Outstanding); });
    connect(m_panel, &QlumPerformancePanel::compareSecurity, this,
            [this] { m_work->listEndpoints(m_panel->serverId()); });
    connect(m_panel, &QlumPerformancePanel::cancel, m_work, &QlumPerformanceWork::cancel);
    connect(m_panel, &QlumPerformancePanel::changed, this, &QlumPerformanceView::markModified);
    connect(m_panel, &QlumPerformancePanel::serverChanged, this, [this] {
        showHeading();
        markModified();
    });
    connect(m_work, &QlumPerformanceWork::described, this, &QlumPerformanceView::takeNodes);
    connect(m_work, &QlumPerformanceWork::checked, this, &QlumPerformanceView::askForWrite);
    connect(m_work, &QlumPerformanceWork::argumentsKnown, this, &QlumPerformanceView::askForArguments);
    connect(m_work, &QlumPerformanceWork::offered, this, &QlumPerformanceView::chooseEndpoints);
    connect(m_work, &QlumPerformanceWork::ended, this, &QlumPerformanceView::takeRun);
    connect(m_work, &QlumPerformanceWork::swept, this, &QlumPerformanceView::takeSweep);
    connect(m_work, &QlumPerformanceWork::leftOut, this,
            [this](const QString& endpoint, const QString& reason) {
                m_leftOut.append(QStringLiteral("%1: %2").arg(endpoint, reason));
            });
    connect(m_work, &QlumPerformanceWork::finished, this, [this] {
        if (!m_leftOut.isEmpty())
            m_messages->tell({QlumMessage::Warning,
                              QStringLiteral("leftOut"),
                              tr("%n endpoint(s) could not be measured.", nullptr, m_leftOut.size()),
                              m_leftOut.join(QStringLiteral("; ")),
                              {},
                              {}});
        m_leftOut.clear();
    });
    connect(m_work, &QlumPerformanceWork::stateChanged, this, &QlumPerformanceView::showProgress);
    connect(&m_progressTimer, &QTimer::timeout, this, &QlumPerformanceView::showProgress);
    m_progressTimer.setInterval(progressInterval);
    connect(m_runsView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumPerformanceView::showRun);
    connect(m_compareWith, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumPerformanceView::showRun);
    connect(m_runs, &QlumRunModel::renamed, this, [this] {
        listRuns();
        markModified();
    });
    connect(m_tabs, &QTabWidget::currentChanged, this, &QlumPerformanceView::showRun);
}

// ---- showing

int QlumPerformanceView::currentRow() const
{
    const QModelIndex current = m_runsView->currentIndex();
    return current.isValid() ? m_sortedRuns->mapToSource(current).row() : -1;
}

void QlumPerformanceView::showRun()
{
    const int row = currentRow();
    if (row < 0) {
        m_figures->show({}, {});
        m_remarks->clear();
        m_remarks->hide();
        m_histogram->setHistogram({}, {});
        m_course->clearSamples();
        return;
    }
    const QlumMeasurementRun& run = m_runs->rowAt(row);
    const int other = m_compareWith->currentData().isValid() ? m_compareWith->currentData().toInt() : -1;
    m_figures->show(run, other >= 0 && other < m_runs->rowCount() && other != row
                             ? std::optional(m_runs->rowAt(other))
                             : std::nullopt);
    m_remarks->setText(run.remarks.join(QLatin1Char('\n')));
    m_remarks->setVisible(!run.remarks.isEmpty());
    if (m_tabs->currentWidget() == m_histogram || m_tabs->currentWidget() == m_course)
        showSamples(run);
}

void QlumPerformanceView::showSamples(const QlumMeasurementRun& run)
{
    const QString hint = run.samples ? tr("No call of this run has succeeded.")
                                     : tr("A project keeps the figures of a run, not its samples.");
    m_histogram->setEmptyText(tr("No samples"), hint);
    m_course->setEmptyText(tr("No samples"), hint);
    const std::vector<QlumCallSample> samples =
        run.samples ? run.samples->from(0) : std::vector<QlumCallSample>();
    if (m_tabs->currentWidget() == m_histogram) {
        std::vector<float> durations;
        for (const QlumCallSample& sample : samples)
            if (!OpcUa_IsBad(sample.status))
                durations.push_back(sample.duration);
        std::vector<QlumBar> bars;
        for (const QlumLogBin& bin : qlumLogHistogram(durations, binsPerDecade))
            bars.push_back({qlumMicrosecondsText(bin.from), static_cast<double>(bin.count)});
        m_histogram->setBars(std::move(bars), tr("calls by duration"));
        return;
    }
    m_course->clearSamples();
    for (QlumPlotCurve* old : m_course->area()->curves())
        m_course->removeCurve(old);
    if (samples.empty())
        return;
    QlumPlotCurve* curve =
        m_course->addCurve(qlumSingleLine(run.name), QStringLiteral("us"), QlumCurveForm::Lines, mostPoints);
    const auto begin = static_cast<std::int64_t>(qlumUaDateTime(run.begun));
    std::vector<QlumSample> points;
    points.reserve(samples.size());
    for (const QlumCallSample& sample : samples)
        points.push_back({begin + static_cast<std::int64_t>(sample.begun) * 100,
                          static_cast<double>(sample.duration), sample.status, 0});
    m_course->append(curve, points);
    const auto from = static_cast<double>(run.begun.toMSecsSinceEpoch());
    const double span = std::max(1.0, run.figures.totals.seconds * 1000);
    m_course->area()->setView({from, from + span, {}});
}

void QlumPerformanceView::listRuns()
{
    const QVariant before = m_compareWith->currentData();
    const QSignalBlocker blocker(m_compareWith);
    m_compareWith->clear();
    m_compareWith->addItem(tr("nothing"));
    for (int row = 0; row < m_runs->rowCount(); ++row)
        m_compareWith->addItem(m_runs->rowAt(row).name, row);
    m_compareWith->setCurrentIndex(std::max(0, m_compareWith->findData(before)));
}

void QlumPerformanceView::removeRuns()
{
    QModelIndexList rows = m_runsView->selectionModel()->selectedRows();
    std::vector<int> sources;
    for (const QModelIndex& row : std::as_const(rows))
        sources.push_back(m_sortedRuns->mapToSource(row).row());
    std::sort(sources.rbegin(), sources.rend());
    for (const int row : sources)
        m_runs->removeRuns(row, 1);
    m_compareWith->setCurrentIndex(0); // its rows are others now
    listRuns();
    showRun();
    markModified();
}

void QlumPerformanceView::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

// ---- servers

void QlumPerformanceView::showServers()
{
    std::vector<std::pair<unsigned int, QString>> servers;
    for (const unsigned int id : m_application.projectServerIds())
        servers.emplace_back(id, m_application.serverName(id));
    m_panel->setServers(servers);
    showHeading();
}

void QlumPerformanceView::showHeading()
{
    const unsigned int server = m_panel->serverId();
    qlumSetDocumentServers(this,
                           server == qlumNoServer ? QList<unsigned int>() : QList<unsigned int>{server});
    if (server == qlumNoServer)
        return m_heading->clear();
    m_heading->setServer(m_application.serverName(server));
    // a document that is opened later than its server has heard of no change
    const auto services = m_services(server);
    const auto now = services && services->isConnected() ? QlumConnectionStatus::Connected
                                                         : QlumConnectionStatus::Disconnected;
    m_heading->setStatus(m_status.value(server, now));
}

void QlumPerformanceView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                               const QMap<quint16, quint16>& map)
{
    m_status.insert(serverId, status);
    if (!map.isEmpty())
        m_nodes->remap(serverId, map);
    showServers();
}

void QlumPerformanceView::sessionRemoved(unsigned int serverId)
{
    m_work->endServer(serverId);
    m_status.remove(serverId);
    m_nodes->removeServer(serverId);
    QTimer::singleShot(0, this, [this] { showServers(); }); // the project has it until this returns
}

// ---- nodes

void QlumPerformanceView::addNodes(std::span<const QlumToolNode> nodes)
{
    if (nodes.empty())
        return;
    QlumToolNodes unknown;
    QlumToolNodes known;
    for (const QlumToolNode& node : nodes) {
        const bool isKnown = node.nodeClass != OpcUa_NodeClass_Unspecified && !node.name.isEmpty() &&
                             (node.nodeClass != OpcUa_NodeClass_Method || !node.parentId.isNull());
        (isKnown ? known : unknown).push_back(node);
    }
    if (!unknown.empty())
        m_work->describe(unknown);
    takeNodes(known);
}

void QlumPerformanceView::takeNodes(const QlumToolNodes& nodes)
{
    if (nodes.empty())
        return;
    m_nodes->addNodes(nodes);
    if (m_panel->plan().nodes.empty())
        m_panel->setServer(nodes.front().serverId);
    markModified();
}

void QlumPerformanceView::dragEnterEvent(QDragEnterEvent* event)
{
    if (qlumMayHaveNodes(event->mimeData()))
        event->acceptProposedAction();
}

void QlumPerformanceView::dropEvent(QDropEvent* event)
{
    const QlumToolNodes nodes = qlumDroppedNodes(m_application, event->mimeData());
    if (nodes.empty())
        return;
    addNodes(nodes);
    event->acceptProposedAction();
}
