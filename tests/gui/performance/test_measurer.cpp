// Runs against a server that takes as long as it says, by a clock of the test's.
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlummeasurer.h>
#include <plugins/performance/qlumnotificationrun.h>
#include <plugins/performance/qlumsamplelog.h>
#include <plugins/performance/qlumsweep.h>
#include <tests/support/tableservices.h>
#include <tests/support/unscriptedservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
using namespace std::chrono_literals;

class CostlyServer : public UnscriptedServices
{
public:
    UaStatus read(Settings& settings, double, OpcUa_TimestampsToReturn, const UaReadValueIds& nodes,
                  UaDataValues& values) override
    {
        const int number = ++reads;
        if (nodes.length() > limit)
            return UaStatus(OpcUa_BadTooManyOperations);
        now += (fixed + each * nodes.length()).count();
        if (number == 1)
            purpose = toQString(settings.purpose);
        if (answer)
            if (const UaStatus status = answer(number); status.isBad())
                return status;
        static_cast<void>(values.create(nodes.length()));
        return {};
    }

    std::chrono::nanoseconds fixed = 300us;
    std::chrono::nanoseconds each = 2us;
    OpcUa_UInt32 limit = 1000;
    std::function<UaStatus(int read)> answer;
    std::atomic<std::int64_t> now = 0; // ns
    std::atomic<int> reads = 0;
    QString purpose;
};

class Measurer : public testing::Test
{
protected:
    QlumMeasurementRun run(QlumMeasurementPlan plan)
    {
        plan.nodes = {{5, UaNodeId(1, 2), OpcUa_NodeClass_Variable, {}, "Level"}};
        QlumMeasurementRun wanted;
        wanted.plan = plan;
        samples = std::make_shared<QlumSampleLog>();
        measurer = std::make_unique<QlumMeasurer>(wanted, server, samples, [this] {
            return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(server->now.load()));
        });
        return measurer->run();
    }

    std::shared_ptr<CostlyServer> server = std::make_shared<CostlyServer>();
    std::shared_ptr<QlumSampleLog> samples;
    std::unique_ptr<QlumMeasurer> measurer;
};

TEST_F(Measurer, MeasuresTheCallsAndNeitherWarmUpNorPause)
{
    const QlumMeasurementRun done = run({.nodesPerCall = 10, .calls = 50, .pause = 1, .warmUp = 5});
    EXPECT_EQ(done.end, QlumRunEnd::Done);
    EXPECT_EQ(done.figures.calls, 50u);
    EXPECT_EQ(done.figures.totals.values, 500u);
    EXPECT_FLOAT_EQ(static_cast<float>(done.figures.duration->minimum), 320);
    EXPECT_FLOAT_EQ(static_cast<float>(done.figures.duration->maximum), 320);
    EXPECT_EQ(server->reads, 1 + 5 + 50) << "one to see that the server takes it, and the warm-up";
    EXPECT_EQ(server->purpose, "Measuring: Read");
}

TEST_F(Measurer, SaysWhenTheClockIsTooCoarseForTheCalls)
{
    const auto isSaid = [this] {
        return run({.calls = 20}).remarks.join(' ').contains("The clock of this machine goes in steps of");
    };
    EXPECT_FALSE(isSaid()) << "302 us are many steps";
    server->fixed = server->each = 0us;
    EXPECT_TRUE(isSaid());
}

TEST_F(Measurer, ASweepFindsTheCostsOfTheServer)
{
    std::vector<QlumSweepPoint> points;
    for (const quint32 size : qlumSweepSizes(1000))
        points.push_back(qlumSweepPoint(run(qlumSweepStep({.calls = 20}, QlumSweepOver::NodesPerCall, size)),
                                        QlumSweepOver::NodesPerCall));
    const auto fit = qlumFitSweep(points);
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->fixed, 300, 1);
    EXPECT_NEAR(fit->each, 2, 0.01);
    EXPECT_EQ(
        qlumSweepText(points, QlumSweepOver::NodesPerCall),
        "A call costs 300 us, and 2.0 us for each node. The largest call, of 1,000 nodes, is the best: only "
        "from 1,500 on more would gain less than a tenth.");
    server->each = 20us;
    points.clear();
    for (const quint32 size : qlumSweepSizes(1000))
        points.push_back(qlumSweepPoint(run(qlumSweepStep({.calls = 20}, QlumSweepOver::NodesPerCall, size)),
                                        QlumSweepOver::NodesPerCall));
    EXPECT_EQ(
        qlumSweepText(points, QlumSweepOver::NodesPerCall),
        "A call costs 300 us, and 20.0 us for each node. From 150 node(s) a call on, more gain less than a "
        "tenth.");
}

TEST_F(Measurer, ABatchThatTheServerRefusesIsLoweredAndSaid)
{
    server->limit = 100;
    const QlumMeasurementRun done = run({.nodesPerCall = 500, .calls = 10});
    EXPECT_EQ(done.plan.nodesPerCall, 62u);
    EXPECT_EQ(done.figures.failed(), 0u);
    EXPECT_EQ(done.remarks.value(0), "The server does not take 500 nodes in a call: 62 were sent.");
}

