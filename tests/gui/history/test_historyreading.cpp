#include <app/api/qlumsettings.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <plugins/history/qlumtrendpanel.h>
#include <tests/gui/history/trendfixture.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlummessagebar.h>

#include <QDateTime>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTime>
#include <QVariant>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <map>
#include <vector>

namespace {

class HistoryReading : public TrendFixture
{
protected:
    void set(const char* key, const QVariant& value) { application.settings[key] = value; }
    QlumMessageBar* bar() { return view.findChild<QlumMessageBar*>(); }
};

TEST_F(HistoryReading, OneRequestForAllItemsOfAServerAndALineForEach)
{
    addVariable(1, "Level", numbers(3));
    addVariable(2, "Empty", {});
    ASSERT_TRUE(addItems({node(1), node(2)}));
    ASSERT_TRUE(read(-10, 10));
    EXPECT_EQ(log(), QStringList({"Found session for ServerId 5", "HistoryReadRawModified succeeded",
                                  "HistoryReadDataResults of node 'ns=2;i=1' contains 3 values",
                                  "No history values received for node 'ns=2;i=2'"}));
    ASSERT_EQ(services->asked().size(), 1U);
    const TrendServices::Asked asked = services->asked()[0];
    EXPECT_EQ(asked.nodes, (std::vector{node(1), node(2)}));
    EXPECT_EQ(asked.context.startTime, at(-10));
    EXPECT_EQ(asked.context.endTime, at(10));
    EXPECT_EQ(asked.context.numValuesPerNode, 10000U);
    EXPECT_TRUE(asked.context.returnBounds);
    EXPECT_FALSE(asked.context.isReadModified);
    EXPECT_EQ(sampleText(0), "0: 0\n1: 1\n2: 2\n");
    EXPECT_EQ(samples(0).at(1).serverTime, at(1.5).value());

    set("HistoryPlugin.NumValuesPerNode", 7);
    set("HistoryPlugin.ReturnBounds", false);
    set("HistoryPlugin.ReadModified", true);
    ASSERT_TRUE(read(10, -10)); // newest first
    const TrendServices::Asked second = services->asked()[1];
    EXPECT_EQ(second.context.startTime, at(10));
    EXPECT_EQ(second.context.endTime, at(-10));
    EXPECT_EQ(second.context.numValuesPerNode, 7U);
    EXPECT_FALSE(second.context.returnBounds);
    EXPECT_TRUE(second.context.isReadModified);
}

TEST_F(HistoryReading, FailedCallAndFailedNodeAreLoggedAndLeaveOtherCurves)
{
    addVariable(1, "Fine", numbers(2));
    addVariable(2, "None", numbers(2));
    services->table.fail(NodeTable::HistoryRead, node(2), OpcUa_BadHistoryOperationUnsupported);
    ASSERT_TRUE(addItems({node(1), node(2)}));
    ASSERT_TRUE(read(0, 10));
    EXPECT_TRUE(log().contains("HistoryReadDataResults[1] has bad status BadHistoryOperationUnsupported"));
    EXPECT_EQ(samples(0).size(), 2U);
    EXPECT_FALSE(item(1).history.isEmpty());

    services->failCalls(NodeTable::HistoryRead, OpcUa_BadTooManyOperations);
    set("HistoryPlugin.ReadModified", true);
    ASSERT_TRUE(read(0, 10));
    EXPECT_TRUE(log().contains("HistoryReadRawModified has bad status BadTooManyOperations"));
    EXPECT_TRUE(log().last().contains("Modified values have no bounds"));
    EXPECT_EQ(samples(0).size(), 0U) << "curves of the read before are gone";
}

TEST_F(HistoryReading, BeyondTheSettingPointsAreReleasedAndTheUserMayReadOn)
{
    std::vector<UaDataValue> values = numbers(40);
    for (int i = 27; i < 32; ++i) // five values of one time, where the read ends
        values[std::size_t(i)].setSourceTimestamp(at(27));
    addVariable(1, "Long", values);
    ASSERT_TRUE(addItems({node(1)}));
    set("HistoryPlugin.NumValuesPerNode", 10);
    set("HistoryPlugin.MaxHistoryNextCalls", 2);
    ASSERT_TRUE(read(0, 100));
    EXPECT_EQ(samples(0).size(), 30U);
    EXPECT_TRUE(log().contains("Server returned more ContinuationPoints than accepted by setting "
                               "'HistoryPlugin.MaxHistoryNextCalls'. Releasing current ContinuationPoints."));
    EXPECT_EQ(log().last(), "HistoryReadDataResults of node 'ns=2;i=1' contains 30 values");
    ASSERT_EQ(services->asked().size(), 4U);
    EXPECT_TRUE(services->asked()[3].context.releaseContinuationPoints);
    EXPECT_TRUE(item(0).history.contains("there are more")) << item(0).history;

    ASSERT_FALSE(bar()->isHidden());
    bar()->findChild<QPushButton*>()->click();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(samples(0).size(), 40U) << "none twice, none lost";
    EXPECT_EQ(samples(0).at(39).value, 39);
    EXPECT_TRUE(bar()->isHidden());
}

TEST_F(HistoryReading, PointLostInTheMiddleKeepsWhatCame)
{
    addVariable(1, "Long", numbers(40));
    ASSERT_TRUE(addItems({node(1)}));
    set("HistoryPlugin.NumValuesPerNode", 10);
    services->losesPointsAt = 3;
    ASSERT_TRUE(read(0, 100));
    EXPECT_EQ(samples(0).size(), 20U);
    EXPECT_TRUE(log().contains("HistoryReadDataResults[0] has bad status BadContinuationPointInvalid"));
    EXPECT_FALSE(bar()->isHidden());
}

TEST_F(HistoryReading, ManyNodesGetTheFewPointsOfAServerInTurn)
{
    QlumHistoryPlan plan;
    plan.start = at(0);
    plan.end = at(100);
    plan.valuesPerNode = 10;
    plan.maximumNextCalls = 1000;
    for (OpcUa_UInt32 id = 1; id <= 1000; ++id) {
        addVariable(id, "Long", numbers(id % 2 == 0 ? 12 : 3));
        plan.targets.push_back({int(id), node(id), {}, {}, 0});
    }
    const auto readAll = [&] {
        const auto take = [](std::size_t, const auto&, OpcUa_UInt32) { return true; };
        QlumHistoryReader reader(*services, plan,
                                 {[] { return false; }, [] { return UaClientSdk::ServiceSettings(); }, take});
        std::map<quint64, int> nodes; // by the number of their values
        for (const QlumHistoryOutcome& outcome : reader.read())
            nodes[outcome.status.isBad() ? 0 : outcome.count] += 1;
        return nodes;
    };
    services->keepsPoints = 40;
    EXPECT_EQ(readAll(), (std::map<quint64, int>{{3, 500}, {12, 500}}));
    EXPECT_LT(services->asked().size(), 60U);
    EXPECT_FALSE(log().join(' ').contains("bad status"));

    services->keepsPoints = 0;
    EXPECT_EQ(readAll(), (std::map<quint64, int>{{0, 500}, {3, 500}})) << "and it ends";
    EXPECT_TRUE(log().contains("HistoryReadDataResults[1] has bad status BadNoContinuationPoints"));
}

TEST_F(HistoryReading, EveryKindOfValueFindsItsPlace)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    addVariable(
        1, "Mixed",
        {UaDataValue(UaVariant(), UaStatusCode(OpcUa_BadBoundNotFound), at(-1)),
         UaDataValue(UaVariant(true), UaStatusCode(), at(0)),
         UaDataValue(UaVariant(OpcUa_Int64{-5}), UaStatusCode(OpcUa_UncertainLastUsableValue), at(1)),
         UaDataValue(UaVariant(), UaStatusCode(OpcUa_BadSensorFailure), at(2)),
         UaDataValue(UaVariant(nan), UaStatusCode(), at(3)),
         UaDataValue(UaVariant(-std::numeric_limits<double>::infinity()), UaStatusCode(), at(3)),
         UaDataValue(UaVariant("broken"), UaStatusCode(), at(4), at(5)),
         UaDataValue(UaVariant(1.5), UaStatusCode(), UaDateTime::fromString("1955-11-05T06:15:00Z"))});
    UaVariant odd;
    odd.setDiagnosticInfo(UaDiagnosticInfo());
    addVariable(2, "Odd", {UaDataValue(odd, UaStatusCode(), at(0))});
    ASSERT_TRUE(addItems({node(1), node(2)}));
    ASSERT_TRUE(read(-10'000'000'000.0, 100));
    ASSERT_TRUE(QTest::qWaitFor([this] { return samples(0).unsorted() == 0; })) << "sorted beside the window";
    EXPECT_EQ(sampleText(0),
              "-2.14675e+09: 1.5\n0: 1\n1: -5 0x40900000\n2: nan 0x808c0000\n3: nan\n3: -inf\n");
    EXPECT_EQ(modelText(*view.texts(item(0).key)),
              (time(4).toString("yyyy-MM-dd hh:mm:ss.zzz") + " | " +
               time(5).toString("yyyy-MM-dd hh:mm:ss.zzz") + " | broken\n")
                  .toStdString());
    EXPECT_TRUE(log().contains("The type of the history values of node 'ns=2;i=2' can not be displayed"));
}

TEST_F(HistoryReading, CancelAnswersAtOnceAndGivesPointsBackLater)
{
    addVariable(1, "Slow", numbers(40));
    ASSERT_TRUE(addItems({node(1)}));
    set("HistoryPlugin.NumValuesPerNode", 10);
    services->clock.hold();
    services->delay(NodeTable::HistoryRead, 1000);
    view.sltUpdateTrendData(false, time(0), time(100));
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->asked().size() == 1; }));

    view.sltCyclicUpdate(); // due while one reads
    EXPECT_EQ(view.skippedUpdates(), 1);
    EXPECT_EQ(services->asked().size(), 1U);

    view.sltCancel();
    EXPECT_TRUE(item(0).history.contains("ended")) << item(0).history;
    EXPECT_TRUE(view.findChild<QPushButton*>("cancelReading")->isHidden());
    services->clock.advance(1000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->asked().size() == 2; }));
    EXPECT_TRUE(services->asked()[1].context.releaseContinuationPoints);
    EXPECT_EQ(samples(0).size(), 0U) << "a late answer does not arrive";
    services->clock.advance(1000);
}

