#include <app/mainwindow/qlummainactions.h>

#include <app/api/qlumactiontable.h>

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QString>
#include <QToolBar>

#include <initializer_list>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumMainActions", text)

namespace {
using A = QlumMainActions;

constexpr QlumActionRow actionRows[] = {
    {A::NewProject, "newProject", TEXT("&New"), "filenew.png", QKeySequence::New, TEXT("New Project"),
     TEXT("<b>New</b><br>Closes all servers and documents and begins an empty project.")},
    {A::OpenProject, "openProject", TEXT("&Open"), "fileopen.png", QKeySequence::Open, TEXT("Open Project"),
     TEXT("<b>Open</b><br>Loads servers, documents and their settings from a project file.")},
    {A::SaveProject, "saveProject", TEXT("&Save"), "filesave.png", QKeySequence::Save, TEXT("Save Project"),
     TEXT("<b>Save</b><br>Writes the project to its file. Passwords are never written.")},
    {A::SaveProjectAs, "saveProjectAs", TEXT("Save &As..."), "filesaveas.png", QKeySequence::SaveAs,
     TEXT("Save Project As..."), TEXT("<b>Save As</b><br>Writes the project to another file.")},
    {A::Quit, "quit", TEXT("&Quit"), "fileexit.png", QKeySequence::Quit, TEXT("Quit Tavelin"),
     TEXT("<b>Quit</b><br>Disconnects all servers and ends Tavelin.")},
    {A::AddServer, "addServer", TEXT("&Add..."), "serveradd.png", qlumNoKey, TEXT("Add Server"),
     TEXT(
         "<b>Add Server</b><br>Adds a server to the project. Its address, security and user are asked for.")},
    {A::RemoveServer, "removeServer", TEXT("&Remove"), "serverremove.png", qlumNoKey, TEXT("Remove Server"),
     TEXT("<b>Remove Server</b><br>Disconnects the selected server and removes it from the project.")},
    {A::ConnectServer, "connectServer", TEXT("&Connect"), "serverconnect.png", qlumNoKey,
     TEXT("Connect Server"),
     TEXT("<b>Connect Server</b><br>Opens a session with the selected server and shows its address space. "
          "When the connection was lost, tries at once to restore it instead of waiting for the next "
          "attempt.")},
    {A::DisconnectServer, "disconnectServer", TEXT("&Disconnect"), "serverdisconnect.png", qlumNoKey,
     TEXT("Disconnect Server"),
     TEXT("<b>Disconnect Server</b><br>Closes the session with the selected server.")},
    {A::ServerProperties, "serverProperties", TEXT("&Properties..."), "serverproperties.png", qlumNoKey,
     TEXT("Server Properties..."),
     TEXT("<b>Server Properties</b><br>Shows and changes the connection settings of the selected server.")},
    {A::ChangeUser, "changeUser", TEXT("Change &User..."), "user.png", qlumNoKey, TEXT("Change User..."),
     TEXT("<b>Change User</b><br>Continues the session with the selected server as another user.")},
    {A::DiagnoseServer, "diagnoseServer", TEXT("Dia&gnose Connection..."), "info.png", qlumNoKey,
     TEXT("Diagnose Connection..."),
     TEXT(
         "<b>Diagnose Connection</b><br>Tries the connection to the selected server step by step, says where "
         "it stops and on whose side, and offers what helps.")},
    {A::FindNode, "findNode", TEXT("&Find Node..."), "", qlumNoKey, TEXT("Find Node..."),
     TEXT(
         "<b>Find Node</b><br>Searches all nodes of the selected server by name, id, class, type and more.")},
    {A::Palette, "palette", TEXT("Command &Palette..."), "", qlumNoKey, TEXT("Command Palette..."),
     TEXT("<b>Command Palette</b><br>Finds commands, servers, settings, projects and nodes by a few letters, "
          "and "
          "does what is chosen.")},
    {A::Journal, "journal", TEXT("&Journal..."), "", qlumNoKey, TEXT("Journal..."),
     TEXT("<b>Journal</b><br>Shows what was changed on servers, when, by whom, and what it came to.")},
    {A::AddDocument, "addDocument", TEXT("&Add..."), "documentadd.png", qlumNoKey, TEXT("Add Document"),
     TEXT("<b>Add Document</b><br>Opens a view, for example one that watches values or one that shows "
          "events.")},
    {A::RemoveDocument, "removeDocument", TEXT("&Remove"), "documentremove.png", qlumNoKey,
     TEXT("Remove Document"),
     TEXT("<b>Remove Document</b><br>Closes the selected document and removes it from the project.")},
    {A::CloseTab, "closeTab", TEXT("&Close"), "closetab.png", QKeySequence::Close, TEXT("Close Tab"),
     TEXT("<b>Close Tab</b><br>Closes the document in front and removes it from the project.")},
    {A::Configure, "configure", TEXT("&Configure Tavelin..."), "settingsconfigure.png",
     QKeySequence::Preferences, "",
     TEXT("<b>Configure Tavelin</b><br>Time-outs, log and trace, and other settings.")},
    {A::Plugins, "plugins", TEXT("&Plugins..."), "settingsplugins.png", qlumNoKey, "",
     TEXT("<b>Plugins</b><br>Shows all loaded plugins and the interfaces they implement.")},
    {A::Certificates, "certificates", TEXT("Manage Certificates..."), "", qlumNoKey, "",
     TEXT("<b>Manage Certificates</b><br>Tavelin's own certificate and those that it trusts or rejects.")},
    {A::Manual, "manual", TEXT("&Tavelin Manual"), "helpmanual.png", QKeySequence::HelpContents, "",
     TEXT("<b>Tavelin Manual</b><br>Opens the manual.")},
    {A::WhatsThis, "whatsThis", TEXT("&What's This?"), "helpwhatsthis.png", QKeySequence::WhatsThis, "",
     TEXT("<b>What's This?</b><br>Click on a part of the window to read what it is for.")},
    {A::TipOfTheDay, "tipOfTheDay", TEXT("&Tip of the Day"), "helptip.png", qlumNoKey, "",
     TEXT("<b>Tip of the Day</b><br>Shows what many users do not know about Tavelin.")},
    {A::ReportBug, "reportBug", TEXT("&Report a bug..."), "", qlumNoKey, "",
     TEXT("<b>Report a bug</b><br>Prepares an e-mail with the versions of all parts.")},
    {A::SupportReport, "supportReport", TEXT("Report for &Support..."), "", qlumNoKey,
     TEXT("Report for Support..."),
     TEXT("<b>Report for Support</b><br>Collects versions, settings, log and traces in one file, without "
          "passwords, and shows them before.")},
    {A::Shortcuts, "shortcuts", TEXT("&Keyboard Shortcuts..."), "", qlumNoKey, TEXT("Keyboard Shortcuts..."),
     TEXT("<b>Keyboard Shortcuts</b><br>Lists all commands that have a key.")},
    {A::CheckUpdates, "checkUpdates", TEXT("&Check for Updates..."), "", qlumNoKey, "",
     TEXT("<b>Check for Updates</b><br>Asks for the newest version of Tavelin.")},
    {A::About, "about", TEXT("&About Tavelin"), "tavelin.png", qlumNoKey, "",
     TEXT("<b>About Tavelin</b><br>Shows the versions of Tavelin and its parts and the licenses.")},
    {A::ClearLog, "clearLog", TEXT("&Clear Log"), "clearlog.png", qlumNoKey, "",
     TEXT("<b>Clear Log</b><br>Removes all entries from the log window.")},
    {A::SaveLog, "saveLog", TEXT("&Save Log"), "filesave.png", qlumNoKey, "",
     TEXT("<b>Save Log</b><br>Writes the entries of the log window to a text file.")},
    {A::Rebrowse, "rebrowse", TEXT("Rebrowse"), "rebrowse.png", QKeySequence::Refresh, "",
     TEXT("<b>Rebrowse</b><br>Reads the nodes below the selected node from the server again."),
     Qt::WidgetShortcut}, // tools have a key of the same kind for what they show
    {A::FindBelow, "findBelow", TEXT("Find Node &Below..."), "", qlumNoKey, "",
     TEXT("<b>Find Node Below</b><br>Searches the nodes below the selected one.")},
    {A::ExportBranch, "exportBranch", TEXT("E&xport Branch..."), "", qlumNoKey, "",
     TEXT("<b>Export Branch</b><br>Writes all nodes below the selected one to a file.")},
};
} // namespace
#undef TEXT

