// The main window's widgets and what their signals do.
#include <app/api/qlumdocksize.h>
#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumjournal.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumrunningwork.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumservicerecorder.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumsettings.h>
#include <app/journal/qlumjournalwindow.h>
#include <app/log/qlumlogmodel.h>
#include <app/log/qlumlogview.h>
#include <app/mainwindow/qlumaboutdialog.h>
#include <app/mainwindow/qlumaccess.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlumbugreport.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumfindcommands.h>
#include <app/mainwindow/qlumhelppages.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumpalettecommands.h>
#include <app/mainwindow/qlumprojectdrop.h>
#include <app/mainwindow/qlumprojectsession.h>
#include <app/mainwindow/qlumprojectview.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/mainwindow/qlumrolemarks.h>
#include <app/mainwindow/qlumservercommands.h>
#include <app/mainwindow/qlumshortcutsdialog.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtipwindow.h>
#include <app/mainwindow/qlumupdatecheck.h>
#include <app/mainwindow/qlumworkindicator.h>
#include <app/pluginloader/qlumdirector.h>
#include <app/pluginloader/qlumplugindialog.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <app/services/qlumservicesview.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/startpage/qlumstartpage.h>
#include <app/startpage/qlumstartpageplace.h>
#include <app/support/qlumsupportdialog.h>
#include <app/support/qlumsupportreport.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumnodechooser.h>
#include <plugins/addressspace/search/qlumfindnodeview.h>
#include <servers/doctor/qlumdiagnosis.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumscrollable.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QIcon>
#include <QItemSelectionModel>
#include <QList>
#include <QMainWindow>
#include <QMessageBox>
#include <QModelIndex>
#include <QPointer>
#include <QSaveFile>
#include <QScrollArea>
#include <QSettings>
#include <QSize>
#include <QStackedWidget>
#include <QStatusBar>
#include <QString>
#include <QStringList>
#include <QStyle>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeView>
#include <QWhatsThis>
#include <QWidget>

#include <memory>
#include <utility>

void QlumTavelin::setupGui()
{
    m_director = std::make_unique<QlumDirector>(&m_loader);
    setWindowIcon(QIcon(QStringLiteral(":/images/tavelin.png")));
    setDockOptions(dockOptions() | QMainWindow::AllowNestedDocks);
    resize(1200, 800);
    setCentralWidget(makeCentralWidget());
    makeDocks();
    m_actions->makeToolBars();
    statusBar()->setObjectName(QStringLiteral("statusBar"));
    statusBar()->addPermanentWidget(new QlumWorkIndicator(QlumRunningWork::instance(), statusBar()));
    m_roleMarks = new QlumRoleMarks(this, m_tabs, m_project);
}

QWidget* QlumTavelin::makeCentralWidget()
{
    auto* stack = new QStackedWidget(this);
    stack->setObjectName(QStringLiteral("centralStack"));
    m_tabs = new QTabWidget(stack);
    m_tabs->setObjectName(QStringLiteral("documents"));
    m_tabs->setAccessibleName(tr("Documents"));
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->setDocumentMode(true);
    m_tabs->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tabs->QWidget::addAction((*m_actions)[QlumMainActions::CloseTab]);
    m_startPage = new QlumStartPage(stack);
    stack->addWidget(m_startPage);
    stack->addWidget(m_tabs);
    m_startPagePlace = new QlumStartPagePlace(m_startPage, stack, m_tabs, m_project);
    m_documents = new QlumDocumentArea(m_tabs, m_project, &m_loader, this);
    // A document must not make the window larger than the screen, nor take the docks' room; in a window that
    // is narrower than usual the docks give way first.
    QScrollArea* area = qlumScrollable(stack, this);
    area->setMinimumSize(450, 240);
    return area;
}

QDockWidget* QlumTavelin::makeDock(const QString& title, const QString& name, const QString& whatsThis,
                                   QWidget* content, Qt::DockWidgetArea area, const QSize& size)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWhatsThis(whatsThis);
    dock->setWidget(content);
    qlumSetInitialDockSize(dock, size);
    addDockWidget(area, dock);
    connect(dock->toggleViewAction(), &QAction::triggered, dock, [dock](bool isShown) {
        if (isShown)
            dock->raise(); // in front of the tab that it shares its place with
    });
    return dock;
}

