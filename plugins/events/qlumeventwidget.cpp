// What an event view consists of.
#include <plugins/events/qlumeventwidget.h>

#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventactions.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumscrollable.h>
#include <uawidgets/qlumtimefield.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QSize>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

using namespace QlumEventActions;

#define TEXT(text) QT_TRANSLATE_NOOP("QlumEventWidget", text)

namespace {
constexpr QlumActionRow actionRows[] = {
    {Apply, "applyFields", TEXT("A&pply"), "filter.png", qlumNoKey,
     TEXT("Ask the servers for the fields that are ticked"),
     TEXT("<b>Apply</b><br>Asks the servers for the fields that are ticked now.")},
    {ReadTypes, "readTypes", TEXT("Read Event &Types"), "rebrowse.png", qlumNoKey,
     TEXT("Read the event types of the server again"),
     TEXT("<b>Read Event Types</b><br>Reads the event types of the server again.")},
    {RemoveItem, "removeItem", TEXT("&Remove Monitored Item"), "remove.png", QKeySequence::Delete,
     TEXT("Receive no events of the selected objects any more"),
     TEXT("<b>Remove Monitored Item</b><br>Receives no events of the selected objects any more."),
     Qt::WidgetShortcut},
    {Refresh, "conditionRefresh", TEXT("Condition Re&fresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Have the servers send their conditions again"),
     TEXT("<b>Condition Refresh</b><br>Has the servers send the state of their conditions again."),
     Qt::WidgetWithChildrenShortcut},
    {ClearLog, "clearEvents", TEXT("&Clear"), "clearlog.png", qlumNoKey,
     TEXT("Remove all events from the log"),
     TEXT("<b>Clear</b><br>Removes all events from the log. Alarms stay.")},
    {Pause, "pauseEvents", TEXT("&Pause"), "", qlumNoKey,
     TEXT("Let the log rest; events that come meanwhile wait"),
     TEXT("<b>Pause</b><br>Lets the log rest while you read. Events that come meanwhile wait, and follow "
          "when you go on.")},
    {Autoscroll, "autoscroll", TEXT("&Autoscroll"), "", qlumNoKey, TEXT("Show new events as they come"),
     TEXT("<b>Autoscroll</b><br>Shows new events as they come.")},
    {HideRefreshed, "hideRefreshed", TEXT("&Hide Refreshed"), "", qlumNoKey,
     TEXT("Hide events that a refresh has sent again"),
     TEXT("<b>Hide Refreshed</b><br>Hides events that a refresh has sent again.")},
    {ShowRetainIfFalse, "showRetainIfFalse", TEXT("&Show Not Retained"), "", qlumNoKey,
     TEXT("List conditions that their server does not want kept, too"),
     TEXT("<b>Show Not Retained</b><br>Lists conditions whose Retain is false, too.")},
    {Acknowledge, "acknowledge", TEXT("&Acknowledge"), "ackall.png", qlumNoKey,
     TEXT("Acknowledge the selected alarm"),
     TEXT("<b>Acknowledge</b><br>Acknowledges the selected alarm with a comment.")},
    {Confirm, "confirm", TEXT("&Confirm"), "confirmall.png", qlumNoKey, TEXT("Confirm the selected alarm"),
     TEXT("<b>Confirm</b><br>Confirms the selected alarm with a comment.")},
    {AddComment, "addComment", TEXT("Add C&omment"), "addcomment.png", qlumNoKey,
     TEXT("Add a comment to the selected alarm"),
     TEXT("<b>Add Comment</b><br>Adds a comment to the selected alarm.")},
    {AcknowledgeAll, "acknowledgeAll", TEXT("Acknowledge A&ll"), "ackall.png", qlumNoKey,
     TEXT("Acknowledge every alarm that is not"),
     TEXT("<b>Acknowledge All</b><br>Acknowledges every alarm that is not, with one comment for all.")},
    {ConfirmAll, "confirmAll", TEXT("Con&firm All"), "confirmall.png", qlumNoKey,
     TEXT("Confirm every alarm that is not"),
     TEXT("<b>Confirm All</b><br>Confirms every alarm that is not, with one comment for all.")},
    {ReadHistory, "readHistory", TEXT("Read &History"), "tool_history.png", qlumNoKey,
     TEXT("Read the events that the servers have kept of that time"),
     TEXT("<b>Read History</b><br>Reads the events that the servers have kept of that time.")},
    {TimedShelve, "timedShelve", TEXT("Shelve for a &Time..."), "", qlumNoKey,
     TEXT("Keep the selected alarm quiet for a time"),
     TEXT("<b>Shelve for a Time</b><br>Keeps the selected alarm quiet for a time.")},
    {ShelveOnce, "shelveOnce", TEXT("Shelve &Once"), "", qlumNoKey,
     TEXT("Keep the selected alarm quiet until it has gone"),
     TEXT("<b>Shelve Once</b><br>Keeps the selected alarm quiet until it has gone.")},
    {Unshelve, "unshelve", TEXT("&Unshelve"), "", qlumNoKey, TEXT("End the shelving of the selected alarm"),
     TEXT("<b>Unshelve</b><br>Ends the shelving of the selected alarm.")},
    {Enable, "enableCondition", TEXT("&Enable"), "", qlumNoKey, TEXT("Enable the selected condition"),
     TEXT("<b>Enable</b><br>Has the server watch the selected condition again.")},
    {Disable, "disableCondition", TEXT("&Disable"), "", qlumNoKey, TEXT("Disable the selected condition"),
     TEXT("<b>Disable</b><br>Has the server watch the selected condition no longer. It leaves the list.")},
    {Suppress, "suppressAlarm", TEXT("Su&ppress"), "", qlumNoKey,
     TEXT("Have the server suppress the selected alarm"),
     TEXT("<b>Suppress</b><br>Has the server treat the selected alarm as suppressed, until somebody ends "
          "that.")},
    {Unsuppress, "unsuppressAlarm", TEXT("U&nsuppress"), "", qlumNoKey,
     TEXT("End the suppression of the selected alarm"),
     TEXT("<b>Unsuppress</b><br>Ends the suppression of the selected alarm.")},
    {Sound, "alarmSound", TEXT("S&ound"), "", qlumNoKey, TEXT("Give a sound when an alarm comes up"),
     TEXT("<b>Sound</b><br>Gives a sound when an alarm comes up that nobody has acknowledged. What a refresh "
          "sends again is silent.")},
    {AddColumn, "addColumns", TEXT("Fields as &Columns..."), "", qlumNoKey,
     TEXT("Show more fields of the events in columns of their own"),
     TEXT("<b>Fields as Columns</b><br>Shows more fields of the events in columns of their own.")},
};
constexpr int soundMilliseconds = 500; // one for all that come within that time
constexpr int secondsOfHistory = 3600;
constexpr int countMilliseconds = 250; // a tab with another text costs as much as many rows

QLabel* makeNote(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMargin(4);
    label->hide();
    return label;
}

QToolBar* makeBar(const char* name, const QString& title, QWidget* parent)
{
    auto* bar = new QToolBar(title, parent);
    bar->setObjectName(QLatin1String(name));
    bar->setIconSize(QSize(16, 16));
    return bar;
}

QWidget* stack(std::initializer_list<QWidget*> widgets)
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QWidget* const widget : widgets)
        layout->addWidget(widget);
    return page;
}
} // namespace

