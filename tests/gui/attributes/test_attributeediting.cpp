// Editing values in the pane: what cannot be entered, and what the server does not take.
#include <app/api/qlumconnectionstatus.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributeview.h>
#include <tests/gui/attributes/attributepluginfixture.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QVariant>
#include <QWidget>

#include <vector>

namespace {
class AttributeEditing : public AttributePlugin
{
protected:
    AttributeEditing()
    {
        set(OpcUa_Attributes_Value, UaVariant(OpcUa_Int16{7}));
        set(OpcUa_Attributes_DataType, UaVariant(UaNodeId(4)));
        plugin.dock()->show();
    }

    void set(OpcUa_UInt32 attribute, const UaVariant& value)
    {
        services->attributes[{node(1), attribute}] = value;
    }
    void show()
    {
        const int before = services->journal.size();
        select(1);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return services->journal.size() > before &&
                   plugin.dock()->findChild<QLabel*>("activity")->text().isEmpty();
        }));
    }
    QModelIndex value() const { return plugin.model()->index(0, 1, plugin.model()->index(7, 0)); }
    // As the user does it; null when no editor opens.
    QLineEdit* beginEditing(const QModelIndex& index)
    {
        view()->setCurrentIndex(index);
        QTest::keyClick(view(), Qt::Key_F2);
        return view()->isEditing() ? view()->findChild<QLineEdit*>("valueEditor") : nullptr;
    }
    // What the pane tells; empty when nothing.
    QString told() const
    {
        const auto* bar = plugin.dock()->findChild<QlumMessageBar*>("messageBar");
        return bar->isHidden() ? QString() : bar->findChild<QLabel*>("why")->text();
    }
};

TEST_F(AttributeEditing, ATextThatIsNoValueIsNotSwallowed)
{
    show();
    QLineEdit* editor = beginEditing(value());
    ASSERT_NE(editor, nullptr);
    editor->setText("40000");
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(told(), "'40000' is no Int16. It takes: -32768 to 32767");
    ASSERT_TRUE(view()->isEditing());
    view()->setCurrentIndex(plugin.model()->index(2, 0)); // the user clicks elsewhere
    plugin.dock()->findChild<QWidget*>("attributeToolBar")->setFocus();
    ASSERT_TRUE(view()->isEditing());
    EXPECT_EQ(view()->findChild<QLineEdit*>("valueEditor")->text(), "40000");
    EXPECT_TRUE(services->written.empty());
    editor->setText("400");
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->written.front(), UaVariant(OpcUa_Int16{400}));
    EXPECT_EQ(told(), "");
    EXPECT_FALSE(view()->isEditing());

    editor = beginEditing(value().siblingAtColumn(QlumAttributeModel::NameColumn));
    ASSERT_NE(editor, nullptr) << "the name of the row is no other place";
    editor->setText("many");
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_FALSE(view()->isEditing()) << "given up";
}

TEST_F(AttributeEditing, WhatTheServerWillRefuseIsSentFromTheCellOnTheSecondEnterOnly)
{
    UaEnumDefinition colors(UaString("Colors"), UaNodeId(3000, 2));
    colors.addValue(1, UaString("Red"));
    services->enums[colors.dataTypeId()] = colors;
    set(OpcUa_Attributes_Value, UaVariant(OpcUa_Int32{1}));
    set(OpcUa_Attributes_DataType, UaVariant(colors.dataTypeId()));
    show();
    ASSERT_EQ(beginEditing(value()), nullptr);
    auto* names = view()->findChild<QComboBox*>("valueEditor");
    ASSERT_NE(names, nullptr);
    names->setEditText("9");
    QTest::keyClick(names->lineEdit(), Qt::Key_Return);
    EXPECT_TRUE(told().contains("9 is no value of the enumeration")) << told().toStdString();
    EXPECT_TRUE(services->written.empty());
    QTest::keyClick(names->lineEdit(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->written.front(), UaVariant(OpcUa_Int32{9}));
}

TEST_F(AttributeEditing, WhatIsTypedIsNotLostWhileTheServerIsAway)
{
    show();
    QLineEdit* editor = beginEditing(value());
    ASSERT_NE(editor, nullptr);
    editor->setText("8");
    plugin.sessionStatusChanged(5, QlumConnectionStatus::ConnectionError, {});
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(told(), "The server cannot be asked at the moment.");
    EXPECT_TRUE(view()->isEditing());
    EXPECT_TRUE(services->written.empty());
    plugin.sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
    ASSERT_TRUE(view()->isEditing()) << "it is back";
    const int reads = services->journal.filter("read").size();
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->written.front(), UaVariant(OpcUa_Int16{8}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return services->journal.filter("read").size() > reads; }));
}

