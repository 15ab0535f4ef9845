#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/history/qlumhistoryplugin.h>
#include <plugins/history/qlummodifiedmodel.h>
#include <plugins/history/qlumtrendpanel.h>
#include <tests/gui/history/trendfixture.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/qlummessagebar.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

namespace {

class TrendExtras : public TrendFixture
{
protected:
    void check(const char* name) { view.findChild<QCheckBox*>(name)->setChecked(true); }
};

TEST_F(TrendExtras, AggregatesOfTheServerAreDrawnBesideTheRawCurve)
{
    const UaNodeId average(OpcUaId_AggregateFunction_Average),
        folder(OpcUaId_Server_ServerCapabilities_AggregateFunctions);
    services->table.object(folder, "AggregateFunctions", UaNodeId());
    services->table.object(UaNodeId(OpcUaId_AggregateFunction_Total), "Total", folder);
    services->table.object(average, "Average", folder);
    addVariable(1, "Level", numbers(10));
    addVariable(2, "NoAggregates", numbers(10));
    services->table.processed(node(1), average, {UaDataValue(UaVariant(4.5), UaStatusCode(), at(0))});
    ASSERT_TRUE(addItems({node(1), node(2)}));
    auto* aggregates = view.findChild<QComboBox*>("aggregate");
    ASSERT_TRUE(QTest::qWaitFor([&] { return aggregates->count() == 2; }));
    EXPECT_EQ(aggregates->currentText(), "Average");
    check("processed");
    view.sltUpdateTrendData(false, time(0), time(100));
    auto* bar = view.findChild<QlumMessageBar*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !bar->isHidden(); })) << "one of them has none";
    EXPECT_TRUE(log().contains("HistoryReadDataResults[1] has bad status BadAggregateNotSupported"));
    ASSERT_NE(view.processedCurve(item(0).key), nullptr);
    EXPECT_EQ(view.processedCurve(item(0).key)->name(), "Level (Average)");
    EXPECT_EQ(view.processedCurve(item(0).key)->samples().at(0).value, 4.5);
    EXPECT_EQ(view.processedCurve(item(1).key), nullptr);
    EXPECT_EQ(samples(0).size(), 10U);
}

TEST_F(TrendExtras, ServerWithoutAggregatesIsToldOf)
{
    addVariable(1, "Level", numbers(10));
    ASSERT_TRUE(addItems({node(1)}));
    check("processed");
    ASSERT_TRUE(read(0, 100));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto labels = view.findChild<QlumMessageBar*>()->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [](const QLabel* label) { return label->text().contains("no aggregates"); });
    }));
}

TEST_F(TrendExtras, ModifiedValuesComeWithWhoAndWhenAndWithoutBounds)
{
    addVariable(1, "Level", numbers(3));
    services->table.historyIsChangedBy("operator", at(50));
    UaUpdateDataDetailsArray details(1);
    UaDataValues values(1);
    ASSERT_TRUE(OpcUa_IsGood(node(1).copyTo(&details[0].NodeId)));
    ASSERT_TRUE(OpcUa_IsGood(UaDataValue(UaVariant(99.0), UaStatusCode(), at(1)).copyTo(&values[0])));
    details[0].PerformInsertReplace = OpcUa_PerformUpdateType_Replace;
    values.detach(&details[0].NoOfUpdateValues, &details[0].UpdateValues);
    UaHistoryUpdateResults results;
    UaClientSdk::ServiceSettings settings;
    ASSERT_TRUE(services->historyUpdateData(settings, details, results).isGood());

    ASSERT_TRUE(addItems({node(1)}));
    check("modified");
    view.sltUpdateTrendData(false, time(0), time(100));
    ASSERT_TRUE(QTest::qWaitFor([this] { return view.modifiedValues()->rowCount() == 1; }));
    const QString shown = "Level | %1 | 1 | Good | %2 | replaced | operator\n";
    const QString format = "yyyy-MM-dd hh:mm:ss.zzz";
    EXPECT_EQ(QString::fromStdString(modelText(*view.modifiedValues()))
                  .replace(" | " + time(1.5).toString(format), ""),
              shown.arg(time(1).toString(format), time(50).toString(format)));
    int modified = 0;
    for (const TrendServices::Asked& asked : services->asked()) {
        EXPECT_NE(asked.context.isReadModified, asked.context.returnBounds);
        modified += asked.context.isReadModified ? 1 : 0;
    }
    EXPECT_EQ(modified, 1);
}

TEST_F(TrendExtras, RangeGoesIntoAFileWithoutTheLimitsOfTheView)
{
    std::vector<UaDataValue> values = numbers(25);
    values[3] = UaDataValue(UaVariant("a,b"), UaStatusCode(OpcUa_UncertainLastUsableValue), at(3));
    addVariable(1, "=Level", values);
    ASSERT_TRUE(addItems({node(1)}));
    application.settings["HistoryPlugin.NumValuesPerNode"] = 10;
    application.settings["HistoryPlugin.MaxHistoryNextCalls"] = 0;
    view.panel()->setStartTime(time(0));
    view.panel()->setEndTime(time(100));
    const QTemporaryDir folder;
    const QString name = folder.filePath("level.csv");
    view.saveRange(name);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(name); }));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split("\r\n");
    ASSERT_EQ(lines.size(), 27);
    EXPECT_EQ(lines[0], "Time,Name,Unit,Value,Quality,Status,Server Time");
    EXPECT_EQ(lines[1], "2023-11-14T22:13:20Z,'=Level,,0,Good,0x00000000,2023-11-14T22:13:20.5Z");
    EXPECT_EQ(lines[4], "2023-11-14T22:13:23Z,'=Level,,\"a,b\",Uncertain,0x40900000,");
    EXPECT_EQ(samples(0).size(), 0U) << "the plot is left alone";

    view.saveRange("/nowhere/level.csv");
    auto* bar = view.findChild<QlumMessageBar*>();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto labels = bar->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [](const QLabel* label) { return label->text().contains("was not written"); });
    }));
}

TEST_F(TrendExtras, RecordedCurvesOfOtherToolsAreShownAndListed)
{
    QlumToolServices tools;
    QObject owner;
    tools.takeDocuments(
        &owner, [this](const QString& type) { return type == "History Trend View" ? &view : nullptr; });
    EXPECT_FALSE(tools.canShowSamples());
    QlumHistoryPlugin plugin([](unsigned int) { return nullptr; });
    plugin.init(&application);
    QlumToolCurve curve{"Recorded", "bar", true, {}};
    for (int i = 0; i < 3; ++i)
        curve.samples.push_back({at(i).value(), double(i), 0, 0});
    view.show();
    ASSERT_TRUE(tools.showSamples(std::span(&curve, 1)));
    ASSERT_EQ(view.plot()->area()->curves().size(), 1U);
    EXPECT_EQ(view.plot()->area()->view().to, double(time(2).toMSecsSinceEpoch()));
    view.findChild<QTabWidget*>("trendTabs")->setCurrentIndex(1);
    EXPECT_EQ(view.findChild<QComboBox*>("valueCurve")->currentText(), "Recorded");
    EXPECT_EQ(view.findChild<QTableView*>("numericValues")->model()->rowCount(), 3);
    ASSERT_TRUE(tools.showSamples(std::span(&curve, 1))) << "a newer record takes the place of the older";
    EXPECT_EQ(view.plot()->area()->curves().size(), 1U);
    plugin.shutdown();
}

} // namespace
