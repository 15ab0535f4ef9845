#include <opcua/opcua_builtintypes.h>
#include <tests/gui/valuepages/plantvalues.h>
#include <tests/support/modeltext.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraypage.h>
#include <uawidgets/editors/qlumstructuremodel.h>
#include <uawidgets/editors/qlumstructurepage.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluewidget.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QString>
#include <QTest>
#include <QTreeView>
#include <QVariant>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace {
using plant::Flat;

void expandAll(QlumStructureModel& model, const QModelIndex& parent, int depth)
{
    if (depth > 6)
        return;
    if (model.canFetchMore(parent))
        model.fetchMore(parent);
    for (int row = 0; row < model.rowCount(parent); ++row)
        expandAll(model, model.index(row, 0, parent), depth + 1);
}

QModelIndex find(QlumStructureModel& model, const QString& path)
{
    QModelIndex found;
    for (const QString& name : path.split('.')) {
        if (model.canFetchMore(found))
            model.fetchMore(found);
        QModelIndex next;
        for (int row = 0; row < model.rowCount(found); ++row)
            if (model.index(row, 0, found).data().toString() == name)
                next = model.index(row, 0, found);
        EXPECT_TRUE(next.isValid()) << path;
        found = next;
    }
    return found;
}

QModelIndex valueCell(const QModelIndex& index)
{
    return index.siblingAtColumn(QlumStructureModel::ValueColumn);
}

UaVariant valueOf(const QlumStructureModel& model)
{
    UaVariant value;
    QString why;
    EXPECT_TRUE(model.value(value, why)) << why;
    return value;
}

void collectLeaves(const QlumStructureModel& model, const QModelIndex& parent,
                   std::vector<QModelIndex>& leaves)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (model.flags(valueCell(index)) & Qt::ItemIsEditable)
            leaves.push_back(index);
        collectLeaves(model, index, leaves);
    }
}

TEST(StructureModel, AnEditChangesThatFieldAlone)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 dice(seed);
        const UaVariant before = plant::randomOrder(dice, 3);
        QlumStructureModel model(plant::context());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        model.setValue(before);
        expandAll(model, QModelIndex(), 0);
        EXPECT_EQ(valueOf(model), before) << "looking changes nothing";
        std::vector<QModelIndex> leaves;
        collectLeaves(model, QModelIndex(), leaves);
        ASSERT_GT(leaves.size(), 6u);
        const QModelIndex leaf = leaves[dice() % leaves.size()];
        const std::string path = model.pathOf(leaf).toStdString();
        const UaVariant given = plant::otherThan(model.valueOf(leaf));
        ASSERT_TRUE(
            model.setData(valueCell(leaf), QVariant::fromValue(given), QlumStructureModel::ValueRole));
        Flat expected = plant::flat(before);
        ASSERT_EQ(expected.count(path), 1u) << path;
        expected[path] = given;
        EXPECT_EQ(plant::flat(valueOf(model)), expected) << path << ", seed " << seed;
    }
}

