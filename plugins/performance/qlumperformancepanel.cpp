#include <plugins/performance/qlumperformancepanel.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <monitoring/namespaces.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace {
constexpr int mostNodes = 10'000; // in a call
constexpr int mostOutstanding = 64;
constexpr int kinds = 9;

enum NodeColumn { Node, NodeIdText, Server };

bool canBeMeasured(QlumMeasuredKind kind, OpcUa_NodeClass nodeClass)
{
    if (nodeClass == OpcUa_NodeClass_Unspecified)
        return kind != QlumMeasuredKind::Call;
    switch (kind) {
    case QlumMeasuredKind::Browse:
    case QlumMeasuredKind::TranslatePaths:
        return true;
    case QlumMeasuredKind::Call:
        return nodeClass == OpcUa_NodeClass_Method;
    default:
        return nodeClass == OpcUa_NodeClass_Variable;
    }
}
} // namespace

// ---- nodes

QlumMeasuredNodesModel::QlumMeasuredNodesModel(ServerName serverName, QObject* parent)
    : QlumTableModel({tr("Node"), tr("Node Id"), tr("Server")}, parent), m_serverName(std::move(serverName))
{
}

void QlumMeasuredNodesModel::addNodes(std::span<const QlumToolNode> nodes)
{
    std::vector<QlumMeasuredNode> added;
    for (const QlumToolNode& node : nodes) {
        const auto isSame = [&node](const QlumMeasuredNode& other) {
            return other.node.serverId == node.serverId && other.node.nodeId == node.nodeId;
        };
        if (std::none_of(rows().begin(), rows().end(), isSame) &&
            std::none_of(added.begin(), added.end(), isSame))
            added.push_back({node, false});
    }
    append(std::move(added));
}

void QlumMeasuredNodesModel::removeServer(unsigned int serverId)
{
    for (int row = rowCount() - 1; row >= 0; --row)
        if (rowAt(row).node.serverId == serverId)
            remove(row, 1);
}

void QlumMeasuredNodesModel::remap(unsigned int serverId, const QMap<quint16, quint16>& map)
{
    const monitoring::NamespaceMap namespaces = map.toStdMap();
    changeRows([&](QlumMeasuredNode& node) {
        if (node.node.serverId != serverId || node.isLost)
            return false;
        UaNodeId nodeId = node.node.nodeId;
        UaNodeId parentId = node.node.parentId;
        node.isLost =
            !monitoring::remapNodeId(nodeId, namespaces) || !monitoring::remapNodeId(parentId, namespaces);
        if (!node.isLost) {
            node.node.nodeId = nodeId;
            node.node.parentId = parentId;
        }
        return true;
    });
}

QVariant QlumMeasuredNodesModel::cell(const QlumMeasuredNode& node, int column, int role) const
{
    if (role == Qt::ToolTipRole && node.isLost)
        return tr("Its server has no such namespace now.");
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (column) {
    case Node:
        return node.isLost ? tr("%1 (not there)").arg(node.node.name) : qlumSingleLine(node.node.name);
    case NodeIdText:
        return toQString(node.node.nodeId.toXmlString());
    case Server:
        return m_serverName(node.node.serverId);
    default:
        return {};
    }
}

// ---- fields

