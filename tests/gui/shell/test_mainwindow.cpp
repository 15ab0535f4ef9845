#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocksize.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtoolservices.h>
#include <app/log/qlumlogmodel.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsmodel.h>
#include <plugins/addressspace/qlumaddressspacemodelinterface.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <tests/gui/shell/fakeserver.h>
#include <tests/gui/shell/faketree.h>
#include <tests/support/dialogdriver.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDockWidget>
#include <QFile>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QListWidget>
#include <QMap>
#include <QMenuBar>
#include <QMessageBox>
#include <QModelIndex>
#include <QObject>
#include <QPlainTextEdit>
#include <QSet>
#include <QSettings>
#include <QSpinBox>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QStringListModel>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>
#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {
// All whose shortcut works while the widget has the focus.
QSet<QAction*> actionsReaching(const QWidget* focus)
{
    QSet<QAction*> result;
    QList<QWidget*> owners = focus->window()->findChildren<QWidget*>();
    owners.append(focus->window());
    for (const QWidget* owner : owners)
        for (QAction* one : owner->actions()) {
            const Qt::ShortcutContext context = one->shortcutContext();
            const bool below = context == Qt::WidgetWithChildrenShortcut && owner->isAncestorOf(focus);
            if (owner == focus || below || context == Qt::WindowShortcut ||
                context == Qt::ApplicationShortcut)
                result.insert(one);
        }
    return result;
}

class MainWindow : public ::testing::Test
{
protected:
    MainWindow()
    {
        QSettings().clear();
        QlumTavelinServices services;
        services.createServer = [](const QString& name, QSettings&) {
            return std::make_unique<FakeServer>(name);
        };
        services.askForServer = [](QWidget*) {
            return std::make_unique<FakeServer>(QStringLiteral("New <b>server</b>"));
        };
        services.editServer = [](QlumServerNode*, QWidget*) { return true; };
        services.createPageModel = [this](QlumServerNode*, QComboBox*, QObject* parent) {
            return tree = new FakeTree(parent);
        };
        window = std::make_unique<QlumTavelin>(std::move(services));
    }

    [[nodiscard]] QAction* action(QlumMainActions::Id id) const { return window->actions()[id]; }
    FakeServer* addServer()
    {
        action(QlumMainActions::AddServer)->trigger();
        return static_cast<FakeServer*>(window->projectModel()->servers().last());
    }
    QStringList log()
    {
        window->logModel()->sltFlush();
        QStringList result;
        for (int row = 0; row < window->logModel()->rowCount(); ++row)
            result.append(window->logModel()->index(row, QlumLogModel::Message).data().toString());
        return result;
    }
    [[nodiscard]] QStackedWidget* pages() const
    {
        return window->findChild<QStackedWidget*>(QStringLiteral("addressSpacePages"));
    }

    FakeTree* tree = nullptr;
    std::unique_ptr<QlumTavelin> window;
};
} // namespace

TEST_F(MainWindow, StandsWithMenusDocksAndPlugins)
{
    QStringList menus;
    for (const QAction* menu : window->menuBar()->actions())
        menus.append(menu->text());
    EXPECT_EQ(menus, (QStringList{"&File", "View", "&Server", "&Document", "&Settings", "&Help"}));
    EXPECT_EQ(window->windowTitle(),
              QStringLiteral("Korvanda Tavelin - The OPC Unified Architecture Client - NewProject[*]"));
    for (const char* dock : {"Project Dock Widget", "Address Space Dock Widget", "Log Dock Widget"})
        EXPECT_NE(window->findChild<QDockWidget*>(QLatin1String(dock)), nullptr) << dock;
    for (const char* bar : {"File Toolbar", "Server Toolbar", "Document Toolbar"})
        EXPECT_NE(window->findChild<QToolBar*>(QLatin1String(bar)), nullptr) << bar;
    const QStringList entries = log();
    EXPECT_EQ(entries.first(), QStringLiteral("Loading plugins..."));
    EXPECT_EQ(entries.filter(QStringLiteral("(Static Plugin)")).size(), 12);
    EXPECT_EQ(entries.last(), QStringLiteral("Tavelin is ready to use."));
    EXPECT_EQ(QlumTavelin::instance(), window.get());
    window.reset();
    EXPECT_EQ(QlumTavelin::instance(), nullptr);
    EXPECT_EQ(QlumApplicationInterface::instance(), nullptr);
}

