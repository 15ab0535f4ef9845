#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumcolumnchooser.h>
#include <uawidgets/table/qlumstatuslook.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QHeaderView>
#include <QImage>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QModelIndex>
#include <QPalette>
#include <QSettings>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVector>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {
class Tables : public ::testing::Test
{
protected:
    Tables() : model(3, 3)
    {
        model.setHorizontalHeaderLabels({"A", "B", "C"});
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                model.setItem(row, column, new QStandardItem(QStringLiteral("%1%2").arg(row).arg(column)));
        view.setModel(&model);
    }
    static QString copied(QAbstractItemView& view, const char* name)
    {
        QGuiApplication::clipboard()->setText("before");
        auto* action = view.findChild<QAction*>(QLatin1String(name));
        EXPECT_TRUE(action && view.actions().contains(action)) << name;
        if (action)
            action->trigger();
        return QGuiApplication::clipboard()->text();
    }
    // The entries of the column menu; what cannot be changed in parentheses.
    static QString menuText(QMenu* menu)
    {
        emit menu->aboutToShow();
        QStringList texts;
        for (const QAction* action : menu->actions())
            if (action->isCheckable())
                texts << (action->isChecked() ? "+" : "-") + action->text() +
                             (action->isEnabled() ? "" : "!");
        return texts.join(' ');
    }
    static void choose(QMenu* menu, const QString& title)
    {
        emit menu->aboutToShow();
        for (QAction* action : menu->actions())
            if (action->text() == title)
                return action->trigger();
        ADD_FAILURE() << title.toStdString();
    }

    QStandardItemModel model;
    QTableView view;
};

double contrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double c) {
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

// How far the colours of a picture lie apart, 0 to 255.
int contrast(const QImage& picture)
{
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            darkest = std::min(darkest, qGray(picture.pixel(x, y)));
            lightest = std::max(lightest, qGray(picture.pixel(x, y)));
        }
    return lightest - darkest;
}
} // namespace

TEST_F(Tables, CopyFollowsTheColumnsOnScreen)
{
    qlumMakeTable(&view, {});
    EXPECT_EQ(copied(view, "copy"), "before") << "nothing is selected";
    view.horizontalHeader()->moveSection(2, 0);
    view.setColumnHidden(1, true);
    view.setCurrentIndex(model.index(1, 0));
    EXPECT_EQ(copied(view, "copy"), "10");
    EXPECT_EQ(copied(view, "copyRow"), "12\t10");
    view.selectRow(2);
    view.selectionModel()->select(model.index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    EXPECT_EQ(copied(view, "copy"), "02\t00\n22\t20");
    EXPECT_EQ(copied(view, "copyWithTitles"), "C\tA\n02\t00\n22\t20");
    view.clearSelection();
    view.selectionModel()->select(model.index(0, 0), QItemSelectionModel::Select);
    view.selectionModel()->select(model.index(1, 2), QItemSelectionModel::Select);
    EXPECT_EQ(copied(view, "copy"), "\t00\n12\t") << "cells stay below their columns";
}

TEST_F(Tables, CellsWithBreaksAreQuotedAmongOthersOnly)
{
    qlumMakeTable(&view, {});
    model.item(0, 0)->setText("two\n\"lines\"");
    view.setCurrentIndex(model.index(0, 0));
    EXPECT_EQ(copied(view, "copyCell"), "two\n\"lines\"");
    EXPECT_EQ(copied(view, "copyRow"), "\"two\n\"\"lines\"\"\"\t01\t02");
}

TEST_F(Tables, RowsOfATreeAreCopiedInTheOrderOnScreen)
{
    QTreeView tree;
    tree.setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree.setModel(&model);
    qlumMakeTable(&tree, {});
    model.item(0)->appendRow(new QStandardItem("child 0"));
    model.item(0)->appendRow(new QStandardItem("child 1"));
    model.item(1)->appendRow(new QStandardItem("last"));
    tree.expandAll();
    for (const QModelIndex& index : {model.item(1)->child(0)->index(), model.item(0)->child(1)->index(),
                                     model.index(1, 0), model.item(0)->child(0)->index(), model.index(0, 0)})
        tree.selectionModel()->select(index, QItemSelectionModel::Select);
    EXPECT_EQ(copied(tree, "copy"), "00\nchild 0\nchild 1\n10\nlast");
}

TEST_F(Tables, ColumnsAreChosenAndKeptButOneStays)
{
    {
        QTableView first;
        first.setModel(&model);
        QlumViewState state("Tables", nullptr);
        qlumMakeTable(&first, {QString(), QString(), &state, "columns"});
        QMenu* menu = first.findChild<QlumColumnChooser*>()->menu();
        EXPECT_TRUE(first.actions().contains(menu->menuAction()));
        EXPECT_EQ(menuText(menu), "+A +B +C");
        choose(menu, "B");
        first.horizontalHeader()->moveSection(2, 0);
        EXPECT_EQ(menuText(menu), "+C +A -B");
    }
    QlumViewState state("Tables", nullptr);
    qlumMakeTable(&view, {QString(), QString(), &state, "columns"});
    QMenu* menu = view.findChild<QlumColumnChooser*>()->menu();
    EXPECT_EQ(menuText(menu), "+C +A -B");
    EXPECT_EQ(qlumShownColumns(&view), (QVector<int>{2, 0}));
    choose(menu, "C");
    EXPECT_EQ(menuText(menu), "-C +A! -B");
    choose(menu, "Show &All");
    EXPECT_EQ(menuText(menu), "+C +A +B");
    for (int column = 0; column < 3; ++column) {
        EXPECT_GT(view.columnWidth(column), 0) << column;
        view.setColumnHidden(column, true);
    }
    state.store();
    QTableView again;
    again.setModel(&model);
    qlumMakeTable(&again, {QString(), QString(), &state, "columns"});
    EXPECT_EQ(qlumShownColumns(&again).size(), 3) << "or there were no way back";
}

TEST_F(Tables, TheTextOfAnEmptyViewCanBeSeenOnEveryPalette)
{
    model.clear();
    view.setModel(&model);
    qlumMakeTable(&view, {"Drop nodes here.", QString(), nullptr, QString()});
    view.resize(400, 300);
    view.show();
    constexpr int readable = 80;
    EXPECT_GT(contrast(view.viewport()->grab().toImage()), readable);
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::PlaceholderText, QColor(255, 255, 255, 128));
    view.setPalette(dark);
    EXPECT_GT(contrast(view.viewport()->grab().toImage()), readable);
}

