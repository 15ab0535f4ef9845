// What a view of server diagnostics consists of.
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <plugins/serverdiagnostics/qlumdiagnosticactions.h>
#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>
#include <plugins/serverdiagnostics/qlumdiagnosticendpoints.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumscrollable.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QAction>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

using namespace QlumDiagnosticActions;

#define TEXT(text) QT_TRANSLATE_NOOP("QlumServerDiagnosticWidget", text)

namespace {
constexpr QlumActionRow actionRows[] = {
    {Refresh, "refreshDiagnostics", TEXT("&Refresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Read everything from the server again"),
     TEXT("<b>Refresh</b><br>Reads everything that the view shows from the server again."),
     Qt::WidgetWithChildrenShortcut},
    {KeepServer, "keepServer", TEXT("&Keep This Server"), "", qlumNoKey,
     TEXT("Show this server whichever is selected in the project"),
     TEXT("<b>Keep This Server</b><br>Shows this server whichever is selected in the project, so that a "
          "second "
          "view can show another one beside it.")},
    {CopyReport, "copyReport", TEXT("&Copy Report"), "", qlumNoKey,
     TEXT("Copy everything that the view shows as text"),
     TEXT("<b>Copy Report</b><br>Copies everything that the view shows, of all pages, as text.")},
    {SaveReport, "saveReport", TEXT("&Save Report..."), "", qlumNoKey,
     TEXT("Write everything that the view shows to a file"),
     TEXT("<b>Save Report</b><br>Writes everything that the view shows, of all pages, to a text file.")},
};

constexpr int intervals[] = {0, 1, 2, 5, 10, 30, 60}; // s
constexpr int countMilliseconds = 200;                // in which changes of the counts are gathered
} // namespace

QlumServerDiagnosticWidget::QlumServerDiagnosticWidget(QlumApplicationInterface& application,
                                                       std::shared_ptr<QlumServerPools> pools,
                                                       QlumSessionServicesProvider services,
                                                       QlumAskEndpoints endpoints, QWidget* parent)
    : QWidget(parent), m_application(application), m_pools(std::move(pools)), m_services(std::move(services)),
      m_askEndpoints(std::move(endpoints)),
      m_state(new QlumViewState(QStringLiteral("ServerDiagnosticsView"), this)),
      m_heading(new QlumViewHeading(this)), m_messages(new QlumMessageBar(this)),
      m_sessions(new QlumSessionTable(this)), m_subscriptions(new QlumSubscriptionTable(this)),
      m_followed(application)
{
    setObjectName(QStringLiteral("serverDiagnosticsView"));
    setAccessibleName(tr("Server Diagnostics View"));
    createActions();
    m_offline = new QLabel;
    m_offline->setObjectName(QStringLiteral("diagnosticsOffline"));
    m_offline->setTextFormat(Qt::PlainText);
    m_offline->setWordWrap(true);
    m_offline->setMargin(4);
    m_serverPage = new QlumDiagnosticServerPage(*m_state);
    m_endpoints = new QlumDiagnosticEndpoints(*m_state);
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("diagnosticTabs"));
    m_tabs->setAccessibleName(tr("Server diagnostics"));
    m_tabs->addTab(qlumScrollablePage(m_serverPage), tr("Server Information"));
    m_tabs->addTab(makeSessionPage(), tr("Session Diagnostics"));
    m_tabs->addTab(makeSubscriptionPage(), tr("Subscription Diagnostics"));
    m_tabs->addTab(qlumScrollablePage(m_endpoints), tr("Endpoints"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(makeBar());
    layout->addWidget(m_messages);
    layout->addWidget(m_offline);
    layout->addWidget(m_tabs, 1);
    connectParts();
    listServers();
    updateState();
}

QlumServerDiagnosticWidget::~QlumServerDiagnosticWidget()
{
    giveUp();
    dropSubscription();
    delete m_state; // while there is what it keeps
}

void QlumServerDiagnosticWidget::createActions()
{
    m_actions = QlumActionTable(actionRows, "QlumServerDiagnosticWidget", this);
    m_actions[KeepServer]->setCheckable(true);
    connect(m_actions[Refresh], &QAction::triggered, this, &QlumServerDiagnosticWidget::sltRefresh);
    connect(m_actions[CopyReport], &QAction::triggered, this, &QlumServerDiagnosticWidget::copyReport);
    connect(m_actions[SaveReport], &QAction::triggered, this, &QlumServerDiagnosticWidget::saveReport);
    connect(m_actions[KeepServer], &QAction::triggered, this, [this](bool isKept) {
        m_application.setModified();
        if (!isKept)
            setServer(m_selected);
    });
    addActions(m_actions.list({Refresh, KeepServer, CopyReport, SaveReport}));
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QWidget* QlumServerDiagnosticWidget::makeBar()
{
    auto* bar = new QlumWrappingBar;
    auto* label = new QLabel(tr("Current Server:"));
    m_server = new QComboBox;
    m_server->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_server->setMinimumContentsLength(16);
    qlumDescribeField(
        m_server,
        {QStringLiteral("currentServer"),
         tr("Current Server:"),
         tr("<b>Current Server</b><br>The server that is shown: the one that is selected in the project, "
            "or another one, to which the view then keeps."),
         {}});
    auto* every = new QLabel(tr("Refresh &every:"));
    m_interval = new QComboBox;
    for (const int seconds : intervals)
        m_interval->addItem(seconds == 0 ? tr("never") : tr("%1 s").arg(seconds), seconds);
    qlumDescribeField(m_interval,
                      {QStringLiteral("refreshInterval"),
                       tr("Refresh &every:"),
                       tr("<b>Refresh Every</b><br>Reads the page that is shown again and again. Lists of "
                          "sessions and subscriptions follow their counts in any case."),
                       {}});
    bar->add(label, m_server);
    for (QAction* const action : m_actions.list({KeepServer, Refresh, CopyReport, SaveReport})) {
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        button->setAutoRaise(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAccessibleName(qlumBareLabel(action->text()));
        bar->add(button);
    }
    bar->add(every, m_interval);
    return bar;
}

QlumDiagnosticPanel* QlumServerDiagnosticWidget::makeDetails(const QString& object, const QString& title)
{
    return new QlumDiagnosticPanel({object, title, title, {tr("Parameter"), tr("Value"), tr("Per Second")}},
                                   *m_state);
}

QWidget* QlumServerDiagnosticWidget::makeSessionPage()
{
    m_sessionChooser = new QlumDiagnosticChooser(
        {QStringLiteral("sessions"), tr("Select Session:"), tr("Refresh Session List"), tr("Sessions"),
         tr("The sessions of a connected server appear here."), tr("The session that was shown has ended.")},
        m_sessions, *m_state);
    m_sessionPanel = makeDetails(QStringLiteral("sessionDiagnostics"), tr("Session Diagnostics"));
    const QString security = tr("Session Security Diagnostics");
    m_securityPanel = new QlumDiagnosticPanel(
        {QStringLiteral("sessionSecurity"), security, security, {tr("Parameter"), tr("Value")}}, *m_state);
    m_securityPanel->addCertificateButton(QStringLiteral("ClientCertificate"));
    for (const QlumDetailRow& row : qlumSessionRows())
        m_sessionPanel->model()->addRow(QLatin1String(row.label), row.kind);
    for (const QlumDetailRow& row : qlumSessionSecurityRows())
        m_securityPanel->model()->addRow(QLatin1String(row.label), row.kind);
    auto* tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("sessionTabs"));
    tabs->setAccessibleName(tr("Diagnostics of the session"));
    tabs->addTab(m_sessionPanel, tr("Session Diagnostics"));
    tabs->addTab(m_securityPanel, tr("Session Security Diagnostics"));
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("sessionSplitter"));
    splitter->addWidget(m_sessionChooser);
    splitter->addWidget(tabs);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 2);
    m_state->keep(splitter, QStringLiteral("sessionSplitter"));
    return splitter;
}

