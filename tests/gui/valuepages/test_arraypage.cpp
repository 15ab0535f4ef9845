#include <opcua/opcua_builtintypes.h>
#include <tests/support/modeltext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraymodel.h>
#include <uawidgets/editors/qlumarraypage.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QSignalSpy>
#include <QSpinBox>
#include <QString>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

namespace {
UaVariant numbers(std::initializer_list<OpcUa_Int32> list)
{
    UaVariant array;
    EXPECT_TRUE(
        OpcUa_IsGood(array.setArray(OpcUaType_Int32, static_cast<OpcUa_Int32>(list.size()), list.begin())));
    return array;
}

QlumValueContext contextOf(OpcUa_BuiltInType type, const UaNodeId& dataType)
{
    QlumValueContext context;
    context.builtInType = type;
    context.dataType = dataType;
    context.valueRank = 1;
    return context;
}

class ArrayPageTest : public ::testing::Test
{
protected:
    ArrayPageTest() : page(contextOf(OpcUaType_Int32, UaNodeId(OpcUaType_Int32, 0)))
    {
        page.resize(400, 300);
        page.show();
    }
    void trigger(const char* name) const
    {
        auto* action = page.findChild<QAction*>(name);
        ASSERT_NE(action, nullptr) << name;
        ASSERT_TRUE(action->isEnabled()) << name;
        action->trigger();
    }
    void select(int first, int last) const
    {
        page.view().selectionModel()->setCurrentIndex(page.model().index(first, 0),
                                                      QItemSelectionModel::NoUpdate);
        page.view().selectionModel()->select(
            QItemSelection(page.model().index(first, 0), page.model().index(last, 0)),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    [[nodiscard]] UaVariant value() const
    {
        UaVariant value;
        EXPECT_TRUE(page.value(value)) << page.fault();
        return value;
    }
    QLineEdit* edit(int row) const
    {
        page.view().setCurrentIndex(page.model().index(row, 0));
        page.view().edit(page.model().index(row, 0));
        return page.view().findChild<QLineEdit*>("valueEditor");
    }

    QlumArrayPage page;
};

TEST_F(ArrayPageTest, EditsTheSelectedElements)
{
    const QAbstractItemModelTester tester(&page.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    page.setValue(numbers({5, 1, 4, 2, 3}));
    EXPECT_FALSE(page.isModified());
    select(1, 2);
    trigger("arrayInsert");
    EXPECT_EQ(value(), numbers({5, 0, 0, 1, 4, 2, 3})) << "as many as were selected";
    EXPECT_TRUE(page.isModified());
    trigger("arrayRemove");
    select(3, 4);
    trigger("arrayUp");
    EXPECT_EQ(value(), numbers({5, 1, 2, 3, 4}));
    trigger("arrayUp");
    trigger("arrayDown");
    EXPECT_EQ(value(), numbers({5, 1, 2, 3, 4})) << "the selection goes with the elements";
    select(0, 2);
    trigger("arrayFill");
    trigger("arrayAppend");
    EXPECT_EQ(value(), numbers({5, 5, 5, 3, 4, 0}));
    trigger("arraySortAscending");
    EXPECT_EQ(value(), numbers({0, 3, 4, 5, 5, 5}));
    page.findChild<QSpinBox*>("arrayLength")->setValue(2);
    EXPECT_EQ(value(), numbers({0, 3}));
    page.findChild<QSpinBox*>("arrayLength")->setValue(0);
    EXPECT_EQ(value(), numbers({})) << "no elements are a value, too";
}

TEST_F(ArrayPageTest, TellsWhichPastedCellsAreNoValues)
{
    page.setValue(numbers({1, 2, 3}));
    QGuiApplication::clipboard()->setText("10\tx\r\nabc\tx\r\n1e3\r\n40\r\n");
    select(1, 1);
    trigger("arrayPaste");
    EXPECT_EQ(value(), numbers({1, 10, 3, 0, 40})) << "refused cells keep what was there, new ones are null";
    const QString why = page.findChild<QLabel*>("why")->text();
    EXPECT_TRUE(why.contains("[2]: 'abc', [3]: '1e3'") && why.contains("first column")) << why;
    select(3, 4);
    trigger("arrayCopy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString("0\n40"));
}

TEST_F(ArrayPageTest, AnOpenEditorCounts)
{
    page.setValue(numbers({1, 2, 3}));
    QLineEdit* editor = edit(1);
    ASSERT_NE(editor, nullptr);
    editor->clear();
    QTest::keyClicks(editor, "77");
    EXPECT_TRUE(page.isModified());
    EXPECT_EQ(value(), numbers({1, 77, 3})) << "no Enter yet";
    editor->clear();
    QTest::keyClicks(editor, "77x");
    EXPECT_TRUE(page.fault().contains("[1]") && page.fault().contains("77x")) << page.fault();
    UaVariant ignored;
    EXPECT_FALSE(page.value(ignored));
    page.setValue(numbers({4})); // shrinks below what is being edited
    EXPECT_TRUE(page.fault().isEmpty()) << page.fault();
    EXPECT_EQ(value(), numbers({4}));
}

// Its editor then still gives its value to the model, and the page must not answer to that any more.
TEST_F(ArrayPageTest, MayGoWhileAnElementIsBeingTyped)
{
    auto other = std::make_unique<QlumArrayPage>(contextOf(OpcUaType_Int32, UaNodeId(OpcUaType_Int32, 0)));
    other->setValue(numbers({1, 2}));
    other->show();
    other->view().setFocus();
    other->view().setCurrentIndex(other->model().index(0, 0));
    other->view().edit(other->model().index(0, 0));
    auto* editor = other->view().findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "7");
    const QSignalSpy edited(other.get(), &QlumValuePage::edited);
    other.reset();
    EXPECT_EQ(edited.count(), 0);
}

TEST_F(ArrayPageTest, OnlyShowsWhenReadOnly)
{
    page.setValue(numbers({1, 2}));
    page.setReadOnly(true);
    select(0, 1);
    for (const char* name : {"arrayInsert", "arrayRemove", "arrayFill", "arrayPaste", "arraySortAscending"})
        EXPECT_FALSE(page.findChild<QAction*>(name)->isEnabled()) << name;
    EXPECT_FALSE(page.model().setData(page.model().index(0, 0), "5"));
    EXPECT_FALSE(page.model().removeRows(0, 1));
    trigger("arrayCopy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString("1\n2"));
}

TEST_F(ArrayPageTest, AnElementThatIsGoneIsNotTaken)
{
    UaVariant inner;
    ASSERT_TRUE(OpcUa_IsGood(inner.setArray(
        OpcUaType_Variant, std::vector<UaVariant>{UaVariant(OpcUa_Int32{7}), numbers({1, 2})})));
    page.setValue(inner);
    EXPECT_EQ(modelText(page.model()), "7 | Int32\nInt32[2] {1; 2} | Int32[2]\n");
    select(0, 0);
    trigger("arrayOpen");
    auto* dialog = page.findChild<QDialog*>("partDialog");
    ASSERT_NE(dialog, nullptr);
    auto* editor = dialog->findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    editor->clear();
    QTest::keyClicks(editor, "8");
    page.setValue(numbers({}));
    dialog->accept();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(dialog->findChild<QLabel*>("state")->text().contains("gone"));
    EXPECT_EQ(page.model().rowCount(), 0);
    dialog->reject();
}

TEST(ArrayModel, KnowsTheNamesOfEnumerations)
{
    const UaNodeId colorId(3000, 2);
    auto dictionary = std::make_shared<UaTypeDefinitionStore>();
    UaEnumDefinition colors(UaString("Colors"), colorId);
    colors.addValue(0, UaString("Red"));
    colors.addValue(7, UaString("Deep Blue"));
    dictionary->add(colors);
    QlumValueContext context = contextOf(OpcUaType_Int32, colorId);
    context.dictionary = dictionary;
    QlumArrayModel model(context);
    model.setValue(numbers({7, 3}));
    EXPECT_EQ(modelText(model), "Deep Blue (7)\n3\n");
    const QlumPasteReport report = model.paste(0, {"Red", "Deep Blue (7)", "12", "Blue"});
    EXPECT_EQ(report.refused, 1);
    EXPECT_EQ(model.value(), numbers({0, 7, 12, 0}));
}

TEST(ArrayModel, CutsWhatIsLargeAndKeepsIt)
{
    const std::vector<OpcUa_Byte> bytes(16 * 1024 * 1024, 0xAB);
    const UaVariant large{UaByteString(std::span<const OpcUa_Byte>(bytes))};
    UaVariant array;
    ASSERT_TRUE(OpcUa_IsGood(array.setArray(OpcUaType_ByteString, std::vector<UaVariant>{large})));
    QlumArrayModel model(contextOf(OpcUaType_ByteString, UaNodeId(OpcUaType_ByteString, 0)));
    model.setValue(array);
    const QModelIndex cell = model.index(0, 0);
    EXPECT_LT(cell.data().toString().size(), 300);
    EXPECT_TRUE(cell.data().toString().contains("16777216 bytes")) << cell.data().toString();
    EXPECT_LT(cell.data(Qt::ToolTipRole).toString().size(), 5000);
    EXPECT_FALSE(model.flags(cell) & Qt::ItemIsEditable) << "a line edit would not stand that";
    EXPECT_EQ(cell.data(QlumArrayModel::ValueRole).value<UaVariant>(), large);
}
} // namespace