void QlumTavelin::makeDocks()
{
    using A = QlumMainActions;
    m_projectView = new QlumProjectView(m_actions, m_project, this);
    makeDock(tr("Project"), QStringLiteral("Project Dock Widget"),
             tr("<b>Project</b><br>In this window you can manage multiple server connections and documents."),
             m_projectView, Qt::LeftDockWidgetArea, {300, 200});

    m_pages = new QlumAddressSpacePages((*m_actions)[A::Rebrowse], m_services.createPageModel, this);
    m_addressSpaceDock = makeDock(tr("Address Space"), QStringLiteral("Address Space Dock Widget"),
                                  tr("<b>Address Space</b><br>This window shows the address space of the "
                                     "current selected server. You can switch "
                                     "between the servers in the project window."),
                                  m_pages->widget(), Qt::LeftDockWidgetArea, {0, 400});

    m_logView = new QlumLogView(m_logModel, m_actions->list({A::ClearLog, A::SaveLog}), this);
    QDockWidget* log = makeDock(
        tr("Log"), QStringLiteral("Log Dock Widget"),
        tr("<b>Log</b><br>This window shows what Tavelin did and what went wrong, the newest entry last."),
        m_logView, Qt::BottomDockWidgetArea, {0, 180});
    QDockWidget* services =
        makeDock(tr("Services"), QStringLiteral("Services Dock Widget"),
                 tr("<b>Services</b><br>This window shows the service calls of all sessions, while that is "
                    "switched on: how long they took, how large they were and what was in them."),
                 qlumScrollable(new QlumServicesView(QlumServiceRecorder::ofApplication(), this)),
                 Qt::BottomDockWidgetArea, {0, 180});
    tabifyDockWidget(log, services);
    services->hide(); // until somebody wants it
    m_findView = new QlumFindNodeView(qlumApplicationServices(), this);
    m_findDock = makeDock(tr("Find Node"), QStringLiteral("Find Node Dock Widget"),
                          tr("<b>Find Node</b><br>This window searches the nodes of a server, and shows what "
                             "was found. Nodes can be dragged from here into other views."),
                          qlumScrollable(m_findView), Qt::BottomDockWidgetArea, {0, 180});
    tabifyDockWidget(log, m_findDock);
    m_findDock->hide();
}

// How the window looks until the user arranges it: what the docks say of themselves, area by area.
void QlumTavelin::arrangeDocks()
{
    const QList<QDockWidget*> all = findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly);
    // a window that was made narrow and wide again has docks that can still be read
    for (QDockWidget* dock : all)
        if (const int width = qlumInitialDockSize(dock).width(); width > 0)
            dock->setMinimumWidth(width / 2);
    const auto resize = [this, &all](Qt::DockWidgetArea area, Qt::Orientation orientation) {
        QList<QDockWidget*> docks;
        QList<int> sizes;
        for (QDockWidget* dock : all) {
            const QSize wanted = qlumInitialDockSize(dock);
            const int size = orientation == Qt::Horizontal ? wanted.width() : wanted.height();
            if (dockWidgetArea(dock) != area || size <= 0)
                continue;
            docks.append(dock);
            sizes.append(size);
        }
        if (!docks.isEmpty())
            resizeDocks(docks, sizes, orientation);
    };
    // in this order: each call shares out the room that those before it have left
    resize(Qt::LeftDockWidgetArea, Qt::Vertical);
    resize(Qt::TopDockWidgetArea, Qt::Vertical);
    resize(Qt::BottomDockWidgetArea, Qt::Vertical);
    resize(Qt::LeftDockWidgetArea, Qt::Horizontal);
    resize(Qt::RightDockWidgetArea, Qt::Horizontal);
    resize(Qt::RightDockWidgetArea, Qt::Vertical);
}

