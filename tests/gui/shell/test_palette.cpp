#include <app/palette/qlumcommandpalette.h>
#include <app/palette/qlumlettermatch.h>

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QStringList>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
// The texts that answer to the letters, the best first.
QStringList ranked(const QString& letters, const QStringList& texts)
{
    std::vector<std::pair<int, int>> found;
    for (int i = 0; i < texts.size(); ++i)
        if (const auto score = qlumLetterMatch(letters, texts.at(i)))
            found.emplace_back(-*score, i);
    std::sort(found.begin(), found.end());
    QStringList result;
    for (const auto& [score, i] : found)
        result.append(texts.at(i));
    return result;
}

struct Palette
{
    explicit Palette(std::vector<QlumPaletteEntry> entries) : dialog(std::move(entries)) { dialog.show(); }

    void press(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(line, &event);
    }
    QStringList texts() const
    {
        QStringList result;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            result.append(list->topLevelItem(i)->text(0));
        return result;
    }

    QlumCommandPalette dialog;
    QLineEdit* line = dialog.findChild<QLineEdit*>(QStringLiteral("letters"));
    QTreeWidget* list = dialog.findChild<QTreeWidget*>(QStringLiteral("found"));
    QLabel* count = dialog.findChild<QLabel*>(QStringLiteral("count"));
};
} // namespace

TEST(LetterMatch, BeginningsOfWordsGoFirstAndOrderCounts)
{
    const QStringList texts{QStringLiteral("Certificates"), QStringLiteral("Connect Server"),
                            QStringLiteral("Disconnect Server"), QStringLiteral("ConnectServer_Count")};
    EXPECT_EQ(ranked(QStringLiteral("cs"), texts).mid(0, 2),
              (QStringList{QStringLiteral("Connect Server"), QStringLiteral("ConnectServer_Count")}));
    EXPECT_EQ(ranked(QStringLiteral("connect"), texts).last(), QStringLiteral("Disconnect Server"));
    EXPECT_EQ(ranked(QStringLiteral("DISC se"), texts), QStringList{QStringLiteral("Disconnect Server")});
    EXPECT_TRUE(ranked(QStringLiteral("sc"), {QStringLiteral("cs")}).isEmpty());
    // taking the first "s" greedily at the beginning of a word must not lose the rest
    EXPECT_EQ(ranked(QStringLiteral("ase"), {QStringLiteral("base Speed s")}).size(), 1);
    EXPECT_EQ(ranked(QString(), texts).size(), texts.size());
}

TEST(CommandPalette, ChosenByLettersAndKeysAndOnlyWhatCanBeDoneNow)
{
    QString ran;
    const auto entry = [&ran](const QString& text, const QString& detail, bool isEnabled) {
        return QlumPaletteEntry{text, QStringLiteral("Command"),    detail,
                                {},   [&ran, text] { ran = text; }, isEnabled};
    };
    Palette palette({entry(QStringLiteral("Save"), {}, false), entry(QStringLiteral("Save As"), {}, true),
                     entry(QStringLiteral("Quit"), {}, false), entry(QStringLiteral("Slave drive"), {}, true),
                     entry(QStringLiteral("Plant"), QStringLiteral("/saved"), true)});
    palette.line->setText(QStringLiteral("save"));
    EXPECT_EQ(palette.texts(), (QStringList{QStringLiteral("Save As"), QStringLiteral("Slave drive"),
                                            QStringLiteral("Plant"), QStringLiteral("Save")}));
    for (int i = 0; i < 3; ++i)
        palette.press(Qt::Key_Down);
    EXPECT_EQ(palette.list->currentItem()->text(0), QStringLiteral("Plant")) << "the last cannot be done now";
    palette.line->setText(QStringLiteral("quit"));
    palette.press(Qt::Key_Return);
    EXPECT_TRUE(palette.dialog.isVisible());
    palette.line->setText(QStringLiteral("save"));
    palette.press(Qt::Key_Down);
    palette.press(Qt::Key_Return);
    EXPECT_FALSE(palette.dialog.isVisible());
    EXPECT_TRUE(ran.isEmpty()) << "not before the dialog has gone";
    ASSERT_TRUE(palette.dialog.chosen());
    palette.dialog.chosen()();
    EXPECT_EQ(ran, QStringLiteral("Slave drive"));
}

TEST(CommandPalette, SaysHowManyItDoesNotShow)
{
    std::vector<QlumPaletteEntry> entries;
    for (int i = 0; i < 2 * QlumCommandPalette::maximumShown; ++i)
        entries.push_back({QStringLiteral("Node %1").arg(i), {}, {}, {}, {}, true});
    Palette palette(std::move(entries));
    palette.line->setText(QStringLiteral("n"));
    EXPECT_EQ(palette.list->topLevelItemCount(), QlumCommandPalette::maximumShown);
    EXPECT_EQ(palette.count->text(), QStringLiteral("100 of 200 are shown."));
    palette.line->setText(QStringLiteral("xyz"));
    EXPECT_EQ(palette.count->text(), QStringLiteral("Nothing has these letters in this order."));
}
