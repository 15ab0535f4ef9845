#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/tableservices.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumdefaultvalue.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <QComboBox>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {
UaVariant range(double low, double high)
{
    UaGenericStructureValue fields(uaNamespaceZeroStructure(UaNodeId(OpcUaId_Range)));
    EXPECT_TRUE(fields.setField(0, UaVariant(low)).isGood());
    EXPECT_TRUE(fields.setField(1, UaVariant(high)).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(fields.encode(object).isGood());
    return UaVariant(object);
}

class ContextReader : public testing::Test
{
protected:
    void property(OpcUa_UInt32 id, const char* name, const UaVariant& value)
    {
        services->table.variable(UaNodeId(id, 2), name, value, UaNodeId());
        // properties of the standard have its namespace
        services->table.setAttribute(UaNodeId(id, 2), OpcUa_Attributes_BrowseName,
                                     UaDataValue(UaVariant(UaQualifiedName(UaString(name), 0))));
        services->table.reference(speed, UaNodeId(OpcUaId_HasProperty), UaNodeId(id, 2));
    }
    QlumValueContext read(const UaVariant& expected = UaVariant(1.5))
    {
        QlumContextReader reader(services, QlumSessionServices::Settings());
        std::vector<QlumValueContext> contexts;
        UaDataValues values;
        EXPECT_TRUE(reader.read(std::vector{speed}, contexts, &values).isGood());
        EXPECT_EQ(UaVariant(values[0].Value), expected);
        return contexts.empty() ? QlumValueContext() : contexts.front();
    }

    const UaNodeId speed{1, 2};
    std::shared_ptr<TableServices> services = std::make_shared<TableServices>();
};
} // namespace

// Who opens an editor waits for it.
TEST_F(ContextReader, LearnsOfAVariableOfAKnownTypeByTwoCalls)
{
    services->table.variable(speed, "Speed", UaVariant(1.5));
    services->table.setAttribute(speed, OpcUa_Attributes_DataType,
                                 UaDataValue(UaVariant(UaNodeId(OpcUaId_Duration))));
    services->table.setAttribute(speed, OpcUa_Attributes_UserAccessLevel,
                                 UaDataValue(UaVariant(OpcUa_Byte{OpcUa_AccessLevelType_CurrentRead})));
    property(2, "EURange", range(0, 100));
    property(3, "InstrumentRange", range(5, -5));
    services->setTypeName(UaNodeId(OpcUaId_Duration), "Duration");
    const QlumValueContext context = read();
    EXPECT_EQ(services->calls(NodeTable::Read) + services->calls(NodeTable::Translate), 2);
    EXPECT_EQ(context.builtInType, OpcUaType_Double);
    EXPECT_EQ(context.typeName(context.dataType), "Duration");
    ASSERT_TRUE(context.euRange);
    EXPECT_EQ(context.euRange->high, 100);
    EXPECT_FALSE(context.instrumentRange) << "its ends are the wrong way round";
    EXPECT_TRUE(context.accessFault.contains("UserAccessLevel"));
}

// Neither is an enumeration by its data type, and the numbers may be of any whole type.
TEST_F(ContextReader, StatesAreChosenByTheNamesThatTheVariableGivesThem)
{
    const std::vector<UaVariant> names{UaVariant(UaLocalizedText(UaString(), UaString("Off"))),
                                       UaVariant(UaLocalizedText(UaString(), UaString("Hand")))};
    UaVariant strings;
    ASSERT_EQ(strings.setArray(OpcUaType_LocalizedText, names), OpcUa_Good);
    QWidget window;
    const auto edit = [&](const UaVariant& value) {
        services->table.variable(speed, "Switch", value);
        return qobject_cast<QComboBox*>(qlumCreateValueEditor(value, read(value), &window));
    };
    property(2, "EnumStrings", strings);
    QComboBox* box = edit(UaVariant(OpcUa_UInt16{7}));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->currentText(), "7") << "without a name it is still what it is";
    UaVariant chosen;
    box->setCurrentText("Hand (1)");
    ASSERT_TRUE(qlumValueFromEditor(box, chosen));
    EXPECT_EQ(chosen, UaVariant(OpcUa_UInt16{1}));
    EXPECT_EQ(qlumEditorCheck(box).text(), "");
    box->setCurrentText("5");
    EXPECT_EQ(qlumEditorCheck(box).refused, "");
    EXPECT_EQ(qlumEditorCheck(box).unusual, "The variable has no name for 5.");
    services = std::make_shared<TableServices>();
    property(2, "TrueState", UaVariant(UaLocalizedText(UaString(), UaString("open"))));
    box = edit(UaVariant(false));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->itemText(0), "false");
    EXPECT_EQ(box->itemText(1), "open (true)");
    box->setCurrentIndex(1);
    ASSERT_TRUE(qlumValueFromEditor(box, chosen));
    EXPECT_EQ(chosen, UaVariant(true));
}

TEST_F(ContextReader, TakesDefinitionsAlongEvenOfTypesThatHoldThemselves)
{
    const UaNodeId type(100, 2);
    UaStructureDefinition tree(UaString("Tree"), type, UaNodeId(101, 2));
    tree.addField(UaStructureField(UaString("Text"), UaNodeId(OpcUaId_String), OpcUaType_String));
    tree.addField(UaStructureField(UaString("Children"), type, OpcUaType_ExtensionObject, 1));
    services->structures[type] = tree;
    services->structures[UaNodeId(101, 2)] = tree;
    QlumValueFacts facts;
    facts.dataType = type;
    facts.valueRank = -1;
    QlumContextReader reader(services, QlumSessionServices::Settings());
    const QlumValueContext context = reader.of(facts);
    services.reset();
    EXPECT_EQ(context.builtInType, OpcUaType_ExtensionObject);
    EXPECT_EQ(context.dictionary->structureDefinition(type).fieldCount(), 2);
    UaGenericStructureValue fields;
    EXPECT_TRUE(fields.decode(qlumDefaultValue(context).toExtensionObject(), tree, context.dictionary.get())
                    .isGood());
}
