#include <plugins/attributes/qlumattributemodel.h>
#include <tests/gui/attributes/attributefixture.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QModelIndex>
#include <QSignalSpy>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace {
class AttributeWriting : public AttributeFixture
{
protected:
    bool writeText(const QModelIndex& index, const char* text)
    {
        return model.setData(index, text, Qt::EditRole);
    }
    const UaVariant& last() const { return services->written.back(); }
    static UaVariant numbersFrom(OpcUa_Int32 first)
    {
        UaInt32Array numbers(3);
        for (OpcUa_UInt32 i = 0; i < numbers.length(); ++i)
            numbers[i] = first + static_cast<OpcUa_Int32>(i);
        UaVariant value;
        value.setInt32Array(numbers);
        return value;
    }
    static UaVariant matrix(OpcUa_Int32 rows, OpcUa_Int32 columns)
    {
        const std::vector<UaVariant> zeros(static_cast<std::size_t>(rows * columns), UaVariant(0.0));
        const OpcUa_Int32 dimensions[] = {rows, columns};
        UaVariant value;
        EXPECT_TRUE(OpcUa_IsGood(value.setArray(OpcUaType_Double, zeros)));
        EXPECT_TRUE(OpcUa_IsGood(value.setDimensions(dimensions)));
        return value;
    }
};

TEST_F(AttributeWriting, TextsBecomeTheTypeOfTheValue)
{
    showValue(UaVariant(OpcUa_Int16{5}), UaNodeId(4));
    EXPECT_TRUE(model.flags(valueRow()) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.flags(valueRow().siblingAtColumn(0)) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.flags(model.index(1, 1)) & Qt::ItemIsEditable);
    ASSERT_TRUE(writeText(valueRow(), "-12"));
    EXPECT_EQ(last(), UaVariant(OpcUa_Int16{-12}));
    EXPECT_TRUE(application.texts().contains("Write to node 'ns=2;i=7' succeeded [ret = Good]."));
    EXPECT_EQ(application.selections, QStringList{"5 ns=2;i=7"}) << "so that views read it again";
    EXPECT_FALSE(writeText(valueRow(), "70000"));
    EXPECT_FALSE(writeText(valueRow(), "many"));
    EXPECT_EQ(application.entries().last().text, "Could not convert value to variant type Int16");
    EXPECT_EQ(application.entries().last().level, 100);
    EXPECT_EQ(services->written.size(), 1u);
    EXPECT_FALSE(model.setData(valueRow().siblingAtColumn(0), "1", Qt::EditRole));
    EXPECT_FALSE(model.setData(model.index(1, 1), "1", Qt::EditRole)) << "not part of the value";
}

TEST_F(AttributeWriting, AVariantIsWrittenAsItIs)
{
    showValue(UaVariant(OpcUa_Int16{5}));
    EXPECT_TRUE(model.setData(valueRow(), QVariant::fromValue(UaVariant("other type")), Qt::UserRole));
    EXPECT_EQ(last(), UaVariant("other type"));
    EXPECT_TRUE(model.setData(valueRow(), 3, Qt::UserRole));
    EXPECT_TRUE(last().isNull());
    EXPECT_EQ(valueRow().data(Qt::UserRole).value<UaVariant>(), UaVariant(OpcUa_Int16{5}));
    EXPECT_FALSE(model.index(1, 1).data(Qt::UserRole).isValid());
}

TEST_F(AttributeWriting, FailuresAreToldAndNothingIsWrittenWithoutASession)
{
    const QSignalSpy failed(&model, &QlumAttributeModel::writeFailed);
    const QSignalSpy written(&model, &QlumAttributeModel::written);
    showValue(UaVariant(1.0));
    services->writeResult = OpcUa_BadUserAccessDenied;
    EXPECT_FALSE(writeText(valueRow(), "2"));
    EXPECT_EQ(application.texts().last(), "Write to node 'ns=2;i=7' failed [ret = BadUserAccessDenied].");
    services->callStatus = OpcUa_BadConnectionClosed;
    EXPECT_FALSE(writeText(valueRow(), "2"));
    EXPECT_EQ(application.texts().last(), "Write failed [ret = BadConnectionClosed].");
    EXPECT_FALSE(writeText(valueRow(), "two"));
    ASSERT_EQ(failed.count(), 3);
    EXPECT_EQ(failed.at(0).at(0).toString(),
              "BadUserAccessDenied: the user who is logged in may not write it");
    EXPECT_EQ(failed.at(1).at(0).toString(),
              "BadConnectionClosed: the connection was closed while the call was under way");
    EXPECT_EQ(failed.at(2).at(0).toString(), "Could not convert value to variant type Double");
    services->callStatus = 0;
    services->writeResult = 0;
    EXPECT_TRUE(writeText(valueRow(), "2"));
    EXPECT_EQ(written.count(), 1);
    services.reset();
    EXPECT_FALSE(writeText(valueRow(), "2"));
}

TEST_F(AttributeWriting, OneElementOfAnArray)
{
    UaVariant value;
    showValue(numbersFrom(1));
    EXPECT_FALSE(writeText(valueRow(), "5")) << "one number must not replace three";
    ASSERT_TRUE(writeText(below(fetched(valueRow()), 1), "2"));
    EXPECT_EQ(last().elementCount(), 1u);
    EXPECT_EQ(last().at(0), UaVariant(OpcUa_Int32{2}));
    EXPECT_EQ(services->writtenTo.last(), "13 1");
    EXPECT_EQ(qlumElementRange(matrix(2, 3), 4, UaVariant(1.0), value), UaString("1,1"));
    EXPECT_TRUE(value.isMatrix()) << "of one element";
}

