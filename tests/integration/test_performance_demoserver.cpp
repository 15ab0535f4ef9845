// The performance view on the demo server: everything that it measures, and what happens when the server
// goes.
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_types.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumperformanceview.h>
#include <plugins/performance/qlumperformancework.h>
#include <plugins/performance/qlumrunmodel.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/owndemoserver.h>
#include <tests/support/performanceonserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QSpinBox>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class PerformanceOnDemoServer : public PerformanceOn<ClientOnDemoServer>
{
protected:
    static UaNodeId demo(const char* id) { return UaNodeId(UaString(id), 2); }
};

TEST_F(PerformanceOnDemoServer, EveryKindIsMeasuredOnIt)
{
    openDemoProject();
    openView({{serverId, demo("Methods"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Dynamic.Sine"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Methods.Add"), OpcUa_NodeClass_Unspecified, {}, {}}});
    ASSERT_TRUE(waitFor([this] { return view->panel()->plan().nodes.size() == 2; })) << "the variables";
    int runs = 0;
    for (const QlumMeasuredKind kind :
         {QlumMeasuredKind::Read, QlumMeasuredKind::Write, QlumMeasuredKind::Browse,
          QlumMeasuredKind::TranslatePaths, QlumMeasuredKind::ReadRegistered, QlumMeasuredKind::Call,
          QlumMeasuredKind::MonitoredItems, QlumMeasuredKind::Session, QlumMeasuredKind::Notifications}) {
        const bool isSlow = kind == QlumMeasuredKind::Session || kind == QlumMeasuredKind::Notifications;
        choose(kind, isSlow ? 3 : 10);
        view->findChild<QSpinBox*>("warmUp")->setValue(2);
        press("measure");
        ASSERT_TRUE(waitForRuns(++runs)) << static_cast<int>(kind) << '\n' << logText();
        const QlumMeasurementRun& run = lastRun();
        SCOPED_TRACE(qlumMeasuredName(kind).toStdString() + ": " + run.remarks.join(' ').toStdString());
        EXPECT_EQ(run.end, QlumRunEnd::Done);
        EXPECT_GE(run.figures.calls, isSlow ? 3u : 10u);
        EXPECT_EQ(run.figures.failed(), 0u);
        EXPECT_EQ(run.figures.totals.badValues, 0u);
        ASSERT_TRUE(run.figures.duration);
        if (isSlow)
            continue;
        EXPECT_GT(run.figures.totals.bytesOut, 100u) << "from the gate";
        ASSERT_TRUE(run.figures.own);
        EXPECT_GT(run.figures.duration->median, run.figures.own->median) << "the server took its time, too";
    }
    EXPECT_TRUE(lastRun().remarks.join(' ').contains("The server's clock is"))
        << "notifications take it into account";
}

TEST_F(PerformanceOnDemoServer, SweepsAndComparesEndpointsAndEndsWhenItIsTold)
{
    openDemoProject();
    openView({{serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}}});
    choose(QlumMeasuredKind::Read, 20);
    press("sweepNodes");
    ASSERT_TRUE(waitFor([this] { return !view->findChild<QLabel*>("sweepText")->text().isEmpty(); }));
    const int steps = view->runs()->rowCount();
    EXPECT_GE(steps, 4);
    EXPECT_GT(lastRun().plan.nodesPerCall, 1u);
    EXPECT_GT(lastRun().figures.valuesPerSecond(), view->runs()->rowAt(0).figures.valuesPerSecond())
        << "more values at once cost less each";

    press("compareSecurity");
    QDialog* dialog = nullptr;
    ASSERT_TRUE(waitFor([&] { return (dialog = view->findChild<QDialog*>("compareSecurityDialog")); }));
    auto* list = dialog->findChild<QListWidget*>("endpointsToCompare");
    ASSERT_GT(list->count(), 1);
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setCheckState(list->item(row)->text() == "None - None" ? Qt::Checked
                                                                                : Qt::Unchecked);
    dialog->accept();
    ASSERT_TRUE(waitForRuns(steps + 1)) << logText();
    EXPECT_EQ(lastRun().endpoint, "None - None");
    EXPECT_EQ(lastRun().figures.calls, 20u);
    EXPECT_EQ(lastRun().figures.failed(), 0u);

    choose(QlumMeasuredKind::Read, 0);
    press("measure");
    ASSERT_TRUE(waitFor([this] { return view->work()->current() && view->work()->current()->size() > 50; }));
    press("cancelMeasuring");
    ASSERT_TRUE(waitForRuns(steps + 2));
    EXPECT_EQ(lastRun().end, QlumRunEnd::Cancelled);
    EXPECT_GT(lastRun().figures.calls, 50u);
}

TEST_F(PerformanceOnDemoServer, AServerThatDiesEndsTheRunWhichKeepsItsSamples)
{
    OwnDemoServer own;
    ASSERT_TRUE(own.start());
    openDemoProject(own.url());
    openView({{serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}}});
    choose(QlumMeasuredKind::Read, 0);
    press("measure");
    ASSERT_TRUE(waitFor([this] { return view->work()->current() && view->work()->current()->size() > 50; }));
    own.kill();
    ASSERT_TRUE(waitForRuns(1)) << logText();
    EXPECT_EQ(lastRun().end, QlumRunEnd::Broken);
    EXPECT_GT(lastRun().figures.calls, 50u);
    EXPECT_TRUE(lastRun().figures.duration) << "of the calls before";
    EXPECT_TRUE(lastRun().remarks.join(' ').contains("What was measured before counts"))
        << lastRun().remarks.join(' ').toStdString();
}

} // namespace
