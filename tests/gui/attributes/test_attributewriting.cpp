#include <plugins/attributes/qlumattributedetails.h>
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
#include <QString>
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
    const QSignalSpy old(&model, &QlumAttributeModel::shownIsOld);
    services->callStatus = OpcUa_BadTimeout;
    EXPECT_FALSE(writeText(valueRow(), "2"));
    EXPECT_EQ(old.count(), 1) << "it may have arrived";
    services->callStatus = 0;
    services->writeResult = 0;
    EXPECT_TRUE(writeText(valueRow(), "2"));
    EXPECT_EQ(written.count(), 1);
    services.reset();
    EXPECT_FALSE(writeText(valueRow(), "2"));
}

// Each says what is to be done about it, by the name that support asks for.
TEST_F(AttributeWriting, EveryUsualRefusalIsToldInWords)
{
    const struct
    {
        OpcUa_StatusCode code;
        const char* words;
    } refusals[] = {
        {OpcUa_BadNotWritable, "nobody may write"},
        {OpcUa_BadUserAccessDenied, "user who is logged in may not"},
        {OpcUa_BadTypeMismatch, "another type or shape. Sent was 2.5 (Double). The node declares Double."},
        {OpcUa_BadOutOfRange, "outside what the server allows. Sent was 2.5 (Double)."},
        {OpcUa_BadWriteNotSupported, "cannot write a value of this kind"},
        {OpcUa_BadNodeIdUnknown, "no such node"},
        {OpcUa_BadAttributeIdInvalid, "no such attribute"},
        {OpcUa_BadIndexRangeInvalid, "index range invalid"},
        {OpcUa_BadIndexRangeNoData, "become shorter"},
        {OpcUa_BadInternalError, "error inside"},
        {OpcUa_BadTimeout, "may have been written all the same"},
        {OpcUa_BadSecurityModeInsufficient, "not secure enough"},
        {OpcUa_BadLocked, "locked it"},
        {OpcUa_BadInvalidState, "present state"},
        {OpcUa_BadNoCommunication, "does not reach the device"},
    };
    const QSignalSpy failed(&model, &QlumAttributeModel::writeFailed);
    showValue(UaVariant(1.0), UaNodeId(11));
    QlumAttributeDetails details;
    details.context.dataType = UaNodeId(11);
    details.context.builtInType = OpcUaType_Double;
    model.addDetails(5, UaNodeId(7, 2), details);
    for (const auto& [code, words] : refusals) {
        services->writeResult = code;
        EXPECT_FALSE(writeText(valueRow(), "2.5"));
        const QString told = failed.last().at(0).toString();
        EXPECT_TRUE(told.startsWith(qlumStatusText(code) + ": ") && told.contains(words))
            << told.toStdString();
        EXPECT_EQ(valueRow().data(QlumAttributeModel::FaultRole).toString(), told);
    }
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

    UaVariant shorter;
    shorter.setInt32Array(UaInt32Array(1));
    services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_Value}] = shorter;
    services->written.clear();
    EXPECT_FALSE(writeText(below(fetched(valueRow()), 1), "3")) << "no such element any more";
    EXPECT_TRUE(services->written.empty());
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

// A window in which a value is edited may be open for longer than its node is shown.
TEST_F(AttributeWriting, FromAWindowReachesTheSameNodeOrNone)
{
    showValue(numbersFrom(1));
    const auto writer = model.partWriter(below(fetched(valueRow()), 2));
    ASSERT_TRUE(writer);
    showValue(numbersFrom(1));
    EXPECT_EQ(writer(UaVariant(OpcUa_Int32{5})), QString());
    EXPECT_EQ(services->writtenTo.last(), "13 2");
    services->writeResult = OpcUa_BadOutOfRange;
    services->rangeResult = OpcUa_BadOutOfRange;
    EXPECT_TRUE(writer(UaVariant(OpcUa_Int32{5})).contains("BadOutOfRange"));
    model.setStanding(QlumAttributeModel::Standing::Outdated);
    EXPECT_EQ(writer(UaVariant(OpcUa_Int32{5})), "The server cannot be asked at the moment.");
    model.clear();
    EXPECT_TRUE(writer(UaVariant(OpcUa_Int32{5})).startsWith("Another node is shown by now"));
    EXPECT_EQ(services->written.size(), 1u);
}

// Whoever edits one field in a window must not take back what another client has written meanwhile, even
// when the pane behind it shows that already.
TEST_F(AttributeWriting, AStructureFromAWindowIsRefusedOnceWhenItHasChanged)
{
    UaStructureDefinition point(UaString("Point"), UaNodeId(1, 2), UaNodeId(2, 2));
    point.addField(UaStructureField(UaString("x"), UaNodeId(11), OpcUaType_Double));
    services->structures[UaNodeId(2, 2)] = point;
    const auto at = [&point](double x) {
        UaGenericStructureValue fields(point);
        UaExtensionObject object;
        EXPECT_TRUE(fields.setField(0, UaVariant(x)).isGood());
        EXPECT_TRUE(fields.encode(object).isGood());
        return UaVariant(object);
    };
    UaVariant& onServer = services->attributes[{UaNodeId(7, 2), OpcUa_Attributes_Value}];
    for (const bool isField : {false, true}) {
        onServer = at(1);
        showValue(at(1));
        const auto writer = model.partWriter(isField ? below(valueRow(), 0) : valueRow());
        const UaVariant entered = isField ? UaVariant(3.0) : at(3);
        onServer = at(2);
        showValue(at(2));
        services->written.clear();
        const QSignalSpy old(&model, &QlumAttributeModel::shownIsOld);
        EXPECT_TRUE(writer(entered).contains("changed on the server")) << isField;
        EXPECT_TRUE(services->written.empty()) << isField;
        EXPECT_EQ(application.texts().last(), "Write to node 'ns=2;i=7' was held back: it has changed on the "
                                              "server since it was shown.");
        EXPECT_EQ(old.count(), 1) << "what it is now is to be looked at";
        EXPECT_EQ(writer(entered), QString()) << "the user knows of it now";
        EXPECT_EQ(last(), at(3));
    }
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