QlumEventWidget::QlumEventWidget(QlumApplicationInterface& application, QlumEventTypes& types,
                                 std::shared_ptr<QlumEventPools> pools, QlumSessionServicesProvider services,
                                 QWidget* parent)
    : QWidget(parent), m_application(application), m_types(types), m_services(services),
      m_state(QStringLiteral("EventView"), nullptr),
      m_items(new QlumMonitoredItemModel(application, std::move(pools), services, this)),
      m_log(new QlumEventModel(application, types, this)),
      m_history(new QlumEventModel(application, types, this)),
      m_alarms(new QlumAlarmModel(application, this)), m_details(new QlumDetailsModel(this)),
      m_fields(new QlumEventTypeModel(this)),
      m_logFilter(new QlumEventFilterModel(QlumEventModel::SourceName, this)),
      m_historyFilter(new QlumEventFilterModel(QlumEventModel::SourceName, this)),
      m_alarmFilter(new QlumEventFilterModel(QlumAlarmModel::SourceName, this)),
      m_messages(new QlumMessageBar(this))
{
    setObjectName(QStringLiteral("eventView"));
    setAcceptDrops(true);
    createActions();
    auto* splitter = new QSplitter(this);
    splitter->setObjectName(QStringLiteral("eventSplitter"));
    auto* right = new QSplitter(Qt::Vertical);
    right->setObjectName(QStringLiteral("eventDetailsSplitter"));
    splitter->addWidget(makeConfiguration());
    splitter->addWidget(right);
    right->addWidget(makeTabs());
    m_detailsView = new QTreeView;
    m_detailsView->setObjectName(QStringLiteral("eventDetails"));
    m_detailsView->setAccessibleName(tr("Event Details"));
    m_detailsView->setModel(m_details);
    m_detailsView->setUniformRowHeights(true);
    qlumMakeTable(m_detailsView, {tr("Select an event to see all of its fields."), tr("event"), &m_state,
                                  QStringLiteral("Details")});
    right->addWidget(m_detailsView);
    right->setStretchFactor(0, 3);
    right->setStretchFactor(1, 1);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 3);
    splitter->setSizes({width(), 2 * width()}); // in proportion, until the user has others
    m_state.keep(splitter, QStringLiteral("Splitter"));
    m_state.keep(right, QStringLiteral("DetailsSplitter"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messages);
    layout->addWidget(splitter, 1);
    createModels();
    updateActions();
    sltNodeSelected();
    sltShowCounts();
}

