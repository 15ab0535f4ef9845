#include <tests/support/modeltext.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QVariant>
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {
class TableFilter : public ::testing::Test
{
protected:
    void add(const QVariant& value, const QString& text)
    {
        auto* first = new QStandardItem;
        first->setData(value, Qt::DisplayRole);
        source.appendRow({first, new QStandardItem(text)});
    }
    void fill()
    {
        source.clear();
        for (int i = 0; i < 1000; ++i)
            add(i, i % 3 == 0 ? "Mill" : "pump");
    }
    QStringList texts(int column = 1) const
    {
        QStringList result;
        for (int row = 0; row < filter.rowCount(); ++row)
            result.append(filter.index(row, column).data().toString());
        return result;
    }

    QStandardItemModel source;
    QlumTableFilter filter;
};
} // namespace

TEST_F(TableFilter, ShowsRowsThatHoldTheTextInWhateverCase)
{
    filter.setSourceModel(&source);
    const QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::Fatal);
    add(1, QString::fromUtf8("M\xc3\x9cHLE"));
    add(2, "a.c");
    add(12, "abc");
    EXPECT_TRUE(filter.setText(QString::fromUtf8("m\xc3\xbchl")));
    EXPECT_EQ(texts(), QStringList{QString::fromUtf8("M\xc3\x9cHLE")});
    EXPECT_FALSE(filter.setText(QString::fromUtf8("m\xc3\xbchl")));
    filter.setText("a.c");
    EXPECT_EQ(texts(), QStringList{"a.c"}) << "a text, no pattern";
    filter.setText("2");
    EXPECT_EQ(texts(0), (QStringList{"2", "12"}));
    filter.setSearchedColumns({1});
    EXPECT_EQ(filter.rowCount(), 0);
    add(3, "no. 2");
    EXPECT_EQ(texts(), QStringList{"no. 2"}) << "rows that come are looked at too";
    filter.setText(QString());
    EXPECT_EQ(filter.rowCount(), 4);
}

TEST_F(TableFilter, SortsNumbersAsNumbersBeforeTextsAndNothingLast)
{
    filter.setSourceModel(&source);
    const qlonglong large = std::numeric_limits<qlonglong>::max();
    add("Beta", "1");
    add(QVariant(), "2");
    add(large, "3");
    add("alpha", "4");
    add(-5.5, "5");
    add(large - 1, "6");
    add(10, "7");
    add(9u, "8");
    filter.sort(0);
    EXPECT_EQ(texts().join(' '), "5 8 7 6 3 4 1 2");
    add(QVariant(9.5), "9");
    EXPECT_EQ(texts().join(' '), "5 8 9 7 6 3 4 1 2") << "into its place";
    source.item(0)->setData(1, Qt::DisplayRole);
    EXPECT_EQ(texts().join(' '), "5 1 8 9 7 6 3 4 2");
    filter.setText("a"); // what follows relies on an order that was found before
    filter.setText(QString());
    source.item(4)->setData(100, Qt::DisplayRole);
    EXPECT_EQ(texts().join(' '), "1 8 9 7 5 6 3 4 2");
    source.removeRow(2);
    EXPECT_EQ(texts().join(' '), "1 8 9 7 5 6 4 2");
    add(2, "0");
    EXPECT_EQ(texts().join(' '), "1 0 8 9 7 5 6 4 2");
    for (int row = 0; row < source.rowCount(); ++row)
        source.item(row)->setData(-row, Qt::UserRole);
    filter.setText("nothing");
    filter.setText(QString());
    filter.setSortRole(Qt::UserRole);
    EXPECT_EQ(texts().join(' '), "0 9 8 7 6 5 4 2 1");
    filter.setSortRole(Qt::DisplayRole);
    filter.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(texts().join(' '), "2 4 6 5 7 9 8 0 1");
}

TEST_F(TableFilter, EqualRowsKeepTheOrderOfTheSourceBothWays)
{
    filter.setSourceModel(&source);
    for (const char* name : {"a", "b", "c", "d"})
        add(name == std::string("c") ? 0 : 1, name);
    filter.sort(0);
    EXPECT_EQ(texts().join(' '), "c a b d");
    filter.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(texts().join(' '), "a b d c");
    filter.sort(-1);
    EXPECT_EQ(texts().join(' '), "a b c d");
}

TEST_F(TableFilter, AViewKeepsSelectionAndCurrentRowWhileTheTextChanges)
{
    fill();
    filter.setSourceModel(&source);
    filter.sort(0, Qt::DescendingOrder);
    QTableView view;
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setModel(&filter);
    view.show();
    view.setCurrentIndex(filter.mapFromSource(source.index(300, 0)));
    filter.setText("mill");
    EXPECT_EQ(filter.rowCount(), 334);
    EXPECT_EQ(view.verticalHeader()->count(), 334);
    EXPECT_EQ(view.currentIndex().data().toInt(), 300);
    EXPECT_EQ(view.selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(texts(0).mid(0, 3), (QStringList{"999", "996", "993"}));
    filter.setText("pump");
    EXPECT_EQ(view.verticalHeader()->count(), 666);
    EXPECT_FALSE(view.selectionModel()->hasSelection()) << "the row is not shown";
    filter.setText(QString());
    EXPECT_EQ(view.verticalHeader()->count(), 1000);
}