void QlumTavelin::setupConnections()
{
    m_servers = new QlumServerCommands(
        {this, m_actions, &m_services, m_project, m_projectView, m_pages, m_director.get()});
    new QlumFindCommands({this, m_actions, m_project, m_projectView, m_pages, m_findView, m_findDock});
    m_session = new QlumProjectSession(this, m_actions, m_settings.get(), m_recentFiles,
                                       {[this] { clearProject(); },
                                        [this](const QString& file) { return loadProject(file); },
                                        [this](const QString& file) { return saveProject(file); }});
    const auto* palette =
        new QlumPaletteCommands({this, m_project, m_projectView, m_pages, m_recentFiles,
                                 [this](const QString& key) { configure(key); },
                                 [this] {
                                     QStringList types;
                                     for (const QlumDocumentType& type : m_documents->types())
                                         types.append(type.type);
                                     return types;
                                 },
                                 [this](const QString& type) { addDocument(type); }});
    connect((*m_actions)[QlumMainActions::Palette], &QAction::triggered, palette, &QlumPaletteCommands::show);
    new QlumAccess(this);
    new QlumProjectDrop(this, [this](const QString& file) { m_session->sltOpenRecent(file); });
    m_updates = new QlumUpdateCheck(m_settings.get(), m_network.get(), this);
    connectCommands();
    connectViews();
}

void QlumTavelin::connectCommands()
{
    using A = QlumMainActions;
    const auto on = [this](A::Id id, auto slot) {
        connect((*m_actions)[id], &QAction::triggered, this, slot);
    };
    on(A::Quit, &QWidget::close);
    on(A::AddDocument, &QlumTavelin::sltDocumentAdd);
    on(A::RemoveDocument, &QlumTavelin::sltDocumentRemove);
    on(A::CloseTab, &QlumTavelin::sltCloseTab);
    on(A::Configure, &QlumTavelin::sltConfigure);
    on(
        A::Plugins, [this] { QlumPluginDialog(m_pluginPath, m_pluginKeys, this).exec(); });
    on(
        A::Certificates, [this] { m_services.manageCertificates(this); });
    on(
        A::Manual, [this] { m_help->showPageInFront(qlumHelpPageOf(QApplication::focusWidget())); });
    on(A::WhatsThis, [] { QWhatsThis::enterWhatsThisMode(); });
    on(A::TipOfTheDay, &QlumTavelin::sltTipOfTheDay);
    on(A::ReportBug, &QlumTavelin::sltHelpReportBug);
    on(A::SupportReport, &QlumTavelin::sltSupportReport);
    on(A::Shortcuts, [this] { QlumShortcutsDialog(qlumShortcutRows(this, m_tabs), this).exec(); });
    on(A::CheckUpdates, &QlumTavelin::sltHelpCheckUpdates);
    on(A::About, [this] { QlumAboutDialog(this).exec(); });
    on(A::Journal, &QlumTavelin::showJournal);
    on(A::ClearLog, [this] { m_logModel->clear(); });
    on(A::SaveLog, &QlumTavelin::sltSaveLog);
    on(A::Rebrowse, [this] { m_pages->rebrowseCurrent(); });
    (*m_actions)[A::Certificates]->setEnabled(static_cast<bool>(m_services.manageCertificates));
}

void QlumTavelin::connectViews()
{
    connect(m_servers, &QlumServerCommands::modified, this, &QlumTavelin::setModified);
    connect(m_projectView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumTavelin::sltCurrentProjectNodeChanged);
    connect(m_project, &QAbstractItemModel::rowsInserted, m_projectView,
            [this](const QModelIndex& parent) { m_projectView->expand(parent); });
    connect(m_project, &QlumProjectModel::documentNodeChanged, this, &QlumTavelin::setModified);
    connect(m_project, &QlumProjectModel::serverRenamed, this, &QlumTavelin::setModified);
    connect(m_project, &QlumProjectModel::serverRoleChanged, this, &QlumTavelin::setModified);
    connect(
        m_project, &QlumProjectModel::serverModelChanged, this,
        [this](unsigned int serverId, const UaNodeId& node, OpcUa_Byte change) {
            m_pages->serverModelChanged(serverId, node, change);
            m_director->serverModelChanged(serverId, node, change);
        });
    connect(
        m_project, &QlumProjectModel::dataTypesLoaded, this,
        [this](unsigned int serverId) { m_director->dataTypesLoaded(serverId); });
    connect(m_pages, &QlumAddressSpacePages::nodeSelected, this,
            [this](unsigned int serverId, UaNodeId* node, OpcUa_NodeClass nodeClass, UaNodeId* parent) {
                m_director->selectionChanged(serverId, node, nodeClass, parent);
            });
    connect(m_documents, &QlumDocumentArea::currentChanged, this, &QlumTavelin::sltCurrentDocumentChanged);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        m_tabs->setCurrentIndex(tab);
        sltCloseTab();
    });
}

