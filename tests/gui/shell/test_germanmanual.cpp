#include <app/mainwindow/qlumhelpcontents.h>
#include <app/mainwindow/qlumhelpfiles.h>
#include <app/mainwindow/qlumhelppages.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/startup/qlumtranslations.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTextBrowser>
#include <QUrl>
#include <gtest/gtest.h>

namespace {
const auto sources = QStringLiteral(TAVELIN_SOURCE_FOLDER "/app/resources/help/");

QString contentOf(const QString& name)
{
    QFile file(sources + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

// Where a page leads, what it shows, and its parts, in their order.
QStringList structureOf(const QString& page)
{
    static const QRegularExpression part(
        QStringLiteral("href=\"[^\"]*\"|src=\"[^\"]*\"|<(?:h[12]|ul|ol|li|tr|td|table)\\b"));
    QStringList parts;
    for (auto found = part.globalMatch(contentOf(page)); found.hasNext();)
        parts << found.next().captured();
    return parts;
}

QStringList shownOf(const QAbstractItemView& view)
{
    QStringList texts;
    for (int row = 0; row < view.model()->rowCount(); ++row)
        texts << view.model()->index(row, 0).data().toString();
    return texts;
}
} // namespace

TEST(GermanManual, HasEveryPageWithTheSameLinksPicturesAndParts)
{
    const QStringList pages = QDir(sources).entryList({QStringLiteral("*.html")}, QDir::Files);
    ASSERT_GT(pages.size(), 20);
    EXPECT_EQ(QDir(sources + "de").entryList({QStringLiteral("*.html")}, QDir::Files), pages);
    const QString project = contentOf("de/manual.qhp");
    for (const QString& page : pages) {
        EXPECT_EQ(structureOf("de/" + page), structureOf(page)) << page.toStdString();
        EXPECT_TRUE(project.contains(QStringLiteral("<file>%1</file>").arg(page))) << page.toStdString();
    }
}

TEST(GermanManual, IsShownWithItsContentsAndIndexWhenTheProgramSpeaksGerman)
{
    QlumTranslations translations;
    ASSERT_TRUE(translations.install(QStringLiteral("de")).isEmpty());
    QlumHelpViewer viewer;
    viewer.showPage(qlumHelpPage(QStringLiteral("events")));
    EXPECT_TRUE(viewer.browser()->toPlainText().startsWith("Ereignisse und Alarme"));
    viewer.showPage(QUrl(QStringLiteral("dataaccess.html")));
    EXPECT_TRUE(viewer.browser()->toPlainText().contains(QString::fromUtf8("Vollständig?"))) << "a link";
    viewer.showPage(qlumHelpPage(QStringLiteral("nonesuch")));
    EXPECT_TRUE(viewer.browser()->toPlainText().contains("nonesuch.html"));

    QlumHelpContents contents;
    ASSERT_TRUE(contents.load());
    auto* index = contents.findChild<QAbstractItemView*>(QStringLiteral("manualIndex"));
    const auto* tree = contents.findChild<QAbstractItemView*>(QStringLiteral("manualContents"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownOf(*tree) == QStringList{"Tavelin-Handbuch"}; }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return shownOf(*index).contains(QStringLiteral("Totband")); }));
    QUrl chosen;
    QObject::connect(&contents, &QlumHelpContents::pageChosen, [&](const QUrl& page) { chosen = page; });
    emit index->activated(
        index->model()->match(index->model()->index(0, 0), Qt::DisplayRole, "Totband").value(0));
    EXPECT_EQ(chosen, qlumHelpPage(QStringLiteral("dataaccess")));
}

TEST(GermanManual, LeavesThePagesThatItHasNotAndOtherLanguagesInEnglish)
{
    EXPECT_TRUE(qlumTranslatedHelpPage("events.html").isNull()) << "the program speaks English";
    EXPECT_EQ(qlumHelpFiles().size(), 1);
    QlumTranslations translations;
    ASSERT_TRUE(translations.install(QStringLiteral("de")).isEmpty());
    EXPECT_FALSE(qlumTranslatedHelpPage("events.html").isNull());
    EXPECT_TRUE(qlumTranslatedHelpPage("nonesuch.html").isNull());
    EXPECT_TRUE(qlumTranslatedHelpPage("../tavelin.qch").isNull()) << "nothing outside its folder";
    EXPECT_EQ(qlumHelpFiles().size(), 2) << "where the German one is damaged the English one is read";
}
