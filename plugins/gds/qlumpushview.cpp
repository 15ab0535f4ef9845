// What the view consists of, and which server it shows.
#include <plugins/gds/qlumpushview.h>

#include <app/api/qlumtoolservices.h>
#include <plugins/gds/qlumpushcertificatepage.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <plugins/gds/qlumpushrecordpage.h>
#include <plugins/gds/qlumpushserverpage.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumscrollable.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>

#include <QAction>
#include <QFont>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumPushView", text)

namespace {
enum PushAction { PushRefresh, PushConnect, PushRejected, PushTrust };

constexpr QlumActionRow pushActionRows[] = {
    {PushRefresh, "refreshPush", TEXT("&Refresh"), "refresh.png", QKeySequence::Refresh,
     TEXT("Read everything from the server again"),
     TEXT("<b>Refresh</b><br>Reads what the server tells of its configuration, its trust list and its "
          "rejected certificates."),
     Qt::WidgetWithChildrenShortcut},
    {PushConnect, "connectPush", TEXT("Connect as &Administrator..."), "", qlumNoKey,
     TEXT("Connect the server anew, encrypted and as somebody who may configure it"),
     TEXT("<b>Connect as Administrator</b><br>Servers let administrators configure them, over connections "
          "that are signed and encrypted.")},
    {PushRejected, "readRejected", TEXT("Read Re&jected"), "", qlumNoKey,
     TEXT("Read the certificates that the server has turned away"), TEXT("")},
    {PushTrust, "trustRejected", TEXT("&Trust"), "", qlumNoKey,
     TEXT("Add the selected certificate to those that the server trusts"),
     TEXT("<b>Trust</b><br>Adds the selected certificate to the trust list. Whether it then leaves the "
          "rejected ones is up to the server.")},
};
} // namespace

