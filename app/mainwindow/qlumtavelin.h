#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtoolservices.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/pluginloader/qlumpluginloader.h>
#include <app/project/qlumprojectfile.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QAction>
#include <QByteArray>
#include <QCloseEvent>
#include <QDateTime>
#include <QDockWidget>
#include <QIcon>
#include <QList>
#include <QMainWindow>
#include <QMimeData>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QVariant>
#include <QWidget>

#include <atomic>
#include <functional>
#include <memory>

class QNetworkAccessManager;
class QTreeView;
class QlumAddressSpacePages;
class QlumDirector;
class QlumDocumentArea;
class QlumFindNodeView;
class QlumHelpViewer;
class QlumLogModel;
class QlumLogView;
class QlumMainActions;
class QlumProjectModel;
class QlumProjectNodeDocument;
class QlumProjectRecovery;
class QlumProjectSession;
class QlumRecentFiles;
class QlumRoleMarks;
class QlumServerCommands;
class QlumSessionRecord;
class QlumSettingsModel;
class QlumStartPage;
class QlumStartPagePlace;
class QlumUpdateCheck;

/// The main window: owns what the application consists of and joins it; the work is done by its parts.
class QlumTavelin : public QMainWindow, public QlumApplicationInterface, public UaTraceHook
{
    Q_OBJECT
public:
    explicit QlumTavelin(QlumTavelinServices services, QWidget* parent = nullptr,
                         Qt::WindowFlags flags = Qt::WindowFlags());
    ~QlumTavelin() override;

    [[nodiscard]] static QlumTavelin* instance() noexcept;

    /// Whether the user has said how to look for updates.
    [[nodiscard]] bool hasUpdateSettings();
    /// Asks once whether to look for updates.
    void setupUpdateSettings();
    /// Shows once what is new in this version, when there was an older one; true when it did.
    bool showNews();
    /// Opens the project named on the command line.
    void parseArguments();
    /// From now on changes that are not saved are kept beside the record, which outlives the window.
    void keepRecovery(QlumSessionRecord& record);
    /// Asks about what earlier starts left that did not end well.
    void offerRecovery(const std::function<void()>& beforeAsking);

    bool saveProject(const QString& fileName);
    /// Adds what the file holds and begins to connect the servers that were connected.
    QlumProjectReading loadProject(const QString& fileName);
    /// Removes all documents and servers.
    void clearProject();
    void updateTraceSettings();

    void traceOutput(UaTrace::TraceLevel level, const char* text, int moduleId) override;