// Once the tools are there.
void QlumTavelin::setupStartPage()
{
    QList<QlumStartPage::Tool> tools;
    for (const QlumDocumentType& type : m_documents->types())
        tools.append({type.type, type.description});
    m_startPage->setTools(tools);
    m_startPage->setDemoProject(qlumDemoProject());
    using A = QlumMainActions;
    connect(m_startPage, &QlumStartPage::addServerWanted, (*m_actions)[A::AddServer], &QAction::trigger);
    connect(m_startPage, &QlumStartPage::openProjectWanted, (*m_actions)[A::OpenProject], &QAction::trigger);
    connect(m_startPage, &QlumStartPage::projectWanted, m_session, &QlumProjectSession::sltOpenRecent);
    connect(
        m_startPage, &QlumStartPage::documentWanted, this,
        [this](const QString& type) { addDocument(type); });
    const auto showRecent = [this] { m_startPage->setRecentProjects(m_recentFiles->files()); };
    connect(m_recentFiles, &QlumRecentFiles::updated, m_startPage, showRecent);
    showRecent();
}

// ---- what tools may have done

void QlumTavelin::setupToolServices()
{
    m_toolServices.takeReveal(
        m_pages,
        [this](unsigned int serverId, const UaNodeId& nodeId) { return revealNode(serverId, nodeId); });
    m_toolServices.takeChooseNode(
        m_pages, [this](QWidget* parent, unsigned int serverId,
                        const UaNodeId& start) { return chooseNode(parent, serverId, start); });
    m_toolServices.takeDocuments(m_documents, [this](const QString& type) { return bringUpDocument(type); });
    if (m_services.takeToolServices)
        m_services.takeToolServices(m_toolServices, this, [this](unsigned int id) { return findServer(id); });
}

UaNodeId QlumTavelin::chooseNode(QWidget* parent, unsigned int serverId, const UaNodeId& start)
{
    const UaNodeId root(OpcUaId_RootFolder);
    std::unique_ptr<QlumAddressSpaceModel> model(createAddressSpaceModel(serverId, &root));
    if (!model)
        return {};
    const QPointer<QlumNodeChooser> dialog =
        new QlumNodeChooser(std::move(model), serverName(serverId), parent);
    dialog->select(start);
    const bool isChosen = dialog && dialog->exec() == QDialog::Accepted; // browsing runs event loops, too
    const UaNodeId chosen = isChosen && dialog ? dialog->nodeId() : UaNodeId();
    delete dialog;
    return chosen;
}

bool QlumTavelin::revealNode(unsigned int serverId, const UaNodeId& nodeId)
{
    const QlumServerNode* server = findServer(serverId);
    if (!server || !m_pages->hasPage(serverId))
        return false;
    // the server first: its selection shows the page and is not to take the node's selection back
    m_projectView->setCurrentIndex(m_project->indexOf(server));
    m_pages->showPage(serverId);
    m_addressSpaceDock->show();
    m_addressSpaceDock->raise();
    return m_pages->reveal(serverId, nodeId);
}

QWidget* QlumTavelin::bringUpDocument(const QString& type)
{
    const QlumProjectNodeDocument* document = m_documents->bringUp(type);
    if (!document)
        return nullptr;
    setModified(); // whatever is shown in it now
    return document->widget();
}

// ---- commands