TEST(StructureModel, FieldsAndMembersComeAndGo)
{
    QlumStructureModel model(plant::context());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setValue(UaVariant()); // a new one of the declared type
    const Flat empty = plant::flat(valueOf(model));
    EXPECT_EQ(empty.count("Note"), 0u);
    const auto check = [&model](const char* path, bool on) {
        return model.setData(find(model, path), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    };
    EXPECT_FALSE(check("Count", false)) << "not optional";
    ASSERT_TRUE(check("Note", true));
    ASSERT_TRUE(model.setData(valueCell(find(model, "Note")), "kept", Qt::EditRole));
    ASSERT_TRUE(check("Note", false));
    EXPECT_EQ(plant::flat(valueOf(model)), empty);
    ASSERT_TRUE(check("Note", true));
    EXPECT_EQ(plant::flat(valueOf(model))["Note"], UaVariant("kept")) << "what was entered is not lost";

    ASSERT_TRUE(check("Choice.Number", true));
    ASSERT_TRUE(model.setData(valueCell(find(model, "Choice.Number")), "12", Qt::EditRole));
    ASSERT_TRUE(check("Choice.Limits", true));
    ASSERT_TRUE(model.setData(valueCell(find(model, "Choice.Limits.High")), "2.5", Qt::EditRole));
    Flat flat = plant::flat(valueOf(model));
    EXPECT_EQ(flat.count("Choice.Number"), 0u) << "one member at a time";
    EXPECT_EQ(flat["Choice.Limits.High"], UaVariant(2.5));
    ASSERT_TRUE(check("Choice.Limits", false));
    EXPECT_EQ(plant::flat(valueOf(model)).count("Choice.Limits.High"), 0u);

    ASSERT_TRUE(check("Flags.Hot", true));
    ASSERT_TRUE(check("Flags.Wet", true));
    EXPECT_EQ(plant::flat(valueOf(model))["Flags"], UaVariant(OpcUa_UInt32{0b101}));
    EXPECT_TRUE(valueCell(find(model, "Flags")).data().toString().contains("Wet | Hot"));
    ASSERT_TRUE(model.setData(valueCell(find(model, "Flags")), "4", Qt::EditRole));
    EXPECT_EQ(find(model, "Flags.Wet").data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
}

TEST(StructureModel, OpenTypesHaveAChoice)
{
    QlumStructureModel model(plant::context());
    model.setValue(UaVariant());
    EXPECT_TRUE(model.choices(find(model, "Limits")).empty()) << "its type is fixed";
    const QModelIndex part = find(model, "Part");
    ASSERT_EQ(model.choices(part), (std::vector<UaNodeId>{plant::limitsId, plant::orderId}));
    ASSERT_TRUE(model.choose(part, plant::limitsId));
    ASSERT_TRUE(model.setData(valueCell(find(model, "Part.Low")), "-1", Qt::EditRole));
    const QModelIndex any = find(model, "Any");
    EXPECT_GT(model.choices(any).size(), 15u);
    ASSERT_TRUE(model.choose(any, UaNodeId(OpcUaType_Int16, 0)));
    ASSERT_TRUE(model.setData(valueCell(any), "7", Qt::EditRole));
    Flat flat = plant::flat(valueOf(model));
    EXPECT_EQ(flat["Part.Low"], UaVariant(-1.0));
    EXPECT_EQ(flat["Any"], UaVariant(OpcUa_Int16{7}));
}

TEST(StructureModel, RecursiveTypesAreOpenedOneLevelAtATime)
{
    std::mt19937 dice(1);
    UaVariant chain = plant::randomOrder(dice, 0);
    for (int level = 0; level < 90; ++level)
        chain = plant::withNext(plant::randomOrder(dice, 0), chain);
    QlumStructureModel model(plant::context());
    model.setValue(chain);
    EXPECT_EQ(model.rowCount(find(model, "Next")), 0) << "nobody has looked yet";
    QString path = "Next";
    for (int level = 1; level < 90; ++level)
        path += ".Next";
    ASSERT_TRUE(model.setData(valueCell(find(model, path + ".Count")), "4711", Qt::EditRole));
    Flat flat = plant::flat(valueOf(model));
    EXPECT_EQ(flat[(path + ".Count").toStdString()], UaVariant(OpcUa_Int32{4711}));

    for (int level = 0; level < 20; ++level)
        chain = plant::withNext(plant::randomOrder(dice, 0), chain);
    model.setValue(chain);
    EXPECT_TRUE(model.reason().contains("nested too deep")) << model.reason();
    EXPECT_EQ(valueOf(model), chain) << "what cannot be shown is not changed";
}

TEST(StructureModel, SaysWhyAValueIsNotTakenApart)
{
    QlumValueContext context = plant::context();
    context.dataType = UaNodeId(9999, 2);
    const std::vector<OpcUa_Byte> bytes{1, 2, 0xAB};
    const UaByteString body{std::span<const OpcUa_Byte>(bytes)};
    QlumStructureModel model(context);
    model.setValue(UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(9998, 2)), body)));
    const std::string shown = modelText(model);
    EXPECT_NE(shown.find("no definition of its type"), std::string::npos) << shown;
    EXPECT_NE(shown.find("3 bytes | 0x0102ab"), std::string::npos) << shown;
    model.setValue(UaVariant(UaExtensionObject(UaExpandedNodeId(plant::limitsEncodingId), body)));
    EXPECT_TRUE(model.reason().contains("do not fit the definition of Limits")) << model.reason();
}