QlumEventWidget::~QlumEventWidget()
{
    for (const auto& [key, dialog] : m_dialogs)
        if (dialog) {
            dialog->disconnect(this);
            delete dialog;
        }
}

void QlumEventWidget::createActions()
{
    m_actions = QlumActionTable(actionRows, "QlumEventWidget", this);
    for (const Id id : {Pause, Autoscroll, HideRefreshed, ShowRetainIfFalse, Sound})
        m_actions[id]->setCheckable(true);
    m_actions[Autoscroll]->setChecked(true);
    using Slot = void (QlumEventWidget::*)();
    constexpr std::pair<Id, Slot> commands[] = {{Apply, &QlumEventWidget::sltApply},
                                                {ReadTypes, &QlumEventWidget::sltReadTypes},
                                                {RemoveItem, &QlumEventWidget::sltRemoveItems},
                                                {Refresh, &QlumEventWidget::sltRefresh},
                                                {Acknowledge, &QlumEventWidget::sltAcknowledge},
                                                {Confirm, &QlumEventWidget::sltConfirm},
                                                {AddComment, &QlumEventWidget::sltAddComment},
                                                {AcknowledgeAll, &QlumEventWidget::sltAcknowledgeAll},
                                                {ConfirmAll, &QlumEventWidget::sltConfirmAll},
                                                {ReadHistory, &QlumEventWidget::sltReadHistory},
                                                {TimedShelve, &QlumEventWidget::sltTimedShelve},
                                                {ShelveOnce, &QlumEventWidget::sltShelveOnce},
                                                {Unshelve, &QlumEventWidget::sltUnshelve},
                                                {AddColumn, &QlumEventWidget::sltChooseColumns}};
    for (const auto& [id, slot] : commands)
        connect(m_actions[id], &QAction::triggered, this, slot);
    connect(m_actions[ClearLog], &QAction::triggered, m_log, &QlumEventModel::clear);
    connect(m_actions[Pause], &QAction::toggled, this, &QlumEventWidget::sltPause);
    connect(m_actions[HideRefreshed], &QAction::toggled, m_logFilter,
            &QlumEventFilterModel::setHidesRefreshed);
    connect(m_actions[ShowRetainIfFalse], &QAction::toggled, m_alarms, &QlumAlarmModel::sltShowRetainIfFalse);
    const auto change = [this](Id id, OpcUa_UInt32 method, const QString& purpose) {
        connect(m_actions[id], &QAction::triggered, this, [=, this] { changeCondition(method, purpose); });
    };
    change(Enable, OpcUaId_ConditionType_Enable, tr("Enabling a condition"));
    change(Disable, OpcUaId_ConditionType_Disable, tr("Disabling a condition"));
    change(Suppress, OpcUaId_AlarmConditionType_Suppress, tr("Suppressing an alarm"));
    change(Unsuppress, OpcUaId_AlarmConditionType_Unsuppress, tr("Ending the suppression of an alarm"));
}

