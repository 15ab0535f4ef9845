#include <certificates/qlumcertificatemanager.h>

#include <app/api/qlumactiontable.h>
#include <app/api/qlumjobpool.h>
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumcrlmodel.h>
#include <certificates/qlumstorepage.h>
#include <certificates/qlumstorepages.h>
#include <uawidgets/qlumviewstate.h>

#include <QAction>
#include <QBoxLayout>
#include <QDir>
#include <QFileInfo>
#include <QKeySequence>
#include <QList>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTableView>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumCertificateManager", text)

namespace {
enum ActionId {
    Trust,
    Reject,
    Open,
    Delete,
    CopyThumbprint,
    OpenList,
    DeleteList,
    Refresh,
    CopyOwn,
    CreateOwn,
    OwnLocation
};

constexpr QlumActionRow actionRows[] = {
    {Trust, "trust", TEXT("&Trust"), ":/uawidgets/images/on.png", qlumNoKey,
     TEXT("Set the state of this certificate to Trusted"),
     TEXT("<b>Trust</b><br>Moves a rejected certificate to the trusted ones.")},
    {Reject, "reject", TEXT("&Reject"), ":/uawidgets/images/clearlog.png", qlumNoKey,
     TEXT("Set the state of this certificate to Rejected"),
     TEXT("<b>Reject</b><br>Moves a trusted certificate to the rejected ones. A server that uses it is asked "
          "about again.")},
    {Open, "open", TEXT("&Open..."), "", qlumNoKey, TEXT("Open Certificate in External Viewer"),
     TEXT("<b>Open</b><br>Opens the certificate's file with the desktop's program for it.")},
    {Delete, "delete", TEXT("&Delete"), "remove.png", QKeySequence::Delete, TEXT("Delete the certificate"),
     TEXT("<b>Delete</b><br>Removes the certificate's file for good."), Qt::WidgetShortcut},
    {CopyThumbprint, "copyThumbprint", TEXT("Copy T&humbprint"), "copy.png", QKeySequence::Copy,
     TEXT("Copy the SHA-1 thumbprint to the clipboard"),
     TEXT("<b>Copy Thumbprint</b><br>The number to compare with what the owner of the certificate tells."),
     Qt::WidgetShortcut},
    {OpenList, "openCrl", TEXT("&Open..."), "", qlumNoKey, TEXT("Open CRL in External Viewer"),
     TEXT("<b>Open</b><br>Opens the list's file with the desktop's program for it.")},
    {DeleteList, "deleteCrl", TEXT("&Delete"), "remove.png", QKeySequence::Delete, TEXT("Delete the CRL"),
     TEXT("<b>Delete</b><br>Removes the list's file for good."), Qt::WidgetShortcut},
    {Refresh, "refresh", TEXT("R&efresh"), "", QKeySequence::Refresh, TEXT("Read all stores again"),
     TEXT("<b>Refresh</b><br>Shows what is in the folders now.")},
    {CopyOwn, "copyOwn", TEXT("&Copy Application Certificate To..."), "", qlumNoKey,
     TEXT("Save a copy of the application's own certificate"),
     TEXT(
         "<b>Copy Application Certificate To</b><br>Saves a copy of Tavelin's own certificate, which servers "
         "are to be given so that they trust Tavelin. The private key stays here.")},
    {CreateOwn, "createOwn", TEXT("Create &new Application Certificate..."), "", qlumNoKey,
     TEXT("Replace the application's own certificate and its key"),
     TEXT("<b>Create new Application Certificate</b><br>Makes a new certificate and key and replaces the old "
          "ones. Servers must be told to trust the new one.")},
    {OwnLocation, "ownLocation", TEXT("Open O&wn Certificate Location"), "", qlumNoKey,
     TEXT("Open the folder of the application's own certificate"),
     TEXT("<b>Open Own Certificate Location</b><br>Shows the folder of Tavelin's own certificate in the file "
          "manager.")},
};
// Small stores are read within it, so that they do not flicker; longer is a delay that users notice.
constexpr int readAtOnce = 100; // ms

QString storeTitle(int store)
{
    return store == QlumCertificateModel::Trusted   ? QlumCertificateManager::tr("Trusted")
           : store == QlumCertificateModel::Issuers ? QlumCertificateManager::tr("Issuers")
                                                    : QlumCertificateManager::tr("TLS Issuers");
}

QTabWidget* makeTabs(const char* name, QWidget* parent)
{
    auto* tabs = new QTabWidget(parent);
    tabs->setObjectName(QLatin1String(name));
    return tabs;
}
} // namespace