TEST_F(MainWindow, EverythingHasANameAndExplainsItself)
{
    for (int id = QlumMainActions::NewProject; id <= QlumMainActions::Rebrowse; ++id) {
        const QAction* one = action(static_cast<QlumMainActions::Id>(id));
        ASSERT_NE(one, nullptr) << id;
        EXPECT_FALSE(one->whatsThis().isEmpty()) << one->text().toStdString();
        EXPECT_FALSE(one->toolTip().isEmpty()) << one->text().toStdString();
    }
    for (const QAbstractItemView* view : window->findChildren<QAbstractItemView*>()) {
        const bool part =
            view->inherits("QHeaderView") || view->window()->inherits("QComboBoxPrivateContainer");
        EXPECT_TRUE(part || !view->accessibleName().isEmpty()) << view->metaObject()->className();
    }
}

TEST_F(MainWindow, DocksAreAtFirstAsWideAsTheySay)
{
    window->show();
    QStringList found;
    for (const QDockWidget* dock : window->findChildren<QDockWidget*>()) {
        const int wanted = qlumInitialDockSize(dock).width();
        if (wanted <= 0)
            continue;
        found.append(dock->objectName());
        EXPECT_EQ(dock->width(), wanted) << dock->objectName().toStdString();
    }
    EXPECT_TRUE(found.contains(QStringLiteral("Project Dock Widget")));
    EXPECT_TRUE(found.contains(QStringLiteral("Attributes Dock Widget"))); // of a plugin
}

TEST_F(MainWindow, ServerActionsFollowTheStateOfTheServer)
{
    using A = QlumMainActions;
    EXPECT_FALSE(action(A::ConnectServer)->isEnabled());
    FakeServer* server = addServer();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(action(A::ConnectServer)->isEnabled());
    EXPECT_FALSE(action(A::DisconnectServer)->isEnabled());
    EXPECT_EQ(pages()->currentIndex(), 0);

    action(A::ConnectServer)->trigger();
    EXPECT_FALSE(action(A::ConnectServer)->isEnabled());
    EXPECT_TRUE(action(A::DisconnectServer)->isEnabled());
    EXPECT_TRUE(action(A::ChangeUser)->isEnabled());
    EXPECT_EQ(pages()->count(), 2);
    EXPECT_EQ(pages()->currentIndex(), 1);

    EXPECT_EQ(action(A::ConnectServer)->toolTip(), QStringLiteral("Connect Server"));

    server->announce(QlumConnectionStatus::ConnectionError);
    EXPECT_TRUE(action(A::DisconnectServer)->isEnabled());
    EXPECT_TRUE(action(A::ConnectServer)->isEnabled()); // need not wait for the next attempt
    EXPECT_EQ(action(A::ConnectServer)->toolTip(), QStringLiteral("Reconnect Server Now"));
    const int before = server->connects;
    server->hastens = true;
    action(A::ConnectServer)->trigger();
    EXPECT_EQ(server->connects, before + 1);
    EXPECT_TRUE(action(A::ConnectServer)->isEnabled());
    server->hastens = false;
    EXPECT_EQ(pages()->count(), 2); // an interrupted session still has its nodes

    action(A::DisconnectServer)->trigger();
    EXPECT_TRUE(action(A::ConnectServer)->isEnabled());
    EXPECT_EQ(pages()->count(), 1);

    server->refuses = true;
    action(A::ConnectServer)->trigger();
    EXPECT_EQ(pages()->count(), 1);
    EXPECT_TRUE(action(A::ConnectServer)->isEnabled());

    action(A::RemoveServer)->trigger();
    EXPECT_TRUE(window->projectModel()->servers().isEmpty());
    EXPECT_FALSE(action(A::RemoveServer)->isEnabled());
}

TEST_F(MainWindow, ServerConnectedAfterTrustInItsCertificateHadNoAddressSpace)
{
    FakeServer* server = addServer();
    server->refuses = true;
    action(QlumMainActions::ConnectServer)->trigger();
    EXPECT_EQ(pages()->count(), 1);
    server->refuses = false;
    emit server->retryConnectServer();
    EXPECT_EQ(server->connectionStatus(), QlumConnectionStatus::Connected);
    EXPECT_EQ(pages()->count(), 2);
    EXPECT_EQ(pages()->currentIndex(), 1);
    EXPECT_EQ(server->userConnects, 2) << "both at the user's command";
}