TEST_F(AttributeEditing, ARefusedWriteIsSeenAtTheRowAlsoAfterTheNodeWasReadAgain)
{
    show();
    services->writeResult = OpcUa_BadNotWritable;
    EXPECT_FALSE(plugin.model()->setData(value(), "8", Qt::EditRole));
    const auto fault = [this] { return value().data(QlumAttributeModel::FaultRole).toString(); };
    EXPECT_EQ(fault(), "BadNotWritable: nobody may write this value");
    EXPECT_EQ(told(), "Plc: BadNotWritable: nobody may write this value");
    EXPECT_EQ(application.entries().last().level, 30);
    show(); // as after every write
    EXPECT_EQ(fault(), "BadNotWritable: nobody may write this value");
    EXPECT_TRUE(value().data(Qt::ToolTipRole).toString().contains("nobody may write"));
    EXPECT_TRUE(value().siblingAtRow(1).data(QlumAttributeModel::FaultRole).toString().isEmpty());
    services->writeResult = 0;
    EXPECT_TRUE(plugin.model()->setData(value(), "8", Qt::EditRole));
    EXPECT_EQ(fault(), "");
    services->writeResult = OpcUa_BadNotWritable;
    EXPECT_FALSE(plugin.model()->setData(value(), "8", Qt::EditRole));
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(fault(), "") << "another node has nothing to do with it";
}

TEST_F(AttributeEditing, ARowThatMayNotBeWrittenSaysSoBeforeTheUserTypes)
{
    set(OpcUa_Attributes_AccessLevel, UaVariant(OpcUa_Byte{3}));
    set(OpcUa_Attributes_UserAccessLevel, UaVariant(OpcUa_Byte{1}));
    show();
    EXPECT_EQ(beginEditing(value()), nullptr);
    EXPECT_EQ(told(), "The user who is logged in may not write it: UserAccessLevel has no CurrentWrite.");
    EXPECT_TRUE(value().data(Qt::ToolTipRole).toString().contains("UserAccessLevel"));
    application.settings[QlumAttributeSettings::editLocked.key()] = true;
    EXPECT_NE(beginEditing(value()), nullptr) << "the user wants the server to decide";
    QTest::keyClick(view()->findChild<QLineEdit*>("valueEditor"), Qt::Key_Escape);
    application.settings.clear();
    set(OpcUa_Attributes_UserAccessLevel, UaVariant(OpcUa_Byte{3}));
    show();
    EXPECT_NE(beginEditing(value()), nullptr);
}

TEST_F(AttributeEditing, AnAttributeThatItsMaskDoesNotAllowSaysSo)
{
    set(OpcUa_Attributes_Description, UaVariant(UaLocalizedText("en", "old")));
    const auto described = [this] { return plugin.model()->index(4, 1); };
    const auto refusal = [&] {
        show();
        EXPECT_EQ(described().siblingAtColumn(0).data(), "Description");
        EXPECT_EQ(beginEditing(described()), nullptr);
        return told();
    };
    EXPECT_EQ(refusal(), "The node does not say that anything but its Value may be written.");
    set(OpcUa_Attributes_UserWriteMask, UaVariant(OpcUa_UInt32{0}));
    EXPECT_EQ(refusal(), "The user who is logged in may not write it: UserWriteMask has no Description.");
    set(OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{0}));
    EXPECT_EQ(refusal(), "Nobody may write it: WriteMask has no Description.");
    beginEditing(plugin.model()->index(0, 1));
    EXPECT_EQ(told(), "NodeId is not for clients to write.");
    beginEditing(plugin.model()->index(1, 1, plugin.model()->index(7, 0))); // the Value's status
    EXPECT_EQ(told(), "NodeId is not for clients to write.") << "nothing more is said of what is no value";
    set(OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{32}));
    set(OpcUa_Attributes_UserWriteMask, UaVariant(OpcUa_UInt32{32}));
    show();
    QLineEdit* editor = beginEditing(described());
    ASSERT_NE(editor, nullptr);
    editor->setText("de:neu");
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->writtenTo, QStringList{"5"});
    EXPECT_EQ(services->written.front().type(), OpcUaType_LocalizedText);
}

TEST_F(AttributeEditing, AValueThatNoCellHasRoomForGetsAWindow)
{
    set(OpcUa_Attributes_Value, UaVariant("a\nb"));
    show();
    EXPECT_EQ(beginEditing(value()), nullptr);
    const QPointer<QlumValueDialog> dialog = application.window.findChild<QlumValueDialog*>();
    ASSERT_TRUE(dialog);
    UaVariant shown;
    EXPECT_TRUE(dialog->value(shown));
    EXPECT_EQ(shown, UaVariant("a\nb"));
    dialog->close();
    set(OpcUa_Attributes_Value, UaVariant());
    set(OpcUa_Attributes_DataType, UaVariant(UaNodeId(11)));
    show();
    QLineEdit* editor = beginEditing(value());
    ASSERT_NE(editor, nullptr);
    editor->setText("1.5");
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->written.front(), UaVariant(1.5));
}
} // namespace
