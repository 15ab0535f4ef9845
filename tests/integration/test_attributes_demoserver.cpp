// The attribute view on a server that is not ours, in the window of the whole client.
#include <app/api/qlummetatypes.h>
#include <opcua/opcua_attributes.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QDockWidget>
#include <QIcon>
#include <QLabel>
#include <QModelIndex>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVariant>
#include <gtest/gtest.h>

#include <string>

namespace {
class AttributesOnDemoServer : public ClientOnDemoServer
{
protected:
    [[nodiscard]] QString role() const override { return QStringLiteral("Commission"); }
    void show(const QStringList& below, const QString& browseName)
    {
        select(QStringList{"Root", "Objects", "Demo"} + below);
        ASSERT_TRUE(waitForAttribute({"BrowseName"}, browseName)) << logText();
    }
    QDockWidget* dock() const { return window->findChild<QDockWidget*>("Attributes Dock Widget"); }
    QToolButton* button(const char* name) const
    {
        const auto* bar = dock()->findChild<QToolBar*>("attributeToolBar");
        for (QAction* action : bar->actions())
            if (action->objectName() == QLatin1String(name))
                return qobject_cast<QToolButton*>(bar->widgetForAction(action));
        return nullptr;
    }
    bool writeText(const QStringList& row, const char* text)
    {
        QTreeView* view = tree("Attributes");
        const QModelIndex index = find(*view, row).siblingAtColumn(1);
        return index.isValid() && (index.flags() & Qt::ItemIsEditable) &&
               view->model()->setData(index, QString::fromUtf8(text), Qt::EditRole);
    }
    // Asked behind the view's back.
    UaVariant onServer(const char* id, OpcUa_UInt32 attribute) const
    {
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(UaString(id), 2).copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = attribute;
        UaDataValues values;
        UaDiagnosticInfos infos;
        UaClientSdk::ServiceSettings settings;
        EXPECT_TRUE(window->session(serverId)
                        ->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values, infos)
                        .isGood());
        return values.length() == 1 ? UaVariant(values[0].Value) : UaVariant();
    }
    QString told() const
    {
        const auto* bar = dock()->findChild<QlumMessageBar*>("messageBar");
        return bar->isHidden() ? QString() : bar->findChild<QLabel*>("why")->text();
    }
};

// The node says by WriteMask alone what can be written.
TEST_F(AttributesOnDemoServer, OtherAttributesThanTheValueAreWritten)
{
    openDemoProject();
    show({"Attributes", "Variable"}, "2, \"Open\"");
    const char* const id = "Attributes.Variable";
    ASSERT_TRUE(waitForAttribute({"AccessLevelEx"}, "CurrentRead, CurrentWrite")) << logText();
    const auto isShown = [this](const char* row, const char* text) {
        return waitForAttribute({row}, QString::fromUtf8(text));
    };
    ASSERT_TRUE(writeText({"MinimumSamplingInterval"}, "250"));
    EXPECT_TRUE(isShown("MinimumSamplingInterval", "250")) << logText();
    EXPECT_EQ(onServer(id, OpcUa_Attributes_MinimumSamplingInterval), UaVariant(250.0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return writeText({"AccessRestrictions"}, "5"); }, limit));
    EXPECT_TRUE(isShown("AccessRestrictions", "SigningRequired, SessionRequired")) << logText();
    EXPECT_EQ(onServer(id, OpcUa_Attributes_AccessRestrictions), UaVariant(OpcUa_UInt16{5}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return writeText({"AccessLevelEx"}, "1027"); }, limit));
    EXPECT_TRUE(isShown("AccessLevelEx", "CurrentRead, CurrentWrite, WriteFullArrayOnly")) << logText();
    EXPECT_EQ(onServer(id, OpcUa_Attributes_AccessLevelEx), UaVariant(OpcUa_UInt32{1027}));

    const QStringList permissions{"RolePermissions", "[0]", "Permissions"};
    ASSERT_TRUE(QTest::qWaitFor([&] { return writeText(permissions, "3"); }, limit));
    EXPECT_TRUE(waitForAttribute(permissions, "Browse | ReadRolePermissions (3)"))
        << attribute(permissions).toStdString();

    QTreeView* view = tree("Attributes");
    const auto put = [&](const char* row, const UaVariant& value) {
        return view->model()->setData(find(*view, {row}).siblingAtColumn(1), QVariant::fromValue(value),
                                      Qt::UserRole);
    };
    ASSERT_TRUE(put("BrowseName", UaVariant(UaQualifiedName(UaString("Renamed"), 2))));
    EXPECT_TRUE(isShown("BrowseName", "2, \"Renamed\"")) << logText();
    for (const char* row : {"DisplayName", "Description"}) {
        ASSERT_TRUE(put(row, UaVariant(UaLocalizedText("de", "grün")))) << row;
        EXPECT_TRUE(isShown(row, "\"de\", \"grün\"")) << row;
    }
    EXPECT_EQ(onServer(id, OpcUa_Attributes_Description), UaVariant(UaLocalizedText("de", "grün")));
    ASSERT_TRUE(writeText({"WriteMask"}, "1048576")); // WriteMask alone
    ASSERT_TRUE(isShown("WriteMask", "1048576")) << attribute({"WriteMask"}).toStdString();
    EXPECT_FALSE(writeText({"MinimumSamplingInterval"}, "1"));
    ASSERT_TRUE(writeText({"WriteMask"}, "59773028")); // as it was
    ASSERT_TRUE(isShown("WriteMask", "59773028"));
}

