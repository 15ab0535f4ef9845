#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/references/qlumreferencemodel.h>
#include <plugins/references/qlumreferenceplugin.h>
#include <plugins/references/qlumreferenceview.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QLabel>
#include <QObject>
#include <QPushButton>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
class ReferenceApplication : public StubApplication
{
public:
    void selectionChanged(unsigned int, UaNodeId* nodeId, OpcUa_NodeClass) override { selected = *nodeId; }

    UaNodeId selected;
};

class References : public testing::Test
{
protected:
    References() : plugin([this](unsigned int) { return services; })
    {
        NodeTable& table = services->table;
        table.object(plant, "Plant");
        table.variable(UaNodeId(2, 2), "Speed", UaVariant(1.5), plant);
        services->setTypeName(UaNodeId(OpcUaId_Organizes), "Organizes");
        services->setTypeName(UaNodeId(OpcUaId_FolderType), "FolderType");
        plugin.init(&application);
        application.window.show();
    }
    ~References() override { plugin.shutdown(); }

    void select(const UaNodeId& id)
    {
        UaNodeId node = id;
        plugin.selectionChanged(5, &node, OpcUa_NodeClass_Object, nullptr);
    }
    bool waitForRows(int count)
    {
        return QTest::qWaitFor([&] { return plugin.model()->rowCount() == count; });
    }
    std::string row(int number) const
    {
        std::string text;
        for (int column = 0; column < plugin.model()->columnCount(); ++column)
            text += plugin.model()->index(number, column).data().toString().toStdString() + '|';
        return text;
    }
    bool waitForOnly(const char* text)
    {
        return QTest::qWaitFor([&] { return plugin.model()->rowCount() == 1 && row(0) == text; });
    }
    template <typename Widget>
    Widget* widget(const char* name)
    {
        return plugin.dock()->findChild<Widget*>(name);
    }
    void activateFirst()
    {
        auto* tree = widget<QTreeView>("referenceTable");
        emit tree->activated(tree->model()->index(0, 0));
    }

    const UaNodeId plant{1, 2};
    ReferenceApplication application;
    std::shared_ptr<TableServices> services = std::make_shared<TableServices>();
    QlumReferencePlugin plugin;
};
} // namespace

TEST_F(References, AreShownInTheDirectionAndOfTheTypeThatIsChosen)
{
    select(plant);
    ASSERT_TRUE(waitForRows(2)); // its parent and what it organizes
    auto* direction = widget<QComboBox>("referenceDirection");
    direction->setCurrentIndex(direction->findData(OpcUa_BrowseDirection_Inverse));
    EXPECT_TRUE(waitForOnly("Organizes|Inverse|i=85||i=85|||")) << row(0);
    direction->setCurrentIndex(direction->findData(OpcUa_BrowseDirection_Forward));
    auto* type = widget<QComboBox>("referenceType");
    type->setCurrentIndex(type->findData("i=33"));
    EXPECT_TRUE(waitForOnly("Organizes|Forward|Speed|Variable|ns=2;i=2|i=63|2:Speed|")) << row(0);
}

// A server has few of them for a session, and forgets none by itself.
TEST_F(References, OfALongListComeInPortionsAndItsContinuationPointIsGivenBack)
{
    const UaNodeId many(3, 2);
    services->table.object(many, "Many", UaNodeId());
    for (OpcUa_UInt32 i = 0; i < 2500; ++i)
        services->table.variable(UaNodeId(100 + i, 2), "V", UaVariant(1.0), many);
    select(many);
    ASSERT_TRUE(waitForRows(1000));
    auto* more = widget<QPushButton>("referencesMore");
    EXPECT_TRUE(QTest::qWaitFor([&] { return more->isVisible() && more->isEnabled(); }));
    more->click();
    ASSERT_TRUE(waitForRows(2000));
    EXPECT_EQ(services->table.openContinuationPoints(), 1);
    select(plant);
    ASSERT_TRUE(waitForRows(2));
    EXPECT_TRUE(QTest::qWaitFor([&] { return services->table.openContinuationPoints() == 0; }));
    EXPECT_FALSE(more->isVisible());
}

TEST_F(References, ThatCannotBeReadSayWhyAndThoseOfTheLastNodeAreGone)
{
    select(plant);
    ASSERT_TRUE(waitForRows(2));
    services->table.fail(NodeTable::Browse, UaNodeId(2, 2), OpcUa_BadNodeIdUnknown);
    select(UaNodeId(2, 2));
    ASSERT_TRUE(waitForRows(0));
    const auto told = [&] {
        for (const QLabel* label : plugin.dock()->findChildren<QLabel*>())
            if (label->isVisible() && label->text().contains("BadNodeIdUnknown"))
                return true;
        return false;
    };
    EXPECT_TRUE(QTest::qWaitFor(told));
}

TEST_F(References, OfAServerThatIsRemovedWhileItIsAskedAreNotShown)
{
    services->clock.hold();
    services->delay(NodeTable::Browse, 5000);
    select(plant);
    ASSERT_TRUE(QTest::qWaitFor([&] { return services->clock.waiting() == 1; }));
    services->disconnect();
    plugin.sessionRemoved(5);
    QCoreApplication::processEvents();
    EXPECT_EQ(plugin.model()->rowCount(), 0);
    plugin.sltRefresh();
    EXPECT_EQ(services->calls(NodeTable::Browse), 1);
}

TEST_F(References, LeadToTheirTargetsWhetherTheTreeFindsThemOrNot)
{
    QlumToolServices tools;
    UaNodeId revealed;
    bool isFound = true;
    QObject owner;
    tools.takeReveal(&owner, [&](unsigned int, const UaNodeId& id) {
        revealed = id;
        return isFound;
    });
    select(UaNodeId(2, 2));
    ASSERT_TRUE(waitForRows(1));
    activateFirst();
    EXPECT_FALSE(revealed.isNull());
    EXPECT_TRUE(application.selected.isNull());
    isFound = false;
    activateFirst();
    EXPECT_EQ(application.selected, revealed);
}

TEST_F(References, AreReadWhenTheWindowIsSeenAndNotBefore)
{
    plugin.dock()->hide();
    select(plant);
    EXPECT_EQ(services->calls(NodeTable::Browse), 0);
    plugin.dock()->show();
    EXPECT_TRUE(waitForRows(2));
}
