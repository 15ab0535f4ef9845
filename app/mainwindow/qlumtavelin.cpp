#include <app/mainwindow/qlumtavelin.h>

#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumlog.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumuatrace.h>
#include <app/log/qlumlogmodel.h>
#include <app/log/qlumlogview.h>
#include <app/log/qlumtracesettings.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumprojectsession.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/mainwindow/qlumservercommands.h>
#include <app/mainwindow/qlumupdatecheck.h>
#include <app/mainwindow/qlumupdatedialog.h>
#include <app/mainwindow/qlumwindowhelp.h>
#include <app/pluginloader/qlumdirector.h>
#include <app/project/qlumprojectfile.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <app/recovery/qlumprojectrecovery.h>
#include <app/recovery/qlumsessionrecord.h>
#include <app/settings/qlumappearance.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/startpage/qlumstartpageplace.h>
#include <servers/qlumdiscoverysettings.h>
#include <uabase/system/uatrace.h>

#include <QAction>
#include <QByteArray>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QHeaderView>
#include <QList>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QSettings>
#include <QString>
#include <QTabWidget>
#include <QTreeView>
#include <QWidget>

#include <utility>

namespace {
const auto logSource = QStringLiteral("Tavelin");
const auto geometryKey = QStringLiteral("geometry");
const auto windowStateKey = QStringLiteral("windowState");
const auto logViewKey = QStringLiteral("logview");
const auto checkForUpdatesKey = QStringLiteral("AutomaticUpdate.CheckForUpdates");
const auto updateIntervalKey = QStringLiteral("AutomaticUpdate.UpdateInterval");

QlumTavelin* g_instance = nullptr;
} // namespace

QlumTavelin::QlumTavelin(QlumTavelinServices services, QWidget* parent, Qt::WindowFlags flags)
    : QMainWindow(parent, flags), m_services(std::move(services))
{
    QSettings settings;
    QlumDiscoverySettings::convertOlder(settings); // before anybody reads them
    qlumRegisterMetaTypes();
    setObjectName(QStringLiteral("QlumTavelin"));
    g_instance = this;
    m_settings = std::make_unique<QlumSettingsModel>();
    new QlumAppearance(*m_settings, this);
    m_network = std::make_unique<QNetworkAccessManager>();
    setupModels();
    loadTavelinSettings();
    setInstance(this);
    QlumUaTrace::setApplication(this);
    setupActions();
    setupGui();
    setupConnections();
    setupHelp();
    setupToolServices();
    setupPlugins();
    setupMenu();
    m_recentFiles->updateActions();
    updateTraceSettings();
    loadGuiState();
    m_updates->checkAutomatically();
    UaTrace::setErrorTraceHook(this);
    QlumLog(logSource).info(tr("Tavelin is ready to use."));
}

QlumTavelin::~QlumTavelin()
{
    // taken while the docks of the plugins are still there
    const QByteArray windowState = saveState();
    UaTrace::setErrorTraceHook(nullptr);
    saveTavelinSettings();
    clearProject();
    UaTrace::closeTrace();
    m_loader.unloadPlugins();
    saveGuiState(windowState);
    m_projectView->setModel(nullptr);
    delete m_help;
    QlumUaTrace::setApplication(nullptr);
    setInstance(nullptr);
    g_instance = nullptr;
    // the parts go before the settings and the plugins' director that they use
    delete takeCentralWidget();
}

QlumTavelin* QlumTavelin::instance() noexcept
{
    return g_instance;
}

void QlumTavelin::setupModels()
{
    m_logModel = new QlumLogModel(this);
    m_project = new QlumProjectModel(this);
}

void QlumTavelin::loadTavelinSettings()
{
    m_logModel->setMaxEntries(m_settings->value(QStringLiteral("General.LogMaxEntries")).toInt());
    m_logModel->setShowDate(m_settings->value(QStringLiteral("General.LogShowDateWithTimestamps")).toBool());
}

void QlumTavelin::saveTavelinSettings()
{
    m_project->store();
    QSettings().sync();
}

void QlumTavelin::setupActions()
{
    m_actions = new QlumMainActions(this);
    m_recentFiles = new QlumRecentFiles(m_settings.get(), this);
}

