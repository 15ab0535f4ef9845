#include <app/api/qlumservernode.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/project/qlumprojectmodel.h>
#include <app/startpage/qlumstartpage.h>
#include <app/startpage/qlumstartpageplace.h>
#include <tests/gui/shell/fakeserver.h>
#include <tests/support/stubapplication.h>

#include <QAbstractButton>
#include <QByteArray>
#include <QCommandLinkButton>
#include <QFile>
#include <QLabel>
#include <QList>
#include <QSettings>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace {
void writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}
} // namespace

TEST(StartPage, RecentProjectsNameTheirServersAndAreOpenedByAClick)
{
    const StubApplication application;
    const QTemporaryDir folder;
    const QString plant = folder.filePath(QStringLiteral("plant & line.uap"));
    const QString gone = folder.filePath(QStringLiteral("gone.uap"));
    writeFile(plant, "[Servers]\n1\\Name=Press\n2\\Name=Oven\n10\\Name=Mill\n11\\Name=Saw\n1\\ServerUrl=x\n"
                     "[Documents]\nView\\Name=no server\n");
    QlumStartPage page;
    page.setRecentProjects({plant, gone});
    const QList<QCommandLinkButton*> buttons =
        page.findChildren<QCommandLinkButton*>(QStringLiteral("startRecent"));
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons.first()->text(), QStringLiteral("plant && line"));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return buttons.first()->description().contains(QLatin1String("Press")); }));
    EXPECT_EQ(buttons.first()->description(), folder.path() + QStringLiteral("\nPress, Mill, Saw, ..."));
    EXPECT_EQ(buttons.last()->description(), folder.path())
        << "a file that is gone is said when it is chosen";
    const QSignalSpy wanted(&page, &QlumStartPage::projectWanted);
    buttons.last()->click();
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted.first().first().toString(), gone);
    page.setRecentProjects({});
    EXPECT_TRUE(page.findChildren<QCommandLinkButton*>(QStringLiteral("startRecent")).isEmpty());
}

TEST(StartPage, DemoIsOfferedWhereThereIsOneAndItsButtonOpensIt)
{
    QSettings().clear();
    const QTemporaryDir folder;
    const QString demo = folder.filePath(QStringLiteral("demo.uap"));
    writeFile(demo, "[Documents]\nCurves\\DocumentType=History Trend View\n");
    QlumTavelin window{QlumTavelinServices()};
    auto* page = window.findChild<QlumStartPage*>();
    auto* button = page->findChild<QAbstractButton*>(QStringLiteral("startDemo"));
    page->setDemoProject({});
    EXPECT_TRUE(button->isHidden());
    page->setDemoProject(demo);
    ASSERT_FALSE(button->isHidden());
    button->click();
    const QTabWidget* tabs = window.centralTabWidget();
    EXPECT_TRUE(QTest::qWaitFor([tabs] {
        return tabs->count() == 1 && tabs->tabText(0) == QStringLiteral("Curves");
    })) << tabs->count();
    EXPECT_TRUE(window.windowTitle().contains(QStringLiteral("demo"))) << window.windowTitle().toStdString();
}

TEST(StartPage, NamesEachViewAboveWhatItIsFor)
{
    QSettings().clear();
    QlumTavelin window{QlumTavelinServices()};
    const QList<QLabel*> views =
        window.findChild<QlumStartPage*>()->findChildren<QLabel*>(QStringLiteral("startTool"));
    EXPECT_GE(views.size(), 9);
    for (const QLabel* view : views)
        EXPECT_EQ(view->text().count(QStringLiteral("<b>")), 1) << view->text().toStdString();
}

TEST(StartPage, LiesAboveTheFirstDocumentWhileThereIsNoServerAndOutlivesIt)
{
    StubApplication application;
    QStackedWidget stack;
    QlumProjectModel project;
    auto* page = new QlumStartPage(&stack);
    auto* tabs = new QTabWidget(&stack);
    stack.addWidget(page);
    stack.addWidget(tabs);
    QlumStartPagePlace place(page, &stack, tabs, &project);
    stack.resize(600, 400);
    stack.show();
    EXPECT_TRUE(page->isVisible()) << "no document";

    auto first = std::make_unique<QWidget>();
    tabs->addTab(first.get(), QStringLiteral("first"));
    place.setFirstDocument(first.get());
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(page->size(), first->size());
    stack.resize(800, 500);
    EXPECT_EQ(page->size(), first->size());
    auto* second = new QWidget;
    tabs->setCurrentIndex(tabs->addTab(second, QStringLiteral("second")));
    EXPECT_FALSE(page->isVisible());
    tabs->setCurrentIndex(0);
    EXPECT_TRUE(page->isVisible());

    QlumServerNode* server = project.addServer(std::make_unique<FakeServer>(QStringLiteral("Press")));
    EXPECT_FALSE(page->isVisible());
    project.removeServer(server);
    EXPECT_TRUE(page->isVisible());

    tabs->setCurrentIndex(1);
    tabs->removeTab(0);
    first.reset();
    EXPECT_FALSE(page->isVisible());
    tabs->removeTab(0);
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(stack.currentWidget(), page);
    delete second;
}