    /// QlumApplicationInterface
    void setSettingsValue(const QString& key, const QVariant& value) override;
    QVariant settingsValue(const QString& key, const QVariant& defaultValue = QVariant()) const override;
    QMainWindow* mainWindow() override;
    QTabWidget* centralTabWidget() override;
    QDockWidget* addressSpaceDockWidget() override;
    UaClientSdk::UaSession* session(unsigned int serverId) override;
    QString serverName(unsigned int serverId) override;
    unsigned int readDataTypeId(unsigned int serverId, const UaNodeId* nodeId, UaNodeId* dataType,
                                int* valueRank, UaUInt32Array* arrayDimensions, QString* typeName,
                                UaLocalizedText* displayName) override;
    QString typeName(unsigned int serverId, const UaNodeId* dataType, bool withNamespace) override;
    bool isEnum(unsigned int serverId, const UaNodeId* dataType) override;
    UaEnumDefinition getEnumDefinition(unsigned int serverId, const UaNodeId* dataType) override;
    bool hasIcon(unsigned int serverId, const UaNodeId* nodeId) override;
    QIcon getIcon(unsigned int serverId, const UaNodeId* nodeId) override;
    bool nodeIdsFromMimeData(const QMimeData* data, unsigned int* serverId, unsigned int* count,
                             UaNodeId** nodeIds) override;
    QString builtinTypeName(unsigned int builtInType) override;
    void log(int level, const QString& text, unsigned int serverId, const QString& source) override;
    QDateTime dateTimeFromUaDateTime(OpcUa_DateTime* value) override;
    void dateTimeToUaDateTime(const QDateTime& value, OpcUa_DateTime* result) override;
    QString errorMessage(unsigned int statusCode) override;
    QlumAddressSpaceModel* createAddressSpaceModel(unsigned int serverId, const UaNodeId* startNode) override;
    void addAction(QAction* action) override;
    void removeAction(QAction* action) override;
    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass) override;
    void setModified() override;
    int namespaceIndexFromUri(unsigned int serverId, const QString& uri) override;
    QString namespaceUriFromIndex(unsigned int serverId, int index) override;
    QList<unsigned int> projectServerIds() override;
    QStringList namespaceTable(unsigned int serverId) override;

    /// Parts that the window's own dialogs and tests look at.
    [[nodiscard]] const QlumMainActions& actions() const { return *m_actions; }
    [[nodiscard]] QlumProjectModel* projectModel() const { return m_project; }
    [[nodiscard]] QlumLogModel* logModel() const { return m_logModel; }
    [[nodiscard]] QlumDocumentArea* documents() const { return m_documents; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void loadTavelinSettings();
    void saveTavelinSettings();
    void setupModels();
    void setupActions();
    void setupGui();
    void setupConnections();
    void setupHelp();
    void setupToolServices();
    void setupPlugins();
    void setupMenu();
    void loadGuiState();
    void saveGuiState(const QByteArray& windowState);

    QWidget* makeCentralWidget();
    void setupStartPage();
    void makeDocks();
    void arrangeDocks();
    QDockWidget* makeDock(const QString& title, const QString& name, const QString& whatsThis,
                          QWidget* content, Qt::DockWidgetArea area, const QSize& size);
    [[nodiscard]] QlumProjectFile makeProjectFile();
    QlumServerNode* findServer(unsigned int serverId) const;

    void connectCommands();
    void connectViews();
    UaNodeId chooseNode(QWidget* parent, unsigned int serverId, const UaNodeId& start);
    bool revealNode(unsigned int serverId, const UaNodeId& nodeId);
    QWidget* bringUpDocument(const QString& type);
    void sltCurrentProjectNodeChanged();
    void addDocument(const QString& type);
    void sltDocumentAdd();
    void sltDocumentRemove();
    void sltCloseTab();
    void sltCurrentDocumentChanged(QlumProjectNodeDocument* document);
    void sltConfigure() { configure({}); }
    void configure(const QString& setting);
    void sltSaveLog();
    void showJournal();
    void sltHelpCheckUpdates();
    void sltHelpReportBug();
    void sltSupportReport();
    void sltTipOfTheDay();

    QlumToolServices m_toolServices; ///< first: plugins and views use it as long as they are there
    QlumTavelinServices m_services;
    QlumPluginLoader m_loader;
    QString m_pluginPath;
    QStringList m_pluginKeys;
    std::unique_ptr<QlumSettingsModel> m_settings;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<QlumDirector> m_director;
    std::atomic<int> m_minimumLogLevel{0};
    bool m_loading = false; ///< what is restored does not make the project differ from its file

    /// children of the window
    QlumLogModel* m_logModel = nullptr;
    QlumProjectModel* m_project = nullptr;
    QlumMainActions* m_actions = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumStartPage* m_startPage = nullptr;
    QlumStartPagePlace* m_startPagePlace = nullptr;
    QTreeView* m_projectView = nullptr;
    QlumLogView* m_logView = nullptr;
    QlumFindNodeView* m_findView = nullptr;
    QDockWidget* m_findDock = nullptr;
    QDockWidget* m_addressSpaceDock = nullptr;
    QlumAddressSpacePages* m_pages = nullptr;
    QlumDocumentArea* m_documents = nullptr;
    QlumServerCommands* m_servers = nullptr;
    QlumRecentFiles* m_recentFiles = nullptr;
    QlumRoleMarks* m_roleMarks = nullptr;
    QlumProjectSession* m_session = nullptr;
    QlumProjectRecovery* m_recovery = nullptr;
    QlumUpdateCheck* m_updates = nullptr;
    QlumHelpViewer* m_help = nullptr;
};
