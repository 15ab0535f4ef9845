#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumsettingsregistry.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumhistoryplugin.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendviewdocument.h>
#include <tests/gui/history/trendfixture.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemModelTester>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

class TrendNodes : public TrendFixture
{
protected:
    void addStepped(OpcUa_UInt32 id, const UaVariant& value)
    {
        NodeTable& table = services->table;
        const UaNodeId configuration(60'000 + id);
        table.object(configuration, "HA Configuration", UaNodeId());
        table.reference(node(id), UaNodeId(OpcUaId_HasHistoricalConfiguration), configuration);
        table.variable(stepped(id), "Stepped", value, UaNodeId());
        table.reference(configuration, UaNodeId(OpcUaId_HasProperty), stepped(id));
    }
    static UaNodeId stepped(OpcUa_UInt32 id) { return UaNodeId(70'000 + id); }
    void addProperty(OpcUa_UInt32 id, const char* name, const UaVariant& value)
    {
        const UaNodeId property(++m_lastProperty);
        services->table.variable(property, name, value, UaNodeId());
        services->table.reference(node(id), UaNodeId(OpcUaId_HasProperty), property);
    }

private:
    OpcUa_UInt32 m_lastProperty = 80'000;
};

TEST_F(TrendNodes, DropTakesWhatHasHistoryAndSaysInOrderWhyTheRestIsRefused)
{
    const QAbstractItemModelTester tester(view.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    addVariable(1, "Level", numbers(3));
    addVariable(2, "Plain", {}, 0x1);
    addVariable(3, "Valve", numbers(3));
    addStepped(3, UaVariant(true));
    drop({node(1), node(2), node(7), node(1), node(3)});
    ASSERT_TRUE(QTest::qWaitFor([this] { return view.model()->rowCount() == 2; }));
    EXPECT_EQ(log(), QStringList({"Added item does not support historizing.",
                                  "Read UserAccessLevel attribute on node ns=2;i=7 failed with status code "
                                  "BadNodeIdUnknown.",
                                  "Added item already showing in current HistoryTrendView."}));
    EXPECT_EQ(modelText(*view.model()), "Plc | ns=2;i=1 | #1F5FB4\nPlc | ns=2;i=3 | #C4321F\n");
    EXPECT_EQ(view.curve(item(0).key)->form(), QlumCurveForm::Lines);
    EXPECT_EQ(view.curve(item(1).key)->form(), QlumCurveForm::Steps);
    EXPECT_EQ(view.curve(item(1).key)->name(), "Valve");
}

TEST_F(TrendNodes, WithoutSessionNothingIsAsked)
{
    services->disconnect();
    drop({node(1)});
    EXPECT_EQ(log(), QStringList("Session object invalid."));
    EXPECT_EQ(services->calls(NodeTable::Read), 0);
}

TEST_F(TrendNodes, NodeWhoseSteppedCannotBeReadIsDrawnWithLines)
{
    addVariable(1, "Unreadable", {});
    addStepped(1, UaVariant(true));
    services->table.fail(NodeTable::Read, stepped(1), OpcUa_BadNotReadable);
    addVariable(2, "NoBoolean", {});
    addStepped(2, UaVariant("yes"));
    addVariable(3, "NoPath", {});
    services->table.fail(NodeTable::Translate, node(3), OpcUa_BadNodeIdUnknown);
    ASSERT_TRUE(addItems({node(1), node(2), node(3)}));
    EXPECT_EQ(log(),
              QStringList({"Read property Stepped of node ns=2;i=1 failed with status code BadNotReadable.",
                           "Read property Stepped failed with status code BadTypeMismatch.",
                           "Get stepped property of node ns=2;i=3 failed with status code "
                           "BadNodeIdUnknown."}));

    services->failCalls(NodeTable::Translate, OpcUa_BadServiceUnsupported);
    addVariable(4, "Old", {});
    ASSERT_TRUE(addItems({node(4)}));
    EXPECT_EQ(log().last(), "TranslateBrowsePathsToNodeIds failed with status code BadServiceUnsupported.");

    services->failCalls(NodeTable::Translate, OpcUa_Good);
    addVariable(5, "Slow", {});
    addStepped(5, UaVariant(true));
    services->failsReadAt = services->reads() + 2;
    ASSERT_TRUE(addItems({node(5)}));
    EXPECT_EQ(log().last(), "Read failed with status code BadTimeout.");
    for (int row = 0; row < view.model()->rowCount(); ++row)
        EXPECT_EQ(view.curve(item(row).key)->form(), QlumCurveForm::Lines) << row;
}

TEST_F(TrendNodes, UnitsAndStatesComeFromTheProperties)
{
    addVariable(1, "Temperature", {});
    auto* unit =
        static_cast<OpcUa_EUInformation*>(OpcUa_EncodeableObject_Create(&OpcUa_EUInformation_EncodeableType));
    ASSERT_TRUE(OpcUa_IsGood(UaLocalizedText("en", "bar").copyTo(&unit->DisplayName)));
    UaExtensionObject object;
    object.attachDecoded(OpcUa_EUInformation_EncodeableType, unit);
    addProperty(1, "EngineeringUnits", UaVariant(object));
    addVariable(2, "Door", {});
    addProperty(2, "FalseState", UaVariant(UaLocalizedText("en", "closed")));
    addProperty(2, "TrueState", UaVariant(UaLocalizedText("en", "open")));
    ASSERT_TRUE(addItems({node(1), node(2)}));
    EXPECT_EQ(view.curve(item(0).key)->unit(), "bar");
    EXPECT_EQ(view.curve(item(1).key)->form(), QlumCurveForm::Steps);
    EXPECT_EQ(view.curve(item(1).key)->valueText(1), "open (1)");
    EXPECT_EQ(view.curve(item(1).key)->valueText(0.5), "0.5");
}

TEST_F(TrendNodes, LargeDropAsksFirst)
{
    std::vector<UaNodeId> nodes;
    for (OpcUa_UInt32 id = 1; id <= 500; ++id) {
        addVariable(id, "One", {});
        nodes.push_back(node(id));
    }
    drop(nodes);
    EXPECT_EQ(services->calls(NodeTable::Read), 0);
    auto* bar = view.findChild<QlumMessageBar*>();
    ASSERT_FALSE(bar->isHidden());
    bar->findChild<QPushButton*>()->click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return view.model()->rowCount() == 500; }));
}

TEST(HistoryPlugin, OffersItsDocumentAndItsSettings)
{
    TrendApplication application;
    QlumSettingsRegistry registry;
    QlumHistoryPlugin plugin([](unsigned int) { return nullptr; });
    plugin.init(&application);
    EXPECT_EQ(plugin.name(), "UA History Plugin");
    {
        const std::unique_ptr<QWidget> document(plugin.createDocument("History Trend View"));
        EXPECT_NE(qobject_cast<QlumDocumentWidgetInterface*>(document.get()), nullptr);
    }
    EXPECT_EQ(plugin.createDocument("Event View"), nullptr);
    EXPECT_EQ(registry.standard("HistoryPlugin.ReadModified"), QVariant(false));
    EXPECT_EQ(registry.standard("HistoryPlugin.ReturnBounds"), QVariant(true));
    EXPECT_EQ(registry.standard("HistoryPlugin.NumValuesPerNode"), QVariant(10000));
    EXPECT_EQ(registry.standard("HistoryPlugin.MaxHistoryNextCalls"), QVariant(1000));
    plugin.shutdown();
}

} // namespace