QlumPerformancePanel::QlumPerformancePanel(QlumMeasuredNodesModel* nodes, QlumViewState* state,
                                           QWidget* parent)
    : QWidget(parent), m_nodes(nodes), m_nodesView(new QTableView), m_hint(new QLabel),
      m_activity(new QLabel), m_progress(new QProgressBar)
{
    setObjectName(QStringLiteral("performancePanel"));
    setAccessibleName(tr("Measurement"));
    m_nodesView->setObjectName(QStringLiteral("measuredNodes"));
    m_nodesView->setAccessibleName(tr("Nodes to be measured"));
    m_nodesView->setModel(m_nodes);
    m_nodesView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_nodesView->verticalHeader()->hide();
    m_nodesView->horizontalHeader()->setStretchLastSection(true);
    m_nodesView->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeFields());
    layout->addWidget(m_nodesView, 1);
    m_hint->setObjectName(QStringLiteral("measureHint"));
    m_hint->setWordWrap(true);
    layout->addWidget(m_hint);
    layout->addWidget(makeCommands());
    qlumMakeTable(m_nodesView, {tr("Drop nodes here from the Address Space window."),
                                QStringLiteral("measurednodes"), state, QStringLiteral("nodes"), false});
    for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(
            m_nodes, signal, this, [this] { showState(); });
    connect(
        m_nodes, &QAbstractItemModel::dataChanged, this, [this] { showState(); });
    connect(m_nodes, &QAbstractItemModel::modelReset, this, [this] { showState(); });
    setIdle();
}

QSpinBox* QlumPerformancePanel::makeNumber(const QString& name, int minimum, int maximum, int value)
{
    auto* field = new QSpinBox;
    field->setObjectName(name);
    field->setRange(minimum, maximum);
    field->setValue(value);
    field->setGroupSeparatorShown(true);
    connect(field, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] {
        showState();
        emit changed();
    });
    return field;
}

QWidget* QlumPerformancePanel::makeFields()
{
    constexpr int most = std::numeric_limits<int>::max();
    auto* fields = new QWidget;
    auto* form = new QFormLayout(fields);
    form->setContentsMargins(0, 0, 0, 0);
    m_server = new QComboBox;
    m_server->setMinimumContentsLength(12);
    m_server->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_kind = new QComboBox;
    m_kind->setMinimumContentsLength(12);
    m_kind->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (int kind = 0; kind < kinds; ++kind)
        m_kind->addItem(qlumMeasuredName(static_cast<QlumMeasuredKind>(kind)), kind);
    m_nodesPerCall = makeNumber(QStringLiteral("nodesPerCall"), 1, mostNodes, 1);
    m_calls = makeNumber(QStringLiteral("calls"), 0, most, 1000);
    m_calls->setSpecialValueText(tr("as many as fit"));
    m_seconds = makeNumber(QStringLiteral("seconds"), 0, 24 * 3600, 0);
    m_seconds->setSpecialValueText(tr("no limit"));
    m_seconds->setSuffix(tr(" s"));
    m_pause = makeNumber(QStringLiteral("pause"), 0, 3600'000, 0);
    m_pause->setSpecialValueText(tr("none"));
    m_pause->setSuffix(tr(" ms"));
    m_outstanding = makeNumber(QStringLiteral("outstanding"), 1, mostOutstanding, 1);
    m_timeout = makeNumber(QStringLiteral("timeout"), 1, most, static_cast<int>(qlumCallTimeout()));
    m_timeout->setSuffix(tr(" ms"));
    m_warmUp = makeNumber(QStringLiteral("warmUp"), 0, 100'000, 20);
    qlumAddRow(form, m_server,
               {QStringLiteral("server"), tr("Ser&ver:"), tr("Whose services are measured."), {}});
    qlumAddRow(
        form, m_kind,
        {QStringLiteral("kind"), tr("&Measure:"), tr("The service that is called again and again."), {}});
    qlumAddRow(form, m_nodesPerCall,
               {QStringLiteral("nodesPerCall"),
                tr("&Nodes a call:"),
                tr("The nodes below are taken in turn until a call has that many."),
                {}});
    qlumAddRow(form, m_calls,
               {QStringLiteral("calls"), tr("&Calls:"), tr("How often the service is called."), {}});
    qlumAddRow(form, m_seconds,
               {QStringLiteral("seconds"),
                tr("D&uration:"),
                tr("The run ends after that time, at the latest."),
                {}});
    qlumAddRow(form, m_pause,
               {QStringLiteral("pause"), tr("&Pause:"), tr("Between the end of a call and the next."), {}});
    qlumAddRow(
        form, m_outstanding,
        {QStringLiteral("outstanding"), tr("&Outstanding:"), tr("So many calls are under way at once."), {}});
    qlumAddRow(
        form, m_timeout,
        {QStringLiteral("timeout"), tr("&Time-out:"), tr("Calls that take longer count as failed."), {}});
    qlumAddRow(form, m_warmUp,
               {QStringLiteral("warmUp"),
                tr("W&arm-up:"),
                tr("Calls that are made before and do not count: caches, also those of the server, "
                   "are filled then."),
                {}});
    connect(m_server, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        showState();
        emit serverChanged();
    });
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        showState();
        emit changed();
    });
    return fields;
}

