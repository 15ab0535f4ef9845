// The dialog for whole values: what it says, when it sends, its two pages.
#include <app/api/qlumtoolservices.h>
#include <tests/support/modeltext.h>
#include <tests/support/tableservices.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvalueviewer.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPlainTextEdit>
#include <QString>
#include <QTabWidget>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {
class ValueDialog : public ::testing::Test
{
protected:
    void open(const UaVariant& value)
    {
        dialog = std::make_unique<QlumValueDialog>(context);
        dialog->setTaker([this](const UaVariant& sent) {
            taken.push_back(sent);
            return answer;
        });
        dialog->setValue(value);
        dialog->show();
    }
    QLineEdit* line() const { return dialog->findChild<QLineEdit*>("valueEditor"); }
    QString state() const { return dialog->findChild<QLabel*>("state")->text(); }
    QTabWidget* pages() const { return dialog->findChild<QTabWidget*>("pages"); }
    QPlainTextEdit* json() const
    {
        return dialog->findChild<QlumPagedBytes*>("json")->findChild<QPlainTextEdit*>("text");
    }
    void type(const QString& text) const
    {
        line()->selectAll();
        QTest::keyClicks(line(), text);
    }

    QlumValueContext context;
    QString answer;
    std::vector<UaVariant> taken;
    std::unique_ptr<QlumValueDialog> dialog;
};

TEST_F(ValueDialog, WhatTheServerWillRefuseIsSentOnTheSecondEnterOnly)
{
    context.builtInType = OpcUaType_Int16;
    context.accessFault = "Nobody may write it.";
    open(UaVariant(OpcUa_Int16{7}));
    type("40000");
    EXPECT_EQ(state(), "'40000' is no Int16. It takes: -32768 to 32767");
    QTest::keyClick(line(), Qt::Key_Return);
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_TRUE(taken.empty()) << "what is no value cannot be sent at all";
    type("4");
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_TRUE(taken.empty());
    EXPECT_TRUE(state().contains("Nobody may write it.")) << state();
    type("5");
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_TRUE(taken.empty()) << "the warning was for another value";
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_EQ(taken, std::vector{UaVariant(OpcUa_Int16{5})});
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(ValueDialog, UnusualValuesNeedNoSecondEnterAndARefusalKeepsTheDialogOpen)
{
    context.builtInType = OpcUaType_Double;
    context.euRange = QlumValueRange{0, 10};
    open(UaVariant(1.0));
    type("11");
    EXPECT_TRUE(state().contains("EURange")) << state();
    answer = "BadOutOfRange: 11 was sent";
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_EQ(taken, std::vector{UaVariant(11.0)});
    EXPECT_EQ(state(), answer);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(line()->text(), "11");
}

TEST_F(ValueDialog, BothPagesShowOneValue)
{
    context.builtInType = OpcUaType_Double;
    open(UaVariant(1.5));
    type("2.5");
    pages()->setCurrentIndex(1);
    EXPECT_TRUE(json()->toPlainText().contains("2.5"));
    EXPECT_TRUE(dialog->isModified());
    json()->setPlainText("{\"Type\":11,\"Body\":}");
    EXPECT_TRUE(state().contains("JSON")) << state();
    pages()->setCurrentIndex(0);
    EXPECT_EQ(pages()->currentIndex(), 1) << "what is wrong stays where it can be put right";
    json()->setPlainText("{\"Type\":6,\"Body\":3}");
    EXPECT_TRUE(state().contains("Int32")) << "the declared type is known here, too: " << state();
    json()->setPlainText("{\"Type\":11,\"Body\":3.25}");
    pages()->setCurrentIndex(0);
    EXPECT_EQ(line()->text(), "3.25");
    UaVariant value;
    ASSERT_TRUE(dialog->value(value));
    EXPECT_EQ(value, UaVariant(3.25));
    EXPECT_TRUE(dialog->isModified());
}

TEST_F(ValueDialog, AVariantTakesTheTypeThatTheUserChooses)
{
    context.dataType = UaNodeId(24);
    open(UaVariant());
    UaVariant value;
    EXPECT_FALSE(dialog->value(value));
    auto* types = dialog->findChild<QComboBox*>("type");
    ASSERT_NE(types, nullptr);
    const auto choose = [&](const QString& name) {
        types->setCurrentIndex(types->findText(name));
        emit types->activated(types->currentIndex());
    };
    choose("Int16");
    type("300");
    choose("UInt32");
    ASSERT_TRUE(dialog->value(value));
    EXPECT_EQ(value, UaVariant(OpcUa_UInt32{300})) << "the number stays";
    choose("Byte");
    EXPECT_FALSE(dialog->value(value)) << "there is no such byte";
    type("3");
    ASSERT_TRUE(dialog->value(value));
    EXPECT_EQ(value, UaVariant(OpcUa_Byte{3}));
}

TEST_F(ValueDialog, ItsEditorsRememberHowTheyWereSet)
{
    context.builtInType = OpcUaType_UInt64;
    open(UaVariant(OpcUa_UInt64{255}));
    auto* bases = dialog->findChild<QComboBox*>("base");
    bases->setCurrentIndex(1);
    emit bases->activated(1);
    EXPECT_EQ(line()->text(), "0xff");
    EXPECT_FALSE(dialog->isModified());
    open(UaVariant(OpcUa_UInt64{0xFFFFFFFFFFFFFFFFu}));
    EXPECT_EQ(line()->text(), "0xffffffffffffffff");
}
// ---- values that other tools want to be seen

QlumValueDialog* viewer()
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QlumValueDialog*>(window))
            return dialog;
    return nullptr;
}

TEST(ValueViewer, ShowsAValueWithWhatItsServerSaysOfTheType)
{
    auto server = std::make_shared<TableServices>();
    UaEnumDefinition states(UaString("State"), UaNodeId(3000, 2));
    states.addValue(1, UaString("Running"));
    server->enums[UaNodeId(3000, 2)] = states;
    bool isThere = true;
    QlumToolServices tools;
    auto owner = std::make_unique<QObject>();
    qlumTakeValues(tools, owner.get(),
                   [&](unsigned int) { return isThere ? server : std::shared_ptr<TableServices>(); });
    ASSERT_TRUE(tools.showValue(1, UaVariant(OpcUa_Int32{1}), UaNodeId(3000, 2)));
    ASSERT_TRUE(QTest::qWaitFor([] { return viewer() != nullptr; }));
    auto* names = viewer()->findChild<QComboBox*>("valueEditor");
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(names->currentText(), "Running (1)");
    EXPECT_FALSE(names->isEnabled());
    delete viewer();
    isThere = false;
    ASSERT_TRUE(tools.showValue(1, UaVariant(OpcUa_Int32{1}), UaNodeId(3000, 2)));
    ASSERT_NE(viewer(), nullptr) << "without a server there is nothing to wait for";
    delete viewer();
    isThere = true;
    ASSERT_TRUE(tools.showValue(1, UaVariant(OpcUa_Int32{1}), UaNodeId(3000, 2)));
    owner.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(viewer(), nullptr) << "nobody shows what was asked for before the end";
}
} // namespace
