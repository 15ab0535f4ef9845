#include <app/api/qlumdocumentinterface.h>
#include <app/mainwindow/qlumaboutdialog.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumhelpcontents.h>
#include <app/mainwindow/qlumhelppages.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/mainwindow/qlumversions.h>
#include <tests/support/dialogdriver.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QListWidget>
#include <QModelIndexList>
#include <QObject>
#include <QPluginLoader>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTextBrowser>
#include <QToolBar>
#include <QUrl>
#include <QVector>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include <memory>

namespace {
bool isThere(const QUrl& page)
{
    return QFile::exists(QStringLiteral(":") + page.path());
}

class Help : public ::testing::Test
{
protected:
    Help()
    {
        QSettings().clear();
        window = std::make_unique<QlumTavelin>(QlumTavelinServices());
    }
    static QlumHelpViewer* viewer()
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* help = qobject_cast<QlumHelpViewer*>(widget))
                return help;
        return nullptr;
    }
    static QString shownPage() { return viewer()->browser()->source().fileName(); }

    std::unique_ptr<QlumTavelin> window;
};
} // namespace

TEST_F(Help, EveryDockAndTypeOfDocumentHasAPage)
{
    QStringList tools;
    for (const QDockWidget* dock : window->findChildren<QDockWidget*>())
        tools << dock->objectName();
    for (QObject* plugin : QPluginLoader::staticInstances())
        if (auto* documents = qobject_cast<QlumDocumentInterface*>(plugin))
            tools << documents->documentTypes();
    ASSERT_GT(tools.size(), 12);
    for (const QString& tool : tools) {
        const QString page = qlumHelpPageOfTool(tool);
        EXPECT_TRUE(!page.isEmpty() && isThere(qlumHelpPage(page))) << tool.toStdString();
    }
    for (const QDockWidget* dock : window->findChildren<QDockWidget*>())
        EXPECT_FALSE(dock->whatsThis().isEmpty()) << dock->objectName().toStdString();
}

TEST_F(Help, F1OpensThePageOfTheToolWithTheFocus)
{
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    auto* documents = window->findChild<QlumDocumentArea*>();
    documents->add(QStringLiteral("Event View"), QStringLiteral("Events"));
    auto* inDocument = window->centralTabWidget()->currentWidget()->findChild<QAbstractItemView*>();
    inDocument->setFocus();
    QTest::keyClick(inDocument, Qt::Key_F1);
    ASSERT_NE(viewer(), nullptr);
    EXPECT_TRUE(viewer()->isVisible());
    EXPECT_EQ(shownPage(), QStringLiteral("events.html"));
    const auto* log = window->findChild<QDockWidget*>(QStringLiteral("Log Dock Widget"));
    EXPECT_EQ(qlumHelpPageOf(log->widget()).fileName(), QStringLiteral("log.html"));
    EXPECT_EQ(qlumHelpPageOf(nullptr).fileName(), QStringLiteral("index.html"));
}

TEST_F(Help, F1BesideADialogOpensAWindowThatTheDialogDoesNotBlock)
{
    window->show();
    QString page;
    bool isBlocked = true;
    int viewers = 0;
    const DialogDriver driver([&](QDialog& dialog) {
        QApplication::setActiveWindow(&dialog);
        auto* list = dialog.findChild<QListWidget*>(QStringLiteral("settingsPages"));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_F1);
        QTest::keyClick(list, Qt::Key_F1); // the same window again
        const auto shown = dialog.findChildren<QlumHelpViewer*>();
        viewers = shown.size();
        if (viewers > 0) {
            page = shown.first()->browser()->source().fileName();
            // what is blocked takes no click: the link to the contents stays a link
            auto* browser = shown.first()->browser();
            auto* bar = shown.first()->findChild<QToolBar*>(QStringLiteral("helpToolBar"));
            const QWidget* home = bar->widgetForAction(bar->actions().first());
            QTest::mouseClick(shown.first()->windowHandle(), Qt::LeftButton, {},
                              home->mapTo(shown.first(), home->rect().center()));
            isBlocked = browser->source().fileName() != QLatin1String("index.html");
        }
        dialog.reject();
    });
    window->actions()[QlumMainActions::Configure]->trigger();
    EXPECT_EQ(viewers, 1);
    EXPECT_EQ(page, QStringLiteral("settings.html"));
    EXPECT_FALSE(isBlocked);
}