void QlumEventWidget::createModels()
{
    m_history->setMaximum(maximumHistory);
    connect(m_items, &QlumMonitoredItemModel::eventsReceived, this, &QlumEventWidget::sltNewEvents);
    connect(m_items, &QlumMonitoredItemModel::nodeRemoved, m_alarms, &QlumAlarmModel::sltRemoveItem);
    connect(m_items, &QlumMonitoredItemModel::historyEvents, m_history, &QlumEventModel::sltNewEvents);
    connect(m_items, &QlumMonitoredItemModel::historyEnded, this,
            [this] { m_actions[ReadHistory]->setEnabled(true); });
    connect(
        m_items, &QlumMonitoredItemModel::historyFailed, this,
        [this](const QString& what, const QString& why) {
            m_historyFaults.append(QStringLiteral("%1 %2").arg(what, why));
            const int count = m_historyFaults.size(); // each would take the place of the one before
            m_messages->tell({QlumMessage::Error,
                              QStringLiteral("history"),
                              count == 1 ? what : tr("%n history(s) could not be read.", nullptr, count),
                              count == 1 ? why : m_historyFaults.join(QLatin1Char('\n')),
                              {},
                              {}});
        });
    connect(m_items, &QlumMonitoredItemModel::historyCut, this, [this](const QString& what) {
        m_messages->tell(
            {QlumMessage::Warning,
             QStringLiteral("historyCut"),
             what,
             tr("The settings of events say how often a server is asked for more; a shorter time "
                "needs fewer answers."),
             {},
             {}});
    });
    connect(m_items, &QlumMonitoredItemModel::refreshAnswered, this, &QlumEventWidget::refreshAnswered);
    connect(m_items, &QlumMonitoredItemModel::filterAnswered, this, &QlumEventWidget::sltFilterAnswered);
    m_items->setDerives([this](unsigned int serverId, const UaNodeId& type, const UaNodeId& base) {
        return m_types.derives(serverId, type, base);
    });
    connect(m_items, &QlumMonitoredItemModel::fieldsChanged, this, &QlumEventWidget::updateMissing);
    connect(&m_types, &QlumEventTypes::treeRead, this, &QlumEventWidget::sltTypesChanged);
    connect(&m_types, &QlumEventTypes::treeForgotten, this, &QlumEventWidget::sltTypesChanged);
    connect(&m_types, &QlumEventTypes::treeFailed, this, &QlumEventWidget::sltTypesFailed);
    connect(m_fields, &QlumEventTypeModel::clausesEdited, this, &QlumEventWidget::sltFieldsEdited);
    const auto count = [this] {
        if (!m_countTimer.isActive())
            m_countTimer.start(); // counting all alarms for each event of a flood would be most of its cost
    };
    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(countMilliseconds);
    connect(&m_countTimer, &QTimer::timeout, this, &QlumEventWidget::sltShowCounts);
    connect(m_log, &QlumEventModel::countChanged, this, count);
    connect(m_history, &QlumEventModel::countChanged, this, count);
    connect(m_alarms, &QlumAlarmModel::stateChanged, this, count);
    m_soundTimer.setSingleShot(true);
    m_soundTimer.setInterval(soundMilliseconds);
    connect(
        m_alarms, &QlumAlarmModel::raised, this,
        [this] {
            if (m_actions[Sound]->isChecked() && !m_soundTimer.isActive())
                m_soundTimer.start();
        });
    connect(
        &m_soundTimer, &QTimer::timeout, this, [] { QApplication::beep(); });
    m_alarms->setTypeName(
        [this](unsigned int serverId, const UaNodeId& typeId) { return m_types.typeName(serverId, typeId); });
    const auto tellServers = [this] { qlumSetDocumentServers(this, m_items->servers().values()); };
    connect(m_items, &QAbstractItemModel::rowsInserted, this, tellServers);
    connect(m_items, &QAbstractItemModel::rowsRemoved, this, tellServers);
    connect(m_items, &QAbstractItemModel::modelReset, this, tellServers);
    connect(m_logFilter, &QAbstractItemModel::rowsInserted, this, [this] {
        if (m_actions[Autoscroll]->isChecked() && m_logFilter->sortColumn() < 0)
            m_logView->scrollToBottom();
    });
}

// ---- the notifiers and their fields