QWidget* QlumPerformancePanel::makeCommands()
{
    auto* commands = new QWidget;
    auto* layout = new QVBoxLayout(commands);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto make = [this](const char* name, const QString& text, const QString& help,
                             void (QlumPerformancePanel::*signal)()) {
        auto* button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(help);
        button->setWhatsThis(help);
        connect(button, &QPushButton::clicked, this, signal);
        return button;
    };
    m_measure = make("measure", tr("M&easure"), tr("Makes the calls once."), &QlumPerformancePanel::measure);
    m_sweepNodes = make("sweepNodes", tr("Sweep Nodes a Call"),
                        tr("Measures with 1, 2, 5, 10 ... nodes a call, up to the server's limit, and says "
                           "from which number on more do not help."),
                        &QlumPerformancePanel::sweepNodes);
    m_sweepOutstanding = make("sweepOutstanding", tr("Sweep Outstanding"),
                              tr("Measures with 1, 2, 5, 10 ... calls at once, and says from which number on "
                                 "more do not help."),
                              &QlumPerformancePanel::sweepOutstanding);
    m_compare = make("compareSecurity", tr("Compare Security..."),
                     tr("Measures the same over endpoints of the server, each in a session of its own."),
                     &QlumPerformancePanel::compareSecurity);
    m_cancel = make("cancelMeasuring", tr("Cancel"), tr("Ends the run after the calls that are under way."),
                    &QlumPerformancePanel::cancel);
    m_activity->setObjectName(QStringLiteral("measureActivity"));
    m_progress->setObjectName(QStringLiteral("measureProgress"));
    m_progress->setAccessibleName(tr("Progress of the run"));
    auto* buttons = new QlumWrappingBar;
    for (QPushButton* button : {m_measure, m_compare, m_sweepNodes, m_sweepOutstanding})
        buttons->add(button);
    layout->addWidget(buttons);
    layout->addWidget(m_activity);
    auto* row = new QHBoxLayout;
    row->addWidget(m_progress, 1);
    row->addWidget(m_cancel);
    layout->addLayout(row);
    return commands;
}

void QlumPerformancePanel::setServers(const std::vector<std::pair<unsigned int, QString>>& servers)
{
    const unsigned int before = serverId();
    {
        const QSignalBlocker blocker(m_server);
        m_server->clear();
        for (const auto& [id, name] : servers)
            m_server->addItem(qlumSingleLine(name), id);
        m_server->setCurrentIndex(std::max(0, m_server->findData(before)));
    }
    showState();
    if (serverId() != before)
        emit serverChanged();
}

unsigned int QlumPerformancePanel::serverId() const
{
    return m_server->currentIndex() < 0 ? qlumNoServer : m_server->currentData().toUInt();
}

void QlumPerformancePanel::setServer(unsigned int serverId)
{
    if (const int index = m_server->findData(serverId); index >= 0)
        m_server->setCurrentIndex(index);
}

