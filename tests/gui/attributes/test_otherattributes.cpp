// Attributes besides the Value are written by their own ids and types, as their node allows.
#include <plugins/attributes/qlumattributedetails.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <tests/gui/attributes/attributefixture.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QModelIndex>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace {
constexpr OpcUa_UInt32 allBits = 0x03FFFFFF;

UaVariant numbers(OpcUa_UInt32 first)
{
    const UaVariant elements[] = {UaVariant(first), UaVariant(OpcUa_UInt32{3})};
    UaVariant value;
    EXPECT_EQ(value.setArray(OpcUaType_UInt32, elements), OpcUa_Good);
    return value;
}

UaVariant permissions(OpcUa_UInt32 mask)
{
    UaGenericStructureValue role(uaNamespaceZeroStructure(uaNamespaceZeroDataType("RolePermissionType")));
    EXPECT_TRUE(role.setField(UaString("RoleId"), UaVariant(UaNodeId(15644))).isGood());
    EXPECT_TRUE(role.setField(UaString("Permissions"), UaVariant(mask)).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(role.encode(object).isGood());
    const UaVariant element(object);
    UaVariant value;
    EXPECT_EQ(value.setArray(OpcUaType_ExtensionObject, std::span(&element, 1)), OpcUa_Good);
    return value;
}

UaVariant definition(bool isUnion)
{
    UaGenericStructureValue fields(uaNamespaceZeroStructure(uaNamespaceZeroDataType("StructureDefinition")));
    EXPECT_TRUE(fields.setField(UaString("StructureType"), UaVariant(OpcUa_Int32{isUnion ? 2 : 0})).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(fields.encode(object).isGood());
    return UaVariant(object);
}

class OtherAttributes : public AttributeFixture
{
protected:
    using Values = std::map<int, UaVariant>;

    // As the server has them: what every node of the class has first, the rest when that is there.
    void showAll(OpcUa_NodeClass nodeClass, Values values)
    {
        Results first;
        QlumAttributeDetails more;
        for (const auto& [id, value] : values) {
            services->attributes[{UaNodeId(7, 2), static_cast<OpcUa_UInt32>(id)}] = value;
            if (qlumFurtherAttributesOf(nodeClass).contains(id))
                more.attributes.emplace_back(id, UaDataValue(value));
            else
                first.append({id, UaDataValue(value)});
        }
        show(nodeClass, first);
        model.addDetails(5, UaNodeId(7, 2), more);
    }
    QModelIndex row(int attributeId) const
    {
        return model
            .match(model.index(0, 0), Qt::DisplayRole, qlumAttributeName(attributeId), 1, Qt::MatchExactly)
            .value(0)
            .siblingAtColumn(1);
    }
    bool mayEdit(int attributeId) const { return model.flags(row(attributeId)) & Qt::ItemIsEditable; }
    bool write(const QModelIndex& index, const UaVariant& part)
    {
        return model.setData(index, QVariant::fromValue(part), QlumAttributeModel::PartRole);
    }
};

TEST_F(OtherAttributes, EachIsSentByItsOwnIdAndType)
{
    const struct
    {
        OpcUa_NodeClass nodeClass;
        int id;
        UaVariant before;
        UaVariant after;
    } all[] = {
        {OpcUa_NodeClass_Object, 3, UaVariant(UaQualifiedName(UaString("P"), 2)),
         UaVariant(UaQualifiedName(UaString("Q"), 3))},
        {OpcUa_NodeClass_Object, 4, UaVariant(UaLocalizedText("en", "Pump")),
         UaVariant(UaLocalizedText("de", "Pumpe"))},
        {OpcUa_NodeClass_Object, 5, UaVariant(UaLocalizedText("en", "old")),
         UaVariant(UaLocalizedText("en", "new"))},
        {OpcUa_NodeClass_Object, 6, UaVariant(OpcUa_UInt32{allBits}), UaVariant(OpcUa_UInt32{32})},
        {OpcUa_NodeClass_ReferenceType, 8, UaVariant(false), UaVariant(true)},
        {OpcUa_NodeClass_ReferenceType, 9, UaVariant(false), UaVariant(true)},
        {OpcUa_NodeClass_ReferenceType, 10, UaVariant(UaLocalizedText("en", "a")),
         UaVariant(UaLocalizedText("en", "b"))},
        {OpcUa_NodeClass_View, 11, UaVariant(false), UaVariant(true)},
        {OpcUa_NodeClass_View, 12, UaVariant(OpcUa_Byte{0}), UaVariant(OpcUa_Byte{5})},
        {OpcUa_NodeClass_Variable, 14, UaVariant(UaNodeId(11)), UaVariant(UaNodeId(3000, 2))},
        {OpcUa_NodeClass_Variable, 15, UaVariant(OpcUa_Int32{-1}), UaVariant(OpcUa_Int32{1})},
        {OpcUa_NodeClass_Variable, 16, numbers(1), numbers(2)},
        {OpcUa_NodeClass_Variable, 17, UaVariant(OpcUa_Byte{1}), UaVariant(OpcUa_Byte{3})},
        {OpcUa_NodeClass_Variable, 19, UaVariant(0.0), UaVariant(250.0)},
        {OpcUa_NodeClass_Variable, 20, UaVariant(false), UaVariant(true)},
        {OpcUa_NodeClass_Method, 21, UaVariant(true), UaVariant(false)},
        {OpcUa_NodeClass_DataType, 23, definition(false), definition(true)},
        {OpcUa_NodeClass_Object, 24, permissions(1), permissions(3)},
        {OpcUa_NodeClass_Object, 26, UaVariant(OpcUa_UInt16{0}), UaVariant(OpcUa_UInt16{3})},
        {OpcUa_NodeClass_Variable, 27, UaVariant(OpcUa_UInt32{1}), UaVariant(OpcUa_UInt32{0x403})},
    };
    for (const auto& [nodeClass, id, before, after] : all) {
        const std::string name = qlumAttributeName(id).toStdString();
        Values values{{id, before}};
        values.try_emplace(OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{qlumWriteMaskBit(id)}));
        showAll(nodeClass, values);
        EXPECT_TRUE(mayEdit(id)) << name;
        services->writtenTo.clear();
        ASSERT_TRUE(write(row(id), after)) << name;
        EXPECT_EQ(services->writtenTo, QStringList{QString::number(id)}) << name;
        EXPECT_EQ(services->written.back(), after) << name;
        EXPECT_EQ(services->written.back().type(), before.type()) << name;
        ASSERT_TRUE(model.undo()) << name;
        EXPECT_EQ(services->written.back(), before) << name;
        EXPECT_EQ(services->writtenTo.last(), QString::number(id)) << name;

        values[OpcUa_Attributes_WriteMask] = UaVariant(OpcUa_UInt32{allBits & ~qlumWriteMaskBit(id)});
        if (id == OpcUa_Attributes_WriteMask)
            continue;
        showAll(nodeClass, values);
        EXPECT_FALSE(mayEdit(id)) << name << " is the one that may not be written";
    }
}

TEST_F(OtherAttributes, TheTwoMasksRestrictEachOther)
{
    using Mask = std::optional<OpcUa_UInt32>;
    const struct
    {
        Mask ofNode, ofUser;
        bool may;
    } masks[] = {{32, {}, true}, {{}, 32, true}, {32, 32, true}, {32, 0, false},
                 {0, 32, false}, {0, {}, false}, {{}, {}, false}};
    for (const auto& [ofNode, ofUser, may] : masks) {
        Values values{{OpcUa_Attributes_Description, UaVariant(UaLocalizedText("en", "old"))}};
        if (ofNode)
            values[OpcUa_Attributes_WriteMask] = UaVariant(*ofNode);
        if (ofUser)
            values[OpcUa_Attributes_UserWriteMask] = UaVariant(*ofUser);
        showAll(OpcUa_NodeClass_Object, values);
        EXPECT_EQ(mayEdit(OpcUa_Attributes_Description), may)
            << ofNode.value_or(99) << " " << ofUser.value_or(99);
    }
}

TEST_F(OtherAttributes, TheValueOfATypeIsWrittenAsTheMasksAllow)
{
    const auto lock = [this](const Values& masks) {
        Results results{{OpcUa_Attributes_Value, UaDataValue(UaVariant(1.5))}};
        for (const auto& [id, mask] : masks)
            results.append({id, UaDataValue(mask)});
        show(OpcUa_NodeClass_VariableType, results);
        return model.lock(valueRow()).toStdString();
    };
    const UaVariant none(OpcUa_UInt32{0});
    const UaVariant all(OpcUa_UInt32{allBits});
    EXPECT_EQ(lock({}), "") << "it may be tried";
    EXPECT_EQ(lock({{OpcUa_Attributes_WriteMask, all}}), "");
    EXPECT_EQ(lock({{OpcUa_Attributes_WriteMask, none}}),
              "Nobody may write it: WriteMask has no ValueForVariableType.");
    EXPECT_EQ(lock({{OpcUa_Attributes_WriteMask, all}, {OpcUa_Attributes_UserWriteMask, none}}),
              "The user who is logged in may not write it: UserWriteMask has no ValueForVariableType.");
}

// The other fields and elements are what the server has, and nobody else's change is taken back.
TEST_F(OtherAttributes, APartOfOneIsWrittenWithTheWholeUnlessThatHasChanged)
{
    const Values values{{OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{allBits})},
                        {OpcUa_Attributes_RolePermissions, permissions(1)},
                        {OpcUa_Attributes_ArrayDimensions, numbers(1)}};
    showAll(OpcUa_NodeClass_Variable, values);
    const QModelIndex mask = below(below(fetched(row(OpcUa_Attributes_RolePermissions)), 0), 1);
    ASSERT_EQ(mask.siblingAtColumn(0).data().toString(), "Permissions");
    ASSERT_TRUE(model.setData(mask, "3", Qt::EditRole));
    EXPECT_EQ(services->writtenTo.last(), "24");
    EXPECT_EQ(services->written.back(), permissions(3));
    ASSERT_TRUE(write(below(fetched(row(OpcUa_Attributes_ArrayDimensions)), 0), UaVariant(OpcUa_UInt32{9})));
    EXPECT_EQ(services->writtenTo.last(), "16") << "without a range";
    EXPECT_EQ(services->written.back(), numbers(9));

    services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_RolePermissions}] = permissions(7);
    const std::size_t before = services->written.size();
    EXPECT_FALSE(model.setData(mask, "5", Qt::EditRole));
    EXPECT_EQ(services->written.size(), before);
    EXPECT_TRUE(application.texts().last().contains("was held back"));
}

