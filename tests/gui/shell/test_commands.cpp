// Every command of the main window is given, and every question on its way answered in each way.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumservernode.h>
#include <app/journal/qlumjournalwindow.h>
#include <app/log/qlumlogmodel.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <tests/gui/shell/fakeserver.h>
#include <tests/gui/shell/faketree.h>
#include <tests/support/dialogdriver.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QDockWidget>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QMetaObject>
#include <QObject>
#include <QRect>
#include <QScreen>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QUrl>
#include <QWhatsThis>
#include <QWidget>
#include <QWidgetList>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

// Takes the mail instead of the desktop's program.
class CommandsMail : public QObject
{
    Q_OBJECT
public:
    QUrl url;
public slots:
    void take(const QUrl& given) { url = given; }
};

namespace {
using A = QlumMainActions;

class Commands : public ::testing::Test
{
protected:
    Commands()
    {
        QSettings().clear();
        QlumTavelinServices services;
        services.createServer = [](const QString& name, QSettings&) {
            return std::make_unique<FakeServer>(name);
        };
        services.askForServer = [](QWidget*) { return std::make_unique<FakeServer>("Press"); };
        services.editServer = [this](QlumServerNode* server, QWidget*) {
            done << "edit " + server->displayName();
            return true;
        };
        services.diagnoseServer = [this](QlumServerNode* server, QWidget*) {
            done << "diagnose " + server->displayName();
        };
        services.manageCertificates = [this](QWidget*) { done << "certificates"; };
        services.createPageModel = [](QlumServerNode*, QComboBox*, QObject* parent) {
            return new FakeTree(parent);
        };
        window = std::make_unique<QlumTavelin>(std::move(services));
        window->show();
    }

    [[nodiscard]] QAction* action(A::Id id) const { return window->actions()[id]; }
    // Gives the command and answers what it asks; the titles (and texts) of what came up.
    QStringList give(A::Id id, DialogDriver::Answer answer = {})
    {
        const DialogDriver driver(std::move(answer));
        EXPECT_TRUE(action(id)->isEnabled()) << id;
        action(id)->trigger();
        return driver.seen();
    }
    // Questions by the button, file dialogs by the name.
    static DialogDriver::Answer answers(QMessageBox::StandardButton button, const QString& file)
    {
        return [button, file](QDialog& dialog) {
            if (qobject_cast<QMessageBox*>(&dialog))
                return DialogDriver::press(button)(dialog);
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
            QMetaObject::invokeMethod(&dialog, "accept");
        };
    }
    FakeServer* addServer()
    {
        action(A::AddServer)->trigger();
        return static_cast<FakeServer*>(window->projectModel()->servers().last());
    }

    QStringList done;
    QTemporaryDir folder;
    std::unique_ptr<QlumTavelin> window;
};
} // namespace

TEST_F(Commands, ThatOpenDialogsOpenTheirsAndEscLeavesIt)
{
    const std::pair<A::Id, const char*> table[] = {
        {A::OpenProject, "Open Project"},     {A::Palette, "Command Palette"},
        {A::AddDocument, "Add Document"},     {A::Configure, "Configure Tavelin"},
        {A::Plugins, "Plugin Information"},   {A::TipOfTheDay, "Tip of the day"},
        {A::Shortcuts, "Keyboard Shortcuts"}, {A::SupportReport, "Report for Support"},
        {A::About, "About Tavelin"},          {A::SaveLog, "Save Log As"}};
    for (const auto& [id, title] : table)
        EXPECT_EQ(give(id), QStringList{title});
    EXPECT_FALSE(window->isWindowModified());
    action(A::Journal)->trigger();
    ASSERT_NE(window->findChild<QlumJournalWindow*>(), nullptr);
    EXPECT_TRUE(window->findChild<QlumJournalWindow*>()->isVisible());
    action(A::FindNode)->trigger();
    EXPECT_TRUE(window->findChild<QDockWidget*>("Find Node Dock Widget")->isVisible());
    action(A::Manual)->trigger();
    const QWidgetList tops = QApplication::topLevelWidgets();
    EXPECT_TRUE(std::any_of(tops.begin(), tops.end(), [](const QWidget* top) {
        return qobject_cast<const QlumHelpViewer*>(top) && top->isVisible();
    }));
    action(A::WhatsThis)->trigger();
    EXPECT_TRUE(QWhatsThis::inWhatsThisMode());
    QWhatsThis::leaveWhatsThisMode();

    CommandsMail mail;
    QDesktopServices::setUrlHandler("mailto", &mail, "take");
    action(A::ReportBug)->trigger();
    QDesktopServices::unsetUrlHandler("mailto");
    EXPECT_EQ(mail.url.scheme(), "mailto");
}