QlumPushView::QlumPushView(QlumApplicationInterface& application, std::shared_ptr<QlumServerPools> pools,
                           QlumSessionServicesProvider services, QlumPushWorld world, QWidget* parent)
    : QWidget(parent), m_pools(std::move(pools)), m_services(std::move(services)), m_world(std::move(world)),
      m_state(new QlumViewState(QStringLiteral("GdsPushView"), this)), m_heading(new QlumViewHeading(this)),
      m_messages(new QlumMessageBar(this)), m_pendingRow(new QWidget), m_pendingText(new QLabel),
      m_applyNow(new QPushButton(tr("App&ly Changes..."))), m_followed(application)
{
    setObjectName(QStringLiteral("gdsPushView"));
    setAccessibleName(tr("GDS View (Push Model)"));
    createActions();
    m_note = new QLabel;
    m_note->setObjectName(QStringLiteral("pushNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setMargin(4);
    m_serverPage = new QlumPushServerPage(*m_state);
    m_listPage = new QlumPushListPage(*m_state);
    m_certificatePage = new QlumPushCertificatePage;
    m_record = new QlumPushRecordPage;
    m_tabs = new QTabWidget;
    m_tabs->setObjectName(QStringLiteral("pushTabs"));
    m_tabs->setAccessibleName(tr("Server configuration"));
    m_tabs->addTab(qlumScrollablePage(m_serverPage), tr("Server"));
    m_tabs->addTab(qlumScrollablePage(m_listPage), tr("Trust List"));
    m_tabs->addTab(qlumScrollablePage(makeRejectedPage()), tr("Rejected"));
    m_tabs->addTab(qlumScrollablePage(m_certificatePage), tr("New Certificate"));
    m_tabs->addTab(qlumScrollablePage(m_record), tr("Record"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(makeBar());
    layout->addWidget(m_messages);
    layout->addWidget(makePendingRow());
    layout->addWidget(m_note);
    layout->addWidget(m_tabs, 1);
    connectParts();
    showAuthority();
    updateState();
}

QlumPushView::~QlumPushView()
{
    giveUp();
    delete m_state; // while there is what it keeps
}

// ---- widgets

void QlumPushView::createActions()
{
    m_actions = QlumActionTable(pushActionRows, "QlumPushView", this);
    connect(m_actions[PushRefresh], &QAction::triggered, this, &QlumPushView::sltRefresh);
    connect(m_actions[PushConnect], &QAction::triggered, this, &QlumPushView::connectAsAdministrator);
    connect(m_actions[PushRejected], &QAction::triggered, this, &QlumPushView::readRejected);
    connect(m_actions[PushTrust], &QAction::triggered, this, &QlumPushView::trustRejected);
    addActions(m_actions.list({PushRefresh, PushConnect}));
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

namespace {
QToolButton* pushButton(QAction* action)
{
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setAccessibleName(qlumBareLabel(action->text()));
    return button;
}
} // namespace

QWidget* QlumPushView::makeBar()
{
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addStretch(1);
    for (QAction* const action : m_actions.list({PushConnect, PushRefresh}))
        layout->addWidget(pushButton(action));
    return bar;
}

// Seen on every page, whatever else has to be told.
QWidget* QlumPushView::makePendingRow()
{
    m_pendingText->setObjectName(QStringLiteral("pushWaits"));
    m_pendingText->setTextFormat(Qt::PlainText);
    m_pendingText->setWordWrap(true);
    QFont font = m_pendingText->font();
    font.setBold(true);
    m_pendingText->setFont(font);
    m_pendingText->setToolTip(
        tr("The server uses it when the changes are applied, and forgets it with this connection."));
    m_applyNow->setAutoDefault(false);
    qlumDescribeField(m_applyNow, {QStringLiteral("pushApplyNow"),
                                   m_applyNow->text(),
                                   {},
                                   tr("Have the server use what was sent; it may close all connections")});
    connect(m_applyNow, &QPushButton::clicked, this, &QlumPushView::applyChanges);
    auto* layout = new QHBoxLayout(m_pendingRow);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_pendingText, 1);
    layout->addWidget(m_applyNow);
    m_pendingRow->hide();
    return m_pendingRow;
}

QWidget* QlumPushView::makeRejectedPage()
{
    m_rejected = new QlumPushListTable(
        {QStringLiteral("pushRejected"), tr("Rejected certificates"),
         tr("Nothing here: the server was not asked, or has turned away no certificate."),
         QlumPushListTable::Rejected, false},
        *m_state);
    auto* page = new QWidget;
    auto* buttons = new QHBoxLayout;
    for (QAction* const action : m_actions.list({PushRejected, PushTrust}))
        buttons->addWidget(pushButton(action));
    buttons->addStretch(1);
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(buttons);
    layout->addWidget(m_rejected, 1);
    return page;
}

void QlumPushView::connectParts()
{
    const auto show = [](const UaByteString& der) {
        if (QlumToolServices* const tools = QlumToolServices::instance(); tools && !der.isEmpty())
            tools->showCertificate(der);
    };
    connect(m_listPage, &QlumPushListPage::readWanted, this, &QlumPushView::readList);
    connect(m_listPage, &QlumPushListPage::writeWanted, this, &QlumPushView::writeList);
    connect(
        m_listPage, &QlumPushListPage::addWanted, this,
        [this](const UaByteString& der, bool isTrusted) { change(der, isTrusted, true); });
    connect(m_listPage, &QlumPushListPage::removeWanted, this,
            [this](const UaByteString& der, bool isTrusted) { change(der, isTrusted, false); });
    connect(m_listPage, &QlumPushListPage::showWanted, this, show);
    connect(m_listPage, &QlumPushListPage::managerWanted, this, [this] { m_world.showManager(window()); });
    connect(m_listPage, &QlumPushListPage::told, this, &QlumPushView::tell);
    connect(m_rejected, &QlumPushListTable::opened, this, [this, show] { show(m_rejected->current()); });
    connect(m_rejected, &QlumPushListTable::currentChanged, this, &QlumPushView::updateState);
    connect(m_certificatePage, &QlumPushCertificatePage::showWanted, this, show);
    connect(m_certificatePage, &QlumPushCertificatePage::makeWanted, this, &QlumPushView::makeCertificate);
    connect(m_certificatePage, &QlumPushCertificatePage::requestWanted, this, &QlumPushView::saveRequest);
    connect(m_certificatePage, &QlumPushCertificatePage::answerWanted, this, &QlumPushView::importAnswer);
    connect(m_certificatePage, &QlumPushCertificatePage::authorityWanted, this, &QlumPushView::makeAuthority);
    connect(m_certificatePage, &QlumPushCertificatePage::exportAuthorityWanted, this,
            &QlumPushView::exportAuthority);
    connect(m_certificatePage, &QlumPushCertificatePage::applyWanted, this, &QlumPushView::applyChanges);
    connect(m_certificatePage, &QlumPushCertificatePage::cancelWanted, this, &QlumPushView::cancelChanges);
    connect(m_certificatePage, &QlumPushCertificatePage::resetWanted, this, &QlumPushView::resetServer);
    connect(m_record, &QlumPushRecordPage::saveFailed, this,
            [this](const QString& why) { tell(tr("The record was not written."), why); });
    m_returnTimer.setSingleShot(true);
    connect(&m_returnTimer, &QTimer::timeout, this, &QlumPushView::missServer);
}

// ---- which server

void QlumPushView::serverSelectionChanged(unsigned int serverId)
{
    setServer(m_followed.meant(serverId));
}

void QlumPushView::setServer(unsigned int serverId)
{
    if (serverId == m_followed.id())
        return updateState();
    giveUp();
    m_followed.follow(*this, serverId);
    m_returnTimer.stop();
    m_expected.clear();
    clearAll();
    updateState();
    if (m_followed.isUp())
        begin();
}

void QlumPushView::clearAll()
{
    m_server = {};
    m_current = {};
    m_request.clear();
    m_sent.clear();
    m_pending.clear();
    m_serverPage->clear();
    m_listPage->clear();
    m_rejected->setRows({}, {});
    m_certificatePage->clear();
    showPending();
    showAuthority();
    m_messages->dismiss();
    m_heading->forget();
}

void QlumPushView::begin()
{
    giveUp();
    dropPending(); // changes that were not applied belong to the session, and are gone with it
    sltRefresh();
}

void QlumPushView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const bool isNew = m_followed.setStatus(serverId, status);
    if (serverId != m_followed.id())
        return;
    // what a broken connection interrupts ends by itself, and may be what was meant to break it
    if (status == QlumConnectionStatus::Disconnected || status == QlumConnectionStatus::ConnectFailed)
        giveUp();
    updateState();
    if (isNew)
        begin();
}

void QlumPushView::sessionRemoved(unsigned int serverId)
{
    m_followed.forget(serverId);
    if (serverId != m_followed.id())
        return;
    giveUp();
    m_followed.follow(*this, qlumNoServer);
    m_returnTimer.stop();
    clearAll();
    updateState();
}

void QlumPushView::updateState()
{
    const bool hasServer = m_followed.isAny();
    const QString name = m_followed.name();
    if (hasServer) {
        m_heading->setServer(name);
        m_heading->setStatus(m_followed.status());
    } else {
        m_heading->clear();
    }
    const bool isThere = m_followed.isUp() && !m_server.object.isNull();
    const bool isReady = isThere && !isBusy();
    QString note;
    if (!hasServer)
        note = tr("Select a server in the project to configure its certificates.");
    else if (m_returnTimer.isActive() && !m_followed.isUp())
        note =
            tr("%1 applies the changes; the connection that breaks now comes back. When it presents its new "
               "certificate you are asked whether to trust it.")
                .arg(name);
    else if (!m_followed.isUp())
        note = tr("There is no connection to %1. Connect it to configure its certificates.").arg(name);
    else if (!isThere && !isBusy())
        note = tr("%1 has no object ServerConfiguration: its certificates cannot be configured from here.")
                   .arg(name);
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    QlumToolServices* const tools = QlumToolServices::instance();
    m_actions[PushRefresh]->setEnabled(m_followed.isUp() && !isBusy());
    m_actions[PushConnect]->setEnabled(hasServer && tools && tools->canReconnectWith());
    m_actions[PushRejected]->setEnabled(isReady && m_server.has("GetRejectedList"));
    m_actions[PushTrust]->setEnabled(isReady && !m_rejected->current().isEmpty() &&
                                     !m_listPage->group().isNull());
    m_listPage->setReady(isReady);
    m_certificatePage->setReady(isReady);
    m_applyNow->setEnabled(isReady && m_server.has("ApplyChanges"));
}

// ---- project

void QlumPushView::saveSettings(QSettings& settings)
{
    settings.setValue(QStringLiteral("Page"), m_tabs->currentIndex());
}

void QlumPushView::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    m_tabs->setCurrentIndex(settings.value(QStringLiteral("Page"), 0).toInt());
}
