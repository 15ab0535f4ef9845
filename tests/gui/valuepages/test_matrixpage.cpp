#include <opcua/opcua_builtintypes.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummatrixmodel.h>
#include <uawidgets/editors/qlummatrixpage.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QString>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace {
const std::vector<OpcUa_Int32> lengths{2, 3, 4, 5};

UaVariant matrixOf(const std::vector<OpcUa_Int32>& numbers, const std::vector<OpcUa_Int32>& dimensions)
{
    UaVariant matrix;
    EXPECT_TRUE(OpcUa_IsGood(
        matrix.setArray(OpcUaType_Int32, static_cast<OpcUa_Int32>(numbers.size()), numbers.data())));
    EXPECT_TRUE(OpcUa_IsGood(matrix.setDimensions(dimensions)));
    return matrix;
}

std::vector<OpcUa_Int32> counted(std::size_t count)
{
    std::vector<OpcUa_Int32> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

QlumValueContext contextOf(std::vector<OpcUa_UInt32> dimensions)
{
    QlumValueContext context;
    context.builtInType = OpcUaType_Int32;
    context.dataType = UaNodeId(OpcUaType_Int32, 0);
    context.valueRank = static_cast<OpcUa_Int32>(dimensions.size());
    context.arrayDimensions = std::move(dimensions);
    return context;
}

TEST(MatrixModel, AnEditChangesThatElementAlone)
{
    QlumMatrixModel model(contextOf({2, 3, 4, 5}));
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::vector<OpcUa_Int32> numbers = counted(120);
    model.setValue(matrixOf(numbers, lengths));
    std::mt19937 dice(3);
    for (int i = 0; i < 200; ++i) {
        const int first = static_cast<int>(dice() % 2), second = static_cast<int>(dice() % 3);
        const int row = static_cast<int>(dice() % 4), column = static_cast<int>(dice() % 5);
        const auto place = static_cast<std::size_t>(((first * 3 + second) * 4 + row) * 5 + column);
        model.setSlice({first, second});
        ASSERT_EQ(model.index(row, column).data().toInt(), numbers[place]);
        numbers[place] = 1000 + i;
        ASSERT_TRUE(model.setData(model.index(row, column), QString::number(1000 + i)));
        ASSERT_EQ(model.value(), matrixOf(numbers, lengths)) << i;
    }
    EXPECT_EQ(model.placeOf(model.index(3, 4)),
              QString("[%1,%2,3,4]").arg(model.slice()[0]).arg(model.slice()[1]));
}

TEST(MatrixModel, BeginsWithTheDeclaredLengths)
{
    QlumMatrixModel model(contextOf({2, 3}));
    model.setValue(UaVariant());
    EXPECT_EQ(model.value(), matrixOf({0, 0, 0, 0, 0, 0}, {2, 3}));
    QlumMatrixModel hostile(contextOf({4000000000u, 4000000000u}));
    hostile.setValue(UaVariant());
    EXPECT_EQ(hostile.rowCount(), 0);
}

TEST(MatrixPage, PastesAndFillsBlocks)
{
    QlumMatrixPage page(contextOf({2, 2, 3}));
    page.resize(400, 300);
    page.show();
    page.setValue(matrixOf(counted(12), {2, 2, 3}));
    page.findChild<QSpinBox*>("matrixSlice1")->setValue(1);
    EXPECT_EQ(modelText(page.model()), "6 | 7 | 8\n9 | 10 | 11\n");
    const auto select = [&page](int top, int left, int bottom, int right) {
        page.view().selectionModel()->setCurrentIndex(page.model().index(top, left),
                                                      QItemSelectionModel::NoUpdate);
        page.view().selectionModel()->select(
            QItemSelection(page.model().index(top, left), page.model().index(bottom, right)),
            QItemSelectionModel::ClearAndSelect);
    };
    select(0, 1, 1, 2);
    page.findChild<QAction*>("matrixCopy")->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString("7\t8\n10\t11"));
    QGuiApplication::clipboard()->setText("70\tx\t90\n100\t110\n120");
    page.findChild<QAction*>("matrixPaste")->trigger();
    UaVariant value;
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, matrixOf({0, 1, 2, 3, 4, 5, 6, 70, 8, 9, 100, 110}, {2, 2, 3}));
    const QString why = page.findChild<QLabel*>("why")->text();
    EXPECT_TRUE(why.contains("[1,0,2]: 'x'") && why.contains("2 cells")) << why;
    select(0, 0, 1, 2);
    page.findChild<QAction*>("matrixFill")->trigger();
    EXPECT_EQ(modelText(page.model()), "6 | 6 | 6\n6 | 6 | 6\n");
}

TEST(MatrixPage, ItsColumnsHaveRoomForEveryDouble)
{
    QlumValueContext context = contextOf({2, 3});
    context.builtInType = OpcUaType_Double;
    context.dataType = UaNodeId(OpcUaType_Double, 0);
    QlumMatrixPage page(context);
    page.setValue(UaVariant());
    const auto* view = page.findChild<QTableView*>("matrixView");
    EXPECT_GT(view->columnWidth(0), view->fontMetrics().horizontalAdvance("-1.2345678901234567e-300"));
}

TEST(MatrixPage, AnOpenEditorGoesWithItsSlice)
{
    QlumMatrixPage page(contextOf({2, 1, 2}));
    page.resize(400, 300);
    page.show();
    page.setValue(matrixOf({1, 2, 3, 4}, {2, 1, 2}));
    page.view().setCurrentIndex(page.model().index(0, 1));
    page.view().edit(page.model().index(0, 1));
    auto* editor = page.view().findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    editor->clear();
    QTest::keyClicks(editor, "20");
    page.findChild<QSpinBox*>("matrixSlice1")->setValue(1);
    UaVariant value;
    ASSERT_TRUE(page.value(value)) << page.fault();
    EXPECT_EQ(value, matrixOf({1, 20, 3, 4}, {2, 1, 2}));
}
} // namespace
