// Pages for single values, and texts that read back as the same value.
#include <app/api/qlumtext.h>
#include <tests/support/modeltext.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericoptionsetvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
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
#include <uawidgets/editors/qlumscalarpage.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedelegate.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QComboBox>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QString>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QWidget>
#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <string>

namespace {
// ---- texts

class Random
{
public:
    OpcUa_UInt64 number() { return m_engine() >> (m_engine() % 64); } // small ones as often as large ones
    std::string text()
    {
        static const char* const parts[] = {"a",     ";",        ":",  "=", "%", " ",
                                            "ns=2;", "\xC3\xA4", "0x", "|", "7"};
        std::string text = "n";
        for (OpcUa_UInt64 i = number() % 8; i > 0; --i)
            text += parts[m_engine() % std::size(parts)];
        return text + "x";
    }
    UaNodeId nodeId()
    {
        const auto index = static_cast<OpcUa_UInt16>(number());
        switch (m_engine() % 4) {
        case 0:
            return UaNodeId(static_cast<OpcUa_UInt32>(number()), index);
        case 1:
            return UaNodeId(UaGuid::create(), index);
        case 2:
            return UaNodeId(bytes(), index);
        default:
            return UaNodeId(UaString(text().c_str()), index);
        }
    }
    UaByteString bytes()
    {
        const std::string content = text();
        return UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(content.data()), content.size()));
    }
    UaVariant value(int type);

private:
    std::mt19937_64 m_engine{15};
};

UaVariant Random::value(int type)
{
    UaVariant value(number());
    switch (type) {
    case OpcUaType_Float:
        return UaVariant(std::bit_cast<float>(static_cast<OpcUa_UInt32>(m_engine() & 0xBF7FFFFFu)));
    case OpcUaType_Double:
        return UaVariant(std::bit_cast<double>(m_engine() & 0xBFEFFFFFFFFFFFFFu));
    case OpcUaType_String:
        return UaVariant(UaString(text().c_str()));
    case OpcUaType_DateTime: // from 1601 to 9999
        return UaVariant(UaDateTime(static_cast<OpcUa_Int64>(m_engine() % 2650467743999999999)));
    case OpcUaType_Guid:
        return UaVariant(UaGuid::create());
    case OpcUaType_ByteString:
        return UaVariant(bytes());
    case OpcUaType_XmlElement:
        value.setXmlElement(bytes());
        return value;
    case OpcUaType_NodeId:
        return UaVariant(nodeId());
    case OpcUaType_ExpandedNodeId:
        return UaVariant(UaExpandedNodeId(UaNodeId(UaString(text().c_str()), 0), UaString(text().c_str()),
                                          static_cast<OpcUa_UInt32>(number())));
    case OpcUaType_StatusCode:
        return UaVariant(UaStatusCode(static_cast<OpcUa_StatusCode>(number())));
    case OpcUaType_QualifiedName:
        return UaVariant(UaQualifiedName(UaString(text().c_str()), static_cast<OpcUa_UInt16>(number())));
    case OpcUaType_LocalizedText:
        return UaVariant(UaLocalizedText(UaString(), UaString(text().c_str())));
    default:
        break;
    }
    // whole numbers, by their bits
    const auto kind = static_cast<OpcUa_BuiltInType>(type);
    if (kind == OpcUaType_Boolean) {
        value.setBool(number() % 2 == 0);
    } else {
        const unsigned width = kind <= OpcUaType_Byte     ? 8
                               : kind <= OpcUaType_UInt16 ? 16
                               : kind <= OpcUaType_UInt32 ? 32
                                                          : 64;
        const OpcUa_UInt64 bits = m_engine() >> (64 - width);
        EXPECT_TRUE(qlumFromNumberText("0x" + QString::number(bits, 16), kind, value));
    }
    return value;
}

