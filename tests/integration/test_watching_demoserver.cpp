// A tool watches nodes of a project's server, whatever the user and the server do meanwhile.
#include <app/api/qlummonitoring.h>
#include <monitoring/allsink.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/owndemoserver.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAction>
#include <QMessageBox>
#include <QString>
#include <QTest>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {
using monitoring::AllSink;
using monitoring::ItemChange;
using monitoring::ItemId;
using monitoring::ItemInfo;
using monitoring::ItemSettings;
using monitoring::ItemState;
using monitoring::ItemWish;
using monitoring::LatestSink;

class WatchingOnDemoServer : public ClientOnDemoServer
{
protected:
    void open(const std::string& url = demoserver::endpointUrl())
    {
        ASSERT_NO_FATAL_FAILURE(openDemoProject(url));
        server = qlumApplicationMonitoring()(serverId);
        ASSERT_NE(server, nullptr);
    }
    void command(const char* name)
    {
        auto* const action = window->findChild<QAction*>(QLatin1String(name));
        ASSERT_NE(action, nullptr) << name;
        ASSERT_TRUE(action->isEnabled()) << name;
        action->trigger();
    }
    ItemId watch(const std::shared_ptr<monitoring::Sink>& sink, const UaNodeId& node, OpcUa_UInt64 key,
                 const ItemSettings& settings)
    {
        ItemWish wish;
        wish.nodeId = node;
        wish.key = key;
        return server->add(sink, settings, {&wish, 1}).front();
    }
    static UaNodeId named(const char* name) { return UaNodeId(UaString(name), 2); }
    static ItemSettings every(double milliseconds, OpcUa_UInt32 queueSize)
    {
        ItemSettings settings;
        settings.subscription.publishingInterval = milliseconds;
        settings.samplingInterval = 100;
        settings.queueSize = queueSize;
        return settings;
    }
    // Takes both sinks empty.
    void take()
    {
        for (LatestSink::Batch batch = latest->take(); LatestSink::Value & value : batch.values)
            seen[value.key] += 1 + value.merged;
        AllSink::Batch batch = all->take();
        for (AllSink::Value& value : batch.values) {
            ++seen[value.key];
            const UaDateTime when(value.value.sourceTimestamp());
            EXPECT_FALSE(when < last[value.key]) << "out of order";
            last[value.key] = when;
        }
        EXPECT_EQ(batch.overflowed, 0u);
        for (const ItemChange& change : batch.changes)
            changes[change.key] = change;
    }
    // Whether values of these come that had not come before.
    bool waitForNews(const std::vector<OpcUa_UInt64>& keys)
    {
        take();
        seen.clear();
        return QTest::qWaitFor(
            [&] {
                take();
                return std::all_of(keys.begin(), keys.end(),
                                   [&](OpcUa_UInt64 key) { return seen[key] >= 2; });
            },
            limit);
    }
    bool waitForChange(OpcUa_UInt64 key, ItemState state)
    {
        return QTest::qWaitFor(
            [&] {
                take();
                return changes.contains(key) && changes[key].state == state;
            },
            limit);
    }

    std::shared_ptr<LatestSink> latest = std::make_shared<LatestSink>(monitoring::Sink::Ready());
    std::shared_ptr<AllSink> all = std::make_shared<AllSink>(monitoring::Sink::Ready());
    std::shared_ptr<monitoring::MonitoredServer> server;
    std::map<OpcUa_UInt64, OpcUa_UInt64> seen; // values of a key
    std::map<OpcUa_UInt64, UaDateTime> last;   // source time of the latest value of a key
    std::map<OpcUa_UInt64, ItemChange> changes;
};

TEST_F(WatchingOnDemoServer, ValuesComeUntilTheUserDisconnectsAndAfterHeConnectsAgain)
{
    open();
    const ItemId sine = watch(latest, named("Dynamic.Sine"), 1, every(200, 1));
    const ItemId ramp = watch(all, named("Dynamic.Ramp"), 2, every(500, 20));
    const ItemId missing = watch(all, named("Missing"), 3, every(500, 1));
    ASSERT_TRUE(waitForNews({1, 2})) << logText();
    EXPECT_GE(server->info(sine)->now.revisedSamplingInterval, 100);
    EXPECT_EQ(server->info(ramp)->now.revisedQueueSize, 20u);
    EXPECT_EQ(server->subscriptions().size(), 2u);
    ASSERT_TRUE(waitForChange(3, ItemState::Refused));
    EXPECT_EQ(changes[3].status, OpcUa_BadNodeIdUnknown);

    command("disconnectServer");
    EXPECT_EQ(server->info(sine)->now.state, ItemState::Waiting);
    EXPECT_TRUE(waitForChange(2, ItemState::Waiting));
    const OpcUa_UInt64 before = server->info(ramp)->count;
    command("connectServer");
    EXPECT_TRUE(waitForNews({1, 2})) << logText();
    EXPECT_GT(server->info(ramp)->count, before);
    EXPECT_TRUE(waitForChange(3, ItemState::Refused)) << "tried again, and no better";

    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::Yes));
        command("removeServer");
        EXPECT_TRUE(QTest::qWaitFor([this] { return !qlumApplicationMonitoring()(serverId); }, limit));
    }
    EXPECT_TRUE(waitForChange(2, ItemState::Ended));
    EXPECT_TRUE(waitForChange(3, ItemState::Ended));
    server->remove({&missing, 1});
    EXPECT_FALSE(server->info(missing));
}

TEST_F(WatchingOnDemoServer, ARestartedServerOfSmallLimitsGetsAllItemsAgain)
{
    OwnDemoServer own;
    ASSERT_TRUE(own.start("pki", "--per-call 50"));
    window->setSettingsValue(QStringLiteral("General.WatchdogTime"), 1000u);
    open(own.url());
    std::vector<ItemWish> wishes(120);
    for (OpcUa_UInt32 i = 0; i < wishes.size(); ++i)
        wishes[i].nodeId = UaNodeId(100000 + i, 4);
    const std::vector<ItemId> many = server->add(latest, every(200, 1), wishes);
    watch(all, named("Dynamic.Sine"), 2, every(200, 10));
    const auto areHeard = [&](OpcUa_UInt64 count) {
        return QTest::qWaitFor(
            [&] {
                return std::all_of(many.begin(), many.end(),
                                   [&](ItemId id) { return server->info(id)->count >= count; });
            },
            limit);
    };
    ASSERT_TRUE(areHeard(1)) << logText();
    ASSERT_TRUE(waitForNews({2}));
    std::vector<OpcUa_UInt64> counts;
    for (const ItemId id : many)
        counts.push_back(server->info(id)->count);

    own.kill();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return logText().find("ConnectionErrorApiReconnect") != std::string::npos; }, limit))
        << logText();
    ASSERT_TRUE(own.start("pki", "--per-call 50"));
    EXPECT_TRUE(areHeard(*std::max_element(counts.begin(), counts.end()) + 1)) << logText();
    EXPECT_TRUE(waitForNews({2})) << logText();
    EXPECT_EQ(server->subscriptions().size(), 1u);
}
} // namespace
