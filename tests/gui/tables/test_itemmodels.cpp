#include <tests/gui/tables/numbers.h>
#include <tests/support/modeltext.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {
using Tester = QAbstractItemModelTester;
constexpr auto fatal = Tester::FailureReportingMode::Fatal;

struct Item : QlumTreeNode<Item>
{
    explicit Item(QString itemName) : name(std::move(itemName)) {}
    QString name;
};

std::vector<std::unique_ptr<Item>> items(const QStringList& names)
{
    std::vector<std::unique_ptr<Item>> result;
    for (const QString& name : names)
        result.push_back(std::make_unique<Item>(name));
    return result;
}

class Items : public QlumTreeModel<Item>
{
public:
    explicit Items(Root kind) : QlumTreeModel({"Name", "Row"}) { setRoot(&root, kind); }
    using QlumTreeModel::insertNodes;
    using QlumTreeModel::moveNodes;
    using QlumTreeModel::rearrange;
    using QlumTreeModel::removeNodes;
    using QlumTreeModel::Root;
    using QlumTreeModel::tellChanged;

    Item root{"root"};

protected:
    QVariant cell(const Item& item, int column, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return column == 0 ? QVariant(item.name) : QVariant(item.row());
    }
};

class Hidden : public Items
{
public:
    Hidden() : Items(Root::Hidden) {}
};

class Shown : public Items
{
public:
    Shown() : Items(Root::Shown) {}
};
} // namespace

TEST(TableModel, ChangesKeepPersistentIndexesAtTheirRows)
{
    Numbers model;
    const Tester tester(&model, fatal);
    model.append(std::deque<int>{0, 1, 2, 3, 4, 5});
    const QPersistentModelIndex three = model.index(3, 0);
    model.insert(1, std::vector<int>{10, 11});
    EXPECT_EQ(model.text(), "0 10 11 1 2 3 4 5");
    EXPECT_TRUE(model.move(5, 2, 0));
    EXPECT_EQ(model.text(), "3 4 0 10 11 1 2 5");
    EXPECT_TRUE(model.move(0, 1, 8));
    EXPECT_EQ(model.text(), "4 0 10 11 1 2 5 3");
    EXPECT_FALSE(model.move(2, 2, 3)) << "into itself";
    EXPECT_FALSE(model.move(2, 2, 4)) << "to where it is";
    model.remove(1, 3);
    EXPECT_EQ(model.text(), "4 1 2 5 3");
    EXPECT_EQ(three.data(), "3");
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.change(4, [](int& row) { row = 33; });
    EXPECT_EQ(three.data(), "33");
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex(), model.index(4, 0));
    EXPECT_EQ(changed[0][1].toModelIndex(), model.index(4, 1));
    model.reset({7});
    EXPECT_FALSE(three.isValid());
    EXPECT_EQ(model.text(), "7");
}

TEST(TableModel, GatheredRowsComeTogetherAndNeverExceedTheMaximum)
{
    Numbers model;
    const Tester tester(&model, fatal);
    model.setMaximumRows(4);
    model.append(std::deque<int>{1, 2, 3});
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.gather(4);
    model.gather(5);
    EXPECT_EQ(model.text(), "1 2 3");
    ASSERT_TRUE(inserted.wait(5000));
    EXPECT_EQ(model.text(), "2 3 4 5");
    EXPECT_EQ(inserted.size(), 1);
    for (int row = 10; row < 30; ++row)
        model.gather(row);
    model.flush();
    EXPECT_EQ(model.text(), "26 27 28 29");
    model.gather(30);
    model.reset();
    model.flush();
    EXPECT_EQ(model.text(), "") << "what waited belongs to what was reset";
    model.setMaximumRows(0);
    model.append(std::vector<int>{1, 2});
    EXPECT_EQ(model.text(), "2");
}

TEST(TreeModel, MovesAndSortsKeepPersistentIndexesWithTheirNodes)
{
    Hidden model;
    const Tester tester(&model, fatal);
    model.insertNodes(model.root, 0, items({"b", "a", "c"}));
    Item& b = *model.root.child(0);
    model.insertNodes(b, 0, items({"z", "y", "x"}));
    const QPersistentModelIndex y = model.indexOf(b.child(1), 1);
    model.insertNodes(b, 1, items({"new"}));
    EXPECT_EQ(y.data().toInt(), 2);
    EXPECT_TRUE(model.moveNodes(b, 2, 2, model.root, 1));
    EXPECT_EQ(modelText(model), "b | 0\n  z | 0\n  new | 1\ny | 1\nx | 2\na | 3\nc | 4\n");
    EXPECT_FALSE(y.parent().isValid());
    EXPECT_TRUE(model.moveNodes(model.root, 0, 1, model.root, 3));
    EXPECT_EQ(modelText(model), "y | 0\nx | 1\nb | 2\n  z | 0\n  new | 1\na | 3\nc | 4\n");
    EXPECT_FALSE(model.moveNodes(model.root, 2, 1, b, 0)) << "below itself";
    model.rearrange(
        [&] { model.root.sortChildren([](const Item& l, const Item& r) { return l.name < r.name; }); });
    EXPECT_EQ(modelText(model), "a | 0\nb | 1\n  z | 0\n  new | 1\nc | 2\nx | 3\ny | 4\n");
    EXPECT_EQ(y.row(), 4);
    EXPECT_EQ(y.column(), 1);
    model.removeNodes(model.root, 0, 4);
    EXPECT_EQ(modelText(model), "y | 0\n");
    EXPECT_EQ(y.row(), 0);
}

TEST(TreeModel, AShownRootIsTheOnlyTopRow)
{
    Shown model;
    const Tester tester(&model, fatal);
    model.insertNodes(model.root, 0, items({"a", "b"}));
    EXPECT_EQ(modelText(model), "root | 0\n  a | 0\n  b | 1\n");
    EXPECT_EQ(model.index(0, 0, model.index(0, 0)).parent(), model.index(0, 0));
    EXPECT_FALSE(model.index(1, 0).isValid());
    EXPECT_EQ(model.rowCount(model.index(0, 1)), 0) << "only the first column has children";
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.tellChanged(*model.root.child(1));
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex(), model.index(1, 1, model.index(0, 0)));
}

TEST(TreeModel, RandomChangesLeaveRowsAndParentsRight)
{
    Hidden model;
    const Tester tester(&model, fatal);
    std::mt19937 random(11);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    const auto anyNode = [&] {
        Item* node = &model.root;
        while (node->childCount() > 0 && below(3) > 0)
            node = node->child(below(node->childCount()));
        return node;
    };
    for (int step = 0; step < 300; ++step) {
        Item& node = *anyNode();
        const int count = node.childCount();
        if (count == 0 || below(3) == 0) {
            model.insertNodes(node, below(count + 1), items({QString::number(step), "twin"}));
        } else if (below(3) == 0) {
            model.removeNodes(node, below(count), 1);
        } else {
            Item& to = *anyNode();
            const int first = below(count);
            const QPersistentModelIndex moved = model.indexOf(node.child(first));
            Item* const item = node.child(first);
            model.moveNodes(node, first, 1, to, below(to.childCount() + 1));
            ASSERT_EQ(model.nodeAt(moved), item) << step;
            ASSERT_EQ(model.indexOf(item), moved) << step;
        }
    }
    EXPECT_GT(model.rowCount(), 0);
}