TEST(ValueText, AnyValueReadsBackAsItWas)
{
    Random random;
    for (int type = OpcUaType_Boolean; type <= OpcUaType_LocalizedText; ++type)
        for (int round = 0; round < 200; ++round) {
            const UaVariant value = random.value(type);
            ASSERT_EQ(value.type(), type);
            UaVariant read;
            const QString text = qlumEditText(value);
            ASSERT_TRUE(qlumFromEditText(text, value.type(), read)) << text;
            ASSERT_EQ(read, value) << text;
            for (const auto base : {QlumNumberBase::Hexadecimal, QlumNumberBase::Binary})
                if (qlumIsInteger(value.type())) {
                    const QString digits = qlumIntegerText(value, base);
                    ASSERT_TRUE(qlumFromNumberText(digits, value.type(), read)) << digits;
                    ASSERT_EQ(read, value) << digits;
                }
        }
}

TEST(ValueText, NumbersAreReadAsPeopleWriteThem)
{
    UaVariant value;
    ASSERT_TRUE(qlumFromNumberText("010", OpcUaType_Int32, value));
    EXPECT_EQ(value, UaVariant(OpcUa_Int32{10})) << "no octal numbers";
    ASSERT_TRUE(qlumFromNumberText("-0x10", OpcUaType_Int32, value));
    EXPECT_EQ(value, UaVariant(OpcUa_Int32{-16}));
    ASSERT_TRUE(qlumFromNumberText("0b1000 0000", OpcUaType_SByte, value));
    EXPECT_EQ(value, UaVariant(OpcUa_SByte{-128}));
    ASSERT_TRUE(qlumFromEditText("badnotwritable", OpcUaType_StatusCode, value));
    EXPECT_EQ(value, UaVariant(UaStatusCode(OpcUa_BadNotWritable)));
    for (const char* wrong : {"0b2", "0x", "--1", "1 000", "0x1FF", "0x1.5"})
        EXPECT_FALSE(qlumFromNumberText(wrong, OpcUaType_SByte, value)) << wrong;
    EXPECT_FALSE(qlumFromNumberText("18446744073709551616", OpcUaType_UInt64, value));
}

// ---- names

class NamedNumbers : public ::testing::Test
{
protected:
    NamedNumbers()
    {
        UaEnumDefinition states(UaString("State"), UaNodeId(1, 2));
        states.addValue(1, UaString("Running (slow)"));
        states.addValue(2, UaString("7"));
        store->add(states);
        UaOptionSetDefinition rights(UaString("Rights"), UaNodeId(2, 2), OpcUaType_UInt16);
        rights.addBit(0, UaString("Read"));
        rights.addBit(3, UaString("a | b"));
        store->add(rights);
        UaOptionSetDefinition valid(UaString("Valid"), UaNodeId(3, 2), OpcUaType_ExtensionObject);
        valid.addBit(0, UaString("On"));
        valid.addBit(9, UaString("Fast"));
        valid.setBinaryEncodingId(UaNodeId(33, 2));
        store->add(valid);
        context.dictionary = store;
    }
    QTreeWidgetItem* bit(int row) const { return page->findChild<QTreeWidget*>("bits")->topLevelItem(row); }
    void open(OpcUa_UInt32 dataType, OpcUa_BuiltInType type, const UaVariant& value)
    {
        context.dataType = UaNodeId(dataType, 2);
        context.builtInType = type;
        page = std::make_unique<QlumScalarPage>(context);
        page->setValue(value);
    }
    UaVariant entered() const
    {
        UaVariant value;
        EXPECT_TRUE(page->value(value)) << page->fault();
        return value;
    }

    std::shared_ptr<UaTypeDefinitionStore> store = std::make_shared<UaTypeDefinitionStore>();
    QlumValueContext context;
    std::unique_ptr<QlumScalarPage> page;
};