void QlumTavelin::setupPlugins()
{
    QlumLog(logSource).info(tr("Loading plugins..."));
    m_loader.loadPlugins(this);
    m_pluginPath = m_loader.path();
    m_pluginKeys = m_loader.filenames();
    const auto defaultDocument = QStringLiteral("Data Access View");
    const auto* document =
        m_documents->add(defaultDocument, m_documents->freeName(qlumDocumentTypeName(defaultDocument)));
    m_startPagePlace->setFirstDocument(document ? document->widget() : nullptr);
    setupStartPage();
}

void QlumTavelin::setupMenu()
{
    m_actions->makeMenus(createPopupMenu(), m_recentFiles->menu());
}

void QlumTavelin::setupHelp()
{
    m_help = new QlumHelpViewer(nullptr);
    new QlumWindowHelp(this, m_help);
}

void QlumTavelin::loadGuiState()
{
    arrangeDocks();
    const QSettings settings;
    restoreGeometry(settings.value(geometryKey).toByteArray());
    restoreState(settings.value(windowStateKey).toByteArray());
    m_logView->header()->restoreState(settings.value(logViewKey).toByteArray());
}

void QlumTavelin::saveGuiState(const QByteArray& windowState)
{
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(windowStateKey, windowState);
    settings.setValue(logViewKey, m_logView->header()->saveState());
}

bool QlumTavelin::hasUpdateSettings()
{
    return !settingsValue(checkForUpdatesKey).isNull();
}

void QlumTavelin::setupUpdateSettings()
{
    if (hasUpdateSettings())
        return;
    QlumUpdateDialog dialog(settingsValue(updateIntervalKey).toInt(), this);
    if (dialog.exec() != QDialog::Accepted)
        return; // no answer: asked again at the next start
    setSettingsValue(checkForUpdatesKey, dialog.checkForUpdates());
    setSettingsValue(updateIntervalKey, dialog.interval());
}

void QlumTavelin::parseArguments()
{
    m_session->parseArguments(QCoreApplication::arguments().mid(1));
}

void QlumTavelin::keepRecovery(QlumSessionRecord& record)
{
    m_recovery = new QlumProjectRecovery(
        record,
        {[this](const QString& file) { return saveProject(file); },
         [this](const QString& file) { m_session->open(file); },
         [this](const QString& copy, const QString& file) { return m_session->openRecovered(copy, file); }},
        this);
    connect(m_session, &QlumProjectSession::changed, m_recovery, &QlumProjectRecovery::sltChanged);
    connect(m_session, &QlumProjectSession::clean, m_recovery, &QlumProjectRecovery::sltClean);
    connect(m_session, &QlumProjectSession::currentFileChanged, m_recovery,
            &QlumProjectRecovery::sltProjectFileChanged);
}

void QlumTavelin::offerRecovery(const std::function<void()>& beforeAsking)
{
    if (m_recovery)
        m_recovery->offer(beforeAsking);
}

QlumProjectFile QlumTavelin::makeProjectFile()
{
    QlumProjectFileHooks hooks;
    hooks.createServer = [this](const QString& name, QSettings& settings) {
        return m_services.createServer ? m_services.createServer(name, settings) : nullptr;
    };
    hooks.serverAdded = [this](QlumServerNode* server) { m_servers->serverAdded(server); };
    hooks.createDocument = [this](const QString& type, const QString& name) {
        return m_documents->add(type, name);
    };
    return QlumProjectFile(m_project, m_director.get(), std::move(hooks));
}

bool QlumTavelin::saveProject(const QString& fileName)
{
    return makeProjectFile().save(fileName);
}

QlumProjectReading QlumTavelin::loadProject(const QString& fileName)
{
    m_loading = true;
    QlumProjectReading reading = makeProjectFile().load(fileName);
    m_loading = false; // a connect may ask the user, who may change something meanwhile
    for (const QPointer<QlumServerNode>& server : reading.toConnect)
        if (server)
            m_servers->connectServer(server);
    return reading;
}

void QlumTavelin::clearProject()
{
    m_documents->clear();
    m_project->unknownDocuments().clear();
    for (QlumServerNode* server : m_project->servers())
        m_servers->removeServer(server);
}

void QlumTavelin::updateTraceSettings()
{
    const QlumTraceSettings trace(m_settings.get());
    trace.apply();
    m_minimumLogLevel.store(trace.logLevel());
}

void QlumTavelin::closeEvent(QCloseEvent* event)
{
    if (!m_session->mayClose()) {
        event->ignore();
        return;
    }
    m_help->close();
    event->accept();
}