QlumMeasurementPlan QlumPerformancePanel::plan() const
{
    QlumMeasurementPlan plan;
    plan.kind = static_cast<QlumMeasuredKind>(m_kind->currentData().toInt());
    plan.serverId = serverId();
    plan.nodesPerCall = static_cast<quint32>(m_nodesPerCall->value());
    plan.calls = static_cast<quint32>(m_calls->value());
    plan.seconds = static_cast<quint32>(m_seconds->value());
    plan.pause = static_cast<quint32>(m_pause->value());
    plan.outstanding = static_cast<quint32>(m_outstanding->value());
    plan.timeout = static_cast<quint32>(m_timeout->value());
    plan.warmUp = static_cast<quint32>(m_warmUp->value());
    for (const QlumMeasuredNode& node : m_nodes->rows())
        if (node.node.serverId == plan.serverId && !node.isLost &&
            canBeMeasured(plan.kind, node.node.nodeClass))
            plan.nodes.push_back(node.node);
    return plan;
}

void QlumPerformancePanel::setPlan(const QlumMeasurementPlan& plan)
{
    m_kind->setCurrentIndex(m_kind->findData(static_cast<int>(plan.kind)));
    const auto set = [](QSpinBox* field, quint32 value) {
        field->setValue(static_cast<int>(std::min<quint32>(value, std::numeric_limits<int>::max())));
    };
    set(m_nodesPerCall, plan.nodesPerCall);
    set(m_calls, plan.calls);
    set(m_seconds, plan.seconds);
    set(m_pause, plan.pause);
    set(m_outstanding, plan.outstanding);
    set(m_timeout, plan.timeout);
    set(m_warmUp, plan.warmUp);
}

QString QlumPerformancePanel::obstacle() const
{
    const QlumMeasurementPlan asked = plan();
    if (asked.serverId == qlumNoServer)
        return tr("The project has no server.");
    if (asked.calls == 0 && asked.seconds == 0)
        return tr("Give a number of calls or a duration: the run would never end.");
    if (asked.kind == QlumMeasuredKind::Session || !asked.nodes.empty())
        return {};
    if (asked.kind == QlumMeasuredKind::Call)
        return tr("Drop methods of this server: there is none below.");
    if (asked.kind == QlumMeasuredKind::Browse || asked.kind == QlumMeasuredKind::TranslatePaths)
        return tr("Drop nodes of this server: there is none below.");
    return tr("Drop variables of this server: there is none below.");
}

void QlumPerformancePanel::setRunning(const QString& text, quint64 done, quint64 total)
{
    m_isRunning = true;
    m_activity->setText(text);
    m_progress->setRange(0, total > 0 ? 1000 : 0);
    if (total > 0)
        m_progress->setValue(static_cast<int>(std::min<quint64>(1000, done * 1000 / total)));
    showState();
}

void QlumPerformancePanel::setIdle()
{
    m_isRunning = false;
    m_activity->clear();
    m_progress->setRange(0, 1000);
    m_progress->reset();
    showState();
}

void QlumPerformancePanel::showState()
{
    const QString why = obstacle();
    const auto kind = static_cast<QlumMeasuredKind>(m_kind->currentData().toInt());
    const bool isCalls = kind != QlumMeasuredKind::Session && kind != QlumMeasuredKind::Notifications;
    const bool canBegin = why.isEmpty() && !m_isRunning;
    const auto nodes = static_cast<int>(plan().nodes.size());
    const bool isPart = why.isEmpty() && isCalls && nodes > m_nodesPerCall->value();
    m_hint->setText(
        isPart ? tr("A call has the first %1 of these %2 nodes.").arg(m_nodesPerCall->value()).arg(nodes)
               : why);
    m_hint->setVisible(!m_hint->text().isEmpty());
    m_measure->setEnabled(canBegin);
    m_sweepNodes->setEnabled(canBegin && isCalls);
    m_sweepOutstanding->setEnabled(canBegin && isCalls);
    m_compare->setEnabled(canBegin && kind != QlumMeasuredKind::Session);
    m_cancel->setEnabled(m_isRunning);
    m_progress->setVisible(m_isRunning);
    m_activity->setVisible(m_isRunning);
    m_nodesPerCall->setEnabled(isCalls);
    m_outstanding->setEnabled(isCalls);
    m_warmUp->setEnabled(isCalls);
    m_nodesView->setEnabled(kind != QlumMeasuredKind::Session);
}