TEST_F(MainWindow, EachServerHasItsPageAndPluginActionsReachAllOfThem)
{
    auto* pluginAction = new QAction(QStringLiteral("Call..."), window.get());
    FakeServer* first = addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    window->addAction(pluginAction);
    addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    const auto trees = pages()->findChildren<QTreeView*>(QStringLiteral("addressSpaceTree"));
    ASSERT_EQ(trees.size(), 2);
    for (const QTreeView* view : trees)
        EXPECT_TRUE(view->actions().contains(pluginAction));
    window->removeAction(pluginAction);
    for (const QTreeView* view : trees)
        EXPECT_FALSE(view->actions().contains(pluginAction));

    trees.at(1)->setCurrentIndex(tree->index(1));
    action(QlumMainActions::Rebrowse)->trigger();
    EXPECT_EQ(tree->rebrowsed, 1);
    FakeTree* second = tree;
    emit first->serverModelChanged(first->serverId(), UaNodeId(84), 4);
    EXPECT_EQ(second->verbs, 0); // only the server's own tree is told

    auto* view = window->findChild<QTreeView*>(QStringLiteral("projectTree"));
    view->setCurrentIndex(window->projectModel()->indexOf(first));
    EXPECT_EQ(pages()->currentWidget()->findChild<QTreeView*>(), trees.at(0));
    action(QlumMainActions::RemoveServer)->trigger();
    EXPECT_EQ(pages()->count(), 3) << "a connected server is not taken away without a question";
    auto* question = window->findChild<QMessageBox*>(QStringLiteral("removeServer"));
    ASSERT_NE(question, nullptr);
    EXPECT_TRUE(question->text().contains(first->displayName()));
    question->button(QMessageBox::Yes)->click();
    EXPECT_EQ(pages()->count(), 2);
}

TEST_F(MainWindow, ToolsRevealNodesAndOpenThemInTheDocumentInFront)
{
    QlumToolServices* tools = QlumToolServices::instance();
    ASSERT_NE(tools, nullptr);
    const FakeServer* first = addServer();
    EXPECT_FALSE(tools->revealNode(first->serverId(), UaNodeId(85))) << "not connected";
    action(QlumMainActions::ConnectServer)->trigger();
    addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    EXPECT_TRUE(tools->revealNode(first->serverId(), UaNodeId(85)));
    const auto* shown = qobject_cast<QlumAddressSpacePage*>(pages()->currentWidget());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->serverId(), first->serverId());
    EXPECT_EQ(shown->tree()->currentIndex().data().toString(), QStringLiteral("Leaf"));
    EXPECT_EQ(window->projectModel()->nodeAt(
                  window->findChild<QTreeView*>(QStringLiteral("projectTree"))->currentIndex()),
              first);
    EXPECT_FALSE(tools->revealNode(first->serverId(), UaNodeId(1234)));

    QObject plugin;
    QWidget* taker = nullptr;
    tools->takeNodes(
        &plugin, {QStringLiteral("Event View"), {}, [&taker](QWidget* document, auto) { taker = document; }});
    const QlumToolNodes nodes{{first->serverId(), UaNodeId(85), OpcUa_NodeClass_Object, {}, {}}};
    QTabWidget* tabs = window->centralTabWidget();
    const int before = tabs->count();
    ASSERT_TRUE(tools->openNodes(QStringLiteral("Event View"), nodes));
    EXPECT_EQ(tabs->count(), before + 1);
    QWidget* opened = taker;
    EXPECT_EQ(tabs->currentWidget(), opened);
    tabs->setCurrentIndex(0);
    ASSERT_TRUE(tools->openNodes(QStringLiteral("Event View"), nodes));
    EXPECT_EQ(tabs->count(), before + 1);
    EXPECT_EQ(taker, opened);
    EXPECT_EQ(tabs->currentWidget(), opened);
}

TEST_F(MainWindow, DocumentsAreTabsAndNodes)
{
    QTabWidget* tabs = window->centralTabWidget();
    const int before = tabs->count();
    QlumProjectNodeDocument* document =
        window->documents()->add(QStringLiteral("Event View"), QStringLiteral("A & B"));
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(tabs->count(), before + 1);
    EXPECT_EQ(tabs->tabText(before), QStringLiteral("A && B"));
    EXPECT_EQ(window->documents()->freeName(QStringLiteral("A & B")), QStringLiteral("A & B 2"));
    EXPECT_EQ(window->documents()->add(QStringLiteral("Nonsense"), QStringLiteral("x")), nullptr);
    document->setDisplayName(QStringLiteral("Alarms"));
    EXPECT_EQ(tabs->tabText(before), QStringLiteral("Alarms"));
    EXPECT_TRUE(window->isWindowModified());
    action(QlumMainActions::CloseTab)->trigger();
    EXPECT_EQ(tabs->count(), before);
    EXPECT_EQ(window->projectModel()->findDocument(QStringLiteral("Alarms")), nullptr);
}