QWidget* QlumEventWidget::makeConfiguration()
{
    auto* bar = makeBar("eventToolBar", tr("Event View"), this);
    bar->addActions(m_actions.list({Apply, ReadTypes, RemoveItem, Refresh}));
    m_itemView = new QTreeView;
    m_itemView->setObjectName(QStringLiteral("monitoredItems"));
    m_itemView->setAccessibleName(tr("Event Notifiers"));
    m_itemView->setRootIsDecorated(false);
    m_itemView->setUniformRowHeights(true);
    m_itemView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_itemView->setModel(m_items);
    m_itemView->addActions(m_actions.list({RemoveItem, Refresh}));
    qlumMakeTable(m_itemView,
                  {tr("Drop objects from the address space here to receive their events. The Server object "
                      "passes on those of the whole server."),
                   tr("notifiers"), &m_state, QStringLiteral("Notifiers")});
    new QlumNodeCommands(m_itemView, [this] {
        QlumToolNodes nodes;
        for (const unsigned int key : selectedKeys())
            if (const QlumEventNodeMonitored* const node = m_items->node(key))
                nodes.push_back({node->serverId, node->nodeId, OpcUa_NodeClass_Object, {}, node->name});
        return nodes;
    });
    connect(m_itemView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumEventWidget::sltNodeSelected);
    m_fieldView = new QTreeView;
    m_fieldView->setObjectName(QStringLiteral("eventFields"));
    m_fieldView->setAccessibleName(tr("Event Fields"));
    m_fieldView->setUniformRowHeights(true);
    m_fieldView->setModel(m_fields);
    m_fieldView->setColumnHidden(1, true);
    qlumMakeTable(
        m_fieldView,
        {tr("Select a notifier to choose the fields of its events."), tr("event fields"), nullptr, {}});
    m_fieldState = makeNote("fieldState", this);
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("eventConfigurationSplitter"));
    splitter->addWidget(stack({bar, m_itemView}));
    m_where = new QlumWherePage;
    connect(m_where, &QlumWherePage::conditionsEdited, this, &QlumEventWidget::sltWhereEdited);
    auto* tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("eventConfigurationTabs"));
    tabs->setDocumentMode(true);
    tabs->addTab(stack({m_fieldState, m_fieldView}), tr("Fields"));
    tabs->addTab(qlumScrollable(m_where), tr("Where"));
    splitter->addWidget(tabs);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 2);
    m_state.keep(splitter, QStringLiteral("ConfigurationSplitter"));
    return splitter;
}

// ---- events and alarms

QWidget* QlumEventWidget::makeTabs()
{
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("eventTabs"));
    m_tabs->setDocumentMode(true);
    m_tabs->addTab(makeLogPage(), tr("Events"));
    m_tabs->addTab(makeAlarmPage(), tr("Alarms"));
    m_tabs->addTab(makeHistoryPage(), tr("Event History"));
    connect(m_tabs, &QTabWidget::currentChanged, this, &QlumEventWidget::sltEventSelected);
    return m_tabs;
}

QTreeView* QlumEventWidget::makeTable(const char* name, const QString& title, QlumEventFilterModel* filter,
                                      const QString& emptyText)
{
    auto* view = new QTreeView;
    view->setObjectName(QLatin1String(name));
    view->setAccessibleName(title);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setAlternatingRowColors(true);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setModel(filter);
    view->header()->setSortIndicator(-1, Qt::AscendingOrder);
    view->setSortingEnabled(true);
    view->header()->setSectionsMovable(true);
    // what has happened is read first: types and names of conditions, and their messages
    const int character = view->fontMetrics().averageCharWidth();
    constexpr int names = 22, messages = 30;
    view->header()->resizeSection(0, names * character);
    view->header()->resizeSection(1, messages * character);
    qlumMakeTable(view, {emptyText, title.toLower(), &m_state, QLatin1String(name)});
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumEventWidget::sltEventSelected);
    return view;
}

void QlumEventWidget::addFilterFields(QToolBar* bar, QlumEventFilterModel* filter)
{
    const auto field = [this, bar](const char* name, const QString& title, const QString& tip) {
        auto* edit = new QLineEdit(bar);
        edit->setObjectName(QLatin1String(name));
        edit->setAccessibleName(title);
        edit->setPlaceholderText(title);
        edit->setToolTip(tip);
        edit->setClearButtonEnabled(true);
        edit->setMaximumWidth(fontMetrics().averageCharWidth() * 20);
        bar->addWidget(edit);
        return edit;
    };
    auto* severity = new QComboBox(bar);
    severity->setObjectName(QStringLiteral("severityFilter"));
    severity->setAccessibleName(tr("Least severity shown"));
    severity->setToolTip(tr("Show rows of this severity or more"));
    for (const int least : {0, 200, 334, 500, 667, 900})
        severity->addItem(least == 0 ? tr("Any severity") : tr("From %1").arg(least), least);
    bar->addWidget(severity);
    connect(
        severity, QOverload<int>::of(&QComboBox::currentIndexChanged), filter,
        [severity, filter] { filter->setLeastSeverity(severity->currentData().toInt()); });
    connect(field("textFilter", tr("Text"), tr("Show rows that hold this text")), &QLineEdit::textChanged,
            filter, [filter](const QString& text) { filter->setText(text); });
    connect(field("sourceFilter", tr("Source"), tr("Show rows whose source has this in its name")),
            &QLineEdit::textChanged, filter, &QlumEventFilterModel::setSource);
    connect(field("typeFilter", tr("Type"), tr("Show rows whose type has this in its name")),
            &QLineEdit::textChanged, filter, &QlumEventFilterModel::setType);
}

