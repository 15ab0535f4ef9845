#include <plugins/datalogger/qlumloggerview.h>

#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggerpanel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggersettings.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>
#include <watching/qlumdadescriber.h>
#include <watching/qlumvariableintake.h>

#include <QAbstractItemView>
#include <QAction>
#include <QDateTime>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QModelIndex>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <cstddef>
#include <memory>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {
constexpr int loggerPoolThreads = 4; // so that one slow server or disk does not hold up the others
constexpr std::size_t loggerBranchLimit = 100'000;
} // namespace

QlumLoggerView::QlumLoggerView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                               QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(std::move(services)),
      m_state(new QlumViewState(QStringLiteral("DataLoggerView"), this)),
      m_pool(std::make_unique<QlumJobPool>(loggerPoolThreads)),
      m_model(new QlumLoggerModel(application, this)), m_filter(new QlumTableFilter(this)),
      m_session(new QlumLoggerSession(application, *m_model, std::move(monitoring), *m_pool, this)),
      m_heading(new QlumViewHeading(this)), m_messages(new QlumMessageBar(this)), m_intake(makeIntake()),
      m_panel(new QlumLoggerPanel(this)), m_setup(qlumLoggerDefaults())
{
    setObjectName(QStringLiteral("dataLoggerView"));
    setAccessibleName(tr("Data Logger View"));
    setAcceptDrops(true);
    m_model->setViewSettings(qlumLoggerItemDefaults());
    makeTable();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(m_panel);
    layout->addWidget(makeBar());
    layout->addWidget(m_table, 1);
    connect(m_session, &QlumLoggerSession::changed, this, [this] {
        showEachSecond();
        showCommands();
    });
    constexpr int second = 1000;
    m_second.setInterval(second);
    connect(&m_second, &QTimer::timeout, this, &QlumLoggerView::showEachSecond);
    m_second.start();
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumLoggerView::showCommands);
    tellServers();
    showCommands();
}

QlumLoggerView::~QlumLoggerView()
{
    m_table->selectionModel()->disconnect(this);
    m_session->disconnect(this);
    m_pool.reset();   // before what receives its results
    delete m_session; // ends the recording before the items go
    delete m_state;
}

QlumVariableIntake* QlumLoggerView::makeIntake()
{
    const auto add = [this](unsigned int serverId, const QlumToolNodes& nodes) {
        addVariables(serverId, nodes);
    };
    return new QlumVariableIntake({this, m_services, m_pool.get(), [] { return loggerBranchLimit; }, add,
                                   [this](const QlumMessage& message) { m_messages->tell(message); },
                                   [this](const QString& topic) { m_messages->dismiss(topic); }},
                                  this);
}

// ---- widgets

void QlumLoggerView::makeTable()
{
    m_filter->setSourceModel(m_model);
    m_filter->setSortRole(QlumLoggerModel::SortRole);
    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("loggerItems"));
    m_table->setAccessibleName(tr("Recorded items"));
    m_table->setModel(m_filter);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(false);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(-1, Qt::AscendingOrder);
    constexpr int rowMargin = 6;
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + rowMargin);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    using Model = QlumLoggerModel;
    const auto width = [this](int column, const char* text) {
        m_table->setColumnWidth(column, m_table->fontMetrics().horizontalAdvance(QLatin1String(text)));
    };
    width(Model::Server, "Demo Server 1   ");
    width(Model::Name, "TemperatureSensor   ");
    width(Model::State, "No connection: what is missed is marked       ");
    width(Model::Value, "-1234567.8901234567 ");
    width(Model::Status, "BadCommunicationError    ");
    constexpr qint64 longDate = 1'700'000'000'000; // ms
    const QString time = QLocale().toString(QDateTime::fromMSecsSinceEpoch(longDate), qlumDateTimeFormat());
    width(Model::Received, (time + QStringLiteral("   ")).toUtf8().constData());
    for (const int column : {Model::NodeId, Model::Path, Model::Watched})
        m_table->setColumnHidden(column, true);
    makeActions();
    new QlumNodeCommands(m_table, [this] {
        QlumToolNodes nodes;
        for (const quint32 key : selectedKeys())
            if (const QlumLoggerItem* item = m_model->find(key))
                nodes.push_back({item->serverId, item->nodeId, OpcUa_NodeClass_Variable, {}, item->name});
        return nodes;
    });
    qlumMakeTable(
        m_table, {tr("Drop variables or branches here from the Address Space window, or choose \"Add to Data "
                     "Logger View\" in the menu of a node. Then press Start."),
                  QStringLiteral("recorded items"), m_state, QStringLiteral("items"), false});
}

