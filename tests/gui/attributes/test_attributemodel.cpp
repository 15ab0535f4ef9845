#include <opcua/opcua_identifiers.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <tests/gui/attributes/attributefixture.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModelTester>
#include <QColor>
#include <QDate>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>
#include <QModelIndex>
#include <QPalette>
#include <QString>
#include <QStringList>
#include <QTime>

#include <limits>
#include <span>
#include <string>

namespace {
class AttributeModel : public AttributeFixture
{
protected:
    static UaDataValue bad(OpcUa_StatusCode code) { return UaDataValue(UaVariant(), code); }
    static UaDataValue byte(unsigned char value) { return UaDataValue(UaVariant(OpcUa_Byte{value})); }
    QColor colorOf(int row) const { return model.index(row, 1).data(Qt::ForegroundRole).value<QColor>(); }
};

TEST_F(AttributeModel, AttributesOfEachClass)
{
    const struct
    {
        int nodeClass;
        const char* ids;
    } cases[] = {{1, "12"},
                 {2, "13 14 15 16 17 18 19 20"},
                 {4, "21 22"},
                 {8, "8"},
                 {16, "13 14 15 16 8"},
                 {32, "8 9 10"},
                 {64, "8"},
                 {128, "11 12"},
                 {0, ""},
                 {3, ""}};
    for (const auto& test : cases) {
        QStringList ids;
        for (const int id : qlumAttributesOf(static_cast<OpcUa_NodeClass>(test.nodeClass)))
            ids.append(QString::number(id));
        EXPECT_EQ(ids.join(' ').toStdString(),
                  (std::string("1 2 3 4 5 6 7 ") + test.ids).substr(0, ids.join(' ').size()))
            << test.nodeClass;
        EXPECT_EQ(ids.mid(7).join(' ').toStdString(), test.ids) << test.nodeClass;
    }
}

TEST_F(AttributeModel, CommonAttributesOfAnObject)
{
    show(OpcUa_NodeClass_Object,
         {{1, UaDataValue(UaVariant(UaNodeId(UaString("abc"), 2)))},
          {2, UaDataValue(UaVariant(OpcUa_Int32{1}))},
          {3, UaDataValue(UaVariant(UaQualifiedName(UaString("Boiler"), 2)))},
          {4, UaDataValue(UaVariant(UaLocalizedText(UaString("en"), UaString("The \"boiler\""))))},
          {5, bad(OpcUa_BadAttributeIdInvalid)},
          {6, UaDataValue(UaVariant(OpcUa_UInt32{0}))},
          {12, byte(0x0D)}});
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(modelText(model), "NodeId | ns=2;s=abc\n"
                                "  NamespaceIndex | 2\n"
                                "  IdentifierType | String\n"
                                "  Identifier | abc\n"
                                "NodeClass | Object\n"
                                "BrowseName | 2, \"Boiler\"\n"
                                "DisplayName | \"en\", \"The \"boiler\"\"\n"
                                "Description | BadAttributeIdInvalid (0x80350000)\n"
                                "WriteMask | 0\n"
                                "EventNotifier | SubscribeToEvents, HistoryRead, HistoryWrite\n");
}

TEST_F(AttributeModel, MasksAndMistypedCodes)
{
    show(OpcUa_NodeClass_Variable, {{17, byte(0)},
                                    {17, byte(0x13)},
                                    {18, byte(0x13)},
                                    {18, byte(0x10)},
                                    {12, byte(2)},
                                    {2, UaDataValue(UaVariant(OpcUa_UInt32{1}))},
                                    {17, UaDataValue(UaVariant(true))},
                                    {14, UaDataValue(UaVariant("x"))},
                                    {2, UaDataValue(UaVariant(OpcUa_Int32{3}))}});
    EXPECT_EQ(modelText(model), "AccessLevel | None\n"
                                "AccessLevel | CurrentRead, CurrentWrite, SemanticChange\n"
                                "UserAccessLevel | CurrentRead, CurrentWrite\n"
                                "UserAccessLevel | None\n"
                                "EventNotifier | None\n"
                                "NodeClass | Invalid Datatype: Expected OpcUaType_Int32, Received UInt32\n"
                                "AccessLevel | Invalid Datatype: Expected OpcUaType_Byte, Received Boolean\n"
                                "DataType | Invalid Datatype: Expected OpcUaType_NodeId, Received String\n"
                                "NodeClass | Invalid NodeClass\n");
    EXPECT_EQ(colorOf(5), QColor("red"));
    EXPECT_EQ(colorOf(8), QGuiApplication::palette().color(QPalette::Text));
}

TEST_F(AttributeModel, ColoursFollowTheStatus)
{
    const UaVariant number(OpcUa_Int32{1});
    show(OpcUa_NodeClass_Variable, {{5, bad(OpcUa_BadAttributeIdInvalid)},
                                    {3, bad(OpcUa_BadAttributeIdInvalid)},
                                    {5, bad(OpcUa_BadUserAccessDenied)},
                                    {15, UaDataValue(number, OpcUa_UncertainInitialValue)},
                                    {15, UaDataValue(number)}});
    QColor grey = QGuiApplication::palette().color(QPalette::Text);
    const QColor text = grey;
    grey.setAlpha(grey.alpha() - 150);
    EXPECT_EQ(colorOf(0), grey);
    EXPECT_EQ(colorOf(1), QColor("red"));
    EXPECT_EQ(colorOf(2), QColor("red"));
    EXPECT_EQ(colorOf(3), QColor("darkorange"));
    EXPECT_EQ(colorOf(4), text);
    showValue(number, UaNodeId(), OpcUa_BadOutOfService);
    EXPECT_EQ(valueRow().data(Qt::ForegroundRole).value<QColor>(), QColor("red"));
}

TEST_F(AttributeModel, ValueWithItsTimes)
{
    UaDataValue value(UaVariant(2.5), OpcUa_UncertainInitialValue);
    value.setSourceTimestamp(UaDateTime::fromString("2026-11-21T10:15:30.123Z"), 7);
    show(OpcUa_NodeClass_Variable, {{13, value}});
    const QString time = qlumShowDateTime(QDateTime(QDate(2026, 11, 21), QTime(10, 15, 30, 123), Qt::UTC));
    EXPECT_TRUE(time.contains("15:30.123")) << time;
    EXPECT_EQ(modelText(model), "Value\n"
                                "  Value | 2.5\n"
                                "  StatusCode | UncertainInitialValue (0x40920000)\n"
                                "  SourceTimestamp | " +
                                    time.toStdString() +
                                    "\n"
                                    "    UTC | 2026-11-21T10:15:30.123Z\n"
                                    "  SourcePicoseconds | 7\n"
                                    "  ServerTimestamp\n"
                                    "  ServerPicoseconds | 0\n");
}

TEST_F(AttributeModel, ScalarsOfEveryType)
{
    const OpcUa_Byte bytes[] = {0x0A, 0xFF};
    UaVariant xml;
    xml.setXmlElement(UaByteString(3, reinterpret_cast<const OpcUa_Byte*>("<a>")));
    const struct
    {
        UaVariant value;
        const char* text;
    } cases[] = {
        {UaVariant(), "Null"},
        {UaVariant(true), "true"},
        {UaVariant(OpcUa_SByte{-128}), "-128"},
        {UaVariant(OpcUa_Byte{255}), "255"},
        {UaVariant(OpcUa_Int16{-1}), "-1"},
        {UaVariant(std::numeric_limits<OpcUa_Int64>::min()), "-9223372036854775808"},
        {UaVariant(std::numeric_limits<OpcUa_UInt64>::max()), "18446744073709551615"},
        {UaVariant(0.1f), "0.1"},
        {UaVariant(0.1), "0.1"},
        {UaVariant(std::numeric_limits<double>::quiet_NaN()), "nan"},
        {UaVariant("text"), "text"},
        {UaVariant(UaDateTime::fromString("2026-11-21T10:15:30.123Z")), "2026-11-21T10:15:30.123Z"},
        {UaVariant(UaGuid::fromString("72962b91-fa75-4ae6-8d28-b404dc7daf63")),
         "72962b91-fa75-4ae6-8d28-b404dc7daf63"},
        {UaVariant(UaByteString(2, bytes)), "len=2, 0x0aff"},
        {UaVariant(UaByteString()), "len=0, 0x (null)"},
        {UaVariant(UaByteString(std::span<const OpcUa_Byte>())), "len=0, 0x (empty)"},
        {UaVariant(UaString()), "(null)"},
        {UaVariant(""), "(empty)"},
        {UaVariant(UaDateTime()), "1601-01-01T00:00:00.000Z (null)"},
        {xml, "<a>"},
        {UaVariant(UaStatusCode(OpcUa_BadTimeout)), "BadTimeout (0x800A0000)"},
        {UaVariant(UaLocalizedText()), "\"\", \"\""},
    };
    for (const auto& test : cases) {
        showValue(test.value);
        EXPECT_EQ(valueRow().data().toString().toStdString(), test.text);
    }
    UaVariant diagnostic;
    diagnostic.setDiagnosticInfo(UaDiagnosticInfo());
    showValue(diagnostic);
    EXPECT_EQ(valueText(), "Null\n");
    OpcUa_DiagnosticInfo info;
    OpcUa_DiagnosticInfo_Initialize(&info);
    info.SymbolicId = 3;
    EXPECT_TRUE(OpcUa_IsGood(UaString("pump 2").copyTo(&info.AdditionalInfo)));
    info.InnerStatusCode = OpcUa_BadTimeout;
    diagnostic.setDiagnosticInfo(UaDiagnosticInfo(info));
    OpcUa_DiagnosticInfo_Clear(&info);
    showValue(diagnostic);
    EXPECT_EQ(valueText(), "pump 2\nSymbolicId | 3\nAdditionalInfo | pump 2\n"
                           "InnerStatusCode | BadTimeout (0x800A0000)\n");
    showValue(UaVariant(UaExpandedNodeId(UaNodeId(4), UaString("urn:x"), 1)));
    EXPECT_EQ(valueText(), "svr=1;nsu=urn:x;i=4\n"
                           "NodeId | i=4\n"
                           "  NamespaceIndex | 0\n"
                           "  IdentifierType | Numeric\n"
                           "  Identifier | 4\n"
                           "NamespaceUri | urn:x\n"
                           "ServerIndex | 1\n");
}

TEST_F(AttributeModel, EnumeratedValues)
{
    showValue(UaVariant(OpcUa_Int32{2}), UaNodeId(3000, 2));
    EXPECT_EQ(valueText(), "Green (2)\n");
    showValue(UaVariant(OpcUa_Int32{7}), UaNodeId(3000, 2));
    EXPECT_EQ(valueText(), "7\n");
    UaInt32Array array(2);
    array[0] = 1;
    UaVariant values;
    values.setInt32Array(array);
    showValue(values, UaNodeId(3000, 2));
    fetched(valueRow());
    EXPECT_EQ(valueText(), "Int32 Array[2]\n[0] | Red (1)\n[1] | 0\n");
}

TEST_F(AttributeModel, ArraysAndMatrices)
{
    UaInt32Array numbers(6);
    for (OpcUa_UInt32 i = 0; i < 6; ++i)
        numbers[i] = static_cast<OpcUa_Int32>(i * 10);
    UaVariant value;
    value.setInt32Array(numbers);
    const OpcUa_Int32 shape[] = {2, 3};
    ASSERT_EQ(value.setDimensions(shape), OpcUa_Good);
    showValue(value);
    fetched(valueRow());
    EXPECT_EQ(valueText(),
              "Int32 Matrix\n[0,0] | 0\n[0,1] | 10\n[0,2] | 20\n[1,0] | 30\n[1,1] | 40\n[1,2] | 50\n");
    value.setInt32Array(UaInt32Array());
    showValue(value);
    EXPECT_EQ(valueText(), "[]\n");
    EXPECT_FALSE(model.hasChildren(valueRow().siblingAtColumn(0)));
    UaVariantArray mixed(2);
    EXPECT_TRUE(OpcUa_IsGood(UaVariant("a").copyTo(&mixed[0])));
    EXPECT_TRUE(OpcUa_IsGood(UaVariant(UaNodeId(1)).copyTo(&mixed[1])));
    value.setVariantArray(mixed);
    showValue(value);
    fetched(valueRow());
    EXPECT_EQ(valueText(),
              "Variant Array[2]\n[0] | a\n[1] | i=1\n  NamespaceIndex | 0\n  IdentifierType | Numeric\n"
              "  Identifier | 1\n");
}

TEST_F(AttributeModel, AMillionElementsComeInPortions)
{
    UaVariant value;
    value.setByteArray(UaByteArray(1000000));
    showValue(value);
    const QModelIndex row = valueRow().siblingAtColumn(0);
    EXPECT_TRUE(model.hasChildren(row));
    EXPECT_EQ(model.rowCount(row), 0);
    model.fetchMore(row);
    EXPECT_EQ(model.rowCount(row), 1000);
    EXPECT_TRUE(model.canFetchMore(row));
    while (model.canFetchMore(row))
        model.fetchMore(row);
    EXPECT_EQ(model.rowCount(row), 1000000);
    EXPECT_EQ(model.index(999999, 0, row).data().toString(), "[999999]");
}

TEST_F(AttributeModel, StructuresOfTheStandardAndUnknownOnes)
{
    OpcUa_Argument argument;
    OpcUa_EncodeableObject_Initialize(&OpcUa_Argument_EncodeableType, &argument);
    EXPECT_TRUE(OpcUa_IsGood(UaString("speed").copyTo(&argument.Name)));
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(11).copyTo(&argument.DataType)));
    argument.ValueRank = -1;
    UaExtensionObject object;
    ASSERT_EQ(object.setDecoded(OpcUa_Argument_EncodeableType, &argument), OpcUa_Good);
    OpcUa_EncodeableObject_Clear(&OpcUa_Argument_EncodeableType, &argument);
    showValue(UaVariant(object));
    EXPECT_EQ(valueText(), "Argument\n"
                           "Name | speed\n"
                           "DataType | i=11\n"
                           "  NamespaceIndex | 0\n"
                           "  IdentifierType | Numeric\n"
                           "  Identifier | 11\n"
                           "ValueRank | -1\n"
                           "ArrayDimensions | []\n"
                           "Description | \"\", \"\"\n");
    const OpcUa_Byte bytes[] = {1, 2};
    showValue(UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(99, 2)), UaByteString(2, bytes))));
    EXPECT_TRUE(valueText().starts_with("ExtensionObject\nTypeId | ns=2;i=99\n")) << valueText();
    EXPECT_TRUE(valueText().ends_with("Body | len=2, 0x0102\n")) << valueText();
}