QlumMainActions::QlumMainActions(QMainWindow* window)
    : QObject(window), m_window(window), m_actions(actionRows, "QlumMainActions", window)
{
    for (QAction* action : list({SaveProject, SaveProjectAs, RemoveServer, ConnectServer, DisconnectServer,
                                 ServerProperties, ChangeUser, DiagnoseServer, RemoveDocument, CloseTab}))
        action->setEnabled(false);
    m_actions[FindNode]->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    m_actions[Palette]->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    if (m_actions[Quit]->shortcut().isEmpty()) // not every desktop names one
        m_actions[Quit]->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    m_actions[Quit]->setMenuRole(QAction::QuitRole);
    m_actions[About]->setMenuRole(QAction::AboutRole);
}

QToolBar* QlumMainActions::makeToolBar(const QString& title, const QString& name,
                                       std::initializer_list<int> ids)
{
    QToolBar* bar = m_window->addToolBar(title);
    bar->setObjectName(name);
    bar->addActions(list(ids));
    bar->toggleViewAction()->setToolTip(tr("Show or hide the %1").arg(title));
    return bar;
}

void QlumMainActions::makeToolBars()
{
    makeToolBar(tr("File Toolbar"), QStringLiteral("File Toolbar"),
                {NewProject, OpenProject, SaveProject, SaveProjectAs});
    makeToolBar(tr("Server Toolbar"), QStringLiteral("Server Toolbar"),
                {AddServer, RemoveServer, ConnectServer, DisconnectServer, ServerProperties, ChangeUser});
    makeToolBar(tr("Document Toolbar"), QStringLiteral("Document Toolbar"), {AddDocument, RemoveDocument});
}