QWidget* QlumLoggerView::makeBar()
{
    auto* bar = new QlumWrappingBar;
    const auto addButton = [this, bar](Command command, const char* name) {
        auto* button = new QToolButton;
        button->setObjectName(QLatin1String(name));
        button->setDefaultAction(m_actions[command]);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        bar->add(button);
    };
    addButton(StartStop, "startStopButton");
    addButton(Setup, "setupButton");
    addButton(AddNote, "noteButton");
    addButton(ShowRecording, "showRecordingButton");
    auto* filter = new QLineEdit;
    filter->setObjectName(QStringLiteral("loggerFilter"));
    filter->setAccessibleName(tr("Filter"));
    filter->setPlaceholderText(tr("Filter by server, node, name or state"));
    filter->setToolTip(tr("Shows the rows only that have this text."));
    filter->setClearButtonEnabled(true);
    connect(filter, &QLineEdit::textChanged, m_filter, &QlumTableFilter::setText);
    bar->add(filter);
    auto* commands = new QPushButton;
    commands->setObjectName(QStringLiteral("loggerCommands"));
    commands->setText(tr("&Commands"));
    commands->setToolTip(tr("What can be done with items, recordings and the view."));
    auto* menu = new QMenu(commands);
    menu->addActions(m_actions.list({StartStop, Setup, AddNote, ShowRecording, OpenRecording}));
    menu->addSeparator();
    menu->addActions(m_actions.list({StartItems, StopItems, ItemSettings, ViewSettings, AskAgain, Remove}));
    commands->setMenu(menu);
    bar->add(commands);
    return bar;
}

std::vector<quint32> QlumLoggerView::selectedKeys() const
{
    std::vector<quint32> keys;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        keys.push_back(index.data(QlumLoggerModel::KeyRole).toUInt());
    return keys;
}

void QlumLoggerView::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

// ---- items

void QlumLoggerView::dragEnterEvent(QDragEnterEvent* event)
{
    if (QlumVariableIntake::canTake(event->mimeData()))
        event->acceptProposedAction();
}

void QlumLoggerView::dropEvent(QDropEvent* event)
{
    m_intake->takeDrop(m_application, event);
}

void QlumLoggerView::addNodes(std::span<const QlumToolNode> nodes)
{
    m_intake->take(nodes);
}

void QlumLoggerView::addVariables(unsigned int serverId, const QlumToolNodes& nodes)
{
    const QStringList table = m_application.namespaceTable(serverId);
    std::vector<QlumLoggerItem> items;
    items.reserve(nodes.size());
    for (const QlumToolNode& node : nodes) {
        QlumLoggerItem item;
        item.serverId = serverId;
        item.nodeId = node.nodeId;
        item.namespaceUri = table.value(node.nodeId.namespaceIndex());
        item.name = node.name;
        items.push_back(std::move(item));
    }
    addItems(std::move(items));
}

// The file names items as they are known when they are begun, so those that servers can describe now are.
void QlumLoggerView::addItems(std::vector<QlumLoggerItem> items)
{
    if (items.empty())
        return;
    const std::vector<quint32> keys = m_model->add(std::move(items));
    tellServers();
    std::vector<quint32> others; // the others begin when they are described
    for (const unsigned int id : m_model->serverIds())
        if (!describe(id, keys))
            for (const quint32 key : keys)
                if (m_model->find(key)->serverId == id)
                    others.push_back(key);
    m_session->begin(others);
    markModified();
    showCommands();
}

bool QlumLoggerView::describe(unsigned int serverId, const std::vector<quint32>& keys)
{
    const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
    std::vector<QlumDaQuestion> questions;
    std::vector<quint32> asked;
    for (const quint32 key : keys)
        if (const QlumLoggerItem* item = m_model->find(key);
            item && item->serverId == serverId && !item->nodeId.isNull()) {
            questions.push_back({key, item->nodeId});
            asked.push_back(key);
        }
    if (questions.empty() || !services || !services->isConnected())
        return false;
    const auto work = [this, services, questions = std::move(questions)](QlumJob& job) {
        QlumDaDescriber describer(services, job, true);
        static_cast<void>(describer.describe(
            questions,
            [this, &job](const QlumDaDescriber::Portion& portion) {
                job.post([this, rows = portion.rows] {
                    std::unordered_map<quint32, const QlumDaDescription*> byKey;
                    for (const QlumDaDescription& row : rows)
                        byKey.emplace(row.key, &row);
                    m_model->changeItems([&byKey](QlumLoggerItem& item) {
                        const auto found = byKey.find(item.key);
                        if (found == byKey.end())
                            return false;
                        const QlumDaDescription& told = *found->second;
                        item.name = told.displayName.isEmpty() ? item.name : told.displayName;
                        item.path = told.browsePath;
                        item.dataType = told.dataTypeName;
                        item.unit = told.unit;
                        return true;
                    });
                    for (const QlumDaDescription& row : rows)
                        m_session->describe(row.key);
                });
            })); // what the server does not tell stays empty
    };
    m_pool->add({tr("Reading names and types of variables"), serverId}, work,
                [this, asked](QlumWorkEnd) { m_session->begin(asked); });
    return true;
}

void QlumLoggerView::switchItems(const std::vector<quint32>& keys, bool isOn)
{
    for (const quint32 key : keys)
        m_model->changeItem(key, [isOn](QlumLoggerItem& item) {
            item.isOn = isOn;
            if (item.watched == 0 && item.state <= QlumLoggerState::Ready)
                item.state = isOn ? QlumLoggerState::Ready : QlumLoggerState::Off;
        });
    if (isOn)
        m_session->begin(keys);
    else
        m_session->end(keys);
    markModified();
}