TEST_F(MainWindow, ProjectIsSavedAndLoadedWithItsConnections)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("plant.uap"));
    FakeServer* server = addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    addServer();
    ASSERT_TRUE(window->saveProject(file));
    const unsigned int oldId = server->serverId();
    window->clearProject();
    EXPECT_TRUE(window->projectModel()->servers().isEmpty());
    EXPECT_EQ(window->centralTabWidget()->count(), 0);
    EXPECT_EQ(pages()->count(), 1);
    window->loadProject(file);
    const auto servers = window->projectModel()->servers();
    ASSERT_EQ(servers.size(), 2);
    EXPECT_NE(servers.at(0)->serverId(), oldId);
    EXPECT_EQ(static_cast<FakeServer*>(servers.at(0))->connects, 1);
    EXPECT_EQ(static_cast<FakeServer*>(servers.at(1))->connects, 0);
    EXPECT_EQ(window->serverName(servers.at(0)->serverId()), QStringLiteral("New <b>server</b>"));
    EXPECT_EQ(window->projectServerIds().size(), 2);
    EXPECT_EQ(window->centralTabWidget()->count(), 1);
}

TEST_F(MainWindow, RenamedServerMarksTheProjectAndTheLogTakesTheName)
{
    FakeServer* server = addServer();
    window->setWindowModified(false);
    server->setDisplayName(QStringLiteral("Kiln"));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->serverName(server->serverId()), QStringLiteral("Kiln"));
    EXPECT_EQ(window->projectModel()->indexOf(server).data().toString(), QStringLiteral("Kiln"));
}

TEST_F(MainWindow, NoShortcutIsAmbiguousWhereverTheFocusIs)
{
    window->show();
    addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    addServer();
    action(QlumMainActions::ConnectServer)->trigger();
    for (const QlumDocumentType& type : window->documents()->types())
        window->documents()->add(type.type, QStringLiteral("All ") + type.type);
    QStringList ambiguous;
    QStringList refreshing;
    for (QWidget* focus : window->findChildren<QWidget*>()) {
        if (focus->focusPolicy() == Qt::NoFocus || focus->window() != window.get())
            continue;
        QMap<QKeySequence, QSet<QAction*>> keys;
        for (QAction* one : actionsReaching(focus))
            for (const QKeySequence& key : one->shortcuts())
                keys[key].insert(one);
        for (auto key = keys.cbegin(); key != keys.cend(); ++key)
            if (key.value().size() > 1)
                ambiguous.append(key.key().toString() + QStringLiteral(" in ") + focus->objectName());
        for (const QAction* one : keys.value(QKeySequence(QKeySequence::Refresh)))
            refreshing.append(one->objectName());
    }
    EXPECT_TRUE(ambiguous.isEmpty()) << ambiguous.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(refreshing.contains(QStringLiteral("rebrowse")));
    EXPECT_GE(QSet<QString>(refreshing.begin(), refreshing.end()).size(), 2);
}

TEST_F(MainWindow, UpdateQuestionLeftWithoutAnAnswerStoresNone)
{
    {
        const DialogDriver driver; // as by Esc
        window->setupUpdateSettings();
        EXPECT_EQ(driver.seen().size(), 1);
    }
    EXPECT_TRUE(window->settingsValue(QStringLiteral("AutomaticUpdate.CheckForUpdates")).isNull());
    {
        const DialogDriver driver([](QDialog& dialog) { dialog.accept(); });
        window->setupUpdateSettings();
    }
    EXPECT_TRUE(window->settingsValue(QStringLiteral("AutomaticUpdate.CheckForUpdates")).toBool());
}

TEST_F(MainWindow, ClosingAsksForAnUnsavedProject)
{
    window->show();
    addServer();
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::Cancel));
        EXPECT_FALSE(window->close());
        EXPECT_EQ(driver.seen(),
                  QStringList{QStringLiteral("Unsaved changes: Do you want to save the current project?")});
    }
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::No));
        EXPECT_TRUE(window->close());
    }
    window->show();
    window->setSettingsValue(QStringLiteral("General.SuppressSaveOnExit"), true);
    const DialogDriver driver;
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(driver.seen().isEmpty());
}

