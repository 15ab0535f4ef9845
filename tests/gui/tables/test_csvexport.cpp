#include <tests/gui/tables/numbers.h>
#include <uawidgets/table/qlumcsvexport.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemModel>
#include <QByteArray>
#include <QChar>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>
#include <QSignalSpy>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace {
// Reads what was written as a stranger would.
QList<QStringList> parsed(const QByteArray& bytes)
{
    QList<QStringList> records{{}};
    QString field;
    bool isQuoted = false;
    const QString text = QString::fromUtf8(bytes);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (isQuoted && c == '"' && i + 1 < text.size() && text.at(i + 1) == '"') {
            field += text.at(++i);
        } else if (c == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted || (c != ',' && c != '\r')) {
            field += c;
        } else {
            records.last().append(std::exchange(field, QString()));
            if (c == '\r') {
                EXPECT_EQ(text.at(++i), '\n');
                records.append(QStringList());
            }
        }
    }
    EXPECT_FALSE(isQuoted);
    EXPECT_TRUE(records.last().isEmpty()) << "the last record has a line end too";
    records.removeLast();
    return records;
}

class CsvExport : public ::testing::Test
{
protected:
    void begin(QAbstractItemModel& model, const QVector<int>& columns = {0, 1})
    {
        writer = std::make_unique<QlumCsvExport>(&model, columns, path);
        finished = std::make_unique<QSignalSpy>(writer.get(), &QlumCsvExport::finished);
        progressed = std::make_unique<QSignalSpy>(writer.get(), &QlumCsvExport::progressed);
        writer->start();
    }
    // In the middle of the writing.
    void beginAndWait()
    {
        std::deque<int> rows(rowCount);
        std::iota(rows.begin(), rows.end(), 0);
        numbers->reset(std::move(rows));
        begin(*numbers);
        ASSERT_TRUE(progressed->wait(10000));
        ASSERT_TRUE(finished->isEmpty());
    }
    QString end()
    {
        if (finished->isEmpty() && !finished->wait(20000))
            return "never";
        EXPECT_EQ(finished->size(), 1);
        const bool isWritten = finished->at(0).at(0).toBool();
        const QString error = finished->at(0).at(1).toString();
        return isWritten ? "written" + error : error.isEmpty() ? "cancelled" : "failed";
    }
    QByteArray content() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QTemporaryDir folder;
    QString path = folder.filePath("rows.csv");
    static constexpr int rowCount = 200000; // more than a portion on any machine
    std::unique_ptr<Numbers> numbers = std::make_unique<Numbers>();
    std::unique_ptr<QlumCsvExport> writer;
    std::unique_ptr<QSignalSpy> finished;
    std::unique_ptr<QSignalSpy> progressed;
};
} // namespace

TEST(CsvRecord, TextsComeBackAsTheyWere)
{
    const QStringList fields{"",           "plain",        "a,b",
                             "say \"no\"", "two\r\nlines", "two\nlines",
                             "\"",         "a ' b",        QString::fromUtf8("\xc3\xa4\xe2\x82\xac"),
                             " x ",        "a=b",          "100% %1"};
    const QList<QStringList> records = parsed(qlumCsvRecord(fields));
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0], fields);
    EXPECT_EQ(qlumCsvRecord({"a", "b,c"}), "a,\"b,c\"\r\n");
}

TEST(CsvRecord, FormulasStayTextsAndNumbersStayNumbers)
{
    for (const char* formula :
         {"=1+1", "+cmd|' /C calc'!A0", "-2+3", "@SUM(A1)", "\t=1", "\r=1", "=\"a,b\"", "-"}) {
        const QString field = parsed(qlumCsvRecord({formula})).value(0).value(0);
        EXPECT_EQ(field, QLatin1Char('\'') + QString(formula)) << formula;
    }
    for (const char* number : {"-5", "+5", "-1.5e-3", "-.5", "-inf"})
        EXPECT_EQ(qlumCsvRecord({number}), QByteArray(number) + "\r\n");
}

TEST_F(CsvExport, WritesTitlesAndOfATreeTheFirstColumnAsAPath)
{
    QStandardItemModel model;
    model.setHorizontalHeaderLabels({"Name", "Value"});
    model.appendRow({new QStandardItem("0"), new QStandardItem("=v")});
    model.appendRow({new QStandardItem("1"), new QStandardItem("w")});
    model.item(0)->appendRow({new QStandardItem("a"), new QStandardItem("x")});
    model.item(0)->child(0)->appendRow({new QStandardItem("b"), new QStandardItem("y")});
    begin(model, {1, 0});
    EXPECT_EQ(content(), "") << "nothing before the event loop runs";
    EXPECT_EQ(end(), "written");
    EXPECT_EQ(content(), "Value,Name\r\n'=v,0\r\nx,0/a\r\ny,0/a/b\r\nw,1\r\n");
}

TEST_F(CsvExport, CancelLeavesTheFileThatWasThere)
{
    {
        QFile old(path);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("old");
    }
    beginAndWait();
    writer->cancel();
    EXPECT_EQ(end(), "cancelled");
    writer.reset();
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"rows.csv"});
}

// A log goes on while it is written: rows come at the end and go at the front.
TEST_F(CsvExport, EachRowIsWrittenOnceWhileRowsComeAndGo)
{
    beginAndWait();
    const int written = progressed->last().at(0).toInt();
    numbers->remove(0, written + 1000); // some that are written and some that are not
    numbers->insert(0, std::vector<int>{-1});
    numbers->append(std::vector<int>{-2});
    EXPECT_EQ(end(), "written");
    QStringList expected{"Name"};
    for (int row = 0; row < written; ++row)
        expected << QString::number(row);
    expected << "-1";
    for (int row = written + 1000; row < rowCount; ++row)
        expected << QString::number(row);
    expected << "-2";
    QStringList names;
    for (const QStringList& record : parsed(content()))
        names << record.value(0);
    EXPECT_TRUE(names == expected) << names.size() << " " << expected.size();
}

TEST_F(CsvExport, RemovedRowsOfATreeDoNotBringBackTheirSiblings)
{
    QStandardItemModel model;
    for (const char* name : {"a", "b", "c"}) {
        model.appendRow(new QStandardItem(name));
        model.item(model.rowCount() - 1)->appendRow(new QStandardItem("below"));
    }
    model.setColumnCount(1);
    for (int i = 0; i < 50000; ++i)
        model.item(1)->appendRow(new QStandardItem(QString::number(i)));
    begin(model, {0});
    ASSERT_TRUE(progressed->wait(10000));
    ASSERT_TRUE(finished->isEmpty());
    model.removeRow(1); // in the midst of its children
    EXPECT_EQ(end(), "written");
    const QList<QStringList> records = parsed(content());
    QStringList ends;
    for (const int at : {1, 2, 3, 4, records.size() - 2, records.size() - 1})
        ends << records.value(at).value(0);
    EXPECT_EQ(ends.mid(0, 4).join(' '), "a a/below b b/below");
    EXPECT_EQ(ends.mid(4).join(' '), "c c/below");
    EXPECT_EQ(records.count({"a/below"}), 1);
}

TEST_F(CsvExport, FailsWhenTheOrderIsLostOrTheModelGoes)
{
    beginAndWait();
    numbers->move(0, 1, rowCount);
    EXPECT_EQ(end(), "failed");
    beginAndWait();
    numbers.reset();
    EXPECT_EQ(end(), "failed");
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(CsvExport, SaysWhenTheFileCannotBeWritten)
{
    path = folder.filePath("missing/rows.csv");
    begin(*numbers);
    EXPECT_EQ(end(), "failed");
}