TEST(StructurePage, EditsArraysWithinInAWindow)
{
    QlumStructurePage page(plant::context());
    page.resize(500, 400);
    page.show();
    std::mt19937 dice(5);
    const UaVariant before = plant::randomOrder(dice, 1);
    page.setValue(before);
    page.view().setCurrentIndex(find(page.model(), "Samples"));
    page.findChild<QAction*>("structureOpen")->trigger();
    auto* dialog = page.findChild<QDialog*>("partDialog");
    ASSERT_NE(dialog, nullptr);
    auto* array = dialog->findChild<QlumArrayPage*>();
    ASSERT_NE(array, nullptr);
    ASSERT_TRUE(array->model().insertRows(0, 1));
    ASSERT_TRUE(array->model().setData(array->model().index(0, 0), "77"));
    dialog->accept();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(plant::flat(valueOf(page.model()))["Samples[0]"], UaVariant(OpcUa_Int32{77}));

    page.findChild<QAction*>("structureOpen")->trigger();
    dialog = page.findChildren<QDialog*>("partDialog").last();
    ASSERT_TRUE(dialog->findChild<QlumArrayPage*>()->model().insertRows(0, 1));
    page.setValue(before); // the server has another one now
    dialog->accept();
    EXPECT_TRUE(dialog->findChild<QLabel*>("state")->text().contains("changed meanwhile"));
    EXPECT_EQ(valueOf(page.model()), before);
    dialog->reject();
}

TEST(StructurePage, WhatIsBeingTypedCounts)
{
    QlumStructurePage page(plant::context());
    page.resize(500, 400);
    page.show();
    page.setValue(UaVariant());
    const QModelIndex count = valueCell(find(page.model(), "Count"));
    page.view().setCurrentIndex(count);
    page.view().edit(count);
    auto* editor = page.view().findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    editor->clear();
    QTest::keyClicks(editor, "5x");
    EXPECT_TRUE(page.fault().startsWith("Count: ")) << page.fault();
    QTest::keyClick(editor, Qt::Key_Backspace);
    UaVariant value;
    ASSERT_TRUE(page.value(value)) << page.fault();
    EXPECT_EQ(plant::flat(value)["Count"], UaVariant(OpcUa_Int32{5}));

    const QModelIndex part = find(page.model(), "Part").siblingAtColumn(QlumStructureModel::TypeColumn);
    page.view().setCurrentIndex(part);
    page.view().edit(part);
    auto* types = page.view().findChild<QComboBox*>("typeEditor");
    ASSERT_NE(types, nullptr);
    types->setCurrentIndex(types->findText("Limits"));
    QTest::keyClick(types, Qt::Key_Return);
    QTRY_COMPARE(part.data().toString(), QString("Limits"));
}

TEST(ValueWidget, ShowsThePageThatSuitsTheValue)
{
    QlumValueWidget widget(plant::context());
    std::mt19937 dice(9);
    const UaVariant order = plant::randomOrder(dice, 0);
    widget.setValue(order);
    EXPECT_NE(widget.findChild<QlumStructurePage*>(), nullptr);
    UaVariant array;
    ASSERT_TRUE(
        OpcUa_IsGood(array.setArray(OpcUaType_ExtensionObject, std::vector<UaVariant>{order, order})));
    widget.setValue(array);
    EXPECT_EQ(widget.findChild<QlumStructurePage*>(), nullptr);
    EXPECT_NE(widget.findChild<QlumArrayPage*>(), nullptr);
    UaVariant back;
    ASSERT_TRUE(widget.value(back));
    EXPECT_EQ(back, array);
}
} // namespace
