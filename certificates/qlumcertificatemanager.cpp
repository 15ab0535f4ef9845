#include <certificates/qlumcertificatemanager.h>

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

namespace {
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
        addPage(m_certificates[place], {m_open, m_trust, m_reject, m_copyThumbprint, m_delete});
        addPage(m_lists[place], {m_openList, m_deleteList});
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

QAction* QlumCertificateManager::addAction(const ActionTexts& texts, void (QlumCertificateManager::*slot)())
{
    auto* action = new QAction(texts.text, this);
    action->setObjectName(QLatin1String(texts.name));
    action->setToolTip(texts.toolTip);
    action->setWhatsThis(texts.whatsThis);
    if (!texts.icon.isEmpty())
        action->setIcon(QIcon(texts.icon));
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void QlumCertificateManager::createActions()
{
    createRowActions();
    createOwnActions();
    m_delete->setShortcut(QKeySequence::Delete);
    m_deleteList->setShortcut(QKeySequence::Delete);
    m_copyThumbprint->setShortcut(QKeySequence::Copy);
    for (QAction* action : {m_delete, m_deleteList, m_copyThumbprint})
        action->setShortcutContext(Qt::WidgetShortcut);
    m_refresh->setShortcut(QKeySequence::Refresh);
    QWidget::addAction(m_refresh);
}

void QlumCertificateManager::createRowActions()
{
    using M = QlumCertificateManager;
    m_trust = addAction({"trust", tr("&Trust"), tr("Set the state of this certificate to Trusted"),
                         tr("<b>Trust</b><br>Moves a rejected certificate to the trusted ones."),
                         QStringLiteral(":/uawidgets/images/on.png")},
                        &M::sltTrust);
    m_reject =
        addAction({"reject", tr("&Reject"), tr("Set the state of this certificate to Rejected"),
                   tr("<b>Reject</b><br>Moves a trusted certificate to the rejected ones. A server that "
                      "uses it is asked about again."),
                   QStringLiteral(":/uawidgets/images/clearlog.png")},
                  &M::sltReject);
    m_open = addAction({"open",
                        tr("&Open..."),
                        tr("Open Certificate in External Viewer"),
                        tr("<b>Open</b><br>Opens the certificate's file with the desktop's program for it."),
                        {}},
                       &M::sltOpen);
    m_delete = addAction({"delete", tr("&Delete"), tr("Delete the certificate"),
                          tr("<b>Delete</b><br>Removes the certificate's file for good."),
                          QStringLiteral(":/images/remove.png")},
                         &M::sltDelete);
    m_copyThumbprint = addAction(
        {"copyThumbprint", tr("Copy T&humbprint"), tr("Copy the SHA-1 thumbprint to the clipboard"),
         tr("<b>Copy Thumbprint</b><br>The number to compare with what the owner of the certificate "
            "tells."),
         QStringLiteral(":/images/copy.png")},
        &M::sltCopyThumbprint);
    m_openList = addAction({"openCrl",
                            tr("&Open..."),
                            tr("Open CRL in External Viewer"),
                            tr("<b>Open</b><br>Opens the list's file with the desktop's program for it."),
                            {}},
                           &M::sltOpen);
    m_deleteList = addAction({"deleteCrl", tr("&Delete"), tr("Delete the CRL"),
                              tr("<b>Delete</b><br>Removes the list's file for good."),
                              QStringLiteral(":/images/remove.png")},
                             &M::sltDelete);
}

void QlumCertificateManager::createOwnActions()
{
    using M = QlumCertificateManager;
    m_refresh = addAction({"refresh",
                           tr("R&efresh"),
                           tr("Read all stores again"),
                           tr("<b>Refresh</b><br>Shows what is in the folders now."),
                           {}},
                          &M::sltReload);
    m_copyOwn = addAction(
        {"copyOwn",
         tr("&Copy Application Certificate To..."),
         tr("Save a copy of the application's own certificate"),
         tr("<b>Copy Application Certificate To</b><br>Saves a copy of Tavelin's own certificate, "
            "which servers are to be given so that they trust Tavelin. The private key stays here."),
         {}},
        &M::sltCopyApplicationCertificate);
    m_createOwn =
        addAction({"createOwn",
                   tr("Create &new Application Certificate..."),
                   tr("Replace the application's own certificate and its key"),
                   tr("<b>Create new Application Certificate</b><br>Makes a new certificate and key "
                      "and replaces the old ones. Servers must be told to trust the new one."),
                   {}},
                  &M::sltCreateApplicationCertificate);
    m_ownLocation = addAction(
        {"ownLocation",
         tr("Open O&wn Certificate Location"),
         tr("Open the folder of the application's own certificate"),
         tr("<b>Open Own Certificate Location</b><br>Shows the folder of Tavelin's own certificate in "
            "the file manager."),
         {}},
        &M::sltOpenOwnLocation);
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
    m_kinds->addTab(createTab(m_certificateTabs, {m_trust, m_reject, m_open, m_delete, m_copyThumbprint}),
                    tr("Certificates"));
    m_kinds->addTab(createTab(m_listTabs, {m_openList, m_deleteList}), tr("Certificate Revocation Lists"));
    auto* buttons = new QHBoxLayout;
    for (QAction* action : {m_refresh, m_copyOwn, m_createOwn, m_ownLocation})
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
    m_trust->setEnabled(entry && trustedStore && entry->state() == QlumCertificateEntry::Rejected &&
                        QDir(m_store.trustedCertificates).exists());
    m_reject->setEnabled(entry && trustedStore && entry->state() == QlumCertificateEntry::InStore &&
                         QDir(m_store.rejected).exists());
    m_open->setEnabled(entry);
    m_delete->setEnabled(entry && !own); // without it no secure connection is possible
    m_copyThumbprint->setEnabled(entry);
    const auto* lists = qobject_cast<QlumCrlPage*>(m_listTabs->currentWidget());
    const bool list = lists && lists->current().isValid();
    m_openList->setEnabled(list);
    m_deleteList->setEnabled(list);
    const QString ownFolder = QFileInfo(m_store.ownCertificateFile).path();
    m_copyOwn->setEnabled(QDir(ownFolder).exists());
    m_createOwn->setEnabled(QDir(ownFolder).exists());
    m_ownLocation->setEnabled(QDir(ownFolder).exists());
}