TEST_F(NamedNumbers, EnumerationsAreGivenByNameOrNumberAndUnknownNumbersStay)
{
    open(1, OpcUaType_Int32, UaVariant(OpcUa_Int32{99}));
    auto* names = page->findChild<QComboBox*>("valueEditor");
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(entered(), UaVariant(OpcUa_Int32{99}));
    EXPECT_FALSE(page->isModified());
    const struct
    {
        const char* text;
        OpcUa_Int32 number;
    } cases[] = {{"Running (slow) (1)", 1}, {"Running (slow)", 1}, {"7", 2}, {"8", 8}, {"0x10", 16}};
    for (const auto& test : cases) {
        names->setEditText(test.text);
        EXPECT_EQ(entered(), UaVariant(test.number)) << test.text;
    }
    EXPECT_NE(page->refusal(), "") << "16 has no name";
    names->setEditText("Flying");
    EXPECT_NE(page->fault(), "");
    names->setEditText("4294967296");
    EXPECT_NE(page->fault(), "") << "no Int32";
}

TEST_F(NamedNumbers, AnEnumerationWithoutStringsIsANumber)
{
    store->add(UaEnumDefinition(UaString("Nameless"), UaNodeId(9, 2)));
    open(9, OpcUaType_Int32, UaVariant(OpcUa_Int32{3}));
    auto* number = page->findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(number, nullptr);
    number->setText("-4");
    EXPECT_EQ(entered(), UaVariant(OpcUa_Int32{-4}));
    EXPECT_EQ(page->remark(), "");
}

TEST_F(NamedNumbers, BitsOfAnOptionSetAreTickedAndThoseWithoutANameStay)
{
    open(2, OpcUaType_UInt16, UaVariant(OpcUa_UInt16{0x4001}));
    ASSERT_EQ(bit(2)->text(0), "14 (no name)");
    bit(1)->setCheckState(0, Qt::Checked);
    EXPECT_EQ(entered(), UaVariant(OpcUa_UInt16{0x4009}));
    auto* number = page->findChild<QLineEdit*>("number");
    number->clear();
    QTest::keyClicks(number, "Read | 0x20");
    EXPECT_EQ(entered(), UaVariant(OpcUa_UInt16{0x21}));
    EXPECT_EQ(bit(0)->checkState(0), Qt::Checked);
    EXPECT_EQ(bit(1)->checkState(0), Qt::Unchecked);
    number->clear();
    QTest::keyClicks(number, "0x10000");
    EXPECT_NE(page->fault(), "");
    const UaOptionSetDefinition rights = store->optionSetDefinition(UaNodeId(2, 2));
    for (const OpcUa_UInt64 bits : {0x0u, 0x1u, 0x9u, 0x4009u}) {
        OpcUa_UInt64 read = 1;
        ASSERT_TRUE(qlumFromOptionSetText(qlumOptionSetText(bits, rights), rights, read));
        EXPECT_EQ(read, bits) << "a name with a bar does not tear it apart";
    }
}

TEST_F(NamedNumbers, TheStructuredFormSaysWhichBitsAreValid)
{
    const UaOptionSetDefinition definition = store->optionSetDefinition(UaNodeId(3, 2));
    UaGenericOptionSetValue value(definition);
    ASSERT_TRUE(value.setBit(0, true, true).isGood());
    ASSERT_TRUE(value.setBit(9, false, false).isGood());
    UaVariant encoded;
    ASSERT_TRUE(value.encode(encoded).isGood());
    open(3, OpcUaType_ExtensionObject, encoded);
    EXPECT_EQ(entered(), encoded);
    EXPECT_EQ(bit(1)->checkState(1), Qt::Unchecked);
    bit(1)->setCheckState(0, Qt::Checked);
    UaGenericOptionSetValue now;
    ASSERT_TRUE(now.decode(entered(), definition).isGood());
    EXPECT_TRUE(now.isSet(9));
    EXPECT_TRUE(now.isValid(9)) << "who sets a bit means it";
    // another structure than was declared
    open(3, OpcUaType_ExtensionObject,
         UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(77, 2)), UaByteString(UaByteArray(3)))));
    EXPECT_TRUE(page->findChild<QLabel*>("reason")->text().contains("ns=2;i=77"));
    EXPECT_TRUE(page->findChild<QPlainTextEdit*>("text")->toPlainText().startsWith("00 00 00"));
}