TEST_F(MainWindow, ErrorsOfLowerLayersReachTheLogAndLevelsFilter)
{
    UaTrace::tError("%s", "channel broke");
    UaTrace::tWarning("%s", "slow");
    UaTrace::tInfo("%s", "chatter");
    EXPECT_EQ(log().filter(QStringLiteral("channel broke")).size(), 1);
    EXPECT_EQ(log().filter(QStringLiteral("slow")).size(), 1);
    EXPECT_TRUE(log().filter(QStringLiteral("chatter")).isEmpty());

    window->setSettingsValue(QStringLiteral("General.LogLevel"), QStringLiteral("WARNING"));
    window->updateTraceSettings();
    window->log(30, QStringLiteral("too small"), qlumNoServer, QStringLiteral("Test"));
    window->log(50, QStringLiteral("enough"), qlumNoServer, QStringLiteral("Test"));
    EXPECT_EQ(log().last(), QStringLiteral("enough"));
    EXPECT_TRUE(log().filter(QStringLiteral("too small")).isEmpty());

    window->setSettingsValue(QStringLiteral("General.LogLevel"), QStringLiteral("LOUD"));
    window->setSettingsValue(QStringLiteral("Trace.SDKTraceLevel"), QStringLiteral("Everything"));
    window->updateTraceSettings();
    EXPECT_EQ(
        log().filter(QStringLiteral("Invalid General.LogLevel value 'LOUD'; defaulting to 'ALL'")).size(), 1);
    EXPECT_EQ(
        log()
            .filter(QStringLiteral("Invalid Trace.SDKTraceLevel value 'Everything'; defaulting to 'Info'"))
            .size(),
        1);
}

TEST_F(MainWindow, TraceFollowsItsSettings)
{
    QCoreApplication::setApplicationVersion(QStringLiteral("9.8.7"));
    QTemporaryDir folder;
    window->setSettingsValue(QStringLiteral("Trace.Filename"), folder.filePath(QStringLiteral("trace.log")));
    window->setSettingsValue(QStringLiteral("Trace.StackTraceEnabled"), true);
    window->updateTraceSettings();
    EXPECT_EQ(UaTrace::traceLevel(), UaTrace::Errors);
    window->setSettingsValue(QStringLiteral("Trace.SDKTraceEnabled"), true);
    window->setSettingsValue(QStringLiteral("Trace.SDKTraceLevel"), QStringLiteral("ProgramFlow"));
    window->updateTraceSettings();
    EXPECT_EQ(UaTrace::traceLevel(), UaTrace::ProgramFlow);
    QFile trace(folder.filePath(QStringLiteral("trace.log")));
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    EXPECT_TRUE(trace.readAll().contains("** Product version: 9.8.7\n"));
    window->setSettingsValue(QStringLiteral("Trace.SDKTraceEnabled"), false);
    window->setSettingsValue(QStringLiteral("Trace.StackTraceEnabled"), false);
    window->updateTraceSettings();
    EXPECT_TRUE(UaTrace::traceFileName().isNull());
    window->setSettingsValue(QStringLiteral("Trace.Filename"),
                             folder.filePath(QStringLiteral("no/such/trace.log")));
    window->setSettingsValue(QStringLiteral("Trace.SDKTraceEnabled"), true);
    window->updateTraceSettings();
    EXPECT_EQ(log().last(), QStringLiteral("Could not init trace. Please recheck trace settings under "
                                           "Settings->Configure Tavelin..."));
}

TEST_F(MainWindow, SettingsDialogStoresOnlyWhatWasChanged)
{
    QlumSettingsModel settings;
    QStringList changed;
    QObject::connect(&settings, &QlumSettingsModel::valueChanged,
                     [&changed](const QString& key) { changed << key; });
    QlumSettingsDialog dialog(&settings);
    auto* level = dialog.findChild<QComboBox*>(QStringLiteral("General.LogLevel"));
    ASSERT_NE(level, nullptr);
    level->setCurrentText(QStringLiteral("Errors"));
    dialog.accept();
    EXPECT_EQ(settings.value(QStringLiteral("General.LogLevel")).toString(), QStringLiteral("ERROR"));
    changed.removeAll(QStringLiteral("General.LogLevel"));
    EXPECT_TRUE(changed.isEmpty()) << changed.join(QLatin1Char(' ')).toStdString();
}

