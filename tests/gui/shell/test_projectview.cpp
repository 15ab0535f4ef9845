#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumserverrole.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <tests/gui/shell/fakeserver.h>

#include <QAction>
#include <QApplication>
#include <QColor>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDockWidget>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPoint>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {
// A main window with one server and the document that stands there from the start.
class ProjectView : public ::testing::Test
{
protected:
    ProjectView()
    {
        QSettings().clear();
        QlumTavelinServices services;
        services.askForServer = [](QWidget*) { return std::make_unique<FakeServer>(QStringLiteral("Mill")); };
        services.editServer = [](QlumServerNode*, QWidget*) { return true; };
        window = std::make_unique<QlumTavelin>(std::move(services));
        window->actions()[QlumMainActions::AddServer]->trigger();
        server = static_cast<FakeServer*>(window->projectModel()->servers().last());
        view = window->findChild<QTreeView*>(QStringLiteral("projectTree"));
    }

    std::unique_ptr<QlumTavelin> window;
    FakeServer* server = nullptr;
    QTreeView* view = nullptr;
};
} // namespace

TEST_F(ProjectView, TheProjectsContextMenuOffersWhatBelongsToTheNodeEachByAKeyOfItsOwn)
{
    const auto names = [this](const QlumProjectNode* node) {
        view->setCurrentIndex(window->projectModel()->indexOf(node));
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint());
        QApplication::sendEvent(view->viewport(), &event);
        const std::unique_ptr<QMenu> menu(view->findChild<QMenu*>(QStringLiteral("projectMenu")));
        QStringList result;
        QSet<QString> keys;
        for (const QAction* offered : menu->actions()) {
            if (offered->isSeparator())
                continue;
            result.append(offered->objectName());
            const QString key = QKeySequence::mnemonic(offered->text()).toString();
            EXPECT_FALSE(key.isEmpty() || keys.contains(key)) << offered->text().toStdString();
            keys.insert(key);
        }
        return result.join(QLatin1Char(' '));
    };
    EXPECT_EQ(names(server),
              QStringLiteral("connectServer disconnectServer serverProperties changeUser "
                             "diagnoseServer findNode role rename removeServer addServer addDocument"));
    EXPECT_EQ(names(window->projectModel()->documents().first()),
              QStringLiteral("rename removeDocument addServer addDocument"));
    EXPECT_EQ(names(nullptr), QStringLiteral("addServer addDocument"));
}

TEST_F(ProjectView, ADoubleClickConnectsAServerInsteadOfRenamingIt)
{
    window->show();
    const QPoint place = view->visualRect(window->projectModel()->indexOf(server)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_EQ(server->connects, 1);
    EXPECT_EQ(view->findChild<QLineEdit*>(), nullptr);
}

TEST_F(ProjectView, AWindowThatWasNarrowLeavesTheDocksWideEnough)
{
    window->resize(1200, 800);
    window->show();
    const auto* dock = window->findChild<QDockWidget*>(QStringLiteral("Attributes Dock Widget"));
    ASSERT_NE(dock, nullptr);
    window->resize(500, 400);
    QCoreApplication::processEvents();
    window->resize(1200, 800);
    QCoreApplication::processEvents();
    EXPECT_GE(dock->width(), 200);
}

TEST_F(ProjectView, TheRoleOfAServerIsSeenOnItsFrameAndOnTheTabsThatWorkOnIt)
{
    window->show();
    view->setCurrentIndex(window->projectModel()->indexOf(server));
    const auto* word = window->findChild<QLabel*>(QStringLiteral("roleWord"));
    ASSERT_NE(word, nullptr);
    EXPECT_EQ(word->text().trimmed(), QStringLiteral("Mill: Operate"));
    const QColor operate = window->grab().toImage().pixelColor(1, 100);
    server->setRole(QlumServerRole::Commission);
    EXPECT_EQ(word->text().trimmed(), QStringLiteral("Mill: Commission"));
    EXPECT_NE(window->grab().toImage().pixelColor(1, 100), operate);
    QTabWidget* tabs = window->centralTabWidget();
    EXPECT_EQ(tabs->tabBar()->findChild<QLabel*>(QStringLiteral("roleMark")), nullptr);
    qlumSetDocumentServers(tabs->widget(0), {server->serverId()});
    const auto* mark = tabs->tabBar()->findChild<QLabel*>(QStringLiteral("roleMark"));
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->accessibleName(), QStringLiteral("May send: Commission"));
    window->projectModel()->removeServer(server);
    EXPECT_TRUE(word->isHidden());
}