TEST_F(HistoryReading, ItemRemovedWhileItIsReadIsGone)
{
    addVariable(1, "Slow", numbers(3));
    addVariable(2, "Other", numbers(3));
    ASSERT_TRUE(addItems({node(1), node(2)}));
    services->clock.hold();
    services->delay(NodeTable::HistoryRead, 1000);
    view.sltUpdateTrendData(false, time(0), time(100));
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->asked().size() == 1; }));
    view.model()->removeItems(0, 1);
    services->clock.advance(1000);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(samples(0).size(), 3U);
}

TEST_F(HistoryReading, StartTimeIsTheEarliestOfAll)
{
    addVariable(1, "Late", {UaDataValue(UaVariant(1.0), UaStatusCode(), at(60))});
    addVariable(2, "Early", numbers(2));
    addVariable(3, "Empty", {});
    addVariable(4, "Broken", {});
    ASSERT_TRUE(addItems({node(1), node(2), node(3), node(4)}));
    services->table.fail(NodeTable::HistoryRead, node(4), OpcUa_BadHistoryOperationInvalid);
    view.sltReadStartTime();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return log().contains("Found start time: 2023-11-14T22:13:20.000Z"); }));
    EXPECT_EQ(log(), QStringList({"SourceTimestamp: 2023-11-14T22:14:20.000Z",
                                  "SourceTimestamp: 2023-11-14T22:13:20.000Z",
                                  "HistoryReadDataResults[2] contains no values",
                                  "HistoryReadDataResults[3] has bad status BadHistoryOperationInvalid",
                                  "Found start time: 2023-11-14T22:13:20.000Z"}));
    EXPECT_EQ(view.panel()->startTime(), time(0));
    const std::vector<TrendServices::Asked> asked = services->asked();
    EXPECT_EQ(asked[0].context.startTime, UaDateTime::fromString("2000-01-01T00:00:00Z"));
    EXPECT_EQ(asked[0].context.numValuesPerNode, 1U);
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_TRUE(asked[1].context.releaseContinuationPoints) << "one of them had more than one value";

    services->failCalls(NodeTable::HistoryRead, OpcUa_BadTimeout);
    view.sltReadStartTime();
    ASSERT_TRUE(QTest::qWaitFor([this] { return log().last() == "no start time was found"; }));
    EXPECT_TRUE(log().contains("historyReadRawModified failed with error 'BadTimeout' (0x800a0000)"));
}

TEST_F(HistoryReading, CyclicUpdateReadsUpToNow)
{
    addVariable(1, "Level", numbers(1));
    ASSERT_TRUE(addItems({node(1)}));
    auto* button = view.findChild<QPushButton*>("startStop");
    view.panel()->setCyclic(true);
    view.panel()->setTimespan(QTime(0, 2));
    const UaDateTime before = UaDateTime::now();
    button->click();
    EXPECT_TRUE(view.isRunning());
    EXPECT_EQ(button->text().remove('&'), "Stop");
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->asked().size() == 1; }));
    const auto context = services->asked()[0].context;
    EXPECT_EQ(context.startTime.msecsTo(context.endTime), 120'000);
    EXPECT_LT(std::abs(before.msecsTo(context.endTime)), 60'000);
    ASSERT_TRUE(waitForEnd());
    button->click();
    EXPECT_FALSE(view.isRunning());
    EXPECT_EQ(button->text().remove('&'), "Start");
}

} // namespace