TEST_F(Tables, AnEmptyViewSaysWhy)
{
    QlumTableFilter filter;
    filter.setSourceModel(&model);
    view.setModel(&filter);
    {
        QTreeWidget own; // a model that goes after the view's other parts
        new QTreeWidgetItem(&own);
        qlumMakeTable(&own, {"Nothing here.", QString(), nullptr, QString()});
    }
    qlumMakeTable(&view, {"Drop <b>nodes</b> here.", QString(), nullptr, QString()});
    view.resize(400, 300);
    view.show();
    auto* text = view.findChild<QLabel*>("emptyText");
    ASSERT_NE(text, nullptr);
    EXPECT_FALSE(text->isVisible());
    filter.setText("nowhere");
    EXPECT_TRUE(text->isVisible());
    const QString filtered = text->text();
    model.removeRows(0, 3);
    filter.setText(QString());
    EXPECT_TRUE(text->isVisible());
    EXPECT_EQ(text->text(), "Drop <b>nodes</b> here.");
    const auto paintedPixels = [&] {
        const QImage image = view.viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += contrast(image.pixelColor(x, y), view.palette().color(QPalette::Base)) > 4.5 ? 1 : 0;
        return count;
    };
    EXPECT_GT(paintedPixels(), 50);
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::Text, Qt::white);
    view.setPalette(dark);
    EXPECT_GT(paintedPixels(), 50);
    EXPECT_EQ(text->textFormat(), Qt::PlainText);
    EXPECT_NE(text->text(), filtered);
    view.resize(300, 200);
    EXPECT_EQ(text->size(), view.viewport()->size());
    model.appendRow(new QStandardItem("x"));
    EXPECT_FALSE(text->isVisible());
}

TEST(StatusLook, CanBeReadOnDarkPalettesAndIsNeverColourAlone)
{
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::Text, Qt::white);
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    Q_INIT_RESOURCE(uawidgets); // a test links them from an archive
    QStringList words;
    for (const auto level : {QlumStatusLevel::Good, QlumStatusLevel::Uncertain, QlumStatusLevel::Bad}) {
        EXPECT_GT(contrast(qlumStatusColor(level, dark), dark.color(QPalette::Base)), 4.5);
        EXPECT_GT(contrast(qlumStatusColor(level, light), light.color(QPalette::Base)), 2.0);
        EXPECT_FALSE(qlumStatusIcon(level).availableSizes().isEmpty()) << "the icon's file is missing";
        words << qlumStatusWord(level);
    }
    EXPECT_EQ(words.removeDuplicates(), 0);
    EXPECT_LT(qlumStatusColor(QlumStatusLevel::Inactive, dark).alpha(), 200);
    EXPECT_EQ(qlumStatusLevel(0x80340000u), QlumStatusLevel::Bad);
    EXPECT_EQ(qlumStatusLevel(0x40920000u), QlumStatusLevel::Uncertain);
    EXPECT_EQ(qlumStatusLevel(0x00A70000u), QlumStatusLevel::Good);
}

TEST(StatusLook, FollowsTheApplicationsPalette)
{
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, Qt::black);
    const auto color = [] {
        return qlumStatusCell(QlumStatusLevel::Bad, Qt::ForegroundRole).value<QColor>();
    };
    const QColor onLight = color();
    QApplication::setPalette(dark);
    EXPECT_NE(color(), onLight);
    QApplication::setPalette(before);
    EXPECT_EQ(color(), onLight);
}