void QlumMainActions::addMenu(const QString& title, const QString& name, const QList<QAction*>& actions)
{
    QMenu* menu = m_window->menuBar()->addMenu(title);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
    for (QAction* action : actions)
        if (action)
            menu->addAction(action);
        else
            menu->addSeparator();
}

void QlumMainActions::makeMenus(QMenu* viewMenu, QMenu* recentProjects)
{
    QList<QAction*> file = list({NewProject, OpenProject, SaveProject, SaveProjectAs});
    file << recentProjects->menuAction() << (*this)[Quit];
    addMenu(tr("&File"), QStringLiteral("fileMenu"), file);
    viewMenu->setTitle(tr("View"));
    viewMenu->setObjectName(QStringLiteral("viewMenu"));
    viewMenu->addSeparator();
    viewMenu->addAction((*this)[Palette]);
    m_window->menuBar()->addMenu(viewMenu);
    QList<QAction*> server = list({AddServer, RemoveServer, ConnectServer, DisconnectServer, ServerProperties,
                                   ChangeUser, DiagnoseServer});
    server << nullptr << (*this)[FindNode] << (*this)[Journal];
    addMenu(tr("&Server"), QStringLiteral("serverMenu"), server);
    addMenu(tr("&Document"), QStringLiteral("documentMenu"), list({AddDocument, RemoveDocument}));
    QList<QAction*> settings = list({Plugins, Configure});
    settings << nullptr << (*this)[Certificates];
    addMenu(tr("&Settings"), QStringLiteral("settingsMenu"), settings);
    addMenu(tr("&Help"), QStringLiteral("helpMenu"),
            list({Manual, WhatsThis, TipOfTheDay, Shortcuts, ReportBug, SupportReport, CheckUpdates, About}));
}