// Every link leads somewhere, and the file that contents and search come from knows the same pages.
TEST_F(Help, LinksAndListsOfPagesAgree)
{
    const QRegularExpression link(QStringLiteral("href=\"([^\":#]+)"));
    QStringList pages = QDir(QStringLiteral(":/help")).entryList({QStringLiteral("*.html")}, QDir::Files);
    ASSERT_GT(pages.size(), 20);
    QSet<QString> reached;
    for (const QString& page : pages) {
        QFile file(QStringLiteral(":/help/") + page);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        for (auto found = link.globalMatch(QString::fromUtf8(file.readAll())); found.hasNext();) {
            const QString target = found.next().captured(1);
            reached.insert(target);
            EXPECT_TRUE(pages.contains(target)) << page.toStdString() << " -> " << target.toStdString();
        }
    }
    QFile project(QStringLiteral(TAVELIN_SOURCE_FOLDER "/app/resources/help/manual.qhp"));
    ASSERT_TRUE(project.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(project.readAll());
    for (const QString& page : pages) {
        EXPECT_TRUE(reached.contains(page)) << page.toStdString() << ": no page leads there";
        EXPECT_TRUE(text.contains(QStringLiteral("<file>%1</file>").arg(page))) << page.toStdString();
    }
}

TEST_F(Help, ContentsAndIndexComeOfTheFileBesideTheProgram)
{
    QlumHelpContents contents;
    ASSERT_TRUE(contents.load());
    auto* index = contents.findChild<QAbstractItemView*>(QStringLiteral("manualIndex"));
    auto* tree = contents.findChild<QAbstractItemView*>(QStringLiteral("manualContents"));
    ASSERT_NE(index, nullptr);
    ASSERT_NE(tree, nullptr);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return index->model()->rowCount() > 40 && tree->model()->rowCount() == 1; }));
    QUrl chosen;
    QObject::connect(&contents, &QlumHelpContents::pageChosen,
                     [&chosen](const QUrl& page) { chosen = page; });
    const QModelIndexList found =
        index->model()->match(index->model()->index(0, 0), Qt::DisplayRole, QStringLiteral("Deadband"));
    ASSERT_EQ(found.size(), 1);
    emit index->activated(found.constFirst());
    EXPECT_EQ(chosen, qlumHelpPage(QStringLiteral("dataaccess")));
}

TEST_F(Help, NewsAreShownOnceAfterAnUpdateAndNotAtTheFirstStart)
{
    EXPECT_FALSE(window->showNews());
    window->setSettingsValue(QStringLiteral("General.LastVersion"), QStringLiteral("0.9.0"));
    EXPECT_TRUE(window->showNews());
    EXPECT_EQ(shownPage(), QStringLiteral("whatsnew.html"));
    EXPECT_FALSE(window->showNews());
}

TEST_F(Help, VersionsOfAllPartsAreCopied)
{
    QlumAboutDialog dialog;
    QApplication::clipboard()->clear();
    dialog.findChild<QPushButton*>(QStringLiteral("copyVersions"))->click();
    const QString copied = QApplication::clipboard()->text();
    for (const char* part :
         {"Tavelin", "Build id", "Communication stack", "Qt", "Qwt", "OpenSSL", "libxml2", "SQLite"})
        EXPECT_TRUE(
            copied.contains(QRegularExpression(QStringLiteral("(^|\n)%1 [0-9a-f]").arg(QLatin1String(part)))))
            << part << copied.toStdString();
}