void QlumTavelin::sltCurrentProjectNodeChanged()
{
    const QlumProjectNode* node = m_project->nodeAt(m_projectView->currentIndex());
    m_servers->updateActions();
    const auto* document = qobject_cast<const QlumProjectNodeDocument*>(node);
    (*m_actions)[QlumMainActions::RemoveDocument]->setEnabled(document != nullptr);
    if (document)
        m_documents->show(document);
    const auto* server = qobject_cast<const QlumServerNode*>(node);
    if (!server)
        return;
    m_roleMarks->setServer(server);
    m_pages->showPage(server->serverId());
    m_director->serverSelectionChanged(server->serverId());
}

void QlumTavelin::addDocument(const QString& type)
{
    if (m_documents->add(type, m_documents->freeName(qlumDocumentTypeName(type))))
        setModified();
}

void QlumTavelin::sltDocumentAdd()
{
    if (m_documents->askAndAdd())
        setModified();
}

void QlumTavelin::sltDocumentRemove()
{
    auto* document = qobject_cast<QlumProjectNodeDocument*>(m_project->nodeAt(m_projectView->currentIndex()));
    if (!document)
        return;
    m_documents->remove(document);
    setModified();
}

void QlumTavelin::sltCloseTab()
{
    if (QlumProjectNodeDocument* document = m_documents->current()) {
        m_documents->remove(document);
        setModified();
    }
}

void QlumTavelin::sltCurrentDocumentChanged(QlumProjectNodeDocument* document)
{
    (*m_actions)[QlumMainActions::CloseTab]->setEnabled(document != nullptr);
}

void QlumTavelin::configure(const QString& setting)
{
    QlumSettingsDialog dialog(m_settings.get(), this);
    dialog.showSetting(setting);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (!m_settings->flush())
        QMessageBox::warning(this, tr("Configure Tavelin"),
                             tr("The settings cannot be written to %1. They hold until Tavelin ends.")
                                 .arg(QDir::toNativeSeparators(m_settings->fileName())));
    loadTavelinSettings();
    m_recentFiles->updateActions();
    updateTraceSettings();
    for (QlumServerNode* server : m_project->servers())
        server->applySettings();
}

void QlumTavelin::sltSaveLog()
{
    const QString fileName =
        QFileDialog::getSaveFileName(this, tr("Save Log As"), QString(), tr("Log Files (*.log)"));
    if (fileName.isEmpty())
        return;
    QSaveFile file(fileName);
    bool saved = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (saved) {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        m_logModel->save(stream);
        stream.flush();
        saved = file.commit();
    }
    if (!saved)
        QlumLog(tr("General"))
            .error(tr("Open file %1 for writing returned %2").arg(fileName, file.errorString()));
}

void QlumTavelin::showJournal()
{
    auto* shown = findChild<QlumJournalWindow*>();
    if (!shown)
        shown = new QlumJournalWindow(QlumJournal::ofApplication(), this);
    shown->show();
    shown->raise();
    shown->activateWindow();
}

bool QlumTavelin::showNews()
{
    const QString before = QlumSettings::lastVersion.value(this);
    QlumSettings::lastVersion.store(*this, QlumUpdateCheck::currentVersion());
    if (before.isEmpty() || before == QlumUpdateCheck::currentVersion())
        return false;
    m_help->showPageInFront(qlumHelpPage(QStringLiteral("whatsnew")));
    return true;
}

void QlumTavelin::sltHelpCheckUpdates()
{
    m_updates->checkNow();
}

void QlumTavelin::sltHelpReportBug()
{
    QlumBugReport::send(this);
}

void QlumTavelin::sltSupportReport()
{
    QlumReportSources sources;
    sources.versions = QlumBugReport::versions();
    sources.settingsFile = QSettings().fileName();
    QSettings().sync();
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("project.uap"));
    if (QFile project(copy); folder.isValid() && saveProject(copy) && project.open(QIODevice::ReadOnly))
        sources.project = project.readAll();
    QTextStream log(&sources.log);
    m_logModel->save(log);
    log.flush();
    sources.traceFile = settingsValue(QStringLiteral("Trace.Filename")).toString();
    sources.crashFolder = QlumCertificateStore::trace();
    sources.connections = qlumKeptDiagnoses();
    QlumSupportDialog(qlumReportParts(sources), this).exec();
}

void QlumTavelin::sltTipOfTheDay()
{
    QlumTipWindow(this).exec();
}