TEST_F(Measurer, ALostConnectionEndsTheRunAndKeepsItsSamples)
{
    server->answer = [](int read) { return UaStatus(read > 30 ? OpcUa_BadConnectionClosed : OpcUa_Good); };
    const QlumMeasurementRun done = run({.calls = 1000, .warmUp = 9});
    EXPECT_EQ(done.end, QlumRunEnd::Broken);
    EXPECT_EQ(done.figures.calls, 21u) << "the one that told of it is among them";
    EXPECT_EQ(done.figures.failures.at(OpcUa_BadConnectionClosed), 1u);
    EXPECT_TRUE(done.remarks.last().startsWith("The run broke off: BadConnectionClosed"))
        << done.remarks.join(' ').toStdString();
    server->reads = 30;
    EXPECT_TRUE(run({.calls = 5}).remarks.last().startsWith("Nothing was measured: BadConnectionClosed"));
}

TEST_F(Measurer, TimeOutsAreCountedAndTheRunGoesOn)
{
    server->answer = [](int read) { return UaStatus(read % 10 == 0 ? OpcUa_BadTimeout : OpcUa_Good); };
    const QlumMeasurementRun done = run({.calls = 100, .warmUp = 9});
    EXPECT_EQ(done.end, QlumRunEnd::Done);
    EXPECT_EQ(done.figures.calls, 100u);
    EXPECT_EQ(done.figures.failures.at(OpcUa_BadTimeout), 10u);
    EXPECT_EQ(done.figures.totals.values, 90u);
}

TEST_F(Measurer, CancelAndDurationEndARunThatHasNoNumberOfCalls)
{
    server->answer = [this](int read) {
        if (read == 100)
            measurer->cancel();
        return UaStatus();
    };
    const QlumMeasurementRun cancelled = run({.calls = 0, .seconds = 3600});
    EXPECT_EQ(cancelled.end, QlumRunEnd::Cancelled);
    EXPECT_EQ(cancelled.figures.calls, 100u - 21);
    server->answer = nullptr;
    server->fixed = 98ms;
    server->each = 2ms;
    const QlumMeasurementRun timed = run({.calls = 0, .seconds = 1});
    EXPECT_EQ(timed.figures.calls, 10u);
    EXPECT_EQ(timed.figures.callsPerSecond(), 10);
}

TEST_F(Measurer, LanesShareTheCallsOfARun)
{
    server->answer = [](int) { return UaStatus(); };
    const QlumMeasurementRun done = run({.calls = 400, .outstanding = 8});
    EXPECT_EQ(done.figures.calls, 400u);
    EXPECT_EQ(server->reads, 1 + 8 * 20 + 400);
}

TEST(Probes, EachAsksForWhatItSaysAndLeavesNothingBehind)
{
    const auto server = std::make_shared<TableServices>();
    const UaNodeId folder(1, 2);
    server->table.object(folder, "Plant");
    server->table.variable(UaNodeId(2, 2), "Level", UaVariant(2.5), folder);
    int called = 0;
    server->table.method(UaNodeId(3, 2), "Reset", folder, {{}, {}, [&](const auto&, auto&) {
                                                               ++called;
                                                               return OpcUa_Good;
                                                           }});
    const auto measured = [&](QlumMeasuredKind kind, const QlumToolNode& node) {
        QlumMeasurementRun wanted;
        wanted.plan.kind = kind;
        wanted.plan.nodes = {node};
        wanted.plan.values =
            kind == QlumMeasuredKind::Write ? std::vector{UaVariant(2.5)} : std::vector<UaVariant>();
        wanted.plan.nodesPerCall = 3;
        wanted.plan.calls = 10;
        wanted.plan.warmUp = 1;
        return QlumMeasurer(wanted, server, std::make_shared<QlumSampleLog>()).run().figures;
    };
    const QlumToolNode variable{5, UaNodeId(2, 2), OpcUa_NodeClass_Variable, folder, "Level"};
    const QlumToolNode object{5, folder, OpcUa_NodeClass_Object, {}, "Plant"};
    const QlumToolNode method{5, UaNodeId(3, 2), OpcUa_NodeClass_Method, folder, "Reset"};
    for (const auto& [kind, node] :
         {std::pair{QlumMeasuredKind::Write, variable}, std::pair{QlumMeasuredKind::Browse, object},
          std::pair{QlumMeasuredKind::TranslatePaths, object},
          std::pair{QlumMeasuredKind::ReadRegistered, variable}, std::pair{QlumMeasuredKind::Call, method}}) {
        const QlumFigures figures = measured(kind, node);
        EXPECT_EQ(figures.calls, 10u) << static_cast<int>(kind);
        EXPECT_EQ(figures.failed(), 0u) << static_cast<int>(kind);
        EXPECT_EQ(figures.totals.badValues, 0u) << static_cast<int>(kind);
    }
    EXPECT_EQ(called, (1 + 1 + 10) * 3);
    EXPECT_EQ(server->table.registeredNodes(), 0);
    EXPECT_EQ(server->table.openContinuationPoints(), 0);
    EXPECT_EQ(server->table.value(UaNodeId(2, 2)), UaVariant(2.5));
}

TEST(NotificationRun, ThatHasNoSessionSaysSo)
{
    QlumMeasurementRun wanted;
    wanted.plan.kind = QlumMeasuredKind::Notifications;
    wanted.plan.nodes = {{5, UaNodeId(2, 2), OpcUa_NodeClass_Variable, {}, "Level"}};
    const QlumMeasurementRun done =
        QlumNotificationRun(wanted, std::make_shared<TableServices>(), std::make_shared<QlumSampleLog>())
            .run();
    EXPECT_EQ(done.end, QlumRunEnd::Broken);
    EXPECT_TRUE(done.remarks.last().startsWith("The run broke off: BadNotSupported"));
}

} // namespace