TEST_F(AttributesOnDemoServer, AValueIsWatchedByItsSwitch)
{
    openDemoProject();
    show({"Dynamic", "Counter"}, "2, \"Counter\"");
    const QStringList value{"Value", "Value"};
    const QString read = attribute(value);
    const auto changes = [&](const QString& from) {
        return QTest::qWaitFor([&] { return !attribute(value).isEmpty() && attribute(value) != from; },
                               limit);
    };
    button("watchValue")->click();
    ASSERT_TRUE(changes(read)) << logText();
    EXPECT_TRUE(changes(attribute(value)));
    const QStringList others{"Root", "Objects", "Demo", "Scalar", "Double"};
    select(others);
    ASSERT_TRUE(waitForAttribute({"BrowseName"}, "2, \"Double\"")); // and what was watched stays away
    const QString still = attribute(value);
    show({"Dynamic", "Counter"}, "2, \"Counter\"");
    EXPECT_TRUE(changes(attribute(value))) << "the switch is for every node";
    button("watchValue")->click();
    EXPECT_FALSE(button("watchValue")->isChecked());
}

TEST_F(AttributesOnDemoServer, OffSaysSoAndReadsBackWhatIsWritten)
{
    openDemoProject();
    show({"Scalar", "Double"}, "2, \"Double\"");
    const auto looksLike = [this](const char* image) {
        const QSize size(16, 16);
        return button("onOff")->icon().pixmap(size).toImage() ==
               QIcon(QString::fromLatin1(image)).pixmap(size).toImage();
    };
    EXPECT_TRUE(looksLike(":/images/on.png"));
    EXPECT_FALSE(looksLike(":/images/off.png"));
    button("onOff")->click();
    EXPECT_TRUE(looksLike(":/images/off.png"));
    select({"Root", "Objects", "Demo", "Scalar", "Int32"});
    EXPECT_EQ(attribute({"BrowseName"}), "2, \"Double\"");
    for (const char* text : {"4.5", "-8"}) {
        ASSERT_TRUE(writeText({"Value", "Value"}, text)) << logText();
        EXPECT_TRUE(waitForAttribute({"Value", "Value"}, QString::fromLatin1(text))) << logText();
        EXPECT_EQ(told(), "");
    }
    button("onOff")->click();
    EXPECT_TRUE(looksLike(":/images/on.png"));
}

TEST_F(AttributesOnDemoServer, BackLeadsTheWholeClientToTheNodeBefore)
{
    openDemoProject();
    show({"Scalar", "Double"}, "2, \"Double\"");
    show({"Scalar", "Int32"}, "2, \"Int32\"");
    button("back")->click();
    EXPECT_TRUE(waitForAttribute({"BrowseName"}, "2, \"Double\"")) << logText();
    button("forward")->click();
    EXPECT_TRUE(waitForAttribute({"BrowseName"}, "2, \"Int32\"")) << logText();
    EXPECT_FALSE(button("forward")->isEnabled());
}
} // namespace
