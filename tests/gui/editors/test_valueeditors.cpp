#include <app/api/qlumtext.h>
#include <tests/support/modeltext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QTime>
#include <QWidget>
#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <memory>
#include <span>
#include <utility>

namespace {
UaByteString bytes(std::initializer_list<OpcUa_Byte> list)
{
    return UaByteString(std::span(list.begin(), list.size()));
}

TEST(ValueText, EveryTypeReadsBackAsItWas)
{
    UaVariant xml;
    xml.setXmlElement(bytes({'<', 'a', '/', '>'}));
    const UaVariant values[] = {
        UaVariant(true),
        UaVariant(std::numeric_limits<OpcUa_SByte>::min()),
        UaVariant(std::numeric_limits<OpcUa_Byte>::max()),
        UaVariant(std::numeric_limits<OpcUa_Int16>::min()),
        UaVariant(std::numeric_limits<OpcUa_UInt16>::max()),
        UaVariant(std::numeric_limits<OpcUa_Int32>::min()),
        UaVariant(std::numeric_limits<OpcUa_UInt32>::max()),
        UaVariant(std::numeric_limits<OpcUa_Int64>::min()),
        UaVariant(std::numeric_limits<OpcUa_UInt64>::max()),
        UaVariant(0.1f),
        UaVariant(std::numeric_limits<float>::max()),
        UaVariant(0.1),
        UaVariant(std::numeric_limits<double>::denorm_min()),
        UaVariant(std::numeric_limits<double>::infinity()),
        UaVariant("\xC3\xA4 b"),
        UaVariant(UaDateTime::fromString("2026-11-21T10:15:30.123Z")),
        UaVariant(UaGuid::fromString("72962b91-fa75-4ae6-8d28-b404dc7daf63")),
        UaVariant(bytes({0, 255})),
        xml,
        UaVariant(UaNodeId(UaString("a;b"), 3)),
        UaVariant(UaExpandedNodeId(UaNodeId(1, 0), UaString("urn:x"), 2)),
        UaVariant(UaStatusCode(0x80340000u)),
        UaVariant(UaQualifiedName(UaString("a:b"), 2)),
    };
    for (const UaVariant& value : values) {
        UaVariant read;
        EXPECT_TRUE(qlumFromEditText(qlumEditText(value), value.type(), read)) << qlumEditText(value);
        EXPECT_EQ(read, value) << qlumEditText(value);
    }
    UaVariant text(UaLocalizedText(UaString("de"), UaString("alt")));
    ASSERT_TRUE(qlumFromEditText("neu", OpcUaType_LocalizedText, text));
    EXPECT_EQ(text, UaVariant(UaLocalizedText(UaString("de"), UaString("neu")))) << "the locale stays";
}

TEST(ValueText, WhatDoesNotFitIsRefused)
{
    const struct
    {
        OpcUa_BuiltInType type;
        const char* text;
    } cases[] = {{OpcUaType_Byte, "256"},
                 {OpcUaType_Byte, "-1"},
                 {OpcUaType_SByte, "128"},
                 {OpcUaType_UInt64, "-1"},
                 {OpcUaType_Int64, "9223372036854775808"},
                 {OpcUaType_Int32, ""},
                 {OpcUaType_Int32, "1.5"},
                 {OpcUaType_Float, "1e39"},
                 {OpcUaType_Double, "x"},
                 {OpcUaType_Boolean, "maybe"},
                 {OpcUaType_Guid, "123"},
                 {OpcUaType_NodeId, "ns=2"},
                 {OpcUaType_ByteString, "0x0"},
                 {OpcUaType_ByteString, "zz"},
                 {OpcUaType_StatusCode, "x"}};
    for (const auto& test : cases) {
        UaVariant value("kept");
        EXPECT_FALSE(qlumFromEditText(test.text, test.type, value)) << test.text;
        EXPECT_EQ(value, UaVariant("kept"));
    }
    UaVariant value;
    EXPECT_TRUE(qlumFromEditText("0x10", OpcUaType_UInt16, value));
    EXPECT_EQ(value, UaVariant(OpcUa_UInt16{16}));
}

// What is known of a place: its type, and the names of an enumeration.
QlumValueContext typed(OpcUa_BuiltInType type, const UaEnumDefinition& definition = UaEnumDefinition())
{
    QlumValueContext context;
    context.builtInType = type;
    if (definition.valueCount() > 0) {
        auto store = std::make_shared<UaTypeDefinitionStore>();
        store->add(definition);
        context.dictionary = store;
        context.dataType = definition.dataTypeId();
    }
    return context;
}

TEST(ValueEditor, ChoosesByTypeAndTellsOnlyChanges)
{
    QWidget window;
    UaVariant result;
    auto* flag =
        qobject_cast<QComboBox*>(qlumCreateValueEditor(UaVariant(true), QlumValueContext(), &window));
    ASSERT_NE(flag, nullptr);
    EXPECT_FALSE(qlumValueFromEditor(flag, result)) << "nothing was changed";
    flag->setCurrentIndex(0);
    ASSERT_TRUE(qlumValueFromEditor(flag, result));
    EXPECT_EQ(result, UaVariant(false));

    UaEnumDefinition colors(UaString("Colors"), UaNodeId(3000, 2));
    colors.addValue(1, UaString("Red"));
    auto* color = qobject_cast<QComboBox*>(
        qlumCreateValueEditor(UaVariant(OpcUa_Int32{9}), typed(OpcUaType_Int32, colors), &window));
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(color->currentText(), "9") << "a number without a name can stay";
    color->setCurrentIndex(color->findText("Red (1)"));
    ASSERT_TRUE(qlumValueFromEditor(color, result));
    EXPECT_EQ(result, UaVariant(OpcUa_Int32{1}));

    auto* number = qobject_cast<QLineEdit*>(
        qlumCreateValueEditor(UaVariant(OpcUa_Byte{7}), QlumValueContext(), &window));
    ASSERT_NE(number, nullptr);
    number->setText("300");
    EXPECT_NE(qlumEditorFault(number), "");
    EXPECT_FALSE(qlumValueFromEditor(number, result));
    number->setText("200");
    ASSERT_TRUE(qlumValueFromEditor(number, result));
    EXPECT_EQ(result, UaVariant(OpcUa_Byte{200}));

    const UaDateTime fine(UaDateTime::fromString("2026-11-21T10:15:30.123Z").value() + 7); // 700 ns more
    auto* time =
        qobject_cast<QDateTimeEdit*>(qlumCreateValueEditor(UaVariant(fine), QlumValueContext(), &window));
    ASSERT_NE(time, nullptr);
    EXPECT_FALSE(qlumValueFromEditor(time, result)) << "what it cannot show is not lost";
    time->setDateTime(time->dateTime().addMSecs(1));
    ASSERT_TRUE(qlumValueFromEditor(time, result));
    EXPECT_EQ(result, UaVariant(UaDateTime::fromString("2026-11-21T10:15:30.124Z")));
}

TEST(ValueEditor, ATimeThatIsNotSetIsNotReplacedByThePresentOne)
{
    QWidget window;
    UaVariant result;
    auto* time = qobject_cast<QDateTimeEdit*>(
        qlumCreateValueEditor(UaVariant(UaDateTime()), QlumValueContext(), &window));
    ASSERT_NE(time, nullptr);
    EXPECT_FALSE(qlumValueFromEditor(time, result)) << "opened and left";
    time->setDateTime(QDateTime(QDate(2024, 1, 31), QTime(12, 34, 56, 789), Qt::UTC));
    ASSERT_TRUE(qlumValueFromEditor(time, result));
    EXPECT_EQ(result, UaVariant(UaDateTime::fromString("2024-01-31T12:34:56.789Z")));
}

TEST(ValueEditor, ATimeIsEditedInTheFormInWhichItIsShown)
{
    QWidget window;
    const UaVariant value(UaDateTime::fromString("2024-01-31T12:34:56.789Z"));
    auto* time = qobject_cast<QDateTimeEdit*>(qlumCreateValueEditor(value, QlumValueContext(), &window));
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(time->text(), "2024-01-31T12:34:56.789Z");
}

TEST(ValueEditor, AValueStillToBeGivenIsNoneUntilTheUserEntersOne)
{
    QWidget window;
    UaVariant result;
    UaEnumDefinition colors(UaString("Colors"), UaNodeId(3000, 2));
    colors.addValue(1, UaString("Red"));
    for (const auto& [type, definition] :
         {std::pair{OpcUaType_Boolean, UaEnumDefinition()}, std::pair{OpcUaType_Int32, colors},
          std::pair{OpcUaType_Double, UaEnumDefinition()},
          std::pair{OpcUaType_DateTime, UaEnumDefinition()}}) {
        const QWidget* editor = qlumCreateValueEditor(UaVariant(), typed(type, definition), &window);
        ASSERT_NE(editor, nullptr) << type;
        EXPECT_FALSE(qlumValueFromEditor(editor, result)) << type;
        EXPECT_EQ(qlumEditorFault(editor), "") << type;
    }
    auto* number =
        qobject_cast<QLineEdit*>(qlumCreateValueEditor(UaVariant(), typed(OpcUaType_Int16), &window));
    ASSERT_NE(number, nullptr);
    number->setText("40000");
    EXPECT_EQ(qlumEditorFault(number), "'40000' is no Int16. It takes: -32768 to 32767");
    number->setText("4");
    EXPECT_EQ(qlumEditorFault(number), "");
    ASSERT_TRUE(qlumValueFromEditor(number, result));
    EXPECT_EQ(result, UaVariant(OpcUa_Int16{4}));
}

TEST(ValueEditor, NoneWhereALineWouldLoseSomething)
{
    QWidget window;
    UaVariant array;
    array.setInt32Array(UaArray<OpcUa_Int32>(2));
    EXPECT_EQ(qlumCreateValueEditor(array, QlumValueContext(), &window), nullptr);
    EXPECT_EQ(qlumCreateValueEditor(UaVariant("a\nb"), QlumValueContext(), &window), nullptr);
    EXPECT_EQ(qlumCreateValueEditor(UaVariant(UaExtensionObject()), QlumValueContext(), &window), nullptr);
    EXPECT_EQ(qlumCreateValueEditor(UaVariant(), QlumValueContext(), &window), nullptr);
}
} // namespace