TEST_F(MainWindow, SettingsOfToolsHaveTheirPageBehindThoseOfTheApplication)
{
    QStringList pages;
    const DialogDriver driver([&pages](QDialog& dialog) {
        const auto* list = dialog.findChild<QListWidget*>(QStringLiteral("settingsPages"));
        for (int row = 0; row < list->count(); ++row)
            pages.append(list->item(row)->text());
        auto* age = dialog.findChild<QSpinBox*>(QStringLiteral("AttributePlugin.MaxAge"));
        EXPECT_EQ(age->accessibleName(), QStringLiteral("Oldest value shown"));
        EXPECT_TRUE(age->whatsThis().startsWith(QLatin1String("<b>Oldest value shown</b><br>")));
        age->setValue(250);
        const auto* waits = dialog.findChild<QLabel*>(QStringLiteral("settingsWait"));
        EXPECT_TRUE(waits->isHidden()) << "that is felt with the next node";
        auto* interval = dialog.findChild<QSpinBox*>(QStringLiteral("DataAccessPlugin.PublishingInterval"));
        if (interval)
            interval->setValue(interval->value() + 10);
        EXPECT_EQ(waits->text(), QStringLiteral("In views that are opened from now on: Publishing interval"));
        dialog.accept();
    });
    action(QlumMainActions::Configure)->trigger();
    EXPECT_EQ(pages.mid(0, 7).join(QLatin1Char('|')),
              "Appearance|Connections|Certificates|Address space|Log and project|Trace|Updates");
    EXPECT_EQ(pages.count("Attributes") + pages.count("History"), 2);
    EXPECT_EQ(window->settingsValue(QStringLiteral("AttributePlugin.MaxAge")), QVariant(250.0));
    EXPECT_EQ(window->settingsValue(QStringLiteral("General.BrowseTimeout")), QVariant(10000u));
}

TEST_F(MainWindow, UpdateQuestionIsAskedOnce)
{
    const DialogDriver driver([](QDialog& dialog) { dialog.accept(); });
    window->setupUpdateSettings();
    EXPECT_EQ(driver.seen(), QStringList{QStringLiteral("Automatic Update")});
    EXPECT_EQ(window->settingsValue(QStringLiteral("AutomaticUpdate.CheckForUpdates")).type(),
              QVariant::Bool);
    window->setupUpdateSettings();
    EXPECT_EQ(driver.seen().size(), 1);
}

TEST_F(MainWindow, PaletteHasCommandsServersSettingsAndLoadedNodes)
{
    addServer();
    window->findChild<QTreeView*>(QStringLiteral("projectTree"))
        ->setCurrentIndex(window->projectModel()->indexOf(window->projectModel()->servers().last()));
    action(QlumMainActions::ConnectServer)->trigger();
    const auto run = [&](const QString& letters) {
        QStringList first;
        DialogDriver driver([&](QDialog& dialog) {
            auto* line = dialog.findChild<QLineEdit*>(QStringLiteral("letters"));
            if (!line) {
                first << dialog.windowTitle() << dialog.focusWidget()->objectName();
                return dialog.reject();
            }
            line->setText(letters);
            const auto* item = dialog.findChild<QTreeWidget*>(QStringLiteral("found"))->topLevelItem(0);
            first << item->text(0) << item->text(2);
            emit line->returnPressed();
        });
        action(QlumMainActions::Palette)->trigger();
        return first;
    };
    EXPECT_EQ(run(QStringLiteral("saveas")).mid(0, 2),
              (QStringList{QStringLiteral("Save As"), QStringLiteral("File")}));
    EXPECT_EQ(run(QStringLiteral("new<b>")).value(1), QStringLiteral("Server"));
    EXPECT_EQ(run(QStringLiteral("leaf")).value(1), QStringLiteral("Node"));
    EXPECT_EQ(
        window->findChild<QTreeView*>(QStringLiteral("addressSpaceTree"))->currentIndex().data().toString(),
        QStringLiteral("Leaf"));
    const QStringList setting = run(QStringLiteral("recentproj"));
    ASSERT_EQ(setting.size(), 4) << "the setting opens the dialog";
    EXPECT_EQ(setting.at(1), QStringLiteral("Setting"));
    EXPECT_EQ(setting.at(2), QStringLiteral("Configure Tavelin"));
    EXPECT_EQ(setting.at(3), QStringLiteral("General.NoOfRecentFiles"));
}