QWidget* QlumEventWidget::makeLogPage()
{
    m_logFilter->setSourceModel(m_log);
    auto* bar = makeBar("eventLogToolBar", tr("Events"), this);
    bar->addActions(m_actions.list({ClearLog, Pause, Autoscroll, HideRefreshed, AddColumn}));
    m_waiting = new QLabel(bar);
    m_waiting->setObjectName(QStringLiteral("waitingEvents"));
    m_waiting->setTextFormat(Qt::PlainText);
    auto* filters = makeBar("eventLogFilterBar", tr("Filter"), this);
    addFilterFields(filters, m_logFilter);
    bar->addWidget(m_waiting);
    m_logView = makeTable("eventLog", tr("Events"), m_logFilter,
                          tr("Events are shown here as they come. Drop an object on the list of notifiers."));
    m_gapNote = makeNote("missedEvents", this);
    return stack({bar, filters, m_gapNote, m_logView});
}

QWidget* QlumEventWidget::makeAlarmPage()
{
    m_alarmFilter->setSourceModel(m_alarms);
    auto* bar = makeBar("alarmToolBar", tr("Alarms"), this);
    bar->addActions(m_actions.list({Acknowledge, Confirm, AddComment}));
    bar->addSeparator();
    bar->addActions(
        m_actions.list({AcknowledgeAll, ConfirmAll, Refresh, ShowRetainIfFalse, AddColumn, Sound}));
    auto* filters = makeBar("alarmFilterBar", tr("Filter"), this);
    addFilterFields(filters, m_alarmFilter);
    m_offline = makeNote("offlineServers", this);
    m_missing = makeNote("missingFields", this);
    m_alarmView = makeTable("alarmList", tr("Alarms"), m_alarmFilter,
                            tr("There are no alarms. Conditions that the monitored objects report are listed "
                               "here."));
    m_alarmView->setContextMenuPolicy(Qt::ActionsContextMenu);
    const QList<QAction*> own = m_actions.list({Acknowledge, Confirm, AddComment, TimedShelve, ShelveOnce,
                                                Unshelve, Enable, Disable, Suppress, Unsuppress});
    m_alarmView->insertActions(m_alarmView->actions().value(0), own);
    new QlumNodeCommands(m_alarmView, [this] {
        QlumToolNodes nodes;
        if (const int row = currentAlarm(); row >= 0) {
            const UaNodeId source = m_alarms->rowAt(row).nodeId(QlumField::SourceNode);
            nodes.push_back({m_alarms->projectServerId(row),
                             source.isNull() ? m_alarms->conditionNodeId(row) : source,
                             OpcUa_NodeClass_Unspecified,
                             {},
                             m_alarms->rowAt(row).text(QlumField::SourceName)});
        }
        return nodes;
    });
    return stack({bar, filters, m_offline, m_missing, m_alarmView});
}

QWidget* QlumEventWidget::makeHistoryPage()
{
    m_historyFilter->setSourceModel(m_history);
    auto* bar = makeBar("eventHistoryToolBar", tr("Event History"), this);
    bar->addActions(m_actions.list({ReadHistory}));
    const QDateTime now = QDateTime::currentDateTime();
    const auto field = [bar](const char* name, const QString& title, const QDateTime& time) {
        auto* label = new QLabel(title, bar);
        auto* edit = new QDateTimeEdit(time, bar);
        edit->setCalendarPopup(true);
        qlumFollowTimeLook(edit);
        qlumDescribeField(edit, {QLatin1String(name), title, {}, {}});
        label->setBuddy(edit);
        bar->addWidget(label);
        bar->addWidget(edit);
        return edit;
    };
    m_start = field("historyStart", tr("S&tart:"), now.addSecs(-secondsOfHistory));
    m_end = field("historyEnd", tr("&End:"), now);
    auto* filters = makeBar("eventHistoryFilterBar", tr("Filter"), this);
    addFilterFields(filters, m_historyFilter);
    m_historyView =
        makeTable("eventHistory", tr("Event History"), m_historyFilter,
                  tr("Choose a time and press Read History to see the events that the servers have kept."));
    return stack({bar, filters, m_historyView});
}
