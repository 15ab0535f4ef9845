// What is read of a node besides the attributes that all nodes of its class have.
#include <plugins/attributes/qlumattributemodel.h>
#include <tests/gui/attributes/attributepluginfixture.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTest>

#include <initializer_list>
#include <span>
#include <string>
#include <utility>

namespace {
UaVariant structure(const char* type, std::initializer_list<std::pair<const char*, UaVariant>> fields)
{
    UaGenericStructureValue value(uaNamespaceZeroStructure(uaNamespaceZeroDataType(type)));
    for (const auto& [name, field] : fields)
        EXPECT_TRUE(value.setField(UaString(name), field).isGood()) << name;
    UaExtensionObject object;
    EXPECT_TRUE(value.encode(object).isGood()) << type;
    return UaVariant(object);
}

UaVariant text(const char* words)
{
    return UaVariant(UaLocalizedText(UaString("en"), UaString(words)));
}

class AttributeDetails : public AttributePlugin
{
protected:
    void set(OpcUa_UInt32 attribute, const UaVariant& value)
    {
        services->attributes[{node(1), attribute}] = value;
    }
    void describe(const char* property, const UaVariant& value)
    {
        const UaNodeId id(UaString(property), 2);
        services->properties[property] = id;
        services->attributes[{id, OpcUa_Attributes_Value}] = value;
    }
    // The rows behind those of every node, once there are so many; "Name: text".
    QStringList rowsFrom(const QModelIndex& parent, int first, int count)
    {
        const auto& model = *plugin.model();
        EXPECT_TRUE(QTest::qWaitFor([&] { return model.rowCount(parent) >= first + count; }));
        QStringList rows;
        for (int row = first; row < model.rowCount(parent); ++row)
            rows.append(model.index(row, 0, parent).data().toString() + ": " +
                        model.index(row, 1, parent).data().toString());
        return rows;
    }
    QModelIndex value() const { return plugin.model()->index(7, 0); }
};

TEST_F(AttributeDetails, WhatOnlySomeServersHaveIsNotLeftOut)
{
    UaVariant roles;
    const UaVariant role = structure("RolePermissionType", {{"RoleId", UaVariant(UaNodeId(15644))},
                                                            {"Permissions", UaVariant(OpcUa_UInt32{1})}});
    ASSERT_EQ(roles.setArray(OpcUaType_ExtensionObject, std::span(&role, 1)), OpcUa_Good);
    set(OpcUa_Attributes_UserRolePermissions, roles);
    set(OpcUa_Attributes_AccessRestrictions, UaVariant(OpcUa_UInt16{5}));
    set(OpcUa_Attributes_AccessLevelEx, UaVariant(OpcUa_UInt32{0x1403}));
    select(1);
    EXPECT_EQ(rowsFrom({}, 15, 3),
              (QStringList{"UserRolePermissions: RolePermissionType Array[1]",
                           "AccessRestrictions: SigningRequired, SessionRequired",
                           "AccessLevelEx: CurrentRead, CurrentWrite, WriteFullArrayOnly, NonVolatile"}))
        << "no row for what the node lacks";
    auto& model = *plugin.model();
    const QModelIndex row = model.index(15, 0);
    model.fetchMore(row);
    EXPECT_EQ(modelText(model, row), "[0] | RolePermissionType\n"
                                     "  RoleId | i=15644\n"
                                     "    NamespaceIndex | 0\n"
                                     "    IdentifierType | Numeric\n"
                                     "    Identifier | 15644\n"
                                     "  Permissions | Browse (1)\n");
    EXPECT_FALSE(model.flags(model.index(16, 1)) & Qt::ItemIsEditable);
}

TEST_F(AttributeDetails, ANumberIsNotShownWithoutItsUnitAndRange)
{
    set(OpcUa_Attributes_Value, UaVariant(21.5));
    describe("EngineeringUnits", structure("EUInformation", {{"DisplayName", text("\xC2\xB0"
                                                                                  "C")},
                                                             {"Description", text("degree Celsius")}}));
    describe("EURange", structure("Range", {{"Low", UaVariant(-10.0)}, {"High", UaVariant(120.5)}}));
    describe("InstrumentRange", UaVariant("no range")); // of a server that has it wrong
    select(1);
    ASSERT_TRUE(waitFor(1));
    const QStringList details{"Type: Double",
                              "Unit: \u00B0"
                              "C (degree Celsius)",
                              "Range: -10 to 120.5"};
    EXPECT_EQ(rowsFrom(value(), 6, 3), details);
    plugin.model()->showValue(5, node(1), UaDataValue(UaVariant(22.5))); // that was watched
    EXPECT_EQ(value().data().toString(), "Value");
    EXPECT_EQ(rowsFrom(value(), 0, 1).first(), "Value: 22.5");
    EXPECT_EQ(rowsFrom(value(), 6, 3), details);
}

TEST_F(AttributeDetails, AStateIsNotShownWithoutItsText)
{
    set(OpcUa_Attributes_Value, UaVariant(OpcUa_UInt32{1}));
    UaVariant texts;
    const UaVariant names[] = {text("Manual"), text("Automatic")};
    ASSERT_EQ(texts.setArray(OpcUaType_LocalizedText, names), OpcUa_Good);
    describe("EnumStrings", texts);
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(rowsFrom(value(), 6, 3),
              (QStringList{"Type: UInt32", "Meaning: Automatic", "Texts: 0 = Manual, 1 = Automatic"}));
    services->properties.clear();
    set(OpcUa_Attributes_Value, UaVariant(false));
    describe("TrueState", text("open"));
    describe("FalseState", text("closed"));
    select(2);
    ASSERT_TRUE(waitFor(2));
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(rowsFrom(value(), 6, 3),
              (QStringList{"Type: Boolean", "Meaning: closed", "Texts: false = closed, true = open"}));
}

TEST_F(AttributeDetails, AnArraysTypeNamesItsStructureAndAMatrixItsLengths)
{
    UaVariant ranges;
    const UaVariant range = structure("Range", {});
    ASSERT_EQ(ranges.setArray(OpcUaType_ExtensionObject, std::span(&range, 1)), OpcUa_Good);
    set(OpcUa_Attributes_Value, ranges);
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(rowsFrom(value(), 6, 1), QStringList{"Type: Range Array[1]"});
    UaVariant matrix;
    matrix.setInt32Array(UaInt32Array(6));
    const OpcUa_Int32 shape[] = {2, 3};
    ASSERT_EQ(matrix.setDimensions(shape), OpcUa_Good);
    services->attributes[{node(2), OpcUa_Attributes_Value}] = matrix;
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(rowsFrom(value(), 6, 1), QStringList{"Type: Int32 Matrix [2][3]"});
}
} // namespace