QWidget* QlumServerDiagnosticWidget::makeSubscriptionPage()
{
    m_subscriptionChooser = new QlumDiagnosticChooser(
        {QStringLiteral("subscriptions"), tr("Select Subscription:"), tr("Refresh Subscription List"),
         tr("Subscriptions"), tr("The subscriptions of a connected server appear here."),
         tr("The subscription that was shown has ended.")},
        m_subscriptions, *m_state);
    m_subscriptionPanel =
        makeDetails(QStringLiteral("subscriptionDiagnostics"), tr("Subscription Diagnostics"));
    for (const QlumDetailRow& row : qlumSubscriptionRows())
        m_subscriptionPanel->model()->addRow(QLatin1String(row.label), row.kind);
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("subscriptionSplitter"));
    splitter->addWidget(m_subscriptionChooser);
    splitter->addWidget(m_subscriptionPanel);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 2);
    m_state->keep(splitter, QStringLiteral("subscriptionSplitter"));
    return splitter;
}

void QlumServerDiagnosticWidget::connectParts()
{
    connect(m_server, QOverload<int>::of(&QComboBox::activated), this,
            &QlumServerDiagnosticWidget::sltServerChosen);
    connect(m_interval, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumServerDiagnosticWidget::sltIntervalChosen);
    connect(&m_intervalTimer, &QTimer::timeout, this, &QlumServerDiagnosticWidget::readShown);
    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(countMilliseconds);
    connect(&m_countTimer, &QTimer::timeout, this, &QlumServerDiagnosticWidget::readChangedLists);
    m_reopenTimer.setParent(this);
    m_reopenTimer.setObjectName(QStringLiteral("reopenCounts"));
    m_reopenTimer.setSingleShot(true);
    connect(&m_reopenTimer, &QTimer::timeout, this, &QlumServerDiagnosticWidget::openSubscription);
    connect(m_serverPage, &QlumDiagnosticServerPage::enableWanted, this,
            &QlumServerDiagnosticWidget::sltEnableWanted);
    connect(m_sessionChooser, &QlumDiagnosticChooser::refreshClicked, this,
            [this] { sltGetSessions(false); });
    connect(
        m_sessionChooser, &QlumDiagnosticChooser::chosen, this,
        [this] {
            clearSessionWidgets();
            readSession();
        });
    connect(m_subscriptionChooser, &QlumDiagnosticChooser::refreshClicked, this,
            [this] { sltGetSubscriptions(false); });
    connect(m_subscriptionChooser, &QlumDiagnosticChooser::chosen, this, [this] {
        clearSubscriptionWidgets();
        readSubscription();
    });
    connect(m_endpoints, &QlumDiagnosticEndpoints::refreshClicked, this,
            &QlumServerDiagnosticWidget::getServersAndEndpoints);
}