TEST_F(AttributeModel, OptionalFieldsAndUnions)
{
    UaStructureDefinition optional(UaString("Opt"), UaNodeId(1, 2), UaNodeId(2, 2));
    optional.addField(UaStructureField(UaString("must"), UaNodeId(6), OpcUaType_Int32));
    optional.addField(UaStructureField(UaString("may"), UaNodeId(12), OpcUaType_String, -1, true));
    UaStructureField color(UaString("color"), UaNodeId(3000, 2), OpcUaType_Int32);
    color.setEnumDefinition(application.enumeration);
    optional.addField(color);
    services->structures[UaNodeId(2, 2)] = optional;
    UaGenericStructureValue fields(optional);
    ASSERT_TRUE(fields.setField(2, UaVariant(OpcUa_Int32{1})).isGood());
    UaExtensionObject object;
    ASSERT_TRUE(fields.encode(object).isGood());
    showValue(UaVariant(object));
    EXPECT_EQ(valueText(), "Opt\nmust | 0\nmay | (absent)\ncolor | Red (1)\n");
    EXPECT_LT(below(valueRow(), 1).data(Qt::ForegroundRole).value<QColor>().alpha(), 200);

    UaStructureDefinition either(UaString("Either"), UaNodeId(4, 2), UaNodeId(5, 2));
    either.setUnion(true);
    either.addField(UaStructureField(UaString("number"), UaNodeId(6), OpcUaType_Int32));
    either.addField(UaStructureField(UaString("text"), UaNodeId(12), OpcUaType_String));
    services->structures[UaNodeId(5, 2)] = either;
    UaGenericUnionValue chosen(either);
    ASSERT_TRUE(chosen.setValue(2, UaVariant("abc")).isGood());
    ASSERT_TRUE(chosen.encode(object).isGood());
    showValue(UaVariant(object));
    EXPECT_EQ(valueText(), "Either\nSwitch Field | 2\ntext | abc\n");
    ASSERT_TRUE(UaGenericUnionValue(either).encode(object).isGood());
    showValue(UaVariant(object));
    EXPECT_EQ(valueText(), "Either\nSwitch Field | 0\n");
}

TEST_F(AttributeModel, LongTextsAreCutInTheViewOnly)
{
    showValue(UaVariant(std::string(300, 'x').c_str()));
    EXPECT_EQ(valueRow().data(Qt::DisplayRole).toString(), QString(256, 'x') + "...");
    EXPECT_EQ(valueRow().data(Qt::EditRole).toString(), QString(300, 'x'));
    showValue(UaVariant("<img src=x>\nb"));
    EXPECT_EQ(valueRow().data(Qt::DisplayRole).toString(), "<img src=x> b");
    EXPECT_TRUE(valueRow().data(Qt::ToolTipRole).toString().contains("&lt;img"));
}

TEST_F(AttributeModel, ALaterResultReplacesAllAndClearForgets)
{
    showValue(UaVariant(1.0), UaNodeId(11));
    EXPECT_EQ(model.index(1, 1).data().toString(), "Double (i=11)");
    show(OpcUa_NodeClass_Object, {{1, UaDataValue(UaVariant(UaNodeId(1)))}});
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_TRUE(model.index(0, 0).data(QlumAttributeModel::DataTypeRole).value<UaNodeId>().isNull());
    model.clear();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.serverId(), 0xFFFFFFFFu);
}
} // namespace