// With its other elements as they are now, not as they were shown.
TEST_F(AttributeWriting, OneElementOfAnArrayThatIsTakenAsAWholeOnly)
{
    showValue(numbersFrom(1));
    services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_Value}] = numbersFrom(11);
    services->rangeResult = OpcUa_BadWriteNotSupported;
    const QSignalSpy remarked(&model, &QlumAttributeModel::remarked);
    ASSERT_TRUE(writeText(below(fetched(valueRow()), 1), "2"));
    EXPECT_EQ(last().at(0), UaVariant(OpcUa_Int32{11}));
    EXPECT_EQ(last().at(1), UaVariant(OpcUa_Int32{2}));
    EXPECT_EQ(remarked.count(), 1);
}

TEST_F(AttributeWriting, WhatCameBackDifferentIsToldAndUndoneUntilTheNodeChanges)
{
    const QSignalSpy remarked(&model, &QlumAttributeModel::remarked);
    showValue(UaVariant(1.0));
    ASSERT_TRUE(writeText(valueRow(), "2.25"));
    showValue(UaVariant(2.0));
    ASSERT_EQ(remarked.count(), 1);
    EXPECT_EQ(remarked.at(0).at(0).toString(),
              "2.25 was written, and the server has taken it, but 2 was read "
              "back.");
    ASSERT_TRUE(model.undo());
    EXPECT_EQ(last(), UaVariant(1.0));
    EXPECT_FALSE(model.canUndo());
    ASSERT_TRUE(writeText(valueRow(), "3"));
    EXPECT_TRUE(model.canUndo());
    model.clear();
    EXPECT_FALSE(model.canUndo());
}

TEST_F(AttributeWriting, OtherAttributesAreWrittenAsTheirMaskAllows)
{
    show(OpcUa_NodeClass_Object,
         {{OpcUa_Attributes_DisplayName, UaDataValue(UaVariant(UaLocalizedText("en", "Pump")))},
          {OpcUa_Attributes_Description, UaDataValue(UaVariant(UaLocalizedText("en", "old")))},
          {OpcUa_Attributes_EventNotifier, UaDataValue(UaVariant(OpcUa_Byte{0}))},
          {OpcUa_Attributes_UserWriteMask,
           UaDataValue(UaVariant(OpcUa_UInt32{OpcUa_AttributeWriteMask_Description |
                                              OpcUa_AttributeWriteMask_EventNotifier}))}});
    EXPECT_FALSE(model.flags(model.index(0, 1)) & Qt::ItemIsEditable);
    ASSERT_TRUE(model.setData(model.index(1, 1), QVariant::fromValue(UaVariant(UaLocalizedText("en", "new"))),
                              QlumAttributeModel::PartRole));
    EXPECT_EQ(services->writtenTo.last(), "5");
    EXPECT_EQ(last(), UaVariant(UaLocalizedText("en", "new")));
    ASSERT_TRUE(writeText(model.index(2, 1), "1"));
    EXPECT_EQ(services->writtenTo.last(), "12");
    EXPECT_EQ(last(), UaVariant(OpcUa_Byte{1}));
}

TEST_F(AttributeWriting, OneFieldOfAStructureInAnArray)
{
    UaStructureDefinition point(UaString("Point"), UaNodeId(1, 2), UaNodeId(2, 2));
    point.addField(UaStructureField(UaString("x"), UaNodeId(11), OpcUaType_Double));
    point.addField(UaStructureField(UaString("id"), UaNodeId(17), OpcUaType_NodeId));
    services->structures[UaNodeId(2, 2)] = point;
    UaExtensionObjectArray points(2);
    for (OpcUa_UInt32 i = 0; i < 2; ++i) {
        UaExtensionObject object;
        ASSERT_TRUE(UaGenericStructureValue(point).encode(object).isGood());
        EXPECT_TRUE(OpcUa_IsGood(object.copyTo(&points[i])));
    }
    UaVariant value;
    value.setExtensionObjectArray(points);
    showValue(value);
    const QModelIndex second = below(fetched(valueRow()), 1);
    const QSignalSpy failed(&model, &QlumAttributeModel::writeFailed);
    services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_Value}] = numbersFrom(1);
    EXPECT_FALSE(writeText(below(second, 0), "4.5")) << "somebody else has changed it";
    EXPECT_EQ(failed.count(), 1);
    EXPECT_TRUE(services->written.empty());
    services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_Value}] = value;
    ASSERT_TRUE(writeText(below(second, 0), "4.5"));
    UaGenericStructureValue written;
    ASSERT_TRUE(written.decode(last().at(1).toExtensionObject(), point).isGood());
    EXPECT_EQ(written.value(0), UaVariant(4.5));
    ASSERT_TRUE(written.decode(last().at(0).toExtensionObject(), point).isGood());
    EXPECT_EQ(written.value(0), UaVariant(0.0));
    EXPECT_FALSE(writeText(below(below(second, 1), 0), "3")) << "a part of a node id is no value of its own";
}

TEST_F(AttributeWriting, ANodeWithoutAValueGetsOneOfItsDataType)
{
    showValue(UaVariant(), UaNodeId(11));
    ASSERT_TRUE(writeText(valueRow(), "1.5"));
    EXPECT_EQ(last(), UaVariant(1.5));
}
} // namespace
