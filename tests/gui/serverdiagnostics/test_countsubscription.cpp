// The subscription to the counts of sessions and subscriptions, above a scripted stack.
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/serverdiagnostics/qlumcountsubscription.h>
#include <tests/support/stubapplication.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <QString>
#include <QStringList>
#include <QTest>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace {

class CountSubscription : public SubscriptionReconnect
{
protected:
    void SetUp() override
    {
        SubscriptionReconnect::SetUp();
        const auto create = stack.handler(OpcUa_CreateSubscriptionRequest_EncodeableType);
        stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType,
                 [this, create](const void* request, void* response) {
                     const auto& wanted = *static_cast<const OpcUa_CreateSubscriptionRequest*>(request);
                     note(QStringLiteral("%1 ms, %2, %3, priority %4")
                              .arg(wanted.RequestedPublishingInterval)
                              .arg(wanted.RequestedLifetimeCount)
                              .arg(wanted.RequestedMaxKeepAliveCount)
                              .arg(wanted.Priority));
                     return create(request, response);
                 });
        stack.on(
            OpcUa_CreateMonitoredItemsRequest_EncodeableType, [this](const void* request, void* response) {
                const auto& wanted = *static_cast<const OpcUa_CreateMonitoredItemsRequest*>(request);
                auto& answer = *static_cast<OpcUa_CreateMonitoredItemsResponse*>(response);
                for (OpcUa_Int32 i = 0; i < wanted.NoOfItemsToCreate; ++i) {
                    const auto& item = wanted.ItemsToCreate[i];
                    note(QStringLiteral("%1 every %2 ms, stamps %3")
                             .arg(item.ItemToMonitor.NodeId.Identifier.Numeric)
                             .arg(item.RequestedParameters.SamplingInterval)
                             .arg(wanted.TimestampsToReturn));
                }
                UaMonitoredItemCreateResults results(static_cast<OpcUa_UInt32>(wanted.NoOfItemsToCreate));
                results[0].StatusCode = refusal;
                results.detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
    }
    void note(const QString& text)
    {
        const std::lock_guard lock(mutex);
        asked.append(text);
    }
    UaStatus open()
    {
        UaStatus status;
        pool.add({}, [&](QlumJob& job) { status = counts->open(services, job); });
        EXPECT_TRUE(pool.waitForDone(10000));
        return status;
    }

    StubApplication application;
    std::shared_ptr<QlumSessionServices> services =
        qlumServicesOf(std::shared_ptr<UaClientSdk::UaSession>(&session, [](UaClientSdk::UaSession*) {}));
    std::mutex mutex;
    QStringList asked;
    std::atomic<OpcUa_StatusCode> refusal{OpcUa_Good};
    std::map<int, unsigned int> told;
    std::unique_ptr<QlumCountSubscription> counts = std::make_unique<QlumCountSubscription>(
        1, [this](QlumCountSubscription::Count count, OpcUa_UInt32 number) {
            const std::lock_guard lock(mutex);
            told[count] = number;
        });
    QlumJobPool pool;
};

TEST_F(CountSubscription, AsksForBothCountsAndTellsThemUntilItIsDetached)
{
    ASSERT_TRUE(open().isGood());
    EXPECT_EQ(asked, QStringList({"100 ms, 12000, 50, priority 0", "2277 every 100 ms, stamps 3",
                                  "2285 every 100 ms, stamps 3"}));
    EXPECT_EQ(counts->subscriptionId(), 1u);
    data(1, 1, {{1, 4}, {2, 7}, {99, 1}});
    EXPECT_TRUE(QTest::qWaitFor([this] {
        const std::lock_guard lock(mutex);
        return told == std::map<int, unsigned int>{{1, 4u}, {2, 7u}};
    }));
    counts->detach();
    const int before = publishCalls();
    data(1, 2, {{1, 5}});
    ASSERT_TRUE(waitForPublishCalls(before + 1));
    counts.reset();
    EXPECT_EQ(deleted(), std::vector<OpcUa_UInt32>{1});
    EXPECT_EQ(told.at(1), 4u);
}

TEST_F(CountSubscription, IsMadeAgainInANewSessionAndSaysWhatTheServerRefuses)
{
    application.settings["General.SessionTimeout"] = 10.0;
    application.settings["General.PublishTimeout"] = 300u;
    ASSERT_TRUE(open().isGood());
    EXPECT_EQ(asked.first(), "100 ms, 3, 1, priority 0") << "the least of both";
    ASSERT_TRUE(open().isGood());
    EXPECT_EQ(asked.size(), 3) << "it is there";
    breakLink();
    mendLink(true);
    refusal = OpcUa_BadNodeIdUnknown;
    EXPECT_EQ(open().statusCode(), OpcUa_BadNodeIdUnknown);
    EXPECT_EQ(asked.size(), 6);
    EXPECT_EQ(counts->subscriptionId(), 2u) << "the other count can still come";
    counts.reset();
}

} // namespace