TEST_F(Commands, OfServersReachTheSelectedOne)
{
    FakeServer* const server = addServer();
    action(A::ConnectServer)->trigger();
    window->setWindowModified(false);
    for (const A::Id id : {A::ServerProperties, A::DiagnoseServer, A::Certificates, A::ChangeUser})
        action(id)->trigger();
    EXPECT_EQ(done, (QStringList{"edit Press", "diagnose Press", "certificates"}));
    EXPECT_TRUE(window->isWindowModified()) << "was edited";
    EXPECT_EQ(server->userChanges, 1);
    auto* const tree = window->findChild<QTreeView*>("addressSpaceTree");
    tree->setCurrentIndex(tree->model()->index(1, 0));
    const auto* const dock = window->findChild<QDockWidget*>("Find Node Dock Widget");
    EXPECT_FALSE(dock->isVisible());
    action(A::FindBelow)->trigger();
    EXPECT_TRUE(dock->isVisible());
    action(A::ExportBranch)->trigger();
    auto* const exporting = window->findChild<QDialog*>("ExportBranch");
    ASSERT_NE(exporting, nullptr);
    EXPECT_TRUE(exporting->isVisible());
    exporting->close();
    action(A::DisconnectServer)->trigger();
    EXPECT_EQ(server->connectionStatus(), QlumConnectionStatus::Disconnected);
}

TEST_F(Commands, OfDocumentsAndTheLog)
{
    const int before = window->centralTabWidget()->count();
    give(A::AddDocument, [](QDialog& dialog) { dialog.accept(); });
    ASSERT_EQ(window->centralTabWidget()->count(), before + 1);
    auto* const project = window->findChild<QTreeView*>("projectTree");
    project->setCurrentIndex(window->projectModel()->indexOf(window->projectModel()->documents().last()));
    action(A::RemoveDocument)->trigger();
    EXPECT_EQ(window->centralTabWidget()->count(), before);

    const QString file = folder.filePath("kept.log");
    QlumLog("Test").info("the line to be kept");
    give(A::SaveLog, answers(QMessageBox::Yes, file));
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("the line to be kept"));
    action(A::ClearLog)->trigger();
    EXPECT_EQ(window->logModel()->rowCount(), 0);
    give(A::SaveLog, answers(QMessageBox::Yes, "/dev/null/none.log"));
    window->logModel()->sltFlush();
    EXPECT_EQ(window->logModel()->rowCount(), 1) << "a log that cannot be saved is told in it";
}

TEST_F(Commands, ThatWouldLoseTheProjectAskAndDoAsTheyAreTold)
{
    const QString file = folder.filePath("plant.uap");
    const QStringList question{"Unsaved changes: Do you want to save the current project?"};
    for (const A::Id id : {A::NewProject, A::OpenProject, A::Quit}) {
        addServer();
        EXPECT_EQ(give(id, DialogDriver::press(QMessageBox::Cancel)), question);
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(window->projectModel()->servers().size(), 1);
        // yes, and then no name
        EXPECT_EQ(give(id,
                       [](QDialog& dialog) {
                           qobject_cast<QMessageBox*>(&dialog) ? DialogDriver::press(QMessageBox::Yes)(dialog)
                                                               : dialog.reject();
                       }),
                  question + QStringList{"Save Project"});
        EXPECT_TRUE(window->isWindowModified());
        window->clearProject();
    }
    addServer();
    EXPECT_EQ(give(A::NewProject, answers(QMessageBox::Yes, file)), question + QStringList{"Save Project"});
    EXPECT_TRUE(window->projectModel()->servers().isEmpty());
    EXPECT_EQ(give(A::OpenProject, answers(QMessageBox::No, file)), QStringList{"Open Project"});
    EXPECT_EQ(window->projectModel()->servers().size(), 1) << "what was saved";
    addServer();
    EXPECT_TRUE(give(A::SaveProject).isEmpty());
    const QString other = folder.filePath("other.uap");
    EXPECT_EQ(give(A::SaveProjectAs, answers(QMessageBox::Yes, other)), QStringList{"Save Project"});
    EXPECT_TRUE(QFile::exists(other));
    EXPECT_TRUE(give(A::Quit).isEmpty());
    EXPECT_FALSE(window->isVisible());
}

// The desktop may end the session while a dialog waits for its answer.
TEST_F(Commands, TheWindowMayBeClosedWhileADialogIsOpen)
{
    addServer();
    window->setSettingsValue("General.SuppressSaveOnExit", true);
    for (const A::Id id : {A::Configure, A::AddDocument, A::Palette, A::About}) {
        const int documents = window->projectModel()->documents().size();
        give(id, [this](QDialog& dialog) {
            EXPECT_TRUE(window->close());
            dialog.accept();
        });
        EXPECT_FALSE(window->isVisible());
        EXPECT_LE(window->projectModel()->documents().size(), documents + 1);
    }
    window.reset();
    EXPECT_EQ(QlumTavelin::instance(), nullptr);
}

TEST_F(Commands, WhatWasOnAScreenThatIsGoneComesBackInSight)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    auto* log = window->findChild<QDockWidget*>("Log Dock Widget");
    log->setFloating(true);
    log->setGeometry(screen.right() + 3000, screen.top() + 2000, 400, 200);
    window->setGeometry(screen.right() + 2000, screen.top() + 2000, 600, 400);
    window.reset();
    window = std::make_unique<QlumTavelin>(QlumTavelinServices());
    window->show();
    log = window->findChild<QDockWidget*>("Log Dock Widget");
    EXPECT_TRUE(screen.contains(window->geometry().center()))
        << window->x() << ' ' << window->y() << ' ' << window->width();
    ASSERT_TRUE(log->isFloating());
    EXPECT_TRUE(screen.contains(log->geometry().center())) << log->x() << ' ' << log->y();
}

#include "test_commands.moc"
