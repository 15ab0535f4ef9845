// Attributes of the second server read and written in the window of the whole client.
#include <app/api/qlummetatypes.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <tests/interop/clientonsecondserver.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <QVariant>
#include <gtest/gtest.h>

#include <string>

namespace {
const QStringList valueRow{QStringLiteral("Value"), QStringLiteral("Value")};

class AttributesOnSecondServer : public ClientOnSecondServer
{
protected:
    [[nodiscard]] QString role() const override { return QStringLiteral("Commission"); }
    void show(const UaNodeId& id, const char* browseName)
    {
        ASSERT_TRUE(QlumToolServices::instance()->revealNode(serverId, id));
        ASSERT_TRUE(waitForAttribute({"BrowseName"}, QString::fromUtf8(browseName))) << logText();
    }
    QModelIndex cell(const QStringList& row) const
    {
        return find(*tree("Attributes"), row).siblingAtColumn(1);
    }
    // As text, by the row's own editor; once the node has been read.
    bool writeText(const QStringList& row, const char* text)
    {
        return waitFor([&] { return cell(row).flags() & Qt::ItemIsEditable; }) &&
               tree("Attributes")->model()->setData(cell(row), QString::fromUtf8(text), Qt::EditRole);
    }
    bool write(const QStringList& row, const UaVariant& value)
    {
        return waitFor([&] { return cell(row).flags() & Qt::ItemIsEditable; }) &&
               tree("Attributes")->model()->setData(cell(row), QVariant::fromValue(value), Qt::UserRole);
    }
    // Asked behind the view's back.
    UaVariant onServer(const UaNodeId& id, OpcUa_UInt32 attribute = OpcUa_Attributes_Value) const
    {
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(id.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = attribute;
        UaDataValues values;
        UaClientSdk::ServiceSettings settings;
        EXPECT_TRUE(services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isGood());
        return values.length() == 1 ? UaVariant(values[0].Value) : UaVariant();
    }
};

TEST_F(AttributesOnSecondServer, ScalarsOfSeveralTypesAreReadAndWritten)
{
    const struct
    {
        OpcUa_UInt32 id;
        const char* browseName;
        const char* before;
        const char* entered;
        const char* after;
        OpcUa_BuiltInType type;
    } scalars[] = {
        {51001, "1, \"Boolean\"", "true", "false", "false", OpcUaType_Boolean},
        {51004, "1, \"SByte\"", "-128", "127", "127", OpcUaType_SByte},
        {51016, "1, \"Int32\"", "-2147483648", "2147483647", "2147483647", OpcUaType_Int32},
        {51025, "1, \"UInt64\"", "18446744073709551615", "18446744073709551614", "18446744073709551614",
         OpcUaType_UInt64},
        {51031, "1, \"Double\"", "2.718281828459045", "0.1", "0.1", OpcUaType_Double},
        {51037, "1, \"DateTime\"", "2023-11-14T22:13:20.123Z", "2001-02-03T04:05:06.789Z",
         "2001-02-03T04:05:06.789Z", OpcUaType_DateTime},
        {51040, "1, \"Guid\"", "72962b91-fa75-4ae6-8d28-b404dc7daf63", "00000000-1111-2222-3333-444444444444",
         "00000000-1111-2222-3333-444444444444", OpcUaType_Guid},
        {51049, "1, \"NodeId\"", "i=2253", "ns=1;s=über", "ns=1;s=über", OpcUaType_NodeId},
        {51061, "1, \"LocalizedText\"", "\"en\", \"liquid\"", nullptr, "\"de\", \"flüssig\"",
         OpcUaType_LocalizedText},
    };
    for (const auto& scalar : scalars) {
        const UaNodeId id = numbered(scalar.id);
        show(id, scalar.browseName);
        EXPECT_TRUE(waitForAttribute(valueRow, QString::fromUtf8(scalar.before)))
            << scalar.browseName << ": " << attribute(valueRow).toStdString();
        if (scalar.entered)
            EXPECT_TRUE(writeText(valueRow, scalar.entered)) << scalar.browseName << logText();
        else
            EXPECT_TRUE(write(valueRow, UaVariant(UaLocalizedText("de", "flüssig"))));
        EXPECT_TRUE(waitForAttribute(valueRow, QString::fromUtf8(scalar.after)))
            << scalar.browseName << ": " << attribute(valueRow).toStdString();
        EXPECT_EQ(onServer(id).type(), scalar.type) << scalar.browseName;
    }
    EXPECT_EQ(onServer(numbered(51031)), UaVariant(0.1));
}

TEST_F(AttributesOnSecondServer, PartsOfArraysAndStructuresAreWritten)
{
    const UaNodeId array = numbered(51017);
    show(array, "1, \"Int32\"");
    ASSERT_TRUE(waitForAttribute(valueRow, "Int32 Array[10]"));
    const QStringList element = valueRow + QStringList{"[3]"};
    const UaVariant before = onServer(array);
    ASSERT_TRUE(writeText(element, "-7")) << logText();
    EXPECT_TRUE(waitForAttribute(element, "-7"));
    const UaVariant after = onServer(array);
    ASSERT_EQ(after.elementCount(), before.elementCount());
    for (OpcUa_UInt32 i = 0; i < after.elementCount(); ++i)
        EXPECT_EQ(after.at(i), i == 3 ? UaVariant(OpcUa_Int32{-7}) : before.at(i)) << i;

    const UaNodeId matrix = numbered(51018);
    show(matrix, "1, \"Int32\"");
    ASSERT_TRUE(waitForAttribute(valueRow, "Int32 Matrix"));
    const QStringList corner = valueRow + QStringList{"[2,3]"};
    ASSERT_TRUE(writeText(corner, "99")) << logText();
    EXPECT_TRUE(waitForAttribute(corner, "99")) << attribute(corner).toStdString();
    EXPECT_EQ(onServer(matrix).at(11), UaVariant(OpcUa_Int32{99}));

    show(named("Structures.Point"), "1, \"Point\"");
    const QStringList x = valueRow + QStringList{"X"};
    ASSERT_TRUE(waitFor([&] { return !attribute(x).isEmpty(); })) << attribute(valueRow).toStdString();
    const QString y = attribute(valueRow + QStringList{"Y"});
    ASSERT_TRUE(writeText(x, "-4.25")) << logText();
    EXPECT_TRUE(waitForAttribute(x, "-4.25")) << attribute(x).toStdString();
    EXPECT_EQ(attribute(valueRow + QStringList{"Y"}), y);
}

// It lets everybody name and describe its variables, and says so by both masks.
TEST_F(AttributesOnSecondServer, OtherAttributesAreWrittenAsTheirMasksAllow)
{
    const UaNodeId id = numbered(51031);
    show(id, "1, \"Double\"");
    for (const char* row : {"DisplayName", "Description"}) {
        ASSERT_TRUE(write({row}, UaVariant(UaLocalizedText("en", "renamed")))) << logText();
        EXPECT_TRUE(waitForAttribute({row}, "\"en\", \"renamed\"")) << attribute({row}).toStdString();
    }
    EXPECT_EQ(onServer(id, OpcUa_Attributes_DisplayName), UaVariant(UaLocalizedText("en", "renamed")));
    EXPECT_EQ(onServer(id, OpcUa_Attributes_Description), UaVariant(UaLocalizedText("en", "renamed")));
    for (const char* row : {"BrowseName", "AccessLevel", "Historizing", "WriteMask"})
        EXPECT_FALSE(cell({row}).flags() & Qt::ItemIsEditable) << row;
}
} // namespace
