// The subscription to the counts of sessions and subscriptions, and the view that follows them, above a
// scripted stack.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <plugins/serverdiagnostics/qlumcountsubscription.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <tests/support/stubapplication.h>
#include <tests/unit/sdk/subscriptiontest.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <QCoreApplication>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTimer>

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
    void TearDown() override
    {
        if (counts)
            counts->detach(); // else what is on its way finds a test that has gone
        counts.reset();
        SubscriptionReconnect::TearDown();
    }
    UaStatus open()
    {
        UaStatus status;
        pool.add({}, [&](QlumJob& job) { status = counts->open(services, job); });
        EXPECT_TRUE(pool.waitForDone(10000));
        return status;
    }

    void endSubscription(OpcUa_UInt32 id)
    {
        notify<OpcUa_StatusChangeNotification>(
            id, 1, OpcUa_StatusChangeNotification_EncodeableType,
            [](OpcUa_StatusChangeNotification& change) { change.Status = OpcUa_BadTimeout; });
    }

    StubApplication application;
    std::shared_ptr<QlumSessionServices> services =
        qlumServicesOf(std::shared_ptr<UaClientSdk::UaSession>(&session, [](UaClientSdk::UaSession*) {}));
    std::mutex mutex;
    QStringList asked;
    std::atomic<OpcUa_StatusCode> refusal{OpcUa_Good};
    std::map<int, unsigned int> told;
    QStringList ended;
    std::unique_ptr<QlumCountSubscription> counts = std::make_unique<QlumCountSubscription>(
        1, QlumCountSubscription::Listener{
               [this](QlumCountSubscription::Count count, OpcUa_UInt32 number) { told[count] = number; },
               [this](const UaStatus& status) { ended.append(toQString(status.toString())); }});
    QlumJobPool pool;
};

TEST_F(CountSubscription, AsksForBothCountsAndTellsThemUntilItIsDetached)
{
    ASSERT_TRUE(open().isGood());
    EXPECT_EQ(asked, QStringList({"100 ms, 12000, 50, priority 0", "2277 every 100 ms, stamps 3",
                                  "2285 every 100 ms, stamps 3"}));
    EXPECT_EQ(counts->subscriptionId(), 1u);
    data(1, 1, {{1, 4}, {2, 7}, {99, 1}});
    EXPECT_TRUE(QTest::qWaitFor([this] { return told == std::map<int, unsigned int>{{1, 4u}, {2, 7u}}; }));
    const int before = publishCalls();
    data(1, 2, {{1, 5}});
    ASSERT_TRUE(waitForPublishCalls(before + 1));
    counts->detach(); // what is on its way by now comes to nobody
    counts.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(deleted(), std::vector<OpcUa_UInt32>{1});
    EXPECT_EQ(told.at(1), 4u);
}

TEST_F(CountSubscription, OneThatTheServerEndsIsToldOnceAndMadeAnew)
{
    ASSERT_TRUE(open().isGood());
    endSubscription(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !ended.isEmpty(); }));
    EXPECT_EQ(ended, QStringList("BadTimeout"));
    EXPECT_EQ(counts->subscriptionId(), 0u);
    ASSERT_TRUE(open().isGood());
    EXPECT_EQ(counts->subscriptionId(), 2u);
    EXPECT_EQ(asked.size(), 6) << "with both counts";
}

// A view whose subscription the server ends.
class EndedCounts : public CountSubscription
{
protected:
    void SetUp() override
    {
        CountSubscription::SetUp();
        view.sessionStatusChanged(5, QlumConnectionStatus::Connected);
        view.serverSelectionChanged(5);
        ASSERT_TRUE(waitForAll());
        ASSERT_EQ(created(), 1);
        EXPECT_EQ(countNote(), "");
    }
    void TearDown() override
    {
        view.sessionRemoved(5);
        CountSubscription::TearDown();
    }
    bool waitForAll()
    {
        return QTest::qWaitFor([this] { return !view.isReading(); });
    }
    int created()
    {
        const std::lock_guard lock(mutex);
        return asked.filter("priority").size();
    }
    [[nodiscard]] QString countNote() const
    {
        const auto* label = view.findChild<QLabel*>("countNote");
        return label->isHidden() ? QString() : label->text();
    }
    bool waitForNote(const char* begin)
    {
        return QTest::qWaitFor([&] { return countNote().startsWith(QLatin1String(begin)); });
    }
    // The pause that the view has set itself, which the test does not wait for; 0 when there is none.
    int endPause()
    {
        for (QTimer* timer : view.findChildren<QTimer*>("reopenCounts"))
            if (timer->isActive()) {
                const int pause = timer->interval();
                timer->start(0);
                return pause;
            }
        return 0;
    }

    std::shared_ptr<QlumServerPools> pools = std::make_shared<QlumServerPools>();
    QlumServerDiagnosticWidget view{application, pools, [this](unsigned int) { return services; },
                                    [](QlumSessionServices&, QlumJob&) { return QlumEndpointReading(); }};
};

TEST_F(EndedCounts, AreWatchedAgainAfterAPause)
{
    endSubscription(1);
    ASSERT_TRUE(waitForNote("The counts are not live for the moment: the server ended their subscription, "
                            "BadTimeout"))
        << countNote().toStdString();
    EXPECT_EQ(created(), 1) << "not at once";
    EXPECT_EQ(endPause(), 1000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return countNote().isEmpty(); }));
    EXPECT_EQ(created(), 2);
    endSubscription(2);
    ASSERT_TRUE(waitForNote("The counts are not live for the moment"));
    EXPECT_EQ(endPause(), 2000) << "it was soon ended again";
    ASSERT_TRUE(QTest::qWaitFor([this] { return countNote().isEmpty(); }));
    EXPECT_EQ(created(), 3);
}

TEST_F(EndedCounts, AreLeftAloneWhenTheServerGoesOnRefusing)
{
    constexpr int attempts = 5;
    stack.failNext(OpcUa_CreateSubscriptionRequest_EncodeableType,
                   std::vector<OpcUa_StatusCode>(attempts, OpcUa_BadTooManySubscriptions));
    endSubscription(1);
    std::vector<int> pauses;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        if (const int pause = endPause(); pause > 0)
            pauses.push_back(pause);
        return countNote().startsWith("The counts are no longer live: BadTooManySubscriptions");
    })) << countNote().toStdString();
    EXPECT_EQ(pauses, (std::vector{1000, 2000, 5000, 10000, 30000}));
    ASSERT_TRUE(waitForAll());
    view.sltRefresh();
    ASSERT_TRUE(QTest::qWaitFor([this] { return countNote().isEmpty(); }))
        << "once more, when the user wants";
    EXPECT_EQ(created(), 2);
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
}

} // namespace
