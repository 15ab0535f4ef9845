// Runs of the delay of notifications, above a scripted stack.
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumnotificationrun.h>
#include <plugins/performance/qlumsamplelog.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QString>
#include <QStringList>

#include <cmath>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace {

class NotificationRuns : public SubscriptionTest
{
protected:
    void SetUp() override
    {
        SubscriptionTest::SetUp();
        stack.on(
            OpcUa_CreateMonitoredItemsRequest_EncodeableType, [this](const void* request, void* response) {
                const auto& wanted = *static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request);
                auto& answer = *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
                UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(wanted.NoOfItemsToCreate));
                for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
                    results[i].StatusCode = i < watched ? OpcUa_Good : OpcUa_BadNodeIdUnknown;
                results.detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }
    // Two nodes, until so many values have come.
    void start(quint32 calls)
    {
        QlumMeasurementRun wanted;
        wanted.plan.kind = QlumMeasuredKind::Notifications;
        wanted.plan.calls = calls;
        for (const OpcUa_UInt32 id : {1u, 2u})
            wanted.plan.nodes.push_back({5, UaNodeId(id, 2), OpcUa_NodeClass_Variable, {}, "Level"});
        const auto shared = std::shared_ptr<UaClientSdk::UaSession>(
            &session, [](UaClientSdk::UaSession*) {});
        ended = std::async(std::launch::async, [wanted, services = qlumServicesOf(shared)] {
            return QlumNotificationRun(wanted, services, std::make_shared<QlumSampleLog>()).run();
        });
        ASSERT_TRUE(stack.waitForCalls(OpcUa_CreateMonitoredItemsRequest_EncodeableType, 1));
    }
    // A value of the first node; the stamps are so many milliseconds old, 0 for none.
    void value(int serverAge, int sourceAge)
    {
        notify<OpcUa_DataChangeNotification>(
            1, ++number, OpcUa_DataChangeNotification_EncodeableType,
            [=](OpcUa_DataChangeNotification& change) {
                const auto stamp = [](int age) {
                    UaDateTime time = UaDateTime::now();
                    time.addMilliSecs(-age);
                    return time;
                };
                UaMonitoredItemNotifications items(1u);
                if (serverAge != 0)
                    items[0].Value.ServerTimestamp = stamp(serverAge);
                if (sourceAge != 0)
                    items[0].Value.SourceTimestamp = stamp(sourceAge);
                items.detach(&change.NoOfMonitoredItems, &change.MonitoredItems);
            });
    }
    static std::string text(const QlumMeasurementRun& run) { return run.remarks.join('\n').toStdString(); }

    OpcUa_UInt32 watched = 2; // of the items
    OpcUa_UInt32 number = 0;  // of the message that was sent last
    std::future<QlumMeasurementRun> ended;
};

TEST_F(NotificationRuns, RefusedItemsAndMissingStampsAreCountedAndTold)
{
    watched = 1;
    start(3);
    value(9'000'000, 0); // of before the run, as old as it likes
    value(2000, 5000);
    value(0, 5000); // left out
    value(0, 0);    // the same
    value(1000, 0);
    value(-3'600'000, 0); // of a clock that is ahead
    const QlumMeasurementRun run = ended.get();
    EXPECT_EQ(run.end, QlumRunEnd::Done) << text(run);
    EXPECT_TRUE(run.remarks.contains("The server does not watch 1 of the nodes.")) << text(run);
    EXPECT_TRUE(run.remarks.contains("2 value(s) had no time stamp of the server and are left out."))
        << text(run);
    EXPECT_EQ(run.figures.calls, 3u);
    ASSERT_TRUE(run.figures.duration);
    EXPECT_NEAR(run.figures.duration->maximum, 2e6, 5e5) << "us";
    EXPECT_LT(run.figures.duration->minimum, -3.5e9) << "below zero, and shown so";
    const std::vector<QlumCallSample> samples = run.samples->from(0);
    ASSERT_EQ(samples.size(), 3u);
    EXPECT_NEAR(samples[0].own, 5e6, 5e5) << "since the source";
    EXPECT_TRUE(std::isnan(samples[1].own)) << "which gave no time";
    EXPECT_EQ(deleted(), std::vector<OpcUa_UInt32>{1});
}

TEST_F(NotificationRuns, NothingThatIsWatchedEndsTheRunWithTheReason)
{
    watched = 0;
    start(1);
    const QlumMeasurementRun none = ended.get();
    EXPECT_EQ(none.end, QlumRunEnd::Broken);
    EXPECT_TRUE(none.remarks.last().startsWith("The run broke off: BadNodeIdUnknown")) << text(none);
    EXPECT_EQ(none.figures.calls, 0u);
}

TEST_F(NotificationRuns, ASubscriptionThatTheServerEndsKeepsItsSamples)
{
    start(100);
    value(1000, 0);
    value(1000, 0);
    notify<OpcUa_StatusChangeNotification>(
        1, ++number, OpcUa_StatusChangeNotification_EncodeableType,
        [](OpcUa_StatusChangeNotification& change) { change.Status = OpcUa_BadTimeout; });
    const QlumMeasurementRun run = ended.get();
    EXPECT_EQ(run.end, QlumRunEnd::Broken);
    EXPECT_TRUE(run.remarks.last().startsWith("The run broke off: BadTimeout")) << text(run);
    EXPECT_EQ(run.figures.calls, 1u);
}

} // namespace