// ---- times and texts

TEST(TimePage, KeepsWhatIsBelowAMillisecondInEitherZone)
{
    QlumScalarPage page{QlumValueContext()};
    const UaDateTime time = UaDateTime::fromString("2026-11-21T10:15:30.1234567Z");
    page.setValue(UaVariant(time));
    auto* field = page.findChild<QDateTimeEdit*>("time");
    auto* fine = page.findChild<QSpinBox*>("fine");
    auto* zone = page.findChild<QComboBox*>("zone");
    UaVariant value;
    EXPECT_EQ(fine->value(), 4567);
    field->setDateTime(field->dateTime().addSecs(1));
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaDateTime::fromString("2026-11-21T10:15:31.1234567Z")));
    zone->setCurrentIndex(1);
    emit zone->activated(1);
    fine->setValue(1);
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaDateTime::fromString("2026-11-21T10:15:31.1230001Z")));
    page.findChild<QPushButton*>("none")->click();
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaDateTime()));
    for (const OpcUa_Int64 odd : {OpcUa_Int64{-5}, std::numeric_limits<OpcUa_Int64>::max()}) {
        page.setValue(UaVariant(UaDateTime(odd)));
        ASSERT_TRUE(page.value(value));
        EXPECT_EQ(value, UaVariant(UaDateTime(odd))) << "what cannot be shown is not changed by looking";
    }
}

TEST(LocalizedTextPage, ChangesTheTextWithoutItsLocaleAndBack)
{
    QlumScalarPage page{QlumValueContext()};
    page.setValue(UaVariant(UaLocalizedText(UaString(), UaString("Kessel"))));
    QTest::keyClicks(page.findChild<QPlainTextEdit*>("text"), "Dampf");
    UaVariant value;
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaLocalizedText(UaString(), UaString("DampfKessel")))) << "null is not empty";
    QTest::keyClicks(page.findChild<QLineEdit*>("locale"), "de");
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaLocalizedText(UaString("de"), UaString("DampfKessel"))));
}

// ---- cells

TEST(ValueDelegate, SendsWhatWillBeRefusedOnTheSecondEnterOnly)
{
    QlumValueContext context;
    context.builtInType = OpcUaType_String;
    context.maxStringLength = 3;
    QWidget table;
    auto* line = qobject_cast<QLineEdit*>(qlumCreateValueEditor(UaVariant("abc"), context, &table));
    ASSERT_NE(line, nullptr);
    QlumValueDelegate delegate;
    line->installEventFilter(&delegate);
    const QSignalSpy told(&delegate, &QlumValueDelegate::refused);
    const QSignalSpy committed(&delegate, &QlumValueDelegate::commitData);
    QTest::keyClicks(line, "d");
    QTest::keyClick(line, Qt::Key_Return);
    ASSERT_EQ(told.count(), 1);
    EXPECT_TRUE(told[0][0].toString().contains("MaxStringLength"));
    QTest::keyClicks(line, "e");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(told.count(), 2) << "another text is warned of anew";
    EXPECT_EQ(committed.count(), 0);
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return committed.count() == 1; }));
}

TEST(ValueCell, NothingThatIsPastedIsCutInSilence)
{
    QWidget table;
    QlumValueContext context;
    context.builtInType = OpcUaType_String;
    auto* line = qobject_cast<QLineEdit*>(qlumCreateValueEditor(UaVariant("a"), context, &table));
    ASSERT_NE(line, nullptr);
    line->insert(QString(5000, 'x'));
    EXPECT_NE(qlumEditorFault(line), "");
    UaVariant value;
    EXPECT_FALSE(qlumValueFromEditor(line, value));
    EXPECT_EQ(qlumWhyNoValueEditor(UaVariant(UaString(std::string(5000, 'x').c_str())), context),
              "It is too long for a line.");
}
} // namespace
