// The window of the journal: what it shows of a day, and what it leaves out.
#include <app/api/qlumjournal.h>
#include <app/journal/qlumjournalwindow.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTime>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {
class JournalWindow : public testing::Test
{
protected:
    static QlumJournalEntry entry(const char* server, const char* after, const char* status)
    {
        QlumJournalEntry made;
        made.time = QDateTime(QDate::currentDate(), QTime(12, 0));
        made.server = server;
        made.service = "Write";
        made.what = "ns=2;s=Speed, Value";
        made.after = after;
        made.status = status;
        return made;
    }
    void open()
    {
        window = new QlumJournalWindow(journal);
        window->show();
        table = find<QTreeView>("journalTable");
        table->sortByColumn(6, Qt::AscendingOrder);
    }
    ~JournalWindow() override { delete window; }
    template <typename T>
    T* find(const char* name)
    {
        return window->findChild<T*>(name);
    }
    QStringList shown() const
    {
        QStringList lines;
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            QStringList cells;
            for (const int column : {1, 2, 6, 7})
                cells.append(table->model()->index(row, column).data().toString());
            lines.append(cells.join('|'));
        }
        return lines;
    }
    bool becomes(const QStringList& wanted) const
    {
        return QTest::qWaitFor([&] { return shown() == wanted; });
    }
    void choose(const char* name, const QString& text)
    {
        auto* box = find<QComboBox>(name);
        ASSERT_GE(box->findText(text), 0) << name << ": " << modelText(*box->model());
        box->setCurrentIndex(box->findText(text));
    }

    StubApplication application;
    QTemporaryDir folder;
    std::shared_ptr<QlumJournal> journal = std::make_shared<QlumJournal>(folder.filePath("journal"));
    QlumJournalWindow* window = nullptr;
    QTreeView* table = nullptr;
};

TEST_F(JournalWindow, FollowsWhatIsWrittenAndLeavesOutWhatIsNotAskedFor)
{
    journal->append({entry("Plc", "1", "Good"), entry("Oven", "2", "BadNotWritable")});
    open();
    EXPECT_TRUE(becomes({"Plc|(anonymous)|1|Good", "Oven|(anonymous)|2|BadNotWritable"}))
        << shown().join('\n').toStdString();
    choose("server", "Plc");
    EXPECT_EQ(shown(), QStringList("Plc|(anonymous)|1|Good"));
    // calls end on threads of their own
    std::thread([this] {
        journal->append(
            {entry("Plc", "3", "Not sent: this server is set to Look"), entry("Mill", "4", "Good")});
    }).join();
    EXPECT_TRUE(becomes({"Plc|(anonymous)|1|Good", "Plc|(anonymous)|3|Not sent: this server is set to Look"}))
        << shown().join('\n').toStdString();
    choose("outcome", "Not sent");
    EXPECT_EQ(shown().size(), 1);
    EXPECT_EQ(find<QLabel>("message")->text(), "1 of 4 change(s)");
    choose("server", "Mill");
    EXPECT_TRUE(shown().isEmpty());
    choose("server", "All servers");
    choose("outcome", "All outcomes");
    find<QLineEdit>("text")->setText("NotWritable");
    EXPECT_EQ(shown(), QStringList("Oven|(anonymous)|2|BadNotWritable"));

    const QString path = folder.filePath("changes.csv");
    const DialogDriver driver([&path](QDialog& one) {
        auto* files = qobject_cast<QFileDialog*>(&one);
        if (!files)
            return;
        files->findChild<QLineEdit*>("fileNameEdit")->setText(path);
        one.accept();
    });
    find<QPushButton>("export")->click();
    ASSERT_TRUE(QTest::qWaitFor([&path] { return QFile::exists(path); }));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.contains("Oven")) << text.toStdString();
    EXPECT_FALSE(text.contains("Plc")) << "only what is shown";
}

TEST_F(JournalWindow, AnotherDayIsReadAndItsDamageTold)
{
    QlumJournalEntry old = entry("Plc", "5", "Good");
    old.time = old.time.addDays(-2);
    journal->append({old});
    QFile torn(journal->fileOf(old.time.date()));
    ASSERT_TRUE(torn.open(QIODevice::Append));
    torn.write("{\"time\":\"20\n");
    torn.close();
    open();
    auto* days = find<QComboBox>("day");
    ASSERT_EQ(days->count(), 2);
    EXPECT_TRUE(QTest::qWaitFor([this] { return find<QLabel>("message")->text() == "0 of 0 change(s)"; }));
    days->setCurrentIndex(1);
    EXPECT_TRUE(becomes({"Plc|(anonymous)|5|Good"}));
    EXPECT_TRUE(find<QLabel>("message")->text().endsWith("1 line(s) cannot be read."))
        << find<QLabel>("message")->text().toStdString();
    journal->append({entry("Plc", "6", "Good")}); // of today
    days->setCurrentIndex(0);
    EXPECT_TRUE(becomes({"Plc|(anonymous)|6|Good"}));
}
} // namespace