QlumCertificateManager::QlumCertificateManager(const QString& applicationName, const QString& organization,
                                               const QlumCertificateStoreConfiguration& configuration,
                                               const QIcon& icon, bool canProtectKey, QWidget* parent)
    : QWidget(parent), m_applicationName(applicationName), m_organization(organization), m_icon(icon),
      m_canProtectKey(canProtectKey),
      m_state(new QlumViewState(QStringLiteral("QlumCertificateManager"), this)),
      m_kinds(makeTabs("kinds", this)), m_certificateTabs(makeTabs("certificateStores", this)),
      m_listTabs(makeTabs("crlStores", this)), m_pool(std::make_unique<QlumJobPool>(2))
{
    setObjectName(QStringLiteral("QlumCertificateManager"));
    createActions();
    createLayout();
    for (QTabWidget* tabs : {m_kinds, m_certificateTabs, m_listTabs})
        connect(tabs, &QTabWidget::currentChanged, this, &QlumCertificateManager::sltUpdateActions);
    setPaths(configuration);
}

QlumCertificateManager::~QlumCertificateManager()
{
    m_state->store();
}

void QlumCertificateManager::setPaths(const QlumCertificateStoreConfiguration& configuration)
{
    removePages();
    m_store = configuration;
    createPages();
    sltReload();
}

QlumCertificatePage* QlumCertificateManager::certificatePage(int store) const
{
    return m_certificates.at(static_cast<std::size_t>(store));
}

QlumCrlPage* QlumCertificateManager::crlPage(int store) const
{
    return m_lists.at(static_cast<std::size_t>(store));
}

std::array<QlumStorePage*, 3> QlumCertificateManager::certificatePages() const
{
    return {m_certificates[0], m_certificates[1], m_certificates[2]};
}

std::array<QlumStorePage*, 3> QlumCertificateManager::crlPages() const
{
    return {m_lists[0], m_lists[1], m_lists[2]};
}

QlumStorePage* QlumCertificateManager::currentPage() const
{
    const QTabWidget* tabs = m_kinds->currentIndex() == 0 ? m_certificateTabs : m_listTabs;
    return qobject_cast<QlumStorePage*>(tabs->currentWidget());
}

// ---- pages

void QlumCertificateManager::removePages()
{
    m_pool = std::make_unique<QlumJobPool>(2); // joins what still reads for the pages
    for (QlumStorePage* page : certificatePages())
        delete page;
    for (QlumStorePage* page : crlPages())
        delete page;
    m_certificates.fill(nullptr);
    m_lists.fill(nullptr);
}

void QlumCertificateManager::createPages()
{
    const std::array<const QString*, 3> lists{&m_store.trustedRevocationLists, &m_store.issuerRevocationLists,
                                              &m_store.tlsIssuerRevocationLists};
    for (int store = 0; store < 3; ++store) {
        const auto place = static_cast<std::size_t>(store);
        m_certificates[place] =
            new QlumCertificatePage(static_cast<QlumCertificateModel::CertStoreType>(store),
                                    tr("%1 certificates").arg(storeTitle(store)), m_store, m_icon, this);
        m_lists[place] =
            new QlumCrlPage(static_cast<QlumCRLModel::CRLStoreType>(store),
                            tr("%1 revocation lists").arg(storeTitle(store)), *lists[place], this);
        addPage(m_certificates[place], m_actions.list({Open, Trust, Reject, CopyThumbprint, Delete}));
        addPage(m_lists[place], m_actions.list({OpenList, DeleteList}));
    }
}

void QlumCertificateManager::addPage(QlumStorePage* page, const QList<QAction*>& actions)
{
    page->hide();
    page->view()->addActions(actions);
    page->keepColumns(m_state);
    connect(page, &QlumStorePage::currentChanged, this, &QlumCertificateManager::sltUpdateActions);
    connect(page, &QlumStorePage::rowActivated, this, &QlumCertificateManager::sltOpen);
    // after the drag has ended: a question must not hold up the program that the files come from
    connect(
        page, &QlumStorePage::filesDropped, this,
        [this, page](const QStringList& paths) { addFiles(page, paths); }, Qt::QueuedConnection);
}

void QlumCertificateManager::showStores(QTabWidget* tabs, const std::array<QlumStorePage*, 3>& pages)
{
    const int wanted = m_store.hasTlsIssuers() ? 3 : 2;
    while (tabs->count() > wanted)
        tabs->removeTab(tabs->count() - 1);
    while (tabs->count() < wanted) {
        const int store = tabs->count();
        tabs->addTab(pages[static_cast<std::size_t>(store)], storeTitle(store));
    }
}

void QlumCertificateManager::sltReload()
{
    showStores(m_certificateTabs, certificatePages());
    showStores(m_listTabs, crlPages());
    QList<QlumStorePage*> pages;
    for (int store = 0; store < m_certificateTabs->count(); ++store)
        pages << m_certificates[static_cast<std::size_t>(store)] << m_lists[static_cast<std::size_t>(store)];
    m_pool->cancelAll();
    reloadPages(pages);
}