void QlumLoggerView::removeItems(const std::vector<quint32>& keys)
{
    m_session->end(keys);
    m_model->removeKeys(keys);
    tellServers();
    showCommands();
    markModified();
}

// ---- servers

bool QlumLoggerView::isConnected(unsigned int serverId) const
{
    return m_status.value(serverId, QlumConnectionStatus::Disconnected) == QlumConnectionStatus::Connected;
}

void QlumLoggerView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const bool wasConnected = isConnected(serverId);
    m_status.insert(serverId, status == QlumConnectionStatus::NewSessionCreated
                                  ? QlumConnectionStatus::Connected
                                  : status);
    m_model->setConnected(serverId, isConnected(serverId));
    if (isConnected(serverId)) {
        placeNamespaces(serverId);
        if (!wasConnected) {
            std::vector<quint32> unknown;
            for (const QlumLoggerItem& item : m_model->rows())
                if (item.serverId == serverId && item.dataType.isEmpty())
                    unknown.push_back(item.key);
            static_cast<void>(describe(serverId, unknown)); // those without an item begin then
        }
    }
    tellServers();
}

// Where a project was made with other namespaces, or the server has others now.
void QlumLoggerView::placeNamespaces(unsigned int serverId)
{
    const QStringList table = m_application.namespaceTable(serverId);
    if (table.isEmpty())
        return;
    std::vector<quint32> gone, back;
    m_model->changeItems([&](QlumLoggerItem& item) {
        if (item.serverId != serverId || item.nodeId.isNull())
            return false;
        if (item.namespaceUri.isEmpty()) {
            item.namespaceUri = table.value(item.nodeId.namespaceIndex());
            return false;
        }
        const int place = table.indexOf(item.namespaceUri);
        const bool wasGone = item.state == QlumLoggerState::NamespaceGone;
        if (place < 0 ? wasGone : !wasGone && place == item.nodeId.namespaceIndex())
            return false;
        (place < 0 ? gone : back).push_back(item.key);
        if (place >= 0) {
            item.nodeId.setNamespaceIndex(static_cast<OpcUa_UInt16>(place));
            if (wasGone)
                item.state = item.isOn ? QlumLoggerState::Ready : QlumLoggerState::Off;
        }
        return true;
    });
    m_session->end(gone);
    for (const quint32 key : gone)
        m_model->changeItem(key, [](QlumLoggerItem& item) { item.state = QlumLoggerState::NamespaceGone; });
    m_session->begin(back); // those that have an item keep it
}

void QlumLoggerView::sessionRemoved(unsigned int serverId)
{
    m_pool->endServer(serverId);
    std::vector<quint32> keys;
    for (const QlumLoggerItem& item : m_model->rows())
        if (item.serverId == serverId)
            keys.push_back(item.key);
    m_status.remove(serverId);
    removeItems(keys);
}

void QlumLoggerView::tellServers()
{
    const std::vector<unsigned int> ids = m_model->serverIds();
    qlumSetDocumentServers(this, {ids.begin(), ids.end()});
    if (ids.empty()) {
        m_heading->clear();
        return;
    }
    QStringList names;
    QlumConnectionStatus worst = QlumConnectionStatus::Connected;
    for (const unsigned int id : ids) {
        names.append(m_model->serverName(id));
        if (!isConnected(id))
            worst = m_status.value(id, QlumConnectionStatus::Disconnected);
    }
    m_heading->setServer(names.join(QStringLiteral(", ")));
    m_heading->setNode(tr("%n item(s)", nullptr, m_model->rowCount()));
    m_heading->setStatus(worst);
}

// ---- what is shown

void QlumLoggerView::showEachSecond()
{
    m_session->takeFigures();
    const recording::RecorderStatus status = m_session->status();
    m_panel->show(status, m_session->isStopping(), m_model->cutOffCount());
    const bool isTrouble = status.state == recording::RecorderState::Failing ||
                           status.state == recording::RecorderState::NoSpace;
    if (isTrouble && !m_hadTrouble)
        m_messages->tell(
            {status.state == recording::RecorderState::Failing ? QlumMessage::Error : QlumMessage::Warning,
             QStringLiteral("recording"),
             status.state == recording::RecorderState::Failing
                 ? tr("The recording cannot be written.")
                 : tr("Recording pauses, since the disk is nearly full."),
             status.state == recording::RecorderState::Failing
                 ? status.error + QLatin1Char(' ') +
                       tr("What comes meanwhile is kept in memory as long as there is room.")
                 : tr("%1 are free. What comes meanwhile is kept in memory as long as there is "
                      "room.")
                       .arg(qlumLoggerBytes(status.freeBytes)),
             tr("&Recording Settings..."), [this] { askSetup(); }});
    else if (!isTrouble && m_hadTrouble)
        m_messages->dismiss(QStringLiteral("recording"));
    m_hadTrouble = isTrouble;
    m_model->setHeld(isTrouble);
}