TEST_F(OtherAttributes, ARefusalNamesWhatWasSentAndWhatTheAttributeHolds)
{
    showAll(OpcUa_NodeClass_Object, {{OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{allBits})},
                                     {OpcUa_Attributes_AccessRestrictions, UaVariant(OpcUa_UInt16{1})}});
    const QSignalSpy failed(&model, &QlumAttributeModel::writeFailed);
    services->writeResult = OpcUa_BadTypeMismatch;
    EXPECT_FALSE(write(row(OpcUa_Attributes_AccessRestrictions), UaVariant("all")));
    ASSERT_EQ(failed.count(), 1);
    const QString told = failed.at(0).at(0).toString();
    EXPECT_TRUE(told.startsWith("BadTypeMismatch: ") &&
                told.endsWith("Sent was all (String). The attribute holds UInt16."))
        << told.toStdString();
}

TEST_F(OtherAttributes, WhatIsReadLaterIsComparedLater)
{
    const auto showRestrictions = [this](OpcUa_UInt16 value) {
        showAll(OpcUa_NodeClass_Object, {{OpcUa_Attributes_WriteMask, UaVariant(OpcUa_UInt32{allBits})},
                                         {OpcUa_Attributes_AccessRestrictions, UaVariant(value)}});
    };
    showRestrictions(0);
    const QSignalSpy remarked(&model, &QlumAttributeModel::remarked);
    ASSERT_TRUE(write(row(OpcUa_Attributes_AccessRestrictions), UaVariant(OpcUa_UInt16{3})));
    showRestrictions(1);
    ASSERT_EQ(remarked.count(), 1);
    EXPECT_EQ(remarked.at(0).at(0).toString(),
              "3 was written, and the server has taken it, but 1 was read back.");
    showRestrictions(2);
    EXPECT_EQ(remarked.count(), 1) << "somebody else's";
}
} // namespace
