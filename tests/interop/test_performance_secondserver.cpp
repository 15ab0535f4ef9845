// The performance view on the second server, which takes five nodes in a call.
#include <app/api/qlumtoolservices.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumperformanceview.h>
#include <plugins/performance/qlumrunmodel.h>
#include <tests/interop/clientonsecondserver.h>
#include <tests/support/performanceonserver.h>
#include <uabase/values/uanodeid.h>

#include <QLabel>
#include <QSpinBox>
#include <QString>
#include <gtest/gtest.h>

namespace {
class PerformanceOnSecondServer : public PerformanceOn<ClientOnSecondServer>
{
protected:
    void SetUp() override
    {
        PerformanceOn<ClientOnSecondServer>::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
        openView({{serverId, named("the.answer"), OpcUa_NodeClass_Unspecified, {}, {}}});
    }
};

TEST_F(PerformanceOnSecondServer, ReadBrowseAndNotificationsAreMeasured)
{
    int runs = 0;
    for (const QlumMeasuredKind kind : {QlumMeasuredKind::Read, QlumMeasuredKind::Browse}) {
        choose(kind, 50);
        press("measure");
        ASSERT_TRUE(waitForRuns(++runs)) << static_cast<int>(kind) << '\n' << logText();
        const QlumMeasurementRun& run = lastRun();
        SCOPED_TRACE(qlumMeasuredName(kind).toStdString() + ": " + run.remarks.join(' ').toStdString());
        EXPECT_EQ(run.end, QlumRunEnd::Done);
        EXPECT_EQ(run.figures.calls, 50u);
        EXPECT_EQ(run.figures.failed(), 0u);
        EXPECT_EQ(run.figures.totals.badValues, 0u);
        EXPECT_GT(run.figures.totals.bytesOut, 50u);
        ASSERT_TRUE(run.figures.duration && run.figures.own);
        EXPECT_GT(run.figures.duration->median, run.figures.own->median) << "the server took its time, too";
    }
    // its clock changes once a second
    openView({{serverId, UaNodeId(2258), OpcUa_NodeClass_Unspecified, {}, {}}});
    ASSERT_TRUE(waitFor([this] { return view->panel()->plan().nodes.size() == 2; }));
    choose(QlumMeasuredKind::Notifications, 3);
    press("measure");
    ASSERT_TRUE(waitForRuns(++runs)) << logText();
    EXPECT_EQ(lastRun().end, QlumRunEnd::Done);
    EXPECT_GE(lastRun().figures.calls, 3u);
    ASSERT_TRUE(lastRun().figures.duration);
    EXPECT_LT(lastRun().figures.duration->median, 5e6) << "us, of a server on this computer";
    EXPECT_TRUE(lastRun().remarks.join(' ').contains("The server's clock is"))
        << lastRun().remarks.join(' ').toStdString();
}

TEST_F(PerformanceOnSecondServer, ASweepEndsAtTheLimitOfTheServer)
{
    choose(QlumMeasuredKind::Read, 50);
    press("sweepNodes");
    ASSERT_TRUE(waitFor([this] { return !view->findChild<QLabel*>("sweepText")->text().isEmpty(); }))
        << logText();
    ASSERT_EQ(view->runs()->rowCount(), 3) << "1, 2, 5";
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(view->runs()->rowAt(row).figures.failed(), 0u) << row;
    EXPECT_EQ(lastRun().plan.nodesPerCall, 5u);
}
} // namespace