void QlumCertificateManager::reloadPages(const QList<QlumStorePage*>& pages)
{
    for (QlumStorePage* page : pages)
        page->reload(*m_pool);
    m_pool->waitForDone(readAtOnce);
    for (QlumStorePage* page : pages)
        page->takeRead();
    sltUpdateActions();
}

// ---- actions and layout

void QlumCertificateManager::createActions()
{
    m_actions = QlumActionTable(actionRows, "QlumCertificateManager", this);
    const auto on = [this](int id, void (QlumCertificateManager::*slot)()) {
        connect(m_actions[id], &QAction::triggered, this, slot);
    };
    on(Trust, &QlumCertificateManager::sltTrust);
    on(Reject, &QlumCertificateManager::sltReject);
    on(Open, &QlumCertificateManager::sltOpen);
    on(Delete, &QlumCertificateManager::sltDelete);
    on(CopyThumbprint, &QlumCertificateManager::sltCopyThumbprint);
    on(OpenList, &QlumCertificateManager::sltOpen);
    on(DeleteList, &QlumCertificateManager::sltDelete);
    on(Refresh, &QlumCertificateManager::sltReload);
    on(CopyOwn, &QlumCertificateManager::sltCopyApplicationCertificate);
    on(CreateOwn, &QlumCertificateManager::sltCreateApplicationCertificate);
    on(OwnLocation, &QlumCertificateManager::sltOpenOwnLocation);
    QWidget::addAction(m_actions[Refresh]);
}

QPushButton* QlumCertificateManager::buttonFor(QAction* action)
{
    auto* button = new QPushButton(action->icon(), action->text(), this);
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setToolTip(action->toolTip());
    button->setWhatsThis(action->whatsThis());
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::changed, button, [action, button] { button->setEnabled(action->isEnabled()); });
    return button;
}

QWidget* QlumCertificateManager::createTab(QTabWidget* stores, const QList<QAction*>& actions)
{
    auto* tab = new QWidget;
    auto* buttons = new QVBoxLayout;
    for (QAction* action : actions)
        buttons->addWidget(buttonFor(action));
    buttons->addStretch();
    auto* layout = new QHBoxLayout(tab);
    layout->addWidget(stores, 1);
    layout->addLayout(buttons);
    return tab;
}

void QlumCertificateManager::createLayout()
{
    m_kinds->addTab(
        createTab(m_certificateTabs, m_actions.list({Trust, Reject, Open, Delete, CopyThumbprint})),
        tr("Certificates"));
    m_kinds->addTab(createTab(m_listTabs, m_actions.list({OpenList, DeleteList})),
                    tr("Certificate Revocation Lists"));
    auto* buttons = new QHBoxLayout;
    for (QAction* action : m_actions.list({Refresh, CopyOwn, CreateOwn, OwnLocation}))
        buttons->addWidget(buttonFor(action));
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_kinds, 1);
    layout->addLayout(buttons);
}

void QlumCertificateManager::sltUpdateActions()
{
    const auto* page = qobject_cast<QlumCertificatePage*>(m_certificateTabs->currentWidget());
    const QlumCertificateEntry* entry = page ? page->currentEntry() : nullptr;
    const bool trustedStore = page && page->model()->type() == QlumCertificateModel::Trusted;
    const bool own = entry && entry->state() == QlumCertificateEntry::Own;
    const bool readable = entry && entry->isReadable();
    m_actions[Trust]->setEnabled(readable && trustedStore &&
                                 entry->state() == QlumCertificateEntry::Rejected &&
                                 QDir(m_store.trustedCertificates).exists());
    m_actions[Reject]->setEnabled(entry && trustedStore && entry->state() == QlumCertificateEntry::InStore &&
                                  QDir(m_store.rejected).exists());
    m_actions[Open]->setEnabled(entry);
    m_actions[Delete]->setEnabled(entry && !own); // without it no secure connection is possible
    m_actions[CopyThumbprint]->setEnabled(readable);
    const auto* lists = qobject_cast<QlumCrlPage*>(m_listTabs->currentWidget());
    const bool list = lists && lists->current().isValid();
    m_actions[OpenList]->setEnabled(list);
    m_actions[DeleteList]->setEnabled(list);
    const QString ownFolder = QFileInfo(m_store.ownCertificateFile).path();
    m_actions[CopyOwn]->setEnabled(QDir(ownFolder).exists());
    m_actions[CreateOwn]->setEnabled(QDir(ownFolder).exists());
    m_actions[OwnLocation]->setEnabled(QDir(ownFolder).exists());
}
